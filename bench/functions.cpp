// bench_functions [DIGITS]...: every function of one number beside MPFR's, processor time: both in turn over the same
// random arguments, the median of nine ratios. 50 and 1000 digits unless others are given.
#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "quarn/function_table.h"

namespace {

using Reference = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

int log_gamma(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t direction) {
  int sign = 0;
  return mpfr_lgamma(y, &sign, x, direction);
}

struct Row {
  const char* name;
  Reference reference;
  double lowest;
  double highest;
};

const Row kRows[] = {{"expm1", mpfr_expm1, -2, 2},       {"exp2", mpfr_exp2, -5, 5},     {"exp10", mpfr_exp10, -5, 5},
                     {"log1p", mpfr_log1p, -0.9, 5},     {"log2", mpfr_log2, 0.01, 50},  {"cbrt", mpfr_cbrt, -50, 50},
                     {"tan", mpfr_tan, -5, 5},           {"asin", mpfr_asin, -1, 1},     {"acos", mpfr_acos, -1, 1},
                     {"atan", mpfr_atan, -5, 5},         {"sinh", mpfr_sinh, -5, 5},     {"cosh", mpfr_cosh, -5, 5},
                     {"tanh", mpfr_tanh, -5, 5},         {"asinh", mpfr_asinh, -5, 5},   {"acosh", mpfr_acosh, 1, 20},
                     {"atanh", mpfr_atanh, -1, 1},       {"sinpi", mpfr_sinpi, -5, 5},   {"cospi", mpfr_cospi, -5, 5},
                     {"tanpi", mpfr_tanpi, -5, 5},       {"asinpi", mpfr_asinpi, -1, 1}, {"acospi", mpfr_acospi, -1, 1},
                     {"atanpi", mpfr_atanpi, -5, 5},     {"gamma", mpfr_gamma, 1, 20},   {"lgamma", log_gamma, 0.1, 20},
                     {"digamma", mpfr_digamma, 0.1, 20}, {"erf", mpfr_erf, -3, 3},       {"erfc", mpfr_erfc, -3, 8}};

constexpr std::size_t kArguments = 64;
constexpr int kRepetitions = 9;

double processor_seconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

/// Nanoseconds for a call, once over all arguments and more often if that takes less than a millisecond.
template <class Call>
double time_of(const Call& call) {
  int passes = 0;
  const double start = processor_seconds();
  double passed = 0;
  do {
    for (std::size_t i = 0; i < kArguments; ++i) {
      call(i);
    }
    ++passes;
    passed = processor_seconds() - start;
  } while (passed < 1e-3);
  return passed * 1e9 / (double(kArguments) * passes);
}

template <class Numbers>
double median(Numbers numbers) {
  std::sort(numbers.begin(), numbers.end());
  return numbers[numbers.size() / 2];
}

void measure(const Row& row, int digits) {
  QuarnSetDigits(digits);
  const auto bits = mpfr_prec_t(std::ceil(digits * std::log2(10.0)));
  std::mt19937_64 random(1);
  std::vector<QuarnFloat> ours;
  std::vector<std::remove_extent_t<mpfr_t>> theirs(kArguments);
  for (auto& x : theirs) {
    std::string text = "0.";
    for (int i = 0; i < digits; ++i) {
      text += char('0' + random() % 10);
    }
    const QuarnFloat argument = QuarnFloat(row.lowest) + QuarnFloat(text) * QuarnFloat(row.highest - row.lowest);
    ours.push_back(argument);
    mpfr_init2(&x, bits);
    mpfr_set_str(&x, argument.to_string().c_str(), 10, MPFR_RNDN);
  }
  mpfr_t result;
  mpfr_init2(result, bits);
  QuarnFloat value;
  const auto apply = quarn::find_function1(row.name);
  const auto our_call = [&](std::size_t i) { value = apply(ours[i]); };
  const auto their_call = [&](std::size_t i) { row.reference(result, &theirs[i], MPFR_RNDN); };
  our_call(0);  // tables and coefficients, which are kept
  their_call(0);
  std::vector<double> times;
  std::vector<double> ratios;
  for (int i = 0; i < kRepetitions; ++i) {
    const double our_time = time_of(our_call);
    times.push_back(our_time);
    ratios.push_back(our_time / time_of(their_call));
  }
  std::printf("| `%s` | %d | %.2f us | %.2f |\n", row.name, digits, median(times) / 1000, median(ratios));
  std::fflush(stdout);
  mpfr_clear(result);
  for (auto& x : theirs) {
    mpfr_clear(&x);
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<int> digits;
  for (int i = 1; i < argc; ++i) {
    digits.push_back(std::atoi(argv[i]));
  }
  if (digits.empty()) {
    digits = {50, 1000};
  }
  std::printf("| function | digits | ours | ours / mpfr |\n|---|--:|--:|--:|\n");
  for (const int d : digits) {
    for (const Row& row : kRows) {
      measure(row, d);
    }
  }
  mpfr_free_cache();
}
