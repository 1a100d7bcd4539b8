// What the front end that has the connection does, and each later one: the entries of their flight recorders.
#ifndef TEMBRA_CLI_HOLDERS_H
#define TEMBRA_CLI_HOLDERS_H

#include <functional>
#include <string>

#include "cli/commands/other_front_end.h"
#include "platform/descriptor.h"

namespace tembra::cli {

class Holders {
 public:
  /// A line of the watch socket, and its time in microseconds since 1970.
  using OnLine = std::function<void(long long time, const std::string& line)>;

  /// What happened before is passed over.
  explicit Holders(std::string watchPath);

  /// Readable when there may be something to read. A look now and then does no harm.
  [[nodiscard]] int descriptor() const { return ready_.get(); }

  /// Tells what has come. Never waits. @return an errno that keeps everything from being heard; 0: none
  int read(const OnLine& onLine);

 private:
  void awaitSocket() const;
  [[nodiscard]] bool socketMayHaveCome() const;
  [[nodiscard]] int connect(bool mayHaveCome);
  void hear(const std::string& line, const OnLine& onLine);

  const std::string path_;
  const long long since_;     ///< by the clock that nobody sets
  const Descriptor changes_;  ///< of the socket's folder, and of the one above
  const Descriptor ready_;    ///< of these changes and of the watch
  Watch watch_;
  long long process_ = 0;
  long long lastEntry_ = 0;  ///< of that process
};

/// Now, in microseconds of the clock that nobody sets, as a flight recorder's `monotonic_us`.
[[nodiscard]] long long steadyClock();

}  // namespace tembra::cli

#endif
