"""Real keys and a real mouse on a view: its shortcuts, and its context menu as the engine shows it."""

import pytest
from desktop import press, right_click, tools_windows, top_windows, wait_for_tools, wait_until
from orbcef import LoadingStateChanged, StringsReceived, ZoomChanged

pytestmark = [
    pytest.mark.own_display,
    pytest.mark.not_on_windows("keys and clicks would meet the tests beside it, on the one desktop"),
]

PLAIN = "xortv://webapps/Test/plain.html"
ECHO = "xortv://webapps/Test/echo.html"
CATALOGUE = "ORBCefClientHandler"
PAGE_ITEMS = ["Previous", "Next", "Refresh"]
LINK_ITEMS = ["OpenLink", "CopyLinkURL"]
EDIT_ITEMS = ["Undo", "Redo", "Cut", "Copy", "Paste", "Delete"]
LINK = "http://link.test/abcdefghi"

with_tools = pytest.mark.environment(ORBCEF_DEVTOOLS="1")


@pytest.fixture
def page(open_view):
    """A painted page that tells its keys and its scale."""
    page = open_view(PLAIN)
    page.view.execute_javascript(
        "addEventListener('keydown', (event) => xocef.sendString(['key', event.key]), true);"
        "addEventListener('resize', () => xocef.sendString(['scale', devicePixelRatio.toFixed(2)]));")
    wait_painted(page)
    return page


def wait_painted(page):
    mark = page.events.mark()
    page.view.execute_javascript(
        "requestAnimationFrame(() => requestAnimationFrame(() => xocef.sendString('painted')))")
    page.wait_strings("painted", since=mark)


def show(page, body):
    """Puts another body in the page, as large as the view."""
    page.view.execute_javascript(f"document.body.innerHTML = `{body}`; document.body.style.margin = 0;")
    wait_painted(page)


def wait_reloaded(page, since, url=PLAIN):
    page.events.wait_for_kind(LoadingStateChanged, since=since, is_loading=False, url=url)


class Labels(dict):
    """A catalogue whose labels are the names in their keys, and which remembers what was asked for."""

    def __init__(self):
        super().__init__()
        self.asked = []

    def get(self, key, default=None):
        catalogue, name = key
        assert catalogue == CATALOGUE
        kind, item, label = name.split(".")
        assert (kind, label) == ("ContextMenu", "Label")
        self.asked.append(item)
        return item


class Menu:
    """The context menu, from a right click to the choice of an item. `items` are all that it shows."""

    def __init__(self, host):
        self._host = host
        host.tools.catalogue = self._labels = Labels()

    @property
    def items(self):
        return list(self._labels.asked)

    def open(self):
        self._labels.asked.clear()
        before = top_windows()
        right_click()
        assert wait_until(self._host, lambda: top_windows() - before), "no menu is shown"
        self._before = before

    def choose(self, number):
        """Chooses an item by its number among those that are enabled, from 1."""
        press(*["Down"] * number, "Return")

    def dismiss(self):
        press("Escape")
        assert wait_until(self._host, lambda: not top_windows() - self._before), "the menu stays"


@pytest.fixture
def menu(host):
    return Menu(host)


# Keys.


def test_keys_zoom_and_the_host_is_not_told(page):
    press("ctrl+equal")
    page.wait_strings("scale", "1.08")
    press("ctrl+minus")
    page.wait_strings("scale", "1.00")
    press("ctrl+minus")
    page.wait_strings("scale", "0.93")
    mark = page.events.mark()
    assert not page.events.all(ZoomChanged)
    press("ctrl+0")
    page.wait_strings("scale", "1.00", since=mark)
    # The page itself tells of this one, whoever acts on it.
    page.events.wait_for_kind(ZoomChanged, change=0.0)
    assert len(page.events.all(ZoomChanged)) == 1


@pytest.mark.parametrize("key", ["ctrl+r", "F5", "shift+F5", "ctrl+F5", "ctrl+shift+r"])
def test_keys_reload_the_page(page, key):
    page.view.execute_javascript("globalThis.before = true")
    mark = page.events.mark()
    press(key)
    wait_reloaded(page, mark)
    assert page.ask("globalThis.before") == "undefined"


def test_a_reload_that_the_host_forbids_is_cancelled(page):
    page.view.reload_enabled = False
    page.view.execute_javascript("globalThis.before = true")
    press("ctrl+r", "ctrl+equal")
    page.wait_strings("scale", "1.08")
    assert page.ask("globalThis.before") == "true"


def test_keys_lead_home_and_through_the_history(open_view):
    page = open_view(PLAIN, home_url=ECHO)
    wait_painted(page)
    # Nothing lies before the first page.
    press("alt+Left")
    mark = page.events.mark()
    press("alt+Home")
    wait_reloaded(page, mark, ECHO)
    wait_painted(page)
    mark = page.events.mark()
    press("alt+Left")
    wait_reloaded(page, mark)
    wait_painted(page)
    mark = page.events.mark()
    press("alt+Right")
    wait_reloaded(page, mark, ECHO)


def test_a_page_that_wants_a_key_keeps_it(page):
    page.view.execute_javascript(
        "addEventListener('keydown', (event) => { if ('=r'.includes(event.key)) event.preventDefault(); });"
        "globalThis.before = true")
    press("ctrl+equal", "ctrl+r", "ctrl+minus")
    page.wait_strings("scale", "0.93")
    assert page.ask("globalThis.before") == "true"


