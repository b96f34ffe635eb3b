#!/usr/bin/env python3
"""Checks the plain form of the sources: length, white space at line ends, line ends, encoding."""
from __future__ import annotations

import sys
from pathlib import Path

from sources import files_below, run_check

SOURCE_LINES = 500
HEADER_LINES = 200
SOURCE_SUFFIXES = (".c", ".cpp", ".js", ".mjs", ".py", ".sh", "dev", ".ci/run", "CMakeLists.txt")
HEADER_SUFFIXES = (".h",)
TEXT_SUFFIXES = (
    *SOURCE_SUFFIXES,
    *HEADER_SUFFIXES,
    *(".cmake", ".css", ".html", ".in", ".ini", ".json", ".md", ".toml", ".txt", ".xml", ".yml"),
    *(".clang-format", ".clang-tidy", ".editorconfig", ".gitignore"),
)
# Test data may be broken on purpose.
EXEMPT_FOLDERS = ("tests/data/",)


def find_problems(root: Path) -> list[str]:
    problems = []
    for path in files_below(root, TEXT_SUFFIXES):
        relative = path.relative_to(root).as_posix()
        if relative.startswith(EXEMPT_FOLDERS) or path.is_symlink():
            continue
        problems.extend(f"{relative}{problem}" for problem in _problems_of(path))
    return problems


def _problems_of(path: Path) -> list[str]:
    content = path.read_bytes()
    try:
        text = content.decode("utf-8")
    except UnicodeDecodeError:
        return [": not UTF-8"]
    problems = []
    if "\r" in text:
        problems.append(": a carriage return; lines end in a line feed alone")
    if text and not text.endswith("\n"):
        problems.append(": the last line does not end")
    lines = text.split("\n")[:-1]
    for number, line in enumerate(lines, 1):
        if line != line.rstrip():
            problems.append(f":{number}: white space at the end of the line")
    limit = _limit_of(path.as_posix())
    if limit is not None and len(lines) > limit:
        problems.append(f": {len(lines)} lines, at most {limit}; split it by what it does")
    return problems


def _limit_of(name: str) -> int | None:
    if name.endswith(HEADER_SUFFIXES):
        return HEADER_LINES
    if name.endswith(SOURCE_SUFFIXES):
        return SOURCE_LINES
    return None


if __name__ == "__main__":
    sys.exit(run_check("check_text", __doc__, find_problems))
