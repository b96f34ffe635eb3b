"""A host whose engine library is missing or of another version: one clear line, neutral answers, and the host lives."""

import shutil
import subprocess

import orbcef
import pytest
from harness import Host

PLAIN = "xortv://webapps/Test/plain.html"

# Answers another fingerprint, and must not be called for anything else.
FOREIGN_ENGINE = """
#include <stdlib.h>
const char* cef_api_hash(int entry) { return "0123456789abcdef0123456789abcdef01234567"; }
int cef_initialize(void) { abort(); }
int cef_string_utf8_to_utf16(void) { abort(); }
void cef_log(void) { abort(); }
int cef_get_min_log_level(void) { abort(); }
"""


@pytest.fixture
def root(profile, monkeypatch):
    """An installation root with everything but the engine."""
    folder = profile / "root"
    (folder / "code" / "bin").mkdir(parents=True)
    for name in ("libORBCefWrapperMT.so", "7XOWebHelper"):
        shutil.copy(Host.ROOT / "code" / "bin" / name, folder / "code" / "bin")
    for tree in ("webapps", "resources"):
        (folder / tree).symlink_to(Host.ROOT / tree)
    monkeypatch.setenv("ORBInstallPath", str(folder))
    return folder


def use(root):
    """A whole life of a host on an engine that is not there."""
    main = orbcef.MainThread()
    module = orbcef.Module(root, orbcef.Tools(main))
    module.init_engine()
    events = orbcef.Events(main)
    view = module.create_view(events, None, PLAIN)
    window = orbcef.Window(main, 100, 100)
    view.create(window.handle, (0, 0, 100, 100), PLAIN)
    view.load_url(PLAIN)
    view.execute_javascript("1")
    view.set_bounds((0, 0, 10, 10))
    view.set_visible(False)
    assert (view.window, view.can_go_back(), view.popup_mode) == (None, False, 1)
    assert view.execute_replay("{}").status == 200
    view.close(True)
    view.release()
    module.shutdown_engine()
    window.close()
    assert events.everything() == [] and events.references == 1


def engine_lines(text):
    return [line for line in text.splitlines() if line.startswith("[error] CEF: ")]


def test_a_missing_engine_is_one_line(root, capfd):
    use(root)
    (line,) = engine_lines(capfd.readouterr().err)
    assert "the engine library libcef.so could not be loaded: " in line


def test_an_engine_of_another_version_is_refused_and_never_called(root, capfd, profile):
    source = profile / "engine.c"
    source.write_text(FOREIGN_ENGINE)
    subprocess.run(["cc", "-shared", "-fPIC", "-w", "-o", str(root / "code/bin/libcef.so"), str(source)], check=True)
    use(root)
    (line,) = engine_lines(capfd.readouterr().err)
    assert "is refused: its interface is 0123456789abcdef0123456789abcdef01234567" in line
    assert "this module was built for CEF 108.4.13" in line


def test_an_engine_without_a_fingerprint_is_refused(root, capfd):
    # Any library will do.
    shutil.copy(root / "code/bin/libORBCefWrapperMT.so", root / "code/bin/libcef.so")
    use(root)
    (line,) = engine_lines(capfd.readouterr().err)
    assert "its interface is unknown" in line


def test_the_helper_says_what_it_misses(root):
    (root / "code/bin/libORBCefWrapperMT.so").unlink()
    done = subprocess.run([str(root / "code/bin/7XOWebHelper"), "--type=renderer"], capture_output=True, text=True,
                          timeout=20)
    assert done.returncode == 120 and len(done.stderr.splitlines()) == 1


def test_a_helper_on_a_foreign_engine_ends_with_an_error(root, profile):
    source = profile / "engine.c"
    source.write_text(FOREIGN_ENGINE)
    subprocess.run(["cc", "-shared", "-fPIC", "-w", "-o", str(root / "code/bin/libcef.so"), str(source)], check=True)
    done = subprocess.run([str(root / "code/bin/7XOWebHelper"), "--type=renderer"], capture_output=True, text=True,
                          timeout=20)
    assert done.returncode == 1 and "is refused" in done.stderr


def test_the_module_needs_no_engine_to_be_loaded():
    needed = subprocess.run(["objdump", "-p", str(Host.ROOT / "code/bin/libORBCefWrapperMT.so")], check=True,
                            capture_output=True, text=True).stdout
    assert "NEEDED" in needed and "libcef" not in needed
