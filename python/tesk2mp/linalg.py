"""Linear algebra under the names of numpy.linalg and scipy.linalg.

Arguments and results are as in the package: exact kinds of numbers in sequences or arrays; lists, or arrays when the first
argument is an array. Each function takes digits=, the working digits of the call. Where a matrix is singular or a method does
not converge, there is a NumericalFailure.
"""

from decimal import Decimal
from typing import Any, Literal, cast

from . import (
    LU,
    Cholesky,
    Complex,
    Real,
    determinant,
    eigen,
    eigenvalues,
    inverse,
    matrix_rank as _matrix_rank,
    minimum_norm,
    norm as _norm,
    null_space as _null_space,
    pseudo_inverse,
    qr as _qr,
    scaled_determinant,
    schur as _schur,
    singular_values,
    solve as _solve,
    solve_banded as _solve_banded,
    solve_symmetric,
    svd as _svd,
    symmetric_eigen,
    symmetric_eigenvalues,
    triangular_solve,
)
from . import cholesky as _cholesky
from . import expm as _expm
from . import fractional_matrix_power as _fractional_matrix_power
from . import hessenberg as _hessenberg
from . import logm as _logm
from . import sqrtm as _sqrtm
from . import _truth, proven
from ._context import at, plain
from ._errors import InvalidArgument, InvalidType, NumericalFailure, refusal
from ._products import kron, matmul, matrix_power, multi_dot, outer, trace
from ._types import Matrix, Numbers, RealLike, Rows, Vector

__all__ = [
    "LinAlgError",
    "cho_factor",
    "cho_solve",
    "cholesky",
    "cond",
    "det",
    "eig",
    "eigh",
    "eigvals",
    "eigvalsh",
    "expm",
    "fractional_matrix_power",
    "hessenberg",
    "inv",
    "kron",
    "logm",
    "lstsq",
    "lu_factor",
    "lu_solve",
    "matmul",
    "matrix_power",
    "matrix_rank",
    "multi_dot",
    "norm",
    "null_space",
    "outer",
    "pinv",
    "qr",
    "schur",
    "slogdet",
    "solve",
    "solve_banded",
    "solve_triangular",
    "sqrtm",
    "svd",
    "svdvals",
    "trace",
]

_OPERATIONS = {0: "none", 1: "transpose", 2: "conjugate_transpose", "N": "none", "T": "transpose", "C": "conjugate_transpose"}
_NORMS = {None: "frobenius", "fro": "frobenius", 1: "one", float("inf"): "infinity"}
# numpy's name for what is raised of singular matrices and where nothing converges.
LinAlgError = NumericalFailure


def solve(
    a: Matrix,
    b: Vector | Matrix,
    lower: bool = False,
    assume_a: Literal["gen", "sym", "her", "pos"] = "gen",
    *,
    digits: int | None = None,
) -> Numbers | Rows:
    """The x with a x = b, for n numbers or a matrix of n rows b.

    assume_a: 'sym', 'her' or 'pos' for a symmetric, Hermitian or positive definite a, of which one triangle is read.

    >>> solve([[4, 1], [2, 3]], [1, 2])
    [Decimal('0.1'), Decimal('0.6')]
    """
    triangle = "lower" if lower else "upper"
    with at(digits):
        if assume_a == "gen":
            return _solve(a, b)
        if assume_a == "pos":
            return Cholesky(a, triangle).solve(b)
        if assume_a in ("sym", "her"):
            return solve_symmetric(a, b, triangle, assume_a == "her")
    raise refusal(InvalidArgument, f"assume_a is 'gen', 'sym', 'her' or 'pos', not {assume_a!r}")


def solve_triangular(
    a: Matrix,
    b: Vector | Matrix,
    trans: Literal[0, 1, 2, "N", "T", "C"] = 0,
    lower: bool = False,
    unit_diagonal: bool = False,
    *,
    digits: int | None = None,
) -> Numbers | Rows:
    """The x with op(a) x = b, a triangular; trans: 0, 1 or 2 for a, its transpose, its conjugate transpose.

    >>> solve_triangular([[2, 1], [0, 3]], [12, 30])
    [Decimal('1'), Decimal('10')]
    """
    triangle = "lower" if lower else "upper"
    return triangular_solve(a, b, triangle, _option("trans", _OPERATIONS, trans), unit_diagonal, digits=digits)


