// large_run [--count N] [--least ORDER] [--order MOST] [--seed S] [--digits MOST]: random problems of every kind with
// condition numbers to 10^(2 D), defective and clustered eigenvalues among them; every bound beside a reference with
// three times the working digits of the proof and a hundred, or a closed form. Prints the number of problems, of proofs
// that were found and of violations, and the median of how far bounds overestimate, and fails where a bound is wrong.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/tesk2mp.hpp"

namespace {

namespace proven = tesk2mp::proven;
using tesk2mp::Matrix;
using tesk2mp::Real;

Real size(const Real& x) { return fabs(x); }
Real size(const Complex& z) { return sqrt(z.re * z.re + z.im * z.im); }

struct Tally {
  std::size_t problems = 0;
  std::size_t bounds = 0;
  std::size_t proven = 0;
  std::size_t wrong = 0;
  std::vector<double> overestimation;  // log10
};

class Run {
 public:
  Run(std::uint64_t seed, std::size_t least, std::size_t order, int digits)
      : random_(seed), least_(least), order_(order), most_digits_(digits) {}

  void problem() {
    digits_ =
        int(std::exp(std::log(2.0) + std::log(double(most_digits_) / 2) * double(random_.between(0, 1000)) / 1000));
    n_ = std::size_t(random_.between(std::int64_t(least_), std::int64_t(order_)));
    wide_ = 3 * (digits_ + 10) + 100;
    if (random_.once_in(2)) {
      any_kind<Real>();
    } else {
      any_kind<Complex>();
    }
  }
  std::map<std::string, Tally>& tallies() { return tallies_; }

 private:
  template <class T>
  T number() {
    const auto part = [&] {
      return Real(((random_.once_in(2) ? "-0." : "0.") + random_.digits(std::size_t(digits_))).c_str());
    };
    if constexpr (sizeof(T) == sizeof(Real)) {
      return part();
    } else {
      return T(part(), part());
    }
  }
  template <class T>
  Matrix<T> matrix(std::size_t rows, std::size_t columns) {
    Matrix<T> a(rows, columns);
    for (std::size_t j = 0; j < columns; ++j) {
      for (std::size_t i = 0; i < rows; ++i) {
        a(i, j) = number<T>();
      }
    }
    return a;
  }
  /// A condition number up to some 10^(2 D): the last row is another one and something small.
  template <class T>
  Matrix<T> hard_matrix() {
    Matrix<T> a = matrix<T>(n_, n_);
    if (n_ > 1 && random_.once_in(2)) {
      const support::Digits exact(4 * digits_ + 10);
      const T small(Real(1, -int(random_.between(0, 2 * digits_))));
      for (std::size_t j = 0; j < n_; ++j) {
        a(n_ - 1, j) = a(0, j) + a(n_ - 1, j) * small;
      }
    }
    return a;
  }
  /// V J V^-1 in integers: eigenvalues that are known, defective and multiple ones among them.
  template <class T>
  Matrix<T> known_spectrum(std::vector<Complex>& values) {
    const support::Digits exact(4 * int(n_) + 100);
    Matrix<T> a(n_, n_);
    values.clear();
    for (std::size_t i = 0; i < n_; ++i) {
      if (i > 0 && random_.once_in(2)) {
        a(i, i) = a(i - 1, i - 1);
        a(i - 1, i) = T(double(random_.between(0, 1)));
      } else {
        a(i, i) = T(double(random_.between(-9, 9)));
      }
      values.emplace_back(a(i, i));
    }
    for (std::size_t k = 0; k < 2 * n_ && n_ > 1; ++k) {
      const auto i = std::size_t(random_.between(0, std::int64_t(n_) - 1));
      const auto j = (i + std::size_t(random_.between(1, std::int64_t(n_) - 1))) % n_;
      const T factor(double(random_.between(-1, 1)));
      for (std::size_t l = 0; l < n_; ++l) {
        a(i, l) = a(i, l) + factor * a(j, l);
      }
      for (std::size_t l = 0; l < n_; ++l) {
        a(l, j) = a(l, j) - factor * a(l, i);
      }
    }
    return a;
  }

