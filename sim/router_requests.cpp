// What people and scenarios can ask of the simulated router.
#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "sim/core/number.h"
#include "sim/core/raw_datagram.h"
#include "sim/replay/known_devices.h"
#include "sim/replay/traffic.h"
#include "sim/router.h"
#include "sim/zigbee/descriptions.h"

namespace tembra::sim {

void Router::addRequests() {
  commands_.add("press", [this](const std::string& name) { return press(name); });
  commands_.add("fail", [this](const std::string& radio) { return fail(radio); });
  commands_.add("answer", [this](const std::string& what) { return answer(what); });
  commands_.add("send", [this](const std::string& datagram) { return send(datagram); });
  commands_.add("note", [](const std::string& text) { return Outcome{true, text}; });
  commands_.add("bridges", [this](const std::string& count) { return setBridges(count); });
  commands_.add("fault", [this](const std::string& specification) { return addFault(specification); });
  commands_.add("status", [this](const std::string&) { return status(); });
  commands_.add("kill", [this](const std::string& server) { return kill(server); });
  commands_.add("start", [this](const std::string& server) { return start(server); });
  commands_.add("stop", [this](const std::string&) { return stop(); });
}

Outcome Router::press(const std::string& name) {
  if (name == kHueButton) return hue_.ask([](HueServer& server) { return server.pressLinkButton(); });
  if (home_.zwave.find(name) != nullptr) return zwave_.ask([&](ZwaveServer& server) { return server.press(name); });
  if (home_.zigbee.find(name) != nullptr) return zigbee_.ask([&](ZigbeeServer& server) { return server.press(name); });
  return {false, "there is no device \"" + name + "\"; there are " + home_.labels()};
}

Outcome Router::fail(const std::string& radio) {
  if (radio.empty() || radio == "zwave") return zwave_.ask([](ZwaveServer& server) { return server.pressFailing(); });
  if (radio == "zigbee") return zigbee_.ask([](ZigbeeServer& server) { return server.pressFailing(); });
  return {false, "no radio is called \"" + radio + "\"; there are zwave and zigbee"};
}

Outcome Router::answer(const std::string& serverAndAnswer) {
  const std::size_t end = std::min(serverAndAnswer.find(' '), serverAndAnswer.size());
  const std::string server = serverAndAnswer.substr(0, end);
  const std::string what = serverAndAnswer.substr(std::min(end + 1, serverAndAnswer.size()));
  if (server == "zigbee") return zigbee_.ask([&](ZigbeeServer& it) { return it.say(what); });
  if (server == "hue") return hue_.ask([&](HueServer& it) { return it.say(what); });
  if (server == "nest") return nest_.ask([&](NestServer& it) { return it.say(what); });
  return {false, "no server \"" + server + "\" answers on demand; zigbee, hue and nest do"};
}

// What the server was going to say still follows. A device that describes itself is in the network, as after a press.
Outcome Router::send(const std::string& whoAndDatagram) {
  const RawDatagram raw = rawDatagramFrom(whoAndDatagram);
  const auto* const word = std::find(kServerWords.begin(), kServerWords.end(), raw.sender);
  if (word != kServerWords.end()) {
    joinDescribed(home_, static_cast<Server>(word - kServerWords.begin()), raw.bytes, zwaveNetwork_, zigbeeNetwork_);
  }
  const auto sendRaw = [&raw](Daemon& server) {
    server.sendRaw(raw.bytes, "a datagram as it was given");
    return Outcome{true, "sent"};
  };
  if (raw.sender == "zwave") return zwave_.ask(sendRaw);
  if (raw.sender == "zigbee") return zigbee_.ask(sendRaw);
  if (raw.sender == "hue") return hue_.ask(sendRaw);
  if (raw.sender == "nest") return nest_.ask(sendRaw);
  if (raw.sender == "ha") return sendRaw(haServer_);
  sendFrom(raw.stranger, raw.bytes, "a datagram as it was given", journal_);
  return {true, "sent"};
}

Outcome Router::addFault(const std::string& specification) {
  if (specification == "none") {
    faults_.clear();
    return {true, "no faults are set"};
  }
  faults_.add(parseFault(specification));
  return {true, "fault set: " + specification};
}

// The bridges are the home's: a Hue server that starts again finds them all.
Outcome Router::setBridges(const std::string& count) {
  bridges_ = parseNumber(count, 0, HueBridges::kMost);
  return hue_.ask([&](HueServer& server) { return server.setBridges(count); });
}

Killable* Router::serverCalled(const std::string& name) {
  const std::array<Killable*, kKillableServers.size()> servers{&zwave_, &zigbee_, &hue_, &nest_};
  const auto* const word = std::find(kKillableServers.begin(), kKillableServers.end(), name);
  return word == kKillableServers.end() ? nullptr : servers[static_cast<std::size_t>(word - kKillableServers.begin())];
}

Outcome Router::kill(const std::string& name) {
  Killable* const server = serverCalled(name);
  if (server == nullptr) return {false, "no server \"" + name + "\" can be killed; zwave, zigbee, hue and nest can"};
  if (!server->running()) return {false, server->text() + " is not running"};
  server->kill();
  journal_.said("router", name, "killed");
  journal_.recordFact(serverLine(name, false));
  return {true, server->text() + " is dead"};
}

Outcome Router::start(const std::string& name) {
  Killable* const server = serverCalled(name);
  if (server == nullptr) return {false, "no server \"" + name + "\" can be started; zwave, zigbee, hue and nest can"};
  if (server->running()) return {false, server->text() + " is running"};
  try {
    server->start();
  } catch (const std::runtime_error& failure) {  // another daemon has its address
    return {false, failure.what()};
  }
  journal_.said("router", name, "started");
  journal_.recordFact(serverLine(name, true));
  return {true, server->text() + " is running again"};
}

Outcome Router::stop() {
  loop_.stop();
  return {true, "stopping"};
}

Outcome Router::status() const {
  const auto line = [](const std::string& name, const std::string& value) { return name + ": " + value + "\n"; };
  std::string text;
  text += line("Z-Wave server", zwave_.state([](const ZwaveServer& it) { return std::string(it.mode()); }));
  text += line("ZigBee server", zigbee_.state([](const ZigbeeServer& it) { return std::string(it.mode()); }));
  text += line("Hue server", hue_.state([](const HueServer& it) { return std::string(it.state()); }));
  text += line("Nest server", nest_.state([](const NestServer& it) {
    return std::string(it.state()).append(it.linked() ? ", linked" : ", not linked");
  }));
  text += line("nodes joined", std::to_string(zwaveNetwork_.devices().size()));
  for (const auto& [node, device] : zwaveNetwork_.devices()) {
    text += "  node " + std::to_string(node) + "  " + device + "\n";
  }
  text += line("ZigBee devices joined", std::to_string(zigbeeNetwork_.devices().size()));
  for (const auto& [address, device] : zigbeeNetwork_.devices()) {
    text += "  " + addressText(address) + "  " + device + "\n";
  }
  text += line("datagrams",
               std::to_string(journal_.received()) + " received, " + std::to_string(journal_.sent()) + " sent");
  text += line("faults set", std::to_string(faults_.count()));
  text += line("faults found", std::to_string(journal_.mistakes()));
  text += "troubles: " + std::to_string(journal_.troubles());
  return {true, text};
}

}  // namespace tembra::sim
