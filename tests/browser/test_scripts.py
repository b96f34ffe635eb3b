"""Scripts of the host: at once on an idle page, in order at the end of a load."""

import threading

import orbcef
from harness import close_in_window
from orbcef import ConsoleMessage, LoadingStateChanged, StringsReceived

PLAIN = "xortv://webapps/Test/plain.html"


def console(view):
    view.forward_console = True


def test_scripts_given_before_the_browser_exists_run_after_the_first_load(host):
    events = orbcef.Events(host.main)
    view = host.module.create_view(events, None, PLAIN)
    view.execute_javascript("xocef.sendString('early')")
    window = orbcef.Window(host.main, 300, 200)
    view.create(window.handle, (0, 0, 300, 200), PLAIN)
    events.wait_for_kind(StringsReceived, strings=("early",))
    loaded = events.everything().index(LoadingStateChanged(is_loading=False, url=PLAIN))
    assert events.everything().index(StringsReceived(strings=("early",))) > loaded - 1
    close_in_window(host, view, window)


def test_scripts_of_a_page_that_still_loads_wait_and_run_in_their_order(open_view, server):
    release = threading.Event()
    # The image is answered only when the test says so: until then the page is loading.
    server.hold("/slow.png", release)
    page = open_view(server.page("/", "<title>slow</title><img src='/slow.png'>"), loaded=False, configure=console)
    page.events.wait_for_kind(orbcef.TitleChanged, title="slow")
    for i in range(3):
        page.view.execute_javascript(f"console.log('script {i}')", "xortv://webapps/mine.js", 7)
    assert not page.events.all(ConsoleMessage)
    release.set()
    page.events.wait_for_kind(ConsoleMessage, message="script 2")
    lines = page.events.all(ConsoleMessage)
    assert [line.message for line in lines] == ["script 0", "script 1", "script 2"]
    # A script that waited does not carry the place that its caller gave.
    assert not [line for line in lines if line.source == "xortv://webapps/mine.js"]


def test_a_script_without_a_url_on_an_idle_page_has_the_pages_own(open_view):
    page = open_view(PLAIN, configure=console)
    page.view.execute_javascript("console.log('here')")
    assert page.events.wait_for_kind(ConsoleMessage, message="here").source == PLAIN


def test_scripts_from_another_thread_run_in_their_order(open_view):
    page = open_view(PLAIN)

    def give():
        for i in range(200):
            page.view.execute_javascript(f"xocef.sendString('{i}')")

    thread = threading.Thread(target=give)
    thread.start()
    page.wait_strings("199")
    thread.join()
    assert [e.strings[0] for e in page.events.all(StringsReceived)] == [str(i) for i in range(200)]


def test_a_script_that_throws_harms_nothing(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript("throw new Error('no')")
    page.view.execute_javascript("}{ not a script")
    assert page.ask("1 + 1") == "2"
