// Hue bridges and their bulbs, and the Nest account: one command, one answer.
#include <tembra/globals.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "bridge_list.h"
#include "operations.h"
#include "texts.h"

namespace tembra::frontend {
namespace {

using std::chrono::seconds;

constexpr Milliseconds kBetweenAnswerLooks{50};
constexpr seconds kLongestAnswer{180};
constexpr seconds kBetweenTries{1};

bool isFrom(ServerType server, int code) {
  return server == SERVER_HUE ? code >= EVENT_HUE_BRIDGES && code <= EVENT_HUE_FAILED
                              : code >= EVENT_NEST_41 && code <= EVENT_NEST_46;
}

// What the answers mean that are not the awaited one.
struct Refusal {
  int code;
  tembra_reason reason;
};
constexpr Refusal kRefusals[] = {{EVENT_HUE_BUTTON, TEMBRA_REASON_LINK_BUTTON},
                                 {EVENT_HUE_NO_BRIDGE, TEMBRA_REASON_NO_BRIDGE},
                                 {EVENT_HUE_UNKNOWN_BRIDGE, TEMBRA_REASON_UNKNOWN_BRIDGE},
                                 {EVENT_HUE_FAILED, TEMBRA_REASON_HUE_FAILED},
                                 {EVENT_NEST_46, TEMBRA_REASON_NEST_REFUSED}};

End endOf(ServerType server, int code) {
  for (const Refusal& refusal : kRefusals) {
    if (refusal.code == code) return failed(refusal.reason, server);
  }
  return failed(TEMBRA_REASON_OTHER_ANSWER, server);
}

// The library closes the web server's connection behind every answer, also behind one that it does not know.
std::unique_ptr<LibraryEvent> nextEvent(Session& session, ServerType server) {
  try {
    return session.nextEvent(Clock::now() + kBetweenAnswerLooks);
  } catch (const End& end) {
    const bool isWebServer = session.service().clientRole == ROLE_WEB_SERVER;
    throw end.reason == TEMBRA_REASON_CONNECTION_LOST && isWebServer ? failed(TEMBRA_REASON_OTHER_ANSWER, server) : end;
  }
}

// No event tells of an answer that the library does not know: it only waits no longer.
std::unique_ptr<LibraryEvent> awaitAnswer(Session& session, ServerType server, Clock::time_point overdue) {
  while (Clock::now() < overdue) {
    auto heard = nextEvent(session, server);
    if (heard && heard->event.code == EVENT_TIMEOUT) break;
    if (heard && isFrom(server, heard->event.code)) return heard;
    if (!heard && session.isSettled() && Session::libraryIsIdle()) throw failed(TEMBRA_REASON_OTHER_ANSWER, server);
  }
  throw timedOut(TEMBRA_REASON_NO_ANSWER, server);
}

void start(Session& session, ServerType server) {
  session.requireServer(server);
  session.requireDatabase();
  session.open();
  session.enter(TEMBRA_PHASE_ANSWER, kLongestAnswer);
  session.tell(TEMBRA_EVENT_WAITING);
}

enum class Effect { kNone, kLasting };

/// Gives the command and waits for one of the answers that say "done".
template <typename Function>
std::unique_ptr<LibraryEvent> ask(Session& session, ServerType server, Function command,
                                  std::initializer_list<int> done, Effect effect = Effect::kLasting) {
  start(session, server);
  session.send([&] { command(session.service()); });
  session.setBeyondRecall(effect == Effect::kLasting);
  auto heard = awaitAnswer(session, server, Clock::now() + kLongestAnswer + kGrace);
  const int code = heard->event.code;
  if (std::find(done.begin(), done.end(), code) == done.end()) throw endOf(server, code);
  return heard;
}

void tellAccount(Session& session, bool linked) {
  auto account = sized<tembra_account>();
  account.linked = linked ? 1 : 0;
  session.tell(TEMBRA_EVENT_ACCOUNT, account);
}

BridgeList bridgesOf(const LibraryEvent& heard) {
  HueBridgeList list;
  std::memcpy(&list, heard.event.payload, sizeof list);
  BridgeList bridges;
  const int count = std::min(list.count, static_cast<int>(std::size(list.mac)));
  for (int i = 0; i < count; ++i) bridges.add(libraryText(list.mac[i]), libraryText(list.address[i]), {});
  return bridges;
}

struct Free {
  void operator()(char* text) const { std::free(text); }
};

// A user that reads like the end of one bridge and the beginning of the next makes one bridge look like two; the table
// of users, from which the library wrote the list, does not agree then.
bool agreesWithUsers(const BridgeList& list) {
  if (list.bridges.size() > std::size(username1)) return false;
  for (std::size_t i = 0; i < list.bridges.size(); ++i) {
    char user[sizeof list.bridges[i].user] = {};
    putText(user, cleaned({username1[i], strnlen(username1[i], sizeof username1[i])}));
    if (std::strcmp(user, list.bridges[i].user) != 0) return false;
  }
  return true;
}

std::string bridgeList(TembraAssociation& service) {
  const std::unique_ptr<char, Free> list(service.Hue_getBridgeList());
  return list ? list.get() : "";
}

}  // namespace

void discoverBridges(Session& session) {
  const auto heard = ask(
      session, SERVER_HUE, [](TembraAssociation& service) { service.Hue_initiateAdd(); }, {EVENT_HUE_BRIDGES},
      Effect::kNone);
  session.tell(TEMBRA_EVENT_BRIDGES, bridgesOf(*heard));
  throw done();
}

// The bridge is asked again and again until its button was pressed. The last answer may come behind the end.
void addBridge(Session& session, const Command& command) {
  const seconds forButton(command.what);
  start(session, SERVER_HUE);
  session.enter(TEMBRA_PHASE_LINK_BUTTON, forButton);
  const auto until = Clock::now() + forButton;
  while (true) {
    auto button = sized<tembra_link_button>();
    button.seconds_left = static_cast<int>(std::chrono::ceil<seconds>(until - Clock::now()).count());
    session.tell(TEMBRA_EVENT_LINK_BUTTON, button);
    std::string mac = command.target;
    session.send([&] { session.service().Hue_addBridge(mac.data()); });
    session.setBeyondRecall(true);
    const int code = awaitAnswer(session, SERVER_HUE, std::max(until, Clock::now() + kGrace))->event.code;
    session.setBeyondRecall(false);
    if (code == EVENT_HUE_ADDED) break;
    if (code != EVENT_HUE_BUTTON) throw endOf(SERVER_HUE, code);
    const auto next = Clock::now() + kBetweenTries;
    if (next >= until) throw timedOut(TEMBRA_REASON_LINK_BUTTON, SERVER_HUE);
    session.pause(next);
    session.open();
  }
  session.tell(TEMBRA_EVENT_BRIDGE_LINKED);
  throw done();
}

void addBulb(Session& session, const Command& command) {
  std::string mac = command.target;
  std::string bulb = command.text;
  ask(session, SERVER_HUE, [&](TembraAssociation& service) { service.Hue_addDev(mac.data(), bulb.data()); },
      {EVENT_HUE_BULB_ADDED});
  session.tell(TEMBRA_EVENT_BULB_ADDED);
  throw done();
}

void refreshBridge(Session& session, const Command& command) {
  std::string mac = command.target;
  std::string text = command.text;
  ask(session, SERVER_HUE, [&](TembraAssociation& service) { service.Hue_refreshBridge(mac.data(), text.data()); },
      {EVENT_HUE_DONE, EVENT_HUE_DONE_2});
  throw done();
}

void removeBridge(Session& session, const Command& command) {
  std::string mac = command.target;
  ask(session, SERVER_HUE, [&](TembraAssociation& service) { service.Hue_remove(mac.data()); },
      {EVENT_HUE_DONE, EVENT_HUE_DONE_2});
  throw done();
}

// The library would make a database where there is none.
void listBridges(Session& session) {
  session.enter(TEMBRA_PHASE_DATABASE, Milliseconds(-1));
  session.requireDatabase();
  BridgeList list;
  if (access(DBName, F_OK) == 0) {
    TembraAssociation& service = session.service();
    const std::string text = session.call([&service] { return bridgeList(service); });
    if (text.empty()) throw failed(TEMBRA_REASON_DATABASE_UNREADABLE);
    if (!parseBridges(text, list) || !agreesWithUsers(list)) throw failed(TEMBRA_REASON_DATABASE_DAMAGED);
  }
  session.tell(TEMBRA_EVENT_BRIDGES, list);
  throw done();
}

void tellAccount(Session& session) {
  TembraAssociation& service = session.service();
  tellAccount(session, session.call([&service] { return service.Nest_checkExist(); }) != 0);
  throw done();
}

// Which number confirms what is the Nest server's custom: the library tells them apart by number only.
void linkAccount(Session& session, const Command& command) {
  std::string code = command.target;
  ask(session, SERVER_NEST, [&](TembraAssociation& service) { service.Nest_add(code.data()); },
      {EVENT_NEST_41, EVENT_NEST_45});
  tellAccount(session, true);
  throw done();
}

void unlinkAccount(Session& session) {
  ask(session, SERVER_NEST, [](TembraAssociation& service) { service.Nest_remove(); }, {EVENT_NEST_43, EVENT_NEST_45});
  tellAccount(session, false);
  throw done();
}

}  // namespace tembra::frontend
