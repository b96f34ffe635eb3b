"""Checks the Python binding against the C tables, without a module.

    test_python_binding.py LAYOUT_TEST

The tables that Python makes are called here the way the module calls them: through their function
pointers, and from other threads.
"""

from __future__ import annotations

import ctypes
import gc
import os
import subprocess
import sys
import threading
import unittest
from pathlib import Path
from typing import Any, Callable, Optional

import tap

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "host" / "python"))

import orbcef  # noqa: E402
from orbcef import _abi, records  # noqa: E402

TABLES = {(table.__doc__ or "").split("``")[1]: table for table in _abi.SIZES}


def on_other_thread(function: Callable[[], Any]) -> Any:
    """The result of ``function``, run on another thread, as the engine's calls come."""
    results: list[Any] = []
    thread = threading.Thread(target=lambda: results.append(function()))
    thread.start()
    thread.join()
    return results[0]


def take(address: Optional[int]) -> Optional[str]:
    """Text of a record that Python handed over, freed as the module frees it."""
    return records.take_text(ctypes.cast(address or 0, _abi.Text))


class Layout(unittest.TestCase):
    program = ""

    def test_every_member_stands_where_c_has_it(self) -> None:
        listing = subprocess.run(
            [self.program, "list"], check=True, capture_output=True, text=True
        ).stdout
        members: dict[str, list[tuple[str, int, int]]] = {}
        for line in listing.splitlines():
            table, name, offset, size = line.split()
            members.setdefault(table, []).append((name, int(offset), int(size)))
        members.pop("orbcefrect_c")  # Crosses as four numbers.
        self.assertEqual(sorted(members), sorted(TABLES))
        for name, table in TABLES.items():
            mine = [
                (field[0], getattr(table, field[0]).offset, getattr(table, field[0]).size)
                for field in table._fields_
            ]
            self.assertEqual(mine, members[name], name)


class Records(unittest.TestCase):
    def test_a_text_goes_over_and_is_freed_by_its_own_function(self) -> None:
        for text in ("", "a", "zero \0 inside", "snow \u2603"):
            self.assertEqual(take(records.new_record(text)), text)

    def test_an_empty_text_has_no_data(self) -> None:
        record = ctypes.cast(records.new_record("") or 0, _abi.Text)
        self.assertIsNone(record.contents.data)
        self.assertEqual(record.contents.length, 0)
        record.contents.free(record)

    def test_no_text_is_null(self) -> None:
        self.assertIsNone(records.new_record(None))
        self.assertIsNone(records.Lent(None).pointer)

    def test_a_lent_text_can_be_read(self) -> None:
        lent = records.Lent("\u00fc\0x")
        gc.collect()
        self.assertEqual(records.read_bytes(lent.pointer), b"\xc3\xbc\0x")

    def test_headers_keep_order_equal_keys_and_null_values(self) -> None:
        pairs = [("a", "1"), ("a", None), ("b", "")]
        lent = records.LentHeaders(pairs)
        gc.collect()
        self.assertEqual(records.read_headers(lent.pointer), pairs)

    def test_no_headers_are_null_arrays(self) -> None:
        lent = records.LentHeaders([])
        self.assertFalse(lent.record.keys)
        self.assertEqual(records.read_headers(lent.pointer), [])


