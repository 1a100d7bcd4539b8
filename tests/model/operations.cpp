#include "operations.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <stdexcept>

#include "library.h"
#include "oracle/formatted.h"
#include "oracle/model.h"

namespace oracle {
namespace {

// The library takes texts that it does not change as plain pointers.
char* textOf(const std::string& text) { return const_cast<char*>(text.c_str()); }

std::string pointerText(const unsigned char* pointer) { return pointer == &idle ? "idle" : "something else"; }

std::string ownedText(char* text) {
  std::string copy = text == nullptr ? "null" : text;
  std::free(text);
  return copy;
}

std::string converted(int (*conversion)(char*, char*), const std::string& text) {
  char out[50] = {};
  const int length = conversion(textOf(text), out);
  return std::to_string(length) + " " + out;
}

std::string defaultName(int type, int id) {
  char out[256] = {};
  const int length = getDefaultDevName(static_cast<DevType>(type), id, out);
  return std::to_string(length) + " " + out;
}

std::string modelledDefaultName(int type, int id) {
  const std::string name = typeName(type) + " #" + std::to_string(id);
  return std::to_string(name.size()) + " " + name;
}

void takeRole(int role) {
  constexpr TembraAssociation* (*kRoles[])() = {
      &TembraAssociation::webServerAssocInit, &TembraAssociation::LCDAssocInit,
      &TembraAssociation::cloudappsAssocInit, &TembraAssociation::meshServerAssocInit,
      &TembraAssociation::FreeUsr1AssocInit,  &TembraAssociation::FreeUsr2AssocInit};
  kRoles[role - 1]();
}

std::function<void(Model&)> planned(const Step& step) {
  if (step.inner.empty()) return {};
  return [inner = step.inner.front()](Model& model) { inner.operation->onModel(model, inner); };
}

void switchCallback(Library& library, bool on) {
  if (on) {
    library.router().registerCallback();
  } else {
    library.assoc().registerAssocEventCB(nullptr);
  }
}

void rest(Model& model) {
  model.state = model.lastEventCode = model.cancelTarget = model.activeRadio = 0;
  model.cmdtype.clear();
  model.idle = 1;
}

void rest(TembraAssociation& assoc) {
  assoc.assocState = assoc.lastEventCode = assoc.cancelTarget = assoc.activeRadio = 0;
  std::fill(std::begin(cmdtype), std::end(cmdtype), '\0');
  idle = 1;
}

using M = Model;
using L = Library;
using S = Step;

const Operation kRadioCalls[] = {
    {"addDevZigbeeZwave", Shown::kNothing, [](M& m, const S&) { m.startAdding(); },
     [](L& l, const S&) { l.assoc().addDevZigbeeZwave(); }},
    {"removeDevZigbeeZwave", Shown::kNothing, [](M& m, const S&) { m.startRemoving(); },
     [](L& l, const S&) { l.assoc().removeDevZigbeeZwave(); }},
    {"sendCancelTo", Shown::kNumber, [](M& m, const S& s) { m.cancel(s.number); },
     [](L& l, const S& s) { l.assoc().sendCancelTo(static_cast<cancel_type>(s.number)); }},
    {"doResetFor", Shown::kNumber, [](M& m, const S& s) { m.reset(s.number); },
     [](L& l, const S& s) { l.assoc().doResetFor(static_cast<reset_type>(s.number)); }},
    {"cmdToZigbee", Shown::kNumber, [](M& m, const S& s) { m.commandZigbee(s.number); },
     [](L& l, const S& s) { l.assoc().cmdToZigbee(static_cast<zigbee_cmd>(s.number)); }},
    {"cmdToZwave", Shown::kNumber, [](M& m, const S& s) { m.commandZwave(s.number); },
     [](L& l, const S& s) { l.assoc().cmdToZwave(static_cast<zwave_cmd>(s.number)); }},
};

const Operation kNamingCalls[] = {
    {"setDevType", Shown::kNumber, [](M& m, const S& s) { m.chooseType(s.number); },
     [](L& l, const S& s) { l.assoc().setDevType(static_cast<DevType>(s.number)); }},
    {"setDevType2", Shown::kNumber, [](M& m, const S& s) { m.changeType(s.number); },
     [](L& l, const S& s) { l.assoc().setDevType2(static_cast<DevType>(s.number)); }},
    {"setDevName", Shown::kText, [](M& m, const S& s) { m.setName(s.text); },
     [](L& l, const S& s) { l.assoc().setDevName(textOf(s.text)); }},
    {"setDevLocation", Shown::kText, [](M& m, const S& s) { m.setLocation(s.text); },
     [](L& l, const S& s) { l.assoc().setDevLocation(textOf(s.text)); }},
    {"GenericIndexType", Shown::kNumber, [](M& m, const S& s) { m.rewriteIndexes(s.number); },
     [](L& l, const S& s) { l.assoc().GenericIndexType(static_cast<DevType>(s.number)); }},
    {"ChangeIndexType", Shown::kNumbers, [](M& m, const S& s) { m.rewriteIndex(s.number, s.second); },
     [](L& l, const S& s) {
       l.assoc().ChangeIndexType(static_cast<IndexType>(s.number), static_cast<IndexType>(s.second));
     }},
    {"addingDone", Shown::kNothing, [](M& m, const S&) { m.result(std::to_string(m.finish())); },
     [](L& l, const S&) { L::result(std::to_string(l.assoc().addingDone())); }},
    {"getDefaultDevName", Shown::kNumbers, [](M& m, const S& s) { m.result(modelledDefaultName(s.number, s.second)); },
     [](L&, const S& s) { L::result(defaultName(s.number, s.second)); }},
};

const Operation kIpCalls[] = {
    {"Hue_initiateAdd", Shown::kNothing,
     [](M& m, const S&) {
       m.hueDiscover();
       m.result("idle");
     },
     [](L& l, const S&) { L::result(pointerText(l.assoc().Hue_initiateAdd())); }},
    {"Hue_addBridge", Shown::kText,
     [](M& m, const S& s) {
       m.hueAddBridge(s.text);
       m.result("idle");
     },
     [](L& l, const S& s) { L::result(pointerText(l.assoc().Hue_addBridge(textOf(s.text)))); }},
    {"Hue_addDev", Shown::kTexts,
     [](M& m, const S& s) {
       m.hueAddBulb(s.text, s.other);
       m.result("idle");
     },
     [](L& l, const S& s) { L::result(pointerText(l.assoc().Hue_addDev(textOf(s.text), textOf(s.other)))); }},
    {"Hue_refreshBridge", Shown::kTexts,
     [](M& m, const S& s) {
       m.hueRefresh(s.text, s.other);
       m.result("idle");
     },
     [](L& l, const S& s) { L::result(pointerText(l.assoc().Hue_refreshBridge(textOf(s.text), textOf(s.other)))); }},
    {"Hue_remove", Shown::kText,
     [](M& m, const S& s) {
       m.hueRemove(s.text);
       m.result("idle");
     },
     [](L& l, const S& s) { L::result(pointerText(l.assoc().Hue_remove(textOf(s.text)))); }},
    {"Hue_getBridgeList", Shown::kNothing, [](M& m, const S&) { m.result(m.bridgeList()); },
     [](L& l, const S&) { L::result(ownedText(l.assoc().Hue_getBridgeList())); }},
    {"RevertHueMac", Shown::kText, [](M& m, const S& s) { m.result("16 " + bridgeIdOf(s.text)); },
     [](L&, const S& s) { L::result(converted(&RevertHueMac, s.text)); }},
    {"HueMac", Shown::kText, [](M& m, const S& s) { m.result("17 " + macOf(s.text)); },
     [](L&, const S& s) { L::result(converted(&HueMac, s.text)); }},
    {"Nest_checkExist", Shown::kNothing, [](M& m, const S&) { m.result(m.authorised ? "1" : "0"); },
     [](L& l, const S&) { L::result(std::to_string(l.assoc().Nest_checkExist())); }},
    {"Nest_add", Shown::kText,
     [](M& m, const S& s) {
       m.nestAdd(s.text);
       m.result("idle");
     },
     [](L& l, const S& s) { L::result(pointerText(l.assoc().Nest_add(textOf(s.text)))); }},
    {"Nest_remove", Shown::kNothing,
     [](M& m, const S&) {
       m.nestRemove();
       m.result("idle");
     },
     [](L& l, const S&) { L::result(pointerText(l.assoc().Nest_remove())); }},
};

const Operation kSurroundings[] = {
    {"datagram", Shown::kDatagram, [](M& m, const S& s) { m.receive(s.text, s.bytes); },
     [](L& l, const S& s) { l.receive(s.text, s.bytes); }},
    {"wait", Shown::kNumber, [](M& m, const S& s) { m.wait(s.number); },
     [](L& l, const S& s) { l.router().advance(s.number); }},
    {"database", Shown::kWords,
     [](M& m, const S& s) {
       m.database = {s.rows, s.health};
     },
     [](L& l, const S& s) { l.setDatabase(s.rows, s.health); }},
    {"authorised", Shown::kNumber, [](M& m, const S& s) { m.authorised = s.number != 0; },
     [](L& l, const S& s) { l.setAuthorised(s.number != 0); }},
    {"sends fail", Shown::kNumber, [](M& m, const S& s) { m.sendsToFail = s.number; },
     [](L& l, const S& s) { l.router().fail(kit::Call::kSendto, EPERM, s.number); }},
    {"assocState =", Shown::kNumber, [](M& m, const S& s) { m.state = s.number; },
     [](L& l, const S& s) { l.assoc().assocState = s.number; }},
    {"at rest", Shown::kNothing, [](M& m, const S&) { rest(m); }, [](L& l, const S&) { rest(l.assoc()); }},
    {"registerAssocEventCB", Shown::kNumber, [](M& m, const S& s) { m.callback = s.number != 0; },
     [](L& l, const S& s) { switchCallback(l, s.number != 0); }},
    {"the callback calls", Shown::kInner, [](M& m, const S& s) { m.inCallback = planned(s); },
     [](L& l, const S& s) { l.setInCallback(s.inner); }},
    {"overwriteEvent", Shown::kNumber, [](M& m, const S& s) { m.overwriteEvent(s.number); },
     [](L& l, const S& s) { l.overwriteEvent(s.number); }},
    {"role", Shown::kNumber, [](M& m, const S& s) { m.takeRole(s.number); },
     [](L&, const S& s) { takeRole(s.number); }},
    {"checkAssocConnection", Shown::kNothing, [](M& m, const S&) { m.result(std::to_string(m.open())); },
     [](L& l, const S&) {
       const int result = l.router().open();
       L::result(std::to_string(result));
     }},
    {"closeAssocConnection", Shown::kNothing, [](M& m, const S&) { m.close(); },
     [](L& l, const S&) { l.router().close(); }},
};

}  // namespace

const std::vector<Operation>& operations() {
  static const std::vector<Operation> all = [] {
    std::vector<Operation> joined;
    const auto add = [&joined](const auto& rows) { joined.insert(joined.end(), std::begin(rows), std::end(rows)); };
    add(kRadioCalls);
    add(kNamingCalls);
    add(kIpCalls);
    add(kSurroundings);
    return joined;
  }();
  return all;
}

const Operation& operation(const std::string& name) {
  const auto found =
      std::find_if(operations().begin(), operations().end(), [&](const Operation& each) { return each.name == name; });
  if (found == operations().end()) throw std::logic_error("no operation " + name);
  return *found;
}

Step call(const std::string& name, int number, int second) {
  Step step;
  step.operation = &operation(name);
  step.number = number;
  step.second = second;
  return step;
}

Step call(const std::string& name, const std::string& text, const std::string& other) {
  Step step = call(name);
  step.text = text;
  step.other = other;
  return step;
}

}  // namespace oracle
