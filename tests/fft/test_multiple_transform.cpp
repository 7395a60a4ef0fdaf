#include <doctest/doctest.h>

#include <algorithm>
#include <numeric>

#include "complex_sample.h"
#include "support/digits.h"

using sample::ComplexSequence;
using sample::largest_difference;
using sample::random_complex;
using sample::transformed;

namespace {

/// The entries of one accuracy.
struct Accuracy {
  const char* name;
  decltype(&QuarnMP_c06pcf_) single;
  decltype(&QuarnMP_c06prf_) interleaved;
  decltype(&QuarnMP_c06prfn_) interleaved_core;
  decltype(&QuarnMP_c06psfn_) contiguous_core;
  decltype(&QuarnMP_c06pff_) one_dimension;
  decltype(&QuarnMP_c06pjf_) all_dimensions;
};
const Accuracy kAccuracies[] = {
    {"classic", QuarnMP_c06pcf_, QuarnMP_c06prf_, QuarnMP_c06prfn_, QuarnMP_c06psfn_, QuarnMP_c06pff_, QuarnMP_c06pjf_},
    {"companion", QuarnMPX_c06pcf_, QuarnMPX_c06prf_, QuarnMPX_c06prfn_, QuarnMPX_c06psfn_, QuarnMPX_c06pff_,
     QuarnMPX_c06pjf_}};

/// The elements of x that lie `stride` apart, one by one transformed by the single entry.
void transform_line(decltype(&QuarnMP_c06pcf_) single, const char* direct, Complex* x, Integer n,
                    std::ptrdiff_t stride) {
  ComplexSequence line;
  for (Integer i = 0; i < n; ++i) {
    line.push_back(x[i * stride]);
  }
  line = transformed(single, direct, line);
  for (Integer i = 0; i < n; ++i) {
    x[i * stride] = line[std::size_t(i)];
  }
}

/// Dimension l (from 0) by single transforms.
ComplexSequence by_lines(decltype(&QuarnMP_c06pcf_) single, const char* direct, ComplexSequence x,
                         const std::vector<Integer>& extents, std::size_t l) {
  const Integer before = std::accumulate(extents.begin(), extents.begin() + std::ptrdiff_t(l), 1, std::multiplies<>());
  const Integer block = before * extents[l];
  for (Integer start = 0; start < Integer(x.size()); start += block) {
    for (Integer i = 0; i < before; ++i) {
      transform_line(single, direct, x.data() + start + i, extents[l], before);
    }
  }
  return x;
}

const std::vector<std::vector<Integer>> kShapes = {{1},       {7},       {12},         {1, 6},          {6, 1},
                                                   {4, 6, 5}, {3, 1, 7}, {1, 1, 1, 1}, {2, 3, 4, 5, 2}, {2, 61, 3},
                                                   {61, 2},   {1, 8, 1}};

Integer size_of(const std::vector<Integer>& extents) {
  return std::accumulate(extents.begin(), extents.end(), 1, std::multiplies<>());
}

}  // namespace

TEST_CASE("several sequences, interleaved and one after another, are as good as one at a time") {
  support::Digits scope(25);
  for (const Accuracy& accuracy : kAccuracies) {
    for (const Integer m : {1, 2, 5}) {
      for (const Integer n : {1, 2, 6, 7, 14, 20, 53, 61}) {
        for (const char* direct : {"F", "b"}) {
          CAPTURE(accuracy.name);
          CAPTURE(m);
          CAPTURE(n);
          CAPTURE(direct);
          const ComplexSequence x = random_complex(m * n, 1);
          ComplexSequence interleaved = x;
          ComplexSequence contiguous = x;
          for (Integer j = 0; j < m; ++j) {
            transform_line(accuracy.single, direct, interleaved.data() + j, n, m);
            transform_line(accuracy.single, direct, contiguous.data() + j * n, n, 1);
          }

          ComplexSequence y = x;
          ComplexSequence work = sample::junk(n + m * n);
          Integer ifail = -1;
          accuracy.interleaved(direct, &m, &n, y.data(), work.data(), &ifail, 1);
          CHECK(ifail == 0);
          CHECK(y == interleaved);

          char buffer[200];
          y = x;
          accuracy.interleaved_core(direct, m, n, y.data(), work.data(), buffer, &ifail, 1, 200);
          CHECK(y == interleaved);

          y = x;
          work = sample::junk(2 * n);
          accuracy.contiguous_core(direct, m, n, y.data(), work.data(), buffer, &ifail, 1, 200);
          CHECK(ifail == 0);
          CHECK(std::string(buffer) == "NONE");
          CHECK(y == contiguous);
        }
      }
    }
  }
}

