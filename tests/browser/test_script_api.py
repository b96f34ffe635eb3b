"""A working `xocef` wherever and whenever a page asks for it."""

import contextlib
import os
import subprocess
import sys

import pytest
from orbcef import LoadingStateChanged, StringsReceived

PLAIN = "xortv://webapps/Test/plain.html"

# Sends `name` with what a loaded value and the type of a native's answer are: the whole road, in both directions.
TRY = """
function tryAll(name) {
  xocef.saveValue('test', name, [name])
    .then(() => xocef.loadValue('test', name))
    .then((value) => xocef.sendString([name, JSON.stringify(value), typeof xocef.getEnv('PATH')]),
      (error) => xocef.sendString([name, String(error)]));
}
"""


def works(page, name, since=0):
    event = page.events.wait_for(lambda e: isinstance(e, StringsReceived) and e.strings[0] == name, since=since)
    assert event.strings == (name, f'["{name}"]', "string")


def test_at_every_moment_of_a_load(open_view, server):
    page = open_view(server.page("/", f"""<!doctype html><script>{TRY}
        tryAll('before');
        document.addEventListener('readystatechange', () => tryAll(document.readyState));
        document.addEventListener('DOMContentLoaded', () => tryAll('ready'));
        addEventListener('load', () => {{ tryAll('load'); setTimeout(() => tryAll('after')); }});
        </script><p>text</p><script>tryAll('during')</script>
        <script type="module">tryAll('module')</script>"""))
    for name in ("before", "during", "interactive", "module", "ready", "complete", "load", "after"):
        works(page, name)


def test_in_frames_of_the_pages_own_site(open_view, server):
    server.page("/inner", f"<script>{TRY} tryAll('inner')</script><iframe src='/nested'></iframe>")
    server.page("/nested", f"<script>{TRY} tryAll('nested')</script>")
    server.page("/sandboxed", f"<script>{TRY} tryAll('sandboxed')</script>")
    srcdoc = f"<script>{TRY} tryAll(`srcdoc`)</script>".replace('"', "&quot;")
    page = open_view(server.page("/", f"""<!doctype html><iframe src="/inner"></iframe>
        <iframe srcdoc="{srcdoc}"></iframe><iframe sandbox="allow-scripts" src="/sandboxed"></iframe>
        <iframe id="blank"></iframe>
        <script>{TRY}
          const script = document.createElement('script');
          script.textContent = tryAll + "; tryAll('blank')";
          document.getElementById('blank').contentDocument.body.append(script);
        </script>"""))
    for name in ("inner", "nested", "srcdoc", "blank", "sandboxed"):
        works(page, name)


def test_a_frame_of_another_site_has_the_object_and_its_messages_go_nowhere(host, open_view, server):
    # Such a frame lives in a process of its own, where the page's main frame cannot be reached.
    other = server.url.replace("127.0.0.1", "localhost")
    server.page("/other", f"""<script>{TRY} tryAll('other'); xocef.sendString('from the other site');
        parent.postMessage(Object.keys(xocef).length, '*')</script>""")
    page = open_view(server.page("/", f"""<!doctype html><script>{TRY}
        addEventListener('message', ({{ data }}) => {{ tryAll('page'); xocef.sendString(['functions', data]); }});
        </script><iframe src="{other}/other"></iframe>"""))
    event = page.events.wait_for(lambda e: isinstance(e, StringsReceived) and e.strings[0] == "functions")
    assert event.strings[1] == page.ask("Object.keys(xocef).length")
    works(page, "page")
    assert not [e for e in page.events.all(StringsReceived) if e.strings[0] in ("other", "from the other site")]
    assert ("ORBCefStore_test", "other") not in host.tools.preferences


