// The front end's calls of the library, for the account. They stand before the library's own definitions.
#include <tembra/association.h>

#include "campaign/account.h"
#include "platform/next_definition.h"

namespace {

using campaign::Counterpart;
using campaign::Happening;

thread_local int depth = 0;

/// What the library itself calls meanwhile is its own affair.
class Call {
 public:
  explicit Call(const Happening& happening) {
    if (depth++ == 0) turn_ = campaign::accountFor(happening);
  }
  ~Call() { --depth; }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  /// Before a call that waits for others.
  void giveWay() {
    if (turn_) turn_.unlock();
  }

 private:
  campaign::Turn turn_;
};

template <typename Result, typename... Arguments>
Result pass(const char* symbol, Arguments... arguments) {
  return reinterpret_cast<Result (*)(Arguments...)>(tembra::nextDefinition(symbol))(arguments...);
}

}  // namespace

// The whole receive thread is the library's own.
void* TembraAssociation::receiverHelper(void* self) {
  const campaign::ReceiveThread thread;
  ++depth;
  return pass<void*>("_ZN17TembraAssociation14receiverHelperEPv", self);
}

int TembraAssociation::checkAssocConnection() {
  Call call([](Counterpart& model) { model.open(); });
  call.giveWay();
  return pass<int>("_ZN17TembraAssociation20checkAssocConnectionEv", this);
}

void TembraAssociation::closeAssocConnection() {
  Call call([](Counterpart& model) { model.closeSilently(); });
  call.giveWay();
  pass<void>("_ZN17TembraAssociation20closeAssocConnectionEv", this);
}

void TembraAssociation::addDevZigbeeZwave() {
  const Call call([](Counterpart& model) { model.startAdding(); });
  pass<void>("_ZN17TembraAssociation17addDevZigbeeZwaveEv", this);
}

void TembraAssociation::removeDevZigbeeZwave() {
  const Call call([](Counterpart& model) { model.startRemoving(); });
  pass<void>("_ZN17TembraAssociation20removeDevZigbeeZwaveEv", this);
}

void TembraAssociation::sendCancelTo(cancel_type type) {
  const Call call([=](Counterpart& model) { model.cancel(type); });
  pass<void>("_ZN17TembraAssociation12sendCancelToE11cancel_type", this, type);
}

void TembraAssociation::doResetFor(reset_type type) {
  Call call([=](Counterpart& model) { model.reset(type); });
  call.giveWay();
  pass<void>("_ZN17TembraAssociation10doResetForE10reset_type", this, type);
}

void TembraAssociation::setDevType(DevType type) {
  const Call call([=](Counterpart& model) { model.restoreOffered(), model.chooseType(type); });
  pass<void>("_ZN17TembraAssociation10setDevTypeE7DevType", this, type);
}

void TembraAssociation::setDevName(char* name) {
  const Call call([=](Counterpart& model) { model.restoreOffered(), model.setName(name); });
  pass<void>("_ZN17TembraAssociation10setDevNameEPc", this, name);
}

void TembraAssociation::setDevLocation(char* location) {
  const Call call([=](Counterpart& model) { model.setLocation(location); });
  pass<void>("_ZN17TembraAssociation14setDevLocationEPc", this, location);
}

int TembraAssociation::addingDone() {
  const Call call([](Counterpart& model) { model.finish(); });
  return pass<int>("_ZN17TembraAssociation10addingDoneEv", this);
}

unsigned char* TembraAssociation::Hue_initiateAdd() {
  const Call call([](Counterpart& model) { model.hueDiscover(); });
  return pass<unsigned char*>("_ZN17TembraAssociation15Hue_initiateAddEv", this);
}

unsigned char* TembraAssociation::Hue_addBridge(char* mac) {
  const Call call([=](Counterpart& model) { model.hueAddBridge(mac); });
  return pass<unsigned char*>("_ZN17TembraAssociation13Hue_addBridgeEPc", this, mac);
}

unsigned char* TembraAssociation::Hue_addDev(char* mac, char* text) {
  const Call call([=](Counterpart& model) { model.hueAddBulb(mac, text); });
  return pass<unsigned char*>("_ZN17TembraAssociation10Hue_addDevEPcS0_", this, mac, text);
}

unsigned char* TembraAssociation::Hue_refreshBridge(char* mac, char* text) {
  const Call call([=](Counterpart& model) { model.hueRefresh(mac, text); });
  return pass<unsigned char*>("_ZN17TembraAssociation17Hue_refreshBridgeEPcS0_", this, mac, text);
}

unsigned char* TembraAssociation::Hue_remove(char* mac) {
  const Call call([=](Counterpart& model) { model.hueRemove(mac); });
  return pass<unsigned char*>("_ZN17TembraAssociation10Hue_removeEPc", this, mac);
}

unsigned char* TembraAssociation::Nest_add(char* text) {
  const Call call([=](Counterpart& model) { model.nestAdd(text); });
  return pass<unsigned char*>("_ZN17TembraAssociation8Nest_addEPc", this, text);
}

unsigned char* TembraAssociation::Nest_remove() {
  const Call call([](Counterpart& model) { model.nestRemove(); });
  return pass<unsigned char*>("_ZN17TembraAssociation11Nest_removeEv", this);
}
