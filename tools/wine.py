#!/usr/bin/env python3
"""Runs programs for Windows on this machine, in a wine prefix of the build's own.

    wine.py PROGRAM [ARGUMENT ...]    runs one program

The prefix stands below the build of the target. Its processes end with `wine_prefix`, or at the
end of this program; those of other prefixes are left alone.
"""
from __future__ import annotations

import contextlib
import fcntl
import os
import shutil
import stat
import subprocess
import sys
from pathlib import Path, PurePosixPath
from typing import Iterator

from sources import SOURCE_ROOT
from virtual_display import virtual_display

PREFIX = SOURCE_ROOT / "build" / "windows-x64" / "wine"
# Debian keeps the loader for 64-bit programs out of the usual search path.
SEARCH_PATH = os.pathsep.join((os.environ.get("PATH", os.defpath), "/usr/lib/wine"))
FONTS = Path("/usr/share/wine/fonts")
MAKE_SECONDS = 300

# Changes with each change of what `_make` does, so that an old prefix is made again.
RECIPE = "4"
REPLACED_KEY = r"HKCU\Software\Wine\Fonts\Replacements"
FONT_KEY = r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\Fonts"
REGISTRY = (
    # Without this font the engine's UI thread looks for it until its stack ends.
    (FONT_KEY, "Tahoma (TrueType)", "tahoma.ttf"),
    (FONT_KEY, "Tahoma Bold (TrueType)", "tahomabd.ttf"),
    # The fonts that the engine takes as a last resort. Without one of them text without a font of its
    # own is not seen, and the renderer faults where it paints the mark of a list or a summary.
    (REPLACED_KEY, "Arial", "Liberation Sans"),
    (REPLACED_KEY, "Times New Roman", "Liberation Serif"),
    (REPLACED_KEY, "Courier New", "Liberation Mono"),
    # The display has no window manager: wine would wait two seconds for its answer again and again.
    (r"HKCU\Software\Wine\X11 Driver", "Managed", "N"),
    # There is no sound here, and each process would look for it at length.
    (r"HKCU\Software\Wine\Drivers", "Audio", ""),
    # The engine draws without a GPU, but asks for one at each start: OpenGL takes longest to say no.
    (r"HKCU\Software\Wine\Direct3D", "renderer", "no3d"),
)


class WineError(Exception):
    """Wine, or a prefix for it, cannot be had; the text tells why."""


def is_available() -> bool:
    return shutil.which("wine64", path=SEARCH_PATH) is not None



def environment(prefix: Path = PREFIX) -> dict[str, str]:
    """What a process needs to run programs for Windows in the prefix."""
    return {
        **os.environ,
        "PATH": SEARCH_PATH,
        "WINEPREFIX": str(prefix),
        "WINEARCH": "win64",
        "WINEDEBUG": os.environ.get("WINEDEBUG", "-all"),
        # A crashed process must end instead of waiting for a debugger; no page runs .NET or MSHTML.
        "WINEDLLOVERRIDES": "winedbg.exe=d;mscoree=;mshtml=",
        # Wine turns file names into text by the locale.
        "LC_ALL": "C.UTF-8",
    }


@contextlib.contextmanager
def wine_prefix(prefix: Path = PREFIX) -> Iterator[dict[str, str]]:
    """Yields the environment to run programs with; needs a display in the own one. All processes
    of the prefix have ended afterwards."""
    if not is_available():
        raise WineError("there is no wine64 on this machine; './dev setup' installs it")
    prefix.parent.mkdir(parents=True, exist_ok=True)
    with (prefix.parent / "wine.lock").open("w") as lock:
        try:
            # The end of a second user would end the programs of the first one.
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError as error:
            raise WineError(f"another run uses the wine prefix {prefix}") from error
        variables = environment(prefix)
        try:
            _make(prefix, variables)
            with _resident(variables):
                yield variables
        finally:
            _server(variables, "-k")
            _server(variables, "-w")


