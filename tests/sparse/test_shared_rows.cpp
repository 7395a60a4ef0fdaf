// Rows that are shared out among ranks by the C++ interface, all of them in this program.
#include <doctest/doctest.h>

#include <algorithm>
#include <new>
#include <vector>

#include "support/digits.h"
#include "tesk2mp/solver.hpp"
#include "tests/sparse/shared_rows.h"

using shared_rows::Line;
using shared_rows::right_side;

TEST_CASE_TEMPLATE("the C++ interface forms the sums of two ranks, by a function or in the caller's loop", T,
                   QuarnFloat, quarn::Complex) {
  const support::Digits working(50);
  support::Random random;
  const Line<T> line = Line<T>::make(19, QuarnFloat(1) / 4);
  const std::vector<T> b = right_side<T>(random, line.n);
  for (const tesk2mp::VectorNorm norm :
       {tesk2mp::VectorNorm::one, tesk2mp::VectorNorm::two, tesk2mp::VectorNorm::infinity}) {
    for (const bool weighted : {false, true}) {
      tesk2mp::SolverOptions options;
      options.method = tesk2mp::Method::bicgstab;
      options.tolerance = QuarnFloat(1, -30);
      options.norm = norm;
      options.rows = line.n;
      std::vector<QuarnFloat> weights;
      for (Integer i = 0; i < line.n && weighted; ++i) {
        weights.push_back(QuarnFloat(1 + i % 5) / 3);
      }
      options.weights = weights;
      int messages = 0;
      options.dot = [&messages](std::span<tesk2mp::PartialSum> sums) {
        ++messages;
        const std::vector<unsigned char> bytes = tesk2mp::pack(sums);
        tesk2mp::add_messages(bytes, sums);
      };
      const auto multiply = [&line](std::span<const T> x, std::span<T> y) {
        std::vector<T> image(y.size());
        line.multiply({x.begin(), x.end()}, image, false);
        std::copy(image.begin(), image.end(), y.begin());
      };
      const auto alone = tesk2mp::solve_iteratively(multiply, std::span<const T>(b), options);
      CHECK(alone.converged);
      CHECK(messages > alone.progress.iterations);

      // An exchange that throws, at any place, is repeated.
      const auto exchange = options.dot;
      const auto failing = random.below(std::uint64_t(messages) - 8);
      messages = 0;
      options.dot = [&](std::span<tesk2mp::PartialSum> sums) {
        exchange(sums);
        if (messages == int(failing) + 1) {
          ++messages;
          throw std::bad_alloc();
        }
      };
      tesk2mp::BasicIterativeSolver<T> interrupted(std::span<const T>(b), {}, false, options);
      const auto go_on = [&] {
        tesk2mp::iterate(
            interrupted, multiply, [](auto, auto) {}, [](const auto&) { return true; });
      };
      CHECK_THROWS_AS(go_on(), std::bad_alloc);
      go_on();
      CHECK(interrupted.converged());
      CHECK(interrupted.solution() == alone.x);

      options.dot = nullptr;
      tesk2mp::BasicIterativeSolver<T> without(std::span<const T>(b), {}, false, options);
      CHECK_THROWS_AS(tesk2mp::iterate(
                          without, multiply, [](auto, auto) {}, [](const auto&) { return true; }),
                      tesk2mp::InvalidArgument);
      constexpr std::size_t kHere = 8;
      std::vector<tesk2mp::BasicIterativeSolver<T>> ranks;
      for (const std::size_t first : {std::size_t(0), kHere}) {
        const std::size_t last = first == 0 ? kHere : b.size();
        options.first_row = Integer(first);
        if (weighted) {
          options.weights.assign(weights.begin() + std::ptrdiff_t(first), weights.begin() + std::ptrdiff_t(last));
        }
        ranks.emplace_back(std::span<const T>(b).subspan(first, last - first), std::span<const T>(), false, options);
      }
      for (auto request = tesk2mp::Request::product; request != tesk2mp::Request::finished;) {
        request = ranks[0].next();
        REQUIRE(ranks[1].next() == request);
        if (request == tesk2mp::Request::dot) {
          std::vector<tesk2mp::PartialSum> sums[] = {ranks[0].partial_sums(), ranks[1].partial_sums()};
          std::vector<unsigned char> bytes = tesk2mp::pack(sums[1]);
          const std::vector<unsigned char> more = tesk2mp::pack(sums[0]);
          bytes.insert(bytes.end(), more.begin(), more.end());
          for (const std::size_t length : {bytes.size() - 1, std::size_t(0)}) {
            CHECK_THROWS_AS(tesk2mp::add_messages(std::span(bytes).first(length), sums[0]), tesk2mp::InvalidArgument);
          }
          const std::span<const tesk2mp::PartialSum> known = sums[0];
          CHECK_THROWS_AS(ranks[0].take_totals(known.first(known.size() - 1)), tesk2mp::InvalidArgument);
          for (std::size_t r = 0; r < 2; ++r) {
            tesk2mp::add_messages(bytes, sums[r]);
            ranks[r].take_totals(sums[r]);
          }
        } else if (request == tesk2mp::Request::product) {
          std::vector<T> whole(ranks[0].input().begin(), ranks[0].input().end());
          whole.insert(whole.end(), ranks[1].input().begin(), ranks[1].input().end());
          std::vector<T> image(whole.size());
          multiply(whole, image);
          std::copy(image.begin(), image.begin() + kHere, ranks[0].output().begin());
          std::copy(image.begin() + kHere, image.end(), ranks[1].output().begin());
        }
      }
      std::vector<T> x = ranks[0].solution();
      x.insert(x.end(), ranks[1].solution().begin(), ranks[1].solution().end());
      CHECK(x == alone.x);
    }
  }
}
