"""Adds and removes the smart-home devices of a router: the front-end kit of libTembraAssoc."""
from .devices import devices, server_listens, type_name, type_number
from .events import (Account, Added, Answered, Bridge, BridgeLinked, Bridges, BulbAdded, Device, Devices, DeviceType,
                     Ended, Event, Found, KnownDevice, LinkButton, Proposal, Reading, Removed, Removing, State, Step, Unknown,
                     Waiting, Warned, event_from_json, state_from_json)
from .frontend import Frontend, Refused
from .history import Entry, history, log
from .numbers import Operation, Outcome, Phase, Radio, Reason, Reset, Server

__all__ = [
    "Account", "Added", "Answered", "Bridge", "BridgeLinked", "Bridges", "BulbAdded", "Device", "DeviceType",
    "Devices", "Ended", "Entry", "Event", "Found", "Frontend", "KnownDevice", "LinkButton", "Operation", "Outcome", "Phase", "Proposal",
    "Radio", "Reading", "Reason", "Refused", "Removed", "Removing", "Reset", "Server", "State", "Step", "Unknown",
    "Waiting", "Warned", "devices", "event_from_json", "history", "log", "server_listens", "state_from_json",
    "type_name", "type_number",
]
