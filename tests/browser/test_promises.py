"""Promises that the host settles, and the values that it keeps for pages."""

import threading

import pytest
from orbcef import AddressChanged, ConsoleMessage, LoadingStateChanged, StringsReceived

PLAIN = "xortv://webapps/Test/plain.html"
ECHO = "xortv://webapps/Test/echo.html"
STORE = "ORBCefStore_test"


class HeldTasks:
    """Stands before the host's main thread: keeps its tasks until the test lets them run."""

    def __init__(self, tools):
        self.tasks = []
        tools.dispatch_on_main_thread = True
        tools.post_task_on_main_thread = self.post
        self._main = tools.main_thread

    def post(self, task):
        self.tasks.append(task)
        self._main.wake()
        return True

    def wait(self, count=1):
        assert self._main.run_until(lambda: len(self.tasks) >= count), f"{len(self.tasks)} tasks came"

    def run(self):
        while self.tasks:
            self.tasks.pop(0)()


def tell(expression):
    """A script that sends how a promise was settled: "resolved" or "rejected", and its value as text."""
    return (f"({expression}).then(v => xocef.sendString(['resolved', JSON.stringify(v) ?? String(v)]),"
            " e => xocef.sendString(['rejected', String(e)]));")


def settled(page, since=0):
    event = page.events.wait_for(
        lambda e: isinstance(e, StringsReceived) and e.strings[0] in ("resolved", "rejected"), since=since)
    return event.strings


def outcome(page, expression):
    mark = page.events.mark()
    page.view.execute_javascript(tell(expression))
    return settled(page, mark)


# --- the round trip -----------------------------------------------------------------------------------------------


@pytest.mark.parametrize("on_main_thread", [False, True])
def test_a_saved_value_is_loaded_again(host, open_view, on_main_thread):
    host.tools.dispatch_on_main_thread = on_main_thread
    page = open_view(PLAIN)
    assert outcome(page, "xocef.saveValue('test', 'colour', { name: 'blue', parts: [0, 0, 255] })") == (
        "resolved", "undefined")
    assert host.tools.preferences == {(STORE, "colour"): '{"name":"blue","parts":[0,0,255]}'}
    assert outcome(page, "xocef.loadValue('test', 'colour')") == (
        "resolved", '{"name":"blue","parts":[0,0,255]}')


@pytest.mark.parametrize("on_main_thread", [False, True])
def test_the_store_is_asked_on_the_thread_that_the_host_wants(host, open_view, on_main_thread):
    host.tools.dispatch_on_main_thread = on_main_thread
    threads = []
    host.tools.save_in_preference = lambda *_: threads.append(threading.get_native_id())
    host.tools.read_from_preferences = lambda *_: threads.append(threading.get_native_id()) or "1"
    page = open_view(PLAIN)
    outcome(page, "xocef.saveValue('test', 'a', 1)")
    outcome(page, "xocef.loadValue('test', 'a')")
    engine_thread = page.events.everything()[0].thread
    assert threads == [threading.get_native_id() if on_main_thread else engine_thread] * 2


def test_every_value_with_a_json_text_comes_back_as_it_was(open_view):
    values = ["null", "false", "0", "-1.5e300", "''", "[]", "{}", "'</script>'", "'\\u2028\\u2029'", "'a\\0b'", "'\\ud800'",
              "'\\udc00\\ud800'", "'\\ud83d\\ude00'", "'it\\'s \\\"\\\\ \\n'", "{ 'a b': { '': [null, { x: 'y' }] } }",
              "'x'.repeat(1e6)"]
    page = open_view(PLAIN)
    for value in values:
        same = f"JSON.stringify(v) === JSON.stringify({value}) && typeof v === typeof ({value})"
        assert outcome(page, f"xocef.saveValue('test', 'v', {value}).then(() => xocef.loadValue('test', 'v'))"
                             f".then(v => {same})") == ("resolved", "true"), value


def test_a_missing_and_an_empty_preference_reject_alike(host, open_view):
    host.tools.preferences[STORE, "empty"] = ""
    page = open_view(PLAIN)
    for name in ("missing", "empty"):
        assert outcome(page, f"xocef.loadValue('test', '{name}')") == (
            "rejected", f"Error: Failed to read preference {name} from repository {STORE}")
    assert outcome(page, "xocef.loadValue('test', 'missing').catch(e => e instanceof Error)") == ("resolved", "true")


