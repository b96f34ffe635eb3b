"""The host's knowledge of the user's web session: ``orbcefbrowserhost_c``."""

from __future__ import annotations

from typing import Optional

from . import _abi
from ._callbacks import CountedTable
from .records import new_record, read_text


class Session(CountedTable):
    """Override the three methods. They come on the main thread while a view is made."""

    def __init__(self) -> None:
        super().__init__(_abi.CBrowserHost)
        self.fill("is_authenticated", lambda _: self.is_authenticated())
        self.fill("get_turnstile_url", lambda _: new_record(self.get_turnstile_url()))
        self.fill(
            "get_transient_ticket_url",
            lambda _, url: new_record(self.get_transient_ticket_url(read_text(url) or "")),
        )

    def is_authenticated(self) -> bool:
        return False

    def get_turnstile_url(self) -> Optional[str]:
        """Base URL of the single-sign-on service; ``None`` or "" if there is none."""
        return None

    def get_transient_ticket_url(self, url: str) -> Optional[str]:
        """The URL to open instead; ``None`` or "" if no ticket could be had."""
        return None
