"""Emits the C side of an interface version: enums, records, interface structs, functions and their assertions."""

from typing import List

from .facts import Facts, Interface, ROOTS, Slot

GENERATED = "// Generated from the interface facts. Do not edit.\n"

_STRINGS = """
typedef char16 cef_char_t;
typedef cef_string_wide_t* cef_string_userfree_wide_t;
typedef cef_string_utf8_t* cef_string_userfree_utf8_t;
typedef cef_string_utf16_t* cef_string_userfree_utf16_t;
typedef cef_string_userfree_utf16_t cef_string_userfree_t;
typedef cef_string_utf16_t cef_string_t;
typedef void* cef_string_list_t;
typedef void* cef_string_map_t;
typedef void* cef_string_multimap_t;
"""


def guard(name: str, body: str) -> str:
    macro = "CEF_INCLUDE_" + name.upper().replace("/", "_").replace(".", "_") + "_"
    return f"{GENERATED}#ifndef {macro}\n#define {macro}\n\n{body}\n#endif  // {macro}\n"


def _literal(value: int) -> str:
    return f"{value}u" if value > 0x7FFFFFFF else str(value)


def _enum(name: str, constants) -> str:
    lines = "".join(f"  {constant} = {_literal(value)},\n" for constant, value in constants)
    return f"typedef enum {{\n{lines}}} {name};\n"


def _declare(kind: str, name: str) -> str:
    if "(*)" in kind:
        return kind.replace("(*)", f"(*{name})") + ";"
    return f"{kind} {name};"


def _record_body(record, platform: int) -> str:
    fields = sorted((f for f in record.fields if f.offsets[platform] is not None), key=lambda f: f.offsets[platform])
    return "".join(f"  {_declare(f.type, f.name)}\n" for f in fields)


def _record(record) -> str:
    tag = f"struct _{record.name}"
    linux, windows = _record_body(record, 0), _record_body(record, 1)
    body = linux if linux == windows else f"#if defined(OS_WIN)\n{windows}#else\n{linux}#endif\n"
    return f"typedef {tag} {{\n{body}}} {record.name};\n"


def types_header(facts: Facts) -> str:
    """include/internal/cef_types.h: enums and records."""
    parts = ['#include "include/internal/cef_basic_types.h"\n', '#ifdef __cplusplus\nextern "C" {\n#endif\n']
    parts += [_enum(name, constants) for name, constants in facts.enums.items()]
    strings_done = False
    for record in facts.records:
        if not strings_done and not record.name.startswith("cef_string_"):
            parts.append(_STRINGS.lstrip())
            strings_done = True
        parts.append(_record(record))
    parts.append("#ifdef __cplusplus\n}\n#endif\n")
    return guard("internal/cef_types.h", "\n".join(parts))


def c_signature(slot: Slot, name: str, first: str = "") -> str:
    params = ([first] if first else []) + [f"{a.type} {a.name}" for a in slot.args]
    return f"{slot.result} {name}({', '.join(params) or 'void'})"


def _struct(interface: Interface) -> str:
    base = interface.base if interface.base != "-" else ""
    lines = [f"  {base} base;\n"] if base else ["  size_t size;\n"]
    self_type = f"struct _{interface.struct}* self"
    for slot in interface.slots:
        lines.append(f"  {c_signature(slot, f'(CEF_CALLBACK* {slot.name})', self_type)};\n")
    return f"struct _{interface.struct} {{\n{''.join(lines)}}};\n"


_ROOT_STRUCTS = """
typedef struct _cef_base_ref_counted_t {
  size_t size;
  void(CEF_CALLBACK* add_ref)(struct _cef_base_ref_counted_t* self);
  int(CEF_CALLBACK* release)(struct _cef_base_ref_counted_t* self);
  int(CEF_CALLBACK* has_one_ref)(struct _cef_base_ref_counted_t* self);
  int(CEF_CALLBACK* has_at_least_one_ref)(struct _cef_base_ref_counted_t* self);
} cef_base_ref_counted_t;

typedef struct _cef_base_scoped_t {
  size_t size;
  void(CEF_CALLBACK* del)(struct _cef_base_scoped_t* self);
} cef_base_scoped_t;
"""


