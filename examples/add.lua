-- Adds devices: each device whose button is pressed, with the type and the name that the library proposes.
-- usage: add.lua [HOW_MANY]
local tembra = require "tembra"

local kit = assert(tembra.new())

local function add()
  local last
  assert(kit:add())
  for event in kit:events() do
    if event.kind == "waiting" then
      print("Press the button of the device.")
    elseif event.kind == "found" then
      assert(kit:finish(event.type, event.name)) -- or one of event.choices, and what the user types
    elseif event.kind == "added" then
      print("Added " .. event.name .. " (" .. tembra.type_name(event.type) .. ").")
    elseif event.kind == "ended" then
      print((event.text .. " " .. event.advice):match("^(.-) *$"))
    end
    last = event
  end
  return last.outcome == "done"
end

local left = tonumber(arg[1] or 1)
while left > 0 and add() do left = left - 1 end
kit:close()
os.exit(left == 0 and 0 or 1)
