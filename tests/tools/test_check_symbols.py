"""What the module may export and need, and a symbol that two objects define."""
import json
import shlex
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
