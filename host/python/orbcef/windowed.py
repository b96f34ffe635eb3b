"""A view in a window of its own, opened and closed in the right order."""

from __future__ import annotations

from types import TracebackType
from typing import Optional

from .events import STATE_CREATED, Events, StateChanged, is_event
from .module import Module
from .records import TextLike
from .session import Session
from .view import View
from .window import Window


class WindowedView:
    """``view``, ``events`` and ``window`` of one page. Main thread only.

    The constructor returns when the engine browser exists; ``configure`` is called with the view
    before that, for settings that must stand at its creation.
    """

    def __init__(
        self,
        module: Module,
        url: TextLike,
        *,
        home_url: Optional[TextLike] = None,
        width: int = 800,
        height: int = 600,
        events: Optional[Events] = None,
        session: Optional[Session] = None,
        timeout: float = 20.0,
    ) -> None:
        if module.tools is None:
            raise ValueError("the module has no tools")
        self._main_thread = module.tools.main_thread
        self._closed = False
        self.events = events or Events(self._main_thread)
        self.window = Window(self._main_thread, width, height)
        self.view = module.create_view(self.events, session, url if home_url is None else home_url)
        self.configure(self.view)
        self.view.create(self.window.handle, (0, 0, width, height), url)
        try:
            self.events.wait_for(is_event(StateChanged, state=STATE_CREATED), timeout)
        except TimeoutError:
            self.close()
            raise

    def configure(self, view: View) -> None:
        """For subclasses: settings before the engine browser is made."""

    def __enter__(self) -> "WindowedView":
        return self

    def __exit__(
        self,
        kind: Optional[type[BaseException]],
        failure: Optional[BaseException],
        trace: Optional[TracebackType],
    ) -> None:
        self.close()

    def close(self, timeout: float = 10.0) -> bool:
        """Closes the view, waits until the engine lets its window go, and destroys the own one.

        ``False`` if the engine did not end its side in time.
        """
        if self._closed:
            return True
        self._closed = True
        child = self.view.window
        self.view.close(True)
        self.view.release()
        gone = child is None or self._main_thread.run_until(
            lambda: self.window.lets_go_of(child), timeout
        )
        self.window.close()
        self.events.drop()
        return gone
