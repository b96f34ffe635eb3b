"""The generator against small golden files, and against all facts of both interface versions."""

import csv
import re
import sys
from pathlib import Path

import pytest

GENERATOR = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(GENERATOR))

from engine_generator import emit_c, emit_cxx, facts as facts_module  # noqa: E402
from engine_generator.__main__ import files, main  # noqa: E402
from engine_generator.emit_glue import GlueEmitter, short  # noqa: E402
from engine_generator.types import Crossings  # noqa: E402

DATA = Path(__file__).resolve().parent / "data"
INTERFACE = GENERATOR.parent / "interface"
ABIS = ("104", "108")


@pytest.fixture(scope="module", params=ABIS)
def facts(request):
    return facts_module.load(INTERFACE, request.param)


def golden_files():
    folder = DATA / "golden"
    return {str(p.relative_to(folder)): p.read_text() for p in sorted(folder.rglob("*")) if p.is_file()}


@pytest.mark.parametrize("name", sorted(golden_files()))
def test_small_facts_give_the_golden_files(name):
    assert files(facts_module.load(DATA / "facts", "108"))[name] == golden_files()[name]


def test_no_other_file_with_content_comes_from_the_small_facts():
    generated = files(facts_module.load(DATA / "facts", "108"))
    extra = {name for name in generated if name not in golden_files()}
    assert extra == {"src/glue_3.cpp", "src/glue_4.cpp", "src/glue_5.cpp"}
    assert all(len(generated[name].splitlines()) < 8 for name in extra)


def test_every_slot_of_a_covered_interface_is_declared_asserted_and_filled(facts):
    structs, assertions = emit_c.structs_header(facts), emit_c.layout_assertions(facts)
    glue = GlueEmitter(facts)
    for interface in facts.interfaces.values():
        exported = glue.exported(interface)
        for slot in interface.slots:
            assert f"(CEF_CALLBACK* {slot.name})" in structs
            assert f"offsetof({interface.struct}, {slot.name}) == {slot.offset}" in assertions
            assert f"->{slot.name} = &{short(interface)}_{slot.name};" in exported


def test_a_derived_interface_fills_and_calls_the_slots_of_its_base():
    facts = facts_module.load(INTERFACE, "108")
    context = facts.interfaces["cef_request_context_t"]
    glue = GlueEmitter(facts)
    assert "preference_manager->has_preference = &request_context_has_preference;" in glue.exported(context)
    assert "bool HasPreference(const CefString& name) override" in glue.foreign(context)


def test_only_the_widgets_and_the_test_helpers_are_left_out(facts):
    with (INTERFACE / facts.abi / "interfaces.tsv").open(newline="") as file:
        rows = csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE)
        all_structs = {r["struct"] for r in rows}
    left_out = all_structs - set(facts.interfaces) - set(facts_module.ROOTS)
    assert {"cef_view_t", "cef_window_t", "cef_translator_test_t"} <= left_out
    assert not [name for name in left_out if re.search(r"browser_t|frame|v8|request|cookie|stream|handler_t$", name)
                and "test" not in name]


def test_every_parameter_of_every_slot_knows_how_it_crosses(facts):
    crossings = Crossings(facts)
    for interface in facts.interfaces.values():
        for slot in interface.slots + interface.statics:
            assert sum(len(c.c) for c in crossings.params(slot, interface.cxx)) == len(slot.args)


def test_every_class_stands_in_one_header(facts):
    headers = emit_cxx.headers(facts)
    for interface in facts.interfaces.values():
        defining = [n for n, text in headers.items() if f"\nclass {interface.cxx} : " in text]
        assert defining == [interface.header]


def test_a_missing_slot_gives_the_default_of_the_class():
    facts = facts_module.load(INTERFACE, "108")
    foreign = GlueEmitter(facts).foreign(facts.interfaces["cef_resource_handler_t"])
    assert "bytes_skipped = -2; return false;" in foreign


def test_an_unchanged_file_is_not_written_again(tmp_path, monkeypatch):
    arguments = ["x", "--facts", str(DATA / "facts"), "--abi", "108", "--out", str(tmp_path)]
    monkeypatch.setattr(sys, "argv", arguments)
    main()
    path = tmp_path / "src" / "library.cpp"
    before = path.stat().st_mtime_ns
    (tmp_path / "src" / "functions.cpp").write_text("changed")
    main()
    assert path.stat().st_mtime_ns == before
    assert (tmp_path / "src" / "functions.cpp").read_text() != "changed"


@pytest.mark.parametrize("text", ["", "int", "const char*"])
def test_a_parameter_without_a_name_is_an_error(text):
    with pytest.raises(ValueError):
        facts_module.parse_param(text)


def test_a_class_without_a_header_line_is_an_error(tmp_path):
    for path in (DATA / "facts").rglob("*.tsv"):
        target = tmp_path / path.relative_to(DATA / "facts")
        target.parent.mkdir(exist_ok=True)
        target.write_text(path.read_text())
    lines = (tmp_path / "headers.tsv").read_text().splitlines()
    (tmp_path / "headers.tsv").write_text("\n".join(line for line in lines if "CefListValue" not in line) + "\n")
    with pytest.raises(ValueError, match="headers.tsv has no line for CefListValue"):
        facts_module.load(tmp_path, "108")


def test_the_count_and_the_data_of_a_vector_belong_to_one_parameter():
    facts = facts_module.load(INTERFACE, "108")
    execute = next(s for s in facts.interfaces["cef_v8handler_t"].slots if s.name == "execute")
    kinds = [c.kind for c in Crossings(facts).params(execute, "CefV8Handler")]
    assert kinds == ["string", "object", "objects", "object", "string"]
