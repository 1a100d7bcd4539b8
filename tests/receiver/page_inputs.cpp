#include "page_inputs.h"

#include <algorithm>
#include <climits>
#include <map>

using kit::Device;
using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

using Inputs = std::vector<Input>;

Input answer(const Node& node) {
  return [node](Router& router, int) { router.zwave().send(node); };
}

Input answer(const ZigbeeDevice& device) {
  return [device](Router& router, int) { router.zigbee().send(device); };
}

// Every status but these.
std::vector<int> allBut(const std::vector<int>& named) {
  std::vector<int> others;
  for (int status = 0; status <= 255; ++status) {
    if (std::find(named.begin(), named.end(), status) == named.end()) others.push_back(status);
  }
  return others;
}

Inputs from(unsigned short address, const std::vector<int>& statuses) {
  Inputs inputs;
  for (const int status : statuses) inputs.push_back(answer(ZigbeeDevice(address).status(status)));
  return inputs;
}

Inputs fromBoth(const std::vector<int>& statuses) {
  Inputs inputs = from(kKnownAddress, statuses);
  for (const Input& input : from(kUnknownAddress, statuses)) inputs.push_back(input);
  return inputs;
}

Inputs hueResults(std::initializer_list<int> results) {
  Inputs inputs;
  for (const int result : results) {
    HueAnswer sent{};
    sent.type = result;
    inputs.push_back([sent](Router& router, int) { router.hue().send(sent); });
  }
  return inputs;
}

Inputs nestAnswers(std::initializer_list<int> commands, std::initializer_list<int> statuses) {
  Inputs inputs;
  for (const int command : commands) {
    for (const int status : statuses) {
      const NestAnswer sent{command, status, 0};
      inputs.push_back([sent](Router& router, int) { router.nest().send(sent); });
    }
  }
  return inputs;
}

Input datagramOf(const char* sender) {
  return [sender](Router& router, int) { router.from(sender, 12345).send(Node(kKnownNode)); };
}

void waitInVain(Router& router, int timeout) { router.advance(timeout); }

// A device of the database whose node's low byte says that there is none, or a failure.
Input knownAs(int id, unsigned node) {
  return [id, node](Router& router, int) {
    router.database().put(Device(id, "Odd").zwave(node));
    router.zwave().send(Node(static_cast<unsigned char>(node)));
    router.database().drop(std::to_string(id));
  };
}

// A metering switch whose measured values are missing.
ZigbeeDevice unclassified() { return ZigbeeDevice(kUnknownAddress).status(10).clusters({0x0006, 0x0B04}); }

const std::map<std::string, Inputs> kZwave = {
    {"any answer", {answer(Node(0)), answer(Node(kKnownNode)), answer(Node(kUnknownNode)), answer(Node(255))}},
    {"node 255", {answer(Node(255))}},
    {"any other node, also 0", {answer(Node(0)), answer(Node(kKnownNode)), answer(Node(1)), answer(Node(254))}},
    {"node 0 or 255", {answer(Node(0)), answer(Node(255))}},
    {"known node", {answer(Node(kKnownNode))}},
    {"known node, also 0 or 255", {answer(Node(kKnownNode)), knownAs(40, 0x100), knownAs(41, 0xFF)}},
    {"any other node", {answer(Node(1)), answer(Node(kUnknownNode)), answer(Node(254))}},
    {"not classified", {answer(Node(kUnknownNode).basic(0)), answer(Node(kKnownNode).basic(0))}},
    {"classified, with sub-types", {answer(nodeWithSubTypes())}},
    {"classified, without sub-types",
     {answer(nodeWithoutSubTypes()), answer(Node(0).generic(0)), answer(Node(255).generic(0x02))}},
};

const std::map<std::string, Inputs> kZigbee = {
    {"status 1", fromBoth({1})},
    {"status 2 or 11", fromBoth({2, 11})},
    {"status 3", fromBoth({3})},
    {"status 6", fromBoth({6})},
    {"status 10, classified, with sub-types", {answer(deviceWithSubTypes())}},
    {"status 10, classified, without sub-types", {answer(deviceWithoutSubTypes())}},
    {"status 10, not classified", {answer(unclassified())}},
    {"any other status", fromBoth(allBut({1, 2, 3, 6, 10, 11}))},
    {"status 2, known address", from(kKnownAddress, {2})},
    {"status 2, unknown address", from(kUnknownAddress, {2})},
    {"status 12", fromBoth({12})},
    {"neither 2 nor 12", fromBoth(allBut({2, 12}))},
    {"any status", fromBoth(allBut({}))},
};

const std::map<std::string, Inputs> kHue = {
    {"0, bridges were found", hueResults({0})},
    {"1, failed", hueResults({1})},
    {"2, bridge added", hueResults({2})},
    {"3, no bridge found", hueResults({3})},
    {"4, link button not pressed", hueResults({4})},
    {"5, bridge not added yet", hueResults({5})},
    {"6, bulb added", hueResults({6})},
    {"8, done", hueResults({8})},
    {"9, done", hueResults({9})},
    {"any other number", hueResults({7, 10, 255, -1, INT_MAX, INT_MIN})},
};

const std::map<std::string, Inputs> kNest = {
    {"100", nestAnswers({100}, {0, -1, 7})},
    {"121", nestAnswers({121}, {0, -1, 7})},
    {"122", nestAnswers({122}, {0, -1, 7})},
    {"123", nestAnswers({123}, {0, -1, 7})},
    {"124, status 0", nestAnswers({124}, {0})},
    {"124, status -1", nestAnswers({124}, {-1})},
    {"124, any other status", nestAnswers({124}, {1, -2, INT_MAX})},
    {"any other number", nestAnswers({0, 99, 101, 120, 125, -1, 256 + 100, 65536 + 121, INT_MAX, INT_MIN}, {0, -1})},
};

const std::map<std::string, Inputs> kAnybody = {
    {"time-out, idle 0", {waitInVain}},
    {"time-out, idle 1", {waitInVain}},
    {"datagram of the HA server", {datagramOf("127.255.255.1")}},
    {"datagram of a stranger", {datagramOf("127.0.0.1")}},
};

const std::map<std::string, const std::map<std::string, Inputs>*> kInputsOfSections = {
    {"Z-Wave answers", &kZwave}, {"ZigBee answers", &kZigbee},           {"Hue answers", &kHue},
    {"Nest answers", &kNest},    {"Time-outs and strangers", &kAnybody},
};

}  // namespace

void fillHome(Router& router) {
  router.database().put(Device(12, "Lamp").zwave(kKnownNode)).put(Device(13, "Contact").zigbee(kKnownAddress));
}

Node nodeWithSubTypes() { return Node(kUnknownNode).generic(0x10).specific(1); }     // a binary switch
Node nodeWithoutSubTypes() { return Node(kUnknownNode).generic(0x02).specific(7); }  // a gateway

ZigbeeDevice deviceWithSubTypes() { return ZigbeeDevice(kUnknownAddress).status(10).zone(0x0000).cluster(0x0500); }
ZigbeeDevice deviceWithoutSubTypes() { return ZigbeeDevice(kUnknownAddress).status(10).cluster(0x0006); }

std::vector<Input> inputsOf(const std::string& section, const std::string& condition) {
  const auto& inputs = *kInputsOfSections.at(section);
  const auto found = inputs.find(condition);
  return found == inputs.end() ? Inputs{} : found->second;
}
