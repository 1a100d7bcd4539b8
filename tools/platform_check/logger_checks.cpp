#include <tembra/platform.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "platform_check/checks.h"
#include "platform_check/memory.h"

namespace tembra::platform_check {
namespace {

constexpr int kDetail = 3;
constexpr std::size_t kLongestLine = 511;
constexpr int kSlowLine = 10;  // milliseconds

Logger* lastingLogger = nullptr;

void checkInstance(Trial& trial) {
  trial.tries("getInstance() twice");
  Logger* const first = Logger::getInstance();
  trial.expects(first != nullptr, "a logger", "null");
  trial.expects(Logger::getInstance() == first, "the same logger each time", "another one");
  trial.tries("getInstance() by another thread");
  Logger* others = nullptr;
  std::thread([&others] { others = Logger::getInstance(); }).join();
  trial.expects(others == first, "the same logger as in the first thread", others == nullptr ? "null" : "another one");
}

// The text is read-only, ends where the memory ends, and is gone afterwards.
void log(Trial& trial, const std::string& what, int level, const std::string& text) {
  trial.tries("a line: " + what);
  const EdgeText line(text);
  Logger::getInstance()->Log(level, line.get());
}

void checkLog(Trial& trial) {
  const std::string prefix = "tembra-platform-check: ";
  const char* const levels[] = {"progress", "warning", "error", "detail"};
  for (int level = 0; level <= kDetail; ++level) {
    const std::string number = "level " + std::to_string(level);
    log(trial, number, level, prefix + number + ", " + levels[level] + "\n");
  }
  log(trial, "an empty text", kDetail, "");
  log(trial, "511 characters", kDetail, prefix + std::string(kLongestLine - prefix.size(), 'x'));
  log(trial, "percent signs, which are no format", kDetail, prefix + "%s%s%s%s%s%s%s%s%n%n%n%n");
  log(trial, "control characters, which become harmless", 1, prefix + "control characters: \x1b[31mred\x1b[0m\r\b\n");
  log(trial, "bytes that are no UTF-8", kDetail, prefix + "\xff\xfe\xc3");
  trial.tries("a text whose memory is gone after the call");
  usleep(100000);
}

// A log on slow flash works. Each line that returns is a sign of life, and the check ends early.
void checkLogOfThreads(Trial& trial) {
  using Clock = std::chrono::steady_clock;
  constexpr int kThreads = 4;
  constexpr int kLines = 50;
  constexpr auto kLongest = std::chrono::seconds(5);
  trial.tries("lines of four threads at a time");
  Logger* const logger = Logger::getInstance();
  const auto start = Clock::now();
  std::atomic<int> written = 0;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&trial, &written, logger, number, start, kLongest] {
      const EdgeText line("tembra-platform-check: thread " + std::to_string(number));
      for (int i = 0; i < kLines && Clock::now() - start < kLongest; ++i, ++written) {
        logger->Log(kDetail, line.get());
        trial.goesOn();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
  const auto each = taken.count() / std::max(written.load(), 1);
  trial.prefers(each < kSlowLine, "less than 10 ms for a line, as an add that writes its progress has about thirty",
                std::to_string(each) + " ms for each of " + std::to_string(written));
}

// Registered before the logger is made and used, so this runs after what the logger itself registers.
void checkLogAtTheEnd(Trial& trial) {
  trial.tries("a line while the process ends, when a destroyed logger is gone");
  std::atexit([] { lastingLogger->Log(kDetail, "tembra-platform-check: the process ends"); });
  lastingLogger = Logger::getInstance();
  trial.expects(lastingLogger != nullptr, "a logger", "null");
  lastingLogger->Log(kDetail, "tembra-platform-check: the process is about to end");
}

}  // namespace

std::vector<Check> loggerChecks() {
  return {{"Logger::getInstance", "the same logger each time, in every thread", checkInstance},
          {"Logger::Log", "each level, and texts that are long, empty, no format, or gone after the call", checkLog},
          {"Logger::Log, threads", "200 lines of four threads at a time", checkLogOfThreads},
          {"Logger::Log, at the end", "a line while the process ends", checkLogAtTheEnd}};
}

}  // namespace tembra::platform_check
