"""A plain X11 window to put views in, by libX11 through ctypes. Main thread only."""

from __future__ import annotations

import ctypes
import ctypes.util
from ctypes import POINTER, byref, c_char_p, c_int, c_long, c_uint, c_ulong, c_void_p
from typing import Any, Optional

from .main_thread import MainThread

_STRUCTURE_NOTIFY = 1 << 17
_SUBSTRUCTURE_NOTIFY = 1 << 19
_DESTROY_NOTIFY = 17
_CONFIGURE_NOTIFY = 22
_CLIENT_MESSAGE = 33
_ERROR_HANDLER = ctypes.CFUNCTYPE(c_int, c_void_p, c_void_p)


class _ClientMessage(ctypes.Structure):
    _fields_ = [
        ("type", c_int),
        ("serial", c_ulong),
        ("send_event", c_int),
        ("display", c_void_p),
        ("window", c_ulong),
        ("message_type", c_ulong),
        ("format", c_int),
        ("data", c_long * 5),
    ]


class _DestroyWindow(ctypes.Structure):
    _fields_ = [
        ("type", c_int),
        ("serial", c_ulong),
        ("send_event", c_int),
        ("display", c_void_p),
        ("event", c_ulong),
        ("window", c_ulong),
    ]


class _Configure(ctypes.Structure):
    _fields_ = [
        *_DestroyWindow._fields_,
        ("x", c_int),
        ("y", c_int),
        ("width", c_int),
        ("height", c_int),
    ]


class _Event(ctypes.Union):
    _fields_ = [
        ("type", c_int),
        ("client", _ClientMessage),
        ("destroyed", _DestroyWindow),
        ("configured", _Configure),
        ("pad", c_long * 24),
    ]


_SIGNATURES: dict[str, tuple[Any, list[Any]]] = {
    "XOpenDisplay": (c_void_p, [c_char_p]),
    "XCloseDisplay": (c_int, [c_void_p]),
    "XDefaultRootWindow": (c_ulong, [c_void_p]),
    "XConnectionNumber": (c_int, [c_void_p]),
    "XCreateSimpleWindow": (
        c_ulong,
        [c_void_p, c_ulong, c_int, c_int, c_uint, c_uint, c_uint, c_ulong, c_ulong],
    ),
    "XSelectInput": (c_int, [c_void_p, c_ulong, c_long]),
    "XInternAtom": (c_ulong, [c_void_p, c_char_p, c_int]),
    "XSetWMProtocols": (c_int, [c_void_p, c_ulong, POINTER(c_ulong), c_int]),
    "XMapWindow": (c_int, [c_void_p, c_ulong]),
    "XUnmapWindow": (c_int, [c_void_p, c_ulong]),
    "XResizeWindow": (c_int, [c_void_p, c_ulong, c_uint, c_uint]),
    "XDestroyWindow": (c_int, [c_void_p, c_ulong]),
    "XPending": (c_int, [c_void_p]),
    "XNextEvent": (c_int, [c_void_p, POINTER(_Event)]),
    "XSendEvent": (c_int, [c_void_p, c_ulong, c_int, c_long, POINTER(_Event)]),
    "XSync": (c_int, [c_void_p, c_int]),
    "XGetGeometry": (
        c_int,
        [c_void_p, c_ulong, POINTER(c_ulong)]
        + [POINTER(c_int)] * 2
        + [POINTER(c_uint)] * 4,
    ),
    "XSetErrorHandler": (c_void_p, [_ERROR_HANDLER]),
}


def _load() -> Any:
    library = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
    for name, (result, arguments) in _SIGNATURES.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library


_x11: Any = None


# Windows of the engine come and go on its own threads, so a request may come too late for one.
# Xlib's own handler would end the process.
_ignore_error = _ERROR_HANDLER(lambda display, error: 0)


