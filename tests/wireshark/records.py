#!/usr/bin/env python3
"""records.py DISSECTOR PROJECT: the dissector reads each field where docs/wire-formats.md has it; it says what the contract
forbids; and it knows the database's records."""
import pathlib
import random
import struct
import sys
import tempfile

import capture
from recordings import NOTES, fields_of_page, filter_name

SIZES = {"ZwNodeInfo": 1036, "ZbDeviceInfo": 444, "DeviceRecord": 512, "IndexRecord": 92, "ZigbeeCommand": 320,
         "ZwaveCommand": 236, "HueCommand": 304, "HueAnswer": 3260, "NestCommand": 256, "NestAnswer": 12}
WAYS = {"ZwNodeInfo": (capture.ZWAVE, capture.LIBRARY), "ZbDeviceInfo": (capture.ZIGBEE, capture.LIBRARY),
        "HueAnswer": (capture.HUE, capture.LIBRARY), "NestAnswer": (capture.NEST, capture.LIBRARY),
        "ZwaveCommand": (capture.LIBRARY, capture.ZWAVE), "ZigbeeCommand": (capture.LIBRARY, capture.ZIGBEE),
        "HueCommand": (capture.LIBRARY, capture.HUE), "NestCommand": (capture.LIBRARY, capture.NEST)}
LINKS = {"DeviceRecord": capture.DEVICE_RECORDS, "IndexRecord": capture.INDEX_RECORDS}
NUMBERS = {"unsigned char": "<B", "unsigned short": "<H", "int": "<i", "unsigned int": "<I"}


def fill(record, fields, chance):
    """A record with a number or a text in each field, and what tshark has to say of them."""
    data, expected = bytearray(SIZES[record]), {}
    for name, offset, size, kind in fields:
        if kind in NUMBERS:
            value = chance.getrandbits(8 * size - 1)
            struct.pack_into(NUMBERS[kind], data, offset, value)
            expected[name] = str(value)
        elif kind.startswith("char["):
            text = "".join(chance.choice("abcdefgh") for _ in range(chance.randrange(1, size)))
            data[offset:offset + len(text)] = text.encode()
            expected[name] = text
    return bytes(data), expected


def check_fields(dissector, project, path):
    chance = random.Random(16)
    page = [row for row in fields_of_page(project) if row[0] != "HaNotice"]
    filled = {}
    for record in SIZES:
        fields = [(name, offset, size, kind) for of, offset, size, name, kind in page if of == record]
        assert fields, record
        filled[record] = fill(record, fields, chance)
    datagrams = [record for record in SIZES if record not in LINKS]
    capture.write(path, [capture.udp(*WAYS[record], filled[record][0]) for record in datagrams])
    compared = compare(dissector, path, datagrams, filled)
    for record, link in LINKS.items():
        capture.write(path, [filled[record][0]], link)
        compared += compare(dissector, path, [record], filled)
    assert compared > 40, compared
    return compared


def compare(dissector, path, records, filled):
    """The packets of the file, one for each record, have the values that were filled in."""
    names = [(record, name) for record in records for name in filled[record][1]]
    filters = [f"tembra.{filter_name(record)}.{filter_name(name)}" for record, name in names]
    rows = dict(zip(records, capture.values(dissector, path, *filters), strict=True))
    for column, (record, name) in enumerate(names):
        value, expected = rows[record][column], filled[record][1][name]
        told = str(int(value, 0)) if expected.isdigit() else value
        assert told == expected, f"{record}.{name}: {value!r} is not {expected!r}"
    return len(names)


def padded(size, *parts):
    data = bytearray(size)
    for offset, part in parts:
        data[offset:offset + len(part)] = part
    return bytes(data)


def node(*parts):
    good = [(0, b"\2"), (1, b"\x25\xff"), (54, b"\4\x10\1"), (57, b"\x25\0\1")]
    return padded(1036, *good, *parts)


def device(*parts):
    return padded(444, (0, b"\1\x1a"), (10, b"\x0a"), (12, b"\6\0\1\0\xff\xff\0\0"), *parts)


def bridges(*parts):
    return padded(3260, (4, b"\1"), (8, b'{"id":"02a1b2fffe0c0001","internalipaddress":"10.0.0.1"}'), *parts)


def notice(kind, record):
    return padded(4100, (0, bytes([kind])), (4, record))


