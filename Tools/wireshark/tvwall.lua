-- Wireshark dissector for the link between a TV-wall decoder and its host, as docs/link-protocol.md describes it.
-- Runs in Wireshark and tshark from 3.4 on.

local FRAME_MAGIC = "1111"
local FRAME_HEAD_LENGTH = 8
local DEVICE_HEAD_LENGTH = 64
-- Nobody sends more. A greater length means that the stream is out of step; waiting for its bytes would hide all that
-- follows.
local MAX_PAYLOAD = 16 * 1024 * 1024

local NOTIFICATIONS = { notifychannelchange = true, notifychannelstate = true }

-- What the simulated decoder means by its codes; of a real decoder, only those of the login are known.
local ERROR_WORDS = {
    [0] = "success",
    [1] = "malformed request",
    [2] = "unknown url",
    [3] = "missing or bad value",
    [51] = "wrong session",
    [52] = "wrong token",
    [103] = "wrong account",
    [105] = "too many hosts",
    [106] = "wrong password",
    [201] = "unknown window",
    [202] = "window exists",
    [203] = "rectangle off the wall",
    [204] = "empty rectangle",
    [205] = "wrong split mode",
    [206] = "too many windows",
    [207] = "unknown sub-window",
    [208] = "nothing is playing",
    [209] = "too many media",
    [301] = "unreadable credential",
    [302] = "refused credential",
    [401] = "unknown screen",
    [402] = "screen taken",
    [403] = "screen not bound",
    [405] = "unknown output",
    [406] = "output taken",
    [501] = "unknown channel",
    [502] = "unknown channel group",
    [503] = "channel group exists",
    [504] = "channel group in use",
    [505] = "too many channel groups",
}

local tvwall = Proto("tvwall", "TV-Wall Decoder Link")

local fields = {
    magic = ProtoField.string("tvwall.magic", "Magic"),
    length = ProtoField.uint32("tvwall.length", "Payload length", base.DEC),
    heartbeat = ProtoField.bool("tvwall.heartbeat", "Heartbeat"),
    device_head = ProtoField.bytes("tvwall.devicehead", "Device head"),
    version = ProtoField.string("tvwall.version", "Version"),
    type = ProtoField.string("tvwall.type", "Type"),
    url = ProtoField.string("tvwall.url", "Url"),
    seq = ProtoField.uint32("tvwall.seq", "Sequence number", base.DEC),
    error_code = ProtoField.uint32("tvwall.errorcode", "Error code", base.DEC, ERROR_WORDS),
    identity = ProtoField.string("tvwall.identity", "Identity"),
    session = ProtoField.string("tvwall.session", "Session"),
    token = ProtoField.string("tvwall.token", "Token"),
    response_in = ProtoField.framenum("tvwall.response_in", "Reply in frame", base.NONE, frametype.RESPONSE),
    response_to = ProtoField.framenum("tvwall.response_to", "Reply to the request in frame", base.NONE,
                                      frametype.REQUEST),
    time = ProtoField.relative_time("tvwall.time", "Time since the request"),
}
tvwall.fields = fields

local experts = {
    malformed = ProtoExpert.new("tvwall.malformed", "Malformed frame", expert.group.MALFORMED, expert.severity.ERROR),
    refused = ProtoExpert.new("tvwall.refused", "Error code other than 0", expert.group.RESPONSE_CODE,
                              expert.severity.WARN),
    no_response = ProtoExpert.new("tvwall.no_response", "No reply in this capture", expert.group.SEQUENCE,
                                  expert.severity.WARN),
    no_request = ProtoExpert.new("tvwall.no_request", "Reply to no request in this capture", expert.group.SEQUENCE,
                                 expert.severity.WARN),
}
tvwall.experts = experts

tvwall.prefs.ports = Pref.range("TCP ports", "", "Ports whose whole traffic is this link. On others it is recognised " ..
                                "by a frame at the beginning of a segment.", 65535)

local tcp_stream = Field.new("tcp.stream")
local xml_dissector = Dissector.get("xml")

-- What the first pass over the frames, in capture order, learns about each TCP stream:
--   host      the end that sends requests, once one was seen
--   waiting   the last request with each sequence number
--   messages  by frame and sequence number: the exchange that a request began or a reply belongs to
local streams = {}

function tvwall.init()
    streams = {}
end

local function stream_of_this_packet()
    local number = tcp_stream().value
    streams[number] = streams[number] or { waiting = {}, messages = {} }
    return streams[number]
end

