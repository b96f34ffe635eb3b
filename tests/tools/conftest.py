"""Puts the tools under test on the import path, and offers a source tree to break."""
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
for folder in ("tools", "engine/fetch"):
    sys.path.insert(0, str(ROOT / folder))


class Tree:
    """A source tree of a test's own."""

    def __init__(self, root):
        self.root = root

    def write(self, name, text=""):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path


@pytest.fixture
def tree(tmp_path):
    return Tree(tmp_path)