def test_a_removed_value_cannot_be_loaded(host, open_view):
    host.tools.preferences[STORE, "a"] = "1"
    page = open_view(PLAIN)
    assert outcome(page, "xocef.removeValue('test', 'a')") == ("resolved", "undefined")
    assert outcome(page, "xocef.loadValue('test', 'a')")[0] == "rejected"


def test_a_refused_save_rejects_with_what_the_host_says(host, open_view):
    host.tools.save_in_preference = lambda store, key, value: f"new RangeError('no room for {key}')"
    page = open_view(PLAIN)
    assert outcome(page, "xocef.saveValue('test', 'a', 1)") == ("rejected", "RangeError: no room for a")


def test_the_store_may_call_back_into_the_view_that_asks(host, open_view):
    page = open_view(PLAIN)
    host.tools.save_in_preference = lambda *_: page.view.execute_javascript("xocef.sendString('from the store')")
    page.view.execute_javascript(tell("xocef.saveValue('test', 'a', 1)"))
    page.wait_strings("from the store")
    page.wait_strings("resolved", "undefined")


def test_a_stored_text_is_javascript_as_it_stands(host, open_view):
    host.tools.preferences[STORE, "expression"] = "((a, b) => ({ sum: a + b }))(1, 2)"
    host.tools.preferences[STORE, "page"] = "document.title"
    page = open_view(PLAIN)
    assert outcome(page, "xocef.loadValue('test', 'expression')") == ("resolved", '{"sum":3}')
    assert outcome(page, "xocef.loadValue('test', 'page')") == ("resolved", '"Plain"')


def test_a_preference_that_is_no_expression_leaves_the_promise_open_and_the_page_well(host, open_view):
    host.tools.preferences[STORE, "right"] = "1"
    page = open_view(PLAIN, configure=lambda view: setattr(view, "forward_console", True))
    for text in ("no expression at all", "}{", "1)", "'open", "undefinedName", "{a:"):
        host.tools.preferences[STORE, "wrong"] = text
        mark = page.events.mark()
        page.view.execute_javascript(tell("xocef.loadValue('test', 'wrong')"))
        page.events.wait_for(lambda e: isinstance(e, ConsoleMessage) and "Uncaught" in e.message, since=mark)
        # The second request was answered, the first one not.
        assert outcome(page, "xocef.loadValue('test', 'right')") == ("resolved", "1")
        answers = [e for e in page.events.everything()[mark:] if isinstance(e, StringsReceived)]
        assert answers == [StringsReceived(strings=("resolved", "1"))], text


def test_a_name_that_would_break_the_hosts_answer_is_refused_by_the_script_and_open_without_it(open_view):
    page = open_view(PLAIN, configure=lambda view: setattr(view, "forward_console", True))
    kind, text = outcome(page, "xocef.loadValue('test', 'it\\'s')")
    assert (kind, text.split(":")[0]) == ("rejected", "TypeError")
    page.view.execute_javascript(
        "xocef.__loadValue(xocef.__registerPromise({ resolve() {}, reject() {} }), { origin: 'test', name: 'it\\'s' })")
    page.events.wait_for(lambda e: isinstance(e, ConsoleMessage) and "SyntaxError" in e.message)


def test_a_save_of_three_arguments_cannot_come_from_a_page(host, open_view):
    page = open_view(PLAIN)
    # A missing property is sent as an empty text, so the browser process gets its four arguments.
    page.view.execute_javascript(
        "new Promise((resolve, reject) => xocef.__saveValue(xocef.__registerPromise({ resolve, reject }),"
        " { origin: 'test', name: 'half' })).then(() => xocef.sendString('saved'))")
    page.wait_strings("saved")
    assert host.tools.preferences == {(STORE, "half"): ""}


def test_many_requests_are_answered_each_for_itself(host, open_view):
    host.tools.preferences.update({(STORE, f"n{i}"): str(i) for i in range(1000)})
    page = open_view(PLAIN)
    assert outcome(page, "Promise.all(Array.from({ length: 1000 }, (_, i) => xocef.loadValue('test', 'n' + i)))"
                         ".then(all => all.every((v, i) => v === i))") == ("resolved", "true")


# --- settling -----------------------------------------------------------------------------------------------------

REGISTER = ("globalThis.log = []; globalThis.key = xocef.__registerPromise("
            "{ resolve: v => log.push('resolve ' + v), reject: v => log.push('reject ' + v) });")


