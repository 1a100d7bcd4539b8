#include "sim/replay/to_scenario.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "sim/core/raw_datagram.h"
#include "sim/core/record_bytes.h"
#include "sim/ha/device_list.h"
#include "sim/hue/bridges.h"
#include "sim/replay/commands_sent.h"
#include "sim/replay/known_devices.h"
#include "sim/replay/moments.h"
#include "sim/zigbee/descriptions.h"
#include "sim/zwave/node_blocks.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

using std::chrono::milliseconds;
using SaidDatagram = std::vector<unsigned char>;
using Said = std::vector<SaidDatagram>;

constexpr milliseconds kLatency(200);  // of a simulated server, from the press of a button to its first answer

/// What people or servers did in place of a group of answers.
struct Deed {
  std::string action;
  std::string value;
};

template <typename Record>
bool is(const SaidDatagram& datagram, const Record& record) {
  return datagram == bytesOf(record);
}

class Converter {
 public:
  Converter(const Traffic& traffic, const Home& home) : traffic_(traffic), home_(home), moments_(traffic) { restore(); }

  std::vector<WrittenStep> run() {
    for (std::size_t place = 0; place < traffic_.datagrams.size(); ++place) {
      if (!taken_.contains(place)) convert(place);
    }
    moments_.finish();
    return moments_.steps();
  }

 private:
  using Device = std::pair<Server, RadioNetwork::Address>;

  [[nodiscard]] const RecordedDatagram& at(std::size_t place) const { return traffic_.datagrams[place]; }
  void restore();
  void convert(std::size_t place);
  void keepNotice(const RecordedDatagram& datagram);
  void convertGroup(std::size_t place);
  [[nodiscard]] std::vector<std::size_t> groupFrom(std::size_t place, Server server) const;
  void sendRaw(std::size_t place);

  std::optional<Deed> deedOf(std::size_t request, Command command, const Said& answers);
  std::optional<Deed> nodeAdded(const Said& answers);
  std::optional<Deed> nodeRemoved(const Said& answers);
  std::optional<Deed> deviceAdded(const Said& answers);
  std::optional<Deed> deviceRemoved(const Said& answers);
  std::optional<Deed> hueAnswered(std::size_t request, Command command, const SaidDatagram& answer);
  std::optional<Deed> bridgesListed(std::size_t request, const SaidDatagram& answer);
  std::optional<Deed> nestAnswered(Command command, const SaidDatagram& answer);
  std::optional<Deed> joined(RadioNetwork& network, RadioNetwork::Address address, const std::string& label);
  std::optional<Deed> left(RadioNetwork& network, RadioNetwork::Address address);
  void preventAnswer(std::size_t request, Command command);
  void preventGivingUp(std::size_t request);

  const Traffic& traffic_;
  const Home& home_;
  Moments moments_;
  RadioNetwork zwave_{kFirstNode, kLastNode};
  RadioNetwork zigbee_{kFirstAddress, kLastAddress};
  std::set<unsigned char> stored_;  ///< nodes of the device list, which are not described again
  int bridges_ = 1;
  std::array<std::optional<std::size_t>, kServers.size()> lastRequest_;
  std::set<std::size_t> taken_;  ///< answers that a step stands for already
};

void Converter::restore() {
  for (const auto& [key, value] : traffic_.database) {
    if (value.size() != sizeof(DeviceRecord)) continue;
    const auto record = recordFrom<DeviceRecord>(value);
    const std::string note = DeviceList::noteOf(record);
    if (record.radioKind == RADIO_ZWAVE) {
      zwave_.restore(static_cast<RadioNetwork::Address>(record.zwaveNode), note.empty() ? "?" : note);
      stored_.insert(static_cast<unsigned char>(record.zwaveNode));
    }
    if (record.radioKind == kRadioZigbee) {
      zigbee_.restore(static_cast<RadioNetwork::Address>(record.zigbeeAddress), note.empty() ? "?" : note);
    }
  }
}

