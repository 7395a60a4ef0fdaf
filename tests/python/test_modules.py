"""The modules under the names of numpy and scipy give what those give, to the digits of doubles."""

import doctest
import inspect
import multiprocessing
import os
import time
import unittest
from concurrent.futures import ProcessPoolExecutor
from decimal import Decimal
from functools import partial

import numpy
import scipy.fft
import scipy.linalg
import scipy.optimize
import scipy.sparse.linalg
import scipy.special
import tesk2mp
from tesk2mp import exact, linalg, optimize, sparse, special

SEED = int(os.environ.get("TESK_SEED", time.time())) % 2**32
print(f"TESK_SEED={SEED}")
RANDOM = numpy.random.default_rng(SEED)
THEIRS = {
    linalg: (scipy.linalg, numpy.linalg),
    optimize: (scipy.optimize,),
    special: (scipy.special,),
    tesk2mp.fft: (scipy.fft,),
    sparse.linalg: (scipy.sparse.linalg,),
}


def doubles(x):
    """An array of doubles, real or complex, of what the package returned."""
    return numpy.array(x, dtype=object).astype(complex)


class Modules(unittest.TestCase):
    def close(self, ours, theirs, what=""):
        for one, other in zip(ours, theirs, strict=True) if isinstance(theirs, tuple) else [(ours, theirs)]:
            one, other = doubles(one), numpy.asarray(other)
            self.assertEqual(one.shape, other.shape, what)
            self.assertLess(numpy.abs(one - other).max(initial=0), 1e-9 * (1 + numpy.abs(other).max(initial=0)), what)

    def test_few_values_of_scipy(self):
        n = 30
        for complex_too in (False, True):
            full = RANDOM.normal(size=(n, n)) * (RANDOM.random((n, n)) < 0.2)
            full = full + (1j * RANDOM.normal(size=(n, n)) * (full != 0) if complex_too else 0)
            hermitian = full + full.conj().T
            every = numpy.linalg.eigvalsh(hermitian)
            wanted = {"LA": every[-4:], "SA": every[:4], "BE": every[[0, 1, -2, -1]]}
            for which in ("LM", *wanted):
                w, v = sparse.linalg.eigsh(scipy.sparse.csr_matrix(hermitian), 4, which=which, digits=30)
                self.close(w, wanted.get(which, numpy.sort(sorted(every, key=abs)[-4:])))
                self.close(hermitian @ doubles(v), doubles(v) * doubles(w))
            near = sparse.linalg.eigsh(scipy.sparse.csr_matrix(hermitian), 2, sigma="0.3", return_eigenvectors=False)
            self.close(near, numpy.sort(sorted(every, key=lambda x: abs(x - 0.3))[:2]))
            w, v = sparse.linalg.eigs(scipy.sparse.csr_matrix(full), 3, digits=30)
            self.close(full @ doubles(v), doubles(v) * doubles(w))
            largest = sorted(abs(numpy.linalg.eigvals(full)))[::-1]
            self.close([abs(x) for x in w], largest[: len(w)])
            for tall in (full[:, :20], full[:20, :]):
                u, s, vh = sparse.linalg.svds(scipy.sparse.csr_matrix(tall), 3, digits=30)
                self.close(s, numpy.linalg.svd(tall, compute_uv=False)[:3])
                self.close(tall @ doubles(vh).conj().T, doubles(u) * doubles(s))
                b = RANDOM.normal(size=tall.shape[0])
                x, *_ = sparse.linalg.lsmr(scipy.sparse.csr_matrix(tall), [str(each) for each in b], "0.5", digits=30)
                stacked = numpy.vstack([tall, 0.5 * numpy.eye(tall.shape[1])])
                longer = numpy.concatenate([b, numpy.zeros(tall.shape[1])])
                self.close(x, numpy.linalg.lstsq(stacked, longer, rcond=None)[0])

    def test_few_values_of_functions(self):
        turn = sparse.linalg.LinearOperator((2, 2), lambda x: [-x[1], x[0]], lambda x: [x[1], -x[0]])
        self.assertEqual(len(sparse.linalg.eigs(turn, 1, return_eigenvectors=False)), 2)
        self.assertEqual(sparse.linalg.svds(turn, 2, return_singular_vectors=False), [1, 1])
        self.assertEqual(sparse.linalg.lsmr(turn, [-2, 1])[0], [1, 2])
        with self.assertRaises(tesk2mp.InvalidArgument):
            sparse.linalg.eigsh(tesk2mp.SparseMatrix(2, [(0, 1, 1)]), 1)
        with self.assertRaises(tesk2mp.InvalidType):
            sparse.linalg.eigsh(lambda x: x, 1)
        with self.assertRaises(ZeroDivisionError):
            tesk2mp.eigsh(lambda x: 1 / 0, 1, 3)

    def test_shapes_of_operators(self):
        names = ("gmres", "fgmres", "cgs", "bicgstab", "idrs", "tfqmr", "cg", "minres")
        iterative = [getattr(sparse.linalg, name) for name in names]
        few = [sparse.linalg.eigsh, sparse.linalg.eigs, sparse.linalg.svds]

        def refused(kind, call, *arguments):
            with self.assertRaises(kind):
                call(*arguments)

        for shape in (0, 0), (0, 3), (3, 0):
            empty = scipy.sparse.csr_matrix(shape)
            for solve in (*iterative, sparse.linalg.lsmr):
                refused(tesk2mp.InvalidArgument, solve, empty, [])
                refused(tesk2mp.InvalidArgument, solve, empty, [1, 2, 3])
            for find in few:
                refused(tesk2mp.InvalidArgument, find, empty, 1)
        for shape in (0, 0), (-2, -2), (2, 0):
            refused(tesk2mp.InvalidArgument, sparse.linalg.LinearOperator, shape, lambda x: x)
        for shape in 2, (2,), (1, 2, 3), ("2", "2"):
            refused(tesk2mp.InvalidType, sparse.linalg.LinearOperator, shape, lambda x: x)
        for product in None, [[1, 0], [0, 1]]:
            refused(tesk2mp.InvalidType, sparse.linalg.LinearOperator, (2, 2), product)
        identity = sparse.linalg.LinearOperator((3, 3), lambda x: x)
        for solve in iterative:
            self.assertEqual([round(each, 8) for each in solve(identity, iter([1, 2, 3]))[0]], [1, 2, 3])
            for b in ([1, 2], iter([1, 2, 3, 4]), numpy.array([1, 2])):
                refused(tesk2mp.InvalidArgument, solve, identity, b)
        for find in few:
            refused(tesk2mp.InvalidType, find, numpy.eye(2), 1)

    def test_sparse_systems_of_scipy(self):
        n = 40
        for complex_too in (False, True):
            full = RANDOM.normal(size=(n, n)) * (RANDOM.random((n, n)) < 0.1)
            full = full + (1j * RANDOM.normal(size=(n, n)) * (full != 0) if complex_too else 0) + 8 * numpy.eye(n)
            right = RANDOM.normal(size=n)
            b = [str(x) for x in right]
            for a, names in ((full, ("gmres", "bicgstab", "cgs", "tfqmr", "fgmres", "idrs")), (full + full.conj().T, ("cg", "minres", "gmres"))):
                for kind in (scipy.sparse.csr_matrix, scipy.sparse.csc_array, scipy.sparse.coo_matrix):
                    matrix = kind(a)
                    expected = scipy.sparse.linalg.spsolve(scipy.sparse.csc_matrix(a), right)
                    self.close(sparse.linalg.spsolve(matrix, b, digits=30), expected)
                    self.close(sparse.linalg.splu(matrix).solve(b), expected)
                    for order in (None, list(range(n))[::-1]):
                        self.close(tesk2mp.SparseLU(sparse.linalg._square(matrix), order).solve(b), expected)
                if "cg" in names:
                    self.close(sparse.linalg.cholesky(matrix, digits=30).solve(b), expected)
                factors = sparse.linalg.spilu(matrix)
                for name in names:
                    solver = getattr(sparse.linalg, name)
                    for M in (None, factors, factors.solve) if name != "minres" else (None,):
                        self.close(solver(matrix, b, rtol="1e-20", M=M, digits=40)[0], expected, name)
                    operator = sparse.linalg.LinearOperator(a.shape, tesk2mp.SparseMatrix(
                        n, [(i, j, exact(a[i, j].item())) for i in range(n) for j in range(n) if a[i, j]]).multiply)
                    if not complex_too:
                        self.close(solver(operator, b, rtol="1e-20", digits=40)[0], expected, name)
        tenth = scipy.sparse.csr_matrix([[0.1]])
        found = sparse.linalg.spsolve(tenth, [1], digits=50)[0]
        with tesk2mp.digits(60):
            self.assertLess(abs(found * Decimal(0.1) - 1), Decimal("1e-48"))
        two = tesk2mp.SparseMatrix(1, [(0, 0, 2)])
        self.assertEqual(sparse.linalg.spsolve(two, [tesk2mp.Complex(0, 1)]), [tesk2mp.Complex(0, "0.5")])
        singular = tesk2mp.SparseMatrix(2, [(i, j, 1) for i in (0, 1) for j in (0, 1)])
        for call in (lambda: sparse.linalg.splu(singular), lambda: sparse.linalg.spsolve(singular, [1, 2])):
            with self.assertRaises(tesk2mp.NumericalFailure):
                call()
        with self.assertRaises(ValueError):
            sparse.linalg.cg(scipy.sparse.csr_matrix(full[:3]), [1, 2, 3])
        with self.assertRaises(TypeError):
            sparse.linalg.spilu(lambda x: x)
        indefinite = tesk2mp.SparseMatrix(2, [(0, 0, 1), (1, 0, 3), (1, 1, 1)], lower_triangle=True)
        with self.assertRaises(tesk2mp.NumericalFailure):
            sparse.linalg.cholesky(indefinite)
        self.assertEqual(sparse.linalg.spsolve(indefinite, [4, 4]), [1, 1])
        with self.assertRaises(ValueError):
            tesk2mp.SparseLU(indefinite, [0, 0])

    def test_examples(self):
        for module in (linalg, tesk2mp._products, optimize, special, sparse.linalg):
            with self.subTest(module.__name__):
                self.assertEqual(doctest.testmod(module).failed, 0)
                for name in module.__all__:
                    if name != "LinAlgError":
                        self.assertIn(">>>", getattr(module, name).__doc__, name)

    def test_names_are_theirs(self):
        """Each name is one of numpy's or scipy's, and each function takes digits."""
        ours_alone = {"cholesky", "exp10", "exp2", "fgmres", "idrs", "next_fast_len"}
        classes = {"LinearOperator", "LinAlgError"}
        for module, theirs in THEIRS.items():
            for name in getattr(module, "__all__", None) or [name for name in vars(module) if name[0] != "_"]:
                with self.subTest(name):
                    self.assertTrue(name in ours_alone or any(hasattr(each, name) for each in (*theirs, numpy)))
                    if name not in classes:
                        self.assertIn("digits", inspect.signature(getattr(module, name)).parameters)

    def test_products(self):
        for kind in (0, 1j):
            a, b = (RANDOM.integers(-99, 99, shape) + kind * RANDOM.integers(-99, 99, shape) for shape in ((3, 4), (4, 2)))
            x, y = exact(a), exact(b)
            self.close(linalg.matmul(x, y), a @ b)
            self.close(linalg.matmul(x, y[:, 0]), a @ b[:, 0])
            self.close(linalg.matmul(x[:, 0], x), a[:, 0] @ a)
            self.close(linalg.matmul(x[0], x[1]), a[0] @ a[1])
            self.close(linalg.multi_dot([x[0], y, y.T, y[:, 0]]), numpy.linalg.multi_dot([a[0], b, b.T, b[:, 0]]))
            self.close(linalg.kron(x, y), numpy.kron(a, b))
            self.close(linalg.kron(x.tolist(), y.tolist()), numpy.kron(a, b))
            self.close(linalg.outer(x[0], y[0]), numpy.outer(a[0], b[0]))
            self.close(linalg.trace(x), numpy.trace(a))
            for power in (0, 1, 5):
                self.close(linalg.matrix_power(x[:3, :3], power, digits=40), numpy.linalg.matrix_power(a[:3, :3], power))
        self.assertEqual(linalg.matmul(([each] for each in (1, 2)), [[3]]), [[3], [6]])
        for wrong in (
            lambda: linalg.matmul(2, [1]),
            lambda: linalg.matmul([[1]], 2),
            lambda: linalg.multi_dot([[1]]),
            lambda: linalg.matrix_power([[2]], "0.5"),
            lambda: linalg.matrix_power([[2]], True),
            lambda: linalg.trace([[1, 2], [3]][::-1] + [[1]]),
            lambda: linalg.trace([1, 2]),
            lambda: linalg.matmul([[1, 2]], [[1, 2]]),
        ):
            with self.assertRaises(tesk2mp.Error):
                wrong()
        with self.assertRaises(linalg.LinAlgError):
            linalg.inv([[1, 1], [1, 1]])

    def test_linalg(self):
        for kind in ("real", "complex"):
            a = RANDOM.standard_normal((5, 5)) + (1j * RANDOM.standard_normal((5, 5)) if kind == "complex" else 0)
            a += 5 * numpy.eye(5)
            b, c, tall = a[:, 0] + 1, a[:, :2], a[:, :3]
            hermitian, definite = a + a.conj().T, a @ a.conj().T
            x, xb, xc, xt, xh, xd = map(exact, (a, b, c, tall, hermitian, definite))
            triangle = exact(numpy.triu(a))
            self.close(linalg.solve(x, xb), scipy.linalg.solve(a, b))
            self.close(linalg.solve(x, xc, digits=40), scipy.linalg.solve(a, c))
            for assume, matrix in (("her", hermitian), ("pos", definite), ("sym", a + a.T)):
                for lower in (False, True):
                    ours = linalg.solve(exact(matrix), xc, lower, assume)
                    self.close(ours, scipy.linalg.solve(matrix, c, lower=lower, assume_a=assume), assume)
            for trans in (0, 1, 2, "T"):
                self.close(
                    linalg.solve_triangular(triangle, xb, trans), scipy.linalg.solve_triangular(numpy.triu(a), b, trans)
                )
            for trans in (0, 1, 2):
                theirs = scipy.linalg.lu_solve(scipy.linalg.lu_factor(a), b, trans)
                self.close(linalg.lu_solve(linalg.lu_factor(x), xb, trans), theirs)
            self.close(linalg.cho_solve(linalg.cho_factor(xd), xb), scipy.linalg.solve(definite, b))
            for name, ours, theirs in (
                ("inv", (x,), (a,)),
                ("det", (x,), (a,)),
                ("svdvals", (xt,), (tall,)),
                ("cholesky", (xd, True), (definite, True)),
                ("cholesky", (xd, False), (definite, False)),
                ("eigvalsh", (xh,), (hermitian,)),
                ("pinv", (xt,), (tall,)),
                ("expm", (x,), (a,)),
                ("sqrtm", (xd,), (definite,)),
                ("logm", (xd,), (definite,)),
                ("fractional_matrix_power", (xd, "0.3"), (definite, 0.3)),
            ):
                self.close(getattr(linalg, name)(*ours), getattr(scipy.linalg, name)(*theirs), name)
            self.close(linalg.slogdet(x), tuple(numpy.linalg.slogdet(a)))
            self.close(linalg.lstsq(xt, xb)[0], numpy.linalg.lstsq(tall, b, rcond=None)[0])
            self.assertEqual((linalg.matrix_rank(xt), linalg.lstsq(xt, xb)[1]), (3, 3))
            for order in (None, "fro", 1, 2, numpy.inf):
                self.close(linalg.cond(x, order), numpy.linalg.cond(a, order), f"cond {order}")
                self.close(linalg.norm(xt, order), numpy.linalg.norm(tall, order), f"norm {order}")
                if order != "fro":
                    self.close(linalg.norm(xb, order), numpy.linalg.norm(b, order), f"norm {order}")
            u, s, vh = map(doubles, linalg.svd(xt))
            self.close(u @ numpy.diag(s) @ vh, tall)
            self.assertEqual([type(each) for each in linalg.svd(xt)], [numpy.ndarray] * 3)
            q, r = map(doubles, linalg.qr(xt))
            self.close(q @ r, tall)
            w, v = map(doubles, linalg.eig(x))
            self.close(a @ v, v * w)
            w, v = map(doubles, linalg.eigh(xh, lower=False))
            self.close(hermitian @ v, v * w)
            self.close(tall.T @ doubles(linalg.null_space(exact(tall.T))), numpy.zeros((3, 2)))
            self.assertEqual(sorted(map(complex, linalg.eigvals(x)), key=str), sorted(map(complex, linalg.eig(x)[0]), key=str))
            if kind == "real":
                for name in ("schur", "hessenberg"):
                    h, q = map(doubles, getattr(linalg, name)(x))
                    self.close(q @ h @ q.T, a)
                bands = exact(numpy.array([[0, 1, 2], [4, 5, 6], [1, 2, 0]], dtype=float))
                self.close(
                    linalg.solve_banded((1, 1), bands, xb[:3]), scipy.linalg.solve_banded((1, 1), bands.astype(float), b[:3])
                )
        self.assertEqual(linalg.cond([[1, 2], [2, 4]], digits=30) > 10**28, True)
        self.assertEqual(linalg.slogdet([[0]]), (0, tesk2mp.Real("-inf")))
        for call in (lambda: linalg.norm([1], 3), lambda: linalg.solve([[1]], [1], assume_a="none"), lambda: linalg.cond([[1]], "nuc")):
            with self.assertRaises(tesk2mp.InvalidArgument):
                call()

    def test_special(self):
        for name in special.__all__:
            arguments = {"beta": (exact(5.5), 3), "binom": (exact(5.5), 3), "factorial": (3,)}.get(name, (exact(3.75),))
            self.close(getattr(special, name)(*arguments), getattr(scipy.special, name)(*map(float, arguments)), name)

    def test_fft(self):
        z = RANDOM.standard_normal(12)
        for name in vars(tesk2mp.fft):
            if name.endswith(("fft", "fftn", "ct", "st")):
                self.close(getattr(tesk2mp.fft, name)(exact(z)), getattr(scipy.fft, name)(z), name)

    def test_iterations(self):
        a = RANDOM.standard_normal((6, 6)) + 10 * numpy.eye(6)
        x = exact(a)
        matrix = sparse.SparseMatrix(6, [(i, j, x[i, j]) for i in range(6) for j in range(6)])
        diagonal = [x[i, i] for i in range(6)]
        for name in ("bicgstab", "cgs", "gmres", "tfqmr", "fgmres", "idrs"):
            seen = []
            found, info = getattr(sparse.linalg, name)(
                matrix, [1] * 6, rtol="1e-20", digits=40, callback=seen.append, M=lambda r: [e / d for e, d in zip(r, diagonal)]
            )
            self.assertEqual((info, len(seen) > 1), (0, True))
            self.close(found, numpy.linalg.solve(a, numpy.ones(6)), name)

    def test_processes(self):
        """Workers compute with the digits that the call names, whatever way they are started."""
        expected = [linalg.inv([[n]], digits=40) for n in (3, 7)]
        for way in ("fork", "spawn"):
            with ProcessPoolExecutor(1, mp_context=multiprocessing.get_context(way)) as pool:
                self.assertEqual(list(pool.map(partial(linalg.inv, digits=40), [[[3]], [[7]]])), expected)


if __name__ == "__main__":
    unittest.main()
