#include "sim/hue/hue_server.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <limits>
#include <utility>

#include "sim/core/number.h"
#include "sim/core/record_bytes.h"
#include "sim/hue/command_check.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

using std::chrono::seconds;

constexpr seconds kButtonCounts(30);  // as long as a bridge lets somebody in after its button was pressed
constexpr seconds kPatience(15);      // shorter than the shortest time-out of the library

constexpr CodeByte kTypeByte{offsetof(HueAnswer, type), [](const MessageKind&, unsigned char) { return true; }};

// The library knows two of its results by number only; which of them is which is this server's choice.
constexpr HueResultType kRefreshed = HUE_DONE;
constexpr HueResultType kBridgeRemoved = HUE_DONE_2;

}  // namespace

struct HueServer::Command {
  unsigned code;
  std::string_view name;
  HueTexts texts;
  Happening happening;
  void (HueServer::*act)(const Request&);
};

const HueServer::Command HueServer::kCommands[5] = {
    {HUE_DISCOVER, "discover bridges", HueTexts::kNone, Happening::kHueDiscover, &HueServer::discover},
    {HUE_ADD_BRIDGE, "add bridge", HueTexts::kBridge, Happening::kHueAdd, &HueServer::addBridge},
    {HUE_ADD_BULB, "add a bulb of bridge", HueTexts::kBridgeAndArgument, Happening::kHueBulb, &HueServer::addBulb},
    {HUE_REFRESH, "refresh bridge", HueTexts::kBridgeAndArgument, Happening::kHueRefresh, &HueServer::refresh},
    {HUE_REMOVE, "remove bridge", HueTexts::kBridge, Happening::kHueRemove, &HueServer::removeBridge},
};

HueServer::HueServer(Surroundings surroundings, Answers::Manner manner, HueLamps lamps, int bridges)
    : Daemon(kHueServer, sizeof(HueCommand), surroundings),
      lamps_(lamps),
      bridges_(bridges),
      answers_(surroundings, manner, kTypeByte,
               [this](Bytes datagram, std::string_view text, Sender sender) { tellLibrary(datagram, text, sender); }) {}

std::string_view HueServer::state() const {
  if (awaited_) return "waiting for the link button";
  return answers_.playing() ? "answering" : "idle";
}

void HueServer::handle(Bytes datagram) {
  const auto received = recordFrom<HueCommand>(datagram);
  const auto* const command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                           [&received](const Command& row) { return row.code == received.command; });
  if (command == std::end(kCommands)) {
    found("an unknown command: " + std::to_string(received.command));
    return;
  }
  for (const std::string& mistake : mistakesIn(received, command->texts)) found(mistake);
  const Request request{command->texts == HueTexts::kNone ? "" : bridgeIdIn(received), textIn(received.argument)};
  heard(std::string(command->name).append(request.bridgeId.empty() ? "" : " ").append(request.bridgeId));
  stopWaiting();
  answers_.drop();
  surroundings().happenings.happened(command->happening);
  attempt([this, command, &request] { (this->*command->act)(request); });
}

void HueServer::discover(const Request&) {
  HueAnswer answer{};
  bridges_.list(answer);
  answers_.play({{kBridges, std::to_string(answer.count) + " bridge(s) found", bytesOf(answer)}}, nullptr);
}

void HueServer::addBridge(const Request& request) {
  if (!bridges_.has(request.bridgeId)) return play(HUE_NO_BRIDGE, "there is no such bridge");
  if (buttonCounts()) return link(request.bridgeId);
  said(self().name, "people", "press the link button: tembra-sim press hue-button");
  awaited_ = request.bridgeId;
  patience_ = surroundings().loop.after(kPatience, [this] { giveUp(); });
}

void HueServer::addBulb(const Request& request) {
  if (!lamps_.holds(request.bridgeId)) return play(HUE_UNKNOWN_BRIDGE, "the bridge has not been added");
  if (request.argument.empty()) return play(HUE_FAILED, "a bulb without a name");
  lamps_.add(request.bridgeId, request.argument);
  play(HUE_BULB_ADDED, "bulb added");
}

void HueServer::refresh(const Request& request) {
  if (!lamps_.holds(request.bridgeId)) return play(HUE_UNKNOWN_BRIDGE, "the bridge has not been added");
  play(kRefreshed, "bridge refreshed");
}

void HueServer::removeBridge(const Request& request) {
  if (!lamps_.holds(request.bridgeId)) return play(HUE_UNKNOWN_BRIDGE, "the bridge has not been added");
  lamps_.drop(request.bridgeId);
  play(kBridgeRemoved, "bridge removed");
}

bool HueServer::buttonCounts() const { return pressed_ && surroundings().loop.now() - *pressed_ <= kButtonCounts; }

Outcome HueServer::pressLinkButton() {
  said("hue-button", self().name, "button pressed");
  if (bridges_.empty()) return {false, "there is no Hue bridge"};
  pressed_ = surroundings().loop.now();
  if (!awaited_) return {true, "the link button lets a bridge in for " + std::to_string(kButtonCounts.count()) + " s"};
  const std::string bridgeId = *awaited_;
  stopWaiting();
  attempt([this, &bridgeId] { link(bridgeId); });
  return {true, "bridge " + bridgeId + " lets the router in"};
}

void HueServer::link(const std::string& bridgeId) {
  lamps_.addFirst(bridgeId);
  play(HUE_BRIDGE_ADDED, "bridge added");
}

void HueServer::giveUp() {
  stopWaiting();
  play(HUE_BUTTON, "the link button was not pressed");
}

void HueServer::stopWaiting() {
  surroundings().loop.cancel(patience_);
  awaited_.reset();
}

void HueServer::attempt(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& failure) {
    surroundings().journal.trouble(failure.what());
    play(HUE_FAILED, "the database fails");
  }
}

void HueServer::play(int type, const std::string& text) {
  HueAnswer answer{};
  answer.type = type;
  answers_.play({{kHueResult, "result " + std::to_string(type) + ", " + text, bytesOf(answer)}}, nullptr);
}

Outcome HueServer::setBridges(const std::string& count) {
  bridges_.resize(parseNumber(count, 0, HueBridges::kMost));
  return {true, "bridges: " + count};
}

Outcome HueServer::say(const std::string& what) {
  using Limits = std::numeric_limits<int>;
  const std::size_t end = std::min(what.find(' '), what.size());
  HueAnswer answer{};
  answer.type = parseNumber(std::string_view(what).substr(0, end), Limits::min(), Limits::max());
  if (answer.type == HUE_BRIDGES_FOUND) bridges_.list(answer);
  if (end < what.size()) answer.count = parseNumber(what.substr(end + 1), Limits::min(), Limits::max());
  stopWaiting();
  answers_.drop();
  const std::string text = "result " + std::to_string(answer.type);
  tellLibrary(bytesOf(answer), text);
  return {true, text};
}

}  // namespace tembra::sim
