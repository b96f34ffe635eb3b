"""Names of files as users have them: other alphabets, long paths and, on Windows, drives and backslashes."""

import os
import shutil
import sys

import pytest
from harness import Host, mirror
from orbcef import AddressChanged, TitleChanged
from test_local_resources import fetch

PLAIN = "xortv://webapps/Test/plain.html"
FOREIGN = "J\u00f6rg M\u00fcller \u65e5\u672c\u8a9e"

on_windows = pytest.mark.skipif(sys.platform != "win32", reason="names of another system")


def opens(host, url=PLAIN, title="Plain"):
    page = host.open_view(url)
    page.events.wait_for_kind(TitleChanged, title=title)
    return page


def test_an_installation_in_a_folder_of_another_alphabet(profile, monkeypatch):
    root = profile / FOREIGN
    mirror(Host.ROOT, root)
    monkeypatch.setenv("ORBInstallPath", f"{root};{Host.PAGES}")
    host = Host(root)
    opens(host)
    host.finish()


@pytest.mark.environment(ORBTemp="{profile}/" + FOREIGN, ORBCEF_LOG="")
def test_a_user_with_a_name_of_another_alphabet(host, profile):
    opens(host)
    assert (profile / FOREIGN / "WebCache").is_dir()
    assert "Browser #1 - Created." in (profile / FOREIGN / "WebCache" / "cef_client_debug.log").read_text("utf-8")


def test_a_file_below_a_root_with_a_name_of_another_alphabet(host, profile, monkeypatch):
    write(profile / FOREIGN / "webapps" / "More" / "a.txt", "found")
    monkeypatch.setenv("ORBInstallPath", f"{os.environ['ORBInstallPath']};{profile / FOREIGN}")
    assert fetch(opens(host), "xortv://webapps/More/a.txt")[-1] == "found"


def test_a_file_with_such_a_name_is_not_reached_since_percent_signs_are_taken_literally(host, profile, monkeypatch):
    write(profile / "more" / "webapps" / "More" / f"{FOREIGN}.txt", "found")
    monkeypatch.setenv("ORBInstallPath", f"{os.environ['ORBInstallPath']};{profile / 'more'}")
    assert fetch(opens(host), f"xortv://webapps/More/{FOREIGN}.txt")[0] == "404"


def test_a_file_whose_path_is_longer_than_old_systems_allow(host, profile, monkeypatch):
    name = "/".join(["a" * 60] * 5)
    write(profile / "more" / "webapps" / "More" / name / "long.txt", "found")
    monkeypatch.setenv("ORBInstallPath", f"{os.environ['ORBInstallPath']};{profile / 'more'}")
    assert fetch(opens(host), f"xortv://webapps/More/{name}/long.txt")[-1] == "found"


@on_windows
@pytest.mark.parametrize("end", ["", "\\"])
def test_the_cache_stands_below_a_temporary_folder_with_and_without_a_separator(profile, monkeypatch, end):
    monkeypatch.setenv("ORBTemp", f"{profile}\\temp{end}")
    host = Host()
    opens(host)
    host.finish()
    assert [path.name for path in (profile / "temp").iterdir()] == ["WebCache"]


@on_windows
@pytest.mark.parametrize("change", [lambda path: path[0].lower() + path[1:], lambda path: path.replace("\\", "/"),
                                    lambda path: path + "\\"], ids=["drive", "slashes", "separator"])
def test_a_root_by_another_name_of_the_same_folder(monkeypatch, change):
    monkeypatch.setenv("ORBInstallPath", f"{change(str(Host.ROOT))};{Host.PAGES}")
    host = Host()
    opens(host)
    host.finish()


@on_windows
def test_drives_and_backslashes_of_a_page_lead_nowhere(host, profile, monkeypatch):
    write(profile / "secret.txt", "secret")
    write(profile / "more" / "webapps" / "More" / "a.txt", "a")
    monkeypatch.setenv("ORBInstallPath", f"{os.environ['ORBInstallPath']};{profile / 'more'}")
    page = opens(host)
    for path in (f"{profile}\\secret.txt", f"{profile}/secret.txt", "..\\..\\..\\secret.txt",
                 "..%5c..%5c..%5csecret.txt", "%5c%5cserver%5cshare%5csecret.txt", "a.txt::$DATA",
                 f"{str(profile).replace(':', '%3a')}%5csecret.txt"):
        answer = fetch(page, f"xortv://webapps/More/{path}")
        assert "secret" not in answer[-1:], path
    assert fetch(page, "xortv://webapps/More/a.txt")[-1] == "a"


@on_windows
def test_a_start_address_with_backslashes_is_that_with_slashes(host):
    page = host.open_view("xortv:\\\\webapps\\Test\\plain.html", loaded=False)
    page.events.wait_for_kind(AddressChanged, url=PLAIN)


def write(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="utf-8")


def test_the_mirror_of_a_tree_has_its_files(profile):
    write(profile / "one" / "two" / "a.txt", "a")
    mirror(profile / "one", profile / "copy")
    assert (profile / "copy" / "two" / "a.txt").read_text() == "a"
    shutil.rmtree(profile / "copy")
    mirror(profile / "one", profile / "copy", lambda name: name != "two/a.txt")
    assert not (profile / "copy").exists()
