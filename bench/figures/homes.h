// Device databases of homes of any size.
#ifndef TEMBRA_BENCH_FIGURES_HOMES_H
#define TEMBRA_BENCH_FIGURES_HOMES_H

#include <string>

namespace bench {

inline constexpr int kIndexesEach = 10;

/// Keys in the database of a home with this many devices.
inline long keysOf(int devices) { return 2 + static_cast<long>(devices) * (1 + kIndexesEach); }

/// A database as the HA server writes it. Of every ten devices, four are Z-Wave nodes, four are ZigBee devices, and two
/// are Hue bulbs of one bridge.
class Home {
 public:
  Home(const std::string& path, int devices);
  ~Home();
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace bench

#endif
