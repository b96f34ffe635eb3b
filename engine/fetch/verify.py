"""Holds an engine library against the facts of the interface that the binding is generated from."""
from __future__ import annotations

import json
import subprocess
import sys
from pathlib import Path

from artifacts import Interface
from errors import FetchError

PROBE = Path(__file__).resolve().with_name("probe_engine.py")
PROBE_SECONDS = 60


def verify(library: Path, interface: Interface) -> None:
    """Refuses a Linux engine library whose interface is not exactly the expected one."""
    answer = _probe(library)
    if "error" in answer:
        raise FetchError(f"the engine library does not load: {answer['error']}")
    for kind, expected in (
        ("platform", interface.hash_linux),
        ("universal", interface.hash_universal),
    ):
        if answer[kind] != expected:
            raise FetchError(
                f"{library} is not the expected engine {interface.version} but {answer['version']}: "
                f"its {kind} interface hash is {answer[kind]}, expected {expected}"
            )


def _probe(library: Path) -> dict[str, str]:
    try:
        done = subprocess.run(
            [sys.executable, str(PROBE), str(library)],
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=PROBE_SECONDS,
            check=False,
        )
    except subprocess.TimeoutExpired as error:
        raise FetchError(f"the engine library hangs while it is loaded: {library}") from error
    try:
        return json.loads(done.stdout)
    except ValueError as error:
        raise FetchError(
            f"the engine library crashes while it is loaded (status {done.returncode}): {library}"
        ) from error