ADD = padded(236, (192, b"\1"), (212, b"\1"))
ZIGBEE_ADD = padded(320, (0, b"option button1"), (180, b"IAS"))
STRANGER, OTHER_PORT = ("127.0.0.66", 8888), ("127.255.255.254", 40000)
PART, PART_OF_TWO, PART_OF_HUE = ("127.255.255.25", 8888), ("7.255.255.2", 8888), ("27.255.255.252", 8888)
ADDED = node((1, b"\x25\0"), (600, b"\2"), (972, b"\xff"))
EXPERTS = [  # name, from, to, datagram, what the dissector says of it
    ("good add", capture.LIBRARY, capture.ZWAVE, ADD, []),
    ("good ZigBee add", capture.LIBRARY, capture.ZIGBEE, ZIGBEE_ADD, []),
    ("good node", capture.ZWAVE, capture.LIBRARY, node(), []),
    ("bare node", capture.ZWAVE, capture.LIBRARY, padded(1036, (0, b"\2")), []),
    ("good device", capture.ZIGBEE, capture.LIBRARY, device(), []),
    ("good bridges", capture.HUE, capture.LIBRARY, bridges(), []),
    ("good notice", capture.LIBRARY, capture.HA, notice(2, ADDED), []),
    ("good end", capture.LIBRARY, capture.HA, notice(0, b"removeAllDevices"), []),
    ("short answer", capture.ZWAVE, capture.LIBRARY, node()[:600], ["length"]),
    ("long answer", capture.ZWAVE, capture.LIBRARY, node() + b"\0", ["length"]),
    ("short command", capture.LIBRARY, capture.NEST, b"\0", ["length"]),
    ("stranger", STRANGER, capture.LIBRARY, node(), ["sender"]),
    ("HA server", capture.HA, capture.LIBRARY, node(), ["sender"]),
    ("command of a stranger", STRANGER, capture.ZWAVE, ADD, ["sender"]),
    ("command of another port", ("127.255.255.4", 9999), capture.ZWAVE, ADD, ["sender"]),
    ("other port", OTHER_PORT, capture.LIBRARY, node(), ["port"]),
    ("part of an address", PART, capture.LIBRARY, node(), ["imposter"]),
    ("part of two addresses", PART_OF_TWO, capture.LIBRARY, node(), ["imposter"]),
    ("part of the Hue server's address", PART_OF_HUE, capture.LIBRARY, bridges(), ["imposter"]),
    ("part of the HA server's address", ("27.255.255.1", 8888), capture.LIBRARY, node(), ["sender"]),
    ("status 5", capture.ZIGBEE, capture.LIBRARY, device((10, b"\5")), ["meaning"]),
    ("result 7", capture.HUE, capture.LIBRARY, padded(3260, (0, b"\7")), ["meaning"]),
    ("answer 101", capture.NEST, capture.LIBRARY, padded(12, (0, b"\x65")), ["meaning"]),
    ("answer 124 of status 5", capture.NEST, capture.LIBRARY, padded(12, (0, b"\x7c"), (4, b"\5")), ["meaning"]),
    ("answer 124 of a failure", capture.NEST, capture.LIBRARY, padded(12, (0, b"\x7c"), (4, b"\xff" * 4)), []),
    ("unmarked notice", capture.LIBRARY, capture.HA, notice(2, node((1, b"\x25\0"), (600, b"\2"))), ["meaning"]),
    ("unknown command", capture.LIBRARY, capture.ZWAVE, padded(236, (192, b"\1"), (212, b"\2")), ["command"]),
    ("unknown text", capture.LIBRARY, capture.ZIGBEE, padded(320, (0, b"option")), ["command"]),
    ("unknown number", capture.LIBRARY, capture.HUE, padded(304, (220, b"\x65")), ["command", "meaning"]),
    ("classes without an end", capture.ZWAVE, capture.LIBRARY, node((1, b"\1" * 53)), ["endless"]),
    ("triples without an end", capture.ZWAVE, capture.LIBRARY, node((57, b"\1" * 543)), ["endless"]),
    ("clusters without an end", capture.ZIGBEE, capture.LIBRARY, device((12, b"\1" * 120)), ["endless"]),
    ("endless text", capture.LIBRARY, capture.NEST, padded(256, (4, b"\x64"), (8, b"x" * 248)), ["unterminated"]),
    ("stray byte", capture.LIBRARY, capture.ZWAVE, padded(236, (0, b"\1"), (192, b"\1"), (212, b"\1")), ["zeros"]),
    ("byte behind a text", capture.LIBRARY, capture.ZIGBEE, padded(320, (0, ZIGBEE_ADD), (319, b"\1")), ["zeros"]),
    ("bytes behind a name", capture.LIBRARY, capture.HA,
     notice(2, padded(1036, (0, ADDED), (612, b"Boiler\0er"), (792, b"Default\0 hall"))), []),
    ("byte behind a record", capture.LIBRARY, capture.HA, notice(2, ADDED + b"\0\1"), []),
    ("uncleared discovery", capture.LIBRARY, capture.HUE, padded(304, (0, b"\1" * 304), (220, b"\x72\0\0\0")),
     []),
    ("uncleared bulb", capture.LIBRARY, capture.HUE, padded(304, (0, b"\1" * 304), (220, b"\x69\0\0\0")), ["unterminated"]),
    ("51 bridges", capture.HUE, capture.LIBRARY, bridges((4, b"\x33")), ["count"]),
]


