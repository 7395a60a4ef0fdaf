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
from typing import Any, NamedTuple, TypeVar

from . import _bounded_functions, _core
from ._bounded import (
    Bounded,
    _decimal,
    _given,
    _given_columns,
    _known,
    _made,
    _matrix,
    _Part,
    _rows,
    _text,
    _vector,
    bounded,
    dot,
    evaluated,
    exact_data,
    function,
    gone_through,
    multiply,
    norm,
    rounded,
    sum,
    transform,
)
from ._bounded_functions import *  # noqa: F403
from ._context import _MOST_DIGITS, digits as _at_digits
from ._errors import InvalidArgument, InvalidType, NumericalFailure, Undecided, refusal

__all__ = [
    "Bounded",
    "Root",
    "Undecided",
    "bounded",
    "cholesky",
    "condition",
    "determinant",
    "dot",
    "eigen",
    "eigenvalues",
    "expm",
    "finite_eigenvalues",
    "fractional_matrix_power",
    "function",
    "infinite_eigenvalues",
    "inverse",
    "is_positive_definite",
    "least_squares",
    "logm",
    "lu",
    "minimum_norm",
    "multiply",
    "norm",
    "null_space",
    "pinv",
    "qr",
    "rank",
    "rounded",
    "singular_values",
    "solve",
    "sqrtm",
    "sum",
    "svd",
    "symmetric_eigen",
    "symmetric_eigenvalues",
    "to_digits",
    "transform",
    "true_digits",
    "zero",
    "zeros",
]
__all__ += _bounded_functions.__all__

_Result = TypeVar("_Result")
_Complex = _core.Complex
_MARGIN = 5


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
        if known == 0 and largest is not None and error.is_finite() and error >= part.copy_abs():
            known = max(0, largest - error.adjusted() - 2)
        if known is not None:
            fewest = known if fewest is None else min(fewest, known)
    return fewest


def to_digits(k: int, problem: Callable[[], _Result], most: int = 100000) -> _Result:
    """Calls problem() with more and more working digits until k digits of all numbers that it returns are true.
    NumericalFailure when `most` working digits, 1000000 or less, do not suffice, which says how many are known. Comparisons that
    the bounds do not decide ask for more digits too.

    >>> ratio = to_digits(30, lambda: symmetric_eigenvalues([[1, 1], [1, 0]]))
    >>> ratio[1].text(30)
    '1.61803398874989484820458683437'
    """
    if not (isinstance(k, int) and isinstance(most, int)):
        raise refusal(InvalidType, "numbers of digits are integers")
    if not callable(problem):
        raise refusal(InvalidType, f"a function is needed, not {type(problem).__name__}")
    if k < 1 or most < k or most > _MOST_DIGITS:
        raise refusal(InvalidArgument, f"{k} true digits with at most {most} working digits")
    search = _core._DigitSearch(k, k + _MARGIN, most, _MARGIN)
    seen = gone_through.set({})
    try:
        return _searched(k, problem, most, search)
    finally:
        gone_through.reset(seen)


def _searched(k: int, problem: Callable[[], _Result], most: int, search: Any) -> _Result:
    while True:
        known: int | None = 0
        undecided = None
        with _at_digits(search.working):
            try:
                result = problem()
                known = true_digits(result)
            except Undecided as error:
                undecided = error
        if known is None or known >= k:
            return result
        if search.is_at_end:
            raise refusal(NumericalFailure, f"{known} of {k} digits are proven with {most} working digits") from undecided
        search.raise_digits(known)


def solve(a: Any, b: Any) -> Any:
    """The solution of a x = b, for a vector b or the columns of a matrix, as Bounded numbers; that a is regular is part of
    the proof. Of a SparseMatrix, or a sparse matrix of scipy, by sparse factors, whose floats are taken exactly as they are.

    >>> [str(x) for x in solve([[4, 1], [2, 3]], ['0.1', 1])]
    ['-0.07', '0.38']
    """
    if isinstance(a, _core.SparseMatrix) or hasattr(a, "tocoo"):
        return _solve_sparse(a, b)
    columns, is_vector = _given_columns(b)
    x = _matrix(_core._proven_solve(*_given(a), *columns))
    return [row[0] for row in x] if is_vector else x


