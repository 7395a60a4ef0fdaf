"""Numbers with proven bounds: arithmetic, functions, sums, products and transforms; and how data become such numbers."""

import decimal
import math
import re
from collections.abc import Callable, Iterator
from fractions import Fraction
from typing import Any, NamedTuple

from . import _core
from ._context import digits as _at_digits
from ._errors import InvalidArgument, InvalidType, refusal
from ._exact import has_end

_Complex = _core.Complex
_Part = tuple[decimal.Decimal, decimal.Decimal]


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

    def __pos__(self) -> "Bounded":
        return self

    def __abs__(self) -> "Bounded":
        return norm([self])


def is_number(x: Any) -> bool:
    return isinstance(x, (Bounded, str)) or not hasattr(x, "__iter__")


def _near(x: Any, digits: int) -> Any:
    """The numbers, each within a unit of the last of so many digits of what is meant; int and Fraction are exact."""
    if not is_number(x):
        return [_near(each, digits) for each in x]
    if isinstance(x, (int, Fraction, Bounded)):
        return x
    parts = [decimal.Decimal(str(part)) for part in ((x.real, x.imag) if isinstance(x, _Complex) else (x,))]
    errors = [decimal.Decimal((0, (len(parts),), part.adjusted() - digits + 1)) for part in parts if part and part.is_finite()]
    return Bounded(x, max(errors, default=decimal.Decimal(0)))


_GUARD_DIGITS = 10


def evaluated(data: Any) -> Any:
    """The data; of a function, or a matrix of the gallery by its name and order, 'hilbert(20)', what it gives at the working
    digits, each number within a unit of the last of them."""
    if isinstance(data, str):
        named = re.fullmatch(r"\s*(\w+)\s*\(\s*(\d{1,6})\s*\)\s*", data)
        if named is None:
            raise refusal(InvalidArgument, f"a matrix of the gallery is a name and an order, 'hilbert(20)', not {data!r}")
        return _near(_from_gallery(named[1], int(named[2])), _core.get_digits())
    return _near(_with_guard(data), _core.get_digits()) if callable(data) else data


def _with_guard(recipe: Callable[[], Any]) -> Any:
    with _at_digits(_core.get_digits() + _GUARD_DIGITS):
        return recipe()


def _from_gallery(name: str, order: int) -> Any:
    return _with_guard(lambda: _core.gallery(name, order))


def _rows(matrix: Any) -> list[list[Any]]:
    try:
        rows = list(matrix)
        if any(is_number(row) for row in rows):
            raise TypeError
        return [list(row) for row in rows]
    except TypeError as error:
        raise refusal(InvalidType, "a matrix is a sequence of rows") from error


def _given(matrix: Any) -> tuple[list[list[Any]], list[list[Any]] | None]:
    """The elements, Fractions rounded to the working digits, and bounds of their errors; None where there are none."""
    values = _rows(evaluated(matrix))
    errors: list[list[Any]] = [[0 for _ in row] for row in values]
    with decimal.localcontext() as context:
        context.prec = _core.get_digits()
        for row, bounds in zip(values, errors):
            for j, each in enumerate(row):
                if isinstance(each, Bounded):
                    row[j], bounds[j] = each
                elif isinstance(each, Fraction) and not has_end(each.denominator):
                    # Numerator, denominator and quotient are rounded.
                    row[j] = decimal.Decimal(each.numerator) / decimal.Decimal(each.denominator)
                    bounds[j] = decimal.Decimal((0, (1,), row[j].adjusted() - context.prec + 1))
    return values, errors if any(bound != 0 for bounds in errors for bound in bounds) else None


def _given_columns(b: Any) -> tuple[tuple[list[list[Any]], list[list[Any]] | None], bool]:
    """Right-hand sides as _given() has a matrix; and was it a vector?"""
    rows = evaluated(b)
    rows = [rows] if is_number(rows) else list(rows)
    is_vector = not rows or is_number(rows[0])
    return _given([[each] for each in rows] if is_vector else rows), is_vector


def numbers_in(argument: Any) -> Iterator[Any]:
    """The numbers in sequences, real and imaginary parts of complex ones."""
    if not is_number(argument):
        for each in argument:
            yield from numbers_in(each)
    elif isinstance(argument, _Complex):
        yield from (argument.real, argument.imag)
    elif not callable(argument):
        yield argument


def _quotient(name: str, number: Any) -> Fraction:
    """Exactly the number, one without a far exponent."""
    if isinstance(number, (int, Fraction)):
        return Fraction(number)
    try:
        value = decimal.Decimal(str(number))
    except decimal.InvalidOperation:
        value = decimal.Decimal("NaN")
    if not value.is_finite() or abs(value.adjusted()) > 10000:
        raise refusal(InvalidArgument, f"{name} takes no {number} beside quotients")
    return Fraction(value)


def exact_data(name: str, *groups: Any) -> tuple[Any, ...]:
    """The groups, in lists, of numbers that are exact: all of them times one number if that is needed to make quotients without
    an end whole, so that solutions, zeros, ranks and eigenvalues of pencils stay the same."""
    lists = tuple(_exact_list(name, evaluated(group)) for group in groups)
    given = [each for group in lists for each in numbers_in(group)]
    if all(not isinstance(each, Fraction) or has_end(each.denominator) for each in given):
        return lists
    factor = math.lcm(*(_quotient(name, each).denominator for each in given))

    def times(argument: Any) -> Any:
        if isinstance(argument, list):
            return [times(each) for each in argument]
        if isinstance(argument, _Complex):
            raise refusal(InvalidArgument, f"{name} takes no Complex beside quotients")
        return int(_quotient(name, argument) * factor)

    return tuple(times(group) for group in lists)


