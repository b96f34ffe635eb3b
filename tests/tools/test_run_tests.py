"""The runner as a program: its closing line, its exit code, and suites that must fail it."""
import contextlib
import os
import subprocess
import sys

import pytest
import run_tests
from conftest import ROOT
from test_results import Counts
from wine import WineError


@pytest.fixture(autouse=True)
def own_build(tmp_path, monkeypatch):
    monkeypatch.setattr(run_tests, "BUILD", tmp_path)
    monkeypatch.setattr(run_tests, "REPORTS", tmp_path / "reports")
    # The runner changes these for its own process, which here is the one under test.
    monkeypatch.setenv("DISPLAY", ":4711")
    return tmp_path


def use_suites(monkeypatch, **suites):
    monkeypatch.setattr(
        run_tests, "SUITES", {name: (lambda _, c=counts: c) for name, counts in suites.items()}
    )


@pytest.mark.parametrize(
    "suites, line, status",
    [
        ({"one": Counts(3), "two": Counts(4, 0, 1)}, "7 passed, 0 failed, 1 skipped", 0),
        ({"one": Counts(3), "two": Counts(4, 1)}, "7 passed, 1 failed", 1),
        ({"one": Counts(3), "two": Counts()}, "3 passed, 1 failed", 1),
        ({"one": Counts(3), "two": Counts(skipped=2)}, "3 passed, 1 failed, 2 skipped", 1),
    ],
)
def test_closing_line_and_exit_code(monkeypatch, capsys, suites, line, status):
    use_suites(monkeypatch, **suites)
    assert run_tests.main([]) == status
    lines = capsys.readouterr().out.splitlines()
    assert lines[-1] == line
    assert sum(text.endswith(" failed") and "==" not in text for text in lines[:-1]) == 0


def test_named_suites_only(monkeypatch, capsys):
    use_suites(monkeypatch, one=Counts(3), two=Counts(0, 5))
    assert run_tests.main(["one"]) == 0
    assert capsys.readouterr().out.splitlines()[-1] == "3 passed, 0 failed"


def test_every_named_target_runs_its_own_suites_on_its_own_build(monkeypatch, capsys, own_build):
    seen = []

    @contextlib.contextmanager
    def prefix():
        seen.append("prefix begins")
        yield {"WINEPREFIX": "/a/prefix"}
        seen.append("prefix ends")

    def suite(name):
        def run(_):
            seen.append((name, run_tests.BUILD.name, os.environ.get("WINEPREFIX")))
            return Counts(1)

        return run

    monkeypatch.setattr(run_tests, "BUILD", own_build / "linux-x64")
    monkeypatch.setattr(run_tests, "wine_prefix", prefix)
    monkeypatch.setattr(run_tests, "SUITES", {name: suite(name) for name in ("check", "unit")})
    assert run_tests.main(["linux-x64", "windows-x64"]) == 0
    assert seen == [
        ("check", "linux-x64", None),
        ("unit", "linux-x64", None),
        "prefix begins",
        ("unit", "windows-x64", "/a/prefix"),
        "prefix ends",
    ]
    assert capsys.readouterr().out.splitlines()[-1] == "3 passed, 0 failed"
    assert "WINEPREFIX" not in os.environ and run_tests.BUILD.name == "linux-x64"


def test_a_sanitizers_target_runs_what_the_others_leave_to_it(monkeypatch, own_build):
    seen = []

    def suite(name):
        return lambda _: seen.append((name, run_tests.BUILD.name)) or Counts(1)

    monkeypatch.setattr(run_tests, "BUILD", own_build / "linux-x64")
    monkeypatch.setattr(
        run_tests, "SUITES", {name: suite(name) for name in ("unit", "road", "standin")}
    )
    assert run_tests.main(["linux-x64", "linux-x64-asan", "linux-x64-ubsan"]) == 0
    assert seen == [
        ("unit", "linux-x64"),
        ("standin", "linux-x64-asan"),
        ("unit", "linux-x64-ubsan"),
        ("road", "linux-x64-ubsan"),
    ]


def test_a_target_without_wine_or_without_the_suite_fails(monkeypatch, capsys):
    @contextlib.contextmanager
    def no_prefix():
        raise WineError("no wine here")
        yield

    use_suites(monkeypatch, unit=Counts(1), check=Counts(1))
    monkeypatch.setattr(run_tests, "wine_prefix", no_prefix)
    assert run_tests.main(["windows-x64"]) == 1
    assert "no wine here" in capsys.readouterr().out
    assert run_tests.main(["windows-x64", "check"]) == 1
    assert "windows-x64 has no suite check" in capsys.readouterr().out


def test_further_arguments_reach_the_one_suite(monkeypatch):
    seen = []
    monkeypatch.setattr(
        run_tests, "SUITES", {"one": lambda rest: seen.extend(rest) or Counts(1)}
    )
    assert run_tests.main(["one", "-k", "name"]) == 0
    assert seen == ["-k", "name"]


