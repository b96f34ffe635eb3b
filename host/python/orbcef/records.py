"""Texts and headers on their way across the boundary.

Records that Python hands over are one block of the C library's ``malloc`` and carry its ``free``
as their free function: the module may free them on any thread and at any time, no Python runs.
Records that Python only lends live as long as the :class:`Lent` object that holds them.
"""

from __future__ import annotations

import ctypes
import sys
from collections.abc import Iterable
from typing import Any, Optional, Union

from . import _abi

TextLike = Union[str, bytes]

_libc: Any = ctypes.cdll.msvcrt if sys.platform == "win32" else ctypes.CDLL(None)
_libc.malloc.restype = ctypes.c_void_p
_libc.malloc.argtypes = [ctypes.c_size_t]
_FREE = ctypes.cast(_libc.free, ctypes.c_void_p).value

Headers = list[tuple[str, Optional[str]]]


def encode(text: TextLike) -> bytes:
    """UTF-8 bytes of a text; bytes stay as they are, so that tests can send anything."""
    return text if isinstance(text, bytes) else text.encode("utf-8", "surrogatepass")


def new_record(text: Optional[TextLike]) -> Optional[int]:
    """Address of a new record to hand over to the module; ``None`` stays null."""
    if text is None:
        return None
    data = encode(text)
    size = ctypes.sizeof(_abi.CString)
    address = _libc.malloc(size + len(data))
    if not address:
        raise MemoryError
    ctypes.memset(address, 0, size)
    record = _abi.CString.from_address(address)
    if data:
        ctypes.memmove(address + size, data, len(data))
        record.data = address + size
        record.length = len(data)
    # The field is a function type; the C library's own function goes in by its address.
    ctypes.c_void_p.from_address(address + _abi.CString.free.offset).value = _FREE
    return int(address)


def read_bytes(record: Any) -> Optional[bytes]:
    """Copy of a lent record's bytes; ``None`` for a null record."""
    if not record:
        return None
    content = record.contents
    return ctypes.string_at(content.data, content.length) if content.data else b""


def read_text(record: Any) -> Optional[str]:
    """Copy of a lent record's text; ``None`` for a null record."""
    data = read_bytes(record)
    return None if data is None else data.decode("utf-8", "replace")


def take_text(record: Any) -> Optional[str]:
    """Text of a record that the module handed over, which is freed."""
    text = read_text(record)
    if record and record.contents.free:
        record.contents.free(record)
    return text


def read_headers(record: Any) -> Optional[Headers]:
    """Copy of a lent map; ``None`` for a null record. Keys may come more than once."""
    if not record:
        return None
    content = record.contents
    return [
        (read_text(content.keys[i]) or "", read_text(content.values[i]))
        for i in range(content._nb_values)
    ]


class Lent:
    """A text lent to the module; keep the object until the call has returned."""

    def __init__(self, text: Optional[TextLike]) -> None:
        self._data = b"" if text is None else encode(text)
        self.record = _abi.CString()
        if self._data:
            buffer = ctypes.cast(ctypes.c_char_p(self._data), ctypes.c_void_p)
            self.record.data = buffer
            self.record.length = len(self._data)
        self.pointer = None if text is None else ctypes.pointer(self.record)


class LentHeaders:
    """Pairs lent to the module as a map; keep the object until the call has returned."""

    def __init__(self, pairs: Iterable[tuple[TextLike, Optional[TextLike]]]) -> None:
        pairs = list(pairs)
        self._keys = [Lent(key) for key, _ in pairs]
        self._values = [Lent(value) for _, value in pairs]
        array = _abi.Text * len(pairs)
        null = _abi.Text()
        self._key_array = array(*[key.pointer or null for key in self._keys])
        self._value_array = array(*[value.pointer or null for value in self._values])
        self.record = _abi.CStringMap()
        if pairs:
            self.record.keys = ctypes.cast(self._key_array, ctypes.POINTER(_abi.Text))
            self.record.values = ctypes.cast(self._value_array, ctypes.POINTER(_abi.Text))
        self.record._nb_values = len(pairs)
        self.pointer = ctypes.pointer(self.record)
