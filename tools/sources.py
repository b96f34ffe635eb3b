"""Finds the files of the source tree that the checks look at, and reports what a check found."""
from __future__ import annotations

import argparse
import os
import sys
from pathlib import Path
from typing import Callable, Iterable, Iterator

SOURCE_ROOT = Path(__file__).resolve().parents[1]
SKIPPED_FOLDERS = {".cache", ".git", ".pytest_cache", "__pycache__", "build", "node_modules"}
# Files that a test compares with byte for byte follow no rule but that.
GOLDEN_FOLDER = "golden"


def files_below(root: Path, suffixes: Iterable[str] = ()) -> Iterator[Path]:
    """All files of the source tree in a fixed order; only those with one of `suffixes`, if any."""
    wanted = tuple(suffixes)
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(set(folders) - SKIPPED_FOLDERS - {GOLDEN_FOLDER})
        for name in sorted(names):
            if not wanted or name.endswith(wanted):
                yield Path(folder, name)


def run_check(name: str, purpose: str, find_problems: Callable[[Path], list[str]]) -> int:
    """The command line that all checks share: one line for each problem, exit code 1 if any."""
    parser = argparse.ArgumentParser(prog=name, description=purpose)
    parser.add_argument("--root", type=Path, default=SOURCE_ROOT, help="root of the source tree")
    problems = find_problems(parser.parse_args().root.resolve())
    for problem in problems:
        print(problem)
    print(f"{name}: {len(problems)} problems" if problems else f"{name}: ok", file=sys.stderr)
    return 1 if problems else 0
