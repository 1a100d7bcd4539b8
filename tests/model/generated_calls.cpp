#include "generator.h"
#include "operations.h"

namespace oracle {
namespace {

const char* const kMacs[] = {"a1:b2:c3:0a:1b:2c", "02:a1:b2:7A:0c:2f"};

}  // namespace

Step Generator::anyCall() {
  return oneOf({{30, &Generator::radioCall},
                {35, &Generator::namingCall},
                {14, &Generator::hueCall},
                {9, &Generator::nestCall},
                {6, &Generator::conversion},
                {6, &Generator::connectionCall}});
}

Step Generator::radioCall() {
  const int number = anyRadioNumber();
  switch (below(6)) {
    case 0:
      return call("addDevZigbeeZwave");
    case 1:
      return call("removeDevZigbeeZwave");
    case 2:
      return call("sendCancelTo", number);
    case 3:
      return call("doResetFor", number);
    case 4:
      return call("cmdToZigbee", number);
    default:
      return call("cmdToZwave", number);
  }
}

Step Generator::namingCall() {
  constexpr int kIndexTypes[] = {1, 2, 9, 14, 17, 35, 37, 50};
  switch (below(8)) {
    case 0:
      return call("setDevType", anyType());
    case 1:
      return call("setDevType2", anyType());
    case 2:
      return call("setDevName", anyName());
    case 3:
      return call("setDevLocation", anyName());
    case 4:
      return call("GenericIndexType", anyType());
    case 5:
      return call("ChangeIndexType", oneOf(kIndexTypes), oneOf(kIndexTypes));
    case 6:
      return call("getDefaultDevName", anyType(), below(3) - 1);
    default:
      return call("addingDone");
  }
}

Step Generator::hueCall() {
  const std::string mac = oneOf(kMacs);
  switch (below(6)) {
    case 0:
      return call("Hue_initiateAdd");
    case 1:
      return call("Hue_addBridge", mac);
    case 2:
      return call("Hue_addDev", mac, anyName());
    case 3:
      return call("Hue_refreshBridge", mac, anyName());
    case 4:
      return call("Hue_remove", mac);
    default:
      return call("Hue_getBridgeList");
  }
}

Step Generator::nestCall() {
  switch (below(3)) {
    case 0:
      return call("Nest_add", anyName());
    case 1:
      return call("Nest_remove");
    default:
      return call("Nest_checkExist");
  }
}

Step Generator::conversion() {
  if (chance(50)) return call("RevertHueMac", oneOf(kMacs));
  return call("HueMac", std::string("02a1b2fffe7A0c2f"));
}

Step Generator::connectionCall() { return call(chance(50) ? "checkAssocConnection" : "closeAssocConnection"); }

int Generator::anyRadioNumber() {
  constexpr int kNumbers[] = {1, 2, 3, 4, 1, 2, 3, 4, 0, 5, 9, -1};
  return oneOf(kNumbers);
}

}  // namespace oracle
