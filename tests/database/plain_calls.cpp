#include "database/plain_calls.h"

#include <depot.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <tembra/globals.h>
#include <tembra/hue.h>
#include <tembra/records.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <vector>

namespace plain {
namespace {

constexpr int kTextLength = -1;
constexpr std::size_t kMostOfDevice = 512, kMostOfIndex = 92, kMostOfNextId = 10;
constexpr suseconds_t kLongestMicroseconds = 100'000;
constexpr rlim_t kLargestFile = 64 << 20;

using Text = std::unique_ptr<char, decltype(&std::free)>;

/// The file, or what deleting it gave.
struct Opened {
  DEPOT* depot;
  int deletion;
};

Opened open() {
  DEPOT* depot = dpopen(DBName, DP_OWRITER | DP_OCREAT, -1);
  if (depot != nullptr) return {depot, 0};
  dprepair(DBName);
  depot = dpopen(DBName, DP_OWRITER | DP_OCREAT | DP_OSPARSE, 1);
  return {depot, depot == nullptr ? std::remove(DBName) : 0};
}

std::optional<std::string> get(DEPOT* depot, const char* key, std::size_t most) {
  int size = 0;
  const Text value(dpget(depot, key, kTextLength, 0, static_cast<int>(most), &size), &std::free);
  return value == nullptr ? std::nullopt : std::optional(std::string(value.get(), static_cast<std::size_t>(size)));
}

/// One value. What it is too short for is zero, and counts for nothing.
struct Stored {
  DeviceRecord record{};
  std::size_t size = 0;

  explicit Stored(const std::string& value) : size(value.size()) { std::memcpy(&record, value.data(), size); }
  [[nodiscard]] bool isOf(int kind) const { return size >= 404 && record.radioKind == kind; }
};

bool isDevice(const char* key) {
  return std::strcmp(key, "NextDevid") != 0 && std::strcmp(key, "Version") != 0 && std::strchr(key, '.') == nullptr;
}

void forEachDevice(DEPOT* depot, const std::function<void(const Stored&)>& visit) {
  dpiterinit(depot);
  while (const Text key{dpiternext(depot, nullptr), &std::free}) {
    const auto value = get(depot, key.get(), kMostOfDevice);
    if (!value) break;
    if (isDevice(key.get())) visit(Stored(*value));
  }
  dpclose(depot);
}

std::string nameOf(const DeviceRecord& record) { return {record.name, strnlen(record.name, sizeof record.name - 1)}; }

// Every device that passes the test, and then the last of them. Of a ZigBee device no node is told.
std::string matches(DEPOT* depot, const std::function<bool(const Stored&)>& test, bool hasNode = true) {
  std::ostringstream told;
  std::string last = "nobody 0";
  forEachDevice(depot, [&](const Stored& stored) {
    if (!test(stored)) return;
    told << "match " << (hasNode ? stored.record.zwaveNode : 0) << "\n";
    last = nameOf(stored.record) + " " + std::to_string(stored.record.id);
  });
  return told.str() + last;
}

bool isNode(const Stored& stored, unsigned char node) {
  return stored.isOf(RADIO_ZWAVE) && static_cast<unsigned char>(stored.record.zwaveNode) == node;
}

std::optional<std::string> indexText(DEPOT* depot, const std::string& key) {
  if (key.empty()) return std::nullopt;
  const auto value = get(depot, key.c_str(), kMostOfIndex);
  if (!value) return std::nullopt;
  IndexRecord record{};
  std::memcpy(&record, value->data(), value->size());
  return std::string(record.value, strnlen(record.value, sizeof record.value));
}

/// The bridges in the making.
class Bridges {
 public:
  explicit Bridges(DEPOT* depot) : depot_(depot) {}

  void visit(const DeviceRecord& record) {
    const std::string id = std::to_string(record.id);
    if (std::strcmp(record.typeName, "HueLamp") == 0) bridgeKey_ = id + ".1", userKey_ = id + ".9";
    if (std::strcmp(record.typeName, "MultilevelSwitchOnOff") == 0) bridgeKey_ = id + ".3", userKey_ = id + ".5";
    const std::size_t count = users_.size();
    macs_.resize(std::max(macs_.size(), count + 1));
    if (auto bridge = indexText(depot_, bridgeKey_)) {
      char mac[50] = {};
      bridge->resize(100);
      HueMac(bridge->data(), mac);
      if (count == 0 || macs_[count - 1].find(mac) == std::string::npos) macs_[count] = mac;
    }
    if (const auto user = indexText(depot_, userKey_)) {
      if (count == 0 || users_.back().find(*user) == std::string::npos) users_.push_back(*user);
    }
  }

