"""A Python host for the module ORBCefWrapperMT; see README.md."""

import sys

from ._callbacks import alive_tables
from .events import (
    STATE_CREATED,
    STATE_DOM_READY,
    STATE_PAGE_UNLOADED,
    AddressChanged,
    AuthCallback,
    AuthCredentials,
    ConsoleMessage,
    DocumentSize,
    DownloadUpdated,
    Event,
    Events,
    LoadingStateChanged,
    RecordData,
    StateChanged,
    StringsReceived,
    TitleChanged,
    V8Context,
    ZoomChanged,
    is_event,
)
from .http import (
    HTTP_CANCELLED,
    HTTP_CREATED,
    HTTP_FAILED,
    HTTP_FINISHED,
    HTTP_RUNNING,
    HttpListener,
    HttpRequest,
    Response,
)
from .main_thread import MainThread, scaled
from .module import LIBRARY, Module, Refused
from .session import Session
from .tools import RECORD_CAPTURE, RECORD_NONE, RECORD_REPLAY, Tools
from .view import (
    POPUP_ALLOW,
    POPUP_BLOCK,
    POPUP_EXTERNAL,
    POPUP_EXTERNAL_TICKET,
    ReplayResult,
    View,
)
from .window import Window
from .windowed import WindowedView
from .xvfb import Xvfb

if sys.platform != "win32":
    from .x11 import X11Window  # noqa: F401

__all__ = [
    "HTTP_CANCELLED",
    "HTTP_CREATED",
    "HTTP_FAILED",
    "HTTP_FINISHED",
    "HTTP_RUNNING",
    "LIBRARY",
    "POPUP_ALLOW",
    "POPUP_BLOCK",
    "POPUP_EXTERNAL",
    "POPUP_EXTERNAL_TICKET",
    "RECORD_CAPTURE",
    "RECORD_NONE",
    "RECORD_REPLAY",
    "STATE_CREATED",
    "STATE_DOM_READY",
    "STATE_PAGE_UNLOADED",
    "AddressChanged",
    "AuthCallback",
    "AuthCredentials",
    "ConsoleMessage",
    "DocumentSize",
    "DownloadUpdated",
    "Event",
    "Events",
    "HttpListener",
    "HttpRequest",
    "LoadingStateChanged",
    "MainThread",
    "Module",
    "RecordData",
    "Refused",
    "ReplayResult",
    "Response",
    "Session",
    "StateChanged",
    "StringsReceived",
    "TitleChanged",
    "Tools",
    "V8Context",
    "View",
    "Window",
    "WindowedView",
    "Xvfb",
    "ZoomChanged",
    "alive_tables",
    "is_event",
    "scaled",
]
