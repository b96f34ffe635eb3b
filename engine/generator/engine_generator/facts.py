"""Reads the tab-separated facts of one engine interface version into a small model."""

import csv
import re
from dataclasses import dataclass, field
from pathlib import Path
from typing import Dict, List, Optional, Tuple

# Families that the binding leaves out: the engine's own widgets and its test helpers.
_LEFT_OUT = re.compile(
    r"^cef_(translator_test|test_|view|window_t|window_delegate|panel|button|textfield|scroll_view|label_button"
    r"|menu_button|box_layout|fill_layout|layout|display_t|overlay_controller|browser_view)"
)
_LEFT_OUT_HEADERS = ("capi/test/", "capi/views/")

# Written by hand, under the engine's own names: the roots of all interfaces.
ROOTS = ("cef_base_ref_counted_t", "cef_base_scoped_t")


@dataclass
class Param:
    type: str
    name: str


@dataclass
class Slot:
    """One function slot of an interface struct, or one exported function."""

    name: str
    method: str
    result: str
    args: List[Param]
    cxx_result: str
    cxx_params: List[Param]
    is_const: bool = False
    is_static: bool = False
    offset: int = 0
    default: str = "pure"
    attributes: Dict[str, str] = field(default_factory=dict)
    platforms: str = "both"
    header: str = ""


@dataclass
class Interface:
    struct: str
    base: str
    side: str
    cxx: str
    cxx_base: str
    size: int
    header: str = ""
    slots: List[Slot] = field(default_factory=list)
    statics: List[Slot] = field(default_factory=list)

    @property
    def is_scoped(self) -> bool:
        return self.base == "cef_base_scoped_t"


@dataclass
class Field:
    name: str
    type: str
    offsets: Tuple[Optional[int], Optional[int]]


@dataclass
class Record:
    name: str
    cxx: str
    sizes: Tuple[int, int]
    fields: List[Field] = field(default_factory=list)


@dataclass
class Facts:
    abi: str
    version: Dict[str, str]
    interfaces: Dict[str, Interface]
    functions: List[Slot]
    records: List[Record]
    enums: Dict[str, List[Tuple[str, int]]]
    scoped_types: Dict[str, List[Tuple[str, str]]]
    free_types: List[Tuple[str, str]]

    def by_class(self) -> Dict[str, Interface]:
        return {i.cxx: i for i in self.interfaces.values()}

    def chain(self, interface: Interface) -> List[Interface]:
        """The interface and its bases below the roots, nearest first."""
        found = [interface]
        while found[-1].base not in ROOTS:
            found.append(self.interfaces[found[-1].base])
        return found


def split_list(text: str) -> List[str]:
    """Splits at commas that stand outside of brackets."""
    parts, depth, current = [], 0, ""
    for char in text:
        if char in "<(":
            depth += 1
        elif char in ">)":
            depth -= 1
        if char == "," and depth == 0:
            parts.append(current.strip())
            current = ""
        else:
            current += char
    if current.strip():
        parts.append(current.strip())
    return parts


def parse_param(text: str) -> Param:
    match = re.match(r"^(.+?)\s*\b(\w+)$", text, re.S)
    if not match:
        raise ValueError(f"not a parameter: {text!r}")
    return Param(match.group(1).strip(), match.group(2))


def parse_signature(text: str):
    """(static, result, name, parameters, const) of a C++ signature."""
    match = re.match(r"^(static |virtual )?(.*?)\s*\b(\w+)\((.*)\)( const)?$", text)
    if not match:
        raise ValueError(f"not a signature: {text!r}")
    prefix, result, name, params, const = match.groups()
    return prefix == "static ", result.strip(), name, [parse_param(p) for p in split_list(params)], bool(const)


def parse_attributes(text: str) -> Dict[str, str]:
    found: Dict[str, str] = {}
    if text == "-":
        return found
    for part in text.split(","):
        key, _, value = part.partition("=")
        found[key] = f"{found[key]} {value}" if key in found else value
    return found


