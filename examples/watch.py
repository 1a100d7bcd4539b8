#!/usr/bin/env python3
"""Watches what another process does that has the connection, until that process closes it. No radio and no kit is needed.
usage: watch.py [PATH]"""
import asyncio
import json
import sys

import tembra


async def watch(path):
    """Returns what went wrong."""
    try:
        reader, writer = await asyncio.open_unix_connection(path)
    except OSError as error:
        return f"nobody can be watched at {path}: {error.strerror}"
    async for line in reader:
        members = json.loads(line)
        if "holder" in members:
            holder, state = members["holder"], tembra.state_from_json(json.dumps(members["state"]))
            print(f"{holder['program']}, process {holder['pid']}: {state.operation.name}, {state.phase.name}")
        elif "event" in members:
            event = tembra.event_from_json(line)
            details = f": {event.text} {event.advice}".rstrip() if isinstance(event, tembra.Ended) else ""
            print(f"{event.elapsed:6.1f} s  {event.operation.name} {type(event).__name__}{details}")
        elif "error" in members:
            return members["error"]
        sys.stdout.flush()
    writer.close()
    return None


sys.exit(asyncio.run(watch(sys.argv[1] if len(sys.argv) > 1 else "/run/tembra/front-end")))