def check_experts(dissector, path):
    capture.write(path, [capture.udp(sender, receiver, data) for _, sender, receiver, data, _ in EXPERTS])
    rows = capture.values(dissector, path, "frame.number", "_ws.expert.message",
                          *(f"tembra.expert.{name}" for name in NOTES))
    assert len(rows) == len(EXPERTS)
    for (case, *_, expected), (_, told, *row) in zip(EXPERTS, rows):
        said = [name for name, value in zip(NOTES, row) if value]
        assert sorted(said) == sorted(expected), f"{case}: {said}, not {expected}"
        assert bool(told) == bool(expected), f"{case}: {told}"
    assert set(NOTES) == {name for *_, expected in EXPERTS for name in expected}, "an expert note without a case"


def check_words(dissector, path):
    """Numbers have names, and JSON texts are taken apart."""
    capture.write(path, [capture.udp(capture.ZWAVE, capture.LIBRARY, node()),
                         capture.udp(capture.ZIGBEE, capture.LIBRARY, device()),
                         capture.udp(capture.HUE, capture.LIBRARY, bridges()),
                         capture.udp(capture.LIBRARY, capture.HA, notice(2, node((604, b"\x2d"), (612, b"Washer"), (972, b"\xff"))))])
    titles = [row[0] for row in capture.values(dissector, path, "_ws.col.Info")]
    assert titles == ["Z-Wave server answers: nodeId 2",
                      "ZigBee server answers: msgCode 10, info complete (adding: the description is complete)",
                      "Hue server answers: type 0, bridges found", "to the HA server: added: Washer"], titles
    text = capture.tshark(dissector, path, "-V", "-O", "tembra,json")
    for words in ["entry: SWITCH BINARY (0x25)", "commandClass: SWITCH BINARY (0x25)", "info complete (adding: ",
                  "cluster: on/off (0x0006)", "type: bridges found (0)", "String value: 02a1b2fffe0c0001",
                  "finalType: MeterSwitch (45)", "requestMark: added (255)", "recordKind: zwave (2)"]:
        assert words in text, f"{words!r} is not in:\n{text}"


def check_operations(dissector, path):
    """Answers and commands are linked to each other. One command to both radios is one operation; a cancel is of it."""
    remove, cancel = padded(236, (192, b"\1"), (212, b"\4")), padded(236, (192, b"\4"))
    talk = [  # from, to, datagram, operation, request, answer
        (capture.ZWAVE, capture.LIBRARY, node(), "", "", ""),  # before any command
        (capture.LIBRARY, capture.ZIGBEE, ZIGBEE_ADD, "1", "", "5"),
        (capture.LIBRARY, capture.ZWAVE, ADD, "1", "", "6"),
        (capture.LIBRARY, capture.ZWAVE, cancel, "1", "", ""),
        (capture.ZIGBEE, capture.LIBRARY, device(), "1", "2", ""),
        (capture.ZWAVE, capture.LIBRARY, node(), "1", "3", ""),  # too late, of the add all the same
        (capture.LIBRARY, capture.HA, notice(2, ADDED), "1", "", ""),
        (capture.LIBRARY, capture.ZWAVE, ADD, "2", "", ""),
        (capture.LIBRARY, capture.ZWAVE, ADD, "3", "", ""),
        (capture.LIBRARY, capture.ZWAVE, remove, "4", "", "11"),
        (capture.ZWAVE, capture.LIBRARY, node(), "4", "10", ""),
        (capture.ZWAVE, capture.LIBRARY, node(), "4", "10", ""),
    ]
    capture.write(path, [capture.udp(*row[:3]) for row in talk])
    fields = [option for name in ("operation", "request", "answer") for option in ("-e", f"tembra.{name}")]
    said = capture.tshark(dissector, path, "-2", "-T", "fields", *fields).splitlines()
    for number, (line, row) in enumerate(zip(said, talk, strict=True), 1):
        assert line.split("\t") == list(row[3:]), f"frame {number}: {line!r}"
    found = capture.tshark(dissector, path, "-Y", "tembra.operation == 3 && tembra.command == \"add\"")
    assert len(found.splitlines()) == 1, found
    assert capture.values(dissector, path, "tembra.time")[11][0].startswith("0.2"), "the time since the removal"


def main(dissector, project):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder, "records.pcap")
        compared = check_fields(dissector, pathlib.Path(project), path)
        check_experts(dissector, path)
        check_words(dissector, path)
        check_operations(dissector, path)
    print(f"{compared} fields compared with the page, {len(EXPERTS)} datagrams judged")


main(*sys.argv[1:])
