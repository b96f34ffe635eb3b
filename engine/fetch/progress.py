"""A progress line that rewrites itself on a terminal and stays quiet enough for a log elsewhere."""
from __future__ import annotations

import sys
from typing import TextIO

MEBIBYTE = 1 << 20


class Progress:
    """Shows how much of a known number of bytes is done: each percent on a terminal, each quarter
    in a log."""

    def __init__(self, what: str, total: int, stream: TextIO | None = None) -> None:
        self._what = what
        self._total = max(total, 1)
        self._stream = stream or sys.stderr
        self._terminal = self._stream.isatty()
        self._step = 1 if self._terminal else 25
        self._shown = -1

    def update(self, done: int) -> None:
        percent = min(100, done * 100 // self._total)
        step = percent // self._step
        if step <= self._shown:
            return
        self._shown = step
        text = f"{self._what}: {percent} % of {self._total // MEBIBYTE} MB"
        if self._terminal:
            self._stream.write(f"\r{text}" + ("\n" if percent == 100 else ""))
        else:
            self._stream.write(text + "\n")
        self._stream.flush()

    def abandon(self) -> None:
        """Ends a half-written terminal line, so that what follows starts on its own."""
        if self._terminal and 0 <= self._shown < 100:
            self._stream.write("\n")
