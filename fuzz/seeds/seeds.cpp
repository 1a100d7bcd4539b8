// Writes the seeds of the fuzz targets, from the simulated router's catalogue or from a recording: usage:
// PROGRAM CATALOGUE-FOLDER OUT, or PROGRAM --recording FILE OUT
#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "seeds/recorded.h"
#include "seeds/story.h"
#include "seeds/writer.h"
#include "sim/zigbee/catalogue.h"
#include "sim/zigbee/descriptions.h"
#include "sim/zwave/catalogue.h"
#include "sim/zwave/node_blocks.h"
#include "support/database_file.h"
#include "support/private_folder.h"

namespace {

namespace fs = std::filesystem;

using fuzz::Call;
using fuzz::kAnyType;
using fuzz::kSeedAddress;
using fuzz::kSeedNode;
using fuzz::Sender;
using fuzz::Story;
using tembra::sim::describedDevice;
using tembra::sim::describedNode;
using tembra::sim::ZigbeeDevice;
using tembra::sim::ZwaveDevice;

constexpr unsigned char kNode = kSeedNode;
constexpr unsigned short kAddress = kSeedAddress;
constexpr unsigned short kStranger = 0x1A02;
constexpr std::string_view kMac = "a1:b2:c3:0a:1b:2c";
constexpr std::string_view kBridge = R"({"id":"a1b2c3fffe0a1b2c","internalipaddress":"192.168.1.9"})";

Story zwaveAdd(const ZwaveDevice& device) {
  Story story;
  story.open().call(Call::kAdd);
  for (int i = 0; i < 2; ++i) story.datagram(Sender::kZwave, tembra::sim::bareNode(kNode));
  story.datagram(Sender::kZwave, describedNode(kNode, device)).finish();
  return story;
}

Story zigbeeAdd(const ZigbeeDevice& device) {
  Story story;
  story.open().call(Call::kAdd);
  for (const int status : {1, 6}) story.datagram(Sender::kZigbee, tembra::sim::bareDevice(kAddress, status));
  story.datagram(Sender::kZigbee, describedDevice(kAddress, 10, device)).finish();
  return story;
}

// An operation of the kit: its number from 0 on, what to reset, a text, the role, the answers and their end; the flags,
// the moment of what they want, the choice, its texts, and the HA server's record.
class KitStory : public fuzz::SeedWriter {
 public:
  static constexpr unsigned char kNestLink = 10;

  explicit KitStory(unsigned char operation) {
    add(operation), add<unsigned char>(0);
    if (operation == kNestLink) addText("code");
    addText("Lamp"), add<unsigned char>(0);
  }

  /// @param sender as the target numbers them
  template <typename Record>
  KitStory& answer(unsigned char sender, const Record& record) {
    const auto* bytes = reinterpret_cast<const char*>(&record);
    std::size_t length = sizeof record;
    while (length > 0 && bytes[length - 1] == 0) --length;
    add<unsigned char>(2), add(sender), add(static_cast<unsigned short>(length));
    addBytes({bytes, length});
    return *this;
  }

