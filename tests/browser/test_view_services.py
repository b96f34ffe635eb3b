"""What a page and its host ask of a view: its zoom, its size, its home, its developer tools."""

import pytest
from desktop import wait_for_tools
from orbcef import DocumentSize, LoadingStateChanged, StringsReceived, ZoomChanged

PLAIN = "xortv://webapps/Test/plain.html"
ECHO = "xortv://webapps/Test/echo.html"


@pytest.fixture
def zoomed(open_view):
    """A page that tells its scale whenever that changes, and the wait for it."""
    page = open_view(PLAIN)
    page.view.execute_javascript(
        "addEventListener('resize', () => xocef.sendString(['scale', devicePixelRatio.toFixed(2)]))")
    return page


def test_the_host_sets_and_changes_the_zoom(zoomed):
    zoomed.view.set_zoom_level(1.0)
    zoomed.wait_strings("scale", "1.20")
    zoomed.view.change_zoom_level(1.0)
    zoomed.wait_strings("scale", "1.44")
    zoomed.view.change_zoom_level(-2.0)
    zoomed.wait_strings("scale", "1.00")
    # The host knows what it did.
    assert not zoomed.events.all(ZoomChanged)


def test_the_page_changes_its_zoom_and_the_host_hears_of_it(zoomed):
    zoomed.view.execute_javascript("xocef.zoomChanged(100)")
    zoomed.wait_strings("scale", "1.20")
    zoomed.view.execute_javascript("xocef.zoomReset()")
    zoomed.wait_strings("scale", "1.00")
    assert [e.change for e in zoomed.events.all(ZoomChanged)] == [1.0, 0.0]


def test_a_page_that_may_not_zoom_may_still_return_to_its_size(zoomed):
    zoomed.view.zoom_by_page_enabled = False
    zoomed.view.execute_javascript("xocef.zoomChanged(100)")
    zoomed.events.wait_for_kind(ZoomChanged, change=1.0)
    assert zoomed.ask("devicePixelRatio") == "1"
    zoomed.view.set_zoom_level(2.0)
    zoomed.wait_strings("scale", "1.44")
    zoomed.view.execute_javascript("xocef.zoomReset()")
    zoomed.wait_strings("scale", "1.00")


def test_the_wheel_and_the_key_of_the_zoom_work_unless_the_page_wants_them(zoomed):
    zoomed.view.execute_javascript(
        "const wheel = () => document.body.dispatchEvent(new WheelEvent('wheel',"
        " { ctrlKey: true, deltaY: -100, bubbles: true, cancelable: true }));"
        "const key = () => document.body.dispatchEvent(new KeyboardEvent('keydown',"
        " { ctrlKey: true, key: '0', keyCode: 48, bubbles: true, cancelable: true }));"
        "globalThis.test = { wheel, key }; wheel();")
    zoomed.events.wait_for_kind(ZoomChanged, change=pytest.approx(0.4))
    zoomed.view.execute_javascript("test.key()")
    zoomed.events.wait_for_kind(ZoomChanged, change=0.0)
    mark = zoomed.events.mark()
    zoomed.view.execute_javascript(
        "document.addEventListener('wheel', (event) => event.preventDefault(), { passive: false });"
        "test.wheel(); setTimeout(() => xocef.sendString('past the wheel'))")
    zoomed.wait_strings("past the wheel", since=mark)
    assert not [e for e in zoomed.events.everything()[mark:] if isinstance(e, ZoomChanged)]


def test_the_size_of_the_document_is_told_as_it_is_then(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript("document.body.style.height = '5000px'; xocef.sendDocumentSize()")
    size = page.events.wait_for_kind(DocumentSize)
    assert size.height >= 5000
    assert str(size.width) == page.ask("document.documentElement.scrollWidth")


def test_home_is_the_address_that_the_host_gives(open_view):
    page = open_view(PLAIN)
    page.view.home_url = ECHO
    mark = page.events.mark()
    page.view.execute_javascript("xocef.loadHome()")
    page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=False, url=ECHO)
    page.view.execute_javascript("xocef.receive('home')")
    page.events.wait_for_kind(StringsReceived, since=mark, strings=("echo", "home"))


def test_the_developer_tools_open_and_close_for_the_page_and_for_the_host(host, open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript("xocef.openDevTools()")
    wait_for_tools(host, True)
    page.view.execute_javascript("xocef.closeDevTools()")
    wait_for_tools(host, False)
    page.view.show_dev_tools()
    wait_for_tools(host, True)
    page.view.close_dev_tools()
    wait_for_tools(host, False)
    assert page.ask("1 + 1") == "2"
