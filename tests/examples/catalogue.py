#!/usr/bin/env python3
"""catalogue.py EXPECTED HOW COMMAND...: the front end adds every device of EXPECTED, one after the other, in one process
against one simulated router. Then the device database has for each what `tembra-assoc classify` says.

HOW the front end learns how many to add: ARGUMENT (one more argument), LINES (a line "add" of standard input for each),
DIALOGUE (a terminal of 40 columns at which somebody presses Enter at each question), EACH (not at all: it is started for
each device, and the next one when the device is stored)."""
import contextlib
import fcntl
import json
import os
import pty
import re
import struct
import subprocess
import sys
import tempfile
import termios
import time


@contextlib.contextmanager
def router(labels):
    """The button of the next device is pressed whenever an add begins."""
    with tempfile.NamedTemporaryFile("w", suffix=".json") as scenario:
        json.dump([{"on": "add", "press": label} for label in labels], scenario)
        scenario.flush()
        simulator = subprocess.Popen(["tembra-sim", "run", "--speed", "50", "--scenario", scenario.name])
        try:
            while subprocess.run(["tembra-sim", "status"], capture_output=True).returncode != 0:
                assert simulator.poll() is None
                time.sleep(0.02)
            yield
            subprocess.run(["tembra-sim", "stop"], check=True)
            assert simulator.wait() == 0, "the simulated router found something wrong"
        finally:
            simulator.kill()


def run(command, text=""):
    ended = subprocess.run(command, input=text, text=True, stdout=subprocess.PIPE)
    assert ended.returncode == 0, f"status {ended.returncode}:\n{ended.stdout}"
    assert not re.search(" $", ended.stdout, re.MULTILINE), f"a blank at the end of a line:\n{ended.stdout}"


def talk(command, devices):
    """Enter at every question; after the last device the user quits."""
    ours, theirs = pty.openpty()
    fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 40, 0, 0))
    program = subprocess.Popen(command, stdin=theirs, stdout=theirs)
    os.close(theirs)
    said, answered = "", 0
    with contextlib.suppress(OSError):  # the terminal's end, when the program is gone
        while chunk := os.read(ours, 4096):
            said += chunk.decode()
            if said.endswith("> ") and len(said) > answered:
                os.write(ours, b"q\n" if said.count("Added ") == devices else b"\n")
                answered = len(said)
    assert program.wait() == 0, said
    longest = max(re.split(r"\r\x1b\[K|\r?\n", said), key=len)
    assert len(longest) <= 40, f"longer than the terminal: {longest!r}"


def stored_devices():
    lines = subprocess.run(["tembra-assoc", "--json", "devices"], stdout=subprocess.PIPE, text=True, check=True).stdout
    answers = map(json.loads, lines.splitlines())
    return {answer["id"]: answer for answer in answers if "id" in answer}  # the last one is the exit status


def run_for_each(command, devices):
    for number in range(1, devices + 1):
        run(command)
        deadline = time.monotonic() + 10
        while number not in stored_devices():
            assert time.monotonic() < deadline, f"device {number} was not stored"
            time.sleep(0.01)


def check(expected):
    stored = stored_devices()
    wrong = 0
    for number, (label, (kind, name)) in enumerate(expected.items(), 1):
        device = stored.get(number)
        found = [device["type"]["name"], device["name"]] if device else None
        if found != [kind, f"{name} #{number}"]:
            print(f"{label}: {found}, and classify says {kind}, {name}")
            wrong += 1
    assert wrong == 0 and len(stored) == len(expected), f"{wrong} wrong, {len(stored)} stored"
    print(f"{len(stored)} devices")


def main(expected_file, how, *command):
    with open(expected_file) as file:
        expected = json.load(file)
    with router(expected):
        if how == "DIALOGUE":
            talk(command, len(expected))
        elif how == "LINES":
            run(command, "add\n" * len(expected))
        elif how == "EACH":
            run_for_each(command, len(expected))
        else:
            run([*command, str(len(expected))])
        check(expected)


main(*sys.argv[1:])