local function sender(pinfo)
    return tostring(pinfo.src) .. " " .. pinfo.src_port
end

local function is_from_host(pinfo)
    return stream_of_this_packet().host == sender(pinfo)
end

-- The number as both ends read it: its leading digits, cut to 32 bits. Nil if there are none.
local function read_number(text)
    local digits = text:match("^%s*(%d+)")
    if not digits then
        return nil
    end
    local number = 0
    for digit in digits:gmatch("%d") do
        number = (number * 10 + tonumber(digit)) % 4294967296
    end
    return number
end

-- The header's elements, each with its text and the text's place in the payload; nil when there is no header. Of
-- elements with the same name, the first counts.
local function read_header(payload)
    local _, first = payload:find("<td_header%s*>")
    local last = first and payload:find("</td_header%s*>", first)
    if not last then
        return nil
    end
    local elements = {}
    local position = first + 1
    while true do
        local from, to, name, empty = payload:find("<([%a_][%w_]*)[^<>]-(/?)>", position)
        if not from or from > last then
            return elements
        end
        position = to + 1
        local element
        if empty == "/" then
            element = { text = "", offset = from - 1, length = to - from + 1 }
        else
            local text = payload:match("^[^<]*", position)
            element = { text = text, offset = position - 1, length = #text }
        end
        elements[name] = elements[name] or element
    end
end

-- The exchange that the message belongs to, and whether it was known: it is learnt on the first visit to the frame.
-- Wireshark's own visited flag will not do, as tshark may set it without having shown us the frame.
local function exchange_of(message, pinfo)
    local stream = stream_of_this_packet()
    local key = pinfo.number .. "/" .. message.seq
    if stream.messages[key] then
        return stream.messages[key], true
    end
    if not stream.host and message.type == "request" then
        stream.host = sender(pinfo)
    end
    local exchange
    if is_from_host(pinfo) then
        exchange = { request_in = pinfo.number, request_time = pinfo.rel_ts }
        stream.waiting[message.seq] = exchange
    else
        exchange = stream.waiting[message.seq] or {}
        exchange.response_in = exchange.response_in or pinfo.number
    end
    stream.messages[key] = exchange
    return exchange, false
end

local function seconds(time)
    local whole = math.floor(time)
    return NSTime.new(whole, math.floor((time - whole) * 1e9 + 0.5))
end

local function link_request(exchange, was_known, tree)
    if exchange.response_in then
        tree:add(fields.response_in, exchange.response_in):set_generated()
    elseif was_known then
        tree:add_proto_expert_info(experts.no_response)
    end
end

local function link_reply(exchange, pinfo, tree)
    if not exchange.request_in then
        tree:add_proto_expert_info(experts.no_request)
        return
    end
    tree:add(fields.response_to, exchange.request_in):set_generated()
    tree:add(fields.time, seconds(pinfo.rel_ts - exchange.request_time)):set_generated()
end

local function describe_code(code)
    if code == 0 or not code then
        return "done"
    end
    return string.format("error %d (%s)", code, ERROR_WORDS[code] or "unknown")
end

-- Adds the header's elements, the links between request and reply, and returns the message in words.
local function add_message(header, range, pinfo, tree)
    local function text_of(name)
        return header[name] and header[name].text
    end
    local function add(field, name, value)
        local element = header[name]
        if element and value then
            return tree:add(field, range(element.offset, element.length), value)
        end
    end
    local message = {
        type = text_of("type"),
        url = text_of("url") or "",
        seq = read_number(text_of("seq") or ""),
        code = read_number(text_of("errorcode") or ""),
    }
    add(fields.version, "version", text_of("version"))
    add(fields.type, "type", message.type)
    add(fields.url, "url", message.url)
    add(fields.seq, "seq", message.seq)
    add(fields.identity, "identity", text_of("identity"))
    add(fields.session, "session", text_of("session"))
    add(fields.token, "token", text_of("token"))
    local code = add(fields.error_code, "errorcode", message.code)
    if code and message.code ~= 0 then
        code:add_proto_expert_info(experts.refused, describe_code(message.code))
    end

    if NOTIFICATIONS[message.url] then
        return "Notification " .. message.url
    end
    if not message.seq then
        tree:add_proto_expert_info(experts.no_request, "Without a sequence number it answers no request")
        return "Message " .. message.url .. " without a sequence number"
    end
    local exchange, was_known = exchange_of(message, pinfo)
    if exchange.request_in == pinfo.number then
        link_request(exchange, was_known, tree)
        return string.format("Request %s, seq %d", message.url, message.seq)
    end
    link_reply(exchange, pinfo, tree)
    return string.format("Reply to %s, seq %d: %s", message.url, message.seq, describe_code(message.code))
end

local function dissect_payload(range, pinfo, tree)
    local payload = range:raw()
    local header = read_header(payload)
    if not payload:find("<td_command%s*>") or not header then
        tree:add_proto_expert_info(experts.malformed, "The payload is no message with a header")
        return "Payload that is no message"
    end
    local words = add_message(header, range, pinfo, tree)
    xml_dissector:call(range:tvb(), pinfo, tree)
    return words
end

-- Adds one complete frame or device head, and returns it in words.
local function dissect_unit(tvb, pinfo, tree)
    if tvb:len() < FRAME_HEAD_LENGTH or tvb:raw(0, 4) ~= FRAME_MAGIC then
        if is_from_host(pinfo) then
            tree:add_proto_expert_info(experts.malformed, "Hosts send no device heads, so this is no frame")
            return "No frame"
        end
        tree:add(fields.device_head, tvb())
        return "Device head"
    end
    tree:add(fields.magic, tvb(0, 4))
    local length = tvb(4, 4):le_uint()
    local length_item = tree:add_le(fields.length, tvb(4, 4))
    if length == 0 then
        tree:add(fields.heartbeat, tvb(0, FRAME_HEAD_LENGTH), true)
        return "Heartbeat"
    end
    if length > MAX_PAYLOAD then
        length_item:add_proto_expert_info(experts.malformed, "No frame is as long; what follows cannot be told apart")
        return "Frame of impossible length"
    end
    -- A capture may hold only the first bytes of each packet.
    local captured = math.min(length, tvb:len() - FRAME_HEAD_LENGTH)
    if captured == 0 then
        return "Frame whose payload was not captured"
    end
    return dissect_payload(tvb(FRAME_HEAD_LENGTH, captured), pinfo, tree)
end

-- The length of the frame or device head. Anything else takes all that has come, so that nobody waits for more.
local function unit_length(tvb, pinfo, offset)
    local rest = tvb:len() - offset
    if tvb:raw(offset, 4) ~= FRAME_MAGIC then
        return is_from_host(pinfo) and rest or DEVICE_HEAD_LENGTH
    end
    local length = tvb(offset + 4, 4):le_uint()
    return length > MAX_PAYLOAD and rest or FRAME_HEAD_LENGTH + length
end

local function dissect_and_report(tvb, pinfo, tree)
    local item = tree:add(tvwall, tvb())
    local words = dissect_unit(tvb, pinfo, item)
    item:append_text(", " .. words)
    -- The fence protects the words from being overwritten by the next frame of the same packet.
    pinfo.cols.protocol:set("TVWALL")
    pinfo.cols.info:set(words .. ". ")
    pinfo.cols.info:fence()
    return tvb:len()
end

function tvwall.dissector(tvb, pinfo, tree)
    dissect_tcp_pdus(tvb, tree, FRAME_HEAD_LENGTH, unit_length, dissect_and_report)
    return tvb:len()
end

-- A connection is the link once a segment begins with a heartbeat or with a frame whose payload has the usual start.
-- From then on the whole connection is ours, however its segments are cut.
local function recognise(tvb, pinfo, tree)
    if tvb:len() < FRAME_HEAD_LENGTH or tvb:raw(0, 4) ~= FRAME_MAGIC then
        return false
    end
    local length = tvb(4, 4):le_uint()
    local payload = tvb:raw():sub(FRAME_HEAD_LENGTH + 1)
    local is_heartbeat = length == 0 and (payload == "" or payload:sub(1, 4) == FRAME_MAGIC)
    local is_message = length > 0 and length <= MAX_PAYLOAD and payload:find("^%s*<[?t]")
    if not is_heartbeat and not is_message then
        return false
    end
    pinfo.conversation = tvwall
    tvwall.dissector(tvb, pinfo, tree)
    return true
end

tvwall:register_heuristic("tcp", recognise)

local tcp_ports = DissectorTable.get("tcp.port")
tcp_ports:add_for_decode_as(tvwall)
local registered_ports = ""

function tvwall.prefs_changed()
    if registered_ports ~= "" then
        tcp_ports:remove(registered_ports, tvwall)
    end
    registered_ports = tvwall.prefs.ports
    if registered_ports ~= "" then
        tcp_ports:add(registered_ports, tvwall)
    end
end