class X11Window:
    """A top-level window on a connection of its own."""

    def __init__(
        self,
        main_thread: MainThread,
        width: int = 800,
        height: int = 600,
        display: Optional[str] = None,
    ) -> None:
        global _x11
        if _x11 is None:
            _x11 = _load()
            _x11.XSetErrorHandler(_ignore_error)
        self._main_thread = main_thread
        self._display = _x11.XOpenDisplay(display.encode() if display else None)
        if not self._display:
            raise RuntimeError("cannot open the display")
        root = _x11.XDefaultRootWindow(self._display)
        self.handle: int = _x11.XCreateSimpleWindow(
            self._display, root, 0, 0, width, height, 0, 0, 0xFFFFFF
        )
        _x11.XSelectInput(self._display, self.handle, _STRUCTURE_NOTIFY | _SUBSTRUCTURE_NOTIFY)
        self._protocols: int = _x11.XInternAtom(self._display, b"WM_PROTOCOLS", 0)
        self._delete = c_ulong(_x11.XInternAtom(self._display, b"WM_DELETE_WINDOW", 0))
        _x11.XSetWMProtocols(self._display, self.handle, byref(self._delete), 1)
        _x11.XMapWindow(self._display, self.handle)
        _x11.XSync(self._display, 0)
        self.width = width
        self.height = height
        #: Requests to close, such as a window manager sends for the user.
        self.close_requests = 0
        #: Windows that were destroyed: children, or this one itself.
        self.destroyed: set[int] = set()
        self._exists = True
        main_thread.watch(_x11.XConnectionNumber(self._display), self.pump)

    def pump(self) -> None:
        """Reads all events that have come; the main thread's loop calls it."""
        event = _Event()
        while self._display and _x11.XPending(self._display):
            _x11.XNextEvent(self._display, byref(event))
            if event.type == _CLIENT_MESSAGE and event.client.data[0] == self._delete.value:
                self.close_requests += 1
            elif event.type == _DESTROY_NOTIFY:
                self.destroyed.add(event.destroyed.window)
            elif event.type == _CONFIGURE_NOTIFY and event.configured.window == self.handle:
                self.width = event.configured.width
                self.height = event.configured.height

    def resize(self, width: int, height: int) -> None:
        _x11.XResizeWindow(self._display, self.handle, width, height)
        _x11.XSync(self._display, 0)

    def show(self, visible: bool = True) -> None:
        function = _x11.XMapWindow if visible else _x11.XUnmapWindow
        function(self._display, self.handle)
        _x11.XSync(self._display, 0)

    def geometry(self, window: Optional[int] = None) -> Optional[tuple[int, int, int, int]]:
        """x, y, width and height of a window in its parent; ``None`` if it is gone."""
        root, x, y = c_ulong(), c_int(), c_int()
        width, height, border, depth = c_uint(), c_uint(), c_uint(), c_uint()
        known = _x11.XGetGeometry(
            self._display,
            self.handle if window is None else window,
            *map(byref, (root, x, y, width, height, border, depth)),
        )
        return (x.value, y.value, width.value, height.value) if known else None

    def ask_to_close(self, window: Optional[int] = None) -> None:
        """Asks a window to close, this one or another program's, as a window manager does."""
        event = _Event()
        event.client.type = _CLIENT_MESSAGE
        event.client.window = self.handle if window is None else window
        event.client.message_type = self._protocols
        event.client.format = 32
        event.client.data[0] = self._delete.value
        _x11.XSendEvent(self._display, event.client.window, 0, 0, byref(event))
        _x11.XSync(self._display, 0)

    def lets_go_of(self, view: int) -> bool:
        """Whether the engine has ended a view in this window that was closed: its window is gone."""
        return view in self.destroyed

    def destroy(self) -> None:
        """Destroys the window and what is in it; the connection stays for its last events."""
        if self._exists:
            self._exists = False
            _x11.XDestroyWindow(self._display, self.handle)
            _x11.XSync(self._display, 0)

    def close(self) -> None:
        """Destroys the window and ends the connection."""
        if self._display:
            self.destroy()
            self._main_thread.unwatch(_x11.XConnectionNumber(self._display))
            _x11.XCloseDisplay(self._display)
            self._display = None
