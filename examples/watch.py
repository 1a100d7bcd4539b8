#!/usr/bin/env python3
"""Watches what another process does that has the connection, until that process closes it. No radio and no kit is needed.
usage: watch.py [PATH]"""
import asyncio
import json
import sys

import tembra


def show(line):
    """Returns what is wrong."""
    members = json.loads(line)
    if "holder" in members:
        holder, state = members["holder"], tembra.state_from_json(json.dumps(members["state"]))
        print(f"{holder['program']}, process {holder['pid']}: {state.operation.name}, {state.phase.name}")
    elif "event" in members:
        event = tembra.event_from_json(line)
        details = f": {event.text} {event.advice}".rstrip() if isinstance(event, tembra.Ended) else ""
        print(f"{event.elapsed:6.1f} s  {event.operation.name} {type(event).__name__}{details}")
    sys.stdout.flush()
    return members.get("error")


async def watch(path):
    """Returns what went wrong."""
    try:
        with tembra.Watch(path) as lines:
            async for line in lines:
                error = show(line)
                if error:
                    return error
    except OSError as error:
        return f"nobody can be watched at {path}: {error.strerror}"
    return None


sys.exit(asyncio.run(watch(sys.argv[1] if len(sys.argv) > 1 else tembra.WATCH_PATH)))
