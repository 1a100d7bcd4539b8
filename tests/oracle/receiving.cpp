#include <arpa/inet.h>

#include "model.h"
#include "offsets.h"

namespace oracle {
namespace {

constexpr std::size_t kReasonLength = 1024;

struct Sender {
  const char* text;
  void (Model::*answer)();
};

// In the order in which they are tried. A sender counts by where its address occurs, not by equality.
constexpr Sender kSenders[] = {{"127.255.255.254:8888", &Model::zwaveAnswer},
                               {"127.255.255.253:8888", &Model::zigbeeAnswer},
                               {"127.255.255.1:9999", nullptr},
                               {"127.255.255.252:8888", &Model::hueAnswer},
                               {"127.255.255.251:8888", &Model::nestAnswer}};

const Sender* senderOf(const std::string& address) {
  for (const Sender& sender : kSenders) {
    if (std::string(sender.text).find(address) != std::string::npos) return &sender;
  }
  return nullptr;
}

}  // namespace

void Model::receive(const std::string& sender, const Bytes& datagram) {
  if (running == 0) return;
  std::copy_n(datagram.begin(), std::min(datagram.size(), buffer.bytes.size()), buffer.bytes.begin());
  const Sender* known = senderOf(sender);
  if (known == nullptr) {
    log(2, "libTembraAssoc:received command from unknown server\n");
  } else if (known->answer == nullptr) {
    log(1, "libTembraAssoc:\n*** Got data from HA_Server. Not implemented ***\n");
  } else {
    assocMesh = localMesh;
    (this->*known->answer)();
  }
  beginPass();
}

void Model::wait(long seconds) {
  while (running != 0 && left <= seconds) {
    seconds -= left;
    timeOut();
    beginPass();
  }
  left -= seconds;
}

void Model::beginPass() {
  if (running == 0) {
    log(0, "libTembraAssoc:exited receive thread\n");
    return;
  }
  line("timeout " + std::to_string(timeout));
  left = timeout;
}

void Model::timeOut() {
  logFormatted(0, "libTembraAssoc:Didn't get packet for " + std::to_string(timeout) + " secs");
  if (idle != 0) {
    setTimeout(180, "libTembraAssoc:idle timeout set to 180 sec...");
    return;
  }
  cancel(cancelTarget);
  eventA.setNumber(kEventCode, 2);
  eventA.setNumber(kPayload, lastEventCode);
  eventA.clear(kPayload + 4, kReasonLength);
  eventA.setText(R"({"CommandType":")" + cmdtype.text(0, 59) +
                     R"(", "MobileInternalIndex":"","Success":"false","Reason":"TimeoutReached"})",
                 kPayload + 4, kReasonLength);
  deliver(eventA);
  lastEventCode = 0;
  cancelTarget = 0;
  idle = 1;
}

void Model::setTimeout(int seconds, const char* line) {
  timeout = seconds;
  log(0, line);
}

}  // namespace oracle