def _exact_list(name: str, argument: Any) -> Any:
    if isinstance(argument, Bounded):
        if argument.error:
            raise refusal(InvalidArgument, f"{name} takes exact numbers")
        return argument.value
    return argument if is_number(argument) else [_exact_list(name, each) for each in argument]


def _matrix(both: tuple[list[list[Any]], list[list[decimal.Decimal]]]) -> list[list[Bounded]]:
    return [[Bounded(value, _decimal(error)) for value, error in zip(*rows)] for rows in zip(*both)]


def _vector(both: tuple[list[Any], list[decimal.Decimal]]) -> list[Bounded]:
    return [Bounded(value, _decimal(error)) for value, error in zip(*both)]


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


def rounded(x: Any) -> Any:
    """Numbers that were rounded once to the working digits, each with the bound of that: half a unit of the last digit. x: a
    number, or numbers in sequences; int and Fraction are exact.

    >>> rounded("0.33333333333333333333").text(5), str(rounded(3))
    ('0.33333', '3')
    """
    if not is_number(x):
        return [rounded(each) for each in x]
    if isinstance(x, (int, Fraction, Bounded)):
        return bounded(x)
    return _matrix(_core._proven_rounded([[x]]))[0][0]


def function(name: str, x: Any, y: Any = None) -> Bounded:
    """The function of that name, one of tesk2mp's functions of one number, of a number with a bound; of two: fmod, pow, atan2,
    hypot, remainder, fmin, fmax, fdim, beta, binomial. Where a pole, the end of the domain or a branch cut may be within the
    bounds the bound of the result is infinite.

    >>> to_digits(30, lambda: function("exp", Fraction(1, 3))).text(30)
    '1.39561242508608952862812531960'
    >>> to_digits(20, lambda: function("atan2", -1, Fraction(1, 3))).text(20)
    '-1.2490457723982544258'
    """
    given = bounded(x)
    if y is None:
        return _vector(_core._proven_function(name, [given.value], [given.error]))[0]
    other = bounded(y)
    return _vector(_core._proven_function_of_two(name, [given.value], [given.error], [other.value], [other.error]))[0]


def _parallel(x: Any) -> tuple[list[Any], list[decimal.Decimal]]:
    numbers = [bounded(each) for each in evaluated(x)]
    return [each.value for each in numbers], [each.error for each in numbers]


def multiply(a: Any, b: Any) -> Any:
    """The product of a matrix with a matrix or a vector, each element rounded once; that of whole numbers is exact where they
    fit the working digits.

    >>> [str(x) for x in multiply([[1, 2], [3, 4]], ["0.5", 1])]
    ['2.5', '5.5']
    """
    columns, is_vector = _given_columns(b)
    product = _matrix(_core._proven_multiply(*_given(a), *columns))
    return [row[0] for row in product] if is_vector else product


def dot(x: Any, y: Any) -> Bounded:
    """The sum of the products of x and y, rounded once.

    >>> str(dot([1, 2], ["0.5", 3]))
    '6.5'
    """
    (left, left_errors), (right, right_errors) = _parallel(x), _parallel(y)
    columns = [[each] for each in right], [[each] for each in right_errors]
    return _matrix(_core._proven_multiply([left], [left_errors], *columns))[0][0]


def sum(x: Any) -> Bounded:  # pylint: disable=redefined-builtin
    """The sum of a vector, rounded once.

    >>> str(sum(["1e30", "0.5", "-1e30"]))
    '0.5'
    """
    return _vector(_core._proven_sum(*_parallel(x)))[0]


def norm(a: Any, kind: str = "frobenius") -> Bounded:
    """A norm of a matrix or a vector (a column). kind: 'largest' (element), 'one' (column sum), 'infinity' (row sum),
    'frobenius', which is the Euclidean one of a vector.

    >>> str(norm([3, 4])), str(norm([[1, -2], [3, 4]], "infinity"))
    ('5', '7')
    """
    columns, _ = _given_columns(a)
    return _vector(_core._proven_norm(*columns, kind))[0]


def transform(x: Any, backward: bool = False, divisor: str = "root", kind: str | None = None) -> list[Bounded]:
    """The discrete Fourier transform of a vector; with kind 'dct1' to 'dct4' or 'dst1' to 'dst4' a cosine or sine transform of
    real numbers. divisor: 'one', 'root' or 'length', of its period.

    >>> transform([1, 1])[0].text(10), transform([1, 2], kind="dct2", divisor="one")[0].text()
    ('1.414213562 0 (abs < 1E-19)', '6')
    """
    if kind is None:
        return _vector(_core._proven_transform(*_parallel(x), backward, divisor))
    if backward:
        raise refusal(InvalidArgument, "cosine and sine transforms have no direction: 'dct3' goes back from 'dct2'")
    return _vector(_core._proven_real_transform(*_parallel(x), kind, divisor))
