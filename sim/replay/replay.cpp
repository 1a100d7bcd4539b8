#include "sim/replay/replay.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <system_error>
#include <utility>

#include "platform/printable.h"
#include "sim/core/raw_datagram.h"
#include "sim/core/record_bytes.h"
#include "sim/core/signals.h"
#include "sim/core/sockets.h"
#include "sim/radio/restored_networks.h"
#include "sim/replay/commands_sent.h"
#include "tembra/records.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kReplayedLengths[] = {sizeof(ZwaveCommand), sizeof(ZigbeeCommand), sizeof(HueCommand),
                                            sizeof(NestCommand)};
constexpr std::string_view kAsThen = "as then";

// As long as the library may take to do what it does by itself; and to do more than it did then.
constexpr milliseconds kReactionTime(5000);
constexpr milliseconds kRestTime(500);
constexpr std::chrono::seconds kLongestWait(180);  // of the library for an answer

// Linux ends long waits late, by up to an eighth.
milliseconds lateEnd(milliseconds wait) { return wait + wait / 8; }

// The database of the recording, unless there is one already.
std::string withDatabase(const std::string& path, const Traffic& traffic) {
  const bool isThere = std::filesystem::exists(path);
  if (!isThere) warnWithoutDatabase(traffic);
  if (!isThere) makeDatabase(path, traffic);
  if (isThere && !traffic.database.empty() && DeviceList(path).contents() != traffic.database) {
    std::cerr << "tembra-sim: the database " << path
              << " stays as it is. It differs from the one of the recording, and so may names and numbers" << std::endl;
  }
  return path;
}

}  // namespace

Replay::Replay(const ReplayOptions& options)
    : options_(options),
      traffic_(loadTraffic(options.file)),
      journal_(options.timeline, options.recording),
      loop_(options.speed),
      home_(Home::load(options.catalogue, options.ownDevices)),
      signals_(stopSignals()),
      list_(withDatabase(options.database, traffic_)),
      haServer_(surroundings_, list_,
                {[this](RadioNetwork::Address address) { return zwaveNetwork_.deviceAt(address); },
                 [this](RadioNetwork::Address address) { return zigbeeNetwork_.deviceAt(address); }}),
      effects_(HueLamps(haServer_, list_), Authorisation(options.authorisation)),
      control_(loop_, commands_, options.control),
      playback_(loop_, traffic_, [this](const RecordedDatagram& answer) { say(answer); }),
      comparison_(
          traffic_,
          [this](const std::string& text) {
            std::cerr << "tembra-sim: " << text << std::endl;
            if (!options_.goesOn) loop_.stop();
          },
          [this](std::size_t place) { playback_.requestIsOver(place); }) {
  for (std::size_t i = 0; i < servers_.size(); ++i) {
    const bool isLeftOut =
        std::find(options.without.begin(), options.without.end(), kServerWords[i]) != options.without.end();
    if (!isLeftOut) start(i);
  }
  restoreNetworks(list_, zwaveNetwork_, zigbeeNetwork_);
  if (!options.recording.empty()) recordDatabase(list_, journal_);
  journal_.listen([this](const auto& from, const auto& to, auto datagram) { heard(from, to, datagram); });
  commands_.add("status", [this](const std::string&) { return status(); });
  commands_.add("stop", [this](const std::string&) {
    loop_.stop();
    return Outcome{true, "stopping"};
  });
  loop_.watch(signals_.get(), [this] { loop_.stop(); });
}

int Replay::run() {
  std::cout << "tembra-sim: ready" << std::endl;
  playback_.start();
  awaitEnd();
  loop_.run();
  const bool isWhole = comparison_.differences() == 0 || options_.goesOn;
  if (isWhole) comparison_.giveUp();
  if (!isWhole) std::cerr << "tembra-sim: stopped there; --go-on would go on" << std::endl;
  if (isWhole && !playback_.isOver()) {
    std::cerr << "tembra-sim: " << playback_.left() << " datagram(s) of the servers were not sent" << std::endl;
  }
  journal_.endRecording();
  const bool isAsThen = comparison_.differences() == 0 && playback_.isOver() && journal_.troubles() == 0;
  if (isAsThen) std::cout << "tembra-sim: everything was as it was then" << std::endl;
  return isAsThen ? 0 : 1;
}

