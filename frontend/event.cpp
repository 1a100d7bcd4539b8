#include "event.h"

#include "json.h"
#include "names.h"
#include "reasons.h"

namespace tembra::frontend {
namespace {

void writeType(JsonWriter& json, std::string_view key, int type) {
  json.begin(key, '{').member("number", type).member("name", typeName(type)).end('}');
}

void write(JsonWriter& /*json*/, const std::monostate& /*none*/) {}

void write(JsonWriter& json, const tembra_found& found) {
  writeType(json, "type", found.type);
  json.begin("choices", '[');
  for (int i = 0; i < found.choice_count; ++i) writeType(json, "", found.choices[i]);
  json.end(']').member("name", found.name).member("place", found.place);
  json.member("name_room", static_cast<long long>(found.name_room));
  json.member("place_room", static_cast<long long>(found.place_room));
}

void write(JsonWriter& json, const tembra_device_event& device) {
  json.member("id", device.id).member("name", device.name);
  if (device.place[0] == '\0') return;  // it leaves
  writeType(json, "type", device.type);
  json.member("place", device.place);
}

void writeDevice(JsonWriter& json, int id, const char* name) {
  if (id == 0 && *name == '\0') return;
  json.begin("device", '{').member("id", id).member("name", name).end('}');
}

void writeIfAny(JsonWriter& json, std::string_view key, const char* text) {
  if (*text != '\0') json.member(key, text);
}

void write(JsonWriter& json, const BridgeList& list) {
  json.begin("bridges", '[');
  for (const tembra_bridge& bridge : list.bridges) {
    json.begin("", '{').member("mac", bridge.mac);
    writeIfAny(json, "address", bridge.address);
    writeIfAny(json, "user", bridge.user);
    json.end('}');
  }
  json.end(']');
}

void write(JsonWriter& json, const tembra_link_button& button) { json.member("seconds_left", button.seconds_left); }

void write(JsonWriter& json, const tembra_account& account) { json.flag("linked", account.linked != 0); }

void write(JsonWriter& json, const tembra_step& step) { json.member("done", step.done).member("all", step.all); }

void write(JsonWriter& json, const tembra_warning& warning) {
  json.member("reason", reasonName(warning.reason)).member("reason_number", warning.reason);
  json.member("server", serverName(warning.server));
  writeDevice(json, warning.device_id, warning.device_name);
  writeIfAny(json, "why", warning.why);
  json.member("text", warning.text).member("advice", warning.advice);
}

void writeHolder(JsonWriter& json, const tembra_ended& ended) {
  if (ended.holder_pid == 0) return;
  json.begin("holder", '{').member("role", ended.holder_role).member("program", ended.holder_program);
  json.member("pid", ended.holder_pid).member("since", ended.holder_since);
  json.member("operation", ended.holder_operation).member("phase", ended.holder_phase).end('}');
}

void write(JsonWriter& json, const tembra_ended& ended) {
  json.member("outcome", outcomeName(ended.outcome));
  json.member("reason", reasonName(ended.reason)).member("reason_number", ended.reason);
  json.member("ended_in", phaseName(ended.phase)).member("waited_ms", ended.waited);
  json.member("server", serverName(ended.server)).member("error", ended.error);
  writeDevice(json, ended.device_id, ended.device_name);
  writeHolder(json, ended);
  json.member("text", ended.text).member("advice", ended.advice);
}

const char* networkName(int radio) { return radio == TEMBRA_RADIO_IP ? "IP" : serverName(radio); }

void write(JsonWriter& json, const std::vector<tembra_device>& devices) {
  json.member("count", static_cast<long long>(devices.size())).begin("devices", '[');
  for (const tembra_device& device : devices) {
    const bool hasAddress = device.radio == TEMBRA_RADIO_ZIGBEE || device.radio == TEMBRA_RADIO_ZWAVE;
    json.begin("", '{').member("id", device.id).member("name", device.name).begin("type", '{');
    json.member("number", device.type).member("name", device.type_name).end('}');
    json.member("radio", networkName(device.radio));
    hasAddress ? json.member("address", device.address) : json.null("address");
    json.member("values", device.values).end('}');
  }
  json.end(']');
}

void writeLimit(JsonWriter& json, long long endsIn) {
  endsIn < 0 ? json.null("ends_in_ms") : json.member("ends_in_ms", endsIn);
}

void writeHead(JsonWriter& json, const tembra_head& head) {
  json.begin("", '{').member("schema", TEMBRA_EVENT_SCHEMA).member("event", eventKindName(head.kind));
  json.member("number", head.number).member("operation", operationName(head.operation));
  json.member("ms", head.milliseconds).member("phase", phaseName(head.phase));
  json.member("radio", head.radio == 0 ? nullptr : serverName(head.radio));
  writeLimit(json, head.ends_in);
}

}  // namespace

std::string eventJson(const tembra_head& head, const Detail& detail) {
  JsonWriter json;
  writeHead(json, head);
  std::visit([&json](const auto& each) { write(json, each); }, detail);
  return json.end('}').text();
}

std::string shortEventJson(const tembra_event& event) {
  const auto* devices = std::get_if<std::vector<tembra_device>>(&event.detail);
  if (devices == nullptr) return event.json;
  JsonWriter json;
  writeHead(json, event.head);
  return json.member("count", static_cast<long long>(devices->size())).end('}').text();
}

std::string stateJson(const tembra_state& state) {
  JsonWriter json;
  json.begin("", '{').member("schema", TEMBRA_EVENT_SCHEMA).member("operation", operationName(state.operation));
  json.member("phase", phaseName(state.phase));
  json.member("radio", state.radio == 0 ? nullptr : serverName(state.radio));
  json.member("last_event", state.last_event).member("ms", state.milliseconds);
  writeLimit(json, state.ends_in);
  writeDevice(json, state.device_id, state.device_name);
  if (state.found.size != 0) {
    json.begin("found", '{');
    write(json, state.found);
    json.end('}');
  }
  return json.end('}').text();
}

}  // namespace tembra::frontend