class HostTools(unittest.TestCase):
    def setUp(self) -> None:
        self.main = orbcef.MainThread()
        self.tools = orbcef.Tools(self.main, language="German", record_mode=orbcef.RECORD_REPLAY)
        self.table = self.tools.table

    def test_every_slot_is_filled(self) -> None:
        for field in _abi.CTools._fields_:
            self.assertTrue(getattr(self.table, field[0]), field[0])

    def test_the_main_thread_is_known(self) -> None:
        self.assertEqual(self.table.on_main_thread(), 1)
        self.assertEqual(on_other_thread(lambda: self.table.on_main_thread()), 0)

    def test_the_environment_is_the_process_s(self) -> None:
        self.assertEqual(self.table.put_env(b"ORBCEF_BINDING_TEST=a=b"), 0)
        self.addCleanup(os.environ.pop, "ORBCEF_BINDING_TEST")
        self.assertEqual(os.environ["ORBCEF_BINDING_TEST"], "a=b")
        self.assertEqual(ctypes.string_at(self.table.get_env(b"ORBCEF_BINDING_TEST")), b"a=b")
        self.assertIsNone(self.table.get_env(b"ORBCEF_BINDING_UNSET"))
        self.assertNotEqual(self.table.put_env(b"=x"), 0)
        self.assertNotEqual(self.table.put_env(b"name"), 0)

    def test_an_empty_variable_is_set(self) -> None:
        os.environ["ORBCEF_BINDING_TEST"] = ""
        self.addCleanup(os.environ.pop, "ORBCEF_BINDING_TEST")
        self.assertEqual(ctypes.string_at(self.table.get_env(b"ORBCEF_BINDING_TEST")), b"")

    def test_language_and_modes(self) -> None:
        self.assertEqual(ctypes.string_at(self.table.compute_lang()), b"German")
        self.assertEqual(self.table.get_record_mode(), 3)
        self.assertEqual(self.table.is_record_replay(), 1)
        self.assertEqual(self.table.is_record_capture(), 0)

    def test_preferences_make_the_round_trip(self) -> None:
        value = records.Lent("{a: 1}")
        self.assertIsNone(self.table.read_from_preferences(b"store", b"key"))
        self.assertIsNone(self.table.save_in_preference(b"store", b"key", value.pointer))
        self.assertEqual(take(self.table.read_from_preferences(b"store", b"key")), "{a: 1}")

    def test_a_missing_setting_leaves_the_value(self) -> None:
        value = ctypes.c_int32(-1)
        self.assertEqual(self.table.read_from_settings(b"f", b"k", ctypes.byref(value)), 0)
        self.assertEqual(value.value, -1)
        self.tools.settings["f", "k"] = 2057
        self.assertEqual(self.table.read_from_settings(b"f", b"k", ctypes.byref(value)), 1)
        self.assertEqual(value.value, 2057)

    def _members(self, text: str, *keys: str) -> tuple[int, list[Optional[str]]]:
        lent = records.Lent(text)
        names = [records.Lent(key) for key in keys]
        array = _abi.Text * len(keys)
        key_array = array(*[name.pointer or _abi.Text() for name in names])
        value_array = array()
        known = self.table.get_json_value(lent.pointer, key_array, value_array, len(keys))
        return known, [records.take_text(value) for value in value_array]

    def test_json_members(self) -> None:
        self.assertEqual(
            self._members('{"a": "x", "b": {"c": [1]}, "n": 2}', "a", "b", "n", "z"),
            (1, ["x", '{"c": [1]}', "2", None]),
        )
        self.assertEqual(self._members("[1]", "a"), (0, [None]))
        self.assertEqual(self._members("no json", "a"), (0, [None]))

    def test_tasks_run_on_the_main_thread_in_their_order(self) -> None:
        ran: list[tuple[Optional[int], bool]] = []
        task = _abi.TASK(lambda data: ran.append((data, self.main.is_current())))

        def post() -> list[int]:
            return [self.table.post_task_on_main_thread(task, data) for data in (1, 2, 3)]

        self.assertEqual(on_other_thread(post), [1, 1, 1])
        self.assertEqual(ran, [])
        self.assertTrue(self.main.run_until(lambda: len(ran) == 3, 5))
        self.assertEqual(ran, [(1, True), (2, True), (3, True)])
        self.main.close()
        self.assertEqual(self.table.post_task_on_main_thread(task, 4), 0)

    def test_an_exception_is_kept_and_the_module_gets_null(self) -> None:
        class Broken(orbcef.Tools):
            def get_temp_directory(self) -> Optional[str]:
                raise OSError("broken")

        tools = Broken(self.main)
        self.assertIsNone(tools.table.get_temp_directory())
        self.assertEqual([str(failure) for failure in tools.failures], ["broken"])


