"""Products of matrices under the names of numpy.linalg and scipy.linalg. Each element of a product is rounded once."""

import functools
from collections.abc import Sequence
from decimal import Decimal
from typing import Any, cast

from . import Complex, _truth, dot, fractional_matrix_power, multiply, proven
from . import outer as _outer
from ._bounded import is_number
from ._context import at
from ._errors import InvalidArgument, InvalidType, refusal
from ._types import Matrix, Numbers, Rows, Vector

__all__ = ["kron", "matmul", "matrix_power", "multi_dot", "outer", "trace"]


def _rows(a: Any) -> list[list[Any]]:
    rows = [[] if is_number(row) else list(row) for row in a]
    if not all(rows):
        raise refusal(InvalidType, "a matrix is a sequence of rows, each a sequence of numbers")
    if len({len(row) for row in rows}) > 1:
        raise refusal(InvalidArgument, "the rows of a matrix are of one length")
    return rows


def _is_vector(x: Any) -> bool:
    if is_number(x):
        raise refusal(InvalidType, f"a vector or a matrix is needed, not {type(x).__name__}")
    return all(is_number(each) for each in x)


def _lists(x: Any) -> Any:
    """The argument, which can be gone through several times."""
    return x if hasattr(x, "__array__") or is_number(x) else [each if is_number(each) else list(each) for each in x]


def matmul(a: Vector | Matrix, b: Vector | Matrix, *, digits: int | None = None) -> Any:
    """The product of matrices, of a matrix and a vector, or of two vectors.

    >>> matmul([[1, 2], [3, 4]], [[0, 1], [1, 0]]), matmul([1, 2], [[1, 2], [3, 4]]), matmul([1, 2], [3, 4])
    ([[Decimal('2'), Decimal('1')], [Decimal('4'), Decimal('3')]], [Decimal('7'), Decimal('10')], Decimal('11'))
    """
    left, right = _lists(a), _lists(b)
    if _is_vector(left):
        return dot(left, right, digits=digits) if _is_vector(right) else multiply(right, left, "transpose", digits=digits)
    return multiply(left, right, digits=digits)


def _proven_product(left: Any, right: Any) -> Any:
    if not _is_vector(left):
        return proven.multiply(left, right)
    return proven.dot(left, right) if _is_vector(right) else proven.multiply([list(column) for column in zip(*right)], left)


def multi_dot(arrays: Sequence[Vector | Matrix], *, digits: int | None = None) -> Any:
    """The product of several matrices, from left to right; the first and the last may be vectors.

    >>> multi_dot([[1, 2], [[1, 1], [0, 1]], [[2, 0], [0, 3]]])
    [Decimal('2'), Decimal('9')]
    """
    if len(arrays) < 2:
        raise refusal(InvalidArgument, "a product has two factors at least")
    with at(digits):
        if _truth.wanted():
            factors = [_lists(each) for each in arrays]
            product = _truth.proved(lambda: functools.reduce(_proven_product, factors))
            return _truth.as_array(product) if hasattr(arrays[0], "__array__") else product
        return functools.reduce(matmul, arrays)


def matrix_power(a: Matrix, n: int, *, digits: int | None = None) -> Rows:
    """The power of a square matrix, by products; of the inverse for n < 0.

    >>> matrix_power([[1, 1], [1, 0]], 10)
    [[Decimal('89'), Decimal('55')], [Decimal('55'), Decimal('34')]]
    """
    if isinstance(n, bool) or not hasattr(n, "__index__"):
        raise refusal(InvalidType, f"the exponent is an integer, not {type(n).__name__}: fractional_matrix_power takes others")
    return fractional_matrix_power(a, n, digits=digits)


def outer(a: Vector, b: Vector, *, digits: int | None = None) -> Rows:
    """The products of all numbers of two vectors.

    >>> outer([1, 2], [3, 4])
    [[Decimal('3'), Decimal('4')], [Decimal('6'), Decimal('8')]]
    """
    return cast(Rows, _outer(a, b, digits=digits))


def kron(a: Matrix, b: Matrix, *, digits: int | None = None) -> Rows:
    """The matrix of blocks a_ij b.

    >>> kron([[1, 2]], [[0, 1], [1, 0]])
    [[Decimal('0'), Decimal('1'), Decimal('0'), Decimal('2')], [Decimal('1'), Decimal('0'), Decimal('2'), Decimal('0')]]
    """
    left, right = _rows(a), _rows(b)
    width = len(left[0]) if left else 0
    products: list[Numbers] = cast(Any, _outer([x for row in left for x in row], [x for row in right for x in row], digits=digits))
    columns = len(right[0]) if right else 0
    rows = [
        [each for j in range(width) for each in products[i * width + j][k * columns : (k + 1) * columns]]
        for i in range(len(left))
        for k in range(len(right))
    ]
    if hasattr(a, "__array__"):
        import numpy

        return cast(Rows, numpy.array(rows, dtype=object))
    return cast(Rows, rows)


def trace(a: Matrix, *, digits: int | None = None) -> Decimal | Complex:
    """The sum of the diagonal, rounded once.

    >>> trace([["1e30", 0, 0], [0, "0.5", 0], [0, 0, "-1e30"]])
    Decimal('0.5')
    """
    rows = _rows(a)
    diagonal = [row[i] for i, row in enumerate(rows[: len(rows[0])])] if rows else []
    return dot(diagonal, [1] * len(diagonal), digits=digits)