@pytest.mark.parametrize("arguments", [["nonsense"], ["one", "two", "-k", "name"]])
def test_arguments_that_belong_to_no_suite(monkeypatch, capsys, arguments):
    use_suites(monkeypatch, one=Counts(1), two=Counts(1))
    assert run_tests.main(arguments) == 2
    assert "no suite" in capsys.readouterr().err


def test_host_variables_do_not_reach_the_tests(monkeypatch):
    monkeypatch.setenv("ORBCEF_ENABLE_OSR", "1")
    monkeypatch.setenv("QVL_RIG_TMP", "/x")
    monkeypatch.setenv("ORBCEF_TIMEOUT_FACTOR", "2")
    seen = {}
    monkeypatch.setattr(
        run_tests, "SUITES", {"one": lambda _: seen.update(os.environ) or Counts(1)}
    )
    assert run_tests.main([]) == 0
    assert "ORBCEF_ENABLE_OSR" not in seen and "QVL_RIG_TMP" not in seen
    assert seen["DISPLAY"] != ":4711"
    assert seen["ORBCEF_TIMEOUT_FACTOR"] == "2"


def register_programs(monkeypatch, own_build, scripts):
    """Lists shell scripts where the runner expects what the build registered."""
    tests = []
    for name, text in scripts.items():
        path = own_build / name
        path.write_text(f"#!/bin/sh\n{text}\n")
        path.chmod(0o755)
        tests.append(run_tests.Program(name, [str(path)]))
    monkeypatch.setattr(run_tests, "_programs", lambda label: tests)


REPORT = 'for a in "$@"; do case "$a" in --gtest_output=xml:*) f="${a#--gtest_output=xml:}";; esac; done'
PASSING = '<testsuites><testcase name="a" status="run" result="completed"/></testsuites>'


@pytest.mark.parametrize(
    "script, counts",
    [
        (f"{REPORT}; mkdir -p $(dirname $f); echo '{PASSING}' > $f", Counts(1)),
        (f"{REPORT}; mkdir -p $(dirname $f); echo '{PASSING}' > $f; exit 1", Counts(1, 1)),
        ("kill -SEGV $$", Counts(0, 1)),
        ("exit 0", Counts(0, 1)),
    ],
)
def test_unit_programs(monkeypatch, own_build, script, counts):
    register_programs(monkeypatch, own_build, {"program": script})
    assert run_tests.run_programs("unit")([]) == counts


def test_a_program_that_dies_is_told_with_its_status(monkeypatch, own_build, capsys):
    register_programs(monkeypatch, own_build, {"program": "echo said; kill -SEGV $$"})
    run_tests.run_programs("unit")([])
    assert capsys.readouterr().out.startswith("said\nprogram ended with status -11\n")


def test_programs_for_windows_get_their_report_by_a_name_with_a_drive(monkeypatch, own_build):
    monkeypatch.setattr(run_tests, "BUILD", own_build / "windows-x64")
    told = own_build / "told"
    register_programs(monkeypatch, own_build, {"program": f'echo "$1" > {told}'})
    run_tests.run_programs("unit")([])
    assert told.read_text() == f"--gtest_output=xml:Z:{own_build}/reports/program.xml\n"


def test_an_old_report_does_not_count(monkeypatch, own_build):
    register_programs(monkeypatch, own_build, {"program": "exit 0"})
    (own_build / "reports").mkdir()
    (own_build / "reports" / "program.xml").write_text(PASSING)
    assert run_tests.run_programs("unit")([]) == Counts(0, 1)


@pytest.mark.parametrize(
    "script, counts",
    [
        ("echo 'ok - a'; echo '1..1'", Counts(1)),
        ("echo 'ok - a'; echo '1..1'; exit 3", Counts(1, 1)),
        ("echo 'ok - a'; kill -SEGV $$", Counts(1, 1)),
        ("echo 'not ok - a'; echo '1..1'; exit 1", Counts(0, 1)),
    ],
)
def test_abi_programs(monkeypatch, own_build, script, counts):
    register_programs(monkeypatch, own_build, {"program": script})
    assert run_tests.run_abi([]) == counts


def test_programs_leave_nothing_in_the_source_tree(monkeypatch, own_build):
    sources = own_build / "sources"
    sources.mkdir()
    monkeypatch.setattr(run_tests, "SOURCE_ROOT", sources)
    register_programs(
        monkeypatch, own_build, {"program": "touch dropped; echo \"ok $(ls)\"; echo 1..1"}
    )
    assert run_tests.run_abi([]) == Counts(1)
    assert list(sources.iterdir()) == []


def test_a_build_without_programs_fails(own_build):
    assert run_tests._programs("unit") == []
    assert run_tests.run_programs("unit")([]).ran == 0


