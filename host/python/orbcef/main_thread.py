"""The host's main thread: its tasks, and the one loop that all waiting on it goes through."""

from __future__ import annotations

import collections
import os
import select
import socket
import sys
import threading
import time
from typing import Any, Callable, Optional

Task = Callable[[], None]


def scaled(seconds: float) -> float:
    """A limit times ``ORBCEF_TIMEOUT_FACTOR``, for slow machines."""
    return seconds * float(os.environ.get("ORBCEF_TIMEOUT_FACTOR", "1"))


class _DescriptorWaiter:
    """How the main thread waits: for descriptors, and for ``wake`` on any thread."""

    def __init__(self) -> None:
        self._reader, self._writer = socket.socketpair()
        self._reader.setblocking(False)
        self._writer.setblocking(False)

    def wake(self) -> None:
        try:
            self._writer.send(b"\0")
        except (BlockingIOError, OSError):
            pass  # A full buffer wakes the reader as well.

    def wait(self, limit: Optional[float], descriptors: list[int]) -> None:
        reader = self._reader.fileno()
        ready, _, _ = select.select([reader, *descriptors], [], [], limit)
        if reader in ready:
            try:
                while self._reader.recv(4096):
                    pass
            except BlockingIOError:
                pass

    def pump(self) -> None:
        """Nothing comes but by descriptors."""


def _make_waiter() -> Any:
    if sys.platform == "win32":
        from .win32 import MessageWaiter

        return MessageWaiter()
    return _DescriptorWaiter()


class MainThread:
    """The thread that constructs this object; one object in a process.

    ``post``, ``wake`` and ``is_current`` may be called on any thread, the rest on the main thread.
    """

    def __init__(self) -> None:
        self._thread = threading.get_ident()
        self._lock = threading.Lock()
        self._tasks: collections.deque[Task] = collections.deque()
        self._closed = False
        self._waiter = _make_waiter()
        self._pumps: dict[int, Task] = {}

    def is_current(self) -> bool:
        return threading.get_ident() == self._thread

    def post(self, task: Task) -> bool:
        """Runs ``task`` later on the main thread; ``False`` once the queue is closed."""
        with self._lock:
            if self._closed:
                return False
            self._tasks.append(task)
        self.wake()
        return True

    def close(self) -> None:
        """Runs what was posted, and takes no more."""
        self.run_pending()
        with self._lock:
            self._closed = True

    def wake(self) -> None:
        """Ends the wait of ``run_until``, which then asks its predicate again."""
        self._waiter.wake()

    def watch(self, descriptor: int, pump: Task) -> None:
        """Calls ``pump`` in each turn, and when ``descriptor`` can be read."""
        self._pumps[descriptor] = pump

    def unwatch(self, descriptor: int) -> None:
        self._pumps.pop(descriptor, None)

    def run_pending(self) -> None:
        """Runs all pumps and the tasks that wait now."""
        self._waiter.pump()
        for pump in list(self._pumps.values()):
            pump()
        with self._lock:
            tasks, self._tasks = self._tasks, collections.deque()
        while tasks:
            tasks.popleft()()

    def run_until(self, done: Callable[[], bool], timeout: float = 10.0) -> bool:
        """Runs the loop until ``done()``; ``False`` after ``scaled(timeout)`` seconds."""
        if not self.is_current():
            raise RuntimeError("run_until belongs to the main thread")
        deadline = time.monotonic() + scaled(timeout)
        while True:
            self.run_pending()
            if done():
                return True
            left = deadline - time.monotonic()
            if left <= 0:
                return False
            self._waiter.wait(left, list(self._pumps))
