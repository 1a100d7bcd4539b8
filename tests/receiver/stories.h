// What the story tests of the Z-Wave flow have in common.
#ifndef TEMBRA_TESTS_RECEIVER_STORIES_H
#define TEMBRA_TESTS_RECEIVER_STORIES_H

#include <gtest/gtest.h>

#include "kit/router.h"
#include "story.h"

using Byte = unsigned char;

/// An open connection, and the story of it.
class Stories : public testing::Test {
 protected:
  kit::Router router;
  TembraAssociation& assoc = router.connect();
  Story story{router};

  std::string answer(const kit::Node& node) {
    story.skip();
    router.zwave().send(node);
    return story.take();
  }

  std::string wait(long seconds) {
    story.skip();
    router.advance(seconds);
    return story.take();
  }

  /// The steps of an add, up to the answer that is wanted next.
  void add() { assoc.addDevZigbeeZwave(); }
  void addJoined(unsigned char node) {
    add();
    answer(kit::Node(node));
  }
  void addIdentified(unsigned char node) {
    addJoined(node);
    answer(kit::Node(node));
  }
};

#endif
