"""What a user sees and does: windows, keys and the mouse, on the X server by way of xdotool and xwininfo.

On Windows only the windows are looked for, with user32: the tests share one desktop there, and so one focus.
"""

import ctypes
import os
import re
import subprocess
import sys
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


def _titled_windows(titles):
    """The visible windows at the top that belong to this process and whose titles match."""
    user32 = ctypes.WinDLL("user32")
    found = []

    @ctypes.WINFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)
    def look(window, _):
        pid = ctypes.c_ulong()
        title = ctypes.create_unicode_buffer(256)
        user32.GetWindowThreadProcessId(ctypes.c_void_p(window), ctypes.byref(pid))
        user32.GetWindowTextW(ctypes.c_void_p(window), title, len(title))
        is_visible = user32.IsWindowVisible(ctypes.c_void_p(window))
        if pid.value == os.getpid() and is_visible and re.match(titles, title.value):
            found.append(window)
        return True

    user32.EnumWindows(look, None)
    return found


def tools_windows():
    """The windows of the tools that belong to this process: other tests may show some of their own."""
    titles = "^(DevTools|Developer Tools)"
    if sys.platform == "win32":
        return _titled_windows(titles)
    return _output("xdotool", "search", "--all", "--onlyvisible", "--pid", str(os.getpid()), "--name", titles).split()


def wait_for_tools(host, are_open):
    assert wait_until(host, lambda: bool(tools_windows()) == are_open)
