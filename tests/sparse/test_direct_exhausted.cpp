// Sparse factorisations whose storage runs out, at every allocation in turn.
#include <doctest/doctest.h>

#include <algorithm>
#include <span>
#include <vector>

#include "sparse/samples.h"
#include "support/digits.h"
#include "support/failing_new.h"
#include "tesk2mp/tesk2mp.hpp"

using support::Digits;
using support::Random;
using tesk2mp::Real;
using tesk2mp::SparseCholesky;
using tesk2mp::SparseLU;
using tesk2mp::SparseMatrix;

TEST_CASE("when storage runs out at any place nothing is lost, of factorisations and what is found by products") {
  const Digits scope(200);  // numbers that take storage too
  Random random;
  const SparseMatrix<Real> a = samples::general_sample<Real>(random, 12, 0);
  const SparseMatrix<Real> triangle = samples::definite_sample<Real>(random, 12);
  tesk2mp::FillOptions fill;
  fill.level = 1;
  const auto sweep = [&](const auto& work) {
    const std::vector<Real> expected = work();
    long wrong = 0;
    for (long k = 1;; k += 1 + k / 40) {
      support::allocations.fail(k, random.once_in(2));
      bool failed = false;
      try {
        work();
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      const bool reached = support::allocations.count >= k;
      support::allocations.stop_failing();
      wrong += work() == expected ? 0 : 1;
      if (!reached) {
        CHECK(!failed);
        break;
      }
    }
    CHECK(wrong == 0);
  };
  const std::vector<Real> b(12, Real(1) / 3);
  const auto solved = [&](const auto& factors) {
    std::vector<Real> x = b;
    factors.solve(std::span<Real>(x));
    return x;
  };
  sweep([&] { return solved(SparseLU<Real>(a)); });
  sweep([&] { return solved(SparseCholesky<Real>(triangle)); });
  sweep([&] { return solved(tesk2mp::IncompleteLU<Real>(a, fill, tesk2mp::PivotSearch::both)); });
  sweep([&] { return solved(tesk2mp::IncompleteLU<Real>(a, fill, tesk2mp::PivotSearch::least_fill)); });
  sweep([&] { return solved(tesk2mp::IncompleteCholesky<Real>(triangle, fill)); });
  const SparseMatrix<Real> small = samples::definite_sample<Real>(random, 4);
  tesk2mp::SparseRectangle<Real> tall(5, 3);
  for (std::size_t i = 0; i < 5; ++i) {
    tall.add(i, i % 3, Real(int(i) + 1));
  }
  sweep([&] { return tesk2mp::eigsh(small, 2).values; });
  sweep([&] {
    std::vector<Real> parts;
    for (const Complex& value : tesk2mp::eigs(samples::grid(2, tesk2mp::Storage::general, Real(2)), 2).values) {
      parts.insert(parts.end(), {value.re, value.im});
    }
    return parts;
  });
  sweep([&] { return tesk2mp::svds(tall, 2).values; });
  sweep([&] { return tesk2mp::lsmr<Real>(tall, std::vector<Real>(5, Real(1))).x; });
}

TEST_CASE("when storage runs out nothing is written of what is found by products") {
  const Digits scope(504);  // the work's numbers are longer by a class of storage, and leave none for these
  static const Real elements[] = {Real(1) / 3, Real(2) / 7, Real(-3) / 7, Real(5) / 3};
  const QuarnRealOperator product = [](void*, Integer what, const Real* x, Real* y) {
    y[0] = elements[0] * x[0] + elements[what == 1 ? 2 : 1] * x[1];
    y[1] = elements[what == 1 ? 1 : 2] * x[0] + elements[3] * x[1];
  };
  const QuarnRealOperator symmetric = [](void*, Integer, const Real* x, Real* y) {
    y[0] = elements[0] * x[0] + elements[1] * x[1];
    y[1] = elements[1] * x[0] + elements[3] * x[1];
  };
  const std::vector<Real> sevens(20, Real(7));
  std::vector<Real> real;
  std::vector<Complex> complex;
  Integer counts[3];
  const auto sweep = [&](const auto& work) {
    long touched = 0;
    for (long k = 1;; k += 1 + k / 100) {
      real = sevens;
      complex.assign(6, Complex(7.0));
      std::fill(counts, counts + 3, 7);
      support::allocations.fail(k, false);
      bool failed = false;
      try {
        Integer info = 0;
        work(info);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      const bool reached = support::allocations.count >= k;
      support::allocations.stop_failing();
      const bool same =
          real == sevens && complex == std::vector<Complex>(6, Complex(7.0)) && std::count(counts, counts + 3, 7) == 3;
      touched += failed && !same ? 1 : 0;
      if (!reached) {
        CHECK(!same);
        break;
      }
    }
    CHECK(touched == 0);
  };
  sweep([&](Integer& info) {
    QuarnMPX_deigsh_("LM", 2, 2, nullptr, symmetric, nullptr, 0, 0, 99, nullptr, real.data(), &real[2], 2, &real[6],
                     counts, &info, 2);
  });
  sweep([&](Integer& info) {
    QuarnMPX_deigs_("LM", 2, 2, nullptr, product, nullptr, 0, 0, 99, nullptr, complex.data(), &complex[2], 2,
                    real.data(), counts, &counts[1], &info, 2);
  });
  sweep([&](Integer& info) {
    QuarnMPX_dsvds_("LM", 2, 2, 2, product, nullptr, 0, 0, 99, nullptr, real.data(), &real[2], 2, &real[6], 2,
                    &real[10], counts, &info, 2);
  });
  const std::vector<Real> b(2, Real(1) / 3);
  sweep([&](Integer& info) {
    QuarnMPX_dlsmr_(2, 2, product, nullptr, b.data(), 0, 0, 0, 0, 99, real.data(), &real[2], &real[3], &real[4],
                    &real[5], counts, &counts[1], &info);
  });
}
