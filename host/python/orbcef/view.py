"""A web view: the 60 slots of ``orbcefbrowser_c``; threads and meanings as in its header."""

from __future__ import annotations

import ctypes
from collections.abc import Sequence
from dataclasses import dataclass
from typing import Any, Callable, Optional

from . import _abi
from .records import Lent, TextLike, read_text, take_text

POPUP_BLOCK = 0
POPUP_ALLOW = 1
POPUP_EXTERNAL = 2
POPUP_EXTERNAL_TICKET = 3


@dataclass(frozen=True)
class ReplayResult:
    status: int
    message: Optional[str]


def _flag(name: str, text: str) -> property:
    def read(self: "View") -> bool:
        return bool(self._call("get_" + name))

    def write(self: "View", value: bool) -> None:
        self._call("set_" + name, int(value))

    return property(read, write, doc=text)


def _text(name: str, text: str) -> property:
    def read(self: "View") -> Optional[str]:
        return take_text(self._call("get_" + name))

    def write(self: "View", value: Optional[TextLike]) -> None:
        self._call_text("set_" + name, value)

    return property(read, write, doc=text)


def _rectangle(rect: Optional[Sequence[int]]) -> Any:
    return None if rect is None else (ctypes.c_int32 * 4)(*rect)


class View:
    """Holds one reference of the table. ``close`` and ``release`` end it; nothing else does."""

    def __init__(self, table: Any) -> None:
        self.table: Any = table

    flag0 = _flag("flag0", "A mark of the host's own.")
    flag1 = _flag("flag1", "A mark of the host's own.")
    flag3 = _flag("flag3", "A mark of the host's own.")
    javascript_enabled = _flag("javascript_enabled", "Pages may run scripts.")
    history_enabled = _flag("history_enabled", "The user may go back and forward.")
    reload_enabled = _flag("reload_enabled", "The user may reload.")
    zoom_by_page_enabled = _flag("zoom_by_page_enabled", "The page may change its zoom.")
    forward_console = _flag("forward_console", "Console lines come as events.")
    local_files_allowed = _flag("local_files_allowed", "Pages may navigate to file: URLs.")
    external_navigation_allowed = _flag(
        "external_navigation_allowed", "Navigation may leave the home URL's origin."
    )
    js_dialogs_allowed = _flag("js_dialogs_allowed", "Alert, confirm and prompt are shown.")
    download_dir = _text("download_dir", "Directory of downloads; empty asks the user.")
    error_url = _text("error_url", "Page shown when a main document fails to connect.")
    home_url = _text("home_url", "URL that Home leads to.")

    @property
    def popup_mode(self) -> int:
        """One of the ``POPUP_`` values."""
        return int(self._call("get_popup_mode"))

    @popup_mode.setter
    def popup_mode(self, mode: int) -> None:
        self._call("set_popup_mode", mode)

    @property
    def current_url(self) -> Optional[str]:
        return take_text(self._call("get_current_url"))

    @property
    def window(self) -> Optional[int]:
        """The view's own native window; ``None`` before it exists and after ``close``."""
        window: Optional[int] = self._call("get_window")
        return window

    def add_ref(self) -> None:
        self._call("add_ref")

    def release(self) -> None:
        self._call("release")

    def set_visible(self, show: bool) -> None:
        self._call("set_visible", int(show))

    def create(
        self, parent: Optional[int], rect: Optional[Sequence[int]], url: Optional[TextLike]
    ) -> None:
        """Creates the engine browser later; ``rect`` is x, y, width, height."""
        text = Lent(url)
        self._call("create", parent, _rectangle(rect), text.pointer)

    def close(self, force: bool = True) -> None:
        self._call("close", int(force))

    def load_url(self, url: Optional[TextLike]) -> None:
        self._call_text("load_url", url)

    def can_go_back(self) -> bool:
        return bool(self._call("can_go_back"))

    def go_back(self) -> None:
        self._call("go_back")

    def can_go_forward(self) -> bool:
        return bool(self._call("can_go_forward"))

    def go_forward(self) -> None:
        self._call("go_forward")

    def reload(self) -> None:
        self._call("reload")

    def stop_load(self) -> None:
        self._call("stop_load")

    def copy(self) -> None:
        self._call("copy")

    def cut(self) -> None:
        self._call("cut")

    def paste(self) -> None:
        self._call("paste")

    def delete_selection(self) -> None:
        self._call("delete_selection")

    def select_all(self) -> None:
        self._call("select_all")

    def undo(self) -> None:
        self._call("undo")

    def redo(self) -> None:
        self._call("redo")

    def execute_javascript(
        self, code: Optional[TextLike], url: Optional[TextLike] = "", line: int = 1
    ) -> None:
        """Runs a script in the main frame, or keeps it until the page has loaded."""
        script, source = Lent(code), Lent(url)
        self._call("execute_javascript", script.pointer, source.pointer, line)

    def set_zoom_level(self, level: float) -> None:
        self._call("set_zoom_level", level)

    def change_zoom_level(self, delta: float) -> None:
        self._call("change_zoom_level", delta)

    def show_dev_tools(self) -> None:
        self._call("show_dev_tools")

    def close_dev_tools(self) -> None:
        self._call("close_dev_tools")

    def notify_move_or_resize(self) -> None:
        self._call("notify_move_or_resize")

    def set_bounds(self, rect: Optional[Sequence[int]]) -> None:
        self._call("set_bounds", _rectangle(rect))

    def execute_replay(self, interaction: Optional[TextLike]) -> Optional[ReplayResult]:
        """Replays one interaction and blocks until it has run; ``None`` without an object."""
        text = Lent(interaction)
        record = self._call("execute_replay", text.pointer)
        if not record:
            return None
        result = ReplayResult(record.contents.status, read_text(record.contents.message))
        record.contents.free(record)
        return result

    def _call(self, slot: str, *arguments: Any) -> Any:
        function: Callable[..., Any] = getattr(self.table.contents, slot)
        return function(self.table, *arguments)

    def _call_text(self, slot: str, text: Optional[TextLike]) -> Any:
        lent = Lent(text)
        return self._call(slot, lent.pointer)
