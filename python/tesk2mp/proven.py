"""Results that are proven: values with bounds of their distance from the exact ones.

Data are taken as the exact numbers that they are, whatever the working digits: int, Decimal and text with all their digits,
fractions.Fraction too, whose rounding is part of the bounds. Where the working digits do not suffice the bounds are infinite.

    >>> from fractions import Fraction
    >>> from tesk2mp import proven
    >>> hilbert = [[Fraction(1, i + j + 1) for j in range(20)] for i in range(20)]
    >>> proven.to_digits(40, lambda: proven.determinant(hilbert)).text(40)
    '4.206178956624722655882045573396941339798E-226'

All of these digits are true; tesk2mp.determinant(hilbert) at 20 digits is 8.88E-214, that of the rounded matrix.
"""

import decimal
from collections.abc import Callable, Iterator
from fractions import Fraction
from typing import Any, NamedTuple, TypeVar

from . import _core
from ._context import digits as _at_digits
from ._errors import InvalidArgument, InvalidType, NumericalFailure, refusal
from ._exact import has_end

__all__ = [
    "Bounded",
    "Root",
    "bounded",
    "determinant",
    "dot",
    "eigen",
    "eigenvalues",
    "function",
    "inverse",
    "is_positive_definite",
    "least_squares",
    "norm",
    "rank",
    "singular_values",
    "solve",
    "symmetric_eigen",
    "symmetric_eigenvalues",
    "to_digits",
    "transform",
    "true_digits",
    "zeros",
]

_Complex = _core.Complex
_Result = TypeVar("_Result")
_Part = tuple[decimal.Decimal, decimal.Decimal]
_MARGIN = 5


def _decimal(number: Any) -> decimal.Decimal:
    return number if isinstance(number, decimal.Decimal) else decimal.Decimal(str(number))


def _known(part: decimal.Decimal, error: decimal.Decimal) -> int | None:
    """How many digits are true: within 0.51 units of the last of them. None: all."""
    if not error:
        return None
    if not error.is_finite() or not part.is_finite():
        return 0
    return max(0, (part.adjusted() if part else error.adjusted()) - error.adjusted() - 2)


def _text(part: decimal.Decimal, error: decimal.Decimal, most: int | None) -> str:
    known = _known(part, error)
    if known == 0:
        if not error.is_finite() or not part.is_finite():
            return "?"
        return f"0 (abs < 1E{(abs(part) + error).adjusted() + 1:+d})"
    wanted = [each for each in (known, most) if each is not None]
    if not wanted:
        return str(part)
    with decimal.localcontext() as context:
        context.prec = min(wanted)
        return str(+part)


class Bounded(NamedTuple):
    """A number and a bound: |value - exact| <= error. str() shows the digits that are true, of both parts of a Complex."""

    value: Any
    error: decimal.Decimal

    def parts(self) -> list[_Part]:
        """The real number, or real and imaginary part, each with its bound."""
        if isinstance(self.value, _Complex):
            return [(_decimal(self.value.real), self.error), (_decimal(self.value.imag), self.error)]
        return [(_decimal(self.value), self.error)]

    def text(self, most: int | None = None) -> str:
        """The true digits, `most` at most; "0 (abs < 1E-40)" where the sign is not known, "?" where nothing is."""
        return " ".join(_text(part, error, most) for part, error in self.parts())

    def __str__(self) -> str:
        return self.text()

    # With another Bounded, or a number, which is exact; a Fraction without an end in decimal is rounded with a bound.

    def __add__(self, other: Any) -> "Bounded":
        return _operated("+", self, other)

    def __radd__(self, other: Any) -> "Bounded":
        return _operated("+", other, self)

    def __sub__(self, other: Any) -> "Bounded":
        return _operated("-", self, other)

    def __rsub__(self, other: Any) -> "Bounded":
        return _operated("-", other, self)

    def __mul__(self, other: Any) -> "Bounded":
        return _operated("*", self, other)

    def __rmul__(self, other: Any) -> "Bounded":
        return _operated("*", other, self)

    def __truediv__(self, other: Any) -> "Bounded":
        return _operated("/", self, other)

    def __rtruediv__(self, other: Any) -> "Bounded":
        return _operated("/", other, self)

    def __pow__(self, other: Any) -> "Bounded":
        return _operated("^", self, other)

    def __rpow__(self, other: Any) -> "Bounded":
        return _operated("^", other, self)

    def __neg__(self) -> "Bounded":
        return _operated("-", 0, self)


