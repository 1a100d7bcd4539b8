// What people and scenarios can ask of the simulated router.
#include <algorithm>

#include "sim/router.h"
#include "sim/zigbee/descriptions.h"

namespace tembra::sim {

void Router::addRequests() {
  commands_.add("press", [this](const std::string& name) { return press(name); });
  commands_.add("fail", [this](const std::string& radio) { return fail(radio); });
  commands_.add("answer", [this](const std::string& what) { return answer(what); });
  commands_.add("bridges", [this](const std::string& count) { return hueServer_.setBridges(count); });
  commands_.add("fault", [this](const std::string& specification) { return addFault(specification); });
  commands_.add("status", [this](const std::string&) { return status(); });
  commands_.add("stop", [this](const std::string&) { return stop(); });
}

Outcome Router::press(const std::string& name) {
  if (name == kHueButton) return hueServer_.pressLinkButton();
  if (zwaveServer_.hasDevice(name)) return zwaveServer_.press(name);
  if (zigbeeServer_.hasDevice(name)) return zigbeeServer_.press(name);
  return {false, "there is no device \"" + name + "\"; there are " + home_.labels()};
}

Outcome Router::fail(const std::string& radio) {
  if (radio.empty() || radio == "zwave") return zwaveServer_.pressFailing();
  if (radio == "zigbee") return zigbeeServer_.pressFailing();
  return {false, "no radio is called \"" + radio + "\"; there are zwave and zigbee"};
}

Outcome Router::answer(const std::string& serverAndAnswer) {
  const std::size_t end = std::min(serverAndAnswer.find(' '), serverAndAnswer.size());
  const std::string server = serverAndAnswer.substr(0, end);
  const std::string what = serverAndAnswer.substr(std::min(end + 1, serverAndAnswer.size()));
  if (server == "zigbee") return zigbeeServer_.say(what);
  if (server == "hue") return hueServer_.say(what);
  if (server == "nest") return nestServer_.say(what);
  return {false, "no server \"" + server + "\" answers on demand; zigbee, hue and nest do"};
}

Outcome Router::addFault(const std::string& specification) {
  if (specification == "none") {
    faults_.clear();
    return {true, "no faults are set"};
  }
  faults_.add(parseFault(specification));
  return {true, "fault set: " + specification};
}

Outcome Router::stop() {
  loop_.stop();
  return {true, "stopping"};
}

Outcome Router::status() const {
  const auto line = [](const std::string& name, const std::string& value) { return name + ": " + value + "\n"; };
  std::string text;
  text += line("Z-Wave server", std::string(zwaveServer_.mode()));
  text += line("ZigBee server", std::string(zigbeeServer_.mode()));
  text += line("Hue server", std::string(hueServer_.state()));
  text += line("Nest server", std::string(nestServer_.state()) + (nestServer_.linked() ? ", linked" : ", not linked"));
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
