"""Binary numbers, exactly."""

from decimal import MAX_EMAX, MAX_PREC, MIN_EMIN, Context, Decimal, InvalidOperation
from typing import Any

from ._context import _MOST_DIGITS, digits
from ._core import Complex, Real
from ._errors import InvalidArgument, InvalidType, refusal

# Enough for any number here: nothing is ever rounded.
_WIDE = Context(prec=MAX_PREC, Emax=MAX_EMAX, Emin=MIN_EMIN)
_MPMATH_SPECIAL = {0: "0", -456: "Infinity", -789: "-Infinity"}


_DEEPEST = 64  # as of the sequences that the routines take


def exact(x: Any, real: bool = False) -> Any:
    """exact(x, real=False)

    Exactly the number x: a float, a complex, a number of numpy, an mpf or mpc of mpmath, or what the package takes anyway;
    or each of the numbers in lists of any depth, or of an array, as an array of objects. All digits are kept, whatever the
    working ones are. They are Decimals, with real=True Reals; complex ones are Complex. InvalidArgument for a Fraction
    without an end in decimal.

    >>> exact(0.1)
    Decimal('0.1000000000000000055511151231257827021181583404541015625')
    >>> exact([1, [0.5, 1j]])
    [Decimal('1'), [Decimal('0.5'), Complex('0', '1')]]
    """
    return _exact(x, real, 0)


def _exact(x: Any, real: bool, depth: int) -> Any:
    if depth > _DEEPEST:
        raise refusal(InvalidArgument, f"sequences more than {_DEEPEST} deep, or one that contains itself")
    if hasattr(x, "__array__") and getattr(x, "shape", None):
        import numpy

        result = numpy.empty(x.shape, dtype=object)
        for place in numpy.ndindex(x.shape):
            result[place] = _exact(x[place], real, depth + 1)
        return result
    if isinstance(x, (list, tuple)):
        return [_exact(each, real, depth + 1) for each in x]
    if isinstance(x, Complex):
        return x
    if hasattr(x, "_mpc_"):
        return _with_all_digits(Complex, *(_of_mpmath(*part) for part in x._mpc_))
    if isinstance(x, complex) or getattr(getattr(x, "dtype", None), "kind", "") == "c":
        return _with_all_digits(Complex, _decimal(x.real), _decimal(x.imag))
    number = _decimal(x)
    return _with_all_digits(Real, number) if real else number


def _decimal(x: Any) -> Decimal:
    if isinstance(x, Real):
        return Decimal(x.decimal())
    if hasattr(x, "_mpf_"):
        return _of_mpmath(*x._mpf_)
    if isinstance(x, str):
        return _of_text(x)
    if isinstance(x, (Decimal, float, int)):
        return Decimal(x)
    if hasattr(x, "__index__"):
        return Decimal(x.__index__())
    if not hasattr(x, "as_integer_ratio"):
        raise refusal(InvalidType, f"a number is needed, not {type(x).__name__}")
    if x != x or x in (float("inf"), -float("inf")):
        return Decimal(float(x))
    return _quotient(*x.as_integer_ratio())


def _of_text(x: str) -> Decimal:
    try:
        return Decimal(x)
    except InvalidOperation:
        raise refusal(InvalidArgument, f"not a number: {x!r}") from None


def exact_sum(numbers: list[Any]) -> Any:
    """The sum of what exact() gives, with all its digits."""
    if len(numbers) == 1:
        return numbers[0]
    if any(isinstance(each, Complex) for each in numbers):
        return _with_all_digits(Complex, *(exact_sum([_decimal(part) for part in parts]) for parts in zip(*map(_parts, numbers))))
    finite = [each for each in numbers if each and each.is_finite()]
    length = max((each.adjusted() for each in finite), default=0) - min((each.adjusted() - len(each.as_tuple().digits) for each in finite), default=0)
    if length > _MOST_DIGITS:
        raise refusal(InvalidArgument, f"a sum of some {length} digits: there are {_MOST_DIGITS} at most")
    context = Context(prec=length + len(numbers), Emax=MAX_EMAX, Emin=MIN_EMIN, traps=[])
    result = Decimal(0)
    for each in numbers:
        result = context.add(result, each)
    return result


def _parts(number: Any) -> tuple[Any, Any]:
    return (number.real, number.imag) if isinstance(number, Complex) else (number, Decimal(0))


def has_end(denominator: int) -> bool:
    """Do quotients by it end in decimal: has it no factors but 2 and 5?"""
    odd = denominator >> ((denominator & -denominator).bit_length() - 1)
    # 5^k has 2.32 k bits.
    near = round(odd.bit_length() / 2.321928094887362)
    return odd == 1 or (odd % 5 == 0 and any(5**k == odd for k in (near - 1, near, near + 1)))


def _quotient(numerator: int, denominator: int) -> Decimal:
    if not has_end(denominator):
        raise refusal(InvalidArgument, f"{numerator}/{denominator} has no end in decimal")
    scale = 10 ** denominator.bit_length()
    return Decimal(numerator * (scale // denominator)).scaleb(-denominator.bit_length(), _WIDE).normalize(_WIDE)


def _of_mpmath(sign: int, mantissa: Any, exponent: int, _: int) -> Decimal:
    if mantissa == 0:
        return Decimal(_MPMATH_SPECIAL.get(exponent, "NaN"))
    number = -int(mantissa) if sign else int(mantissa)
    # number 2^e, or number 5^-e 10^e
    length = int(number.bit_length() * 0.30103 + abs(exponent) * (0.30103 if exponent >= 0 else 0.69897)) + 2
    if length > _MOST_DIGITS:
        raise refusal(InvalidArgument, f"a number of some {length} digits: there are {_MOST_DIGITS} at most")
    context = Context(prec=length, Emax=MAX_EMAX, Emin=MIN_EMIN)
    power = context.power(Decimal(2 if exponent >= 0 else 5), abs(exponent))
    return context.multiply(context.create_decimal(number), power).scaleb(min(exponent, 0), _WIDE)


def _with_all_digits(kind: Any, *parts: Decimal) -> Any:
    with digits(max(1, *(len(part.as_tuple().digits) for part in parts))):
        return kind(*parts)
