// Adds the next device whose button is pressed, on the library's plain contract: without the front-end kit, in C++11.
#include <tembra/assoc.h>
#include <tembra/service.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>

static std::atomic<int> radio(0);
static std::atomic<int> type(DEVTYPE_UNKNOWN);
static std::atomic<int> outcome(0);

// On the receive thread: copy what you need, return soon.
static void onEvent(AssocEvent* event) {
  if (event->code == EVENT_ADDING || event->code == EVENT_GETTING_INFO) return;
  radio = event->source;
  type = TembraAssociation::getInstance()->classifiedType;
  outcome = event->code;  // the device is known, or EVENT_ALREADY_ADDED, EVENT_ADD_FAILED, EVENT_TIMEOUT
}

int main() {
  TembraAssociation* assoc = TembraAssociation::LCDAssocInit();
  assoc->registerAssocEventCB(onEvent);
  if (assoc->checkAssocConnection() != 0) return 1;  // another front end has it open
  std::puts("Press the button of the device.");
  assoc->addDevZigbeeZwave();
  while (outcome == 0) std::this_thread::sleep_for(std::chrono::milliseconds(10));  // three minutes at most
  bool handedOver = false;
  if (outcome == EVENT_SELECT_TYPE || outcome == EVENT_CREATED) {
    tembra_settle(1000);
    // The one rule for types: a Z-Wave node has the classified type; a ZigBee device has its type and name already.
    if (radio == SERVER_ZWAVE) assoc->setDevType(static_cast<DevType>(type.load()));
    handedOver = assoc->addingDone() == 0;  // before it setDevName and setDevLocation, if the user wants others
  }
  assoc->closeAssocConnection();
  std::puts(handedOver ? "Handed over to the HA server." : "Not added.");
  return handedOver ? 0 : 1;
}
