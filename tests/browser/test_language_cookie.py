"""A new view tells the site of its home page the language of the host, unless the site knows one already."""

from urllib.parse import urlsplit

import pytest

# Tells the page's cookies as soon as there are any: a cookie that the browser sets has no event in a page.
WATCH = """<!doctype html><script>
const watch = setInterval(() => {
  if (document.cookie) {
    clearInterval(watch);
    xocef.sendString(['cookies', document.cookie]);
  }
}, 10);
</script>"""


@pytest.mark.parametrize(("language", "base"), [("German", "de"), ("English", "en")])
def test_the_language_is_told_without_its_region(host, open_view, server, language, base):
    host.tools.language = language
    page = open_view(server.page("/", WATCH))
    page.wait_strings("cookies", f"hivelang={base}")


def test_all_hosts_beside_the_one_of_the_home_page_are_told(host, open_view, server):
    host.tools.language = "German"
    server.page("/", WATCH)
    port = urlsplit(server.url).port
    open_view(f"http://own.site.localhost:{port}/").wait_strings("cookies", "hivelang=de")
    beside = open_view(f"http://other.site.localhost:{port}/", home_url="")
    beside.wait_strings("cookies", "hivelang=de")


def test_a_site_that_knows_a_language_keeps_it(host, open_view, server):
    host.tools.language = "German"
    url = server.page("/", WATCH)
    server.headers["/"] = {"Set-Cookie": "hivelang=xx; Path=/"}
    # Without a home page nothing is told, so the first cookie is the site's own.
    open_view(url, home_url="")
    server.headers["/"] = {}
    # The second view has looked by the time that the third has.
    for _ in range(2):
        page = open_view(url)
    page.view.execute_javascript("fetch('/cookies').then(() => xocef.sendString('fetched'))")
    page.wait_strings("fetched")
    assert [headers["Cookie"] for path, headers in server.requests if path == "/cookies"] == ["hivelang=xx"]
