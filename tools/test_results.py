"""Counts test results from what runners write for machines.

Every reader errs towards failure: a report that is missing, broken or empty, or one that shows no
failure although its program ended badly, counts as one failed test.
"""
from __future__ import annotations

import re
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field
from pathlib import Path

TAP_TOTALS = ("tests", "pass", "fail", "cancelled", "skipped", "todo")


@dataclass(frozen=True)
class Counts:
    """How many tests of a suite passed, failed and were skipped, and what is known of the failures."""

    passed: int = 0
    failed: int = 0
    skipped: int = 0
    failures: tuple[str, ...] = field(default=(), compare=False)

    def __add__(self, other: Counts) -> Counts:
        return Counts(
            self.passed + other.passed,
            self.failed + other.failed,
            self.skipped + other.skipped,
            self.failures + other.failures,
        )

    def __str__(self) -> str:
        text = f"{self.passed} passed, {self.failed} failed"
        return f"{text}, {self.skipped} skipped" if self.skipped else text

    @property
    def ran(self) -> int:
        return self.passed + self.failed


def with_exit_status(counts: Counts, status: int) -> Counts:
    """Adds one failure where the exit status tells of one that the counts do not show, and where
    nothing ran at all."""
    if (status != 0 and counts.failed == 0) or counts.ran == 0:
        return counts + failure(f"a program ended with status {status}")
    return counts


def failure(text: str) -> Counts:
    return Counts(failed=1, failures=(text,))


def from_junit(path: Path) -> Counts:
    """Reads the XML report of pytest or GoogleTest, case by case."""
    try:
        cases = list(ElementTree.parse(path).iter("testcase"))
    except (OSError, ElementTree.ParseError) as error:
        return failure(f"{path.name} cannot be read: {error}")
    counts = Counts()
    for case in cases:
        counts += _of_case(case)
    return counts


def _of_case(case: ElementTree.Element) -> Counts:
    for told in (*case.iter("failure"), *case.iter("error")):
        name = f"{case.get('classname', '')}.{case.get('name', '')}"
        return failure(f"{name}\n{told.text or told.get('message', '')}".rstrip())
    if case.find("skipped") is not None or case.get("result") in ("skipped", "suppressed"):
        return Counts(skipped=1)
    # GoogleTest marks a disabled test so; pytest writes no status.
    if case.get("status") == "notrun":
        return Counts(skipped=1)
    return Counts(passed=1)


def from_tap_totals(path: Path) -> Counts:
    """Reads the totals at the end of the TAP report of Node's test runner."""
    try:
        text = path.read_text(encoding="utf-8")
    except OSError as error:
        return failure(f"{path.name} cannot be read: {error}")
    totals = {}
    for name in TAP_TOTALS:
        found = re.findall(rf"^# {name} (\d+)$", text, flags=re.MULTILINE)
        if len(found) != 1:
            return failure(f"{path.name} has no total of '{name}'")
        totals[name] = int(found[0])
    counts = Counts(
        passed=totals["pass"],
        failed=totals["fail"] + totals["cancelled"],
        skipped=totals["skipped"] + totals["todo"],
    )
    if counts.ran + counts.skipped != totals["tests"]:
        return counts + failure(f"the totals of {path.name} do not add up")
    return counts


def from_check_lines(output: str) -> Counts:
    """Reads a program that prints "ok …" or "not ok …" for each check and at its end the plan
    "1..N": without the plan, or with another number of checks, it did not get to its end."""
    verdicts = re.findall(r"^(ok|not ok)\b", output, flags=re.MULTILINE)
    failures = tuple(re.findall(r"^not ok\b.*", output, flags=re.MULTILINE))
    counts = Counts(verdicts.count("ok"), len(failures), failures=failures)
    plans = re.findall(r"^1\.\.(\d+)$", output, flags=re.MULTILINE)
    if plans != [str(len(verdicts))]:
        return counts + failure("a program of checks did not get to its plan")
    return counts
