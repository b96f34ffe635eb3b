#!/usr/bin/env python3
"""Checks the built module as a library: what it exports, what it is linked with, and that no two of
the objects that it is made of define the same symbol.

A host finds the module's functions by name, so an export too many is a promise nobody meant, and a
library too many is one that a user's machine may lack.
"""
from __future__ import annotations

import argparse
import json
import re
import shlex
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

from sources import SOURCE_ROOT

MODULE = "root/code/bin/libORBCefWrapperMT.so"
WINDOWS_MODULE = "root/code/bin/ORBCefWrapperMT.dll"
# What the module's C++ face exports, as prefixes of demangled names; the C names stand in full.
EXPORTS = ("ORBCefPlugin_Tools::SetORBCefTools(", "ORBCefToolsAccessor::")
C_EXPORTS = {"orbcef_pluginfactory", "MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT"}
# The language's standard library and the operating system; the engine is loaded at run time.
LIBRARIES = re.compile(
    r"(libstdc\+\+|libgcc_s|libm|libc|libpthread|libdl|ld-linux-x86-64|libX11|libXtst|libxcb(-\w+)?)\.so"
)
NEEDED = re.compile(r"\(NEEDED\)\s+Shared library: \[([^\]]+)\]")
# What is part of every Windows; the compiler's libraries must be inside the module.
WINDOWS_LIBRARIES = re.compile(
    r"(advapi32|gdi32|kernel32|msvcrt|ole32|shell32|shlwapi|user32|ws2_32)\.dll", re.IGNORECASE
)
WINDOWS_NEEDED = re.compile(r"^\s*DLL Name: (\S+)", re.MULTILINE)
# The table of names behind its heading, up to an empty line; older binutils give an index alone.
NAME_TABLE = re.compile(r"^\[Ordinal/Name Pointer\] Table.*\n((?:.*\S.*\n)*)", re.MULTILINE)
NAME_ENTRY = re.compile(r"^\s*\[\s*\d+\].*?(\S+)\s*$", re.MULTILINE)
STRONG_KINDS = "TDBR"


def export_problems(demangled: list[str]) -> list[str]:
    names = set(demangled)
    problems = [f"does not export {name}" for name in sorted(C_EXPORTS - names)]
    problems += [
        f"does not export anything of {prefix.rstrip('(:')}"
        for prefix in EXPORTS
        if not any(name.startswith(prefix) for name in names)
    ]
    problems += [
        f"exports {name}"
        for name in sorted(names - C_EXPORTS)
        if not name.startswith(EXPORTS)
    ]
    return problems


def library_problems(dynamic_section: str) -> list[str]:
    return _foreign(NEEDED.findall(dynamic_section), LIBRARIES)


def windows_library_problems(headers: str) -> list[str]:
    """Takes what `objdump --private-headers` says of a DLL."""
    return _foreign(WINDOWS_NEEDED.findall(headers), WINDOWS_LIBRARIES)


def _foreign(needed: list[str], allowed: re.Pattern) -> list[str]:
    if not needed:
        return ["names no library that it needs: its headers were not understood"]
    return [f"is linked with {name}" for name in needed if not allowed.match(name)]


def windows_exports(headers: str) -> list[str]:
    """The mangled names that a DLL exports, of what `objdump --private-headers` says of it."""
    table = NAME_TABLE.search(headers)
    return NAME_ENTRY.findall(table[1]) if table else []


def duplicate_problems(symbols: list[tuple[str, str, str]]) -> list[str]:
    """Takes (object, kind, name) of all symbols that the objects define."""
    objects = defaultdict(set)
    for where, kind, name in symbols:
        if kind in STRONG_KINDS:
            objects[name].add(where)
    return [
        f"{name} is defined in {', '.join(sorted(where))}"
        for name, where in sorted(objects.items())
        if len(where) > 1
    ]


def module_problems(build: Path) -> list[str]:
    windows = build / WINDOWS_MODULE
    if windows.exists():
        headers = _output("objdump", "--private-headers", str(windows))
        # On its standard input: a command line has room for few names.
        exports = _output("c++filt", given="\n".join(windows_exports(headers))).splitlines()
        return [
            f"{windows.name} {text}"
            for text in (*export_problems(exports), *windows_library_problems(headers))
        ]
    module = build / MODULE
    problems = export_problems(_exports_of(module))
    problems += library_problems(_output("readelf", "--dynamic", str(module)))
    return [f"{module.name} {text}" for text in problems]


def _exports_of(library: Path) -> list[str]:
    output = _output("nm", "--dynamic", "--defined-only", "--demangle", str(library))
    return [line.split(" ", 2)[2] for line in output.splitlines()]


def objects_of(build: Path, targets: tuple[str, ...]) -> list[Path]:
    """The objects of some targets as the present build makes them: a folder may hold older ones."""
    entries = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    objects = []
    for entry in entries:
        words = shlex.split(entry["command"])
        name = words[words.index("-o") + 1]
        if any(f"/{target}.dir/" in name for target in targets):
            objects.append(Path(entry["directory"], name))
    return objects


def symbols_of(objects: list[Path]) -> list[tuple[str, str, str]]:
    symbols = []
    output = _output(
        *("nm", "--defined-only", "--print-file-name", "--format=sysv", *map(str, objects))
    )
    for line in output.splitlines():
        # "path:name|address|kind|type|size|line|section", with blanks around.
        columns = [column.strip() for column in line.split("|")]
        if len(columns) == 7 and ":" in columns[0]:
            path, name = columns[0].rsplit(":", 1)
            # Objects for Windows have no weak kinds: what many may define has a section of its
            # own, with its name behind a "$", of which the linker keeps one.
            kind = "W" if "$" in columns[6] else columns[2]
            symbols.append((path.split("CMakeFiles/")[-1], kind, name))
    return symbols


def _output(*command: str, given: str = "") -> str:
    return subprocess.run(
        command, input=given, capture_output=True, text=True, check=True
    ).stdout


def main(arguments: list[str] | None = None) -> int:
    parser = argparse.ArgumentParser(prog="check_symbols", description=__doc__)
    parser.add_argument("--build", type=Path, default=SOURCE_ROOT / "build" / "linux-x64")
    parser.add_argument("--abi", default="108", help="engine interface of the built module")
    options = parser.parse_args(arguments)
    targets = (f"orbcef_module_{options.abi}", f"orbcef_engine_{options.abi}", "orbcef_platform")
    try:
        objects = objects_of(options.build, targets)
        if not objects:
            raise ValueError(f"no objects of {', '.join(targets)} are built")
        problems = [*module_problems(options.build), *duplicate_problems(symbols_of(objects))]
    except subprocess.CalledProcessError as error:
        print(f"check_symbols: {error.stderr.strip()}", file=sys.stderr)
        return 1
    except (OSError, ValueError, KeyError) as error:
        print(f"check_symbols: {options.build} cannot be checked: {error}", file=sys.stderr)
        return 1
    for problem in problems:
        print(problem)
    print(f"check_symbols: {len(problems)} problems" if problems else "check_symbols: ok",
          file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
