#!/usr/bin/env python3
"""recordings.py DISSECTOR PROJECT: tshark reads recordings of the demonstration, of the shipped scenarios and of what they
leave out, and the same recordings out of reports. It finds every field of every datagram, and nothing wrong in what the
programs say."""
import os
import pathlib
import re
import shutil
import stat
import subprocess
import sys
import tarfile
import tempfile
import time

import capture

# In place of the demonstration's `sleep 1.5`, after which a button is pressed: until a server listens for one.
SLEEP = """#!/bin/sh
test "$1" = 1.5 || exec /bin/sleep "$@"
while status=$(tembra-sim status --control "$PWD/sim.sock"); do
  case $status in *adding*|*removing*|*"waiting for the link"*) exit 0 ;; esac
  /bin/sleep 0.01
done
"""
SIMULATOR = """#!/bin/sh
real={real}
test "$1" = run || exec "$real" "$@"
exec "$real" "$@" --speed 20 --record {recording}
"""


def write_program(path, text):
    path.write_text(text)
    path.chmod(path.stat().st_mode | stat.S_IXUSR)


def record_demo(project, folder, recording):
    programs = folder / "programs"
    programs.mkdir()
    write_program(programs / "sleep", SLEEP)
    write_program(programs / "tembra-sim", SIMULATOR.format(real=shutil.which("tembra-sim"), recording=recording))
    subprocess.run(["bash", project / "scripts/demo.sh", programs], check=True, stdout=subprocess.DEVNULL)


def record(recording, commands, *options, is_symptom=False):
    """The simulated router, and commands of tembra-assoc one after the other. Symptoms are time-outs and refusals."""
    settings = dict(os.environ, **({"TEMBRA_SPEED": "300"} if is_symptom else {}))
    router = subprocess.Popen(["tembra-sim", "run", "--speed", "20", "--record", recording, *options],
                              stdout=subprocess.DEVNULL)
    try:
        while subprocess.run(["tembra-sim", "status"], capture_output=True).returncode != 0:
            assert router.poll() is None
            time.sleep(0.01)
        for command in commands:
            subprocess.run(["tembra-assoc", "--yes", *command.split()], check=not is_symptom, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL if is_symptom else None, input="code\n", text=True, env=settings)
        subprocess.run(["tembra-sim", "stop"], stdout=subprocess.DEVNULL)  # where the scenario has not
        assert router.wait(20) == 0
    finally:
        router.kill()


NOTES = ["length", "sender", "port", "imposter", "meaning", "command", "endless", "unterminated", "zeros", "count"]
COLUMNS = ["tembra.operation", "tembra.request", "tembra.command", "tembra.server",
           *(f"tembra.expert.{note}" for note in NOTES), "_ws.expert.severity"]
COMMENT = str(0x100000)  # the severity of a comment of the recording, which is no fault
BRIDGE = "02:a1:b2:0c:00:01"
STORIES = {"plug-and-contact": ["add", "add", "devices", "remove"], "falls-silent": ["add", "remove"],
           "hue-silent": [f"hue add {BRIDGE}"], "known": ["add", "add"], "nest-refuses": ["nest link -"],
           "no-bridge": ["hue discover", f"hue add {BRIDGE}"], "no-radio": ["add"], "no-zwave": ["add"],
           "plug": ["add", "remove", "add"], "quiet": ["add"], "radio-fails": ["add"], "slow-info": ["add", "remove"],
           "unheard": ["add"], "unknown-kind": ["add"]}
REST = [f"hue add {BRIDGE}", f"hue add-bulb {BRIDGE} Lamp", f"hue refresh {BRIDGE} user",
        f"hue remove {BRIDGE}", "nest link -", "nest unlink", "cancel", "reset all"]


def fields_of_page(project):
    """(record, offset, size, field, type) of docs/wire-formats.md, up to the records of events."""
    page = (project / "docs/wire-formats.md").read_text().split("## AssocEvent")[0]
    record = None
    for line in page.splitlines():
        if found := re.match(r"## (\w+), \d+ bytes", line):
            record = found[1]
        elif record and (found := re.match(r"\| (\d+) \| (\d+) \| `([^`]+)` \| `(\w+)` \|", line)):
            yield record, int(found[1]), int(found[2]), found[4], found[3]


