"""What a view tells its host: ``orbcefbrowserevents_c``, recorded as values."""

from __future__ import annotations

import ctypes
import threading
from dataclasses import dataclass, field
from typing import Any, Callable, Optional, TypeVar, cast

from . import _abi
from ._callbacks import CountedTable
from .main_thread import MainThread, scaled
from .records import Lent, TextLike, read_text

STATE_CREATED = 1
STATE_DOM_READY = 2
STATE_PAGE_UNLOADED = 3


@dataclass(frozen=True)
class Event:
    """An event and the thread that it came on."""

    thread: int = field(default=0, compare=False)


@dataclass(frozen=True)
class StateChanged(Event):
    state: int = 0


@dataclass(frozen=True)
class V8Context(Event):
    created: bool = False


@dataclass(frozen=True)
class StringsReceived(Event):
    strings: tuple[str, ...] = ()


@dataclass(frozen=True)
class TitleChanged(Event):
    title: str = ""


@dataclass(frozen=True)
class AddressChanged(Event):
    url: str = ""


@dataclass(frozen=True)
class DownloadUpdated(Event):
    id: int = 0
    received: int = 0
    total: int = 0
    speed: int = 0
    complete: bool = False


@dataclass(frozen=True)
class LoadingStateChanged(Event):
    is_loading: bool = False
    url: str = ""


@dataclass(frozen=True)
class DocumentSize(Event):
    width: int = 0
    height: int = 0


@dataclass(frozen=True)
class ConsoleMessage(Event):
    message: str = ""
    source: str = ""
    line: int = 0


@dataclass(frozen=True)
class ZoomChanged(Event):
    change: float = 0.0


@dataclass(frozen=True)
class RecordData(Event):
    data: str = ""


class AuthCallback:
    """The answer to one challenge; any thread. Answering gives the reference back."""

    def __init__(self, table: Any) -> None:
        self._table: Any = ctypes.cast(table, ctypes.POINTER(_abi.CAuthCallback))
        self._table.contents.add_ref(self._table)

    def continue_with(self, user: TextLike, password: TextLike) -> None:
        name, secret = Lent(user), Lent(password)
        self._table.contents.continue_with(self._table, name.pointer, secret.pointer)
        self.release()

    def cancel(self) -> None:
        self._table.contents.cancel(self._table)
        self.release()

    def release(self) -> None:
        """Gives the reference back without an answer."""
        table, self._table = self._table, None
        if table:
            table.contents.release(table)


@dataclass(frozen=True)
class AuthCredentials(Event):
    origin: str = ""
    is_proxy: bool = False
    host: str = ""
    port: int = 0
    callback: Optional[AuthCallback] = field(default=None, compare=False)


SomeEvent = TypeVar("SomeEvent", bound=Event)
Predicate = Callable[[Event], bool]


def is_event(kind: type[Event], **values: Any) -> Predicate:
    """A predicate: an event of this kind whose fields have these values."""

    def matches(event: Event) -> bool:
        return isinstance(event, kind) and all(
            getattr(event, name) == value for name, value in values.items()
        )

    matches.__name__ = f"{kind.__name__}{values or ''}"
    return matches


class Events(CountedTable):
    """Records all events of a view. The callbacks come on the engine's threads; reading any thread.

    A subclass may override ``on_event``, which runs on the engine's thread, under the view's lock:
    it must not wait.
    """

    def __init__(self, main_thread: Optional[MainThread] = None) -> None:
        super().__init__(_abi.CBrowserEvents)
        self._main_thread = main_thread
        self._changed = threading.Condition()
        self._events: list[Event] = []
        for slot, function in self._slots().items():
            self.fill(slot, function)

    def on_event(self, event: Event) -> None:
        """Called for each event after it was recorded."""

    def all(self, kind: type[SomeEvent]) -> list[SomeEvent]:
        """All events of a kind up to now, in their order."""
        with self._changed:
            return [event for event in self._events if isinstance(event, kind)]

    def everything(self) -> list[Event]:
        with self._changed:
            return list(self._events)

    def mark(self) -> int:
        """The number of events up to now, for ``since`` of ``wait_for``."""
        with self._changed:
            return len(self._events)

    def wait_for(self, predicate: Predicate, timeout: float = 10.0, since: int = 0) -> Event:
        """The first event from ``since`` on that fits, waited for if it has not come yet.

        On the main thread the wait runs the main thread's tasks. ``TimeoutError`` tells what came
        instead.
        """
        position = since
        found: list[Event] = []

        def arrived() -> bool:
            nonlocal position
            with self._changed:
                while position < len(self._events) and not found:
                    if predicate(self._events[position]):
                        found.append(self._events[position])
                    position += 1
            return bool(found)

        if self._main_thread and self._main_thread.is_current():
            self._main_thread.run_until(arrived, timeout)
        else:
            with self._changed:
                self._changed.wait_for(arrived, scaled(timeout))
        if found:
            return found[0]
        name = getattr(predicate, "__name__", repr(predicate))
        came = "\n  ".join(map(repr, self.everything()[since:])) or "nothing"
        raise TimeoutError(f"{name} did not come in {scaled(timeout):g} s; what came:\n  {came}")

    def wait_for_kind(
        self, kind: type[SomeEvent], timeout: float = 10.0, since: int = 0, **values: Any
    ) -> SomeEvent:
        """``wait_for`` with ``is_event``, typed."""
        return cast(SomeEvent, self.wait_for(is_event(kind, **values), timeout, since))

    def _record(self, event: Event) -> None:
        with self._changed:
            self._events.append(event)
            self._changed.notify_all()
        if self._main_thread:
            self._main_thread.wake()
        self.on_event(event)

    def _slots(self) -> dict[str, Callable[..., None]]:
        def record(kind: Callable[..., Event], *values: Any) -> None:
            self._record(kind(threading.get_native_id(), *values))

        def text(value: Any) -> str:
            return read_text(value) or ""

        return {
            "on_state_changed": lambda _, state: record(StateChanged, state),
            "on_v8_context": lambda _, created: record(V8Context, bool(created)),
            "on_strings_received": lambda _, strings, count: record(
                StringsReceived, tuple(text(strings[i]) for i in range(count))
            ),
            "on_title_changed": lambda _, title: record(TitleChanged, text(title)),
            "on_address_changed": lambda _, url: record(AddressChanged, text(url)),
            "on_download_updated": lambda _, id, received, total, speed, complete: record(
                DownloadUpdated, id, received, total, speed, bool(complete)
            ),
            "on_loading_state_changed": lambda _, loading, url: record(
                LoadingStateChanged, bool(loading), text(url)
            ),
            "on_document_size": lambda _, width, height: record(DocumentSize, width, height),
            "on_console_message": lambda _, message, source, line: record(
                ConsoleMessage, text(message), text(source), line
            ),
            "on_zoom_changed": lambda _, change: record(ZoomChanged, change),
            "on_record_data": lambda _, data: record(RecordData, text(data)),
            "on_auth_credentials": lambda _, origin, proxy, host, port, callback: record(
                AuthCredentials, text(origin), bool(proxy), text(host), port, AuthCallback(callback)
            ),
        }
