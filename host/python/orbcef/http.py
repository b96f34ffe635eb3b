"""An HTTP request on the engine's network stack: ``orbcefhttp_c`` and its listener."""

from __future__ import annotations

import ctypes
from collections.abc import Iterable
from dataclasses import dataclass
from typing import Any, Callable, Optional

from . import _abi
from ._callbacks import CountedTable
from .records import Headers, Lent, LentHeaders, TextLike, read_headers, read_text

HTTP_CREATED = 0
HTTP_RUNNING = 1
HTTP_FINISHED = 2
HTTP_FAILED = 3
HTTP_CANCELLED = 4


@dataclass(frozen=True)
class Response:
    status: int
    #: MIME type of the response.
    text: Optional[str]
    headers: Optional[Headers]


class HttpListener(CountedTable):
    """Follows a request. The methods come on the engine's UI thread and must not wait."""

    def __init__(self) -> None:
        super().__init__(_abi.CHttpListener)
        self.fill("on_headers", lambda _, headers: self.on_headers(read_headers(headers)))
        self.fill("on_data", lambda _, data, size: self.on_data(ctypes.string_at(data, size)))
        self.fill("on_progress", lambda _, current, total: self.on_progress(current, total))
        self.fill("on_complete", lambda _: self.on_complete())

    def on_headers(self, headers: Optional[Headers]) -> None:
        pass

    def on_data(self, data: bytes) -> None:
        pass

    def on_progress(self, current: int, total: int) -> None:
        pass

    def on_complete(self) -> None:
        pass


class HttpRequest:
    """Holds one reference of the table; ``release`` gives it back. Any thread."""

    def __init__(self, table: Any) -> None:
        self.table: Any = table

    def add_ref(self) -> None:
        self._call("add_ref")

    def release(self) -> bool:
        """True if the request is gone: use the object no more."""
        return bool(self._call("release"))

    @property
    def state(self) -> int:
        """One of the ``HTTP_`` values."""
        return int(self._call("get_state"))

    def set_method(self, method: Optional[TextLike]) -> bool:
        text = Lent(method)
        return bool(self._call("set_method", text.pointer))

    def set_url(self, url: Optional[TextLike]) -> bool:
        text = Lent(url)
        return bool(self._call("set_url", text.pointer))

    def set_headers(
        self, headers: Optional[Iterable[tuple[TextLike, Optional[TextLike]]]]
    ) -> bool:
        if headers is None:
            return bool(self._call("set_headers", None))
        lent = LentHeaders(headers)
        return bool(self._call("set_headers", lent.pointer))

    def set_body(self, data: Optional[bytes]) -> bool:
        return bool(self._call("set_body", data, len(data) if data else 0))

    def send_async(self, listener: Optional[HttpListener] = None) -> bool:
        return bool(self._call("send_async", listener.pointer if listener else None))

    def send_sync(self) -> bool:
        """Blocks until the request ended."""
        return bool(self._call("send_sync"))

    def cancel(self) -> None:
        self._call("cancel")

    def get_response(self) -> Optional[Response]:
        record = self._call("get_response")
        if not record:
            return None
        content = record.contents
        response = Response(
            content.status, read_text(content.text), read_headers(content.headers)
        )
        content.free(record)
        return response

    def _call(self, slot: str, *arguments: Any) -> Any:
        function: Callable[..., Any] = getattr(self.table.contents, slot)
        return function(self.table, *arguments)
