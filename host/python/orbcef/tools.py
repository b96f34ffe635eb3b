"""The services that a host gives to the module, ``_orbceftools_c``.

Override the methods that matter. They come on the threads that ``orbceftools.h`` tells, several at
once; texts are ``str``, ``None`` is a null result.
"""

from __future__ import annotations

import ctypes
import json
import os
import tempfile
import threading
from collections.abc import Mapping
from typing import Any, Callable, Optional

from . import _abi
from ._callbacks import guarded
from .main_thread import MainThread
from .records import encode, new_record, read_text

RECORD_NONE = 0
RECORD_CAPTURE = 2
RECORD_REPLAY = 3

# Tables that were given to the module, which keeps their functions for the life of the process.
_given: list["Tools"] = []


class Tools:
    """A host with an environment, preferences and settings in dictionaries, and one queue."""

    def __init__(
        self,
        main_thread: MainThread,
        *,
        environment: Optional[Mapping[str, str]] = None,
        language: str = "English",
        release_level: int = 0,
        record_mode: int = RECORD_NONE,
        temp_directory: Optional[str] = None,
        dispatch_on_main_thread: bool = True,
    ) -> None:
        self.main_thread = main_thread
        self.language: Optional[str] = language
        self.release_level = release_level
        self.record_mode = record_mode
        self.temp_directory = temp_directory or tempfile.gettempdir()
        self.dispatch_on_main_thread = dispatch_on_main_thread
        self.module_map = ""
        #: Local files by the URL that they stand for in record and replay.
        self.remap: dict[str, str] = {}
        #: JavaScript expressions by store and key.
        self.preferences: dict[tuple[str, str], str] = {}
        self.settings: dict[tuple[str, str], int] = {}
        self.sys_settings: dict[tuple[str, str], str] = {}
        #: Texts by catalogue and key.
        self.catalogue: dict[tuple[str, str], str] = {}
        #: Exceptions of overridden methods; the module got the neutral value.
        self.failures: list[BaseException] = []
        #: Number of calls of each slot by its name.
        self.calls: dict[str, int] = {}
        for name, value in (environment or {}).items():
            self.put_env(name, value)
        self._lock = threading.Lock()
        # The last text lent to a thread under a name. By the system's number of the thread, since
        # Python forgets a thread of the engine, and what is local to it, as soon as a callback
        # returns.
        self._lent: dict[tuple[int, str], Any] = {}
        self.table = self._make_table()
        _given.append(self)

    # What a subclass may override.

    def on_main_thread(self) -> bool:
        return self.main_thread.is_current()

    def get_env(self, name: str) -> Optional[str]:
        return os.environ.get(name)

    def put_env(self, name: str, value: str) -> bool:
        os.environ[name] = value
        return True

    def compute_lang(self) -> Optional[str]:
        return self.language

    def get_release_level(self) -> int:
        return self.release_level

    def build_catalog_message(self, catalog: str, key: str) -> Optional[str]:
        return self.catalogue.get((catalog, key))

    def get_temp_directory(self) -> Optional[str]:
        return self.temp_directory

    def create_directory(self, path: str) -> bool:
        os.makedirs(path, exist_ok=True)
        return True

    def get_record_mode(self) -> int:
        return self.record_mode

    def get_json_value(self, text: str, keys: list[str]) -> Optional[dict[str, str]]:
        """The members ``keys`` of the object in ``text``; ``None`` if it is not an object."""
        try:
            value = json.loads(text)
        except ValueError:
            return None
        if not isinstance(value, dict):
            return None
        return {
            key: value[key] if isinstance(value[key], str) else json.dumps(value[key])
            for key in keys
            if key in value
        }

    def get_json_module_map(self) -> Optional[str]:
        return self.module_map

    def remap_url(self, url: str) -> Optional[str]:
        return self.remap.get(url)

    def save_in_preference(self, store: str, key: str, value: str) -> Optional[str]:
        """``None`` or "" on success, else a JavaScript expression."""
        self.preferences[store, key] = value
        return None

    def read_from_preferences(self, store: str, key: str) -> Optional[str]:
        return self.preferences.get((store, key))

    def read_from_sys_settings(self, section: str, key: str) -> Optional[str]:
        return self.sys_settings.get((section, key))

    def read_from_settings(self, file: str, key: str) -> Optional[int]:
        return self.settings.get((file, key))

    def post_task_on_main_thread(self, task: Callable[[], None]) -> bool:
        return self.main_thread.post(task)

    def should_dispatch_events_on_main_thread(self) -> bool:
        return self.dispatch_on_main_thread

    # The C side of each of them.

    def _make_table(self) -> _abi.CTools:
        table = _abi.CTools()
        slots: dict[str, Callable[..., Any]] = {
            "on_main_thread": lambda: self.on_main_thread(),
            "get_env": lambda name: self._lend("env", self.get_env(_text(name))),
            "put_env": self._put_env,
            "compute_lang": lambda: self._lend("lang", self.compute_lang()),
            "get_release_level": lambda: self.get_release_level(),
            "build_catalog_message": lambda catalog, key: new_record(
                self.build_catalog_message(_text(catalog), _text(key))
            ),
            "get_temp_directory": lambda: new_record(self.get_temp_directory()),
            "create_directory": lambda path: self.create_directory(read_text(path) or ""),
            "is_record_capture": lambda: self.get_record_mode() == RECORD_CAPTURE,
            "is_record_replay": lambda: self.get_record_mode() == RECORD_REPLAY,
            "get_record_mode": lambda: self.get_record_mode(),
            "get_json_value": self._get_json_value,
            "get_json_module_map": lambda: new_record(self.get_json_module_map()),
            "remap_url": lambda url: new_record(self.remap_url(read_text(url) or "")),
            "save_in_preference": lambda store, key, value: new_record(
                self.save_in_preference(_text(store), _text(key), read_text(value) or "")
            ),
            "read_from_preferences": lambda store, key: new_record(
                self.read_from_preferences(_text(store), _text(key))
            ),
            "read_from_sys_settings": lambda section, key: new_record(
                self.read_from_sys_settings(_text(section), _text(key))
            ),
            "read_from_settings": self._read_from_settings,
            "post_task_on_main_thread": self._post_task,
            "should_dispatch_events_on_main_thread": lambda: (
                self.should_dispatch_events_on_main_thread()
            ),
        }
        for field in _abi.CTools._fields_:
            name, slot_type = field[0], field[1]
            function = guarded(self.failures, self._counted(name, slots[name]))
            setattr(table, name, slot_type(function))
        return table

    def _counted(self, name: str, function: Callable[..., Any]) -> Callable[..., Any]:
        self.calls[name] = 0

        def call(*arguments: Any) -> Any:
            with self._lock:
                self.calls[name] += 1
            return function(*arguments)

        return call

    def _lend(self, name: str, text: Optional[str]) -> Optional[int]:
        """A text that stays valid until the next one of this name on this thread."""
        if text is None:
            return None
        buffer = ctypes.create_string_buffer(encode(text))
        with self._lock:
            self._lent[threading.get_native_id(), name] = buffer
        return ctypes.addressof(buffer)

    def _put_env(self, assignment: bytes) -> int:
        name, equals, value = _text(assignment).partition("=")
        return 0 if name and equals and self.put_env(name, value) else -1

    def _get_json_value(self, text: Any, keys: Any, values: Any, count: int) -> int:
        names = [read_text(keys[i]) or "" for i in range(count)]
        members = self.get_json_value(read_text(text) or "", names)
        if members is None:
            return 0
        for i, name in enumerate(names):
            if name in members:
                values[i] = ctypes.cast(new_record(members[name]) or 0, _abi.Text)
        return 1

    def _read_from_settings(self, file: bytes, key: bytes, value: Any) -> int:
        number = self.read_from_settings(_text(file), _text(key))
        if number is None:
            return 0
        value[0] = number
        return 1

    def _post_task(self, task: Any, data: Optional[int]) -> int:
        # ctypes reuses the memory of the argument; the function itself stays valid.
        function = _abi.TASK(ctypes.cast(task, ctypes.c_void_p).value)  # type: ignore[arg-type]
        return int(self.post_task_on_main_thread(lambda: function(data)))


def _text(text: Optional[bytes]) -> str:
    return "" if text is None else text.decode("utf-8", "replace")