  void take(Tally& tally, const QuarnBound& error, const Real& distance, const Real& slack) {
    ++tally.bounds;
    if (!error.is_finite()) {
      return;
    }
    ++tally.proven;
    if (distance > error.value() + slack) {
      ++tally.wrong;
      std::cout << "WRONG: " << digits_ << " digits, order " << n_ << ", error " << error.value() << ", is " << distance
                << "\n";
    }
    if (distance > slack && !error.is_zero()) {
      tally.overestimation.push_back(double(error.exponent()) - double(ilogb(distance)));
    }
  }
  template <class T>
  void take(Tally& tally, const proven::Bounded<T>& x, const T& exact, const Real& slack) {
    take(tally, x.error, size(x.value - exact), slack);
  }
  /// As many in each disc as it counts.
  void take_roots(Tally& tally, const std::vector<proven::BoundedRoot>& roots, const std::vector<Complex>& exact,
                  const Real& slack) {
    for (const auto& root : roots) {
      std::vector<Real> distances;
      for (const Complex& each : exact) {
        distances.push_back(size(each - root.value));
      }
      std::sort(distances.begin(), distances.end());
      take(tally, root.error, distances[root.count - 1], slack);
    }
  }
  Tally& tally(const std::string& name) {
    Tally& result = tallies_[name];
    ++result.problems;
    return result;
  }
  Real slack(const Real& largest) const { return largest * Real(1, -wide_ / 2); }

  template <class T>
  void systems() {
    const Matrix<T> a = hard_matrix<T>();
    const Matrix<T> b = matrix<T>(n_, 1);
    const auto determinant = proven::determinant(a);
    Tally& kind = tally("solve");
    proven::BoundedMatrix<T> x;
    bool refused = false;
    try {
      x = proven::solve(a, b);
    } catch (const tesk2mp::NumericalFailure&) {
      refused = true;
    }
    const support::Digits scope(wide_);
    const tesk2mp::LU<T> factors(a);
    // Of a singular matrix a rounding may be left.
    const Real nothing(1, 20 - wide_);
    const T reference = factors.determinant();
    take(tally("determinant"), determinant, reference, nothing);
    if (factors.singular() || refused) {
      kind.wrong += refused && size(reference) <= nothing ? 0 : 1;
      return;
    }
    const Matrix<T> exact = factors.solve(b);
    Real largest;
    for (std::size_t i = 0; i < n_; ++i) {
      largest = std::max(largest, size(exact(i, 0)));
    }
    for (std::size_t i = 0; i < n_; ++i) {
      take(kind, x(i, 0), exact(i, 0), slack(largest));
    }
  }
  template <class T>
  void symmetric() {
    Matrix<T> a = hard_matrix<T>();
    const auto values = proven::symmetric_eigenvalues(a);
    const support::Digits scope(wide_);
    const auto exact = tesk2mp::symmetric_eigenvalues(a);
    Tally& kind = tally("symmetric");
    for (std::size_t i = 0; i < n_; ++i) {
      take(kind, values[i], exact[i], slack(std::max(fabs(exact[0]), fabs(exact[n_ - 1]))));
    }
  }
  template <class T>
  void singular() {
    const Matrix<T> a = hard_matrix<T>();
    const auto values = proven::singular_values(a);
    const support::Digits scope(wide_);
    const auto exact = tesk2mp::singular_values(a);
    Tally& kind = tally("singular values");
    for (std::size_t i = 0; i < n_; ++i) {
      take(kind, values[i], exact[i], slack(exact[0]));
    }
  }
  template <class T>
  void general() {
    const Matrix<T> a = hard_matrix<T>();
    const auto roots = proven::eigenvalues(a);
    const support::Digits scope(wide_);
    take_roots(tally("eigenvalues"), roots, tesk2mp::eigenvalues(a), Real(1, -wide_ / 2));
  }
  template <class T>
  void defective() {
    std::vector<Complex> exact;
    const Matrix<T> a = known_spectrum<T>(exact);
    const auto roots = proven::eigenvalues(a);
    const support::Digits scope(wide_);
    take_roots(tally("multiple eigenvalues"), roots, exact, Real());
  }
  template <class T>
  void pencils() {
    const Matrix<T> a = matrix<T>(n_, n_);
    const Matrix<T> b = hard_matrix<T>();
    const auto roots = proven::eigenvalues(a, b);
    const support::Digits scope(wide_);
    const tesk2mp::LU<T> factors(b);
    if (!factors.singular()) {
      take_roots(tally("pencils"), roots, tesk2mp::eigenvalues(factors.solve(a)), Real(1, -wide_ / 3));
    }
  }
  template <class T>
  void zeros() {
    std::vector<Complex> exact;
    for (std::size_t i = 0; i < n_; ++i) {
      exact.emplace_back(double(random_.between(-4, 4)), double(random_.between(-1, 1)));
    }
    std::vector<Complex> a;
    {
      const support::Digits scope(200);
      a = tesk2mp::polynomial_from_zeros(exact);
    }
    const auto roots = proven::zeros(a);
    const support::Digits scope(wide_);
    take_roots(tally("zeros"), roots, exact, Real());
  }
  template <class T>
  void least_squares() {
    const std::size_t m = n_ + std::size_t(random_.between(0, 3));
    const Matrix<T> a = matrix<T>(m, n_);
    const Matrix<T> b = matrix<T>(m, 1);
    proven::BoundedMatrix<T> x;
    try {
      x = proven::least_squares(a, b);
    } catch (const tesk2mp::NumericalFailure&) {
      return;
    }
    const support::Digits scope(wide_);
    const Matrix<T> exact = tesk2mp::least_squares(a, b);
    Real largest;
    for (std::size_t i = 0; i < n_; ++i) {
      largest = std::max(largest, size(exact(i, 0)));
    }
    Tally& kind = tally("least squares");
    for (std::size_t i = 0; i < n_; ++i) {
      take(kind, x(i, 0), exact(i, 0), slack(largest));
    }
  }

