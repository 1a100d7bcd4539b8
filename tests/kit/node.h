// Z-Wave node blocks as a Z-Wave server sends them.
#ifndef TEMBRA_TESTS_KIT_NODE_H
#define TEMBRA_TESTS_KIT_NODE_H

#include <tembra/records.h>

#include <initializer_list>

#include "kit/trace.h"

namespace kit {

/// Node(5).classes({0x25, 0x32}).basic(4).generic(0x10).specific(1).values({{0x25, 0, 1}})
/// Without a call: no command classes (the list holds its end mark 0xFF), no values, basic class 4, the rest 0.
class Node {
 public:
  explicit Node(unsigned char id);

  Node& classes(std::initializer_list<unsigned char> commandClasses);  // the end mark follows
  Node& basic(unsigned char value);
  Node& generic(unsigned char value);
  Node& specific(unsigned char value);
  Node& values(std::initializer_list<ZwValueTriple> triples);  // the zero triple follows

  /// For everything else: node.block().name and so on.
  ZwNodeInfo& block() { return block_; }

  [[nodiscard]] Bytes bytes() const;

  /// Only the first bytes of the block.
  [[nodiscard]] Bytes cutTo(std::size_t length) const;

 private:
  ZwNodeInfo block_{};
};

}  // namespace kit

#endif
