#!/usr/bin/env python3
"""verify_certificate.py FILE...: checks certificates that `quarn ... --certificate FILE` writes, with whole numbers alone.

A certificate has a problem, the answer, bounds of its errors and what proves them. Nothing is solved here, nothing is
rounded, and nothing but Python's standard library is needed. docs/guide/certificates.md has the format and the theorems. - is
standard input; as with `quarn verify`, a file may be compressed by gzip, and have a byte order mark or be in UTF-16 with one.

Exit status: 0 every proof holds; 1 one does not, and a line says which inequality fails; 2 a file is not a certificate.

|z| of a complex number stands for |re| + |im| where an upper bound is enough; it is no less than the modulus.
"""
import codecs
import gzip
import io
import json
import re
import sys
import zlib
from collections.abc import Callable
from typing import Any

Rows = list[list[int]]

MOST_BYTES = 1 << 30  # of a file
MOST_EXPONENT = 100_000  # of a number
MOST_INTEGER = 1_000_000_000  # of what is counted
MOST_LENGTH = 100_000  # of a number's text
MOST_DIGITS = 100_000_000  # of a matrix whose numbers are brought to a common power of ten
MOST_WORK = 100_000_000_000  # products of machine words, some minutes

REAL = r"(?:\d+(?:\.\d*)?|\.\d+)(?:[eE][+-]?\d+)?"
NUMBER = re.compile(rf"([+-]?{REAL})(?:([+-]{REAL})i)?", re.ASCII)
PART = re.compile(r"([+-]?)(\d*)\.?(\d*)(?:[eE]([+-]?\d+))?", re.ASCII)


class Malformed(Exception):
    """The file is no certificate, or too large to check."""


class Refuted(Exception):
    """An inequality of the proof does not hold."""


class Work:
    """How much has been done so far."""

    done = 0

    @classmethod
    def spend(cls, words: int) -> None:
        cls.done += words
        if cls.done > MOST_WORK:
            raise Malformed("checking it would take too long")


def ten(power: int) -> int:
    if power > 200 * MOST_EXPONENT:
        raise Malformed("its numbers are too far apart")
    result: int = 10**power
    return result


class Exact:
    """A matrix of whole numbers, or of pairs of them, over 10^places. im is None where all are real."""

    def __init__(self, re_: Rows, im: Rows | None, places: int):
        self.re, self.im, self.places = re_, im, places
        self.rows, self.columns = len(re_), len(re_[0]) if re_ else 0

    def aligned(self, places: int) -> "Exact":
        """The same numbers over a higher power of ten."""
        if places == self.places:
            return self
        if (places - self.places) * max(1, self.rows * self.columns) > MOST_DIGITS:
            raise Malformed("its numbers are too far apart")
        factor = ten(places - self.places)
        im = self.im and [[x * factor for x in row] for row in self.im]
        return Exact([[x * factor for x in row] for row in self.re], im, places)

    def sizes(self) -> Rows:
        if self.im is None:
            return [[abs(x) for x in row] for row in self.re]
        return [[abs(x) + abs(y) for x, y in zip(*rows)] for rows in zip(self.re, self.im)]

    def conjugate_transposed(self) -> "Exact":
        im = self.im and [[-x for x in column] for column in zip(*self.im)]
        return Exact([list(column) for column in zip(*self.re)], im, self.places)

    def at(self, i: int, j: int = 0) -> "Exact":
        return Exact([[self.re[i][j]]], self.im and [[self.im[i][j]]], self.places)

    def square(self, i: int, j: int = 0) -> int:
        """|element (i, j)|^2, over 10^(2 places)."""
        im = self.im[i][j] if self.im else 0
        return self.re[i][j] * self.re[i][j] + im * im


def together(*matrices: Exact) -> list[Exact]:
    places = max(each.places for each in matrices)
    return [each.aligned(places) for each in matrices]


def identity(n: int) -> Exact:
    return Exact([[int(i == j) for j in range(n)] for i in range(n)], None, 0)


def diagonal(x: Exact) -> Exact:
    def spread(part: Rows) -> Rows:
        return [[row[0] if i == j else 0 for j in range(x.rows)] for i, row in enumerate(part)]

    return Exact(spread(x.re), spread(x.im) if x.im else None, x.places)