  template <class T>
  void any_kind() {
    const support::Digits scope(digits_);
    switch (random_.between(0, 9)) {
      case 0:
        return symmetric<T>();
      case 1:
        return singular<T>();
      case 2:
        return general<T>();
      case 3:
      case 4:
        return defective<T>();
      case 5:
        return pencils<T>();
      case 6:
        return n_ > 12 ? systems<T>() : zeros<T>();
      case 7:
        return least_squares<T>();
      default:
        return systems<T>();
    }
  }

  support::Random random_;
  std::size_t least_;
  std::size_t order_;
  int most_digits_;
  int digits_ = 0;
  int wide_ = 0;
  std::size_t n_ = 0;
  std::map<std::string, Tally> tallies_;
};

}  // namespace

int main(int argc, char** argv) {
  std::map<std::string, std::uint64_t> options{
      {"--count", 1000}, {"--least", 1}, {"--order", 8}, {"--seed", 1}, {"--digits", 200}};
  for (int i = 1; i + 1 < argc; i += 2) {
    if (options.find(argv[i]) == options.end()) {
      std::cerr << "large_run [--count N] [--least ORDER] [--order MOST] [--seed S] [--digits MOST]\n";
      return 2;
    }
    options[argv[i]] = std::strtoull(argv[i + 1], nullptr, 10);
  }
  Run run(options["--seed"], std::size_t(options["--least"]), std::size_t(options["--order"]),
          int(options["--digits"]));
  for (std::uint64_t i = 0; i < options["--count"]; ++i) {
    run.problem();
  }
  std::size_t wrong = 0;
  for (auto& [name, tally] : run.tallies()) {
    std::vector<double>& sizes = tally.overestimation;
    std::sort(sizes.begin(), sizes.end());
    std::cout << name << ": " << tally.problems << " problems, " << tally.bounds << " bounds, " << tally.proven
              << " finite, " << tally.wrong << " wrong, median overestimation 10^"
              << (sizes.empty() ? 0 : sizes[sizes.size() / 2]) << "\n";
    wrong += tally.wrong;
  }
  std::cout << options["--count"] << " problems, seed " << options["--seed"] << ": " << wrong << " violations\n";
  return wrong == 0 ? 0 : 1;
}
