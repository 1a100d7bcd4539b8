#!/usr/bin/env python3
"""A Z-Wave server in miniature, to copy from: what the library hears of a radio while devices come and go. Lines of
standard input are the buttons: a label of DEVICES, the label of any other device, or "fail".
docs/write-a-radio-daemon.md explains each rule.
usage: tembra-sim run --without zwave & radio_daemon.py [SECONDS_OF_AN_INTERVIEW [SECONDS_OF_LISTENING]]"""
import os
import select
import socket
import struct
import sys
import time

SERVER, LIBRARY = ("127.255.255.254", 8888), ("127.255.255.4", 8888)
COMMAND = struct.Struct("<192x i 16x i 20x")  # a ZwaveCommand: operation, controller command
NODE = struct.Struct("<B 53s 3B 543s 436x")  # the part of a ZwNodeInfo that a daemon fills
MODES = {(1, 1): "add", (1, 4): "remove", (4, 0): "cancel", (5, 0): "reset"}
NO_NODE, FAILED = 0, 255
FIRST_NODE, LAST_NODE = 2, 232  # the controller itself is node 1

# What an interview finds out: classes (basic, generic, specific), command classes, values (class, index, instance).
# No values: the device never answers its interview, and only what it said when it joined is known.
DEVICES = {
    "plug": ((4, 0x10, 1), [0x25, 0x32, 0x86], [(0x25, 0, 1), (0x32, 0, 1), (0x32, 8, 1)]),
    "strip": ((4, 0x10, 4), [0x25, 0x60, 0x86], [(0x25, 0, 1), (0x25, 0, 2), (0x25, 0, 3)]),
    "sleeper": ((4, 0x07, 1), [0x71, 0x80, 0x84], []),
}


def node_block(node, classes=(0, 0, 0), command_classes=(), values=()):
    """One answer. Both lists end inside their field: command classes with 0xFF, values with three zeros."""
    ended = bytes(command_classes[:52]) + b"\xff"
    triples = b"".join(bytes(value) for value in values[:180])  # at most 180, the 181st ends the list
    return NODE.pack(node, ended, *classes, triples)


class Daemon:
    def __init__(self, interview=150, listening=200):
        self.interview = interview  # seconds that it may take; the library waits for 180
        self.listening = listening  # seconds after a command: a front end that died sends no cancel
        self.mode, self.until = "idle", 0
        self.nodes = {}  # the stick's memory; a real daemon keeps it in a file
        self.due = []  # (moment, answer), in the order of the answers
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.bind(SERVER)

    def hear(self):
        """A command replaces the one before it and whatever was still to be said. A cancel is not answered: the library
        may have begun the next operation. Nor is a reset, for the same reason."""
        datagram, sender = self.socket.recvfrom(4096)
        if sender != LIBRARY or len(datagram) != COMMAND.size:
            return
        self.mode, self.until = MODES.get(COMMAND.unpack(datagram), "idle"), time.monotonic() + self.listening
        self.due.clear()
        if self.mode == "reset":
            self.nodes.clear()

    def pressed(self, label):
        if self.due or self.mode not in ("add", "remove") or time.monotonic() >= self.until:
            return  # the radio is busy, or does not listen
        if label == "fail":
            self.say((0, node_block(FAILED)))
        elif self.mode == "add":
            self.add(label)
        else:
            self.remove(label)

    def add(self, label):
        """A device that the stick knows keeps its node. The library knows its devices itself, by the node."""
        free = (node for node in range(FIRST_NODE, LAST_NODE + 1) if node not in self.nodes.values())
        node = self.nodes.setdefault(label, None) or next(free, FAILED)
        if node == FAILED or label not in DEVICES:
            del self.nodes[label]  # no node is left, or it wants a PIN that nobody can be asked for: take it out
            return self.say((0, node_block(FAILED)))
        self.nodes[label] = node
        classes, command_classes, values = DEVICES[label]
        interview = 0.1 if values else self.interview  # then what is known has to do
        self.say((0, node_block(node)), (0.1, node_block(node)),
                 (interview, node_block(node, classes, command_classes, values)))

    def remove(self, label):
        """The first answer says which node, the second that the radio is done. A stranger has neither."""
        if label not in self.nodes:
            return self.say((0, node_block(NO_NODE)))
        node = self.nodes.pop(label)
        self.say((0, node_block(node)), (0.1, node_block(node)))

    def say(self, *answers):
        moment = time.monotonic()
        for seconds, answer in answers:
            moment += seconds
            self.due.append((moment, answer))

    def say_what_is_due(self):
        while self.due and self.due[0][0] <= time.monotonic():
            self.socket.sendto(self.due.pop(0)[1], LIBRARY)
            if not self.due:
                self.mode = "idle"  # the operation is over: one device for one command

    def run(self):
        """Commands first: whoever commands and then presses is served in that order."""
        buttons = [sys.stdin.fileno()]
        while True:
            wait = max(self.due[0][0] - time.monotonic(), 0) if self.due else None
            ready, _, _ = select.select([self.socket, *buttons], [], [], wait)
            if self.socket in ready:
                self.hear()
            elif ready:
                lines = os.read(buttons[0], 4096).decode()
                buttons = buttons if lines else []  # nobody presses any more
                for label in lines.split():
                    self.pressed(label)
            self.say_what_is_due()


Daemon(*map(float, sys.argv[1:])).run()
