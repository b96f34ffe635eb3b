"""What a careless host and a hostile page can do: the neutral answer, a log line where there is one, never a crash."""

import json
import shutil

import orbcef
import pytest
from harness import Host, close_in_window, mirror
from orbcef import StringsReceived

PLAIN = "xortv://webapps/Test/plain.html"

log = pytest.mark.environment(ORBCEF_LOG="", ORBCEF_LOG_PATH="{profile}")


def log_text(profile):
    return (profile / "cef_client_debug.log").read_text(errors="replace")


# --- the host -----------------------------------------------------------------------------------------------------


def test_create_without_a_rectangle_makes_no_browser(host):
    events = orbcef.Events(host.main)
    view = host.module.create_view(events, None, PLAIN)
    window = orbcef.Window(host.main, 300, 200)
    view.create(window.handle, None, PLAIN)
    # A second view proves that the engine has had its turn.
    host.open_view(PLAIN)
    assert events.everything() == []
    view.close(True)
    view.release()
    window.close()


def test_null_records_everywhere(host, open_view):
    page = open_view(PLAIN)
    view = page.view
    view.load_url(None)
    view.execute_javascript(None)
    view.home_url = None
    view.error_url = None
    view.download_dir = None
    view.set_bounds(None)
    assert (view.home_url, view.error_url, view.download_dir) == ("", "", "")
    assert page.ask("'still here'") == "still here"


@pytest.mark.parametrize("url", ["", "no url at all", "http://", "xortv:", "\u0000",
                                 pytest.param("x" * 100000, id="long")])
def test_a_start_url_that_does_not_parse_leaves_a_usable_view(host, url):
    page = host.open_view("about:blank", home_url=url)
    mark = page.events.mark()
    page.view.load_url(PLAIN)
    page.events.wait_for_kind(orbcef.TitleChanged, since=mark, title="Plain")


def test_a_view_without_tables_works_in_silence(host):
    view = host.module.create_view(None, None, None)
    window = orbcef.Window(host.main, 300, 200)
    view.create(window.handle, (0, 0, 300, 200), PLAIN)
    assert host.main.run_until(lambda: bool(view.window))
    close_in_window(host, view, window)


def test_every_slot_after_close_answers_its_neutral_value(host, open_view):
    page = open_view(PLAIN)
    page.view.add_ref()
    assert page.close()
    view = page.view
    assert view.window is None
    assert not view.can_go_back() and not view.can_go_forward()
    for name in ("go_back", "go_forward", "reload", "stop_load", "copy", "cut", "paste", "delete_selection",
                 "select_all", "undo", "redo", "show_dev_tools", "close_dev_tools", "notify_move_or_resize"):
        getattr(view, name)()
    view.load_url(PLAIN)
    view.execute_javascript("1")
    view.set_zoom_level(1.0)
    view.change_zoom_level(1.0)
    view.set_visible(False)
    view.set_bounds((0, 0, 10, 10))
    view.close(True)
    assert view.execute_replay("{}").status == 200
    view.release()


@pytest.mark.parametrize("missing", ["webapps/ORBCefBindings/cef_extensions.js",
                                     "webapps/ORBCefBindings/snippets/addGlobalEventListeners.js",
                                     "resources/ORBCefRsc/mime-types.xml", "resources/ORBCefRsc/uri-schemes.xml"])
def test_a_missing_file_of_the_installation_leaves_a_view_that_loads(profile, monkeypatch, missing, server):
    partial_root(profile, monkeypatch, lambda path: path != missing)
    host = Host()
    page = host.open_view(server.page("/", "<title>loads</title>"))
    page.events.wait_for_kind(orbcef.TitleChanged, title="loads")
    host.finish()


@pytest.mark.parametrize("broken", [b"", b"<", b"<a><mimeType extension='.x' type='y'/></b>", b"\xff\xfe\x00",
                                    b"<registry><record><value>http</value>"])
def test_a_broken_xml_file_leaves_a_view_that_loads(profile, monkeypatch, broken, server):
    root = partial_root(profile, monkeypatch, lambda path: True)
    (root / "resources/ORBCefRsc/mime-types.xml").write_bytes(broken)
    host = Host()
    page = host.open_view(server.page("/", "<title>loads</title>"))
    page.events.wait_for_kind(orbcef.TitleChanged, title="loads")
    host.finish()


def test_a_malformed_xml_file_keeps_what_was_read_before_its_error(profile, monkeypatch):
    root = partial_root(profile, monkeypatch, lambda path: True)
    (root / "resources/ORBCefRsc/mime-types.xml").write_text(
        '<types><mimeType type="text/html" extension=".html"/><mimeType type="text/css" extension=')
    monkeypatch.setenv("ORBInstallPath", f"{root};{Host.PAGES}")
    host = Host()
    page = host.open_view(PLAIN)
    assert page.ask("document.contentType") == "text/html"
    host.finish()


def partial_root(profile, monkeypatch, wanted):
    """An installation root with the files of the real one that are wanted."""
    root = profile / "partial"
    for tree in ("webapps", "resources"):
        for path in (Host.ROOT / tree).rglob("*"):
            relative = path.relative_to(Host.ROOT)
            if path.is_file() and wanted(relative.as_posix()):
                (root / relative).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(path, root / relative)
    mirror(Host.ROOT / "code", root / "code")
    monkeypatch.setenv("ORBInstallPath", str(root))
    return root


