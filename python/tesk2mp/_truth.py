"""Calls whose results have so many digits that are proven to be true."""

import contextvars
import decimal
import math
from collections.abc import Callable, Iterator
from fractions import Fraction
from typing import Any

from . import _core, _progress, proven
from ._context import _Scope, digits
from ._errors import Error, InvalidArgument, InvalidType, NumericalFailure, refusal
from ._exact import has_end

_wanted: contextvars.ContextVar["true_digits | None"] = contextvars.ContextVar("true_digits", default=None)
# In the proof of a call: how many digits of it are wanted.
_wanted_digits: contextvars.ContextVar[int] = contextvars.ContextVar("wanted_digits", default=1)
# Functions of numbers and convolutions are correctly rounded; the others here are exact.
_ROUNDED = {
    *(name for name in dir(_core.Real) if not name.startswith("_")),
    *("fmod", "pow", "atan2", "hypot", "remainder", "fmin", "fmax", "fdim", "copysign", "nextafter", "beta", "binomial"),
    *("sqrt", "pi", "quantize", "round_parts", "rank", "sort", "rearrange", "invert", "fftshift", "ifftshift"),
    "convolve",
}


def wanted() -> bool:
    return _wanted.get() is not None


def wanted_scope() -> "true_digits | None":
    return _wanted.get()


