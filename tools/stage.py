#!/usr/bin/env python3
"""Makes an installation root an exact image of what was built: new and changed files are written,
files that have no source any more are removed, unchanged files are not touched.

    <root>/code/bin     the given binaries and the engine, side by side
    <root>/webapps      <trees>/webapps
    <root>/resources    <trees>/resources
"""
from __future__ import annotations

import argparse
import os
import shutil
import sys
from pathlib import Path

SOURCE_ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(SOURCE_ROOT / "engine" / "fetch"))

import layout  # noqa: E402
from artifacts import TARGETS  # noqa: E402
from errors import FetchError  # noqa: E402

TREES = ("webapps", "resources")


def main(arguments: list[str] | None = None) -> int:
    options = _parse(arguments)
    options.root = options.root.resolve()
    try:
        mirror(_code_files(options), options.root / "code" / "bin")
        for tree in TREES:
            mirror(_tree_files(options.trees / tree), options.root / tree)
    except FetchError as error:
        print(f"stage: {error}; './dev setup' fetches the engine", file=sys.stderr)
        return 1
    except OSError as error:
        print(f"stage: the installation root cannot be written: {error}", file=sys.stderr)
        return 1
    return 0


def mirror(files: dict[str, tuple[Path, bool]], folder: Path) -> None:
    """Makes `folder` hold exactly `files`: relative name to source, and whether it may be linked.

    Only files that nobody edits are linked: an edit in the root would change the source as well.
    """
    for name, (source, linked) in files.items():
        destination = folder / name
        if _is_current(source, destination, linked):
            continue
        destination.parent.mkdir(parents=True, exist_ok=True)
        # A fresh file takes the old one's place: a program that runs from the root keeps the old.
        partial = destination.with_name(destination.name + ".partial")
        partial.unlink(missing_ok=True)
        if not (linked and _link(source, partial)):
            shutil.copy2(source, partial)
        partial.replace(destination)
    _remove_others(set(files), folder)


def _is_current(source: Path, destination: Path, linked: bool) -> bool:
    if source == destination:
        # The linker wrote it here itself.
        return True
    wanted = source.stat()
    try:
        found = destination.lstat()
    except FileNotFoundError:
        return False
    if (found.st_dev, found.st_ino) == (wanted.st_dev, wanted.st_ino):
        return linked
    return (found.st_size, found.st_mtime_ns, found.st_mode) == (
        wanted.st_size,
        wanted.st_mtime_ns,
        wanted.st_mode,
    )


def _link(source: Path, destination: Path) -> bool:
    """Links where the file system can: the engine's 250 MB are not written again for each build."""
    try:
        os.link(source, destination)
        return True
    except OSError:
        return False


def _remove_others(names: set[str], folder: Path) -> None:
    for root, folders, files in os.walk(folder, topdown=False):
        for name in files:
            path = Path(root, name)
            if path.relative_to(folder).as_posix() not in names:
                path.unlink()
        for name in folders:
            path = Path(root, name)
            if path.is_symlink():
                path.unlink()
            elif not any(path.iterdir()):
                path.rmdir()


def _code_files(options: argparse.Namespace) -> dict[str, tuple[Path, bool]]:
    files = {}
    if options.engine:
        target = TARGETS[options.target]
        found = layout.find_local(options.engine.resolve(), target)
        layout.require(found, target, options.engine)
        files = {name: (path.resolve(), True) for name, path in found.items()}
    for binary in options.binary:
        files[binary.name] = (binary.resolve(), False)
    return files


def _tree_files(tree: Path) -> dict[str, tuple[Path, bool]]:
    return {
        path.relative_to(tree).as_posix(): (path, False)
        for path in tree.glob("**/*")
        if path.is_file()
    }


def _parse(arguments: list[str] | None) -> argparse.Namespace:
    parser = argparse.ArgumentParser(
        prog="stage.py", description=__doc__.splitlines()[0], allow_abbrev=False
    )
    parser.add_argument("--root", type=Path, required=True)
    parser.add_argument("--target", choices=sorted(TARGETS), required=True)
    parser.add_argument("--trees", type=Path, required=True)
    parser.add_argument("--engine", type=Path)
    parser.add_argument("--binary", type=Path, action="append", default=[])
    return parser.parse_args(arguments)


if __name__ == "__main__":
    sys.exit(main())
