"""Numerical routines in arbitrary decimal precision.

Numbers are given as decimal.Decimal, int, fractions.Fraction or text ('0.1', '-2.5e-30'), complex ones as Complex, and are
rounded once to the working digits. A float is refused: it is a binary number, and what it stands for is rarely what was
meant; Decimal(x) takes a float x as it is. Results are Decimal and Complex with exactly the digits that were computed.

Vectors are sequences of numbers, matrices sequences of rows, numpy arrays too. Results are lists, or numpy arrays of
objects when the first argument is an array. Arguments are never changed.

The working digits belong to the thread or asyncio task, and a new thread starts with 20; every function takes digits=. Long calls let other threads go on; Ctrl-C ends them with
KeyboardInterrupt, or what the program's handler of the signal raises. Arithmetic on Decimals outside of the module is Python's
own, at the digits of decimal.getcontext(); digits() sets those too.

    >>> import tesk2mp
    >>> with tesk2mp.digits(40):
    ...     tesk2mp.solve([[4, 1], [2, 3]], ['0.1', 1])
    [Decimal('-0.07'), Decimal('0.38')]

Failures are exceptions, Error and its kinds InvalidArgument and NumericalFailure, and nothing is ever printed:

    >>> try:
    ...     tesk2mp.transform_real([1])
    ... except tesk2mp.InvalidArgument as refusal:
    ...     refusal.routine, refusal.code, refusal.text
    ('C06FAF', 3, ' ** On entry, N .le. 1: N =               1.')
"""

import importlib

from . import _classes, _core
from ._carried import with_digits
from ._context import checked as _checked, digits, results
from ._core import __version__
from ._errors import Error, InvalidArgument, InvalidType, NumericalFailure
from ._exact import exact
from ._progress import progress
from ._routines import routine
from ._truth import true_digits

# Every public name of the extension is one of the package: its classes as they are, its functions as functions of Python.
# What they are, with their types, is written down in the stub beside this file.
_own = ["Error", "InvalidArgument", "InvalidType", "NumericalFailure", "digits", "exact", "progress", "results", "true_digits", "with_digits"]
_plain = {"get_digits", "set_digits", "set_threads"}
_public = {name: value for name, value in vars(_core).items() if not name.startswith("_")}
for _name, _value in _public.items():
    globals()[_name] = _value if isinstance(_value, type) or _name in _plain else routine(_value)

__all__ = sorted([*_own, *_public])

def set_digits(digits: int) -> int:  # pylint: disable=missing-function-docstring
    return _core.set_digits(_checked(digits))


set_digits.__doc__ = _core.set_digits.__doc__

# The modules look for the names above. `fft` is one of these as well as a module: the function, with the module's functions.
_fft = globals()["fft"]
from . import linalg, optimize, proven, sparse, special  # noqa: E402

_module = importlib.import_module(".fft", __name__)
fft = _fft
vars(fft).update({name: getattr(_module, name) for name in _module.__all__})
