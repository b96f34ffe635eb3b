"""The main thread's messages and a plain window on Windows, by user32 through ctypes."""

from __future__ import annotations

import ctypes
import math
import sys
from ctypes import POINTER, byref, c_int, c_ssize_t, c_uint, c_void_p, c_wchar_p
from typing import Any, Optional

from .main_thread import MainThread

if sys.platform == "win32":
    # One object of our own for each library: the signatures must not reach other users.
    _user32 = ctypes.WinDLL("user32", use_last_error=True)
    _kernel32 = ctypes.WinDLL("kernel32", use_last_error=True)
    _FUNCTION = ctypes.WINFUNCTYPE
else:
    raise ImportError("orbcef.win32 is for Windows")

_WM_SIZE = 0x0005
_WM_CLOSE = 0x0010
_WM_QUIT = 0x0012
_WS_CHILD = 0x40000000
_WS_VISIBLE = 0x10000000
_WS_CLIPCHILDREN = 0x02000000
_WS_OVERLAPPEDWINDOW = 0x00CF0000
_SW_HIDE = 0
_SW_SHOW = 5
_SWP_NOMOVE_NOZORDER_NOACTIVATE = 0x0016
_QS_ALLINPUT = 0x04FF
_MWMO_INPUTAVAILABLE = 0x0004
_PM_REMOVE = 1
_COLOR_WINDOW = 5
# A window of another thread goes without a message, so waits in milliseconds are short.
_LOOK_AGAIN = 20

_WINDOW_PROCEDURE = _FUNCTION(c_ssize_t, c_void_p, c_uint, c_void_p, c_void_p)


class _Point(ctypes.Structure):
    _fields_ = [("x", c_int), ("y", c_int)]


class _Rect(ctypes.Structure):
    _fields_ = [("left", c_int), ("top", c_int), ("right", c_int), ("bottom", c_int)]


class _Message(ctypes.Structure):
    _fields_ = [
        ("window", c_void_p),
        ("message", c_uint),
        ("wparam", c_void_p),
        ("lparam", c_void_p),
        ("time", c_uint),
        ("point", _Point),
        ("private", c_uint),
    ]


class _WindowClass(ctypes.Structure):
    _fields_ = [
        ("size", c_uint),
        ("style", c_uint),
        ("procedure", _WINDOW_PROCEDURE),
        ("class_extra", c_int),
        ("window_extra", c_int),
        ("instance", c_void_p),
        ("icon", c_void_p),
        ("cursor", c_void_p),
        ("background", c_void_p),
        ("menu_name", c_wchar_p),
        ("class_name", c_wchar_p),
        ("small_icon", c_void_p),
    ]


_SIGNATURES: dict[str, tuple[Any, list[Any]]] = {
    "RegisterClassExW": (ctypes.c_ushort, [POINTER(_WindowClass)]),
    "CreateWindowExW": (
        c_void_p,
        [c_uint, c_wchar_p, c_wchar_p, c_uint, *[c_int] * 4, *[c_void_p] * 4],
    ),
    "DestroyWindow": (c_int, [c_void_p]),
    "DefWindowProcW": (c_ssize_t, [c_void_p, c_uint, c_void_p, c_void_p]),
    "ShowWindow": (c_int, [c_void_p, c_int]),
    "SetWindowPos": (c_int, [c_void_p, c_void_p, c_int, c_int, c_int, c_int, c_uint]),
    "AdjustWindowRectEx": (c_int, [POINTER(_Rect), c_uint, c_int, c_uint]),
    "GetWindowRect": (c_int, [c_void_p, POINTER(_Rect)]),
    "MapWindowPoints": (c_int, [c_void_p, c_void_p, POINTER(_Rect), c_uint]),
    "GetParent": (c_void_p, [c_void_p]),
    "IsWindow": (c_int, [c_void_p]),
    "PostMessageW": (c_int, [c_void_p, c_uint, c_void_p, c_void_p]),
    "PeekMessageW": (c_int, [POINTER(_Message), c_void_p, c_uint, c_uint, c_uint]),
    "TranslateMessage": (c_int, [POINTER(_Message)]),
    "DispatchMessageW": (c_ssize_t, [POINTER(_Message)]),
    "MsgWaitForMultipleObjectsEx": (
        c_uint,
        [c_uint, POINTER(c_void_p), c_uint, c_uint, c_uint],
    ),
}
for _name, (_result, _arguments) in _SIGNATURES.items():
    getattr(_user32, _name).restype = _result
    getattr(_user32, _name).argtypes = _arguments
_kernel32.CreateEventW.restype = c_void_p
_kernel32.CreateEventW.argtypes = [c_void_p, c_int, c_int, c_wchar_p]
_kernel32.SetEvent.argtypes = [c_void_p]
_kernel32.GetModuleHandleW.restype = c_void_p
_kernel32.GetModuleHandleW.argtypes = [c_wchar_p]


