#!/usr/bin/python3
"""Two eigenproblems in two threads of Python beside one after the other: python_two_threads.py [ORDER [DIGITS]].

Wall seconds, the best of eight pairs, since whatever else runs makes both slower; it needs two idle processors. PYTHONPATH
names the folder where the package is.
"""

import random
import sys
import threading
import time

import tesk2mp

ORDER = int(sys.argv[1]) if len(sys.argv) > 1 else 160
DIGITS = int(sys.argv[2]) if len(sys.argv) > 2 else 50
SOURCE = random.Random(1)
MATRICES = [[[SOURCE.randint(-(10**15), 10**15) for _ in range(ORDER)] for _ in range(ORDER)] for _ in range(2)]


def work(matrix):
    tesk2mp.eigenvalues(matrix, digits=DIGITS)


def in_turn():
    for matrix in MATRICES:
        work(matrix)


def at_once():
    threads = [threading.Thread(target=work, args=(matrix,)) for matrix in MATRICES]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()


def seconds(run):
    start = time.perf_counter()
    run()
    return time.perf_counter() - start


def main():
    pairs = [(seconds(in_turn), seconds(at_once)) for _ in range(8)]
    turn, once = (min(each) for each in zip(*pairs))
    print(f"order {ORDER}, {DIGITS} digits: in turn {turn:.2f} s, at once {once:.2f} s, ratio {once / turn:.2f}")


if __name__ == "__main__":
    main()
