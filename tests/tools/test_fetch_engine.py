"""Getting the engine: each way to succeed, each way to fail, and nothing half-made in between."""
import json
import os
import shutil
import signal
import subprocess
import sys

import artifacts
import fetch_engine
import maven
import pytest
from conftest import ROOT
from engine_doubles import (
    NOT_ENGINE,
    VERSIONS,
    FakeMaven,
    artifact_of,
    compile_library,
    make_distribution,
    pack,
)

LINUX = artifacts.TARGETS["linux-x64"]


@pytest.fixture(scope="session")
def library(tmp_path_factory):
    return compile_library(tmp_path_factory.mktemp("library") / "libcef.so").read_bytes()


@pytest.fixture
def rig(tmp_path, library, monkeypatch):
    """Everything a run needs, made for this test alone."""
    return Rig(tmp_path, library, monkeypatch)


class Rig:
    def __init__(self, folder, library, monkeypatch):
        self.folder = folder
        self.library = library
        self.build = folder / "build"
        self.interface = folder / "interface"
        self.interface.mkdir()
        (self.interface / "versions.tsv").write_text(VERSIONS)
        self.distribution = make_distribution(folder / "dist", "linux-x64", library)
        self._monkeypatch = monkeypatch
        monkeypatch.delenv("ENGINE_ROOT", raising=False)
        self.maven = FakeMaven(folder)
        self.offer(self.distribution)

    def offer(self, distribution, target="linux-x64"):
        self.jar = pack(distribution, self.folder / "natives.jar")
        self.expect(artifact_of(self.jar), target)
        self.maven.delivers(self.jar)

    def expect(self, artifact, target="linux-x64"):
        self._monkeypatch.setattr(
            fetch_engine, "ARTIFACTS", {("108", target): artifact}, raising=True
        )

    def arguments(self, *more):
        return [
            *("--build-dir", str(self.build), "--interface", str(self.interface)),
            *("--maven", str(self.maven.command), *more),
        ]

    def run(self, *more):
        return fetch_engine.main(self.arguments(*more))

    @property
    def engine(self):
        return self.build / "engine" / "108" / "linux-x64"

    def leftovers(self):
        return [path for path in self.build.glob("**/*") if "partial" in path.name]


def names_in(folder):
    return {p.relative_to(folder).as_posix() for p in folder.glob("**/*") if p.is_file()}


def the_one_line(capsys):
    lines = [
        line for line in capsys.readouterr().err.splitlines() if line.startswith("fetch_engine: ")
    ]
    assert len(lines) == 1
    return lines[0]


def test_lays_out_the_engine_and_nothing_else(rig, capsys):
    assert rig.run() == 0
    assert names_in(rig.engine) == set(LINUX.required)
    assert (rig.engine / "libcef.so").read_bytes() == rig.library
    assert os.access(rig.engine / "libcef.so", os.X_OK)
    assert not os.access(rig.engine / "icudtl.dat", os.X_OK)
    assert capsys.readouterr().out == f"{rig.engine}\n"
    assert rig.leftovers() == []


def test_asks_maven_by_coordinates_with_a_repository_below_the_build_tree(rig):
    rig.run()
    assert len(rig.maven.runs) == 1
    assert "dependency:copy" in rig.maven.runs[0]
    assert "-Dartifact=org.example:engine-natives:1:jar" in rig.maven.runs[0]
    assert f"-Dmaven.repo.local={rig.build}/engine/cache/maven" in rig.maven.runs[0]


def test_a_second_call_does_no_work(rig, monkeypatch):
    rig.run()
    monkeypatch.setattr(fetch_engine, "_verify_library", None)
    monkeypatch.setattr(maven, "fetch", None)
    assert rig.run() == 0


@pytest.mark.parametrize("name", ["libcef.so", "locales/en-US.pak"])
def test_a_missing_file_is_put_back_without_another_fetch(rig, name):
    rig.run()
    (rig.engine / name).unlink()
    assert rig.run() == 0
    assert names_in(rig.engine) == set(LINUX.required)
    assert len(rig.maven.runs) == 1


