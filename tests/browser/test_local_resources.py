"""The scheme xortv with the real engine: what is found, and what a page is told when it is not."""

import json

import pytest
from orbcef import AddressChanged, StringsReceived

PLAIN = "xortv://webapps/Test/plain.html"


def fetch(page, url, **options):
    """(status, content type, text) of a fetch by the page, or the name of its error."""
    mark = page.events.mark()
    page.view.execute_javascript(
        f"fetch({json.dumps(url)}, {json.dumps(options)}).then(async r => xocef.sendString(['fetched', String(r.status),"
        " r.headers.get('content-type'), r.headers.get('cache-control') ?? 'none', await r.text()]))"
        ".catch(e => xocef.sendString(['fetched', e.name]))")
    event = page.events.wait_for(lambda e: isinstance(e, StringsReceived) and e.strings[0] == "fetched", since=mark)
    return event.strings[1:]


@pytest.fixture
def root(profile):
    """A further installation root, behind the others in the search."""
    folder = profile / "more"
    (folder / "webapps" / "More").mkdir(parents=True)
    (folder / "resources").mkdir()
    return folder


def write(root, path, content):
    target = root / path
    target.parent.mkdir(parents=True, exist_ok=True)
    target.write_bytes(content)


@pytest.fixture
def with_root(root, monkeypatch):
    import os

    monkeypatch.setenv("ORBInstallPath", f"{os.environ['ORBInstallPath']};{root}")
    return root


def test_types_follow_the_extension(with_root, host):
    for name in ("a.js", "a.mjs", "a.css", "a.wasm", "a.woff2", "a.avif", "a.json", "a.JS", "noextension", "b.unknown"):
        write(with_root, f"webapps/More/{name}", b"x")
    page = host.open_view(PLAIN)
    kinds = {name: fetch(page, f"xortv://webapps/More/{name}")[1].split(";")[0]
             for name in ("a.js", "a.mjs", "a.css", "a.wasm", "a.woff2", "a.avif", "a.json", "a.JS", "noextension",
                          "b.unknown")}
    assert kinds == {"a.js": "text/javascript", "a.mjs": "text/javascript", "a.css": "text/css",
                     "a.wasm": "application/wasm", "a.woff2": "font/woff2", "a.avif": "image/avif",
                     "a.json": "application/json", "a.JS": "application/octet-stream",
                     "noextension": "application/octet-stream", "b.unknown": "application/octet-stream"}


def test_the_query_is_ignored_and_a_percent_sign_is_taken_literally(with_root, host):
    write(with_root, "webapps/More/a b.txt", b"blank")
    write(with_root, "webapps/More/a%20b.txt", b"percent")
    page = host.open_view(PLAIN)
    assert fetch(page, "xortv://webapps/More/a%20b.txt?v=1#x")[-1] == "percent"


def test_a_missing_file_is_404_and_an_empty_one_is_not(with_root, host):
    write(with_root, "webapps/More/empty.txt", b"")
    page = host.open_view(PLAIN)
    assert fetch(page, "xortv://webapps/More/missing.txt")[0] == "404"
    assert fetch(page, "xortv://webapps/NoModule/a.txt")[0] == "404"
    assert fetch(page, "xortv://webapps/More")[0] == "404"
    empty = fetch(page, "xortv://webapps/More/empty.txt")
    assert (empty[0], empty[-1]) == ("200", "")


def test_a_module_is_bound_to_its_first_root_and_resources_are_not(with_root, host):
    # The module Test stands in an earlier root, which has no such file.
    write(with_root, "webapps/Test/only-here.txt", b"later root")
    write(with_root, "resources/only-here.txt", b"later root")
    page = host.open_view(PLAIN)
    assert fetch(page, "xortv://webapps/Test/only-here.txt")[0] == "404"
    # Another origin: a page may go there, but not read it.
    assert fetch(page, "xortv://resources/only-here.txt") == ("TypeError",)
    mark = page.events.mark()
    page.view.load_url("xortv://resources/only-here.txt")
    page.events.wait_for_kind(AddressChanged, since=mark, url="xortv://resources/only-here.txt")
    page.wait_loaded(since=mark)
    assert page.ask("document.body.textContent") == "later root"


def test_only_get_is_served_and_only_on_the_two_hosts(with_root, host):
    write(with_root, "webapps/More/a.txt", b"x")
    page = host.open_view(PLAIN)
    assert fetch(page, "xortv://webapps/More/a.txt", method="POST") == ("TypeError",)
    assert fetch(page, "xortv://other/a.txt") == ("TypeError",)


@pytest.mark.environment(ORBCEF_LOG="", ORBCEF_LOG_PATH="{profile}")
def test_another_host_is_not_looked_for_in_the_installation(with_root, host, profile):
    # A file that would be found if the scheme were served for every host.
    write(with_root, "other/a.txt", b"served")
    page = host.open_view(PLAIN)
    mark = page.events.mark()
    page.view.load_url("xortv://other/a.txt")
    page.wait_loaded(since=mark)
    log = (profile / "cef_client_debug.log").read_text()
    assert "Source path: webapps/Test/plain.html" in log
    assert "URL: xortv://other/a.txt" in log, "the page was asked for, and failed"
    assert "Source path: other/a.txt" not in log and "[xortv] Impossible to locate" not in log


def test_a_large_file_arrives_whole(with_root, host):
    write(with_root, "webapps/More/large.txt", b"0123456789abcdef" * (1 << 18))
    page = host.open_view(PLAIN)
    page.view.execute_javascript(
        "fetch('xortv://webapps/More/large.txt').then(r => r.text()).then(t => xocef.sendString([String(t.length),"
        " t.slice(-16)]))")
    page.wait_strings(str(16 << 18), "0123456789abcdef")


def test_no_cache_header_by_default(with_root, host):
    page = host.open_view(PLAIN)
    assert fetch(page, PLAIN)[2] == "none"


@pytest.mark.environment(ORBCEF_NOCACHE_XORTV="")
def test_the_switch_against_caching_sets_the_header(host):
    page = host.open_view(PLAIN)
    assert fetch(page, PLAIN)[2] == "no-cache"


def test_nothing_outside_of_the_root_is_served(with_root, host):
    write(with_root, "secret.txt", b"secret")
    page = host.open_view(PLAIN)
    for path in ("../secret.txt", "..%2fsecret.txt", "%2e%2e/%2e%2e/secret.txt", "..\\..\\secret.txt"):
        assert "secret" not in fetch(page, f"xortv://webapps/More/{path}")[-1:]
