// A descriptor that closes itself.
#ifndef TEMBRA_PLATFORM_DESCRIPTOR_H
#define TEMBRA_PLATFORM_DESCRIPTOR_H

#include <unistd.h>

#include <utility>

namespace tembra {

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
  ~Descriptor() { reset(); }

  void reset() {
    if (number_ >= 0) close(number_);
    number_ = -1;
  }
  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] bool valid() const { return number_ >= 0; }

 private:
  int number_;
};

}  // namespace tembra

#endif
