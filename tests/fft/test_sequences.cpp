// Transforms of many sequences, arrays, convolutions and windows. The transforms themselves are compared with their
// definition in tests/fixed.
#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "quarn/exact.h"
#include "quarn/parallel.h"
#include "support/digits.h"
#include "tesk2mp/transforms.h"

namespace {

using Reals = std::vector<QuarnFloat>;
using Numbers = std::vector<Complex>;

constexpr unsigned kSeed = 20261122;

Reals random_reals(std::size_t count, int digits = 20, unsigned seed = kSeed) {
  std::mt19937_64 random(seed);
  Reals x;
  for (std::size_t i = 0; i < count; ++i) {
    std::string text = random() % 2 == 0 ? "-0." : "0.";
    for (int digit = 0; digit < digits; ++digit) {
      text += char('0' + random() % 10);
    }
    x.emplace_back(text.c_str());
  }
  return x;
}

Numbers random_numbers(std::size_t count, int digits = 20) {
  const Reals parts = random_reals(2 * count, digits);
  Numbers x;
  for (std::size_t i = 0; i < count; ++i) {
    x.emplace_back(parts[2 * i], parts[2 * i + 1]);
  }
  return x;
}

QuarnFloat size_of(const QuarnFloat& x) { return fabs(x); }
QuarnFloat size_of(const Complex& x) { return fabs(x.re) + fabs(x.im); }

template <class T>
QuarnFloat distance(const std::vector<T>& x, const std::vector<T>& y) {
  QuarnFloat largest = x.size() == y.size() ? 0 : 1000;
  for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i) {
    const QuarnFloat size = size_of(T(x[i] - y[i]));
    largest = size > largest ? size : largest;
  }
  return largest;
}

/// One of the transforms of sequences, as call(n, m, x, incx, distx, y, incy, disty).
template <class T, class U>
struct Transform {
  std::function<Integer(Integer n, Integer m, const T* x, Integer incx, Integer distx, U* y, Integer incy,
                        Integer disty)>
      call;
  std::function<Integer(Integer n)> given = [](Integer n) { return n; };
  std::function<Integer(Integer n)> made = [](Integer n) { return n; };
};

Integer half(Integer n) { return n / 2 + 1; }

Transform<QuarnFloat, QuarnFloat> cosine_or_sine(decltype(&QuarnMPX_dct_) entry, const char* direct, const char* norm,
                                                 Integer type) {
  return {[=](Integer n, Integer m, const QuarnFloat* x, Integer incx, Integer distx, QuarnFloat* y, Integer incy,
              Integer disty) {
    Integer ifail = 1;
    entry(direct, norm, type, n, m, x, incx, distx, y, incy, disty, &ifail, 1, 1);
    return ifail;
  }};
}

Transform<Complex, Complex> complex_transform(const char* direct, const char* norm) {
  return {[=](Integer n, Integer m, const Complex* x, Integer incx, Integer distx, Complex* y, Integer incy,
              Integer disty) {
    Integer ifail = 1;
    QuarnMPX_fft_(direct, norm, n, m, x, incx, distx, y, incy, disty, &ifail, 1, 1);
    return ifail;
  }};
}

Transform<QuarnFloat, Complex> real_transform(const char* norm) {
  return {[=](Integer n, Integer m, const QuarnFloat* x, Integer incx, Integer distx, Complex* y, Integer incy,
              Integer disty) {
            Integer ifail = 1;
            QuarnMPX_rfft_(norm, n, m, x, incx, distx, y, incy, disty, &ifail, 1);
            return ifail;
          },
          [](Integer n) { return n; }, half};
}

Transform<Complex, QuarnFloat> inverse_transform(const char* norm) {
  return {[=](Integer n, Integer m, const Complex* x, Integer incx, Integer distx, QuarnFloat* y, Integer incy,
              Integer disty) {
            Integer ifail = 1;
            QuarnMPX_irfft_(norm, n, m, x, incx, distx, y, incy, disty, &ifail, 1);
            return ifail;
          },
          half};
}

template <class T, class U>
std::vector<U> single(const Transform<T, U>& transform, Integer n, const T* x) {
  std::vector<U> y(std::size_t(transform.made(n)));
  REQUIRE(transform.call(n, 1, x, 1, 0, y.data(), 1, 0) == 0);
  return y;
}

