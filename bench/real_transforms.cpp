// Transforms of real sequences beside complex ones, interleaved in one run, and their errors beside those of the
// correctly rounded transform by Arb.
//
//   bench_real_transforms             processor time: medians of ratios over rounds
//   bench_real_transforms errors      Euclidean norms of errors over those of one rounding of each result
//   bench_real_transforms errors D N  the same for one length at D digits, of up to 20000 results
//   bench_real_transforms long D N    one spectrum: its time, and the memory of the process
//   bench_real_transforms growth D    times of spectra of 2^14 to 2^20 numbers over N log2 N
#include <acb_dft.h>
#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tesk2mp/transforms.h"

namespace {

using Reals = std::vector<QuarnFloat>;
using Numbers = std::vector<Complex>;

Reals random_reals(std::size_t count, int digits) {
  std::mt19937_64 random(20261122);
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

Numbers random_numbers(std::size_t count, int digits) {
  const Reals parts = random_reals(2 * count, digits);
  Numbers z;
  for (std::size_t i = 0; i < count; ++i) {
    z.emplace_back(parts[2 * i], parts[2 * i + 1]);
  }
  return z;
}

using Work = std::function<void()>;

Work complex_transform(Integer n, Integer m, int calls) {
  auto x =
      std::make_shared<Numbers>(random_numbers(std::size_t(n) * std::size_t(m) * std::size_t(calls), QuarnDigits()));
  auto y = std::make_shared<Numbers>(x->size());
  return [=] {
    for (std::ptrdiff_t i = 0; i < calls; ++i) {
      Integer ifail = 0;
      const std::ptrdiff_t start = i * n * m;
      QuarnMPX_fft_("F", "B", n, m, x->data() + start, 1, n, y->data() + start, 1, n, &ifail, 1, 1);
    }
  };
}

Work spectrum(Integer n) {
  auto x = std::make_shared<Reals>(random_reals(std::size_t(n), QuarnDigits()));
  auto y = std::make_shared<Numbers>(std::size_t(n / 2 + 1));
  return [=] {
    Integer ifail = 0;
    QuarnMPX_rfft_("B", n, 1, x->data(), 1, n, y->data(), 1, 0, &ifail, 1);
  };
}

Work cosines(Integer n, Integer type) {
  auto x = std::make_shared<Reals>(random_reals(std::size_t(n), QuarnDigits()));
  auto y = std::make_shared<Reals>(x->size());
  return [=] {
    Integer ifail = 0;
    QuarnMPX_dct_("F", "B", type, n, 1, x->data(), 1, n, y->data(), 1, n, &ifail, 1, 1);
  };
}

double seconds(const Work& work, int repeats) {
  const std::clock_t start = std::clock();
  for (int i = 0; i < repeats; ++i) {
    work();
  }
  return double(std::clock() - start) / CLOCKS_PER_SEC / repeats;
}

/// The median of time(work) / time(other) over rounds; plans are made before.
void compare(const char* what, const Work& work, const Work& other) {
  work();
  other();
  const int repeats = 1 + int(0.02 / (seconds(other, 1) + 1e-6));
  std::vector<double> ratios;
  for (int round = 0; round < 15; ++round) {
    const double reference = seconds(other, repeats);
    ratios.push_back(seconds(work, repeats) / reference);
  }
  std::nth_element(ratios.begin(), ratios.begin() + 7, ratios.end());
  std::printf("%4d digits  %-44s %.3f\n", QuarnDigits(), what, ratios[7]);
  std::fflush(stdout);
}

void print_times() {
  for (const int digits : {20, 50, 100, 500}) {
    QuarnSetDigits(digits);
    compare("rfft / fft, 1024", spectrum(1024), complex_transform(1024, 1, 1));
    compare("rfft / fft, 1000", spectrum(1000), complex_transform(1000, 1, 1));
    compare("dct type 2 / fft, 1024", cosines(1024, 2), complex_transform(1024, 1, 1));
    compare("dct type 3 / fft, 1024", cosines(1024, 3), complex_transform(1024, 1, 1));
    compare("dct type 4 / fft, 1024", cosines(1024, 4), complex_transform(1024, 1, 1));
    compare("fft 1000 of 64 in one call / single calls", complex_transform(64, 1000, 1),
            complex_transform(64, 1, 1000));
    compare("fft 1009 / fft 1024", complex_transform(1009, 1, 1), complex_transform(1024, 1, 1));
  }
  QuarnSetDigits(50);
  compare("fft 10007 / fft 16384", complex_transform(10007, 1, 1), complex_transform(16384, 1, 1));
  compare("fft 16381 / fft 16384", complex_transform(16381, 1, 1), complex_transform(16384, 1, 1));
}

QuarnFloat decimal(const arb_t x, int digits) {
  char* const text = arb_get_str(x, digits, ARB_STR_NO_RADIUS);
  const QuarnFloat value(text);
  flint_free(text);
  return value;
}

/// Of the orthonormal spectrum, results of which are left out where there are very many.
double error_ratio(Integer n, int digits) {
  const slong bits = slong((digits + 40) * 3.33) + 64;
  QuarnSetDigits(digits);
  const Reals x = random_reals(std::size_t(n), digits);
  Numbers z(std::size_t(n / 2 + 1));
  Integer ifail = 0;
  QuarnMPX_rfft_("O", n, 1, x.data(), 1, n, z.data(), 1, 0, &ifail, 1);
  acb_ptr const data = _acb_vec_init(n);
  acb_ptr const sums = _acb_vec_init(n);
  for (Integer j = 0; j < n; ++j) {
    arb_set_str(acb_realref(data + j), x[std::size_t(j)].to_string().c_str(), bits);
  }
  acb_dft(sums, data, n, bits);
  QuarnFloat ours = 0;
  QuarnFloat rounded = 0;
  const auto add = [&](const QuarnFloat& result, const arb_t sum) {
    QuarnSetDigits(digits + 30);
    const QuarnFloat exact = decimal(sum, digits + 30) / sqrt(QuarnFloat(n));
    QuarnSetDigits(digits);
    const QuarnFloat once = exact + QuarnFloat();
    QuarnSetDigits(digits + 30);
    ours += (result - exact) * (result - exact);
    rounded += (once - exact) * (once - exact);
  };
  constexpr Integer kSampled = 10000;
  for (Integer k = 0; k <= n / 2; k += std::max<Integer>(1, n / (2 * kSampled))) {
    add(z[std::size_t(k)].re, acb_realref(sums + k));
    if (k != 0 && 2 * k != n) {
      add(z[std::size_t(k)].im, acb_imagref(sums + k));
    }
  }
  _acb_vec_clear(data, n);
  _acb_vec_clear(sums, n);
  return FloatToDouble(sqrt(ours / rounded));
}

void print_errors() {
  for (const int digits : {20, 50, 100, 500, 1000}) {
    double worst = 0;
    for (Integer n = 3; n <= 100; ++n) {
      worst = std::max(worst, error_ratio(n, digits));
    }
    std::printf("%4d digits  3 to 100: %.6f at most", digits, worst);
    for (const Integer n : {365, 1009, 8760, 10000}) {
      std::printf(", %d: %.6f", int(n), error_ratio(n, digits));
    }
    std::printf("\n");
    std::fflush(stdout);
  }
}

double peak_megabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return double(usage.ru_maxrss) / 1024;
}

void print_one(int digits, Integer n) {
  QuarnSetDigits(digits);
  const Work work = spectrum(n);
  const double before = peak_megabytes();
  const double fresh = seconds(work, 1);
  const double again = seconds(work, 1);
  std::printf(
      "%d digits, %ld numbers: %.2f s with its tables, %.2f s by them; %.0f MB, of which data and results %.0f\n",
      digits, long(n), fresh, again, peak_megabytes(), before);
}

void print_growth(int digits) {
  QuarnSetDigits(digits);
  for (Integer n = 1 << 14; n <= 1 << 20; n *= 2) {
    const Work work = spectrum(n);
    work();
    std::vector<double> times;
    for (int round = 0; round < 5; ++round) {
      times.push_back(seconds(work, 1));
    }
    std::nth_element(times.begin(), times.begin() + 2, times.end());
    std::printf("%d digits, %8ld numbers: %.3f s, %.2f ns for each N log2 N\n", digits, long(n), times[2],
                1e9 * times[2] / (double(n) * std::log2(double(n))));
    std::fflush(stdout);
  }
}

}  // namespace

int main(int count, char** arguments) {
  const auto is = [&](const char* mode) { return count > 1 && std::strcmp(arguments[1], mode) == 0; };
  const int digits = count > 2 ? std::atoi(arguments[2]) : 50;
  const Integer n = count > 3 ? Integer(std::atol(arguments[3])) : 0;
  if (is("long") && n > 0) {
    print_one(digits, n);
  } else if (is("growth")) {
    print_growth(digits);
  } else if (is("errors") && n > 0) {
    std::printf("%d digits, %ld numbers: %.6f\n", digits, long(n), error_ratio(n, digits));
  } else if (is("errors")) {
    print_errors();
  } else {
    print_times();
  }
}
