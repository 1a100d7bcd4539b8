// The list of Hue bridges, over databases as they should be and as they should not.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/files.h"
#include "support/program.h"

namespace tembra::test {
namespace {

void putLamp(int id, const std::string& bridgeId, const std::string& user) {
  Database().put(Device(id, "Lamp").type("HueLamp").ip()).index(id, 1, bridgeId).index(id, 9, user);
}

TEST(HueList, ShowsABridgeAndItsUser) {
  putLamp(1, "a1b2c3fffe0a1b2c", "somebody");
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 0) << list.errors;
  EXPECT_EQ(list.output,
            "Bridge             User\n"
            "a1:b2:c3:0a:1b:2c  somebody\n");
  const std::string json = runAssoc({"hue", "list", "--json"}).output;
  EXPECT_NE(json.find(R"("mac":"a1:b2:c3:0a:1b:2c","user":"somebody")"), std::string::npos) << json;
}

TEST(HueList, OfAHomeWithoutBridgesSaysSoAndMakesNoDatabase) {
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(list.output, "There are no Hue bridges in the device list.\n");
  EXPECT_FALSE(std::filesystem::exists(kDatabase));
}

struct Injection {
  const char* what;
  const char* user;
};

// Nobody checks a user on its way from a bridge into the database, and the library copies it as it is.
const Injection kInjections[] = {
    {"the end of its text",
     "some\"\x1b"
     "body"},
    {"another list", R"(u"}],"MAClist":[{"mac":"x","username":"v)"},
    {"another member", R"(u","username":"v)"},
    {"a member more", R"(u","role":"v)"},
    {"another bridge", R"(u"},{"mac":"x","username":"v)"},
    {"another kind of value", R"(u"},5,{"username":")"},
};

TEST(HueList, IsRefusedWhenAUserBreaksIt) {
  for (const Injection& injection : kInjections) {
    std::filesystem::remove(kDatabase);
    putLamp(1, "a1b2c3fffe0a1b2c", injection.user);
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"hue", "list"}, {"hue", "list", "--json"}}) {
      const Ended list = runAssoc(command);
      EXPECT_EQ(list.status, 1) << injection.what;
      EXPECT_NE((list.output + list.errors).find("The device list is damaged."), std::string::npos)
          << injection.what << list.errors;
      EXPECT_EQ(list.sentence().find('\x1b'), std::string::npos);
    }
  }
}

TEST(HueList, ShowsAUserWithoutWhatSteersATerminal) {
  putLamp(1, "a1b2c3fffe0a1b2c", "\xc2\x9b\x32Jmo\xc3\xbc\xe2\x80\xaeor");
  EXPECT_EQ(runAssoc({"hue", "list"}).output,
            "Bridge             User\n"
            "a1:b2:c3:0a:1b:2c  ?2Jmo\xc3\xbc?or\n");
  const std::string json = runAssoc({"hue", "list", "--json"}).output;
  EXPECT_NE(json.find(R"("user":"\u009b2Jmo\u00fc\u202eor")"), std::string::npos) << json;
}

TEST(HueList, IsRefusedWhereTheLibraryWouldDeleteTheDatabase) {
  std::filesystem::create_directory(kDatabase);
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 1);
  EXPECT_NE(list.sentence().find("The device list cannot be read (Is a directory)"), std::string::npos) << list.errors;
  EXPECT_TRUE(std::filesystem::exists(kDatabase));
}

TEST(HueList, IsRefusedWhileTheDatabaseStaysLocked) {
  const OpenDatabase lock;
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 1);
  EXPECT_NE(list.sentence().find("The device list cannot be read"), std::string::npos) << list.errors;
}

}  // namespace
}  // namespace tembra::test
