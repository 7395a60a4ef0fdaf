"""Reports of how long a call has been at work, from a thread beside it."""

import contextvars
import signal
import threading
import time
from collections.abc import Callable
from types import TracebackType
from typing import Any, Protocol

from ._context import _Scope
from ._errors import InvalidType, refusal

INTERVAL = 0.1


class Bar(Protocol):
    """What tqdm's bars are: update(n) adds n to what is done."""

    def update(self, n: float, /) -> object: ...


Progress = Callable[[float], object] | Bar

# The calls of a thread or task are reported to this; what counts the scopes of all of them lets calls without any go on
# without a look at it.
_report: contextvars.ContextVar[Progress | None] = contextvars.ContextVar("report", default=None)
_lock = threading.Lock()
scopes = 0


def count_scopes(change: int) -> None:
    global scopes
    with _lock:
        scopes += change


def current() -> Progress | None:
    return _report.get()


class progress(_Scope):  # pylint: disable=invalid-name
    """progress(report)

    Reports on every call of a block of statements, or of a function: report(seconds) is called with the seconds that the call
    has taken, ten times a second and at its end, from a thread of its own, in a copy of the caller's context. A bar of tqdm,
    or what else has a method update(n), gets the seconds since it was last told. An iterative solution without a monitor
    reports its iterations instead, each when it is done. An exception that the report raises ends a call of the main thread
    where Ctrl-C would be a KeyboardInterrupt, and is raised by it; other calls it follows when they end.

    >>> told = []
    >>> with progress(told.append):
    ...     x = solve([[2, 1], [1, 3]], [3, 4])
    >>> len(told) > 0, told[-1] < 60
    (True, True)
    """

    def __init__(self, report: Progress) -> None:
        if not callable(report) and not hasattr(report, "update"):
            raise refusal(InvalidType, f"a function or a bar with update() is needed, not {type(report).__name__}")
        self._to = report

    def __repr__(self) -> str:
        return f"progress({self._to!r})"

    def _enter(self) -> Any:
        count_scopes(1)
        return _report.set(self._to)

    def _leave(self, former: Any) -> None:
        _report.reset(former)
        count_scopes(-1)


class _Teller:
    """Tells a report, or a bar, how much is done."""

    def __init__(self, report: Any) -> None:
        if not callable(report) and not hasattr(report, "update"):
            raise refusal(InvalidType, f"a function or a bar with update() is needed, not {type(report).__name__}")
        self._report = report
        self._told = 0.0

    def __call__(self, done: float) -> None:
        if hasattr(self._report, "update"):
            self._report.update(done - self._told)
            self._told = done
        else:
            self._report(done)


class _Watch:
    """Tells how long the block takes."""

    def __init__(self, report: Progress) -> None:
        self._tell = _Teller(report)
        self._start = time.monotonic()
        self._caller = threading.current_thread()
        self._done = threading.Event()
        self._error: BaseException | None = None
        self._thread = threading.Thread(target=contextvars.copy_context().run, args=(self._run,), daemon=True)

    def _run(self) -> None:
        try:
            while not self._done.wait(INTERVAL):
                self._tell(time.monotonic() - self._start)
        except BaseException as error:  # pylint: disable=broad-except
            self._error = error
            # Another handler than Python's own would take this for a Ctrl-C.
            usual = hasattr(signal, "pthread_kill") and signal.getsignal(signal.SIGINT) is signal.default_int_handler
            if usual and self._caller is threading.main_thread() and not self._done.is_set():
                signal.pthread_kill(threading.main_thread().ident or 0, signal.SIGINT)

    def __enter__(self) -> None:
        self._thread.start()

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, traceback: TracebackType | None
    ) -> None:
        try:
            self._done.set()
            self._thread.join()
        except KeyboardInterrupt:
            if self._error is None:
                raise
            self._thread.join()
        if self._error is not None:
            raise self._error from None
        if kind is None:
            self._tell(time.monotonic() - self._start)


def call(core: Callable[..., Any], report: Progress, arguments: Any, named: dict[str, Any], iterates: bool) -> Any:
    """core(*arguments, **named), reported; what it calls itself is not."""
    former = _report.set(None)
    try:
        if iterates and named.get("monitor") is None:
            tell = _Teller(report)
            result = core(*arguments, **{**named, "monitor": lambda count, x, residual: tell(count)})
            tell(result[2])
            return result
        with _Watch(report):
            return core(*arguments, **named)
    finally:
        _report.reset(former)
