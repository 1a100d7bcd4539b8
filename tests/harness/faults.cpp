#include "harness/faults.h"

#include <cerrno>

namespace harness {

void Faults::order(Call call, int error, int times, int spared) {
  const std::lock_guard<std::mutex> lock(mutex_);
  orders_[call] = {error, times, spared};
}

bool Faults::strike(Call call) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = orders_.find(call);
  if (found == orders_.end() || found->second.times == 0) return false;
  Order& order = found->second;
  if (order.spared > 0) {
    --order.spared;
    return false;
  }
  --order.times;
  errno = order.error;
  return true;
}

// Never destroyed: the library's thread may still be there at exit.
Faults& faults() {
  static Faults& one = *new Faults;
  return one;
}

}  // namespace harness
