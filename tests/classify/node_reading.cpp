#include "node_reading.h"

#include <gtest/gtest.h>
#include <tembra/globals.h>
#include <tembra/platform.h>

#include <algorithm>
#include <cstring>

#include "class_rows.h"
#include "index_rows.h"
#include "kit/trace.h"

namespace classify {
namespace {

constexpr int kGenericDevice = 60;
constexpr std::size_t kValuesAt = 57;
constexpr std::size_t kValueRoom = 181;
constexpr std::size_t kIndexesAt = 973;
constexpr std::size_t kIndexRoom = 31;
constexpr unsigned char kListEnd = 0xFF;

void addLogLine(std::string& trace, int level, std::string_view text) {
  trace.append("log ").append(std::to_string(level)).append(" ").append(text).append("\n");
}

template <typename... Numbers>
std::string format(const char* pattern, Numbers... numbers) {
  char text[256];
  std::snprintf(text, sizeof text, pattern, numbers...);
  return text;
}

bool lists(const ZwNodeInfo& node, unsigned char commandClass) {
  const auto* end = std::find(std::begin(node.commandClasses), std::end(node.commandClasses), kListEnd);
  return std::find(std::begin(node.commandClasses), end, commandClass) != end;
}

void readCommandClasses(const ZwNodeInfo& received, Outcome& outcome) {
  std::string text = format("node %d Supported Command Classes:", received.nodeId);
  for (std::size_t i = 0; i < 53 && received.commandClasses[i] != kListEnd; ++i) {
    outcome.work.commandClasses[i] = received.commandClasses[i];
    if (i < 52) outcome.work.commandClasses[i + 1] = 0;
    text += format("0x%.2x ", received.commandClasses[i]);
  }
  addLogLine(outcome.trace, 0, text);
}

// One "cmd matched" for each command class found, up to the first that is missing.
int readType(const ZwNodeInfo& received, Outcome& outcome) {
  const ClassRow& row = classRow(received.genericClass, received.specificClass);
  int type = row.classes[0] == 0 ? row.type : row.typeWithClasses;
  for (const unsigned char commandClass : row.classes) {
    if (commandClass == 0) break;
    if (!lists(received, commandClass)) {
      type = row.type;
      break;
    }
    addLogLine(outcome.trace, 0, "libTembraAssoc:cmd matched");
  }
  outcome.work.proposedType = type;
  addLogLine(outcome.trace, 0, row.text);
  return type;
}

void raise(Capabilities& raised, int type) {
  if (type == 2) raised.binarySensor = 1;
  if (type == 14) raised.basic = 1;
  if (type == 17) raised.multilevel = 1;
  if (type == 35 || type == 37 || type == 38 || type == 39) raised.acExtender = 1;
}

// The table as bytes of the block: entry k's type at 973 + 2k, its instance behind. There is room for 31 entries and
// for a zero type as their end.
class IndexBytes {
 public:
  explicit IndexBytes(ZwNodeInfo& node) : bytes_(reinterpret_cast<unsigned char*>(&node) + kIndexesAt) {}
  void type(std::size_t k, int type) {
    if (k < kIndexRoom) bytes_[2 * k] = static_cast<unsigned char>(type);
    if (k == kIndexRoom) bytes_[2 * k] = 0;
  }
  void instance(std::size_t k, unsigned char instance) {
    if (k < kIndexRoom) bytes_[2 * k + 1] = instance;
  }

