/* The front-end kit for Lua 5.1 and 5.4.
 *
 *     local tembra = require "tembra"
 *     local kit = assert(tembra.new())
 *     assert(kit:add())
 *     for event in kit:events() do                      -- up to the operation's end
 *       if event.kind == "found" then assert(kit:finish(event.type, "Hall lamp")) end
 *       if event.kind == "ended" then print(event.text, event.advice) end
 *     end
 *
 * What fails returns nil, a sentence and an errno. An event is a table: the members of its JSON object, with times in
 * seconds (elapsed, ends_in, waited) and types as numbers. What an event does not have is nil.
 */
#include <errno.h>
#include <lauxlib.h>
#include <limits.h>
#include <lua.h>
#include <math.h>
#include <stdlib.h>
#include <string.h>
#include <tembra/frontend.h>
#include <tembra/service.h>

#include "tables.h"

#define KIT "tembra.kit"
#define EVENT "tembra.event"
#define BYTES "tembra.bytes"

/* ---- Helpers ---- */

static int fail(lua_State* lua, int error) {
  lua_pushnil(lua);
  lua_pushstring(lua, tembra_refusal_text(error));
  lua_pushinteger(lua, error);
  return 3;
}

static int answer(lua_State* lua, int error) {
  if (error != 0) return fail(lua, error);
  lua_pushboolean(lua, 1);
  return 1;
}

/* A number for C; the script is told of one that does not fit. */
static int int_at(lua_State* lua, int place, int otherwise) {
  const lua_Integer number = luaL_optinteger(lua, place, otherwise);
  luaL_argcheck(lua, number >= INT_MIN && number <= INT_MAX, place, "the number is too large");
  return (int)number;
}

/* A text for C, which ends at its first NUL. Returns whether it is whole; nil is null. */
static int text_at(lua_State* lua, int place, const char** text) {
  size_t length = 0;
  *text = luaL_optlstring(lua, place, NULL, &length);
  return *text == NULL || strlen(*text) == length;
}

/* Lua may leave a function at any call that needs memory: what has to be released is held by the garbage collector. */
struct box {
  void* content;
};

static struct box* new_box(lua_State* lua, const char* kind) {
  struct box* box = lua_newuserdata(lua, sizeof *box);
  box->content = NULL;
  luaL_getmetatable(lua, kind);
  lua_setmetatable(lua, -2);
  return box;
}

static int free_event(lua_State* lua) {
  struct box* box = luaL_checkudata(lua, 1, EVENT);
  tembra_event_free(box->content);
  box->content = NULL;
  return 0;
}

static int free_bytes(lua_State* lua) {
  struct box* box = luaL_checkudata(lua, 1, BYTES);
  free(box->content);
  box->content = NULL;
  return 0;
}

static tembra_frontend* kit_at(lua_State* lua) {
  const struct box* box = luaL_checkudata(lua, 1, KIT);
  if (box->content == NULL) luaL_error(lua, "the front end is closed");
  return box->content;
}

/* ---- Events ---- */

/* kit:next([seconds]): the next event; nil when none comes within so many seconds, or ever without a number. */
static int kit_next(lua_State* lua) {
  tembra_frontend* kit = kit_at(lua);
  const lua_Number seconds = luaL_optnumber(lua, 2, -1);
  const lua_Number wait = ceil(seconds * 1000);
  struct box* box = new_box(lua, EVENT);
  box->content = tembra_frontend_next(kit, seconds < 0 ? -1 : wait < INT_MAX ? (int)wait : INT_MAX);
  if (box->content == NULL) return fail(lua, errno);
  push_event(lua, box->content);
  tembra_event_free(box->content);
  box->content = NULL;
  return 1;
}

/* Called by `for` with the kit and the event before: nil behind the operation's end. */
static int next_of_operation(lua_State* lua) {
  if (lua_istable(lua, 2)) {
    lua_getfield(lua, 2, "kind");
    const char* kind = lua_tostring(lua, -1);
    if (kind != NULL && strcmp(kind, "ended") == 0) return 0;
  }
  lua_settop(lua, 1);
  return kit_next(lua);
}

static int kit_events(lua_State* lua) {
  kit_at(lua);
  lua_pushcfunction(lua, next_of_operation);
  lua_pushvalue(lua, 1);
  return 2;
}

/* ---- Operations ---- */

typedef int (*operation)(tembra_frontend*);

static int start(lua_State* lua, operation begin) { return answer(lua, begin(kit_at(lua))); }