class Root(NamedTuple):
    """An eigenvalue or a zero: `multiplicity` of them, this one included, are within `error` of `value`, and each of
    them has such a disc. A real one is exactly real."""

    value: Any
    error: decimal.Decimal
    multiplicity: int
    is_real: bool

    def parts(self) -> list[_Part]:
        """Real and imaginary part, each with its bound."""
        of_imaginary = decimal.Decimal(0) if self.is_real else self.error
        return [(_decimal(self.value.real), self.error), (_decimal(self.value.imag), of_imaginary)]

    def text(self, most: int | None = None) -> str:
        """The true digits, `most` at most; of a real one those of the real part alone."""
        return " ".join(_text(part, error, most) for part, error in self.parts()[: 1 if self.is_real else 2])

    def __str__(self) -> str:
        return self.text()


def _parts(result: Any) -> Iterator[_Part]:
    if isinstance(result, (Bounded, Root)):
        yield from result.parts()
    elif isinstance(result, (list, tuple)):
        for each in result:
            yield from _parts(each)
    else:
        raise refusal(InvalidType, f"proven numbers are needed, not {type(result).__name__}")


def true_digits(result: Any) -> int | None:
    """How many significant digits of every number in a result are true: within 0.51 units of the last of them. A part of
    which not even the sign is known counts by how far its bound is below the largest part. None: the result is exact.

    >>> true_digits(solve([[4, 1], [2, 3]], [1, 2]))
    18
    """
    parts = list(_parts(result))
    largest = max((part.adjusted() for part, _ in parts if part and part.is_finite()), default=None)
    fewest: int | None = None
    for part, error in parts:
        known = _known(part, error)
        if known == 0 and largest is not None and error.is_finite() and error >= abs(part):
            known = max(0, largest - error.adjusted() - 2)
        if known is not None:
            fewest = known if fewest is None else min(fewest, known)
    return fewest


