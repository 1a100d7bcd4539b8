// A ZigBee device description from its classification to the notice that hands the device over.
#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>
#include <string>

#include "oracle/zigbee_reading.h"
#include "support/plain_router.h"
#include "support/script.h"

namespace {

using fuzz::require;

oracle::DescribedDevice stateOf(const TembraAssociation& assoc) {
  oracle::DescribedDevice device;
  std::memcpy(device.record.bytes.data(), &assoc.zbDevice, sizeof assoc.zbDevice);
  std::memcpy(device.name.bytes.data(), assoc.devName, sizeof assoc.devName);
  device.classifiedType = assoc.classifiedType;
  return device;
}

void checkAsRead(const TembraAssociation& assoc, const oracle::DescribedDevice& read) {
  const oracle::DescribedDevice made = stateOf(assoc);
  require(made.record.bytes == read.record.bytes, "the description is what the oracle makes of it");
  require(made.name.bytes == read.name.bytes && made.classifiedType == read.classifiedType,
          "name and type are the oracle's");
}

void finish(TembraAssociation& assoc, fuzz::Script& script) {
  DevType types[6] = {};
  assoc.listSubDevType(static_cast<DevType>(assoc.classifiedType), types);
  assoc.setDevType(static_cast<DevType>(script.smallNumber()));
  const fuzz::CallersText name = script.text();
  const fuzz::CallersText location = script.text();
  if (name.get() != nullptr) assoc.setDevName(name.get());
  if (location.get() != nullptr) assoc.setDevLocation(location.get());
  assoc.addingDone();
  require(fuzz::isTerminated(assoc.zbDevice.location), "the location in the record ends");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Script script(data, size);
  fuzz::PlainRouter router;
  const fuzz::IdStage stage(router);
  TembraAssociation& assoc = stage.assoc();
  const auto received = script.read<ZbDeviceInfo>();
  assoc.zbDevice = received;
  require(assoc.GetDeviceTypeInStringFormat(script.word()) != nullptr, "every zone has a name");
  oracle::DescribedDevice read = stateOf(assoc);
  read.name.setText("UnknownDevice #" + std::to_string(fuzz::IdStage::kNextId));
  const oracle::ZigbeeOutcome outcome = oracle::readDescription(read, fuzz::IdStage::kNextId);
  require(assoc.zb_createAnyDevice() == outcome.result, "a device is created when the oracle says so");
  require(DevId == fuzz::IdStage::kNextId, "the id is noted");
  checkAsRead(assoc, read);
  if (outcome.result != 0) return 0;
  finish(assoc, script);
  return 0;
}
