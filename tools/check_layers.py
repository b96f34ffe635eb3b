#!/usr/bin/env python3
"""Checks who includes whom: knowledge goes downwards only, and the module's sources know nothing of
the engine but its public headers."""
from __future__ import annotations

import re
import sys
from dataclasses import dataclass
from pathlib import Path

from sources import SOURCE_ROOT, files_below, run_check

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
MODULE = "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/"
OFFICIAL_HEADERS = SOURCE_ROOT / "tools" / "engine_headers.txt"
# The C++ standard's own headers have no suffix; these are the C library's that C++17 keeps.
C_HEADERS = {
    *("assert.h", "ctype.h", "errno.h", "float.h", "inttypes.h", "limits.h", "locale.h", "math.h"),
    *("setjmp.h", "signal.h", "stdarg.h", "stdbool.h", "stddef.h", "stdint.h", "stdio.h"),
    *("stdlib.h", "string.h", "time.h", "wchar.h", "wctype.h"),
}


@dataclass(frozen=True)
class Layer:
    """A part of the tree, and the parts whose headers it may include besides its own."""

    name: str
    folder: str
    may_know: tuple[str, ...] = ()
    standard_headers_only: bool = False


# The first layer whose folder a file lies in is the file's.
LAYERS = (
    Layer("api", "ChromiumEmbeddedPlugin/api/", standard_headers_only=True),
    Layer("module", MODULE, ("api", "engine", "platform"), standard_headers_only=True),
    Layer("helper", "ChromiumEmbeddedPlugin/7XOWebHelper.m/", ("api", "platform")),
    Layer("engine", "engine/"),
    Layer("platform", "platform/"),
    Layer("host", "host/", ("api",)),
)


def find_problems(root: Path) -> list[str]:
    owners = _owners_of_headers(root)
    official = _official_headers()
    problems = []
    for path in files_below(root, (".c", ".cpp", ".h")):
        relative = path.relative_to(root).as_posix()
        layer = next((layer for layer in LAYERS if relative.startswith(layer.folder)), None)
        if layer is None:
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            problem = _problem_of(layer, path, match[1] == "<", match[2], owners, official)
            if problem:
                problems.append(f"{relative}:{number}: {problem}")
    return problems


def _problem_of(
    layer: Layer,
    path: Path,
    angled: bool,
    name: str,
    owners: dict[str, set[str]],
    official: set[str],
) -> str | None:
    if angled:
        if layer.standard_headers_only and not _is_standard(name):
            return f"{layer.name} includes <{name}>, which is no header of the standard library"
        return None
    if layer.name == "module" and name.startswith("include/"):
        if name.removeprefix("include/") not in official:
            return f'"{name}" is no public header of the engine'
        return None
    if ".." in name.split("/"):
        return f'"{name}" climbs out of its folder; name the header by its include path'
    if (path.parent / name).exists():
        return None
    known = owners.get(name, set())
    if not known:
        if layer.name == "engine":
            # The binding's other headers are generated into the build tree.
            return None
        return f'"{name}" is a header of no part of this tree'
    if known & {layer.name, *layer.may_know}:
        return None
    return f'{layer.name} may not know {", ".join(sorted(known))}: "{name}"'


def _owners_of_headers(root: Path) -> dict[str, set[str]]:
    """The layers that own a header, by each name that an include may use for it: every tail of its
    path, since any folder above it may stand on an include path."""
    owners: dict[str, set[str]] = {}
    for path in files_below(root, (".h",)):
        relative = path.relative_to(root)
        folder = relative.as_posix()
        owner = next((layer.name for layer in LAYERS if folder.startswith(layer.folder)), None)
        owner = owner or relative.parts[0]
        for depth in range(len(relative.parts)):
            owners.setdefault("/".join(relative.parts[depth:]), set()).add(owner)
    return owners


def _official_headers() -> set[str]:
    lines = OFFICIAL_HEADERS.read_text(encoding="utf-8").splitlines()
    return {line.strip() for line in lines if line.strip() and not line.startswith("#")}


def _is_standard(name: str) -> bool:
    return ("." not in name and "/" not in name) or name in C_HEADERS


if __name__ == "__main__":
    sys.exit(run_check("check_layers", __doc__, find_problems))
