#include "kit/faults.h"

#include <cerrno>

namespace kit {

void Faults::order(Call call, int error, int times, int spared) {
  const std::lock_guard<std::mutex> lock(mutex_);
  orders_[call] = {error, times, spared};
}

bool Faults::strike(Call call, const void* site) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (counting_) counted_.push_back({call, site});
  const auto found = orders_.find(call);
  if (found == orders_.end() || found->second.times == 0) return false;
  Order& order = found->second;
  if (order.spared > 0) {
    --order.spared;
    return false;
  }
  --order.times;
  ++strikes_;
  errno = order.error;
  return true;
}

void Faults::count() {
  const std::lock_guard<std::mutex> lock(mutex_);
  counted_.clear();
  counting_ = true;
  strikes_ = 0;
}

std::vector<CountedCall> Faults::stop() {
  const std::lock_guard<std::mutex> lock(mutex_);
  counting_ = false;
  orders_.clear();
  return std::move(counted_);
}

int Faults::strikes() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return strikes_;
}

int& LibraryCall::depth() {
  thread_local int count = 0;
  return count;
}

// Never destroyed: the library's thread may still be there at exit.
Faults& faults() {
  static Faults& one = *new Faults;
  return one;
}

}  // namespace kit