def solve_banded(
    l_and_u: tuple[int, int], ab: Matrix, b: Vector | Matrix, *, digits: int | None = None
) -> Numbers | Rows:
    """The x with a x = b for a matrix with so many diagonals below and above the main one, which are the rows of ab.

    >>> solve_banded((1, 1), [[0, 1], [2, 3], [4, 0]], [4, 10])
    [Decimal('1'), Decimal('2')]
    """
    try:
        below, above = l_and_u
    except TypeError as error:
        raise refusal(InvalidType, "l_and_u is two numbers of diagonals") from error
    return _solve_banded(below, above, ab, b, digits=digits)


def inv(a: Matrix, *, digits: int | None = None) -> Rows:
    """The inverse of a square matrix.

    >>> inv([[2, 0], [0, 4]])
    [[Decimal('0.5'), Decimal('0')], [Decimal('0'), Decimal('0.25')]]
    """
    return inverse(a, digits=digits)


def det(a: Matrix, *, digits: int | None = None) -> Decimal | Complex:
    """The determinant of a square matrix, 0 when it is singular.

    >>> det([[2, 1], [4, 5]])
    Decimal('6')
    """
    return determinant(a, digits=digits)


def slogdet(a: Matrix, *, digits: int | None = None) -> tuple[Decimal | Complex, Decimal]:
    """A number of modulus 1, and the logarithm of the determinant's modulus.

    >>> slogdet([[0, 1], [10, 0]])
    (Decimal('-1'), Decimal('2.302585092994045684'))
    """
    with at(digits):
        mantissa, exponent, _ = scaled_determinant(a)
        size = Real(abs(mantissa))
        if not size:
            return plain(Real(0)), plain(Real("-Infinity"))
        sign = mantissa / size if isinstance(mantissa, Complex) else plain(Real(mantissa) / size)
        return sign, plain(size.log() + Real(10).log() * exponent)


def lstsq(
    a: Matrix, b: Vector | Matrix, rcond: RealLike | None = None, *, digits: int | None = None
) -> tuple[Numbers | Rows, int]:
    """The x of least norm(b - a x), of several such x the one of least norm, and the rank of a.

    The rank is that of matrix_rank() with rcond for its tolerance. Residuals and singular values, which numpy returns too, are
    two calls: norm(b - a x) and svdvals(a).

    >>> lstsq([[1], [1], [1], [1]], [1, 2, 4, 5])
    ([Decimal('3')], 1)
    """
    return minimum_norm(a, b, rcond, digits=digits)


def pinv(a: Matrix, rcond: RealLike | None = None, *, digits: int | None = None) -> Rows:
    """The Moore-Penrose inverse of a matrix of any rank.

    >>> pinv([[3], [4]])
    [[Decimal('0.12'), Decimal('0.16')]]
    """
    return pseudo_inverse(a, rcond, digits=digits)


def matrix_rank(a: Matrix, tol: RealLike | None = None, *, digits: int | None = None) -> int:
    """The rank of a matrix, from its pivoted QR factorisation.

    >>> matrix_rank([[1, 2], [2, 4], [3, 6]])
    1
    """
    return _matrix_rank(a, tol, digits=digits)


def null_space(a: Matrix, rcond: RealLike | None = None, *, digits: int | None = None) -> Rows:
    """Orthonormal columns that span the vectors x with a x = 0.

    >>> null_space([[3, 0], [0, 0]])
    [[Decimal('0')], [Decimal('1')]]
    """
    return _null_space(a, rcond, digits=digits)


def qr(a: Matrix, pivoting: bool = False, *, digits: int | None = None) -> tuple[Any, ...]:
    """a = Q R with min(m, n) columns of Q; with pivoting also the order p of the columns, a[:, p] = Q R.

    >>> qr([[3], [4]])
    ([[Decimal('-0.6')], [Decimal('-0.8')]], [[Decimal('-5')]])
    """
    return _qr(a, pivoting, digits=digits)


def cholesky(a: Matrix, lower: bool = True, *, digits: int | None = None) -> Rows:
    """The factor L of a = L L^H; U of a = U^H U with lower=False.

    >>> cholesky([[4, 2], [2, 5]])
    [[Decimal('2'), Decimal('0')], [Decimal('1'), Decimal('2')]]
    """
    return _cholesky(a, "lower" if lower else "upper", digits=digits)


def lu_factor(a: Matrix, *, digits: int | None = None) -> LU:
    """The factors of a = P L U, for lu_solve().

    >>> lu_factor([[0, 2], [4, 1]]).pivots
    [1, 1]
    """
    with at(digits):
        return LU(a)


