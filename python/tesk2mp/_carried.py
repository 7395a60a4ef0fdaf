"""Functions that take the digits of the place where they were made along: into other threads, processes and machines."""

from collections.abc import Callable
from decimal import Decimal
from typing import Any, Generic, ParamSpec, TypeVar

from . import _core, _truth
from ._context import _Scope, digits, results
from ._errors import InvalidType, refusal

_Parameters = ParamSpec("_Parameters")
_Result = TypeVar("_Result")


class _Carried(Generic[_Parameters, _Result]):
    """A function and the blocks that it is called in, the outermost one first."""

    def __init__(self, function: Callable[_Parameters, _Result], scopes: tuple[_Scope, ...]) -> None:
        self._function = self._call = function
        self._scopes = scopes
        for scope in reversed(scopes):
            self._call = scope(self._call)
        self.__name__ = getattr(function, "__name__", type(function).__name__)
        self.__doc__ = function.__doc__

    def __call__(self, *arguments: _Parameters.args, **named: _Parameters.kwargs) -> _Result:
        return self._call(*arguments, **named)

    def __repr__(self) -> str:
        return f"<{self.__name__} with {', '.join(map(repr, self._scopes))}>"

    def __reduce__(self) -> tuple[Any, ...]:
        return _Carried, (self._function, self._scopes)


def with_digits(function: Callable[_Parameters, _Result]) -> Callable[_Parameters, _Result]:
    """with_digits(function)

    The function, called wherever it may be as if here: with the digits of digits(), set_digits() or true_digits(), and the kind
    of results(), that are set now. It can be pickled if the function can, so that multiprocessing (whose workers start with 20
    digits where they are spawned), concurrent.futures, joblib and Dask take it: pool.map(with_digits(f), parameters). No
    generator function.

    >>> with digits(40):
    ...     third = with_digits(lambda x: solve([[3]], [x])[0])
    >>> third(1)
    Decimal('0.3333333333333333333333333333333333333333')
    """
    if not callable(function):
        raise refusal(InvalidType, f"a function is needed, not {type(function).__name__}")
    scope = _truth.wanted_scope()
    proofs = () if scope is None else (scope,)
    kind = results(_core.Real if _core._results.get() else Decimal)
    return _Carried(function, (*proofs, digits(_core.get_digits()), kind))
