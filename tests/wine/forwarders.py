"""Writes the export and import tables of the library that stands in front of the engine on wine.

    forwarders.py LIBRARY EXPORTS IMPORTS

LIBRARY is the engine's. EXPORTS lists all its functions: those that engine_switches.c has itself,
and for all others where they are forwarded to. IMPORTS names, for the import library, what
engine_switches.c calls.
"""

import re
import subprocess
import sys
from pathlib import Path

ENGINE = "libcef_engine"
OWN = ("cef_initialize",)


def exports_of(definition):
    """The names in the output of gendef."""
    head, found, names = definition.partition("EXPORTS\n")
    return [line.split()[0] for line in names.splitlines() if line.strip()] if found else []


def export_table(names):
    lines = [name if name in OWN else f"{name} = {ENGINE}.{name}" for name in names]
    return "\n".join(["LIBRARY libcef.dll", "EXPORTS", *lines, ""])


def import_table():
    lines = [f"engine_{name} == {name}" for name in OWN]
    return "\n".join([f"LIBRARY {ENGINE}.dll", "EXPORTS", *lines, ""])


def main(library, exports, imports):
    # The tool tells its version and writes text for Windows.
    done = subprocess.run(["gendef", "-", library], check=True, capture_output=True, text=True)
    names = exports_of(re.sub(r"\r", "", done.stdout))
    missing = [name for name in OWN if name not in names]
    if missing:
        sys.exit(f"forwarders: {library} does not export {', '.join(missing)}")
    Path(exports).write_text(export_table(names), encoding="utf-8")
    Path(imports).write_text(import_table(), encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
