"""Numbers with proven bounds: arithmetic, functions, sums, products and transforms; and how data become such numbers."""

import contextvars
import decimal
import math
import re
from collections.abc import Callable, Iterator
from fractions import Fraction
from typing import Any

from . import _core
from ._context import digits as _at_digits
from ._errors import InvalidArgument, InvalidType, Undecided, refusal
from ._exact import has_end

_Complex = _core.Complex
_Real = _core.Real
_Part = tuple[decimal.Decimal, decimal.Decimal]
_INFINITY = decimal.Decimal("Infinity")
# The exponents of numbers are from minus this one to this one.
_LAST_EXPONENT = 999_999_999
_DIGITS_OF_ERROR = 9
_MOST_DIGITS_COMPARED = 100_000


def _context(digits: int, rounding: str = decimal.ROUND_HALF_EVEN) -> decimal.Context:
    """For numbers of any exponent, whatever the caller's own context and the default one are like."""
    return decimal.Context(digits, rounding, decimal.MIN_EMIN, decimal.MAX_EMAX, 1, 0, [], [decimal.InvalidOperation])


def _decimal(number: Any) -> decimal.Decimal:
    return number if isinstance(number, decimal.Decimal) else decimal.Decimal(str(number))


def _number(x: Any) -> Any:
    """The number with all its digits, a Decimal, a Real or a Complex; InvalidArgument where that is not possible."""
    if isinstance(x, decimal.Decimal) and abs(x.adjusted()) <= _LAST_EXPONENT:
        return x
    return x if isinstance(x, (_Real, _Complex)) else _core._proven_number(x)


def _bound(error: Any) -> decimal.Decimal:
    """A bound of an error, rounded up to what the library takes."""
    up = _context(_DIGITS_OF_ERROR, decimal.ROUND_UP)
    if isinstance(error, Fraction):
        size = up.divide(decimal.Decimal(error.numerator), decimal.Decimal(error.denominator))
    elif isinstance(error, _Complex):
        raise refusal(InvalidType, "a bound of an error is a real number")
    else:
        size = _decimal(error if isinstance(error, decimal.Decimal) else _number(error))
        if not size.is_nan():
            size = up.plus(size)
    if size.is_nan() or size < 0:
        raise refusal(InvalidArgument, f"a bound of an error is a number from 0 on, or Infinity, not {error}")
    if size and size.is_finite() and abs(size.adjusted()) > _LAST_EXPONENT:
        return _INFINITY if size.adjusted() > 0 else decimal.Decimal((0, (1,), -_LAST_EXPONENT))
    return size


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
        if error < part.copy_abs():
            return f"{'-' if part < 0 else '+'}1E{part.adjusted():+d} (no digit is known)"
        reach = _context(_DIGITS_OF_ERROR, decimal.ROUND_UP).add(part.copy_abs(), error)
        return f"0 (abs < 1E{reach.adjusted() + 1:+d})"
    wanted = [each for each in (known, most) if each is not None]
    return str(_context(min(wanted)).plus(part) if wanted else part)


_FORMAT = re.compile(r"((?:.?[<>^])?)([ +-]?)((?:[1-9]\d*)?)([,_]?)(?:\.(\d+))?([eEfFgG%]?)", re.DOTALL)


def _formatted(part: decimal.Decimal, error: decimal.Decimal, head: str, places: int | None, kind: str) -> str:
    """The number in a format of Decimal, with as many of the digits that it asks for as are true."""
    known = _known(part, error)
    if known == 0:
        return _text(part, error, None)
    if known is not None:
        # The places after the point that are true: none where a unit of the last true digit is more than 1.
        after_point = known - 1 - part.adjusted()
        most = {"f": after_point, "F": after_point, "%": after_point - 2, "e": known - 1, "E": known - 1}.get(kind, known)
        if most < 0:
            return _text(part, error, None)
        places = most if places is None else min(places, most)
    with decimal.localcontext(_context(decimal.MAX_PREC)):
        return format(part, head + ("" if places is None else f".{places}") + kind)