static int kit_add(lua_State* lua) { return start(lua, tembra_frontend_add); }
static int kit_add_again(lua_State* lua) { return start(lua, tembra_frontend_add_again); }
static int kit_remove(lua_State* lua) { return start(lua, tembra_frontend_remove); }
static int kit_take_out(lua_State* lua) { return start(lua, tembra_frontend_take_out); }
static int kit_hue_discover(lua_State* lua) { return start(lua, tembra_frontend_hue_discover); }
static int kit_hue_list(lua_State* lua) { return start(lua, tembra_frontend_hue_list); }
static int kit_nest_status(lua_State* lua) { return start(lua, tembra_frontend_nest_status); }
static int kit_nest_unlink(lua_State* lua) { return start(lua, tembra_frontend_nest_unlink); }
static int kit_devices(lua_State* lua) { return start(lua, tembra_frontend_devices); }
static int kit_cancel(lua_State* lua) { return start(lua, tembra_frontend_cancel); }

static int kit_reset(lua_State* lua) { return answer(lua, tembra_frontend_reset(kit_at(lua), int_at(lua, 2, 0))); }

static int start_with_text(lua_State* lua, int (*begin)(tembra_frontend*, const char*)) {
  tembra_frontend* kit = kit_at(lua);
  const char* text = NULL;
  return answer(lua, text_at(lua, 2, &text) ? begin(kit, text) : EILSEQ);
}

/* kit:hue_add_bridge(mac[, seconds]) */
static int kit_hue_add_bridge(lua_State* lua) {
  tembra_frontend* kit = kit_at(lua);
  const char* mac = NULL;
  const int seconds = int_at(lua, 3, 60);
  return answer(lua, text_at(lua, 2, &mac) ? tembra_frontend_hue_add_bridge(kit, mac, seconds) : EILSEQ);
}

static int kit_hue_remove(lua_State* lua) { return start_with_text(lua, tembra_frontend_hue_remove); }
static int kit_nest_link(lua_State* lua) { return start_with_text(lua, tembra_frontend_nest_link); }

static int start_with_texts(lua_State* lua, int (*begin)(tembra_frontend*, const char*, const char*)) {
  tembra_frontend* kit = kit_at(lua);
  const char* first = NULL;
  const char* second = NULL;
  const int whole = text_at(lua, 2, &first) && text_at(lua, 3, &second);
  return answer(lua, whole ? begin(kit, first, second) : EILSEQ);
}

static int kit_hue_add_bulb(lua_State* lua) { return start_with_texts(lua, tembra_frontend_hue_add_bulb); }
static int kit_hue_refresh(lua_State* lua) { return start_with_texts(lua, tembra_frontend_hue_refresh); }

/* kit:finish([type [, name [, place]]]): what is nil stays as it was proposed. A GenericDevice is stored as one
 * whatever is chosen: the choice says what its values are. */
static int kit_finish(lua_State* lua) {
  tembra_frontend* kit = kit_at(lua);
  const char* name = NULL;
  const char* place = NULL;
  const int type = int_at(lua, 2, 0);
  const int whole = text_at(lua, 3, &name) && text_at(lua, 4, &place);
  return answer(lua, whole ? tembra_frontend_finish(kit, type, name, place) : EILSEQ);
}

/* ---- The kit and the rest ---- */

static int kit_descriptor(lua_State* lua) {
  lua_pushinteger(lua, tembra_frontend_descriptor(kit_at(lua)));
  return 1;
}

static int kit_state(lua_State* lua) {
  struct tembra_state state;
  memset(&state, 0, sizeof state);
  state.size = sizeof state;
  const int error = tembra_frontend_state(kit_at(lua), &state);
  if (error != 0) return fail(lua, error);
  lua_createtable(lua, 0, 9);
  set_text(lua, "operation", tembra_operation_name(state.operation));
  set_text(lua, "phase", tembra_phase_name(state.phase));
  set_radio(lua, state.radio);
  set_integer(lua, "last_event", state.last_event);
  set_seconds(lua, "elapsed", state.milliseconds);
  set_seconds(lua, "ends_in", state.ends_in);
  set_known_device(lua, state.device_id, state.device_name);
  if (state.phase == TEMBRA_PHASE_CHOICE) {
    lua_createtable(lua, 0, 6);
    set_found(lua, &state.found);
    lua_setfield(lua, -2, "found");
  }
  return 1;
}

