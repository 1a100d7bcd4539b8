#include "hue_devices.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

using kit::Database;
using kit::Device;

namespace {

void putIndexes(Database& database, int id, int number, const OptionalText& value) {
  if (value) database.index(id, number, *value);
}

std::string formatted(const char* format, int n) {
  char text[32] = {};
  std::snprintf(text, sizeof text, format, n);
  return text;
}

}  // namespace

void putLamp(Database& database, int id, const OptionalText& bridgeId, const OptionalText& user) {
  database.put(Device(id, "Lamp").ip().type("HueLamp"));
  putIndexes(database, id, 1, bridgeId);
  putIndexes(database, id, 9, user);
}

void putWallSwitch(Database& database, int id, const OptionalText& bridgeId, const OptionalText& user) {
  database.put(Device(id, "Switch").ip().type("MultilevelSwitchOnOff"));
  putIndexes(database, id, 3, bridgeId);
  putIndexes(database, id, 5, user);
}

void putSpeaker(Database& database, int id) { database.put(Device(id, "Speaker").ip().type("Speaker")); }

std::string bridgeIdOf(int n) { return formatted("a1b2c3fffe0a1b%02d", n); }
std::string macOf(int n) { return formatted("a1:b2:c3:0a:1b:%02d", n); }

std::string listOf(const std::vector<std::pair<std::string, std::string>>& elements) {
  std::string list = R"({"MAClist":[)";
  for (const auto& [mac, user] : elements) {
    if (list.back() != '[') list += ',';
    list.append(R"({"mac":")").append(mac).append(R"(","username":")").append(user).append(R"("})");
  }
  return list + "]}";
}

std::string bridgeListOf(TembraAssociation& assoc) {
  const std::unique_ptr<char, decltype(&std::free)> list(assoc.Hue_getBridgeList(), &std::free);
  return list == nullptr ? "null" : list.get();
}
