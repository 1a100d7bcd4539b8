#include "campaign/reader.h"

#include <tembra/events.h>

#include <map>
#include <utility>

#include "campaign/command_text.h"

namespace campaign {
namespace {

constexpr int kWebServer = 1;

const std::map<std::string, std::string> kDestinations = {{"zigbee", kZigbeeAddress},
                                                          {"zwave", kZwaveAddress},
                                                          {"hue", kHueAddress},
                                                          {"nest", kNestAddress},
                                                          {"ha", kHaAddress}};

std::string hostOf(const std::string& address) { return address.substr(0, address.find(':')); }

}  // namespace

Reader::Reader(const Record& record) : record_(record), waitBegan_(record.began) {
  expected_.end = kForEver;
  model_.database = {record.before.rows, oracle::Health::kGood};
  if (record.step.role == "web") model_.takeRole(kWebServer);
  model_.open();
  model_.effects.clear();
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
  return expected_;
}

void Reader::take(const Datagram& datagram) {
  passTime(datagram.at);
  if (over_) return;
  waitBegan_ = datagram.at;
  model_.receive(hostOf(datagram.from), datagram.bytes);
  settle(datagram.at);
}

// Whatever arrives begins the wait anew; a time-out ends what is under way, and the wait stays as long.
void Reader::passTime(Time now) {
  if (!over_ && named_ && *named_ <= now) return handOver(*named_);
  while (!over_ && waitBegan_ + model_.timeout * kSecond <= now) {
    waitBegan_ += model_.timeout * kSecond;
    model_.timeOut();
    settle(waitBegan_);
  }
}

// The front end also looks at whether the library waits for anything still.
void Reader::settle(Time now) {
  for (const int code : tell(now)) heard(now, code);
  const bool atRest = model_.idle != 0 || model_.running == 0;
  if (over_ || !atRest) return;
  if (record_.step.goal == Goal::kRemove && leaving_ != 0) end(now, leaving_ == EVENT_REMOVED ? 0 : 1);
  if (isIp(record_.step.goal)) end(now, 1);
}

std::vector<int> Reader::tell(Time& now) {
  std::vector<int> codes;
  for (const oracle::Effect& effect : std::exchange(model_.effects, {})) {
    const std::string kind = effect.line.substr(0, effect.line.find(' '));
    const std::string rest = effect.line.substr(kind.size() + 1);
    if (kind == "sleep") now += std::stoi(rest) * kSecond;
    if (kind == "send") {
      const std::string& to = kDestinations.at(rest.substr(0, rest.find(' ')));
      expected_.sent.push_back({now, commandText({now, kLibraryAddress, to, effect.bytes})});
    }
    if (kind != "event") continue;
    codes.push_back(std::stoi(rest));
    expected_.events.push_back({now, codes.back()});
  }
  return codes;
}

Expectation expectationOf(const Record& record) { return Reader(record).read(); }

}  // namespace campaign