class MessageWaiter:
    """How the main thread waits: for messages to its windows, and for ``wake`` on any thread."""

    def __init__(self) -> None:
        self._event = c_void_p(_kernel32.CreateEventW(None, 0, 0, None))

    def wake(self) -> None:
        _kernel32.SetEvent(self._event)

    def wait(self, limit: Optional[float], descriptors: list[int]) -> None:
        milliseconds = _LOOK_AGAIN if limit is None else min(math.ceil(limit * 1000), _LOOK_AGAIN)
        _user32.MsgWaitForMultipleObjectsEx(
            1, byref(self._event), milliseconds, _QS_ALLINPUT, _MWMO_INPUTAVAILABLE
        )

    def pump(self) -> None:
        """Hands out all messages that have come."""
        message = _Message()
        while _user32.PeekMessageW(byref(message), None, 0, 0, _PM_REMOVE):
            if message.message != _WM_QUIT:
                _user32.TranslateMessage(byref(message))
                _user32.DispatchMessageW(byref(message))


class _Destroyed:
    """The windows that no longer exist."""

    def __contains__(self, window: Optional[int]) -> bool:
        return not _user32.IsWindow(window)


_CLASS_NAME = "orbcef.Win32Window"
_frames: dict[int, "Win32Window"] = {}


@_WINDOW_PROCEDURE
def _procedure(window: int, message: int, wparam: int, lparam: int) -> int:
    frame = _frames.get(window)
    if frame and message == _WM_CLOSE:
        # The engine too sends this, to ask for the end of a view that was closed.
        frame.close_requests += 1
        return 0
    if frame and message == _WM_SIZE:
        frame.fit((lparam or 0) & 0xFFFF, (lparam or 0) >> 16 & 0xFFFF)
    return int(_user32.DefWindowProcW(window, message, wparam, lparam))


def _register_class() -> None:
    description = _WindowClass(
        size=ctypes.sizeof(_WindowClass),
        procedure=_procedure,
        instance=_kernel32.GetModuleHandleW(None),
        background=_COLOR_WINDOW + 1,
        class_name=_CLASS_NAME,
    )
    # Fails for a class that is there already, which is fine.
    _user32.RegisterClassExW(byref(description))


class Win32Window:
    """A top-level window, and in it the place to put a view in. Main thread only.

    A view that was closed stays until its parent window is destroyed, and only the thread that
    made a window may do that: so the place, ``handle``, is a window of this thread.
    """

    def __init__(
        self,
        main_thread: MainThread,
        width: int = 800,
        height: int = 600,
        display: Optional[str] = None,
    ) -> None:
        _register_class()
        #: Requests to close, of the user or of the engine.
        self.close_requests = 0
        #: Windows that do not exist any more.
        self.destroyed = _Destroyed()
        self.width = width
        self.height = height
        self.handle: int = 0
        outer = _Rect(0, 0, width, height)
        _user32.AdjustWindowRectEx(byref(outer), _WS_OVERLAPPEDWINDOW, 0, 0)
        self._border = (outer.right - outer.left - width, outer.bottom - outer.top - height)
        self._frame = _create(_WS_OVERLAPPEDWINDOW | _WS_CLIPCHILDREN, *self._outer(), None)
        _frames[self._frame] = self
        self.handle = _create(
            _WS_CHILD | _WS_VISIBLE | _WS_CLIPCHILDREN, width, height, self._frame
        )
        self.show()

    def fit(self, width: int, height: int) -> None:
        """Takes over the frame's new size; the window procedure calls it."""
        if width and height:
            self.width, self.height = width, height
            _set_size(self.handle, width, height)

    def resize(self, width: int, height: int) -> None:
        self.width, self.height = width, height
        _set_size(self._frame, *self._outer())

    def show(self, visible: bool = True) -> None:
        _user32.ShowWindow(self._frame, _SW_SHOW if visible else _SW_HIDE)

    def geometry(self, window: Optional[int] = None) -> Optional[tuple[int, int, int, int]]:
        """x, y, width and height of a window in its parent; ``None`` if it is gone."""
        handle = self._frame if window is None else window
        rect = _Rect()
        if not _user32.GetWindowRect(handle, byref(rect)):
            return None
        _user32.MapWindowPoints(None, _user32.GetParent(handle), byref(rect), 2)
        return (rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top)

    def ask_to_close(self, window: Optional[int] = None) -> None:
        """Asks a window to close, as the system does for the user."""
        _user32.PostMessageW(self._frame if window is None else window, _WM_CLOSE, None, None)

    def lets_go_of(self, view: int) -> bool:
        """Whether the engine has ended a view in this window that was closed.

        The engine leaves the view's window and asks the window around it to close; the place is
        destroyed for it then.
        """
        if self.close_requests:
            self.destroy()
        return view in self.destroyed

    def destroy(self) -> None:
        """Destroys the place and what is in it; the window around it stays for its last messages."""
        if self.handle:
            _user32.DestroyWindow(self.handle)
            self.handle = 0

    def close(self) -> None:
        """Destroys the window."""
        self.destroy()
        if self._frame:
            _user32.DestroyWindow(self._frame)
            _frames.pop(self._frame, None)
            self._frame = 0

    def _outer(self) -> tuple[int, int]:
        return (self.width + self._border[0], self.height + self._border[1])


def _create(style: int, width: int, height: int, parent: Optional[int]) -> int:
    instance = _kernel32.GetModuleHandleW(None)
    handle = _user32.CreateWindowExW(
        0, _CLASS_NAME, "orbcef", style, 0, 0, width, height, parent, None, instance, None
    )
    if not handle:
        raise ctypes.WinError(ctypes.get_last_error())
    return int(handle)


def _set_size(window: int, width: int, height: int) -> None:
    _user32.SetWindowPos(window, None, 0, 0, width, height, _SWP_NOMOVE_NOZORDER_NOACTIVATE)
