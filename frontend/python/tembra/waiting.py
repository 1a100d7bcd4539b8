"""Waiting for what a descriptor announces: `take` returns it, or None while there is nothing."""
import asyncio
import select
import time
from typing import Optional


def take_within(take, descriptor: int, timeout: Optional[float]):
    """What comes within so many seconds, else None; without a number it waits for as long as it takes."""
    end = None if timeout is None else time.monotonic() + timeout
    poll = select.poll()
    poll.register(descriptor, select.POLLIN)
    while True:
        taken = take()
        left = None if end is None else end - time.monotonic()
        if taken is not None or (left is not None and left <= 0):
            return taken
        poll.poll(None if left is None else left * 1000)


async def take_async(take, descriptor: int):
    """The same without blocking the event loop, for as long as it takes."""
    loop = asyncio.get_running_loop()
    while True:
        taken = take()
        if taken is not None:
            return taken
        readable = loop.create_future()
        loop.add_reader(descriptor, lambda: readable.done() or readable.set_result(None))
        try:
            await readable
        finally:
            loop.remove_reader(descriptor)
