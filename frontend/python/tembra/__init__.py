"""Adds and removes the smart-home devices of a router: the front-end kit of libTembraAssoc."""
from .devices import devices, radio_name, server_listens, server_name, type_name, type_number
from .events import (Account, Added, Answered, Bridge, BridgeLinked, Bridges, BulbAdded, Device, Devices, DeviceType,
                     Ended, Event, Found, Holder, KnownDevice, LinkButton, Proposal, Reading, Removed, Removing, State,
                     Step, Unknown, Waiting, Warned, event_from_json, state_from_json)
from .frontend import Frontend, Refused
from .history import Entry, history, log
from .numbers import Operation, Outcome, Phase, Radio, Reason, Reset, Role, Server
from .watch import WATCH_PATH, Watch, holder

__all__ = [
    "Account", "Added", "Answered", "Bridge", "BridgeLinked", "Bridges", "BulbAdded", "Device", "DeviceType",
    "Devices", "Ended", "Entry", "Event", "Found", "Frontend", "Holder", "KnownDevice", "LinkButton", "Operation",
    "Outcome", "Phase", "Proposal", "Radio", "Reading", "Reason", "Refused", "Removed", "Removing", "Reset", "Role",
    "Server", "State", "Step", "Unknown", "WATCH_PATH", "Waiting", "Warned", "Watch", "devices", "event_from_json",
    "history", "holder", "log", "radio_name", "server_listens", "server_name", "state_from_json", "type_name",
    "type_number",
]
