"""A session without a ticket takes the launcher's cookie."""

import orbcef
import pytest

PLAIN = "xortv://webapps/Test/plain.html"


class Refusing(orbcef.Session):
    """A session that is authenticated, but gets no ticket."""

    def is_authenticated(self):
        return True

    def get_turnstile_url(self):
        return None

    def get_transient_ticket_url(self, url):
        return None


@pytest.fixture
def page(host, server, monkeypatch):
    def open_page(cookie):
        monkeypatch.setenv("ORBCEF_TURNSTILE_URL", server.url)
        if cookie is not None:
            monkeypatch.setenv("ORBHUBV9LAUNCHER_CASCOOKIE", cookie)
        session = Refusing()
        page = host.open_view(server.page("/first", "<title>first</title>"), session=session)
        # The first load may have come before the cookie.
        mark = page.events.mark()
        page.view.load_url(server.page("/second", "<title>second</title>"))
        page.events.wait_for_kind(orbcef.TitleChanged, since=mark, title="second")
        return next(headers for path, headers in server.requests if path == "/second")

    return open_page


@pytest.mark.environment(ORBCEF_LOG="", ORBCEF_LOG_PATH="{profile}")
def test_the_launchers_cookie_travels_to_the_service(page):
    assert "SESSION=abc" in page("SESSION=abc; Path=/")["Cookie"].split("; ")


@pytest.mark.environment(ORBCEF_LOG="", ORBCEF_LOG_PATH="{profile}")
def test_without_a_cookie_the_view_opens_and_one_warning_says_so(page, profile):
    assert "SESSION" not in page(None).get("Cookie", "")
    log = (profile / "cef_client_debug.log").read_text()
    assert log.count("Looking for a CASTGC cookie, but ORBHUBV9LAUNCHER_CASCOOKIE is not valued") == 1
