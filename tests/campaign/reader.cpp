#include "campaign/reader.h"

#include <tembra/events.h>
#include <tembra/vocabulary.h>

#include <algorithm>

namespace campaign {

Reader::Reader(const Record& record) : record_(record), waitBegan_(record.began), wait_(kFirstWait) {
  expected_.end = kForEver;
}

Expectation Reader::read() {
  if (nobodyIsThere(record_)) {
    end(record_.began, 3);
    return expected_;
  }
  begin();
  for (const Datagram& datagram : record_.wire) {
    if (over_ || datagram.at > record_.ended) break;
    if (datagram.to == kLibraryAddress) take(datagram);
  }
  if (!over_) passTime(record_.ended);
  if (expected_.status != 0 || !over_) expected_.added.reset();
  return expected_;
}

void Reader::take(const Datagram& datagram) {
  passTime(datagram.at);
  if (over_) return;
  latestLength_ = std::min(datagram.bytes.size(), buffer_.size());
  std::copy_n(datagram.bytes.begin(), latestLength_, buffer_.begin());
  waitBegan_ = datagram.at;
  if (datagram.from == kZwaveAddress) return zwave(datagram.at);
  if (datagram.from == kZigbeeAddress) return zigbee(datagram.at);
  if (datagram.from == kHueAddress) return hue(datagram.at);
  if (datagram.from == kNestAddress) nest(datagram.at);
}

// Whatever arrives begins the wait anew; a time-out ends what is under way, and the wait stays as long.
void Reader::passTime(Time now) {
  if (!over_ && named_ && *named_ <= now) return handOver(*named_);
  while (!over_ && waitBegan_ + wait_ <= now) {
    waitBegan_ += wait_;
    timeOut(waitBegan_);
  }
}

void Reader::timeOut(Time now) {
  if (idle_) {
    wait_ = kFirstWait;
    return;
  }
  for (const Server server : toCancel_) send(now, std::string(wordOf(server)) + " cancel");
  toCancel_.clear();
  idle_ = true;
  tell(now, EVENT_TIMEOUT);
}

void Reader::becomeIdle(Time now) {
  idle_ = true;
  if (record_.step.goal == Goal::kRemove && leaving_ != 0) end(now, leaving_ == EVENT_REMOVED ? 0 : 1);
}

void Reader::cancelOther(Time now, Server answers) {
  send(now, answers == Server::kZwave ? "zigbee cancel" : "zwave cancel");
  toCancel_ = {answers};
}

bool Reader::isStored(unsigned node) const {
  const std::vector<StoredDevice>& devices = record_.before.devices;
  return std::any_of(devices.begin(), devices.end(), [node](const StoredDevice& device) {
    return device.radio == RADIO_ZWAVE && device.address == node;
  });
}

Expectation expectationOf(const Record& record) { return Reader(record).read(); }

}  // namespace campaign
