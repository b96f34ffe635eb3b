"""The natives behind `xocef`, called as no page should call them: never an exception, never a crash."""

import json

import orbcef
import pytest
import targets
from harness import Host
from orbcef import (DocumentSize, LoadingStateChanged, StateChanged, StringsReceived, TitleChanged,
                    V8Context, ZoomChanged)
from test_bad_input import log_text, partial_root

PLAIN = "xortv://webapps/Test/plain.html"
ECHO = "xortv://webapps/Test/echo.html"
BINDINGS = "webapps/ORBCefBindings"

log = pytest.mark.environment(ORBCEF_LOG="", ORBCEF_LOG_PATH="{profile}")

# What a page might pass instead of what is wanted.
WRONG = ("", "undefined", "null", "true", "0", "-1", "1.5", "NaN", "Infinity", "2 ** 53", "''", "'text'", "'\\0'", "1n",
         "Symbol()", "{}", "[]", "() => {}", "new Proxy({}, {})", "new Date()", "globalThis",
         "{ get url() { throw 1 } }", "Object.create(null)")


def calls(native):
    """Calls with every wrong value alone, in pairs and in threes."""
    return [f"{native}({', '.join([value] * count) if value else ''})" for value in WRONG for count in (1, 2, 3)]


def run_each(page, scripts):
    """Runs each expression for itself; tells the texts of what was thrown and of what came back."""
    page.view.execute_javascript(
        "globalThis.outcomes = " + "[" + ",".join(f"() => {script}" for script in scripts) + "].map(call => {"
        " try { return typeof call() } catch (error) { return 'threw ' + String(error) } })")
    return json.loads(page.ask("JSON.stringify(outcomes)"))


# The native; which wrong calls count as right ones; what they give back; what the host hears of them.
TABLE = [
    ("__sendDocumentSize", lambda c: True, "undefined", DocumentSize),
    ("__notifyDOMReady", lambda c: True, "undefined", StateChanged),
    ("__notifyLoad", lambda c: True, "undefined", None),
    ("__notifyUnload", lambda c: True, "undefined", StateChanged),
    ("__notifyZoomReset", lambda c: True, "undefined", ZoomChanged),
    ("__closeDevTools", lambda c: True, "undefined", None),
    # Numbers that are not 0, whatever else they are.
    ("__notifyZoomChange", lambda c: c.startswith(("(-1", "(1.5", "(NaN", "(Infinity", "(2 ** 53")), "undefined",
     ZoomChanged),
    ("__getEnv", lambda c: c.startswith(("('text'", "('\\0'")), "string", None),
    ("__sendString", lambda c: False, "undefined", StringsReceived),
    ("__registerPromise", lambda c: False, "undefined", None),
    ("__resolvePromise", lambda c: False, "undefined", None),
    ("__rejectPromise", lambda c: False, "undefined", None),
    ("__saveValue", lambda c: False, "undefined", None),
    ("__loadValue", lambda c: False, "undefined", None),
]


def test_arguments_of_every_wrong_type_and_count(host, open_view):
    page = open_view(PLAIN)
    for native, is_right, result, event in TABLE:
        scripts = calls(f"xocef.{native}")
        right = [script for script in scripts if is_right(script.removeprefix(f"xocef.{native}"))]
        mark = page.events.mark()
        expected = {script: result if script in right else "undefined" for script in scripts}
        assert dict(zip(scripts, run_each(page, scripts))) == expected
        heard = [e for e in page.events.everything()[mark:] if event and isinstance(e, event)
                 and getattr(e, "strings", ("",))[0] != "test.answer"]
        assert len(heard) == (len(right) if event else 0), (native, heard)
    assert not host.tools.preferences


def test_the_natives_that_move_the_view_ignore_their_arguments(open_view):
    page = open_view(PLAIN)
    mark = page.events.mark()
    page.view.execute_javascript("xocef.__loadHomepage(null, {}, 7)")
    page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=True)
    page.wait_loaded(since=mark)
    page.view.execute_javascript("xocef.__openDevTools('a', [], 1); xocef.__closeDevTools('a')")
    assert page.ask("1 + 1") == "2"


def test_every_native_is_in_the_table(open_view):
    page = open_view(PLAIN)
    names = json.loads(page.ask("JSON.stringify(Object.getOwnPropertyNames(xocef).filter(n => n.startsWith('__')))"))
    assert set(names) == {row[0] for row in TABLE} | {"__loadHomepage", "__openDevTools"}


