"""Opening, closing and stopping in every order that a host may choose."""

import os
import subprocess
import threading
import time

import orbcef
import pytest
import targets
from harness import REPOSITORY, Host, scaled

PLAIN = "xortv://webapps/Test/plain.html"
# The size of a hidden view. X11 knows no empty windows.
NOTHING = (0, 0) if targets.IS_WINDOWS else (1, 1)


def test_open_and_close_ten_times(open_view):
    for _ in range(10):
        assert open_view(PLAIN).close()


def test_close_while_the_page_loads(open_view):
    page = open_view("xortv://webapps/Welcome/index.html", loaded=False)
    assert page.close()


def test_events_stop_with_close(host, open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript("setInterval(() => xocef.sendString('tick'))")
    page.wait_strings("tick")
    page.view.close(True)
    count = page.events.mark()
    host.open_view(PLAIN)
    assert page.events.mark() == count


def test_close_on_another_thread_is_refused_with_its_line(host, open_view, profile):
    page = open_view(PLAIN)
    # Any thread that is not the host's main thread; the engine closes the browser all the same.
    thread = threading.Thread(target=lambda: page.view.close(True))
    thread.start()
    thread.join()
    assert page.events.references == 2, "the host's tables stay"
    log = (profile / "cef_client_debug.log").read_text()
    assert "Browser #1 - This method should be called on the main thread" in log


test_close_on_another_thread_is_refused_with_its_line = pytest.mark.environment(
    ORBCEF_LOG="", ORBCEF_LOG_PATH="{profile}")(test_close_on_another_thread_is_refused_with_its_line)


def test_init_engine_twice_starts_once(host):
    host.module.init_engine()
    host.module.init_engine()
    host.open_view(PLAIN)


def test_shutdown_before_and_after_is_harmless(host):
    host.module.shutdown_engine()
    host.module.init_engine()
    host.module.shutdown_engine()
    host.module.shutdown_engine()


def test_a_second_start_is_refused_and_views_stay_without_a_browser(host):
    host.module.init_engine()
    host.module.shutdown_engine()
    events = orbcef.Events(host.main)
    view = host.module.create_view(events, None, PLAIN)
    window = orbcef.Window(host.main, 100, 100)
    view.create(window.handle, (0, 0, 100, 100), PLAIN)
    assert view.window is None and events.everything() == []
    view.close(True)
    view.release()
    window.close()


def test_hide_and_show_move_the_window(host, open_view):
    page = open_view(PLAIN)
    child = page.view.window
    page.view.set_bounds((10, 20, 300, 200))
    assert host.main.run_until(lambda: page.window.geometry(child) == (10, 20, 300, 200))
    page.view.set_visible(False)
    assert host.main.run_until(lambda: page.window.geometry(child)[2:] == NOTHING)
    page.view.set_visible(True)
    assert host.main.run_until(lambda: page.window.geometry(child) == (10, 20, 300, 200))


def test_hiding_and_showing_take_effect_after_their_delay(host, open_view):
    page = open_view(PLAIN)
    child = page.view.window
    page.view.set_bounds((10, 20, 300, 200))
    assert host.main.run_until(lambda: page.window.geometry(child) == (10, 20, 300, 200))
    # The engine's clock counts in milliseconds, so a little less than 0.2 seconds may be read here.
    for visible, size in ((False, NOTHING), (True, (300, 200))):
        start = time.monotonic()
        page.view.set_visible(visible)
        assert host.main.run_until(lambda: page.window.geometry(child)[2:] == size)
        assert time.monotonic() - start >= 0.195, f"set_visible({visible}) was not delayed"


SCENARIOS = {
    "create, then shutdown at once": "view.create(window.handle, (0, 0, 100, 100), URL)",
    "create, close and release, then shutdown at once":
        "view.create(window.handle, (0, 0, 100, 100), URL); view.close(True); view.release()",
    "a loaded view left open": "view.create(window.handle, (0, 0, 100, 100), URL); wait_loaded()",
    "a loaded view closed, then shutdown at once":
        "view.create(window.handle, (0, 0, 100, 100), URL); wait_loaded(); view.close(True); view.release()",
}


def runs_of(name):
    # On wine each run takes seconds.
    return 2 if targets.IS_WINDOWS else 200 if name.startswith("create, then") else 15


PROGRAM = """
import os, sys
sys.path[:0] = [{binding!r}]
import orbcef
URL = {url!r}
main = orbcef.MainThread()
module = orbcef.Module({root!r}, orbcef.Tools(main, temp_directory={profile!r}))
window = orbcef.Window(main, 100, 100)
events = orbcef.Events(main)
view = module.create_view(events, None, "")
def wait_loaded():
    events.wait_for_kind(orbcef.LoadingStateChanged, is_loading=False)
{scenario}
module.shutdown_engine()
print("done", flush=True)
"""


@pytest.mark.in_parent
@pytest.mark.timeout(scaled(600))
@pytest.mark.parametrize("name, runs", [(name, runs_of(name)) for name in SCENARIOS])
def test_a_shutdown_never_hangs_or_crashes(tmp_path, name, runs):
    script = tmp_path / "scenario.py"
    root, folder = targets.inside(Host.ROOT), targets.inside(tmp_path)
    script.write_text(PROGRAM.format(binding=targets.inside(REPOSITORY / "host" / "python"), url=PLAIN, root=root,
                                     profile=folder, scenario=SCENARIOS[name]))
    environment = dict(os.environ, ORBInstallPath=f"{root};{targets.inside(Host.PAGES)}", ORBTemp=folder,
                       ORBCEF_NOCACHE="",
                       # A virtual display has no GPU, and the engine itself may fault, rarely, when it is stopped
                       # while its GPU process fails to start.
                       ORBCEF_DISABLE_GPU="")
    for number in range(runs):
        done = subprocess.run([*targets.python(), targets.inside(script)], env=targets.environment(environment),
                              capture_output=True, text=True, cwd=tmp_path, timeout=scaled(20))
        assert done.returncode == 0 and "done" in done.stdout, (
            f"run {number}: status {done.returncode}\n{done.stderr[-3000:]}")