def _solve_sparse(a: Any, b: Any) -> Any:
    from .sparse.linalg import as_sparse

    matrix = as_sparse(a)
    ((values, errors), is_vector) = _given_columns(b)
    if errors is not None:
        raise refusal(InvalidArgument, "the right-hand side of a sparse matrix is exact")
    x = _matrix(_core._proven_sparse_solve(matrix, values))
    return [row[0] for row in x] if is_vector else x


def inverse(a: Any) -> list[list[Bounded]]:
    """The inverse.

    >>> str(inverse([[4]])[0][0])
    '0.25'
    """
    rows = _rows(evaluated(a))
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
    a, b = exact_data("least_squares", a, b)
    (columns, _), is_vector = _given_columns(b)
    x = _matrix(_core._proven_least_squares(_rows(a), columns))
    return [row[0] for row in x] if is_vector else x


def determinant(a: Any) -> Bounded:
    """The determinant.

    >>> determinant([[1, 2], [3, 4]]).text(10)
    '-2'
    """
    value, error = _core._proven_determinant(*_given(a))
    return _made(value, _decimal(error))


def is_positive_definite(a: Any) -> bool | None:
    """Is the symmetric or Hermitian matrix, of which the lower triangle is read, positive definite? None where the working
    digits do not decide.

    >>> is_positive_definite([[2, 1], [1, 2]]), is_positive_definite([[1, 2], [2, 1]])
    (True, False)
    """
    answer = _core._proven_definite(_rows(*exact_data("is_positive_definite", a)))
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
    return _vector(_core._proven_symmetric_pencil(*map(_rows, exact_data("symmetric_eigenvalues", a, b))))


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


def infinite_eigenvalues(a: Any, b: Any) -> int | None:
    """How many eigenvalues of a x = lambda b x are infinite, the numbers being taken as exact; None where finding that would
    take too long. NumericalFailure for a singular pencil: det(a - x b) is 0 for every x.

    >>> infinite_eigenvalues([[1, 2], [3, 4]], [[1, 2], [2, 4]])
    1
    """
    found = _core._proven_infinite(*map(_rows, exact_data("infinite_eigenvalues", a, b)))
    return None if found is None else int(found)


def finite_eigenvalues(a: Any, b: Any) -> list[Root]:
    """The finite eigenvalues of a x = lambda b x, whose numbers are taken as exact; b may be singular.

    >>> [root.text(10) for root in finite_eigenvalues([[1, 2], [3, 4]], [[1, 2], [2, 4]])]
    ['1']
    """
    return _roots(_core._proven_finite(*map(_rows, exact_data("finite_eigenvalues", a, b))))


def eigen(a: Any, b: Any = None, left: bool = False) -> Any:
    """The eigenvalues of a square matrix, and eigenvectors of norm 1, a column each, up to a factor of modulus 1; with b of
    a x = lambda b x. Vectors of eigenvalues that share a disc have infinite bounds. left: the left eigenvectors y too, of
    norm 1, y^H a = lambda y^H.

    >>> values, vectors = eigen([[2, 0], [0, 3]])
    >>> [value.text(10) for value in values], vectors[0][1].error < 1e-15
    (['2', '3'], True)
    >>> values, right, left = eigen([[2, 1], [0, 3]], left=True)
    >>> [abs(row[0].value) for row in right], [round(abs(row[0].value), 15) for row in left]
    ([Decimal('1'), Decimal('0')], [Decimal('0.707106781186548'), Decimal('0.707106781186548')])
    """
    if b is None:
        values, *vectors = _core._proven_eigen(*_given(a), left)
    elif left:
        raise refusal(InvalidArgument, "pencils have no proven left eigenvectors")
    else:
        values, *vectors = _core._proven_eigen_pencil(*_given(a), *_given(b))
    return _roots(values), *map(_matrix, vectors)


