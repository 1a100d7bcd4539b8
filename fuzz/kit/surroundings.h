// What stands between the kit and the world in its fuzz target. There is one thread, and time passes only when the kit
// waits. The connection is open without a receive thread, for its events are there already.
#ifndef TEMBRA_FUZZ_KIT_SURROUNDINGS_H
#define TEMBRA_FUZZ_KIT_SURROUNDINGS_H

namespace fuzz {

class Surroundings {
 public:
  Surroundings();
  virtual ~Surroundings();
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

  /// The kit waits: what happens now? Its locks are free.
  virtual void waiting() = 0;

  [[nodiscard]] virtual bool opens() const = 0;    ///< whether a connection opens
  [[nodiscard]] virtual bool settles() const = 0;  ///< whether the library is found waiting
  [[nodiscard]] virtual bool listens(int server) const = 0;
};

}  // namespace fuzz

#endif
