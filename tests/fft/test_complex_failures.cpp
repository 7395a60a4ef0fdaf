// What the complex transforms refuse, and in which words.
#include <doctest/doctest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <initializer_list>

#include "complex_sample.h"
#include "src/fft/complex_cores.h"
#include "support/outcome.h"

using sample::ComplexSequence;
using support::buffer_text;
using support::Outcome;
using support::outcome_of;
using support::wide;

namespace {

/// An integer as "%12ld" shows it.
std::string narrow(long long value) {
  char text[32];
  std::snprintf(text, sizeof text, "%12.0f", double(value));
  return text;
}

struct Expected {
  int ifail = 0;
  int label = 0;
  std::string message;
  std::vector<std::string> values;
};

void check(const char* routine, const Outcome& outcome, const Expected& expected) {
  CHECK(outcome.ifail == expected.ifail);
  CHECK(outcome.console == expected.message);
  CHECK(outcome.buffer ==
        (expected.ifail == 0 ? "NONE" : buffer_text(routine, expected.ifail, expected.label, expected.values)));
}

const char* const kDirects[] = {"F", "f", "B", "b", "X", " ", "FORWARD", "2", ""};

bool is_direct(const std::string& direct) { return std::string("FfBb").find((direct + " ")[0]) != std::string::npos; }

/// A one-character field holds at least one character.
std::string shown(const std::string& direct) { return direct.empty() ? " " : direct; }

constexpr Integer kLowest = -2147483647 - 1;

}  // namespace

TEST_CASE("one sequence: N, then DIRECT") {
  for (const auto core : {QuarnMP_c06pcfn_, QuarnMPX_c06pcfn_}) {
    for (const Integer n : std::initializer_list<Integer>{kLowest, -1, 0, 1, 2}) {
      for (const std::string direct : kDirects) {
        CAPTURE(n);
        CAPTURE(direct);
        ComplexSequence x(2, Complex(2.0, 3.0));
        ComplexSequence work(4);
        const Outcome outcome = outcome_of([&](char* buffer, Integer* ifail, int length) {
          core(direct.c_str(), x.data(), n, work.data(), buffer, ifail, int(direct.size()), length);
        });
        Expected expected;
        if (n < 1) {
          expected = {1, 99999, " ** On entry, N .lt. 1: N = " + wide(n) + ".", {wide(n)}};
        } else if (!is_direct(direct)) {
          expected = {2, 99998, " ** " + shown(direct) + " is an invalid value of DIRECT.", {shown(direct)}};
        }
        check("C06PCF", outcome, expected);
        CHECK((expected.ifail == 0 || x == ComplexSequence(2, Complex(2.0, 3.0))));
      }
    }
  }
}

TEST_CASE("several sequences: M, N, DIRECT") {
  struct Row {
    const char* routine;
    decltype(&QuarnMP_c06prfn_) core;
  };
  const Row rows[] = {{"C06PRF", QuarnMP_c06prfn_},
                      {"C06PRF", QuarnMPX_c06prfn_},
                      {"C06PSF", QuarnMP_c06psfn_},
                      {"C06PSF", QuarnMPX_c06psfn_}};
  for (const Row& row : rows) {
    for (const Integer m : std::initializer_list<Integer>{kLowest, 0, 1, 2}) {
      for (const Integer n : {-7, 0, 1, 2}) {
        for (const std::string direct : kDirects) {
          CAPTURE(m);
          CAPTURE(n);
          CAPTURE(direct);
          ComplexSequence x(4, Complex(2.0, 3.0));
          ComplexSequence work(6);
          const Outcome outcome = outcome_of([&](char* buffer, Integer* ifail, int length) {
            row.core(direct.c_str(), m, n, x.data(), work.data(), buffer, ifail, int(direct.size()), length);
          });
          Expected expected;
          if (m < 1) {
            expected = {1, 99999, " ** M .lt. 1: M = " + wide(m) + ".", {wide(m)}};
          } else if (n < 1) {
            expected = {2, 99998, " ** N .lt. 1: N = " + wide(n) + ".", {wide(n)}};
          } else if (!is_direct(direct)) {
            expected = {3, 99997, " ** " + shown(direct) + " is an invalid value of DIRECT.", {shown(direct)}};
          }
          check(row.routine, outcome, expected);
        }
      }
    }
  }
}

