"""What the module may export and need, and a symbol that two objects define."""
import json
import shlex
import shutil
import subprocess

import check_symbols
import pytest

GOOD = [
    "orbcef_pluginfactory",
    "MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT",
    "ORBCefPlugin_Tools::SetORBCefTools(_orbceftools_c*)",
    "ORBCefToolsAccessor::OnMainThread()",
]


def test_the_whole_interface_is_accepted():
    assert check_symbols.export_problems(GOOD) == []


@pytest.mark.parametrize("missing", range(len(GOOD)))
def test_each_missing_export_is_found(missing):
    found = check_symbols.export_problems(GOOD[:missing] + GOOD[missing + 1 :])
    assert len(found) == 1
    assert found[0].startswith("does not export ")


@pytest.mark.parametrize("name", ["cef_initialize", "ORBCefLog::Info()", "orbcef_pluginfactory2"])
def test_an_export_too_many_is_found(name):
    assert check_symbols.export_problems([*GOOD, name]) == [f"exports {name}"]


def needed(*names):
    return "".join(f" 0x01 (NEEDED)   Shared library: [{name}]\n" for name in names)


def test_system_libraries_are_accepted():
    section = needed("libc.so.6", "libstdc++.so.6", "libxcb.so.1", "libxcb-xtest.so.0")
    assert check_symbols.library_problems(section) == []


@pytest.mark.parametrize("name", ["libcef.so", "libsqlite3.so.0", "libcurl.so.4", "libcrypt.so.1"])
def test_other_libraries_are_found(name):
    assert check_symbols.library_problems(needed("libc.so.6", name)) == [f"is linked with {name}"]


def test_an_unreadable_section_is_a_problem():
    assert len(check_symbols.library_problems("nothing")) == 1


HEADERS = """
The Import Tables (interpreted .idata section contents)
 001c6000\t001c6078 00000000 00000000 001c6b60 001c6298

\tDLL Name: KERNEL32.dll
\tvma:  Hint/Ord Member-Name Bound-To
\t1c64b8\t  279  CloseHandle

\tDLL Name: msvcrt.dll
\tvma:  Hint/Ord Member-Name Bound-To
\t1c6b00\t  1  free

Export Address Table -- Ordinal Base 1
\t[   0] +base[   1] 14cd0 Export RVA

[Ordinal/Name Pointer] Table
\t[   0] _ZN19ORBCefToolsAccessor12OnMainThreadEv
\t[   1] orbcef_pluginfactory

The Function Table (interpreted .pdata section contents)
\t[   2] no_export
"""


def test_the_exports_of_a_dll_are_read():
    names = ["_ZN19ORBCefToolsAccessor12OnMainThreadEv", "orbcef_pluginfactory"]
    assert check_symbols.windows_exports(HEADERS) == names
    # Newer binutils tell the ordinal and the hint as well.
    newer = HEADERS.replace("Table\n\t[   0] _", "Table -- Ordinal Base 1\n\t[   0] +base[   1]  0000 _")
    assert check_symbols.windows_exports(newer) == names
    assert check_symbols.windows_exports("nothing") == []


def test_the_libraries_of_a_dll():
    assert check_symbols.windows_library_problems(HEADERS) == []
    other = HEADERS.replace("msvcrt.dll", "libwinpthread-1.dll")
    found = check_symbols.windows_library_problems(other)
    assert found == ["is linked with libwinpthread-1.dll"]
    assert len(check_symbols.windows_library_problems("nothing")) == 1


CROSS_COMPILER = shutil.which("x86_64-w64-mingw32-gcc-posix")
needs_cross_compiler = pytest.mark.skipif(
    not CROSS_COMPILER, reason="there is no compiler for Windows"
)


@needs_cross_compiler
def test_a_dll_is_checked_by_its_exports_and_libraries(tmp_path):
    source = tmp_path / "module.c"
    source.write_text(
        "__declspec(dllexport) int orbcef_pluginfactory(void) { return 1; }\n"
        "__declspec(dllexport) int extra(void) { return 1; }\n"
        "int inside(void) { return 1; }\n"
    )
    module = tmp_path / check_symbols.WINDOWS_MODULE
    module.parent.mkdir(parents=True)
    subprocess.run([CROSS_COMPILER, "-shared", source, "-o", module], check=True)
    assert check_symbols.module_problems(tmp_path) == [
        "ORBCefWrapperMT.dll does not export MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT",
        "ORBCefWrapperMT.dll does not export anything of ORBCefPlugin_Tools::SetORBCefTools",
        "ORBCefWrapperMT.dll does not export anything of ORBCefToolsAccessor",
        "ORBCefWrapperMT.dll exports extra",
    ]


@needs_cross_compiler
def test_inline_functions_of_windows_objects_are_no_duplicates(tmp_path):
    objects = []
    for name in ("one", "two"):
        source = tmp_path / f"{name}.cpp"
        source.write_text(
            "inline int Inline() { return 1; }\n"
            f"int {name}() {{ return Inline(); }}\n"
            "int Twice() { return 1; }\n"
        )
        objects.append(tmp_path / "CMakeFiles" / f"{name}.obj")
        objects[-1].parent.mkdir(exist_ok=True)
        compiler = CROSS_COMPILER.replace("gcc-posix", "g++-posix")
        subprocess.run([compiler, "-c", source, "-o", objects[-1]], check=True)
    assert check_symbols.duplicate_problems(check_symbols.symbols_of(objects)) == [
        "_Z5Twicev is defined in one.obj, two.obj"
    ]


def test_duplicates():
    symbols = [
        ("a.a/one.o", "T", "twice"),
        ("a.a/two.o", "T", "twice"),
        ("a.a/one.o", "W", "inline"),
        ("a.a/two.o", "W", "inline"),
        ("a.a/one.o", "t", "local"),
        ("a.a/two.o", "t", "local"),
        ("a.a/one.o", "T", "once"),
    ]
    assert check_symbols.duplicate_problems(symbols) == [
        "twice is defined in a.a/one.o, a.a/two.o"
    ]


def test_symbols_are_read_from_the_objects_of_the_present_build(tmp_path):
    entries = []
    for target, name in (("module", "one"), ("engine", "two"), ("other", "three")):
        source = tmp_path / f"{name}.c"
        source.write_text("int twice(void) { return 1; }\n")
        command = f"cc -c {source} -o x/CMakeFiles/{target}.dir/same.o"
        (tmp_path / f"x/CMakeFiles/{target}.dir").mkdir(parents=True)
        subprocess.run(shlex.split(command), cwd=tmp_path, check=True)
        entries.append({"directory": str(tmp_path), "command": command})
    (tmp_path / "x/CMakeFiles/module.dir/old.o").write_text("left behind by a source that is gone")
    (tmp_path / "compile_commands.json").write_text(json.dumps(entries))
    objects = check_symbols.objects_of(tmp_path, ("module", "engine"))
    assert check_symbols.duplicate_problems(check_symbols.symbols_of(objects)) == [
        "twice is defined in engine.dir/same.o, module.dir/same.o"
    ]


def test_a_tree_without_a_build_fails(tmp_path, capsys):
    assert check_symbols.main(["--build", str(tmp_path)]) == 1
    assert "cannot be checked" in capsys.readouterr().err
    (tmp_path / "compile_commands.json").write_text("[]")
    assert check_symbols.main(["--build", str(tmp_path)]) == 1
    assert "no objects of orbcef_module_108" in capsys.readouterr().err
