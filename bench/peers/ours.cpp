// The library's side of `./run-bench --peers`: for each line of standard input, "types" or "names", one line with the
// nanoseconds that a piece of it took.
// usage: tembra-peer DEVICES     DEVICES: zigbee_real.json of the collection of real devices
#include <tembra/assoc.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

constexpr unsigned short kEndOfClusters = 0xFFFF;
constexpr int kRoundsOfTypes = 50;
constexpr int kRoundsOfNames = 2000;

template <std::size_t Size>
void fill(char (&field)[Size], const json& text) {
  const auto& whole = text.get_ref<const std::string&>();
  std::memcpy(field, whole.data(), std::min(whole.size(), Size));
}

// A record holds what fits: 30 clusters, 80 and 22 bytes of text.
ZbDeviceInfo recordOf(const json& device) {
  ZbDeviceInfo record{};
  fill(record.manufacturer, device.at("manufacturer"));
  fill(record.model, device.at("model"));
  if (!device.at("zone_type").is_null()) record.zoneType = device.at("zone_type").get<unsigned short>();
  std::size_t used = 0;
  for (const json& cluster : device.at("clusters")) {
    if (used == std::size(record.clusters)) break;
    record.clusters[used++] = {cluster.at(0).get<unsigned short>(), cluster.at(1).get<unsigned short>()};
  }
  if (used < std::size(record.clusters)) record.clusters[used].cluster = kEndOfClusters;
  return record;
}

std::vector<ZbDeviceInfo> devicesOf(const char* path) {
  std::ifstream file(path);
  std::vector<ZbDeviceInfo> devices;
  for (const json& device : json::parse(file)) devices.push_back(recordOf(device));
  return devices;
}

template <typename Run>
double nanosecondsOf(Run run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

double typeAll(TembraAssociation& assoc, const std::vector<ZbDeviceInfo>& devices) {
  const double all = nanosecondsOf([&] {
    for (int round = 0; round < kRoundsOfTypes; ++round) {
      for (const ZbDeviceInfo& device : devices) {
        assoc.zbDevice = device;
        assoc.validate_DeviceType();
      }
    }
  });
  return all / kRoundsOfTypes / static_cast<double>(devices.size());
}

double nameAll() {
  volatile std::uintptr_t sum = 0;  // the calls are not for nothing
  const double all = nanosecondsOf([&sum] {
    for (int call = 0; call < kRoundsOfNames * 256; ++call) {
      sum = sum + reinterpret_cast<std::uintptr_t>(cclassStr(static_cast<unsigned char>(call)));
    }
  });
  return all / kRoundsOfNames / 256;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 2) return 2;
  const std::vector<ZbDeviceInfo> devices = devicesOf(argv[1]);
  TembraAssociation& assoc = *TembraAssociation::LCDAssocInit();
  for (std::string what; std::getline(std::cin, what);) {
    std::printf("%.2f\n", what == "types" ? typeAll(assoc, devices) : nameAll());
    std::fflush(stdout);
  }
  return 0;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "tembra-peer: %s\n", failure.what());
  return 1;
}
