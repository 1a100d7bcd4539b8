#include "support/object_check.h"

#include <tembra/globals.h>

#include "support/event_check.h"
#include "support/invariant.h"

namespace fuzz {
namespace {

bool isBit(unsigned char flag) { return flag <= 1; }

bool sameBytes(const void* one, const void* other, std::size_t begin, std::size_t end) {
  return std::memcmp(static_cast<const char*>(one) + begin, static_cast<const char*>(other) + begin, end - begin) == 0;
}

bool isKnownState(int state) { return state >= ASSOC_IDLE && state <= ZB_ADDED && state != 7; }

}  // namespace

ObjectCheck::ObjectCheck(TembraAssociation& assoc)
    : assoc_(assoc), localAddress_(assoc.localAddr), callback_(assoc.eventCallback) {}

void ObjectCheck::checkNumbers() const {
  require(idle <= 1, "idle is 0 or 1");
  require(isBit(BasicFlag) && isBit(MultilevelFlag) && isBit(SensorBinaryFlag) && isBit(ZwAcExtFlag),
          "capability flags are 0 or 1");
  require(isKnownState(assoc_.assocState) || assoc_.assocState == frontEndState_, "the state is one of its values");
  require(assoc_.lastEventCode == 0 || isProgressCode(assoc_.lastEventCode), "only progress is remembered");
  require(assoc_.cancelTarget >= 0 && assoc_.cancelTarget <= cancel_both, "the cancel target is one of its values");
  require(assoc_.activeRadio >= 0 && assoc_.activeRadio <= SERVER_NEST, "the active radio is one of its values");
  require(assoc_.closeMark == 0 || assoc_.closeMark == -1, "the close mark is one of its values");
  require(assoc_meshID == -1 || assoc_meshID == local_meshID, "an association is nobody's or this router's");
}

void ObjectCheck::checkTexts() const {
  require(isTerminated(tempStr), "tempStr ends");
  for (const auto& user : username1) require(isTerminated(user), "user names end");
  if (!textsEnd_) return;
  require(isTerminated(assoc_.devName), "the device's name ends");
  require(isTerminated(assoc_.devLocation), "the device's location ends");
  require(isTerminated(assoc_.removedName), "the removed device's name ends");
  require(isTerminated(cmdtype), "the command type ends");
}

// Of a ZigBee device the library writes the status, the type, and what stands behind the model.
void ObjectCheck::checkRecords() const {
  require(sameBytes(&assoc_.zwNodeRx, &node_, 0, sizeof node_), "a received node stays as it was received");
  constexpr struct {
    std::size_t begin, end;
  } untouched[] = {
      {offsetof(ZbDeviceInfo, shortAddress), offsetof(ZbDeviceInfo, msgCode)},
      {offsetof(ZbDeviceInfo, at11), offsetof(ZbDeviceInfo, devType)},
      {offsetof(ZbDeviceInfo, at213), offsetof(ZbDeviceInfo, indexCount)},
  };
  for (const auto& part : untouched) {
    require(sameBytes(&assoc_.zbDevice, &device_, part.begin, part.end), "a received device stays as received");
  }
}

void ObjectCheck::check(int boundSocket) const {
  checkNumbers();
  checkTexts();
  checkRecords();
  require(assoc_.sock == (boundSocket == -1 ? 0 : boundSocket), "the object holds the open socket");
  require(assoc_.running == (boundSocket == -1 ? 0 : 1), "it is running while the socket is open");
  require(assoc_.clientRole == role_, "the role is the one chosen");
  require(assoc_.eventCallback == callback_, "the callback is the one chosen");
  require(assoc_.logger == Logger::getInstance(), "the logger stays");
  require(sameBytes(&assoc_.localAddr, &localAddress_, 0, sizeof localAddress_), "the own address stays");
}

}  // namespace fuzz
