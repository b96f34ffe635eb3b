"""A look at the processes of this system and at the files that this one holds open."""

import os
import sys
from pathlib import Path

if sys.platform == "win32":
    from windows_processes import children, kill_process, open_files, session_members  # noqa: F401
else:
    import signal

    def _processes():
        """(pid, parent, session, command line) of all living processes."""
        for entry in Path("/proc").iterdir():
            if not entry.name.isdigit():
                continue
            try:
                fields = (entry / "stat").read_text().rpartition(")")[2].split()
                command = (entry / "cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace")
            except OSError:
                continue  # It ended in between.
            if fields[0] not in "ZX":
                yield int(entry.name), int(fields[1]), int(fields[3]), command.strip()[:200]

    def children(pid):
        """(pid, command line) of the living processes that a process started itself."""
        return [(found, command) for found, parent, _, command in _processes() if parent == pid]

    def session_members(session):
        """(pid, command line) of the living processes of a session; those on wine belong to it as well."""
        return [(found, command) for found, _, own, command in _processes() if own == session]

    def kill_process(pid):
        os.kill(pid, signal.SIGKILL)

    def open_files(profile, others):
        """Descriptors of files below the profile and the other folders."""
        folders, files = (str(profile), *map(str, others)), []
        for descriptor in Path("/proc/self/fd").iterdir():
            try:
                target = os.readlink(descriptor)
            except OSError:
                continue  # The descriptor of this very listing.
            if target.startswith(folders):
                files.append(target)
        return files
