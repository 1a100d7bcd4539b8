// Removing without a terminal.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "kit/text.h"
#include "support/files.h"
#include "support/sim_router.h"

namespace tembra::test {
namespace {

TEST(Remove, DropsTheDeviceFromTheList) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {"--name", "Loud"}).status, 0);
  const Ended removed = router.remove("siren", {"--yes"});
  ASSERT_EQ(removed.status, 0) << removed.errors;
  EXPECT_NE(removed.output.find("Removed Loud (id 1)."), std::string::npos) << removed.output;
  router.waitFor("HA server -> database   node 2 dropped");
  EXPECT_EQ(runAssoc({"devices", "--json"}).output, "");
  router.stop();
}

TEST(Remove, WritesTheNameAndTheIdAsJson) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {"--name", "Loud"}).status, 0);
  const Ended removed = router.remove("siren", {"--yes", "--json"});
  EXPECT_EQ(removed.status, 0) << removed.errors;
  const std::vector<std::string> lines = kit::linesOf(removed.output);
  ASSERT_EQ(lines.size(), 4U) << removed.output;
  const auto left = nlohmann::json::parse(lines[2]);
  EXPECT_EQ(left.at("event"), "removed");
  EXPECT_EQ(left.at("name"), "Loud");
  EXPECT_EQ(left.at("id"), 1);
  router.stop();
}

TEST(Remove, AsksAProgramUntilItSaysYesOrNo) {
  SimRouter router;
  writeFile("/tmp/answers", "{\"confirm\":\"yes\"}\nyes\n{\"confirm\":false}\n");
  const Ended refused = Program({"/bin/sh", "-c", TEMBRA_ASSOC_PROGRAM " remove --json </tmp/answers"}).end();
  EXPECT_EQ(refused.status, 1);
  const std::vector<std::string> lines = kit::linesOf(refused.output);
  ASSERT_EQ(lines.size(), 6U) << refused.output;
  const auto asked = nlohmann::json::parse(lines[0]);
  EXPECT_EQ(asked.at("text"), "Remove the next device whose button is pressed from the home and the device list?");
  for (const std::size_t row : {1U, 3U}) {
    EXPECT_EQ(nlohmann::json::parse(lines[row]).at("text"),
              R"(the answer is neither {"confirm":true} nor {"confirm":false}.)");
  }
  EXPECT_EQ(nlohmann::json::parse(lines[5]).at("text"), "not confirmed, nothing was done.");
  router.stop();
}

TEST(Remove, FailsForADeviceThatIsNotInTheList) {
  SimRouter router;
  const Ended removed = router.remove("siren", {"--yes"});
  EXPECT_EQ(removed.status, 1);
  EXPECT_NE(removed.sentence().find("The device that left is not in the device list."), std::string::npos)
      << removed.errors;
  router.stop();
}

TEST(Remove, IsDoneThoughTheRadioDoesNotConfirm) {
  SimRouter router({"--fault", "closing:lost"});
  ASSERT_EQ(router.add("siren", {"--name", "Loud"}).status, 0);
  const Ended removed = router.remove("siren", {"--yes"}, Clock::kFast);
  EXPECT_EQ(removed.status, 0) << removed.errors;
  EXPECT_NE(removed.output.find("Removed Loud (id 1)."), std::string::npos) << removed.output;
  router.stop();
}

TEST(Remove, FailsWhenNoDeviceAnswers) {
  SimRouter router;
  const Ended removed = runAssoc({"remove", "--yes"}, Clock::kFast);
  EXPECT_EQ(removed.status, 1);
  EXPECT_NE(removed.sentence().find("No device answered in time."), std::string::npos) << removed.errors;
  router.waitFor("library -> Z-Wave server   cancel");
  router.stop();
}

}  // namespace
}  // namespace tembra::test
