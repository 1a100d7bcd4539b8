#include "tables.h"

void set_text(lua_State* lua, const char* key, const char* text) {
  lua_pushstring(lua, text);
  lua_setfield(lua, -2, key);
}

void set_integer(lua_State* lua, const char* key, long long number) {
  lua_pushinteger(lua, (lua_Integer)number);
  lua_setfield(lua, -2, key);
}

void set_seconds(lua_State* lua, const char* key, long long milliseconds) {
  if (milliseconds < 0) return;
  lua_pushnumber(lua, (lua_Number)milliseconds / 1000);
  lua_setfield(lua, -2, key);
}

void set_radio(lua_State* lua, int radio) {
  set_text(lua, "radio", radio == TEMBRA_RADIO_OTHER ? NULL : tembra_radio_name(radio));
}

void set_known_device(lua_State* lua, int id, const char* name) {
  if (id == 0 && *name == '\0') return;
  set_integer(lua, "device_id", id);
  set_text(lua, "device_name", name);
}

void set_found(lua_State* lua, const struct tembra_found* found) {
  set_integer(lua, "type", found->type);
  set_text(lua, "name", found->name);
  set_text(lua, "place", found->place);
  set_integer(lua, "name_room", (long long)found->name_room);
  set_integer(lua, "place_room", (long long)found->place_room);
  lua_createtable(lua, found->choice_count, 0);
  for (int i = 0; i < found->choice_count; ++i) {
    lua_pushinteger(lua, found->choices[i]);
    lua_rawseti(lua, -2, i + 1);
  }
  lua_setfield(lua, -2, "choices");
}

static void set_device(lua_State* lua, const struct tembra_device_event* device) {
  set_integer(lua, "id", device->id);
  set_text(lua, "name", device->name);
  if (device->type == 0) return;
  set_integer(lua, "type", device->type);
  set_text(lua, "place", device->place);
}

static void set_bridges(lua_State* lua, const tembra_event* event) {
  lua_createtable(lua, tembra_event_bridges(event)->count, 0);
  const struct tembra_bridge* bridge;
  for (int i = 0; (bridge = tembra_event_bridge(event, i)) != NULL; ++i) {
    lua_createtable(lua, 0, 3);
    set_text(lua, "mac", bridge->mac);
    set_text(lua, "address", bridge->address[0] == '\0' ? NULL : bridge->address);
    set_text(lua, "user", bridge->user[0] == '\0' ? NULL : bridge->user);
    lua_rawseti(lua, -2, i + 1);
  }
  lua_setfield(lua, -2, "bridges");
}

void push_device(lua_State* lua, const struct tembra_device* device) {
  lua_createtable(lua, 0, 7);
  set_integer(lua, "id", device->id);
  set_integer(lua, "type", device->type);
  set_integer(lua, "radio", device->radio);
  set_integer(lua, "address", device->address);
  set_integer(lua, "values", device->values);
  set_text(lua, "name", device->name);
  set_text(lua, "type_name", device->type_name);
}

static void set_devices(lua_State* lua, const tembra_event* event) {
  const struct tembra_device* device = NULL;
  lua_newtable(lua);
  for (int i = 0; (device = tembra_event_listed(event, i)) != NULL; ++i) {
    push_device(lua, device);
    lua_rawseti(lua, -2, i + 1);
  }
  lua_setfield(lua, -2, "devices");
}

static void set_holder(lua_State* lua, const struct tembra_ended* ended) {
  if (ended->holder_pid == 0) return;
  lua_createtable(lua, 0, 6);
  set_integer(lua, "pid", ended->holder_pid);
  set_integer(lua, "role", ended->holder_role);
  set_integer(lua, "since", ended->holder_since);
  set_text(lua, "program", ended->holder_program);
  set_text(lua, "operation", ended->holder_operation);
  set_text(lua, "phase", ended->holder_phase);
  lua_setfield(lua, -2, "holder");
}

static void set_ended(lua_State* lua, const struct tembra_ended* ended) {
  set_text(lua, "outcome", tembra_outcome_name(ended->outcome));
  set_text(lua, "reason", tembra_reason_name(ended->reason));
  set_integer(lua, "reason_number", ended->reason);
  set_text(lua, "ended_in", tembra_phase_name(ended->phase));
  set_seconds(lua, "waited", ended->waited);
  set_text(lua, "server", tembra_server_name(ended->server));
  set_integer(lua, "error", ended->error);
  set_text(lua, "text", ended->text);
  set_text(lua, "advice", ended->advice);
  set_holder(lua, ended);
  set_known_device(lua, ended->device_id, ended->device_name);
}

static void set_warning(lua_State* lua, const struct tembra_warning* warning) {
  set_text(lua, "reason", tembra_reason_name(warning->reason));
  set_integer(lua, "reason_number", warning->reason);
  set_text(lua, "server", tembra_server_name(warning->server));
  set_known_device(lua, warning->device_id, warning->device_name);
  set_text(lua, "why", *warning->why == '\0' ? NULL : warning->why);
  set_text(lua, "text", warning->text);
  set_text(lua, "advice", warning->advice);
}

static void set_details(lua_State* lua, const tembra_event* event) {
  const struct tembra_link_button* button = tembra_event_link_button(event);
  const struct tembra_account* account = tembra_event_account(event);
  const struct tembra_step* step = tembra_event_step(event);
  if (tembra_event_found(event) != NULL) set_found(lua, tembra_event_found(event));
  if (tembra_event_device(event) != NULL) set_device(lua, tembra_event_device(event));
  if (tembra_event_bridges(event) != NULL) set_bridges(lua, event);
  if (tembra_event_warning(event) != NULL) set_warning(lua, tembra_event_warning(event));
  if (tembra_event_ended(event) != NULL) set_ended(lua, tembra_event_ended(event));
  if (tembra_event_head(event)->kind == TEMBRA_EVENT_DEVICES) set_devices(lua, event);
  if (button != NULL) set_integer(lua, "seconds_left", button->seconds_left);
  if (account != NULL) {
    lua_pushboolean(lua, account->linked);
    lua_setfield(lua, -2, "linked");
  }
  if (step != NULL) {
    set_integer(lua, "done", step->done);
    set_integer(lua, "all", step->all);
  }
}

void push_event(lua_State* lua, const tembra_event* event) {
  const struct tembra_head* head = tembra_event_head(event);
  lua_createtable(lua, 0, 16);
  set_text(lua, "kind", tembra_event_kind_name(head->kind));
  set_text(lua, "operation", tembra_operation_name(head->operation));
  set_text(lua, "phase", tembra_phase_name(head->phase));
  set_radio(lua, head->radio);
  set_integer(lua, "number", head->number);
  set_seconds(lua, "elapsed", head->milliseconds);
  set_seconds(lua, "ends_in", head->ends_in);
  set_text(lua, "json", tembra_event_json(event));
  set_details(lua, event);
}
