#include "sim/replay/traffic.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/printable.h"
#include "recording/reader.h"
#include "sim/core/sockets.h"
#include "sim/ha/device_list.h"

namespace tembra::sim {
namespace {

constexpr std::size_t kMostBytes = 256 << 20;

bool isSame(const sockaddr_in& one, const sockaddr_in& other) {
  return one.sin_addr.s_addr == other.sin_addr.s_addr && one.sin_port == other.sin_port;
}

std::optional<RecordedDatagram> changeIn(const recording::Comment& comment) {
  for (std::size_t i = 0; i < kServerWords.size(); ++i) {
    for (const bool runs : {false, true}) {
      if (comment.text == serverLine(kServerWords[i], runs)) {
        return RecordedDatagram{0, comment.time, false, static_cast<Server>(i), {}, {}, runs};
      }
    }
  }
  return std::nullopt;
}

void keepComments(const std::vector<recording::Comment>& comments, Traffic& traffic) {
  for (const recording::Comment& comment : comments) {
    if (auto record = recording::recordIn(comment.text)) traffic.database.push_back(std::move(*record));
    if (auto change = changeIn(comment)) traffic.datagrams.push_back(std::move(*change));
  }
}

void keep(recording::Datagram&& datagram, Traffic& traffic) {
  const bool isRequest = isLibrary(datagram.from);
  if (!isRequest && !isLibrary(datagram.to)) return;
  const std::optional<Server> server = serverAt(isRequest ? datagram.to : datagram.from);
  if (isRequest && !server) return;
  if (!datagram.isWhole) {
    throw std::runtime_error("packet " + std::to_string(datagram.packet) +
                             " was not recorded whole: record without a limit of its length");
  }
  traffic.datagrams.push_back(
      {datagram.packet, datagram.time, isRequest, server, datagram.from, std::move(datagram.payload), std::nullopt});
}

Traffic trafficIn(std::istream& stream) {
  recording::Reader reader(stream);
  Traffic traffic;
  std::size_t bytes = 0;
  while (auto datagram = reader.next()) {
    keepComments(reader.takeComments(), traffic);
    bytes += datagram->payload.size();
    if (bytes > kMostBytes) throw std::runtime_error("the recording is too long");
    keep(std::move(*datagram), traffic);
  }
  keepComments(reader.takeComments(), traffic);
  traffic.isCut = reader.wasCut();
  return traffic;
}

}  // namespace

std::string serverLine(std::string_view word, bool runs) {
  return "server " + std::string(word) + (runs ? " started" : " killed");
}

std::optional<Server> serverAt(const sockaddr_in& address) {
  for (std::size_t i = 0; i < kServers.size(); ++i) {
    if (isSame(address, addressOf(*kServers[i]))) return static_cast<Server>(i);
  }
  return std::nullopt;
}

bool isLibrary(const sockaddr_in& address) { return isSame(address, addressOf(kLibrary)); }

Traffic loadTraffic(const std::filesystem::path& file) try {
  std::ifstream stream(file, std::ios::binary);
  if (!stream.good()) throw std::runtime_error("cannot be read");
  if (std::filesystem::is_directory(file)) throw std::runtime_error("is a folder and no recording");
  Traffic traffic = trafficIn(stream);
  if (traffic.isCut) {
    std::cerr << "tembra-sim: " << printable(file.string()) << ": the recording was cut off; "
              << traffic.datagrams.size() << " datagrams from and to the library are left" << std::endl;
  }
  if (traffic.datagrams.empty()) throw std::runtime_error("holds no datagram from or to the library");
  return traffic;
} catch (const std::runtime_error& failure) {
  throw std::runtime_error(file.string() + ": " + failure.what());
}

void warnWithoutDatabase(const Traffic& traffic) {
  if (!traffic.database.empty()) return;
  std::cerr
      << "tembra-sim: the recording holds no device list, so there are no devices at first. What was known then is "
         "new now, unless --db names a copy of the device database of then"
      << std::endl;
}

void makeDatabase(const std::string& path, const Traffic& traffic) {
  if (std::filesystem::exists(path)) throw std::runtime_error(path + " is there already");
  DeviceList::make(path, traffic.database);
}

}  // namespace tembra::sim