void Converter::convert(std::size_t place) {
  const RecordedDatagram& datagram = at(place);
  if (datagram.runs) {
    const std::string word(kServerWords[static_cast<std::size_t>(*datagram.server)]);
    return moments_.add(place, milliseconds(0), *datagram.runs ? "start" : "kill", word);
  }
  if (!datagram.isRequest) return datagram.server ? convertGroup(place) : sendRaw(place);
  const Command command = commandIn(*datagram.server, datagram.bytes);
  if (datagram.server == Server::kHa) return keepNotice(datagram);
  if (command == Command::kResetEnd) zigbee_.clear();
  lastRequest_[static_cast<std::size_t>(*datagram.server)] = place;
  preventAnswer(place, command);
  if (datagram.server == Server::kZwave && command == Command::kReset) zwave_.clear();
}

void Converter::keepNotice(const RecordedDatagram& datagram) {
  const auto notice = recordFrom<HaNotice>(datagram.bytes);
  const Command command = commandIn(Server::kHa, datagram.bytes);
  const unsigned char node = recordFrom<ZwNodeInfo>(notice.record).nodeId;
  if (command == Command::kNoticeRemovedAll) stored_.clear();
  if (notice.recordKind != RECORD_ZWAVE) return;
  if (command == Command::kNoticeAdded) stored_.insert(node);
  if (command == Command::kNoticeRemoved) stored_.erase(node);
}

// The answers of a server up to its next request.
std::vector<std::size_t> Converter::groupFrom(std::size_t place, Server server) const {
  std::vector<std::size_t> group;
  for (std::size_t next = place; next < traffic_.datagrams.size(); ++next) {
    if (at(next).server != server) continue;
    if (at(next).isRequest || at(next).runs) break;
    group.push_back(next);
  }
  return group;
}

// A Hue or Nest server that is silent, or says it at another time, must not answer by itself.
void Converter::preventAnswer(std::size_t request, Command command) {
  if (command == Command::kHueAdd) return preventGivingUp(request);
  const bool answersItself = command == Command::kHueDiscover || command == Command::kHueBulb ||
                             command == Command::kHueRefresh || command == Command::kHueRemove ||
                             command == Command::kNestLink || command == Command::kNestUnlink;
  if (!answersItself) return;
  const std::vector<std::size_t> group = groupFrom(request + 1, *at(request).server);
  if (group.size() == 1) {
    const auto deed = deedOf(request, command, {at(group[0]).bytes});
    if (deed && deed->action.empty()) {
      taken_.insert(group[0]);
      return;
    }
  }
  const std::string_view message = command == Command::kHueDiscover      ? kBridges.name
                                   : at(request).server == Server::kNest ? kNestResult.name
                                                                         : kHueResult.name;
  moments_.prepare(request, "fault", std::string(message) + ":lost");
}

// Without a press of its button, the bridge's add fails by itself after a while.
void Converter::preventGivingUp(std::size_t request) {
  constexpr std::chrono::seconds patience(15);
  const std::vector<std::size_t> group = groupFrom(request + 1, Server::kHue);
  const bool comesFirst = !group.empty() && at(group[0]).time - at(request).time < patience;
  if (!comesFirst) moments_.prepare(request, "fault", "hue:lost");
}

void Converter::convertGroup(std::size_t place) {
  const auto server = static_cast<std::size_t>(*at(place).server);
  const std::vector<std::size_t> group = groupFrom(place, *at(place).server);
  if (lastRequest_[server]) {
    Said answers;
    for (const std::size_t one : group) answers.push_back(at(one).bytes);
    const std::size_t request = *lastRequest_[server];
    const auto deed = deedOf(request, commandIn(*at(place).server, at(request).bytes), answers);
    if (deed) {
      if (!deed->action.empty()) moments_.add(place, kLatency, deed->action, deed->value);
      taken_.insert(group.begin(), group.end());
      return;
    }
  }
  sendRaw(place);
}

