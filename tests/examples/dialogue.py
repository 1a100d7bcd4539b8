#!/usr/bin/env python3
"""dialogue.py WIZARD: somebody links a Hue bridge with the wizard, chooses a type, and changes their mind; at a terminal of
40 columns."""
import fcntl
import os
import pty
import re
import signal
import struct
import subprocess
import sys
import termios
import time

CONTROL_C = "\x03"

# What the wizard says (a regular expression, in what it said since the last one), and what somebody does then.
DIALOGUE = [
    (r"q:\s+quit\s+> $", "h\n"),
    (r"1 02:a1:b2:0c:00:01\s+Link which bridge\? Enter: none\s+> $", "1\n"),
    (r"\d\d s  Press the button of the bridge\.", ["tembra-sim", "press", "hue-button"]),
    (r"Done\.\s+.*\s+quit\s+> $", "\n"),
    (r"1\d\d s  Press the button of the device\.", ["tembra-sim", "press", "plain-plug"]),
    (r"1 BinarySwitch\s+2 Siren\s+3 MultiSwitch\s+What is it\? .*\s+> $", "9\n"),
    (r"What is it\? Enter: BinarySwitch\s+> $", "2\n"),
    (r"Name\? .*\s+> $", "Alarm\n"),
    (r"Place\? .*\s+> $", "\x01\n"),
    (r"not\s+allowed\.\s[^>]*What is it\? .*\s+> $", "2\n"),
    (r"Name\? .*\s+> $", "Alarm\n"),
    (r"Place\? .*\s+> $", "Hall\n"),
    (r"Added Alarm, id 2\s+Done\.\s+.*\s+quit\s+> $", "\n"),
    (r"1\d\d s  Press the button of the device\.", ["tembra-sim", "press", "plain-plug"]),
    (r"known already as Alarm\s+\(number 2\)\. To add it anew, remove it\s+first\.\s+.*\s+quit\s+> $", "\n"),
    (r"1\d\d s  Press the button of the device\.", CONTROL_C),
    (r"Cancelled\.\s+.*\s+quit\s+> $", "\n"),
    (r"1\d\d s  Press the button of the device\.", "c\n"),
    (r"Cancelled\.\s+.*\s+quit\s+> $", "q\n"),
]


def start(wizard):
    ours, theirs = pty.openpty()
    fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 40, 0, 0))

    def own_terminal():
        os.setsid()
        fcntl.ioctl(theirs, termios.TIOCSCTTY, 0)

    program = subprocess.Popen([wizard], stdin=theirs, stdout=theirs, preexec_fn=own_terminal)
    os.close(theirs)
    return program, ours


def talk(terminal):
    said, everything = "", ""
    for expected, action in DIALOGUE:
        while not re.search(expected, said):
            chunk = os.read(terminal, 4096).decode()
            everything += chunk
            said = (said + chunk).replace("\r\x1b[K", "\n").replace("\r\n", "\n")
        said = ""
        if isinstance(action, str):
            os.write(terminal, action.encode())
        else:
            subprocess.run(action, check=True, stdout=subprocess.DEVNULL)
    longest = max(re.split(r"\r\x1b\[K|\r?\n", everything), key=len)
    assert len(longest) <= 40, f"longer than the terminal: {longest!r}"


def main(wizard):
    signal.alarm(60)
    router = subprocess.Popen(["tembra-sim", "run", "--speed", "20"], stdout=subprocess.DEVNULL)
    try:
        while subprocess.run(["tembra-sim", "status"], capture_output=True).returncode != 0:
            time.sleep(0.02)
        program, terminal = start(wizard)
        talk(terminal)
        assert program.wait() == 0
        subprocess.run(["tembra-sim", "stop"], check=True, stdout=subprocess.DEVNULL)
        assert router.wait() == 0
    finally:
        router.kill()


main(*sys.argv[1:])
