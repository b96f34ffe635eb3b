"""Runs benches: the module against the bare engine, in one run, with fresh processes that take turns.

    python3 bench/run.py [start] [send] [--runs N]

The last line of a workload is `NAME ratio R (aim ...)`. R is the module's median divided by the bare engine's: of the
time for times, of the rate for rates. A process that loses or reorders anything fails the run.
"""

import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "linux-x64"
PROGRAMS = {"bare": BUILD / "bench" / "bench_bare", "module": BUILD / "bench" / "bench_module"}
# name: (unit, aim as text, whether the medians of module and bare meet it)
WORKLOADS = {
    "start": ("ms", "start <= bare + 30 ms", lambda module, bare: module <= bare + 30),
    "send": ("strings/s", "ratio >= 0.85", lambda module, bare: module >= 0.85 * bare),
}


def measure(program: str, workload: str, display: str) -> float:
    """One fresh process with a fresh profile; the value that it measured."""
    profile = tempfile.mkdtemp(prefix="orbcef-bench-")
    try:
        environment = {k: v for k, v in os.environ.items() if not k.startswith("ORB")}
        environment["DISPLAY"] = display
        roots = f"{BUILD / 'root'};{ROOT / 'bench'}"
        command = [str(PROGRAMS[program]), "--workload", workload, "--roots", roots, "--profile", profile,
                   "--started", str(time.monotonic_ns())]
        done = subprocess.run(command, env=environment, capture_output=True, text=True, timeout=90)
        results = [line.split()[1] for line in done.stdout.splitlines() if line.startswith("RESULT ")]
        if done.returncode != 0 or len(results) != 1:
            sys.exit(f"{workload}: {program} failed with status {done.returncode}\n{done.stdout}{done.stderr}")
        return float(results[0])
    finally:
        shutil.rmtree(profile, ignore_errors=True)


def run(workload: str, runs: int, display: str) -> None:
    unit, aim, is_met = WORKLOADS[workload]
    values = {"bare": [], "module": []}
    # The first process of each kind only warms the file cache.
    for program in values:
        measure(program, workload, display)
    for number in range(runs):
        for program in values:
            value = measure(program, workload, display)
            values[program].append(value)
            print(f"{workload} {program:6} {number + 1}/{runs} {value:12.1f} {unit}", flush=True)
    bare, module = (statistics.median(values[p]) for p in ("bare", "module"))
    print(f"{workload} median bare {bare:.1f} {unit}, module {module:.1f} {unit}, "
          f"aim {'met' if is_met(module, bare) else 'MISSED'}")
    print(f"{workload} ratio {module / bare:.3f} (aim {aim})", flush=True)


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
