#include "node_reading.h"

#include <algorithm>
#include <cstring>

#include "class_rows.h"
#include "formatted.h"
#include "index_rows.h"
#include "offsets.h"

namespace oracle {
namespace {

constexpr std::size_t kValuesAt = 57;
constexpr std::size_t kValueRoom = 181;
constexpr std::size_t kIndexesAt = 973;
constexpr std::size_t kIndexRoom = 31;
constexpr unsigned char kListEnd = 0xFF;

void addLogLine(Lines& log, int level, const std::string& text) {
  log.push_back("log " + std::to_string(level) + " " + text);
}

void addFormattedLine(NodeOutcome& outcome, int level, const std::string& text) {
  outcome.formatted.push_back(text);
  addLogLine(outcome.log, level, text);
}

bool lists(const ZwNodeInfo& node, unsigned char commandClass) {
  const auto* end = std::find(std::begin(node.commandClasses), std::end(node.commandClasses), kListEnd);
  return std::find(std::begin(node.commandClasses), end, commandClass) != end;
}

void readCommandClasses(const ZwNodeInfo& received, NodeOutcome& outcome) {
  std::string text = formatted("node %d Supported Command Classes:", received.nodeId);
  for (std::size_t i = 0; i < 53 && received.commandClasses[i] != kListEnd; ++i) {
    outcome.work.commandClasses[i] = received.commandClasses[i];
    if (i < 52) outcome.work.commandClasses[i + 1] = 0;
    text += formatted("0x%.2x ", received.commandClasses[i]);
  }
  addFormattedLine(outcome, 0, text);
}

// One "cmd matched" for each command class found, up to the first that is missing.
int readType(const ZwNodeInfo& received, NodeOutcome& outcome) {
  const ClassRow& row = classRow(received.genericClass, received.specificClass);
  int type = row.classes[0] == 0 ? row.type : row.typeWithClasses;
  for (const unsigned char commandClass : row.classes) {
    if (commandClass == 0) break;
    if (!lists(received, commandClass)) {
      type = row.type;
      break;
    }
    addLogLine(outcome.log, 0, "libTembraAssoc:cmd matched");
  }
  outcome.work.proposedType = type;
  addLogLine(outcome.log, 0, row.text);
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

}  // namespace

void readValues(const ZwNodeInfo& received, NodeOutcome& outcome) {
  const auto* value = reinterpret_cast<const unsigned char*>(&received) + kValuesAt;
  IndexBytes table(outcome.work);
  std::size_t k = 0;
  table.type(0, 0);
  for (std::size_t i = 0; i < kValueRoom && value[0] != 0; ++i, value += 3) {
    const int type = indexRow(value[0], value[1]).type;
    addFormattedLine(outcome, 3,
                     formatted("libTembraAssoc:GenericDevice: command class: %d command index %d", value[0], value[1]));
    table.type(k, type);
    if (type != kUndefined) {
      table.instance(k, value[2]);
      raise(outcome.raised, type);
      addFormattedLine(outcome, 3,
                       formatted("libTembraAssoc:GenericDevice: cmdclass %d index %d instance : %d Enum: %d ", value[0],
                                 value[1], value[2], type));
    } else {
      addFormattedLine(
          outcome, 3,
          formatted("libTembraAssoc:GenericDevice: Enum is not defined for : cmdclass %d ind %d", value[0], value[1]));
      if (k > 0) --k;
    }
    ++k;
    table.type(k, 0);
  }
}

NodeOutcome readNode(const ZwNodeInfo& received, const NodeOutcome& before, int id) {
  NodeOutcome outcome = before;
  outcome.result = 0;
  outcome.log.clear();
  outcome.formatted.clear();
  readCommandClasses(received, outcome);
  if (received.basicClass == 0) {
    addLogLine(outcome.log, 2, "libTembraAssoc:BasicType is 0,so skipping Device addition");
    return outcome;
  }
  outcome.classifiedType = readType(received, outcome);
  if (outcome.classifiedType == kGenericDevice) readValues(received, outcome);
  outcome.work.deviceKind = 2;
  outcome.work.nodeId = received.nodeId;
  outcome.name = typeName(outcome.classifiedType) + " #" + std::to_string(id);
  keepText(outcome.work.name, outcome.name);
  outcome.work.requestMark = 255;
  addFormattedLine(
      outcome, 0,
      formatted("libTembraAssoc:Device Basic Type:0x%.2x, Generic Type:0x%.2x, Specific Type:0x%.2x,Nodeid:%d",
                received.basicClass, received.genericClass, received.specificClass, received.nodeId));
  outcome.result = 1;
  return outcome;
}

}  // namespace oracle
