"""The installation root as an image of what was built."""
import os

import pytest
import stage
from artifacts import TARGETS

TARGET = TARGETS["linux-x64"]


@pytest.fixture
def inputs(tree):
    for name in TARGET.required:
        tree.write(f"engine/{name}", f"content of {name}")
    tree.write("engine/libjcef.so", "not the engine's")
    tree.write("trees/webapps/A/a.js", "1")
    tree.write("trees/webapps/A/b.js", "2")
    tree.write("trees/resources/R/r.xml", "<r/>")
    tree.write("out/libModule.so", "module")
    return tree


def run(tree, *more):
    return stage.main(
        [
            *("--root", str(tree.root / "root"), "--target", "linux-x64"),
            *("--trees", str(tree.root / "trees"), "--engine", str(tree.root / "engine")),
            *("--binary", str(tree.root / "out/libModule.so"), *more),
        ]
    )


def listing(tree):
    root = tree.root / "root"
    return {p.relative_to(root).as_posix(): p for p in root.glob("**/*") if p.is_file()}


def test_everything_stands_in_its_place(inputs):
    assert run(inputs) == 0
    assert set(listing(inputs)) == {
        "code/bin/libModule.so",
        *(f"code/bin/{name}" for name in TARGET.required),
        *("webapps/A/a.js", "webapps/A/b.js", "resources/R/r.xml"),
    }


def test_the_engine_is_linked_and_the_scripts_are_copied(inputs):
    run(inputs)
    staged = listing(inputs)
    assert os.path.samefile(staged["code/bin/libcef.so"], inputs.root / "engine/libcef.so")
    assert not os.path.samefile(staged["webapps/A/a.js"], inputs.root / "trees/webapps/A/a.js")


def test_the_engine_is_copied_where_links_are_not_possible(inputs, monkeypatch):
    def refuse(*_):
        raise OSError("crosses devices")

    monkeypatch.setattr(os, "link", refuse)
    assert run(inputs) == 0
    staged = listing(inputs)["code/bin/libcef.so"]
    assert not os.path.samefile(staged, inputs.root / "engine/libcef.so")
    assert staged.read_text() == "content of libcef.so"


def test_a_second_run_touches_nothing(inputs):
    run(inputs)
    before = {name: path.stat() for name, path in listing(inputs).items()}
    run(inputs)
    after = {name: path.stat() for name, path in listing(inputs).items()}
    assert {n: (s.st_ino, s.st_ctime_ns) for n, s in before.items()} == {
        n: (s.st_ino, s.st_ctime_ns) for n, s in after.items()
    }


def test_edits_arrive_and_deleted_files_vanish(inputs):
    run(inputs)
    inputs.write("trees/webapps/A/a.js", "edited")
    (inputs.root / "trees/webapps/A/b.js").unlink()
    (inputs.root / "trees/resources/R/r.xml").unlink()
    run(inputs)
    staged = listing(inputs)
    assert staged["webapps/A/a.js"].read_text() == "edited"
    assert "webapps/A/b.js" not in staged
    assert not (inputs.root / "root/resources/R").exists()


def test_a_file_edited_in_the_root_is_set_right(inputs):
    run(inputs)
    inputs.write("root/webapps/A/a.js", "changed here by mistake")
    run(inputs)
    assert listing(inputs)["webapps/A/a.js"].read_text() == "1"


def test_a_rebuilt_binary_is_a_new_file(inputs):
    run(inputs)
    running = listing(inputs)["code/bin/libModule.so"].open()
    inputs.write("out/libModule.so", "module, built again")
    run(inputs)
    assert listing(inputs)["code/bin/libModule.so"].read_text() == "module, built again"
    assert running.read() == "module"


def test_a_binary_that_the_linker_wrote_into_the_root_stays(inputs):
    helper = inputs.write("root/code/bin/helper", "helper")
    before = helper.stat()
    assert run(inputs, "--binary", str(helper)) == 0
    assert (helper.stat().st_ino, helper.stat().st_ctime_ns) == (before.st_ino, before.st_ctime_ns)


def test_sdk_layout(inputs):
    sdk = inputs.root / "sdk"
    for name in TARGET.required:
        folder = "Release" if name.endswith((".so", ".bin")) else "Resources"
        inputs.write(f"sdk/{folder}/{name}", name)
    assert run(inputs, "--engine", str(sdk)) == 0
    assert "code/bin/locales/en-US.pak" in listing(inputs)


def test_without_an_engine_it_says_what_to_do(inputs, capsys):
    assert run(inputs, "--engine", str(inputs.root / "nowhere")) == 1
    assert "./dev setup" in capsys.readouterr().err