def test_a_changed_file_is_put_back(rig):
    rig.run()
    (rig.engine / "icudtl.dat").write_text("broken by hand")
    assert rig.run() == 0
    assert (rig.engine / "icudtl.dat").read_text() == "icudtl.dat"


def test_a_broken_cached_archive_is_fetched_again(rig):
    rig.run()
    shutil.rmtree(rig.engine)
    (rig.build / "engine/cache/engine-natives-1.jar").write_text("cut off")
    assert rig.run() == 0
    assert len(rig.maven.runs) == 2


def test_other_facts_of_the_interface_are_checked_again(rig, capsys):
    rig.run()
    (rig.interface / "versions.tsv").write_text(VERSIONS.replace("l108", "other"))
    assert rig.run() == 1
    assert "platform interface hash is l108, expected other" in the_one_line(capsys)


def test_leftovers_of_a_killed_run_are_removed(rig):
    leftover = rig.build / "engine/108/linux-x64.partial-1/libcef.so"
    leftover.parent.mkdir(parents=True)
    leftover.write_text("half")
    assert rig.run() == 0
    assert rig.leftovers() == []


@pytest.mark.parametrize(
    "output, reason",
    [
        ("[ERROR] x: Unknown host example.org: Name or service not known", "no connection"),
        ("[ERROR] Could not transfer artifact: Connect to x timed out", "no connection"),
        ("[ERROR] Could not transfer artifact: No space left on device", "the disk is full"),
        ("[ERROR] Could not find artifact a:b:jar:1", "does not have the archive"),
        ("[ERROR] Checksum validation failed, expected 1 but is 2", "its own checksum"),
        ("The JAVA_HOME environment variable is not defined correctly", "Maven finds no Java"),
        ("[ERROR] Cannot access central in offline mode", "set to work offline"),
        ("[ERROR] transfer failed, status code: 403, reason phrase: x", "refuses access"),
        ("[INFO] a\n[ERROR] Something new\n[ERROR] more", "Maven says: Something new"),
        ("nothing of use", "without an error line"),
    ],
)
def test_a_failed_fetch_is_told_in_one_line(rig, capsys, output, reason):
    rig.maven.fails(output)
    assert rig.run() == 1
    line = the_one_line(capsys)
    assert reason in line
    assert str(rig.build / "engine/cache/maven.log") in line
    assert not rig.engine.exists()
    assert rig.leftovers() == []


def test_no_maven(rig, capsys):
    rig.maven.command.unlink()
    assert rig.run() == 1
    assert "Maven is needed to get the engine" in the_one_line(capsys)


def test_maven_that_delivers_nothing(rig, capsys):
    rig.maven.does("exit 0")
    assert rig.run() == 1
    assert "did not deliver engine-natives-1.jar" in the_one_line(capsys)


def test_maven_that_hangs(rig, capsys, monkeypatch):
    monkeypatch.setattr(maven, "STALL_SECONDS", 0)
    monkeypatch.setattr(maven, "POLL_SECONDS", 0.01)
    rig.maven.does(f"echo $$ > {rig.folder}/pid; exec sleep 30")
    assert rig.run() == 1
    assert "nothing has come for 0 seconds" in the_one_line(capsys)
    pid_file = rig.folder / "pid"
    if pid_file.exists():
        with pytest.raises(ProcessLookupError):
            os.kill(int(pid_file.read_text()), 0)


def test_an_archive_with_another_digest(rig, capsys):
    other = make_distribution(rig.folder / "other", "linux-x64", b"another library")
    rig.maven.delivers(pack(other, rig.folder / "other.jar"))
    assert rig.run() == 1
    assert "not the expected one: its SHA-256 is" in the_one_line(capsys)
    assert list((rig.build / "engine/cache").glob("*.jar")) == []