namespace {

/// All arguments of c06pff and c06pjf but the arrays.
struct Arguments {
  Integer query;
  std::string direct;
  Integer ndim;
  Integer l;
  Integer nd[2];
  Integer n;
  Integer lwork;

  Integer bad_extent() const { return nd[0] < 1 ? 1 : ndim > 1 && nd[1] < 1 ? 2 : 0; }
  long long product() const { return (long long)(nd[0]) * (ndim > 1 ? nd[1] : 1); }
};

Expected invalid_direct(int ifail, int label, const Arguments& a) {
  return {ifail, label, " ** " + shown(a.direct) + " is an invalid value of DIRECT.", {shown(a.direct)}};
}

Expected short_workspace(int ifail, int label, const Arguments& a, long long needed) {
  return {ifail,
          label,
          " ** LWORK, = " + wide(a.lwork) + ",  must be at least:" + wide(needed) + ".",
          {wide(a.lwork), wide(needed)}};
}

Expected expected_of_pff(const Arguments& a) {
  if (a.ndim < 1) {
    return {1, 99999, " ** On entry, NDIM .lt. 1: NDIM = " + wide(a.ndim) + ".", {wide(a.ndim)}};
  }
  if (a.l < 1 || a.l > a.ndim) {
    return {2, 99998, " ** On entry, L .lt. 1 or L .gt. NDIM: L = " + wide(a.l) + ".", {wide(a.l)}};
  }
  if (!is_direct(a.direct)) {
    return invalid_direct(3, 99997, a);
  }
  if (const Integer i = a.bad_extent(); i > 0) {
    const std::string extent = narrow(a.nd[i - 1]);
    return {4, 99996, " ** ND(I) .lt. 1: ND(I) = " + extent + " I = " + narrow(i) + ".", {extent, narrow(i)}};
  }
  if (a.query == 1) {
    return {};
  }
  if (a.n != a.product()) {
    const std::string product = narrow(a.product());
    return {5,
            99995,
            " ** N must = product of the ND(I): N = " + narrow(a.n) + " ND(I) = " + product + ".",
            {narrow(a.n), product}};
  }
  const long long needed = (long long)(a.n) + a.nd[a.l - 1] + 15;
  return a.lwork < needed ? short_workspace(6, 99994, a, needed) : Expected();
}

Expected expected_of_pjf(const Arguments& a) {
  if (a.ndim < 1) {
    return {1, 99999, " ** NDIM .lt. 1: NDIM = " + wide(a.ndim) + ".", {wide(a.ndim)}};
  }
  if (!is_direct(a.direct)) {
    return invalid_direct(2, 99998, a);
  }
  if (const Integer i = a.bad_extent(); i > 0) {
    return {3,
            99997,
            " ** ND(I) .lt. 1: ND(I) = " + wide(a.nd[i - 1]) + " I = " + wide(i) + ".",
            {wide(a.nd[i - 1]), wide(i)}};
  }
  if (a.n != a.product()) {
    const std::string product = narrow(a.product());
    return {4,
            99996,
            " ** N = the product of the ND(I): N = " + narrow(a.n) + " ND(I) =" + product + ".",
            {narrow(a.n), product}};
  }
  const long long needed = a.n + 3 * (std::max(a.nd[0], a.ndim > 1 ? a.nd[1] : 1) + 5LL);
  return a.query != 1 && a.lwork < needed ? short_workspace(5, 99995, a, needed) : Expected();
}

/// Every combination of small values, right and wrong ones. Where they ask for work there are 9 elements at most.
void for_all_arguments(const std::function<void(const Arguments&)>& body) {
  for (const Integer query : {0, 1}) {
    for (const char* direct : {"F", "b", "X", ""}) {
      for (const Integer ndim : std::initializer_list<Integer>{kLowest, 0, 1, 2}) {
        for (const Integer l : {-1, 0, 1, 2, 3}) {
          for (const Integer nd1 : {-2, 0, 1, 3}) {
            for (const Integer nd2 : {0, 1, 2}) {
              for (const Integer n : {-1, 1, 3, 6, 7}) {
                for (const Integer lwork : {-1, 18, 19, 21, 23, 24, 27, 30}) {
                  body({query, direct, ndim, l, {nd1, nd2}, n, lwork});
                }
              }
            }
          }
        }
      }
    }
  }
}

}  // namespace

