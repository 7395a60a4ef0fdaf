"""Solution of sparse linear systems under the names of scipy.sparse.linalg, real and complex.

a is a SparseMatrix, a sparse matrix of scipy, a LinearOperator, or a function that takes a list of n numbers and returns the n
numbers of their product with the matrix. The floats of a sparse matrix of scipy are taken exactly as they are. M solves with a
matrix near a: what spilu returns, a LinearOperator or a function. rtol, not negative, is the tolerance of |b - a x| beside
|b| + |a| |x|, 0 for the square root of the machine precision; where a is known by its products alone and M is given, that of M's
solution with b - a x. callback is called with each iterate. The result is (x, 0): what does not converge is a NumericalFailure.
While a function works, `decimal` has ten digits more than the solver.
"""

from collections.abc import Callable, Iterator, Sized
from decimal import Decimal
from operator import index
from typing import Any, TypeAlias

from .. import _truth, proven
from .. import IncompleteCholesky, IncompleteLU, SparseCholesky, SparseLU, SparseMatrix, solve_iteratively
from .. import eigs as _eigs
from .. import eigsh as _eigsh
from .. import lsmr as _lsmr
from .. import svds as _svds
from .._context import at
from .._context import digits as at_digits
from .._context import results
from .._errors import InvalidArgument, InvalidType, NumericalFailure, refusal
from .._exact import exact, exact_sum
from .._types import Numbers, RealLike, Vector

__all__ = [
    "LinearOperator",
    "bicgstab",
    "cg",
    "cgs",
    "cholesky",
    "eigs",
    "eigsh",
    "fgmres",
    "gmres",
    "idrs",
    "lsmr",
    "minres",
    "spilu",
    "splu",
    "spsolve",
    "svds",
    "tfqmr",
]

Product: TypeAlias = Callable[[Any], Vector]


def _require_numbers(rows: int, columns: int) -> None:
    if rows < 1 or columns < 1:
        raise refusal(InvalidArgument, f"a matrix of {rows} by {columns}")


class LinearOperator:
    """A matrix that is known by its products alone: matvec(x) is A x, rmatvec(x) the product with the conjugate transpose, which
    is the matrix H. No method here needs the second one by itself. InvalidArgument where the shape is not that of a matrix.

    >>> double = LinearOperator((2, 2), lambda x: [2 * number for number in x])
    >>> cg(double, [1, 2], digits=20)
    ([Decimal('0.5'), Decimal('1')], 0)
    >>> turn = LinearOperator((2, 2), lambda x: [-x[1], x[0]], lambda x: [x[1], -x[0]])
    >>> turn.H.matvec([1, 2])
    [2, -1]
    """

    def __init__(self, shape: tuple[int, int], matvec: Product, rmatvec: Product | None = None) -> None:
        try:
            rows, columns = map(index, shape)
        except (TypeError, ValueError):
            raise refusal(InvalidType, f"a shape is a number of rows and one of columns, not {shape!r}") from None
        _require_numbers(rows, columns)
        for product in (matvec, matvec if rmatvec is None else rmatvec):
            if not callable(product):
                raise refusal(InvalidType, f"products are those of a function, not of {type(product).__name__}")
        self.shape = rows, columns
        self.matvec = matvec
        self.rmatvec = rmatvec

    def __call__(self, x: Any) -> Vector:
        return self.matvec(x)

    @property
    def H(self) -> "LinearOperator":
        """The conjugate transpose. InvalidArgument where its products are not known."""
        if self.rmatvec is None:
            raise refusal(InvalidArgument, "products with the conjugate transpose are not known: rmatvec was not given")
        return LinearOperator((self.shape[1], self.shape[0]), self.rmatvec, self.matvec)


# Sparse matrices of scipy have no types that a program without scipy could name.
Operator: TypeAlias = SparseMatrix | LinearOperator | Product | Any
Preconditioner: TypeAlias = IncompleteLU | IncompleteCholesky | SparseLU | SparseCholesky | LinearOperator | Product


def _rectangle(a: Any) -> tuple[SparseMatrix, tuple[int, int]] | None:
    """The SparseMatrix that is meant, with rows or columns of zeros where it is not square, and its shape; None where there are
    products alone."""
    if isinstance(a, SparseMatrix):
        return a, (a.order, a.order)
    if not hasattr(a, "tocoo"):
        return None
    entries = a.tocoo()
    rows, columns = entries.shape
    _require_numbers(rows, columns)
    at_places: dict[tuple[int, int], list[Any]] = {}
    for i, j, number in zip(entries.row.tolist(), entries.col.tolist(), entries.data.tolist()):
        at_places.setdefault((i, j), []).append(exact(number))
    triples = [(*place, exact_sum(numbers)) for place, numbers in at_places.items()]
    parts = (part for *_, number in triples for part in (number.real, number.imag))
    with at_digits(max((len(part.as_tuple().digits) for part in parts), default=1)), results(Decimal):
        return SparseMatrix(max(rows, columns), triples).canonicalise(zeros="keep"), (rows, columns)


