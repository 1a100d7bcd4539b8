#include <depot.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "depot/check.h"
#include "platform_check/checks.h"

namespace tembra::platform_check {
namespace {

constexpr int kOpenMode = DP_OWRITER | DP_OCREAT;
constexpr int kDefaultBuckets = -1;
constexpr int kReopenMode = DP_OWRITER | DP_OCREAT | DP_OSPARSE;  // behind a repair
constexpr int kReopenBuckets = 1;
constexpr int kRecords = 40;
constexpr int kWholeText = -1;

using Text = std::unique_ptr<char, decltype(&std::free)>;

std::string lastError() { return std::string("\"") + dperrmsg(dpecode) + "\""; }

std::string keyOf(int number) { return std::to_string(number); }
std::string valueOf(int number) { return std::string(100, 'v') + std::to_string(number); }

class Database {
 public:
  explicit Database(Trial& trial) : trial_(trial), path_(trial.folder() + "/ddb") {}

  void open(int mode = kOpenMode, int buckets = kDefaultBuckets) {
    depot_ = dpopen(path_.c_str(), mode, buckets);
    trial_.expects(depot_ != nullptr, "an open file", lastError());
  }
  void close() { trial_.expects(dpclose(depot_) != 0, "a closed file", lastError()); }

  void fill() {
    trial_.tries("dpput");
    for (int number = 0; number < kRecords; ++number) {
      const std::string value = valueOf(number);
      const int length = static_cast<int>(value.size());
      const bool isPut = dpput(depot_, keyOf(number).c_str(), kWholeText, value.c_str(), length, DP_DOVER) != 0;
      trial_.expects(isPut, "a stored value", lastError());
    }
  }

  /// Makes a file with records, and leaves it closed.
  void make() {
    trial_.tries("dpopen of a new file");
    open();
    fill();
    trial_.tries("dpclose");
    close();
  }

  /// As the service reads: a walk through the keys, and at most so many bytes of each value.
  void read() {
    trial_.tries("dpiterinit");
    trial_.expects(dpiterinit(depot_) != 0, "a walk", lastError());
    int walked = 0;
    for (Text key = nextKey(); key != nullptr; key = nextKey()) ++walked;
    trial_.tries("dpiternext");
    trial_.expects(walked == kRecords, std::to_string(kRecords) + " keys", std::to_string(walked));
    trial_.tries("dpget");
    for (int number = 0; number < kRecords; ++number) expectValue(number);
    trial_.expects(valueAt("none", kWholeText).empty(), "nothing of a key that is not there", "a value");
  }

  [[nodiscard]] DEPOT* get() const { return depot_; }
  [[nodiscard]] const char* path() const { return path_.c_str(); }

 private:
  Text nextKey() { return {dpiternext(depot_, nullptr), &std::free}; }

  std::string valueAt(const std::string& key, int most) {
    int size = 0;
    const Text value(dpget(depot_, key.c_str(), kWholeText, 0, most, &size), &std::free);
    return value == nullptr ? std::string() : std::string(value.get(), static_cast<std::size_t>(size));
  }

  void expectValue(int number) {
    constexpr int kSome = 7;
    const std::string value = valueOf(number);
    const std::string whole = valueAt(keyOf(number), kWholeText);
    trial_.expects(whole == value, "the value that was stored", quoted(whole));
    const std::string some = valueAt(keyOf(number), kSome);
    trial_.expects(some == value.substr(0, kSome), "the first 7 bytes, when no more are asked for", quoted(some));
  }

  Trial& trial_;
  std::string path_;
  DEPOT* depot_ = nullptr;
};

void checkReading(Trial& trial) {
  Database database(trial);
  database.make();
  trial.tries("dpopen of a file that is there");
  database.open();
  database.read();
  trial.tries("dpclose");
  database.close();
}

// The service looks at a file before the Depot library reads it. It would repair, and then delete, files of another
// form.
void checkLayout(Trial& trial) {
  Database database(trial);
  database.make();
  trial.tries("the layout of its file");
  database.open();
  const auto look = depot::lookAtWalk(dpfdesc(database.get()));
  trial.expects(look.safety == depot::Safety::kSafe,
                "the one that the service knows, with 32-bit little-endian numbers",
                "another one, which the service would repair, and delete");
  database.close();
}

bool opens(const char* path) {
  DEPOT* const depot = dpopen(path, kOpenMode, kDefaultBuckets);
  return depot != nullptr && dpclose(depot) != 0;
}

void checkLock(Trial& trial) {
  Database database(trial);
  database.make();
  trial.tries("dpopen in a second process, while the first has the file open");
  database.open();
  const pid_t other = fork();
  if (other == 0) _exit(opens(database.path()) ? 0 : 1);
  int status = 0;
  usleep(300000);
  trial.expects(waitpid(other, &status, WNOHANG) == 0, "that it waits", "an answer at once");
  database.close();
  waitpid(other, &status, 0);
  trial.expects(status == 0, "that it opens when the first has closed the file", "no open file");
}

void checkDamage(Trial& trial) {
  Database database(trial);
  database.make();
  trial.tries("dprepair of a healthy file");
  trial.expects(dprepair(database.path()) != 0, "a repaired file", lastError());
  trial.tries("dpopen of a repaired file, sparse and with one bucket");
  database.open(kReopenMode, kReopenBuckets);
  database.read();
  database.close();
  trial.tries("dpopen of a file that is no database");
  FILE* const file = std::fopen(database.path(), "w");
  trial.expects(file != nullptr, "a file in /tmp", "none");
  for (int i = 0; i < 1000; ++i) std::fputs("no database\n", file);
  std::fclose(file);
  trial.expects(!opens(database.path()), "an error", "an open file");
  trial.expects(dperrmsg(dpecode) != nullptr, "the text of the error, by dperrmsg", "null");
}

void checkLaterTime(Trial& trial) {
  constexpr long long kYear2040 = 2208988800LL;
  Database database(trial);
  database.make();
  const timespec later{static_cast<time_t>(kYear2040), 0};
  const timespec times[] = {later, later};
  struct stat status {};
  utimensat(AT_FDCWD, database.path(), times, 0);
  stat(database.path(), &status);
  if (status.st_mtime != later.tv_sec) return;  // this file system knows no such time, so no file has it
  trial.tries("dpopen of a file of the year 2040");
  trial.expects(opens(database.path()), "an open file: build the Depot library with 64-bit times and files",
                lastError());
}

}  // namespace

std::vector<Check> depotChecks() {
  return {{"Depot library", "writes, opens, walks through the keys, reads values and parts of them", checkReading},
          {"Depot library, layout", "its files are what the service takes for healthy", checkLayout},
          {"Depot library, lock", "a second process waits while the first has the file open", checkLock},
          {"Depot library, damage", "repairs a file, and refuses what is none", checkDamage},
          {"Depot library, time", "opens a file of the year 2040", checkLaterTime}};
}

}  // namespace tembra::platform_check
