#!/usr/bin/env python3
"""mpi_poisson.py SIDE DIGITS [jacobi]: what mpi_poisson.cpp does, with the same output to the last digit.

    PYTHONPATH=build/release/python mpirun -np 4 python3 examples/mpi_poisson.py SIDE DIGITS [jacobi]

Poisson's equation on a square of SIDE x SIDE points, whose lines are shared out among the ranks. Standard output has the
result, the same for every number of ranks; what was communicated goes to standard error.
"""

import sys

from mpi4py import MPI

import tesk2mp
from tesk2mp import Real

comm = MPI.COMM_WORLD


class Block:
    """The lines of the square that this rank has."""

    def __init__(self, side):
        self.side = side
        self.first = side * comm.rank // comm.size
        self.count = side * (comm.rank + 1) // comm.size - self.first
        self.above = comm.rank - 1 if comm.rank > 0 else MPI.PROC_NULL
        self.below = comm.rank + 1 if comm.rank + 1 < comm.size else MPI.PROC_NULL
        self.diagonal = [4 + Real(self.first + line) / side for line in range(self.count)]
        self.messages = self.volume = 0

    def exchange(self, line, to, origin):
        """A line of unknowns goes to one neighbour, one comes from the other; zeros come from beyond the square."""
        message = b"" if to == MPI.PROC_NULL else tesk2mp.pack(line)
        self.messages += bool(message)
        self.volume += len(message)
        coming = comm.sendrecv(message, to, source=origin)
        return [Real(0)] * self.side if coming is None else tesk2mp.unpack(coming)

    def multiply(self, x):
        """A x for the rows here."""
        side = self.side
        lines = [x[at : at + side] for at in range(0, len(x), side)]
        lines = [self.exchange(lines[-1], self.below, self.above), *lines, self.exchange(lines[0], self.above, self.below)]
        y = []
        for here, diagonal in enumerate(self.diagonal, 1):
            for column, value in enumerate(lines[here]):
                value = diagonal * value - lines[here - 1][column] - lines[here + 1][column]
                if column > 0:
                    value -= lines[here][column - 1]
                if column + 1 < side:
                    value -= lines[here][column + 1]
                y.append(value)
        return y

    def precondition(self, x):
        """Jacobi's: x divided by the diagonal."""
        return [value / self.diagonal[at // self.side] for at, value in enumerate(x)]

    def add_up(self, message):
        """What all ranks know of the sums of which this rank sends what it knows."""
        self.messages += 1
        self.volume += len(message)
        return comm.allgather(message)


def solve(side, jacobi):
    block = Block(side)
    x, _, iterations = tesk2mp.solve_iteratively(
        block.multiply,
        [1] * (side * block.count),
        block.precondition if jacobi else None,
        method="cg",
        norm="two",
        tolerance="1e-15",
        rows=side * side,
        first_row=side * block.first,
        exchange=block.add_up,
    )
    print(
        f"rank {comm.rank} of {comm.size}: {len(x)} rows; an iteration sends {block.messages / iterations:.1f} messages, "
        f"{block.volume / iterations:.0f} bytes",
        file=sys.stderr,
    )
    everything = b"".join(comm.allgather(tesk2mp.pack(x)))
    if comm.rank == 0:
        print(f"{side * side} unknowns, {iterations} iterations")
        for value in tesk2mp.unpack(everything)[:: max(1, side * side // 50)]:
            print(value)
        total = 0
        for byte in everything:
            total = (total * 31 + byte) & 0xFFFFFFFF
        print(f"check sum of all digits {total:x}")


def main():
    side, digits = (int(number) for number in sys.argv[1:3]) if len(sys.argv) > 2 else (0, 0)
    if not comm.size <= side <= 40000 or not 20 <= digits <= 100000:
        sys.exit("usage: mpi_poisson.py SIDE DIGITS [jacobi]; ranks <= SIDE <= 40000, DIGITS >= 20")
    try:
        # Reals round every operation to the working digits, as the C++ interface does.
        with tesk2mp.digits(digits), tesk2mp.results(Real):
            solve(side, sys.argv[3:] == ["jacobi"])
    except Exception as failure:
        print(f"rank {comm.rank}: {failure}", file=sys.stderr)
        comm.Abort(1)  # the others would wait for ever


if __name__ == "__main__":
    main()