void Replay::heard(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> datagram) {
  const std::optional<Server> server = serverAt(to);
  if (!isLibrary(from) || !server) return;
  if (*server != Server::kHa) journal_.said(kLibrary.name, endpointOf(*server).name, describe(*server, datagram));
  effects_.requested(*server, datagram);
  lastCommands_[static_cast<std::size_t>(*server)] = commandIn(*server, datagram);
  comparison_.heard(*server, datagram);
  awaitEnd();
}

void Replay::start(std::size_t server) {
  servers_[server] = std::make_unique<ReplayedServer>(*kServers[server], kReplayedLengths[server], surroundings_);
}

void Replay::change(std::size_t server, bool runs) {
  journal_.said("router", kServerWords[server], runs ? "started as then" : "killed as then");
  journal_.recordFact(serverLine(kServerWords[server], runs));
  if (!runs) servers_.at(server).reset();
  if (runs && servers_.at(server) == nullptr) start(server);
}

void Replay::say(const RecordedDatagram& answer) {
  try {
    if (answer.runs) {
      change(static_cast<std::size_t>(*answer.server), *answer.runs);
      return awaitEnd();
    }
    if (answer.server) {
      joinDescribed(home_, *answer.server, answer.bytes, zwaveNetwork_, zigbeeNetwork_);
      if (lastCommands_[static_cast<std::size_t>(*answer.server)] == Command::kRemove) forget(answer);
      effects_.answered(*answer.server, answer.bytes);
    }
    sendAs(answer);
  } catch (const std::exception& failure) {
    journal_.trouble(failure.what());
  }
  awaitEnd();
}

// The device that left; the next one of its kind is no second one.
void Replay::forget(const RecordedDatagram& answer) {
  if (answer.server == Server::kZwave) zwaveNetwork_.forget(recordFrom<ZwNodeInfo>(answer.bytes).nodeId);
  const auto device = recordFrom<ZbDeviceInfo>(answer.bytes);
  if (answer.server == Server::kZigbee && device.msgCode == ZIGBEE_REMOVED) zigbeeNetwork_.forget(device.shortAddress);
}

// Of a sender that is no server, or has another port than the server.
void Replay::sendAs(const RecordedDatagram& answer) {
  if (answer.server == Server::kHa) return haServer_.sendRaw(answer.bytes, kAsThen);
  if (answer.server) {
    ReplayedServer* const server = servers_[static_cast<std::size_t>(*answer.server)].get();
    if (server != nullptr) server->sendRaw(answer.bytes, kAsThen);
    return;
  }
  sendFrom(answer.sender, answer.bytes, kAsThen, journal_);
}

// What is left when the servers have said everything may be what the library does by itself. A recording in which
// nobody was asked for anything has no end of its own.
bool Replay::mayEnd() const {
  if (!comparison_.expectsAny()) return false;
  const std::vector<std::size_t> left = comparison_.outstanding();
  return playback_.isOver() && std::all_of(left.begin(), left.end(), [this](std::size_t place) {
           return isReaction(traffic_.datagrams[place], std::nullopt);
         });
}

void Replay::awaitEnd() {
  loop_.cancel(endTimer_);
  if (!mayEnd()) return;
  const std::vector<std::size_t> left = comparison_.outstanding();
  if (left.empty()) return rest(kReactionTime + lateEnd(kLongestWait));
  const std::size_t next = left.front();
  const auto gap = traffic_.datagrams[next].time - traffic_.datagrams[next == 0 ? 0 : next - 1].time;
  endTimer_ = afterRealTime(kReactionTime + lateEnd(std::chrono::round<milliseconds>(gap)), [this] { loop_.stop(); });
}

// A front end that keeps the connection may wait for more than it did then: its cancel comes at the end of that wait.
void Replay::rest(milliseconds most) {
  endTimer_ = afterRealTime(kRestTime, [this, most] {
    if (most <= kRestTime || !isTaken(kLibrary)) return loop_.stop();
    if (!std::exchange(toldOfRest_, true)) {
      std::cout << "tembra-sim: all was said and heard. The front end keeps the connection: what it sends counts, too"
                << std::endl;
    }
    rest(most - kRestTime);
  });
}

EventLoop::TimerId Replay::afterRealTime(milliseconds delay, EventLoop::Task task) {
  return loop_.after(std::chrono::round<milliseconds>(delay * options_.speed), std::move(task));
}

Outcome Replay::status() const {
  return {true, "still to be heard: " + std::to_string(comparison_.outstanding().size()) + "\nstill to be said: " +
                    std::to_string(playback_.left()) + "\ndifferences: " + std::to_string(comparison_.differences())};
}

}  // namespace tembra::sim
