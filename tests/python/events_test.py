"""Events from JSON, and the numbers. No router is needed."""
import json
import unittest

import tembra
from tembra.library import C

HEAD = {"schema": 1, "number": 7, "operation": "add", "ms": 1025, "phase": "choice", "radio": "Z-Wave",
        "ends_in_ms": 179999}
PLUG = {"number": 1, "name": "BinarySwitch"}
SIREN = {"number": 42, "name": "Siren"}
FOUND = {"type": PLUG, "choices": [PLUG, SIREN], "name": "Plug", "place": "Default", "name_room": 179,
         "place_room": 31}
ENDED = {"outcome": "failed", "reason": "already-known", "reason_number": 34, "ended_in": "identity", "waited_ms": 500,
         "server": None, "error": 0, "text": "Known.", "advice": "Remove it."}

# Kind, class, members, and what the event's own fields are.
KINDS = [
    ("waiting", tembra.Waiting, {}, {}),
    ("answered", tembra.Answered, {}, {}),
    ("reading", tembra.Reading, {}, {}),
    ("found", tembra.Found, FOUND, {"type": (1, "BinarySwitch"), "choices": ((1, "BinarySwitch"), (42, "Siren")),
                                    "name_room": 179, "place_room": 31}),
    ("added", tembra.Added, {"id": 3, "name": "Plug", "type": PLUG, "place": "Hall"}, {"id": 3, "place": "Hall"}),
    ("removing", tembra.Removing, {"id": 3, "name": "Plug"}, {"id": 3, "name": "Plug"}),
    ("removed", tembra.Removed, {"id": 3, "name": "Plug"}, {"id": 3, "name": "Plug"}),
    ("bridges", tembra.Bridges, {"bridges": [{"mac": "m", "address": "a"}, {"mac": "n", "user": "u"}]},
     {"bridges": (("m", "a", ""), ("n", "", "u"))}),
    ("link-button", tembra.LinkButton, {"seconds_left": 58}, {"seconds_left": 58}),
    ("bridge-linked", tembra.BridgeLinked, {}, {}),
    ("bulb-added", tembra.BulbAdded, {}, {}),
    ("account", tembra.Account, {"linked": True}, {"linked": True}),
    ("step", tembra.Step, {"done": 2, "all": 9}, {"done": 2, "all": 9}),
    ("warning", tembra.Warned, {"reason": "one-radio-server", "reason_number": 14, "server": "ZigBee", "text": "t",
                                "advice": "a"},
     {"reason": tembra.Reason.ONE_RADIO_SERVER, "server": "ZigBee", "device": None, "why": "", "advice": "a"}),
    ("warning", tembra.Warned, {"reason": "left", "reason_number": 40, "server": None, "text": "t", "advice": "a",
                                "device": {"id": 3, "name": "Plug"}},
     {"reason": tembra.Reason.LEFT, "server": None, "device": (3, "Plug")}),
    ("ended", tembra.Ended, ENDED, {"outcome": tembra.Outcome.FAILED, "reason": tembra.Reason.ALREADY_KNOWN,
                                    "ended_in": tembra.Phase.IDENTITY, "waited": 0.5, "device": None}),
    ("ended", tembra.Ended, {**ENDED, "device": {"id": 3, "name": "Plug"}}, {"device": (3, "Plug"), "holder": None}),
    ("ended", tembra.Ended, {**ENDED, "holder": {"role": 1, "program": "web", "pid": 9, "since": 5,
                                           "operation": "add", "phase": "button"}},
     {"holder": (1, 9, 5, "web", "add", "button"), "device": None}),
    ("devices", tembra.Devices,
     {"count": 2, "devices": [{"id": 3, "name": "Plug", "type": PLUG, "radio": "Z-Wave", "address": 5, "values": 2},
                              {"id": 4, "name": "Lamp", "type": {"number": 0, "name": "x"}, "radio": None,
                               "address": None, "values": 0}]},
     {"count": 2, "devices": ((3, 1, "BinarySwitch", "Plug", tembra.Radio.ZWAVE, 5, 2),
                              (4, 0, "x", "Lamp", tembra.Radio.OTHER, 0, 0))}),
    ("devices", tembra.Devices, {"count": 2}, {"count": 2, "devices": ()}),
    ("of-tomorrow", tembra.Unknown, {"what": "ever"}, {"kind": "of-tomorrow"}),
]


