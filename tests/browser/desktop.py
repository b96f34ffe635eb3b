"""What a user sees and does on the X server: windows, keys and the mouse, by way of xdotool and xwininfo."""

import os
import re
import subprocess
import time

from orbcef import scaled

# Where a test clicks: inside a view of the usual size at the screen's corner.
SPOT = (300, 200)


def _output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout


def press(*keys):
    """Presses keys one after the other, "ctrl+r", in the window that has the focus."""
    subprocess.run(["xdotool", "key", *keys], check=True)


def right_click():
    subprocess.run(["xdotool", "mousemove", *map(str, SPOT), "click", "3"], check=True)


def top_windows():
    """All windows just below the root, also those that no window manager would know."""
    return set(re.findall(r"^ +(0x[0-9a-f]+) ", _output("xwininfo", "-root", "-children"), re.MULTILINE))


def wait_until(host, is_so):
    """Whether it became so within a limit, for what no event tells of: windows of the engine's own connection."""
    deadline = time.monotonic() + scaled(15)
    while not is_so() and time.monotonic() < deadline:
        host.main.run_until(lambda: False, 0.05)
    return is_so()


def tools_windows():
    """The windows of the tools that belong to this process: other tests may show some of their own."""
    return _output("xdotool", "search", "--all", "--onlyvisible", "--pid", str(os.getpid()),
                   "--name", "^(DevTools|Developer Tools)").split()


def wait_for_tools(host, are_open):
    assert wait_until(host, lambda: bool(tools_windows()) == are_open)