def test_send_string_takes_three_arguments_of_their_kinds_and_no_others(open_view):
    page = open_view(PLAIN)
    refused = ["['a']", "['a'], {}", "'a', {}, {}", "{ 0: 'a', length: 1 }, {}, {}", "['a'], null, {}", "['a'], 1, {}",
               "['a'], {}, null", "['a'], {}, 'x'", "['a'], undefined, {}", "['a'], {}, undefined"]
    mark = page.events.mark()
    run_each(page, [f"xocef.__sendString({arguments})" for arguments in refused])
    run_each(page, ["xocef.__sendString(['three'], {}, {})", "xocef.__sendString(['four'], {}, {}, {})",
                    "xocef.__sendString(['five'], [], () => {}, 1, 2)",
                    "xocef.__sendString([1, null, undefined, {}, 'text', , true], {}, {})"])
    heard = [e.strings for e in page.events.everything()[mark:] if isinstance(e, StringsReceived)]
    assert [s for s in heard if s[0] != "test.answer"] == [
        ("three",), ("four",), ("five",), ("", "", "", "", "text", "", "")]


def test_a_zoom_step_that_is_no_finite_number_leaves_a_view_that_zooms(open_view):
    page = open_view(PLAIN)
    # What is no finite number crosses between the processes as 0.
    for step, change in (("NaN", 0.0), ("Infinity", 0.0), ("-Infinity", 0.0), ("1e300", 1e298)):
        mark = page.events.mark()
        page.view.execute_javascript(f"xocef.__notifyZoomChange({step})")
        assert page.events.wait_for_kind(ZoomChanged, since=mark).change == pytest.approx(change), step
        mark = page.events.mark()
        page.view.execute_javascript("xocef.zoomReset()")
        assert page.events.wait_for_kind(ZoomChanged, since=mark).change == 0
        assert page.ask("1 + 1") == "2"


def test_getters_of_the_page_that_throw_reach_the_natives_as_nothing(host, open_view):
    page = open_view(PLAIN)
    trap = "{ get origin() { throw new Error('trap') }, name: 'n', value: 'v' }"
    outcomes = run_each(page, [f"xocef.__saveValue(1, {trap})", f"xocef.__loadValue(1, {trap})",
                               "xocef.__sendString(['a'], { get url() { throw 1 } }, {})",
                               "xocef.__registerPromise({ get resolve() { throw 1 }, reject() {} })"])
    assert outcomes == ["undefined"] * 4
    assert not [e for e in page.events.all(StringsReceived) if e.strings[0] == "a"]
    assert not [key for key in host.tools.preferences if key[1] != "n"]


# --- strings ------------------------------------------------------------------------------------------------------


def test_strings_of_every_kind_cross_to_the_host_and_back(open_view):
    given = ["\u2028\u2029", "a\0b", "\0", "</script><script>", "<!--", "\"'`\\ \r\n\t", "\U0001f600", "\ufeff", "e\u0301",
             "\x7f\x80\x9f", "x" * 1_000_000, ""]
    page = open_view(ECHO)
    page.view.execute_javascript(f"xocef.receive({json.dumps(given, ensure_ascii=False)})")
    page.wait_strings("echo", *given)


def test_half_a_surrogate_pair_has_no_utf8_and_comes_as_the_replacement(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript("xocef.sendString(['half', '\\ud800', 'a\\udc00b', '\\udc00\\ud800'])")
    event = page.events.wait_for(lambda e: isinstance(e, StringsReceived) and e.strings[0] == "half")
    assert event.strings[1:] == ("\ufffd", "a\ufffdb", "\ufffd\ufffd")


def test_a_script_of_the_host_with_every_character_runs(open_view):
    page = open_view(PLAIN)
    text = "".join(chr(i) for i in (*range(1, 0x20), 0x7f, 0x2028, 0x2029, 0xfffe, 0x1f600)) + "</script>"
    page.view.execute_javascript(f"xocef.sendString(['back', {json.dumps(text)}])")
    page.wait_strings("back", text)


# --- a page that never yields -------------------------------------------------------------------------------------


def test_a_page_that_never_yields_leaves_the_other_view_usable(open_view, server):
    # Each costs a call of Python, and takes several times as long on wine.
    count = 20000 if targets.IS_WINDOWS else 100000
    other = open_view(ECHO)
    flood = open_view(server.page("/", "<title>flood</title>"))
    flood.view.execute_javascript(
        f"for (let i = 0; i < {count}; ++i) xocef.sendString('x'); xocef.sendString('sent'); for (;;);")
    for i in range(20):
        other.view.execute_javascript(f"xocef.receive('{i}')")
        other.events.wait_for_kind(StringsReceived, timeout=20, strings=("echo", str(i)))
    flood.events.wait_for_kind(StringsReceived, timeout=30, strings=("sent",))
    assert len([e for e in flood.events.all(StringsReceived) if e.strings == ("x",)]) == count
    assert other.ask("1 + 1") == "2"


# --- files of the installation ------------------------------------------------------------------------------------


MISSING = "missing"


def root_with(profile, monkeypatch, name, content):
    """An installation root in which the file `name` has this text; a directory stands there for None."""
    root = partial_root(profile, monkeypatch, lambda path: path != f"{BINDINGS}/{name}")
    monkeypatch.setenv("ORBInstallPath", f"{root};{Host.PAGES}")
    path = root / BINDINGS / name
    if content is MISSING:
        return
    if content is None:
        path.mkdir(parents=True)
    else:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content)