class EventsFromJson(unittest.TestCase):
    def test_every_kind_has_its_fields(self):
        for kind, expected, members, fields in KINDS:
            with self.subTest(kind):
                line = json.dumps({**HEAD, "event": kind, **members})
                event = tembra.event_from_json(line)
                self.assertIs(type(event), expected)
                self.assertEqual(event.json, line)
                self.assertEqual({name: getattr(event, name) for name in fields}, fields)

    def test_every_kind_of_the_library_is_known(self):
        names = {name.decode() for name in map(C.tembra_event_kind_name, range(100)) if name}
        self.assertEqual({kind for kind, *_ in KINDS} - {"of-tomorrow"}, names)

    def test_the_head_is_the_same_for_all(self):
        event = tembra.event_from_json(json.dumps({**HEAD, "event": "waiting"}).encode())
        self.assertEqual((event.number, event.operation, event.phase, event.radio, event.elapsed, event.ends_in),
                         (7, tembra.Operation.ADD, tembra.Phase.CHOICE, tembra.Radio.ZWAVE, 1.025, 179.999))
        event = tembra.event_from_json(json.dumps({**HEAD, "event": "waiting", "radio": None, "ends_in_ms": None}))
        self.assertEqual((event.radio, event.ends_in), (tembra.Radio.OTHER, None))

    def test_a_name_of_a_later_version_stays_a_text(self):
        event = tembra.event_from_json(json.dumps({**HEAD, "event": "ended", **ENDED, "reason": "moon-too-bright"}))
        self.assertEqual(event.reason, "moon-too-bright")

    def test_an_event_cannot_be_changed(self):
        event = tembra.event_from_json(json.dumps({**HEAD, "event": "waiting"}))
        with self.assertRaises(AttributeError):
            event.number = 8

    def test_the_state_holds_what_waits_for_a_choice(self):
        state = {"schema": 1, "operation": "add", "phase": "choice", "radio": "ZigBee", "last_event": 4, "ms": 10,
                 "ends_in_ms": 5}
        self.assertIsNone(tembra.state_from_json(json.dumps(state)).found)
        self.assertIsNone(tembra.state_from_json(json.dumps(state)).device)
        known = {**state, "device": {"id": 3, "name": "Plug"}}
        self.assertEqual(tembra.state_from_json(json.dumps(known)).device, (3, "Plug"))
        self.assertEqual(tembra.state_from_json(json.dumps({**state, "found": FOUND})).found.name, "Plug")


class Numbers(unittest.TestCase):
    def test_all_are_the_library_s(self):
        functions = {tembra.Operation: C.tembra_operation_name, tembra.Phase: C.tembra_phase_name,
                     tembra.Outcome: C.tembra_outcome_name, tembra.Reason: C.tembra_reason_name}
        for numbers, name_of in functions.items():
            names = {number: name_of(number) for number in range(200)}
            ours = {number.value: number.name.lower().replace("_", "-").encode() for number in numbers}
            self.assertEqual(ours, {number: name for number, name in names.items() if name})

    def test_servers_and_radios_have_names(self):
        self.assertEqual([number for number in range(-1, 20) if tembra.server_name(number)], list(tembra.Server))
        self.assertEqual([number for number in range(-1, 20) if tembra.radio_name(number)], list(tembra.Radio))
        self.assertEqual(tembra.server_name(tembra.Server.HA), "HA")
        self.assertEqual(tembra.radio_name(tembra.Radio.ZWAVE), "Z-Wave")

    def test_types_have_names(self):
        self.assertEqual((tembra.type_name(1), tembra.type_number("BinarySwitch")), ("BinarySwitch", 1))
        self.assertEqual(tembra.type_number("Spoon"), 0)