def lu_solve(lu: LU, b: Vector | Matrix, trans: Literal[0, 1, 2] = 0, *, digits: int | None = None) -> Numbers | Rows:
    """The x with op(a) x = b by the factors of a.

    >>> lu_solve(lu_factor([[0, 2], [4, 1]]), [2, 9])
    [Decimal('2'), Decimal('1')]
    """
    if not isinstance(lu, LU):
        raise refusal(InvalidType, f"the factors are an LU of lu_factor(), not {type(lu).__name__}")
    with at(digits):
        return lu.solve(b, _option("trans", _OPERATIONS, trans))


def cho_factor(a: Matrix, lower: bool = False, *, digits: int | None = None) -> Cholesky:
    """The factor of a = U^H U or of a = L L^H, for cho_solve().

    >>> cho_factor([[4, 2], [2, 5]]).determinant()
    Decimal('16')
    """
    with at(digits):
        return Cholesky(a, "lower" if lower else "upper")


def cho_solve(c: Cholesky, b: Vector | Matrix, *, digits: int | None = None) -> Numbers | Rows:
    """The x with a x = b by the factor of a.

    >>> cho_solve(cho_factor([[4, 2], [2, 5]]), [8, 12])
    [Decimal('1'), Decimal('2')]
    """
    if not isinstance(c, Cholesky):
        raise refusal(InvalidType, f"the factor is a Cholesky of cho_factor(), not {type(c).__name__}")
    with at(digits):
        return c.solve(b)


def svd(a: Matrix, *, digits: int | None = None) -> tuple[Rows, list[Decimal], Rows]:
    """a = u diag(s) vh, s descending, min(m, n) columns of u and rows of vh.

    >>> u, s, vh = svd([[0, 2], [1, 0]])
    >>> s
    [Decimal('2'), Decimal('1')]
    """
    with at(digits):
        u, s, v = _svd(a)
        return u, s, _adjoint(v)


def svdvals(a: Matrix, *, digits: int | None = None) -> list[Decimal]:
    """The singular values, descending.

    >>> svdvals([[0, 2], [1, 0]])
    [Decimal('2'), Decimal('1')]
    """
    return singular_values(a, digits=digits)


def cond(a: Matrix, p: None | Literal["fro", 1, 2] | float = None, *, digits: int | None = None) -> Decimal:
    """norm(a) norm(inverse(a)) in the 2-norm, by singular values, or in the norm of that name; infinite, or as large as
    roundings make it, for a singular a.

    >>> cond([[1, 0], [0, 4]]), cond([[1, 2], [3, 4]], 1)
    (Decimal('4'), Decimal('21'))
    """
    with at(digits):
        if _truth.wanted():
            return cast(Decimal, _truth.proved(lambda: _proven_condition(a, p)))
        if p is None or p == 2:
            s = svdvals(a)
            product = Real(0) if len(s) == 0 else Real("Infinity") if s[-1] == 0 else Real(s[0]) / s[-1]
        else:
            kind = _option("p", _NORMS, p)
            product = Real(_norm(a, kind)) * _norm(inverse(a), kind)
        return cast(Decimal, plain(product))


def norm(
    a: Vector | Matrix, ord: None | Literal["fro", 1, 2] | float = None, *, digits: int | None = None
) -> Decimal:
    """The Frobenius or Euclidean norm; ord: 'fro', 1, 2 or inf, of a matrix or of a vector.

    >>> norm([3, 4]), norm([[1, -2], [3, 4]], 1), norm([[0, 2], [1, 0]], 2)
    (Decimal('5'), Decimal('6'), Decimal('2'))
    """
    with at(digits):
        if ord == 2:
            return max(singular_values(cast(Matrix, a)), default=_norm([])) if _is_matrix(a) else _norm(a)
        return _norm(a, _option("ord", _NORMS, ord))


def eig(a: Matrix, *, digits: int | None = None) -> tuple[list[Complex], list[list[Complex]]]:
    """Eigenvalues w and, as columns, eigenvectors v of Euclidean norm 1, a v = v diag(w).

    >>> w, v = eig([[2, 0], [0, 3]])
    >>> w
    [Complex('2', '0'), Complex('3', '0')]
    """
    w, v, _ = eigen(a, digits=digits)
    return w, v


def eigvals(a: Matrix, *, digits: int | None = None) -> list[Complex]:
    """The eigenvalues of a square matrix.

    >>> eigvals([[0, 1], [-1, 0]])
    [Complex('0', '1'), Complex('0', '-1')]
    """
    return eigenvalues(a, digits=digits)