@log
@pytest.mark.parametrize("content, size", [("throw new Error('in the snippet')", None), (None, None), ("", None), (MISSING, None),
                                           ("({ width: 7, height: '8' })", (7, 0)), ("42", (0, 0))],
                         ids=["throws", "directory", "empty", "missing", "half", "number"])
def test_a_snippet_of_the_document_size_that_gives_no_size(profile, monkeypatch, content, size):
    root_with(profile, monkeypatch, "snippets/getDocumentSize.js", content)
    host = Host()
    page = host.open_view(PLAIN)
    mark = page.events.mark()
    page.view.execute_javascript("xocef.sendDocumentSize(); xocef.sendString('after')")
    page.wait_strings("after", since=mark)
    sizes = [(e.width, e.height) for e in page.events.all(DocumentSize)]
    assert sizes == ([size] if size else [])
    in_log = "Exception on the getDocumentSize snippet:\n\tUncaught Error: in the snippet" in log_text(profile)
    assert in_log == (content is not None and content.startswith("throw"))
    host.finish()


@log
# The engine refuses to evaluate an empty text, which is what a directory reads as.
@pytest.mark.parametrize("content", ["throw new Error('in the snippet')", None, MISSING],
                         ids=["throws", "directory", "missing"])
@pytest.mark.parametrize("name", ["addGlobalEventListeners.js", "addRootDocumentEventListeners.js"])
def test_a_listener_snippet_that_fails_leaves_a_page_with_xocef(profile, monkeypatch, name, content):
    root_with(profile, monkeypatch, f"snippets/{name}", content)
    host = Host()
    page = host.open_view(ECHO)
    page.view.execute_javascript("xocef.receive('works')")
    page.wait_strings("echo", "works")
    assert "Failed to add custom" in log_text(profile)
    # Only the root document's listeners tell of the DOM.
    dom_ready = [e for e in page.events.all(StateChanged) if e.state == orbcef.STATE_DOM_READY]
    assert len(dom_ready) == (0 if name.startswith("addRoot") else 1)
    host.finish()


def test_a_directory_in_the_place_of_the_extension_leaves_a_page_that_shows(profile, monkeypatch):
    root_with(profile, monkeypatch, "cef_extensions.js", None)
    host = Host()
    page = host.open_view(PLAIN)
    page.events.wait_for_kind(TitleChanged, title="Plain")
    host.finish()


@pytest.mark.parametrize("content", ["throw new Error('in the extension')", "}{"], ids=["throws", "no script"])
def test_a_broken_extension_costs_the_renderer_and_not_the_host(profile, monkeypatch, content):
    # The engine ends a renderer whose extension fails; only an installation can have such a file.
    root_with(profile, monkeypatch, "cef_extensions.js", content)
    host = Host()
    page = host.open_view(PLAIN)
    # The title of a page that could not be made is empty or its address.
    assert page.events.wait_for_kind(TitleChanged).title in ("", PLAIN)
    assert not page.events.all(V8Context)
    host.finish()


def test_files_of_the_bindings_are_read_anew_for_each_page(profile, monkeypatch):
    root_with(profile, monkeypatch, "snippets/getDocumentSize.js", "({ width: 1, height: 1 })")
    host = Host()
    page = host.open_view(PLAIN)
    page.view.execute_javascript("xocef.sendDocumentSize()")
    page.events.wait_for_kind(DocumentSize, width=1, height=1)
    (profile / "partial" / BINDINGS / "snippets/getDocumentSize.js").write_text("({ width: 2, height: 2 })")
    page.view.execute_javascript("xocef.sendDocumentSize()")
    page.events.wait_for_kind(DocumentSize, width=2, height=2)
    host.finish()


def test_the_first_root_that_has_a_file_wins(profile, monkeypatch):
    root_with(profile, monkeypatch, "snippets/getDocumentSize.js", "({ width: 3, height: 4 })")
    monkeypatch.setenv("ORBInstallPath", f"{profile / 'partial'};{Host.ROOT};{Host.PAGES}")
    host = Host()
    page = host.open_view(PLAIN)
    page.view.execute_javascript("xocef.sendDocumentSize()")
    page.events.wait_for_kind(DocumentSize, width=3, height=4)
    host.finish()
