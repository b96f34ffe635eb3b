"""What is fetched for each target, and which files of it make up the engine.

The tables name Maven coordinates, never a host: where an artifact comes from is decided by the
Maven settings of the machine.
"""
from __future__ import annotations

import csv
import fnmatch
from dataclasses import dataclass
from pathlib import Path

from errors import FetchError

RESOURCES = (
    "icudtl.dat",
    "snapshot_blob.bin",
    "v8_context_snapshot.bin",
    "resources.pak",
    "chrome_100_percent.pak",
    "chrome_200_percent.pak",
    "locales/en-US.pak",
)
RESOURCE_PATTERNS = ("*.pak", "*.bin", "icudtl.dat", "vk_swiftshader_icd.json", "locales/*.pak")


@dataclass(frozen=True)
class Target:
    """The engine's files on one platform: `required` must be there, `patterns` says what is taken."""

    name: str
    library: str
    required: tuple[str, ...]
    patterns: tuple[str, ...]

    def takes(self, relative_name: str) -> bool:
        """Whether a file of a distribution, named relative to its flat layout, is the engine's."""
        folder_depth = relative_name.count("/")
        return any(
            pattern.count("/") == folder_depth and fnmatch.fnmatchcase(relative_name, pattern)
            for pattern in self.patterns
        )


@dataclass(frozen=True)
class Artifact:
    """One archive of a Maven repository, with the size and the digest that were reviewed."""

    group: str
    name: str
    version: str
    size: int
    sha256: str
    # Tells the archives of one version apart; empty where there is one only.
    classifier: str = ""

    @property
    def coordinates(self) -> str:
        return ":".join(filter(None, (self.group, self.name, self.version, "jar", self.classifier)))

    @property
    def file_name(self) -> str:
        return "-".join(filter(None, (self.name, self.version, self.classifier))) + ".jar"

    @property
    def repository_folder(self) -> str:
        return "/".join((*self.group.split("."), self.name))


@dataclass(frozen=True)
class Interface:
    """The facts of `engine/interface/versions.tsv` that tell one engine from another."""

    major: str
    version: str
    hash_universal: str
    hash_linux: str


TARGETS = {
    "linux-x64": Target(
        name="linux-x64",
        library="libcef.so",
        required=("libcef.so", "libEGL.so", "libGLESv2.so", *RESOURCES),
        patterns=(
            "libcef.so",
            "libEGL.so",
            "libGLESv2.so",
            "libvk_swiftshader.so",
            "libvulkan.so.1",
            *RESOURCE_PATTERNS,
        ),
    ),
    "windows-x64": Target(
        name="windows-x64",
        library="libcef.dll",
        required=("libcef.dll", "chrome_elf.dll", "libEGL.dll", "libGLESv2.dll", *RESOURCES),
        patterns=(
            "libcef.dll",
            "chrome_elf.dll",
            "d3dcompiler_47.dll",
            "libEGL.dll",
            "libGLESv2.dll",
            "vk_swiftshader.dll",
            "vulkan-1.dll",
            *RESOURCE_PATTERNS,
        ),
    ),
}

_VERSION_108 = "jcef-c1f0745+cef-108.4.13+ga98cd4c+chromium-108.0.5359.125"
ARTIFACTS = {
    ("108", "linux-x64"): Artifact(
        group="me.friwi",
        name="jcef-natives-linux-amd64",
        version=_VERSION_108,
        size=114121493,
        sha256="7514108bbccce869ba3a572ebf2595dd30bec7483ac1549eae92f7050527f56a",
    ),
    ("108", "windows-x64"): Artifact(
        group="me.friwi",
        name="jcef-natives-windows-amd64",
        version=_VERSION_108,
        size=116796085,
        sha256="0b47da7ad125ffbc6a8e718c2d6f514a62700ab64f38e93d692abe421578f4df",
    ),
}


def load_interface(folder: Path, abi: str) -> Interface:
    """Reads the row of the wanted interface from `versions.tsv` in `folder`."""
    path = folder / "versions.tsv"
    try:
        with path.open(encoding="utf-8", newline="") as stream:
            rows = list(csv.DictReader(stream, delimiter="\t"))
    except OSError as error:
        raise FetchError(f"the engine's facts cannot be read: {path}: {error.strerror}") from error
    for row in rows:
        if row.get("cef_major") == abi:
            return Interface(
                major=abi,
                version=row["cef_version"],
                hash_universal=row["api_hash_universal"],
                hash_linux=row["api_hash_linux"],
            )
    raise FetchError(f"{path} has no line for engine {abi}")
