// What the receive thread's three event buffers and its report must hold, followed step by step beside the library.
#ifndef TEMBRA_TESTS_RECEIVER_BUFFERS_H
#define TEMBRA_TESTS_RECEIVER_BUFFERS_H

#include <iterator>
#include <vector>

#include "kit/router.h"

/// Every field is public: the steps write what the library has to write, and nothing else.
class Buffers {
 public:
  Buffers();

  kit::Router router;
  TembraAssociation& assoc;
  DeviceReport report{};
  AssocEvent a{};  ///< Z-Wave progress, time-outs, Hue results
  AssocEvent b{};  ///< device reports, removals, bridge lists
  AssocEvent c{};  ///< Nest; Hue answers and removal notices are copied over it

  /// From now on the callback smears each record that it gets, so a byte that a later event does not write shows.
  void smear();

  /// Compares all bytes of the one event that has come. An event of source -1 leaves the source word as it is.
  void expect(AssocEvent& buffer, int code, int source);
  void expectReport(int code, int source);

  /// A new connection: its thread begins with empty buffers.
  void reopen();

 private:
  static void smearRecord(AssocEvent& event);

  bool smears_ = false;
};

/// One answer or time-out, and what it must do to the buffers.
struct Step {
  const char* name;
  void (*take)(Buffers&);
};

namespace steps {

extern const Step kTimeOut, kReopen;
extern const Step kZwaveAdding, kZwaveInfo, kZwaveKnown, kZwaveFailed, kZwaveNotClassified, kZwaveChoice,
    kZwaveLongChoice, kZwaveCreated, kZwaveRemoved, kZwaveStranger, kZwaveNobody;
extern const Step kZigbeeAdding, kZigbeeInfo, kZigbeeFailed, kZigbeeChoice, kZigbeeCreated, kZigbeeRemoved,
    kZigbeeStranger;
extern const Step kHueDone, kHueFailed, kHueBridges, kHueUnknown, kNest41, kNest44;

}  // namespace steps

/// All of them.
std::vector<Step> allSteps();

#endif
