"""The flight recorder: what the process's kit did last."""
import ctypes
import json
from typing import List, NamedTuple, Optional, Tuple, Union

from .events import Event, event_from_json
from .library import C, HISTORY_SIZE

_LEVELS = ("progress", "warning", "error", "detail")


class Entry(NamedTuple):
    """An event, a call or a line of the log; what it is not is None."""
    number: int  # 1, 2, 3, ... since the process began
    monotonic: float  # seconds of the system's monotonic clock
    wall: float  # seconds since 1970
    event: Optional[Event]
    call: Optional[str]  # "add", "finish", ...
    arguments: Tuple[str, ...]  # of the call
    error: int  # errno of a call that was refused; 0: none
    log: Optional[str]
    level: Optional[str]  # of the line
    json: str


def _entry(line: str) -> Entry:
    members = json.loads(line)
    event = members.get("event")
    return Entry(members["entry"], members["monotonic_us"] / 1e6, members["wall_us"] / 1e6,
                 event and event_from_json(json.dumps(event)), members.get("call"),
                 tuple(members.get("arguments", ())), members.get("error", 0), members.get("log"),
                 members.get("level"), line)


def history() -> List[Entry]:
    """What the process's kit did last, the oldest first, also after an operation failed or the kit was closed."""
    text = ctypes.create_string_buffer(HISTORY_SIZE)
    C.tembra_frontend_history(text, HISTORY_SIZE)
    return [_entry(line) for line in text.value.decode().splitlines()]


def log(text: str, level: Union[int, str] = "progress") -> None:
    """Adds a line to the flight recorder, which cannot see the router's log by itself.

    The level is "progress", "warning", "error" or "detail".
    """
    number = _LEVELS.index(level) if isinstance(level, str) else level
    C.tembra_frontend_log(number, text.encode(errors="replace"))
