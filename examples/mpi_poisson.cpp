// Poisson's equation on a square of SIDE x SIDE points, its rows shared out among the ranks of MPI, to any number of
// digits: the same digits for every number of ranks.
//
//   mpirun -np 4 build/release/bin/example_mpi_poisson SIDE DIGITS [jacobi]
//
// The diagonal grows along the square, so that Jacobi's preconditioner has something to do. Standard output has the
// result; what was communicated, which depends on the ranks, goes to standard error.
#include <mpi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <vector>

#include "quarn/interchange.h"
#include "tesk2mp/tesk2mp.hpp"

using tesk2mp::Real;
using Bytes = std::vector<unsigned char>;

namespace {

/// The lines of the square that a rank has, each of `side` unknowns: blocks whose sizes differ by one at most.
struct Block {
  int side, rank, ranks;

  int line(int r) const { return int(long(side) * r / ranks); }
  int first() const { return line(rank); }
  int count() const { return line(rank + 1) - first(); }
};

long messages = 0;
long volume = 0;
std::clock_t waiting = 0;  // processor time in calls of MPI

/// Counts the time that it lives.
struct Communication {
  std::clock_t begun = std::clock();

  ~Communication() { waiting += std::clock() - begun; }
};

/// What all ranks have to say, one after the other.
Bytes gather(const Bytes& mine, int ranks) {
  const Communication counted;
  int size = int(mine.size());
  std::vector<int> sizes(std::size_t(ranks), 0);
  std::vector<int> places(std::size_t(ranks) + 1, 0);
  MPI_Allgather(&size, 1, MPI_INT, sizes.data(), 1, MPI_INT, MPI_COMM_WORLD);
  for (std::size_t r = 0; r < sizes.size(); ++r) {
    places[r + 1] = places[r] + sizes[r];
  }
  Bytes all(std::size_t(places.back()));
  MPI_Allgatherv(mine.data(), size, MPI_BYTE, all.data(), sizes.data(), places.data(), MPI_BYTE, MPI_COMM_WORLD);
  return all;
}

/// A line of unknowns goes to one neighbour, one comes from the other; none at the ends of the square.
std::vector<Real> exchange(std::span<const Real> line, int to, int from) {
  const Bytes out = to == MPI_PROC_NULL ? Bytes() : quarn::pack(line);
  int size = int(out.size());
  int coming = 0;
  Bytes in;
  {
    const Communication counted;
    MPI_Sendrecv(&size, 1, MPI_INT, to, 0, &coming, 1, MPI_INT, from, 0, MPI_COMM_WORLD, MPI_STATUS_IGNORE);
    in.resize(std::size_t(coming));
    MPI_Sendrecv(out.data(), size, MPI_BYTE, to, 1, in.data(), coming, MPI_BYTE, from, 1, MPI_COMM_WORLD,
                 MPI_STATUS_IGNORE);
  }
  messages += to == MPI_PROC_NULL ? 0 : 1;
  volume += size;
  std::vector<Real> numbers;
  if (!quarn::unpack(in, numbers) || (from != MPI_PROC_NULL && numbers.size() != line.size())) {
    MPI_Abort(MPI_COMM_WORLD, 1);
  }
  numbers.resize(line.size());
  return numbers;
}

Real diagonal(const Block& block, int line) { return 4 + Real(line) / block.side; }

/// y := A x for the rows of the block.
void multiply(const Block& block, std::span<const Real> x, std::span<Real> y) {
  const std::size_t side = std::size_t(block.side);
  const int above = block.rank > 0 ? block.rank - 1 : MPI_PROC_NULL;
  const int below = block.rank + 1 < block.ranks ? block.rank + 1 : MPI_PROC_NULL;
  const std::vector<Real> before = exchange(x.last(side), below, above);
  const std::vector<Real> after = exchange(x.first(side), above, below);
  Real here;
  for (std::size_t at = 0; at < x.size(); ++at) {
    const std::size_t column = at % side;
    if (column == 0) {
      here = diagonal(block, block.first() + int(at / side));
    }
    y[at] = here * x[at];
    y[at] -= at < side ? before[at] : x[at - side];
    y[at] -= at + side < x.size() ? x[at + side] : after[column];
    if (column > 0) {
      y[at] -= x[at - 1];
    }
    if (column + 1 < side) {
      y[at] -= x[at + 1];
    }
  }
}

void solve(const Block& block, bool jacobi) {
  const std::size_t size = std::size_t(block.side) * std::size_t(block.count());
  tesk2mp::SolverOptions options;
  options.method = tesk2mp::Method::cg;
  options.norm = tesk2mp::VectorNorm::two;
  options.tolerance = Real(1, -15);
  options.rows = block.side * block.side;
  options.first_row = block.side * block.first();
  options.dot = [&block](std::span<tesk2mp::PartialSum> sums) {
    const Bytes mine = tesk2mp::pack(sums);
    ++messages;
    volume += long(mine.size());
    tesk2mp::add_messages(gather(mine, block.ranks), sums);
  };
  tesk2mp::IterativeSolver solver(std::vector<Real>(size, 1), {}, jacobi, options);
  tesk2mp::iterate(
      solver, [&block](std::span<const Real> x, std::span<Real> y) { multiply(block, x, y); },
      [&block](std::span<const Real> x, std::span<Real> y) {
        for (std::size_t at = 0; at < x.size(); ++at) {
          y[at] = x[at] / diagonal(block, block.first() + int(at / std::size_t(block.side)));
        }
      },
      [](const auto&) { return true; });

  const int iterations = solver.progress().iterations;
  const double per_iteration[] = {double(messages) / iterations, double(volume) / iterations};
  const double computing = double(std::clock() - waiting) / CLOCKS_PER_SEC;
  std::fprintf(
      stderr,
      "rank %d of %d: %d rows, %.2f s of processor time outside of MPI; an iteration sends %.1f messages, %.0f "
      "bytes\n",
      block.rank, block.ranks, int(size), computing, per_iteration[0], per_iteration[1]);
  const Bytes all = gather(quarn::pack(solver.solution()), block.ranks);
  std::vector<Real> x;
  if (block.rank == 0 && quarn::unpack(all, x)) {
    std::printf("%d unknowns, %d iterations\n", int(options.rows), iterations);
    for (std::size_t at = 0; at < x.size(); at += std::max<std::size_t>(1, x.size() / 50)) {
      std::printf("%s\n", x[at].to_string().c_str());
    }
    unsigned long sum = 0;
    for (const unsigned char byte : all) {
      sum = sum * 31 + byte;
    }
    std::printf("check sum of all digits %lx\n", sum & 0xffffffffUL);
  }
}

}  // namespace

int main(int count, char** arguments) {
  MPI_Init(&count, &arguments);
  Block block{};
  MPI_Comm_rank(MPI_COMM_WORLD, &block.rank);
  MPI_Comm_size(MPI_COMM_WORLD, &block.ranks);
  block.side = count > 2 ? std::atoi(arguments[1]) : 0;
  const int digits = count > 2 ? std::atoi(arguments[2]) : 0;
  if (block.side < block.ranks || block.side > 40000 || digits < 20 || digits > 100000) {
    std::fprintf(stderr, "usage: example_mpi_poisson SIDE DIGITS [jacobi]; ranks <= SIDE <= 40000, DIGITS >= 20\n");
    MPI_Finalize();
    return 2;
  }
  tesk2mp::set_digits(digits);
  try {
    solve(block, count > 3 && std::string_view(arguments[3]) == "jacobi");
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "rank %d: %s\n", block.rank, failure.what());
    MPI_Abort(MPI_COMM_WORLD, 1);
  }
  MPI_Finalize();
  return 0;
}
