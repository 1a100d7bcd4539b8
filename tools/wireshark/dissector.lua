-- The Wireshark dissector of the datagrams between the association library and the daemons. The tables of records,
-- numbers and addresses stand before this text.

local proto = Proto("tembra", "Tembra association service")

-- ---- Fields ---------------------------------------------------------------------------------------------------------

local fields = {} -- by filter name
local protoFields = {}

local function addField(filter, make, ...)
  fields[filter] = make(filter, ...)
  protoFields[#protoFields + 1] = fields[filter]
end

-- The texts of a field's numbers. A number that two numberings have is told by the one of the field's direction.
local function textsOf(field)
  if field.texts then return field.texts end
  local texts = {}
  for i = #field.numbers, 1, -1 do
    for number, text in pairs(NUMBERS[field.numbers[i]]) do texts[number] = text end
  end
  field.texts = next(texts) and texts
  return field.texts
end

local HEXADECIMAL = {shortAddress = true, cluster = true, zoneType = true, commandClass = true, acCheckA = true,
                     acCheckB = true, acCheckC = true, productWordA = true, productWordB = true, zigbeeAddress = true}

local function addRecordField(record, field)
  local filter = "tembra." .. record.filter .. "." .. field.filter
  if field.kind == "string" then
    addField(filter, ProtoField.string, field.name, base.NONE, field.meaning)
  elseif field.kind == "bytes" then
    addField(filter, ProtoField.bytes, field.name, base.NONE, field.meaning)
    addField(filter .. ".entry", ProtoField.uint8, "entry", base.HEX, textsOf(field) or nil, 0, field.meaning)
  elseif field.kind == "list" then
    addField(filter, ProtoField.none, field.name, field.meaning)
  else
    local how = HEXADECIMAL[field.name] and base.HEX or base.DEC
    addField(filter, ProtoField[field.kind], field.name, how, textsOf(field) or nil, 0, field.meaning)
  end
end

for _, record in pairs(RECORDS) do
  addField("tembra." .. record.filter, ProtoField.none, record.purpose:match("^[^,(;]*[^,(;. ]"), record.purpose)
  for _, field in ipairs(record.fields) do addRecordField(record, field) end
end
addField("tembra.server", ProtoField.string, "Server", base.NONE, "the server that sends or receives")
addField("tembra.command", ProtoField.string, "Command", base.NONE, "what the library asks for")
addField("tembra.operation", ProtoField.uint32, "Operation", base.DEC, nil, 0, "number of the operation in the recording")
addField("tembra.request", ProtoField.framenum, "Request", base.NONE, frametype.REQUEST, 0, "what this answers")
addField("tembra.answer", ProtoField.framenum, "Answer", base.NONE, frametype.RESPONSE, 0, "the first answer to this")
addField("tembra.time", ProtoField.relative_time, "Time since the request")
addField("tembra.text", ProtoField.string, "Text", base.NONE, "in place of a record")
proto.fields = protoFields

local experts = {}
local function addExpert(name, text, severity)
  experts[name] = ProtoExpert.new("tembra.expert." .. name, text, expert.group.PROTOCOL, severity)
end
addExpert("length", "Wrong length", expert.severity.ERROR)
addExpert("sender", "Nothing is expected from this sender", expert.severity.ERROR)
addExpert("port", "Not the server's own port: strict mode drops it", expert.severity.WARN)
addExpert("imposter", "Not the server's own address, which this is a part of: strict mode drops it", expert.severity.WARN)
addExpert("meaning", "A number without a meaning", expert.severity.WARN)
addExpert("command", "A command that the server does not know", expert.severity.ERROR)
addExpert("endless", "A list without an end", expert.severity.ERROR)
addExpert("unterminated", "A text that fills its field", expert.severity.NOTE)
addExpert("zeros", "Bytes that must be zero are not", expert.severity.WARN)
addExpert("count", "More entries than the record has room for", expert.severity.ERROR)
proto.experts = {experts.length, experts.sender, experts.port, experts.imposter, experts.meaning, experts.command,
                 experts.endless, experts.unterminated, experts.zeros, experts.count}

-- ---- Records --------------------------------------------------------------------------------------------------------

local json = Dissector.get("json")

local function isZero(range) return not range:raw():find("[^%z]") end

local function numberIn(range) return range:len() <= 2 and range:le_uint() or range:le_int() end

local function fieldOf(record, name)
  for _, field in ipairs(record.fields) do
    if field.name == name then return field end
  end
end

-- A number of a record that the range holds up to that field.
local function numberOf(record, name, range)
  local field = fieldOf(record, name)
  return numberIn(range(field.offset, field.size))
end

-- Each of these adds a field that the datagram holds whole. `travel` is "answer" or "request": which numbering and
-- which end of a list holds depends on it.
local add = {}

local function addNumber(tree, item, range, travel, field)
  local leaf = tree:add_le(fields[item], range)
  local numbering = field.numbers[travel == "request" and #field.numbers or 1]
  local number = numberIn(range)
  if #field.numbers > 0 and not textsOf(field)[number] then
    leaf:set_text(string.format(HEXADECIMAL[field.name] and "%s: 0x%x" or "%s: %d", field.name, number))
  end
  local isRead = field.name ~= "requestMark" and field.name ~= "deviceKind" or travel == "request"
  if numbering and CLOSED[numbering] and isRead and not NUMBERS[numbering][number] then
    leaf:add_proto_expert_info(experts.meaning)
  end
end
add.uint8, add.uint16, add.int32, add.uint32 = addNumber, addNumber, addNumber, addNumber

-- The texts of a Hue command that the server does not read: its sender leaves there what was there.
local UNREAD = {["discover"] = {bridgeId = true, argument = true}, ["add bridge"] = {argument = true},
                ["remove bridge"] = {argument = true}}
local commandOfNow -- of the datagram that is being dissected

-- The bytes behind a text have no meaning: old ones may stand there.
function add.string(tree, item, range, travel, field)
  local text = range:raw():match("^[^%z]*")
  local leaf = tree:add(fields[item], range(0, math.min(#text + 1, range:len())))
  local isRead = not (UNREAD[commandOfNow] and UNREAD[commandOfNow][field.name])
  if isRead and not range:raw():find("%z") then leaf:add_proto_expert_info(experts.unterminated) end
end

-- A list of single bytes. One of zeros alone is a list that nobody has filled.
function add.bytes(tree, item, range, travel, field)
  local list = tree:add(fields[item], range)
  if isZero(range) then return list:append_text(" (none)") end
  local last = field.ends[travel == "request" and 2 or 1]
  for i = 0, range:len() - 1 do
    if range(i, 1):uint() == last then return end
    list:add(fields[item .. ".entry"], range(i, 1))
  end
  list:add_proto_expert_info(experts.endless)
end

local addRecord

function add.list(tree, item, range, travel, field, count)
  local list = tree:add(fields[item], range)
  local entry = RECORDS[field.entry]
  local room = math.floor(range:len() / entry.size)
  if isZero(range) then return list:append_text(" (none)") end
  local ends = entry.fields[1].ends
  for i = 0, math.min(count or room, room) - 1 do
    local one = range(i * entry.size, entry.size)
    if ends and not count and numberIn(one(0, entry.fields[1].size)) == ends[1] then return end
    addRecord(list, entry, one, travel)
  end
  if ends and not count then list:add_proto_expert_info(experts.endless) end
  if count and count > room then list:add_proto_expert_info(experts.count) end
end

-- How many entries of a list count, where another field says so. That field stands before the list in the record.
local function countFor(record, field, range)
  if record == RECORDS.ZbDeviceInfo and field.name == "indexes" then return numberOf(record, "indexCount", range) end
  if record == RECORDS.HueAnswer and field.name == "entries" then
    local found = numberOf(record, "type", range) == 0
    return found and math.max(numberOf(record, "count", range), 0) or 0
  end
end

local pinfoOfNow -- of the datagram that is being dissected
local rootOfNow

local function handOverJson(range)
  local text = range:raw():match("^[^%z]*")
  if not json or text == "" then return end
  pcall(json.call, json, range(0, #text):tvb("JSON text"), pinfoOfNow, rootOfNow)
end

-- The fields that the range holds whole.
function addRecord(tree, record, range, travel)
  local branch = tree:add(fields["tembra." .. record.filter], range)
  for _, field in ipairs(record.fields) do
    if field.offset + field.size <= range:len() and field.name ~= "record" then
      local item = "tembra." .. record.filter .. "." .. field.filter
      local part = range(field.offset, field.size)
      add[field.kind](branch, item, part, travel, field, countFor(record, field, range))
      if field.name == "json" then handOverJson(part) end
    end
  end
  return branch
end

-- Whether the bytes between the fields, and behind the end of each text, are zero.
local function hasOnlyZerosBetween(record, range)
  local at = 0
  for _, field in ipairs(record.fields) do
    if field.offset > at and not isZero(range(at, field.offset - at)) then return false end
    at = field.offset + field.size
    if field.kind == "string" and range(field.offset, field.size):raw():find("%z+[^%z]") then return false end
  end
  return at >= range:len() or isZero(range(at, range:len() - at))
end

-- ---- Commands and operations ----------------------------------------------------------------------------------------

local function valueOf(record, name, range)
  local field = fieldOf(record, name)
  local part = range(field.offset, field.size)
  if field.kind == "string" then return part:raw():match("^[^%z]*") end
  return tostring(numberIn(part))
end

local function commandIn(name, range)
  local record = RECORDS[name]
  if range:len() < record.size then return nil end
  for _, row in ipairs(COMMANDS) do
    if row.record == name and valueOf(record, row[2], range) == row[3] and
        (not row[4] or valueOf(record, row[4], range) == row[5]) then
      return row[1]
    end
  end
end

-- What earlier datagrams of the recording leave to later ones. Wireshark visits every frame in order once, and again
-- in any order.
local operation, lastRequest, known

local function forget()
  operation, lastRequest, known = {number = 0, asked = {}}, {}, {}
end
forget()
proto.init = forget -- at the beginning of each recording

-- One add, removal or reset of the library goes to both radios. A cancel and a notice belong to what runs.
local function continues(server, command)
  if command == "cancel" or command == "reset, second half" or server.name == "HA server" then return true end
  local isRadio = server.name == "Z-Wave server" or server.name == "ZigBee server"
  return isRadio and command == operation.command and not operation.asked[server.name] and not operation.answered
end

local function remember(frame, server, travel, command, time)
  local entry = {answers = {}, time = time}
  if travel == "request" then
    if not continues(server, command) then
      operation = {number = operation.number + 1, command = command, asked = {}}
    end
    operation.asked[server.name] = true
    if command ~= "cancel" and server.answer then lastRequest[server.name] = entry end
  else
    operation.answered = true
    entry.request = lastRequest[server.name]
    if entry.request and not entry.request.answer then entry.request.answer = frame end
  end
  entry.frame = frame
  entry.operation = operation.number
  known[frame] = entry
end

local function addLinks(tree, entry)
  if not entry then return end
  if entry.operation > 0 then tree:add(fields["tembra.operation"], entry.operation):set_generated() end
  if entry.answer then tree:add(fields["tembra.answer"], entry.answer):set_generated() end
  if entry.request then
    tree:add(fields["tembra.request"], entry.request.frame):set_generated()
    local seconds = math.max(entry.time - entry.request.time, 0)
    local whole = math.floor(seconds)
    local nanoseconds = math.min(math.floor((seconds - whole) * 1e9 + 0.5), 999999999)
    tree:add(fields["tembra.time"], NSTime.new(whole, nanoseconds)):set_generated()
  end
end

-- ---- Datagrams ------------------------------------------------------------------------------------------------------

local libraryAddress = Address.ip(LIBRARY.address)
for _, server in ipairs(SERVERS) do server.ip = Address.ip(server.address) end

local function serverAt(address, port)
  for _, server in ipairs(SERVERS) do
    if server.ip == address and server.port == port then return server end
  end
end

-- The library looks for the sender's address in the servers' texts. A part of a text is enough, and the first hit wins:
-- 127.255.255.25 passes for the Z-Wave server. No address is a part of both the HA server's text and another one.
local function serverThatTheLibraryHears(address)
  for _, server in ipairs(SERVERS) do
    if (server.address .. ":" .. server.port):find(tostring(address), 1, true) then return server end
  end
end

local REMOVE_ALL = "removeAllDevices"

local BODY = fieldOf(RECORDS.HaNotice, "record")

-- A notice carries one of two records, or a text. The bytes behind have no meaning.
local function addNotice(branch, range)
  local kind, body = numberOf(RECORDS.HaNotice, "recordKind", range), range(BODY.offset)
  local text = body:raw():match("^[^%z]*")
  if kind == 0 and text == REMOVE_ALL then
    branch:add(fields["tembra.text"], body(0, #text + 1))
  else
    local record = kind == 2 and RECORDS.ZwNodeInfo or RECORDS.ZbDeviceInfo
    addRecord(branch, record, body(0, record.size), "request")
  end
end

local function addRequest(branch, server, range, command)
  if server.request == "HaNotice" then return addNotice(branch, range) end
  if command then
    branch:add(fields["tembra.command"], command):set_generated()
  else
    branch:add_proto_expert_info(experts.command)
  end
  local isCleared = server.request ~= "HueCommand" -- its sender leaves what the command does not use as it was
  if isCleared and not hasOnlyZerosBetween(RECORDS[server.request], range) then
    branch:add_proto_expert_info(experts.zeros)
  end
end

-- "added: Washing machine", by the mark of a node or the message code of a device.
local function noticeIn(range)
  if range:len() < RECORDS.HaNotice.size then return "HaNotice" end
  local isNode, body = numberOf(RECORDS.HaNotice, "recordKind", range) == 2, range(BODY.offset)
  if body:raw():match("^[^%z]*") == REMOVE_ALL then return REMOVE_ALL end
  local record = isNode and RECORDS.ZwNodeInfo or RECORDS.ZbDeviceInfo
  local number = numberOf(record, isNode and "requestMark" or "msgCode", body)
  local names = NUMBERS[isNode and "RequestMark" or "ZigbeeNotice"]
  local name = fieldOf(record, "name")
  return string.format("%s: %s", names[number] or "HaNotice",
                       body(name.offset, name.size):string():match("^[^%z]*"))
end

local function titleOf(server, travel, command, range)
  if server.request == "HaNotice" then return "to the HA server: " .. noticeIn(range) end
  if travel == "answer" then
    local record = RECORDS[server.answer]
    local code = server.answer == "ZwNodeInfo" and "nodeId" or server.answer == "ZbDeviceInfo" and "msgCode" or
                   record.fields[1].name
    local field = fieldOf(record, code)
    if range:len() < field.offset + field.size then return server.name .. " answers" end
    local number = numberIn(range(field.offset, field.size))
    local text = textsOf(field)
    return string.format("%s answers: %s %d%s", server.name, code, number,
                         text and text[number] and ", " .. text[number] or "")
  end
  return "to the " .. server.name .. ": " .. (command or server.request)
end

-- The status of the Nest server counts with one of its answers only.
local function judgeNestStatus(branch, range)
  local record = RECORDS.NestAnswer
  local status = numberOf(record, "status", range)
  if numberOf(record, "command", range) == 124 and status ~= 0 and status ~= -1 then
    branch:add_proto_expert_info(experts.meaning)
  end
end

local function dissect(tvb, pinfo, root, server, travel)
  local record = RECORDS[travel == "answer" and server.answer or server.request]
  local range = tvb:range()
  local command = travel == "request" and record ~= RECORDS.HaNotice and commandIn(server.request, range) or nil
  if not pinfo.visited then remember(pinfo.number, server, travel, command, pinfo.rel_ts) end
  local tree = root:add(proto, range)
  tree:add(fields["tembra.server"], server.name):set_generated()
  addLinks(tree, known[pinfo.number])
  if tvb:reported_len() ~= record.size then tree:add_proto_expert_info(experts.length) end
  pinfoOfNow, rootOfNow, commandOfNow = pinfo, root, command
  local branch = addRecord(tree, record, range(0, math.min(record.size, range:len())), travel)
  if travel == "request" and range:len() >= record.size then addRequest(branch, server, range, command) end
  if record == RECORDS.NestAnswer and range:len() >= record.size then judgeNestStatus(branch, range) end
  local title = titleOf(server, travel, command, range)
  pinfo.cols.protocol:set("Tembra")
  pinfo.cols.info:set(title)
  tree:append_text(", " .. title)
  return tree
end

-- The library knows a server by its address, and drops what comes from anybody else and from the HA server.
function proto.dissector(tvb, pinfo, root)
  if tvb:len() == 0 then return 0 end
  if pinfo.dst == libraryAddress and pinfo.dst_port == LIBRARY.port then
    local server = serverThatTheLibraryHears(pinfo.src)
    if server and server.answer then
      local tree = dissect(tvb, pinfo, root, server, "answer")
      if pinfo.src ~= server.ip then
        tree:add_proto_expert_info(experts.imposter)
      elseif pinfo.src_port ~= server.port then
        tree:add_proto_expert_info(experts.port)
      end
    else
      root:add(proto, tvb:range()):add_proto_expert_info(experts.sender)
      pinfo.cols.protocol:set("Tembra")
      pinfo.cols.info:set("the library drops it: the sender is no server that it hears")
    end
    return tvb:len()
  end
  local server = serverAt(pinfo.dst, pinfo.dst_port)
  if not server then return 0 end
  local tree = dissect(tvb, pinfo, root, server, "request")
  if pinfo.src ~= libraryAddress or pinfo.src_port ~= LIBRARY.port then tree:add_proto_expert_info(experts.sender) end
  return tvb:len()
end

local udp = DissectorTable.get("udp.port")
local ports = {[LIBRARY.port] = true}
for _, server in ipairs(SERVERS) do ports[server.port] = true end
for port in pairs(ports) do udp:add(port, proto) end

-- ---- Records of the device database ---------------------------------------------------------------------------------

-- They travel in no datagram. A file of link type "USER 14" holds device records, of "USER 15" index records; a user may
-- also pick the dissectors by "Decode As".
local function addDatabaseRecord(name, title, name_of_link)
  local part = Proto("tembra_" .. RECORDS[name].filter, title)
  function part.dissector(tvb, pinfo, root)
    if tvb:len() == 0 then return 0 end
    local record = RECORDS[name]
    local tree = root:add(part, tvb:range())
    if tvb:len() > record.size then tree:add_proto_expert_info(experts.length) end
    addRecord(tree, record, tvb:range(0, math.min(record.size, tvb:len())), "answer")
    pinfo.cols.protocol:set("Tembra")
    pinfo.cols.info:set(title)
    return tvb:len()
  end
  udp:add_for_decode_as(part)
  DissectorTable.get("wtap_encap"):add(wtap[name_of_link], part)
end
addDatabaseRecord("DeviceRecord", "Tembra device record", "USER14")
addDatabaseRecord("IndexRecord", "Tembra index record", "USER15")
