// What the model sends when the same happens to it as to the library, against what the library sends.
#ifndef TEMBRA_TESTS_CAMPAIGN_ACCOUNT_H
#define TEMBRA_TESTS_CAMPAIGN_ACCOUNT_H

#include <sys/socket.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "campaign/wire.h"
#include "oracle/model.h"

namespace campaign {

/// The model, and what the kit does beside its calls: before it hands a ZigBee device over, it puts the device's
/// record back that stood there when the device was offered.
class Counterpart : public oracle::Model {
 public:
  Counterpart() {
    inCallback = [this](oracle::Model&) { keepOffered(); };
  }
  Counterpart(const Counterpart&) = delete;
  Counterpart& operator=(const Counterpart&) = delete;

  void restoreOffered() {
    if (isZigbee_) zbDevice = offered_;
  }

 private:
  void keepOffered();

  bool isZigbee_ = false;
  oracle::Record<444> offered_;
};

using Happening = std::function<void(Counterpart&)>;

class Account {
 public:
  /// Something that the library is asked to do, or hears, with the device database as it is.
  void take(Time at, const Happening& happening, const std::vector<oracle::Row>& database);
  /// What the library has sent.
  void take(const Datagram& sent);

  /// One sentence for each datagram that only one of the two has sent, in whatever order.
  [[nodiscard]] std::vector<std::string> differences();

 private:
  void takeEffects(Time at);
  void sendWhatIsDue(Time at);

  std::mutex mutex_;
  Counterpart model_;
  std::vector<Datagram> later_;  ///< behind the sleeps of a reset, if the connection is open then
  std::vector<Datagram> expected_;
  std::vector<Datagram> sent_;
};

/// The one that everything goes into from now on; null: none.
void keepAccount(Account* account);

/// Nobody else begins anything in the library while it is held; so the model keeps the library's order.
using Turn = std::unique_lock<std::mutex>;

/// The turn may be given back when the library has done what it does then.
[[nodiscard]] Turn accountFor(const Happening& happening);
void accountFor(const Datagram& sent);

/// The library's receive thread, which has the turn from the end of one receive to the beginning of the next. What
/// other threads hear does not count.
class ReceiveThread {
 public:
  ReceiveThread();
  ~ReceiveThread();
  ReceiveThread(const ReceiveThread&) = delete;
  ReceiveThread& operator=(const ReceiveThread&) = delete;

  static void waits();
  /// `size` is -1 when nothing came.
  static void hears(const sockaddr* from, const void* data, ssize_t size);
};

}  // namespace campaign

#endif
