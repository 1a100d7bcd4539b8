// Default names of devices.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "kit/router.h"

using kit::Router;

TEST(DefaultNameTest, IsTheTypesNameAndTheId) {
  Router router;
  router.nameType(12, "Twelve");
  router.nameType(13, "");
  router.nameType(14, "%s%n");
  constexpr struct {
    int type;
    int id;
    const char* expected;
  } kRows[] = {
      {1, 17, "BinarySwitch #17"},
      {60, 5, "GenericDevice #5"},
      {12, 0, "Twelve #0"},
      {12, -1, "Twelve #-1"},
      {13, 4, " #4"},
      {14, 1, "%s%n #1"},
      {12, INT_MAX, "Twelve #2147483647"},
      {12, INT_MIN, "Twelve #-2147483648"},
  };
  for (const auto& row : kRows) {
    char out[192];
    std::memset(out, 'z', sizeof out);
    const auto length = static_cast<std::size_t>(getDefaultDevName(static_cast<DevType>(row.type), row.id, out));
    EXPECT_STREQ(out, row.expected);
    EXPECT_EQ(length, std::strlen(row.expected));
    EXPECT_EQ(std::string(out + length + 1, sizeof out - length - 1), std::string(sizeof out - length - 1, 'z'))
        << "nothing is written behind it";
  }
  EXPECT_EQ(router.takeTrace(), "");
}

// The type's name is cut at 179 characters, the whole at the room that a caller gives.
TEST(DefaultNameTest, LongNamesAreCut) {
  Router router;
  for (const std::size_t length : {170U, 178U, 179U, 180U, 511U}) {
    const std::string name(length, 'x');
    router.nameType(12, name);
    for (const int id : {7, INT_MAX, INT_MIN}) {
      struct {
        char out[192];
        char behind = 'z';
      } caller;
      const std::string whole = name.substr(0, 179) + " #" + std::to_string(id);
      const std::string expected = whole.substr(0, sizeof caller.out - 1);
      EXPECT_EQ(getDefaultDevName(DEVTYPE_CONTACT_SWITCH, id, caller.out), static_cast<int>(expected.size()));
      EXPECT_EQ(caller.out, expected) << length << ", " << id;
      EXPECT_EQ(caller.behind, 'z');
    }
  }
}

TEST(DefaultNameTest, WithoutAPlaceNothingIsWritten) {
  const Router router;
  EXPECT_EQ(getDefaultDevName(DEVTYPE_BINARY_SWITCH, 17, nullptr), 0);
}
