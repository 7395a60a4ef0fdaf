"""Long calls: Ctrl-C ends them with KeyboardInterrupt and leaves everything as it was, other threads go on meanwhile."""

import copy
import ctypes
import itertools
import os
import random
import signal
import threading
import time
import unittest

import tesk2mp

ORDER = 200
DIGITS = 400


def matrix(order):
    source = random.Random(order)
    return [[source.randint(-999, 999) for _ in range(order)] for _ in range(order)]


def digits_of(result):
    return [[str(number) for number in row] if isinstance(row, list) else str(row) for row in result]


class Interrupts(unittest.TestCase):
    a = matrix(ORDER)
    x = [random.Random(k).randint(-999, 999) for k in range(8000)]

    def interrupt_soon(self, delay=0.3):
        sent = []

        def send():
            time.sleep(delay)
            sent.append(time.monotonic())
            os.kill(os.getpid(), signal.SIGINT)

        thread = threading.Thread(target=send)
        thread.start()
        self.addCleanup(thread.join)
        return sent

    def check_interrupted(self, call, *arguments):
        before = copy.deepcopy(arguments)
        with tesk2mp.digits(DIGITS):
            sent = self.interrupt_soon()
            with self.assertRaises(KeyboardInterrupt):
                call(*arguments)
            print(f"{call.__name__}: {time.monotonic() - sent[0]:.3f} s after the signal")
            self.assertEqual(tesk2mp.get_digits(), DIGITS)
        self.assertEqual(arguments, before)

    def test_dense_work_ends(self):
        for call in (lambda a: [tesk2mp.multiply(a, a) for _ in range(1000)], tesk2mp.inverse, tesk2mp.eigen,
                     tesk2mp.eigen_conditions, tesk2mp.schur):
            with self.subTest(call.__name__):
                self.check_interrupted(call, self.a)

    def test_sequences_end(self):
        def transforms(x):
            return [tesk2mp.transform(x) for _ in range(1000)]

        def numbers(count):
            return tesk2mp.Random(3).take(count)

        def sorting(x):
            return [tesk2mp.sort(x) for _ in range(1000)]

        for call, argument in ((transforms, self.x), (sorting, self.x), (numbers, 10**6)):
            with self.subTest(call.__name__):
                self.check_interrupted(call, argument)

    def test_iterations_end_and_the_matrix_can_be_used_again(self):
        order = 300
        a = tesk2mp.SparseMatrix(order, [(i, j, 4 if i == j else -1) for i in range(order) for j in (i - 1, i, i + 1)
                                         if 0 <= j < order])
        b = [1] * order

        def solve(matrix, right):
            return tesk2mp.solve_iteratively(matrix, right, method="cgs", tolerance="1e-390", monitor=lambda *_: False,
                                             most_iterations=10**6)

        with tesk2mp.digits(DIGITS):
            self.interrupt_soon()
            with self.assertRaises(KeyboardInterrupt):
                while True:
                    solve(a, b)
        a.add(0, 0, 1)
        self.assertEqual(a.multiply(b)[0], 4)

    def test_the_same_call_gives_the_same_digits_afterwards(self):
        small = matrix(30)
        expected = digits_of(tesk2mp.inverse(small))
        self.check_interrupted(tesk2mp.eigen, self.a)
        self.assertEqual(digits_of(tesk2mp.inverse(small)), expected)

    def test_a_signal_that_came_before_the_work_ends_it(self):
        # Called by map without an instruction of Python, so that no handler runs before the work.
        pending = ctypes.pythonapi.PyErr_SetInterrupt
        pending.restype = ctypes.c_bool
        numbers = 20 * ["1.5"]
        start = time.process_time()
        tesk2mp.exp(numbers, digits=50000)
        whole = time.process_time() - start
        start = time.process_time()
        with self.assertRaises(KeyboardInterrupt):
            tesk2mp.exp(itertools.chain(map(pending, [0]), numbers), digits=50000)
        self.assertLess(time.process_time() - start, whole / 2)  # of the work, not of the clock
        self.assertEqual(tesk2mp.get_digits(), 20)

    def test_handlers_stay_and_decide(self):
        def handler(*_):
            raise TimeoutError("enough")

        former = signal.signal(signal.SIGINT, handler)
        try:
            with tesk2mp.digits(DIGITS):
                self.interrupt_soon()
                with self.assertRaisesRegex(TimeoutError, "enough"):
                    tesk2mp.eigen(self.a)
            self.assertIs(signal.getsignal(signal.SIGINT), handler)
            with self.assertRaises(TimeoutError):
                os.kill(os.getpid(), signal.SIGINT)
                time.sleep(10)
        finally:
            signal.signal(signal.SIGINT, former)

    def test_other_threads_go_on(self):
        count = 0
        done = threading.Event()

        def ticks():
            nonlocal count
            while not done.is_set():
                count += 1
                time.sleep(0.001)

        thread = threading.Thread(target=ticks)
        with tesk2mp.digits(2000):
            lu = tesk2mp.LU(matrix(60))
            thread.start()
            before = count
            lu.inverse()
            during = count - before
        done.set()
        thread.join()
        self.assertGreater(during, 5)

    def test_a_matrix_is_not_changed_while_it_is_read(self):
        order = 200
        a = tesk2mp.SparseMatrix(order, [(i, i, 2) for i in range(order)] +
                                 [(i, i - 1, -1) for i in range(1, order)])
        refused = []

        def look(*_):
            try:
                a.add(0, 0, 1)
            except RuntimeError as error:
                refused.append(str(error))
            return True

        tesk2mp.solve_iteratively(a, list(range(order)), monitor=look)
        self.assertEqual(refused, ["the matrix is in use by another thread"])
        a.add(0, 0, 1)


if __name__ == "__main__":
    unittest.main()
