"""Where the built module runs: on this system, or on wine. Tests ask here for what differs."""

import os
import shutil
import sys
import sysconfig
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent.parent
NAME = os.environ.get("ORBCEF_TEST_TARGET", "linux-x64")
IS_WINDOWS = NAME == "windows-x64"
# The process that runs a test itself, where that is not the one that collects them.
IS_INSIDE = sys.platform == "win32"
BUILD = REPOSITORY / "build" / NAME
# On wine the engine needs switches, which its stand-in in that root gives it; see docs/testing.md.
ROOT = BUILD / ("wine-root" if IS_WINDOWS else "root")
BIN = BUILD / "bin"
WINDOWS_PYTHON = REPOSITORY / "build" / "windows-python"
PAGES = REPOSITORY / "tests" / "browser" / "pages"
MODULE_FILE = "ORBCefWrapperMT.dll" if IS_WINDOWS else "libORBCefWrapperMT.so"
ENGINE_FILE = "libcef.dll" if IS_WINDOWS else "libcef.so"
HELPER_FILE = "7XOWebHelper.exe" if IS_WINDOWS else "7XOWebHelper"


def inside(path):
    """An absolute path by the name that the process of a test knows it by."""
    return "Z:" + str(path).replace("/", "\\") if IS_WINDOWS and not IS_INSIDE else str(path)


def loader():
    """What stands in front of a program of the target."""
    if not IS_WINDOWS or IS_INSIDE:
        return []
    # The suite runs in a prefix of its own, which has wine on its path.
    return [shutil.which("wine64") or "wine64"]


def python():
    """The command that runs Python where the module can be loaded."""
    if not IS_WINDOWS or IS_INSIDE:
        return [sys.executable]
    return [*loader(), str(WINDOWS_PYTHON / "python.exe")]


def environment(variables):
    """The variables for a process of a test, from those of its parent."""
    # Nobody but this suite's own plug-ins is loaded: a process for each test has to start fast.
    variables = {**variables, "PYTEST_DISABLE_PLUGIN_AUTOLOAD": "1"}
    if not IS_WINDOWS or IS_INSIDE:
        return variables
    # Each folder in front of the one that has a module costs a look at it, and wine is slow at that.
    search_path = (WINDOWS_PYTHON / "Lib", sysconfig.get_path("purelib"))
    return {
        **variables,
        # The test runner is the same on both sides: it is all Python.
        "PYTHONPATH": ";".join(map(inside, search_path)),
        "PYTHONPYCACHEPREFIX": inside(REPOSITORY / "build" / "windows-pycache"),
        # A test's files are text of the web.
        "PYTHONUTF8": "1",
    }
