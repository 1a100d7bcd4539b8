// The texts that a user gives.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kit/router_test.h"

using kit::lines;
using kit::Router;

namespace {

using NameTest = kit::ConnectedTest;

constexpr std::size_t kLengths[] = {0, 1, 31, 32, 66, 178, 179, 180, 181, 359, 360, 5000};
constexpr std::size_t kFieldSize = 180;
constexpr std::size_t kLongest = 179;

// A field that held 'z' everywhere before a text of `length` was copied into it.
std::string fieldAfter(std::size_t length) {
  std::string field(kFieldSize, 'z');
  const std::size_t kept = std::min(length, kLongest);
  field.replace(0, kept, kept, 'n');
  field[kept] = '\0';
  return field;
}

std::string fieldOf(const char (&field)[kFieldSize]) { return {field, kFieldSize}; }

}  // namespace

TEST_F(NameTest, IsCopiedUpToItsField) {
  const int sock = assoc.sock;
  for (const std::size_t length : kLengths) {
    std::memset(assoc.devName, 'z', kFieldSize);
    std::memset(assoc.devLocation, 'l', kFieldSize);
    std::string text(length, 'n');
    assoc.setDevName(text.data());
    EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:inside setDevName"}));
    EXPECT_EQ(fieldOf(assoc.devName), fieldAfter(length)) << length;
    EXPECT_EQ(fieldOf(assoc.devLocation), std::string(kFieldSize, 'l')) << length;
  }
  EXPECT_EQ(assoc.sock, sock);
}

TEST(LocationTest, IsCopiedUpToItsField) {
  Router router;
  TembraAssociation& assoc = router.connect();
  const int sock = assoc.sock;
  for (const std::size_t length : kLengths) {
    std::memset(assoc.devName, 'm', kFieldSize);
    std::memset(assoc.devLocation, 'z', kFieldSize);
    std::string text(length, 'n');
    assoc.setDevLocation(text.data());
    EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:inside setDevLocation"}));
    EXPECT_EQ(fieldOf(assoc.devLocation), fieldAfter(length)) << length;
    EXPECT_EQ(fieldOf(assoc.devName), std::string(kFieldSize, 'm')) << length;
    EXPECT_EQ(assoc.sock, sock) << length;
  }
}

TEST_F(NameTest, NullMeansEmpty) {
  std::strcpy(assoc.devName, "before");
  std::strcpy(assoc.devLocation, "before");
  assoc.setDevName(nullptr);
  assoc.setDevLocation(nullptr);
  EXPECT_STREQ(assoc.devName, "");
  EXPECT_STREQ(assoc.devLocation, "");
}

TEST_F(NameTest, ConfirmingTheTypeAfterwardsReplacesBoth) {
  router.database().nextId("4");
  assoc.setDevName(const_cast<char*>("Lamp"));
  assoc.setDevLocation(const_cast<char*>("Hall"));
  assoc.setDevType(DEVTYPE_BINARY_SWITCH);
  EXPECT_STREQ(assoc.devName, "BinarySwitch #4");
  EXPECT_STREQ(assoc.devLocation, "Default");
}