class Bounded:
    """Bounded(value, error=0)

    A number and a bound: |value - exact| <= error, where the error is a number from 0 on, rounded up to nine digits, or Infinity,
    as it is for a value that is not finite. str() and format() show the digits that are true, of both parts of a Complex.

    Operators take another Bounded, or a number, which is exact; a Fraction without an end in decimal is rounded with a bound.
    Comparisons of real ones, == and != of all, and bool() are decided by the bounds, or else raise Undecided; so do min(), max() and
    sorted(). There is no hash, and no conversion to another kind of number.

    >>> x = Bounded("0.5", "0.1")
    >>> x < 1, str(x * x), f"{rounded('0.33333333333333333333'):.5f}"
    (True, '+1E-1 (no digit is known)', '0.33333')
    """

    __slots__ = ("_error", "_value")
    _value: Any
    _error: decimal.Decimal
    __hash__ = None  # type: ignore[assignment]

    def __new__(cls, value: Any, error: Any = 0) -> "Bounded":
        if isinstance(value, Bounded):
            raise refusal(InvalidType, "a number with a bound has one already")
        number, bound = _number(value), _bound(error)
        if bound.is_finite() and not all(_decimal(part).is_finite() for part in _real_and_imaginary(number)):
            raise refusal(InvalidArgument, f"a number that is not finite has no bound but Infinity: {value}")
        return _made(number, bound)

    def __setattr__(self, name: str, value: Any) -> None:
        raise AttributeError("a number with a bound does not change")

    def __delattr__(self, name: str) -> None:
        raise AttributeError("a number with a bound does not change")

    def __reduce__(self) -> tuple[Any, ...]:
        return Bounded, (self._value, self._error)

    @property
    def value(self) -> Any:
        """The number: a Decimal, a Real or a Complex."""
        return self._value

    @property
    def error(self) -> decimal.Decimal:
        """The bound of its distance from the exact one."""
        return self._error

    def parts(self) -> list[_Part]:
        """The real number, or real and imaginary part, each with its bound."""
        return [(_decimal(part), self._error) for part in _real_and_imaginary(self._value)]

    def conjugate(self) -> "Bounded":
        """The complex conjugate; a real number itself."""
        return _made(self._value.conjugate(), self._error) if isinstance(self._value, _Complex) else self

    def text(self, most: int | None = None) -> str:
        """The true digits, `most` at most; "0 (abs < 1E-40)" where the sign is not known, "?" where nothing is."""
        return " ".join(_text(part, error, most) for part, error in self.parts())

    def __str__(self) -> str:
        return self.text()

    def __repr__(self) -> str:
        return f"Bounded(value={self._value!r}, error={self._error!r})"

    def __format__(self, spec: str) -> str:
        """As of a Decimal, but with no more digits than are true."""
        if not spec:
            return str(self)
        match = _FORMAT.fullmatch(spec)
        if match is None:
            raise refusal(InvalidArgument, f"a format of numbers with bounds, such as '.3f' or '>30.4e', not {spec!r}")
        alignment, sign, width, grouping, places, kind = match.groups()
        parts = (
            _formatted(part, error, sign + grouping, None if places is None else int(places), kind) for part, error in self.parts()
        )
        return format(" ".join(parts), f"{alignment or '>'}{width}")

    def __add__(self, other: Any) -> Any:
        return _operated("+", self, other, other)

    def __radd__(self, other: Any) -> Any:
        return _operated("+", other, self, other)

    def __sub__(self, other: Any) -> Any:
        return _operated("-", self, other, other)

    def __rsub__(self, other: Any) -> Any:
        return _operated("-", other, self, other)

    def __mul__(self, other: Any) -> Any:
        return _operated("*", self, other, other)

    def __rmul__(self, other: Any) -> Any:
        return _operated("*", other, self, other)

    def __truediv__(self, other: Any) -> Any:
        return _operated("/", self, other, other)

    def __rtruediv__(self, other: Any) -> Any:
        return _operated("/", other, self, other)

    def __pow__(self, other: Any) -> Any:
        return _operated("^", self, other, other)

    def __rpow__(self, other: Any) -> Any:
        return _operated("^", other, self, other)

    def __neg__(self) -> "Bounded":
        value = self._value
        return _made(value.copy_negate() if isinstance(value, decimal.Decimal) else -value, self._error)

    def __pos__(self) -> "Bounded":
        return self

    def __abs__(self) -> "Bounded":
        return norm([self])

    def __bool__(self) -> bool:
        if not self._error:
            return bool(self._value)
        if any(_exceeds(part, error) for part, error in self.parts()):
            return True
        size = norm([self])
        if not _exceeds(_decimal(size.value), size.error):
            raise _undecided(f"{self} may be 0")
        return True

    def __eq__(self, other: Any) -> Any:
        difference = self._minus(other)
        return difference if difference is NotImplemented else not _truth_of(difference, self, "==", other)

    def __ne__(self, other: Any) -> Any:
        difference = self._minus(other)
        return difference if difference is NotImplemented else _truth_of(difference, self, "!=", other)

    def __lt__(self, other: Any) -> Any:
        return self._compared(other, "<")

    def __gt__(self, other: Any) -> Any:
        return self._compared(other, ">")

    def __le__(self, other: Any) -> Any:
        return self._compared(other, "<=")

    def __ge__(self, other: Any) -> Any:
        return self._compared(other, ">=")

    def _minus(self, other: Any) -> Any:
        """The difference; of a float too, which is compared as exactly what it is."""
        if isinstance(other, (str, bytes)) or not _is_operand(other):
            return NotImplemented
        if isinstance(other, float):
            if not math.isfinite(other):
                return NotImplemented
            other = decimal.Decimal(other)
        # With all digits, where they are not too far apart.
        right = bounded(other)
        numbers = [part for part, _ in self.parts() + right.parts() if part and part.is_finite()]
        lowest = min((part.adjusted() - len(part.as_tuple().digits) for part in numbers), default=0)
        needed = max((part.adjusted() for part in numbers), default=0) - lowest + 2
        working = _core.get_digits()
        with _at_digits(needed if working < needed <= _MOST_DIGITS_COMPARED else working):
            return _operated("-", self, right, right)

    def _compared(self, other: Any, sign: str) -> Any:
        difference = self._minus(other)
        if difference is NotImplemented:
            return NotImplemented
        if isinstance(difference.value, _Complex):
            raise refusal(InvalidType, "complex numbers have no order")
        value, error = difference.parts()[0]
        if value.is_nan() or not error.is_finite():
            raise _undecided(f"{self} {sign} {other}")
        if sign[0] == ">":
            value = value.copy_negate()
        size = value.copy_abs()
        if sign in ("<", ">"):
            below, above = value < 0 and error < size, value >= 0 and error <= size
        else:
            below, above = value <= 0 and error <= size, value > 0 and error < size
        if below or above:
            return below
        raise _undecided(f"{self} {sign} {other}")