static int kit_close(lua_State* lua) {
  struct box* box = luaL_checkudata(lua, 1, KIT);
  tembra_frontend_free(box->content);
  box->content = NULL;
  return 0;
}

static const char* text_option(lua_State* lua, const char* key) {
  lua_getfield(lua, 1, key); /* stays on the stack, and so alive */
  const char* text = NULL;
  if (!text_at(lua, lua_gettop(lua), &text)) luaL_error(lua, "the option %s has a NUL", key);
  return text;
}

/* tembra.new([{role = tembra.role.touch_screen, keep_open = false, program = "...", watch_path = "..."}]) */
static int new_kit(lua_State* lua) {
  struct tembra_options options;
  memset(&options, 0, sizeof options);
  options.size = sizeof options;
  if (!lua_isnoneornil(lua, 1)) {
    luaL_checktype(lua, 1, LUA_TTABLE);
    options.program = text_option(lua, "program");
    options.watch_path = text_option(lua, "watch_path");
    lua_getfield(lua, 1, "keep_open");
    options.keep_open = lua_toboolean(lua, -1);
    lua_getfield(lua, 1, "role");
    options.role = int_at(lua, -1, 0);
  }
  struct box* box = new_box(lua, KIT);
  box->content = tembra_frontend_new(&options);
  return box->content == NULL ? fail(lua, errno) : 1;
}

/* tembra.devices(): the devices of the database. Blocks, without limit, while another process writes the database;
 * kit:devices() does not. */
static int list_devices(lua_State* lua) {
  struct box* rows = new_box(lua, BYTES);
  long count = tembra_read_devices(NULL, sizeof(struct tembra_device), 0);
  for (long room = 0; count > room;) { /* there may be more of them meanwhile */
    room = count;
    free(rows->content);
    rows->content = calloc((size_t)room, sizeof(struct tembra_device));
    if (rows->content == NULL) return fail(lua, ENOMEM);
    count = tembra_read_devices(rows->content, sizeof(struct tembra_device), (size_t)room);
  }
  if (count < 0) return fail(lua, errno);
  lua_createtable(lua, (int)count, 0);
  for (long i = 0; i < count; ++i) {
    push_device(lua, (const struct tembra_device*)rows->content + i);
    lua_rawseti(lua, -2, (int)i + 1);
  }
  return 1;
}

/* tembra.history(): what the process's kit did last, one JSON text an entry, the oldest first. */
static int history(lua_State* lua) {
  struct box* text = new_box(lua, BYTES);
  text->content = malloc(TEMBRA_HISTORY_SIZE);
  if (text->content == NULL) return fail(lua, ENOMEM);
  tembra_frontend_history(text->content, TEMBRA_HISTORY_SIZE);
  lua_newtable(lua);
  const char* line = text->content;
  int count = 0;
  for (const char* end = strchr(line, '\n'); end != NULL; end = strchr(line, '\n')) {
    lua_pushlstring(lua, line, (size_t)(end - line));
    lua_rawseti(lua, -2, ++count);
    line = end + 1;
  }
  return 1;
}

/* tembra.log(level, text): adds a line to the history; the level is 0 progress, 1 warning, 2 error, 3 detail. */
static int log_line(lua_State* lua) {
  tembra_frontend_log(int_at(lua, 1, 0), luaL_checkstring(lua, 2));
  return 0;
}

/* tembra.server_listens(server): a tembra.server. */
static int server_listens(lua_State* lua) {
  lua_pushboolean(lua, tembra_server_listens(int_at(lua, 1, 0)));
  return 1;
}

/* tembra.server_name(server): "Z-Wave", ...; nil for a number that is none. */
static int server_name(lua_State* lua) {
  lua_pushstring(lua, tembra_server_name(int_at(lua, 1, 0)));
  return 1;
}

/* tembra.radio_name(radio): of a device. */
static int radio_name(lua_State* lua) {
  lua_pushstring(lua, tembra_radio_name(int_at(lua, 1, 0)));
  return 1;
}

static int type_name(lua_State* lua) {
  lua_pushstring(lua, tembra_type_name(int_at(lua, 1, 0)));
  return 1;
}

static int type_number(lua_State* lua) {
  lua_pushinteger(lua, tembra_type_number(luaL_checkstring(lua, 1)));
  return 1;
}

/* ---- Registration ---- */