class true_digits(_Scope):  # pylint: disable=invalid-name
    """true_digits(count, most=100000)

    In a block of statements, or a function, results have so many significant digits that are proven to be true, within 0.51
    units of the last: the working digits of each call grow until its error bounds are small enough, up to `most`; then there
    is a NumericalFailure. They are rounded to `count` digits; a number of which not even the sign is known, so far below the
    largest one of the result, is 0. This is for solve, inverse, determinant, least_squares and minimum_norm of full column
    rank, matrix_rank, eigenvalues and symmetric_eigenvalues, of pencils too, eigen, symmetric_eigen, singular_values,
    polynomial_zeros, and for what the modules call of these (linalg.solve, inv, det, lstsq, eig, eigvals, eigh, eigvalsh,
    svdvals, matrix_rank). Eigenvectors have norm 1 and are known up to a factor of modulus 1, those of multiple eigenvalues not
    at all: a NumericalFailure. Functions of numbers and convolve are correctly rounded anyway, and take decimal numbers
    of `count` digits at most; other routines are an InvalidArgument. Matrices are taken with all their digits, a Fraction
    exactly.

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
    if isinstance(number, Fraction):
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


def _quotient(name: str, number: Any) -> Fraction:
    """Exactly the number, one without a far exponent."""
    if isinstance(number, (int, Fraction)):
        return Fraction(number)
    try:
        value = decimal.Decimal(str(number))
    except decimal.InvalidOperation:
        value = decimal.Decimal("NaN")
    if not value.is_finite() or abs(value.adjusted()) > 10000:
        raise refusal(InvalidArgument, f"{name} in a block of true_digits() takes no {number} beside quotients")
    return Fraction(value)


def _whole(name: str, *groups: Any) -> tuple[Any, ...]:
    """The groups, all of them times one number if that is needed to make quotients without an end whole: the solutions,
    zeros or eigenvalues stay the same."""
    given = [each for group in groups for each in _numbers(group)]
    if all(not isinstance(each, Fraction) or has_end(each.denominator) for each in given):
        return groups
    factor = math.lcm(*(_quotient(name, each).denominator for each in given))

    def times(argument: Any) -> Any:
        if isinstance(argument, list):
            return [times(each) for each in argument]
        if isinstance(argument, _core.Complex):
            raise refusal(InvalidArgument, f"{name} in a block of true_digits() takes no Complex beside quotients")
        return int(_quotient(name, argument) * factor)

    return tuple(times(group) for group in groups)


def _conjugate(z: Any) -> Any:
    return z.conjugate() if isinstance(z, _core.Complex) else z


def _solve(a: Any, b: Any) -> Any:
    # Bounds hold for quotients in a, but not for those in b.
    if any(isinstance(each, Fraction) and not has_end(each.denominator) for each in _numbers(b)):
        a, b = _whole("solve", a, b)
    return proven.solve(a, b)


def _least_squares(a: Any, b: Any) -> Any:
    return proven.least_squares(*_whole("least_squares", a, b))


def _minimum_norm(a: Any, b: Any, tolerance: Any = None) -> Any:
    if tolerance is not None:
        raise refusal(InvalidArgument, "in a block of true_digits() a rank is exact: it takes no tolerance")
    return _least_squares(a, b)


def _zeros(a: Any) -> Any:
    return proven.zeros(*_whole("polynomial_zeros", a))


def _eigenvalues(a: Any, b: Any = None) -> Any:
    return proven.eigenvalues(a) if b is None else proven.eigenvalues(*_whole("eigenvalues", a, b))


def _check_apart(vectors: Any) -> None:
    """Ends the search for eigenvectors that are not unique."""
    scope = _wanted_digits.get()
    if _core.get_digits() > 500 + 10 * scope and any(not each.error.is_finite() for each in vectors[0]):
        raise refusal(NumericalFailure, f"{_core.get_digits()} digits do not tell eigenvalues apart that eigenvectors are asked of")


def _partner(root: proven.Root, others: list[proven.Root]) -> int | None:
    """The one of others, discs of conjugate numbers, that meets the disc of the root, if it is one alone."""
    with decimal.localcontext() as context:
        context.prec = _core.get_digits() + 5
        meets = []
        for k, other in enumerate(others):
            differences = [abs(one - two) for (one, _), (two, _) in zip(root.parts(), proven.Root.parts(_mirrored(other)))]
            if max(differences) <= root.error + other.error:
                meets.append(k)
    return meets[0] if len(meets) == 1 else None


def _mirrored(root: proven.Root) -> proven.Root:
    return root._replace(value=_conjugate(root.value))


def _eigen(a: Any, b: Any = None) -> Any:
    """Left eigenvectors are right ones of the conjugate transpose."""
    if b is not None:
        raise refusal(InvalidArgument, "in a block of true_digits() pencils have eigenvalues, but no eigenvectors")
    values, right = proven.eigen(a)
    others, left = proven.eigen([[_conjugate(row[j]) for row in a] for j in range(len(a))])
    order = [_partner(value, others) for value in values]
    unknown = decimal.Decimal("Infinity")
    left = [[row[0]._replace(error=unknown) if k is None else row[k] for k in order] for row in left]
    for vectors in (right, left):
        if vectors:
            _check_apart(vectors)
    return values, right, left


def _symmetric(proof: Callable[..., Any], pencils: bool) -> Callable[..., Any]:
    """The proof, of the matrix of which a triangle is given."""

    def call(
        a: Any, triangle: str = "lower", b: Any = None, problem: int = 1, interval: Any = None, indices: Any = None
    ) -> Any:
        if triangle not in ("lower", "upper"):
            raise refusal(InvalidArgument, f"triangle is 'lower' or 'upper', not {triangle!r}")
        if any(each is not None for each in (interval, indices)) or problem != 1:
            raise refusal(InvalidArgument, "in a block of true_digits() all eigenvalues of problem 1 are found")
        if b is not None and not pencils:
            raise refusal(InvalidArgument, "in a block of true_digits() pencils have eigenvalues, but no eigenvectors")
        given = [a] if b is None else [a, b]
        for each in given:
            if any(not isinstance(row, list) or len(row) != len(each) for row in each):
                raise refusal(InvalidArgument, "a square matrix is needed")
        if triangle == "upper":
            given = [
                [[_conjugate(each[j][i]) for j in range(i + 1)] + [0] * (len(each) - i - 1) for i in range(len(each))]
                for each in given
            ]
        result = proof(*given) if b is None else proof(*_whole("symmetric_eigenvalues", *given))
        if not pencils and result[1]:
            _check_apart(result[1])
        return result

    return call


_PROOFS: dict[str, Callable[..., Any]] = {
    "solve": _solve,
    "inverse": proven.inverse,
    "determinant": proven.determinant,
    "least_squares": _least_squares,
    "minimum_norm": _minimum_norm,
    "eigenvalues": _eigenvalues,
    "eigen": _eigen,
    "symmetric_eigen": _symmetric(proven.symmetric_eigen, False),
    "symmetric_eigenvalues": _symmetric(proven.symmetric_eigenvalues, True),
    "singular_values": proven.singular_values,
    "polynomial_zeros": _zeros,
}


def no_proof(name: str) -> Error:
    known = ", ".join([*_PROOFS, "matrix_rank"])
    return refusal(
        InvalidArgument, f"{name} has no proven results: a block of true_digits() is for {known}, and functions of numbers"
    )


def _matrix_rank(a: Any, tolerance: Any = None) -> int:
    if tolerance is not None:
        raise refusal(InvalidArgument, "in a block of true_digits() a rank is exact: it takes no tolerance")
    found = proven.rank(*_whole("matrix_rank", a))
    if found is None:
        raise refusal(NumericalFailure, "the exact rank would take too long")
    return found


def _with_bounds(roots: list[proven.Root], count: int) -> list[tuple[Any, decimal.Decimal]]:
    """Zeros with so many digits, largest moduli first, each with a bound of its distance from the exact one."""
    context = decimal.Context(20, decimal.ROUND_UP, decimal.MIN_EMIN, decimal.MAX_EMAX)
    pairs: list[tuple[Any, decimal.Decimal]] = []
    for root in roots:
        zero = _plain(root, count)
        error = root.error
        for (part, _), rounded in zip(root.parts(), (zero.real, zero.imag)):
            rounded = decimal.Decimal(str(rounded))
            error = context.add(error, context.subtract(part, rounded).copy_abs())
        pairs.append((zero, error))

    def modulus(pair: tuple[Any, decimal.Decimal]) -> decimal.Decimal:
        return decimal.Decimal(str(abs(pair[0])))

    return sorted(pairs, key=modulus, reverse=True)


def call(core: Callable[..., Any], arguments: Any, named: dict[str, Any]) -> Any:
    """The call with proven digits, in a block that asks for them."""
    name = core.__name__
    scope = _wanted.get()
    assert scope is not None
    count = scope.count
    if name not in _ROUNDED and name not in _PROOFS and name != "matrix_rank":
        raise no_proof(name)
    model = arguments[0] if arguments else None
    given = [each if hasattr(each, "__array__") else _lists(each) for each in arguments]
    options = {key: _lists(value) for key, value in named.items()}
    if name in _ROUNDED:
        for each in _numbers([*given, *options.values()]):
            if isinstance(each, Fraction) or _length(each) > count:
                raise refusal(
                    InvalidArgument, f"{name} in a block of true_digits({count}) takes numbers of {count} decimal digits at most"
                )
        return core(*given, **options)
    given = [_lists(each) for each in given]
    if name == "matrix_rank":
        return _matrix_rank(*given, **options)
    proof = _PROOFS[name]
    working = max((_length(each) for each in _numbers([*given, *options.values()])), default=1)

    def problem() -> Any:
        # No number is rounded on its way in.
        with digits(max(working, _core.get_digits())):
            return proof(*given, **options)

    former = _wanted.set(None)
    count_before = _wanted_digits.set(count)
    try:
        with digits(count):
            found = proven.to_digits(count, problem, scope.most)
            result = _with_bounds(found, count) if name == "polynomial_zeros" else _plain(found, count)
    finally:
        _wanted_digits.reset(count_before)
        _wanted.reset(former)
    if hasattr(model, "__array__") and name != "polynomial_zeros":
        result = _as_array(result)
    return (result, len(given[0][0])) if name == "minimum_norm" else result


def _as_array(result: Any) -> Any:
    import numpy

    if isinstance(result, tuple):
        return tuple(_as_array(each) for each in result)
    return numpy.array(result, dtype=object) if isinstance(result, list) else result