  void finish(const fs::path& folder) {
    add<unsigned char>(0), add<unsigned char>(0), add<unsigned char>(0), add<unsigned char>(0);
    addText("Lamp").addText("Hall");
    DeviceRecord record{};
    std::memcpy(record.typeName, "Siren", sizeof "Siren");
    addBytes({reinterpret_cast<const char*>(&record), sizeof record});
    write(folder);
  }
};

void writeKitAdds(const fs::path& folder, const fs::path& catalogue) {
  const auto nodes = tembra::sim::ZwaveCatalogue::load(catalogue);
  const auto devices = tembra::sim::ZigbeeCatalogue::load(catalogue);
  for (const ZwaveDevice& device : nodes.devices()) {
    if (device.label != "metering-plug" && device.label != "siren") continue;
    KitStory story(0);
    for (int i = 0; i < 2; ++i) story.answer(0, tembra::sim::bareNode(kNode));
    story.answer(0, describedNode(kNode, device)).finish(folder);
  }
  for (const ZigbeeDevice& device : devices.devices()) {
    if (device.label != "zb-tilt" && device.label != "zb-plug") continue;
    KitStory story(0);
    for (const int status : {1, 6}) story.answer(1, tembra::sim::bareDevice(kAddress, status));
    story.answer(1, describedDevice(kAddress, 10, device)).finish(folder);
  }
}

HueAnswer hueAnswer(int type) {
  HueAnswer answer{};
  answer.type = type;
  answer.count = 2;
  for (HueAnswerEntry* entry : {&answer.entries[0], &answer.entries[1]}) {
    std::copy_n(kBridge.begin(), std::min(kBridge.size(), sizeof entry->json), std::begin(entry->json));
  }
  return answer;
}

void addRemovals(fuzz::SeedSeries& sessions) {
  for (const RadioKind radio : {RADIO_ZWAVE, RADIO_IP}) {
    Story zwave;
    zwave.device(3, radio, "Lamp").open().call(Call::kRemove);
    for (int i = 0; i < 2; ++i) zwave.datagram(Sender::kZwave, tembra::sim::bareNode(kNode));
    sessions.add(zwave.timeOut().call(Call::kClose));
  }
  for (const unsigned short address : {kAddress, kStranger}) {
    Story zigbee;
    zigbee.device(3, RADIO_IP, "Lamp").open().call(Call::kRemove);
    sessions.add(zigbee.datagram(Sender::kZigbee, tembra::sim::bareDevice(address, 2)).timeOut().call(Call::kClose));
  }
}

void addIpDevices(fuzz::SeedSeries& sessions) {
  for (int type = 0; type < 10; ++type) {
    sessions.add(Story().open().call(Call::kHueDiscover).datagram(Sender::kHue, hueAnswer(type)).call(Call::kClose));
  }
  for (const int command : {100, 121, 122, 123, 124}) {
    Story story;
    story.open().call(Call::kNestAdd).addText("code");
    sessions.add(story.datagram(Sender::kNest, NestAnswer{command, 0, 1}).call(Call::kClose));
  }
}

void writeZwave(const fs::path& out, const fs::path& catalogue, fuzz::SeedSeries& sessions) {
  const auto devices = tembra::sim::ZwaveCatalogue::load(catalogue);
  for (const ZwaveDevice& device : devices.devices()) {
    fuzz::SeedWriter seed;
    seed.add(describedNode(kNode, device)), seed.add(kAnyType), seed.addText("Lamp");
    seed.write(out / "node");
    sessions.add(zwaveAdd(device));
  }
}

void writeZigbee(const fs::path& out, const fs::path& catalogue, fuzz::SeedSeries& sessions) {
  auto devices = tembra::sim::ZigbeeCatalogue::load(catalogue);
  ZigbeeDevice plug = devices.devices().front();  // what only one maker's devices do
  for (const ZigbeeDevice& device : devices.devices()) {
    if (device.label == "zb-ac-plug") plug = device;
  }
  plug.label = "osram-plug";
  plug.manufacturer = "OSRAM";
  devices.add(plug);
  for (const ZigbeeDevice& device : devices.devices()) {
    fuzz::SeedWriter seed;
    seed.add(describedDevice(kAddress, 10, device)), seed.add(device.zoneType), seed.add(kAnyType);
    seed.addText("Lamp").addText("Kitchen");
    seed.write(out / "zigbee");
    sessions.add(zigbeeAdd(device));
  }
}

void writeKitOthers(const fs::path& folder) {
  KitStory(1).answer(0, tembra::sim::bareNode(kNode)).answer(0, tembra::sim::bareNode(kNode)).finish(folder);
  KitStory(1).answer(1, tembra::sim::bareDevice(kAddress, 2)).finish(folder);
  KitStory(2).finish(folder);
  constexpr int answers[] = {0, 2, 6, 8, 9};  // of the operations on bridges, in their order
  for (std::size_t i = 0; i < std::size(answers); ++i) {
    KitStory(static_cast<unsigned char>(3 + i)).answer(2, hueAnswer(answers[i])).finish(folder);
  }
  for (unsigned char operation = 8; operation < 12; ++operation) {
    KitStory(operation).answer(3, NestAnswer{operation == KitStory::kNestLink ? 121 : 122, 0, 0}).finish(folder);
  }
}

void writeHue(const fs::path& folder) {
  for (int type = 0; type < 10; ++type) {
    fuzz::SeedWriter seed;
    seed.addText(kMac).addText("lamp"), seed.add(static_cast<unsigned char>(type)), seed.add<unsigned char>(1);
    seed.add(static_cast<unsigned short>(sizeof(HueAnswer))), seed.add(hueAnswer(type));
    seed.write(folder);
  }
}

DeviceRecord lamp(int id, RadioKind radio) {
  static constexpr std::string_view kTypes[] = {"HueLamp", "MultilevelSwitchOnOff"};
  DeviceRecord record{};
  record.id = id;
  record.radioKind = radio;
  record.zwaveNode = kNode;
  record.zigbeeAddress = kAddress;
  const std::string_view type = kTypes[id % 2];
  std::copy(type.begin(), type.end(), std::begin(record.typeName));
  std::copy(kMac.begin(), kMac.end(), std::begin(record.name));
  return record;
}

IndexRecord bridgeIndex() {
  IndexRecord record{};
  static constexpr std::string_view kId = "a1b2c3fffe0a1b2c";
  std::copy(kId.begin(), kId.end(), std::begin(record.value));
  return record;
}

template <typename Record>
fuzz::Bytes bytesOf(const Record& record) {
  return {reinterpret_cast<const std::uint8_t*>(&record), sizeof record};
}

// One record of the target's own form: the kind of its key, what the kind needs, and the value.
void writeRecords(const fs::path& folder) {
  fuzz::SeedWriter seed;
  seed.add(kNode), seed.add(kAddress);
  for (signed char id = 2; id <= 4; ++id) {
    seed.add<unsigned char>(0), seed.add(id), seed.add(static_cast<unsigned short>(sizeof(DeviceRecord)));
    seed.add(lamp(id, id == 4 ? RADIO_ZWAVE : RADIO_IP));
    for (unsigned char index = 1; index <= 9; index += 2) {
      seed.add<unsigned char>(1), seed.add(id), seed.add(index);
      seed.add(static_cast<unsigned short>(sizeof(IndexRecord))), seed.add(bridgeIndex());
    }
  }
  seed.add<unsigned char>(2), seed.add<unsigned short>(2), seed.addBytes("17");
  seed.write(folder);
}

// The file is made where the program runs, as the targets make it.
void writeFiles(const fs::path& folder) {
  for (const RadioKind radio : {RADIO_ZWAVE, RADIO_IP}) {
    fuzz::removeDatabaseFile();
    fuzz::DatabaseWriter database;
    for (const int id : {2, 3}) {
      database.put(std::to_string(id), bytesOf(lamp(id, radio)));
      for (const int index : {1, 3, 5, 9}) {
        database.put(std::to_string(id) + "." + std::to_string(index), bytesOf(bridgeIndex()));
      }
    }
    database.close();
    std::ifstream file(fuzz::kDatabaseName, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    fuzz::SeedWriter seed;
    seed.add<unsigned char>(1), seed.add(kNode), seed.add(kAddress), seed.addBytes(content);
    seed.write(folder);
  }
  fuzz::removeDatabaseFile();
}

void writeTexts(const fs::path& folder) {
  for (const std::string_view address : {"127.255.255.4:8888", "*:*", "host:80", "here:http", "9:", "1.2.3.4.5:0"}) {
    fuzz::SeedWriter seed;
    seed.add<unsigned char>(0), seed.add<unsigned char>(16), seed.addText("tcp").addText(address);
    seed.write(folder);
  }
  for (unsigned char kind = 1; kind < 5; ++kind) {
    fuzz::SeedWriter seed;
    seed.add(kind), seed.addText(kMac).addText("BinarySwitch");
    seed.write(folder);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const bool isOfRecording = argc == 4 && std::string_view(argv[1]) == "--recording";
  if (argc != 3 && !isOfRecording) return 2;
  try {
    if (isOfRecording) {
      fuzz::writeRecorded(argv[2], argv[3]);
      return 0;
    }
    const fs::path out = argv[2];
    fuzz::SeedSeries sessions(out / "session");
    writeZwave(out, argv[1], sessions);
    writeZigbee(out, argv[1], sessions);
    addRemovals(sessions);
    addIpDevices(sessions);
    sessions.add(Story().open().call(Call::kAdd).timeOut().timeOut().call(Call::kClose));
    sessions.finish();
    writeHue(out / "hue");
    writeKitAdds(out / "kit", argv[1]);
    writeKitOthers(out / "kit");
    writeRecords(out / "records");
    writeFiles(out / "file");
    writeTexts(out / "text");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
