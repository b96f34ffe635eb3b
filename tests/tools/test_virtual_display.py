"""The private X server: there while it is used, gone afterwards."""
import subprocess

from virtual_display import virtual_display


def answers(display):
    done = subprocess.run(
        ["xdpyinfo", "-display", display], capture_output=True, timeout=30, check=False
    )
    return done.returncode == 0


def test_two_displays_at_once_and_none_afterwards():
    with virtual_display() as first, virtual_display() as second:
        assert first != second
        assert answers(first) and answers(second)
    assert not answers(first) and not answers(second)
