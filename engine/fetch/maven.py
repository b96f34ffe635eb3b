"""Brings one artifact from wherever this machine's Maven settings point to, into the cache."""
from __future__ import annotations

import hashlib
import os
import re
import shutil
import subprocess
import time
from pathlib import Path

from artifacts import Artifact
from errors import FetchError
from progress import Progress

POLL_SECONDS = 0.5
STALL_SECONDS = 300

# The first pattern found in Maven's output names the reason; the order goes from the particular to
# the general, since a full disk also ends in a failed transfer.
REASONS = (
    (r"No space left on device", "the disk is full"),
    (r"JAVA_HOME|java: (command )?not found", "Maven finds no Java; install default-jre-headless"),
    (r"Checksum validation failed", "the repository's archive does not match its own checksum"),
    (
        r"Cannot access .* in offline mode",
        "Maven is set to work offline and does not have the archive",
    ),
    (
        r"Unknown host|UnknownHost|name resolution|Connection refused|timed out|Network is unreachable"
        r"|Connection reset|No route to host",
        "there is no connection to the Maven repository; check the network and Maven's settings",
    ),
    (r"status code: 40[13]|Not authorized|Forbidden", "the Maven repository refuses access"),
    (
        r"Could not find artifact|Failure to find",
        "the Maven repository does not have the archive",
    ),
)


def reason_of(output: str) -> str:
    """The reason for a failed run of Maven, in words of the user's world."""
    for pattern, reason in REASONS:
        if re.search(pattern, output):
            return reason
    errors = re.findall(r"^\[ERROR\] (.+)$", output, flags=re.MULTILINE)
    return f"Maven says: {errors[0].strip()}" if errors else "Maven failed without an error line"


def digest_of(path: Path) -> str:
    digest = hashlib.sha256()
    with path.open("rb") as stream:
        while chunk := stream.read(1 << 20):
            digest.update(chunk)
    return digest.hexdigest()


def fetch(artifact: Artifact, cache: Path, maven: str = "mvn") -> Path:
    """Returns the artifact's archive in `cache`; fetches it unless a sound one is there already."""
    archive = cache / artifact.file_name
    if archive.exists():
        if digest_of(archive) == artifact.sha256:
            return archive
        archive.unlink()
    partial = cache / f"partial-{os.getpid()}"
    repository = cache / "maven"
    try:
        partial.mkdir(parents=True, exist_ok=True)
        _run_maven(artifact, maven, repository, partial)
        fetched = partial / artifact.file_name
        if not fetched.exists():
            raise FetchError(f"Maven reported success but did not deliver {artifact.file_name}")
        found = digest_of(fetched)
        if found != artifact.sha256:
            raise FetchError(
                f"the fetched archive is not the expected one: its SHA-256 is {found}, "
                f"expected {artifact.sha256}"
            )
        fetched.replace(archive)
    finally:
        shutil.rmtree(partial, ignore_errors=True)
        # Maven keeps a second copy in its local repository; the one in the cache is enough.
        shutil.rmtree(repository / artifact.repository_folder, ignore_errors=True)
    return archive


def _run_maven(artifact: Artifact, maven: str, repository: Path, output: Path) -> None:
    log_path = repository.parent / "maven.log"
    command = [
        maven,
        "--batch-mode",
        "--no-transfer-progress",
        "--strict-checksums",
        f"-Dmaven.repo.local={repository}",
        "dependency:copy",
        f"-Dartifact={artifact.coordinates}",
        f"-DoutputDirectory={output}",
        "-Dmdep.useBaseVersion=true",
    ]
    with log_path.open("wb") as log:
        try:
            # The cache as working directory keeps Maven from taking up a project file near the user.
            process = subprocess.Popen(
                command,
                cwd=repository.parent,
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=subprocess.STDOUT,
            )
        except FileNotFoundError as error:
            raise FetchError(
                f"Maven is needed to get the engine, and there is no '{maven}' on this machine"
            ) from error
        try:
            status = _wait(process, repository / artifact.repository_folder, artifact.size)
        finally:
            if process.poll() is None:
                process.terminate()
                process.wait()
    if status != 0:
        reason = reason_of(log_path.read_text(encoding="utf-8", errors="replace"))
        raise FetchError(f"the engine could not be fetched: {reason} (details: {log_path})")


def _wait(process: subprocess.Popen, growing: Path, total: int) -> int:
    progress = Progress("fetching the engine", total)
    seen = 0
    last_growth = time.monotonic()
    try:
        while True:
            try:
                status = process.wait(timeout=POLL_SECONDS)
                if status == 0:
                    progress.update(total)
                return status
            except subprocess.TimeoutExpired:
                size = folder_size(growing)
            if size > seen:
                seen, last_growth = size, time.monotonic()
                # Only the end of the run means that all has come.
                progress.update(min(size, total * 99 // 100))
            elif time.monotonic() - last_growth > STALL_SECONDS:
                raise FetchError(
                    f"the engine could not be fetched: nothing has come for {STALL_SECONDS} seconds"
                )
    finally:
        progress.abandon()


def folder_size(folder: Path) -> int:
    """The bytes of all files below `folder`, some of which may vanish while they are counted."""
    total = 0
    for root, _, names in os.walk(folder):
        for name in names:
            try:
                total += os.stat(os.path.join(root, name)).st_size
            except OSError:
                continue
    return total
