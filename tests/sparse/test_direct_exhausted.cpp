// Sparse factorisations whose storage runs out, at every allocation in turn.
#include <doctest/doctest.h>

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
  sweep([&] { return tesk2mp::svds(tall, 2).values; });
  sweep([&] { return tesk2mp::lsmr<Real>(tall, std::vector<Real>(5, Real(1))).x; });
}
