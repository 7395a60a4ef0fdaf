"""Special functions under the names of scipy.special: the functions of the package, of a number or of each in sequences."""

from . import (
    beta,
    binomial as binom,
    cbrt,
    digamma,
    digamma as psi,
    erf,
    erfc,
    exp2,
    exp10,
    expm1,
    factorial,
    gamma,
    lgamma as gammaln,
    log1p,
)

__all__ = [
    "beta",
    "binom",
    "cbrt",
    "digamma",
    "erf",
    "erfc",
    "exp10",
    "exp2",
    "expm1",
    "factorial",
    "gamma",
    "gammaln",
    "log1p",
    "psi",
]
