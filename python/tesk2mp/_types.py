"""The types of arguments and results: what the stub of the package and the modules beside it are written in."""

from collections.abc import Callable, Sequence
from decimal import Decimal
from fractions import Fraction
from typing import Any, Protocol, TypeAlias, Union

from ._core import Complex, Real


class Array(Protocol):
    """An array of numpy, or what looks like one."""

    def __array__(self) -> Any: ...

    def tolist(self) -> Any: ...


RealLike: TypeAlias = Real | Decimal | int | Fraction | str
Number: TypeAlias = RealLike | Complex
RealVector: TypeAlias = Sequence[RealLike] | Array
Vector: TypeAlias = Sequence[Number] | Array
# A function stands for the matrix that it gives with any number of digits, in a block of true_digits().
Matrix: TypeAlias = Sequence[Vector] | Array | Callable[[], Any]
Numbers: TypeAlias = list[Decimal] | list[Complex]
Rows: TypeAlias = list[list[Decimal]] | list[list[Complex]]
Nested: TypeAlias = Sequence[Union[Number, "Nested"]] | Array
NestedComplex: TypeAlias = list[Union[Complex, "NestedComplex"]]
NestedReal: TypeAlias = list[Union[Decimal, "NestedReal"]]
Value: TypeAlias = Decimal | Complex | NestedReal | NestedComplex
