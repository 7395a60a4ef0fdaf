"""Calls whose results have so many digits that are proven to be true."""

import contextvars
import decimal
import fractions
from collections.abc import Callable, Iterator
from typing import Any

from . import _core, _progress, proven
from ._context import _Scope, digits
from ._errors import Error, InvalidArgument, InvalidType, refusal

_wanted: contextvars.ContextVar["true_digits | None"] = contextvars.ContextVar("true_digits", default=None)
# Functions of numbers are correctly rounded, and the others here are exact.
_ROUNDED = {
    *(name for name in dir(_core.Real) if not name.startswith("_")),
    *("fmod", "pow", "atan2", "hypot", "remainder", "fmin", "fmax", "fdim", "copysign", "nextafter", "beta", "binomial"),
    *("sqrt", "pi", "quantize", "round_parts", "rank", "sort", "rearrange", "invert", "fftshift", "ifftshift"),
}


def wanted() -> bool:
    return _wanted.get() is not None


class true_digits(_Scope):  # pylint: disable=invalid-name
    """true_digits(count, most=100000)

    In a block of statements, or a function, results have so many significant digits that are proven to be true, within 0.51
    units of the last: the working digits of each call grow until its error bounds are small enough, up to `most`; then there
    is a NumericalFailure. They are rounded to `count` digits; a number of which not even the sign is known, so far below the
    largest one of the result, is 0. This is for solve, inverse, determinant, eigenvalues, symmetric_eigen,
    symmetric_eigenvalues, singular_values, and for what the modules call of these (linalg.solve, inv, det, eigvals, eigh,
    eigvalsh, svdvals). Functions of numbers are correctly rounded anyway, and take decimal numbers of `count` digits at most;
    other routines are an InvalidArgument. Matrices are taken with all their digits, a Fraction exactly.

    >>> with true_digits(30):
    ...     symmetric_eigenvalues([[1, 1], [1, 0]])
    [Decimal('-0.618033988749894848204586834366'), Decimal('1.61803398874989484820458683437')]
    """

    def __init__(self, count: int, most: int = 100000) -> None:
        if not (isinstance(count, int) and isinstance(most, int)):
            raise refusal(InvalidType, "numbers of digits are integers")
        if count < 1 or most < count:
            raise refusal(InvalidArgument, f"{count} true digits with at most {most} working digits")
        self.count = count
        self.most = most

    def __repr__(self) -> str:
        return f"true_digits({self.count})"

    def __reduce__(self) -> tuple[type, tuple[int, int]]:
        return true_digits, (self.count, self.most)

    def _enter(self) -> Any:
        inner = digits(self.count)
        inner.__enter__()
        _progress.count_scopes(1)
        return _wanted.set(self), inner

    def _leave(self, former: Any) -> None:
        scope, inner = former
        _wanted.reset(scope)
        _progress.count_scopes(-1)
        inner.__exit__(None, None, None)


def _numbers(argument: Any) -> Iterator[Any]:
    if hasattr(argument, "__iter__") and not isinstance(argument, str):
        for each in argument:
            yield from _numbers(each)
    elif isinstance(argument, _core.Complex):
        yield from (argument.real, argument.imag)
    else:
        yield argument


def _lists(argument: Any) -> Any:
    """Sequences and generators as lists, which can be gone through again."""
    if hasattr(argument, "__iter__") and not isinstance(argument, str):
        return [_lists(each) for each in argument]
    return argument


def _length(number: Any) -> int:
    """The digits that hold a number, at most: those that it is written with, less zeros at the end."""
    if isinstance(number, fractions.Fraction):
        return _length(number.numerator) + _length(number.denominator)
    if isinstance(number, int):
        number = decimal.Decimal(number)
    if isinstance(number, decimal.Decimal):
        return len(bytes(number.as_tuple().digits).rstrip(b"\0"))
    return sum(each.isdigit() for each in str(number))


def _rounded(part: decimal.Decimal, error: decimal.Decimal, count: int) -> decimal.Decimal:
    if error and error >= part.copy_abs():
        return decimal.Decimal(0)
    return decimal.Context(count, decimal.ROUND_HALF_EVEN, decimal.MIN_EMIN, decimal.MAX_EMAX).plus(part)


