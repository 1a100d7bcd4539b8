// Answers of the Hue server: each becomes one event.
#include <tembra/association.h>
#include <tembra/globals.h>
#include <tembra/hue.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "assoc/receiver/flow.h"
#include "support/log.h"
#include "support/shared_state.h"
#include "support/text.h"
#include "support/text_writer.h"

namespace tembra {
namespace {

struct HueResult {
  HueResultType type;
  AssocEventCode event;
  bool writesSource;
  const char* json;  // what follows the command type
};

// [sic] the blank after the first comma of the last three, and the changing order of "Reason" and "Type".
constexpr HueResult kHueResults[] = {
    {HUE_FAILED, EVENT_HUE_FAILED, false,
     R"(,"MobileInternalIndex":"","Success":"false","Reason":"HueFailed","Type":"HueHub"})"},
    {HUE_BRIDGE_ADDED, EVENT_HUE_ADDED, true,
     R"(,"MobileInternalIndex":"","Success":"true","Type":"HueHub","Reason":"HueAdded"})"},
    {HUE_NO_BRIDGE, EVENT_HUE_NO_BRIDGE, true,
     R"(,"MobileInternalIndex":"","Success":"false","Reason":"HueBridgeNotFound","Type":"HueHub"})"},
    {HUE_BUTTON, EVENT_HUE_BUTTON, true,
     R"(,"MobileInternalIndex":"","Success":"false","Type":"HueHub","Reason":"HueButtonNotPressed"})"},
    {HUE_UNKNOWN_BRIDGE, EVENT_HUE_UNKNOWN_BRIDGE, true,
     R"(,"MobileInternalIndex":"","Success":"false","Type":"HueHub","Reason":"BridgeNotFound"})"},
    {HUE_BULB_ADDED, EVENT_HUE_BULB_ADDED, true, R"(, "MobileInternalIndex":"","Success":"true","Type":"HueBulb"})"},
    {HUE_DONE, EVENT_HUE_DONE, true, R"(, "MobileInternalIndex":"","Success":"true","Type":"HueHub"})"},
    {HUE_DONE_2, EVENT_HUE_DONE_2, true, R"(, "MobileInternalIndex":"","Success":"true","Type":"HueHub"})"},
};

const HueResult* findResult(int type) {
  const auto* row = std::find_if(std::begin(kHueResults), std::end(kHueResults),
                                 [type](const HueResult& result) { return result.type == type; });
  return row == std::end(kHueResults) ? nullptr : row;
}

// Bytes behind the text keep what the buffer held.
[[nodiscard]] bool tellResult(const Flow& flow, const HueResult& result) {
  AssocEvent& event = flow.events.a;
  TextWriter(reinterpret_cast<char*>(event.payload), sizeof event.payload)
      << R"({"CommandType":")" << fieldText(cmdtype, sizeof cmdtype - 1) << "\"" << result.json << "\n";
  return result.writesSource ? flow.tell(event, result.event, SERVER_HUE) : flow.tell(event, result.event);
}

constexpr std::size_t kTextSize = 50;

bool copyToken(JsonToken* tokens, const char* member, char (&text)[kTextSize]) {
  const JsonToken* token = find_json_token(tokens, member);
  if (token == nullptr || token->ptr == nullptr) return false;
  copyText(text, sizeof text, token->ptr, static_cast<std::size_t>(std::max(token->len, 0)));
  return true;
}

// A text that an entry does not have is repeated from the entry before.
void listBridges(const HueAnswer& answer, HueBridgeList& list) {
  constexpr int room = static_cast<int>(std::size(HueBridgeList{}.mac));
  const int count = std::min(answer.count, room);
  char id[kTextSize] = {};
  char mac[kTextSize] = {};
  for (int i = 0; i < count; ++i) {
    const auto& json = answer.entries[i].json;
    const auto length = static_cast<int>(textLength(json, sizeof json));
    const std::unique_ptr<JsonToken, decltype(&std::free)> tokens(parse_json2(json, length), &std::free);
    if (tokens != nullptr) copyToken(tokens.get(), "id", id);
    const bool hasAddress = tokens != nullptr && copyToken(tokens.get(), "internalipaddress", list.address[i]);
    if (!hasAddress && i > 0) std::memcpy(list.address[i], list.address[i - 1], sizeof list.address[i]);
    HueMac(id, mac);
    copyText(list.mac[i], mac);
    list.count = i + 1;
  }
}

[[nodiscard]] bool tellBridges(const Flow& flow, const HueAnswer& answer) {
  listBridges(answer, *new (flow.events.b.payload) HueBridgeList{});
  if (!flow.tell(flow.events.b, EVENT_HUE_BRIDGES, SERVER_HUE)) return false;
  setIdle(false);
  setCommandType("AddIPDevice");
  return true;
}

// False when the flow has ended with the connection it belonged to.
bool handleAnswer(const Flow& flow, const HueAnswer& answer) {
  if (answer.type == HUE_BRIDGES_FOUND) return tellBridges(flow, answer);
  const HueResult* result = findResult(answer.type);
  if (result == nullptr) {
    log(flow.assoc, Level::kError, TEMBRA_LOG_PREFIX "Got unknown state from HUE");
    return true;
  }
  if (!tellResult(flow, *result)) return false;
  setIdle(true);
  return true;
}

}  // namespace

void handleHue(const Flow& flow) {
  auto& answer = *new (&flow.events.c) HueAnswer;  // it shares its place with the Nest events
  std::memcpy(&answer, flow.datagram, sizeof answer);
  if (handleAnswer(flow, answer)) closeForWebServer(flow);
}

}  // namespace tembra
