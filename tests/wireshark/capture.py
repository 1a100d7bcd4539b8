"""Recordings of datagrams for tshark, and what tshark reads in them."""
import socket
import struct
import subprocess

LIBRARY = ("127.255.255.4", 8888)
ZWAVE, ZIGBEE = ("127.255.255.254", 8888), ("127.255.255.253", 8888)
HUE, NEST, HA = ("127.255.255.252", 8888), ("127.255.255.251", 8888), ("127.255.255.1", 9999)
IPV4, DEVICE_RECORDS, INDEX_RECORDS = 228, 161, 162  # link types; the last two are for users


def udp(sender, receiver, payload):
    """An IPv4 packet."""
    header = struct.pack("!HHHH", sender[1], receiver[1], 8 + len(payload), 0)
    return struct.pack("!BBHHHBBH4s4s", 0x45, 0, 28 + len(payload), 0, 0, 64, 17, 0, socket.inet_aton(sender[0]),
                       socket.inet_aton(receiver[0])) + header + payload


def write(path, packets, link_type=IPV4):
    """One packet each tenth of a second."""
    with open(path, "wb") as file:
        file.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 262144, link_type))
        for number, packet in enumerate(packets):
            file.write(struct.pack("<IIII", number // 10, number % 10 * 100000, len(packet), len(packet)) + packet)


def tshark(dissector, path, *options):
    """What tshark prints. A fault of the dissector is an error."""
    ended = subprocess.run(["tshark", "-n", "-X", f"lua_script:{dissector}", "-r", str(path), *options],
                           capture_output=True, text=True, errors="replace")
    told = [line for line in ended.stderr.splitlines() if "Running as user" not in line]
    assert ended.returncode == 0 and not told, "\n".join(told)
    faulty = [line for line in ended.stdout.splitlines() if "Lua Error" in line]
    assert not faulty, f"{len(faulty)} lines, such as {faulty[:5]}"
    return ended.stdout


def values(dissector, path, *fields):
    """A row of the fields' values for each packet; several values of a field are one text."""
    wanted = [option for field in fields for option in ("-e", field)]
    lines = tshark(dissector, path, "-T", "fields", *wanted).splitlines()
    return [line.split("\t") for line in lines]
