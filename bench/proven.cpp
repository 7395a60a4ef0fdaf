// bench_proven [ROUNDS]: doubles (Eigen), a multiprecision run, ball arithmetic (Arb) and proven results, by processor
// time and by digits of the worst component: of doubles and the plain run those that are right, beside a reference, of
// the others those that are proven. Interleaved, medians. Prints the table of docs/proofs.md.
#include <acb_mat.h>
#include <arb_mat.h>

#include <Eigen/Dense>
#include <Eigen/Eigenvalues>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "tesk2mp/tesk2mp.hpp"

namespace {

namespace proven = tesk2mp::proven;
using tesk2mp::Matrix;
using tesk2mp::Real;

constexpr int kDigits = 50;
constexpr slong kBits = 167;

double seconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

Real size(const Complex& z) { return sqrt(z.re * z.re + z.im * z.im); }

/// Right digits of the worst component.
long right_digits(const std::vector<Complex>& found, const std::vector<Complex>& exact) {
  long fewest = 99;
  for (const Complex& each : exact) {
    Real least = size(found[0] - each);
    for (const Complex& candidate : found) {
      least = std::min(least, size(candidate - each));
    }
    const Real scale = size(each);
    if (least != 0 && scale != 0) {
      fewest = std::min(fewest, long(ilogb(scale)) - long(ilogb(least)) - 1);
    }
  }
  return std::max(0L, fewest);
}

class Balls {
 public:
  explicit Balls(const Matrix<Real>& a) {
    acb_mat_init(values_, slong(a.rows()), slong(a.columns()));
    for (std::size_t j = 0; j < a.columns(); ++j) {
      for (std::size_t i = 0; i < a.rows(); ++i) {
        arb_set_str(acb_realref(acb_mat_entry(values_, slong(i), slong(j))), a(i, j).to_string().c_str(), kBits);
      }
    }
  }
  ~Balls() { acb_mat_clear(values_); }
  Balls(const Balls&) = delete;
  Balls& operator=(const Balls&) = delete;
  acb_mat_struct* get() { return values_; }
  void to_real(arb_mat_t out) {
    for (slong i = 0; i < arb_mat_nrows(out); ++i) {
      for (slong j = 0; j < arb_mat_ncols(out); ++j) {
        arb_set(arb_mat_entry(out, i, j), acb_realref(acb_mat_entry(values_, i, j)));
      }
    }
  }

 private:
  acb_mat_t values_;
};

long proven_digits(const acb_t z) { return std::max(0L, long(double(acb_rel_accuracy_bits(z)) * 0.30103)); }

bool all_meet = true;

/// Do a ball and a proven interval have a common point, as two enclosures of one number do?
void check_meeting(const arb_t ball, const Real& value, const QuarnBound& error) {
  if (!error.is_finite()) {
    return;
  }
  arb_t interval;
  arb_init(interval);
  arb_set_str(interval, (value.to_string() + " +/- " + error.value().to_string()).c_str(), 4 * kBits);
  if (arb_overlaps(ball, interval) == 0) {
    all_meet = false;
    std::fputs("a proven interval and a ball have no common point\n", stderr);
  }
  arb_clear(interval);
}

struct Way {
  std::string name;
  std::function<void()> run;
  std::function<long()> digits;
  std::vector<double> times;
};

void report(const std::string& problem, std::vector<Way> ways, int rounds) {
  for (int round = 0; round < rounds; ++round) {
    for (Way& way : ways) {
      const double start = seconds();
      way.run();
      way.times.push_back(seconds() - start);
    }
  }
  std::printf("| %s |", problem.c_str());
  for (Way& way : ways) {
    std::sort(way.times.begin(), way.times.end());
    const long digits = way.digits();
    std::printf(" %.3g ms, %s |", 1e3 * way.times[way.times.size() / 2],
                digits >= 99 ? "all"
                : digits > 0 ? std::to_string(digits).c_str()
                             : "none");
  }
  const auto time = [&](std::size_t k) { return ways[k].times[ways[k].times.size() / 2]; };
  std::printf(" %.2f | %.2f |\n", time(3) / time(1), time(3) / time(2));
}

Eigen::MatrixXd doubles(const Matrix<Real>& a) {
  Eigen::MatrixXd result(a.rows(), a.columns());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      result(Eigen::Index(i), Eigen::Index(j)) = double(a(i, j));
    }
  }
  return result;
}

