"""Unpacks the engine's files from a fetched archive, and finds them in a local distribution."""
from __future__ import annotations

import shutil
import tarfile
import zipfile
import zlib
from pathlib import Path

from artifacts import Target
from errors import FetchError
from progress import Progress


def unpack(archive: Path, target: Target, folder: Path) -> None:
    """Writes the engine's files of the archive flat into `folder`; the rest of it stays behind."""
    try:
        with zipfile.ZipFile(archive) as jar:
            inner = [name for name in jar.namelist() if name.endswith(".tar.gz")]
            if len(inner) != 1:
                raise FetchError(f"the archive is broken: {archive} holds no engine")
            total = jar.getinfo(inner[0]).file_size
            with jar.open(inner[0]) as packed:
                _unpack_tar(packed, total, target, folder)
    except (zipfile.BadZipFile, tarfile.TarError, zlib.error, EOFError) as error:
        raise FetchError(f"the archive is broken: {archive}: {error}") from error


def _unpack_tar(packed, total: int, target: Target, folder: Path) -> None:
    progress = Progress("unpacking the engine", total)
    try:
        # A stream, read once from front to back: seeking would decompress the archive again.
        with tarfile.open(fileobj=packed, mode="r|gz") as tar:
            for member in tar:
                progress.update(packed.tell())
                name = member.name[2:] if member.name.startswith("./") else member.name
                # The patterns name no "..", so that nothing can be written outside the folder.
                if not member.isfile() or not target.takes(name):
                    continue
                destination = folder / name
                destination.parent.mkdir(parents=True, exist_ok=True)
                with tar.extractfile(member) as source, destination.open("wb") as copy:
                    shutil.copyfileobj(source, copy, 1 << 20)
                destination.chmod(0o755 if member.mode & 0o100 else 0o644)
        progress.update(total)
    finally:
        progress.abandon()


def find_local(root: Path, target: Target) -> dict[str, Path]:
    """The engine's files of a distribution by their flat names, from `root` itself or from its
    Release and Resources folders."""
    if not root.is_dir():
        raise FetchError(f"the engine root is no folder: {root}")
    if (root / target.library).is_file():
        folders = [root]
    elif (root / "Release" / target.library).is_file():
        folders = [root / "Release", root / "Resources"]
    else:
        raise FetchError(
            f"the engine root holds no {target.library}, neither in itself nor in Release: {root}"
        )
    found: dict[str, Path] = {}
    for folder in folders:
        for path in (*folder.glob("*"), *folder.glob("locales/*")):
            name = path.relative_to(folder).as_posix()
            if path.is_file() and target.takes(name):
                found.setdefault(name, path)
    return found


def require(found: dict[str, Path], target: Target, where: Path) -> None:
    """Refuses a distribution that lacks a file without which the engine does not run."""
    missing = [
        name for name in target.required if name not in found or found[name].stat().st_size == 0
    ]
    if missing:
        raise FetchError(f"the engine in {where} is not complete, it lacks: {', '.join(missing)}")
