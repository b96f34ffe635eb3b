"""What runs programs for Windows: a wine prefix of a test's own, where there is wine."""
import stat
import subprocess
import sys

import pytest
import wine
from conftest import ROOT

WINESERVER = "#!/bin/sh\necho \"wineserver $WINEPREFIX $*\" >> \"$CALLS\"\n"
# Makes the folders that the fonts are copied into, and keeps living as long as its input does.
WINE64 = """#!/bin/sh
echo "wine64 $WINEPREFIX $*" >> "$CALLS"
case "$1" in
  --version) echo "wine-${WINE_VERSION:-8.0}" ;;
  wineboot) mkdir -p "$WINEPREFIX/drive_c/windows/Fonts"; exit "${BOOT_STATUS:-0}" ;;
  cmd.exe) cat >/dev/null ;;
esac
"""


@pytest.fixture
def prefix(tmp_path, monkeypatch):
    """A prefix for a wine that only writes down how it is called."""
    folder = tmp_path / "bin"
    folder.mkdir()
    for name, text in (("wine64", WINE64), ("wineserver", WINESERVER)):
        (folder / name).write_text(text)
        (folder / name).chmod(stat.S_IRWXU)
    monkeypatch.setattr(wine, "SEARCH_PATH", f"{folder}:/usr/bin:/bin")
    monkeypatch.setenv("CALLS", str(tmp_path / "calls"))
    return tmp_path / "build" / "wine"


def calls(prefix):
    """The calls since the last question, without the name of the prefix that all of them carry."""
    path = prefix.parents[1] / "calls"
    lines = path.read_text().splitlines()
    path.unlink()
    assert all(f" {prefix} " in line for line in lines)
    return [line.replace(f" {prefix}", "") for line in lines]


def test_a_prefix_is_made_once_and_its_server_is_ended_each_time(prefix):
    with wine.wine_prefix(prefix) as variables:
        assert variables["WINEPREFIX"] == str(prefix)
    first = calls(prefix)
    assert "wine64 wineboot -i" in first
    assert sum(line.startswith("wine64 reg add") for line in first) == len(wine.REGISTRY)
    assert first[-2:] == ["wineserver -k", "wineserver -w"]
    with wine.wine_prefix(prefix):
        pass
    version, *both, kill, wait = calls(prefix)
    assert (version, kill, wait) == ("wine64 --version", "wineserver -k", "wineserver -w")
    # They start side by side.
    assert sorted(both) == ["wine64 cmd.exe", "wine64 rundll32.exe user32.dll,GetDesktopWindow"]


def test_another_version_of_wine_gets_a_new_prefix(prefix, monkeypatch):
    with wine.wine_prefix(prefix):
        pass
    calls(prefix)
    monkeypatch.setenv("WINE_VERSION", "9.0")
    with wine.wine_prefix(prefix):
        pass
    assert "wine64 wineboot -i" in calls(prefix)


def test_a_prefix_that_cannot_be_made_is_no_prefix_the_next_time(prefix, monkeypatch):
    monkeypatch.setenv("BOOT_STATUS", "1")
    with pytest.raises(wine.WineError, match="cannot be made"):
        with wine.wine_prefix(prefix):
            pass
    monkeypatch.delenv("BOOT_STATUS")
    calls(prefix)
    with wine.wine_prefix(prefix):
        pass
    assert "wine64 wineboot -i" in calls(prefix)


def test_a_second_user_of_the_prefix_is_refused(prefix):
    with wine.wine_prefix(prefix):
        with pytest.raises(wine.WineError, match="another run uses"):
            with wine.wine_prefix(prefix):
                pass


def test_a_machine_without_wine_is_told_so(tmp_path, monkeypatch):
    monkeypatch.setattr(wine, "SEARCH_PATH", str(tmp_path))
    with pytest.raises(wine.WineError, match="there is no wine64"):
        with wine.wine_prefix(tmp_path / "wine"):
            pass


def test_alone_the_tool_tells_its_usage():
    done = subprocess.run(
        [sys.executable, str(ROOT / "tools" / "wine.py")], capture_output=True, text=True, check=False
    )
    assert done.returncode == 2 and "wine.py PROGRAM" in done.stderr
