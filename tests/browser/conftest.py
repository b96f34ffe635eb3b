"""One shape for every browser test: its own process, profile and port.

A test function is run in a fresh Python process, because the engine starts once in a process and a crash must fail one
test only. The parent gives it a temporary profile and a limit, and looks afterwards for processes that outlive it. The
child holds the fixtures: `host` (a module with real tools), `server` (loopback HTTP) and `open_view`. When the test is
over, the child proves that nothing is left: no view, no host table, no engine process, no open file of the profile.
"""

import contextlib
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

import pytest

REPOSITORY = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(REPOSITORY / "host" / "python"))
sys.path.insert(0, str(Path(__file__).resolve().parent))

import targets  # noqa: E402
from harness import Host, NativeErrors, Server, scaled  # noqa: E402
from orbcef import Xvfb  # noqa: E402
from processes import session_members  # noqa: E402

LIMIT_SECONDS = 40


def pytest_addoption(parser):
    parser.addoption("--browser-child", action="store_true", help="this process runs one browser test")


def pytest_configure(config):
    config.addinivalue_line("markers", "environment(**variables): set before the module is loaded")
    config.addinivalue_line("markers", "own_display: has an X server to itself, for keys, mouse and clipboard")
    config.addinivalue_line("markers", "in_parent: runs in the parent; it starts its own processes")
    config.addinivalue_line("markers", "not_on_windows(reason): is skipped on that target")


class ChildItem(pytest.Item):
    """Stands in the parent for a test function, and runs it in a process of its own."""

    def __init__(self, origin, **kwargs):
        super().__init__(**kwargs)
        self.origin = origin

    def runtest(self):
        run_in_child(self.origin)

    def reportinfo(self):
        return self.origin.reportinfo()

    def repr_failure(self, excinfo):
        return str(excinfo.value)


@pytest.hookimpl(trylast=True)
def pytest_collection_modifyitems(config, items):
    if config.getoption("--browser-child"):
        return
    for item in items:
        marker = item.get_closest_marker("not_on_windows")
        if marker and targets.IS_WINDOWS:
            item.add_marker(pytest.mark.skip(reason=marker.args[0]))
    items[:] = [item if item.get_closest_marker("in_parent") or item.get_closest_marker("skip")
                else ChildItem.from_parent(item.parent, name=item.name, origin=item) for item in items]


def child_environment(item, profile):
    profile = targets.inside(profile)
    environment = dict(os.environ, ORBTemp=profile, ORBCEF_TEST_PROFILE=profile)
    environment["ORBInstallPath"] = f"{targets.inside(Host.ROOT)};{targets.inside(Host.PAGES)}"
    for marker in reversed(list(item.iter_markers("environment"))):
        environment.update({k: v.replace("{profile}", profile) for k, v in marker.kwargs.items()})
    return targets.environment(environment)


def display_of(item):
    """Started here, so that it is no process of the test's."""
    return Xvfb() if item.get_closest_marker("own_display") else contextlib.nullcontext()


def run_in_child(item):
    with display_of(item) as display:
        run_with(item, {"DISPLAY": display.name} if display else {})


def run_with(item, variables):
    folder = tempfile.mkdtemp(prefix="orbcef-test-")
    profile = os.path.join(folder, "profile")
    os.mkdir(profile)
    command = [*targets.python(), "-m", "pytest", "-q", "--browser-child", "-p", "no:cacheprovider",
               "--tb=short", "-rs",
               # Where a test hangs is told at half of its limit.
               "-o", f"faulthandler_timeout={scaled(LIMIT_SECONDS) / 2}", f"--rootdir={targets.inside(item.path.parent)}",
               f"{targets.inside(item.path)}::{item.name}"]
    try:
        # A pipe: wine tells Python nothing of a file that it should write to.
        environment = {**child_environment(item, profile), **variables}
        child = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT, cwd=folder, start_new_session=True)
        output = Output(child.stdout)
        try:
            status = child.wait(scaled(LIMIT_SECONDS))
        except subprocess.TimeoutExpired:
            status = None
        left = end_group(child)
        text = output.text()
        if status == 0 and " skipped" in text.splitlines()[-1]:
            pytest.skip(next(line for line in text.splitlines() if line.startswith("SKIPPED")))
        if status != 0:
            reason = f"status {status}" if status is not None else f"no end after {scaled(LIMIT_SECONDS)} s"
            pytest.fail(f"{reason}\n{text}{engine_log(profile)}", pytrace=False)
        if left:
            pytest.fail(f"processes outlived the test: {left}\n{text}", pytrace=False)
    finally:
        shutil.rmtree(folder, ignore_errors=True)


class Output:
    """Reads what a process and its own processes write, so that none of them waits for a reader."""

    def __init__(self, stream):
        self._stream = stream
        self._parts = []
        self._thread = threading.Thread(target=self._read, daemon=True)
        self._thread.start()

    def _read(self):
        while part := self._stream.read1(1 << 16):
            self._parts.append(part)

    def text(self):
        """What came up to the end of the last process; less if one does not end."""
        self._thread.join(scaled(5))
        return b"".join(self._parts).decode(errors="replace")


def end_group(child):
    """Ends what is left of the child's session, and tells what that was, after a moment for the engine's own end."""
    deadline = time.monotonic() + scaled(5)
    while (left := session_members(child.pid)) and time.monotonic() < deadline:
        # The system tells no event for the end of processes that are not this one's children.
        time.sleep(0.02)
    if left:
        os.killpg(child.pid, signal.SIGKILL)
    child.wait()
    return left


def engine_log(profile):
    logs = sorted(Path(profile).rglob("cef_client_debug.log"))
    return "".join(f"\n--- {log.name}\n{log.read_text(errors='replace')[-6000:]}" for log in logs)


@pytest.fixture
def profile():
    return Path(os.environ["ORBCEF_TEST_PROFILE"])


@pytest.fixture
def native_errors(capfd, tmp_path):
    """What the module and the engine write to standard error."""
    errors = NativeErrors(capfd, tmp_path / "errors.txt")
    yield errors
    errors.end()


@pytest.fixture
def host():
    """A host whose module is loaded and has its tools; the engine starts with the first view."""
    made = Host()
    yield made
    made.finish()


@pytest.fixture
def open_view(host):
    """Opens a view on a URL and waits for the end of its loading, unless told otherwise."""
    return host.open_view


@pytest.fixture
def server():
    with Server() as running:
        yield running
