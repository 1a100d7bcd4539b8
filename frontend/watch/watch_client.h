// The other end: a process that watches.
#ifndef TEMBRA_FRONTEND_WATCH_CLIENT_H
#define TEMBRA_FRONTEND_WATCH_CLIENT_H

#include <tembra/watch.h>

#include <string>
#include <string_view>

#include "holder_line.h"
#include "platform/descriptor.h"

struct tembra_watch {
 public:
  explicit tembra_watch(tembra::Descriptor socket) : socket_(std::move(socket)) {}

  [[nodiscard]] int descriptor() const { return socket_.get(); }
  [[nodiscard]] const tembra::frontend::HolderReport& holder() const { return holder_; }

  /// Null with errno, as tembra_watch_next.
  [[nodiscard]] const char* next(int milliseconds);
  [[nodiscard]] int say(std::string_view line) const;  ///< 0 or an errno

 private:
  [[nodiscard]] bool takeLine();
  [[nodiscard]] int checkLine();
  [[nodiscard]] int receive();

  const tembra::Descriptor socket_;
  std::string received_;
  std::string line_;
  tembra::frontend::HolderReport holder_;
  bool knowsHolder_ = false;
};

#endif
