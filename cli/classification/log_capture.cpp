#include "cli/classification/log_capture.h"

#include <dlfcn.h>
#include <tembra/frontend.h>
#include <tembra/platform.h>

#include <cstring>
#include <utility>

namespace tembra::cli {
namespace {

thread_local std::vector<std::string>* capturing = nullptr;
thread_local std::vector<std::string> captured;

constexpr char kPrefix[] = "libTembraAssoc:";

void capture(const char* text) {
  const std::size_t length = sizeof kPrefix - 1;
  capturing->emplace_back(std::strncmp(text, kPrefix, length) == 0 ? text + length : text);
}

// The router's own logger, behind ours and the flight recorder.
void logElsewhere(Logger* logger, int level, const char* text) {
  tembra_frontend_log(level, text);
  using Log = void (*)(Logger*, int, const char*);
  static const Log log = reinterpret_cast<Log>(dlsym(RTLD_NEXT, "_ZN6Logger3LogEiPKc"));
  if (log != nullptr) log(logger, level, text);
}

}  // namespace

LogCapture::LogCapture() {
  captured.clear();
  capturing = &captured;
}

LogCapture::~LogCapture() { capturing = nullptr; }

std::vector<std::string> LogCapture::take() { return std::exchange(captured, {}); }

}  // namespace tembra::cli

// A program's own definition stands before the router's.
void Logger::Log(int level, const char* text) {
  tembra::cli::capturing != nullptr ? tembra::cli::capture(text) : tembra::cli::logElsewhere(this, level, text);
}