def _make(prefix: Path, variables: dict[str, str]) -> None:
    stamp = prefix / "orbcef.stamp"
    wanted = f"{RECIPE} {_output(['wine64', '--version'], variables)}"
    if stamp.is_file() and stamp.read_text(encoding="utf-8") == wanted:
        return
    shutil.rmtree(prefix, ignore_errors=True)
    prefix.mkdir(parents=True)
    _output(["wine64", "wineboot", "-i"], variables)
    folder = prefix / "drive_c" / "windows" / "Fonts"
    for font in FONTS.glob("tahoma*.ttf"):
        shutil.copy(font, folder)
    for key, name, value in REGISTRY:
        _output(["wine64", "reg", "add", key, "/v", name, "/d", value, "/f"], variables)
    # The registry reaches the disk when the last process has ended.
    _server(variables, "-w")
    stamp.write_text(wanted, encoding="utf-8")


@contextlib.contextmanager
def _resident(variables: dict[str, str]) -> Iterator[None]:
    """A process that keeps wine's own services alive, whose start takes longer than many a test."""
    loader = shutil.which("wine64", path=SEARCH_PATH) or "wine64"
    process = subprocess.Popen(
        [loader, "cmd.exe"],
        env=variables,
        stdin=subprocess.PIPE,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
    )
    try:
        # The first window starts wine's desktop, which keeps the outputs of the program that opens
        # it. A test that reads a program to the end of its output would read for ever.
        _quietly(["wine64", "rundll32.exe", "user32.dll,GetDesktopWindow"], variables)
        yield
    finally:
        # The command interpreter ends with its input.
        process.stdin.close()
        try:
            process.wait(MAKE_SECONDS)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def _output(command: list[str], variables: dict[str, str]) -> str:
    try:
        done = subprocess.run(
            [shutil.which(command[0], path=SEARCH_PATH) or command[0], *command[1:]],
            env=variables,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            errors="replace",
            timeout=MAKE_SECONDS,
            check=False,
        )
    except (OSError, subprocess.TimeoutExpired) as error:
        raise WineError(f"the wine prefix cannot be made: {error}") from error
    if done.returncode != 0:
        raise WineError(f"the wine prefix cannot be made: {' '.join(command)}: {done.stdout}")
    return done.stdout.strip()


def _server(variables: dict[str, str], option: str) -> None:
    """Speaks to the prefix's own server; one that has ended already is fine."""
    _quietly(["wineserver", option], variables)


def _quietly(command: list[str], variables: dict[str, str]) -> None:
    subprocess.run(
        [shutil.which(command[0], path=SEARCH_PATH) or command[0], *command[1:]],
        env=variables,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
        timeout=MAKE_SECONDS,
        check=False,
    )


def _pass_through_pipe(descriptor: int) -> None:
    """Puts a pipe in front of an output that is a file: wine does not tell a Python for Windows
    what it needs to know of one."""
    if not stat.S_ISREG(os.fstat(descriptor).st_mode):
        return
    with subprocess.Popen(["cat"], stdin=subprocess.PIPE, stdout=descriptor) as copier:
        os.dup2(copier.stdin.fileno(), descriptor)
        # It ends with the last process that writes, which may be after this one.
        copier.returncode = 0


def main(arguments: list[str]) -> int:
    if not arguments:
        print(__doc__, file=sys.stderr)
        return 2
    loader = shutil.which("wine64", path=SEARCH_PATH) or "wine64"
    # Inside of `wine_prefix` the program is one of many, and the prefix is another's to end.
    for output in (sys.stdout, sys.stderr):
        _pass_through_pipe(output.fileno())
    if os.environ.get("WINEPREFIX") == str(PREFIX):
        os.execve(loader, [loader, *arguments], environment())
    try:
        with contextlib.ExitStack() as stack:
            if not os.environ.get("DISPLAY"):
                os.environ["DISPLAY"] = stack.enter_context(virtual_display())
            variables = stack.enter_context(wine_prefix())
            return subprocess.run([loader, *arguments], env=variables, check=False).returncode
    except WineError as error:
        print(f"wine: {error}", file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