TEST_CASE("several sequences without checks, and by a table that is already there") {
  support::Digits scope(25);
  struct Row {
    decltype(&QuarnMP_c06prqn_) q, z, x;
    decltype(&QuarnMP_c06prfn_) core;
  };
  const Row rows[] = {{QuarnMP_c06prqn_, QuarnMP_c06przn_, QuarnMP_c06prxn_, QuarnMP_c06prfn_},
                      {QuarnMPX_c06prqn_, QuarnMPX_c06przn_, QuarnMPX_c06prxn_, QuarnMPX_c06prfn_},
                      {QuarnMP_c06psqn_, QuarnMP_c06pszn_, QuarnMP_c06psxn_, QuarnMP_c06psfn_},
                      {QuarnMPX_c06psqn_, QuarnMPX_c06pszn_, QuarnMPX_c06psxn_, QuarnMPX_c06psfn_}};
  for (const Row& row : rows) {
    for (const Integer n : {1, 12, 14}) {
      const Integer m = 3;
      const ComplexSequence x = random_complex(m * n, 2);
      ComplexSequence expected = x;
      ComplexSequence work = sample::junk(n + m * n);
      char buffer[200];
      Integer ifail = -1;
      row.core("B", m, n, expected.data(), work.data(), buffer, &ifail, 1, 200);
      REQUIRE(ifail == 0);
      for (const auto entry : {row.q, row.z, row.x}) {
        if (entry != row.x) {
          work = sample::junk(n + m * n);
        }
        ComplexSequence y = x;
        Integer status = -1;
        entry("B", m, n, y.data(), work.data(), &status, 1);
        CHECK(status == 0);
        CHECK(y == expected);
      }
    }
    for (const auto& [m, n] : {std::pair<Integer, Integer>{0, 4}, {4, 0}, {-1, -1}, {-2147483647 - 1, 2}}) {
      for (const auto entry : {row.q, row.z, row.x}) {
        Integer status = 0;
        entry("F", m, n, nullptr, nullptr, &status, 1);
        CHECK(status == 2);
      }
    }
  }
  // The passes and the scaling alone always go forward.
  for (const bool full : {false, true}) {
    ComplexSequence x = random_complex(24, 3);
    ComplexSequence y = x;
    ComplexSequence work(32);
    Integer status = -1;
    (full ? QuarnMPX_c06przn_ : QuarnMP_c06przn_)("F", 3, 8, x.data(), work.data(), &status, 1);
    (full ? QuarnMPX_c06prwn_ : QuarnMP_c06prwn_)("B", 3, 8, y.data(), work.data(), &status, 1);
    CHECK(status == 0);
    CHECK(x == y);
  }
}

TEST_CASE("one dimension of an array, in exactly the workspace that it asks for") {
  support::Digits scope(25);
  for (const Accuracy& accuracy : kAccuracies) {
    for (const std::vector<Integer>& extents : kShapes) {
      for (std::size_t l = 0; l < extents.size(); ++l) {
        for (const char* direct : {"F", "B"}) {
          CAPTURE(accuracy.name);
          CAPTURE(extents.size());
          CAPTURE(l);
          const auto ndim = Integer(extents.size());
          const auto dimension = Integer(l + 1);
          const Integer n = size_of(extents);
          const Integer lwork = n + extents[l] + 15;
          const ComplexSequence x = random_complex(n, 4);
          ComplexSequence y = x;
          ComplexSequence work = sample::junk(lwork);
          Integer ifail = -1;
          accuracy.one_dimension(direct, &ndim, &dimension, extents.data(), &n, y.data(), work.data(), &lwork, &ifail,
                                 1);
          CHECK(ifail == 0);
          CHECK(y == by_lines(accuracy.single, direct, x, extents, l));
        }
      }
    }
  }
}

TEST_CASE("all dimensions of an array are its dimensions one after another") {
  support::Digits scope(25);
  for (const Accuracy& accuracy : kAccuracies) {
    for (const std::vector<Integer>& extents : kShapes) {
      CAPTURE(accuracy.name);
      CAPTURE(extents.size());
      const auto ndim = Integer(extents.size());
      const Integer n = size_of(extents);
      const Integer lwork = n + 3 * (*std::max_element(extents.begin(), extents.end()) + 5);
      const ComplexSequence x = random_complex(n, 5);
      ComplexSequence expected = x;
      for (std::size_t l = 0; l < extents.size(); ++l) {
        expected = by_lines(accuracy.single, "F", expected, extents, l);
      }
      ComplexSequence y = x;
      ComplexSequence work = sample::junk(lwork);
      Integer ifail = -1;
      accuracy.all_dimensions("f", &ndim, extents.data(), &n, y.data(), work.data(), &lwork, &ifail, 1);
      CHECK(ifail == 0);
      CHECK(y == expected);
      accuracy.all_dimensions("B", &ndim, extents.data(), &n, y.data(), work.data(), &lwork, &ifail, 1);
      CHECK(largest_difference(y, x) < QuarnFloat(1, -14));
    }
  }
}

TEST_CASE("a view of an array in the middle of a longer one; an extent of 1 touches nothing") {
  support::Digits scope(25);
  ComplexSequence x = random_complex(7 + 2 * 6 * 3 + 7, 6);
  const ComplexSequence former = x;
  ComplexSequence slice(x.begin() + 7, x.end() - 7);
  slice = by_lines(QuarnMP_c06pcf_, "F", slice, {2, 6, 3}, 1);
  ComplexSequence work = sample::junk(6 + 2 * 6);
  Integer status = -1;
  QuarnMP_c06pfzn_("F", x.data() + 7, 2, 6, 3, work.data(), &status, 1);
  CHECK(status == 0);
  for (std::size_t i = 0; i < x.size(); ++i) {
    const bool inside = i >= 7 && i < x.size() - 7;
    CHECK(x[i] == (inside ? slice[i - 7] : former[i]));
  }
  for (const auto entry : {QuarnMP_c06pfzn_, QuarnMPX_c06pfzn_}) {
    status = -1;
    entry("F", nullptr, 5, 1, 9, nullptr, &status, 1);
    CHECK(status == 0);
    for (const Integer none : {0, -3}) {
      entry("F", nullptr, none, 2, 2, nullptr, &status, 1);
      CHECK(status == 2);
      entry("F", nullptr, 2, none, 2, nullptr, &status, 1);
      CHECK(status == 2);
      entry("F", nullptr, 2, 2, none, nullptr, &status, 1);
      CHECK(status == 2);
    }
  }
}
