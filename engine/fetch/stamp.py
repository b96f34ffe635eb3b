"""Remembers that an engine was checked, so that the next call costs a few file stats."""
from __future__ import annotations

import json
import os
from pathlib import Path


def _state_of(files: dict[str, Path]) -> dict[str, list[int]]:
    state = {}
    for name, path in files.items():
        info = path.stat()
        state[name] = [info.st_size, info.st_mtime_ns]
    return state


def write(stamp: Path, identity: dict[str, str], files: dict[str, Path]) -> None:
    content = {
        "identity": identity,
        "paths": {name: str(path) for name, path in files.items()},
        "state": _state_of(files),
    }
    partial = stamp.with_name(f"{stamp.name}.partial-{os.getpid()}")
    partial.write_text(json.dumps(content, indent=1), encoding="utf-8")
    partial.replace(stamp)


def holds(stamp: Path, identity: dict[str, str]) -> bool:
    """Whether the stamp was written for this very engine, and no file of it changed since."""
    try:
        content = json.loads(stamp.read_text(encoding="utf-8"))
        files = {name: Path(path) for name, path in content["paths"].items()}
        return content["identity"] == identity and content["state"] == _state_of(files)
    except (OSError, ValueError, KeyError, TypeError, AttributeError):
        return False