def _plain(result: Any, count: int) -> Any:
    """Bounded numbers and roots as numbers of so many digits."""
    if hasattr(result, "parts"):
        parts = [_rounded(part, error, count) for part, error in result.parts()]
        if len(parts) == 2:
            return _core.Complex(*parts)
        return _core.Real(parts[0]) if _core._results.get() else parts[0]
    if isinstance(result, (list, tuple)):
        return type(result)([_plain(each, count) for each in result])
    return result


def _with_all_digits(given: list[Any], name: str, right: bool) -> int:
    lengths = [_length(each) for each in _numbers(given)]
    if right and any(isinstance(each, fractions.Fraction) for each in _numbers(given[1:])):
        raise refusal(InvalidArgument, f"{name} in a block of true_digits() takes right-hand sides in decimal")
    return max(lengths, default=1)


def _eigenvalues(a: Any, b: Any = None) -> Any:
    if b is not None:
        raise refusal(InvalidArgument, "pencils have no proven eigenvalues in a block of true_digits()")
    return proven.eigenvalues(a)


def _symmetric(proof: Callable[[Any], Any]) -> Callable[..., Any]:
    """The proof, of the matrix of which a triangle is given."""

    def call(
        a: Any, triangle: str = "lower", b: Any = None, problem: int = 1, interval: Any = None, indices: Any = None
    ) -> Any:
        if triangle not in ("lower", "upper"):
            raise refusal(InvalidArgument, f"triangle is 'lower' or 'upper', not {triangle!r}")
        if any(not isinstance(row, list) or len(row) != len(a) for row in a):
            raise refusal(InvalidArgument, "a square matrix is needed")
        if any(each is not None for each in (b, interval, indices)):
            raise refusal(InvalidArgument, "in a block of true_digits() all eigenvalues of one matrix are found")
        if triangle == "upper":
            a = [[_conjugate(a[j][i]) for j in range(i + 1)] + [0] * (len(a) - i - 1) for i in range(len(a))]
        return proof(a)

    return call


def _conjugate(z: Any) -> Any:
    return z.conjugate() if isinstance(z, _core.Complex) else z


_PROOFS: dict[str, Callable[..., Any]] = {
    "solve": proven.solve,
    "inverse": proven.inverse,
    "determinant": proven.determinant,
    "eigenvalues": _eigenvalues,
    "symmetric_eigen": _symmetric(proven.symmetric_eigen),
    "symmetric_eigenvalues": _symmetric(proven.symmetric_eigenvalues),
    "singular_values": proven.singular_values,
}


def no_proof(name: str) -> Error:
    known = ", ".join(_PROOFS)
    return refusal(
        InvalidArgument, f"{name} has no proven results: a block of true_digits() is for {known}, and functions of numbers"
    )


def call(core: Callable[..., Any], arguments: Any, named: dict[str, Any]) -> Any:
    """The call with proven digits, in a block that asks for them."""
    name = core.__name__
    scope = _wanted.get()
    assert scope is not None
    count = scope.count
    if name not in _ROUNDED and name not in _PROOFS:
        raise no_proof(name)
    model = arguments[0] if arguments else None
    given = [each if hasattr(each, "__array__") else _lists(each) for each in arguments]
    options = {key: _lists(value) for key, value in named.items()}
    if name in _ROUNDED:
        for each in _numbers([*given, *options.values()]):
            if isinstance(each, fractions.Fraction) or _length(each) > count:
                raise refusal(
                    InvalidArgument, f"{name} in a block of true_digits({count}) takes numbers of {count} decimal digits at most"
                )
        return core(*given, **options)
    given = [_lists(each) for each in given]
    proof = _PROOFS[name]
    working = _with_all_digits([*given, *options.values()], name, name == "solve")

    def problem() -> Any:
        # No number is rounded on its way in.
        with digits(max(working, _core.get_digits())):
            return proof(*given, **options)

    former = _wanted.set(None)
    try:
        with digits(count):
            result = _plain(proven.to_digits(count, problem, scope.most), count)
    finally:
        _wanted.reset(former)
    return _as_array(result) if hasattr(model, "__array__") else result


def _as_array(result: Any) -> Any:
    import numpy

    if isinstance(result, tuple):
        return tuple(_as_array(each) for each in result)
    return numpy.array(result, dtype=object) if isinstance(result, list) else result
