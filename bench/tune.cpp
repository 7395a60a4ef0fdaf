// Finds the thresholds of number/limbs/tuning.h on this machine: for each, the length from which the second way of
// forming the same limbs is faster than the first. Every result is compared with that of the schoolbook before its time
// counts. Prints two tables for each width: transforms on integers, and on doubles where the processor serves.
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <random>
#include <vector>

#include "number/limbs/newton_sqrt.h"
#include "quarn/exact.h"

using namespace quarn;

namespace {

std::mt19937_64 engine(20240611);

void require(bool right, const char* what, std::size_t n) {
  if (!right) {
    std::fprintf(stderr, "tune: wrong %s of %zu limbs\n", what, n);
    std::exit(1);
  }
}

// The best of several runs, in seconds of the processor a call: other programs do not count.
double seconds(const std::function<void()>& call) {
  double best = 1e9;
  for (int run = 0; run < 9; ++run) {
    int calls = 0;
    const std::clock_t start = std::clock();
    double spent = 0;
    do {
      call();
      ++calls;
      spent = double(std::clock() - start) / CLOCKS_PER_SEC;
    } while (spent < 3e-4);
    best = std::min(best, spent / calls);
  }
  return best;
}

template <class R>
class Tuner {
 public:
  using Limb = typename R::Limb;

  void run(const char* type) {
    for (const char* const kernel : {"none", "best"}) {
      QuarnExactKernel(kernel);
      run_kernel(type);
    }
  }

 private:
  static constexpr std::size_t kNever = std::size_t(1) << 20;

  static Thresholds& table() { return thresholds<Limb>[convolution::kernel_in_use() != nullptr]; }

  void run_kernel(const char* type) {
    Thresholds& limit = table();
    limit = {kNever, kNever, kNever, kNever, kNever, kNever, 0};
    limit.karatsuba = crossing(12, 1.06, [&](std::size_t n) { return products(n, false, &Tuner::by_karatsuba); });
    limit.karatsuba_square = crossing(12, 1.06, [&](std::size_t n) { return products(n, true, &Tuner::by_karatsuba); });
    limit.transform = crossing(16, 1.06, [&](std::size_t n) { return products(n, false, &Tuner::by_transform); });
    limit.transform_square = crossing(16, 1.06, [&](std::size_t n) { return products(n, true, &Tuner::by_transform); });
    limit.short_product = crossing(32, 1.06, [&](std::size_t n) { return short_products(n); });
    limit.newton_divide = crossing(16, 1.1, [&](std::size_t n) { return quotients(n); });
    limit.newton_sqrt = crossing(16, 1.1, [&](std::size_t n) { return roots(n); });
    std::printf("%s, transforms on %s: {%zu, %zu, %zu, %zu, %zu, %zu, %zu}\n", type,
                convolution::kernel_in_use() != nullptr ? "doubles" : "integers", limit.karatsuba,
                limit.karatsuba_square, limit.transform, limit.transform_square, limit.newton_divide, limit.newton_sqrt,
                limit.short_product);
  }

  using Way = void (*)(Limb* out, const Limb* a, const Limb* b, std::size_t n);

  static void by_karatsuba(Limb* out, const Limb* a, const Limb* b, std::size_t n) {
    multiply_karatsuba<R>(out, a, b, n, multiply_balanced<R>);
  }
  static void by_transform(Limb* out, const Limb* a, const Limb* b, std::size_t n) {
    multiply_transform<R>(out, a, n, b, n);
  }

  // The first of three lengths in a row for which `faster` says that the second way wins.
  template <class Faster>
  static std::size_t crossing(std::size_t start, double growth, const Faster& faster) {
    std::size_t first = 0;
    int wins = 0;
    for (std::size_t n = start; n < 5000; n = std::max(n + 1, std::size_t(double(n) * growth))) {
      if (!faster(n)) {
        wins = 0;
      } else if (++wins == 1) {
        first = n;
      } else if (wins == 3) {
        return first;
      }
    }
    return 5000;
  }

  void draw(std::size_t n) {
    a_.resize(n);
    b_.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
      a_[i] = Limb(engine() % R::base);
      b_[i] = Limb(engine() % R::base);
    }
    a_[0] = R::base / 2 + a_[0] / 2;
    b_[0] = R::base / 2 + b_[0] / 2;
  }

  static std::vector<Limb> naive_product(const std::vector<Limb>& a, const std::vector<Limb>& b) {
    std::vector<Limb> out(a.size() + b.size(), 0);
    for (std::size_t j = b.size(); j-- > 0;) {
      typename R::Wide carry = 0;
      for (std::size_t i = a.size(); i-- > 0;) {
        carry += typename R::Wide(a[i]) * b[j] + out[i + j + 1];
        out[i + j + 1] = Limb(carry % R::base);
        carry /= R::base;
      }
      out[j] = Limb(carry);
    }
    return out;
  }

  bool products(std::size_t n, bool squares, Way second) {
    draw(n);
    const std::vector<Limb>& b = squares ? a_ : b_;
    std::vector<Limb> out(2 * n);
    second(out.data(), a_.data(), b.data(), n);
    require(out == naive_product(a_, b), "product", n);
    const double old = seconds([&] { multiply_balanced<R>(out.data(), a_.data(), b.data(), n); });
    return seconds([&] { second(out.data(), a_.data(), b.data(), n); }) < old;
  }

  bool short_products(std::size_t n) {
    draw(n);
    std::vector<Limb> out(2 * n);
    multiply<R>(out.data(), a_.data(), n, b_.data(), n);
    require(out == naive_product(a_, b_), "product", n);
    const double old = seconds([&] { multiply_columns<R>(out.data(), a_.data(), n, b_.data(), n, n + 2); });
    return seconds([&] { multiply<R>(out.data(), a_.data(), n, b_.data(), n); }) < old;
  }

  // a and zeros, twice as long as the divisor and the root.
  std::vector<Limb> dividend(std::size_t n) {
    draw(n);
    std::vector<Limb> long_a = a_;
    long_a.resize(2 * n, 0);
    return long_a;
  }

  bool quotients(std::size_t n) {
    const std::vector<Limb> a = dividend(n);
    std::vector<Limb> old(n + 1);
    std::vector<Limb> quotient(n + 1);
    const double time_old = seconds([&] { divide<R>(old.data(), a.data(), 2 * n, b_.data(), n); });
    table().newton_divide = 2 * n / 3;
    const double time = seconds([&] { newton::divide<R>(quotient.data(), a.data(), 2 * n, b_.data(), n); });
    table().newton_divide = kNever;
    require(old == quotient, "quotient", n);
    return time < time_old;
  }

  bool roots(std::size_t n) {
    const std::vector<Limb> a = dividend(n);
    std::vector<Limb> old(n);
    std::vector<Limb> root(n);
    const double time_old = seconds([&] { square_root<R>(old.data(), a.data(), n); });
    table().newton_sqrt = 2 * n / 3;
    const double time = seconds([&] { newton::square_root<R>(root.data(), a.data(), n); });
    table().newton_sqrt = kNever;
    require(old == root, "root", n);
    return time < time_old;
  }

  std::vector<Limb> a_;
  std::vector<Limb> b_;
};

}  // namespace

int main() {
#if defined(__SIZEOF_INT128__)
  Tuner<Radix64>().run("std::uint64_t");
#endif
  Tuner<Radix32>().run("std::uint32_t");
}