/// Three sequences in each layout give what each gives alone.
template <class T, class U>
void check_layouts(const Transform<T, U>& transform, const std::vector<T>& numbers) {
  for (const Integer n : {5, 12}) {
    const Integer m = 3;
    const Integer given = transform.given(n);
    const Integer made = transform.made(n);
    struct Layout {
      Integer incx, distx, incy, disty;
    };
    for (const Layout& layout : {Layout{1, given, 1, made}, {m, 1, m, 1}, {2, 2 * given + 1, m, 1}, {m, 1, -1, made}}) {
      std::vector<T> x(200, numbers[0]);
      std::vector<U> y(200, U(7));
      U* const first = y.data() + (layout.incy < 0 ? made : 0);
      for (Integer j = 0; j < m; ++j) {
        for (Integer i = 0; i < given; ++i) {
          x[std::size_t(i * layout.incx + j * layout.distx)] = numbers[std::size_t(j * given + i)];
        }
      }
      REQUIRE(transform.call(n, m, x.data(), layout.incx, layout.distx, first, layout.incy, layout.disty) == 0);
      int touched = 0;
      for (Integer j = 0; j < m; ++j) {
        const std::vector<U> expected = single(transform, n, &numbers[std::size_t(j * given)]);
        for (Integer k = 0; k < made; ++k) {
          CHECK(first[k * layout.incy + j * layout.disty] == expected[std::size_t(k)]);
        }
      }
      touched = int(std::count_if(y.begin(), y.end(), [](const U& value) { return !(value == U(7)); }));
      CHECK(touched == m * made);
    }
  }
}

}  // namespace

TEST_CASE("several sequences in every layout") {
  check_layouts(complex_transform("F", "B"), random_numbers(40));
  check_layouts(complex_transform("b", "b"), random_numbers(40));
  check_layouts(real_transform("O"), random_reals(40));
  check_layouts(inverse_transform("f"), random_numbers(40));
  for (const auto entry : {QuarnMPX_dct_, QuarnMPX_dst_}) {
    for (const Integer type : {1, 2, 3, 4}) {
      check_layouts(cosine_or_sine(entry, "F", "O", type), random_reals(40));
    }
  }
}

TEST_CASE("results are the same with several threads") {
  const Integer n = 64;
  const Integer m = 200;
  const Reals x = random_reals(std::size_t(n * m));
  const Numbers z = random_numbers(std::size_t(n * m));
  Numbers spectra[2];
  Numbers transforms[2];
  for (const int threads : {1, 2}) {
    const int former = QuarnSetThreads(threads);
    spectra[threads - 1].resize(std::size_t(half(n) * m));
    transforms[threads - 1] = z;
    CHECK(real_transform("B").call(n, m, x.data(), m, 1, spectra[threads - 1].data(), 1, half(n)) == 0);
    Complex* const data = transforms[threads - 1].data();
    CHECK(complex_transform("B", "O").call(n, m, data, 1, n, data, 1, n) == 0);
    QuarnSetThreads(former);
  }
  CHECK(spectra[0] == spectra[1]);
  CHECK(transforms[0] == transforms[1]);
}

TEST_CASE("each transform has its inverse with the same scaling, and results may take the place of the data") {
  for (const int digits : {1, 30, 1099, 1150}) {
    const support::Digits scope(digits);
    const QuarnFloat small(400, -digits);
    for (const char* norm : {"B", "O", "F"}) {
      for (const Integer n : {6, 7}) {
        CAPTURE(digits);
        CAPTURE(norm);
        CAPTURE(n);
        for (const auto entry : {QuarnMPX_dct_, QuarnMPX_dst_}) {
          for (const Integer type : {1, 2, 3, 4}) {
            const Reals x = random_reals(std::size_t(n), digits);
            Reals y = x;
            CHECK(cosine_or_sine(entry, "F", norm, type).call(n, 1, y.data(), 1, 0, y.data(), 1, 0) == 0);
            CHECK(distance(x, y) > QuarnFloat(5, -2));
            CHECK(cosine_or_sine(entry, "B", norm, type).call(n, 1, y.data(), 1, 0, y.data(), 1, 0) == 0);
            CHECK(distance(x, y) < small);
          }
        }
        const Numbers z = random_numbers(std::size_t(n), digits);
        CHECK(distance(z, single(complex_transform("B", norm), n,
                                 single(complex_transform("F", norm), n, z.data()).data())) < small);
        const Reals x = random_reals(std::size_t(n), digits);
        CHECK(distance(x, single(inverse_transform(norm), n, single(real_transform(norm), n, x.data()).data())) <
              small);
      }
    }
  }
}