def _require_square(rows: int, columns: int) -> None:
    if rows != columns:
        raise refusal(InvalidArgument, f"a matrix of {rows} by {columns} is not square")


def as_sparse(a: Any) -> SparseMatrix | None:
    """The SparseMatrix that is meant, None where there are products alone."""
    found = _rectangle(a)
    if found is None:
        return None
    matrix, (rows, columns) = found
    _require_square(rows, columns)
    return matrix


def _shape(a: Any) -> tuple[int, int]:
    if not callable(a) or not hasattr(a, "shape"):
        raise refusal(InvalidType, "a sparse matrix or a LinearOperator is needed, whose shape is known")
    rows, columns = a.shape
    return rows, columns


def _with_adjoint(a: Any) -> tuple[Any, tuple[int, int], Product | None]:
    """What forms products, its shape, and where that is no SparseMatrix its conjugate transpose."""
    found = _rectangle(a)
    return (*found, None) if found else (a, _shape(a), a.H)


def _solve(
    method: str,
    a: Operator,
    b: Vector,
    x0: Vector | None,
    rtol: RealLike,
    order: int,
    maxiter: int,
    preconditioner: Preconditioner | None,
    callback: Callable[[Any], object] | None,
    digits: int | None,
) -> tuple[Numbers, int]:
    def monitor(_iterations: int, x: Any, _residual: Any) -> None:
        if callback is not None:
            callback(x)

    matrix = as_sparse(a)
    if matrix is None and hasattr(a, "shape"):
        rows, columns = _shape(a)
        _require_square(rows, columns)
        b = list(b) if isinstance(b, Iterator) else b
        if isinstance(b, Sized) and len(b) != rows:
            raise refusal(InvalidArgument, f"a vector of {len(b)} elements where {rows} are needed")
    x, _, _ = solve_iteratively(
        matrix or a,
        b,
        preconditioner,
        method,
        order,
        rtol,
        maxiter,
        x0,
        # Whatever M makes small. Of products alone the norm is not known that the residual is measured by.
        criterion="residual" if matrix is not None and preconditioner is not None else "preconditioned_residual",
        monitor=None if callback is None else monitor,
        digits=digits,
    )
    return x, 0


def _square(a: Any) -> SparseMatrix:
    matrix = as_sparse(a)
    if matrix is None:
        raise refusal(InvalidType, "the entries of a sparse matrix are needed, not its products")
    return matrix


def spilu(
    A: Any,
    drop_tol: RealLike | None = None,
    level: int = 0,
    modified: bool = False,
    search: str = "none",
    *,
    digits: int | None = None,
) -> IncompleteLU:
    """Incomplete LU factors: fill up to a level is kept, or with drop_tol what is larger than that times its row.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> spilu(a).entries
    4
    """
    matrix = _square(A)
    with at(digits):
        return IncompleteLU(matrix, level, drop_tol, modified, search)


def splu(A: Any, *, digits: int | None = None) -> SparseLU:
    """LU factors with all their fill, of rows in an order that fills little, each with its largest element left as the pivot. A
    NumericalFailure for matrices that are singular to working precision.

    >>> a = SparseMatrix(2, [(0, 1, 1), (1, 0, 2)])
    >>> splu(a).solve([3, 4])
    [Decimal('2'), Decimal('3')]
    """
    matrix = _square(A)
    with at(digits):
        return SparseLU(matrix)


def cholesky(A: Any, *, digits: int | None = None) -> SparseCholesky:
    """Cholesky factors with all their fill, in an order that fills little, of a positive definite matrix, of which the lower
    triangle counts. A NumericalFailure for any other.

    >>> a = SparseMatrix(2, [(0, 0, 4), (1, 0, 2), (1, 1, 3)], lower_triangle=True)
    >>> cholesky(a).solve([8, 8])
    [Decimal('1'), Decimal('2')]
    """
    matrix = _square(A)
    with at(digits):
        return SparseCholesky(matrix)


def spsolve(A: Any, b: Vector, *, digits: int | None = None) -> Numbers:
    """The x with A x = b by complete LU factors, or Cholesky factors of a triangle that is positive definite, refined until
    ||b - A x|| is as small as rounding lets it be; proven in a block of true_digits().

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> [round(number, 20) for number in spsolve(a, [1, 2], digits=30)]
    [Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')]
    """
    matrix = _square(A)
    if _truth.wanted():
        proved: Numbers = _truth.proved(lambda: proven.solve(matrix, b))
        return proved
    factors: SparseLU | SparseCholesky
    try:
        factors = cholesky(matrix, digits=digits) if matrix.lower_triangle else splu(matrix, digits=digits)
    except NumericalFailure:
        if not matrix.lower_triangle:
            raise
        factors = splu(matrix, digits=digits)
    x: Numbers
    x, _, _ = solve_iteratively(matrix, b, factors, criterion="residual", tolerance="1e-100000000", digits=digits)
    return x


