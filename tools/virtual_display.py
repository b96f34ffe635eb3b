"""A private X server without a screen, for as long as a block of code runs."""
from __future__ import annotations

import contextlib
import os
import select
import subprocess
from typing import Iterator

START_SECONDS = 30
SCREEN = "1600x1200x24"


@contextlib.contextmanager
def virtual_display() -> Iterator[str]:
    """Yields the name of a display that nobody else uses, such as ":7"."""
    read_end, write_end = os.pipe()
    try:
        # The server takes the first free number itself and tells it when it is ready.
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", SCREEN, "-nolisten", "tcp",
             "-noreset"],
            pass_fds=(write_end,),
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
    finally:
        os.close(write_end)
    try:
        yield f":{_read_number(read_end)}"
    finally:
        os.close(read_end)
        server.terminate()
        server.wait()


def _read_number(read_end: int) -> int:
    text = b""
    while not text.endswith(b"\n"):
        ready, _, _ = select.select([read_end], [], [], START_SECONDS)
        part = os.read(read_end, 16) if ready else b""
        if not part:
            raise RuntimeError("Xvfb did not start")
        text += part
    return int(text)
