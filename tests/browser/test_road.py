"""The road of one string: page, renderer, browser process, host, and back into the page."""

import os
import threading

import orbcef
import targets
from harness import Host
from orbcef import (AddressChanged, LoadingStateChanged, StateChanged, StringsReceived, TitleChanged,
                    V8Context)
from processes import children

PLAIN = "xortv://webapps/Test/plain.html"
ECHO = "xortv://webapps/Test/echo.html"
WELCOME = "xortv://webapps/Welcome/index.html"


def test_a_string_of_the_page_reaches_the_host_and_the_host_answers(open_view):
    page = open_view(ECHO)
    page.view.execute_javascript('xocef.receive(["hello", "host"])')
    page.wait_strings("echo", "hello", "host")


def test_the_welcome_page_shows_the_answer(open_view):
    page = open_view(WELCOME)
    page.view.execute_javascript(
        "document.getElementById('message').value = 'Hi'; document.getElementById('send').click()")
    page.wait_strings("welcome.greet", "Hi")
    page.view.execute_javascript('xocef.receive(["welcome.answer", "Good day"])')
    page.wait_strings("welcome.answered", "Good day")
    assert page.ask("document.getElementById('answer').textContent.trim()") == "Good day"


def test_events_come_in_their_order(open_view):
    page = open_view(PLAIN)
    page.events.wait_for_kind(StateChanged, state=orbcef.STATE_DOM_READY)
    page.events.wait_for_kind(TitleChanged, title="Plain")
    kinds = [e for e in page.events.everything()
             if isinstance(e, (StateChanged, AddressChanged, V8Context)) or e == LoadingStateChanged(is_loading=False,
                                                                                                       url=PLAIN)]
    assert kinds[0] == StateChanged(state=orbcef.STATE_CREATED)
    assert AddressChanged(url=PLAIN) in kinds
    assert kinds.index(V8Context(created=True)) < kinds.index(StateChanged(state=orbcef.STATE_DOM_READY))
    # The engine tells the end of a load on another channel than a page's messages, and keeps no order between them. A
    # machine that is slow enough, as wine makes it, shows that.
    if not targets.IS_WINDOWS:
        assert kinds.index(StateChanged(state=orbcef.STATE_DOM_READY)) < kinds.index(
            LoadingStateChanged(is_loading=False, url=PLAIN))


def test_view_events_come_on_one_thread_that_is_not_the_hosts(open_view):
    page = open_view(PLAIN)
    threads = {e.thread for e in page.events.everything()}
    assert len(threads) == 1 and threading.get_native_id() not in threads


def test_a_navigation_unloads_the_page_and_makes_a_new_context(open_view):
    page = open_view(PLAIN)
    mark = page.events.mark()
    page.view.load_url(ECHO)
    page.events.wait_for_kind(StateChanged, since=mark, state=orbcef.STATE_PAGE_UNLOADED)
    page.events.wait_for_kind(V8Context, since=mark, created=False)
    page.events.wait_for_kind(V8Context, since=mark, created=True)
    page.wait_loaded(since=mark)
    assert page.view.current_url == ECHO


def test_a_reload_gives_the_page_a_working_xocef_again(open_view):
    page = open_view(ECHO)
    mark = page.events.mark()
    page.view.reload()
    page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=True)
    page.wait_loaded(since=mark)
    assert page.ask("typeof xocef.sendString") == "function"


def test_two_views_hear_only_their_own_pages(open_view):
    first, second = open_view(ECHO), open_view(ECHO)
    first.view.execute_javascript('xocef.receive("one")')
    second.view.execute_javascript('xocef.receive("two")')
    first.wait_strings("echo", "one")
    second.wait_strings("echo", "two")
    assert not [e for e in first.events.all(StringsReceived) if "two" in e.strings]
    assert not [e for e in second.events.all(StringsReceived) if "one" in e.strings]


def test_strings_keep_their_order_and_none_is_lost(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript("for (let i = 0; i < 2000; i++) xocef.sendString(String(i))")
    page.wait_strings("1999")
    numbers = [e.strings[0] for e in page.events.all(StringsReceived)]
    assert numbers == [str(i) for i in range(2000)]


def test_a_page_of_a_server_has_the_same_road(open_view, server):
    page = open_view(server.page("/", "<title>served</title><script>xocef.sendString(document.title)</script>"))
    page.wait_strings("served")
    # English without a setting is en-US; the engine adds the bare language itself.
    assert server.requests[0][1]["Accept-Language"].startswith("en-US")


def test_the_user_agent_names_the_engine_and_the_host(host, open_view):
    host.tools.release_level = 425
    page = open_view(PLAIN)
    assert page.ask("navigator.userAgent.match(/Chrome.*$/)[0]").startswith("Chrome/108.0.5359.125 7XO/425")


def test_a_frame_without_an_origin_of_its_own_sends_through_the_main_frame(open_view, server):
    server.page("/inner", "<script>xocef.sendString('from the frame')</script>")
    page = open_view(server.page("/", "<iframe src='/inner'></iframe>"))
    page.wait_strings("from the frame")


def test_the_console_is_silent_unless_asked_for(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript("console.log('silent')")
    assert page.ask("1") == "1"
    mark = page.events.mark()
    page.view.reload()
    page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=True)
    page.wait_loaded(since=mark)
    assert not page.events.all(orbcef.ConsoleMessage)


def test_the_console_comes_when_asked_for(open_view):
    page = open_view(PLAIN)
    page.view.forward_console = True
    page.view.execute_javascript("console.log('heard')", "xortv://webapps/mine.js", 41)
    line = page.events.wait_for_kind(orbcef.ConsoleMessage, message="heard")
    assert line.source == "xortv://webapps/mine.js"


def test_the_helper_is_the_only_sub_process(open_view):
    open_view(PLAIN)
    commands = [command for _, command in children(os.getpid())]
    assert commands and all(command.startswith(str(Host.HELPER)) for command in commands)
