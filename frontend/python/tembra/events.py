"""Events as values: an event has what its kind defines and nothing else."""
import dataclasses
import json
from typing import NamedTuple, Optional, Tuple, Union

from .numbers import Operation, Outcome, Phase, Radio, Reason


class DeviceType(NamedTuple):
    """A device type, as Frontend.finish takes it."""
    number: int
    name: str


class Bridge(NamedTuple):
    """A Hue bridge. A discovery knows no user, a list of the database no address."""
    mac: str
    address: str = ""
    user: str = ""


class Device(NamedTuple):
    """A device of the database."""
    id: int
    type: int  # 0: the database has a name that is none of a type
    type_name: str
    name: str
    radio: Radio
    address: int  # ZigBee short address or Z-Wave node id
    values: int  # value slots in the database


class KnownDevice(NamedTuple):
    """A device that an event or the state is about. Its id is 0 when it has none."""
    id: int
    name: str


class Holder(NamedTuple):
    """The process that has the connection."""
    role: int  # a Role
    pid: int
    since: int  # seconds since 1970: when that process opened the connection
    program: str  # how that process calls itself
    operation: str  # what runs: "add", "hue-list", ..., "none"
    phase: str  # what is awaited: "button", "choice", ...


@dataclasses.dataclass(frozen=True)
class Proposal:
    """What a device is and can be. The rooms are the longest texts in bytes of UTF-8."""
    type: DeviceType
    choices: Tuple[DeviceType, ...]  # the first is the proposed type
    name: str
    place: str
    name_room: int
    place_room: int


@dataclasses.dataclass(frozen=True)
class Event:
    """What every event has. Times are in seconds."""
    number: int  # 1, 2, 3, ... since the kit was made
    operation: Operation
    phase: Phase  # what is awaited now
    radio: Radio  # OTHER: not known
    elapsed: float  # since the operation began
    ends_in: Optional[float]  # until what is awaited must have come; None: no limit is known
    json: str = dataclasses.field(repr=False, compare=False)


@dataclasses.dataclass(frozen=True)
class Waiting(Event):
    """For a button, or for a server's answer."""


@dataclasses.dataclass(frozen=True)
class Answered(Event):
    """A device answers."""


@dataclasses.dataclass(frozen=True)
class Reading(Event):
    """The device's description is being read."""


@dataclasses.dataclass(frozen=True)
class Found(Proposal, Event):
    """The device is known: call Frontend.finish."""


@dataclasses.dataclass(frozen=True)
class Added(Event):
    """The database has the device: id, name and type are those in it."""
    id: int
    name: str
    type: DeviceType
    place: str  # as sent to the HA server; the library cannot read it in the database


@dataclasses.dataclass(frozen=True)
class Removing(Event):
    """A device leaves."""
    id: int
    name: str


@dataclasses.dataclass(frozen=True)
class Removed(Event):
    """The device left."""
    id: int
    name: str


@dataclasses.dataclass(frozen=True)
class Bridges(Event):
    """Hue bridges."""
    bridges: Tuple[Bridge, ...]


@dataclasses.dataclass(frozen=True)
class LinkButton(Event):
    """Press the round button on the Hue bridge."""
    seconds_left: int


@dataclasses.dataclass(frozen=True)
class BridgeLinked(Event):
    """The Hue bridge was added."""


@dataclasses.dataclass(frozen=True)
class BulbAdded(Event):
    """The Hue bulb was added."""


@dataclasses.dataclass(frozen=True)
class Account(Event):
    """The Nest account."""
    linked: bool


@dataclasses.dataclass(frozen=True)
class Step(Event):
    """Of a reset: steps of a second each."""
    done: int
    all: int


@dataclasses.dataclass(frozen=True)
class Warned(Event):
    """The operation goes on, but something is missing."""
    reason: Reason
    server: Optional[str]
    device: Optional[KnownDevice]  # that it is about
    why: str  # NOT_WATCHED: what is in the way, in English; else empty
    text: str  # what is missing, in English
    advice: str  # what to do about it; empty: nothing