def _real_and_imaginary(number: Any) -> tuple[Any, ...]:
    return (number.real, number.imag) if isinstance(number, _Complex) else (number,)


def _made(value: Any, error: decimal.Decimal) -> Bounded:
    """A number with a bound as the library makes them."""
    made = object.__new__(Bounded)
    object.__setattr__(made, "_value", value)
    object.__setattr__(made, "_error", error)
    return made


def _undecided(text: str) -> Exception:
    return refusal(Undecided, f"the bounds do not decide: {text}; more working digits may")


def _exceeds(part: decimal.Decimal, error: decimal.Decimal) -> bool:
    return error.is_finite() and part.copy_abs() > error


def _truth_of(difference: Bounded, left: Any, sign: str, right: Any) -> bool:
    try:
        return bool(difference)
    except Undecided:
        raise _undecided(f"{left} {sign} {right}") from None


def is_number(x: Any) -> bool:
    return isinstance(x, (Bounded, str)) or not hasattr(x, "__iter__")


def _is_operand(x: Any) -> bool:
    """A number, or what a message about numbers is for; not an array, or another class's business."""
    known = (Bounded, _Real, _Complex, decimal.Decimal, Fraction, int, float, complex, str)
    return isinstance(x, known) or (is_number(x) and (hasattr(x, "__index__") or hasattr(x, "dtype")))