static const luaL_Reg kKitFunctions[] = {{"add", kit_add},
                                         {"add_again", kit_add_again},
                                         {"cancel", kit_cancel},
                                         {"close", kit_close},
                                         {"descriptor", kit_descriptor},
                                         {"devices", kit_devices},
                                         {"events", kit_events},
                                         {"finish", kit_finish},
                                         {"hue_add_bridge", kit_hue_add_bridge},
                                         {"hue_add_bulb", kit_hue_add_bulb},
                                         {"hue_discover", kit_hue_discover},
                                         {"hue_list", kit_hue_list},
                                         {"hue_refresh", kit_hue_refresh},
                                         {"hue_remove", kit_hue_remove},
                                         {"nest_link", kit_nest_link},
                                         {"nest_status", kit_nest_status},
                                         {"nest_unlink", kit_nest_unlink},
                                         {"next", kit_next},
                                         {"remove", kit_remove},
                                         {"reset", kit_reset},
                                         {"state", kit_state},
                                         {"take_out", kit_take_out},
                                         {"__gc", kit_close},
                                         {"__close", kit_close},
                                         {NULL, NULL}};
static const luaL_Reg kEventFunctions[] = {{"__gc", free_event}, {NULL, NULL}};
static const luaL_Reg kBytesFunctions[] = {{"__gc", free_bytes}, {NULL, NULL}};
static const luaL_Reg kModuleFunctions[] = {{"devices", list_devices},
                                            {"history", history},
                                            {"log", log_line},
                                            {"new", new_kit},
                                            {"radio_name", radio_name},
                                            {"server_listens", server_listens},
                                            {"server_name", server_name},
                                            {"type_name", type_name},
                                            {"type_number", type_number},
                                            {NULL, NULL}};

/* tembra.role, tembra.server and tembra.reset: the numbers by their names. */
struct number {
  const char* name;
  int number;
};
static const struct number kRoles[] = {{"web_server", TEMBRA_ROLE_WEB_SERVER},
                                       {"touch_screen", TEMBRA_ROLE_TOUCH_SCREEN},
                                       {"cloud_agent", TEMBRA_ROLE_CLOUD_AGENT},
                                       {"mesh_server", TEMBRA_ROLE_MESH_SERVER},
                                       {"free_1", TEMBRA_ROLE_FREE_1},
                                       {"free_2", TEMBRA_ROLE_FREE_2},
                                       {NULL, 0}};
static const struct number kServers[] = {{"zigbee", TEMBRA_SERVER_ZIGBEE},
                                         {"zwave", TEMBRA_SERVER_ZWAVE},
                                         {"hue", TEMBRA_SERVER_HUE},
                                         {"nest", TEMBRA_SERVER_NEST},
                                         {"ha", TEMBRA_SERVER_HA},
                                         {"mesh", TEMBRA_SERVER_MESH},
                                         {NULL, 0}};
static const struct number kResets[] = {{"zigbee", TEMBRA_RESET_ZIGBEE},
                                        {"zwave", TEMBRA_RESET_ZWAVE},
                                        {"both", TEMBRA_RESET_BOTH},
                                        {"both_and_device_list", TEMBRA_RESET_BOTH_AND_DEVICE_LIST},
                                        {NULL, 0}};

static void set_numbers(lua_State* lua, const char* key, const struct number* numbers) {
  lua_newtable(lua);
  for (; numbers->name != NULL; ++numbers) set_integer(lua, numbers->name, numbers->number);
  lua_setfield(lua, -2, key);
}

/* Into the table on top of the stack; Lua 5.1 and 5.4 have different functions for it. */
static void set_functions(lua_State* lua, const luaL_Reg* functions) {
  for (; functions->name != NULL; ++functions) {
    lua_pushcfunction(lua, functions->func);
    lua_setfield(lua, -2, functions->name);
  }
}

static void new_class(lua_State* lua, const char* kind, const luaL_Reg* functions) {
  luaL_newmetatable(lua, kind);
  set_functions(lua, functions);
  lua_pushvalue(lua, -1);
  lua_setfield(lua, -2, "__index");
  lua_pop(lua, 1);
}

TEMBRA_API int luaopen_tembra(lua_State* lua) {
  new_class(lua, KIT, kKitFunctions);
  new_class(lua, EVENT, kEventFunctions);
  new_class(lua, BYTES, kBytesFunctions);
  lua_newtable(lua);
  set_functions(lua, kModuleFunctions);
  set_numbers(lua, "role", kRoles);
  set_numbers(lua, "server", kServers);
  set_numbers(lua, "reset", kResets);
  return 1;
}
