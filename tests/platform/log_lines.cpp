// log-lines WHAT: a program that only logs, for the tests of the Logger. What it would send to the system's log it
// prints on standard output, by a syslog function of its own.
#include <syslog.h>
#include <tembra/platform.h>

#include <array>
#include <chrono>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <thread>

namespace {

void printLine(int priority, const char* format, va_list arguments) {
  std::array<char, 1024> text{};
  std::vsnprintf(text.data(), text.size(), format, arguments);
  std::printf("syslog %d %s\n", priority, text.data());
}

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the C library has reserved names there
extern "C" void syslog(int priority, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  printLine(priority, format, arguments);
  va_end(arguments);
}

// What a hardened caller calls instead.
extern "C" void __syslog_chk(int priority, int /*flag*/, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  printLine(priority, format, arguments);
  va_end(arguments);
}

namespace {

bool hasOtherRights = false;

}  // namespace

// As the C library answers in a program that runs with other rights than its user's.
extern "C" char* secure_getenv(const char* name) noexcept { return hasOtherRights ? nullptr : std::getenv(name); }

namespace {

void say(int level, const char* text) { Logger::getInstance()->Log(level, text); }

void everyLevel() {
  for (int level = 0; level <= 3; ++level) say(level, ("said at " + std::to_string(level)).c_str());
}

void everyLevelWithOtherRights() {
  hasOtherRights = true;
  everyLevel();
}

void oddTexts() {
  for (const char* text : {"", "\n", "ends\n", "\r\nbegins", "one\ntwo\r\nthree", "%s %n {} {0}", "\x1b[31mred\ttab",
                           " blanks stay ", "caf\xc3\xa9", "\xc2\x9b\x9b\x33m\xe2\x80\xaemoor"}) {
    say(2, text);
  }
  say(2, nullptr);
  say(2, std::string(5000, 'x').c_str());
}

void oddLevels() {
  for (int level : {-2147483647 - 1, -1, 4, 2147483647}) say(level, std::to_string(level).c_str());
}

void manyThreads() {
  std::array<std::thread, 8> threads;
  for (std::size_t number = 0; number < threads.size(); ++number) {
    threads.at(number) = std::thread([number] {
      for (int line = 0; line < 250; ++line) {
        say(2, ("thread " + std::to_string(number) + " line " + std::to_string(line)).c_str());
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

void sayForEver() {
  for (;;) say(2, "still here");
}

// main returns while these threads are in the middle of a line.
void outliveMain() {
  for (int thread = 0; thread < 4; ++thread) std::thread(sayForEver).detach();
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

const std::map<std::string, std::function<void()>> kActions = {
    {"every-level", everyLevel}, {"other-rights", everyLevelWithOtherRights},
    {"odd-texts", oddTexts},     {"odd-levels", oddLevels},
    {"threads", manyThreads},    {"outlive-main", outliveMain}};

}  // namespace

int main(int argc, char** argv) {
  const auto action = kActions.find(argc == 2 ? argv[1] : "");
  if (action == kActions.end()) return EXIT_FAILURE;
  action->second();
  return EXIT_SUCCESS;
}
