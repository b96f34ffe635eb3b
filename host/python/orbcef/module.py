"""The loaded module: its factory and its global table."""

from __future__ import annotations

import ctypes
import os
import sys
from pathlib import Path
from types import TracebackType
from typing import Any, Optional, Union

from . import _abi
from .events import Events
from .http import HttpRequest
from .records import Lent, TextLike
from .session import Session
from .tools import Tools
from .view import View

LIBRARY = "ORBCefWrapperMT.dll" if sys.platform == "win32" else "libORBCefWrapperMT.so"


class Refused(Exception):
    """The factory gave no table."""


class Module:
    """Loads the module of an installation root; as a context, stops the engine at the end.

    Make one in a process, on the main thread: the engine starts once.
    """

    def __init__(self, root: Union[str, Path], tools: Optional[Tools] = None) -> None:
        self.path = Path(root) / "code" / "bin" / LIBRARY
        self.library = ctypes.CDLL(os.fspath(self.path))
        self._factory = _abi.FACTORY((_abi.FACTORY_SYMBOL, self.library))
        self.tools: Optional[Tools] = None
        address = self.factory(_abi.MAJOR, _abi.MINOR, _abi.GLOBAL_TABLE)
        if not address:
            raise Refused(f"{self.path} does not fit version {_abi.MAJOR}.{_abi.MINOR}")
        self.table: Any = ctypes.cast(address, ctypes.POINTER(_abi.CGlobal))
        if tools is not None:
            self.set_tools(tools)

    def __enter__(self) -> "Module":
        return self

    def __exit__(
        self,
        kind: Optional[type[BaseException]],
        failure: Optional[BaseException],
        trace: Optional[TracebackType],
    ) -> None:
        if self.tools is not None:
            # Jobs that the module posted hold engine objects: they run before the engine stops.
            self.tools.main_thread.close()
        self.shutdown_engine()

    def factory(self, major: int, minor: int, table_name: bytes) -> Optional[int]:
        """Address that ``orbcef_pluginfactory`` answers, ``None`` for null."""
        address: Optional[int] = self._factory(major, minor, table_name)
        return address

    def marker(self) -> int:
        """What the marker function of the interface kit answers."""
        function = ctypes.CFUNCTYPE(ctypes.c_uint64)((_abi.MARKER_SYMBOL, self.library))
        return int(function())

    # The slots of the global table.

    def create_view(
        self,
        events: Optional[Events] = None,
        session: Optional[Session] = None,
        home_url: Optional[TextLike] = "",
    ) -> View:
        """``create_browser``. The first one starts the engine."""
        url = Lent(home_url)
        pointer = self.table.contents.create_browser(
            self.table,
            events.pointer if events else None,
            session.pointer if session else None,
            url.pointer,
        )
        return View(pointer)

    def create_http(self) -> HttpRequest:
        return HttpRequest(self.table.contents.create_http(self.table))

    def init_engine(self) -> None:
        self.table.contents.init_engine(self.table)

    def shutdown_engine(self) -> None:
        self.table.contents.shutdown_engine(self.table)

    def execute_subprocess(self) -> int:
        return int(self.table.contents.execute_subprocess(self.table, 0, None))

    def set_tools(self, tools: Optional[Tools]) -> None:
        self.tools = tools
        pointer = ctypes.pointer(tools.table) if tools else None
        self.table.contents.set_tools(self.table, pointer)

    def is_available(self) -> int:
        return int(self.table.contents.is_available(self.table))

    def reserved(self) -> int:
        return int(self.table.contents.reserved(self.table))
