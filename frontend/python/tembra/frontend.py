"""The kit itself."""
import ctypes
import errno
import operator
from typing import Optional, Union

from .events import DeviceType, Ended, Event, State, event_from_json, state_from_json
from .library import C, Options
from .numbers import Role
from .waiting import take_async, take_within


class Refused(OSError):
    """A call did nothing. Its errno is EBUSY, ESRCH, EINVAL, EMSGSIZE or EILSEQ, as in the C face."""

    def __init__(self, error: int):
        super().__init__(error, C.tembra_refusal_text(error).decode())


def _text(text: Optional[str]) -> Optional[bytes]:
    """For C, where a text ends at its first NUL."""
    if text is None:
        return None
    if not isinstance(text, str):
        raise TypeError(f"a text is needed here, not {type(text).__name__}: {text!r}")
    try:
        encoded = text.encode()
    except UnicodeEncodeError:
        raise Refused(errno.EILSEQ) from None
    if b"\0" in encoded:
        raise Refused(errno.EILSEQ)
    return encoded


def _number(number, what: str) -> int:
    try:
        index = operator.index(number)
    except TypeError:
        raise TypeError(f"{what} is a number, not {type(number).__name__}: {number!r}") from None
    if not -2**31 <= index < 2**31:  # C would cut it
        raise Refused(errno.EINVAL)
    return index


def _check(error: int) -> None:
    if error != 0:
        raise Refused(error)


class Frontend:
    """The front-end kit; a process has one at a time. Operations raise Refused when they do not start.

        with tembra.Frontend() as kit:
            kit.add()
            for event in kit:  # or: async for
                if isinstance(event, tembra.Found):
                    kit.finish(name="Hall lamp")
                elif isinstance(event, tembra.Ended):
                    print(event.text)

    Any thread may call it, but for close(). Asynchronous reading is for one task at a time.
    """

    def __init__(self, *, role: int = Role.TOUCH_SCREEN, keep_open: bool = False, program: Optional[str] = None,
                 watch_path: Optional[str] = None):
        options = Options(ctypes.sizeof(Options), _number(role, "a role"), bool(keep_open), _text(program),
                          _text(watch_path))
        self._kit = C.tembra_frontend_new(ctypes.byref(options))
        if not self._kit:
            raise Refused(ctypes.get_errno())

    def close(self) -> None:
        """Cancels what runs and closes the connection."""
        kit, self._kit = self._kit, None
        C.tembra_frontend_free(kit)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __del__(self):
        if getattr(self, "_kit", None):
            self.close()

    # ---- Operations: each ends with exactly one event Ended ----

    def add(self) -> None:
        """Adds the device whose button is pressed. After the event Found call finish()."""
        self._call(C.tembra_frontend_add)

    def add_again(self) -> None:
        """The same for a device that may be known already: a Z-Wave device leaves first. It keeps its name."""
        self._call(C.tembra_frontend_add_again)

    def remove(self) -> None:
        """Removes the device whose button is pressed."""
        self._call(C.tembra_frontend_remove)

    def take_out(self) -> None:
        """Takes a device out of its radio network that joined, but was not kept."""
        self._call(C.tembra_frontend_take_out)

    def reset(self, what: int) -> None:
        """Resets radio networks. @param what a Reset"""
        self._call(C.tembra_frontend_reset, _number(what, "what to reset"))

    def hue_discover(self) -> None:
        """Looks for Hue bridges in the home's network."""
        self._call(C.tembra_frontend_hue_discover)

    def hue_add_bridge(self, mac: str, seconds: int = 60) -> None:
        """Adds a Hue bridge, whose round button has to be pressed in so many seconds, at most 600."""
        self._call(C.tembra_frontend_hue_add_bridge, _text(mac), _number(seconds, "the time"))

    def hue_add_bulb(self, mac: str, bulb: str) -> None:
        """Adds a bulb of a bridge that was added."""
        self._call(C.tembra_frontend_hue_add_bulb, _text(mac), _text(bulb))

    def hue_refresh(self, mac: str, text: Optional[str] = None) -> None:
        """Looks for changes of a bridge."""
        self._call(C.tembra_frontend_hue_refresh, _text(mac), _text(text))

    def hue_remove(self, mac: str) -> None:
        """Removes a bridge and its bulbs."""
        self._call(C.tembra_frontend_hue_remove, _text(mac))

    def hue_list(self) -> None:
        """Lists the bridges of the device database, with their users."""
        self._call(C.tembra_frontend_hue_list)

    def nest_status(self) -> None:
        """Asks whether a Nest account is linked."""
        self._call(C.tembra_frontend_nest_status)

    def nest_link(self, code: str) -> None:
        """Links the account of an authorisation code."""
        self._call(C.tembra_frontend_nest_link, _text(code))

    def nest_unlink(self) -> None:
        """Unlinks the account."""
        self._call(C.tembra_frontend_nest_unlink)

    def devices(self) -> None:
        """Lists the device database: the event Devices. It fails when another process writes for 5 seconds."""
        self._call(C.tembra_frontend_devices)

    def finish(self, type: Union[int, DeviceType] = 0, name: Optional[str] = None, place: Optional[str] = None) -> None:
        """After Found: hands the device over. What is left out stays as it was proposed.

        A GenericDevice is stored as one whatever is chosen: the choice says what its values are.
        """
        number = type.number if isinstance(type, DeviceType) else type
        self._call(C.tembra_frontend_finish, _number(number, "a device type"), _text(name), _text(place))

    def cancel(self) -> bool:
        """Cancels what runs: Ended comes within 100 ms. Returns False when nothing runs.

        A call of the library may go on behind it, and no event tells its end: where a start then raises Refused with
        EBUSY, try again every 100 ms or so.
        """
        error = C.tembra_frontend_cancel(self._open())
        if error not in (0, errno.ESRCH):
            raise Refused(error)
        return error == 0

    # ---- Events ----

    def fileno(self) -> int:
        """A descriptor that is readable while there are events, for select and event loops."""
        return C.tembra_frontend_descriptor(self._open())

    def next(self, timeout: Optional[float] = None) -> Optional[Event]:
        """The next event; None when none came within so many seconds. Ctrl-C interrupts the wait."""
        return take_within(self._take, self.fileno(), timeout)

    async def next_async(self) -> Event:
        """The next event, without blocking the event loop. asyncio.wait_for() limits the wait."""
        return await take_async(self._take, self.fileno())

    def __iter__(self):
        """The events of the operation that was started, up to its end."""
        event = None
        while not isinstance(event, Ended):
            event = self.next()
            yield event

    async def __aiter__(self):
        """The same for `async for`."""
        event = None
        while not isinstance(event, Ended):
            event = await self.next_async()
            yield event

    def state(self) -> State:
        """Where things are, for a page that loads anew."""
        size = 4096
        while True:  # the state may change meanwhile
            text = ctypes.create_string_buffer(size)
            length = C.tembra_frontend_state_json(self._open(), text, size)
            if length < size:
                return state_from_json(text.value)
            size = length + 1

    # ---- Helpers ----

    def _open(self):
        if not self._kit:
            raise ValueError("the front end is closed")
        return self._kit

    def _call(self, function, *arguments) -> None:
        _check(function(self._open(), *arguments))

    def _take(self) -> Optional[Event]:
        event = C.tembra_frontend_next(self._open(), 0)
        if not event:
            if ctypes.get_errno() == errno.ENOMEM:
                raise MemoryError
            return None
        try:
            return event_from_json(C.tembra_event_json(event))
        finally:
            C.tembra_event_free(event)
