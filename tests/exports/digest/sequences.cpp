#include "tests/exports/digest/digest.h"

namespace digest {

namespace {

/// Every combination of the texts, on two interleaved sequences.
template <class T, class U, class... E>
void spectra(Suite& suite, Integer (*given)(Integer), Integer (*made)(Integer), E... entries) {
  suite.cases(1.3, [&](Case& c) {
    const Integer n = c.size;
    const auto x = c.numbers<T>(2 * std::int64_t(given(n)));
    for (const char* norm : {"B", "o", "F"}) {
      (suite.run_form<1>(entries, norm, n, 2, x, 2, 1, std::vector<U>(2 * std::size_t(made(n))), 1, made(n)), ...);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto x = c.numbers<T>(8);
    const std::vector<U> y(8);
    (suite.run_form<1>(entries, "X", 4, 1, x, 1, 4, y, 1, 4), ...);
    (suite.run_form<1>(entries, "B", 0, 1, x, 1, 4, y, 1, 4), ...);
    (suite.run_form<1>(entries, "B", 4, 0, x, 1, 4, y, 1, 4), ...);
    (suite.run_form<1>(entries, "B", 4, 1, x, 0, 4, y, 1, 4), ...);
  });
}

template <class... E>
void cosines_and_sines(Suite& suite, E... entries) {
  suite.cases(1.3, [&](Case& c) {
    const Integer n = c.size;
    const auto x = c.numbers<QuarnFloat>(n);
    for (const Integer type : {1, 2, 3, 4}) {
      for (const char* direct : {"F", "B"}) {
        (suite.run_form<2>(entries, direct, "O", type, n, 1, x, 1, n, x, 1, n), ...);
      }
    }
  });
  suite.few_cases([&](Case& c) {
    const auto x = c.numbers<QuarnFloat>(4);
    (suite.run_form<2>(entries, "F", "B", 5, 4, 1, x, 1, 4, x, 1, 4), ...);
    (suite.run_form<2>(entries, "F", "B", 1, 0, 1, x, 1, 4, x, 1, 4), ...);
  });
}

template <class E, class R, class I>
void arrays(Suite& suite, E complex, R to_spectrum, I from_spectrum) {
  suite.cases(2.5, [&](Case& c) {
    const Integer n = c.size < 1 ? 1 : c.size;
    const std::vector<Integer> nd = {n, 3};
    const std::vector<Integer> axes = {2, 1};
    const auto z = c.numbers<Complex>(3 * std::int64_t(n));
    const auto x = c.numbers<QuarnFloat>(3 * std::int64_t(n));
    suite.run_form<2>(complex, "B", "F", 2, nd, 2, axes, z, z);
    suite.run_form<1>(to_spectrum, "B", 2, nd, 2, axes, x, z);
    suite.run_form<1>(from_spectrum, "B", 2, nd, 2, axes, z, x);
  });
  suite.few_cases([&](Case& c) {
    const auto z = c.numbers<Complex>(6);
    const auto x = c.numbers<QuarnFloat>(6);
    const std::vector<Integer> nd = {2, 3};
    const std::vector<Integer> axes = {1, 1};
    suite.run_form<2>(complex, "B", "F", 2, nd, 2, axes, z, z);
    suite.run_form<1>(to_spectrum, "B", 0, nd, 2, axes, x, z);
    suite.run_form<1>(from_spectrum, "B", 2, nd, 0, axes, z, x);
  });
}

template <class T, class E>
void convolutions(Suite& suite, E entry) {
  suite.cases(2, [&](Case& c) {
    const Integer n = c.size < 1 ? 1 : c.size;
    const auto a = c.numbers<T>(n);
    const auto b = c.numbers<T>(n);
    const std::vector<T> z(2 * std::size_t(n) - 1);
    suite.run_form<1>(entry, "L", 1, n, a, n, b, z);
    suite.run_form<1>(entry, "C", 1, n, a, n, b, z);
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<T>(2);
    suite.run_form<1>(entry, "C", 1, 2, a, 1, a, std::vector<T>(2));
  });
}

Integer all_of(Integer n) { return n < 1 ? 1 : n; }
Integer half_of(Integer n) { return all_of(n) / 2 + 1; }

}  // namespace

void sequences(Suite& suite) {
  spectra<QuarnFloat, Complex>(suite, all_of, half_of, ENTRY(QuarnMPX_rfft_));
  spectra<Complex, QuarnFloat>(suite, half_of, all_of, ENTRY(QuarnMPX_irfft_));
  const auto complex = ENTRY(QuarnMPX_fft_);
  suite.cases(1.3, [&](Case& c) {
    const auto x = c.numbers<Complex>(c.size);
    suite.run_form<2>(complex, "B", "B", c.size, 1, x, 1, 0, x, 1, 0);
  });
  cosines_and_sines(suite, ENTRY(QuarnMPX_dct_), ENTRY(QuarnMPX_dst_));
  arrays(suite, ENTRY(QuarnMPX_fftn_), ENTRY(QuarnMPX_rfftn_), ENTRY(QuarnMPX_irfftn_));
  convolutions<QuarnFloat>(suite, ENTRY(QuarnMPX_convolve_));
  convolutions<Complex>(suite, ENTRY(QuarnMPX_zconvolve_));
  const auto window = ENTRY(QuarnMPX_window_);
  suite.cases(1.3, [&](Case& c) {
    for (const char* kind : {"H", "M", "B", "K", "R"}) {
      suite.run_form<1>(window, kind, c.size, 0, QuarnFloat(5), std::vector<QuarnFloat>(std::size_t(all_of(c.size))));
    }
  });
  const auto power = ENTRY(QuarnMPX_power_spectrum_);
  suite.cases(1.3, [&](Case& c) {
    suite.run_form<0>(power, c.size, 1, c.numbers<QuarnFloat>(c.size), 1, 0,
                      std::vector<QuarnFloat>(std::size_t(half_of(c.size))), 1, 0);
  });
  const auto fast = ENTRY(QuarnMPX_next_fast_len_);
  for (const Integer n : {-1, 7, 1025, 2147483647}) {
    suite.run(fast, n);
  }
}

}  // namespace digest