def combined(a: Rows | None, b: Rows | None, sign: int) -> Rows | None:
    if a is None or b is None:
        return a if b is None else [[sign * y for y in row] for row in b]
    return [[x + sign * y for x, y in zip(*rows)] for rows in zip(a, b)]


def difference(a: Exact, b: Exact) -> Exact:
    if (a.rows, a.columns) != (b.rows, b.columns):
        raise Malformed("matrices of different shapes are subtracted")
    a, b = together(a, b)
    return Exact(combined(a.re, b.re, -1) or [], combined(a.im, b.im, -1), a.places)


def longest(rows: Rows) -> int:
    return max((x.bit_length() for row in rows for x in row), default=0)


def whole_product(a: Rows | None, b: Rows | None) -> Rows | None:
    """Each row of b becomes one long number, so that a row of the product is one sum of products."""
    if a is None or b is None:
        return None
    width = (longest(a) + longest(b) + len(b).bit_length() + 9) // 8  # bytes of an element with its sign
    Work.spend(len(a) * len(b) * max(1, longest(a) // 64) * max(1, width * len(b[0]) // 8))
    half = 1 << (8 * width - 1)
    offset = int.from_bytes((half.to_bytes(width, "little")) * len(b[0]), "little")
    packed = [sum(x << (8 * width * j) for j, x in enumerate(row)) for row in b]
    result = []
    for row in a:
        total = (sum(x * y for x, y in zip(row, packed)) + offset).to_bytes(width * len(b[0]) + 1, "little")
        starts = range(0, width * len(b[0]), width)
        result.append([int.from_bytes(total[k : k + width], "little") - half for k in starts])
    return result


def product(a: Exact, b: Exact) -> Exact:
    if a.columns != b.rows:
        raise Malformed("matrices are multiplied whose shapes do not fit")
    re_ = combined(whole_product(a.re, b.re), whole_product(a.im, b.im), -1)
    im = combined(whole_product(a.re, b.im), whole_product(a.im, b.re), 1)
    return Exact(re_ or [], im, a.places + b.places)


def is_at_most(a: int, of_a: int, b: int, of_b: int) -> bool:
    """a / 10^of_a <= b / 10^of_b"""
    return a <= b * ten(of_a - of_b) if of_a >= of_b else a * ten(of_b - of_a) <= b


def parsed_part(text: str) -> tuple[int, int]:
    """A whole number and a power of ten."""
    match = PART.fullmatch(text)
    assert match
    sign, whole, fraction, exponent = match.groups()
    if exponent and len(exponent.lstrip("+-")) > 8 or abs(int(exponent or 0)) > MOST_EXPONENT:
        raise Malformed(f"the exponent of {text[:40]} is beyond {MOST_EXPONENT}")
    digits = (whole + fraction).rstrip("0")
    power = int(exponent or 0) - len(fraction) + len(whole + fraction) - len(digits)
    return (-int(digits) if sign == "-" else int(digits), power) if digits else (0, 0)


def parsed(text: Any, name: str) -> tuple[tuple[int, int], tuple[int, int]]:
    match = NUMBER.fullmatch(text) if isinstance(text, str) and len(text) <= MOST_LENGTH else None
    if not match:
        raise Malformed(f"'{name}' has {str(text)[:40]!r}, which is not the text of a number")
    return parsed_part(match[1]), parsed_part(match[2] or "0")


class Certificate:
    """The parts by their names, as exact matrices; a list is a matrix of one column."""

    def __init__(self, parts: dict[str, Any]):
        self.kind: str = parts["certificate"]
        self.parts = parts
        self.known: dict[str, Exact] = {}

    def has(self, name: str) -> bool:
        return name in self.parts

    def get(self, name: str, rows: int | None = None, columns: int | None = None, real: bool = False) -> Exact:
        if name not in self.known:
            self.known[name] = self.read(name)
        x = self.known[name]
        if rows not in (None, x.rows) or columns not in (None, x.columns):
            raise Malformed(f"'{name}' is {x.rows} by {x.columns}, not {rows or x.rows} by {columns or x.columns}")
        if real and x.im is not None:
            raise Malformed(f"'{name}' is not real")
        return x

    def read(self, name: str) -> Exact:
        rows = self.parts.get(name)
        if not isinstance(rows, list) or not rows:
            raise Malformed(f"there is no '{name}'" if rows is None else f"'{name}' is not a list of numbers")
        rows = [row if isinstance(row, list) else [row] for row in rows]
        if not rows[0] or any(len(row) != len(rows[0]) for row in rows):
            raise Malformed(f"the rows of '{name}' have different lengths")
        numbers = [[parsed(text, name) for text in row] for row in rows]
        powers = [power for row in numbers for pair in row for x, power in pair if x] or [0]
        if (max(powers) - min(powers)) * len(rows) * len(rows[0]) > MOST_DIGITS:
            raise Malformed(f"the numbers of '{name}' are too far apart")
        places = -min(powers)

        def part(k: int) -> Rows:
            return [[x * ten(power + places) if x else 0 for x, power in (pair[k] for pair in row)] for row in numbers]

        im = part(1)
        return Exact(part(0), im if any(map(any, im)) else None, places)

    def bounds(self, name: str, rows: int, columns: int) -> Exact:
        x = self.get(name, rows, columns, real=True)
        if any(element < 0 for row in x.re for element in row):
            raise Malformed(f"'{name}' has a negative bound")
        return x

    def integers(self, name: str, rows: int) -> list[int]:
        x = self.get(name, rows, 1, real=True)
        whole = [row[0] for row in x.aligned(max(x.places, 0)).re]
        if x.places > 0 or any(abs(each) > MOST_INTEGER for each in whole):
            raise Malformed(f"'{name}' has numbers that are not whole, or too large")
        return whole


def where(i: int, j: int, x: Exact) -> str:
    return f"component {i + 1}" if x.columns == 1 else f"element ({i + 1}, {j + 1})"


def check_answer(values: Exact, errors: Exact, near: Exact, of_near: Exact) -> None:
    """|values - near| <= errors - of_near, by squares"""
    values, errors, near, of_near = together(values, errors, near, of_near)
    distance = difference(values, near)
    for i in range(values.rows):
        for j in range(values.columns):
            room = errors.re[i][j] - of_near.re[i][j]
            if room < 0 or distance.square(i, j) > room**2:
                raise Refuted(f"{where(i, j, values)}: |answer - near| <= error - near_error fails")


def defect(y: Exact, x: Exact, names: str) -> tuple[list[int], int, int]:
    """Row sums of |1 - y x|, the largest of them, which has to be below 1, and 1 itself, over the same power of ten."""
    e = difference(identity(x.columns), product(y, x))
    e = e.aligned(max(e.places, 0))
    sums = [sum(row) for row in e.sizes()]
    one = ten(e.places)
    if max(sums) >= one:
        raise Refuted(f"||1 - {names}|| < 1 fails in row {sums.index(max(sums)) + 1}")
    return sums, max(sums), one


def check_solution(c: Certificate) -> str:
    """near is off by at most |y| + e max|y| / (1 - max e), y = R (b - A near), e the row sums of |1 - R A|."""
    a = c.get("a")
    n = a.rows
    c.get("a", n, n)
    b = identity(n) if c.kind == "inverse" else c.get("b", n)
    shape = (n, b.columns)
    r = c.get("approximate_inverse", n, n)
    near = c.get("near", *shape)
    sums, largest_sum, one = defect(r, a, "R A")
    y, of_near = together(product(r, difference(b, product(a, near))), c.bounds("near_errors", *shape))
    sizes = y.sizes()
    for j in range(b.columns):
        largest = max(row[j] for row in sizes)
        for i in range(n):
            bound = sizes[i][j] * (one - largest_sum) + sums[i] * largest
            if bound > of_near.re[i][j] * (one - largest_sum):
                raise Refuted(f"{where(i, j, near)}: |y| + e max|y| / (1 - max e) <= near_error fails")
    check_answer(c.get("x", *shape), c.bounds("errors", *shape), near, of_near)
    return f"{'the inverse' if c.kind == 'inverse' else 'a solution'} of order {n}"


def check_determinant(c: Certificate) -> str:
    """det(P) det(X) det(A) det(Y) = det(1 - E), which is within s / (1 - s) of 1, s the sum of all |elements| of E."""
    a = c.get("a")
    n = a.rows
    c.get("a", n, n)
    order = [k - 1 for k in c.integers("rows", n)]
    if sorted(order) != list(range(n)):
        raise Malformed("'rows' is not a permutation")
    x, y = c.get("left", n, n), c.get("right", n, n)
    for name, factor, lower in (("left", x, True), ("right", y, False)):
        sizes = factor.sizes()
        if any(sizes[i][j] for i in range(n) for j in range(n) if (j > i if lower else j < i)):
            raise Malformed(f"'{name}' is not {'lower' if lower else 'upper'} triangular")
    permuted = Exact([a.re[k] for k in order], a.im and [a.im[k] for k in order], a.places)
    e = difference(identity(n), product(product(x, permuted), y))
    e = e.aligned(max(e.places, 0))
    s, one = sum(sum(row) for row in e.sizes()), ten(e.places)
    if s >= one:
        raise Refuted("the sum of |1 - X P A Y| is not below 1")
    sign, seen = 1, [False] * n
    for k in range(n):
        length = 0
        while not seen[k]:
            seen[k], k, length = True, order[k], length + 1
        sign *= -1 if length and length % 2 == 0 else 1
    q = Exact([[sign]], None, 0)
    for factor in (x, y):
        for k in range(n):
            q = product(q, factor.at(k, k))
    near, of_near = c.get("near", 1, 1), c.bounds("near_errors", 1, 1)
    d = difference(product(near, q), identity(1))
    d = d.aligned(max(d.places, 0))
    left = d.sizes()[0][0] * (one - s) + s * ten(d.places)
    right = (of_near.re[0][0] * (one - s)) ** 2 * q.square(0)
    if not is_at_most(left**2, 2 * d.places, right, 2 * (of_near.places + q.places)):
        raise Refuted("|near q - 1| + s / (1 - s) <= near_error |q| fails")
    check_answer(c.get("determinant", 1, 1), c.bounds("errors", 1, 1), near, of_near)
    return f"the determinant of a matrix of order {n}"


def check_weyl(c: Certificate) -> str:
    """A = U D V^H + F: the j-th value is within ||F|| + d_j g of d_j, g >= ||1 - U^H U|| and ||1 - V^H V||."""
    a, u = c.get("a"), c.get("left")
    k = min(a.rows, a.columns)
    c.get("left", a.rows, k)
    singular = c.kind == "singular values"
    v = c.get("right", a.columns, k) if singular else u
    if not singular:
        c.get("a", k, k)
        if any(map(any, difference(a, a.conjugate_transposed()).sizes())):
            raise Malformed("'a' is not Hermitian")
    of_u = defect(u.conjugate_transposed(), u, "U^H U")
    of_v = defect(v.conjugate_transposed(), v, "V^H V") if singular else of_u
    g, one = max([(largest, unit) for _, largest, unit in (of_u, of_v)], key=lambda x: x[0] * of_u[2] * of_v[2] // x[1])
    near, of_near = c.get("near", k, 1, real=True), c.bounds("near_errors", k, 1)
    if singular and any(row[0] < 0 for row in near.re):
        raise Malformed("'near' has a negative singular value")
    f = difference(a, product(product(u, diagonal(near)), v.conjugate_transposed()))
    sizes = f.sizes()
    square = max(sum(row) for row in sizes) * max(sum(column) for column in zip(*sizes))
    near, of_near = together(near, of_near)
    for j in range(k):
        room = of_near.re[j][0] * one - abs(near.re[j][0]) * g
        if room < 0 or not is_at_most(square * one**2, 2 * f.places, room**2, 2 * near.places):
            raise Refuted(f"value {j + 1}: ||F|| + |d| g <= near_error fails")
    check_answer(c.get("values", k, 1, real=True), c.bounds("errors", k, 1), near, of_near)
    return f"the {c.kind} of a matrix of {a.rows} by {a.columns}"


def check_discs(c: Certificate, near: Exact, of_near: Exact, real_problem: bool) -> None:
    """Discs near +- of_near that hold as many roots as there are discs: groups that are apart hold as many as members."""
    n = near.rows
    values, errors = c.get("values", n, 1), c.bounds("errors", n, 1)
    groups, counts, real = (c.integers(name, n) for name in ("groups", "counts", "real"))
    near, of_near, values, errors = together(near, of_near, values, errors)

    def are_apart(i: int, j: int, mirror: int) -> bool:
        re_ = near.re[i][0] - near.re[j][0]
        im = mirror * near.im[i][0] - near.im[j][0] if near.im else 0
        return re_**2 + im**2 > (of_near.re[i][0] + of_near.re[j][0]) ** 2

    for i in range(n):
        if counts[i] != groups.count(groups[i]):
            raise Refuted(f"value {i + 1}: its count is not the number of discs of its group")
        if real[i] and (counts[i] != 1 or not real_problem or values.im and values.im[i][0]):
            raise Refuted(f"value {i + 1}: it is not alone in its group, or something is not real")
        for j in range(n):
            if groups[i] != groups[j]:
                if not are_apart(i, j, 1):
                    raise Refuted(f"discs {i + 1} and {j + 1} of different groups are not apart")
                if real[i] and not are_apart(i, j, -1):
                    raise Refuted(f"value {i + 1} is not proven to be real: disc {j + 1} meets the conjugate of its own")
                continue
            room = errors.re[i][0] - of_near.re[j][0]
            re_ = values.re[i][0] - near.re[j][0]
            im = (values.im[i][0] if values.im else 0) - (near.im[j][0] if near.im else 0)
            if room < 0 or re_**2 + im**2 > room**2:
                raise Refuted(f"value {i + 1}: |answer - near| <= error - near_error fails for disc {j + 1}")


def check_eigenvalues(c: Certificate) -> str:
    """A X = X M + T: the eigenvalues are those of M + X^-1 T, by Gerschgorin in discs around the diagonal of M."""
    a = c.get("a")
    n = a.rows
    c.get("a", n, n)
    x, near, of_near = c.get("vectors", n, n), c.get("near", n, 1), c.bounds("near_errors", n, 1)
    m = c.get("middle", n, n) if c.has("middle") else diagonal(near)
    if c.has("middle"):
        of_m, of_near_ = together(m, near)
        centres = [difference(of_m.at(i, i), of_near_.at(i)).square(0) for i in range(n)]
        if any(centres):
            raise Malformed("the diagonal of 'middle' is not 'near'")
    weights = c.integers("weights", n) if c.has("weights") else [0] * n
    if (max(weights) - min(weights)) * n * n > MOST_DIGITS:
        raise Malformed("'weights' are too far apart")
    y = c.get("approximate_inverse", n, n)
    sums, largest_sum, one = defect(y, x, "Y X")
    z, m, of_near_ = together(product(y, difference(product(a, x), product(x, m))), m, of_near)
    sizes, sizes_of_m = z.sizes(), m.sizes()
    largest = [max(column) for column in zip(*sizes)]
    scales = [ten(w - min(weights)) for w in weights]
    for i in range(n):
        radius = 0
        for j in range(n):
            size = (sizes[i][j] + (sizes_of_m[i][j] if j != i else 0)) * (one - largest_sum) + sums[i] * largest[j]
            radius += size * scales[j]
        if radius > of_near_.re[i][0] * (one - largest_sum) * scales[i]:
            raise Refuted(f"value {i + 1}: the row sum of |M - diag(M) + X^-1 T| <= near_error fails")
    check_discs(c, near, of_near, a.im is None)
    return f"the eigenvalues of a matrix of order {n}"


def check_zeros(c: Certificate) -> str:
    """Each zero is in a disc around a near_i with n |p(near_i)| / |a_n prod (near_i - near_j)| as radius (Smith).

    As many near_i that are 0 with a bound of 0 as there are coefficients 0 at the end are zeros; n and p are without them.
    """
    a = c.get("a", None, 1)
    n = a.rows - 1
    if n < 1 or not a.square(0):
        raise Malformed("'a' has no coefficient of the highest power")
    near, of_near = c.get("near", n, 1), c.bounds("near_errors", n, 1)
    places = range(n)
    at_zero = [i for i in places if not near.square(i) and not of_near.re[i][0]]
    degree = next(k for k in range(n, -1, -1) if a.square(k))
    others = [i for i in places if i not in at_zero] if len(at_zero) == n - degree else list(places)
    digits = sum(longest(part) for part in (near.re, near.im or [[0]])) + abs(near.places) + longest(a.re)
    Work.spend(n**3 * (1 + digits // 64) ** 2)
    for i in others:
        z = near.at(i)
        value, divisor = a.at(0), a.at(0)
        for k in range(1, len(others) + 1):
            minus = difference(Exact([[0]], None, 0), a.at(k))
            value = difference(product(value, z), minus)
        for j in others:
            if j != i:
                divisor = product(divisor, difference(z, near.at(j)))
        left = len(others) ** 2 * value.square(0)
        right = of_near.re[i][0] ** 2 * divisor.square(0)
        if not divisor.square(0) or not is_at_most(left, 2 * value.places, right, 2 * (of_near.places + divisor.places)):
            raise Refuted(f"zero {i + 1}: n |p(near)| <= near_error |a_n prod (near - others)| fails")
    check_discs(c, near, of_near, a.im is None)
    return f"the zeros of a polynomial of degree {n}"


# What checks a kind, and its parts beside 'certificate', 'a', 'errors', 'near' and 'near_errors'.
KINDS: dict[str, tuple[Callable[[Certificate], str], str]] = {
    "solution": (check_solution, "b x approximate_inverse"),
    "inverse": (check_solution, "x approximate_inverse"),
    "determinant": (check_determinant, "determinant rows left right"),
    "eigenvalues": (check_eigenvalues, "values counts real groups vectors approximate_inverse middle weights"),
    "symmetric eigenvalues": (check_weyl, "values left"),
    "singular values": (check_weyl, "values left right"),
    "zeros": (check_zeros, "values counts real groups"),
}


def members(pairs: list[tuple[str, Any]]) -> dict[str, Any]:
    """An object of JSON, whose names have to be different."""
    known: dict[str, Any] = {}
    for name, value in pairs:
        if name in known:
            raise Malformed(f"'{name[:40]}' is there twice")
        known[name] = value
    return known


def check(text: str) -> str:
    """What the certificate proves; raises Malformed or Refuted."""
    Work.done = 0
    if hasattr(sys, "set_int_max_str_digits"):
        sys.set_int_max_str_digits(0)
    try:
        parts = json.loads(text.removeprefix("\ufeff"), parse_int=float, object_pairs_hook=members)
    except (ValueError, RecursionError) as error:
        raise Malformed(f"it is not JSON: {error}") from None
    if not isinstance(parts, dict) or parts.get("certificate") not in list(KINDS):
        raise Malformed("it has no 'certificate' of a known kind")
    checker, names = KINDS[parts["certificate"]]
    for name in parts:
        if name not in {"certificate", "a", "errors", "near", "near_errors", *names.split()}:
            raise Malformed(f"'{name[:40]}' is no part of this kind")
    return checker(Certificate(parts))


def contents(file: str) -> str:
    """The text of a file, or of standard input for "-"."""
    if file == "-":
        data = sys.stdin.buffer.read(MOST_BYTES + 1)
    else:
        with open(file, "rb") as stream:
            data = stream.read(MOST_BYTES + 1)
    if data.startswith(b"\x1f\x8b"):
        try:
            data = gzip.GzipFile(fileobj=io.BytesIO(data)).read(MOST_BYTES + 1)
        except (EOFError, zlib.error) as error:
            raise Malformed(f"it cannot be unpacked: {error}") from None
    if len(data) > MOST_BYTES:
        raise Malformed("it is longer than 1 GiB")
    if data.startswith((codecs.BOM_UTF16_LE, codecs.BOM_UTF16_BE)):
        return data[: len(data) // 2 * 2].decode("utf-16", errors="replace")
    return data.decode("utf-8-sig")


def main(files: list[str]) -> int:
    status = 0
    for file in files:
        try:
            print(f"{file}: the proof holds: {check(contents(file))}")
        except Refuted as error:
            print(f"{file}: the proof does not hold: {error}", file=sys.stderr)
            status = max(status, 1)
        except (Malformed, OSError, UnicodeDecodeError) as error:
            print(f"{file}: not a certificate that can be checked: {error}", file=sys.stderr)
            status = 2
    return status


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]) if len(sys.argv) > 1 else __doc__)
