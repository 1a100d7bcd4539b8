// Look-ups in the device database, in homes from small to far too large, against the bare loop of the same Depot calls.
#include <benchmark/benchmark.h>
#include <depot.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <tembra/association.h>
#include <tembra/globals.h>
#include <tembra/records.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>

#include "figures.h"
#include "figures/homes.h"
#include "rig/clock.h"

namespace bench {
namespace {

using Buffer = std::unique_ptr<char, decltype(&std::free)>;

Buffer get(DEPOT* depot, const char* key, int most) {
  int size = 0;
  return {dpget(depot, key, -1, 0, most, &size), &std::free};
}

DEPOT* openBare() { return dpopen(DBName, DP_OWRITER | DP_OCREAT, -1); }

template <typename Visit>
void walkBare(DEPOT* depot, Visit visit) {
  dpiterinit(depot);
  for (Buffer key(dpiternext(depot, nullptr), &std::free); key != nullptr; key.reset(dpiternext(depot, nullptr))) {
    visit(get(depot, key.get(), sizeof(DeviceRecord)));
  }
}

void knownNodeBare() {
  DEPOT* depot = openBare();
  walkBare(depot, [](const Buffer&) {});
  dpclose(depot);
}

void nextIdBare() {
  DEPOT* depot = openBare();
  get(depot, "NextDevid", 10);
  dpclose(depot);
}

// What keeps a damaged file from hanging a look-up cannot do with less: the file's size, and for a walk its bytes.
void readForWalk(DEPOT* depot) {
  constexpr off_t atOnce = 16384;
  const int file = dpfdesc(depot);
  struct stat status {};
  fstat(file, &status);
  for (off_t offset = 0; offset < status.st_size; offset += atOnce) {
    char bytes[atOnce];
    benchmark::DoNotOptimize(pread(file, bytes, sizeof bytes, offset));
  }
  fcntl(file, F_SETFD, FD_CLOEXEC);
}

// For the search of one key the header, the key's bucket, and at least one record there.
void readForSearch(DEPOT* depot) {
  const int file = dpfdesc(depot);
  struct stat status {};
  fstat(file, &status);
  for (const off_t offset : {0, 48, 48}) {
    char bytes[48];
    benchmark::DoNotOptimize(pread(file, bytes, sizeof bytes, offset));
  }
  fcntl(file, F_SETFD, FD_CLOEXEC);
}

void checkedKnownNodeBare() {
  DEPOT* depot = openBare();
  readForWalk(depot);
  walkBare(depot, [](const Buffer&) {});
  dpclose(depot);
}

void checkedNextIdBare() {
  DEPOT* depot = openBare();
  readForSearch(depot);
  get(depot, "NextDevid", 10);
  dpclose(depot);
}

// A bulb's bridge and user are fetched, too.
void bridgeListBare() {
  DEPOT* depot = openBare();
  walkBare(depot, [depot](const Buffer& value) {
    DeviceRecord device;
    std::memcpy(&device, value.get(), offsetof(DeviceRecord, zwaveNode));
    if (std::strncmp(value.get() + offsetof(DeviceRecord, typeName), "HueLamp", sizeof "HueLamp") != 0) return;
    for (const int index : {1, 9}) {
      char key[32];
      std::snprintf(key, sizeof key, "%d.%d", device.id, index);
      get(depot, key, sizeof(IndexRecord));
    }
  });
  dpclose(depot);
}

struct LookUp {
  const char* name;
  void (*library)(TembraAssociation&);
  void (*bare)();
  void (*checked)();  // the bare loop with the reads of the library's check, if it is looked at
};

const LookUp kLookUps[] = {
    {"known node", [](TembraAssociation& assoc) { assoc.ZW_checkNodeExists(); }, knownNodeBare, checkedKnownNodeBare},
    {"next id", [](TembraAssociation& assoc) { assoc.calculateDevId(); }, nextIdBare, checkedNextIdBare},
    {"bridge list", [](TembraAssociation& assoc) { std::free(assoc.Hue_getBridgeList()); }, bridgeListBare, nullptr},
};

double secondsOf(const std::function<void()>& action) {
  const Clock::time_point from = Clock::now();
  action();
  return secondsSince(from);
}

// The larger the home, the fewer the rounds: what takes long is measured well by few.
std::map<std::string, double> measureHome(const Effort& effort, TembraAssociation& assoc, int devices) {
  const Home home("/tmp/ddb", devices);
  Effort rounds = effort;
  if (devices > 10'000) rounds.repetitions = std::min(effort.repetitions, 3);
  const int batches = std::clamp(5'000 / devices, 1, effort.batches);
  Comparison comparison(rounds);
  for (const LookUp& lookUp : kLookUps) {
    const std::string name = lookUp.name;
    comparison.measured(name, batches, [&] { return secondsOf([&] { lookUp.library(assoc); }); });
    comparison.measured(name + " bare", batches, [&] { return secondsOf(lookUp.bare); });
    if (lookUp.checked == nullptr) continue;
    comparison.measured(name + " checked", batches, [&] { return secondsOf(lookUp.checked); });
  }
  return comparison.run();
}

void addHome(Report& report, int devices, const LookUp& lookUp, const std::map<std::string, double>& seconds) {
  const std::string name = lookUp.name;
  const double library = seconds.at(name);
  const double bare = seconds.at(name + " bare");
  report.add(CurvePoint{name, devices, library, bare});
  report.add({.number = 5,
              .what = name + ", " + std::to_string(devices) + " devices",
              .unit = Unit::kMicroseconds,
              .value = library * 1e6,
              .limit = bare * 1e6,
              .mostRatio = 1.05});
}

// How near a look-up comes to what it must do, whereas the bare loop trusts the file.
void addChecked(Report& report, int devices, const LookUp& lookUp, const std::map<std::string, double>& seconds) {
  if (lookUp.checked == nullptr) return;
  const std::string name = lookUp.name;
  report.add({.number = 5,
              .what = name + ", " + std::to_string(devices) + "; loop with the reads of its check",
              .unit = Unit::kMicroseconds,
              .value = seconds.at(name) * 1e6,
              .limit = seconds.at(name + " checked") * 1e6});
}

// What one more key costs, from the smallest home to the largest.
void addSlope(Report& report, const std::string& name, const CurvePoint& first, const CurvePoint& last) {
  const auto keys = static_cast<double>(keysOf(last.devices) - keysOf(first.devices));
  report.add({.number = 5,
              .what = name + ", each further key",
              .unit = Unit::kNanoseconds,
              .value = (last.library - first.library) / keys * 1e9,
              .limit = (last.bare - first.bare) / keys * 1e9,
              .mostRatio = 1.05});
}

}  // namespace

void measureLookUps(const Effort& effort, Report& report) {
  TembraAssociation& assoc = *TembraAssociation::LCDAssocInit();
  assoc.zwNodeRx.nodeId = 5;
  for (const int devices : effort.homeSizes) {
    const std::map<std::string, double> seconds = measureHome(effort, assoc, devices);
    for (const LookUp& lookUp : kLookUps) {
      addHome(report, devices, lookUp, seconds);
      addChecked(report, devices, lookUp, seconds);
    }
  }
  for (const LookUp& lookUp : kLookUps) {
    const std::vector<CurvePoint> curve = report.curveOf(lookUp.name);
    addSlope(report, lookUp.name, curve.front(), curve.back());
  }
}

}  // namespace bench
