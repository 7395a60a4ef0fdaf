"""Calls whose results have so many digits that are proven to be true."""

import contextvars
import decimal
import inspect
from collections.abc import Callable, Iterator
from fractions import Fraction
from typing import Any

from . import _bounded_transforms, _core, _progress, proven
from ._bounded import Bounded, evaluated, exact_data, is_number, numbers_in
from ._context import _MOST_DIGITS, _Scope, digits
from ._errors import Error, InvalidArgument, InvalidType, NumericalFailure, refusal

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

_OF_COMPLEX = {*(name for name in dir(_core.Complex) if not name.startswith("_")), "pow"}


def wanted() -> bool:
    return _wanted.get() is not None


def wanted_scope() -> "true_digits | None":
    return _wanted.get()


class true_digits(_Scope):  # pylint: disable=invalid-name
    """true_digits(count, most=100000)

    In a block of statements, or a function, results have so many significant digits that are proven to be true, within 0.51
    units of the last: the working digits of each call grow until its error bounds are small enough, up to `most`; then there
    is a NumericalFailure. They are rounded to `count` digits; a number of which not even the sign is known, so far below the
    largest one of the result, is 0. This is for solve, inverse, determinant, least_squares of full column
    rank, minimum_norm, pseudo_inverse, null_space, matrix_rank, cholesky, qr, svd, expm, sqrtm, logm, fractional_matrix_power, eigenvalues and symmetric_eigenvalues, of pencils too, eigen, symmetric_eigen, singular_values,
    polynomial_zeros, multiply, dot, norm, fft, rfft, dct, dst, fftn and rfftn with their inverses, sparse.linalg.spsolve, and for what the modules call of these (linalg.solve, inv, det, lstsq, eig, eigvals, eigh, eigvalsh,
    svdvals, matrix_rank). Infinite eigenvalues of exact pencils follow the finite ones; the diagonal of r of qr is positive.
    Eigenvectors have norm 1 and are known up to a factor of modulus 1, those of multiple eigenvalues not
    at all: a NumericalFailure. Functions of numbers and convolve are correctly rounded anyway, and take decimal numbers
    of `count` digits at most; other routines are an InvalidArgument.

    Matrices and vectors are taken with all their digits, a Fraction exactly. A function without arguments, or the name of a
    matrix of gallery() with its order, stands for what it gives with any number of digits: it is called anew at each
    precision, and its numbers, but for int and Fraction, count as right to the working digits.

    >>> with true_digits(30):
    ...     symmetric_eigenvalues([[1, 1], [1, 0]])
    [Decimal('-0.618033988749894848204586834366'), Decimal('1.61803398874989484820458683437')]
    >>> with true_digits(20):
    ...     determinant("hilbert(20)"), determinant(lambda: [[sqrt(2), 1], [1, sqrt(3)]])
    (Decimal('4.2061789566247226559E-226'), Decimal('1.4494897427831780982'))
    """

    def __init__(self, count: int, most: int = 100000) -> None:
        if not (isinstance(count, int) and isinstance(most, int)):
            raise refusal(InvalidType, "numbers of digits are integers")
        if count < 1 or most < count or most > _MOST_DIGITS:
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


def _lists(argument: Any) -> Any:
    """Sequences and generators as lists, which can be gone through again."""
    return argument if is_number(argument) else [_lists(each) for each in argument]


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


def _conjugate(z: Any) -> Any:
    return z.conjugate() if isinstance(z, (Bounded, _core.Complex)) else z


def _operand(a: Any, op: str) -> Any:
    if op not in ("none", "transpose", "conjugate_transpose"):
        raise refusal(InvalidArgument, f"an operation is 'none', 'transpose' or 'conjugate_transpose', not {op!r}")
    a = evaluated(a)
    if op == "none":
        return a
    conjugated = op == "conjugate_transpose"
    return [[_conjugate(each) if conjugated else each for each in column] for column in zip(*a)]


def _multiply(a: Any, b: Any, op_a: str = "none", op_b: str = "none") -> Any:
    return proven.multiply(_operand(a, op_a), _operand(b, op_b))


def _dot(x: Any, y: Any, conjugate: bool = False) -> Any:
    return proven.dot([_conjugate(each) for each in evaluated(x)] if conjugate else x, y)


def _check_tolerance(tolerance: Any) -> None:
    if tolerance is not None:
        raise refusal(InvalidArgument, "in a block of true_digits() a rank is exact: it takes no tolerance")


