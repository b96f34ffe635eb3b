"""A small engine and a small Maven that stand in for the real ones."""
import hashlib
import io
import subprocess
import tarfile
import zipfile

import artifacts

LIBRARY = """
const char* cef_api_hash(int entry) {{ return entry == 0 ? "{platform}" : "{universal}"; }}
int cef_version_info(int entry) {{ return entry == 0 ? {major} : entry; }}
"""
VERSIONS = """branch\tcef_major\tapi_hash_universal\tapi_hash_linux\tapi_hash_windows\tcef_version
5112\t104\tu104\tl104\tw104\t104.1.2
5359\t108\tu108\tl108\tw108\t108.1.2
"""
NOT_ENGINE = ("libjcef.so", "jcef_helper", "chrome-sandbox", "LICENSE.txt", "sub/libcef.so")


def compile_library(path, major="108", platform=None, universal=None):
    """Builds a shared library that tells what a real one tells."""
    source = path.with_suffix(".c")
    source.write_text(
        LIBRARY.format(
            major=major, platform=platform or f"l{major}", universal=universal or f"u{major}"
        )
    )
    subprocess.run(["cc", "-shared", "-fPIC", "-o", path, source], check=True)
    source.unlink()
    return path


def make_distribution(folder, target_name, library):
    """Lays out a flat distribution with files around it that are not the engine's."""
    target = artifacts.TARGETS[target_name]
    for name in (*target.required, *NOT_ENGINE):
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(library if name == target.library else name.encode())
    (folder / target.library).chmod(0o755)
    return folder


def pack(folder, jar):
    """Packs a distribution the way the repository's archive does: a tar in a zip."""
    buffer = io.BytesIO()
    with tarfile.open(fileobj=buffer, mode="w:gz") as tar:
        for path in sorted(folder.glob("**/*")):
            tar.add(path, arcname=path.relative_to(folder).as_posix(), recursive=False)
    with zipfile.ZipFile(jar, "w") as archive:
        archive.writestr("META-INF/MANIFEST.MF", "")
        archive.writestr("natives.tar.gz", buffer.getvalue())
    return jar


def artifact_of(jar, name="engine-natives"):
    return artifacts.Artifact(
        group="org.example",
        name=name,
        version="1",
        size=jar.stat().st_size,
        sha256=hashlib.sha256(jar.read_bytes()).hexdigest(),
    )


class FakeMaven:
    """A command that delivers a prepared archive, or fails as it is told, and counts its runs."""

    def __init__(self, folder):
        self._folder = folder
        self.command = folder / "mvn"
        self._runs = folder / "runs"

    def delivers(self, jar):
        return self._script(f'cp "{jar}" "$out/engine-natives-1.jar"')

    def fails(self, output):
        text = self._folder / "output"
        text.write_text(output)
        return self._script(f'cat "{text}"\nexit 1')

    def does(self, script):
        return self._script(script)

    @property
    def runs(self):
        return self._runs.read_text().splitlines() if self._runs.exists() else []

    def _script(self, body):
        self.command.write_text(
            "#!/bin/sh\n"
            f'echo "$@" >> "{self._runs}"\n'
            'for a in "$@"; do case "$a" in -DoutputDirectory=*) out="${a#*=}";; esac; done\n'
            f"{body}\n"
        )
        self.command.chmod(0o755)
        return str(self.command)
