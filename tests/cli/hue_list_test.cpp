// The list of Hue bridges, over databases as they should be and as they should not.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "support/database.h"
#include "support/program.h"

namespace tembra::test {
namespace {

constexpr int kIpDevice = 3;

std::string indexRecord(const std::string& text) {
  IndexRecord index{};
  text.copy(index.value, sizeof index.value);
  std::string bytes(sizeof index, '\0');
  std::memcpy(bytes.data(), &index, sizeof index);
  return bytes;
}

void putLamp(DEPOT* depot, int id, const std::string& bridgeId, const std::string& user) {
  const std::string key = std::to_string(id);
  put(depot, key, record(id, "Lamp", "HueLamp", kIpDevice, 0, 0));
  put(depot, key + ".1", indexRecord(bridgeId));
  put(depot, key + ".9", indexRecord(user));
}

TEST(HueList, ShowsABridgeAndItsUser) {
  putLamp(openWriter().get(), 1, "a1b2c3fffe0a1b2c", "somebody");
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 0) << list.errors;
  EXPECT_EQ(list.output,
            "Bridge             User\n"
            "a1:b2:c3:0a:1b:2c  somebody\n");
  EXPECT_EQ(runAssoc({"hue", "list", "--json"}).output,
            "{\"MAClist\":[{\"mac\":\"a1:b2:c3:0a:1b:2c\",\"username\":\"somebody\"}]}\n");
}

TEST(HueList, OfAHomeWithoutBridgesIsAHeading) {
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(list.output, "Bridge             User\n");
  EXPECT_NE(list.errors.find("there is no device database yet at /tmp/ddb"), std::string::npos) << list.errors;
}

// The library copies users as they are.
TEST(HueList, WhoseUserBreaksTheJsonIsToldRaw) {
  putLamp(openWriter().get(), 1, "a1b2c3fffe0a1b2c",
          "some\"\x1b"
          "body");
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 1);
  EXPECT_EQ(list.sentence(),
            "tembra-assoc: the library's list of bridges is no JSON: "
            "{\"MAClist\":[{\"mac\":\"a1:b2:c3:0a:1b:2c\",\"username\":\"some\"?body\"}]}");
}

TEST(HueList, IsRefusedWhereTheLibraryWouldDeleteTheDatabase) {
  std::filesystem::create_directory(kDatabase);
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 1);
  EXPECT_EQ(list.sentence(), "tembra-assoc: /tmp/ddb is a folder, not a device database.");
  EXPECT_TRUE(std::filesystem::exists(kDatabase));
}

TEST(HueList, IsRefusedWhileTheDatabaseStaysLocked) {
  const Writer lock = openWriter();
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 1);
  EXPECT_EQ(list.sentence(), "tembra-assoc: the device database /tmp/ddb stays locked by another process.");
}

}  // namespace
}  // namespace tembra::test
