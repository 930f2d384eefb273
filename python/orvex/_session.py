"""An engine's run, from start to stop, and the ends of what was made in it.

The library wants every call on the thread that started the engine. The garbage collector comes on
any thread, and at any time: what it finds elsewhere, or within a call, waits in a queue for the
next call of the owner.
"""

from __future__ import annotations

import os
import weakref
from _thread import get_ident

from ._errors import HandleError
from ._library import NULL, call, ffi, guard, lib, local, text_of

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Callable, List, Optional, Tuple

    LogListener = Callable[[str], Any]


class Session:
    """What has to live as long as an engine runs, whatever becomes of the object for it."""

    def __init__(self, on_log: Optional[LogListener]) -> None:
        self.slot = ffi.new("orvex_engine*")
        self.owner = get_ident()
        self.process = os.getpid()
        self.ends: List[Tuple[Callable[..., int], Any]] = []
        self.interrupt: Optional[BaseException] = None
        self.callback = _callback_for(self, on_log) if on_log is not None else NULL

    @property
    def runs(self) -> bool:
        """Whether the engine was started, and not stopped."""
        return bool(self.slot[0])

    @property
    def is_here(self) -> bool:
        """Whether this is the thread and the process of the engine, outside of its calls."""
        return (get_ident() == self.owner and os.getpid() == self.process
                and not guard.busy)

    def start(self, options: Any) -> None:
        """Starts the engine on this thread."""
        _stop_lost(self.owner)
        options.log = self.callback
        _stop_with_thread(self)
        self.call(lib.orvex_engine_start, options, self.slot)

    def call(self, function: Callable[..., int], *arguments: Any) -> None:
        """Calls an operation, after the ends that have waited for one."""
        if self.ends and self.is_here:
            self._make_ends()
        try:
            call(function, *arguments)
        finally:
            if self.interrupt is not None:
                interrupt, self.interrupt = self.interrupt, None
                raise interrupt

    def _make_ends(self) -> None:
        while self.ends:
            destroy, handle = self.ends.pop(0)
            destroy(handle)

    def stop(self) -> None:
        """Stops the engine, and raises what is against it."""
        if self.runs:
            self.call(lib.orvex_engine_stop, self.slot[0])
            self.slot[0] = NULL
            self.ends.clear()

    def stop_quietly(self) -> None:
        """Stops an engine that was forgotten, now or when its thread is heard of again."""
        if not self.runs or os.getpid() != self.process:
            return
        if not self.is_here:
            _lost.append(self)
            return
        lib.orvex_engine_stop(self.slot[0])
        self.slot[0] = NULL
        self.ends.clear()

    def end(self, destroy: Callable[..., int], slot: Any) -> None:
        """Ends what was forgotten, now or with the next call."""
        handle, slot[0] = slot[0], NULL
        if not handle or not self.runs:
            return
        if self.is_here:
            destroy(handle)
        else:
            self.ends.append((destroy, handle))


# Engines that were forgotten where they couldn't be stopped.
_lost: List[Session] = []


def _stop_lost(owner: int) -> None:
    for session in [session for session in _lost if session.owner == owner]:
        _lost.remove(session)
        session.stop_quietly()


class _ThreadEnd:
    """Stops the engines of a thread as it ends: nobody could use or stop them later."""

    def __init__(self) -> None:
        self.sessions: weakref.WeakSet[Session] = weakref.WeakSet()

    def __del__(self) -> None:
        for session in list(self.sessions):
            session.stop_quietly()


_of_thread = local()


def _stop_with_thread(session: Session) -> None:
    if not hasattr(_of_thread, "end"):
        _of_thread.end = _ThreadEnd()
    _of_thread.end.sessions.add(session)


class _Report:
    """Has the interpreter tell of an error in its way: `sys.unraisablehook` takes nothing that a
    program could make itself, but what a `__del__` raises gets there."""

    def __init__(self, error: BaseException) -> None:
        self.error = error

    def __del__(self) -> None:
        raise self.error


def _callback_for(session: Session, on_log: LogListener) -> Any:
    """The library's callback. It holds the session weakly, or neither would ever go."""
    of_session = weakref.ref(session)

    def hear(_user: Any, line: Any) -> None:
        try:
            on_log(text_of(line))
        except Exception as error:  # pylint: disable=broad-except
            _Report(error)
        except BaseException as error:  # Ctrl-C: for the caller, when the library has come back
            heard = of_session()
            if heard is not None:
                heard.interrupt = error

    return ffi.callback("orvex_log_callback", hear)


class Handle:
    """Something that the library made: closed by `close`, by `with`, or when it is forgotten."""

    _kind = "handle"

    def __init__(self, session: Session, cdata: str, destroy: Callable[..., int]) -> None:
        self._session = session
        self._destroy = destroy
        # What ends it is there before it is: a Ctrl-C between the two would lose it otherwise.
        self._slot = ffi.new(cdata + "*")
        self._end = weakref.finalize(self, session.end, destroy, self._slot)
        self._end.atexit = False

    @property
    def closed(self) -> bool:
        """Whether it was closed, or its engine was."""
        return not self._slot[0] or not self._session.runs

    def _handle(self) -> Any:
        handle = self._slot[0]
        if not handle or not self._session.runs:
            raise HandleError(f"the {self._kind} is closed")
        return handle

    def close(self) -> None:
        """Ends it. A second time, or after its engine, nothing happens."""
        if not self.closed:
            self._session.call(self._destroy, self._slot[0])
        self._slot[0] = NULL
        self._end.detach()
