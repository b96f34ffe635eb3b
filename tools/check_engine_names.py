#!/usr/bin/env python3
"""Checks that the module uses public names of the engine only, and only such as both supported versions have, so that
it also compiles against an official SDK of either."""
from __future__ import annotations

import csv
import re
import sys
from pathlib import Path

from sources import SOURCE_ROOT, files_below, run_check

MODULE = "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m"
FACTS = SOURCE_ROOT / "engine" / "interface"
VERSIONS = ("104", "108")
# Public names that stand in no table of facts: the wrapper's own helpers and the version macros.
WRAPPER_NAMES = SOURCE_ROOT / "tools" / "engine_names.txt"
NAME = re.compile(r"\b(?:Cef[A-Z]\w*|CEF_\w+|cef_\w+|CHROME_VERSION_\w+)\b")
COMMENTS_AND_TEXTS = re.compile(r"//[^\n]*|/\*.*?\*/|\"(?:\\.|[^\"\\\n])*\"", re.S)


def public_names() -> set[str]:
    both = set.intersection(*(_names_of(FACTS / version) for version in VERSIONS))
    lines = WRAPPER_NAMES.read_text(encoding="utf-8").splitlines()
    return both | {line.strip() for line in lines if line.strip() and not line.startswith("#")}


def find_problems(root: Path) -> list[str]:
    public = public_names()
    problems = []
    for path in files_below(root / MODULE, (".cpp", ".h")):
        text = COMMENTS_AND_TEXTS.sub(_keep_lines, path.read_text(encoding="utf-8"))
        for number, line in enumerate(text.splitlines(), 1):
            for name in NAME.findall(line):
                if name not in public:
                    relative = path.relative_to(root).as_posix()
                    problems.append(f"{relative}:{number}: {name} is no public name of both engine versions")
    return problems


def _keep_lines(match: re.Match) -> str:
    return "\n" * match[0].count("\n")


def _names_of(folder: Path) -> set[str]:
    names: set[str] = set()
    for row in _rows(folder / "interfaces.tsv"):
        if row["slot"] == "base":
            names.add(row["cxx_method"])
    for row in _rows(folder / "functions.tsv"):
        names |= {row["function"], row["cxx_function"].partition("::")[0]}
    for row in _rows(folder / "records.tsv"):
        names |= {row["struct"], row["cxx_class"]}
    for row in _rows(folder / "enums.tsv"):
        names |= {row["enum"], row["constant"]}
    for row in _rows(folder / "typedefs.tsv"):
        names.add(row["name"])
    return names


def _rows(path: Path):
    with path.open(encoding="utf-8", newline="") as file:
        yield from csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE)


if __name__ == "__main__":
    sys.exit(run_check("check_engine_names", __doc__, find_problems))
