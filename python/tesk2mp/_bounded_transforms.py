"""Transforms by the names and options of numpy and SciPy, of numbers with proven bounds."""

from collections.abc import Callable, Sequence
from typing import Any

from . import _core
from ._bounded import Bounded, _vector, bounded, evaluated, is_number
from ._errors import InvalidArgument, InvalidType, refusal

_Lines = Callable[[list[Bounded]], list[Bounded]]
_DIVISORS = {"backward": ("one", "length"), "ortho": ("root", "root"), "forward": ("length", "one")}


def _shape(x: Any) -> list[int]:
    if is_number(x):
        return []
    shapes = [_shape(each) for each in x]
    if not shapes or any(shape != shapes[0] for shape in shapes):
        raise refusal(InvalidArgument, "a sequence of no elements, or of different lengths side by side")
    return [len(shapes), *shapes[0]]


def _axis(axis: Any, shape: list[int]) -> int:
    if isinstance(axis, bool) or not hasattr(axis, "__index__"):
        raise refusal(InvalidType, f"an axis is an integer, not {type(axis).__name__}")
    number = int(axis.__index__())
    if not -len(shape) <= number < len(shape):
        raise refusal(InvalidArgument, f"axis {number} of {len(shape)}")
    return number % len(shape)


def _along(x: Any, axis: int, work: _Lines) -> Any:
    """work(line) for each line along the axis of nested lists."""
    if axis > 0:
        return [_along(each, axis - 1, work) for each in x]
    if is_number(x[0]):
        return work([bounded(each) for each in x])
    columns = [_along([each[k] for each in x], 0, work) for k in range(len(x[0]))]
    return [list(row) for row in zip(*columns)]


def _of_length(line: list[Bounded], n: int) -> list[Bounded]:
    return line[:n] + [bounded(0)] * (n - len(line))


def _divisor(norm: Any, inverse: bool) -> str:
    name = "backward" if norm is None else norm
    if name not in _DIVISORS:
        raise refusal(InvalidArgument, f"norm is one of {', '.join(map(repr, _DIVISORS))}, not {norm!r}")
    return _DIVISORS[name][inverse]


def _length(n: Any, otherwise: int) -> int:
    if n is not None and (isinstance(n, bool) or not hasattr(n, "__index__")):
        raise refusal(InvalidType, f"a length is an integer, not {type(n).__name__}")
    length = otherwise if n is None else int(n.__index__())
    if not 1 <= length < 2**31:
        raise refusal(InvalidArgument, "a sequence of no elements, or too many")
    return length


def _run(kind: str, line: list[Bounded], divisor: str, *options: Any) -> list[Bounded]:
    values, errors = [each.value for each in line], [each.error for each in line]
    return _vector(getattr(_core, f"_proven_{kind}")(values, errors, *options, divisor))


def _complex(inverse: bool, norm: Any, n: Any = None) -> _Lines:
    divisor = _divisor(norm, inverse)
    return lambda line: _run("transform", _of_length(line, _length(n, len(line))), divisor, inverse)


def _to_spectrum(norm: Any, n: Any = None) -> _Lines:
    divisor = _divisor(norm, False)
    return lambda line: _run("spectrum", _of_length(line, _length(n, len(line))), divisor)


def _from_spectrum(norm: Any, n: Any = None) -> _Lines:
    divisor = _divisor(norm, True)

    def work(line: list[Bounded]) -> list[Bounded]:
        length = _length(n, 2 * (len(line) - 1))
        return _run("from_spectrum", _of_length(line, length // 2 + 1), divisor, length)

    return work


def _of_one(work: Callable[[Any, Any], _Lines], x: Any, n: Any, axis: Any, norm: Any) -> Any:
    given = evaluated(x)
    return _along(given, _axis(axis, _shape(given)), work(norm, n))


def fft(x: Any, n: Any = None, axis: Any = -1, norm: Any = None) -> Any:
    return _of_one(lambda norm, n: _complex(False, norm, n), x, n, axis, norm)


def ifft(x: Any, n: Any = None, axis: Any = -1, norm: Any = None) -> Any:
    return _of_one(lambda norm, n: _complex(True, norm, n), x, n, axis, norm)


def rfft(x: Any, n: Any = None, axis: Any = -1, norm: Any = None) -> Any:
    return _of_one(_to_spectrum, x, n, axis, norm)


def irfft(x: Any, n: Any = None, axis: Any = -1, norm: Any = None) -> Any:
    return _of_one(_from_spectrum, x, n, axis, norm)


def _axes(axes: Sequence[Any] | None, shape: list[int]) -> list[int]:
    chosen = [_axis(each, shape) for each in axes or ()]
    return chosen or list(range(len(shape)))


def _of_several(x: Any, axes: Any, norm: Any, inverse: bool) -> Any:
    given = evaluated(x)
    for axis in _axes(axes, _shape(given)):
        given = _along(given, axis, _complex(inverse, norm))
    return given


def fftn(x: Any, axes: Any = None, norm: Any = None) -> Any:
    return _of_several(x, axes, norm, False)


def ifftn(x: Any, axes: Any = None, norm: Any = None) -> Any:
    return _of_several(x, axes, norm, True)


def rfftn(x: Any, axes: Any = None, norm: Any = None) -> Any:
    given = evaluated(x)
    *others, last = _axes(axes, _shape(given))
    given = _along(given, last, _to_spectrum(norm))
    for axis in others:
        given = _along(given, axis, _complex(False, norm))
    return given


def irfftn(x: Any, n: Any = None, axes: Any = None, norm: Any = None) -> Any:
    given = evaluated(x)
    *others, last = _axes(axes, _shape(given))
    for axis in others:
        given = _along(given, axis, _complex(True, norm))
    return _along(given, last, _from_spectrum(norm, n))


def _typed(name: str, inverse: bool) -> Callable[..., Any]:
    def call(x: Any, type: Any = 2, n: Any = None, axis: Any = -1, norm: Any = None) -> Any:  # pylint: disable=redefined-builtin
        if type not in (1, 2, 3, 4):
            raise refusal(InvalidArgument, f"the type is 1 to 4, not {type!r}")
        kind = f"{name}{5 - type if inverse and type in (2, 3) else int(type)}"
        divisor = _divisor(norm, inverse)

        def work(line: list[Bounded]) -> list[Bounded]:
            return _run("real_transform", _of_length(line, _length(n, len(line))), divisor, kind)

        return _of_one(lambda *_: work, x, n, axis, norm)

    return call


dct, idct, dst, idst = (_typed(name, inverse) for name in ("dct", "dst") for inverse in (False, True))

PROOFS: dict[str, Callable[..., Any]] = {
    **{"fft": fft, "ifft": ifft, "rfft": rfft, "irfft": irfft, "dct": dct, "idct": idct, "dst": dst, "idst": idst},
    **{"fftn": fftn, "ifftn": ifftn, "rfftn": rfftn, "irfftn": irfftn},
}