void Converter::sendRaw(std::size_t place) {
  const RecordedDatagram& datagram = at(place);
  if (datagram.server) joinDescribed(home_, *datagram.server, datagram.bytes, zwave_, zigbee_);
  const int status = recordFrom<ZbDeviceInfo>(datagram.bytes).msgCode;
  if (datagram.server == Server::kZigbee && is(datagram.bytes, bareDevice(kNoAddress, status))) {
    return moments_.add(place, milliseconds(0), "answer", "zigbee " + std::to_string(status));
  }
  std::string sender;
  if (datagram.server) {
    sender = kServerWords[static_cast<std::size_t>(*datagram.server)];
  } else {
    std::array<char, INET_ADDRSTRLEN> text{};
    inet_ntop(AF_INET, &datagram.sender.sin_addr, text.data(), text.size());
    sender = std::string(text.data()) + ":" + std::to_string(ntohs(datagram.sender.sin_port));
  }
  moments_.add(place, milliseconds(0), "send", rawDatagramText(sender, datagram.bytes));
}

// A deed without an action: the simulated server says this by itself.
std::optional<Deed> Converter::deedOf(std::size_t request, Command command, const Said& answers) {
  switch (*at(request).server) {
    case Server::kZwave:
      if (command == Command::kAdd) return nodeAdded(answers);
      if (command == Command::kRemove) return nodeRemoved(answers);
      if (command == Command::kReset && answers.size() == 1 && is(answers[0], bareNode(kNoNode))) return Deed{};
      return std::nullopt;
    case Server::kZigbee:
      if (command == Command::kAdd) return deviceAdded(answers);
      return command == Command::kRemove ? deviceRemoved(answers) : std::nullopt;
    case Server::kHue:
      return answers.size() == 1 ? hueAnswered(request, command, answers[0]) : std::nullopt;
    case Server::kNest:
      return answers.size() == 1 ? nestAnswered(command, answers[0]) : std::nullopt;
    case Server::kHa:
      return std::nullopt;
  }
  return std::nullopt;
}

std::optional<Deed> Converter::joined(RadioNetwork& network, RadioNetwork::Address address, const std::string& label) {
  if (label.empty()) return std::nullopt;
  std::string name = network.deviceAt(address);
  if (name.empty() || name.substr(0, name.find('#')) != label) {
    name = label;
    for (int number = 2; network.find(name); ++number) name = label + "#" + std::to_string(number);
  }
  RadioNetwork tried = network;
  if (tried.join(name) != address) return std::nullopt;
  network = tried;
  return Deed{"press", name};
}

std::optional<Deed> Converter::left(RadioNetwork& network, RadioNetwork::Address address) {
  const std::string name = network.deviceAt(address);
  if (name.empty() || name == "?") return std::nullopt;
  network.forget(address);
  return Deed{"press", name};
}

std::optional<Deed> Converter::nodeAdded(const Said& answers) {
  if (answers.size() == 1 && is(answers[0], bareNode(kFailedNode))) return Deed{"fail", "zwave"};
  if (answers.size() < 2 || answers.size() > 3) return std::nullopt;
  const unsigned char node = answers[0].empty() ? kNoNode : answers[0][0];
  if (!is(answers[0], bareNode(node)) || !is(answers[1], bareNode(node))) return std::nullopt;
  if (stored_.contains(node) != (answers.size() == 2)) return std::nullopt;
  if (answers.size() == 3) return joined(zwave_, node, labelOf(home_, Server::kZwave, answers[2]));
  const std::string name = zwave_.deviceAt(node);
  return joined(zwave_, node, name == "?" ? "" : name.substr(0, name.find('#')));
}

