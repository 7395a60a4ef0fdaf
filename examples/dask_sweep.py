#!/usr/bin/env python3
"""dask_sweep.py [DIGITS [ADDRESS]]: a sweep over a parameter, shared out by Dask, whose workers compute with the digits set here.

    PYTHONPATH=build/release/python python3 examples/dask_sweep.py 40

The lowest energy of the oscillator p^2/2 + x^2/2 + g x^4 for couplings g, in the space of the first 60 even states of the
harmonic one. Workers are processes of this machine, or those of the scheduler at ADDRESS.
"""

import sys
from decimal import Decimal

import dask

import tesk2mp

STATES = 60


def ground_state(coupling, states=STATES):
    """The lowest eigenvalue, and the digits that it was computed with."""
    # Even powers of x keep even states among themselves, so that every other one is enough; x reaches one state further.
    size = 2 * states + 4
    x = [[Decimal(0)] * size for _ in range(size)]
    for n in range(size - 1):
        x[n][n + 1] = x[n + 1][n] = tesk2mp.sqrt(Decimal(n + 1) / 2)
    square = tesk2mp.multiply(x, x)
    fourth = tesk2mp.multiply(square, square)
    even = range(0, 2 * states, 2)
    energy = [[coupling * fourth[i][j] + (i + Decimal("0.5") if i == j else 0) for j in even] for i in even]
    return tesk2mp.symmetric_eigenvalues(energy)[0], tesk2mp.get_digits()


def main():
    digits = int(sys.argv[1]) if len(sys.argv) > 1 else 40
    client = None
    if len(sys.argv) > 2:
        from distributed import Client

        client = Client(sys.argv[2])
    couplings = [Decimal(k) / 50 for k in range(6)]
    with tesk2mp.digits(digits):
        task = dask.delayed(tesk2mp.with_digits(ground_state))
    energies = dask.compute(*map(task, couplings), scheduler=client or "processes", num_workers=2)
    for coupling, (energy, used) in zip(couplings, energies):
        print(f"{coupling:>5}  {energy}  ({used} digits)")


if __name__ == "__main__":
    main()