void systems(const std::string& name, const Matrix<Real>& a, int rounds) {
  const std::size_t n = a.rows();
  Matrix<Real> b(n, 1);
  for (std::size_t i = 0; i < n; ++i) {
    b(i, 0) = Real(double(i % 7) + 1);
  }
  std::vector<Complex> exact;
  {
    const tesk2mp::Digits wide(400);
    const Matrix<Real> x = tesk2mp::LU<Real>(a).solve(b);
    for (std::size_t i = 0; i < n; ++i) {
      exact.emplace_back(x(i, 0));
    }
  }
  // Component by component.
  const auto by_component = [&](const auto& element) {
    long fewest = 99;
    for (std::size_t i = 0; i < n; ++i) {
      fewest = std::min(fewest, right_digits({Complex(element(i))}, {exact[i]}));
    }
    return fewest;
  };
  const Eigen::MatrixXd a_double = doubles(a);
  const Eigen::VectorXd b_double = doubles(b);
  Eigen::VectorXd x_double;
  Matrix<Real> x;
  proven::BoundedMatrix<Real> bounded;
  arb_mat_t balls;
  arb_mat_t right;
  arb_mat_t solution;
  arb_mat_init(balls, slong(n), slong(n));
  arb_mat_init(right, slong(n), 1);
  arb_mat_init(solution, slong(n), 1);
  Balls(a).to_real(balls);
  Balls(b).to_real(right);
  bool solved = false;
  report(name,
         {{"doubles",
           [&] { x_double = a_double.partialPivLu().solve(b_double); },
           [&] { return by_component([&](std::size_t i) { return Real(x_double(Eigen::Index(i))); }); },
           {}},
          {"plain",
           [&] { x = tesk2mp::LU<Real>(a).solve(b); },
           [&] { return by_component([&](std::size_t i) { return x(i, 0); }); },
           {}},
          {"balls",
           [&] { solved = arb_mat_solve(solution, balls, right, kBits) != 0; },
           [&] {
             long fewest = solved ? 99 : 0;
             for (std::size_t i = 0; solved && i < n; ++i) {
               const slong bits = arb_rel_accuracy_bits(arb_mat_entry(solution, slong(i), 0));
               fewest = std::min(fewest, std::max(0L, long(double(bits) * 0.30103)));
             }
             return fewest;
           },
           {}},
          {"proven",
           [&] { bounded = proven::solve(a, b); },
           [&] { return long(proven::fewest_true_digits(bounded)); },
           {}}},
         rounds);
  for (std::size_t i = 0; solved && i < n; ++i) {
    check_meeting(arb_mat_entry(solution, slong(i), 0), bounded.values()(i, 0), QuarnBound(bounded.errors()(i, 0)));
  }
  arb_mat_clear(balls);
  arb_mat_clear(right);
  arb_mat_clear(solution);
}

void spectra(const std::string& name, const Matrix<Real>& a, int rounds) {
  const std::size_t n = a.rows();
  std::vector<Complex> exact;
  {
    const tesk2mp::Digits wide(600);
    exact = tesk2mp::eigenvalues(a);
  }
  const Eigen::MatrixXd a_double = doubles(a);
  Balls balls(a);
  std::vector<Complex> of_doubles;
  std::vector<Complex> plain;
  std::vector<proven::BoundedRoot> roots;
  acb_ptr enclosures = _acb_vec_init(slong(n));
  bool isolated = false;
  report(name,
         {{"doubles",
           [&] {
             const Eigen::EigenSolver<Eigen::MatrixXd> solver(a_double);
             of_doubles.clear();
             for (const auto& each : solver.eigenvalues()) {
               of_doubles.emplace_back(each.real(), each.imag());
             }
           },
           [&] { return right_digits(of_doubles, exact); },
           {}},
          {"plain", [&] { plain = tesk2mp::eigen(a).values; }, [&] { return right_digits(plain, exact); }, {}},
          {"balls",
           [&] {
             acb_mat_t vectors;
             acb_mat_init(vectors, slong(n), slong(n));
             acb_mat_approx_eig_qr(enclosures, nullptr, vectors, balls.get(), nullptr, 0, kBits);
             isolated =
                 acb_mat_eig_simple(enclosures, nullptr, nullptr, balls.get(), enclosures, vectors, kBits) != 0 ||
                 acb_mat_eig_multiple(enclosures, balls.get(), enclosures, vectors, kBits) != 0;
             acb_mat_clear(vectors);
           },
           [&] {
             long fewest = isolated ? 99 : 0;
             for (std::size_t i = 0; isolated && i < n; ++i) {
               fewest = std::min(fewest, proven_digits(enclosures + i));
             }
             return fewest;
           },
           {}},
          {"proven",
           [&] { roots = proven::eigenvalues(a); },
           [&] { return long(proven::fewest_true_digits(roots)); },
           {}}},
         rounds);
  // Each ball beside the disc that is nearest to it.
  for (std::size_t i = 0; isolated && i < n; ++i) {
    const acb_struct* ball = enclosures + i;
    const auto middle = [](const arb_t x) {
      char* text = arb_get_str(x, 60, ARB_STR_NO_RADIUS);
      const Real result(text[0] == '[' ? "0" : text);
      flint_free(text);
      return result;
    };
    const Complex centre(middle(acb_realref(ball)), middle(acb_imagref(ball)));
    const auto nearest = std::min_element(roots.begin(), roots.end(), [&](const auto& one, const auto& other) {
      return size(one.value - centre) < size(other.value - centre);
    });
    check_meeting(acb_realref(ball), nearest->value.re, nearest->error);
    check_meeting(acb_imagref(ball), nearest->value.im, nearest->is_real ? QuarnBound() : nearest->error);
  }
  _acb_vec_clear(enclosures, slong(n));
}

