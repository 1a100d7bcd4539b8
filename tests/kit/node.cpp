#include "kit/node.h"

#include <algorithm>

namespace kit {
namespace {

constexpr unsigned char kEndOfClasses = 0xFF;
constexpr unsigned char kSlave = 4;  // basic device class of most nodes

}  // namespace

Node::Node(unsigned char id) {
  block_.nodeId = id;
  block_.commandClasses[0] = kEndOfClasses;
  block_.basicClass = kSlave;
}

Node& Node::classes(std::initializer_list<unsigned char> commandClasses) {
  std::fill(std::begin(block_.commandClasses), std::end(block_.commandClasses), static_cast<unsigned char>(0));
  const auto count = std::min(commandClasses.size(), std::size(block_.commandClasses));
  std::copy_n(commandClasses.begin(), count, block_.commandClasses);
  if (count < std::size(block_.commandClasses)) block_.commandClasses[count] = kEndOfClasses;
  return *this;
}

Node& Node::basic(unsigned char value) {
  block_.basicClass = value;
  return *this;
}

Node& Node::generic(unsigned char value) {
  block_.genericClass = value;
  return *this;
}

Node& Node::specific(unsigned char value) {
  block_.specificClass = value;
  return *this;
}

Node& Node::values(std::initializer_list<ZwValueTriple> triples) {
  std::fill(std::begin(block_.values), std::end(block_.values), ZwValueTriple{});
  std::copy_n(triples.begin(), std::min(triples.size(), std::size(block_.values)), block_.values);
  return *this;
}

Bytes Node::bytes() const { return cutTo(sizeof block_); }

Bytes Node::cutTo(std::size_t length) const {
  const auto* first = reinterpret_cast<const unsigned char*>(&block_);
  return {first, first + std::min(length, sizeof block_)};
}

}  // namespace kit
