#!/usr/bin/env python3
"""radio_daemon_test.py DAEMON PLAIN: the library, the command line and PLAIN, a front end on the plain contract, add
and remove the devices of the daemon, which has the Z-Wave server's place at the simulated router."""
import json
import signal
import socket
import struct
import subprocess
import sys
import time

started = []


def start(command, **how):
    started.append(subprocess.Popen(command, **how))
    return started[-1]


def await_line(program, text):
    for line in program.stdout:
        if text in line:
            return
    raise AssertionError(f"the program never said {text!r}")


class Daemon:
    """The daemon, ready for commands."""

    def __init__(self, daemon, *limits):
        self.program = start([sys.executable, "-B", daemon, *limits], stdin=subprocess.PIPE)
        while not self.listens():
            self.assert_it_runs()
            time.sleep(0.01)

    @staticmethod
    def listens():
        with open("/proc/net/udp") as table:
            return "FEFFFF7F:22B8" in table.read()  # 127.255.255.254:8888

    def assert_it_runs(self):
        assert self.program.poll() is None, "the daemon has ended"

    def press(self, label):
        self.program.stdin.write(label.encode() + b"\n")
        self.program.stdin.flush()

    def stop(self):
        self.assert_it_runs()
        self.program.kill()
        self.program.wait()


def operate(command, then):
    """Runs a command of tembra-assoc, does something when it waits for a button, and returns its last events."""
    program = start(["tembra-assoc", "--json", "--yes", command], stdout=subprocess.PIPE, text=True)
    events = []
    for line in program.stdout:
        events.append(json.loads(line))
        if events[-1].get("event") == "waiting" and then:
            then(program)
            then = None
    assert not then, f"nobody waited for a button: {events}"
    return [event for event in events if event["event"] != "exit"][-1], program.wait()


def stored():
    lines = subprocess.run(["tembra-assoc", "--json", "devices"], stdout=subprocess.PIPE, text=True, check=True).stdout
    devices = [json.loads(line) for line in lines.splitlines()]
    return {device["name"]: device["type"]["name"] for device in devices if "id" in device}


def serve_front_ends(daemon, plain):

    def press(label):
        return lambda _: daemon.press(label)

    def interrupt(program):
        program.send_signal(signal.SIGINT)

    plug, strip, sleeper = ({"MeterSwitch #1": "MeterSwitch"}, {"GenericDevice #2": "GenericDevice"},
                            {"NotificationSensor #3": "NotificationSensor"})
    everything = plug | strip | sleeper
    story = [  # command, what somebody does, exit status and reason, what is stored then
        ("add", press("plug"), 0, "none", plug),
        ("add", press("strip"), 0, "none", plug | strip),
        ("add", press("sleeper"), 0, "none", everything),
        ("add", press("plug"), 1, "already-known", everything),
        ("add", press("lock"), 1, "radio-failed", everything),  # it wants a PIN
        ("add", press("fail"), 1, "radio-failed", everything),
        ("add", interrupt, 130, None, everything),
        ("remove", press("plug"), 0, "none", strip | sleeper),
        ("remove", press("lamp"), 1, "not-in-list", strip | sleeper),  # of a foreign network
        ("remove", press("fail"), 1, "radio-failed", strip | sleeper),
    ]
    for command, then, status, reason, devices in story:
        last, ended = operate(command, then)
        assert (ended, last.get("reason")) == (status, reason), f"{command}: {ended}, {last}"
        assert stored() == devices, stored()

    program = start([plain])
    while program.poll() is None:
        daemon.press("plug")  # nobody hears it before the command and after the answer
        time.sleep(0.01)
    assert program.returncode == 0
    while len(stored()) < 3:
        time.sleep(0.01)
    assert stored() == {"MeterSwitch #4": "MeterSwitch"} | strip | sleeper, stored()


def in_place_of_the_simulated_server(path, plain):
    simulator = start(["tembra-sim", "run", "--without", "zwave"], stdout=subprocess.PIPE, text=True)
    await_line(simulator, "ready")
    daemon = Daemon(path, "0.1")
    serve_front_ends(daemon, plain)
    daemon.stop()
    subprocess.run(["tembra-sim", "stop"], check=True, stdout=subprocess.DEVNULL)
    assert simulator.wait() == 0, "the simulated router found something wrong"


def listens_for_a_while(path):
    """Without a cancel the daemon stops listening, here after 0.3 seconds. The next command makes it listen again."""
    daemon = Daemon(path, "0.1", "0.3")
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as library:
        library.bind(("127.255.255.4", 8888))
        library.settimeout(0.2)

        def add():
            library.sendto(struct.pack("<192x i 16x i 20x", 1, 1), ("127.255.255.254", 8888))

        def answered():
            daemon.press("plug")
            try:
                return library.recv(2000)[0] == 2
            except socket.timeout:
                return False

        add()
        time.sleep(1.5)
        assert not answered(), "the daemon listens for too long"
        add()
        while not answered():  # the machine was slow
            add()
    daemon.stop()


def too_late(*_):
    raise AssertionError("the test takes too long")


def main(daemon, plain):
    signal.signal(signal.SIGALRM, too_late)
    signal.alarm(60)
    try:
        in_place_of_the_simulated_server(daemon, plain)
        listens_for_a_while(daemon)
    finally:
        for program in started:
            program.kill()


main(*sys.argv[1:])
