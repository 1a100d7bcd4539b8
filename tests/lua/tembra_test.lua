-- The module as a front end meets it. Each test has a kit of its own; what it leaves in the database is the next one's.
local tembra = require "tembra"

local BUSY, SEARCH, INVALID, TOO_LONG, BAD_TEXT = 16, 3, 22, 90, 84 -- errno

local function equal(found, expected, what)
  if found ~= expected then
    error((what or "value") .. ": " .. tostring(found) .. " instead of " .. tostring(expected), 2)
  end
end

local function refused(number, result, sentence, found)
  equal(result, nil)
  equal(found, number, sentence)
  assert(#sentence > 5)
end

-- The kinds of the operation's events, and the events by kind. The button of `device` is pressed when it is awaited.
local function events_of(kit, device, choose)
  local kinds, events = {}, {}
  for event in kit:events() do
    kinds[#kinds + 1] = event.kind
    events[event.kind] = event
    if event.kind == "waiting" and device then os.execute("tembra-sim press " .. device .. " >/dev/null") end
    if event.kind == "found" then (choose or kit.finish)(kit, event) end
  end
  return table.concat(kinds, " "), events
end

local tests = {}

function tests.a_device_is_added_as_chosen_and_removed(kit)
  assert(kit:add())
  local kinds, events = events_of(kit, "plain-plug", function(_, found)
    local state = kit:state()
    equal(state.phase, "choice")
    equal(state.found.name, found.name)
    equal(state.device_name, found.name)
    assert(state.device_id > 0)
    equal(found.choices[1], found.type)
    equal(tembra.type_name(found.choices[2]), "Siren")
    refused(TOO_LONG, kit:finish(found.type, ("x"):rep(found.name_room + 1)))
    refused(BAD_TEXT, kit:finish(found.type, "a\nb"))
    refused(BAD_TEXT, kit:finish(found.type, "a\0b"))
    refused(INVALID, kit:finish(tembra.type_number("DoorLock")))
    assert(kit:finish(tembra.type_number("Siren"), "Alarm", "Hall"))
  end)
  equal(kinds, "waiting answered reading found added ended")
  equal(events.found.radio, "Z-Wave")
  equal(events.added.place, "Hall")
  equal(events.ended.outcome, "done")
  equal(events.ended.reason_number, 0)
  assert(events.waiting.json:find('"event":"waiting"', 1, true))
  assert(events.waiting.ends_in > 100 and events.waiting.ends_in <= 180)
  equal(events.waiting.name, nil, "a member of another kind")

  local devices = assert(tembra.devices())
  equal(#devices, 1)
  equal(devices[1].name .. " " .. devices[1].type_name, "Alarm Siren")
  equal(devices[1].id, events.added.id)

  assert(kit:remove())
  kinds, events = events_of(kit, "plain-plug")
  equal(kinds, "waiting removing removed ended")
  equal(events.removed.name, "Alarm")
  equal(#tembra.devices(), 0)
end

function tests.one_operation_and_one_kit_at_a_time(kit)
  refused(SEARCH, kit:cancel())
  refused(SEARCH, kit:finish())
  assert(kit:add())
  refused(BUSY, kit:add())
  equal(select(2, kit:add()), "Something else is still under way.")
  refused(BUSY, tembra.new())
  assert(kit:cancel())
  local _, events = events_of(kit)
  equal(events.ended.reason, "cancelled")
end

function tests.nobody_presses(kit)
  assert(kit:add())
  local _, events = events_of(kit)
  equal(events.ended.outcome, "timed-out")
  equal(events.ended.reason, "nobody-pressed")
  equal(events.ended.ended_in, "button")
  assert(#events.ended.advice > 10)
end

function tests.bridges_are_found(kit)
  assert(kit:hue_discover())
  local kinds, events = events_of(kit)
  equal(kinds, "waiting bridges ended")
  equal(events.bridges.bridges[1].mac, "02:a1:b2:0c:00:01")
  equal(events.bridges.bridges[1].user, nil)
  refused(INVALID, kit:hue_add_bridge("no address"))
  refused(INVALID, kit:hue_add_bridge("02:a1:b2:0c:00:01", 601))
  assert(not pcall(kit.hue_add_bridge, kit, "02:a1:b2:0c:00:01", 2 ^ 32 + 60))
end

function tests.the_account_is_not_linked(kit)
  assert(kit:nest_status())
  local kinds, events = events_of(kit)
  equal(kinds, "account ended")
  equal(events.account.linked, false)
end

function tests.the_devices_are_listed(kit)
  assert(kit:devices())
  local kinds, events = events_of(kit)
  equal(kinds, "devices ended")
  equal(#events.devices.devices, #assert(tembra.devices()))
end

function tests.a_wait_can_be_limited(kit)
  equal(kit:next(0), nil)
  equal(kit:next(0.01), nil)
  assert(kit:descriptor() >= 0)
end

function tests.a_closed_kit_is_an_error(kit)
  kit:close()
  kit:close()
  assert(not pcall(kit.add, kit))
  assert(not pcall(kit.add, {}))
end

function tests.options_are_checked(kit)
  kit:close()
  refused(INVALID, tembra.new { role = 99 })
  assert(not pcall(tembra.new, { program = "a\0b" }))
  assert(tembra.new { role = tembra.role.web_server, program = "test", keep_open = true }):close()
end

function tests.the_history_tells_what_happened(kit)
  local before = #tembra.history()
  tembra.log(2, "an error")
  refused(SEARCH, kit:cancel())
  local entries = tembra.history()
  equal(#entries, before + 2)
  assert(entries[before + 1]:find('"log":"an error","level":"error"', 1, true), entries[before + 1])
  assert(entries[before + 2]:find('"call":"cancel","error":3', 1, true), entries[before + 2])
end

function tests.a_known_device_keeps_its_name_and_a_stranger_is_taken_out(kit)
  local function finish(_, found) assert(kit:finish(found.type, found.name == "Lamp" and "" or "Lamp")) end
  assert(kit:add())
  events_of(kit, "dimmer", finish)
  assert(kit:add_again())
  local kinds, events = events_of(kit, "dimmer", finish)
  equal(kinds, "waiting answered warning waiting removing removed waiting answered reading found added ended")
  equal(events.warning.reason, "already-known")
  equal(events.warning.device_name, "Lamp")
  assert(events.warning.device_id > 0)
  equal(events.warning.advice, "")
  equal(events.added.name, "Lamp")
  assert(kit:remove())
  events_of(kit, "dimmer")
  assert(kit:take_out())
  kinds, events = events_of(kit, "dimmer")
  equal(kinds, "waiting ended")
  equal(events.ended.outcome, "done")
end

function tests.tells_whether_a_server_listens()
  equal(tembra.server_listens(tembra.server.zwave), true)
  equal(tembra.server_name(tembra.server.ha), "HA")
  equal(tembra.server_name(99), nil)
  equal(tembra.radio_name(0), "other")
  equal(tembra.server_listens(9), false)
end

function tests.types_have_names()
  equal(tembra.type_name(1), "BinarySwitch")
  equal(tembra.type_number("Spoon"), 0)
end

local names = {}
for name in pairs(tests) do names[#names + 1] = name end
table.sort(names)
local failures = 0
for _, name in ipairs(names) do
  local kit = assert(tembra.new())
  local passed, message = pcall(tests[name], kit)
  kit:close()
  print((passed and "passed " or "FAILED ") .. name .. (passed and "" or ": " .. tostring(message)))
  if not passed then failures = failures + 1 end
end
assert(#names == 13)
os.exit(failures == 0 and 0 or 1)