TEST_CASE("one dimension: the whole space of small wrong values") {
  for_all_arguments([](const Arguments& a) {
    const Expected expected = expected_of_pff(a);
    ComplexSequence x(6, Complex(2.0, 3.0));
    ComplexSequence work(std::size_t(std::max<Integer>(a.lwork, 1)));
    const Outcome outcome = outcome_of([&](char* buffer, Integer* ifail, int length) {
      QuarnMP_c06pffn_(a.query, a.direct.c_str(), a.ndim, a.l, a.nd, a.n, x.data(), work.data(), a.lwork, buffer, ifail,
                       int(a.direct.size()), length);
    });
    if (outcome.ifail != expected.ifail || outcome.console != expected.message) {
      CAPTURE(a.ndim);
      CAPTURE(a.l);
      CAPTURE(a.nd[0]);
      CAPTURE(a.nd[1]);
      CAPTURE(a.n);
      CAPTURE(a.lwork);
      CAPTURE(a.query);
      CHECK(outcome.console == expected.message);
      REQUIRE(outcome.ifail == expected.ifail);
    }
    check("C06PFF", outcome, expected);
    if (expected.ifail == 0 && a.query == 1) {
      CHECK(work[0] == Complex(QuarnFloat(a.n + a.nd[a.l - 1] + 15)));
    }
    CHECK(((expected.ifail == 0 && a.query != 1) || x == ComplexSequence(6, Complex(2.0, 3.0))));
  });
}

TEST_CASE("all dimensions: the whole space of small wrong values") {
  for_all_arguments([](const Arguments& a) {
    if (a.l != 1) {
      return;
    }
    const Expected expected = expected_of_pjf(a);
    ComplexSequence x(6, Complex(2.0, 3.0));
    ComplexSequence work(std::size_t(std::max<Integer>(a.lwork, 1)));
    const Outcome outcome = outcome_of([&](char* buffer, Integer* ifail, int length) {
      QuarnMPX_c06pjfn_(a.query, a.direct.c_str(), a.ndim, a.nd, a.n, x.data(), work.data(), a.lwork, buffer, ifail,
                        int(a.direct.size()), length);
    });
    CAPTURE(a.n);
    CAPTURE(a.lwork);
    check("C06PJF", outcome, expected);
    if (expected.ifail == 0 && a.query == 1) {
      CHECK(work[0] == Complex(QuarnFloat(a.n + 3 * (std::max(a.nd[0], a.ndim > 1 ? a.nd[1] : 1) + 5))));
    }
  });
}

TEST_CASE("sizes beyond 32 bits are told, not wrapped round") {
  const Integer huge[] = {65536, 65536, 65536, 65536};
  Outcome outcome = outcome_of([&](char* buffer, Integer* ifail, int length) {
    QuarnMP_c06pffn_(0, "F", 2, 1, huge, 0, nullptr, nullptr, 99, buffer, ifail, 1, length);
  });
  check("C06PFF", outcome,
        {5,
         99995,
         " ** N must = product of the ND(I): N =            0 ND(I) =   4294967296.",
         {"           0", "  4294967296"}});
  outcome = outcome_of([&](char* buffer, Integer* ifail, int length) {
    QuarnMP_c06pjfn_(0, "F", 4, huge, 0, nullptr, nullptr, 99, buffer, ifail, 1, length);
  });
  check("C06PJF", outcome,
        {4,
         99996,
         " ** N = the product of the ND(I): N =            0 ND(I) =9223372036854775807.",
         {"           0", "9223372036854775807"}});
  const Integer most = 2147483647;
  outcome = outcome_of([&](char* buffer, Integer* ifail, int length) {
    QuarnMP_c06pffn_(0, "F", 1, 1, &most, most, nullptr, nullptr, most, buffer, ifail, 1, length);
  });
  check("C06PFF", outcome,
        {6,
         99994,
         " ** LWORK, =       2147483647,  must be at least:      4294967309.",
         {"      2147483647", "      4294967309"}});
}

