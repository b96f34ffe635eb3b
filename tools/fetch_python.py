#!/usr/bin/env python3
"""Gets a Python for Windows, to run the browser tests of that target with, and lays it out below
the build tree.

    fetch_python.py

The same archive holds the SQLite library that the reference host is linked with there. The result
stands in <build>/windows-python/, complete or not at all; its path is the only line on standard
output.
"""
from __future__ import annotations

import shutil
import sys
import zipfile
from pathlib import Path

SOURCE_ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(SOURCE_ROOT / "engine" / "fetch"))

import maven  # noqa: E402
from artifacts import Artifact  # noqa: E402
from errors import FetchError  # noqa: E402

ARTIFACT = Artifact(
    group="org.bytedeco",
    name="cpython",
    version="3.11.3-1.5.9",
    classifier="windows-x86_64",
    size=25789697,
    sha256="3263a50b256447bb7b9e604d6587627e419891370fc33b94469e6a06ff4de834",
)
INSIDE = "org/bytedeco/cpython/windows-x86_64/"
# Modules that no test needs, and most of the files.
LEFT_OUT = tuple(
    f"lib/{name}/"
    for name in ("ensurepip", "idlelib", "lib2to3", "pip", "setuptools", "test", "tkinter")
)
REQUIRED = ("python.exe", "python311.dll", "lib/_ctypes.pyd", "lib/os.py", "lib/sqlite3.dll")


def main() -> int:
    try:
        print(provide(SOURCE_ROOT / "build"))
        return 0
    except (FetchError, OSError, zipfile.BadZipFile) as error:
        print(f"fetch_python: {error}", file=sys.stderr)
        return 1


def provide(build: Path, tool: str = "mvn", artifact: Artifact = ARTIFACT) -> Path:
    folder = build / "windows-python"
    stamp = folder / "stamp"
    if stamp.is_file() and stamp.read_text(encoding="utf-8") == artifact.sha256:
        return folder
    archive = maven.fetch(artifact, build / "engine" / "cache", tool)
    partial = folder.with_name(f"{folder.name}.partial")
    shutil.rmtree(partial, ignore_errors=True)
    unpack(archive, partial)
    (partial / "stamp").write_text(artifact.sha256, encoding="utf-8")
    shutil.rmtree(folder, ignore_errors=True)
    partial.rename(folder)
    return folder


def unpack(archive: Path, folder: Path) -> None:
    with zipfile.ZipFile(archive) as packed:
        for member in packed.infolist():
            name = member.filename.removeprefix(INSIDE)
            if member.is_dir() or name == member.filename or name.startswith(LEFT_OUT):
                continue
            target = folder / name
            target.parent.mkdir(parents=True, exist_ok=True)
            with packed.open(member) as source, target.open("wb") as copy:
                shutil.copyfileobj(source, copy)
    missing = [name for name in REQUIRED if not (folder / name).is_file()]
    if missing:
        raise FetchError(f"{archive} lacks: {', '.join(missing)}")


if __name__ == "__main__":
    sys.exit(main())
