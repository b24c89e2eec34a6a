-- Shows the traces of tolvane's scales in Wireshark: every request and reply as fields, and why a
-- frame is bad. README.md beside this file says how to install and use it; docs/scale-protocol.md
-- describes the frames, src/command/TraceFile.h the bytes before each of them.

local tolvane = Proto("tolvane", "Elicom label scale")

local HEADER_LENGTH = 12
local REQUEST, REPLY = 0, 1
local START = { [REQUEST] = 0x04, [REPLY] = 0x02 }
local FRAME_END, PLAIN, OFFSET = 0x03, 0x0C, 0x0D
local SHIFT = 0x14

local NOT_SENT, TIME_OUT = 5, 2
local LINKS = { [0] = "serial", [1] = "TCP", [2] = "UDP" }
local DIRECTIONS = { [REQUEST] = "request", [REPLY] = "reply" }
local RESULTS = {
    [0] = "done",
    [1] = "wrong answer",
    [TIME_OUT] = "time-out",
    [3] = "not connected",
    [4] = "other failure",
    [NOT_SENT] = "not sent",
}
local COMMANDS = {
    [0x36] = "SetPrgMode",
    [0x3C] = "SetWeightMode",
    [0x48] = "GetVersion",
    [0x49] = "SetPrice",
    [0x4A] = "SetPrice with weight field",
    [0x4B] = "SetPriceC",
    [0x4C] = "SetParam",
}
local PARAMETERS = {
    [0] = "label name 1", [1] = "label name 2",
    [2] = "comment 1", [3] = "comment 2", [6] = "comment 3",
    [4] = "best before", [5] = "barcode", [7] = "shipment number",
    [14] = "article number in the scales", [15] = "article number in the database",
    [19] = "comment 1, long", [20] = "comment 2, long", [21] = "comment 3, long",
}
for number = 0, 31 do PARAMETERS[number] = PARAMETERS[number] or "not used" end
local CODE_TABLES = { [0] = "WIN-1252", [1] = "PC-855 (DOS CYR)", [2] = "PC-866 (RUS CYR)", [255] = "none" }
local MARKERS = { [PLAIN] = "as they are", [OFFSET] = "with 14 added" }

-- Fields -------------------------------------------------------------------------------------------