TEST_CASE("beyond the digits of block fixed point the same results") {
  const Reals x = random_reals(9);
  const Numbers z = random_numbers(9);
  const auto both = [](const auto& transform, Integer n, const auto* data) {
    QuarnSetDigits(1090);
    const auto fixed = single(transform, n, data);
    QuarnSetDigits(1120);
    CHECK(distance(fixed, single(transform, n, data)) < QuarnFloat(1, -1080));
  };
  const support::Digits scope(20);
  for (const char* norm : {"B", "O", "F"}) {
    for (const Integer n : {2, 8, 9}) {
      CAPTURE(norm);
      CAPTURE(n);
      both(complex_transform("B", norm), n, z.data());
      both(real_transform(norm), n, x.data());
      both(inverse_transform(norm), n, z.data());
      for (const Integer type : {1, 2, 3, 4}) {
        CAPTURE(type);
        both(cosine_or_sine(QuarnMPX_dct_, "F", norm, type), n, x.data());
        both(cosine_or_sine(QuarnMPX_dst_, "F", norm, type), n, x.data());
      }
    }
  }
  // One NaN or infinity: NaN everywhere.
  QuarnSetDigits(1120);
  Reals special = x;
  special[4] = QuarnFloat("inf");
  for (const Complex& value : single(real_transform("B"), 9, special.data())) {
    CHECK(isnan(value.re));
    CHECK(isnan(value.im));
  }
  for (const QuarnFloat& value : single(cosine_or_sine(QuarnMPX_dst_, "F", "B", 2), 9, special.data())) {
    CHECK(isnan(value));
  }
}

TEST_CASE("arrays: one dimension after another") {
  for (const int digits : {20, 1110}) {
    const support::Digits scope(digits);
    const QuarnFloat small(100, -digits);
    const std::vector<Integer> nd = {4, 3, 5};
    const Integer axes[] = {3, 1};
    const Numbers z = random_numbers(60, digits);
    Numbers all(60);
    Integer ifail = 1;
    QuarnMPX_fftn_("F", "O", 3, nd.data(), 2, axes, z.data(), all.data(), &ifail, 1, 1);
    REQUIRE(ifail == 0);
    // Sequences along the first and the third index.
    Numbers steps = z;
    CHECK(complex_transform("F", "O").call(4, 15, steps.data(), 1, 4, steps.data(), 1, 4) == 0);
    CHECK(complex_transform("F", "O").call(5, 12, steps.data(), 12, 1, steps.data(), 12, 1) == 0);
    CHECK(distance(all, steps) < small);
    QuarnMPX_fftn_("B", "O", 3, nd.data(), 2, axes, all.data(), all.data(), &ifail, 1, 1);
    CHECK(distance(all, z) < small);

    const Reals x = random_reals(60, digits);
    Numbers whole;
    for (const QuarnFloat& value : x) {
      whole.emplace_back(value, QuarnFloat());
    }
    QuarnMPX_fftn_("F", "B", 3, nd.data(), 2, axes, whole.data(), whole.data(), &ifail, 1, 1);
    Numbers halved(45);
    QuarnMPX_rfftn_("B", 3, nd.data(), 2, axes, x.data(), halved.data(), &ifail, 1);
    REQUIRE(ifail == 0);
    for (std::size_t i = 0; i < halved.size(); ++i) {
      CHECK(size_of(halved[i] - whole[i / 3 * 4 + i % 3]) < small);
    }
    Reals back(60);
    QuarnMPX_irfftn_("B", 3, nd.data(), 2, axes, halved.data(), back.data(), &ifail, 1);
    CHECK(distance(back, x) < small);
  }
}

