#!/usr/bin/env python3
"""Checks the C and C++ sources against .clang-format, or rewrites them with --fix."""
from __future__ import annotations

import argparse
import re
import subprocess
import sys
from pathlib import Path

from sources import SOURCE_ROOT, files_below

# One fixed version: another one breaks lines elsewhere.
CLANG_FORMAT = "clang-format-14"
SUFFIXES = (".c", ".cpp", ".h")
BADLY_FORMATTED = re.compile(r"^(.+?):\d+:\d+: error: .*\[-Wclang-format-violations\]", re.MULTILINE)


def check(files: list[Path]) -> list[str]:
    """The files that are not formatted; an error of the tool itself is raised."""
    done = _run(["--dry-run", "-Werror"], files)
    bad = sorted(set(BADLY_FORMATTED.findall(done.stderr)))
    if done.returncode != 0 and not bad:
        raise RuntimeError(done.stderr.strip())
    return bad


def fix(files: list[Path]) -> None:
    done = _run(["-i"], files)
    if done.returncode != 0:
        raise RuntimeError(done.stderr.strip())


def _run(options: list[str], files: list[Path]) -> subprocess.CompletedProcess:
    command = [CLANG_FORMAT, "--style=file", *options, *map(str, files)]
    return subprocess.run(command, capture_output=True, text=True, check=False)


def main(arguments: list[str] | None = None) -> int:
    parser = argparse.ArgumentParser(prog="format", description=__doc__)
    parser.add_argument("--fix", action="store_true", help="rewrite the files")
    parser.add_argument("--root", type=Path, default=SOURCE_ROOT, help="root of the source tree")
    parser.add_argument("files", nargs="*", type=Path, help="only these files")
    options = parser.parse_args(arguments)
    files = options.files or list(files_below(options.root.resolve(), SUFFIXES))
    others = [str(file) for file in files if file.suffix not in SUFFIXES]
    if others:
        # The formatter would take any text for C++ and spoil it.
        print(f"format: no C or C++ source: {', '.join(others)}", file=sys.stderr)
        return 1
    if not files:
        print("format: there is no C or C++ source", file=sys.stderr)
        return 1
    try:
        if options.fix:
            fix(files)
        bad = check(files)
    except (OSError, RuntimeError) as error:
        print(f"format: {error}", file=sys.stderr)
        return 1
    for name in bad:
        print(f"{name}: not formatted; './tools/format.py --fix' formats it")
    print(f"format: {len(bad)} of {len(files)} files" if bad else "format: ok", file=sys.stderr)
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
