"""A second process on the router: says who has the association connection, watches, and cancels. No kit is needed."""
import ctypes
import errno
import math
import os
from typing import Optional

from .events import Holder
from .library import C, HolderStructure
from .waiting import take_async, take_within

WATCH_PATH = "/run/tembra/front-end"  # where the front ends of a router serve, unless they agree on another path


def _failure(error: int) -> OSError:
    return OSError(error, os.strerror(error))


def _path(path: str) -> bytes:
    encoded = os.fsencode(path)
    if b"\0" in encoded:  # C would cut it
        raise _failure(errno.EINVAL)
    return encoded


def holder(path: str = WATCH_PATH, timeout: float = 0.2) -> Optional[Holder]:
    """Who has the connection, asked at that process, which may take so many seconds; None when nobody serves there.

    Other errors are those of Watch.
    """
    structure = HolderStructure(ctypes.sizeof(HolderStructure))
    error = C.tembra_read_holder(_path(path), min(math.ceil(timeout * 1000), 2**31 - 1), ctypes.byref(structure))
    if error == errno.ENOENT:
        return None
    if error != 0:
        raise _failure(error)
    texts = (text.decode(errors="replace") for text in (structure.program, structure.operation, structure.phase))
    return Holder(structure.role, structure.pid, structure.since, *texts)


class Watch:
    """What the process that has the connection says: JSON lines, first the state, then every event.

        with tembra.Watch() as watch:
            for line in watch:  # or: async for
                print(line)

    OSError when nobody can be watched there, with errno ENOENT: no front end has the connection, or none serves there;
    EACCES: this process may not watch, or everybody may put a socket into that folder. One thread at a time uses it.
    """

    def __init__(self, path: str = WATCH_PATH):
        self._watch = C.tembra_watch_open(_path(path))
        if not self._watch:
            raise _failure(ctypes.get_errno())

    def close(self) -> None:
        """Watches no longer."""
        watch, self._watch = self._watch, None
        C.tembra_watch_close(watch)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __del__(self):
        if getattr(self, "_watch", None):
            self.close()

    def fileno(self) -> int:
        """A descriptor that is readable when the other process has said something, or is gone."""
        return C.tembra_watch_descriptor(self._open())

    def next(self, timeout: Optional[float] = None) -> Optional[str]:
        """The next line, as docs/watch-socket.md has it; None when none came within so many seconds.

        ConnectionResetError: the other process closed the connection, ended, or dropped this watcher. OSError with
        errno EPROTO: something else answers there.
        """
        return take_within(self._take, self.fileno(), timeout)

    async def next_async(self) -> str:
        """The next line, without blocking the event loop."""
        return await take_async(self._take, self.fileno())

    def __iter__(self):
        """The lines, until the other process is gone."""
        try:
            while True:
                yield self.next()
        except ConnectionResetError:
            return

    async def __aiter__(self):
        """The same for `async for`."""
        try:
            while True:
                yield await self.next_async()
        except ConnectionResetError:
            return

    def cancel(self) -> None:
        """Asks the other process to cancel what runs. Its event "ended" says whether it did."""
        self._say(C.tembra_watch_cancel)

    def history(self) -> None:
        """Asks for the flight recorder: from now on the lines are its entries, the old ones first."""
        self._say(C.tembra_watch_history)

    def _open(self):
        if not self._watch:
            raise ValueError("the watch is closed")
        return self._watch

    def _say(self, function) -> None:
        error = function(self._open())
        if error != 0:
            raise _failure(error)

    def _take(self) -> Optional[str]:
        line = C.tembra_watch_next(self._open(), 0)
        if line is not None:
            return line.decode(errors="replace")
        error = ctypes.get_errno()
        if error != errno.ETIMEDOUT:
            raise _failure(error)
        return None