TEST_CASE("convolutions: exact sums, several at once, complex ones by their parts") {
  const support::Digits scope(25);
  for (const Integer n : {3, 60}) {
    const Reals a = random_reals(std::size_t(2 * n), 25);
    const Reals b = random_reals(std::size_t(2 * n), 25, kSeed + 1);
    Reals z(std::size_t(2 * (2 * n - 1)));
    Integer ifail = 1;
    QuarnMPX_convolve_("L", 2, n, a.data(), n, b.data(), z.data(), &ifail, 1);
    REQUIRE(ifail == 0);
    const Numbers c = random_numbers(std::size_t(n), 25);
    const Numbers d(c.rbegin(), c.rend());
    Numbers linear(std::size_t(2 * n - 1));
    Numbers circular(static_cast<std::size_t>(n));
    QuarnMPX_zconvolve_("l", 1, n, c.data(), n, d.data(), linear.data(), &ifail, 1);
    QuarnMPX_zconvolve_("C", 1, n, c.data(), n, d.data(), circular.data(), &ifail, 1);
    for (Integer k = 0; k < 2 * n - 1; ++k) {
      const Integer first = std::max<Integer>(0, k - n + 1);
      const Integer count = std::min<Integer>(k, n - 1) - first + 1;
      CHECK(z[std::size_t(2 * n - 1 + k)] ==
            QuarnDot(std::size_t(count), &a[std::size_t(n + first)], 1, &b[std::size_t(n + k - first)], -1));
      // re re - im im as one exact sum.
      Reals left;
      Reals right;
      for (Integer i = 0; i < n; ++i) {
        const Integer j = k - i;
        if (j >= 0 && j < n) {
          left.insert(left.end(), {c[std::size_t(i)].re, -c[std::size_t(i)].im});
          right.insert(right.end(), {d[std::size_t(j)].re, d[std::size_t(j)].im});
        }
      }
      CHECK(linear[std::size_t(k)].re == QuarnDot(left.size(), left.data(), 1, right.data(), 1));
    }
    for (Integer k = 0; k + 1 < n; ++k) {
      CHECK(size_of(circular[std::size_t(k)] - linear[std::size_t(k)] - linear[std::size_t(k + n)]) <
            QuarnFloat(1, -22));
    }
    CHECK(circular[std::size_t(n - 1)] == linear[std::size_t(n - 1)]);
  }
}

TEST_CASE("windows and power spectra") {
  const support::Digits scope(30);
  const auto window = [](const char* kind, Integer n, Integer periodic, const QuarnFloat& beta = 0) {
    Reals w(static_cast<std::size_t>(n));
    Integer ifail = 1;
    QuarnMPX_window_(kind, n, periodic, beta, w.data(), &ifail, 1);
    CHECK(ifail == 0);
    return w;
  };
  const QuarnFloat eighth = 1 / QuarnFloat(8);
  const QuarnFloat root = sqrt(QuarnFloat(2)) / 4;
  CHECK(distance(window("H", 5, 0), Reals{0, eighth * 4, 1, eighth * 4, 0}) < QuarnFloat(1, -30));
  CHECK(distance(window("h", 8, 1), Reals{0, eighth * 4 - root, eighth * 4, eighth * 4 + root, 1, eighth * 4 + root,
                                          eighth * 4, eighth * 4 - root}) < QuarnFloat(1, -29));
  CHECK(window("M", 3, 0) == Reals{QuarnFloat(8, -2), 1, QuarnFloat(8, -2)});
  CHECK(window("B", 5, 0) == Reals{0, QuarnFloat(34, -2), 1, QuarnFloat(34, -2), 0});
  CHECK(window("K", 3, 0)[0] == QuarnFloat(1));
  // 1/I0(1), 1/I0(40)
  CHECK(fabs(window("K", 3, 0, 1)[0] - QuarnFloat("0.789848314825111966423599634589")) < QuarnFloat(1, -30));
  CHECK(fabs(window("K", 3, 0, 40)[2] / QuarnFloat("6.713763812271753029113777e-17") - 1) < QuarnFloat(1, -19));
  for (const char* kind : {"H", "M", "B", "K", "R"}) {
    CHECK(window(kind, 1, 0, 3) == Reals{1});
    const Reals w = window(kind, 9, 0, 5);
    CHECK(w == Reals(w.rbegin(), w.rend()));
    const Reals longer = window(kind, 10, 0, 5);
    CHECK(window(kind, 9, 1, 5) == Reals(longer.begin(), longer.end() - 1));
  }
  for (const Integer n : {1, 8, 9}) {
    const Reals x = random_reals(std::size_t(2 * n), 30);
    Reals p(std::size_t(2 * half(n)));
    Integer ifail = 1;
    QuarnMPX_power_spectrum_(n, 2, x.data(), 2, 1, p.data(), 1, half(n), &ifail);
    REQUIRE(ifail == 0);
    QuarnFloat sum = 0;
    QuarnFloat squares = 0;
    for (Integer k = 0; k < half(n); ++k) {
      sum += p[std::size_t(half(n) + k)];
    }
    for (Integer i = 0; i < n; ++i) {
      squares += x[std::size_t(2 * i + 1)] * x[std::size_t(2 * i + 1)];
    }
    CHECK(fabs(sum * n - squares) < QuarnFloat(n, -28));
  }
  CHECK(QuarnMPX_next_fast_len_(1025) == 1080);
}

