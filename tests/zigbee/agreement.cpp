#include "agreement.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iomanip>
#include <sstream>

#include "oracle/zigbee_reading.h"

using oracle::DescribedDevice;

namespace {

constexpr int kMostShown = 5;

// What stands in the fields before, so that what is left alone can be told from what is written.
void prepare(TembraAssociation& assoc, const ZbDeviceInfo& device) {
  assoc.zbDevice = device;
  assoc.classifiedType = 12345;
  std::memset(assoc.devName, '~', sizeof assoc.devName);
}

DescribedDevice deviceOf(const TembraAssociation& assoc) {
  DescribedDevice device;
  std::memcpy(device.record.bytes.data(), &assoc.zbDevice, sizeof device.record);
  std::memcpy(device.name.bytes.data(), assoc.devName, sizeof device.name);
  device.classifiedType = assoc.classifiedType;
  return device;
}

bool holds(const TembraAssociation& assoc, const DescribedDevice& plain) {
  return std::memcmp(&assoc.zbDevice, &plain.record, sizeof plain.record) == 0 &&
         std::memcmp(assoc.devName, &plain.name, sizeof plain.name) == 0 &&
         assoc.classifiedType == plain.classifiedType;
}

// All bytes of the service object, with zeros for the fields that classification may write.
std::vector<unsigned char> otherBytesOf(const TembraAssociation& assoc) {
  std::vector<unsigned char> bytes(sizeof assoc);
  std::memcpy(bytes.data(), static_cast<const void*>(&assoc), bytes.size());
  const auto clear = [&](const void* field, std::size_t size) {
    const auto offset = static_cast<const char*>(field) - reinterpret_cast<const char*>(&assoc);
    std::memset(bytes.data() + offset, 0, size);
  };
  clear(&assoc.zbDevice, sizeof assoc.zbDevice);
  clear(assoc.devName, sizeof assoc.devName);
  clear(&assoc.classifiedType, sizeof assoc.classifiedType);
  return bytes;
}

template <std::size_t Size>
std::string quoted(const char (&field)[Size]) {
  return '"' + kit::visible({field, strnlen(field, Size)}) + '"';
}

struct Hex {
  unsigned value;
};

std::ostream& operator<<(std::ostream& stream, Hex number) {
  return stream << "0x" << std::hex << std::setw(4) << std::setfill('0') << number.value << std::dec;
}

// "at 212: 60, 7 by the oracle;"
std::string differences(const DescribedDevice& found, const DescribedDevice& plain) {
  std::ostringstream text;
  for (std::size_t at = 0; at < found.record.bytes.size(); ++at) {
    if (found.record.byte(at) == plain.record.byte(at)) continue;
    text << " at " << at << ": " << found.record.byte(at) << ", " << plain.record.byte(at) << " by the oracle;";
  }
  return text.str();
}

std::string describeOutcome(const DescribedDevice& device, int result, const std::string& trace) {
  return "result " + std::to_string(result) + " classified type " + std::to_string(device.classifiedType) + " name " +
         kit::visible(device.name.text()) + "\n" + trace;
}

std::string traceOf(const oracle::Lines& log) {
  std::string trace;
  for (const std::string& line : log) {
    kit::appendVisible(trace, line);
    trace += '\n';
  }
  return trace;
}

}  // namespace

Agreement::Agreement(kit::Router& router) : router_(router), assoc_(router.assoc()), before_(otherBytesOf(assoc_)) {}

void Agreement::check(const ZbDeviceInfo& device, int deviceId) {
  prepare(assoc_, device);
  DevId = deviceId;
  DescribedDevice plain = deviceOf(assoc_);
  const oracle::ZigbeeOutcome outcome = readDescription(plain, deviceId);
  const std::string expected = traceOf(outcome.log);

  const int result = assoc_.validate_DeviceType();
  const std::string trace = router_.takeTrace();
  ++checked_;
  if (result == outcome.result && trace == expected && holds(assoc_, plain) && DevId == deviceId) return;
  if (++shown_ > kMostShown) return;
  const DescribedDevice found = deviceOf(assoc_);
  ADD_FAILURE() << describe(device) << "\nrecord" << differences(found, plain)
                << "\nlibrary: " << describeOutcome(found, result, trace)
                << "oracle: " << describeOutcome(plain, outcome.result, expected);
}

void Agreement::expectNothingElseTouched() const {
  EXPECT_TRUE(otherBytesOf(assoc_) == before_) << "another field of the service object has changed";
}

std::string describe(const ZbDeviceInfo& device) {
  std::ostringstream text;
  text << "clusters";
  for (const ZbClusterEntry& entry : device.clusters) {
    if (entry.cluster == 0xFFFF) break;
    text << " " << Hex{entry.cluster} << "@" << entry.endpoint;
  }
  text << ", manufacturer " << quoted(device.manufacturer) << ", model " << quoted(device.model) << ", zone "
       << Hex{device.zoneType} << ", type byte " << int{device.devType} << ", checks " << device.acCheckA << " "
       << device.acCheckB << " " << device.acCheckC << ", product words " << Hex{device.productWordA} << " "
       << Hex{device.productWordB} << ", index byte 318: " << int{device.indexCount};
  return text.str();
}
