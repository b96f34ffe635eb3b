"""Emits the glue between C++ classes and C structs, in both directions.

`Foreign` classes show a struct of the other side as a C++ object; `Exported` structs show a C++ object of ours to the
other side. The hand-written part, with the holders named here, is glue.h.
"""

from typing import List, Tuple

from .emit_c import GENERATED, c_signature, on_platform
from .emit_cxx import cxx_params, default_body
from .facts import Facts, Interface, Slot
from .types import Crossing, Crossings

_LISTS = {"list": "StringList", "map": "StringMap", "multimap": "StringMultimap"}


def short(interface: Interface) -> str:
    return interface.struct[len("cef_"):-len("_t")]


class GlueEmitter:
    def __init__(self, facts: Facts):
        self._facts = facts
        self._crossings = Crossings(facts)
        self._classes = facts.by_class()

    # --- C++ calls C -------------------------------------------------------------------------------------------

    def _to_c(self, x: Crossing) -> Tuple[List[str], List[str]]:
        """(declarations before the call, C arguments)."""
        name, holder = x.cxx.name, f"{x.cxx.name}_holder"
        if x.kind == "string":
            return [], [f"{name}.GetWritableStruct()" if x.writable else f"{name}.GetStruct()"]
        if x.kind == "bool":
            if not x.writable:
                return [], [f"{name} ? 1 : 0"]
            return [f"BoolToC {holder}({name if x.pointer else '&' + name});"], [f"{holder}.get()"]
        if x.kind == "object":
            if not x.writable:
                return [], [f"ToC({name})"]
            struct = self._classes[x.element].struct
            return [f"ObjectToC<{x.element}, {struct}> {holder}({name});"], [f"{holder}.get()"]
        if x.kind == "scoped":
            struct = self._classes[x.element].struct
            return [f"ScopedExport<{x.element}, {struct}> {holder}({name});"], [f"{holder}.get()"]
        if x.kind in _LISTS:
            const = "" if x.writable else "const "
            return [f"{_LISTS[x.kind]}ToC<{const}{x.element}> {holder}({name});"], [f"{holder}.get()"]
        if x.kind == "record":
            return [], [f"&{name}"]
        if x.kind == "objects":
            struct = self._classes[x.element].struct
            if not x.writable:
                return ([f"ObjectListToC<{x.element}, {struct}> {holder}({name});"],
                        [f"{holder}.size()", f"{holder}.data()"])
            return ([f"ObjectListFromC<{x.element}, {struct}> {holder}({name}, {x.count}());"],
                    [f"{holder}.size()", f"{holder}.data()"])
        if x.kind == "values":
            if not x.writable:
                return [], [f"{name}.size()", f"{name}.data()"]
            return [f"ValueListFromC {holder}({name}, {x.count}());"], [f"{holder}.size()", f"{name}.data()"]
        return [], [f"&{name}" if x.writable else name]

    def _call_c(self, slot: Slot, owner: str, function: str, first: List[str]) -> List[str]:
        """Statements that call a C function and return its result as C++ has it."""
        lines, args = [], list(first)
        for crossing in self._crossings.params(slot, owner):
            declarations, values = self._to_c(crossing)
            lines += declarations
            args += values
        call = f"{function}({', '.join(args)})"
        kind, cls = self._crossings.result(slot, owner)
        if kind == "void":
            return lines + [f"{call};"]
        if kind == "bool":
            return lines + [f"return {call} != 0;"]
        if kind == "string":
            return lines + ["CefString returned;", f"returned.AttachToUserFree({call});", "return returned;"]
        if kind == "object":
            return lines + [f"return FromC({call});"]
        return lines + [f"return {call};"]

    def _missing(self, slot: Slot) -> str:
        if default_body(slot):
            return default_body(slot)
        if slot.cxx_result == "void":
            return "return;"
        return f"return {slot.attributes.get('default_retval', '{}')};"

    def _foreign_method(self, interface: Interface, struct: str, slot: Slot) -> str:
        const = " const" if slot.is_const else ""
        lines = [f"  {slot.cxx_result} {slot.method}({cxx_params(slot)}){const} override {{",
                 f"    auto* const s = Struct<{struct}>();",
                 f"    if (!Has(s, s->{slot.name})) {{", f"      {self._missing(slot)}", "    }"]
        lines += ["    " + line for line in self._call_c(slot, interface.cxx, f"s->{slot.name}", ["s"])]
        return "\n".join(lines + ["  }\n"])

    def foreign(self, interface: Interface) -> str:
        template = "ForeignScoped" if interface.is_scoped else "Foreign"
        name = f"{interface.cxx}Foreign"
        methods = "".join(self._foreign_method(level, level.struct, slot)
                          for level in self._facts.chain(interface) for slot in level.slots)
        return (f"class {name} final : public {template}<{interface.cxx}, {interface.struct}> {{\n public:\n"
                f"  using {template}::{template};\n{methods}}};\n\n")

    # --- C calls C++ -------------------------------------------------------------------------------------------

    def _from_c(self, x: Crossing) -> Tuple[List[str], str]:
        """(declarations before the call, C++ argument)."""
        names, holder = [c.name for c in x.c], f"{x.cxx.name}_holder"
        name = names[0]
        if x.kind == "string":
            return ([f"CefString {holder}({name});"], holder) if x.writable else ([], f"CefString({name})")
        if x.kind == "bool":
            if not x.writable:
                return [], f"{name} != 0"
            return [f"BoolFromC {holder}({name});"], f"{holder}.{'pointer' if x.pointer else 'get'}()"
        if x.kind == "object":
            if not x.writable:
                return [], f"FromC({name})"
            struct = self._classes[x.element].struct
            return [f"ObjectFromC<{x.element}, {struct}> {holder}({name});"], f"{holder}.get()"
        if x.kind == "scoped":
            return [f"{x.element}Foreign {holder}({name});"], f"&{holder}"
        if x.kind in _LISTS:
            const = "" if x.writable else "const "
            return [f"{_LISTS[x.kind]}FromC<{const}{x.element}> {holder}({name});"], f"{holder}.get()"
        if x.kind == "record":
            record = self._crossings.record_of(x.element).name
            template = ("Record" if x.strings else "Plain") + ("InOut" if x.writable else "In")
            return [f"{template}<{x.element}, {record}> {holder}({name});"], f"{holder}.get()"
        if x.kind == "objects":
            struct = self._classes[x.element].struct
            template = "ObjectListInOut" if x.writable else "ObjectListIn"
            return [f"{template}<{x.element}, {struct}> {holder}({', '.join(names)});"], f"{holder}.get()"
        if x.kind == "values":
            template = "ValueListInOut" if x.writable else "ValueListIn"
            return [f"{template}<{x.element}> {holder}({', '.join(names)});"], f"{holder}.get()"
        if x.writable:
            return [f"ValueInOut {holder}({name});"], f"{holder}.get()"
        return [], name

    def _exported_function(self, interface: Interface, level: Interface, slot: Slot) -> str:
        function = f"{short(interface)}_{slot.name}"
        lines, args = [], []
        for crossing in self._crossings.params(slot, level.cxx):
            declarations, value = self._from_c(crossing)
            lines += declarations
            args.append(value)
        call = f"Object<{interface.cxx}, {interface.struct}>(self)->{slot.method}({', '.join(args)})"
        kind, _ = self._crossings.result(slot, level.cxx)
        result = {"void": f"{call};", "bool": f"return {call} ? 1 : 0;", "string": f"return {call}.DetachToUserFree();",
                  "object": f"return ToC({call});"}.get(kind, f"return {call};")
        head = c_signature(slot, f"CEF_CALLBACK {function}", f"{level.struct}* self")
        return f"{head} noexcept {{\n" + "".join(f"  {line}\n" for line in lines + [result]) + "}\n\n"

    def exported(self, interface: Interface) -> str:
        functions, fill = [], []
        for level in self._facts.chain(interface):
            fill.append(f"  auto* const {short(level)} = reinterpret_cast<{level.struct}*>(s);\n")
            for slot in level.slots:
                functions.append(self._exported_function(interface, level, slot))
                fill.append(f"  {short(level)}->{slot.name} = &{short(interface)}_{slot.name};\n")
            if not level.slots:
                fill.pop()
        return ("".join(functions)
                + f"void Fill([[maybe_unused]] {interface.struct}* s) {{\n{''.join(fill)}}}\n\n")

    # --- files -------------------------------------------------------------------------------------------------

    def conversions_header(self) -> str:
        includes = sorted({i.header for i in self._facts.interfaces.values()})
        counted = [i for i in self._facts.interfaces.values() if not i.is_scoped]
        lines = [GENERATED, "#pragma once\n\n"]
        lines += [f'#include "include/{name}"\n' for name in includes]
        lines.append('#include "include/capi/cef_functions.h"\n\nnamespace engine_glue {\n\n')
        lines += ["cef_base_ref_counted_t* ToC(const CefRefPtr<CefBaseRefCounted>& object);\n",
                  "CefRefPtr<CefBaseRefCounted> FromC(cef_base_ref_counted_t* structure);\n",
                  "void Fill(cef_base_ref_counted_t* s);\n"]
        for i in counted:
            lines += [f"{i.struct}* ToC(const CefRefPtr<{i.cxx}>& object);\n",
                      f"CefRefPtr<{i.cxx}> FromC({i.struct}* structure);\n"]
        for i in self._facts.interfaces.values():
            lines.append(f"void Fill({i.struct}* s);\n")
        lines.append("\n}  // namespace engine_glue\n")
        return "".join(lines)

    def scoped_header(self) -> str:
        """Scoped classes are made on the stack by whoever receives one, so they stand in a header."""
        body = "".join(self.foreign(i) for i in self._facts.interfaces.values() if i.is_scoped)
        return (f'{GENERATED}#pragma once\n\n#include "glue/glue.h"\n\nnamespace engine_glue {{\n\n{body}'
                "}  // namespace engine_glue\n")

    def glue_source(self, interfaces: List[Interface]) -> str:
        parts = [GENERATED, '#include "glue_scoped.h"\n\nnamespace engine_glue {\n\n']
        for interface in interfaces:
            parts.append(f"namespace {{\n\n{'' if interface.is_scoped else self.foreign(interface)}}}  // namespace\n\n")
            parts.append(self.exported(interface))
            if not interface.is_scoped:
                parts.append(
                    f"{interface.struct}* ToC(const CefRefPtr<{interface.cxx}>& object) {{\n"
                    f"  return Export<{interface.cxx}Foreign, {interface.cxx}, {interface.struct}>(object);\n}}\n\n"
                    f"CefRefPtr<{interface.cxx}> FromC({interface.struct}* structure) {{\n"
                    f"  return Import<{interface.cxx}Foreign, {interface.cxx}, {interface.struct}>(structure);\n}}\n\n")
        return "".join(parts) + "}  // namespace engine_glue\n"

    def _cxx_function(self, function: Slot, owner: str) -> str:
        result = self._crossings.qualified(function.cxx_result, owner)
        prefix = f"{owner}::" if owner else ""
        body = self._call_c(function, owner, function.name, [])
        text = (f"{result} {prefix}{function.method}({cxx_params(function)}) {{\n"
                + "".join(f"  {line}\n" for line in body) + "}\n\n")
        return on_platform(function, text)

    def functions_source(self) -> str:
        """Static methods and free functions of the C++ interface."""
        headers = sorted({f.header for f in self._facts.functions if f.method and not f.is_static})
        parts = [GENERATED, '#include "glue_scoped.h"\n']
        parts += [f'#include "include/{h[len("capi/"):-len("_capi.h")]}.h"\n' for h in headers]
        parts.append("\nusing namespace engine_glue;\n\n")
        for interface in self._facts.interfaces.values():
            parts += [self._cxx_function(f, interface.cxx) for f in interface.statics]
        parts += [self._cxx_function(f, "") for f in self._facts.functions if f.method and not f.is_static]
        return "".join(parts)

    def library_source(self) -> str:
        """Every exported function under its own name, forwarding to the loaded library or answering zero."""
        parts = [GENERATED, '#include "engine_library.h"\n\n#include "include/capi/cef_functions.h"\n\n'
                 "namespace engine_library {\n\nconst char* const kFunctionNames[] = {\n"]
        own = [f for f in self._facts.functions if f.name not in ("cef_api_hash", "cef_log")]
        parts += [on_platform(f, f'    "{f.name}",\n') for f in own]
        parts.append("    nullptr,\n};\n\nnamespace {\n\nenum FunctionIndex : int {\n")
        parts += [on_platform(f, f"  k_{f.name},\n") for f in own]
        parts.append("  kFunctionCount\n};\n\n}  // namespace\n\nconst int kCount = kFunctionCount;\n\n"
                     "}  // namespace engine_library\n\nusing namespace engine_library;\n\n")
        for f in own:
            names = ", ".join(a.name for a in f.args)
            missing = "return;" if f.result == "void" else "return {};"
            call = f"function({names});"
            parts.append(on_platform(f, (
                f'extern "C" {c_signature(f, f.name)} {{\n'
                f"  const auto function = Function<decltype(&{f.name})>(k_{f.name});\n"
                f"  if (!function) {{\n    {missing}\n  }}\n"
                f"  {call if f.result == 'void' else 'return ' + call}\n}}\n\n")))
        return "".join(parts)
