"""The gallery of the installation, used as its reader uses it."""

import os

import pytest
from orbcef import ConsoleMessage, DocumentSize, LoadingStateChanged, ZoomChanged

GALLERY = "xortv://webapps/Welcome"
PAGES = ("index", "values", "view", "tools", "environment", "errors")
STORE = "ORBCefStore_Welcome"


@pytest.fixture
def gallery(open_view):
    def open_page(name):
        return open_view(f"{GALLERY}/{name}.html", configure=lambda view: setattr(view, "forward_console", True))

    return open_page


def press(page, name):
    page.view.execute_javascript(f"document.getElementById('{name}').click()")


def fill(page, name, text):
    page.view.execute_javascript(f"document.getElementById('{name}').value = {text!r}")


def wait_for_result(page, text):
    """The result is announced as an event of the page's own: a change of its text."""
    page.view.execute_javascript(
        "{ const result = document.getElementById('result');"
        "  const tell = () => result.textContent && xocef.sendString(['result', result.textContent]);"
        "  new MutationObserver(tell).observe(result, { childList: true, characterData: true, subtree: true });"
        "  tell(); }")
    page.wait_strings("result", text)


def test_every_page_leads_to_every_other_and_complains_of_nothing(gallery):
    page = gallery(PAGES[-1])
    for name in PAGES:
        mark = page.events.mark()
        page.view.execute_javascript(f"document.querySelector('nav a[href=\"{name}.html\"]').click()")
        page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=False, url=f"{GALLERY}/{name}.html")
        assert page.ask("document.getElementById('notice').hidden") == "true"
        assert page.ask("document.querySelector('[aria-current]').getAttribute('href')") == f"{name}.html"
        # Nothing is cut off at the side, also in a narrow window.
        assert page.ask("document.documentElement.scrollWidth <= innerWidth") == "true"
    assert not page.events.all(ConsoleMessage)


def test_a_value_is_saved_and_found_again_by_another_view(host, gallery):
    page = gallery("values")
    fill(page, "value", "Water the plants")
    press(page, "save")
    wait_for_result(page, "Saved note.")
    assert host.tools.preferences == {(STORE, "note"): '"Water the plants"'}

    other = gallery("values")
    press(other, "load")
    wait_for_result(other, "Loaded note: Water the plants")
    assert other.ask("document.getElementById('value').value") == "Water the plants"

    press(other, "remove")
    wait_for_result(other, "Removed note.")
    press(page, "load")
    wait_for_result(page, f"Error: Failed to read preference note from repository {STORE}")


def test_the_view_page_speaks_to_the_host(gallery):
    page = gallery("view")
    press(page, "tell")
    before = page.events.wait_for_kind(DocumentSize)
    press(page, "lengthen")
    mark = page.events.mark()
    press(page, "tell")
    after = page.events.wait_for_kind(DocumentSize, since=mark)
    assert after.height > before.height
    press(page, "in")
    page.events.wait_for_kind(ZoomChanged, change=0.5)
    press(page, "reset")
    page.events.wait_for_kind(ZoomChanged, change=0.0)
    mark = page.events.mark()
    press(page, "home")
    page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=False, url=f"{GALLERY}/view.html")


def test_the_environment_page_shows_a_variable(gallery):
    page = gallery("environment")
    press(page, "read")
    wait_for_result(page, os.environ["PATH"])


def test_the_errors_page_shows_each_kind_of_error(gallery):
    page = gallery("errors")
    for button, text in (
        ("argument", "Thrown: TypeError: xocef.zoomChanged: step must be a finite number"),
        ("missing", f"Rejected: Error: Failed to read preference a value that nobody saved from repository {STORE}"),
        ("listener", "Reported: Error: from a listener"),
    ):
        press(page, button)
        wait_for_result(page, text)