def _near(x: Any, digits: int) -> Any:
    """The numbers, each within a unit of the last of so many digits of what is meant; int and Fraction are exact."""
    if not is_number(x):
        return [_near(each, digits) for each in x]
    if isinstance(x, (int, Fraction, Bounded)):
        return x
    number = _number(x)
    parts = [_decimal(part) for part in _real_and_imaginary(number)]
    errors = [decimal.Decimal((0, (len(parts),), part.adjusted() - digits + 1)) for part in parts if part and part.is_finite()]
    return Bounded(number, max(errors, default=decimal.Decimal(0)))


_GUARD_DIGITS = 10


# In a search for digits: the iterators that its calls have gone through, kept so that no other object has their place.
gone_through: contextvars.ContextVar[dict[int, Any] | None] = contextvars.ContextVar("gone_through", default=None)


def _check_fresh(x: Any) -> None:
    seen = gone_through.get()
    if seen is not None and hasattr(x, "__next__") and seen.setdefault(id(x), (x, _core.get_digits()))[1] != _core.get_digits():
        raise refusal(InvalidArgument, "an iterator gives its numbers once, and more digits are needed: a list gives them again")


def evaluated(data: Any) -> Any:
    """The data; of a function, or a matrix of the gallery by its name and order, 'hilbert(20)', what it gives at the working
    digits, each number within a unit of the last of them."""
    if isinstance(data, str):
        named = re.fullmatch(r"\s*(\w+)\s*\(\s*(\d{1,6})\s*\)\s*", data)
        if named is None:
            raise refusal(InvalidArgument, f"a matrix of the gallery is a name and an order, 'hilbert(20)', not {data!r}")
        return _near(_from_gallery(named[1], int(named[2])), _core.get_digits())
    _check_fresh(data)
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
        for row in rows:
            _check_fresh(row)
        return [list(row) for row in rows]
    except TypeError as error:
        raise refusal(InvalidType, "a matrix is a sequence of rows") from error


def _given(matrix: Any) -> tuple[list[list[Any]], list[list[Any]] | None]:
    """The elements, Fractions rounded to the working digits, and bounds of their errors; None where there are none."""
    values = _rows(evaluated(matrix))
    errors: list[list[Any]] = [[0 for _ in row] for row in values]
    context = _context(_core.get_digits())
    for row, bounds in zip(values, errors):
        for j, each in enumerate(row):
            if isinstance(each, Bounded):
                row[j], bounds[j] = each.value, each.error
            elif isinstance(each, Fraction) and not has_end(each.denominator):
                row[j] = context.divide(decimal.Decimal(each.numerator), decimal.Decimal(each.denominator))
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
    value = _decimal(_number(number))
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
    return [[_made(value, _decimal(error)) for value, error in zip(*rows)] for rows in zip(*both)]


def _vector(both: tuple[list[Any], list[decimal.Decimal]]) -> list[Bounded]:
    return [_made(value, _decimal(error)) for value, error in zip(*both)]


def bounded(x: Any) -> Bounded:
    """A number with its bound: 0, or that of the rounding of a Fraction that has no end in decimal.

    >>> with _at_digits(30):
    ...     (bounded(Fraction(1, 3)) * 3 - 1).text()
    '0 (abs < 1E-29)'
    """
    if isinstance(x, Bounded):
        return x
    values, errors = _given([[x]])
    return Bounded(values[0][0], 0 if errors is None else errors[0][0])


def _operated(sign: str, x: Any, y: Any, other: Any) -> Any:
    if not _is_operand(other):
        return NotImplemented
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
    if not left and not right:
        return Bounded(0)
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
