// tembra-counted: does each job that has a limit, a number of times, and has callgrind write a dump after it.
#include <tembra/names.h>
#include <valgrind/callgrind.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "figures/catalogue.h"
#include "rig/outside.h"
#include "rig/receiving.h"

namespace {

// The first time counts for nothing: the C library gets ready in it. The dump tells the job and how often it was done.
template <typename Jobs>
void count(const std::string& job, std::size_t times, Jobs jobs) {
  jobs();
  CALLGRIND_ZERO_STATS;
  jobs();
  const std::string label = job + "*" + std::to_string(times);
  CALLGRIND_DUMP_STATS_AT(label.c_str());
}

void countClassifications() {
  TembraAssociation& assoc = *TembraAssociation::LCDAssocInit();
  const bench::NoDatabase noDatabase;
  const std::vector<ZbDeviceInfo> devices = bench::zigbeeDevices();
  const std::vector<ZwNodeInfo> nodes = bench::genericNodes();
  count("ZigBee classification", devices.size(), [&] {
    for (const ZbDeviceInfo& device : devices) {
      assoc.zbDevice = device;
      assoc.validate_DeviceType();
    }
  });
  count("Z-Wave classification", nodes.size(), [&] {
    for (const ZwNodeInfo& node : nodes) {
      assoc.zwNodeRx = node;
      assoc.ZW_createDeviceType();
    }
  });
}

void countNames() {
  constexpr int numbers = 256;
  const auto nameOf = [](int number) { return cclassStr(static_cast<unsigned char>(number)); };
  std::array<const char*, numbers> names{};
  for (int number = 0; number < numbers; ++number) names.at(static_cast<std::size_t>(number)) = nameOf(number);
  count("number to name", numbers, [&] {
    for (int number = 0; number < numbers; ++number) nameOf(number);
  });
  count("name to number", numbers, [&] {
    for (const char* name : names) cclassNum(name);
  });
}

// The gate's two datagrams are received, too; they are of the cheapest kind.
void countPasses() {
  constexpr int datagrams = 30;
  constexpr int gate = 2;
  const bench::Daemons daemons;
  bench::LibraryReceiving library;
  for (const bench::Datagram& datagram : bench::datagramsOfAllFlows()) {
    count(datagram.name, datagrams + gate, [&] { drain(library, daemons, datagram, datagrams); });
  }
}

}  // namespace

int main() try {
  unsetenv("LD_PRELOAD");  // it is not for the router's settings command
  countClassifications();
  countNames();
  countPasses();
  return 0;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "tembra-counted: %s\n", failure.what());
  return 1;
}
