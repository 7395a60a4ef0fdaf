"""The types of arguments and results: what the stub of the package and the modules beside it are written in."""

from collections.abc import Sequence
from decimal import Decimal
from fractions import Fraction
from typing import TypeAlias, Union

from . import Complex, Real

RealLike: TypeAlias = Real | Decimal | int | Fraction | str
Number: TypeAlias = RealLike | Complex
Vector: TypeAlias = Sequence[Number]
Matrix: TypeAlias = Sequence[Vector]
Numbers: TypeAlias = list[Decimal] | list[Complex]
Rows: TypeAlias = list[list[Decimal]] | list[list[Complex]]
Nested: TypeAlias = Sequence[Union[Number, "Nested"]]
NestedComplex: TypeAlias = list[Union[Complex, "NestedComplex"]]
NestedReal: TypeAlias = list[Union[Decimal, "NestedReal"]]
Value: TypeAlias = Decimal | Complex | NestedReal | NestedComplex
