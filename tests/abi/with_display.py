"""Runs a command with a virtual display of its own, and answers its exit status.

    with_display.py COMMAND...
"""

import os
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "host" / "python"))

from orbcef.xvfb import Xvfb  # noqa: E402

if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    with Xvfb() as display:
        status = subprocess.run(sys.argv[1:], env={**os.environ, "DISPLAY": display.name})
    # A command that a signal ended must not look like one that succeeded.
    sys.exit(status.returncode if status.returncode >= 0 else 128 - status.returncode)