  [[nodiscard]] std::string json() const {
    std::string list = R"({"MAClist":[)";
    for (std::size_t i = 0; i < macs_.size() && !macs_[i].empty(); ++i) {
      list += std::string(i == 0 ? "" : ",") + R"({"mac":")" + macs_[i] + R"(","username":")" +
              (i < users_.size() ? users_[i] : "") + R"("})";
    }
    return list + "]}";
  }

 private:
  DEPOT* depot_;
  std::string bridgeKey_, userKey_;
  std::vector<std::string> macs_, users_;
};

[[noreturn]] void runChild(const std::function<std::string()>& reader, int out) {
  const int nowhere = ::open("/dev/null", O_WRONLY);
  dup2(nowhere, STDERR_FILENO);
  const itimerval time{{0, 0}, {0, kLongestMicroseconds}};
  setitimer(ITIMER_PROF, &time, nullptr);
  const rlimit file{kLargestFile, kLargestFile};
  setrlimit(RLIMIT_FSIZE, &file);
  const std::string told = reader();
  _exit(write(out, told.data(), told.size()) == static_cast<ssize_t>(told.size()) ? 0 : 1);
}

}  // namespace

std::string knownNode(unsigned char node) {
  const auto [depot, deletion] = open();
  if (depot == nullptr) return "0 nobody 0";
  const std::string found = matches(depot, [&](const Stored& stored) { return isNode(stored, node); });
  return (found.find("match") == std::string::npos ? "0 " : "1 ") + found;
}

std::string removal(unsigned char node) {
  const auto [depot, deletion] = open();
  if (depot == nullptr) return std::to_string(deletion) + " nobody 0";
  return "0 " + matches(depot, [&](const Stored& stored) { return isNode(stored, node); });
}

std::string zigbeeRemoval(unsigned address) {
  const auto [depot, deletion] = open();
  if (depot == nullptr) return std::to_string(deletion) + " nobody 0";
  const std::string found = matches(
      depot, [&](const Stored& stored) { return stored.size >= 372 && stored.record.zigbeeAddress == address; }, false);
  return (found.find("match") == std::string::npos ? "-1 " : "0 ") + found;
}

std::string nextId(int before) {
  const auto [depot, deletion] = open();
  if (depot == nullptr) return "-1";
  const auto text = get(depot, "NextDevid", kMostOfNextId);
  dpclose(depot);
  return std::to_string(text ? std::atoi(text->c_str()) : before);
}

std::string bridgeList() {
  const auto [depot, deletion] = open();
  if (depot == nullptr) return "null";
  Bridges bridges(depot);
  forEachDevice(depot, [&](const Stored& stored) {
    if (stored.isOf(RADIO_IP)) bridges.visit(stored.record);
  });
  return bridges.json();
}

std::string valuesOf(const std::string& keys) {
  DEPOT* depot = dpopen(DBName, DP_OREADER, -1);
  if (depot == nullptr) return "does not open";
  std::ostringstream values;
  std::istringstream list(keys);
  for (std::string key; std::getline(list, key);) {
    const auto value = get(depot, key.c_str(), kMostOfDevice);
    if (value) values << key << " " << std::hash<std::string>()(*value) << "\n";
    if (!value && dpfatalerror(depot) != 0) {  // nothing can be read by this handle any more
      dpclose(depot);
      depot = dpopen(DBName, DP_OREADER, -1);
    }
  }
  dpclose(depot);
  return values.str();
}

std::optional<std::string> inChild(const std::function<std::string()>& reader) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
  const pid_t child = fork();
  if (child == 0) runChild(reader, ends[1]);
  close(ends[1]);
  std::string told;
  std::array<char, 4096> piece{};
  for (ssize_t size = 0; (size = read(ends[0], piece.data(), piece.size())) > 0;) {
    told.append(piece.data(), static_cast<std::size_t>(size));
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return status == 0 ? std::optional(told) : std::nullopt;
}

}  // namespace plain