def rank(a: Any) -> int | None:
    """The rank of a matrix whose elements are taken as exact; None where finding it would take too long.

    >>> rank([[1, 2], [2, 4]])
    1
    """
    found = _core._proven_rank(_rows(*exact_data("rank", a)))
    return None if found is None else int(found)


def lu(a: Any) -> tuple[list[int], list[list[Bounded]], list[list[Bounded]]]:
    """(rows, l, u): row i of l u is row rows[i] of the matrix, l with ones on its diagonal. Rows are interchanged as LU does, and
    where the sizes of two candidates for a pivot are equal to all digits either one is right.

    >>> rows, l, u = lu([[1, 2], [4, 7]])
    >>> rows, l[1][0].text(), u[1][1].text()
    ([1, 0], '0.25', '0.25')
    """
    rows, *factors = _core._proven_lu(*_given(a))
    lower, upper = map(_matrix, factors)
    return list(rows), lower, upper


def cholesky(a: Any, triangle: str = "lower") -> list[list[Bounded]]:
    """The factor L of a = L L^H, or with 'upper' U of a = U^H U, of the symmetric or Hermitian matrix of which that triangle is
    read; that it is definite is part of the proof. NumericalFailure where it is proven not to be.

    >>> cholesky([[4, 2], [2, 3]])[1][1].text(10)
    '1.414213562'
    """
    return _matrix(_core._proven_cholesky(*_given(a), triangle))


def qr(a: Any) -> tuple[list[list[Bounded]], list[list[Bounded]]]:
    """(q, r) of an m by n matrix, with min(m, n) orthonormal columns of q; its first min(m, n) columns have to be independent.
    The diagonal of r is real and positive, which makes the factors unique; tesk2mp.qr() finds them with other signs.

    >>> [row[0].text(3) for row in qr([[3], [4]])[0]]
    ['0.6', '0.8']
    """
    q, r = _core._proven_qr(*_given(a))
    return _matrix(q), _matrix(r)


def svd(a: Any) -> tuple[list[list[Bounded]], list[Bounded], list[list[Bounded]]]:
    """(u, s, v) with a = u diag(s) v^H, s descending, min(m, n) columns each, pairs of columns up to a common factor of modulus
    1. Vectors whose values are not apart from the others and 0 have infinite bounds.

    >>> u, s, v = svd([[0, 2], [1, 0]])
    >>> [value.text(5) for value in s], abs(v[1][0]).text(5)
    (['2', '1'], '1')
    """
    u, s, v = _core._proven_svd(*_given(a))
    return _matrix(u), _vector(s), _matrix(v)


def pinv(a: Any) -> list[list[Bounded]]:
    """The Moore-Penrose inverse, of an exact matrix of any rank, which is proven first.

    >>> pinv([[3], [4]])[0][1].text(5)
    '0.16'
    """
    return _matrix(_core._proven_pinv(*_given(a)))


def minimum_norm(a: Any, b: Any) -> Any:
    """The x that minimises the norm of a x - b, of several such x that of least norm, for a vector b or each column of a matrix.
    The numbers are taken as exact.

    >>> minimum_norm([[1, 1]], [1])[0].text(5)
    '0.5'
    """
    a, b = exact_data("minimum_norm", a, b)
    (columns, _), is_vector = _given_columns(b)
    x = _matrix(_core._proven_minimum_norm(_rows(a), columns))
    return [row[0] for row in x] if is_vector else x


def null_space(a: Any) -> list[list[Bounded]]:
    """Orthonormal columns that span the x with a x = 0, the elements of a being taken as exact.

    >>> [abs(row[0]).text(5) for row in null_space([[1, 1]])]
    ['0.70711', '0.70711']
    """
    return _matrix(_core._proven_null_space(_rows(*exact_data("null_space", a))))


