// The Hue bridges of the simulated home.
#ifndef TEMBRA_SIM_HUE_BRIDGES_H
#define TEMBRA_SIM_HUE_BRIDGES_H

#include <string>
#include <string_view>
#include <vector>

#include "tembra/records.h"

namespace tembra::sim {

class HueBridges {
 public:
  /// As many as an answer of the Hue server has room for.
  static constexpr int kMost = sizeof HueAnswer::entries / sizeof(HueAnswerEntry);

  explicit HueBridges(int count) { resize(count); }
  void resize(int count);

  bool empty() const { return bridges_.empty(); }
  int count() const { return static_cast<int>(bridges_.size()); }
  /// Whether there is a bridge of this id, which is written with small letters.
  bool has(std::string_view id) const;
  /// Names every bridge as an entry of an answer.
  void list(HueAnswer& answer) const;

 private:
  struct Bridge {
    std::string id;
    std::string address;
  };

  std::vector<Bridge> bridges_;
};

}  // namespace tembra::sim

#endif
