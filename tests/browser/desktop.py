"""What a user sees and does: windows on the X server, keys and the mouse by way of xdotool.

On Windows only the windows are looked for, with user32: the tests share one desktop there, and so one focus.
"""

import contextlib
import ctypes
import os
import re
import subprocess
import sys
import time

from orbcef import scaled

# Where a test clicks: inside a view of the usual size at the screen's corner.
SPOT = (300, 200)


def press(*keys):
    """Presses keys one after the other, "ctrl+r", in the window that has the focus."""
    subprocess.run(["xdotool", "key", *keys], check=True)


def right_click():
    subprocess.run(["xdotool", "mousemove", *map(str, SPOT), "click", "3"], check=True)


@contextlib.contextmanager
def _screen():
    """The windows of the display, asked for one by one: tools that list them fail when one goes meanwhile."""
    from Xlib import display  # Not there for a Python for Windows.

    connection = display.Display()
    try:
        yield connection
    finally:
        connection.close()


def top_windows():
    """All windows just below the root, also those that no window manager would know."""
    with _screen() as screen:
        return {window.id for window in screen.screen().root.query_tree().children}


def visible_windows(titles):
    """The visible windows at the top whose titles match, each as its number and the process that it names."""
    from Xlib import X, error

    found = []
    with _screen() as screen:
        pid = screen.intern_atom("_NET_WM_PID")
        for window in screen.screen().root.query_tree().children:
            with contextlib.suppress(error.BadWindow):
                is_visible = window.get_attributes().map_state == X.IsViewable
                owner = window.get_full_property(pid, X.AnyPropertyType)
                if is_visible and re.match(titles, window.get_wm_name() or ""):
                    found.append((window.id, owner.value[0] if owner else None))
    return found


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
    return [window for window, pid in visible_windows(titles) if pid == os.getpid()]


def wait_for_tools(host, are_open):
    assert wait_until(host, lambda: bool(tools_windows()) == are_open)
