"""The hosts of this project, run as a user runs them."""

import os
import re
import select
import subprocess
import time

import desktop
import orbcef
import pytest
import targets
from harness import REPOSITORY, Host, scaled

SUFFIX = ".exe" if targets.IS_WINDOWS else ""
# As somebody types it who stands in the checkout.
RELATIVE_ROOT = targets.ROOT.relative_to(REPOSITORY).as_posix()


def program(name):
    return [*targets.loader(), str(targets.BIN / f"{name}{SUFFIX}")]


def read_until(process, pattern):
    """The output up to the first line that fits."""
    deadline = time.monotonic() + scaled(15)
    text = b""
    while not re.search(pattern.encode(), text):
        ready, _, _ = select.select([process.stdout], [], [], deadline - time.monotonic())
        part = os.read(process.stdout.fileno(), 4096) if ready else b""
        assert part, f"no {pattern!r} in:\n{text.decode(errors='replace')}"
        text += part
    return text.decode(errors="replace")


@pytest.mark.in_parent
def test_the_minimal_host_opens_and_closes_on_a_relative_root(tmp_path):
    environment = {k: v for k, v in os.environ.items() if not k.startswith("ORB")}
    environment["ORBTemp"] = targets.inside(tmp_path)
    host = subprocess.Popen([*program("orbcef_minimal_host"), RELATIVE_ROOT], cwd=REPOSITORY, env=environment,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    try:
        read_until(host, "loading ended")
        ((window, _),) = desktop.visible_windows("^orbcef_minimal_host$")
        messenger = orbcef.Window(orbcef.MainThread(), 1, 1)
        messenger.ask_to_close(window)
        messenger.close()
        assert host.wait(scaled(15)) == 0
    finally:
        host.kill()
        host.wait()
        host.stdout.close()


@pytest.mark.in_parent
def test_the_reference_host_shows_the_answer_and_says_so(tmp_path):
    picture = tmp_path / "out.png"
    environment = {k: v for k, v in os.environ.items() if not k.startswith("ORB")}
    environment["ORBInstallPath"] = RELATIVE_ROOT
    done = subprocess.run([*program("orbcef_host"), "--screenshot", str(picture), "--profile", str(tmp_path)],
                          cwd=REPOSITORY, env=environment, capture_output=True, text=True, timeout=scaled(40))
    assert done.returncode == 0, done.stdout + done.stderr
    assert '[event] strings ["welcome.answered", "Hello from the host. You said: Hello"]' in done.stdout
    assert picture.read_bytes().startswith(b"\x89PNG")


@pytest.mark.in_parent
@pytest.mark.parametrize("arguments, status", [
    (["--seconds", "abc"], 2),
    (["--root", "/nonexistent"], 3),
    (["--url", "xortv://webapps/Nope/missing.html", "--seconds", str(scaled(3))], 8),
])
def test_the_reference_hosts_status_says_what_failed(tmp_path, arguments, status):
    environment = {k: v for k, v in os.environ.items() if not k.startswith("ORB")}
    environment["ORBInstallPath"] = targets.inside(Host.ROOT)
    done = subprocess.run([*program("orbcef_host"), "--profile", str(tmp_path), *arguments], env=environment,
                          capture_output=True, text=True, timeout=scaled(40))
    assert done.returncode == status, done.stdout + done.stderr


@pytest.mark.in_parent
def test_the_reference_host_keeps_a_value_from_run_to_run(tmp_path):
    environment = {k: v for k, v in os.environ.items() if not k.startswith("ORB")}
    environment["ORBInstallPath"] = f"{targets.inside(Host.ROOT)};{targets.inside(Host.PAGES)}"

    def run():
        done = subprocess.run(
            [*program("orbcef_host"), "--url", "xortv://webapps/Test/kept.html", "--screenshot", str(tmp_path / "out.png"),
             "--profile", str(tmp_path)], env=environment, capture_output=True, text=True, timeout=scaled(60))
        assert done.returncode == 0, done.stdout + done.stderr
        return done.stdout

    assert '"saved", "Error: Failed to read preference kept from repository ORBCefStore_Test"' in run()
    found = run()
    assert r'''"found", "{\"text\":\"it's\u2028kept\",\"numbers\":[1,2]}"''' in found, found
