"""Checks that what is tested on wine is what a release has: the same files, but for the library that
stands in front of the engine, and nothing of that library's purpose in the module or the helper.

    test_wine_root.py ROOT WINE_ROOT
"""

import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "abi"))

import tap  # noqa: E402
from stage_wine_root import RENAMED  # noqa: E402

SWITCHES = ("in-process-gpu", "no-freeze-flags-after-init")


def files(root):
    return {path.relative_to(root).as_posix(): path for path in root.rglob("*") if path.is_file()}


class WineRoot(unittest.TestCase):
    root = wine_root = Path()

    def test_every_file_is_that_of_a_release(self):
        release, wine = files(self.root), files(self.wine_root)
        self.assertEqual(set(wine), set(release) | set(RENAMED.values()))
        for name, path in release.items():
            self.assertEqual(wine[RENAMED.get(name, name)].read_bytes(), path.read_bytes(), name)

    def test_only_the_library_in_front_of_the_engine_knows_the_switches(self):
        front = (self.wine_root / "code/bin/libcef.dll").read_bytes()
        for switch in SWITCHES:
            text = switch.encode("utf-16-le")
            self.assertIn(text, front)
            for name in ("ORBCefWrapperMT.dll", "7XOWebHelper.exe"):
                content = (self.root / "code/bin" / name).read_bytes()
                self.assertNotIn(text, content, name)
                self.assertNotIn(switch.encode(), content, name)


if __name__ == "__main__":
    WineRoot.root, WineRoot.wine_root = map(Path, sys.argv[1:])
    sys.exit(tap.run(WineRoot))
