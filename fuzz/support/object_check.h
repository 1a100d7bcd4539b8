// What holds for the service object and the globals whenever the library is at rest.
#ifndef TEMBRA_FUZZ_SUPPORT_OBJECT_CHECK_H
#define TEMBRA_FUZZ_SUPPORT_OBJECT_CHECK_H

#include <tembra/association.h>

#include <cstring>

namespace fuzz {

/// Follows what only others write: a byte written past a field of the object lands in one of these.
class ObjectCheck {
 public:
  explicit ObjectCheck(TembraAssociation& assoc);

  // What the surroundings did.
  void zwaveReceived(const unsigned char* buffer) { std::memcpy(&node_, buffer, sizeof node_); }
  void zigbeeReceived(const unsigned char* buffer) { std::memcpy(&device_, buffer, sizeof device_); }
  void roleChosen(int role) { role_ = role; }
  void callbackChosen(void (*callback)(AssocEvent*)) { callback_ = callback; }
  void stateWritten(int state) { frontEndState_ = state; }
  void textsWritten() { textsEnd_ = false; }  // a front end's texts need no end

  void check(int boundSocket) const;

 private:
  void checkNumbers() const;
  void checkTexts() const;
  void checkRecords() const;

  TembraAssociation& assoc_;
  ZwNodeInfo node_{};
  ZbDeviceInfo device_{};
  sockaddr_in localAddress_;
  int role_ = 0;
  void (*callback_)(AssocEvent*);
  int frontEndState_ = ASSOC_IDLE;
  bool textsEnd_ = true;
};

}  // namespace fuzz

#endif
