"""Emits the C++ side of an interface version: classes and functions under the engine's public names and headers."""

import re
from typing import Dict, List, Set

from .emit_c import guard, on_platform
from .facts import Facts, Interface, Record, Slot, split_list

# Records whose C++ classes are written by hand in cef_types_wrappers.h.
_HAND_WRITTEN = {"CefPoint", "CefRect", "CefSize", "CefRange", "CefInsets", "CefMainArgs"}
_HAND_COMPLETED = {"CefWindowInfo"}
_REFERENCE = re.compile(r"Cef(?:RefPtr|RawPtr)<(\w+)>")


def holds_strings(record: Record) -> bool:
    return any(f.type == "cef_string_t" for f in record.fields)


def _traits(record: Record) -> str:
    def statement(item, text: str) -> str:
        if None not in item.offsets:
            return text
        return f"#if defined(OS_WIN)\n{text}#endif\n"

    # Only a first field named `size` of type size_t is the structure's own size.
    sized = record.fields[0].name == "size" and record.fields[0].type == "size_t"
    clear, copy = [], []
    for item in record.fields[1 if sized else 0:]:
        if item.type == "cef_string_t":
            clear.append(statement(item, f"    cef_string_utf16_clear(&s->{item.name});\n"))
            copy.append(statement(item, f"    cef_string_utf16_set(from->{item.name}.str, from->{item.name}.length, "
                                        f"&to->{item.name}, copy);\n"))
        else:
            copy.append(statement(item, f"    to->{item.name} = from->{item.name};\n"))
    size = "    s->size = sizeof(*s);\n" if sized else ""
    return (f"struct {record.cxx}Traits {{\n  using struct_type = {record.name};\n"
            f"  static void init(struct_type* s) {{\n    *s = struct_type{{}};\n{size}  }}\n"
            f"  static void clear(struct_type* s) {{\n{''.join(clear)}  }}\n"
            f"  static void set(const struct_type* from, struct_type* to, bool copy) {{\n{''.join(copy)}  }}\n}};\n")


def _plain_class(record: Record) -> str:
    return (f"class {record.cxx} : public {record.name} {{\n public:\n  {record.cxx}() : {record.name}{{}} {{}}\n"
            f"  {record.cxx}(const {record.name}& other) : {record.name}(other) {{}}\n}};\n")


def record_classes(facts: Facts) -> str:
    """include/internal/cef_record_classes.h, the generated part of cef_types_wrappers.h."""
    parts = ['#include "include/capi/cef_functions.h"\n']
    for record in facts.records:
        if record.cxx == "-" or record.cxx in _HAND_WRITTEN:
            continue
        if not holds_strings(record):
            parts.append(_plain_class(record))
            continue
        parts.append(_traits(record))
        if record.cxx not in _HAND_COMPLETED:
            parts.append(f"using {record.cxx} = CefStructBase<{record.cxx}Traits>;\n")
    parts += [f"using {name} = {target};\n" for name, target in facts.free_types if target.startswith("cef_")]
    return guard("internal/cef_record_classes.h", "\n".join(parts))


def default_body(slot: Slot) -> str:
    """The statements of a method's default, empty for none."""
    if slot.default in ("pure", "empty"):
        return ""
    returned, *settings = [part.strip() for part in slot.default.split(";")]
    lines = [part[len("sets "):] + ";" for part in settings]
    return " ".join(lines + [returned.replace("returns", "return", 1) + ";"])


def cxx_params(slot: Slot) -> str:
    return ", ".join(f"{p.type} {p.name}" for p in slot.cxx_params)


def _method(slot: Slot) -> str:
    const = " const" if slot.is_const else ""
    head = f"  virtual {slot.cxx_result} {slot.method}({cxx_params(slot)}){const}"
    if slot.default == "pure":
        return f"{head} = 0;\n"
    body = default_body(slot)
    return f"{head} {{ {body} }}\n" if body else f"{head} {{}}\n"