class ViewEvents(unittest.TestCase):
    def test_events_are_recorded_on_any_thread(self) -> None:
        events = orbcef.Events()
        table = events.pointer
        url = records.Lent("http://x/")
        on_other_thread(lambda: table.contents.on_address_changed(table, url.pointer))
        event = events.wait_for_kind(orbcef.AddressChanged, 1)
        self.assertEqual(event.url, "http://x/")
        self.assertNotEqual(event.thread, threading.get_native_id())
        events.drop()

    def test_strings_are_an_array_of_pointers(self) -> None:
        events = orbcef.Events()
        table = events.pointer
        texts = [records.Lent(text) for text in ("a", "", "b\0c")]
        array = (_abi.Text * 3)(*[text.pointer or _abi.Text() for text in texts])
        table.contents.on_strings_received(table, array, 3)
        self.assertEqual(events.all(orbcef.StringsReceived)[0].strings, ("a", "", "b\0c"))
        events.drop()

    def test_a_wait_on_the_main_thread_runs_its_tasks(self) -> None:
        main = orbcef.MainThread()
        events = orbcef.Events(main)
        table = events.pointer
        main.post(lambda: table.contents.on_zoom_changed(table, 0.5))
        self.assertEqual(events.wait_for_kind(orbcef.ZoomChanged, 5).change, 0.5)
        events.drop()

    def test_a_wait_ends_with_what_came_instead(self) -> None:
        events = orbcef.Events()
        table = events.pointer
        table.contents.on_state_changed(table, 1)
        with self.assertRaisesRegex(TimeoutError, "state=1"):
            events.wait_for(orbcef.is_event(orbcef.StateChanged, state=2), 0.01)
        mark = events.mark()
        with self.assertRaisesRegex(TimeoutError, "nothing"):
            events.wait_for(orbcef.is_event(orbcef.StateChanged, state=1), 0.01, since=mark)
        events.drop()

    def test_slot_10_is_null_and_the_others_are_filled(self) -> None:
        events = orbcef.Events()
        for field in _abi.CBrowserEvents._fields_:
            filled = bool(getattr(events.table, field[0]))
            self.assertEqual(filled, field[0] not in ("instance", "reserved10"), field[0])
        events.drop()

    def test_the_table_lives_until_the_module_releases_it(self) -> None:
        before = orbcef.alive_tables()
        events = orbcef.Events()
        address = ctypes.addressof(events.table)
        events.pointer.contents.add_ref(events.pointer)
        events.drop()
        del events
        gc.collect()
        self.assertEqual(orbcef.alive_tables(), before + 1)
        table = ctypes.cast(address, ctypes.POINTER(_abi.CBrowserEvents))
        on_other_thread(lambda: table.contents.on_v8_context(table, 1))
        on_other_thread(lambda: table.contents.release(table))
        self.assertEqual(orbcef.alive_tables(), before)


class HostSession(unittest.TestCase):
    def test_a_user_without_a_session(self) -> None:
        session = orbcef.Session()
        table = session.pointer
        url = records.Lent("http://x/")
        self.assertEqual(table.contents.is_authenticated(table), 0)
        self.assertIsNone(table.contents.get_turnstile_url(table))
        self.assertIsNone(table.contents.get_transient_ticket_url(table, url.pointer))
        session.drop()

    def test_an_overridden_session(self) -> None:
        class WithTicket(orbcef.Session):
            def is_authenticated(self) -> bool:
                return True

            def get_transient_ticket_url(self, url: str) -> Optional[str]:
                return url + "?ticket=1"

        session = WithTicket()
        table = session.pointer
        url = records.Lent("http://x/")
        self.assertEqual(table.contents.is_authenticated(table), 1)
        ticket = table.contents.get_transient_ticket_url(table, url.pointer)
        self.assertEqual(take(ticket), "http://x/?ticket=1")
        session.drop()


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    Layout.program = sys.argv[1]
    sys.exit(tap.run(Layout, Records, HostTools, ViewEvents, HostSession))
