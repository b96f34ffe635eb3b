"""Makes the installation root that tests on wine use: the files of the real one, with the library
that gives the engine its switches for wine in the engine's place.

    stage_wine_root.py ROOT LIBRARY WINE_ROOT
"""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))

from stage import mirror  # noqa: E402

RENAMED = {"code/bin/libcef.dll": "code/bin/libcef_engine.dll"}


def main(root, library, wine_root):
    root, files = Path(root), {}
    for path in root.rglob("*"):
        if path.is_file():
            name = path.relative_to(root).as_posix()
            files[RENAMED.get(name, name)] = (path, True)
    for name, renamed in RENAMED.items():
        if renamed not in files:
            sys.exit(f"stage_wine_root: {root} has no {name}")
        files[name] = (Path(library), False)
    mirror(files, Path(wine_root))


if __name__ == "__main__":
    main(*sys.argv[1:])
