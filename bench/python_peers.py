#!/usr/bin/python3
"""The Python package beside mpmath (with gmpy2), Arb called from C, and numpy and scipy in double: python_peers.py [--table].

Two tables, those of docs/python-peers.md: which functions each of them has, where every name is looked up, and tasks
at 50 digits. A row of the second is CPU seconds of the fastest of three interleaved runs, and decimal digits of the largest
number of the result that are true, by mpmath at 100 digits; of Arb's balls also those that are proven. PYTHONPATH names the
folder where the package is; the program arb_tasks of the preset `bench` has to be built. --table prints the first one alone.
"""

import ctypes
import ctypes.util
import importlib
import pathlib
import random
import subprocess
import sys
import time
from decimal import Decimal

import mpmath
import numpy
import scipy
import scipy.linalg
import scipy.special
import tesk2mp
from tesk2mp import linalg, proven

DIGITS, MORE, RUNS = 50, 100, 3
BITS = 167
SOURCE = random.Random(1)
ARB_TASKS = pathlib.Path(__file__).resolve().parent.parent / "build/bench/bin/arb_tasks"


def numbers(count):
    return [f"{SOURCE.randint(-(10**15), 10**15)}e-15" for _ in range(count)]


def matrix(n):
    return [numbers(n) for _ in range(n)]


def symmetric(n):
    a = matrix(n)
    return [[a[max(i, j)][min(i, j)] for j in range(n)] for i in range(n)]


def doubles(x):
    return numpy.array(x, dtype=float)


def mpf(x):
    return [mpmath.mpf(each) for each in x]


def mp_fft(x):
    """mpmath has no transform: by halves, as programs with it do."""
    if len(x) == 1:
        return x
    even, odd = mp_fft(x[::2]), mp_fft(x[1::2])
    turned = [mpmath.expjpi(mpmath.mpf(-2 * k) / len(x)) * each for k, each in enumerate(odd)]
    return [a + b for a, b in zip(even, turned)] + [a - b for a, b in zip(even, turned)]


