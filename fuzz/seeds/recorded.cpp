#include "seeds/recorded.h"

#include <tembra/records.h>

#include <optional>
#include <string_view>

#include "seeds/story.h"
#include "seeds/writer.h"
#include "sim/core/record_bytes.h"
#include "sim/replay/commands_sent.h"
#include "sim/replay/traffic.h"

namespace fuzz {
namespace {

using tembra::sim::Command;
using tembra::sim::RecordedDatagram;
using tembra::sim::Server;

constexpr std::string_view kMac = "a1:b2:c3:0a:1b:2c";

std::string_view textOf(const RecordedDatagram& datagram) {
  return {reinterpret_cast<const char*>(datagram.bytes.data()), datagram.bytes.size()};
}

// An operation is a session of its own, so that the seeds stay short.
class Sessions {
 public:
  explicit Sessions(const std::filesystem::path& folder) : seeds_(folder) {}

  void request(const RecordedDatagram& request) {
    switch (commandIn(*request.server, request.bytes)) {
      case Command::kAdd:
        return request.server == Server::kZwave ? begin(Call::kAdd) : void();
      case Command::kRemove:
        return request.server == Server::kZwave ? begin(Call::kRemove) : void();
      case Command::kHueDiscover:
        return begin(Call::kHueDiscover);
      case Command::kNestLink:
        begin(Call::kNestAdd);
        story_->addText("code");
        return;
      case Command::kNoticeAdded:
        if (story_) seeds_.add(story_->finish());
        story_.reset();
        return;
      default:
        return;
    }
  }

  void answer(const RecordedDatagram& answer) {
    if (story_) story_->bytes(static_cast<Sender>(*answer.server), textOf(answer));
  }

  void finish() {
    end();
    seeds_.finish();
  }

 private:
  void begin(Call call) {
    end();
    story_.emplace();
    story_->open().call(call);
  }
  void end() {
    if (story_) seeds_.add(story_->call(Call::kClose));
    story_.reset();
  }

  SeedSeries seeds_;
  std::optional<Story> story_;
};

void writeNode(const RecordedDatagram& answer, const std::filesystem::path& folder) {
  const auto node = tembra::sim::recordFrom<ZwNodeInfo>(answer.bytes);
  if (node.commandClasses[0] == 0) return;  // the server names the node only
  SeedWriter seed;
  seed.add(node), seed.add(kAnyType), seed.addText("Lamp");
  seed.write(folder);
}

void writeDevice(const RecordedDatagram& answer, const std::filesystem::path& folder) {
  const auto device = tembra::sim::recordFrom<ZbDeviceInfo>(answer.bytes);
  if (device.msgCode != ZIGBEE_INFO_COMPLETE) return;
  SeedWriter seed;
  seed.add(device), seed.add(device.zoneType), seed.add(kAnyType);
  seed.addText("Lamp").addText("Kitchen");
  seed.write(folder);
}

void writeBridges(const RecordedDatagram& answer, const std::filesystem::path& folder) {
  SeedWriter seed;
  seed.addText(kMac).addText("lamp"), seed.add<unsigned char>(0), seed.add<unsigned char>(1);
  seed.add(static_cast<unsigned short>(sizeof(HueAnswer)));
  seed.add(tembra::sim::recordFrom<HueAnswer>(answer.bytes));
  seed.write(folder);
}

}  // namespace

void writeRecorded(const std::filesystem::path& recording, const std::filesystem::path& out) {
  Sessions sessions(out / "session");
  for (const RecordedDatagram& datagram : tembra::sim::loadTraffic(recording).datagrams) {
    if (!datagram.server || datagram.runs) continue;
    if (datagram.isRequest) {
      sessions.request(datagram);
      continue;
    }
    sessions.answer(datagram);
    if (datagram.server == Server::kZwave) writeNode(datagram, out / "node");
    if (datagram.server == Server::kZigbee) writeDevice(datagram, out / "zigbee");
    if (datagram.server == Server::kHue) writeBridges(datagram, out / "hue");
  }
  sessions.finish();
}

}  // namespace fuzz