def _rows(path: Path):
    with path.open(encoding="utf-8", newline="") as file:
        yield from csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE)


def _c_params(text: str) -> List[Param]:
    return [] if text == "-" else [parse_param(p) for p in split_list(text)]


def _interfaces(folder: Path, headers: Dict[str, str]) -> Dict[str, Interface]:
    found: Dict[str, Interface] = {}
    for row in _rows(folder / "interfaces.tsv"):
        struct = row["struct"]
        if struct in ROOTS or _LEFT_OUT.match(struct):
            continue
        if row["slot"] == "base":
            bases = row["cxx_signature"].partition(":")[2].strip()
            if row["cxx_method"] not in headers:
                raise ValueError(f"headers.tsv has no line for {row['cxx_method']}")
            found[struct] = Interface(struct, row["base"], row["side"], row["cxx_method"], bases,
                                      int(row["struct_size"]), headers[row["cxx_method"]])
            continue
        _, result, name, params, const = parse_signature(row["cxx_signature"])
        found[struct].slots.append(
            Slot(row["name"], name, row["result"], _c_params(row["args"]), result, params, const,
                 offset=int(row["offset"]), default=row["cxx_default"],
                 attributes=parse_attributes(row["attributes"])))
    return found


def _functions(folder: Path, interfaces: Dict[str, Interface]) -> List[Slot]:
    classes = {i.cxx: i for i in interfaces.values()}
    found = []
    for row in _rows(folder / "functions.tsv"):
        if row["header"].startswith(_LEFT_OUT_HEADERS):
            continue
        slot = Slot(row["function"], "", row["result"], _c_params(row["args"]), "", [],
                    platforms=row["platforms"], header=row["header"],
                    attributes=parse_attributes(row["attributes"]))
        if row["cxx_signature"] != "-":
            slot.is_static, slot.cxx_result, slot.method, slot.cxx_params, _ = parse_signature(row["cxx_signature"])
            owner = row["cxx_function"].partition("::")[0]
            if slot.is_static:
                classes[owner].statics.append(slot)
        found.append(slot)
    return found


def _records(folder: Path) -> List[Record]:
    found: Dict[str, Record] = {}
    number = lambda text: None if text == "-" else int(text)
    for row in _rows(folder / "records.tsv"):
        record = found.setdefault(row["struct"], Record(row["struct"], row["cxx_class"], (0, 0)))
        offsets = (number(row["offset_linux"]), number(row["offset_windows"]))
        if row["field"] == "(total size)":
            record.sizes = offsets
        else:
            record.fields.append(Field(row["field"], row["type"], offsets))
    return list(found.values())


def load(root: Path, abi: str) -> Facts:
    """Loads the facts of interface version `abi` from `root`, the folder engine/interface."""
    folder = root / abi
    headers = {r["class"]: r["header"] for r in _rows(root / "headers.tsv")}
    version = next(r for r in _rows(root / "versions.tsv") if r["cef_major"] == abi)
    interfaces = _interfaces(folder, headers)
    enums: Dict[str, List[Tuple[str, int]]] = {}
    for row in _rows(folder / "enums.tsv"):
        enums.setdefault(row["enum"], []).append((row["constant"], int(row["value"])))
    scoped: Dict[str, List[Tuple[str, str]]] = {}
    free: List[Tuple[str, str]] = []
    for row in _rows(folder / "typedefs.tsv"):
        if row["language"] != "C++" or row["kind"] != "typedef":
            continue
        pair = (row["name"], row["target_linux"])
        if row["scope"] != "-":
            scoped.setdefault(row["scope"], []).append(pair)
        elif row["target_linux"].startswith(("cef_", "std::")):
            free.append(pair)
    return Facts(abi, version, interfaces, _functions(folder, interfaces), _records(folder), enums, scoped, free)
