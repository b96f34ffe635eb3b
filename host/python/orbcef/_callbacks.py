"""Tables that Python gives to the module: counted, alive for as long as the module holds them."""

from __future__ import annotations

import ctypes
import threading
from typing import Any, Callable

# Every table with a count above zero, by its address. The module may hold the last reference, and
# a callback that Python had collected would be called all the same.
_alive: dict[int, "CountedTable"] = {}
_lock = threading.Lock()


def guarded(failures: list[BaseException], function: Callable[..., Any]) -> Callable[..., Any]:
    """``function`` for a C caller: an exception is kept, and the caller gets zero or null."""

    def call(*arguments: Any) -> Any:
        try:
            return function(*arguments)
        except BaseException as failure:
            failures.append(failure)
            return 0

    return call


class CountedTable:
    """Base of the tables with ``add_ref`` and ``release``. Python holds the first reference."""

    def __init__(self, table_type: type[ctypes.Structure]) -> None:
        self.failures: list[BaseException] = []
        self.table = table_type()
        self._count = 1
        self._count_lock = threading.Lock()
        self.fill("add_ref", lambda _: self._add(1))
        self.fill("release", lambda _: self._add(-1))
        with _lock:
            _alive[ctypes.addressof(self.table)] = self

    def fill(self, slot: str, function: Callable[..., Any]) -> None:
        """Puts a Python function into a slot; the structure keeps the callback alive."""
        slot_type = dict((field[0], field[1]) for field in self.table._fields_)[slot]
        setattr(self.table, slot, slot_type(guarded(self.failures, function)))

    @property
    def pointer(self) -> Any:
        return ctypes.pointer(self.table)

    @property
    def references(self) -> int:
        """All references, Python's own one included until :meth:`drop`."""
        with self._count_lock:
            return self._count

    def drop(self) -> None:
        """Gives Python's own reference back; the table goes when the module's are back too."""
        self._add(-1)

    def _add(self, step: int) -> None:
        with self._count_lock:
            self._count += step
            left = self._count
        if left == 0:
            with _lock:
                _alive.pop(ctypes.addressof(self.table), None)


def alive_tables() -> int:
    """Number of tables that somebody still holds; a test of leaks asks for 0."""
    with _lock:
        return len(_alive)
