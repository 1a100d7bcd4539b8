// What both radio servers' answers lead to, told a second time and apart from the library.
#ifndef TEMBRA_TESTS_ZIGBEE_BOTH_RADIOS_PAGE_H
#define TEMBRA_TESTS_ZIGBEE_BOTH_RADIOS_PAGE_H

#include <tembra/events.h>
#include <tembra/vocabulary.h>

#include <string>
#include <utility>

constexpr int kKnownNode = 9;

// An answer: of the ZigBee server by its status, or of the Z-Wave server by its node.
struct Answer {
  bool isZigbee;
  int value;
};

constexpr Answer zigbee(int status) { return {true, status}; }
constexpr Answer zwave(int node) { return {false, node}; }

/// What a front end can see of the association, and the time-out of the next wait.
struct Standing {
  int state = ASSOC_IDLE;
  int idle = 0;
  int last = EVENT_HUE_BRIDGES;
  int cancel = cancel_both;
  int radio = 0;
  std::string commandType = "AddDevice";
  int timeout = 180;

  /// The end of an operation.
  void finish() {
    last = 0;
    idle = 1;
    state = ASSOC_IDLE;
  }

  void wait(int seconds, const char* operation) {
    timeout = seconds;
    commandType = operation;
  }

  [[nodiscard]] std::string text() const {
    return "state " + std::to_string(state) + " idle " + std::to_string(idle) + " last " + std::to_string(last) +
           " cancel " + std::to_string(cancel) + " radio " + std::to_string(radio) + " cmdtype " + commandType;
  }
};

/// The state machine of both radios as a table of two pages: what is sent and told, and what it leaves. The known node
/// is the only one in the database, every device that is created has no types to choose from.
class BothRadiosPage {
 public:
  explicit BothRadiosPage(Standing begin) : now_(std::move(begin)) {}

  [[nodiscard]] const Standing& now() const { return now_; }

  std::string on(const Answer& answer) {
    if (!answer.isZigbee) return onZwave(answer.value);
    if (now_.state == ASSOC) return onZigbeeAdding(answer.value);
    return now_.state == DEASSOC ? onZigbeeRemoving(answer.value) : "";
  }

 private:
  static constexpr char kCancelZigbee[] = "send zigbee 320\n";
  static constexpr char kCancelZwave[] = "send zwave 236\n";
  static constexpr char kNotice[] = "send ha 4100\n";

  std::string onZigbeeAdding(int status) {
    switch (status) {
      case 1:
        now_.radio = 1;
        now_.cancel = 1;
        now_.last = 3;
        now_.idle = 0;
        now_.wait(60, "AddingSensor");
        return kCancelZwave + std::string("event 3 source 1\n");
      case 2:
      case 11:
        now_.finish();
        return "event 9 source 1\n";
      case 3:
        return "";
      case 6:
        now_.last = 5;
        now_.idle = 0;
        now_.wait(180, "GettingInfo");
        return "event 5 source 1\n";
      case 10:
        return created(ZB_ADDED, "event 7 source 1\n");
      default:
        now_.state = ASSOC_IDLE;
        return "";
    }
  }

  std::string created(int state, const char* told) {
    now_.last = 7;
    now_.commandType = "EditNameLocation";
    now_.state = state;
    return told;
  }

  std::string onZigbeeRemoving(int status) {
    if (status != 2 && status != 12) return "";
    now_.finish();
    now_.radio = 1;
    now_.cancel = 0;
    if (status == 12) return kCancelZwave + std::string("event 12 source 1\n");
    return kCancelZwave + std::string(kNotice) + "event 11 source 1\n";
  }

  std::string onZwave(int node) {
    switch (now_.state) {
      case ASSOC:
        return onZwaveAdding(node);
      case ZW_ASSOC:
        return onZwaveIdentified(node);
      case ZW_ASSOC_QUERY:
        return created(ASSOC_IDLE, "event 7 source 2\n");
      case DEASSOC:
        return onZwaveRemoving(node);
      case ZW_REMOVING:
        now_.idle = 1;
        now_.cancel = 0;
        break;
      default:
        break;
    }
    now_.state = ASSOC_IDLE;
    return "";
  }

  std::string takenByZwave(const char* told) {
    now_.radio = 2;
    now_.cancel = 2;
    return kCancelZigbee + std::string(told);
  }

  std::string onZwaveAdding(int node) {
    if (node == 255) {
      now_.finish();
      return takenByZwave("event 9 source 2\n");
    }
    now_.state = ZW_ASSOC;
    now_.last = 3;
    now_.idle = 0;
    now_.wait(60, "AddingSensor");
    return takenByZwave("event 3 source 2\n");
  }

  std::string onZwaveIdentified(int node) {
    if (node == kKnownNode || isNobody(node)) {
      now_.finish();
      return node == kKnownNode ? "event 4 source 2\n" : "event 9 source 2\n";
    }
    now_.state = ZW_ASSOC_QUERY;
    now_.last = 5;
    now_.wait(180, "GettingInfo");
    return "event 5 source 2\n";
  }

  std::string onZwaveRemoving(int node) {
    now_.last = 0;
    if (isNobody(node)) {
      now_.finish();
      return takenByZwave("event 12 source 2\n");
    }
    now_.state = ZW_REMOVING;
    now_.idle = 0;
    now_.wait(20, "RemoveDevice");
    if (node != kKnownNode) return takenByZwave("event 12 source 2\n");
    return takenByZwave(kNotice) + "event 11 source 2\n";
  }

  static bool isNobody(int node) { return node == 0 || node == 255; }

  Standing now_;
};

#endif
