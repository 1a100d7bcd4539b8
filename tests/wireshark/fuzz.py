#!/usr/bin/env python3
"""fuzz.py DISSECTOR COUNT [SEED]: random and altered datagrams between all addresses raise no error of the dissector, and
each of them is dissected."""
import pathlib
import random
import sys
import tempfile

import capture

SERVERS = [capture.ZWAVE, capture.ZIGBEE, capture.HUE, capture.NEST, capture.HA]
STRANGER, OTHER_PORT = ("127.0.0.66", 8888), ("127.255.255.254", 40000)
LENGTHS = {capture.ZWAVE: (236, 1036), capture.ZIGBEE: (320, 444), capture.HUE: (304, 3260), capture.NEST: (256, 12),
           capture.HA: (4100, 4100)}
TEXTS = [b"option button1", b"network pjoin 0", b"removeAllDevices", b'{"id":"02a1b2fffe0c0001"', b"{", b"\xff\xfe\xc3",
         b"\0", b'{"id":"1","internalipaddress":"1.1.1.1"}']


def payload(chance, length):
    """Bytes at random, few or many of them zero, with texts in it that mean something."""
    share = chance.choice([0, 0.02, 0.5, 1])
    data = bytearray(chance.getrandbits(8) if chance.random() < share else 0 for _ in range(length))
    for _ in range(chance.randrange(4)):
        text = chance.choice(TEXTS)
        at = chance.choice([0, 4, 8, 120, 180, chance.randrange(max(length, 1))])
        data[at:at + len(text)] = text
    for at in (0, 4, 10, 192, 212, 220):  # numbers that decide
        if chance.random() < 0.3 and at < len(data):
            data[at] = chance.choice([0, 1, 2, 4, 5, 6, 10, 100, 105, 114, 254, 255])
    return bytes(data[:length])


def datagram(chance):
    server = chance.choice(SERVERS)
    asked, answered = LENGTHS[server]
    sender, receiver, length = chance.choice([(capture.LIBRARY, server, asked), (server, capture.LIBRARY, answered)])
    if chance.random() < 0.3:
        length = chance.choice([1, 2, 3, 4, 7, 8, 11, length - 1, length + 1, chance.randrange(1, 5000)])
    if chance.random() < 0.1:
        sender = chance.choice([STRANGER, OTHER_PORT, capture.HA])
    return capture.udp(sender, receiver, payload(chance, length))


def main(dissector, count, seed="1"):
    chance = random.Random(int(seed))
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder, "fuzz.pcap")
        capture.write(path, [datagram(chance) for _ in range(int(count))])
        rows = capture.values(dissector, path, "frame.number", "frame.protocols", "_ws.expert.message")
    faulty = [row for row in rows if "Malformed" in row[2]]
    assert not faulty, f"{len(faulty)} datagrams, such as {faulty[:5]}"
    dissected = [row for row in rows if "tembra" in row[1]]
    assert len(dissected) == int(count), f"only {len(dissected)} of {len(rows)} were dissected"
    print(f"{len(dissected)} datagrams dissected")


main(*sys.argv[1:])
