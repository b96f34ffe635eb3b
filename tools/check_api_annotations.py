#!/usr/bin/env python3
"""Checks that each slot of the C tables says on which thread it is called, and what becomes of the
pointers that it passes.

A slot's comment ends in a bracketed tag: a thread, then any states, joined by "&". Ownership and
null may be stated by the slot itself, by the comment of its struct or of a struct that it names, or by
the head of its header, since most rules hold for whole tables; for records also by the header that
defines them.
"""
from __future__ import annotations

import itertools
import re
import sys
from dataclasses import dataclass
from pathlib import Path
from typing import Iterator

from sources import run_check

API = "ChromiumEmbeddedPlugin/api"
THREADS = ("main", "ui", "io", "file", "renderer", "any")
TAG = re.compile(r"\[([^\[\]]+)\]$")
STATE = re.compile(r"!?[a-z][a-z_, -]*$")
STRUCT = re.compile(r"^struct (\w+) \{$")
SLOT = re.compile(r"^(?P<result>.+?)\(\*(?P<name>\w+)\)\((?P<arguments>.*)\);$")
LOCAL_INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)
OWNERSHIP = re.compile(
    r"\b(lent|lends|handed over|copied|copy|copies|frees|freed|owned|owns|adds a reference"
    r"|one reference|stays?|releases|parent must live|ignored|never touche?s?)\b"
)
NULL = re.compile(r"\b[Nn]ull\b")
NAME = re.compile(r"\b_?orb\w+_c\b")
# What becomes of these is told once for all in the header that defines them.
RECORD = re.compile(r"\borbcef(string|stringmap|response|replayresult)_c\b")


@dataclass
class Slot:
    """One function slot with all text that may speak of it, nearest first."""

    where: str
    name: str
    struct: str
    result: str
    arguments: str
    comment: list[str]
    struct_comment: str = ""
    context: str = ""
    included: str = ""

    def pointers(self) -> list[str]:
        """The pointers that cross in this slot, the table itself left out."""
        arguments = [] if self.arguments == "void" else _split(self.arguments)
        crossing = [
            argument
            for index, argument in enumerate(arguments)
            if _is_pointer(argument) and not (index == 0 and self.struct in argument)
        ]
        if "*" in self.result:
            crossing.append(f"the result {self.result}")
        return crossing


def find_problems(root: Path) -> list[str]:
    folder = root / API
    headers = sorted(folder.glob("*.h"))
    if not headers:
        return [f"{API}: there is no header"]
    slots = [slot for header in headers for slot in slots_of(header)]
    if not slots:
        return [f"{API}: there is no slot"]
    structs = {slot.struct: slot.struct_comment for slot in slots}
    for slot in slots:
        named = set(NAME.findall(" ".join([*slot.comment, slot.arguments]))) - {slot.struct}
        slot.context += "".join(f" {structs[name]}" for name in named if name in structs)
    return [problem for slot in slots for problem in problems_of(slot)]


def problems_of(slot: Slot) -> list[str]:
    problem = _tag_problem(slot.comment)
    problems = [problem] if problem else []
    near = " ".join([*slot.comment, slot.context])
    for pointer in slot.pointers():
        told = f"{near} {slot.included}" if RECORD.search(pointer) else near
        if not OWNERSHIP.search(told):
            problems.append(f"nothing tells who owns {pointer}")
        if not NULL.search(told):
            problems.append(f"nothing tells about null for {pointer}")
    return [f"{slot.where}: {slot.struct}.{slot.name}: {problem}" for problem in problems]


def _tag_problem(comment: list[str]) -> str | None:
    if not comment:
        return "there is no comment"
    match = TAG.search(comment[-1])
    if not match:
        return "the comment's last line does not end in a thread tag"
    thread, *states = [part.strip() for part in match[1].split("&")]
    if thread not in THREADS:
        return f"[{match[1]}] begins with no thread of: {', '.join(THREADS)}"
    for state in states:
        if not STATE.match(state):
            return f"[{match[1]}] holds a state that cannot be read: '{state}'"
    return None


def slots_of(header: Path) -> list[Slot]:
    """Reads the slots of one header. It understands the layout that the formatter makes, no C."""
    slots = []
    struct, about = None, ""
    head, included = _head_of(header), _heads_included_by(header)
    for number, statement, comment in _statements(header.read_text(encoding="utf-8")):
        opening = STRUCT.match(statement)
        slot = SLOT.match(statement) if struct else None
        if opening:
            struct = opening[1]
        elif statement == "};":
            struct, about = None, ""
        elif statement.startswith("typedef struct"):
            # The comment of a struct stands above its type definition.
            about = " ".join(comment)
        elif slot:
            slots.append(
                Slot(
                    where=f"{API}/{header.name}:{number}",
                    name=slot["name"],
                    struct=struct,
                    result=slot["result"].strip(),
                    arguments=slot["arguments"],
                    comment=comment,
                    struct_comment=about,
                    context=f"{about} {head}",
                    included=included,
                )
            )
    return slots


def _statements(text: str) -> Iterator[tuple[int, str, list[str]]]:
    """The statements of a header, each on one line, with its first line's number and the comment
    directly above it."""
    comment: list[str] = []
    statement, start = "", 0
    for number, line in enumerate(text.splitlines(), 1):
        code = line.strip()
        if code.startswith("//"):
            comment.append(code.lstrip("/").strip())
        elif not code:
            comment = []
        else:
            start = start if statement else number
            statement = f"{statement} {code}".strip()
            if code.endswith((";", "{", "}")) or code.startswith("#"):
                yield start, statement, comment
                statement, comment = "", []


def _head_of(header: Path) -> str:
    """The comment that opens a header."""
    lines = header.read_text(encoding="utf-8").splitlines()
    head = itertools.takewhile(lambda line: line.startswith("//"), lines)
    return " ".join(line.lstrip("/").strip() for line in head)


def _heads_included_by(header: Path) -> str:
    """The opening comments of the headers that a header includes from its own folder."""
    names = LOCAL_INCLUDE.findall(header.read_text(encoding="utf-8"))
    paths = [header.with_name(name) for name in names]
    return " ".join(_head_of(path) for path in paths if path.exists())


def _is_pointer(argument: str) -> bool:
    return "*" in argument or "[" in argument


def _split(arguments: str) -> list[str]:
    """Splits at the commas that stand outside of parentheses."""
    parts, depth = [""], 0
    for character in arguments:
        depth += {"(": 1, ")": -1}.get(character, 0)
        if character == "," and depth == 0:
            parts.append("")
        else:
            parts[-1] += character
    return [" ".join(part.split()) for part in parts]


if __name__ == "__main__":
    sys.exit(run_check("check_api_annotations", __doc__, find_problems))