void classic(const std::string& name, const Matrix<Real>& a) {
  constexpr int kWanted = 45;
  const std::size_t n = a.rows();
  Balls balls(a);
  acb_ptr enclosures = _acb_vec_init(slong(n));
  acb_mat_t vectors;
  acb_mat_init(vectors, slong(n), slong(n));
  acb_mat_approx_eig_qr(enclosures, nullptr, vectors, balls.get(), nullptr, 0, kBits);
  long by_balls = -1;
  if (acb_mat_eig_simple(enclosures, nullptr, nullptr, balls.get(), enclosures, vectors, kBits) != 0 ||
      acb_mat_eig_multiple(enclosures, balls.get(), enclosures, vectors, kBits) != 0) {
    by_balls = 99;
    for (std::size_t i = 0; i < n; ++i) {
      by_balls = std::min(by_balls, proven_digits(enclosures + i));
    }
  }
  acb_mat_clear(vectors);
  _acb_vec_clear(enclosures, slong(n));
  const auto roots = proven::eigenvalues(a);
  std::size_t count = 0;
  for (const auto& root : roots) {
    count = std::max(count, root.count);
  }
  int worked_with = 0;
  const auto more = proven::to_digits(kWanted, [&] {
    worked_with = QuarnDigits();
    return proven::eigenvalues(a);
  });
  std::printf("| %s | %zu | %s | %ld | %zu | %ld with %d |\n", name.c_str(), n,
              by_balls < 0 ? "none" : std::to_string(by_balls).c_str(), long(proven::fewest_true_digits(roots)), count,
              long(proven::fewest_true_digits(more)), worked_with);
}

/// A condition number of 10^exponent.
Matrix<Real> conditioned(std::size_t n, int exponent) {
  tesk2mp::Random random;
  std::vector<Real> values;
  for (std::size_t i = 0; i < n; ++i) {
    values.push_back(exp10(-Real(double(exponent)) * Real(double(i)) / Real(double(n - 1))));
  }
  return tesk2mp::gallery::random_values<Real>(values, random);
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::stoi(argv[1]) : 9;
  QuarnSetDigits(kDigits);
  std::puts(
      "| problem | doubles | 50 digits, plain | balls of 167 bits (Arb) | proven, 50 digits | proven / plain | "
      "proven / Arb |\n|---|---|---|---|---|---|---|");
  systems("solve, order 100, condition 1e5", conditioned(100, 5), rounds);
  systems("solve, order 100, condition 1e25", conditioned(100, 25), rounds);
  systems("solve, Hilbert's matrix of order 12 rounded to 50 digits", tesk2mp::gallery::hilbert(12), rounds);
  systems("solve, order 30, condition 1e45", conditioned(30, 45), rounds);
  tesk2mp::Random random;
  spectra("eigenvalues, random of order 32", tesk2mp::gallery::matrix("random_normal", 32, {}, random), rounds);
  spectra("eigenvalues, Frank's matrix of order 12", tesk2mp::gallery::frank(12), rounds);
  spectra("eigenvalues, Grcar's matrix of order 20", tesk2mp::gallery::grcar(20), rounds);
  spectra("eigenvalues, Clement's matrix of order 16", tesk2mp::gallery::clement(16), rounds);
  spectra("eigenvalues, Godunov's matrix", tesk2mp::gallery::godunov(), rounds);
  spectra("eigenvalues, a Jordan block of order 8", tesk2mp::gallery::jordan<Real>(8, 2), rounds);
  std::puts(
      "\n| matrix | order | Arb, 167 bits | 50 digits | largest set | proven with working digits "
      "|\n|---|---|---|---|---|---|");
  for (const auto& [name, order] : std::vector<std::pair<std::string, std::size_t>>{{"frank", 12},
                                                                                    {"grcar", 16},
                                                                                    {"jordan", 8},
                                                                                    {"triw", 8},
                                                                                    {"clement", 12},
                                                                                    {"kahan", 12},
                                                                                    {"wilkinson", 21},
                                                                                    {"godunov", 7},
                                                                                    {"rosser", 8},
                                                                                    {"chebyshev", 8},
                                                                                    {"lesp", 12},
                                                                                    {"forsythe", 10},
                                                                                    {"lotkin", 8},
                                                                                    {"pascal", 10}}) {
    classic(name, tesk2mp::gallery::matrix(name, order));
  }
  classic("companion of (z - 1)^4", tesk2mp::gallery::companion(std::vector<Real>{1, -4, 6, -4, 1}));
  return all_meet ? 0 : 1;
}
