"""A host whose engine library is missing or of another version: one clear line, neutral answers, and the host lives."""

import shutil
import subprocess

import orbcef
import pytest
import targets
from harness import Host, mirror

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

compiled_here = pytest.mark.not_on_windows("the compiler and its tools are those of another system")


@pytest.fixture
def root(profile, monkeypatch):
    """An installation root with everything but the engine."""
    folder = profile / "root"
    (folder / "code" / "bin").mkdir(parents=True)
    for name in (targets.MODULE_FILE, targets.HELPER_FILE):
        shutil.copy(Host.ROOT / "code" / "bin" / name, folder / "code" / "bin")
    for tree in ("webapps", "resources"):
        mirror(Host.ROOT / tree, folder / tree)
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


def test_a_missing_engine_is_one_line(root, native_errors):
    use(root)
    (line,) = engine_lines(native_errors.text())
    assert f"the engine library {targets.ENGINE_FILE} could not be loaded: " in line


@compiled_here
def test_an_engine_of_another_version_is_refused_and_never_called(root, native_errors, profile):
    source = profile / "engine.c"
    source.write_text(FOREIGN_ENGINE)
    subprocess.run(["cc", "-shared", "-fPIC", "-w", "-o", str(root / "code/bin/libcef.so"), str(source)], check=True)
    use(root)
    (line,) = engine_lines(native_errors.text())
    assert "is refused: its interface is 0123456789abcdef0123456789abcdef01234567" in line
    assert "this module was built for CEF 108.4.13" in line


def test_an_engine_without_a_fingerprint_is_refused(root, native_errors):
    # Any library will do.
    shutil.copy(root / "code/bin" / targets.MODULE_FILE, root / "code/bin" / targets.ENGINE_FILE)
    use(root)
    (line,) = engine_lines(native_errors.text())
    assert "its interface is unknown" in line


def test_the_helper_says_what_it_misses(root):
    (root / "code/bin" / targets.MODULE_FILE).unlink()
    done = subprocess.run([str(root / "code/bin" / targets.HELPER_FILE), "--type=renderer"], capture_output=True, text=True,
                          timeout=20)
    assert done.returncode == 120 and len(done.stderr.splitlines()) == 1


@compiled_here
def test_a_helper_on_a_foreign_engine_ends_with_an_error(root, profile):
    source = profile / "engine.c"
    source.write_text(FOREIGN_ENGINE)
    subprocess.run(["cc", "-shared", "-fPIC", "-w", "-o", str(root / "code/bin/libcef.so"), str(source)], check=True)
    done = subprocess.run([str(root / "code/bin" / targets.HELPER_FILE), "--type=renderer"], capture_output=True, text=True,
                          timeout=20)
    assert done.returncode == 1 and "is refused" in done.stderr


@compiled_here
def test_the_module_needs_no_engine_to_be_loaded():
    needed = subprocess.run(["objdump", "-p", str(Host.ROOT / "code/bin/libORBCefWrapperMT.so")], check=True,
                            capture_output=True, text=True).stdout
    assert "NEEDED" in needed and "libcef" not in needed
