"""Emits the library's classes with a neutral answer for every pure method, for engines that are made by hand."""

from .emit_c import GENERATED
from .emit_cxx import cxx_params
from .facts import Facts, Interface, Slot


def neutral_name(interface: Interface) -> str:
    return "Neutral" + interface.cxx[len("Cef"):]


def _method(slot: Slot) -> str:
    const = " const" if slot.is_const else ""
    body = "{}" if slot.cxx_result == "void" else "{ return {}; }"
    return f"  {slot.cxx_result} {slot.method}({cxx_params(slot)}){const} override {body}\n"


def _class(facts: Facts, interface: Interface) -> str:
    methods = "".join(_method(slot) for level in facts.chain(interface) for slot in level.slots
                      if slot.default == "pure")
    return f"class {neutral_name(interface)} : public {interface.cxx} {{\n public:\n{methods}}};\n"


def neutral_classes(facts: Facts) -> str:
    """A header of the counted classes that the library implements: void methods do nothing, others answer zero."""
    interfaces = [i for i in facts.interfaces.values() if i.side == "library" and not i.is_scoped]
    # What the answers and arguments are counted by must be complete.
    headers = sorted({i.header for i in facts.interfaces.values()})
    includes = "".join(f'#include "include/{name}"\n' for name in headers)
    body = "\n".join(_class(facts, i) for i in interfaces)
    return (f"{GENERATED}#pragma once\n\n{includes}\nnamespace engine_neutral {{\n\n{body}\n"
            "}  // namespace engine_neutral\n")