@dataclasses.dataclass(frozen=True)
class Ended(Event):
    """The operation is over."""
    outcome: Outcome
    reason: Reason
    ended_in: Phase
    waited: float  # since that phase began
    server: Optional[str]
    error: int  # errno where there is one; 0: none
    device: Optional[KnownDevice]
    text: str  # what happened, in English
    advice: str  # what to do about it; empty: nothing
    holder: Optional[Holder]  # IN_USE, where the other front end says who it is


@dataclasses.dataclass(frozen=True)
class Devices(Event):
    """The devices of the database, in the order of its file."""
    devices: Tuple[Device, ...]  # the flight recorder has none
    count: int


@dataclasses.dataclass(frozen=True)
class Unknown(Event):
    """A kind that a later version of the kit has."""
    kind: str


@dataclasses.dataclass(frozen=True)
class State:
    """Where things are."""
    operation: Operation
    phase: Phase
    radio: Radio
    last_event: int  # 0: none yet
    elapsed: float
    ends_in: Optional[float]
    device: Optional[KnownDevice]  # that waits, is stored or leaves
    found: Optional[Proposal]  # while a device waits for Frontend.finish


_KINDS = {
    "waiting": Waiting, "answered": Answered, "reading": Reading, "found": Found, "added": Added,
    "removing": Removing, "removed": Removed, "bridges": Bridges, "link-button": LinkButton,
    "bridge-linked": BridgeLinked, "bulb-added": BulbAdded, "account": Account, "step": Step, "warning": Warned,
    "ended": Ended, "devices": Devices,
}


def _number(enumeration, name: str):
    """A name of a later version stays a text."""
    return enumeration.__members__.get(name.replace("-", "_").upper(), name)


def _seconds(milliseconds):
    return None if milliseconds is None else milliseconds / 1000


_RADIOS = {"ZigBee": Radio.ZIGBEE, "Z-Wave": Radio.ZWAVE, "IP": Radio.IP}


def _device(row: dict) -> Device:
    return Device(row["id"], row["type"]["number"], row["type"]["name"], row["name"],
                  _RADIOS.get(row["radio"], Radio.OTHER), row["address"] or 0, row["values"])


# How a member of the JSON object becomes a field; all others are taken as they are.
_FIELDS = {
    "operation": lambda value: ("operation", _number(Operation, value)),
    "phase": lambda value: ("phase", _number(Phase, value)),
    "ended_in": lambda value: ("ended_in", _number(Phase, value)),
    "outcome": lambda value: ("outcome", _number(Outcome, value)),
    "reason": lambda value: ("reason", _number(Reason, value)),
    "radio": lambda value: ("radio", _RADIOS.get(value, Radio.OTHER)),
    "ms": lambda value: ("elapsed", _seconds(value)),
    "ends_in_ms": lambda value: ("ends_in", _seconds(value)),
    "waited_ms": lambda value: ("waited", _seconds(value)),
    "type": lambda value: ("type", DeviceType(**value)),
    "choices": lambda value: ("choices", tuple(DeviceType(**each) for each in value)),
    "bridges": lambda value: ("bridges", tuple(Bridge(**each) for each in value)),
    "device": lambda value: ("device", KnownDevice(**value)),
    "holder": lambda value: ("holder", Holder(**value)),
    "devices": lambda value: ("devices", tuple(_device(each) for each in value)),
    "found": lambda value: ("found", _build(Proposal, value)),
}


def _build(kind, members: dict):
    """An object of this class; members that it does not know are passed over."""
    values = {"device": None, "found": None, "holder": None, "why": "", "devices": ()}
    values.update(_FIELDS.get(name, lambda value: (name, value))(value) for name, value in members.items())
    return kind(**{field.name: values[field.name] for field in dataclasses.fields(kind)})


def event_from_json(line: Union[str, bytes]) -> Event:
    """The event of a line that the kit wrote, in this process or another one."""
    members = json.loads(line)
    text = line.decode() if isinstance(line, bytes) else line
    kind = _KINDS.get(members["event"], Unknown)
    return _build(kind, {**members, "kind": members["event"], "json": text})


def state_from_json(line: Union[str, bytes]) -> State:
    """The state that the kit wrote, in this process or another one."""
    return _build(State, json.loads(line))
