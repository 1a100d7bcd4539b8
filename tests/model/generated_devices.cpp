// Nodes and devices of any kind: of classes, clusters and texts that count, in any company.
#include "generator.h"
#include "oracle/class_rows.h"
#include "oracle/formatted.h"
#include "oracle/offsets.h"

namespace oracle {
namespace {

constexpr int kGenericType = 60;
constexpr int kEndOfClasses = 255;
constexpr int kCommandClasses[] = {0x20, 0x25, 0x26, 0x30, 0x31, 0x32, 0x40, 0x42, 0x43, 0x44, 0x62, 0x71, 0x80, 0x86};

constexpr int kEndOfClusters = 0xFFFF;
constexpr int kClusters[] = {0x0006, 0x0006, 0x0008, 0x0100, 0x0101, 0x0102, 0x0200, 0x0201, 0x0202,
                             0x0300, 0x0400, 0x0402, 0x0403, 0x0404, 0x0405, 0x0406, 0x0500, 0x0500,
                             0x0500, 0x0503, 0x0504, 0x0702, 0x0B04, 0x0B04, 0x0020};
constexpr int kZones[] = {0x0000, 0x0000, 0x0000, 0x000D, 0x0015, 0x0028, 0x002A, 0x002B,
                          0x002C, 0x002D, 0x010F, 0x0115, 0x021D, 0x0225, 0xABCD};
constexpr const char* kMakers[] = {"", "", "NYCE", "Zen Within", "OSRAM", "Dravotek Ltd."};
constexpr const char* kModels[] = {"",     "",     "MiniSD", "XE01S",  "SZ-PIR04N", "RC_ACE",
                                   "UPIC", "3014", "3041",   "SML001", "ESW"};
constexpr int kPresets[] = {0, 0, 0, 0, 1, 4, 24, 33};

}  // namespace

// Half of the nodes are of a class that is more than a generic device.
Record<1036> Generator::anyBlock(std::string& words) {
  const ClassRow* row = &oneOf(classRows());
  for (const bool known = chance(50); known && row->type == kGenericType;) row = &oneOf(classRows());
  Record<1036> block;
  block.setByte(kNodeBasic, chance(4) ? 0 : 1 + below(4));
  block.setByte(kNodeGeneric, row->generic == kOther ? below(256) : row->generic);
  block.setByte(kNodeSpecific, row->specific == kOther ? below(256) : row->specific);
  words += formatted(", class 0x%02x 0x%02x, basic %d, supports", block.byte(kNodeGeneric), block.byte(kNodeSpecific),
                     block.byte(kNodeBasic));
  std::size_t at = kNodeClasses;
  for (int more = below(5); more > 0; --more) {
    block.setByte(at, oneOf(kCommandClasses));
    words += formatted(" 0x%02x", block.byte(at++));
  }
  block.setByte(at, kEndOfClasses);
  words += ", values";
  at = kNodeValues;
  for (int more = below(6); more > 0; --more, at += 3) {
    block.setByte(at, oneOf(kCommandClasses));
    block.setByte(at + 1, chance(60) ? 0 : below(9));
    block.setByte(at + 2, below(4));
    words += formatted(" 0x%02x.%d.%d", block.byte(at), block.byte(at + 1), block.byte(at + 2));
  }
  return block;
}

Record<444> Generator::anyDescription(std::string& words) {
  constexpr std::size_t kChecks[] = {228, 232, 240};
  constexpr std::size_t kWords[] = {292, 294};
  Record<444> description;
  std::size_t at = kZigbeeClusters;
  words += ", clusters";
  for (int more = below(5); more > 0; --more, at += 4) {
    description.setWord(at, oneOf(kClusters));
    description.setWord(at + 2, below(4));
    words += formatted(" 0x%02x%02x@%d", description.byte(at + 1), description.byte(at), description.byte(at + 2));
  }
  description.setWord(at, kEndOfClusters);
  const std::string maker = oneOf(kMakers);
  const std::string model = oneOf(kModels);
  const int zone = oneOf(kZones);
  const int preset = oneOf(kPresets);
  description.setText(maker, kZigbeeMaker, 80);
  description.setText(model, kZigbeeModel, 22);
  description.setWord(kZigbeeZone, zone);
  description.setByte(kZigbeeType, preset);
  for (const std::size_t check : kChecks) description.setWord(check, below(2));
  if (chance(50)) description.setWord(kWords[0], 0x1002);
  if (chance(50)) description.setWord(kWords[1], 0x5EC0);
  words += formatted(R"(, maker "%s", model "%s", zone %x, type %d)", maker.c_str(), model.c_str(),
                     static_cast<unsigned>(zone), preset);
  return description;
}

}  // namespace oracle
