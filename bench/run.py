"""Runs benches: the module against the bare engine, in one run, with fresh processes that take turns.

    python3 bench/run.py [start] [send] [call] [ladder] [script] [--runs N]

The last line of a workload is `NAME ratio R (aim ...)`. R is the module's median divided by the bare engine's: of the
time for times, of the rate for rates. A workload with several figures has a line for each, and R is the worst of them.
A process that loses, changes or reorders anything fails the run.
"""

from __future__ import annotations

import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path
from typing import Callable

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "linux-x64"
PROGRAMS = {"bare": BUILD / "bench" / "bench_bare", "module": BUILD / "bench" / "bench_module"}


@dataclass(frozen=True)
class Workload:
    unit: str
    aim: str
    # Of the medians of module and bare engine.
    is_met: Callable[[float, float], bool]
    higher_is_better: bool


def rate(unit: str, least: float) -> Workload:
    return Workload(unit, f"ratio >= {least}", lambda module, bare: module >= least * bare, True)


def duration(unit: str, most: float) -> Workload:
    return Workload(unit, f"ratio <= {most}", lambda module, bare: module <= most * bare, False)


WORKLOADS = {
    "start": Workload("ms", "start <= bare + 30 ms", lambda module, bare: module <= bare + 30, False),
    "send": rate("strings/s", 0.85),
    "call": duration("us", 1.15),
    "ladder": rate("MiB/s", 0.8),
    "script": rate("scripts/s", 0.9),
}


def measure(program: str, workload: str, display: str) -> dict[str, float]:
    """One fresh process with a fresh profile; the values that it measured, by name."""
    profile = tempfile.mkdtemp(prefix="orbcef-bench-")
    try:
        environment = {k: v for k, v in os.environ.items() if not k.startswith("ORB")}
        environment["DISPLAY"] = display
        roots = f"{BUILD / 'root'};{ROOT / 'bench'}"
        command = [str(PROGRAMS[program]), "--workload", workload, "--roots", roots, "--profile", profile,
                   "--started", str(time.monotonic_ns())]
        done = subprocess.run(command, env=environment, capture_output=True, text=True, timeout=180)
        results = [line.split() for line in done.stdout.splitlines() if line.startswith("RESULT ")]
        if done.returncode != 0 or not results:
            sys.exit(f"{workload}: {program} failed with status {done.returncode}\n{done.stdout}{done.stderr}")
        return {name: float(value) for _, name, value in results}
    finally:
        shutil.rmtree(profile, ignore_errors=True)


def run(name: str, runs: int, display: str) -> None:
    workload = WORKLOADS[name]
    values = {"bare": [], "module": []}
    # The first process of each kind only warms the file cache.
    for program in values:
        measure(program, name, display)
    for number in range(runs):
        for program in values:
            measured = measure(program, name, display)
            values[program].append(measured)
            shown = ", ".join(f"{figure} {value:.1f}" for figure, value in measured.items())
            print(f"{name} {program:6} {number + 1}/{runs} {shown} {workload.unit}", flush=True)
    ratios = []
    for figure in values["bare"][0]:
        bare, module = (statistics.median(one[figure] for one in values[p]) for p in ("bare", "module"))
        ratios.append(module / bare)
        print(f"{name} {figure} median bare {bare:.1f} {workload.unit}, module {module:.1f} {workload.unit}, "
              f"ratio {module / bare:.3f}, aim {'met' if workload.is_met(module, bare) else 'MISSED'}")
    worst = min(ratios) if workload.higher_is_better else max(ratios)
    print(f"{name} ratio {worst:.3f} (aim {workload.aim})", flush=True)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("workloads", nargs="*", metavar="NAME", help=f"of {', '.join(WORKLOADS)}; default all")
    parser.add_argument("--runs", type=int, default=5, help="fresh processes of each program (default 5)")
    arguments = parser.parse_args()
    unknown = [name for name in arguments.workloads if name not in WORKLOADS]
    if unknown or arguments.runs < 1:
        parser.error(f"no such workload: {', '.join(unknown)}" if unknown else "--runs takes 1 or more")
    sys.path.insert(0, str(ROOT / "tools"))
    from virtual_display import virtual_display  # the one place that starts Xvfb

    with virtual_display() as display:
        for workload in arguments.workloads or WORKLOADS:
            run(workload, arguments.runs, display)


if __name__ == "__main__":
    main()
