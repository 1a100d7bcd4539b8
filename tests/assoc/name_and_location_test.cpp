// The texts that a user gives.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kit/router_test.h"

using kit::lines;

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

TEST_F(NameTest, ATextIsCopiedUpToItsField) {
  const struct {
    const char* line;
    void (TembraAssociation::*set)(char*);
    char (&field)[kFieldSize];
    char (&other)[kFieldSize];
  } kRows[] = {
      {"log 0 libTembraAssoc:inside setDevName", &TembraAssociation::setDevName, assoc.devName, assoc.devLocation},
      {"log 0 libTembraAssoc:inside setDevLocation", &TembraAssociation::setDevLocation, assoc.devLocation,
       assoc.devName},
  };
  const int sock = assoc.sock;
  for (const auto& row : kRows) {
    for (const std::size_t length : kLengths) {
      std::memset(row.field, 'z', kFieldSize);
      std::memset(row.other, 'o', kFieldSize);
      std::string text(length, 'n');
      (assoc.*row.set)(text.data());
      EXPECT_EQ(router.takeTrace(), lines({row.line}));
      EXPECT_EQ(fieldOf(row.field), fieldAfter(length)) << length;
      EXPECT_EQ(fieldOf(row.other), std::string(kFieldSize, 'o')) << length;
      EXPECT_EQ(assoc.sock, sock) << length;
    }
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