def eigh(a: Matrix, lower: bool = True, *, digits: int | None = None) -> tuple[list[Decimal], Rows]:
    """Eigenvalues, ascending, and orthonormal eigenvectors of a symmetric or Hermitian matrix, of which a triangle is read.

    >>> eigh([[2, 0], [0, 1]])
    ([Decimal('1'), Decimal('2')], [[Decimal('0'), Decimal('1')], [Decimal('1'), Decimal('0')]])
    """
    return symmetric_eigen(a, "lower" if lower else "upper", digits=digits)


def eigvalsh(a: Matrix, lower: bool = True, *, digits: int | None = None) -> list[Decimal]:
    """The eigenvalues of a symmetric or Hermitian matrix, ascending.

    >>> eigvalsh([[2, 0], [0, 1]])
    [Decimal('1'), Decimal('2')]
    """
    return symmetric_eigenvalues(a, "lower" if lower else "upper", digits=digits)


def schur(a: Matrix, *, digits: int | None = None) -> tuple[Rows, Rows]:
    """The real Schur form t and the orthogonal z of a = z t z^T.

    >>> schur([[1, 2], [0, 3]])[0]
    [[Decimal('1'), Decimal('2')], [Decimal('0'), Decimal('3')]]
    """
    t, z, *_ = _schur(a, digits=digits)
    return t, z


def hessenberg(a: Matrix, *, digits: int | None = None) -> tuple[Rows, Rows]:
    """The Hessenberg form h and the orthogonal q of a = q h q^T.

    >>> hessenberg([[1, 2], [3, 4]])[0]
    [[Decimal('1'), Decimal('2')], [Decimal('3'), Decimal('4')]]
    """
    h, q = _hessenberg(a, digits=digits)
    return h, q


def expm(a: Matrix, *, digits: int | None = None) -> Rows:
    """The exponential of a square matrix.

    >>> expm([[0, 1], [0, 0]])
    [[Decimal('1'), Decimal('1')], [Decimal('0'), Decimal('1')]]
    """
    return _expm(a, digits=digits)


def sqrtm(a: Matrix, *, digits: int | None = None) -> Rows:
    """The principal square root of a square matrix, Complex where a real matrix has no real one.

    >>> sqrtm([[4, 0], [0, 9]])
    [[Decimal('2'), Decimal('0')], [Decimal('0'), Decimal('3')]]
    """
    return _sqrtm(a, digits=digits)


def logm(a: Matrix, *, digits: int | None = None) -> Rows:
    """The principal logarithm of a regular square matrix, Complex where a real matrix has no real one.

    >>> logm([[1, 1], [0, 1]])
    [[Decimal('0'), Decimal('1')], [Decimal('0'), Decimal('0')]]
    """
    return _logm(a, digits=digits)


def fractional_matrix_power(A: Matrix, t: RealLike, *, digits: int | None = None) -> Rows:
    """A^t: products for a whole t, otherwise exp(t log(A)), Complex where a real matrix has no real one.

    >>> fractional_matrix_power([[1, 1], [1, 0]], 10)
    [[Decimal('89'), Decimal('55')], [Decimal('55'), Decimal('34')]]
    """
    return _fractional_matrix_power(A, t, digits=digits)


def _option(what: str, options: dict[Any, str], name: object) -> str:
    for option, meaning in options.items():
        if option == name:
            return meaning
    raise refusal(InvalidArgument, f"{what} is one of {', '.join(map(repr, options))}, not {name!r}")


def _proven_condition(a: Any, p: object) -> Any:
    if p is None or p == 2:
        s = proven.singular_values(a)
        return s[0] / s[-1] if s else proven.bounded(0)
    kind = _option("p", _NORMS, p)
    return proven.norm(a, kind) * proven.norm(proven.inverse(a), kind)


def _is_matrix(a: Any) -> bool:
    if not hasattr(a, "__iter__"):
        raise refusal(InvalidType, f"a vector or a matrix is needed, not {type(a).__name__}")
    first: Any = next(iter(a), 0)
    return hasattr(first, "__iter__") and not isinstance(first, (str, Complex))


def _adjoint(a: Any) -> Any:
    """Rows for columns, conjugated; of an array an array."""
    if hasattr(a, "conjugate"):
        return a.conjugate().T
    return [[each.conjugate() for each in column] for column in zip(*a)]

