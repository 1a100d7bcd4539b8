// A Z-Wave node block from its classification to the notice that hands the device over.
#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>

#include "support/plain_router.h"
#include "support/script.h"

namespace {

using fuzz::require;

template <typename T>
bool same(const T& one, const T& other) {
  return std::memcmp(&one, &other, sizeof one) == 0;
}

// What classification copies or leaves of a node that it has classified.
void checkClassified(const TembraAssociation& assoc, const ZwNodeInfo& received) {
  const ZwNodeInfo& work = assoc.zwNodeWork;
  require(work.nodeId == received.nodeId && work.deviceKind == DEVICE_ZWAVE && work.requestMark == 255,
          "a classified node is marked as added");
  require(work.proposedType == assoc.classifiedType && DevId == fuzz::IdStage::kNextId, "type and id are noted");
  require(work.basicClass == received.basicClass && work.genericClass == received.genericClass &&
              work.specificClass == received.specificClass && same(work.values, received.values),
          "classes and values stay");
  require(fuzz::isTerminated(assoc.devName) && std::strcmp(work.name, assoc.devName) == 0, "the node has its name");
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
  const int classified = assoc.ZW_createDeviceType();
  require(same(assoc.zwNodeRx, received), "a received node stays as it was received");
  require(classified == (received.basicClass == 0 ? 0 : 1), "a node is classified when it has a basic class");
  if (classified == 0) return 0;
  checkClassified(assoc, received);
  finish(assoc, script);
  return 0;
}
