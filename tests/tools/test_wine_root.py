"""The tables of the library in front of the engine, and the root that it stands in."""
import sys

import pytest
from conftest import ROOT

sys.path.insert(0, str(ROOT / "tests" / "wine"))

import forwarders  # noqa: E402
import stage_wine_root  # noqa: E402

DEFINITION = """;
; Definition file of libcef.dll
LIBRARY "libcef.dll"
EXPORTS
cef_initialize
cef_shutdown
cef_data DATA
"""


def test_every_function_but_the_own_one_is_forwarded():
    names = forwarders.exports_of(DEFINITION)
    assert names == ["cef_initialize", "cef_shutdown", "cef_data"]
    lines = forwarders.export_table(names).splitlines()
    assert lines[2:] == [
        "cef_initialize",
        "cef_shutdown = libcef_engine.cef_shutdown",
        "cef_data = libcef_engine.cef_data",
    ]
    assert "engine_cef_initialize == cef_initialize" in forwarders.import_table().splitlines()


def test_a_definition_without_exports_has_none():
    assert forwarders.exports_of("LIBRARY x\n") == []


def test_the_engine_stands_behind_the_library_and_all_else_in_its_place(tmp_path):
    for name in ("code/bin/libcef.dll", "code/bin/ORBCefWrapperMT.dll", "webapps/a.js"):
        path = tmp_path / "root" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(name)
    (tmp_path / "front.dll").write_text("front")
    stage_wine_root.main(tmp_path / "root", tmp_path / "front.dll", tmp_path / "wine-root")
    root = tmp_path / "wine-root"
    found = {path.relative_to(root).as_posix(): path.read_text()
             for path in root.rglob("*") if path.is_file()}
    assert found == {
        "code/bin/libcef.dll": "front",
        "code/bin/libcef_engine.dll": "code/bin/libcef.dll",
        "code/bin/ORBCefWrapperMT.dll": "code/bin/ORBCefWrapperMT.dll",
        "webapps/a.js": "webapps/a.js",
    }


def test_a_root_without_an_engine_is_refused(tmp_path):
    (tmp_path / "root").mkdir()
    with pytest.raises(SystemExit, match="has no code/bin/libcef.dll"):
        stage_wine_root.main(tmp_path / "root", tmp_path / "front.dll", tmp_path / "wine-root")
