"""The harness itself: what must fail does fail."""

import subprocess
import sys
from pathlib import Path

import pytest
import targets

CONFTEST = Path(__file__).resolve().parent / "conftest.py"

CASES = {
    "assertion": ("def test_it():\n    assert 1 == 2\n", "assert 1 == 2"),
    "crash": ("import os\ndef test_it():\n    os.abort()\n", "status 3" if targets.IS_WINDOWS else "status -6"),
    "early_exit": ("import os\ndef test_it():\n    os._exit(3)\n", "status 3"),
    "left_process": (
        "import subprocess, sys\ndef test_it():\n    subprocess.Popen([sys.executable, '-c', 'import time; time.sleep(60)'])\n", "processes outlived the test"),
    "left_reference": (
        "def test_it(host, open_view):\n"
        "    page = open_view('about:blank')\n"
        "    page.events._add(1)\n", "the module kept references on event tables"),
    "left_file": (
        "def test_it(host, profile):\n"
        "    host.kept = open(profile / 'kept', 'w')\n", "files are still open"),
    "hang": ("import threading\ndef test_it():\n    threading.Event().wait()\n", "no end after", "line 3 in test_it"),
}


@pytest.mark.in_parent
@pytest.mark.parametrize("name", CASES)
def test_a_test_that_must_fail_fails(tmp_path, name, monkeypatch):
    source, *reasons = CASES[name]
    # The case stands beside a copy of the real conftest, under the real harness.
    folder = tmp_path / "tests" / "browser"
    folder.mkdir(parents=True)
    (folder / "test_case.py").write_text(source)
    repository = CONFTEST.parent.parent.parent
    text = CONFTEST.read_text().replace("LIMIT_SECONDS = 40", f"LIMIT_SECONDS = {6 if name == 'hang' else 40}")
    text = text.replace("Path(__file__).resolve().parent.parent.parent", f"Path({str(repository)!r})")
    text = text.replace("str(Path(__file__).resolve().parent)", repr(str(CONFTEST.parent)))
    (folder / "conftest.py").write_text(text)
    done = subprocess.run([sys.executable, "-m", "pytest", "-q", "-p", "no:cacheprovider", "-p", "no:xdist",
                           str(folder / "test_case.py")], capture_output=True, text=True, timeout=120)
    assert done.returncode == 1, done.stdout
    for reason in reasons:
        assert reason in done.stdout, done.stdout
