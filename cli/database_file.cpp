#include "database_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <tembra/globals.h>
#include <tembra/service.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <thread>

#include "depot/check.h"
#include "depot/ownership.h"
#include "failure.h"

namespace tembra::cli {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

constexpr std::chrono::seconds kWaitForWriter{1};
constexpr std::chrono::milliseconds kBetweenTries{50};
constexpr int kLibraryDefault = -1;  // number of buckets

std::string whyNotOpen(const std::string& path, int error) {
  if (error == DP_ELOCK) return "the device database " + path + " stays locked by another process.";
  if (error == DP_EBROKEN) return path + " is not a device database, or a damaged one.";
  return "the device database " + path + " cannot be opened (" + std::strerror(errno) + ").";
}

// Null, and the reason in dpecode, when it cannot be opened.
DepotReader tryToRead(const std::string& path) {
  const auto deadline = steady_clock::now() + kWaitForWriter;
  while (true) {
    DepotReader depot(dpopen(path.c_str(), DP_OREADER | DP_OLCKNB, kLibraryDefault));
    if (depot || dpecode != DP_ELOCK || steady_clock::now() >= deadline) return depot;
    std::this_thread::sleep_for(kBetweenTries);
  }
}

// Opening a pipe would wait without end, and the library deletes what is no database.
void requireFile(const std::string& path, const struct stat& status) {
  if (S_ISREG(status.st_mode)) return;
  const char* kind = S_ISDIR(status.st_mode) ? "a folder" : "no regular file";
  throw Failure(kFailed, path + " is " + kind + ", not a device database.");
}

// The library deletes another user's link, and in strict mode leaves others' files alone. The program itself must not
// create a file through such a link, nor read such a file.
void requireTrusted(const std::string& path) {
  if (tembra_set_strict(-1) != 0 && depot::isOthers(path.c_str())) {
    throw Failure(kFailed, "the device database " + path +
                               " is left alone in strict mode, since another user owns or may write it.");
  }
  if (depot::isForeignLink(path.c_str())) {
    throw Failure(kFailed,
                  "the device database " + path + " is a link that belongs to another user, and is not followed.");
  }
}

// The very open that the library is about to do: the kernel may refuse it where opening without "create" succeeds.
void requireWritable(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (descriptor >= 0) {
    close(descriptor);
    return;
  }
  throw Failure(kFailed, "the device database " + path + " cannot be opened for writing (" + std::strerror(errno) +
                             "), and the library deletes a database that it cannot open: run as its owner.");
}

}  // namespace

void useDatabase(const std::string& path) {
  if (path.empty()) return;
  std::string name = path;
  if (name.size() >= sizeof DBName) {
    name = fs::path(path).filename();
    if (name.empty() || name.size() >= sizeof DBName) {
      throw Failure(kUsage, "--db " + path + ": the file's name may have at most 9 characters.");
    }
    std::error_code failure;
    if (fs::path(path).has_parent_path()) fs::current_path(fs::path(path).parent_path(), failure);
    if (failure) throw Failure(kUsage, "--db " + path + ": its folder cannot be entered (" + failure.message() + ").");
  }
  std::strcpy(DBName, name.c_str());
}

DepotReader openForReading(const std::string& path) {
  requireTrusted(path);
  struct stat file = {};
  if (stat(path.c_str(), &file) != 0) {
    if (errno != ENOENT) throw Failure(kFailed, whyNotOpen(path, DP_ESTAT));
    throw Failure(kFailed, "there is no device database yet at " + path + ": the home-automation server creates it.");
  }
  requireFile(path, file);
  if (file.st_size == 0) return nullptr;
  DepotReader depot = tryToRead(path);
  if (!depot) throw Failure(kFailed, whyNotOpen(path, dpecode));
  if (!depot::hasItsBuckets(dpfdesc(depot.get()))) throw Failure(kFailed, whyNotOpen(path, DP_EBROKEN));
  return depot;
}

void checkBeforeLibraryOpens(const std::string& path) {
  requireTrusted(path);
  struct stat file = {};
  if (stat(path.c_str(), &file) != 0) {
    if (errno == ENOENT) complain("there is no device database yet at " + path + ": the library begins an empty one.");
    return;
  }
  requireFile(path, file);
  if (file.st_uid != geteuid()) {
    complain("the device database " + path + " belongs to another user (" + std::to_string(file.st_uid) +
             "): the home-automation server and its front ends should run as the same user.");
  }
  requireWritable(path);
  if (file.st_size == 0) return;
  const DepotReader depot = tryToRead(path);
  if (depot && depot::lookAtWalk(dpfdesc(depot.get())).safety == depot::Safety::kSafe) return;
  if (depot) dpecode = DP_EBROKEN;
  if (dpecode == DP_ELOCK) throw Failure(kFailed, whyNotOpen(path, DP_ELOCK));
  complain(whyNotOpen(path, dpecode) + " The library repairs it when it opens it.");
}

}  // namespace tembra::cli
