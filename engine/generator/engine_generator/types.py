"""Says of each parameter and result how it crosses between C and C++."""

import re
from dataclasses import dataclass
from typing import List, Optional, Tuple

from .emit_cxx import holds_strings
from .facts import Facts, Param, Slot

_VECTOR = re.compile(r"^std::vector<(.+)>$")
_POINTER = re.compile(r"^Cef(Ref|Raw)Ptr<(\w+)>$")


@dataclass
class Crossing:
    """One C++ parameter with the one or two C arguments that carry it.

    kind: value, bool, string, object, scoped, record, list, map, multimap, values (vector of plain values or records)
    or objects (vector of objects). `writable` says that the callee may change it, `pointer` that C++ passes a pointer.
    """

    kind: str
    cxx: Param
    c: List[Param]
    element: str = ""
    writable: bool = False
    pointer: bool = False
    strings: bool = False
    count: str = ""


class Crossings:
    def __init__(self, facts: Facts):
        self._facts = facts
        self._free = dict(facts.free_types)
        self._scoped = {scope: dict(pairs) for scope, pairs in facts.scoped_types.items()}
        self._records = {r.cxx: r for r in facts.records if r.cxx != "-"}
        self.classes = facts.by_class()

    def resolve(self, text: str, owner: Optional[str]) -> str:
        """The type behind an alias, without const and reference."""
        plain = re.sub(r"^const\s+", "", text).rstrip("&").strip()
        return self._scoped.get(owner or "", {}).get(plain) or self._free.get(plain) or plain

    def record_of(self, cxx: str):
        return self._records.get(cxx)

    def qualified(self, text: str, owner: Optional[str]) -> str:
        """A result type as it must be written outside of its class."""
        return f"{owner}::{text}" if text in self._scoped.get(owner or "", {}) else text

    def params(self, slot: Slot, owner: Optional[str]) -> List[Crossing]:
        found, rest = [], list(slot.args)
        for param in slot.cxx_params:
            plain = self.resolve(param.type, owner)
            vector = _VECTOR.match(plain)
            wide = bool(vector) and vector.group(1) != "CefString"
            c, rest = rest[: 2 if wide else 1], rest[2 if wide else 1:]
            found.append(self._param(slot, param, plain, c, vector.group(1) if wide else ""))
        if rest:
            raise ValueError(f"{slot.name}: C arguments without a parameter: {rest}")
        return found

    def _param(self, slot: Slot, param: Param, plain: str, c: List[Param], element: str) -> Crossing:
        reference = param.type.endswith("&")
        writable = reference and not param.type.startswith("const ")
        pointer = _POINTER.match(plain)
        if element:
            inner = _POINTER.match(element)
            counts = slot.attributes.get("count_func", "")
            count = next((p.partition(":")[2] for p in counts.split() if p.startswith(param.name + ":")), "")
            return Crossing("objects" if inner else "values", param, c, inner.group(2) if inner else element,
                            writable, count=count)
        if plain == "CefString":
            return Crossing("string", param, c, writable=writable)
        if pointer:
            return Crossing("object" if pointer.group(1) == "Ref" else "scoped", param, c, pointer.group(2), writable)
        for prefix, kind in (("std::vector<CefString>", "list"), ("std::map<", "map"), ("std::multimap<", "multimap")):
            if plain.startswith(prefix):
                return Crossing(kind, param, c, plain, writable)
        if plain in ("bool", "bool*"):
            return Crossing("bool", param, c, writable=writable or plain == "bool*", pointer=plain == "bool*")
        if plain in self._records:
            strings = holds_strings(self._records[plain])
            kind = "record" if reference else "value"
            return Crossing(kind, param, c, plain, writable, strings=strings)
        return Crossing("value", param, c, plain, writable)

    def result(self, slot: Slot, owner: Optional[str]) -> Tuple[str, str]:
        """(kind, class) of a result: void, bool, string, object or value."""
        plain = self.resolve(slot.cxx_result, owner)
        pointer = _POINTER.match(plain)
        if pointer:
            return "object", pointer.group(2)
        if plain == "CefString":
            return "string", ""
        if plain in ("void", "bool"):
            return plain, ""
        return "value", plain
