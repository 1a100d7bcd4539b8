/* What the kit says, as Lua tables. Setters set a member of the table on top of the stack. */
#ifndef TEMBRA_LUA_TABLES_H
#define TEMBRA_LUA_TABLES_H

#include <lua.h>
#include <tembra/frontend.h>

void set_text(lua_State* lua, const char* key, const char* text); /* null: nil */
void set_integer(lua_State* lua, const char* key, long long number);
void set_seconds(lua_State* lua, const char* key, long long milliseconds); /* negative: nil */

/* "device_id" and "device_name", unless there is neither. */
void set_known_device(lua_State* lua, int id, const char* name);

/* What a device is and can be. */
void set_found(lua_State* lua, const struct tembra_found* found);

/* Pushes the device's table. */
void push_device(lua_State* lua, const struct tembra_device* device);

/* Pushes the event's table. */
void push_event(lua_State* lua, const tembra_event* event);

/* A radio by its name; none where it is not known. */
void set_radio(lua_State* lua, int radio);

#endif