def condition(a: Any, kind: str = "one") -> Bounded:
    """norm(a) norm(inverse(a)), in a norm as norm() has it.

    >>> condition([[1, 2], [3, 4]]).text(5)
    '21'
    """
    product: Bounded = norm(a, kind) * norm(inverse(a), kind)
    return product


def expm(a: Any) -> list[list[Bounded]]:
    """The exponential of a square matrix.

    >>> expm([[0, 1], [0, 0]])[0][1].text(5)
    '1'
    """
    return _matrix(_core._proven_expm(*_given(a)))


def sqrtm(a: Any) -> list[list[Bounded]]:
    """The principal square root, of a real matrix a real one; infinite bounds where an eigenvalue is 0 or negative.

    >>> sqrtm([[4, 1], [0, 9]])[0][1].text(5)
    '0.2'
    """
    return _matrix(_core._proven_sqrtm(*_given(a)))


def logm(a: Any) -> list[list[Bounded]]:
    """The principal logarithm; infinite bounds where an eigenvalue is 0 or negative.

    >>> logm([[1, 3], [0, 1]])[0][1].text(5)
    '3'
    """
    return _matrix(_core._proven_logm(*_given(a)))


def fractional_matrix_power(a: Any, p: Any) -> list[list[Bounded]]:
    """a^p: products for an int, of the inverse for a negative one, otherwise exp(p log(a)) for a real number p.

    >>> fractional_matrix_power([[1, 1], [1, 0]], 10)[0][0].text(), fractional_matrix_power([[4, 1], [0, 9]], "0.5")[0][1].text(5)
    ('89', '0.2')
    """
    if not isinstance(p, int):
        exponent = bounded(p)
        return _matrix(_core._proven_power(*_given(a), exponent.value, exponent.error))
    square = inverse(a) if p < 0 else [[bounded(each) for each in row] for row in _rows(evaluated(a))]
    result: list[list[Bounded]] | None = None
    for digit in reversed(bin(abs(p))[2:]):
        if digit == "1":
            result = square if result is None else multiply(result, square)
        square = multiply(square, square)
    return result or [[bounded(int(i == j)) for j in range(len(square))] for i in range(len(square))]


def zeros(a: Any) -> list[Root]:
    """The zeros of a[0] z^n + ... + a[n]; k equal or very close ones share a disc.

    >>> [(root.text(10), root.multiplicity) for root in zeros([1, -3, 3, -1])]
    [('1 0 (abs < 1E-25)', 3), ('1 0 (abs < 1E-25)', 3), ('1 0 (abs < 1E-25)', 3)]
    """
    return _roots(_core._proven_zeros(*exact_data("zeros", a)))


def zero(f: Callable[[Bounded], Any], low: Any, high: Any) -> Bounded:
    """A zero of a real f between low and high, where it has values of different signs: f takes a Bounded number and returns one,
    made by operators and functions of this module but for steps (floor and the like). The bound is proven by a change of
    sign, such an f being continuous where its bounds over the interval are finite and decide its comparisons; it is infinite where
    the working digits do not tell the signs. InvalidArgument unless low < high, and where the signs are proven to be the same.

    >>> to_digits(30, lambda: zero(lambda x: exp(x) - 3, 1, 2)).text(30)
    '1.09861228866810969139524523692'
    """

    def call(value: Any, error: Any) -> tuple[Any, decimal.Decimal]:
        try:
            y = bounded(f(_made(value, _decimal(error))))
        except Undecided:
            return decimal.Decimal(0), decimal.Decimal("Infinity")
        return y.value, y.error

    if not callable(f):
        raise refusal(InvalidType, f"a function is needed, not {type(f).__name__}")
    return _vector(_core._proven_zero(call, low, high))[0]