def _minimum_norm(a: Any, b: Any, tolerance: Any = None) -> Any:
    _check_tolerance(tolerance)
    return proven.minimum_norm(a, b)


def _pseudo_inverse(a: Any, tolerance: Any = None) -> Any:
    _check_tolerance(tolerance)
    return proven.pinv(a)


def _null_space(a: Any, tolerance: Any = None) -> Any:
    _check_tolerance(tolerance)
    return proven.null_space(a)


def _qr(a: Any, pivoting: bool = False) -> Any:
    if pivoting:
        raise refusal(InvalidArgument, "in a block of true_digits() qr() has no pivoting")
    return _known_in_time(proven.qr(a))


def _svd(a: Any) -> Any:
    u, s, v = proven.svd(a)
    for vectors in (u, v):
        if vectors:
            _check_apart(vectors)
    return u, s, v


def _known_in_time(result: Any) -> Any:
    """Ends the search for what does not exist."""
    parts = [error for _, error in proven._parts(result)]
    if parts and not any(error.is_finite() for error in parts) and _core.get_digits() > 500 + 10 * _wanted_digits.get():
        raise refusal(NumericalFailure, f"{_core.get_digits()} digits do not show that there is such a result")
    return result


def _in_time(proof: Callable[..., Any]) -> Callable[..., Any]:
    def call(*arguments: Any) -> Any:
        return _known_in_time(proof(*arguments))

    setattr(call, "__signature__", inspect.signature(proof))
    return call


def _check_apart(vectors: Any) -> None:
    """Ends the search for eigenvectors that are not unique."""
    scope = _wanted_digits.get()
    if _core.get_digits() > 500 + 10 * scope and any(not each.error.is_finite() for each in vectors[0]):
        raise refusal(NumericalFailure, f"{_core.get_digits()} digits do not tell eigenvalues apart that eigenvectors are asked of")


def _count_of_infinite(a: Any, b: Any) -> int:
    """How many eigenvalues of a pencil are known to be infinite, which takes exact numbers."""
    try:
        a, b = exact_data("eigenvalues", a, b)
    except InvalidArgument:
        return 0
    return proven.infinite_eigenvalues(a, b) or 0


def _eigenvalues(a: Any, b: Any = None) -> Any:
    if b is None:
        return proven.eigenvalues(a)
    a, b = evaluated(a), evaluated(b)
    infinite = _count_of_infinite(a, b)
    if not infinite:
        return proven.eigenvalues(a, b)
    exactly = proven.Root(_core.Complex("inf", 0), decimal.Decimal(0), infinite, True)
    return [*proven.finite_eigenvalues(a, b), *[exactly] * infinite]


def _eigen(a: Any, b: Any = None) -> Any:
    if b is not None:
        raise refusal(InvalidArgument, "in a block of true_digits() pencils have eigenvalues, but no eigenvectors")
    values, right, left = proven.eigen(a, left=True)
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
        given = [evaluated(each) for each in ([a] if b is None else [a, b])]
        for each in given:
            if any(not isinstance(row, list) or len(row) != len(each) for row in each):
                raise refusal(InvalidArgument, "a square matrix is needed")
        if triangle == "upper":
            given = [
                [[_conjugate(each[j][i]) for j in range(i + 1)] + [0] * (len(each) - i - 1) for i in range(len(each))]
                for each in given
            ]
        result = proof(*given)
        if not pencils and result[1]:
            _check_apart(result[1])
        return result

    return call


_PROOFS: dict[str, Callable[..., Any]] = {
    "solve": proven.solve,
    "inverse": proven.inverse,
    "determinant": proven.determinant,
    "least_squares": proven.least_squares,
    "minimum_norm": _minimum_norm,
    "eigenvalues": _eigenvalues,
    "eigen": _eigen,
    "symmetric_eigen": _symmetric(proven.symmetric_eigen, False),
    "symmetric_eigenvalues": _symmetric(proven.symmetric_eigenvalues, True),
    "singular_values": proven.singular_values,
    "polynomial_zeros": proven.zeros,
    "multiply": _multiply,
    "dot": _dot,
    "norm": proven.norm,
    "cholesky": proven.cholesky,
    "qr": _qr,
    "svd": _svd,
    "pseudo_inverse": _pseudo_inverse,
    "null_space": _null_space,
    "expm": proven.expm,
    "sqrtm": _in_time(proven.sqrtm),
    "logm": _in_time(proven.logm),
    "fractional_matrix_power": _in_time(proven.fractional_matrix_power),
    **_bounded_transforms.PROOFS,
}


