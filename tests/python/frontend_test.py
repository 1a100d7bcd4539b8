"""The package against the simulated router, with the library's waits a hundred times shorter."""
import asyncio
import errno
import os
import pathlib
import random
import signal
import subprocess
import sys
import threading
import time
import unittest

import tembra

DATABASE = pathlib.Path("/tmp/ddb")


def control(*words):
    return subprocess.run(["tembra-sim", *words], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


class WithRouter(unittest.TestCase):
    def setUp(self):
        DATABASE.unlink(missing_ok=True)
        self.router = subprocess.Popen(["tembra-sim", "run", "--speed", "20"], stdout=subprocess.DEVNULL)
        self.addCleanup(self.stop_router)
        while not control("status"):
            time.sleep(0.01)

    def stop_router(self):
        control("stop")
        self.assertEqual(self.router.wait(), 0, "the simulated router found something wrong")


def events_of(kit, finish=lambda kit, found: kit.finish()):
    """The events of the operation; `press` when its button is awaited."""
    events = []
    for event in kit:
        events.append(event)
        if isinstance(event, tembra.Waiting):
            control("press", "plain-plug")
        if isinstance(event, tembra.Found):
            finish(kit, event)
    return events


class Blocking(WithRouter):
    def test_a_device_is_added_as_chosen_and_removed(self):
        def choose(kit, found):
            self.assertEqual(found.choices[0], found.type)
            self.assertEqual(kit.state().found.name, found.name)
            kit.finish(tembra.type_number("Siren"), name="Öffner", place="Hall")

        with tembra.Frontend() as kit:
            kit.add()
            *before, added, ended = events_of(kit, choose)
            self.assertEqual([type(event) for event in before],
                             [tembra.Waiting, tembra.Answered, tembra.Reading, tembra.Found])
            self.assertEqual((added.name, added.type.name, added.place), ("Öffner", "Siren", "Hall"))
            self.assertEqual(ended.outcome, tembra.Outcome.DONE)
            [device] = tembra.devices()
            self.assertEqual((device.id, device.name, device.type_name, device.radio),
                             (added.id, "Öffner", "Siren", tembra.Radio.ZWAVE))
            kit.devices()
            listed, _ = kit
            self.assertEqual(listed.devices, (device,))
            kit.remove()
            *_, removed, ended = events_of(kit)
            self.assertEqual((removed.id, removed.name), (added.id, "Öffner"))
            self.assertEqual(tembra.devices(), [])

    def test_a_known_device_keeps_its_name_and_a_stranger_is_taken_out(self):
        with tembra.Frontend() as kit:
            kit.add()
            events_of(kit, lambda kit, found: kit.finish(name="Lamp"))
            kit.add_again()
            events = events_of(kit)
            self.assertEqual([type(event) for event in events],
                             [tembra.Waiting, tembra.Answered, tembra.Warned, tembra.Waiting, tembra.Removing,
                              tembra.Removed, tembra.Waiting, tembra.Answered, tembra.Reading, tembra.Found,
                              tembra.Added, tembra.Ended])
            self.assertEqual(events[3].phase, tembra.Phase.LEAVE_BUTTON)
            self.assertEqual(events[-2].name, "Lamp")
            kit.remove()
            events_of(kit)
            kit.take_out()
            *_, ended = events_of(kit)
            self.assertEqual(ended.outcome, tembra.Outcome.DONE)

    def test_a_bad_text_is_refused_and_a_good_one_taken_afterwards(self):
        def choose(kit, found):
            for name, error in [("x" * (found.name_room + 1), errno.EMSGSIZE), ("a\nb", errno.EILSEQ),
                                ("a\0b", errno.EILSEQ), ("\udc80", errno.EILSEQ)]:
                with self.subTest(name), self.assertRaises(tembra.Refused) as refused:
                    kit.finish(name=name)
                self.assertEqual(refused.exception.errno, error)
            with self.assertRaises(tembra.Refused) as refused:
                kit.finish(tembra.type_number("DoorLock"))
            self.assertEqual(refused.exception.errno, errno.EINVAL)
            kit.finish(found.choices[-1])

        with tembra.Frontend() as kit:
            kit.add()
            self.assertEqual(events_of(kit, choose)[-1].outcome, tembra.Outcome.DONE)

    def test_one_operation_and_one_kit_at_a_time(self):
        with tembra.Frontend() as kit:
            self.assertFalse(kit.cancel())
            kit.add()
            for call in (kit.add, kit.hue_list, tembra.Frontend):
                with self.assertRaises(tembra.Refused) as refused:
                    call()
                self.assertEqual(refused.exception.errno, errno.EBUSY)
                self.assertEqual(refused.exception.strerror, "Something else is still under way.")
            self.assertTrue(kit.cancel())
            self.assertEqual(list(kit)[-1].reason, tembra.Reason.CANCELLED)

    def test_the_history_tells_what_happened(self):
        before = max((entry.number for entry in tembra.history()), default=0)
        tembra.log("before it all", "warning")
        with tembra.Frontend() as kit:
            kit.nest_link("a secret code")
            list(kit)
            with self.assertRaises(tembra.Refused):
                kit.hue_remove("no address")
        entries = [entry for entry in tembra.history() if entry.number > before]
        self.assertEqual([entry.number - before for entry in entries], list(range(1, len(entries) + 1)))
        self.assertEqual((entries[0].log, entries[0].level), ("before it all", "warning"))
        self.assertEqual((entries[1].call, entries[1].arguments, entries[1].error), ("nest-link", (), 0))
        self.assertEqual((entries[-1].call, entries[-1].error), ("hue-remove", errno.EINVAL))
        self.assertIsInstance(entries[-2].event, tembra.Ended)
        self.assertTrue(abs(entries[-1].wall - time.time()) < 60)
        self.assertFalse(any("a secret code" in entry.json for entry in entries))

    def test_a_cancelled_opening_leaves_no_connection_behind(self):
        for _ in range(150):  # the cancel has to meet the moment before the connection is there
            with tembra.Frontend() as kit:
                kit.add()
                time.sleep(random.uniform(0, 0.004))
                kit.cancel()
                self.assertEqual(list(kit)[-1].reason, tembra.Reason.CANCELLED)

    def test_a_server_listens(self):
        self.assertTrue(tembra.server_listens(tembra.Server.ZWAVE))
        self.assertFalse(tembra.server_listens(9))

    def test_nobody_presses(self):
        with tembra.Frontend() as kit:
            started = time.monotonic()
            kit.add()
            ended = list(kit)[-1]
            self.assertEqual((ended.outcome, ended.reason, ended.ended_in),
                             (tembra.Outcome.TIMED_OUT, tembra.Reason.NOBODY_PRESSED, tembra.Phase.BUTTON))
            self.assertLess(time.monotonic() - started, 20)

    def test_no_event_comes_while_nothing_runs(self):
        with tembra.Frontend() as kit:
            self.assertIsNone(kit.next(0))
            self.assertIsNone(kit.next(0.05))

    def test_control_c_interrupts_a_wait(self):
        with tembra.Frontend() as kit:
            threading.Timer(0.1, os.kill, (os.getpid(), signal.SIGINT)).start()
            with self.assertRaises(KeyboardInterrupt):
                kit.next()

    def test_an_argument_of_a_wrong_type_is_named(self):
        with tembra.Frontend() as kit:
            for call, words in [
                    (lambda: kit.finish("Siren"), "a device type is a number, not str: 'Siren'"),
                    (lambda: kit.finish(1.5), "a device type is a number, not float: 1.5"),
                    (lambda: kit.finish(name=7), "a text is needed here, not int: 7"),
                    (lambda: kit.reset("all"), "what to reset is a number, not str: 'all'"),
                    (lambda: kit.nest_link(b"code"), "a text is needed here, not bytes: b'code'"),
                    (lambda: kit.hue_add_bridge("02:a1:b2:0c:00:01", "60"), "the time is a number, not str: '60'"),
                    (lambda: tembra.Frontend(role="web"), "a role is a number, not str: 'web'")]:
                with self.subTest(words), self.assertRaises(TypeError) as raised:
                    call()
                self.assertEqual(str(raised.exception), words)

    def test_a_number_that_c_would_cut_is_refused(self):
        with tembra.Frontend() as kit:
            for call in (lambda: kit.hue_add_bridge("02:a1:b2:0c:00:01", 2**32 + 60), lambda: kit.finish(2**32 + 43)):
                with self.assertRaises(tembra.Refused) as refused:
                    call()
                self.assertEqual(refused.exception.errno, errno.EINVAL)

    def test_a_closed_kit_refuses(self):
        kit = tembra.Frontend()
        kit.close()
        kit.close()
        with self.assertRaises(ValueError):
            kit.add()

    def test_bridges_are_found(self):
        with tembra.Frontend() as kit:
            kit.hue_discover()
            found = [event for event in kit if isinstance(event, tembra.Bridges)]
            self.assertEqual([bridge.mac for bridge in found[0].bridges], ["02:a1:b2:0c:00:01"])


class Asynchronous(WithRouter):
    def test_two_tasks_go_on_beside_an_add(self):
        async def add():
            ticks = 0

            async def tick():
                nonlocal ticks
                while True:
                    ticks += 1
                    await asyncio.sleep(0.001)

            ticking = asyncio.create_task(tick())
            with tembra.Frontend() as kit:
                kit.add()
                async for event in kit:
                    if isinstance(event, tembra.Waiting):
                        press = await asyncio.create_subprocess_exec("tembra-sim", "press", "zb-tilt",
                                                                     stdout=subprocess.DEVNULL)
                        await press.wait()
                    elif isinstance(event, tembra.Found):
                        kit.finish()
            ticking.cancel()
            return event, ticks

        ended, ticks = asyncio.run(add())
        self.assertEqual(ended.outcome, tembra.Outcome.DONE)
        self.assertGreater(ticks, 3)
        self.assertEqual([device.name for device in tembra.devices()], ["Tilt Sensor #1"])

    def test_a_wait_can_be_limited(self):
        async def wait():
            with tembra.Frontend() as kit:
                with self.assertRaises(asyncio.TimeoutError):
                    await asyncio.wait_for(kit.next_async(), 0.05)
                kit.nest_status()
                return [event async for event in kit]

        account, ended = asyncio.run(wait())
        self.assertFalse(account.linked)
        self.assertEqual(ended.outcome, tembra.Outcome.DONE)


class Watching(WithRouter):
    PATH = "/tmp/watching/front-end"

    def test_another_front_end_is_watched_and_cancelled(self):
        with tembra.Frontend(program="kiosk", role=1, watch_path=self.PATH) as kit:
            self.assertIsNone(tembra.holder(self.PATH))
            kit.add()
            self.assertIsInstance(kit.next(), tembra.Waiting)
            holder = tembra.holder(self.PATH)
            self.assertEqual((holder.program, holder.role, holder.pid, holder.operation, holder.phase),
                             ("kiosk", 1, os.getpid(), "add", "button"))
            with tembra.Watch(self.PATH) as watch:
                self.assertIn('"holder"', watch.next())
                self.assertIsNone(watch.next(0.01))
                watch.cancel()
                [ended] = [tembra.event_from_json(line) for line in watch]
                self.assertEqual(ended.reason, tembra.Reason.CANCELLED)
                with self.assertRaises(ConnectionResetError):
                    watch.next()

    def test_the_flight_recorder_comes_without_blocking_the_loop(self):
        async def lines():
            with tembra.Frontend(watch_path=self.PATH) as kit:
                kit.add()
                await kit.next_async()
                with tembra.Watch(self.PATH) as watch:
                    watch.history()
                    async for line in watch:
                        if '"entry":' in line:
                            return line

        self.assertIsNotNone(asyncio.run(asyncio.wait_for(lines(), 10)))

    def test_what_cannot_be_watched_says_why(self):
        for path, error in [(self.PATH, errno.ENOENT), ("/tmp/front-end", errno.EACCES), ("front-end", errno.EINVAL),
                            ("/tmp/a\0b", errno.EINVAL)]:
            with self.subTest(path), self.assertRaises(OSError) as raised:
                tembra.Watch(path)
            self.assertEqual(raised.exception.errno, error)


LOCKER = """import fcntl, sys
with open("/tmp/ddb", "a") as database:
    fcntl.lockf(database, fcntl.LOCK_EX)
    print("locked", flush=True)
    sys.stdin.read()
"""


class LockedDatabase(unittest.TestCase):
    def setUp(self):
        self.locker = subprocess.Popen([sys.executable, "-c", LOCKER], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(DATABASE.unlink)
        self.addCleanup(self.release)
        self.locker.stdout.readline()

    def release(self):
        if self.locker.returncode is None:
            self.locker.communicate()

    def test_the_loop_goes_on_while_the_devices_are_listed(self):
        async def list_devices():
            with tembra.Frontend() as kit:
                kit.devices()
                with self.assertRaises(asyncio.TimeoutError):
                    await asyncio.wait_for(kit.next_async(), 0.2)
                self.release()
                return [event async for event in kit]

        listed, ended = asyncio.run(list_devices())
        self.assertEqual((listed.devices, ended.outcome), ((), tembra.Outcome.DONE))

    def test_a_cancelled_list_ends_at_once(self):
        kit = tembra.Frontend()
        self.addCleanup(kit.close)
        self.addCleanup(self.release)
        kit.devices()
        self.assertIsNone(kit.next(0.1))
        kit.cancel()
        ended = kit.next(1)
        self.assertEqual(ended.outcome, tembra.Outcome.CANCELLED)
        self.assertEqual(kit.state().phase, tembra.Phase.CLOSING)


class Database(unittest.TestCase):
    def list_devices(self, **where):
        return subprocess.run([sys.executable, "-m", "tembra", "devices"], text=True, stderr=subprocess.PIPE,
                              **{"stdout": subprocess.PIPE, **where})

    def tearDown(self):
        DATABASE.unlink(missing_ok=True)

    def test_none_has_no_devices(self):
        DATABASE.unlink(missing_ok=True)
        self.assertEqual((self.list_devices().returncode, self.list_devices().stdout), (0, ""))

    def test_a_damaged_one_is_an_error(self):
        DATABASE.write_bytes(bytes(range(256)) * 20)
        with self.assertRaises(OSError) as raised:
            tembra.devices()
        self.assertEqual(raised.exception.errno, errno.EBADMSG)
        self.assertEqual((self.list_devices().returncode, self.list_devices().stderr), (1, "tembra: Bad message\n"))


class Module(WithRouter):
    def test_lists_the_devices(self):
        with tembra.Frontend() as kit:
            kit.add()
            events_of(kit, lambda kit, found: kit.finish(name="Plug \N{DEGREE SIGN}"))
        listing = [sys.executable, "-m", "tembra", "devices"]
        said = subprocess.run(listing, text=True, stdout=subprocess.PIPE, check=True).stdout
        self.assertRegex(said, "^1 +BinarySwitch +Z-Wave +2 +Plug °\n$")
        with open("/dev/full", "w") as full:
            said = subprocess.run(listing, text=True, stdout=full, stderr=subprocess.PIPE)
        self.assertEqual((said.returncode, said.stderr), (1, "tembra: No space left on device\n"))
