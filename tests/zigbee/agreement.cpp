#include "agreement.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "plain_reading.h"

namespace {

constexpr int kMostShown = 5;

/// All bytes of the service object.
class ObjectImage {
 public:
  explicit ObjectImage(const TembraAssociation& assoc) : assoc_(assoc), bytes_(sizeof assoc) {
    std::memcpy(bytes_.data(), static_cast<const void*>(&assoc), sizeof assoc);
  }

  /// Replaces what the image holds of a field of the object.
  void put(const void* field, const void* value, std::size_t size) {
    const auto offset = static_cast<const char*>(field) - reinterpret_cast<const char*>(&assoc_);
    std::memcpy(bytes_.data() + offset, value, size);
  }

  [[nodiscard]] std::string differences(const ObjectImage& other) const {
    std::string offsets;
    for (std::size_t at = 0; at < bytes_.size(); ++at) {
      if (bytes_[at] == other.bytes_[at]) continue;
      offsets += " " + where(at) + " " + std::to_string(bytes_[at]) + " / " + std::to_string(other.bytes_[at]) + ",";
    }
    return offsets;
  }

  friend bool operator==(const ObjectImage& one, const ObjectImage& other) { return one.bytes_ == other.bytes_; }

 private:
  [[nodiscard]] std::string where(std::size_t at) const {
    const auto record = static_cast<std::size_t>(reinterpret_cast<const char*>(&assoc_.zbDevice) -
                                                 reinterpret_cast<const char*>(&assoc_));
    if (at >= record && at < record + sizeof(ZbDeviceInfo)) return "record byte " + std::to_string(at - record);
    return "object byte " + std::to_string(at);
  }

  const TembraAssociation& assoc_;
  std::vector<unsigned char> bytes_;
};

// What stands in the fields before, so that what is left alone can be told from what is written.
void prepare(TembraAssociation& assoc, const ZbDeviceInfo& device) {
  assoc.zbDevice = device;
  assoc.classifiedType = 12345;
  std::memset(assoc.devName, '~', sizeof assoc.devName);
  std::memset(assoc.devLocation, '~', sizeof assoc.devLocation);
}

PlainDevice plainDeviceOf(const TembraAssociation& assoc) {
  PlainDevice device;
  std::memcpy(device.record.data(), &assoc.zbDevice, device.record.size());
  std::memcpy(device.name.data(), assoc.devName, device.name.size());
  device.classifiedType = assoc.classifiedType;
  return device;
}

template <std::size_t Size>
std::string quoted(const char (&field)[Size]) {
  return '"' + harness::visible({field, strnlen(field, Size)}) + '"';
}

std::string hex(unsigned value) {
  char text[12];
  std::snprintf(text, sizeof text, "0x%04X", value);
  return text;
}

}  // namespace

void Agreement::check(const ZbDeviceInfo& device, int deviceId) {
  prepare(assoc_, device);
  DevId = deviceId;
  PlainDevice plain = plainDeviceOf(assoc_);
  ObjectImage expected(assoc_);
  const PlainOutcome outcome = readPlainly(plain, deviceId);
  expected.put(&assoc_.zbDevice, plain.record.data(), plain.record.size());
  expected.put(assoc_.devName, plain.name.data(), plain.name.size());
  expected.put(&assoc_.classifiedType, &plain.classifiedType, sizeof plain.classifiedType);

  const int result = assoc_.validate_DeviceType();
  const std::string log = router_.takeTrace();
  const ObjectImage found(assoc_);
  ++checked_;
  const bool agree = result == outcome.result && log == outcome.log && found == expected && DevId == deviceId;
  if (agree || ++shown_ > kMostShown) return;
  ADD_FAILURE() << describe(device) << "\n  result " << result << " / " << outcome.result
                << "\n  library / plain:" << found.differences(expected) << "\n  name " << quoted(assoc_.devName)
                << " / \"" << plain.name.data() << "\"\nlog of the library:\n"
                << log << "log of the plain reading:\n"
                << outcome.log;
}

std::string describe(const ZbDeviceInfo& device) {
  std::string text = "clusters";
  for (const ZbClusterEntry& entry : device.clusters) {
    if (entry.cluster == 0xFFFF) break;
    text += " " + hex(entry.cluster) + "@" + std::to_string(entry.endpoint);
  }
  return text + ", manufacturer " + quoted(device.manufacturer) + ", model " + quoted(device.model) + ", zone " +
         hex(device.zoneType) + ", type byte " + std::to_string(device.devType) + ", checks " +
         std::to_string(device.acCheckA) + " " + std::to_string(device.acCheckB) + " " +
         std::to_string(device.acCheckC) + ", product words " + hex(device.productWordA) + " " +
         hex(device.productWordB) + ", index byte 318: " + std::to_string(device.indexCount);
}