@pytest.mark.parametrize("content", [b"no zip at all", None])
def test_a_broken_archive(rig, capsys, content):
    if content is None:
        whole = rig.jar.read_bytes()
        start = whole.index(b"\x1f\x8b")
        content = whole[: start + 40] + b"\0" * 40 + whole[start + 80 :]
    rig.jar.write_bytes(content)
    rig.expect(artifact_of(rig.jar))
    assert rig.run() == 1
    assert "the archive is broken" in the_one_line(capsys)
    assert not rig.engine.exists()
    assert rig.leftovers() == []


def test_an_incomplete_archive(rig, capsys):
    (rig.distribution / "icudtl.dat").unlink()
    rig.offer(rig.distribution)
    assert rig.run() == 1
    assert "it lacks: icudtl.dat" in the_one_line(capsys)
    assert not rig.engine.exists()


@pytest.mark.parametrize(
    "built, text",
    [
        ({"platform": "other"}, "platform interface hash is other, expected l108"),
        ({"universal": "other"}, "universal interface hash is other, expected u108"),
        ({"major": "104"}, "is not the expected engine 108.1.2 but 104.1.2"),
    ],
)
def test_another_engine(rig, capsys, built, text):
    compile_library(rig.distribution / "libcef.so", **built)
    rig.offer(rig.distribution)
    assert rig.run() == 1
    assert text in the_one_line(capsys)
    assert not rig.engine.exists()
    assert rig.leftovers() == []


def test_a_refused_engine_leaves_the_one_in_place(rig):
    rig.run()
    (rig.engine / "icudtl.dat").write_text("broken by hand")
    (rig.interface / "versions.tsv").write_text(VERSIONS.replace("l108", "other"))
    assert rig.run() == 1
    assert (rig.engine / "libcef.so").exists()


def test_a_library_that_does_not_load(rig, capsys):
    (rig.distribution / "libcef.so").write_bytes(b"no library")
    rig.offer(rig.distribution)
    assert rig.run() == 1
    assert "the engine library does not load" in the_one_line(capsys)


def test_a_library_that_crashes_while_it_is_loaded(rig, capsys):
    source = rig.folder / "crash.c"
    source.write_text(
        "#include <stdlib.h>\n__attribute__((constructor)) static void f(void) { abort(); }\n"
    )
    library = rig.distribution / "libcef.so"
    subprocess.run(["cc", "-shared", "-fPIC", "-o", library, source], check=True)
    rig.offer(rig.distribution)
    assert rig.run() == 1
    assert "crashes while it is loaded" in the_one_line(capsys)


def test_a_full_disk(rig, capsys, monkeypatch):
    def refuse(*_):
        raise OSError(28, "No space left on device")

    monkeypatch.setattr(fetch_engine.layout.shutil, "copyfileobj", refuse)
    assert rig.run() == 1
    assert "the disk is full" in the_one_line(capsys)
    assert rig.leftovers() == []


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM])
def test_an_interrupted_run_leaves_nothing(rig, number):
    # The stand-in for Maven ends its own parent, at a moment when a fetch is surely under way. A shell's background job
    # ignores SIGINT, and hands that on to its children: the run under test has it as at a terminal.
    rig.maven.does(f"echo part > $out/part; kill -{int(number)} $PPID; exec sleep 5")
    script = (
        f"import signal, sys; sys.path.insert(0, {str(ROOT / 'engine/fetch')!r})\n"
        "signal.signal(signal.SIGINT, signal.default_int_handler)\n"
        "import fetch_engine, artifacts\n"
        "artifact = artifacts.Artifact('org.example', 'engine-natives', '1', 1, 'x')\n"
        "fetch_engine.ARTIFACTS = {('108', 'linux-x64'): artifact}\n"
        "sys.exit(fetch_engine.main(sys.argv[1:]))\n"
    )
    done = subprocess.run(
        [sys.executable, "-c", script, *rig.arguments()],
        capture_output=True,
        text=True,
        timeout=60,
        check=False,
    )
    assert done.returncode == 130
    assert "interrupted; nothing was changed" in done.stderr
    assert not rig.engine.exists()
    assert rig.leftovers() == []


