#!/usr/bin/env python3
"""Runs the test suites on finished builds and closes with one line of counts.

    run_tests.py [TARGET ...] [SUITE ...] [further arguments for the suites' own runner]

Without a target the suites run on the build for this machine, and without a suite all run that a
target has; those for Windows run on wine. The last line on standard output is "N passed, N failed", with
", N skipped" where tests were, after the ends of what the failed ones told. The exit code is 0 only
if nothing failed and every suite ran a test.
"""
from __future__ import annotations

import contextlib
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field, replace
from pathlib import Path
from typing import Callable, Iterator

import test_results
from sources import SOURCE_ROOT
from test_results import Counts
from virtual_display import virtual_display
from wine import WineError, wine_prefix

BUILD = Path(os.environ.get("ORBCEF_BUILD_DIR", SOURCE_ROOT / "build" / "linux-x64"))
REPORTS = BUILD / "test-reports"
PROGRAM_SECONDS = 900
# Two for two cores. A browser test waits for more than half of its time.
WORKERS = 2
BROWSER_WORKERS = 4
# Of what a failed test told, at the end of all.
FAILURE_LINES = 40
# For a test that hangs; the suites' own limits are far below.
TEST_SECONDS = 180
CHECKS = (
    *("check_text", "check_layers", "check_engine_names", "check_api_annotations", "format"),
    "check_symbols",
)
# What the user's shell may have set for a host must not reach the tests.
HOST_VARIABLES = ("ORBCEF_", "ORBInstallPath", "ORBTemp", "ORBHUB", "QVL_RIG_", "PATH_TEST")
# The one that is meant for them.
LIMITS_VARIABLE = "ORBCEF_TIMEOUT_FACTOR"

# Of the browser tests, the ones that a page's messages and scripts pass through.
ROAD = tuple(
    f"tests/browser/test_{name}.py"
    for name in ("road", "overview", "bindings", "natives", "promises", "scripts", "session")
)

Suite = Callable[[list[str]], Counts]


@dataclass(frozen=True)
class Program:
    """A test program as the build registered it."""

    name: str
    command: list[str]
    environment: dict[str, str] = field(default_factory=dict)
    seconds: float = PROGRAM_SECONDS


def run_pytest(name: str, *places: str, options: tuple[str, ...] = ()) -> Suite:
    def run(arguments: list[str]) -> Counts:
        report = _fresh_report(f"{name}.xml")
        missing = [place for place in places if not (SOURCE_ROOT / place).exists()]
        if missing:
            return _failure(f"there is no {' or no '.join(missing)}")
        command = [sys.executable, "-m", "pytest", "-q", "-rs", f"--junitxml={report}"]
        command += ["-o", f"cache_dir={BUILD / 'pytest-cache'}", f"--timeout={TEST_SECONDS}"]
        status = _run([*command, *options, *places, *arguments])
        return test_results.with_exit_status(test_results.from_junit(report), status)

    return run


