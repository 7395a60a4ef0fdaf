#!/usr/bin/env python3
"""scipy_counts.py: how many iterations SciPy's solvers take in double precision, for b = A (1, ..., 1): where they stop by
their own criterion of 1e-8, and with a smaller one where ||b - A x|| <= 1e-8 ||b|| for the first time, 0 for never. GMRES is
restarted after 30, and on west0067 after its order too. The tables of test_solver_counts.cpp, and of LSMR that of
tests/krylov/test_rectangles.cpp, are what this prints."""
import pathlib

import numpy
import scipy
import scipy.io
import scipy.sparse
import scipy.sparse.linalg

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"


def grid(side, wind):
    """Five points; the neighbours before a point count for 1 + wind, those after it for 1 - wind."""
    line = scipy.sparse.diags([-(1 + wind), 2.0, -(1 - wind)], [-1, 0, 1], shape=(side, side))
    unit = scipy.sparse.identity(side)
    return scipy.sparse.csr_matrix(scipy.sparse.kron(unit, line) + scipy.sparse.kron(line, unit))


def stops_after(solver, a, b, tolerance, look, **options):
    iterations = [0]

    def seen(x):
        iterations[0] += 1
        look(iterations[0], x)

    name = "rtol" if tuple(map(int, scipy.__version__.split(".")[:2])) >= (1, 12) else "tol"
    _, info = solver(a, b, **{name: tolerance}, maxiter=500, callback=seen, **options)
    return iterations[0] if info == 0 else 0


def count(solver, a, **options):
    b = a @ numpy.ones(a.shape[0])
    reached = []

    def look(iteration, x):
        if numpy.ndim(x) and numpy.linalg.norm(b - a @ x) <= 1e-8 * numpy.linalg.norm(b):
            reached.append(iteration)

    own = stops_after(solver, a, b, 1e-8, lambda *_: None, **options)
    stops_after(solver, a, b, 1e-13, look, **options)
    return own, min(reached, default=0)


def main():
    problems = {
        "bcsstk01": scipy.sparse.csr_matrix(scipy.io.mmread(EXAMPLES / "bcsstk01.mtx")),
        "laplacian": grid(20, 0.0),
        "convection 40": grid(40, 0.4),
        "convection 100": grid(100, 0.4),
        "west0067": scipy.sparse.csr_matrix(scipy.io.mmread(EXAMPLES / "west0067.mtx")),
    }
    for name, a in problems.items():
        symmetric = abs(a - a.T).max() == 0
        for method in ("cg", "minres") if symmetric else ():
            print(name, method, *count(getattr(scipy.sparse.linalg, method), a))
        for restart in (30, 67) if name == "west0067" else (30,):
            print(name, f"gmres({restart})", *count(scipy.sparse.linalg.gmres, a, restart=restart, callback_type="pr_norm"))
    for name, a in ("laplacian", grid(20, 0.0)), ("convection 30", grid(30, 0.4)):
        for damp in (0.0, 0.5):
            found = scipy.sparse.linalg.lsmr(a, a @ numpy.ones(a.shape[0]), damp, 1e-8, 1e-8, 0, 1000)
            print(name, f"lsmr, damping {damp}", found[2])


main()