 private:
  unsigned char* bytes_;
};

template <typename Text>
void keepText(Text& field, const std::string& text) {
  std::memcpy(field, text.c_str(), text.size() + 1);
}

Outcome take(TembraAssociation& assoc, const ZwNodeInfo& received, int result) {
  EXPECT_EQ(std::memcmp(&assoc.zwNodeRx, &received, sizeof received), 0) << "the received block was changed";
  return {result,           kit::trace().takeLines(),
          assoc.zwNodeWork, assoc.classifiedType,
          assoc.devName,    {BasicFlag, MultilevelFlag, SensorBinaryFlag, ZwAcExtFlag}};
}

void prepare(TembraAssociation& assoc, const ZwNodeInfo& received, const Outcome& before) {
  assoc.zwNodeRx = received;
  assoc.zwNodeWork = before.work;
  assoc.classifiedType = before.classifiedType;
  keepText(assoc.devName, before.name);
  BasicFlag = static_cast<unsigned char>(before.raised.basic);
  MultilevelFlag = static_cast<unsigned char>(before.raised.multilevel);
  SensorBinaryFlag = static_cast<unsigned char>(before.raised.binarySensor);
  ZwAcExtFlag = static_cast<unsigned char>(before.raised.acExtender);
  kit::trace().forget();
}

std::string firstDifference(const ZwNodeInfo& actual, const ZwNodeInfo& expected) {
  if (std::memcmp(&actual, &expected, sizeof actual) == 0) return "";
  const auto* a = reinterpret_cast<const unsigned char*>(&actual);
  const auto* b = reinterpret_cast<const unsigned char*>(&expected);
  const auto at = std::mismatch(a, a + sizeof actual, b);
  return format("working copy at %d: %d instead of %d", static_cast<int>(at.first - a), *at.first, *at.second);
}

bool sameBesideWorkingCopy(const Outcome& a, const Outcome& b) {
  return a.result == b.result && a.trace == b.trace && a.classifiedType == b.classifiedType && a.name == b.name &&
         a.raised == b.raised;
}

std::string textOf(const Outcome& outcome) {
  const Capabilities& raised = outcome.raised;
  return format("result %d type %d raised %d%d%d%d name ", outcome.result, outcome.classifiedType, raised.basic,
                raised.multilevel, raised.binarySensor, raised.acExtender) +
         outcome.name + "\n" + outcome.trace;
}

}  // namespace

void readValues(const ZwNodeInfo& received, Outcome& outcome) {
  const auto* value = reinterpret_cast<const unsigned char*>(&received) + kValuesAt;
  IndexBytes table(outcome.work);
  std::size_t k = 0;
  table.type(0, 0);
  for (std::size_t i = 0; i < kValueRoom && value[0] != 0; ++i, value += 3) {
    const int type = indexRow(value[0], value[1]).type;
    addLogLine(outcome.trace, 3,
               format("libTembraAssoc:GenericDevice: command class: %d command index %d", value[0], value[1]));
    table.type(k, type);
    if (type != kUndefined) {
      table.instance(k, value[2]);
      raise(outcome.raised, type);
      addLogLine(outcome.trace, 3,
                 format("libTembraAssoc:GenericDevice: cmdclass %d index %d instance : %d Enum: %d ", value[0],
                        value[1], value[2], type));
    } else {
      addLogLine(
          outcome.trace, 3,
          format("libTembraAssoc:GenericDevice: Enum is not defined for : cmdclass %d ind %d", value[0], value[1]));
      if (k > 0) --k;
    }
    ++k;
    table.type(k, 0);
  }
}

Outcome readNode(const ZwNodeInfo& received, const Outcome& before, int id) {
  Outcome outcome = before;
  outcome.result = 0;
  outcome.trace.clear();
  readCommandClasses(received, outcome);
  if (received.basicClass == 0) {
    addLogLine(outcome.trace, 2, "libTembraAssoc:BasicType is 0,so skipping Device addition");
    return outcome;
  }
  outcome.classifiedType = readType(received, outcome);
  if (outcome.classifiedType == kGenericDevice) readValues(received, outcome);
  outcome.work.deviceKind = 2;
  outcome.work.nodeId = received.nodeId;
  char typeName[512] = {};
  DevtypeEnumToStr(static_cast<DevType>(outcome.classifiedType), typeName);
  outcome.name.assign(typeName).append(" #").append(std::to_string(id));
  keepText(outcome.work.name, outcome.name);
  outcome.work.requestMark = 255;
  addLogLine(outcome.trace, 0,
             format("libTembraAssoc:Device Basic Type:0x%.2x, Generic Type:0x%.2x, Specific Type:0x%.2x,Nodeid:%d",
                    received.basicClass, received.genericClass, received.specificClass, received.nodeId));
  outcome.result = 1;
  return outcome;
}

Outcome classifyBy(TembraAssociation& assoc, const ZwNodeInfo& received, const Outcome& before) {
  prepare(assoc, received, before);
  const int result = assoc.ZW_createDeviceType();
  return take(assoc, received, result);
}

Outcome deriveIndexesBy(TembraAssociation& assoc, const ZwNodeInfo& received, const Outcome& before) {
  prepare(assoc, received, before);
  assoc.ZW_indexToEnum(reinterpret_cast<unsigned char*>(assoc.zwNodeRx.values));
  return take(assoc, received, before.result);
}

Outcome marked() {
  Outcome outcome;
  std::memset(&outcome.work, 0xA5, sizeof outcome.work);
  outcome.classifiedType = 77;
  outcome.name = "before";
  return outcome;
}

bool expectSame(const Outcome& actual, const Outcome& expected, const std::string& what) {
  const std::string difference = firstDifference(actual.work, expected.work);
  if (difference.empty() && sameBesideWorkingCopy(actual, expected)) return true;
  ADD_FAILURE() << what << "\n" << difference << "\nactual " << textOf(actual) << "expected " << textOf(expected);
  return false;
}

}  // namespace classify
