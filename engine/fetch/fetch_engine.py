#!/usr/bin/env python3
"""Gets the engine for a target, checks it and lays it out below the build tree.

    fetch_engine.py [--target linux-x64|windows-x64]    the fetched engine
    fetch_engine.py --engine-root PATH                  a local distribution, which is only checked

The result stands in <build>/engine/<abi>/<target>/, libraries and resources in one folder. It
appears there complete or not at all. The path of the engine is the only line on standard output;
what goes wrong is said in one line on standard error.
"""
from __future__ import annotations

import argparse
import contextlib
import errno
import os
import shutil
import signal
import sys
from pathlib import Path

import layout
import maven
import stamp
from artifacts import ARTIFACTS, TARGETS, Artifact, Interface, Target, load_interface
from errors import FetchError
from verify import verify

SOURCE_ROOT = Path(__file__).resolve().parents[2]
EXIT_FAILED = 1
EXIT_INTERRUPTED = 130


def main(arguments: list[str] | None = None) -> int:
    options = _parse(arguments)
    # A polite end request unwinds like Ctrl-C, so that nothing half-made is left.
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    try:
        print(provide(options))
        return 0
    except FetchError as error:
        _say(str(error))
        return EXIT_FAILED
    except OSError as error:
        if error.errno == errno.ENOSPC:
            _say(f"the disk is full: the engine needs about 500 MB below {options.build_dir}")
        else:
            _say(f"the engine could not be laid out: {error}")
        return EXIT_FAILED
    except KeyboardInterrupt:
        _say("interrupted; nothing was changed")
        return EXIT_INTERRUPTED


def provide(options: argparse.Namespace) -> Path:
    """Returns the folder of a checked engine; does the work for it only where no stamp holds."""
    target = TARGETS[options.target]
    interface = load_interface(options.interface, options.abi)
    if options.engine_root:
        return _provide_local(options, target, interface)
    artifact = ARTIFACTS.get((options.abi, options.target))
    if artifact is None:
        raise FetchError(
            f"engine {options.abi} is in no Maven repository; name a local one with --engine-root"
        )
    return _provide_fetched(options, target, interface, artifact)


def _provide_local(options: argparse.Namespace, target: Target, interface: Interface) -> Path:
    root = options.engine_root.resolve()
    home = options.build_dir / "engine" / options.abi
    mark = home / f"{target.name}.local.stamp"
    identity = {"root": str(root), **_expected(interface)}
    if stamp.holds(mark, identity):
        return root
    found = layout.find_local(root, target)
    layout.require(found, target, root)
    _verify_library(found[target.library], target, interface)
    home.mkdir(parents=True, exist_ok=True)
    stamp.write(mark, identity, found)
    return root


def _provide_fetched(
    options: argparse.Namespace, target: Target, interface: Interface, artifact: Artifact
) -> Path:
    home = options.build_dir / "engine" / options.abi
    folder = home / target.name
    mark = home / f"{target.name}.stamp"
    identity = {"archive": artifact.sha256, **_expected(interface)}
    if stamp.holds(mark, identity):
        return folder
    home.mkdir(parents=True, exist_ok=True)
    with _only_one(home):
        # Another call may have finished the work while this one waited for its turn.
        if stamp.holds(mark, identity):
            return folder
        _remove_leftovers(home)
        archive = maven.fetch(artifact, options.build_dir / "engine" / "cache", options.maven)
        partial = home / f"{target.name}.partial-{os.getpid()}"
        try:
            partial.mkdir()
            layout.unpack(archive, target, partial)
            found = layout.find_local(partial, target)
            layout.require(found, target, archive)
            _verify_library(found[target.library], target, interface)
            _put_in_place(partial, folder)
        finally:
            shutil.rmtree(partial, ignore_errors=True)
        stamp.write(mark, identity, layout.find_local(folder, target))
    return folder


def _expected(interface: Interface) -> dict[str, str]:
    return {
        "version": interface.version,
        "hash_linux": interface.hash_linux,
        "hash_universal": interface.hash_universal,
    }


def _verify_library(library: Path, target: Target, interface: Interface) -> None:
    # A library of another platform cannot be loaded here; the module itself refuses a wrong one.
    if target.name == "linux-x64":
        verify(library, interface)


def _put_in_place(partial: Path, folder: Path) -> None:
    replaced = folder.with_name(f"{folder.name}.partial-old-{os.getpid()}")
    if folder.exists():
        folder.rename(replaced)
    partial.rename(folder)
    shutil.rmtree(replaced, ignore_errors=True)


def _remove_leftovers(home: Path) -> None:
    """Removes what a killed run left: it had no chance to do so itself."""
    for leftover in home.glob("*.partial-*"):
        if leftover.is_dir():
            shutil.rmtree(leftover, ignore_errors=True)
        else:
            leftover.unlink()


@contextlib.contextmanager
def _only_one(home: Path):
    """Lets one call at a time work below `home`; the lock ends with the process that holds it."""
    try:
        import fcntl
    except ImportError:
        yield
        return
    with (home / "lock").open("w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield


def _say(text: str) -> None:
    print(f"fetch_engine: {text}", file=sys.stderr)


def _parse(arguments: list[str] | None) -> argparse.Namespace:
    parser = argparse.ArgumentParser(
        prog="fetch_engine.py", description=__doc__.splitlines()[0], allow_abbrev=False
    )
    parser.add_argument("--target", choices=sorted(TARGETS), default="linux-x64")
    parser.add_argument("--abi", choices=("104", "108"), default="108", help="engine interface")
    parser.add_argument(
        "--engine-root",
        type=Path,
        default=os.environ.get("ENGINE_ROOT") or None,
        help="check this unpacked distribution instead of fetching one (or set ENGINE_ROOT)",
    )
    parser.add_argument("--build-dir", type=Path, default=SOURCE_ROOT / "build")
    parser.add_argument("--interface", type=Path, default=SOURCE_ROOT / "engine" / "interface")
    parser.add_argument("--maven", default="mvn", help="the Maven command")
    options = parser.parse_args(arguments)
    if options.engine_root is not None:
        options.engine_root = Path(options.engine_root)
    options.build_dir = options.build_dir.resolve()
    return options


if __name__ == "__main__":
    sys.exit(main())
