"""The Python for Windows: taken from its archive complete or not at all."""
import zipfile

import fetch_python
import pytest
from artifacts import Artifact
from errors import FetchError


def pack(path, names):
    with zipfile.ZipFile(path, "w") as packed:
        for name in names:
            packed.writestr(name, "content")
    return path


def inside(*names):
    return [fetch_python.INSIDE + name for name in names]


@pytest.fixture
def build(tmp_path, monkeypatch):
    """A build folder, and in place of Maven an archive that can be changed."""
    archive = pack(tmp_path / "a.jar", inside(*fetch_python.REQUIRED))
    monkeypatch.setattr(fetch_python.maven, "fetch", lambda *_: archive)
    return tmp_path / "build"


ARTIFACT = Artifact(group="g", name="n", version="1", size=1, sha256="abc", classifier="windows")


def test_what_is_needed_is_taken_and_the_rest_left(tmp_path):
    names = (*fetch_python.REQUIRED, "lib/test/test_os.py", "lib/json/decoder.py")
    archive = pack(tmp_path / "a.jar", [*inside(*names), "META-INF/MANIFEST.MF"])
    fetch_python.unpack(archive, tmp_path / "python")
    found = {path.relative_to(tmp_path / "python").as_posix()
             for path in (tmp_path / "python").rglob("*") if path.is_file()}
    assert found == {*fetch_python.REQUIRED, "lib/json/decoder.py"}


def test_an_archive_without_a_part_that_is_needed_is_refused(tmp_path):
    archive = pack(tmp_path / "a.jar", inside("python.exe"))
    with pytest.raises(FetchError, match="lacks: python311.dll"):
        fetch_python.unpack(archive, tmp_path / "python")


def test_it_is_laid_out_once_for_each_archive(build, monkeypatch):
    folder = fetch_python.provide(build, artifact=ARTIFACT)
    assert (folder / "python.exe").is_file()
    monkeypatch.setattr(fetch_python.maven, "fetch", lambda *_: pytest.fail("fetched again"))
    assert fetch_python.provide(build, artifact=ARTIFACT) == folder


def test_a_broken_archive_leaves_what_was_there(build, monkeypatch, tmp_path):
    folder = fetch_python.provide(build, artifact=ARTIFACT)
    archive = pack(tmp_path / "b.jar", inside("python.exe"))
    monkeypatch.setattr(fetch_python.maven, "fetch", lambda *_: archive)
    newer = Artifact(group="g", name="n", version="2", size=1, sha256="def", classifier="windows")
    with pytest.raises(FetchError):
        fetch_python.provide(build, artifact=newer)
    assert (folder / "python311.dll").is_file()


def test_the_classifier_is_part_of_the_coordinates_and_the_name():
    assert ARTIFACT.coordinates == "g:n:1:jar:windows"
    assert ARTIFACT.file_name == "n-1-windows.jar"
