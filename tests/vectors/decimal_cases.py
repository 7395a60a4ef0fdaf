"""Cases for the number type and their results by Python's decimal module.

A case is (digits, operation, operands). Operands are Decimals with up to a few digits more than the working precision;
results are rounded half to even, with infinity above and zero below the number type's exponent range.
"""

import decimal
import functools
import math
import random
import struct
import sys
from decimal import Decimal

sys.set_int_max_str_digits(0)

LARGEST_EXPONENT = 999999999

ARITHMETIC = ("add", "subtract", "multiply", "divide", "remainder", "squareroot", "compare", "text",
              "floor", "ceil", "trunc", "integer", "double")
ELEMENTARY = ("exp", "ln", "log10", "power")
OPERATIONS = {"arithmetic": ARITHMETIC, "elementary": ELEMENTARY, "all": ARITHMETIC + ELEMENTARY}
UNARY = ("squareroot", "text", "floor", "ceil", "trunc", "integer", "double", "exp", "ln", "log10")
ROUNDINGS = {"floor": decimal.ROUND_FLOOR, "ceil": decimal.ROUND_CEILING, "trunc": decimal.ROUND_DOWN}

SPECIALS = [Decimal(text) for text in ("0", "-0", "inf", "-inf", "nan", "1", "-1", "2", "0.5", "10")]


def context(digits):
    return decimal.Context(prec=digits, rounding=decimal.ROUND_HALF_EVEN, Emax=decimal.MAX_EMAX,
                           Emin=decimal.MIN_EMIN, traps=[])


EXACT = context(3000000)


# Results ---------------------------------------------------------------------------------------------------------


def fit(value):
    """The value in the number type's exponent range, without subnormal numbers."""
    if value.is_finite() and value:
        if value.adjusted() > LARGEST_EXPONENT:
            return Decimal("inf").copy_sign(value)
        if value.adjusted() < -LARGEST_EXPONENT:
            return Decimal(0).copy_sign(value)
    return value


def remainder(ctx, a, b):
    """Exact before the one rounding, however far apart the exponents are."""
    if not (a.is_finite() and b.is_finite() and a and b):
        return ctx.remainder(a, b)
    if a.copy_abs() < b.copy_abs():
        return ctx.plus(a)
    if a.adjusted() - b.adjusted() < 100000:
        rest = EXACT.remainder(a, b)
        return ctx.plus(rest) if rest else rest
    high, low = a.as_tuple().exponent, b.as_tuple().exponent
    whole_a, whole_b = (int(x.copy_abs().scaleb(-x.as_tuple().exponent, EXACT)) for x in (a, b))
    if high >= low:
        rest = whole_a * pow(10, high - low, whole_b) % whole_b
    else:
        rest = whole_a % (whole_b * 10**(low - high))
    return ctx.plus(Decimal(rest).scaleb(min(high, low), EXACT).copy_sign(a)) if rest else Decimal(0).copy_sign(a)


def power(digits, a, b):
    """Python's power is only nearly always correctly rounded: many more digits, to be rounded once by the caller."""
    return context(2 * digits + 60).power(a, b)


def whole_part(a, rounding):
    """The neighbouring whole number, exactly."""
    if not a.is_finite() or a.as_tuple().exponent >= 0:
        return a
    # A number this small is like the smallest one of its sign that the digits of EXACT can hold.
    near = a if a.adjusted() > -1000 else Decimal("1e-1000").copy_sign(a) if a else a.quantize(Decimal(1))
    return near.to_integral_value(rounding, EXACT)


def as_integer(a):
    """The whole part, the nearest 32-bit integer where that is too large."""
    limit = 2**31
    if a.is_nan():
        return 0
    return limit - 1 if a >= limit else -limit if a < -limit else int(a)


def evaluate(digits, operation, operands):
    """The result as the number type's text."""
    ctx = context(digits)
    a = operands[0]
    b = operands[-1]
    functions = {
        "add": ctx.add, "subtract": ctx.subtract, "multiply": ctx.multiply, "divide": ctx.divide,
        "remainder": functools.partial(remainder, ctx), "squareroot": ctx.sqrt,
        "exp": ctx.exp, "ln": ctx.ln, "log10": ctx.log10, "power": functools.partial(power, digits),
    }
    if operation == "compare":
        order = ctx.compare(a, b)
        return "2" if order.is_nan() else str(order)
    if operation == "integer":
        return str(as_integer(a))
    if operation == "double":
        return "nan" if a.is_nan() else str(struct.unpack("<Q", struct.pack("<d", float(str(a))))[0])
    if operation == "text":
        result = a
    elif operation in ROUNDINGS:
        result = whole_part(a, ROUNDINGS[operation])
    else:
        result = functions[operation](*operands)
    return spell(fit(ctx.plus(result) if result else result))