def test_without_a_helper_the_engine_is_not_started_and_the_host_lives(profile, monkeypatch, native_errors):
    empty = profile / "empty"
    empty.mkdir()
    monkeypatch.setenv("ORBInstallPath", str(empty))
    host = Host()
    events = orbcef.Events(host.main)
    view = host.module.create_view(events, None, PLAIN)
    window = orbcef.Window(host.main, 300, 200)
    view.create(window.handle, (0, 0, 300, 200), PLAIN)
    view.execute_javascript("1")
    assert view.window is None and events.everything() == []
    assert ("[Browser Process] The engine is not started: the helper executable is below no root of ORBInstallPath."
            in native_errors.text())
    view.close(True)
    view.release()
    window.close()
    host.finish()


def test_an_engine_that_started_after_all_serves_the_next_view(profile, monkeypatch):
    monkeypatch.setenv("ORBInstallPath", str(profile))
    host = Host()
    host.module.init_engine()
    monkeypatch.setenv("ORBInstallPath", f"{Host.ROOT};{Host.PAGES}")
    host.open_view("about:blank")
    host.finish()


def test_a_table_pointer_of_null_outside_of_a_test_rig_is_the_hosts_own_fault(host):
    # The global table ignores its own pointer: null is as good as any.
    table = host.module.table.contents
    assert table.is_available(None) == 1
    assert table.reserved(None) == 0


# --- the page -----------------------------------------------------------------------------------------------------


def send(page, expression):
    mark = page.events.mark()
    page.view.execute_javascript(f"xocef.__sendString({expression}, {{url: '', line: 0, column: 0}}, {{}})")
    return page.events.wait_for_kind(StringsReceived, since=mark).strings


def test_numbers_and_objects_arrive_as_empty_strings(open_view):
    page = open_view(PLAIN)
    assert send(page, "[1, {}, 'text', true, [], () => 1]") == ("", "", "text", "", "", "")


def test_what_is_no_array_sends_nothing(open_view):
    page = open_view(PLAIN)
    for wrong in ("'text'", "1", "{}", "null", "undefined", "() => 1"):
        page.view.execute_javascript(
            f"xocef.__sendString({wrong}, {{url: '', line: 0, column: 0}}, {{}})")
    page.view.execute_javascript("xocef.__sendString(); xocef.__sendString(['a']); xocef.__sendString(['a'], {})")
    page.view.execute_javascript("xocef.__sendString(['a'], 1, {}); xocef.__sendString(['a'], {}, 'x')")
    assert page.ask("'end'") == "end"
    assert [e.strings for e in page.events.all(StringsReceived)] == [("test.answer", "end")]


def test_an_empty_array_calls_nobody(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript("xocef.__sendString([], {url: '', line: 0, column: 0}, {})")
    assert page.ask("'end'") == "end"
    assert len(page.events.all(StringsReceived)) == 1


@pytest.mark.parametrize("text", ["a\u0000b", "\u2028\u2029", "</script>", "\U0001f600", "ä" * 1000, ""])
def test_text_arrives_as_it_is(open_view, text):
    page = open_view(PLAIN)
    assert send(page, f"[{json.dumps(text)}, 'end']") == (text, "end")


def test_a_lone_surrogate_arrives_as_a_replacement_character(open_view):
    page = open_view(PLAIN)
    assert send(page, "['a\\ud800b', '\\udc00']") == ("a\ufffdb", "\ufffd")


def test_sixteen_mebibytes_arrive_whole(open_view):
    page = open_view(PLAIN)
    (text,) = send(page, "['x'.repeat(16 * 1024 * 1024 - 3) + 'end']")
    assert len(text) == 16 * 1024 * 1024 and text.endswith("xend")


def test_ten_thousand_strings_in_one_call_arrive(open_view):
    page = open_view(PLAIN)
    assert send(page, "Array.from({length: 10000}, (_, i) => String(i))") == tuple(str(i) for i in range(10000))


def test_getters_that_throw_stop_the_call_and_nothing_else(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript(
        "const a = ['x']; Object.defineProperty(a, 0, {get() { throw new Error('no'); }});"
        "try { xocef.__sendString(a, {get url() { throw 1; }}, {}); } catch (e) {}")
    assert page.ask("'end'") == "end"


@log
def test_an_exception_of_the_page_is_logged_with_its_stack(host, profile):
    page = host.open_view(PLAIN)
    page.view.execute_javascript("function inner() { throw new Error('from the page'); }\\nsetTimeout(inner)".replace("\\n", ";"))
    assert page.ask("'end'") == "end"
    mark = page.events.mark()
    page.view.reload()
    page.events.wait_for_kind(orbcef.LoadingStateChanged, since=mark, is_loading=True)
    page.wait_loaded(since=mark)
    text = log_text(profile)
    assert "Uncaught exception.\n\tUncaught Error: from the page\n\tStack trace:\n\t\tinner @" in text


@log
def test_a_refused_method_is_logged(host, profile):
    page = host.open_view(PLAIN)
    page.view.execute_javascript(
        "fetch('xortv://webapps/Test/plain.html', {method: 'POST'}).catch(() => xocef.sendString('refused'))")
    page.wait_strings("refused")
    assert ("[xortv] The xortv protocol can only accept GET requests.\n\tProtocol: xortv\n\tURL: "
            "xortv://webapps/Test/plain.html") in log_text(profile)


@log
def test_a_crashed_renderer_leaves_the_process_and_the_other_views_alive(open_view, profile):
    other = open_view("xortv://webapps/Test/echo.html")
    page = open_view("data:text/html,<title>doomed</title>")
    mark = page.events.mark()
    # An address of the engine's own that ends the renderer of its page.
    page.view.load_url("chrome://crash")
    page.events.wait_for_kind(orbcef.LoadingStateChanged, since=mark, is_loading=True)
    page.wait_loaded(since=mark)
    other.view.execute_javascript("xocef.receive('alive')")
    other.wait_strings("echo", "alive")
    assert page.view.window
    assert "A render process has been abnormally terminated.\n\tStatus: PROCESS_CRASHED" in log_text(profile)
