"""The same look on Windows, by kernel32 and ntdll through ctypes."""

import ctypes
import re
from ctypes import byref, c_int, c_size_t, c_ulong, c_ulonglong, c_ushort, c_void_p, c_wchar, c_wchar_p
from pathlib import Path

_kernel32 = ctypes.WinDLL("kernel32", use_last_error=True)
_ntdll = ctypes.WinDLL("ntdll")

_SNAPSHOT_PROCESSES = 2
_PROCESS_TERMINATE = 0x0001
_PROCESS_VM_READ = 0x0010
_PROCESS_QUERY_INFORMATION = 0x0400
_GENERIC_READ = 0x80000000
_OPEN_EXISTING = 3
_ERROR_SHARING_VIOLATION = 32
# The desktop, which wine starts from the first process that opens a window.
_NOT_OURS = ("explorer.exe",)
_INVALID_HANDLE = c_void_p(-1).value
# Where a process keeps its parameters, and in those its command line, on x64.
_PARAMETERS_OFFSET = 0x20
_COMMAND_LINE_OFFSET = 0x70


class _Entry(ctypes.Structure):
    _fields_ = [
        ("size", c_ulong),
        ("usage", c_ulong),
        ("pid", c_ulong),
        ("heap", c_void_p),
        ("module", c_ulong),
        ("threads", c_ulong),
        ("parent", c_ulong),
        ("priority", ctypes.c_long),
        ("flags", c_ulong),
        ("file", c_wchar * 260),
    ]


class _BasicInformation(ctypes.Structure):
    _fields_ = [("status", c_void_p), ("block", c_void_p), ("rest", c_void_p * 4)]


class _UnicodeString(ctypes.Structure):
    _fields_ = [("length", c_ushort), ("capacity", c_ushort), ("text", c_void_p)]


for _name, _result, _arguments in (
    ("CreateToolhelp32Snapshot", c_void_p, [c_ulong, c_ulong]),
    ("Process32FirstW", c_int, [c_void_p, c_void_p]),
    ("Process32NextW", c_int, [c_void_p, c_void_p]),
    ("OpenProcess", c_void_p, [c_ulong, c_int, c_ulong]),
    ("TerminateProcess", c_int, [c_void_p, c_ulong]),
    ("ReadProcessMemory", c_int, [c_void_p, c_void_p, c_void_p, c_size_t, c_void_p]),
    ("CreateFileW", c_void_p, [c_wchar_p, c_ulong, c_ulong, c_void_p, c_ulong, c_ulong, c_void_p]),
    ("CloseHandle", c_int, [c_void_p]),
    ("GetCurrentProcess", c_void_p, []),
    ("GetProcessTimes", c_int, [c_void_p, c_void_p, c_void_p, c_void_p, c_void_p]),
):
    getattr(_kernel32, _name).restype = _result
    getattr(_kernel32, _name).argtypes = _arguments
_ntdll.NtQueryInformationProcess.argtypes = [c_void_p, c_int, c_void_p, c_ulong, c_void_p]


def children(pid):
    """(pid, command line) of the living processes that a process started itself."""
    snapshot = _kernel32.CreateToolhelp32Snapshot(_SNAPSHOT_PROCESSES, 0)
    found, entry = [], _Entry(size=ctypes.sizeof(_Entry))
    more = _kernel32.Process32FirstW(snapshot, byref(entry))
    while more:
        if entry.parent == pid and entry.pid != pid and entry.file.lower() not in _NOT_OURS:
            found.append(entry.pid)
        more = _kernel32.Process32NextW(snapshot, byref(entry))
    _kernel32.CloseHandle(snapshot)
    # One that has ended in between has no command line any more.
    return [(child, line) for child in found if (line := _command_line(child)) is not None]


def session_members(session):
    raise NotImplementedError("the parent of the tests looks at sessions, and does not run here")


def _begin(process):
    begin, rest = c_ulonglong(), c_ulonglong()
    _kernel32.GetProcessTimes(process, byref(begin), byref(rest), byref(rest), byref(rest))
    return begin.value


def _command_line(pid):
    """None for a process that has ended, or is older than this one."""
    process = _kernel32.OpenProcess(_PROCESS_QUERY_INFORMATION | _PROCESS_VM_READ, 0, pid)
    if not process:
        return None
    try:
        # The child of a process that had this one's number before it.
        if _begin(process) < _begin(_kernel32.GetCurrentProcess()):
            return None
        basic = _BasicInformation()
        _ntdll.NtQueryInformationProcess(process, 0, byref(basic), ctypes.sizeof(basic), None)
        parameters, line = c_void_p(), _UnicodeString()
        if not basic.block or not _read(process, basic.block + _PARAMETERS_OFFSET, parameters):
            return None
        if not parameters.value or not _read(process, parameters.value + _COMMAND_LINE_OFFSET, line):
            return None
        text = ctypes.create_string_buffer(line.length)
        if not _read(process, line.text, text):
            return None
        # The program without its quotation marks, as other systems tell it.
        return re.sub(r'^"([^"]*)"', r"\1", text.raw.decode("utf-16-le"))
    finally:
        _kernel32.CloseHandle(process)


def _read(process, address, target):
    return _kernel32.ReadProcessMemory(process, address, byref(target), ctypes.sizeof(target), None)


def kill_process(pid):
    process = _kernel32.OpenProcess(_PROCESS_TERMINATE, 0, pid)
    _kernel32.TerminateProcess(process, 1)
    _kernel32.CloseHandle(process)


def open_files(profile, others):
    """Files below the profile that a process has a handle of; the other folders serve other tests too."""
    return [str(path) for path in Path(profile).rglob("*") if path.is_file() and _is_held_open(path)]


def _is_held_open(path):
    """A file that somebody holds open cannot be had alone."""
    handle = _kernel32.CreateFileW(str(path), _GENERIC_READ, 0, None, _OPEN_EXISTING, 0, None)
    if handle == _INVALID_HANDLE:
        return ctypes.get_last_error() == _ERROR_SHARING_VIOLATION
    _kernel32.CloseHandle(handle)
    return False
