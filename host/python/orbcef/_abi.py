"""The layouts of ``ChromiumEmbeddedPlugin/api`` in ctypes, slot by slot.

Tables that the module makes have results of pointer type; tables that the host makes have
``c_void_p`` in their place, because ctypes does not take pointer types as results of callbacks.
"""

from __future__ import annotations

import ctypes
from ctypes import CFUNCTYPE, POINTER, c_double, c_int32, c_int64, c_uint8, c_uint32, c_uint64
from ctypes import c_char_p, c_void_p
from typing import Any

MAJOR = 1
MINOR = 0
GLOBAL_TABLE = b"orbcefglobal_c"
FACTORY_SYMBOL = "orbcef_pluginfactory"
MARKER_SYMBOL = "MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT"


class CString(ctypes.Structure):
    """``orbcefstring_c``"""


CString._fields_ = [
    ("data", c_void_p),
    ("length", c_uint64),
    ("free", CFUNCTYPE(None, POINTER(CString))),
]


class CStringMap(ctypes.Structure):
    """``orbcefstringmap_c``"""


CStringMap._fields_ = [
    ("keys", POINTER(POINTER(CString))),
    ("values", POINTER(POINTER(CString))),
    ("_nb_values", c_uint64),
    ("free", CFUNCTYPE(None, POINTER(CStringMap))),
]


class CResponse(ctypes.Structure):
    """``orbcefresponse_c``"""


CResponse._fields_ = [
    ("status", c_int32),
    ("text", POINTER(CString)),
    ("headers", POINTER(CStringMap)),
    ("free", CFUNCTYPE(None, POINTER(CResponse))),
]


class CReplayResult(ctypes.Structure):
    """``orbcefreplayresult_c``"""


CReplayResult._fields_ = [
    ("status", c_int32),
    ("message", POINTER(CString)),
    ("free", CFUNCTYPE(None, POINTER(CReplayResult))),
]

Text = POINTER(CString)
Rect = POINTER(c_int32)
TASK = CFUNCTYPE(None, c_void_p)


def _slots(table: type[ctypes.Structure], *slots: tuple[Any, ...]) -> None:
    """Fills a table: a slot is its name, result type and the arguments after the table pointer."""
    fields: list[tuple[str, Any]] = []
    for slot in slots:
        if len(slot) == 1:
            fields.append((slot[0], c_void_p))
        else:
            fields.append((slot[0], CFUNCTYPE(slot[1], POINTER(table), *slot[2:])))
    table._fields_ = fields


class CAuthCallback(ctypes.Structure):
    """``orbcefauthcallback_c``"""


_slots(
    CAuthCallback,
    ("tImpl",),
    ("add_ref", None),
    ("release", None),
    ("continue_with", None, Text, Text),
    ("cancel", None),
)


class CBrowserHost(ctypes.Structure):
    """``orbcefbrowserhost_c``"""


_slots(
    CBrowserHost,
    ("instance",),
    ("add_ref", None),
    ("release", None),
    ("is_authenticated", c_uint8),
    ("get_turnstile_url", c_void_p),
    ("get_transient_ticket_url", c_void_p, Text),
)


class CBrowserEvents(ctypes.Structure):
    """``orbcefbrowserevents_c``"""


_slots(
    CBrowserEvents,
    ("instance",),
    ("add_ref", None),
    ("release", None),
    ("on_state_changed", None, c_int32),
    ("on_v8_context", None, c_uint8),
    ("on_strings_received", None, POINTER(Text), c_int32),
    ("on_title_changed", None, Text),
    ("on_address_changed", None, Text),
    ("on_download_updated", None, c_uint32, c_int64, c_int64, c_int64, c_uint8),
    ("on_loading_state_changed", None, c_uint8, Text),
    ("reserved10",),
    ("on_document_size", None, c_int32, c_int32),
    ("on_console_message", None, Text, Text, c_int32),
    ("on_zoom_changed", None, c_double),
    ("on_record_data", None, Text),
    ("on_auth_credentials", None, Text, c_uint8, Text, c_int32, POINTER(CAuthCallback)),
)


class CBrowser(ctypes.Structure):
    """``orbcefbrowser_c``"""


def _flag(name: str) -> tuple[tuple[Any, ...], tuple[Any, ...]]:
    return ("get_" + name, c_uint8), ("set_" + name, None, c_uint8)


def _text(name: str) -> tuple[tuple[Any, ...], tuple[Any, ...]]:
    return ("get_" + name, Text), ("set_" + name, None, Text)


