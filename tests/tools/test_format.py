"""The formatter's check on a good, a bad and a missing file."""
import shutil

import pytest
from conftest import ROOT

import format as formatter

BAD = "int  f( ){return 1;}\n"


@pytest.fixture
def styled(tree):
    shutil.copy(ROOT / ".clang-format", tree.root)
    return tree


def test_finds_what_is_not_formatted(styled, capsys):
    styled.write("good.h", "int f();\n")
    styled.write("sub/bad.cpp", BAD)
    assert formatter.main(["--root", str(styled.root)]) == 1
    printed = capsys.readouterr().out
    assert "bad.cpp: not formatted" in printed
    assert "good.h" not in printed


def test_fix_rewrites_and_then_the_check_passes(styled):
    bad = styled.write("bad.cpp", BAD)
    assert formatter.main(["--fix", "--root", str(styled.root)]) == 0
    assert bad.read_text() == "int f() {\n  return 1;\n}\n"
    assert formatter.main(["--root", str(styled.root)]) == 0


def test_an_empty_tree_fails(styled):
    assert formatter.main(["--root", str(styled.root)]) == 1


def test_a_missing_formatter_fails(styled, monkeypatch, capsys):
    styled.write("good.h", "int f();\n")
    monkeypatch.setattr(formatter, "CLANG_FORMAT", "clang-format-that-is-not-there")
    assert formatter.main(["--root", str(styled.root)]) == 1
    assert "clang-format-that-is-not-there" in capsys.readouterr().err


def test_refuses_files_that_are_no_c_or_cpp_sources(tree, capsys):
    script = tree.write("tool.py", "def f():\n    return 1\n")
    assert formatter.main(["--fix", str(script)]) == 1
    assert (tree.root / "tool.py").read_text() == "def f():\n    return 1\n"
    assert "no C or C++ source" in capsys.readouterr().err