def spell(value):
    """The text that the number type writes."""
    if not value.is_finite():
        return "nan" if value.is_nan() else "-inf" if value.is_signed() else "inf"
    sign, digits, exponent = value.as_tuple()
    sign = "-" if sign else ""
    if not value:
        return sign + "0"
    digits = "".join(map(str, digits))
    adjusted = exponent + len(digits) - 1
    digits = digits.rstrip("0")
    if not -7 <= adjusted <= 20:
        return "%s%s%se%+d" % (sign, digits[0], "." + digits[1:] if digits[1:] else "", adjusted)
    if adjusted < 0:
        return sign + "0." + "0" * (-adjusted - 1) + digits
    whole, fraction = digits[:adjusted + 1].ljust(adjusted + 1, "0"), digits[adjusted + 1:]
    return sign + whole + ("." + fraction if fraction else "")


# Operands --------------------------------------------------------------------------------------------------------


class Cases:
    """An endless stream of cases that depends on the seed alone."""

    def __init__(self, seed, operations=ARITHMETIC, largest=200):
        self.random = random.Random(seed)
        self.operations = operations
        self.largest = largest

    def __iter__(self):
        return self

    def __next__(self):
        digits = self.working_digits()
        operation = self.random.choice(self.operations)
        if self.once_in(25):
            operands = self.special_operands()
        elif self.once_in(12) and operation in ARITHMETIC:
            operands = self.edge_operands(digits, operation)
        else:
            operands = self.operands(digits, operation)
        if operation == "squareroot" and not self.once_in(20):
            operands[0] = operands[0].copy_abs()
        return digits, operation, operands[:1] if operation in UNARY else operands

    def once_in(self, times):
        return self.random.randrange(times) == 0

    def working_digits(self):
        top = self.random.choice((10, 20, 40, 40, 60, 100, self.largest))
        return self.random.randint(1, min(top, self.largest))

    def special_operands(self):
        return [self.random.choice(SPECIALS) if self.once_in(2) else self.number(20) for _ in range(2)]

    def edge_operands(self, digits, operation):
        """Operands whose result lies at an end of the exponent range, on either side of it."""
        edge = self.random.choice((-1, 1)) * LARGEST_EXPONENT
        near = edge + self.random.randint(-2, 2)
        if operation in ("multiply", "divide"):
            first = self.random.randint(-LARGEST_EXPONENT, LARGEST_EXPONENT) // 2 + edge // 2
            second = near - first if operation == "multiply" else first - near
            return [self.number(digits, first), self.number(digits, second)]
        a = fit(self.tie(digits).scaleb(near - digits, EXACT)) if self.once_in(2) else self.number(digits, near)
        return [self.signed(a), self.neighbour(a) if self.once_in(2) else self.number(digits, near)]

    def digit_text(self, count):
        """Digits, the first not zero, in runs of random ones, nines and zeros, where carries and ties live."""
        text = self.random.choice("123456789")
        while len(text) < count:
            run = min(self.random.randint(1, 1 + count // 2), count - len(text))
            kind = self.random.randrange(4)
            text += ("9" * run, "0" * run)[kind] if kind < 2 else "".join(self.random.choices("0123456789", k=run))
        return text

    def integer(self, count):
        """A whole number of exactly so many digits."""
        return Decimal(self.digit_text(count))

    def exponent(self):
        kind = self.random.randrange(10)
        if kind == 0:
            return self.random.randint(-1000000, 1000000)
        if kind == 1:
            return self.random.choice((-1, 1)) * self.random.randint(LARGEST_EXPONENT // 2 - 300,
                                                                    LARGEST_EXPONENT // 2 + 300)
        if kind == 2:
            return self.random.choice((-1, 1)) * self.random.randint(LARGEST_EXPONENT - 300, LARGEST_EXPONENT)
        return self.random.randint(-25, 25)

    def number(self, digits, exponent=None):
        """A number of up to a few more digits than asked for, with the given exponent of its leading digit."""
        count = self.random.randint(1, digits + self.random.choice((0, 0, 1, 3, 40)))
        scale = (self.exponent() if exponent is None else exponent) - count + 1
        value = self.integer(count).scaleb(scale, EXACT)
        return self.signed(fit(value))

    def signed(self, value):
        return value.copy_negate() if self.once_in(2) else value

    def tie(self, digits):
        """A number halfway between two neighbours at so many digits, or one last digit off."""
        value = Decimal(self.digit_text(digits) + "5")
        if self.once_in(3):
            value = EXACT.add(value, self.signed(Decimal(1).scaleb(-self.random.randint(1, digits + 20))))
        return value

    def operands(self, digits, operation):
        if operation in ELEMENTARY:
            return self.elementary_operands(digits, operation)
        if not self.once_in(3):
            return self.plain_operands(digits)
        if operation in ("add", "subtract"):
            return self.tied_sum(digits, operation)
        if operation == "multiply":
            return self.tied_product(digits)
        if operation in ("divide", "remainder"):
            divisor = self.number(digits, self.random.randint(-9, 9))
            return [EXACT.multiply(self.tie(digits), divisor), divisor]
        if operation == "squareroot":
            root = self.tie(digits) if self.once_in(2) else self.integer(digits)
            square = EXACT.multiply(root, root)
            return [EXACT.add(square, self.random.choice((-1, 0, 0, 1))).scaleb(2 * self.random.randint(-9, 9), EXACT)]
        if operation == "double":
            return [self.between_doubles()]
        value = self.signed(self.tie(digits))
        return [value, self.neighbour(value)]

    def between_doubles(self):
        """The point halfway between two doubles, subnormal ones included, or next to it."""
        low = struct.unpack("<d", struct.pack("<Q", self.random.getrandbits(63)))[0]
        if not math.isfinite(math.nextafter(low, math.inf)):
            return self.number(20, 308)
        middle = EXACT.multiply(EXACT.add(Decimal(low), Decimal(math.nextafter(low, math.inf))), Decimal("0.5"))
        step = self.random.choice((0, 0, 1, -1)) * Decimal(1).scaleb(middle.adjusted() - self.random.randint(17, 800))
        return self.signed(EXACT.add(middle, step))

    def plain_operands(self, digits):
        a = self.number(digits)
        kind = self.random.randrange(4)
        if kind == 0:
            return [a, self.number(digits)]
        if kind == 1:
            return [a, self.neighbour(a)]
        if not a or not a.is_finite():
            return [a, self.number(digits)]
        # The second number starts within, just behind, or well behind the first one's last digit.
        gap = self.random.choice((0, 1, digits - 1, digits, digits + 1, digits + 2, self.random.randint(0, 2 * digits)))
        pair = [a, self.number(digits, max(a.adjusted() - gap, -LARGEST_EXPONENT))]
        self.random.shuffle(pair)
        return pair

    def neighbour(self, a):
        """The same number or one that differs in its last digits, with the other sign half of the time."""
        if not a or not a.is_finite() or self.once_in(3):
            return self.signed(a)
        step = Decimal(self.random.randint(1, 12)).scaleb(a.as_tuple().exponent - self.random.choice((0, 0, 1)), EXACT)
        return self.signed(fit(EXACT.add(a, self.signed(step))))

    def tied_sum(self, digits, operation):
        total = self.signed(self.tie(digits))
        a = self.number(digits, total.adjusted() - self.random.randint(-1, digits))
        rest = EXACT.subtract(total, a)
        return [a, rest if operation == "add" else rest.copy_negate()]

    def tied_product(self, digits):
        factor = Decimal(5**self.random.randint(1, max(1, min(digits, 40))))
        odd = Decimal(self.digit_text(self.random.randint(1, digits)) + self.random.choice("13579"))
        return [self.signed(odd.scaleb(self.random.randint(-9, 9), EXACT)), self.signed(factor)]

    def elementary_operands(self, digits, operation):
        kind = self.random.randrange(8)
        scale = self.random.randint(-digits - 3, 9) if kind == 0 else self.random.randint(-4, 3)
        a = self.number(digits, scale)
        if operation == "exp":
            return [a]
        if kind == 1:
            a = EXACT.add(Decimal(1), self.number(digits, -self.random.randint(1, digits + 3)))
        elif kind == 2:
            a = fit(Decimal(1).scaleb(self.exponent(), EXACT))
        elif kind == 3:
            a = self.number(digits)
        if operation == "power":
            if kind == 4:
                base = self.integer(self.random.randint(1, 4))
                return [base, self.signed(Decimal(self.random.randint(1, 40)))]
            if kind == 5:
                root = self.integer(self.random.randint(1, digits))
                return [EXACT.multiply(root, root), self.signed(Decimal("0.5"))]
            if kind == 6:
                return [self.signed(a), Decimal(self.random.randint(-300, 300))]
            return [a.copy_abs(), self.number(digits, self.random.randint(-3, 2))]
        return [a.copy_abs() if not self.once_in(50) else a]
