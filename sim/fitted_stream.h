// A stream at a terminal: its lines are broken at blanks where they do not fit.
#ifndef TEMBRA_SIM_FITTED_STREAM_H
#define TEMBRA_SIM_FITTED_STREAM_H

#include <ostream>
#include <sstream>
#include <string>

#include "words/fitting.h"

namespace tembra::sim {

/// While it lives, what is written to the stream comes out in whole lines that fit. Elsewhere than at a terminal it
/// does nothing.
class FittedStream : private std::stringbuf {
 public:
  FittedStream(std::ostream& stream, int descriptor)
      : stream_(stream), descriptor_(descriptor), before_(stream.rdbuf()) {
    if (words::roomOfTerminal(descriptor)) stream.rdbuf(this);
  }
  ~FittedStream() override {
    pass(str());
    stream_.rdbuf(before_);
  }
  FittedStream(const FittedStream&) = delete;
  FittedStream& operator=(const FittedStream&) = delete;

 private:
  // The stream is flushed; what follows the last end of a line waits.
  int sync() override {
    const std::string text = str();
    const std::size_t end = text.rfind('\n') + 1;
    str("");
    sputn(text.data() + end, static_cast<std::streamsize>(text.size() - end));
    return pass(text.substr(0, end));
  }

  int pass(const std::string& text) {
    const std::string lines = words::fitted(text, descriptor_);
    const auto size = static_cast<std::streamsize>(lines.size());
    return before_->sputn(lines.data(), size) == size ? before_->pubsync() : -1;
  }

  std::ostream& stream_;
  const int descriptor_;
  std::streambuf* const before_;
};

}  // namespace tembra::sim

#endif
