"""``Window``: the plain window of this system to put views in."""

import sys

if sys.platform == "win32":
    from .win32 import Win32Window as Window
else:
    from .x11 import X11Window as Window

__all__ = ["Window"]
