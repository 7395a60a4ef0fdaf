"""The working digits and the kind of results of a thread or an asyncio task."""

import contextlib
import contextvars
import decimal
import functools
import inspect
from collections.abc import Callable
from contextlib import AbstractContextManager
from types import TracebackType
from typing import Any, Self, TypeVar

from . import _core
from ._errors import InvalidArgument, InvalidType, refusal

_Function = TypeVar("_Function", bound=Callable[..., Any])


# The scopes that a thread or task has entered, the last one first, with what puts the former state back. One variable for
# all: those of contexts are never freed.
_entered: contextvars.ContextVar[tuple[tuple["_Scope", Any], ...]] = contextvars.ContextVar("entered", default=())


class _Scope:
    """A context manager and decorator that may be entered again, from several threads and tasks at once."""

    def _enter(self) -> Any:
        """Sets what the scope is for, and returns what _leave() needs to put the former state back."""
        raise NotImplementedError

    def _leave(self, former: Any) -> None:
        raise NotImplementedError

    def __enter__(self) -> Self:
        _entered.set(((self, self._enter()), *_entered.get()))
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, traceback: TracebackType | None
    ) -> None:
        entries = _entered.get()
        at = next((i for i, (scope, _) in enumerate(entries) if scope is self), None)
        if at is None:
            raise RuntimeError(f"{self!r} was not entered in this thread, task or context")
        _entered.set(entries[:at] + entries[at + 1 :])
        self._leave(entries[at][1])

    def __call__(self, function: _Function) -> _Function:
        if inspect.isgeneratorfunction(function) or inspect.isasyncgenfunction(function):
            raise refusal(
                InvalidType, "a generator runs between other statements of its caller: use `with` around what it computes"
            )
        if inspect.iscoroutinefunction(function):

            @functools.wraps(function)
            async def task(*arguments: Any, **named: Any) -> Any:
                with self:
                    return await function(*arguments, **named)

            return task  # type: ignore[return-value]

        @functools.wraps(function)
        def call(*arguments: Any, **named: Any) -> Any:
            with self:
                return function(*arguments, **named)

        return call  # type: ignore[return-value]


_MOST_DIGITS = 1_000_000


def checked(count: Any) -> int:
    """The number of digits, if it can be set."""
    if isinstance(count, bool) or not hasattr(count, "__index__"):
        raise refusal(InvalidType, f"a number of digits is an integer, not {type(count).__name__}")
    number = int(count.__index__())
    if not 1 <= number <= _MOST_DIGITS:
        shown = number if abs(number) < 10**20 else "that many"
        raise refusal(InvalidArgument, f"digits are 1 to {_MOST_DIGITS}, not {shown}")
    return number


class digits(_Scope):  # pylint: disable=invalid-name
    """digits(count)

    The working digits for a block of statements or a function, 1 to 1000000; the former ones come back after it, exceptions
    or not. The precision of Python's decimal arithmetic is the same meanwhile.

    They belong to the thread or the asyncio task: a new thread starts with the default, unless it runs in a copy of its
    maker's context (contextvars.copy_context().run); a new task starts with those of its maker. A generator has no context of
    its own: a block that it leaves by `yield` holds for the caller too.

    >>> with digits(50):
    ...     with digits(5):
    ...         inner = solve([[3]], [1])
    ...     inner, solve([[3]], [1])
    ([Decimal('0.33333')], [Decimal('0.33333333333333333333333333333333333333333333333333')])
    >>> from decimal import Decimal
    >>> @digits(30)
    ... def third():
    ...     return Decimal(1) / 3, solve([[3]], [1])[0]
    >>> third()
    (Decimal('0.333333333333333333333333333333'), Decimal('0.333333333333333333333333333333'))
    """

    def __init__(self, count: int) -> None:
        self._count = count

    def __repr__(self) -> str:
        return f"digits({self._count})"

    def __reduce__(self) -> tuple[type, tuple[int]]:
        return digits, (self._count,)

    def _enter(self) -> Any:
        token = _core._digits.set(_core.get_digits())
        try:
            _core.set_digits(checked(self._count))
            former = decimal.getcontext()
            context = former.copy()
            context.prec = _core.get_digits()
            decimal.setcontext(context)
        except BaseException:
            _core._digits.reset(token)
            raise
        return token, former

    def _leave(self, former: Any) -> None:
        token, context = former
        decimal.setcontext(context)
        _core._digits.reset(token)


class results(_Scope):  # pylint: disable=invalid-name
    """results(kind)

    The class of real results for a block of statements or a function: Decimal, as without it, or Real, whose operators work
    at the working digits. It belongs to the thread or task, as digits() does.

    >>> with results(Real):
    ...     x = solve([[3]], [1])
    >>> x, x[0] * 3
    ([Real('0.33333333333333333333')], Real('0.99999999999999999999'))
    """

    def __init__(self, kind: type[decimal.Decimal] | type[_core.Real]) -> None:
        if kind not in (decimal.Decimal, _core.Real):
            raise TypeError("results are of the class Decimal or Real")
        self._kind = kind

    def __repr__(self) -> str:
        return f"results({self._kind.__name__})"

    def __reduce__(self) -> tuple[type, tuple[type]]:
        return results, (self._kind,)

    def _enter(self) -> Any:
        return _core._results.set(self._kind is _core.Real)

    def _leave(self, former: Any) -> None:
        _core._results.reset(former)


def at(count: int | None) -> AbstractContextManager[Any]:
    """The block at so many digits, or at those that are set when there is no count."""
    if count is None:
        return contextlib.nullcontext()
    return digits(count)


def plain(x: Any) -> Any:
    """The Real x as a number of the class that results have."""
    return x if _core._results.get() else x.decimal()
