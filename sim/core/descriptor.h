// A descriptor that closes itself.
#ifndef TEMBRA_SIM_CORE_DESCRIPTOR_H
#define TEMBRA_SIM_CORE_DESCRIPTOR_H

#include <unistd.h>

#include <utility>

namespace tembra::sim {

class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  int get() const { return number_; }
  bool valid() const { return number_ >= 0; }

 private:
  int number_;
};

}  // namespace tembra::sim

#endif