def test_after_a_reload_and_after_navigations(open_view, server):
    text = f"<title>served</title><script>{TRY} tryAll('served')</script>"
    first = server.page("/", text)
    page = open_view(first)
    works(page, "served")
    for go, url in ((lambda: page.view.reload(), first),
                    (lambda: page.view.load_url(first.replace("127.0.0.1", "localhost")),
                     first.replace("127.0.0.1", "localhost")),
                    (lambda: page.view.go_back(), first)):
        mark = page.events.mark()
        go()
        works(page, "served", since=mark)
        page.events.wait_for_kind(LoadingStateChanged, since=mark, is_loading=False, url=url)
    mark = page.events.mark()
    page.view.load_url(PLAIN)
    page.wait_loaded(since=mark)
    page.view.execute_javascript(f"{TRY} tryAll('local')")
    works(page, "local")


@contextlib.contextmanager
def busy_machine(page):
    """As many busy processes as there are processors, and an engine that has to stand back behind all of them."""
    (thread,) = {event.thread for event in page.events.all(LoadingStateChanged)}
    os.setpriority(os.PRIO_PROCESS, thread, 19)
    busy = [subprocess.Popen([sys.executable, "-c", "while True: pass"]) for _ in range(os.cpu_count())]
    try:
        yield
    finally:
        for process in busy:
            process.kill()
            process.wait()


@pytest.mark.not_on_windows("the priority of a thread has no effect on wine")
def test_in_a_page_of_another_site_whose_process_is_quicker_than_the_engine(open_view, server):
    first = server.page("/", "<script>xocef.sendString(location.hostname)</script>")
    other = first.replace("127.0.0.1", "localhost")
    page = open_view(first)
    with busy_machine(page):
        for _ in range(6):
            for url, name in ((other, "localhost"), (first, "127.0.0.1")):
                mark = page.events.mark()
                page.view.load_url(url)
                page.wait_strings(name, since=mark)


def test_under_a_strict_content_security_policy(open_view, server):
    for number, policy in enumerate((
        "default-src 'none'; script-src 'nonce-n'",
        "default-src 'none'; script-src 'nonce-n' 'strict-dynamic'; require-trusted-types-for 'script'; trusted-types 'none'",
        "default-src 'none'; script-src 'nonce-n'; sandbox allow-scripts",
    )):
        path = f"/{number}"
        server.headers[path] = {"Content-Security-Policy": policy}
        page = open_view(server.page(path, f"""<!doctype html>
            <script>xocef.sendString('must not run')</script>
            <script nonce="n">{TRY} tryAll('policy');
              xocef.addStringListener(([text]) => xocef.sendString(['heard', text]));
              let refused = 'no'; try {{ eval('1') }} catch {{ refused = 'yes' }} xocef.sendString(['refused', refused]);
            </script>"""))
        works(page, "policy")
        page.wait_strings("refused", "yes")
        page.view.execute_javascript("xocef.receive('hello')")
        page.wait_strings("heard", "hello")
        assert StringsReceived(strings=("must not run",)) not in page.events.everything()


def test_in_pages_without_a_server(open_view):
    for url in ("about:blank", "data:text/html,<p>data</p>"):
        page = open_view(url)
        page.view.execute_javascript(f"{TRY} tryAll('here')")
        works(page, "here")


def test_in_a_page_that_writes_itself_anew(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript(
        f"{TRY} document.open(); document.write('<p>new</p>'); document.close(); tryAll('rewritten')")
    works(page, "rewritten")


def test_workers_do_not_have_it(open_view, server):
    server.page("/worker.js", "postMessage(typeof xocef)", kind="text/javascript")
    page = open_view(server.page(
        "/", "<script>new Worker('/worker.js').onmessage = (e) => xocef.sendString(['worker', e.data])</script>"))
    page.wait_strings("worker", "undefined")


def test_a_page_cannot_take_it_away(open_view, server):
    page = open_view(server.page("/", f"""<script>
        try {{ xocef = 1 }} catch {{}} try {{ delete window.xocef }} catch {{}} try {{ xocef.sendString = 1 }} catch {{}}
        Object.prototype.resolve = 1; Object.prototype.origin = 2;
        {TRY} tryAll('kept')</script>"""))
    works(page, "kept")
