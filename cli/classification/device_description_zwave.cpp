// A Z-Wave node as a JSON text describes it.
#include <iterator>

#include "cli/classification/device_description_members.h"
#include "words/class_names.h"

namespace tembra::cli {
namespace {

using nlohmann::json;

constexpr unsigned char kClassesEnd = 0xFF;
constexpr int kLargestClass = kClassesEnd - 1;
constexpr std::size_t kMostClasses = std::size(ZwNodeInfo{}.commandClasses) - 1;
constexpr std::size_t kMostValues = std::size(ZwNodeInfo{}.values) - 1;

unsigned char describedCommandClass(const json& value, const std::string& name) {
  return static_cast<unsigned char>(describedClass(value, name, 1, kLargestClass, words::commandClassNumber));
}

void readClasses(const json& value, const std::string& name, ZwNodeInfo& node, Remarks& /*remarks*/) {
  unsigned char* end = node.commandClasses;
  for (const json& one : describedList(value, name, kMostClasses)) {
    *end++ = describedCommandClass(one, "a class in " + name);
  }
  *end = kClassesEnd;
}

void readValues(const json& value, const std::string& name, ZwNodeInfo& node, Remarks& /*remarks*/) {
  ZwValueTriple* triple = node.values;
  for (const json& one : describedList(value, name, kMostValues)) {
    if (!one.is_array() || one.size() != 3) {
      refuseDescription("has one of the " + name + " that is not [command class, index, instance]");
    }
    *triple++ = {describedCommandClass(one[0], "a command class in " + name),
                 static_cast<unsigned char>(describedNumber(one[1], "an index in " + name, 0, 255)),
                 static_cast<unsigned char>(describedNumber(one[2], "an instance in " + name, 0, 255))};
  }
}

constexpr DescriptionMember<ZwNodeInfo> kZwaveMembers[] = {
    {"node", nullptr, readNumber<&ZwNodeInfo::nodeId, 1, 254>},
    {"basic", nullptr, readNumber<&ZwNodeInfo::basicClass, 0, 255>},
    {"generic", nullptr, readNumber<&ZwNodeInfo::genericClass, 0, 255>},
    {"specific", nullptr, readNumber<&ZwNodeInfo::specificClass, 0, 255>},
    {"classes", "commandClasses", readClasses},
    {"values", nullptr, readValues},
    {"label", nullptr, passOver},
    {"description", nullptr, passOver},
    {"source", nullptr, passOver},
    {"derived", nullptr, passOver},
};

}  // namespace

ZwNodeInfo readZwaveDescription(const json& device, Remarks& remarks) {
  constexpr unsigned char kRoutingSlave = 4;
  ZwNodeInfo node{};
  node.nodeId = 1;
  node.basicClass = kRoutingSlave;
  node.commandClasses[0] = kClassesEnd;
  readMembers(device, kZwaveMembers, node, remarks);
  return node;
}

}  // namespace tembra::cli