def no_proof(name: str) -> Error:
    known = ", ".join([*_PROOFS, "matrix_rank"])
    return refusal(
        InvalidArgument, f"{name} has no proven results: a block of true_digits() is for {known}, and functions of numbers"
    )


def _matrix_rank(a: Any, tolerance: Any = None) -> int:
    _check_tolerance(tolerance)
    found = proven.rank(a)
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


def _proved(proof: Callable[[], Any]) -> Any:
    """What the proof gives with as many working digits as the block needs."""
    scope = _wanted.get()
    assert scope is not None
    former = _wanted.set(None)
    count_before = _wanted_digits.set(scope.count)
    try:
        with digits(scope.count):
            return proven.to_digits(scope.count, proof, scope.most)
    finally:
        _wanted_digits.reset(count_before)
        _wanted.reset(former)


def proved(proof: Callable[[], Any]) -> Any:
    """The numbers that the proof gives, rounded to the digits of the block."""
    scope = _wanted.get()
    assert scope is not None
    found = _proved(proof)
    with digits(scope.count):
        return _plain(found, scope.count)


_GUARD_DIGITS = 3


def _with_parts_of(exact: Any, fine: Any) -> Any:
    """The results, but each Complex with the parts of the other's rounded to the working digits."""
    if isinstance(exact, _core.Complex):
        return _core.Complex(fine.real, fine.imag)
    if isinstance(exact, list):
        return [_with_parts_of(*pair) for pair in zip(exact, fine)]
    return exact


def _power(x: Any, y: Any) -> Any:
    if any(isinstance(each, _core.Complex) for each in (x, y)):
        return proven.pow(x, y)
    # (-r)^y = r^y exp(i pi y)
    size = proven.pow(-proven.bounded(x), y)
    return size * proven.cospi(y) + size * proven.sinpi(y) * _core.Complex(0, 1)


def _rounded_once(core: Callable[..., Any], given: list[Any], options: dict[str, Any], count: int) -> Any:
    """What the function gives of numbers that it takes as they are."""
    name = core.__name__
    for each in numbers_in([*given, *options.values()]):
        if isinstance(each, Fraction) or _length(each) > count:
            raise refusal(
                InvalidArgument, f"{name} in a block of true_digits({count}) takes numbers of {count} decimal digits at most"
            )
    model = given[0] if given else None
    given = [_lists(each) for each in given]
    with digits(count):
        result = core(*given, **options)
        if name in _OF_COMPLEX and any(isinstance(each, _core.Complex) for each in _leaves(result)):
            if name == "pow":
                if not all(map(is_number, given)):
                    raise refusal(InvalidArgument, "pow in a block of true_digits() takes two numbers where one is Complex")
                return proved(lambda: _power(*given))
            # Of these each part is within a unit of the last digit, of reals half of that.
            with digits(count + _GUARD_DIGITS):
                fine = core(*given, **options)
            result = _with_parts_of(result, fine)
    return as_array(result) if hasattr(model, "__array__") else result


def _leaves(result: Any) -> Iterator[Any]:
    if isinstance(result, (list, tuple)):
        for each in result:
            yield from _leaves(each)
    else:
        yield result


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
        if name in ("sqrt", "pi") and (options.get("classic") or given[int(name == "sqrt") :][:1] not in ([], [False])):
            raise refusal(InvalidArgument, f"the classic {name} has about 16 digits that are right")
        return _rounded_once(core, given, options, max(count, _core.get_digits()))
    given = [_lists(each) for each in given]
    if name == "matrix_rank":
        return _matrix_rank(*given, **options)
    proof = _PROOFS[name]
    try:
        inspect.signature(proof).bind(*given, **options)
    except TypeError as error:
        raise refusal(InvalidArgument, f"{name} in a block of true_digits(): {error}") from None
    found = _proved(lambda: proof(*given, **options))
    with digits(count):
        result = _with_bounds(found, count) if name == "polynomial_zeros" else _plain(found, count)
    if hasattr(model, "__array__") and name != "polynomial_zeros":
        result = as_array(result)
    return (result, _matrix_rank(given[0])) if name == "minimum_norm" else result


def as_array(result: Any) -> Any:
    import numpy

    if isinstance(result, tuple):
        return tuple(as_array(each) for each in result)
    return numpy.array(result, dtype=object) if isinstance(result, list) else result