def filter_name(name):
    return re.sub(r"([a-z0-9])([A-Z])", r"\1_\2", name).lower()


def filters_of_page(project):
    return {f"tembra.{filter_name(record)}.{filter_name(field)}"
            for record, _, _, field, _ in fields_of_page(project) if field != "record"}


def write_database_records(folder):
    """They travel in no datagram."""
    files = folder / "devices.pcap", folder / "indexes.pcap"
    capture.write(files[0], [bytes([7]).ljust(512, b"\1")], capture.DEVICE_RECORDS)
    capture.write(files[1], [b"\2" * 92], capture.INDEX_RECORDS)
    return files


def main(dissector, project):
    project = pathlib.Path(project)
    scenarios = sorted((project / "sim/examples").rglob("*.json"))
    assert {scenario.stem for scenario in scenarios} == STORIES.keys(), "a scenario without its commands"
    symptoms = {scenario.stem for scenario in scenarios if scenario.parent.name == "field"}
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        demo, rest = folder / "demo.pcapng", folder / "rest.pcapng"
        record_demo(project, folder, demo)
        recordings = [demo, rest]
        for scenario in scenarios:
            recordings.append(folder / f"{scenario.stem}.pcapng")
            record(recordings[-1], STORIES[scenario.stem], "--latency", "5", "--scenario", scenario,
                   is_symptom=scenario.stem in symptoms)
        record(rest, REST, "--scenario", write_scenario(folder))

        recordings += [reported(dissector, path, folder) for path in recordings if path.stem not in symptoms]
        found = set()
        for path in (*recordings, *write_database_records(folder)):
            found.update(re.findall(r'<field name="(tembra\.[\w.]+)"', capture.tshark(dissector, path, "-T", "pdml")))
        missing = filters_of_page(project) - found
        assert not missing, f"never seen: {sorted(missing)}"
        for path in recordings:
            rows = capture.values(dissector, path, *COLUMNS)
            wrong = [(number, row) for number, row in enumerate(rows, 1) if not row[3] or any(row[4:-1]) or row[-1] not in ("", COMMENT)]
            assert not wrong, f"{path.name}: {wrong}"
            check_operations(path, rows)
        print(f"{len(filters_of_page(project))} fields found")


def reported(dissector, recording, folder):
    """The same recording with stand-ins for names, as a report has it."""
    report = folder / f"{recording.stem}.tar"
    subprocess.run(["tembra-assoc", "report", report, "--recording", recording], check=True, stdout=subprocess.DEVNULL)
    with tarfile.open(report) as parts:
        path = folder / f"{recording.stem}-reported.pcapng"
        path.write_bytes(parts.extractfile("recording.pcapng").read())
    was, is_now = (capture.values(dissector, file, "frame.time_epoch", "frame.len") for file in (recording, path))
    assert was == is_now, path
    return path


def write_scenario(folder):
    path = folder / "rest.json"
    path.write_text('[{"on": "hue-add", "press": "hue-button"}]')
    return path


def check_operations(path, rows):
    """Each command but a cancel begins an operation or goes to the second radio; what answers is linked to it."""
    commands = [row[2] for row in rows if row[2] and row[2] != "cancel"]
    numbers = [int(row[0]) for row in rows if row[0]]
    assert numbers == sorted(numbers), f"{path.name}: {numbers}"
    radio = {"add", "remove", "reset"}
    expected = sum(command not in radio | {"reset, second half"} for command in commands)
    expected += (sum(command in radio for command in commands) + 1) // 2  # where one radio is left out
    assert max(numbers, default=0) == expected, f"{path.name}: {numbers} are not {expected} operations"
    answers = [row for row in rows if not row[2] and row[3] != "HA server"]
    assert all(row[1] for row in answers), f"{path.name}: {answers}"


if __name__ == "__main__":
    os.environ["TEMBRA_LOG"] = "off"
    main(*sys.argv[1:])
