"""What a browser test talks to: a host in this process, and loopback servers."""

import ctypes
import http.server
import os
import shutil
import sys
import threading
import time
from pathlib import Path

import orbcef
import targets
from orbcef import LoadingStateChanged, StringsReceived, scaled
from processes import children, open_files
from targets import REPOSITORY  # noqa: F401


def wait_for_no_children(seconds=5.0):
    """What is left of this process's children once they had time for an end of their own."""
    deadline = time.monotonic() + scaled(seconds)
    while (left := children(os.getpid())) and time.monotonic() < deadline:
        # The engine reaps its own children, so a wait for their end must look again and again.
        time.sleep(0.02)
    return left


class Page(orbcef.WindowedView):
    """A view with the waits that tests use."""

    def __init__(self, module, url, configure=None, **options):
        self._configure = configure
        super().__init__(module, url, **options)

    def configure(self, view):
        if self._configure:
            self._configure(view)

    def wait_loaded(self, since=0):
        return self.events.wait_for_kind(LoadingStateChanged, since=since, is_loading=False)

    def wait_strings(self, *strings, since=0):
        return self.events.wait_for_kind(StringsReceived, since=since, strings=tuple(strings))

    def ask(self, expression):
        """The value of a JavaScript expression as JSON text would have it, by way of a sent string."""
        mark = self.events.mark()
        self.view.execute_javascript(f"xocef.sendString(['test.answer', String({expression})])")
        answer = self.events.wait_for(
            lambda e: isinstance(e, StringsReceived) and e.strings[0] == "test.answer", since=mark)
        return answer.strings[1]


def close_in_window(host, view, window):
    """Closes a view that was made without a `Page`, and its window when the view's own is gone."""
    child = view.window
    view.close(True)
    view.release()
    assert host.main.run_until(lambda: window.close_requests > 0 or child in window.destroyed)
    window.destroy()
    window.close()


class Host:
    """A Python host with a loaded module. `finish` proves that nothing is left."""

    ROOT = targets.ROOT
    PAGES = targets.PAGES
    HELPER = ROOT / "code" / "bin" / targets.HELPER_FILE

    def __init__(self, root=ROOT):
        self.main = orbcef.MainThread()
        self.tools = orbcef.Tools(self.main, temp_directory=os.environ["ORBCEF_TEST_PROFILE"])
        self.module = orbcef.Module(root, self.tools)
        self.pages = []

    def open_view(self, url, loaded=True, **options):
        page = Page(self.module, url, **options)
        self.pages.append(page)
        if loaded:
            page.wait_loaded()
        return page

    def finish(self):
        gone = [page.close() for page in self.pages]
        references = [page.events.references for page in self.pages]
        self.main.close()
        self.module.shutdown_engine()
        assert all(gone), "the engine did not end its side of a view"
        assert not any(references), f"the module kept references on event tables: {references}"
        assert not self.tools.failures and not [f for p in self.pages for f in p.events.failures]
        left = wait_for_no_children()
        assert not left, f"sub-processes outlive the engine: {left}"
        assert not (files := self.open_files()), f"files are still open: {files}"

    @classmethod
    def open_files(cls):
        """Open files of the installation or the profile. The engine's own cache is the engine's affair."""
        profile = Path(os.environ["ORBCEF_TEST_PROFILE"])
        found = open_files(profile, (cls.ROOT / "webapps", cls.ROOT / "resources", cls.PAGES))
        # The cache wherever a test puts it, whose name may carry the host's release level, and a test's own
        # copy of the engine.
        not_ours = ("code", "cef_client_debug.log")
        return [name for name in found
                if not any(part in not_ours or part.startswith("WebCache") for part in Path(name).parts)]


def mirror(source, target, wanted=lambda name: True):
    """A second tree with the same files, without another copy of them where the file system can."""
    for path in Path(source).rglob("*"):
        name = path.relative_to(source)
        if not path.is_file() or not wanted(name.as_posix()):
            continue
        (target / name).parent.mkdir(parents=True, exist_ok=True)
        try:
            os.link(path, target / name)
        except OSError:
            shutil.copy(path, target / name)


class NativeErrors:
    """What the libraries of this process write to standard error."""

    def __init__(self, capture, path):
        self._capture = capture
        self._path = path
        # The module's C library on Windows is not Python's, and does not see what Python redirects.
        self._library = ctypes.CDLL("msvcrt") if sys.platform == "win32" else None
        if self._library:
            file = self._library._wopen(str(path), os.O_CREAT | os.O_RDWR | os.O_BINARY, 0o600)
            self._saved = self._library._dup(2)
            self._library._dup2(file, 2)
            self._library._close(file)

    def text(self):
        text = self._capture.readouterr().err
        if self._library:
            self._library._flushall()
            text += self._path.read_text(errors="replace")
        return text.replace("\r", "")

    def end(self):
        if self._library:
            self._library._dup2(self._saved, 2)
            self._library._close(self._saved)


class Server:
    """A loopback HTTP server on a port of its own. `pages` maps paths to (status, type, text), `headers` to more of
    them."""

    def __init__(self):
        self.pages = {}
        self.requests = []
        self.held = {}
        self.headers = {}
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                outer.requests.append((self.path, dict(self.headers)))
                if self.path in outer.held:
                    outer.held[self.path].wait(scaled(20))
                status, kind, text = outer.pages.get(self.path, (404, "text/plain", "missing"))
                body = text.encode()
                self.send_response(status)
                self.send_header("Content-Type", kind)
                self.send_header("Content-Length", str(len(body)))
                for name, value in outer.headers.get(self.path, {}).items():
                    self.send_header(name, value)
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self._server.daemon_threads = True
        self.url = f"http://127.0.0.1:{self._server.server_address[1]}"

    def page(self, path, text, status=200, kind="text/html"):
        self.pages[path] = (status, kind, text)
        return self.url + path

    def hold(self, path, release):
        """Requests of `path` are answered when the event `release` is set."""
        self.held[path] = release

    def __enter__(self):
        self._thread = threading.Thread(target=self._server.serve_forever, daemon=True)
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._server.shutdown()
        self._server.server_close()
        self._thread.join()
