// A Z-Wave node block from its classification to the notice that hands the device over.
#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>

#include "oracle/node_reading.h"
#include "support/plain_router.h"
#include "support/script.h"

namespace {

using fuzz::require;

template <typename T>
bool same(const T& one, const T& other) {
  return std::memcmp(&one, &other, sizeof one) == 0;
}

oracle::NodeOutcome stateOf(const TembraAssociation& assoc) {
  return {0,
          {},
          {},
          assoc.zwNodeWork,
          assoc.classifiedType,
          assoc.devName,
          {BasicFlag, MultilevelFlag, SensorBinaryFlag, ZwAcExtFlag}};
}

void checkAsRead(const TembraAssociation& assoc, const oracle::NodeOutcome& read) {
  const oracle::NodeOutcome made = stateOf(assoc);
  require(same(made.work, read.work), "the working copy is what the oracle makes of it");
  require(made.classifiedType == read.classifiedType && made.name == read.name && made.raised == read.raised,
          "type, name and capabilities are the oracle's");
}

void finish(TembraAssociation& assoc, fuzz::Script& script) {
  DevType types[6] = {};
  assoc.listSubDevType(static_cast<DevType>(assoc.zwNodeWork.proposedType), types);
  assoc.setDevType(static_cast<DevType>(script.smallNumber()));
  const fuzz::CallersText name = script.text();
  if (name.get() != nullptr) assoc.setDevName(name.get());
  require(fuzz::isTerminated(assoc.devName) && fuzz::isTerminated(assoc.devLocation), "name and location end");
  assoc.addingDone();
  require(fuzz::isZero(&assoc.zwNodeWork, 0, sizeof assoc.zwNodeWork), "a node that was handed over is forgotten");
  require(BasicFlag == 0 && MultilevelFlag == 0 && SensorBinaryFlag == 0 && ZwAcExtFlag == 0,
          "so are its capabilities");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Script script(data, size);
  fuzz::PlainRouter router;
  const fuzz::IdStage stage(router);
  TembraAssociation& assoc = stage.assoc();
  const auto received = script.read<ZwNodeInfo>();
  assoc.zwNodeRx = assoc.zwNodeWork = received;
  const oracle::NodeOutcome read = oracle::readNode(received, stateOf(assoc), fuzz::IdStage::kNextId);
  const int classified = assoc.ZW_createDeviceType();
  require(same(assoc.zwNodeRx, received), "a received node stays as it was received");
  require(classified == read.result, "a node is classified when the oracle says so");
  checkAsRead(assoc, read);
  if (classified == 0) return 0;
  finish(assoc, script);
  return 0;
}