def structs_header(facts: Facts) -> str:
    """include/capi/cef_structs.h: the interface structs, bases first."""
    parts = ['#include "include/internal/cef_types.h"\n', '#ifdef __cplusplus\nextern "C" {\n#endif\n',
             _ROOT_STRUCTS.lstrip()]
    parts += [f"typedef struct _{name} {name};" for name in facts.interfaces]
    done = set(ROOTS)
    waiting: List[Interface] = list(facts.interfaces.values())
    while waiting:
        ready = [i for i in waiting if i.base in done]
        if not ready:
            raise ValueError(f"no base known for {[i.struct for i in waiting]}")
        parts += ["\n" + _struct(i) for i in ready]
        waiting = [i for i in waiting if i.base not in done]
        done.update(i.struct for i in ready)
    parts.append("\n#ifdef __cplusplus\n}\n#endif\n")
    return guard("capi/cef_structs.h", "\n".join(parts))


def on_platform(slot: Slot, text: str) -> str:
    if slot.platforms == "both":
        return text
    macro = "OS_WIN" if slot.platforms == "windows" else "OS_LINUX"
    return f"#if defined({macro})\n{text}#endif\n"


def functions_header(facts: Facts) -> str:
    """include/capi/cef_functions.h: what the library exports."""
    lines = [on_platform(f, c_signature(f, f.name) + ";\n") for f in facts.functions]
    body = ('#include "include/capi/cef_structs.h"\n\n#ifdef __cplusplus\nextern "C" {\n#endif\n\n'
            + "".join(lines) + "\n#ifdef __cplusplus\n}\n#endif\n")
    return guard("capi/cef_functions.h", body)


def layout_assertions(facts: Facts) -> str:
    """A C source that does not compile if any size or offset differs from the facts."""
    lines = [GENERATED, '#include <assert.h>\n#include <stddef.h>\n\n#include "include/capi/cef_structs.h"\n\n']
    for platform, macro in ((1, "defined(OS_WIN)"), (0, "defined(OS_LINUX)")):
        lines.append(f"#if {macro}\n")
        for record in facts.records:
            lines.append(_assert_size(record.name, record.sizes[platform]))
            for item in record.fields:
                if item.offsets[platform] is not None:
                    lines.append(_assert_offset(record.name, item.name, item.offsets[platform]))
        lines.append("#endif\n")
    lines += [_assert_size(name, 4) for name in facts.enums]
    lines += [_assert_size("cef_base_ref_counted_t", 40), _assert_size("cef_base_scoped_t", 16)]
    for interface in facts.interfaces.values():
        lines.append(_assert_size(interface.struct, interface.size))
        lines += [_assert_offset(interface.struct, s.name, s.offset) for s in interface.slots]
    lines.append("\n// The tables above are checked by the compiler alone; a linker wants one symbol.\n"
                 "extern const int cef_layout_is_asserted;\nconst int cef_layout_is_asserted = 1;\n")
    return "".join(lines)


def _assert_size(name: str, size: int) -> str:
    return f'static_assert(sizeof({name}) == {size}, "size of {name}");\n'


def _assert_offset(struct: str, name: str, offset: int) -> str:
    return f'static_assert(offsetof({struct}, {name}) == {offset}, "offset of {struct}.{name}");\n'


def version_header(facts: Facts) -> str:
    """include/cef_version.h, with the fingerprints of the interface."""
    v = facts.version
    numbers = v["version_info_0_to_7"].split(",")
    names = ["CEF_VERSION_MAJOR", "CEF_VERSION_MINOR", "CEF_VERSION_PATCH", "CEF_COMMIT_NUMBER",
             "CHROME_VERSION_MAJOR", "CHROME_VERSION_MINOR", "CHROME_VERSION_BUILD", "CHROME_VERSION_PATCH"]
    full = f"{v['cef_version']}+{v['commit']}+chromium-{v['chromium_version']}"
    lines = [f'#define CEF_VERSION "{full}"\n'] + [f"#define {n} {x}\n" for n, x in zip(names, numbers)]
    lines.append(f'\n#define CEF_API_HASH_UNIVERSAL "{v["api_hash_universal"]}"\n#if defined(OS_WIN)\n'
                 f'#define CEF_API_HASH_PLATFORM "{v["api_hash_windows"]}"\n#else\n'
                 f'#define CEF_API_HASH_PLATFORM "{v["api_hash_linux"]}"\n#endif\n')
    return guard("cef_version.h", '#include "include/base/cef_build.h"\n\n' + "".join(lines))