local fields = {
    version = ProtoField.uint8("tolvane.version", "Version of this header"),
    link = ProtoField.uint8("tolvane.link", "Link", base.DEC, LINKS),
    direction = ProtoField.uint8("tolvane.direction", "Direction", base.DEC, DIRECTIONS),
    result = ProtoField.uint8("tolvane.result", "Result", base.DEC, RESULTS),
    scale = ProtoField.int32("tolvane.scale", "Scale"),
    table = ProtoField.uint8("tolvane.table", "Code table of the scale", base.DEC, CODE_TABLES),
    start = ProtoField.uint8("tolvane.start", "Start", base.HEX),
    stop = ProtoField.uint8("tolvane.end", "End", base.HEX),
    marker = ProtoField.uint8("tolvane.marker", "Marker, the bytes after it", base.HEX, MARKERS),
    body = ProtoField.bytes("tolvane.body", "Body", base.SPACE),
    address = ProtoField.uint8("tolvane.address", "Address"),
    command = ProtoField.uint8("tolvane.command", "Command", base.HEX, COMMANDS),
    data = ProtoField.bytes("tolvane.data", "Data", base.SPACE),
    plu = ProtoField.uint16("tolvane.plu", "Article"),
    price = ProtoField.double("tolvane.price", "Price"),
    weight = ProtoField.double("tolvane.weight", "Weight field"),
    pieces = ProtoField.uint8("tolvane.pieces", "Sold by", base.DEC, { [0] = "weight", [1] = "the piece" }),
    tare = ProtoField.uint8("tolvane.tare", "Tare"),
    label = ProtoField.uint8("tolvane.label", "Label"),
    parameter = ProtoField.uint8("tolvane.parameter", "Parameter", base.DEC, PARAMETERS),
    length = ProtoField.uint8("tolvane.length", "Length of the text"),
    text = ProtoField.string("tolvane.text", "Text", base.UNICODE),
    text_bytes = ProtoField.bytes("tolvane.text.bytes", "Text as sent", base.SPACE),
    days = ProtoField.uint32("tolvane.days", "Days"),
    error = ProtoField.uint8("tolvane.error", "Error code"),
    scale_version = ProtoField.string("tolvane.scale_version", "Version"),
    capacity = ProtoField.uint16("tolvane.capacity", "Highest article number"),
    mode = ProtoField.uint8("tolvane.mode", "Label mode"),
    checksum = ProtoField.uint8("tolvane.checksum", "Checksum", base.HEX),
    computed = ProtoField.uint8("tolvane.checksum.computed", "Computed checksum", base.HEX),
    good = ProtoField.bool("tolvane.checksum.good", "Checksum is right"),
    request_in = ProtoField.framenum("tolvane.request_in", "Request in", base.NONE, frametype.REQUEST),
    reply_in = ProtoField.framenum("tolvane.reply_in", "Reply in", base.NONE, frametype.RESPONSE),
    time = ProtoField.relative_time("tolvane.time", "Time since the request"),
}
local field_list = {}
for _, field in pairs(fields) do field_list[#field_list + 1] = field end
tolvane.fields = field_list

local experts = {}
local function problem(name, text, group, severity)
    experts[name] = ProtoExpert.new("tolvane.bad." .. name, text, group, severity)
end
local MALFORMED, PROTOCOL, SEQUENCE = expert.group.MALFORMED, expert.group.PROTOCOL, expert.group.SEQUENCE
local ERROR, WARN, NOTE = expert.severity.ERROR, expert.severity.WARN, expert.severity.NOTE
problem("header", "The bytes before the frame are not of this version", MALFORMED, ERROR)
problem("start", "Wrong start", MALFORMED, ERROR)
problem("end", "No end", MALFORMED, ERROR)
problem("after_end", "Bytes behind the end", MALFORMED, ERROR)
problem("short", "Too short", MALFORMED, ERROR)
problem("marker_first", "The body does not begin with a marker", PROTOCOL, WARN)
problem("marker_last", "A marker stands at the end", MALFORMED, ERROR)
problem("marker_twice", "A marker follows a marker", PROTOCOL, WARN)
problem("unstuffed", "A byte is not stuffed", MALFORMED, ERROR)
problem("checksum", "Wrong checksum", expert.group.CHECKSUM, ERROR)
problem("address", "Address of another scale", SEQUENCE, ERROR)
problem("command", "Reply to another command", SEQUENCE, ERROR)
problem("unknown", "Unknown command", PROTOCOL, WARN)
problem("data", "Wrong data", MALFORMED, ERROR)
problem("refused", "The scale refuses", expert.group.RESPONSE_CODE, WARN)
problem("no_reply", "No reply", SEQUENCE, WARN)
problem("not_sent", "Not sent", SEQUENCE, ERROR)
local expert_list = {}
for _, one in pairs(experts) do expert_list[#expert_list + 1] = one end
tolvane.experts = expert_list

local AS_TRACED = 3
tolvane.prefs.table = Pref.enum("Code table of texts", AS_TRACED,
    "What texts are read by. A frame does not say it; the trace has what the scale is configured with.", {
        { 1, "as the trace says", AS_TRACED },
        { 2, "WIN-1252, code page 1251 as it is", 0 },
        { 3, "PC-855 (DOS CYR)", 1 },
        { 4, "PC-866 (RUS CYR)", 2 },
    }, false)

-- Texts --------------------------------------------------------------------------------------------

local function hex(byte) return string.format("%02X", byte) end

local function utf8(point)
    if point < 0x80 then return string.char(point) end
    if point < 0x800 then return string.char(0xC0 + math.floor(point / 64), 0x80 + point % 64) end
    return string.char(0xE0 + math.floor(point / 4096), 0x80 + math.floor(point / 64) % 64, 0x80 + point % 64)
end

-- Of code page 1251, from 80 on.
local SIGNS = {
    0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021,
    0x20AC, 0x2030, 0x0409, 0x2039, 0x040A, 0x040C, 0x040B, 0x040F,
    0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0xFFFD, 0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F,
    0x00A0, 0x040E, 0x045E, 0x0408, 0x00A4, 0x0490, 0x00A6, 0x00A7,
    0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407,
    0x00B0, 0x00B1, 0x0406, 0x0456, 0x0491, 0x00B5, 0x00B6, 0x00B7,
    0x0451, 0x2116, 0x0454, 0x00BB, 0x0458, 0x0405, 0x0455, 0x0457,
}
local function cp1251(byte)
    if byte < 0x80 then return utf8(byte) end
    if byte < 0xC0 then return utf8(SIGNS[byte - 0x7F]) end
    return utf8(0x0410 + byte - 0xC0)
end

-- The character that a byte stands for in a scale; a byte that no letter becomes is marked.
local NO_CHARACTER = utf8(0xFFFD)
local function character(byte, code_table)
    if byte == 0 then return "" end
    if byte < 0x80 or (code_table ~= 1 and code_table ~= 2) then return cp1251(byte) end
    local letters = code_table == 1 and 0xBF or 0xAF
    if byte <= letters then return cp1251(byte + 0x40) end
    if code_table == 2 and byte >= 0xE0 and byte <= 0xEF then return cp1251(byte + 0x10) end
    return NO_CHARACTER
end

-- Without the filling at the end.
local function decode_text(range, code_table)
    local characters = {}
    for i = 0, range:len() - 1 do characters[#characters + 1] = character(range(i, 1):uint(), code_table) end
    return (table.concat(characters):gsub(" +$", ""))
end

-- Data ---------------------------------------------------------------------------------------------

-- Three bytes of packed decimal, the last digits first; nothing when one is no digit.
local function packed_decimal(range)
    local number = 0
    for i = 2, 0, -1 do
        local byte = range(i, 1):uint()
        local high, low = math.floor(byte / 16), byte % 16
        if high > 9 or low > 9 then return nil end
        number = number * 100 + high * 10 + low
    end
    return number
end

-- Shows a decimal with this many places; answers its text.
local function add_decimal(tree, field, name, range, places)
    local number = packed_decimal(range)
    if number == nil then
        tree:add_proto_expert_info(experts.data, name .. " has a digit above 9: " .. tostring(range:bytes()))
        return "?"
    end
    local text = string.format("%." .. places .. "f", number / 10 ^ places)
    tree:add(field, range, number / 10 ^ places, name .. ": " .. text)
    return text
end

local function add_limited(tree, field, range, highest, what)
    local item = tree:add(field, range)
    local value = range:uint()
    if value > highest then
        item:add_proto_expert_info(experts.data, what .. " " .. value .. " is above " .. highest)
    end
    return value
end

-- Whether there are as many data bytes as the command has.
local function has_length(tree, range, expected)
    local length = range and range:len() or 0
    if length == expected then return true end
    tree:add_proto_expert_info(experts.data, "The command has " .. expected .. " data bytes, here are " .. length)
    return false
end

-- The three bytes that open each article command; answers the article's number.
local function add_article(tree, range)
    if range(0, 1):uint() ~= 0 then
        tree:add_proto_expert_info(experts.data, "The first data byte is " .. hex(range(0, 1):uint()) .. ", not 00")
    end
    tree:add_le(fields.plu, range(1, 2))
    return range(1, 2):le_uint()
end

local function show_nothing(tree, range)
    has_length(tree, range, 0)
    return ""
end

local function show_price(tree, range)
    if not has_length(tree, range, 6) then return "" end
    return " " .. add_article(tree, range) .. " price " .. add_decimal(tree, fields.price, "Price", range(3, 3), 2)
end

local function show_price_weight(tree, range)
    if not has_length(tree, range, 9) then return "" end
    local told = show_price(tree, range(0, 6))
    return told .. " weight " .. add_decimal(tree, fields.weight, "Weight field", range(6, 3), 3)
end

local function show_price_c(tree, range)
    if not has_length(tree, range, 9) then return "" end
    local told = show_price(tree, range(0, 6))
    local pieces = add_limited(tree, fields.pieces, range(6, 1), 1, "The piece flag")
    add_limited(tree, fields.tare, range(7, 1), 99, "Tare")
    add_limited(tree, fields.label, range(8, 1), 20, "Label")
    return told .. (pieces == 1 and " by the piece" or " by weight")
end

local function show_days(tree, range)
    local length = range:len()
    if length < 2 or length > 5 or range(0, 1):uint() ~= 1 then
        tree:add_proto_expert_info(experts.data, "Best before is not 01 and a number of 1 to 4 bytes")
        return "?"
    end
    tree:add(fields.days, range(1))
    return tostring(range(1):uint())
end

local function show_param(tree, range, code_table)
    if range == nil or range:len() < 5 then
        tree:add_proto_expert_info(experts.data, "The command has at least 5 data bytes, here are " ..
            (range and range:len() or 0))
        return ""
    end
    local number, length, there = range(3, 1):uint(), range(4, 1):uint(), range:len() - 5
    local told = " " .. add_article(tree, range) .. " "
    add_limited(tree, fields.parameter, range(3, 1), 31, "Parameter")
    told = told .. number .. " (" .. (PARAMETERS[number] or "unknown") .. ")"
    local item = tree:add(fields.length, range(4, 1))
    if length ~= there then
        item:add_proto_expert_info(experts.data, "The text's length is " .. length .. ", here are " .. there)
    end
    if there == 0 then return told end
    tree:add(fields.text_bytes, range(5))
    if number == 4 then return told .. " " .. show_days(tree, range(5)) end
    local text = decode_text(range(5), code_table)
    tree:add(fields.text, range(5), text)
    return told .. ' "' .. text .. '"'
end

local SHOW_REQUEST = {
    [0x36] = show_nothing,
    [0x3C] = show_nothing,
    [0x48] = show_nothing,
    [0x49] = show_price,
    [0x4A] = show_price_weight,
    [0x4B] = show_price_c,
    [0x4C] = show_param,
}

-- Bytes that are missing count as zero, as the host reads them.
local function show_version(tree, range)
    local length = range:len()
    local version, capacity, mode = "", 0, 0
    if length > 1 then
        local bytes = range(1, math.min(4, length - 1))
        version = decode_text(bytes, 0)
        tree:add(fields.scale_version, bytes, version)
    end
    if length > 10 then
        capacity = range(9, 2):le_uint()
        tree:add_le(fields.capacity, range(9, 2))
    end
    if length > 16 then
        mode = range(16, 1):uint() % 4
        tree:add(fields.mode, range(16, 1), mode)
    end
    return ', version "' .. version .. '", up to ' .. capacity .. ", label mode " .. mode
end

local function show_reply(tree, range, command)
    if range == nil then
        tree:add_proto_expert_info(experts.data, "The reply has no error code")
        return ", no error code"
    end
    local code = range(0, 1):uint()
    local item = tree:add(fields.error, range(0, 1))
    local told = ": done"
    if code ~= 0 then
        item:add_proto_expert_info(experts.refused, "The scale refuses with error code " .. code)
        told = ": error " .. code
    end
    if command == 0x48 then told = told .. show_version(tree, range) end
    return told
end

-- Frame --------------------------------------------------------------------------------------------

-- How many bytes stand behind the marker at `at`, up to the next one.
local function run_length(encoded, at)
    local last = at
    while last + 1 < encoded:len() and MARKERS[encoded(last + 1, 1):uint()] == nil do last = last + 1 end
    return last - at
end

-- The body without its markers, as bytes in hexadecimal. Shows each run of bytes behind a marker,
-- and what a sender does not do.
local function unstuff(tree, encoded)
    local out, added, before = {}, 0, nil
    local function complain(name, text) tree:add_proto_expert_info(experts[name], text) end
    for i = 0, encoded:len() - 1 do
        local byte = encoded(i, 1):uint()
        if MARKERS[byte] then
            local run = run_length(encoded, i)
            tree:add(fields.marker, encoded(i, run + 1), byte):append_text(", " .. run .. " bytes")
            if MARKERS[before] then
                complain("marker_twice", "A marker follows a marker, at byte " .. i + 1)
            end
            added = byte == OFFSET and SHIFT or 0
        else
            if i == 0 then
                complain("marker_first", "The body begins with " .. hex(byte) .. " and not with a marker")
            end
            if byte < SHIFT or (byte == SHIFT and added == 0) then
                complain("unstuffed", "Byte " .. i + 1 .. " is " .. hex(byte) .. ", which stands in no body so")
            end
            out[#out + 1] = hex((byte - added) % 256)
        end
        before = byte
    end
    if MARKERS[before] then
        complain("marker_last", "The marker " .. hex(before) .. " stands at the end, with nothing behind it")
    end
    return out
end

local function add_checksum(tree, body)
    local last, sum = body:len() - 1, 0
    for i = 0, last - 1 do sum = (sum + body(i, 1):uint()) % 256 end
    local sent = body(last, 1):uint()
    local item = tree:add(fields.checksum, body(last, 1))
    item:add(fields.computed, body(0, last), sum):set_generated()
    item:add(fields.good, body(last, 1), sum == sent):set_generated()
    if sum ~= sent then
        item:add_proto_expert_info(experts.checksum,
            "Wrong checksum: " .. hex(sent) .. ", the bytes before it add up to " .. hex(sum))
    end
end

-- The reply must repeat the request's address and command.
local function compare(tree, name, what, found, asked)
    if asked ~= nil and found ~= asked then
        tree:add_proto_expert_info(experts[name],
            what .. " " .. hex(found) .. ", the request had " .. hex(asked))
    end
end

local function show_body(tree, body, record)
    local address, command = body(0, 1):uint(), body(1, 1):uint()
    record.address, record.command = address, command
    local address_item = tree:add(fields.address, body(0, 1))
    local command_item = tree:add(fields.command, body(1, 1))
    local name = COMMANDS[command] or "command " .. hex(command)
    if COMMANDS[command] == nil then
        command_item:add_proto_expert_info(experts.unknown, "Unknown command " .. hex(command))
    end
    local data
    if body:len() > 3 then
        data = body(2, body:len() - 3)
        tree:add(fields.data, data)
    end
    local told = ""
    if record.direction == REPLY then
        local request = record.request or {}
        compare(address_item, "address", "The reply is of scale address", address, request.address)
        compare(command_item, "command", "The reply is to command", command, request.command)
        told = show_reply(tree, data, command)
    elseif SHOW_REQUEST[command] then
        told = SHOW_REQUEST[command](tree, data, record.table)
    end
    add_checksum(tree, body)
    return name .. told
end

-- One frame as it went over the wire; answers what the list of packets says of it.
local function show_frame(tree, frame, record)
    local length = frame:len()
    local function complain(name, text) tree:add_proto_expert_info(experts[name], text) end
    local first, last = frame(0, 1):uint(), frame(length - 1, 1):uint()
    local start = tree:add(fields.start, frame(0, 1))
    if first ~= START[record.direction] then
        start:add_proto_expert_info(experts.start, "Wrong start: " .. hex(first) .. ", a " ..
            DIRECTIONS[record.direction] .. " begins with " .. hex(START[record.direction]))
    end
    -- Where the first end stands, or the length of a frame that has none.
    local stop = length
    for i = length - 1, 1, -1 do
        if frame(i, 1):uint() == FRAME_END then stop = i end
    end
    if stop == length then
        complain("end", "No end: the last byte is " .. hex(last) .. ", not 03")
    elseif stop < length - 1 then
        complain("after_end", length - 1 - stop .. " bytes stand behind the end")
    end
    if stop <= 1 then
        complain("short", "Too short: there is no body")
        return "bad frame"
    end
    local encoded = frame(1, stop - 1)
    local shift_tree = tree:add(encoded, "Body as sent")
    local bytes = unstuff(shift_tree, encoded)
    -- What is missing would only look like more faults.
    if stop == length then return "cut off" end
    tree:add(fields.stop, frame(stop, 1))
    if #bytes < 3 then
        complain("short", "Too short: the body has " .. #bytes .. " of at least 3 bytes")
        return "bad frame"
    end
    local body = ByteArray.new(table.concat(bytes)):tvb("Body without stuffing")
    local body_tree = tree:add(fields.body, body:range())
    return show_body(body_tree, body:range(), record)
end

-- Requests and replies -----------------------------------------------------------------------------

local interface_id = Field.new("frame.interface_id")

-- What is known of each packet by its number, and the last request of each scale. A reply belongs to
-- the last request of its scale, as a scale is asked one thing at a time.
local records, requests

function tolvane.init()
    records, requests = {}, {}
end

local function scale_key(scale)
    local id = interface_id()
    return tostring(id and id.value) .. " " .. scale
end

local function find_record(header, pinfo)
    local record = records[pinfo.number]
    if record ~= nil then return record end
    record = { number = pinfo.number, time = pinfo.abs_ts, direction = header(2, 1):uint() }
    records[pinfo.number] = record
    local key = scale_key(header(4, 4):le_int())
    if record.direction == REQUEST then
        requests[key] = record
    else
        record.request = requests[key]
        requests[key] = nil
        if record.request ~= nil then record.request.reply = record.number end
    end
    return record
end

local function add_links(tree, record)
    if record.reply ~= nil then tree:add(fields.reply_in, record.reply):set_generated() end
    if record.request == nil then return end
    tree:add(fields.request_in, record.request.number):set_generated()
    local passed = math.floor((record.time - record.request.time) * 1e6 + 0.5)
    tree:add(fields.time, NSTime.new(math.floor(passed / 1e6), passed % 1e6 * 1000)):set_generated()
end

local function show_header(tree, header)
    local header_tree = tree:add(header, "Trace")
    header_tree:add(fields.version, header(0, 1))
    header_tree:add(fields.link, header(1, 1))
    header_tree:add(fields.direction, header(2, 1))
    local result = header_tree:add(fields.result, header(3, 1))
    header_tree:add_le(fields.scale, header(4, 4))
    header_tree:add(fields.table, header(8, 1))
    return result
end

-- What came of an exchange that failed; nothing of one that is done.
local function show_result(item, result, direction, length)
    if result == 0 then return nil end
    local words = RESULTS[result] or "result " .. result
    if direction == REQUEST then
        item:add_proto_expert_info(experts.not_sent, "The request was not sent")
        return "not sent"
    end
    if result == 1 and length == 0 then words = words .. ", an end came without a start" end
    item:add_proto_expert_info(experts.no_reply, "No reply: " .. words .. ", " .. length .. " bytes came")
    return words
end

function tolvane.dissector(buffer, pinfo, root)
    pinfo.cols.protocol = "Elicom"
    local tree = root:add(tolvane, buffer())
    if buffer:len() < HEADER_LENGTH or buffer(0, 1):uint() ~= 1 or DIRECTIONS[buffer(2, 1):uint()] == nil then
        tree:add_proto_expert_info(experts.header)
        pinfo.cols.info = "not of this version"
        return
    end
    local header, length = buffer(0, HEADER_LENGTH), buffer:len() - HEADER_LENGTH
    local record = find_record(header, pinfo)
    record.table = tolvane.prefs.table
    if record.table == AS_TRACED then record.table = header(8, 1):uint() end
    local scale = "Scale " .. header(4, 4):le_int()
    local is_request = record.direction == REQUEST
    pinfo.cols.src = is_request and "Host" or scale
    pinfo.cols.dst = is_request and scale or "Host"
    local outcome = show_result(show_header(tree, header), header(3, 1):uint(), record.direction, length)
    local told
    if length > 0 then told = show_frame(tree, buffer(HEADER_LENGTH), record) end
    add_links(tree, record)
    local words = { is_request and "Request" or "Reply" }
    words[#words + 1] = told
    if outcome ~= nil then words[#words + 1] = "(" .. outcome .. ")" end
    pinfo.cols.info = table.concat(words, " ")
end

DissectorTable.get("wtap_encap"):add(wtap.USER0, tolvane)
