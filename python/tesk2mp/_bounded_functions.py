"""The functions of numbers with proven bounds, by their names."""

from collections.abc import Callable
from typing import Any

from ._bounded import Bounded, function

__all__ = [
    "acos",
    "acosh",
    "acospi",
    "asin",
    "asinh",
    "asinpi",
    "atan",
    "atan2",
    "atanh",
    "atanpi",
    "beta",
    "binomial",
    "cbrt",
    "ceil",
    "cos",
    "cosh",
    "cospi",
    "digamma",
    "erf",
    "erfc",
    "exp",
    "exp10",
    "exp2",
    "expm1",
    "fabs",
    "fdim",
    "floor",
    "fmax",
    "fmin",
    "fmod",
    "gamma",
    "hypot",
    "lgamma",
    "ln",
    "log",
    "log10",
    "log1p",
    "log2",
    "logb",
    "pow",
    "remainder",
    "rint",
    "sin",
    "sinh",
    "sinpi",
    "sqrt",
    "tan",
    "tanh",
    "tanpi",
    "tgamma",
    "trunc",
]


def _of_one(name: str) -> Callable[[Any], Bounded]:
    def call(x: Any) -> Bounded:
        return function(name, x)

    call.__name__ = call.__qualname__ = name
    call.__doc__ = f"""The function {name} of tesk2mp, of a number with a bound, as function() has it.

    >>> str({name}("0.5")) == str(function("{name}", "0.5"))
    True
    """
    return call


def _of_two(name: str) -> Callable[[Any, Any], Bounded]:
    def call(x: Any, y: Any) -> Bounded:
        return function(name, x, y)

    call.__name__ = call.__qualname__ = name
    call.__doc__ = f"""The function {name} of tesk2mp, of two real numbers with bounds{" or complex ones" if name == "pow" else ""}.

    >>> str({name}(3, 2)) == str(function("{name}", 3, 2))
    True
    """
    return call


sin = _of_one("sin")
cos = _of_one("cos")
tan = _of_one("tan")
asin = _of_one("asin")
acos = _of_one("acos")
atan = _of_one("atan")
sinh = _of_one("sinh")
cosh = _of_one("cosh")
tanh = _of_one("tanh")
exp = _of_one("exp")
log = _of_one("log")
ln = _of_one("ln")
log10 = _of_one("log10")
sqrt = _of_one("sqrt")
fabs = _of_one("fabs")
floor = _of_one("floor")
ceil = _of_one("ceil")
trunc = _of_one("trunc")
rint = _of_one("rint")
expm1 = _of_one("expm1")
exp2 = _of_one("exp2")
exp10 = _of_one("exp10")
log1p = _of_one("log1p")
log2 = _of_one("log2")
logb = _of_one("logb")
cbrt = _of_one("cbrt")
asinh = _of_one("asinh")
acosh = _of_one("acosh")
atanh = _of_one("atanh")
sinpi = _of_one("sinpi")
cospi = _of_one("cospi")
tanpi = _of_one("tanpi")
asinpi = _of_one("asinpi")
acospi = _of_one("acospi")
atanpi = _of_one("atanpi")
gamma = _of_one("gamma")
tgamma = _of_one("tgamma")
lgamma = _of_one("lgamma")
digamma = _of_one("digamma")
erf = _of_one("erf")
erfc = _of_one("erfc")
fmod = _of_two("fmod")
pow = _of_two("pow")
atan2 = _of_two("atan2")
hypot = _of_two("hypot")
fmin = _of_two("fmin")
fmax = _of_two("fmax")
remainder = _of_two("remainder")
fdim = _of_two("fdim")
beta = _of_two("beta")
binomial = _of_two("binomial")