@pytest.mark.parametrize("lock", ["Num_Lock", "Caps_Lock"])
def test_the_engine_tells_of_no_lock_key_so_shortcuts_work_with_one(page, lock):
    """A key that comes with one is no shortcut, but at this version of the engine none does: docs/input.md."""
    page.view.execute_javascript(
        "addEventListener('keydown', (event) =>"
        f" xocef.sendString(['lock', String(event.getModifierState('{lock.replace('_', '')}'))]))")
    press(lock, "a")
    page.wait_strings("lock", "true")
    press("ctrl+equal")
    page.wait_strings("scale", "1.08")


@with_tools
@pytest.mark.parametrize("key", ["F12", "ctrl+shift+i", "ctrl+shift+j"])
def test_a_key_opens_the_tools_with_their_variable(host, page, key):
    press(key)
    wait_for_tools(host, True)
    page.view.close_dev_tools()
    wait_for_tools(host, False)


@pytest.mark.environment(ORBCEF_DEVTOOLS_PORT="0")
def test_no_key_opens_the_tools_without_their_variable(page):
    press("F12", "ctrl+shift+i", "ctrl+shift+j")
    page.wait_strings("key", "F12")
    # What acts on this key has seen the others.
    press("ctrl+equal")
    page.wait_strings("scale", "1.08")
    assert page.ask("1 + 1") == "2"
    assert not tools_windows()


# The context menu.


@with_tools
def test_the_menu_opens_the_tools_with_their_variable(host, page, menu):
    menu.open()
    assert menu.items == [*PAGE_ITEMS, "DevTools"]
    # There is no history yet, so the reload comes first.
    menu.choose(2)
    wait_for_tools(host, True)
    page.view.close_dev_tools()
    wait_for_tools(host, False)


def test_the_menu_reloads_the_page(page, menu):
    page.view.execute_javascript("globalThis.before = true")
    mark = page.events.mark()
    menu.open()
    assert menu.items == PAGE_ITEMS
    menu.choose(1)
    wait_reloaded(page, mark)
    assert page.ask("globalThis.before") == "undefined"


def test_the_menu_goes_back_where_there_is_a_history(page, menu):
    mark = page.events.mark()
    page.view.load_url(ECHO)
    wait_reloaded(page, mark, ECHO)
    wait_painted(page)
    mark = page.events.mark()
    menu.open()
    menu.choose(1)
    wait_reloaded(page, mark)


def test_a_bare_page_of_a_view_without_history_and_reload_has_no_menu(page, menu):
    page.view.history_enabled = False
    page.view.reload_enabled = False
    page.view.execute_javascript("addEventListener('contextmenu', () => xocef.sendString('clicked'))")
    before = top_windows()
    right_click()
    page.wait_strings("clicked")
    # A menu would take the key.
    press("a")
    page.wait_strings("key", "a")
    assert page.ask("1 + 1") == "2"
    assert top_windows() == before
    assert menu.items == []
    page.view.reload_enabled = True
    menu.open()
    assert menu.items == ["Refresh"]
    menu.dismiss()


def test_the_menu_resets_the_zoom_and_the_host_is_not_told(page, menu):
    page.view.reload_enabled = False
    page.view.history_enabled = False
    page.view.set_zoom_level(1.0)
    page.wait_strings("scale", "1.20")
    wait_painted(page)
    menu.open()
    assert menu.items == ["ResetZoom"]
    menu.choose(1)
    page.wait_strings("scale", "1.00")
    assert not page.events.all(ZoomChanged)


def test_about_the_first_half_of_a_link_is_copied(host, page, menu):
    show(page, f"<a href='{LINK}' style='position: fixed; inset: 0'>link</a><textarea></textarea>")
    menu.open()
    assert menu.items == LINK_ITEMS
    menu.choose(2)
    page.view.execute_javascript(
        "const area = document.querySelector('textarea'); area.focus();"
        "area.addEventListener('paste', (event) =>"
        " xocef.sendString(['pasted', event.clipboardData.getData('text')]));")

    def pasted():
        mark = page.events.mark()
        page.view.paste()
        return page.events.wait_for(
            lambda event: isinstance(event, StringsReceived) and event.strings[0] == "pasted", since=mark).strings[1]

    # The engine asks for the text as any other program would.
    assert wait_until(host, pasted)
    assert pasted() == LINK[:len(LINK) // 2] == "http://link.t"


def test_the_menu_opens_a_link_in_the_view(page, menu):
    show(page, f"<a href='{ECHO}' style='position: fixed; inset: 0'>link</a>")
    mark = page.events.mark()
    menu.open()
    menu.choose(1)
    wait_reloaded(page, mark, ECHO)


def test_a_link_in_an_editable_area_offers_itself_and_the_edits(page, menu):
    show(page, f"<div contenteditable><a href='{LINK}' style='position: fixed; inset: 0'>link</a></div>")
    menu.open()
    assert menu.items == [*LINK_ITEMS, *EDIT_ITEMS]
    menu.dismiss()


def test_a_selection_on_the_page_offers_the_edits_in_place_of_the_page(page, menu):
    show(page, "<p style='font-size: 120px; margin: 0'>text text text text text text text text text</p>")
    page.view.execute_javascript("getSelection().selectAllChildren(document.body)")
    menu.open()
    assert menu.items == EDIT_ITEMS
    menu.dismiss()


def test_the_menu_cuts_what_is_selected(page, menu):
    show(page, "<textarea style='position: fixed; inset: 0'>word</textarea>")
    page.view.execute_javascript(
        "const area = document.querySelector('textarea'); area.focus(); area.select();"
        "area.addEventListener('input', () => xocef.sendString(['left', area.value]));")
    menu.open()
    assert menu.items == EDIT_ITEMS
    # Undo and redo have nothing to do yet.
    menu.choose(1)
    page.events.wait_for_kind(StringsReceived, strings=("left", ""))