std::optional<Deed> Converter::nodeRemoved(const Said& answers) {
  if (answers.size() == 1 && is(answers[0], bareNode(kFailedNode))) return Deed{"fail", "zwave"};
  if (answers.size() == 1 && is(answers[0], bareNode(kNoNode))) {
    for (const ZwaveDevice& device : home_.zwave.devices()) {
      if (!zwave_.find(device.label)) return Deed{"press", device.label};
    }
  }
  if (answers.size() != 2 || answers[0].empty()) return std::nullopt;
  const ZwNodeInfo bare = bareNode(answers[0][0]);
  return is(answers[0], bare) && is(answers[1], bare) ? left(zwave_, bare.nodeId) : std::nullopt;
}

std::optional<Deed> Converter::deviceAdded(const Said& answers) {
  if (answers.size() == 1 && is(answers[0], bareDevice(kNoAddress, ZIGBEE_ADD_FAILED_TOO)))
    return Deed{"fail", "zigbee"};
  if (answers.size() != 3) return std::nullopt;
  const auto address = recordFrom<ZbDeviceInfo>(answers[0]).shortAddress;
  const bool isOrderly = is(answers[0], bareDevice(address, ZIGBEE_FOUND)) &&
                         is(answers[1], bareDevice(address, ZIGBEE_GETTING_INFO)) &&
                         recordFrom<ZbDeviceInfo>(answers[2]).shortAddress == address &&
                         recordFrom<ZbDeviceInfo>(answers[2]).msgCode == ZIGBEE_INFO_COMPLETE;
  return isOrderly ? joined(zigbee_, address, labelOf(home_, Server::kZigbee, answers[2])) : std::nullopt;
}

std::optional<Deed> Converter::deviceRemoved(const Said& answers) {
  if (answers.size() != 1) return std::nullopt;
  if (is(answers[0], bareDevice(kNoAddress, ZIGBEE_REMOVED_UNKNOWN))) return Deed{"fail", "zigbee"};
  const auto address = recordFrom<ZbDeviceInfo>(answers[0]).shortAddress;
  return is(answers[0], bareDevice(address, ZIGBEE_REMOVED)) ? left(zigbee_, address) : std::nullopt;
}

std::optional<Deed> Converter::bridgesListed(std::size_t request, const SaidDatagram& answer) {
  const int count = recordFrom<HueAnswer>(answer).count;
  if (count < 0 || count > HueBridges::kMost) return std::nullopt;
  HueAnswer expected{};
  HueBridges(count).list(expected);
  if (!is(answer, expected)) return std::nullopt;
  if (count != std::exchange(bridges_, count)) moments_.prepare(request, "bridges", std::to_string(count));
  return Deed{};
}

std::optional<Deed> Converter::hueAnswered(std::size_t request, Command command, const SaidDatagram& answer) {
  if (command == Command::kHueDiscover) return bridgesListed(request, answer);
  const int type = recordFrom<HueAnswer>(answer).type;
  HueAnswer bare{};
  bare.type = type;
  if (!is(answer, bare)) return std::nullopt;
  if (command == Command::kHueAdd) {
    if (type == HUE_BRIDGE_ADDED) return Deed{"press", std::string(kHueButton)};
    return Deed{"answer", "hue " + std::to_string(type)};
  }
  const bool isItsOwn = (command == Command::kHueBulb && type == HUE_BULB_ADDED) ||
                        (command == Command::kHueRefresh && type == HUE_DONE) ||
                        (command == Command::kHueRemove && type == HUE_DONE_2) || type == HUE_UNKNOWN_BRIDGE;
  return isItsOwn ? std::optional(Deed{}) : std::nullopt;
}

std::optional<Deed> Converter::nestAnswered(Command command, const SaidDatagram& answer) {
  const bool isItsOwn = (command == Command::kNestLink && is(answer, NestAnswer{NEST_ANSWER_121, 0, 0})) ||
                        (command == Command::kNestUnlink && is(answer, NestAnswer{NEST_ANSWER_122, 0, 0}));
  return isItsOwn ? std::optional(Deed{}) : std::nullopt;
}

}  // namespace

std::vector<WrittenStep> scenarioOf(const Traffic& traffic, const Home& home) { return Converter(traffic, home).run(); }

}  // namespace tembra::sim