def to_digits(k: int, problem: Callable[[], _Result], most: int = 100000) -> _Result:
    """Calls problem() with more and more working digits until k digits of all numbers that it returns are true.
    NumericalFailure when `most` working digits do not suffice, which says how many are known.

    >>> ratio = to_digits(30, lambda: symmetric_eigenvalues([[1, 1], [1, 0]]))
    >>> ratio[1].text(30)
    '1.61803398874989484820458683437'
    """
    if not (isinstance(k, int) and isinstance(most, int)):
        raise refusal(InvalidType, "numbers of digits are integers")
    if not callable(problem):
        raise refusal(InvalidType, f"a function is needed, not {type(problem).__name__}")
    if k < 1 or most < k:
        raise refusal(InvalidArgument, f"{k} true digits with at most {most} working digits")
    working = min(most, k + _MARGIN)
    before: tuple[int, int] | None = None
    while True:
        with _at_digits(working):
            result = problem()
        known = true_digits(result)
        if known is None or known >= k:
            return result
        if working == most:
            raise refusal(NumericalFailure, f"{known} of {k} digits are proven with {working} working digits")
        # Where some digits are known the loss is known too; of k-fold roots k more digits of work bring one.
        wanted = 2 * working + 2 * _MARGIN
        if known > 0:
            missing = k - known + _MARGIN
            rate = 1
            if before is not None and before[1] < known:
                rate = max(1, -((before[0] - working) // (known - before[1])))
            wanted = min(wanted + missing, working + rate * missing)
        before = (working, known) if known > 0 else None
        working = min(most, wanted)


def _rows(matrix: Any) -> list[list[Any]]:
    try:
        return [list(row) for row in matrix]
    except TypeError as error:
        raise refusal(InvalidType, "a matrix is a sequence of rows") from error


def _given(matrix: Any) -> tuple[list[list[Any]], list[list[Any]] | None]:
    """The elements, Fractions rounded to the working digits, and bounds of that; None where nothing is rounded."""
    values = _rows(matrix)
    if not any(isinstance(each, Fraction) and not has_end(each.denominator) for row in values for each in row):
        return values, None
    errors: list[list[Any]] = [[0 for _ in row] for row in values]
    with decimal.localcontext() as context:
        context.prec = _core.get_digits()
        for row, bounds in zip(values, errors):
            for j, each in enumerate(row):
                if isinstance(each, Fraction) and not has_end(each.denominator):
                    # Numerator, denominator and quotient are rounded.
                    row[j] = decimal.Decimal(each.numerator) / decimal.Decimal(each.denominator)
                    bounds[j] = decimal.Decimal((0, (1,), row[j].adjusted() - context.prec + 1))
    return values, errors


def _matrix(both: tuple[list[list[Any]], list[list[decimal.Decimal]]]) -> list[list[Bounded]]:
    return [[Bounded(value, _decimal(error)) for value, error in zip(*rows)] for rows in zip(*both)]


def _vector(both: tuple[list[Any], list[decimal.Decimal]]) -> list[Bounded]:
    return [Bounded(value, _decimal(error)) for value, error in zip(*both)]


def _exact_columns(b: Any) -> tuple[list[list[Any]], bool]:
    """The right-hand sides as a matrix; and was it a vector?"""
    rows = list(b) if hasattr(b, "__iter__") else [b]
    is_vector = not rows or not hasattr(rows[0], "__iter__") or isinstance(rows[0], str)
    return [[each] for each in rows] if is_vector else [list(row) for row in rows], is_vector


def bounded(x: Any) -> Bounded:
    """A number with its bound: 0, or that of the rounding of a Fraction that has no end in decimal.

    >>> with _at_digits(30):
    ...     (bounded(Fraction(1, 3)) * 3 - 1).text()
    '0 (abs < 1E-29)'
    """
    if isinstance(x, Bounded):
        return x
    values, errors = _given([[x]])
    return Bounded(values[0][0], decimal.Decimal(0) if errors is None else _decimal(errors[0][0]))


def _operated(sign: str, x: Any, y: Any) -> Bounded:
    left, right = bounded(x), bounded(y)
    return _vector(_core._proven_operation(sign, [left.value], [left.error], [right.value], [right.error]))[0]


def function(name: str, x: Any) -> Bounded:
    """The function of that name, one of tesk2mp's functions of one number, of a number with a bound. Where a pole, the end of
    the domain or a branch cut may be within the bounds the bound of the result is infinite.

    >>> to_digits(30, lambda: function("exp", Fraction(1, 3))).text(30)
    '1.39561242508608952862812531960'
    """
    given = bounded(x)
    return _vector(_core._proven_function(name, [given.value], [given.error]))[0]


def _parallel(x: Any) -> tuple[list[Any], list[decimal.Decimal]]:
    numbers = [bounded(each) for each in x]
    return [each.value for each in numbers], [each.error for each in numbers]


def dot(x: Any, y: Any) -> Bounded:
    """The sum of the products of x and y, rounded once.

    >>> str(dot([1, 2], ["0.5", 3]))
    '6.5'
    """
    return _vector(_core._proven_dot(*_parallel(x), *_parallel(y)))[0]


def norm(x: Any) -> Bounded:
    """The Euclidean norm of a vector.

    >>> str(norm([3, 4]))
    '5'
    """
    return _vector(_core._proven_norm(*_parallel(x)))[0]


def transform(x: Any, backward: bool = False) -> list[Bounded]:
    """The discrete Fourier transform of a vector, divided by the root of its length.

    >>> transform([1, 1])[0].text(10)
    '1.414213562 0 (abs < 1E-19)'
    """
    return _vector(_core._proven_transform(*_parallel(x), backward))


def solve(a: Any, b: Any) -> Any:
    """The solution of a x = b, for a vector b or the columns of a matrix, as Bounded numbers; that a is regular is part of
    the proof. The numbers of b are taken as exact.

    >>> [str(x) for x in solve([[4, 1], [2, 3]], ['0.1', 1])]
    ['-0.07', '0.38']
    """
    values, errors = _given(a)
    columns, is_vector = _exact_columns(b)
    x = _matrix(_core._proven_solve(values, errors, columns))
    return [row[0] for row in x] if is_vector else x


def inverse(a: Any) -> list[list[Bounded]]:
    """The inverse.

    >>> str(inverse([[4]])[0][0])
    '0.25'
    """
    rows = _rows(a)
    order = len(rows)
    result = solve(rows, [[int(i == j) for j in range(order)] for i in range(order)])
    assert isinstance(result, list)
    return result


def least_squares(a: Any, b: Any) -> Any:
    """The x that minimises the norm of a x - b, for a vector b or each column of a matrix; that a has full column rank is
    part of the proof. The numbers are taken as exact.

    >>> least_squares([[1], [1], [1]], [1, 2, 4])[0].text(10)
    '2.333333333'
    """
    columns, is_vector = _exact_columns(b)
    x = _matrix(_core._proven_least_squares(_rows(a), columns))
    return [row[0] for row in x] if is_vector else x


def determinant(a: Any) -> Bounded:
    """The determinant.

    >>> determinant([[1, 2], [3, 4]]).text(10)
    '-2'
    """
    value, error = _core._proven_determinant(*_given(a))
    return Bounded(value, _decimal(error))


def is_positive_definite(a: Any) -> bool | None:
    """Is the symmetric or Hermitian matrix, of which the lower triangle is read, positive definite? None where the working
    digits do not decide.

    >>> is_positive_definite([[2, 1], [1, 2]]), is_positive_definite([[1, 2], [2, 1]])
    (True, False)
    """
    answer = _core._proven_definite(_rows(a))
    return None if answer is None else bool(answer)


def symmetric_eigen(a: Any) -> tuple[list[Bounded], list[list[Bounded]]]:
    """Eigenvalues, ascending, and eigenvectors of norm 1, a column each, of the symmetric or Hermitian matrix of which the
    lower triangle is read. Vectors whose eigenvalues are not apart at the working digits have infinite bounds.

    >>> values, vectors = symmetric_eigen([[2, 1], [1, 2]])
    >>> [value.text(10) for value in values], vectors[0][1].text(10)
    (['1', '3'], '0.7071067812')
    """
    values, vectors = _core._proven_symmetric(*_given(a))
    return _vector(values), _matrix(vectors)


def symmetric_eigenvalues(a: Any, b: Any = None) -> list[Bounded]:
    """The eigenvalues of symmetric_eigen() alone; with a positive definite b, which is part of the proof, those of
    a x = lambda b x, whose numbers are taken as exact.

    >>> [value.text(10) for value in symmetric_eigenvalues([[2, 1], [1, 2]])]
    ['1', '3']
    >>> [value.text(10) for value in symmetric_eigenvalues([[2, 0], [0, 1]], [[4, 0], [0, 3]])]
    ['0.3333333333', '0.5']
    """
    if b is None:
        return symmetric_eigen(a)[0]
    return _vector(_core._proven_symmetric_pencil(_rows(a), _rows(b)))


def singular_values(a: Any) -> list[Bounded]:
    """The singular values, descending.

    >>> [value.text(10) for value in singular_values([[1, 1], [1, 0]])]
    ['1.618033989', '0.6180339887']
    """
    return _vector(_core._proven_singular(*_given(a)))


def _roots(found: list[tuple[Any, decimal.Decimal, int, bool]]) -> list[Root]:
    return [Root(value, _decimal(error), count, is_real) for value, error, count, is_real in found]


def eigenvalues(a: Any, b: Any = None) -> list[Root]:
    """The eigenvalues of a square matrix, with b those of a x = lambda b x; that b is regular is part of the proof. Multiple
    ones, and those too close for the working digits, share a disc.

    >>> [(root.text(10), root.multiplicity) for root in eigenvalues([[0, 1], [1, 1]])]
    [('-0.6180339887', 1), ('1.618033989', 1)]
    """
    if b is not None:
        return _roots(_core._proven_pencil(*_given(a), *_given(b)))
    return _roots(_core._proven_eigenvalues(*_given(a)))


def eigen(a: Any) -> tuple[list[Root], list[list[Bounded]]]:
    """The eigenvalues of a square matrix, and eigenvectors of norm 1, a column each, up to a factor of modulus 1. Vectors of
    eigenvalues that share a disc have infinite bounds.

    >>> values, vectors = eigen([[2, 0], [0, 3]])
    >>> [value.text(10) for value in values], vectors[0][1].error < 1e-15
    (['2', '3'], True)
    """
    values, vectors = _core._proven_eigen(*_given(a))
    return _roots(values), _matrix(vectors)


def rank(a: Any) -> int | None:
    """The rank of a matrix whose elements are taken as exact; None where finding it would take too long.

    >>> rank([[1, 2], [2, 4]])
    1
    """
    found = _core._proven_rank(_rows(a))
    return None if found is None else int(found)


def zeros(a: Any) -> list[Root]:
    """The zeros of a[0] z^n + ... + a[n]; k equal or very close ones share a disc.

    >>> [(root.text(10), root.multiplicity) for root in zeros([1, -3, 3, -1])]
    [('1 0 (abs < 1E-19)', 3), ('1 0 (abs < 1E-19)', 3), ('1 0 (abs < 1E-19)', 3)]
    """
    return _roots(_core._proven_zeros(list(a)))
