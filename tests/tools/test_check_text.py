"""The plain form of sources: each rule at its border."""
import check_text
import pytest


@pytest.mark.parametrize("name, limit", [("src/A.cpp", 500), ("src/A.h", 200), ("tools/a.py", 500)])
def test_length_is_bounded(tree, name, limit):
    tree.write(name, "x\n" * limit)
    assert check_text.find_problems(tree.root) == []
    tree.write(name, "x\n" * (limit + 1))
    assert check_text.find_problems(tree.root) == [
        f"{name}: {limit + 1} lines, at most {limit}; split it by what it does"
    ]


def test_documents_may_be_long(tree):
    tree.write("docs/long.md", "x\n" * 1000)
    assert check_text.find_problems(tree.root) == []


@pytest.mark.parametrize("end", [" ", "\t"])
def test_white_space_at_a_line_end(tree, end):
    tree.write("docs/a.md", f"one\ntwo{end}\n")
    assert check_text.find_problems(tree.root) == ["docs/a.md:2: white space at the end of the line"]


def test_last_line_must_end(tree):
    tree.write("a.json", "{}")
    assert check_text.find_problems(tree.root) == ["a.json: the last line does not end"]


def test_carriage_returns(tree):
    (tree.root / "a.cpp").write_bytes(b"one\r\n")
    assert "a.cpp: a carriage return; lines end in a line feed alone" in check_text.find_problems(
        tree.root
    )


def test_encoding(tree):
    (tree.root / "a.md").write_bytes(b"\xff\n")
    assert check_text.find_problems(tree.root) == ["a.md: not UTF-8"]


def test_test_data_may_be_broken_on_purpose(tree):
    tree.write("tests/data/broken.json", "{ ")
    assert check_text.find_problems(tree.root) == []


def test_golden_files_and_the_build_tree_are_left_alone(tree):
    tree.write("a/golden/include/a.h", "x \n" * 300)
    tree.write("build/a.h", "x \n" * 300)
    assert check_text.find_problems(tree.root) == []


def test_files_without_a_known_suffix_are_left_alone(tree):
    (tree.root / "picture.png").write_bytes(b"\xff\x00 \n")
    assert check_text.find_problems(tree.root) == []