def test_programs_are_read_from_the_build(own_build):
    tests = {"unit": "true", "unit.more": "echo x", "abi_host": "false", "unity": "false"}
    (own_build / "CTestTestfile.cmake").write_text(
        "".join(f'add_test({name} "/bin/{text.split()[0]}")\n' for name, text in tests.items())
    )
    found = [(program.name, program.command) for program in run_tests._programs("unit")]
    assert found == [("unit", ["/bin/true"]), ("unit.more", ["/bin/echo"])]
    assert [program.name for program in run_tests._programs("abi")] == ["abi_host"]


def test_programs_get_their_registered_environment_and_limit(own_build):
    (own_build / "CTestTestfile.cmake").write_text(
        'add_test(abi_a "/bin/sh" "-c" "echo ok $WORD; echo 1..1; test \\$WORD = here")\n'
        'set_tests_properties(abi_a PROPERTIES ENVIRONMENT "WORD=here")\n'
        'add_test(abi_b "/bin/sh" "-c" "echo ok; echo 1..1; exec sleep 30")\n'
        'set_tests_properties(abi_b PROPERTIES TIMEOUT 0.2)\n'
    )
    # What the second one said before its limit counts too.
    assert run_tests.run_abi([]) == Counts(2, 1)


def test_a_program_is_heard_only_if_it_failed(monkeypatch, own_build, capsys):
    passes = f"{REPORT}; mkdir -p $(dirname $f); echo '{PASSING}' > $f"
    register_programs(monkeypatch, own_build, {
        "good": f"{passes}; echo good out; echo good error >&2",
        "bad": f"{passes}; echo bad out; echo bad error >&2; exit 1",
    })
    assert run_tests.run_programs("unit")([]) == Counts(2, 1)
    out = capsys.readouterr().out
    assert "bad out\nbad error\n" in out and "good " not in out


def test_what_the_failed_ones_told_stands_at_the_end(monkeypatch, capsys):
    text = "a.test\n" + "\n".join(f"line {n}" for n in range(100))
    use_suites(monkeypatch, one=Counts(3, 1, failures=(text,)), two=Counts(4))
    assert run_tests.main([]) == 1
    lines = capsys.readouterr().out.splitlines()
    begin = lines.index("failed: one: a.test")
    kept = [f"    line {n}" for n in range(100 - run_tests.FAILURE_LINES, 100)]
    assert lines[begin + 1:] == [*kept, "7 passed, 1 failed"]


def test_a_program_that_was_not_built_fails(monkeypatch, own_build, capsys):
    (own_build / "CTestTestfile.cmake").write_text('add_test(unit "/nowhere/program")\n')
    monkeypatch.setattr(run_tests, "SUITES", {"unit": run_tests.run_programs("unit")})
    assert run_tests.main([]) == 1
    assert capsys.readouterr().out.splitlines()[-1] == "0 passed, 1 failed"


@pytest.mark.parametrize(
    "body, counts",
    [
        ("def test_a(): pass", Counts(1)),
        ("def test_a(): assert False\ndef test_b(): pass", Counts(1, 1)),
        ("import nowhere_at_all", Counts(0, 1)),
        ("", Counts(0, 1)),
        ("import os\ndef test_a(): os.abort()", Counts(0, 1)),
        ("import pytest\n@pytest.mark.skip(reason='x')\ndef test_a(): pass", Counts(0, 1, 1)),
    ],
)
def test_pytest_suites(monkeypatch, tmp_path, body, counts):
    (tmp_path / "suite").mkdir()
    (tmp_path / "suite" / "test_it.py").write_text(body + "\n")
    monkeypatch.setattr(run_tests, "SOURCE_ROOT", tmp_path)
    assert run_tests.run_pytest("x", "suite")([]) == counts


def test_a_missing_folder_fails(monkeypatch, tmp_path):
    monkeypatch.setattr(run_tests, "SOURCE_ROOT", tmp_path)
    assert run_tests.run_pytest("x", "suite")([]) == Counts(failed=1)


@pytest.mark.parametrize(
    "body, counts",
    [
        ("test('a', () => {}); test('b', () => {});", Counts(2)),
        ("test('a', () => { throw new Error('no'); });", Counts(0, 1)),
        ("test('a', () => {}); test('b', { skip: 'why' }, () => {});", Counts(1, 0, 1)),
        ("process.exit(3);", Counts(0, 1)),
    ],
)
def test_script_suites(monkeypatch, tmp_path, body, counts):
    folder = tmp_path / "tests" / "script"
    folder.mkdir(parents=True)
    (folder / "a.test.mjs").write_text(f"import test from 'node:test';\n{body}\n")
    monkeypatch.setattr(run_tests, "SOURCE_ROOT", tmp_path)
    run_tests.REPORTS.mkdir()
    # Node's runner does not run inside another one.
    monkeypatch.delenv("NODE_TEST_CONTEXT", raising=False)
    assert run_tests.run_script([]) == counts


def test_the_program_itself_ends_with_its_code():
    done = subprocess.run(
        [sys.executable, ROOT / "tools" / "run_tests.py", "nonsense"],
        capture_output=True,
        text=True,
        check=False,
    )
    assert done.returncode == 2
    assert "no suite 'nonsense'" in done.stderr