class Arb:
    """The program arb_tasks, which takes a line a task."""

    def __init__(self):
        if not ARB_TASKS.exists():
            sys.exit("arb_tasks is missing: cmake --preset bench && cmake --build build/bench --target arb_tasks")
        self.program = subprocess.Popen([ARB_TASKS], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def run(self, task, size, values, bits=BITS):
        """Seconds, results and the largest radius."""
        self.program.stdin.write(f"{task} {size} {bits} {' '.join(values)}\n")
        self.program.stdin.flush()
        seconds, _, *texts = self.program.stdout.readline().split()
        with mpmath.workdps(MORE):
            found = [mpmath.mpc(re, im) for re, im in zip(texts[::3], texts[1::3])]
            return float(seconds), found, max(mpmath.mpf(each) for each in texts[2::3])

    def run_to_digits(self, task, size, values):
        """With more and more bits, until the digits are proven: all runs together."""
        total, bits = 0.0, BITS
        while True:
            seconds, found, radius = self.run(task, size, values, bits)
            total += seconds
            if proven_digits(found, radius) >= DIGITS:
                return total, found, radius
            bits += max(10, int(3.33 * (DIGITS - proven_digits(found, radius))) + 4) if radius < 1 else bits


def proven_digits(found, radius):
    with mpmath.workdps(MORE):
        if not mpmath.isfinite(radius):
            return 0
        return MORE if radius == 0 else max(0, int(mpmath.floor(-mpmath.log10(radius / max(abs(each) for each in found)))))


A, B, S, G = matrix(50), numbers(50), symmetric(30), matrix(20)
X, Y, P = numbers(1024), [f"{k}e-1" for k in range(1, 1001)], ["1", *numbers(30)]
A_ALL, G_ALL, S_ALL = sum(A, []), sum(G, []), sum(S, [])


def of_each(name, theirs, binary):
    ours = getattr(tesk2mp, name)
    return (f"{name} of 1000 numbers", lambda: ours(Y), lambda: [theirs(y) for y in mpf(Y)], (name, 0, Y), lambda: binary(doubles(Y)))


# A task by the package, by mpmath, by Arb (name, size, numbers) and by numpy or scipy; each gives a list of numbers.
ROWS = [
    ("product, n = 50", lambda: sum(tesk2mp.multiply(A, A), []), lambda: list(mpmath.matrix(A) * mpmath.matrix(A)),
     ("product", 50, A_ALL + A_ALL), lambda: (doubles(A) @ doubles(A)).ravel()),
    ("solve, n = 50", lambda: tesk2mp.solve(A, B), lambda: list(mpmath.lu_solve(mpmath.matrix(A), mpmath.matrix(B))),
     ("solve", 50, A_ALL + B), lambda: numpy.linalg.solve(doubles(A), doubles(B))),
    ("inverse, n = 50", lambda: sum(tesk2mp.inverse(A), []), lambda: list(mpmath.inverse(mpmath.matrix(A))),
     ("inverse", 50, A_ALL), lambda: numpy.linalg.inv(doubles(A)).ravel()),
    ("determinant, n = 50", lambda: [tesk2mp.determinant(A)], lambda: [mpmath.det(mpmath.matrix(A))],
     ("determinant", 50, A_ALL), lambda: [numpy.linalg.det(doubles(A))]),
    ("symmetric eigenvalues, n = 30", lambda: tesk2mp.symmetric_eigenvalues(S),
     lambda: sorted(mpmath.eigsy(mpmath.matrix(S), eigvals_only=True)),
     ("eigenvalues", 30, S_ALL), lambda: numpy.linalg.eigvalsh(doubles(S))),
    ("eigenvalues, n = 20", lambda: tesk2mp.eigenvalues(G),
     lambda: list(mpmath.eig(mpmath.matrix(G), left=False, right=False)),
     ("eigenvalues", 20, G_ALL), lambda: numpy.linalg.eigvals(doubles(G))),
    ("singular values, n = 30", lambda: tesk2mp.singular_values(S),
     lambda: list(mpmath.svd_r(mpmath.matrix(S), compute_uv=False)),
     None, lambda: numpy.linalg.svd(doubles(S), compute_uv=False)),
    ("exponential, n = 20", lambda: sum(linalg.expm(G), []), lambda: list(mpmath.expm(mpmath.matrix(G))),
     ("expm", 20, G_ALL), lambda: scipy.linalg.expm(doubles(G)).ravel()),
    ("zeros of a polynomial, n = 30", lambda: [zero for zero, _ in tesk2mp.polynomial_zeros(P)],
     lambda: mpmath.polyroots(mpf(P), maxsteps=200, extraprec=60), ("zeros", 0, P), lambda: numpy.roots(doubles(P))),
    ("transform of 1024 numbers", lambda: tesk2mp.fft(X), lambda: mp_fft(mpf(X)),
     ("transform", 0, X), lambda: numpy.fft.fft(doubles(X))),
    of_each("exp", mpmath.exp, numpy.exp),
    of_each("log", mpmath.log, numpy.log),
    of_each("sin", mpmath.sin, numpy.sin),
    of_each("atan", mpmath.atan, numpy.arctan),
    of_each("gamma", mpmath.gamma, scipy.special.gamma),
    of_each("lgamma", mpmath.loggamma, scipy.special.gammaln),
    of_each("digamma", mpmath.digamma, scipy.special.digamma),
    of_each("erf", mpmath.erf, scipy.special.erf),
]

# 50 digits that are proven; balls get more bits until they have them.
PROVEN = [
    ("solve, n = 50", lambda: proven.to_digits(DIGITS, lambda: proven.solve(A, B)), ROWS[1]),
    ("inverse, n = 50", lambda: proven.to_digits(DIGITS, lambda: sum(proven.inverse(A), [])), ROWS[2]),
    ("determinant, n = 50", lambda: [proven.to_digits(DIGITS, lambda: proven.determinant(A))], ROWS[3]),
    ("symmetric eigenvalues, n = 30", lambda: proven.to_digits(DIGITS, lambda: proven.symmetric_eigenvalues(S)), ROWS[4]),
    ("eigenvalues, n = 20", lambda: proven.to_digits(DIGITS, lambda: proven.eigenvalues(G)), ROWS[5]),
]

# What each has, by names that are looked up; None where there is nothing.
FUNCTIONS = [
    ("linear equations, inverse, determinant", "linalg.solve linalg.inv linalg.det", "lu_solve inverse det",
     "arb_mat_solve arb_mat_inv arb_mat_det", "numpy.linalg.solve numpy.linalg.inv numpy.linalg.det"),
    ("LU, Cholesky", "linalg.lu_factor linalg.cholesky", "lu cholesky", "arb_mat_lu arb_mat_cho",
     "scipy.linalg.lu_factor scipy.linalg.cholesky"),
    ("triangular and band systems", "linalg.solve_triangular linalg.solve_banded", None, "arb_mat_solve_tril",
     "scipy.linalg.solve_triangular scipy.linalg.solve_banded"),
    ("QR, least squares", "linalg.qr linalg.lstsq", "qr qr_solve", None, "scipy.linalg.qr numpy.linalg.lstsq"),
    ("rank, null space, pseudo-inverse", "linalg.matrix_rank linalg.null_space linalg.pinv", None, "fmpz_mat_rank",
     "numpy.linalg.matrix_rank scipy.linalg.null_space numpy.linalg.pinv"),
    ("singular values", "linalg.svd linalg.svdvals", "svd_r svd_c", None, "numpy.linalg.svd scipy.linalg.svdvals"),
    ("symmetric and Hermitian eigenproblems", "linalg.eigh linalg.eigvalsh", "eigsy eighe", None,
     "numpy.linalg.eigh numpy.linalg.eigvalsh"),
    ("general eigenproblems", "linalg.eig linalg.eigvals", "eig", "acb_mat_approx_eig_qr acb_mat_eig_simple",
     "numpy.linalg.eig numpy.linalg.eigvals"),
    ("pencils A x = lambda B x", "linalg.eig(b) linalg.eigh(b)", None, None, "scipy.linalg.eig scipy.linalg.eigh"),
    ("Schur and Hessenberg forms", "linalg.schur linalg.hessenberg", "schur hessenberg", None,
     "scipy.linalg.schur scipy.linalg.hessenberg"),
    ("functions of matrices", "linalg.expm linalg.sqrtm linalg.logm linalg.fractional_matrix_power", "expm sqrtm logm powm",
     "arb_mat_exp", "scipy.linalg.expm scipy.linalg.sqrtm scipy.linalg.logm scipy.linalg.fractional_matrix_power"),
    ("Fourier transforms of any length", "fft.fft fft.rfft fft.fftn", None, "acb_dft",
     "scipy.fft.fft scipy.fft.rfft scipy.fft.fftn"),
    ("cosine and sine transforms, windows", "fft.dct fft.dst window", None, None,
     "scipy.fft.dct scipy.fft.dst scipy.signal.get_window"),
    ("convolution, correlation", "convolve correlate", None, "acb_dft_convol", "numpy.convolve numpy.correlate"),
    ("sparse matrices, iteration, incomplete factors", "SparseMatrix sparse.linalg.gmres sparse.linalg.cg sparse.linalg.spilu",
     None, None, "scipy.sparse.coo_matrix scipy.sparse.linalg.gmres scipy.sparse.linalg.cg scipy.sparse.linalg.spilu"),
    ("zeros of polynomials", "polynomial_zeros", "polyroots", "acb_poly_find_roots", "numpy.roots"),
    ("zeros of functions", "optimize.brentq find_zero", "findroot", "arb_calc_isolate_roots", "scipy.optimize.brentq"),
    ("elementary functions", "exp log sin atan sinh atanh expm1 log1p cbrt hypot",
     "exp log sin atan sinh atanh expm1 log1p cbrt hypot", "arb_exp arb_log arb_sin arb_atan arb_sinh arb_atanh arb_expm1 "
     "arb_log1p arb_root_ui arb_hypot", "numpy.exp numpy.log numpy.sin numpy.arctan numpy.sinh numpy.arctanh numpy.expm1 "
     "numpy.log1p numpy.cbrt numpy.hypot"),
    ("of half turns", "sinpi cospi tanpi asinpi acospi atanpi", "sinpi cospi", "arb_sin_pi arb_cos_pi arb_tan_pi", None),
    ("gamma and error functions", "gamma lgamma digamma beta erf erfc", "gamma loggamma digamma beta erf erfc",
     "arb_gamma arb_lgamma arb_digamma arb_hypgeom_erf arb_hypgeom_erfc",
     "scipy.special.gamma scipy.special.gammaln scipy.special.digamma scipy.special.beta scipy.special.erf scipy.special.erfc"),
    ("rounding to decimal places, reconciled totals", "quantize round_parts", None, None, "numpy.round"),
    ("Bessel, hypergeometric and elliptic functions, zeta", None, "besselj hyp2f1 ellipk zeta",
     "arb_hypgeom_bessel_j arb_hypgeom_2f1 acb_elliptic_k arb_zeta",
     "scipy.special.jv scipy.special.hyp2f1 scipy.special.ellipk scipy.special.zeta"),
    ("quadrature, differential equations", None, "quad odefun", "acb_calc_integrate",
     "scipy.integrate.quad scipy.integrate.solve_ivp"),
    ("bounds that are proven", "proven.solve proven.eigen proven.singular_values proven.least_squares proven.zeros true_digits",
     "iv", "arb_add acb_mat_eig_multiple", None),
]


def looked_up(names, start):
    """The names as they are, if each is there."""
    for name in (names or "").replace("(b)", "").split():
        *modules, last = name.split(".")
        where = importlib.import_module(".".join([*start, *modules]) or "builtins")
        if not hasattr(where, last):
            sys.exit(f"{name} is not there")
    return ", ".join(f"`{name}`" for name in (names or "").split())


def print_functions():
    arb = ctypes.CDLL(ctypes.util.find_library("flint-arb"))
    flint = ctypes.CDLL(ctypes.util.find_library("flint"))
    print("| | tesk2mp | mpmath | Arb | numpy, scipy |\n|---|---|---|---|---|")
    for subject, ours, theirs, balls, binary in FUNCTIONS:
        for name in (balls or "").split():
            if not (hasattr(arb, name) or hasattr(flint, name)):
                sys.exit(f"{name} is not there")
        shown = ", ".join(f"`{name}`" for name in (balls or "").split())
        print(f"| {subject} | {looked_up(ours, ['tesk2mp'])} | {looked_up(theirs, ['mpmath'])} | {shown} | {looked_up(binary, [])} |")


def as_mpmath(x):
    if isinstance(x, proven.Bounded | proven.Root):
        x = x.value
    if isinstance(x, tesk2mp.Complex):
        return mpmath.mpc(str(x.real), str(x.imag))
    return mpmath.mpf(str(x)) if isinstance(x, Decimal) else mpmath.mpmathify(x)


def true_digits(result, exact, ordered):
    """Beside the exact results in their order, or each beside the nearest one."""
    with mpmath.workdps(MORE):
        found = [as_mpmath(each) for each in result]
        if not all(mpmath.isfinite(each) for each in found):
            return "overflow"
        assert len(found) == len(exact)
        if ordered:
            error = max(abs(one - other) for one, other in zip(found, exact))
        else:
            error = max(min(abs(one - other) for one in found) for other in exact)
        error /= max(abs(each) for each in exact)
        return str(MORE if error == 0 else min(MORE, max(0, int(mpmath.floor(-mpmath.log10(error))))))


def timed(task):
    start = time.process_time()
    result = task()
    return time.process_time() - start, list(result), None


def best_of(tasks):
    """The fastest of interleaved runs of each."""
    best = {}
    for _ in range(RUNS):
        for who, task in tasks.items():
            with tesk2mp.digits(DIGITS), numpy.errstate(over="ignore"):
                best[who] = min(best.get(who, (float("inf"),)), task(), key=lambda run: run[0])
    return best


def exact_results(row):
    with mpmath.workdps(MORE):
        return row[2]()


def print_tasks(arb):
    print("| task | tesk2mp: s | digits | mpmath: s | digits | Arb: s | digits, proven | double: s | digits | mpmath / tesk2mp "
          "| Arb / tesk2mp |\n|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|")
    for row in ROWS:
        name, ours, theirs, balls, binary = row
        exact = exact_results(row)
        ordered = "eigenvalues" not in name and "zeros" not in name
        tasks = {"ours": lambda: timed(ours), "theirs": lambda: timed(theirs), "binary": lambda: timed(binary)}
        if balls:
            tasks["balls"] = lambda: arb.run(*balls)
        best = best_of(tasks)
        cells = {who: f"{run[0]:.5f} | {true_digits(run[1], exact, ordered)}" for who, run in best.items()}
        if balls:
            cells["balls"] += f", {proven_digits(*best['balls'][1:])}"
        shown = " | ".join(cells.get(who, " | ") for who in ("ours", "theirs", "balls", "binary"))
        beside = f"{best['balls'][0] / best['ours'][0]:.1f}" if balls else ""
        print(f"| {name} | {shown} | {best['theirs'][0] / best['ours'][0]:.0f} | {beside} |", flush=True)


def print_proven(arb):
    print("| task | tesk2mp: s | digits | Arb: s | digits | Arb / tesk2mp |\n|---|--:|--:|--:|--:|--:|")
    for name, ours, row in PROVEN:
        exact = exact_results(row)
        best = best_of({"ours": lambda: timed(ours), "balls": lambda: arb.run_to_digits(*row[3])})
        cells = " | ".join(f"{best[who][0]:.5f} | {true_digits(best[who][1], exact, False)}" for who in ("ours", "balls"))
        print(f"| {name} | {cells} | {best['balls'][0] / best['ours'][0]:.1f} |", flush=True)


def main():
    print_functions()
    if "--table" in sys.argv:
        return
    mpmath.mp.dps = DIGITS
    print(f"\n{DIGITS} digits; mpmath {mpmath.__version__} with {mpmath.libmp.BACKEND}, numpy {numpy.__version__}, "
          f"scipy {scipy.__version__}\n")
    arb = Arb()
    print_tasks(arb)
    print("\nProven digits\n")
    print_proven(arb)


if __name__ == "__main__":
    main()
