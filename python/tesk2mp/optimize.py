"""Zeros of functions under the name of scipy.optimize."""

from collections.abc import Callable
from decimal import Decimal

from . import find_zero
from ._types import RealLike

__all__ = ["brentq"]


def brentq(
    f: Callable[[Decimal], RealLike], a: RealLike, b: RealLike, *, xtol: RealLike = 0, digits: int | None = None
) -> Decimal:
    """A zero of f between a and b, where f has different signs: to the last working digit, or within xtol.

    >>> brentq(lambda x: x * x - 2, 1, 2, digits=30)
    Decimal('1.41421356237309504880168872421')
    """
    return find_zero(f, a, b, tolerance=xtol, digits=digits)