TEST_CASE("wrong arguments of the transforms of sequences: failure numbers, and results as they were") {
  const Reals x = random_reals(16);
  const Numbers z = random_numbers(16);
  Reals y(16, QuarnFloat(7));
  Numbers w(16, Complex(7));
  const auto dct = [&](const char* direct, const char* norm, Integer type, Integer n, Integer m, Integer incx,
                       Integer incy) {
    Integer ifail = 1;
    QuarnMPX_dct_(direct, norm, type, n, m, x.data(), incx, 0, y.data(), incy, 0, &ifail, 1, 1);
    return ifail;
  };
  CHECK(dct("X", "X", 5, 0, 0, 0, 0) == 1);
  CHECK(dct("F", "X", 5, 0, 0, 0, 0) == 2);
  CHECK(dct("F", "B", 5, 0, 0, 0, 0) == 6);
  CHECK(dct("F", "B", 0, 4, 1, 1, 1) == 6);
  CHECK(dct("F", "B", 1, 1, 0, 0, 0) == 3);
  CHECK(dct("F", "B", 2, 0, 0, 0, 0) == 3);
  CHECK(dct("F", "B", 2, 67108865, 0, 0, 0) == 3);
  CHECK(dct("F", "B", 2, 4, 0, 0, 0) == 4);
  CHECK(dct("F", "B", 2, 4, 1, 0, 1) == 5);
  CHECK(dct("F", "B", 2, 4, 1, 1, 0) == 5);
  CHECK(complex_transform("F", "Z").call(4, 1, z.data(), 1, 0, w.data(), 1, 0) == 2);
  CHECK(real_transform("B").call(0, 1, x.data(), 1, 0, w.data(), 1, 0) == 3);
  CHECK(inverse_transform("B").call(4, -1, z.data(), 1, 0, y.data(), 1, 0) == 4);
  const auto fftn = [&](Integer ndim, std::vector<Integer> nd, Integer naxes, std::vector<Integer> axes) {
    Integer ifail = 1;
    QuarnMPX_fftn_("F", "B", ndim, nd.data(), naxes, axes.data(), z.data(), w.data(), &ifail, 1, 1);
    Integer other = 1;
    QuarnMPX_rfftn_("B", ndim, nd.data(), naxes, axes.data(), x.data(), w.data(), &other, 1);
    CHECK(other == ifail);
    other = 1;
    QuarnMPX_irfftn_("B", ndim, nd.data(), naxes, axes.data(), z.data(), y.data(), &other, 1);
    CHECK(other == ifail);
    return ifail;
  };
  CHECK(fftn(0, {2}, 1, {1}) == 7);
  CHECK(fftn(2, {2, 0}, 1, {1}) == 8);
  CHECK(fftn(3, {65536, 65536, 65536}, 1, {1}) == 10);
  CHECK(fftn(2, {2, 2}, 1, {3}) == 9);
  CHECK(fftn(2, {2, 2}, 1, {0}) == 9);
  CHECK(fftn(2, {2, 2}, 2, {1, 1}) == 9);
  Integer ifail = 1;
  const Integer extent = 4;
  QuarnMPX_rfftn_("B", 1, &extent, 0, &extent, x.data(), w.data(), &ifail, 1);
  CHECK(ifail == 9);
  const auto convolve = [&](const char* kind, Integer m, Integer na, Integer nb) {
    Integer outcome = 1;
    QuarnMPX_convolve_(kind, m, na, x.data(), nb, x.data(), y.data(), &outcome, 1);
    return outcome;
  };
  CHECK(convolve("X", 1, 2, 2) == 11);
  CHECK(convolve("L", 1, 0, 2) == 3);
  CHECK(convolve("L", 1, 2, 0) == 3);
  CHECK(convolve("L", 0, 2, 2) == 4);
  CHECK(convolve("C", 1, 2, 3) == 12);
  QuarnMPX_window_("Q", 3, 0, 0, y.data(), &(ifail = 1), 1);
  CHECK(ifail == 11);
  QuarnMPX_window_("K", 3, 0, QuarnFloat("nan"), y.data(), &(ifail = 1), 1);
  CHECK(ifail == 13);
  QuarnMPX_power_spectrum_(4, 1, x.data(), 0, 0, y.data(), 1, 0, &(ifail = 1));
  CHECK(ifail == 5);
  CHECK(y == Reals(16, QuarnFloat(7)));
  CHECK(std::count(w.begin(), w.end(), Complex(7)) == 16);
}
