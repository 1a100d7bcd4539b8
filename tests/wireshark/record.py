#!/usr/bin/env python3
"""record.py DISSECTOR: what `tembra-assoc record` writes beside a simulated router that records the same."""
import json
import os
import pathlib
import signal
import socket
import subprocess
import sys
import time

import capture

FOLDER = pathlib.Path("/tmp")
SIMULATED, RECORDED, LINES = FOLDER / "sim.pcapng", FOLDER / "rec.pcapng", FOLDER / "rec.jsonl"


def control(*words):
    return subprocess.run(["tembra-sim", *words], capture_output=True).returncode == 0


class Record:
    """A recording under way, until it is left."""

    def __init__(self, *options):
        self.program = subprocess.Popen(["tembra-assoc", "--json", "record", *map(str, options)],
                                        stdout=subprocess.PIPE, text=True)
        assert json.loads(self.program.stdout.readline())["event"] == "recording"

    def end(self):
        self.program.send_signal(signal.SIGINT)
        told = [json.loads(line) for line in self.program.communicate(timeout=20)[0].splitlines()]
        assert self.program.returncode == 0 and told[-1] == {"schema": 1, "event": "exit", "status": 0}, told
        assert told[0]["event"] == "recorded" and told[0]["lost"] == 0, told
        return told[0]


def front_end(*words):
    """A command whose button is pressed. Returns the kit's events."""
    program = subprocess.Popen(["tembra-assoc", "--json", "--yes", *words], stdout=subprocess.PIPE, text=True)
    lines = []
    for line in program.stdout:
        lines.append(line.rstrip())
        if '"event":"waiting"' in line and words[0] == "add":
            control("press", words[1]) if len(words) > 1 else control("press", "siren")
    program.wait(20)
    time.sleep(0.1)  # the next one is another process, whose connection is another one
    return [line for line in lines if '"number":' in line]


def flows(dissector, recording):
    """The datagrams of each pair of ends, in their order."""
    lists = {}
    for *ends, payload in capture.values(dissector, recording, "ip.src", "udp.srcport", "ip.dst", "udp.dstport",
                                         "udp.payload"):
        lists.setdefault(tuple(ends), []).append(payload)
    return lists


def check_same_run(dissector):
    router = subprocess.Popen(["tembra-sim", "run", "--speed", "20", "--record", SIMULATED], stdout=subprocess.DEVNULL)
    while not control("status"):
        time.sleep(0.01)
    RECORDED.touch(0o644)  # an old file, which others may read
    datagrams, lines = Record(RECORDED), Record("--events", LINES)
    events = front_end("add") + front_end("hue", "discover") + front_end("hue", "remove", "02:a1:b2:0c:00:0f")
    told, told_of_lines = datagrams.end(), lines.end()
    assert control("stop") and router.wait(20) == 0

    simulated, recorded = flows(dissector, SIMULATED), flows(dissector, RECORDED)
    assert simulated == recorded, "\n".join(f"{ends}: {len(simulated.get(ends, []))} simulated, "
                                            f"{len(recorded.get(ends, []))} recorded"
                                            for ends in {**simulated, **recorded})
    assert told["datagrams"] == sum(map(len, recorded.values())) >= 10, told
    assert any('"outcome":"done"' in event for event in events)
    assert any('"outcome":"failed"' in event for event in events)
    text = RECORDED.read_text(errors="replace")
    for event in events:
        assert event in text, f"{event} is no comment"
        assert event in LINES.read_text(), f"{event} is no line"
    assert "log, progress: libTembraAssoc:" in text
    comments = " ".join(row[0] for row in capture.values(dissector, RECORDED, "frame.comment"))
    for event in events[:5]:
        assert event in comments, f"{event} is no comment of a datagram"
    entries = [json.loads(line) for line in LINES.read_text().splitlines()]
    assert told_of_lines["lines"] == len(entries)
    times = [entry["wall_us"] for entry in entries if "entry" in entry]
    assert times == sorted(times)
    for file in (RECORDED, LINES):
        assert file.stat().st_mode & 0o777 == 0o600


def check_ring(dissector):
    record = Record("--ring", "1", RECORDED)
    sender = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    sent = [bytes([number]) * 60000 for number in range(40)]
    for payload in sent:
        sender.sendto(payload, capture.ZWAVE)
        time.sleep(0.002)
    time.sleep(0.5)
    assert record.end()["datagrams"] == len(sent)
    older = RECORDED.with_name(RECORDED.name + ".1")
    kept = [payload for file in (older, RECORDED) for [payload] in capture.values(dissector, file, "udp.payload")]
    assert 9 <= len(kept) < 20 and kept == [payload.hex() for payload in sent[-len(kept):]], len(kept)
    assert older.stat().st_size + RECORDED.stat().st_size < 1.2e6


