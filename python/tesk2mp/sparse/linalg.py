"""Iterative solution of real linear systems under the names of scipy.sparse.linalg.

a is a SparseMatrix, or a function that takes a list of n Decimals and returns the n numbers of their product with the matrix; M
a function that solves with a matrix near a. rtol is the tolerance, 0 for the square root of the machine precision; callback is
called with each iterate. The result is (x, 0): what does not converge is a NumericalFailure. While a function works, `decimal`
has ten digits more than the solver.
"""

from collections.abc import Callable, Sequence
from decimal import Decimal
from typing import TypeAlias

from .. import SparseMatrix, solve_iteratively
from .._types import RealLike

__all__ = ["bicgstab", "cgs", "gmres", "tfqmr"]

Product: TypeAlias = Callable[[list[Decimal]], Sequence[RealLike]]
Operator: TypeAlias = SparseMatrix | Product


def _solve(
    method: str,
    a: Operator,
    b: Sequence[RealLike],
    x0: Sequence[RealLike] | None,
    rtol: RealLike,
    order: int,
    maxiter: int,
    preconditioner: Product | None,
    callback: Callable[[list[Decimal]], object] | None,
    digits: int | None,
) -> tuple[list[Decimal], int]:
    def monitor(_iterations: int, x: list[Decimal], _residual: list[Decimal]) -> None:
        if callback is not None:
            callback(x)

    x, _, _ = solve_iteratively(
        a,
        b,
        preconditioner,
        method,
        order,
        rtol,
        maxiter,
        x0,
        monitor=None if callback is None else monitor,
        digits=digits,
    )
    return x, 0


def gmres(
    a: Operator,
    b: Sequence[RealLike],
    x0: Sequence[RealLike] | None = None,
    *,
    rtol: RealLike = 0,
    restart: int = 0,
    maxiter: int = 1000,
    M: Product | None = None,
    callback: Callable[[list[Decimal]], object] | None = None,
    digits: int | None = None,
) -> tuple[list[Decimal], int]:
    """The x with a x = b by restarted GMRES, which starts anew after `restart` iterations, 0 for the usual number.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = gmres(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("rgmres", a, b, x0, rtol, restart, maxiter, M, callback, digits)


def cgs(
    a: Operator,
    b: Sequence[RealLike],
    x0: Sequence[RealLike] | None = None,
    *,
    rtol: RealLike = 0,
    maxiter: int = 1000,
    M: Product | None = None,
    callback: Callable[[list[Decimal]], object] | None = None,
    digits: int | None = None,
) -> tuple[list[Decimal], int]:
    """The x with a x = b by the squared conjugate gradients.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = cgs(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("cgs", a, b, x0, rtol, 0, maxiter, M, callback, digits)


def bicgstab(
    a: Operator,
    b: Sequence[RealLike],
    x0: Sequence[RealLike] | None = None,
    *,
    rtol: RealLike = 0,
    order: int = 0,
    maxiter: int = 1000,
    M: Product | None = None,
    callback: Callable[[list[Decimal]], object] | None = None,
    digits: int | None = None,
) -> tuple[list[Decimal], int]:
    """The x with a x = b by BiCGSTAB(order), 0 for the usual order.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = bicgstab(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("bicgstab", a, b, x0, rtol, order, maxiter, M, callback, digits)


def tfqmr(
    a: Operator,
    b: Sequence[RealLike],
    x0: Sequence[RealLike] | None = None,
    *,
    rtol: RealLike = 0,
    maxiter: int = 1000,
    M: Product | None = None,
    callback: Callable[[list[Decimal]], object] | None = None,
    digits: int | None = None,
) -> tuple[list[Decimal], int]:
    """The x with a x = b by the transpose-free quasi-minimal residuals.

    >>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
    >>> x, info = tfqmr(a, [1, 2], rtol='1e-25', digits=30)
    >>> [round(number, 20) for number in x], info
    ([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 0)
    """
    return _solve("tfqmr", a, b, x0, rtol, 0, maxiter, M, callback, digits)
