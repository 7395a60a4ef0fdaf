"""Numerical routines in arbitrary decimal precision.

Numbers are given as decimal.Decimal, int, fractions.Fraction or text ('0.1', '-2.5e-30'), complex ones as Complex, and are
rounded once to the working digits. A float is refused: it is a binary number, and what it stands for is rarely what was
meant; Decimal(x) takes a float x as it is. Results are Decimal and Complex with exactly the digits that were computed.

Vectors are sequences of numbers, matrices sequences of rows, numpy arrays too. Results are lists, or numpy arrays of
objects when the first argument is an array. Arguments are never changed.

The working digits belong to the thread, and a new one starts with 20. Long calls let other threads go on; Ctrl-C ends them with
KeyboardInterrupt, or what the program's handler of the signal raises. Arithmetic on Decimals outside of the module is Python's
own, at the digits of decimal.getcontext().

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

from ._core import (
    Cholesky,
    Complex,
    LU,
    Random,
    SparseMatrix,
    TransformPlan,
    balance,
    cholesky,
    circular_convolve,
    convolve,
    correlate,
    dct,
    determinant,
    dot,
    dst,
    eigen,
    eigen_conditions,
    eigenvalue_conditions,
    eigenvalues,
    expand_hermitian,
    fft,
    fftfreq,
    fftn,
    fftshift,
    get_digits,
    hermitian_product,
    hessenberg,
    hessenberg_eigenvalues,
    hessenberg_norm,
    idct,
    idst,
    ifft,
    ifftn,
    ifftshift,
    inverse,
    invert,
    irfft,
    irfftn,
    largest_number,
    lu,
    machine_precision,
    multiply,
    next_fast_len,
    norm,
    outer,
    pi,
    power_spectrum,
    quartic_zeros,
    rank,
    rearrange,
    rfft,
    rfftfreq,
    rfftn,
    rotation,
    scale,
    schur,
    set_digits,
    set_threads,
    set_tuning,
    smallest_number,
    solve,
    solve_iteratively,
    sort,
    spectrum,
    sqrt,
    transform,
    transform_hermitian,
    transform_real,
    triangular_multiply,
    triangular_solve,
    tuning,
    window,
)
from ._errors import Error, InvalidArgument, NumericalFailure


class digits:  # pylint: disable=invalid-name
    """digits(count)

    The working digits for a block of statements, 1 to 1000000; the former ones come back after it, exceptions or not.

    >>> with digits(50):
    ...     with digits(5):
    ...         inner = solve([[3]], [1])
    ...     inner, solve([[3]], [1])
    ([Decimal('0.33333')], [Decimal('0.33333333333333333333333333333333333333333333333333')])
    """

    def __init__(self, count):
        self._count = count
        self._former = []

    def __enter__(self):
        self._former.append(set_digits(self._count))
        return self

    def __exit__(self, *unused):
        set_digits(self._former.pop())


__all__ = [
    "Cholesky",
    "Complex",
    "Error",
    "InvalidArgument",
    "LU",
    "NumericalFailure",
    "Random",
    "SparseMatrix",
    "TransformPlan",
    "balance",
    "cholesky",
    "circular_convolve",
    "convolve",
    "correlate",
    "dct",
    "determinant",
    "digits",
    "dot",
    "dst",
    "eigen",
    "eigen_conditions",
    "eigenvalue_conditions",
    "eigenvalues",
    "expand_hermitian",
    "fft",
    "fftfreq",
    "fftn",
    "fftshift",
    "get_digits",
    "hermitian_product",
    "hessenberg",
    "hessenberg_eigenvalues",
    "hessenberg_norm",
    "idct",
    "idst",
    "ifft",
    "ifftn",
    "ifftshift",
    "inverse",
    "invert",
    "irfft",
    "irfftn",
    "largest_number",
    "lu",
    "machine_precision",
    "multiply",
    "next_fast_len",
    "norm",
    "outer",
    "pi",
    "power_spectrum",
    "quartic_zeros",
    "rank",
    "rearrange",
    "rfft",
    "rfftfreq",
    "rfftn",
    "rotation",
    "scale",
    "schur",
    "set_digits",
    "set_threads",
    "set_tuning",
    "smallest_number",
    "solve",
    "solve_iteratively",
    "sort",
    "spectrum",
    "sqrt",
    "transform",
    "transform_hermitian",
    "transform_real",
    "triangular_multiply",
    "triangular_solve",
    "tuning",
    "window",
]
