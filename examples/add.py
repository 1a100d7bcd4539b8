#!/usr/bin/env python3
"""Adds devices: each device whose button is pressed, with the type and the name that the library proposes.
usage: add.py [HOW_MANY]"""
import sys

import tembra


def add(kit):
    """Returns whether a device was added."""
    kit.add()
    for event in kit:
        if isinstance(event, tembra.Waiting):
            print("Press the button of the device.")
        elif isinstance(event, tembra.Found):
            kit.finish(event.type, name=event.name)  # or one of event.choices, and what the user types
        elif isinstance(event, tembra.Added):
            print(f"Added {event.name} ({event.type.name}).")
        elif isinstance(event, tembra.Ended):
            print(f"{event.text} {event.advice}".rstrip())
    return event.outcome == tembra.Outcome.DONE


with tembra.Frontend() as kit:
    how_many = int(sys.argv[1]) if len(sys.argv) > 1 else 1
    sys.exit(0 if all(add(kit) for _ in range(how_many)) else 1)
