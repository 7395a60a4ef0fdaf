#include "tests/exports/digest/digest.h"

namespace digest {

namespace {

template <class... E>
void constants(Suite& suite, E... entries) {
  suite.cases(8, [&](Case&) { (suite.run(entries), ...); });
}

void failures(Suite& suite) {
  const auto end = ENTRY(QuarnMP_p01abfn_);
  const auto end_naming = ENTRY(QuarnMP_p01acfn_);
  const std::string records = std::string(" first record") + std::string(67, '\0') + " second";
  for (const Integer ifail : {1, -1, -13, -2, 11, 91, 101}) {
    for (const Integer ierror : {0, 3, -7, 1234567}) {
      for (const Integer nrec : {0, 1, 2}) {
        suite.run(end, ifail, ierror, "C06FAF", nrec, records.c_str(), 6, 80);
        for (const char* name : {"LDA", "  ", "", " A B "}) {
          suite.run(end_naming, ifail, ierror, "F06PAF", name, nrec, records.c_str(), 6, int(std::string(name).size()),
                    80);
        }
      }
    }
  }
  for (const Integer ifail : {0, 10, 12}) {
    suite.run_ending(end, ifail, Integer(3), "C06FAF", Integer(2), records.c_str(), 6, 80);
    suite.run_ending(end_naming, ifail, Integer(3), "F06PAF", "LDA", Integer(2), records.c_str(), 6, 3, 80);
  }
}

void units(Suite& suite) {
  const auto unit = ENTRY(QuarnMP_x04aaf_);
  for (const Integer iflag : {0, 1, 0, 2, -1}) {
    suite.run(unit, iflag, Integer(8));
  }
  suite.run(unit, Integer(1), Integer(6));
  suite.run(ENTRY(QuarnMP_a00aafn_));
  // Setting the handler of failures twice gives back what was set; the other entries' failures go through it.
  auto handler = ENTRY(QuarnMPX_failure_handler);
  const QuarnFailureHandler one = {nullptr, nullptr};
  handler.result->values.add(handler.function(&one) == nullptr);
  handler.result->values.add(handler.function(nullptr) == &one);
  handler.result->calls += 2;
}

void complex_arithmetic(Suite& suite) {
  const auto root = ENTRY(QuarnMP_a02aaf_);
  const auto root_n = ENTRY(QuarnMP_a02aafn_);
  const auto root_x = ENTRY(QuarnMPX_a02aaf_);
  const auto root_xn = ENTRY(QuarnMPX_a02aafn_);
  const auto modulus = ENTRY(QuarnMP_a02abfn_);
  const auto quotient = ENTRY(QuarnMP_a02acfn_);
  suite.cases(1.5, [&](Case& c) {
    const auto x = c.number<Complex>();
    const auto y = c.number<Complex>();
    const QuarnFloat none;
    suite.run(root, x.re, x.im, none, none);
    suite.run(root_n, x.re, x.im, none, none);
    suite.run(root_x, x.re, x.im, none, none);
    suite.run(root_xn, x.re, x.im, none, none);
    suite.run(modulus, x.re, x.im);
    suite.run(quotient, x.re, x.im, y.re, y.im, none, none);
  });
}

void ranking(Suite& suite) {
  const auto rank = ENTRY(QuarnMP_m01daf_);
  const auto rank_x = ENTRY(QuarnMPX_m01daf_);
  const auto rearrange = ENTRY(QuarnMP_m01eaf_);
  const auto rearrange_complex = ENTRY(QuarnMP_m01edf_);
  const auto invert = ENTRY(QuarnMP_m01zaf_);
  const auto all = [&](Case& c, Integer m1, Integer m2, const char* order, bool spoil) {
    const Integer n = m2 > 1 ? m2 : 1;
    const auto values = c.numbers<QuarnFloat>(n);
    const auto complex = c.numbers<Complex>(n);
    std::vector<Integer> ranks(static_cast<std::size_t>(n), -5);
    for (Integer i = m1; i <= m2 && i >= 1; ++i) {
      ranks[std::size_t(i - 1)] = i;
    }
    for (Integer i = m2; i > m1 && m1 >= 1; --i) {
      std::swap(ranks[std::size_t(i - 1)], ranks[std::size_t(m1 - 1 + c.below(i - m1 + 1))]);
    }
    if (spoil && m1 >= 1 && m2 >= m1) {
      ranks[std::size_t(m1 - 1)] = c.below(m2 + 2);
    }
    suite.run_form<1>(rank, values, m1, m2, order, ranks);
    suite.run_form<1>(rank_x, values, m1, m2, order, ranks);
    suite.run_form<0>(rearrange, values, m1, m2, ranks);
    suite.run_form<0>(rearrange_complex, complex, m1, m2, ranks);
    suite.run_form<0>(invert, ranks, m1, m2);
  };
  suite.cases(1.2, [&](Case& c) {
    all(c, 1 + c.below(3), c.size, "A", false);
    all(c, 1, c.size, "d", c.below(2) == 0);
  });
  suite.few_cases([&](Case& c) {
    all(c, 1, 0, "A", false);
    all(c, 0, 4, "A", false);
    all(c, 5, 4, "A", false);
    all(c, 1, 4, "X", true);
  });
}

void random_numbers(Suite& suite) {
  const auto start = ENTRY(QuarnMP_g05kbx_);
  suite.run(start, Integer(-9), std::vector<Integer>(4));
  const auto all = [&](auto... entries) {
    suite.cases(3, [&](Case& c) {
      for (const Integer igen : {0, 1, 2, 100, 273, -1, 274}) {
        std::vector<Integer> seed(4);
        for (Integer& each : seed) {
          each = igen == 0 ? c.below(32768) : 1 + c.below(16760000);
        }
        seed[0] |= 1;
        (suite.run(entries, igen, seed), ...);
      }
    });
  };
  all(ENTRY(QuarnMP_g05kaf_), ENTRY(QuarnMP_g05kafn_), ENTRY(QuarnMP_g05kazn_), ENTRY(QuarnMPX_g05kaf_),
      ENTRY(QuarnMPX_g05kafn_), ENTRY(QuarnMPX_g05kazn_));
}

}  // namespace

void frame(Suite& suite) {
  constants(suite, ENTRY(QuarnMP_x01aaf_), ENTRY(QuarnMPX_x01aaf_), ENTRY(QuarnMP_x02ajf_), ENTRY(QuarnMP_x02akf_),
            ENTRY(QuarnMP_x02alf_), ENTRY(QuarnMP_x02amf_), ENTRY(QuarnMP_x02bhf_));
  failures(suite);
  units(suite);
  complex_arithmetic(suite);
}

void ranking_and_random(Suite& suite) {
  ranking(suite);
  random_numbers(suite);
}

}  // namespace digest