def run_programs(suite: str) -> Suite:
    """The programs of GoogleTest that the build registered under the suite's name."""

    def run_one(program: Program, arguments: list[str]) -> Counts:
        report = _fresh_report(f"{program.name}.xml")
        # The drive makes it an absolute name for a program for Windows.
        drive = "Z:" if BUILD.name == WINDOWS else ""
        options = [f"--gtest_output=xml:{drive}{report}", "--gtest_brief=1", *arguments]
        done = _run_program(program, options, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        counts = test_results.with_exit_status(test_results.from_junit(report), done.returncode)
        if counts.failed:
            # A program that died may have said nothing of it, and left no report.
            end = f"{program.name} ended with status {done.returncode}\n"
            print(done.stdout, end=end, flush=True)
        _tell(program.name, counts)
        return counts

    def run(arguments: list[str]) -> Counts:
        with ThreadPoolExecutor(WORKERS) as workers:
            counts = workers.map(lambda program: run_one(program, arguments), _programs(suite))
            return sum(counts, Counts())

    return run


def run_abi(arguments: list[str]) -> Counts:
    total = Counts()
    for program in _programs("abi"):
        done = _run_program(program, arguments, stdout=subprocess.PIPE)
        counts = test_results.with_exit_status(
            test_results.from_check_lines(done.stdout), done.returncode
        )
        if counts.failed:
            print(done.stdout, end="")
        _tell(program.name, counts)
        total += counts
    return total


def run_script(arguments: list[str]) -> Counts:
    files = sorted(str(path) for path in (SOURCE_ROOT / "tests" / "script").glob("**/*.test.mjs"))
    if not files:
        return _failure("there is no tests/script/*.test.mjs")
    report = _fresh_report("script.tap")
    reporters = ["--test-reporter=spec", "--test-reporter-destination=stdout"]
    reporters += ["--test-reporter=tap", f"--test-reporter-destination={report}"]
    status = _run([shutil.which("node") or "node", "--test", *reporters, *arguments, *files])
    return test_results.with_exit_status(test_results.from_tap_totals(report), status)


def run_checks(arguments: list[str]) -> Counts:
    total = Counts()
    for check in CHECKS:
        options = ["--build", str(BUILD)] if check == "check_symbols" else []
        status = _run([sys.executable, str(SOURCE_ROOT / "tools" / f"{check}.py"), *options])
        total += Counts(failed=1) if status else Counts(passed=1)
    return total


SUITES: dict[str, Suite] = {
    "check": run_checks,
    "tools": run_pytest("tools", "tests/tools", "engine/generator/tests"),
    "abi": run_abi,
    "unit": run_programs("unit"),
    "script": run_script,
    "browser": run_pytest("browser", "tests/browser", options=("-n", str(BROWSER_WORKERS))),
    "road": run_pytest("road", *ROAD, options=("-n", str(BROWSER_WORKERS))),
    "standin": run_programs("standin"),
}


HOME = "linux-x64"
WINDOWS = "windows-x64"
# What a target does not name is the same on every target, or is another's affair. The build for
# this machine has them all, but leaves to the sanitizers what only they are there for.
SANITIZED = ("standin", "road")
TARGETS: dict[str, tuple[str, ...] | None] = {
    HOME: None,
    WINDOWS: ("abi", "unit", "browser", "standin"),
    "linux-x64-asan": ("standin",),
    "linux-x64-tsan": ("standin",),
    "linux-x64-ubsan": ("unit", "road"),
}


@contextlib.contextmanager
def use_target(target: str) -> Iterator[None]:
    """Lets the suites run on the build of a target."""
    global BUILD, REPORTS
    if target == HOME:
        yield
        return
    build, reports, variables = BUILD, REPORTS, dict(os.environ)
    factor = os.environ.get(LIMITS_VARIABLE, "1")
    BUILD = BUILD.with_name(target)
    REPORTS = BUILD / "test-reports"
    try:
        with wine_prefix() if target == WINDOWS else contextlib.nullcontext({}) as wine_variables:
            os.environ.update(wine_variables, ORBCEF_TEST_TARGET=target)
            # The engine has no GPU and no compiled code there, and each process starts for long.
            os.environ[LIMITS_VARIABLE] = str(3 * float(factor))
            yield
    finally:
        os.environ.clear()
        os.environ.update(variables)
        BUILD, REPORTS = build, reports


def run_target(target: str, names: list[str], arguments: list[str]) -> Counts:
    total = Counts()
    own = TARGETS[target]
    every = [name for name in SUITES if own or name not in SANITIZED]
    wanted = [name for name in names or every if own is None or name in own]
    if not wanted:
        return _failure(f"{target} has no suite {' and no '.join(names)}")
    try:
        with use_target(target):
            REPORTS.mkdir(parents=True, exist_ok=True)
            for name in wanted:
                label = name if target == HOME else f"{target} {name}"
                print(f"== {label}", flush=True)
                begin = time.monotonic()
                counts = SUITES[name](arguments)
                if counts.ran == 0:
                    counts += _failure("no test ran")
                _tell(label, counts, f" in {time.monotonic() - begin:.0f} s")
                failures = tuple(f"{label}: {failure}" for failure in counts.failures)
                total += replace(counts, failures=failures)
    except WineError as error:
        total += _failure(str(error))
    return total


def main(arguments: list[str]) -> int:
    targets, names = [], []
    while arguments and arguments[0] in TARGETS:
        targets.append(arguments.pop(0))
    while arguments and arguments[0] in SUITES:
        names.append(arguments.pop(0))
    if arguments and len(names) != 1:
        print(
            f"run_tests: no suite '{arguments[0]}'; there are {', '.join(SUITES)}, "
            "and further arguments need exactly one of them",
            file=sys.stderr,
        )
        return 2
    for variable in list(os.environ):
        if variable.startswith(HOST_VARIABLES) and variable != LIMITS_VARIABLE:
            del os.environ[variable]
    total = Counts()
    with virtual_display() as display:
        # Tests type and click: never on the user's own screen.
        os.environ["DISPLAY"] = display
        os.environ.pop("WAYLAND_DISPLAY", None)
        for target in targets or [HOME]:
            total += run_target(target, names, arguments)
    for failure in total.failures:
        first, *lines = failure.splitlines()
        print(f"failed: {first}", *(f"    {line}" for line in lines[-FAILURE_LINES:]), sep="\n")
    print(total, flush=True)
    return 1 if total.failed else 0


def _programs(suite: str) -> list[Program]:
    """The test programs that the build registered under the suite's name, alone or with a part
    after a dot or an underscore."""
    named = rf"^{suite}([._].*)?$"
    listing = _run_captured(
        ["ctest", "--test-dir", str(BUILD), "--show-only=json-v1", "--tests-regex", named]
    )
    try:
        return [_program_of(test) for test in json.loads(listing.stdout)["tests"]]
    except (ValueError, KeyError):
        print(f"the build in {BUILD} lists no tests, or one that was not built", file=sys.stderr)
        return []


def _program_of(test: dict) -> Program:
    properties = {entry["name"]: entry["value"] for entry in test.get("properties", ())}
    return Program(
        name=test["name"],
        # A program that was not built has no command.
        command=test["command"],
        environment=dict(text.split("=", 1) for text in properties.get("ENVIRONMENT", ())),
        seconds=properties.get("TIMEOUT", PROGRAM_SECONDS),
    )


def _fresh_report(name: str) -> Path:
    report = REPORTS / name
    report.unlink(missing_ok=True)
    return report


def _run_program(
    program: Program, arguments: list[str], **outputs: int | None
) -> subprocess.CompletedProcess:
    # A folder of its own: what the engine drops in the current directory must not reach the sources.
    # A helper of the engine may write there still when the program has ended.
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        command = [*program.command, *arguments]
        return _run_captured(command, program.seconds, program.environment, folder, **outputs)


def _run(command: list[str]) -> int:
    return _run_captured(command, stdout=None).returncode


def _run_captured(
    command: list[str],
    seconds: float = PROGRAM_SECONDS,
    environment: dict[str, str] | None = None,
    folder: str | None = None,
    stdout: int | None = subprocess.PIPE,
    stderr: int | None = None,
) -> subprocess.CompletedProcess:
    """Runs a program to its end; one that cannot be started or does not end has failed."""
    try:
        return subprocess.run(
            command,
            cwd=folder or SOURCE_ROOT,
            env={**os.environ, **(environment or {})},
            stdin=subprocess.DEVNULL,
            stdout=stdout,
            stderr=stderr,
            text=True,
            errors="replace",
            timeout=seconds,
            check=False,
        )
    except subprocess.TimeoutExpired as error:
        said = error.stdout.decode(errors="replace") if error.stdout else ""
        text = f"{said}{command[0]} did not end within {seconds} seconds\n"
    except OSError as error:
        text = f"{command[0]} could not be started: {error.strerror}\n"
    if stdout is None:
        print(text, end="", flush=True)
    return subprocess.CompletedProcess(command, 1, stdout=text)


def _tell(name: str, counts: Counts, rest: str = "") -> None:
    # The mark in front keeps these lines apart from the one closing line.
    print(f"== {name}: {counts}{rest}", flush=True)


def _failure(text: str) -> Counts:
    print(f"failed: {text}", flush=True)
    return test_results.failure(text)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