TEST_CASE("too many factors: every routine has its own words, and no data are touched") {
  // With a limit of 3 factors 30 = 5 2 3 is refused, 6 is not.
  const tesk::Engine engine{tesk::Constants(tesk::Accuracy::full), 3};
  const Integer nd[] = {6, 30};
  const Integer n = 180;
  const ComplexSequence former(std::size_t(n), Complex(2.0, 3.0));
  ComplexSequence x = former;
  ComplexSequence work(std::size_t(n + 3 * 35));
  const auto outcome = [&](const auto& core) {
    return outcome_of([&](char* buffer, Integer* ifail, int /*length*/) {
      core(tesk::Call{engine, tesk::Option("F", 1), buffer, ifail});
    });
  };
  check("C06PCF", outcome([&](const tesk::Call& call) { tesk::single_transform(call, x.data(), 30, work.data()); }),
        {3, 99997, " ** N must have less than 31 prime factors: N =               30.", {"              30"}});
  for (const auto sequences : {tesk::Sequences::interleaved, tesk::Sequences::contiguous}) {
    check(sequences == tesk::Sequences::interleaved ? "C06PRF" : "C06PSF", outcome([&](const tesk::Call& call) {
            tesk::multiple_transform(call, sequences, 6, 30, x.data(), work.data());
          }),
          {4, 99996, " ** N must have less than 31 prime factors: N =               30.", {"              30"}});
  }
  const tesk::Dimensions dimensions{false, 2, nd, n, n + 3 * 35};
  check("C06PFF", outcome([&](const tesk::Call& call) {
          tesk::transform_one_dimension(call, dimensions, 2, x.data(), work.data());
        }),
        {7, 99993, " ** ND(L) must have < 31 prime factors: ND(L) =               30.", {"              30"}});
  check("C06PJF", outcome([&](const tesk::Call& call) {
          tesk::transform_all_dimensions(call, dimensions, x.data(), work.data());
        }),
        {6, 99994, " ** ND(I) must have < 31 prime factors: for I =            2", {"           2"}});
  CHECK(x == former);
  CHECK(engine.transform(false, x.data(), {1, 30, 1}, work.data()) == tesk::Status::too_many_factors);
  CHECK(engine.transform(false, x.data(), {1, 6, 1}, work.data()) == tesk::Status::ok);
}

TEST_CASE("the classic forms refuse as their cores do") {
  const Integer none = 0;
  const Integer one = 1;
  struct Row {
    const char* routine;
    const char* message;
    std::function<void(Integer*)> call;
  };
  const Row rows[] = {
      {"C06PCF", " ** On entry, N .lt. 1: N =                0.",
       [&](Integer* ifail) { QuarnMP_c06pcf_("F", nullptr, &none, nullptr, ifail, 1); }},
      {"C06PCF", " ** ? is an invalid value of DIRECT.",
       [&](Integer* ifail) { QuarnMPX_c06pcf_("?", nullptr, &one, nullptr, ifail, 1); }},
      {"C06PRF", " ** M .lt. 1: M =                0.",
       [&](Integer* ifail) { QuarnMP_c06prf_("F", &none, &none, nullptr, nullptr, ifail, 1); }},
      {"C06PRF", " ** N .lt. 1: N =                0.",
       [&](Integer* ifail) { QuarnMPX_c06prf_("F", &one, &none, nullptr, nullptr, ifail, 1); }},
      {"C06PFF", " ** On entry, NDIM .lt. 1: NDIM =                0.",
       [&](Integer* ifail) { QuarnMP_c06pff_("F", &none, &one, &one, &one, nullptr, nullptr, &one, ifail, 1); }},
      {"C06PFF", " ** LWORK, =                1,  must be at least:              17.",
       [&](Integer* ifail) { QuarnMPX_c06pff_("F", &one, &one, &one, &one, nullptr, nullptr, &one, ifail, 1); }},
      {"C06PJF", " ** NDIM .lt. 1: NDIM =                0.",
       [&](Integer* ifail) { QuarnMP_c06pjf_("F", &none, &one, &one, nullptr, nullptr, &one, ifail, 1); }},
      {"C06PJF", " ** LWORK, =                1,  must be at least:              19.",
       [&](Integer* ifail) { QuarnMPX_c06pjf_("F", &one, &one, &one, nullptr, nullptr, &one, ifail, 1); }},
  };
  for (const Row& row : rows) {
    support::ConsoleCapture console;
    Integer ifail = -1;
    row.call(&ifail);
    CHECK(ifail > 0);
    CHECK(console.text() == std::string(row.message) + " ** ABNORMAL EXIT from Tesk Library routine " + row.routine +
                                ": IFAIL =     " + std::to_string(ifail) + " ** Tesk soft failure - control returned");
  }
}
