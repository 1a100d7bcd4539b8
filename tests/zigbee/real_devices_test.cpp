// Real ZigBee devices, from a collection that is not part of the project: the build is told its folder, TEMBRA_CORPUS.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "agreement.h"

using kit::Router;
using kit::ZigbeeDevice;
using nlohmann::json;

namespace {

json realDevices() {
  std::ifstream file(TEMBRA_CORPUS "/zigbee_real.json");
  return json::parse(file, nullptr, false);
}

// A record holds what fits: 30 clusters, 80 and 22 bytes of text. Some devices list the end mark in between.
ZbDeviceInfo recordOf(const json& device) {
  ZigbeeDevice record(0x1234);
  record.maker(device.at("manufacturer").get<std::string>()).model(device.at("model").get<std::string>());
  if (!device.at("zone_type").is_null()) record.zone(device.at("zone_type").get<unsigned short>());
  for (const json& cluster : device.at("clusters")) {
    record.cluster(cluster.at(0).get<unsigned short>(), cluster.at(1).get<unsigned short>());
  }
  return record.info();
}

}  // namespace

TEST(RealDevicesTest, AreClassifiedAsTheOracleSays) {
  Router router;
  const json devices = realDevices();
  ASSERT_TRUE(devices.is_array());
  Agreement agreement(router);
  std::map<int, int> timesOfType;
  for (const json& device : devices) {
    agreement.check(recordOf(device), 17);
    ++timesOfType[router.assoc().zbDevice.devType];
  }
  agreement.expectNothingElseTouched();
  EXPECT_EQ(agreement.checked(), 179);
  EXPECT_GT(timesOfType.size(), 10U) << "the collection shows most kinds of devices";
}
