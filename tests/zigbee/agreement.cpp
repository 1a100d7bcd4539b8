#include "agreement.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iomanip>
#include <sstream>

namespace {

constexpr int kMostShown = 5;

// What stands in the fields before, so that what is left alone can be told from what is written.
void prepare(TembraAssociation& assoc, const ZbDeviceInfo& device) {
  assoc.zbDevice = device;
  assoc.classifiedType = 12345;
  std::memset(assoc.devName, '~', sizeof assoc.devName);
}

PlainDevice deviceOf(const TembraAssociation& assoc) {
  PlainDevice device;
  std::memcpy(device.record.data(), &assoc.zbDevice, device.record.size());
  std::memcpy(device.name.data(), assoc.devName, device.name.size());
  device.classifiedType = assoc.classifiedType;
  return device;
}

bool holds(const TembraAssociation& assoc, const PlainDevice& plain) {
  return std::memcmp(&assoc.zbDevice, plain.record.data(), plain.record.size()) == 0 &&
         std::memcmp(assoc.devName, plain.name.data(), plain.name.size()) == 0 &&
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

// "at 212: 60, 7 in the plain reading;"
std::string differences(const PlainDevice& found, const PlainDevice& plain) {
  std::ostringstream text;
  for (std::size_t at = 0; at < found.record.size(); ++at) {
    if (found.record[at] == plain.record[at]) continue;
    text << " at " << at << ": " << int{found.record[at]} << ", " << int{plain.record[at]} << " in the plain reading;";
  }
  return text.str();
}

std::string describeOutcome(const PlainDevice& device, const PlainOutcome& outcome) {
  return "result " + std::to_string(outcome.result) + " classified type " + std::to_string(device.classifiedType) +
         " name " + kit::visible({device.name.data(), device.name.size()}) + "\n" + outcome.log;
}

}  // namespace

Agreement::Agreement(kit::Router& router) : router_(router), assoc_(router.assoc()), before_(otherBytesOf(assoc_)) {}

void Agreement::check(const ZbDeviceInfo& device, int deviceId) {
  prepare(assoc_, device);
  DevId = deviceId;
  PlainDevice plain = deviceOf(assoc_);
  const PlainOutcome expected = readPlainly(plain, deviceId);

  const int result = assoc_.validate_DeviceType();
  const PlainOutcome found{result, router_.takeTrace()};
  ++checked_;
  if (found == expected && holds(assoc_, plain) && DevId == deviceId) return;
  if (++shown_ <= kMostShown) show(device, plain, expected, found);
}

void Agreement::show(const ZbDeviceInfo& device, const PlainDevice& plain, const PlainOutcome& expected,
                     const PlainOutcome& found) {
  ADD_FAILURE() << describe(device) << "\nrecord" << differences(deviceOf(assoc_), plain)
                << "\nlibrary: " << describeOutcome(deviceOf(assoc_), found)
                << "plain reading: " << describeOutcome(plain, expected);
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
