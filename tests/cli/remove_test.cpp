// Removing without a terminal.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

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
  EXPECT_EQ(nlohmann::json::parse(removed.output),
            nlohmann::json::parse(R"({"event": "REMOVED", "code": 11, "source": "Z-Wave", "name": "Loud", "id": 1})"));
  router.stop();
}

TEST(Remove, FailsForADeviceThatIsNotInTheList) {
  SimRouter router;
  const Ended removed = router.remove("siren", {"--yes"});
  EXPECT_EQ(removed.status, 1);
  EXPECT_EQ(removed.sentence(),
            "tembra-assoc: the device that answered is not in the device list; nothing was dropped from it.");
  router.stop();
}

TEST(Remove, FailsWhenTheRadioDoesNotConfirm) {
  SimRouter router({"--fault", "closing:lost"});
  ASSERT_EQ(router.add("siren", {"--name", "Loud"}).status, 0);
  const Ended removed = router.remove("siren", {"--yes"}, Clock::kFast);
  EXPECT_EQ(removed.status, 1);
  EXPECT_EQ(removed.sentence(),
            "tembra-assoc: Loud (id 1) left the device list, but the radio did not confirm its removal.");
  router.stop();
}

TEST(Remove, FailsWhenNoDeviceAnswers) {
  SimRouter router;
  const Ended removed = runAssoc({"remove", "--yes"}, Clock::kFast);
  EXPECT_EQ(removed.status, 1);
  EXPECT_EQ(removed.sentence(), "tembra-assoc: no device answered the removal in time.");
  router.waitFor("library -> Z-Wave server   cancel");
  router.stop();
}

}  // namespace
}  // namespace tembra::test