def _class(facts: Facts, interface: Interface) -> str:
    types = "".join(f"  using {name} = {target};\n" for name, target in facts.scoped_types.get(interface.cxx, []))
    statics = "".join(f"  static {s.cxx_result} {s.method}({cxx_params(s)});\n" for s in interface.statics)
    methods = "".join(_method(slot) for slot in interface.slots)
    return f"class {interface.cxx} : {interface.cxx_base} {{\n public:\n{types}{statics}{methods}}};\n"


def _mentioned(facts: Facts, interface: Interface, slots: List[Slot]) -> Set[str]:
    aliases = dict(facts.scoped_types.get(interface.cxx, []) if interface else [])
    aliases.update(facts.free_types)
    found: Set[str] = set()
    for slot in slots:
        for text in [slot.cxx_result] + [p.type for p in slot.cxx_params]:
            for word in re.findall(r"\w+", text):
                text += " " + aliases.get(word, "")
            found.update(_REFERENCE.findall(text))
    return found


def _needed_whole(facts: Facts, interface: Interface) -> Set[str]:
    """Classes that must be complete before this one: bases, and what default bodies take or return by value."""
    classes = set(split_list(interface.cxx_base.replace("public", "").replace("virtual", "")))
    for slot in interface.slots:
        if slot.default == "pure":
            continue
        values = [p for p in slot.cxx_params if not p.type.endswith("&")]
        by_value = Slot(slot.name, slot.method, "", [], slot.cxx_result, values)
        classes |= _mentioned(facts, interface, [by_value])
    return {c.strip() for c in classes}


def headers(facts: Facts) -> Dict[str, str]:
    """All public headers of the interfaces, by their path below include/."""
    classes = facts.by_class()
    files: Dict[str, List[Interface]] = {}
    for interface in facts.interfaces.values():
        files.setdefault(interface.header, []).append(interface)
    free: Dict[str, List[Slot]] = {}
    for function in facts.functions:
        if function.method and not function.is_static:
            name = re.sub(r"^capi/(.*)_capi\.h$", r"\1.h", function.header)
            free.setdefault(name, []).append(function)
            files.setdefault(name, [])
    return {name: _header(facts, classes, name, members, free.get(name, [])) for name, members in files.items()}


def _header(facts: Facts, classes, name: str, members: List[Interface], functions: List[Slot]) -> str:
    own = {m.cxx for m in members}
    whole: Set[str] = set()
    mentioned = _mentioned(facts, None, functions)
    for member in members:
        whole |= _needed_whole(facts, member)
        mentioned |= _mentioned(facts, member, member.slots + member.statics)
    includes = {classes[c].header for c in whole - own if c in classes} - {name}
    # After the classes, what callers pass and receive by value; but no class with default bodies, since those need
    # others whole and would close a circle.
    with_bodies = {i.header for i in classes.values() for s in i.slots if s.default != "pure"}
    after = sorted({classes[c].header for c in mentioned if c in classes} - includes - with_bodies - {name})
    forward = sorted((mentioned | own) - {"CefBaseRefCounted", "CefBaseScoped"})
    lists = [(n, t) for n, t in facts.free_types if t.startswith("std::") and set(_REFERENCE.findall(t)) & own]
    body = ['#include "include/cef_base.h"\n'] + [f'#include "include/{i}"\n' for i in sorted(includes)]
    body += ["\n"] + [f"class {c};\n" for c in forward]
    body += [f"using {n} = {t};\n" for n, t in lists] + ["\n"]
    body += ["\n" + _class(facts, m) for m in _ordered(members, facts)]
    body += ["\n"] if functions else []
    body += [on_platform(f, f"{f.cxx_result} {f.method}({cxx_params(f)});\n") for f in functions]
    body += ["\n"] + [f'#include "include/{i}"\n' for i in after] if after else []
    return guard(name, "".join(body))


def _ordered(members: List[Interface], facts: Facts) -> List[Interface]:
    """Callbacks before the handlers whose default bodies need them whole."""
    done: List[Interface] = []
    waiting = list(members)
    while waiting:
        names = {w.cxx for w in waiting}
        ready = [w for w in waiting if not (_needed_whole(facts, w) - {w.cxx}) & names]
        if not ready:
            raise ValueError(f"classes need each other whole: {sorted(names)}")
        done += ready
        waiting = [w for w in waiting if w not in ready]
    return done