def test_a_key_settles_once(open_view):
    page = open_view(PLAIN)
    for first, second in (("resolve", "resolve"), ("resolve", "reject"), ("reject", "resolve"), ("reject", "reject")):
        page.view.execute_javascript(
            f"{REGISTER} xocef._internals.{first}Promise(key, 1); xocef._internals.{second}Promise(key, 2)")
        assert page.ask("log.join()") == f"{first} 1"


def test_keys_are_integers_that_count_on_over_a_reload(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript(REGISTER)
    assert page.ask("key") == "1"
    mark = page.events.mark()
    page.view.reload()
    page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=True)
    page.wait_loaded(since=mark)
    page.view.execute_javascript(REGISTER)
    assert int(page.ask("key")) == 2


def test_undefined_is_a_value(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript(f"{REGISTER} xocef._internals.resolvePromise(key)")
    assert page.ask("log.join()") == "resolve undefined"


def test_a_key_of_no_one_is_ignored_without_an_exception(open_view):
    keys = ("0", "-1", "12345", "2147483647", "2147483648", "1.5", "NaN", "'1'", "null", "undefined", "{}", "[1]", "1n",
            "Symbol()")
    page = open_view(PLAIN)
    page.view.execute_javascript(REGISTER)
    for key in keys:
        page.view.execute_javascript(
            f"xocef._internals.resolvePromise({key}, 1); xocef._internals.rejectPromise({key}, 1); log.push('went on')")
    assert page.ask("log.join()") == ",".join(["went on"] * len(keys))


def test_functions_that_throw_or_settle_again_harm_nothing(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript(
        "globalThis.log = [];"
        "const key = xocef.__registerPromise({"
        "  resolve(v) { log.push(v); xocef._internals.resolvePromise(key, 'again'); throw new Error('thrown'); },"
        "  reject() {} });"
        "xocef._internals.resolvePromise(key, 'once'); log.push('went on')")
    assert page.ask("log.join()") == "once,went on"


def test_settling_runs_without_a_this(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript(
        "globalThis.log = [];"
        "const key = xocef.__registerPromise({"
        "  resolve() { 'use strict'; log.push(this === undefined || this === globalThis || this === null); },"
        "  reject() {} });"
        "xocef._internals.resolvePromise(key, 1)")
    assert page.ask("log.join()") == "true"


# --- a page that goes away ----------------------------------------------------------------------------------------


def test_ten_thousand_open_promises_survive_a_navigation_of_their_page(host, open_view):
    held = HeldTasks(host.tools)
    page = open_view(PLAIN)
    page.view.execute_javascript(
        "for (let i = 0; i < 10000; ++i) xocef.loadValue('test', 'n' + i).catch(() => xocef.sendString('late'))")
    held.wait(10000)
    mark = page.events.mark()
    page.view.load_url(ECHO)
    page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=False, url=ECHO)
    held.run()
    # What the old page asked for does not reach the new one, whose own requests are answered.
    host.tools.dispatch_on_main_thread = False
    host.tools.preferences[STORE, "new"] = "'new'"
    assert outcome(page, "xocef.loadValue('test', 'new')") == ("resolved", '"new"')
    assert StringsReceived(strings=("late",)) not in page.events.everything()


@pytest.mark.parametrize("leave", ["reload", "cross-origin"])
def test_an_answer_for_an_earlier_page_settles_nothing_of_the_next(host, open_view, server, leave):
    held = HeldTasks(host.tools)
    host.tools.preferences[STORE, "a"] = "'for the old page'"
    page = open_view(server.page("/", "<title>first</title>"))
    page.view.execute_javascript(tell("xocef.loadValue('test', 'a')"))
    held.wait()
    mark = page.events.mark()
    if leave == "reload":
        page.view.reload()
    else:
        page.view.load_url(PLAIN)
    page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=True)
    page.wait_loaded(since=mark)
    # Another process counts its keys from 1 again, so this page waits under the old page's key.
    page.view.execute_javascript(
        "globalThis.log = []; for (let i = 0; i < 3; ++i) xocef.__registerPromise("
        "{ resolve: v => log.push(v), reject: v => log.push(v) });")
    assert page.ask("log.length") == "0"
    held.run()
    assert page.ask("log.join()") == ""


def test_an_answer_for_a_closed_view_does_nothing(host, open_view):
    held = HeldTasks(host.tools)
    page = open_view(PLAIN)
    page.view.execute_javascript("xocef.saveValue('test', 'a', 1)")
    held.wait()
    assert page.close()
    held.run()
    assert host.tools.preferences == {(STORE, "a"): "1"}
    assert open_view(PLAIN).ask("1 + 1") == "2"


def test_an_answer_after_the_engine_has_stopped_does_nothing(host, open_view):
    held = HeldTasks(host.tools)
    page = open_view(PLAIN)
    page.view.execute_javascript("xocef.saveValue('test', 'a', 1)")
    held.wait()
    assert page.close()
    host.module.shutdown_engine()
    held.run()
    assert host.tools.preferences == {(STORE, "a"): "1"}


def test_a_host_that_takes_no_more_tasks_leaves_the_promise_open(host, open_view):
    host.tools.dispatch_on_main_thread = True
    taken = iter([False, True])

    def post(task):
        return next(taken) and host.main.post(task)

    host.tools.post_task_on_main_thread = post
    page = open_view(PLAIN)
    page.view.execute_javascript(tell("xocef.saveValue('test', 'a', 1)"))
    assert outcome(page, "xocef.saveValue('test', 'b', 2)") == ("resolved", "undefined")
    assert host.tools.preferences == {(STORE, "b"): "2"}


def test_a_renderer_that_dies_in_a_round_trip_leaves_the_view_usable(host, open_view):
    held = HeldTasks(host.tools)
    host.tools.preferences[STORE, "a"] = "1"
    page = open_view(PLAIN)
    page.view.execute_javascript(tell("xocef.loadValue('test', 'a')"))
    held.wait()
    mark = page.events.mark()
    page.view.load_url("chrome://crash")
    page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=True)
    page.wait_loaded(since=mark)
    held.run()
    host.tools.dispatch_on_main_thread = False
    mark = page.events.mark()
    page.view.load_url(ECHO)
    page.events.wait_for_kind(AddressChanged, since=mark, url=ECHO)
    page.wait_loaded(since=mark)
    assert outcome(page, "xocef.loadValue('test', 'a')") == ("resolved", "1")
    assert len([e for e in page.events.all(StringsReceived) if e.strings[0] == "resolved"]) == 1