def check_clock_that_is_set():
    """Entries of a front end whose clock is an hour behind and an hour ahead are recorded, and at once."""
    hour, ahead, behind = 3_600_000_000, "seen an hour ahead", "seen an hour behind"
    server = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
    server.bind(os.environ["TEMBRA_WATCH_PATH"])
    server.listen()
    record = Record("--events", LINES)
    watcher, _ = server.accept()
    told = [{"schema": 1, "holder": {"role": 2, "program": "kiosk", "pid": os.getpid(), "since": 1790000000},
             "state": {"schema": 1, "operation": None, "last_event": 0}}, {"schema": 1, "history": 0}]
    for entry, (text, away) in enumerate(((ahead, hour), (behind, -hour)), 1):
        told.append({"schema": 1, "entry": entry, "monotonic_us": time.monotonic_ns() // 1000,
                     "wall_us": time.time_ns() // 1000 + away, "log": {"level": "progress", "text": text}})
    watcher.sendall("".join(json.dumps(line) + "\n" for line in told).encode())
    until = time.monotonic() + 10
    while not all(text in LINES.read_text() for text in (ahead, behind)):
        assert time.monotonic() < until, LINES.read_text()
        time.sleep(0.05)
    record.end()
    server.close()
    os.unlink(os.environ["TEMBRA_WATCH_PATH"])


def check_refusals():
    plain = ["tembra-assoc", "record", str(FOLDER / "none.pcapng")]
    refused = subprocess.run(["setpriv", "--bounding-set=-all", *plain], capture_output=True, text=True)
    assert refused.returncode == 1, refused
    assert refused.stderr.startswith("tembra-assoc: the loopback interface cannot be recorded. Root may record."), refused
    assert refused.stderr.endswith(" --events records events and log lines alone.\n"), refused
    library = pathlib.Path("/usr/lib/x86_64-linux-gnu/libpcap.so.0.8")
    if library.exists() and subprocess.run(["mount", "--bind", "/dev/null", library]).returncode == 0:
        refused = subprocess.run(plain, capture_output=True, text=True)
        assert refused.stderr == ("tembra-assoc: libpcap, which records datagrams, is not installed. --events records "
                                  "events and log lines alone.\n"), refused
        subprocess.run(["umount", library], check=True)
    missing = "/tmp/no-folder/recording"
    for words, why in (([missing], "No such file or directory"), (["--events", missing], "No such file or directory"),
                       (["/dev/full"], "No space left on device")):
        refused = subprocess.run(["tembra-assoc", "record", *words], capture_output=True, text=True)
        assert refused.stderr == f"tembra-assoc: cannot write the recording {words[-1]} ({why}).\n", refused
        assert refused.returncode == 1, refused
    assert not (FOLDER / "none.pcapng").exists()
    LINES.write_text("an older recording")
    os.chmod("/tmp/front-ends", 0)
    refused = subprocess.run(["setpriv", "--bounding-set=-all", "tembra-assoc", "record", "--events", LINES],
                             capture_output=True, text=True, timeout=20)
    assert refused.returncode == 1 and "cannot be watched: Permission denied" in refused.stderr, refused
    assert LINES.read_text() == "an older recording"


def check_full_disk():
    """The sentence says why the recording ended, and what the file has."""
    disk = FOLDER / "disk"
    disk.mkdir()
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "none", disk], check=True)
    recording = disk / "recording.pcapng"
    record = Record(recording)
    headers, packet = 48, 60 + 5000
    sender = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    while record.program.poll() is None:
        sender.sendto(bytes(5000), capture.ZWAVE)
        time.sleep(0.02)
    told = json.loads(record.program.stdout.readline())
    whole = (recording.stat().st_size - headers) // packet
    assert record.program.returncode == 1 and whole > 5, told
    assert told["text"] == (f"cannot write the recording {recording} (No space left on device). "
                            f"Recorded before: {whole} datagrams and 0 lines of front ends."), told
    subprocess.run(["umount", disk], check=True)


os.environ["TEMBRA_WATCH_PATH"] = "/tmp/front-ends/socket"
os.environ["TEMBRA_LOG"] = "off"
check_same_run(sys.argv[1])
check_ring(sys.argv[1])
check_clock_that_is_set()
check_refusals()
check_full_disk()