def gmres(
    a: Operator,
    b: Vector,
    x0: Vector | None = None,
    *,
    rtol: RealLike = 0,
    restart: int = 0,
    maxiter: int = 1000,
    M: Preconditioner | None = None,
    callback: Callable[[Any], object] | None = None,
    digits: int | None = None,
) -> tuple[Numbers, int]:
    """The x with a x = b by restarted GMRES, which starts anew after `restart` iterations, 0 for the usual number.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = gmres(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("rgmres", a, b, x0, rtol, restart, maxiter, M, callback, digits)


def fgmres(
    a: Operator,
    b: Vector,
    x0: Vector | None = None,
    *,
    rtol: RealLike = 0,
    restart: int = 0,
    maxiter: int = 1000,
    M: Preconditioner | None = None,
    callback: Callable[[Any], object] | None = None,
    digits: int | None = None,
) -> tuple[Numbers, int]:
    """The x with a x = b by flexible GMRES, which starts anew after `restart` iterations, 0 for the usual number. M is applied from
    the right and may be an iteration of its own, another solution with each call.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = fgmres(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("fgmres", a, b, x0, rtol, restart, maxiter, M, callback, digits)


def cgs(
    a: Operator,
    b: Vector,
    x0: Vector | None = None,
    *,
    rtol: RealLike = 0,
    maxiter: int = 1000,
    M: Preconditioner | None = None,
    callback: Callable[[Any], object] | None = None,
    digits: int | None = None,
) -> tuple[Numbers, int]:
    """The x with a x = b by the squared conjugate gradients.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = cgs(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("cgs", a, b, x0, rtol, 0, maxiter, M, callback, digits)


def bicgstab(
    a: Operator,
    b: Vector,
    x0: Vector | None = None,
    *,
    rtol: RealLike = 0,
    order: int = 0,
    maxiter: int = 1000,
    M: Preconditioner | None = None,
    callback: Callable[[Any], object] | None = None,
    digits: int | None = None,
) -> tuple[Numbers, int]:
    """The x with a x = b by BiCGSTAB(order), 0 for the usual order.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = bicgstab(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("bicgstab", a, b, x0, rtol, order, maxiter, M, callback, digits)


def idrs(
    a: Operator,
    b: Vector,
    x0: Vector | None = None,
    *,
    rtol: RealLike = 0,
    s: int = 0,
    maxiter: int = 1000,
    M: Preconditioner | None = None,
    callback: Callable[[Any], object] | None = None,
    digits: int | None = None,
) -> tuple[Numbers, int]:
    """The x with a x = b by IDR(s) with s shadow vectors, 0 for the usual number.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = idrs(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("idrs", a, b, x0, rtol, s, maxiter, M, callback, digits)


def tfqmr(
    a: Operator,
    b: Vector,
    x0: Vector | None = None,
    *,
    rtol: RealLike = 0,
    maxiter: int = 1000,
    M: Preconditioner | None = None,
    callback: Callable[[Any], object] | None = None,
    digits: int | None = None,
) -> tuple[Numbers, int]:
    """The x with a x = b by the transpose-free quasi-minimal residuals.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = tfqmr(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("tfqmr", a, b, x0, rtol, 0, maxiter, M, callback, digits)


def cg(
    a: Operator,
    b: Vector,
    x0: Vector | None = None,
    *,
    rtol: RealLike = 0,
    maxiter: int = 1000,
    M: Preconditioner | None = None,
    callback: Callable[[Any], object] | None = None,
    digits: int | None = None,
) -> tuple[Numbers, int]:
    """The x with a x = b by conjugate gradients, for a symmetric or Hermitian matrix that is positive definite.

    >>> a = SparseMatrix(2, [(0, 0, 4), (1, 0, 1), (1, 1, 3)], lower_triangle=True)
    >>> x, info = cg(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number * 11, 20) for number in x], info
    ([Decimal('1.00000000000000000000'), Decimal('7.00000000000000000000')], 0)
    """
    return _solve("cg", a, b, x0, rtol, 0, maxiter, M, callback, digits)


def minres(
    a: Operator,
    b: Vector,
    x0: Vector | None = None,
    *,
    rtol: RealLike = 0,
    maxiter: int = 1000,
    M: Preconditioner | None = None,
    callback: Callable[[Any], object] | None = None,
    digits: int | None = None,
) -> tuple[Numbers, int]:
    """The x with a x = b by minimal residuals, for a symmetric or Hermitian matrix.

    >>> a = SparseMatrix(2, [(0, 0, 4), (1, 0, 1), (1, 1, 3)], lower_triangle=True)
    >>> x, info = minres(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number * 11, 20) for number in x], info
    ([Decimal('1.00000000000000000000'), Decimal('7.00000000000000000000')], 0)
    """
    return _solve("minres", a, b, x0, rtol, 0, maxiter, M, callback, digits)


def _eigen(
    routine: Callable[..., Any], A: Operator, k: int, v0: Any, with_vectors: bool, digits: int | None, *settings: Any
) -> Any:
    which, sigma, inverse, *limits = settings
    matrix = as_sparse(A)
    order = 0
    if matrix is None:
        _require_square(*_shape(A))
        order = _shape(A)[0]
    w, v, _ = routine(matrix or A, k, order, which, sigma, inverse, v0, *limits, digits=digits)
    return (w, v) if with_vectors else w


def eigsh(
    A: Operator,
    k: int = 6,
    *,
    sigma: RealLike | None = None,
    which: str = "LM",
    v0: Vector | None = None,
    ncv: int = 0,
    maxiter: int = 0,
    tol: RealLike = 0,
    return_eigenvectors: bool = True,
    OPinv: Product | None = None,
    digits: int | None = None,
) -> Any:
    """k eigenvalues, ascending, of a symmetric or Hermitian matrix, and a matrix with their vectors in its columns. maxiter
    is the number of products after which it gives up, 0 for the usual one; OPinv the inverse of A - sigma where A is no
    sparse matrix.

    >>> a = SparseMatrix(3, [(0, 0, 1), (1, 1, 2), (2, 2, 5)])
    >>> eigsh(a, 2, which='SA', return_eigenvectors=False)
    [Decimal('1'), Decimal('2')]
    """
    return _eigen(_eigsh, A, k, v0, return_eigenvectors, digits, which, sigma, OPinv, ncv, tol, maxiter)


def eigs(
    A: Operator,
    k: int = 6,
    *,
    sigma: Any = None,
    which: str = "LM",
    v0: Vector | None = None,
    ncv: int = 0,
    maxiter: int = 0,
    tol: RealLike = 0,
    return_eigenvectors: bool = True,
    OPinv: Product | None = None,
    digits: int | None = None,
) -> Any:
    """k eigenvalues of a general matrix, the most wanted first, k + 1 where conjugates would be parted, and a matrix with
    their vectors in its columns; arguments as with eigsh.

    >>> a = SparseMatrix(2, [(0, 1, 1), (1, 0, -1)])
    >>> [round(abs(each), 10) for each in eigs(a, 1, return_eigenvectors=False)]
    [Decimal('1.0000000000'), Decimal('1.0000000000')]
    """
    return _eigen(_eigs, A, k, v0, return_eigenvectors, digits, which, sigma, OPinv, ncv, tol, maxiter)


def svds(
    A: Operator,
    k: int = 6,
    *,
    which: str = "LM",
    v0: Vector | None = None,
    ncv: int = 0,
    maxiter: int = 0,
    tol: RealLike = 0,
    return_singular_vectors: bool = True,
    digits: int | None = None,
) -> Any:
    """(u, s, vh) with k singular values, descending, 'LM' the largest or 'SM' the smallest: A vh^H = u diag(s).

    >>> svds(SparseMatrix(2, [(0, 0, 1), (1, 1, -2)]), 2, return_singular_vectors=False)
    [Decimal('2'), Decimal('1')]
    """
    matrix, (rows, columns), adjoint = _with_adjoint(A)
    u, s, v, _ = _svds(matrix, k, rows, columns, adjoint, which, v0, ncv, tol, maxiter, digits=digits)
    if not return_singular_vectors:
        return s
    return u, s, [[each.conjugate() for each in column] for column in zip(*v)]


def lsmr(
    A: Operator,
    b: Vector,
    damp: RealLike = 0,
    *,
    atol: RealLike = 0,
    btol: RealLike = 0,
    conlim: RealLike = 0,
    maxiter: int = 0,
    digits: int | None = None,
) -> tuple[Any, ...]:
    """(x, istop, itn, normr, normar, norma, conda) for the x of least |b - A x|^2 + damp^2 |x|^2. istop is 1 where A x = b,
    2 for least squares, 3 where the condition of A is conlim or more. Tolerances of 0 stand for the machine precision.

    >>> identity = LinearOperator((2, 2), lambda x: x, lambda x: x)
    >>> lsmr(identity, [1, 2])[1:3]
    (1, 1)
    """
    matrix, (_, columns), adjoint = _with_adjoint(A)
    return _lsmr(matrix, b, columns, adjoint, damp, atol, btol, conlim, maxiter, digits=digits)