def test_a_frame_that_is_removed_while_it_waits_is_answered_to_nobody(host, open_view, server):
    held = HeldTasks(host.tools)
    host.tools.preferences[STORE, "a"] = "1"
    server.page("/inner", f"<script>{tell('xocef.loadValue(`test`, `a`)')}</script>")
    page = open_view(server.page("/", "<iframe src='/inner'></iframe>"))
    held.wait()
    page.view.execute_javascript("document.querySelector('iframe').remove()")
    assert page.ask("document.querySelectorAll('iframe').length") == "0"
    held.run()
    host.tools.dispatch_on_main_thread = False
    assert outcome(page, "xocef.loadValue('test', 'a')") == ("resolved", "1")
    assert len([e for e in page.events.all(StringsReceived) if e.strings[0] == "resolved"]) == 1


def test_a_frame_gets_its_answer(host, open_view, server):
    host.tools.preferences[STORE, "a"] = "[1]"
    server.page("/inner", f"<script>{tell('xocef.loadValue(`test`, `a`)')}</script>")
    page = open_view(server.page("/", "<iframe src='/inner'></iframe>"))
    assert settled(page) == ("resolved", "[1]")


def test_a_frame_that_has_left_the_page_is_rejected_at_once(open_view, server):
    server.page("/inner", "<p>inner</p>")
    page = open_view(server.page("/", "<iframe src='/inner'></iframe>"))
    page.view.execute_javascript(
        "const frame = document.querySelector('iframe'); const inner = frame.contentWindow.xocef;"
        "globalThis.answer = 'none'; frame.remove();"
        "inner.loadValue('test', 'a').then(() => { answer = 'resolved' }, (e) => { answer = String(e) })"
        ".then(() => xocef.sendString(['over', answer]))")
    event = page.events.wait_for(lambda e: isinstance(e, StringsReceived) and e.strings[0] == "over")
    assert event.strings[1] == "Error: xocef: this page has no view any more"


def test_a_sandboxed_frame_reaches_the_page_around_it_by_a_stored_value(open_view, server):
    # Meant: a stored value is JavaScript, and the answer runs in the top-level page whoever asked.
    server.page("/sandboxed", """<script>
        const register = () => xocef.__registerPromise({ resolve() {}, reject() {} });
        xocef.__saveValue(register(), { origin: 'test', name: 'a', value: 'xocef.sendString(document.title)' });
        xocef.__loadValue(register(), { origin: 'test', name: 'a' });
        </script>""")
    page = open_view(server.page("/", "<title>the page around</title><iframe sandbox='allow-scripts' src='/sandboxed'>"))
    page.wait_strings("the page around")
