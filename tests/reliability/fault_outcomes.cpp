#include "fault_outcomes.h"

#include <iterator>
#include <sstream>
#include <vector>

namespace {

struct Row {
  const char* scenario;
  const char* functions;  // that may give it when they fail; "" for the usual outcome
  const char* outcome;
};

constexpr char kOneBridge[] = R"(bridges {"MAClist":[{"mac":"02:a1:b2:01:02:03","username":"ann"}]})";
constexpr char kNoUser[] = R"(bridges {"MAClist":[{"mac":"02:a1:b2:01:02:03","username":""}]})";
constexpr char kNoBridge[] = R"(bridges {"MAClist":[]})";

constexpr Row kRows[] = {
    // Without memory there is no object, and no copy of a long address text.
    {"Creation", "", "created"},
    {"Creation", "new", "bad_alloc and no object"},
    {"Names", "", "mkaddr 0 print 1"},
    {"Names", "gethostbyname strdup", "mkaddr -1 print 1"},
    {"Names", "getservbyname", "mkaddr -2 print 1"},
    {"Names", "printf", "mkaddr 0 print 0"},

    // No socket, no priority or no address: not open. No mesh id: id 0. No thread: open all the same.
    {"OpenAndClose", "", "open 0 mesh 3"},
    {"OpenAndClose", "socket setsockopt bind", "open -1 mesh 3"},
    {"OpenAndClose", "popen fgets malloc", "open 0 mesh 0"},
    {"OpenWithoutStandardInput", "", "open 0 mesh 3"},
    {"OpenWithoutStandardInput", "socket setsockopt bind fcntl", "open -1 mesh 3"},
    {"OpenWithoutStandardInput", "popen fgets malloc", "open 0 mesh 0"},

    // What ends a receive early is a time-out (event 2), and the answer that follows is handled all the same. Only the
    // last datagram of an add has a result; commands that are not sent are complained of.
    {"FailedSend", "", "send -1"},
    {"LostDescriptor", "", "idle 1"},
    {"ZwaveAdd", "", "done 0 id 17 3 5 6 7"},
    {"ZwaveAdd", "sendto", "done -1 id 17 3 5 6 7"},
    {"ZwaveAdd", "recvfrom", "done 0 id 17 3 2 5 6 7"},
    {"ZwaveAdd", "recvfrom", "done 0 id 17 3 5 2 6 7"},
    {"ZwaveAdd", "recvfrom", "done 0 id 17 3 5 6 2 7"},
    {"ZigbeeAdd", "", "done 0 id 17 3 5 7"},
    {"ZigbeeAdd", "sendto", "done -1 id 17 3 5 7"},
    {"ZigbeeAdd", "recvfrom", "done 0 id 17 3 2 5 7"},
    {"ZigbeeAdd", "recvfrom", "done 0 id 17 3 5 2 7"},
    {"ZigbeeAdd", "recvfrom", "done 0 id 17 3 5 7 2"},
    {"TimeOut", "", "idle 1 2"},
    {"Reset", "", "sends 4"},

    // A database that does not open, or cannot be looked at, gives no id; one without a readable "NextDevid" leaves the
    // id as it was, which is
    // what a later look of the same add has found.
    {"ZwaveAdd", "dpopen dpfdesc fstat pread malloc", "done 0 id -1 3 5 6 7"},
    {"ZigbeeAdd", "dpopen dpfdesc fstat pread malloc", "done 0 id -1 3 5 7"},
    {"ZigbeeAdd", "dpget malloc", "done 0 id 0 3 5 7"},
    {"DeviceId", "", "id 17 kept 17"},
    {"DeviceId", "dpopen dpfdesc fstat pread malloc", "id -1 kept 0"},
    {"DeviceId", "dpget malloc", "id 0 kept 0"},
    {"DeviceIdInStrictMode", "", "id 17 kept 17"},
    {"DeviceIdInStrictMode", "dpopen dpfdesc fstat stat pread malloc", "id -1 kept 0"},
    {"DeviceIdInStrictMode", "dpget malloc", "id 0 kept 0"},
    {"DeviceIdOfAMissingFile", "", "id 0 kept 0"},
    {"DeviceIdOfAMissingFile", "dpopen", "id -1 kept 0 gone"},
    {"DeviceIdOfAMissingFile", "dpfdesc fstat pread malloc", "id -1 kept 0"},

    // A device that cannot be found is an unknown one (event 12). Only a ZigBee device whose database does not open
    // counts as removed (event 11), without an id.
    {"ZwaveRemove", "", "removed 12 11"},
    {"ZwaveRemove", "dpopen dpfdesc fstat pread dpiternext dpget malloc", "removed 0 12"},
    {"ZwaveRemove", "recvfrom", "removed 12 11 2"},
    {"ZigbeeRemove", "", "removed 13 11"},
    {"ZigbeeRemove", "dpiternext dpget malloc", "removed 0 12"},
    {"ZigbeeRemove", "dpopen dpfdesc fstat pread malloc", "removed 0 11"},

    // Lists end where they cannot be read; the Hue server's list without memory for its tokens is one of empty texts.
    {"BridgeList", "", kOneBridge},
    {"BridgeList", "dpopen dpfdesc fstat pread malloc", "bridges null"},
    {"BridgeList", "dpiternext dpget malloc", kNoBridge},
    {"BridgeList", "dpget malloc", kNoUser},
    {"Hue", "", "bridge 10.0.0.2 25"},
    {"Hue", "malloc", "bridge empty 25"},
    {"Nest", "", "linked 1 44"},
    {"Nest", "faccessat", "linked 0 44"},

    // A list is whole or an error; without a file it is empty.
    {"DeviceList", "", "devices 3"},
    {"DeviceList", "open", "devices 0"},
    {"DeviceList", "open fcntl fstat pread", "devices -1"},

    // A damaged file that cannot be repaired is deleted, unless there was no descriptor, memory or disk space for it.
    // Depot's repair does without a record that it has no memory for.
    {"DeviceIdOfADamagedFile", "", "id 17 kept 17"},
    {"DeviceIdOfADamagedFile", "dpget malloc", "id 0 kept 0"},
    {"DeviceIdOfADamagedFile", "dpopen dprepair open dpfdesc fcntl fstat pread pwrite unlink malloc", "id -1 kept 0"},
    {"DeviceIdOfADamagedFile", "dpopen dprepair", "id -1 kept 0 gone"},
    {"LookUpInADamagedFile", "", "removed 0"},
    {"LookUpInADamagedFile", "dpopen dprepair open dpfdesc fcntl fstat pread pwrite unlink dpiternext dpget malloc",
     "removed -1"},
    {"LookUpInADamagedFile", "dpopen dprepair", "removed 0 gone"},
    {"DeviceIdOfAHopelessFile", "", "id -1 kept 0 gone"},
    {"DeviceIdOfAHopelessFile", "unlink", "id -1 kept 0 gone leaves a file"},
    {"DeviceIdOfAHopelessFile", "dpopen dprepair open fstat unlink remove", "id -1 kept 0"},
    {"LookUpInAHopelessFile", "", "removed 0 gone"},
    {"LookUpInAHopelessFile", "unlink", "removed 0 gone leaves a file"},
    {"LookUpInAHopelessFile", "dpopen dprepair open fstat unlink remove", "removed -1"},

    // Depot's repair leaves a descriptor when it has no memory at all.
    {"DeviceIdOfADamagedFile", "malloc", "id -1 kept 0 leaves a descriptor"},
    {"LookUpInADamagedFile", "malloc", "removed -1 leaves a descriptor"},
};

}  // namespace

FaultOutcomes expectedOutcomes(const std::string& scenario) {
  FaultOutcomes outcomes;
  for (const Row& row : kRows) {
    if (scenario != row.scenario) continue;
    std::istringstream functions(row.functions);
    const std::vector<std::string> names(std::istream_iterator<std::string>(functions), {});
    if (names.empty()) outcomes[""].insert(row.outcome);
    for (const std::string& name : names) outcomes[name].insert(row.outcome);
  }
  return outcomes;
}
