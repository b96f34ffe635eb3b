"""A virtual X display that picks its own number and ends with its context."""

from __future__ import annotations

import os
import select
import subprocess
from types import TracebackType
from typing import Optional

from .main_thread import scaled


class Xvfb:
    """``with Xvfb() as display:`` gives a server; ``display.name`` is for ``DISPLAY``."""

    def __init__(self, width: int = 1280, height: int = 1024) -> None:
        reader, writer = os.pipe()
        try:
            self._process = subprocess.Popen(
                [
                    "Xvfb", "-displayfd", str(writer), "-screen", "0", f"{width}x{height}x24",
                    "-nolisten", "tcp", "-noreset",
                ],  # fmt: skip
                pass_fds=[writer],
                stdin=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
            )
        finally:
            os.close(writer)
        number = b""
        with os.fdopen(reader, "rb", buffering=0) as answer:
            while not number.endswith(b"\n"):
                ready, _, _ = select.select([answer], [], [], scaled(20))
                byte = answer.read(1) if ready else b""
                if not byte:
                    self.stop()
                    raise RuntimeError("Xvfb did not start")
                number += byte
        self.name = ":" + number.decode("ascii").strip()
        self.pid = self._process.pid

    def __enter__(self) -> "Xvfb":
        return self

    def __exit__(
        self,
        kind: Optional[type[BaseException]],
        failure: Optional[BaseException],
        trace: Optional[TracebackType],
    ) -> None:
        self.stop()

    def stop(self) -> None:
        self._process.terminate()
        self._process.wait()
