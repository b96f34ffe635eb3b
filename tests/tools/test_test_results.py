"""Counting must never turn a crash, or nothing at all, into a pass."""
import pytest
import test_results
from test_results import Counts

GTEST = """<?xml version="1.0" encoding="UTF-8"?>
<testsuites tests="5" failures="1" disabled="1" errors="0" name="AllTests">
  <testsuite name="A" tests="5" failures="1" disabled="1" skipped="1" errors="0">
    <testcase name="Good" status="run" result="completed" classname="A" />
    <testcase name="Good2" status="run" result="completed" classname="A" />
    <testcase name="Bad" status="run" result="completed" classname="A">
      <failure message="x" type=""></failure><failure message="y" type=""></failure>
    </testcase>
    <testcase name="Skipped" status="run" result="skipped" classname="A">
      <skipped message="no window manager" />
    </testcase>
    <testcase name="DISABLED_Off" status="notrun" result="suppressed" classname="A" />
  </testsuite>
</testsuites>
"""
PYTEST = """<?xml version="1.0" encoding="utf-8"?>
<testsuites><testsuite name="pytest" errors="1" failures="1" skipped="1" tests="4">
<testcase classname="t" name="good" time="0.1" />
<testcase classname="t" name="bad"><failure message="x">y</failure></testcase>
<testcase classname="t" name="teardown"><error message="x">y</error></testcase>
<testcase classname="t" name="skip"><skipped message="why" /></testcase>
</testsuite></testsuites>
"""
TAP = """TAP version 13
# Subtest: adds
ok 1 - adds
1..1
# tests 7
# suites 1
# pass 2
# fail 1
# cancelled 1
# skipped 2
# todo 1
# duration_ms 5
"""


@pytest.mark.parametrize(
    "text, counts", [(GTEST, Counts(2, 1, 2)), (PYTEST, Counts(1, 2, 1)), ("<testsuites/>", Counts())]
)
def test_junit(tmp_path, text, counts):
    report = tmp_path / "r.xml"
    report.write_text(text)
    assert test_results.from_junit(report) == counts


def test_a_failure_has_a_name_and_a_text(tmp_path):
    report = tmp_path / "r.xml"
    report.write_text(
        '<testsuites><testcase classname="a" name="b"><failure message="short">long</failure></testcase>'
        '<testcase classname="c" name="d"><error message="short"/></testcase></testsuites>'
    )
    assert test_results.from_junit(report).failures == ("a.b\nlong", "c.d\nshort")
    assert test_results.from_check_lines("ok - a\nnot ok - b\n1..2\n").failures == ("not ok - b",)


@pytest.mark.parametrize("text", ["", GTEST[: len(GTEST) // 2]])
def test_a_cut_junit_report_is_a_failure(tmp_path, text):
    report = tmp_path / "r.xml"
    report.write_text(text)
    assert test_results.from_junit(report) == Counts(failed=1)


def test_a_missing_report_is_a_failure(tmp_path):
    assert test_results.from_junit(tmp_path / "none.xml") == Counts(failed=1)
    assert test_results.from_tap_totals(tmp_path / "none.tap") == Counts(failed=1)


def test_tap_totals(tmp_path):
    report = tmp_path / "r.tap"
    report.write_text(TAP)
    assert test_results.from_tap_totals(report) == Counts(2, 2, 3)


@pytest.mark.parametrize(
    "before, after, counts",
    [
        ("# fail 1\n", "", Counts(failed=1)),
        ("# tests 7", "# tests 8", Counts(2, 3, 3)),
        ("# pass 2\n", "# pass 2\n# pass 2\n", Counts(failed=1)),
    ],
)
def test_tap_totals_that_do_not_add_up_are_a_failure(tmp_path, before, after, counts):
    report = tmp_path / "r.tap"
    report.write_text(TAP.replace(before, after))
    assert test_results.from_tap_totals(report) == counts


@pytest.mark.parametrize(
    "output, counts",
    [
        ("ok - a\nok - b\n1..2\n", Counts(2)),
        ("ok - a\nnot ok - b\n1..2\n", Counts(1, 1)),
        ("some words\nok - a\n1..1\n", Counts(1)),
        ("ok - a\n", Counts(1, 1)),
        ("ok - a\n1..2\n", Counts(1, 1)),
        ("okay - a\n1..0\n", Counts()),
        ("", Counts(0, 1)),
    ],
)
def test_check_lines(output, counts):
    assert test_results.from_check_lines(output) == counts


@pytest.mark.parametrize(
    "counts, status, expected",
    [
        (Counts(3), 0, Counts(3)),
        (Counts(3), 1, Counts(3, 1)),
        (Counts(3), -11, Counts(3, 1)),
        (Counts(3, 2), 1, Counts(3, 2)),
        (Counts(), 0, Counts(0, 1)),
        (Counts(skipped=4), 0, Counts(0, 1, 4)),
    ],
)
def test_the_exit_status_has_the_last_word(counts, status, expected):
    assert test_results.with_exit_status(counts, status) == expected


def test_text_of_counts():
    assert str(Counts(3, 1)) == "3 passed, 1 failed"
    assert str(Counts(3, 1, 2)) == "3 passed, 1 failed, 2 skipped"
