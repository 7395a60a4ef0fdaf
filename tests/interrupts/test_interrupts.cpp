// Work is stopped at its first, second, ... check point: nothing leaks, and what follows gives the same digits as ever.
#include <doctest/doctest.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <new>
#include <thread>

#include "quarn/quarnthread.h"
#include "support/random.h"
#include "tesk2mp/tesk2mp.hpp"

namespace {

std::atomic<long> blocks = 0;  // of storage, in use

void* allocate(std::size_t size, std::size_t alignment) {
  void* const made = std::aligned_alloc(alignment, (size + alignment) / alignment * alignment);
  if (made == nullptr) {
    throw std::bad_alloc();
  }
  ++blocks;
  return made;
}

void release(void* p) noexcept {
  blocks -= p == nullptr ? 0 : 1;
  std::free(p);
}

thread_local long passed = 0;
thread_local long stop_at = 0;  // 0: never

}  // namespace

void* operator new(std::size_t size) { return allocate(size, 16); }
// As std::inplace_merge asks for its buffer.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new(std::size_t size, std::align_val_t alignment) { return allocate(size, std::size_t(alignment)); }
void operator delete(void* p) noexcept { release(p); }
void operator delete(void* p, std::size_t) noexcept { release(p); }
void operator delete(void* p, std::align_val_t) noexcept { release(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { release(p); }

/// In place of the library's: the libraries call this one.
__attribute__((visibility("default"))) void QuarnCheckInterrupt() {
  if (++passed == stop_at) {
    throw QuarnInterrupted();
  }
}

namespace {

using tesk2mp::Complex;
using tesk2mp::Matrix;
using tesk2mp::Real;
using Numbers = std::vector<Real>;

template <class T>
T entry(support::Random& random) {
  const auto part = [&] { return Real(random.between(-1'000'000, 1'000'000)) / 999'983; };
  if constexpr (std::is_same_v<T, Complex>) {
    return {part(), part()};
  } else {
    return part();
  }
}

template <class T>
std::vector<T> vector_of(std::size_t n, std::uint64_t seed) {
  support::Random random(seed);
  std::vector<T> x(n);
  for (T& element : x) {
    element = entry<T>(random);
  }
  return x;
}

template <class T>
Matrix<T> matrix_of(std::size_t n, std::uint64_t seed) {
  const std::vector<T> entries = vector_of<T>(n * n, seed);
  Matrix<T> a(n, n);
  std::copy(entries.begin(), entries.end(), a.data());
  return a;
}

void append(Numbers& all, const Real& x) { all.push_back(x); }
void append(Numbers& all, const Complex& z) { all.insert(all.end(), {z.re, z.im}); }
template <class T>
void append(Numbers& all, const std::vector<T>& x) {
  for (const T& element : x) {
    append(all, element);
  }
}
template <class T>
void append(Numbers& all, const Matrix<T>& a) {
  append(all, std::vector<T>(a.data(), a.data() + a.rows() * a.columns()));
}
template <class... Results>
Numbers numbers(const Results&... results) {
  Numbers all;
  (append(all, results), ...);
  return all;
}

/// The product by the exports: the companion or the classic entry.
template <class T>
Numbers product(std::size_t n, bool classic) {
  const Matrix<T> a = matrix_of<T>(n, 1);
  const Matrix<T> b = matrix_of<T>(n, 2);
  Matrix<T> c = matrix_of<T>(n, 3);
  if (classic) {
    tesk2mp::gemv(tesk2mp::Op::none, T(2), a, b.view().column(0), T(3), c.view().column(1));
    tesk2mp::trsm(tesk2mp::Side::right, tesk2mp::Triangle::upper, tesk2mp::Op::none, tesk2mp::Diagonal::general, T(1),
                  a, c);
    tesk2mp::trsm(tesk2mp::Side::left, tesk2mp::Triangle::lower, tesk2mp::Op::transpose, tesk2mp::Diagonal::unit, T(1),
                  a, c);
  } else {
    tesk2mp::gemm(tesk2mp::Op::none, tesk2mp::Op::transpose, T(2), a, b, T(3), c);
  }
  return numbers(c);
}

template <class T>
Numbers equations(std::size_t n) {
  const tesk2mp::LU<T> lu(matrix_of<T>(n, 1));
  return numbers(lu.solve(vector_of<T>(n, 2)), lu.inverse(), lu.determinant());
}

template <class T>
Numbers definite_equations(std::size_t n) {
  const Matrix<T> a = matrix_of<T>(n, 1);
  Matrix<T> h = Matrix<T>::identity(n);
  tesk2mp::gemm(tesk2mp::Op::conjugate_transpose, tesk2mp::Op::none, T(1), a, a, T(1), h);
  const tesk2mp::Cholesky<T> factor(h);
  return numbers(factor.solve(vector_of<T>(n, 2)), factor.factor());
}

Numbers eigenvalues(std::size_t n) {
  const tesk2mp::EigenSystem system = tesk2mp::eigen(matrix_of<Real>(n, 4));
  const tesk2mp::EigenConditions conditions = tesk2mp::eigen_conditions(matrix_of<Real>(n, 4));
  return numbers(system.values, system.right, system.left, conditions.value, conditions.vector);
}

Numbers transform(std::size_t n) {
  std::vector<Complex> x = vector_of<Complex>(n, 5);
  tesk2mp::transform(x);
  return numbers(x);
}

Numbers real_transform(std::size_t n) {
  Numbers x = vector_of<Real>(n, 6);
  tesk2mp::transform_real(x);
  return x;
}

Numbers solution(tesk2mp::Method method) {
  const std::size_t n = 24;
  tesk2mp::SparseMatrix<Real> a(n);
  for (std::size_t i = 0; i < n; ++i) {
    a.add(i, i, 4);
    if (i > 0) {
      a.add(i, i - 1, -1);
      a.add(i - 1, i, -2);
    }
  }
  tesk2mp::SolverOptions options;
  options.method = method;
  return tesk2mp::solve_iteratively(a, vector_of<Real>(n, 7), options).x;
}

template <class Factors, class... Options>
Numbers solved_by_factors(tesk2mp::Storage storage, std::size_t n, const Options&... options) {
  tesk2mp::SparseMatrix<Real> a(n, storage);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i < 5 ? 0 : i - 5; j < i; j += 2) {
      a.add(i, j, -1);
    }
    a.add(i, i, 9);
  }
  Numbers x = vector_of<Real>(n, 9);
  Factors(a, options...).solve(std::span<Real>(x));
  return x;
}
template <class Factors>
Numbers incomplete_factors(tesk2mp::Storage storage) {
  tesk2mp::FillOptions fill;
  fill.level = 2;
  return solved_by_factors<Factors>(storage, 24, fill);
}

Numbers ranks(std::size_t n) {
  Numbers x = vector_of<Real>(n, 8);
  tesk2mp::sort(x);
  return x;
}

Numbers functions() {
  const Real x = Real(7) / 3;
  return numbers(exp(x), log(x), sin(x), atan(x), pow(x, x), tesk2mp::pi(), tanh(x));
}

/// Eigenvalues, singular values and least squares of second differences.
Numbers values_of_operator() {
  constexpr std::size_t kOrder = 30;
  const tesk2mp::Product<Real> differences = [](std::span<const Real> x, std::span<Real> y) {
    for (std::size_t i = 0; i < kOrder; ++i) {
      y[i] = 2 * x[i] - (i > 0 ? x[i - 1] : Real(0)) - (i + 1 < kOrder ? x[i + 1] : Real(0));
    }
  };
  Numbers all = tesk2mp::eigsh<Real>(kOrder, differences, 2).values;
  for (const Complex& each : tesk2mp::eigs<Real>(kOrder, differences, 2).values) {
    all.push_back(each.re);
  }
  const Numbers singular = tesk2mp::svds<Real>(kOrder, kOrder, differences, differences, 1).values;
  all.insert(all.end(), singular.begin(), singular.end());
  const Numbers x = tesk2mp::lsmr<Real>(kOrder, differences, differences, Numbers(kOrder, Real(1))).x;
  all.insert(all.end(), x.begin(), x.end());
  return all;
}

struct Case {
  const char* name;
  int digits;
  std::function<Numbers()> work;
};

/// Runs in a thread of its own, so that no cache is left from before; returns what it took of storage and kept.
template <class Work>
long blocks_kept(const Work& work) {
  const long before = blocks;
  std::thread(work).join();
  return blocks - before;
}

/// All check points of little work, some thirty of more.
std::vector<long> places_to_stop(long count) {
  std::vector<long> places;
  for (long k = 1; k <= count; k += std::max<long>(1, k < 10 ? 1 : count / 20)) {
    places.push_back(k);
  }
  places.push_back(count);
  return places;
}

}  // namespace

TEST_CASE("work that is interrupted leaves nothing behind and gives the same digits when it is done again") {
  const std::vector<Case> cases = {
      {"product", 50, [] { return product<Real>(20, false); }},
      {"complex product", 200, [] { return product<Complex>(12, false); }},
      {"classic kernels", 50, [] { return product<Real>(40, true); }},
      {"complex classic kernels", 20, [] { return product<Complex>(40, true); }},
      {"equations", 50, [] { return equations<Real>(20); }},
      {"complex equations", 20, [] { return equations<Complex>(20); }},
      {"definite equations", 20, [] { return definite_equations<Real>(24); }},
      {"Hermitian equations", 50, [] { return definite_equations<Complex>(24); }},
      {"eigenvalues", 20, [] { return eigenvalues(10); }},
      {"transform of a power of 2", 50, [] { return transform(2048); }},
      {"transform with odd factors", 20, [] { return transform(3 * 5 * 7 * 11); }},
      {"transform by convolution", 50, [] { return transform(1009); }},
      {"transform beyond blocks", 1200, [] { return transform(94); }},
      {"real transform", 50, [] { return real_transform(2 * 9 * 5 * 19); }},
      {"RGMRES", 30, [] { return solution(tesk2mp::Method::rgmres); }},
      {"CGS", 30, [] { return solution(tesk2mp::Method::cgs); }},
      {"BiCGSTAB", 30, [] { return solution(tesk2mp::Method::bicgstab); }},
      {"TFQMR", 30, [] { return solution(tesk2mp::Method::tfqmr); }},
      {"incomplete LU", 30, [] { return incomplete_factors<tesk2mp::IncompleteLU<Real>>(tesk2mp::Storage::general); }},
      {"incomplete Cholesky", 30,
       [] { return incomplete_factors<tesk2mp::IncompleteCholesky<Real>>(tesk2mp::Storage::lower_triangle); }},
      {"sparse LU", 30, [] { return solved_by_factors<tesk2mp::SparseLU<Real>>(tesk2mp::Storage::general, 300); }},
      {"sparse Cholesky", 30,
       [] { return solved_by_factors<tesk2mp::SparseCholesky<Real>>(tesk2mp::Storage::lower_triangle, 300); }},
      {"eigenvalues of operators", 10, [] { return values_of_operator(); }},
      {"sorting", 20, [] { return ranks(5000); }},
      {"elementary functions", 4500, functions},
  };
  for (const Case& each : cases) {
    CAPTURE(each.name);
    Numbers expected;
    long count = 0;
    blocks_kept([&] {
      QuarnSetDigits(each.digits);
      passed = 0;
      expected = each.work();
      count = passed;
    });
    CHECK(count > 3);
    long wrong = 0;
    long missed = 0;
    for (const long k : places_to_stop(count)) {
      const long kept = blocks_kept([&] {
        QuarnSetDigits(each.digits);
        passed = 0;
        stop_at = k;
        try {
          each.work();
          ++missed;
        } catch (const QuarnInterrupted&) {
        }
        stop_at = 0;
        const bool same_state = QuarnDigits() == each.digits && QuarnMPX_failure_handler(nullptr) == nullptr;
        wrong += same_state && each.work() == expected ? 0 : 1;
      });
      CHECK_MESSAGE(kept == 0, "stopped at ", k, " of ", count);
    }
    CHECK(missed == 0);
    CHECK(wrong == 0);
  }
}
