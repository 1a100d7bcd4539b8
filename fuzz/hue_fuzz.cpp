// Answers of the Hue server through the receive loop, and the commands that they answer.
#include <arpa/inet.h>
#include <tembra/association.h>
#include <tembra/globals.h>
#include <tembra/hue.h>

#include <algorithm>
#include <cstring>

#include "support/plain_router.h"
#include "support/script.h"

namespace {

using fuzz::require;

// Sends a few answers; then the connection is closed.
class HueRouter : public fuzz::PlainRouter {
 public:
  explicit HueRouter(fuzz::Script& script) : script_(script) {}

  ssize_t receive(int /*descriptor*/, unsigned char* buffer, sockaddr_in& sender) override {
    TembraAssociation& assoc = fuzz::Stage::current()->assoc();
    require(idle <= 1 && fuzz::isTerminated(cmdtype), "the operation's mark and text are whole");
    if (script_.atEnd() || answers_++ == kMostAnswers) assoc.closeAssocConnection();
    if (assoc.running == 0) return 0;
    const auto answer = script_.take(script_.word() % (sizeof(HueAnswer) + 1));
    std::ranges::copy(answer, buffer);
    sender.sin_family = AF_INET;
    sender.sin_addr.s_addr = inet_addr("127.255.255.252");
    expectation_ = Expectation::of(buffer);
    return static_cast<ssize_t>(answer.size());
  }

  void heard(const AssocEvent& event) override {
    require(event.code == EVENT_HUE_FAILED || event.source == SERVER_HUE, "the source is the Hue server");
    require((event.code == EVENT_HUE_BRIDGES) == (expectation_.type == 0), "answers of type 0 are lists");
    if (event.code != EVENT_HUE_BRIDGES) return;
    HueBridgeList list;
    std::memcpy(&list, event.payload, sizeof list);
    require(list.count == std::clamp(expectation_.count, 0, 25), "a list has the answer's bridges");
  }

 private:
  struct Expectation {
    int type = 0;
    int count = 0;

    static Expectation of(const unsigned char* buffer) {
      Expectation expected;
      std::memcpy(&expected, buffer, sizeof expected);
      return expected;
    }
  };

  static constexpr int kMostAnswers = 3;

  fuzz::Script& script_;
  Expectation expectation_;
  int answers_ = 0;
};

void command(TembraAssociation& assoc, fuzz::Script& script) {
  const fuzz::CallersText mac = script.text();
  const fuzz::CallersText text = script.text();
  switch (script.choose(5)) {
    case 0:
      assoc.Hue_initiateAdd();
      break;
    case 1:
      assoc.Hue_addBridge(mac.get());
      break;
    case 2:
      assoc.Hue_addDev(mac.get(), text.get());
      break;
    case 3:
      assoc.Hue_refreshBridge(mac.get(), text.get());
      break;
    default:
      assoc.Hue_remove(mac.get());
  }
  require(idle == 0 && assoc.activeRadio == SERVER_HUE, "a Hue command is an operation of the Hue server's");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Script script(data, size);
  HueRouter router(script);
  const fuzz::Stage stage(router);
  TembraAssociation& assoc = stage.assoc();
  command(assoc, script);
  assoc.clientRole = script.choose(2) == 0 ? ROLE_WEB_SERVER : ROLE_LCD;
  require(assoc.checkAssocConnection() == 0, "the connection opens");
  require(assoc.running == 0 && assoc.sock == 0 && !stage.hasSockets(), "the connection is closed again");
  return 0;
}
