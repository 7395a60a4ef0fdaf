// Entries of random exact products against the value of their formula, as many as are asked for: digits from 1 to 1000,
// shapes, spreads of exponents, scalars, special values, every kernel and several numbers of threads.
//
//   sampled_entries [entries] [seed]
#include <cstdio>
#include <cstdlib>

#include "exact/samples.h"
#include "quarn/parallel.h"

namespace {

using support::Random;

constexpr int kDigits[] = {1, 2, 5, 18, 19, 20, 20, 36, 37, 50, 50, 54, 90, 100, 126, 127, 200, 333, 1000};
constexpr int kSpreads[] = {0, 3, 3, 40, 90, 300, 1000};
constexpr const char* kSpecials[] = {"inf", "-inf", "nan", "-0", "0"};

template <class T>
T pick(Random& random, const std::vector<T>& from) {
  return from[random.below(from.size())];
}

struct Batch {
  std::size_t m;
  std::size_t n;
  std::size_t k;
  int digits;
  int spread;
  bool special;
};

std::vector<QuarnFloat> operand(Random& random, const Batch& batch, std::size_t size) {
  std::vector<QuarnFloat> made;
  QuarnSetDigits(2 * batch.digits);
  const int digits = random.once_in(4) ? 1 + int(random.below(std::uint64_t(2 * batch.digits))) : batch.digits;
  for (std::size_t i = 0; i < size; ++i) {
    made.push_back(batch.special && random.once_in(12) ? QuarnFloat(kSpecials[random.below(5)])
                                                       : exact_test::number(random, digits, batch.spread));
  }
  return made;
}

bool same(const QuarnFloat& a, const QuarnFloat& b) {
  return (isnan(a) && isnan(b)) || (a == b && signbit(a) == signbit(b));
}

class Sampler {
 public:
  explicit Sampler(std::uint64_t seed) : random_(seed), kernels_(exact_test::kernels()) {}

  /// One product; entries of it are compared.
  void run() {
    const bool large = random_.once_in(12);
    const int digits = kDigits[random_.below(std::size(kDigits))];
    const std::size_t limit = digits > 200 ? 10 : large ? 90 : 24;
    const auto extent = [&] { return 1 + std::size_t(random_.below(limit)); };
    Batch batch{extent(), extent(), extent(), digits, kSpreads[random_.below(std::size(kSpreads))], random_.once_in(8)};
    if (random_.once_in(4)) {
      (random_.once_in(2) ? batch.m : batch.n) = 1;
    }
    QuarnExactKernel(pick(random_, kernels_));
    QuarnSetThreads(1 + int(random_.below(3)));
    random_.once_in(4) ? complex(batch) : real(batch);
  }

  long entries() const { return entries_; }
  long wrong() const { return wrong_; }

 private:
  QuarnFloat weight(const Batch& batch) {
    QuarnSetDigits(batch.digits);
    return random_.once_in(2)   ? QuarnFloat(random_.once_in(2) ? 1 : -1)
           : random_.once_in(3) ? QuarnFloat()
                                : exact_test::number(random_, batch.digits, 3);
  }

  void compare(const Batch& batch, QuarnFloat exact, const QuarnFloat& got) {
    QuarnSetDigits(batch.digits);
    exact = exact * QuarnFloat(1);
    // The sign of a zero of which old values are a part is tested elsewhere.
    const bool right = exact == 0 ? got == 0 : same(exact, got);
    ++entries_;
    if (!right && ++wrong_ <= 10) {
      std::printf("wrong: %zu x %zu x %zu, %d digits, spread %d, kernel %s, %d threads: %s instead of %s\n", batch.m,
                  batch.n, batch.k, batch.digits, batch.spread, QuarnExactKernel(), QuarnThreads(),
                  got.to_string().c_str(), exact.to_string().c_str());
    }
  }

  /// Nothing is rounded at so many digits.
  static int enough(const Batch& batch) { return 6 * batch.digits + 3 * batch.spread + 60; }

  void real(const Batch& batch) {
    const auto a = operand(random_, batch, batch.m * batch.k);
    const auto b = operand(random_, batch, batch.k * batch.n);
    auto c = operand(random_, batch, batch.m * batch.n);
    const auto before = c;
    const QuarnFloat alpha = weight(batch);
    const QuarnFloat beta = weight(batch);
    QuarnSetDigits(batch.digits);
    QuarnMatrixProduct(batch.m, batch.n, batch.k, alpha, {a.data(), 1, std::ptrdiff_t(batch.m)},
                       {b.data(), std::ptrdiff_t(batch.n), 1}, beta, {c.data(), 1, std::ptrdiff_t(batch.m)});
    for (int sample = 0; sample < 60; ++sample) {
      const std::size_t i = random_.below(batch.m);
      const std::size_t j = random_.below(batch.n);
      QuarnSetDigits(enough(batch));
      QuarnFloat sum;
      for (std::size_t l = 0; alpha != 0 && l < batch.k; ++l) {
        sum += alpha * a[i + l * batch.m] * b[l * batch.n + j];
      }
      if (beta != 0) {
        sum += beta * before[i + j * batch.m];
      }
      compare(batch, sum, c[i + j * batch.m]);
    }
  }

  static std::vector<Complex> pairs(const std::vector<QuarnFloat>& parts) {
    std::vector<Complex> made(parts.size() / 2);
    for (std::size_t i = 0; i < made.size(); ++i) {
      made[i] = {parts[2 * i], parts[2 * i + 1]};
    }
    return made;
  }

  void complex(Batch batch) {
    batch.special = false;
    const auto a = pairs(operand(random_, batch, 2 * batch.m * batch.k));
    const auto b = pairs(operand(random_, batch, 2 * batch.k * batch.n));
    auto c = pairs(operand(random_, batch, 2 * batch.m * batch.n));
    const auto before = c;
    const Complex alpha(weight(batch), random_.once_in(2) ? QuarnFloat() : weight(batch));
    const Complex beta(weight(batch), random_.once_in(2) ? QuarnFloat() : weight(batch));
    QuarnSetDigits(batch.digits);
    QuarnMatrixProduct(batch.m, batch.n, batch.k, alpha, {a.data(), 1, std::ptrdiff_t(batch.m)},
                       {b.data(), std::ptrdiff_t(batch.n), 1}, beta, {c.data(), 1, std::ptrdiff_t(batch.m)},
                       QuarnConjugateB);
    for (int sample = 0; sample < 30; ++sample) {
      const std::size_t i = random_.below(batch.m);
      const std::size_t j = random_.below(batch.n);
      QuarnSetDigits(enough(batch));
      Complex sum;
      for (std::size_t l = 0; l < batch.k; ++l) {
        sum = sum + a[i + l * batch.m] * conj(b[l * batch.n + j]);
      }
      sum = alpha * sum + beta * before[i + j * batch.m];
      compare(batch, sum.re, c[i + j * batch.m].re);
      compare(batch, sum.im, c[i + j * batch.m].im);
    }
  }

  Random random_;
  std::vector<const char*> kernels_;
  long entries_ = 0;
  long wrong_ = 0;
};

}  // namespace

int main(int count, char** arguments) {
  const long wanted = count > 1 ? std::atol(arguments[1]) : 20'000;
  const std::uint64_t seed = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : support::run_seed();
  Sampler sampler(seed);
  while (sampler.entries() < wanted) {
    sampler.run();
  }
  std::printf("%ld entries, seed %.0f: %ld wrong\n", sampler.entries(), double(seed), sampler.wrong());
  return sampler.wrong() == 0 ? 0 : 1;
}