def test_a_path_out_of_the_folder_is_not_unpacked(rig):
    assert not LINUX.takes("../libcef.so")
    assert not LINUX.takes("/libcef.so")
    assert not LINUX.takes("locales/../libcef.so")
    assert not any(LINUX.takes(name) for name in NOT_ENGINE)


def test_windows_is_laid_out_and_not_loaded(rig):
    windows = make_distribution(rig.folder / "windows", "windows-x64", b"a DLL")
    rig.offer(windows, "windows-x64")
    assert rig.run("--target", "windows-x64") == 0
    folder = rig.build / "engine/108/windows-x64"
    assert names_in(folder) == set(artifacts.TARGETS["windows-x64"].required)


def test_windows_must_be_complete(rig, capsys):
    windows = make_distribution(rig.folder / "windows", "windows-x64", b"a DLL")
    (windows / "chrome_elf.dll").unlink()
    rig.offer(windows, "windows-x64")
    assert rig.run("--target", "windows-x64") == 1
    assert "it lacks: chrome_elf.dll" in the_one_line(capsys)


def as_sdk(distribution, root):
    for name in LINUX.required:
        folder = "Release" if name.endswith((".so", ".bin")) else "Resources"
        destination = root / folder / name
        destination.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(distribution / name, destination)
    return root


def test_a_local_distribution_is_checked_and_used_where_it_is(rig, capsys, monkeypatch):
    for root in (rig.distribution, as_sdk(rig.distribution, rig.folder / "sdk")):
        assert rig.run("--engine-root", str(root)) == 0
        assert capsys.readouterr().out == f"{root}\n"
    assert rig.maven.runs == []
    monkeypatch.setenv("ENGINE_ROOT", str(rig.distribution))
    assert rig.run() == 0
    assert capsys.readouterr().out == f"{rig.distribution}\n"


def test_a_local_distribution_is_checked_once(rig, monkeypatch):
    rig.run("--engine-root", str(rig.distribution))
    monkeypatch.setattr(fetch_engine, "_verify_library", None)
    assert rig.run("--engine-root", str(rig.distribution)) == 0


@pytest.mark.parametrize(
    "damage, text",
    [
        (lambda root: shutil.rmtree(root), "is no folder"),
        (lambda root: (root / "libcef.so").unlink(), "holds no libcef.so"),
        (lambda root: (root / "resources.pak").unlink(), "it lacks: resources.pak"),
        (lambda root: (root / "icudtl.dat").write_text(""), "it lacks: icudtl.dat"),
        (lambda root: compile_library(root / "libcef.so", "104"), "but 104.1.2"),
    ],
)
def test_a_bad_local_distribution(rig, capsys, damage, text):
    rig.run("--engine-root", str(rig.distribution))
    capsys.readouterr()
    damage(rig.distribution)
    assert rig.run("--engine-root", str(rig.distribution)) == 1
    assert text in the_one_line(capsys)


def test_the_other_interface_comes_from_a_local_distribution_only(rig, capsys):
    assert rig.run("--abi", "104") == 1
    assert "--engine-root" in the_one_line(capsys)
    compile_library(rig.distribution / "libcef.so", "104")
    assert rig.run("--abi", "104", "--engine-root", str(rig.distribution)) == 0


def test_missing_facts(rig, capsys):
    (rig.interface / "versions.tsv").unlink()
    assert rig.run() == 1
    assert "the engine's facts cannot be read" in the_one_line(capsys)


def test_no_registry_host_is_written_anywhere():
    for path in (ROOT / "engine/fetch").glob("*.py"):
        assert "://" not in path.read_text(encoding="utf-8"), path


def test_the_stamp_survives_being_broken(rig):
    rig.run()
    (rig.build / "engine/108/linux-x64.stamp").write_text("{")
    assert rig.run() == 0
    assert json.loads((rig.build / "engine/108/linux-x64.stamp").read_text())["identity"]
