"""What the classes of the extension show of themselves, and what pickles of plans hold."""

import html
import inspect
import numbers
import re
from collections.abc import Callable, Iterable
from typing import Any

from . import _core, _truth
from ._errors import InvalidArgument, refusal
from ._routines import signature_of

_MOST_ROWS = 20


def _table(rows: Iterable[Iterable[object]]) -> str:
    cells = ("".join(f"<td>{html.escape(str(each))}</td>" for each in row) for row in rows)
    return "<table>" + "".join(f"<tr>{row}</tr>" for row in cells) + "</table>"


def _plan(self: Any) -> tuple[type, tuple[int, ...]]:
    kind = (self.type,) if hasattr(self, "type") else ()
    return type(self), (self.length, *kind, self.digits)


def _show_plan(self: Any) -> str:
    return f"{type(self).__name__}({', '.join(map(str, _plan(self)[1]))})"


def _show_random(self: Any) -> str:
    return f"Random({self.generator}, {self.state})"


def _show_lu(self: Any) -> str:
    rows = self.factors
    return f"<LU of {len(rows)} by {len(rows[0]) if rows else 0}{', singular' if self.singular else ''}>"


def _show_cholesky(self: Any) -> str:
    return f"<Cholesky of order {len(self.factor)}>"


def _show_sparse(self: Any) -> str:
    kind = ", lower triangle" if self.lower_triangle else ""
    return f"<SparseMatrix of order {self.order}, {len(self.entries())} entries{kind}>"


def _sparse_html(self: Any) -> str:
    entries = self.entries()
    shown = _table([("row", "column", "value"), *entries[:_MOST_ROWS]])
    return f"<p>{html.escape(_show_sparse(self))}</p>{shown}" + ("<p>...</p>" if len(entries) > _MOST_ROWS else "")


def _lu_html(self: Any) -> str:
    return f"<p>{html.escape(_show_lu(self))}</p>{_table(self.factors[:_MOST_ROWS])}"


def _cholesky_html(self: Any) -> str:
    return f"<p>{html.escape(_show_cholesky(self))}</p>{_table(self.factor[:_MOST_ROWS])}"


_kind: Any  # the classes of the extension are changed here, which their types do not foresee
for _kind in (_core.TransformPlan, _core.SpectrumPlan, _core.CosinePlan, _core.SinePlan):
    _kind.__reduce__ = _plan
    _kind.__repr__ = _show_plan
for _kind, _show, _html in (
    (_core.LU, _show_lu, _lu_html),
    (_core.Cholesky, _show_cholesky, _cholesky_html),
    (_core.SparseMatrix, _show_sparse, _sparse_html),
):
    _kind.__repr__ = _show
    _kind._repr_html_ = _html
setattr(_core.Random, "__repr__", _show_random)


def _reduce_ex(self: Any, protocol: int) -> Any:
    """Pickles of the first two protocols would make an object of these classes' base alone, which ends the process."""
    return object.__reduce_ex__(self, max(protocol, 2))


for _kind in [each for each in vars(_core).values() if isinstance(each, type)]:
    _kind.__reduce_ex__ = _reduce_ex
# As Decimal is one: a number that does not mix with floats.
numbers.Number.register(_core.Real)
numbers.Number.register(_core.Complex)


def _format_complex(self: Any, spec: str) -> str:
    """Both parts by the format of real numbers, in the width and alignment of the whole."""
    parts = re.fullmatch(r"((?:.?[<>^])?)([ +-]?)(\d*)((?:[,_]?)(?:\.\d+)?(?:[eEfFgGn]?))", spec)
    if parts is None:
        raise refusal(InvalidArgument, f"a format of complex numbers, such as '.3f' or '>30.4e', not {spec!r}")
    alignment, sign, width, rest = parts.groups()
    return format(f"{self.real:{sign}{rest}}{self.imag:+{rest}}j", f"{alignment or '>'}{width}")


setattr(_core.Complex, "__format__", _format_complex)


def _unproven(method: Callable[..., Any], kind: type) -> Callable[..., Any]:
    """The method, which is refused where results are to be proven."""

    def call(*arguments: Any, **named: Any) -> Any:
        if _truth.wanted():
            raise _truth.no_proof(kind.__name__)
        return method(*arguments, **named)

    call.__name__, call.__doc__ = method.__name__, method.__doc__
    described = kind.__doc__ if method.__name__ == "__init__" else method.__doc__
    heading = (described or "").partition("\n")[0]
    signature = signature_of(heading if "(" in heading else "method()", [])
    own = inspect.Parameter("self", inspect.Parameter.POSITIONAL_OR_KEYWORD)
    setattr(call, "__signature__", signature.replace(parameters=[own, *signature.parameters.values()]))
    return call


_FACTORS = ("__init__", "solve", "inverse", "determinant")
for _kind, _methods in (
    (_core.LU, _FACTORS),
    (_core.Cholesky, _FACTORS),
    (_core.IncompleteLU, ("__init__", "solve")),
    (_core.IncompleteCholesky, ("__init__", "solve")),
    (_core.SparseLU, ("__init__", "solve")),
    (_core.SparseCholesky, ("__init__", "solve")),
    (_core.SparseMatrix, ("multiply",)),
    (_core.TransformPlan, ("transform",)),
    (_core.SpectrumPlan, ("rfft", "irfft")),
    (_core.CosinePlan, ("dct", "idct")),
    (_core.SinePlan, ("dst", "idst")),
):
    for _method in _methods:
        setattr(_kind, _method, _unproven(getattr(_kind, _method), _kind))
