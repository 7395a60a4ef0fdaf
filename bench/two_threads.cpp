// Two threads beside one: two workloads that have nothing to do with each other, at once and one after the other, in
// pairs, and products of a sparse matrix that share their rows. The best of each counts, since whatever else runs makes
// both slower. Wall time needs two idle processors; the processor time of the longer thread is what wall time would
// then be.
//
// bench_two_threads [PAIRS]
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "tesk2mp/tesk2mp.hpp"

namespace {

/// Long numbers, which live on the heap, and elementary functions.
QuarnFloat numbers() {
  const tesk2mp::Digits scope(300);
  QuarnFloat sum = 0;
  for (int i = 1; i < 4000; ++i) {
    sum += sin(QuarnFloat(i)) * sqrt(QuarnFloat(i)) / (QuarnFloat(2) + exp(QuarnFloat(1) / i));
  }
  return sum;
}

/// Factorisations of many short numbers, with products modulo primes.
QuarnFloat matrices() {
  const tesk2mp::Digits scope(50);
  constexpr std::size_t n = 120;
  QuarnFloat sum = 0;
  for (std::size_t k = 1; k < 4; ++k) {
    tesk2mp::Matrix<QuarnFloat> a(n, n);
    for (std::size_t i = 0; i < n * n; ++i) {
      a(i % n, i / n) = QuarnFloat(1) / QuarnFloat(k + i * i % 1009);
    }
    sum += tesk2mp::determinant(a) + tesk2mp::multiply(a, a)(1, 2);
  }
  return sum;
}

/// Seconds of work() by a clock.
template <class Work>
double seconds(clockid_t clock, const Work& work) {
  const auto now = [clock] {
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

/// The least times seen, of the wall and of a thread's processor.
struct Least {
  double wall = 1e9;
  double processor = 1e9;
};

/// Products with the five-point Laplacian of side x side points at 50 digits, in one thread and in two.
void sparse_products(std::size_t side, int pairs) {
  const tesk2mp::Digits scope(50);
  tesk2mp::SparseMatrix<QuarnFloat> a(side * side);
  for (std::size_t i = 0; i < side * side; ++i) {
    a.add(i, i, sqrt(QuarnFloat(16 + i)));
    for (const std::size_t step : {std::size_t(1), side}) {
      if (i >= step && (step > 1 || i % side != 0)) {
        a.add(i, i - step, -sqrt(QuarnFloat(i)));
        a.add(i - step, i, -sqrt(QuarnFloat(i)));
      }
    }
  }
  a.canonicalise(tesk2mp::Duplicates::fail, tesk2mp::Zeros::keep);
  std::vector<QuarnFloat> x(side * side);
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = 1 / QuarnFloat(i + 3);
  }
  std::vector<QuarnFloat> y(x.size());
  const std::size_t products = 1 + 400'000 / (side * side);
  double least[2] = {1e9, 1e9};
  for (int i = 0; i < 2 * pairs; ++i) {
    const int threads = 1 + i % 2;
    tesk2mp::set_threads(threads);
    double& time = least[threads - 1];
    time = std::min(time, seconds(CLOCK_MONOTONIC, [&] {
                      for (std::size_t k = 0; k < products; ++k) {
                        a.multiply(x, std::span<QuarnFloat>(y));
                      }
                    }));
  }
  tesk2mp::set_threads(1);
  std::printf("sparse product, %zu x %zu points: wall time of one thread %.2f ms, of two %.2f ms: %.2f\n", side, side,
              1e3 * least[0] / double(products), 1e3 * least[1] / double(products), least[1] / least[0]);
}

}  // namespace

int main(int count, char** arguments) {
  const int pairs = count > 1 ? std::atoi(arguments[1]) : 9;
  Least alone;
  Least together;
  double shares[2] = {};
  for (int i = 0; i < pairs; ++i) {
    QuarnFloat expected[2];
    QuarnFloat found[2];
    double times[2];
    alone.wall = std::min(alone.wall, seconds(CLOCK_MONOTONIC, [&] {
                            times[0] = seconds(CLOCK_THREAD_CPUTIME_ID, [&] { expected[0] = numbers(); });
                            times[1] = seconds(CLOCK_THREAD_CPUTIME_ID, [&] { expected[1] = matrices(); });
                          }));
    if (times[0] + times[1] < alone.processor) {
      alone.processor = times[0] + times[1];
      std::copy(times, times + 2, shares);
    }
    together.wall = std::min(
        together.wall, seconds(CLOCK_MONOTONIC, [&] {
          std::thread other([&] { times[1] = seconds(CLOCK_THREAD_CPUTIME_ID, [&] { found[1] = matrices(); }); });
          times[0] = seconds(CLOCK_THREAD_CPUTIME_ID, [&] { found[0] = numbers(); });
          other.join();
        }));
    together.processor = std::min(together.processor, std::max(times[0], times[1]));
    if (found[0] != expected[0] || found[1] != expected[1]) {
      std::puts("the results differ");
      return 1;
    }
  }
  std::printf("wall time: one after the other %.3f s, at once %.3f s: %.2f\n", alone.wall, together.wall,
              together.wall / alone.wall);
  std::printf("processor time: %.3f + %.3f s, the longer thread at once %.3f s: %.2f\n", shares[0], shares[1],
              together.processor, together.processor / alone.processor);
  sparse_products(100, pairs);
  sparse_products(316, pairs);
}
