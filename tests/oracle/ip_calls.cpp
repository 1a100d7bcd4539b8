#include "model.h"
#include "offsets.h"

namespace oracle {
namespace {

constexpr int kIpKind = 3;
constexpr std::size_t kMostListed = 20;

// The characters of a text, and NUL behind its end.
char characterAt(const std::string& text, std::size_t position) {
  return position < text.size() ? text[position] : '\0';
}

std::string upToNul(const std::string& text) { return text.substr(0, text.find('\0')); }

// What a walk over the records has found so far.
struct BridgeWalk {
  std::array<std::string, kMostListed + 1> macs;
  std::size_t count = 0;

  void visit(const Row* bridge, const Row* user, std::array<Record<50>, 50>& users);
};

}  // namespace

std::string macOf(const std::string& bridgeId) {
  std::string mac;
  for (const std::size_t pair : {0U, 2U, 4U, 10U, 12U, 14U}) {
    if (pair != 0) mac += ':';
    mac += characterAt(bridgeId, pair);
    mac += characterAt(bridgeId, pair + 1);
  }
  return upToNul(mac);
}

std::string bridgeIdOf(const std::string& mac) {
  std::string id;
  for (const std::size_t pair : {0U, 3U, 6U, 9U, 12U, 15U}) {
    if (pair == 9) id += "fffe";
    id += characterAt(mac, pair);
    id += characterAt(mac, pair + 1);
  }
  return upToNul(id);
}

void Model::hueCommand(int command, const std::optional<std::string>& mac, const std::string& argument,
                       const char* operation) {
  activeRadio = kHue;
  Record<304> datagram;
  datagram.setText(argument, 120, 50);
  if (mac) datagram.setText(bridgeIdOf(*mac), 170, 50);
  datagram.setNumber(220, command);
  send(kHue, {datagram.bytes.begin(), datagram.bytes.end()});
  if (operation != nullptr) cmdtype.setText(operation);
  idle = 0;
}

void Model::nestCommand(int command, const std::string& text, const char* operation) {
  activeRadio = kNest;
  Record<256> datagram;
  datagram.setNumber(4, command);
  datagram.setText(text, 8);
  send(kNest, {datagram.bytes.begin(), datagram.bytes.end()});
  cmdtype.setText(operation);
  idle = 0;
}

// A bridge is compared with the one before only, and so is a user; only a user advances the count.
void BridgeWalk::visit(const Row* bridge, const Row* user, std::array<Record<50>, 50>& users) {
  if (count == kMostListed) return;
  const std::string mac = bridge == nullptr ? "" : macOf(textAt(*bridge, kIndexValue));
  const bool isNewBridge = count == 0 || macs[count - 1].find(mac) == std::string::npos;
  if (bridge != nullptr && isNewBridge) macs[count] = mac;
  const std::string name = user == nullptr ? "" : textAt(*user, kIndexValue);
  const bool isNewUser = count == 0 || users[count - 1].text().find(name) == std::string::npos;
  if (user != nullptr && isNewUser) users[count++].setText(name);
}

// The keys of a record of another type are those of the record before.
std::string Model::bridgeList() {
  if (!openDatabase()) return "null";
  BridgeWalk walk;
  std::string bridgeKey;
  std::string userKey;
  for (const Row* device : database.devices()) {
    if (wordAt(*device, kDeviceKind) != kIpKind) continue;
    const std::string id = std::to_string(*wordAt(*device, kDeviceId));
    const std::string type = textAt(*device, kDeviceTypeName);
    if (type == "HueLamp" || type == "MultilevelSwitchOnOff") {
      bridgeKey = id + (type == "HueLamp" ? ".1" : ".3");
      userKey = id + (type == "HueLamp" ? ".9" : ".5");
    }
    walk.visit(database.find(bridgeKey), database.find(userKey), users);
  }
  std::string list = R"({"MAClist":[)";
  for (std::size_t i = 0; !walk.macs[i].empty(); ++i) {
    if (i != 0) list += ",";
    list.append(R"({"mac":")").append(walk.macs[i]).append(R"(","username":")").append(users[i].text()).append("\"}");
  }
  return list + "]}";
}

}  // namespace oracle