_slots(
    CBrowser,
    ("instance",),
    ("add_ref", None),
    ("release", None),
    *_flag("flag0"),
    *_flag("flag1"),
    *_flag("javascript_enabled"),
    *_flag("flag3"),
    *_flag("history_enabled"),
    *_flag("reload_enabled"),
    *_flag("zoom_by_page_enabled"),
    *_flag("forward_console"),
    *_text("download_dir"),
    *_text("error_url"),
    ("get_popup_mode", c_int32),
    ("set_popup_mode", None, c_int32),
    *_flag("local_files_allowed"),
    *_flag("external_navigation_allowed"),
    *_flag("js_dialogs_allowed"),
    ("set_visible", None, c_uint8),
    ("create", None, c_void_p, Rect, Text),
    ("close", None, c_uint8),
    ("load_url", None, Text),
    ("can_go_back", c_uint8),
    ("go_back", None),
    ("can_go_forward", c_uint8),
    ("go_forward", None),
    ("reload", None),
    ("stop_load", None),
    ("copy", None),
    ("cut", None),
    ("paste", None),
    ("delete_selection", None),
    ("select_all", None),
    ("undo", None),
    ("redo", None),
    ("get_current_url", Text),
    *_text("home_url"),
    ("execute_javascript", None, Text, Text, c_int32),
    ("set_zoom_level", None, c_double),
    ("change_zoom_level", None, c_double),
    ("show_dev_tools", None),
    ("close_dev_tools", None),
    ("get_window", c_void_p),
    ("notify_move_or_resize", None),
    ("set_bounds", None, Rect),
    ("execute_replay", POINTER(CReplayResult), Text),
)


class CHttpListener(ctypes.Structure):
    """``orbcefhttplistener_c``"""


_slots(
    CHttpListener,
    ("add_ref", None),
    ("release", None),
    ("on_headers", None, POINTER(CStringMap)),
    ("on_data", None, c_void_p, c_uint64),
    ("on_progress", None, c_int64, c_int64),
    ("on_complete", None),
)


class CHttp(ctypes.Structure):
    """``orbcefhttp_c``"""


_slots(
    CHttp,
    ("add_ref", None),
    ("release", c_uint8),
    ("get_state", c_uint32),
    ("set_method", c_uint8, Text),
    ("set_url", c_uint8, Text),
    ("set_headers", c_uint8, POINTER(CStringMap)),
    ("set_body", c_uint8, c_void_p, c_uint64),
    ("send_async", c_uint8, c_void_p),
    ("send_sync", c_uint8),
    ("cancel", None),
    ("get_response", POINTER(CResponse)),
    ("tImpl",),
)


class CTools(ctypes.Structure):
    """``_orbceftools_c``; its functions take no table."""

    _fields_ = [
        ("on_main_thread", CFUNCTYPE(c_uint8)),
        ("get_env", CFUNCTYPE(c_void_p, c_char_p)),
        ("put_env", CFUNCTYPE(c_int32, c_char_p)),
        ("compute_lang", CFUNCTYPE(c_void_p)),
        ("get_release_level", CFUNCTYPE(c_int32)),
        ("build_catalog_message", CFUNCTYPE(c_void_p, c_char_p, c_char_p)),
        ("get_temp_directory", CFUNCTYPE(c_void_p)),
        ("create_directory", CFUNCTYPE(c_uint8, Text)),
        ("is_record_capture", CFUNCTYPE(c_uint8)),
        ("is_record_replay", CFUNCTYPE(c_uint8)),
        ("get_record_mode", CFUNCTYPE(c_uint32)),
        ("get_json_value", CFUNCTYPE(c_uint8, Text, POINTER(Text), POINTER(Text), c_int32)),
        ("get_json_module_map", CFUNCTYPE(c_void_p)),
        ("remap_url", CFUNCTYPE(c_void_p, Text)),
        ("save_in_preference", CFUNCTYPE(c_void_p, c_char_p, c_char_p, Text)),
        ("read_from_preferences", CFUNCTYPE(c_void_p, c_char_p, c_char_p)),
        ("read_from_sys_settings", CFUNCTYPE(c_void_p, c_char_p, c_char_p)),
        ("read_from_settings", CFUNCTYPE(c_uint8, c_char_p, c_char_p, POINTER(c_int32))),
        ("post_task_on_main_thread", CFUNCTYPE(c_uint8, TASK, c_void_p)),
        ("should_dispatch_events_on_main_thread", CFUNCTYPE(c_uint8)),
    ]


class CGlobal(ctypes.Structure):
    """``orbcefglobal_c``"""


_slots(
    CGlobal,
    ("create_browser", POINTER(CBrowser), POINTER(CBrowserEvents), POINTER(CBrowserHost), Text),
    ("create_http", POINTER(CHttp)),
    ("init_engine", None),
    ("shutdown_engine", None),
    ("execute_subprocess", c_int32, c_int32, c_void_p),
    ("set_tools", None, POINTER(CTools)),
    ("is_available", c_uint64),
    ("reserved", c_uint64),
)

FACTORY = CFUNCTYPE(c_void_p, c_uint32, c_int32, c_char_p)

SIZES: dict[type[ctypes.Structure], int] = {
    CString: 24,
    CStringMap: 32,
    CResponse: 32,
    CReplayResult: 24,
    CAuthCallback: 40,
    CBrowserHost: 48,
    CBrowserEvents: 128,
    CBrowser: 480,
    CHttpListener: 48,
    CHttp: 96,
    CTools: 160,
    CGlobal: 64,
}
for _table, _size in SIZES.items():
    if ctypes.sizeof(_table) != _size:
        raise ImportError(f"{_table.__doc__} has {ctypes.sizeof(_table)} bytes instead of {_size}")
