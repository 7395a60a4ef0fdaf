// Test matrices with known properties, one table of them: N. J. Higham, Accuracy and Stability of Numerical Algorithms,
// 2nd ed., SIAM 2002, chapter 28; R. T. Gregory, D. L. Karney, A Collection of Matrices for Testing Computational
// Algorithms, Wiley 1969.
#include "src/dense/gallery.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "quarn/complex.h"
#include "quarn/functions.h"
#include "src/dense/guard_digits.h"
#include "tesk2mp/gallery.h"

namespace tesk::gallery {
namespace {

template <class T>
Integer hilbert(const Request<T>& request) {
  request.each([](Integer i, Integer j) { return QuarnFloat(1) / (i + j - 1); });
  return 0;
}

template <class T>
Integer inverse_hilbert(const Request<T>& request) {
  // p(i) p(j) / (i + j - 1) with p(i) = (-1)^(i+1) (n+i-1)! / ((i-1)!^2 (n-i)!)
  const Integer n = request.n;
  std::vector<QuarnFloat> p(static_cast<std::size_t>(n), QuarnFloat(n));
  for (Integer i = 1; i < n; ++i) {
    p[std::size_t(i)] = -(p[std::size_t(i - 1)] * (n + i) * (n - i)) / (QuarnFloat(i) * i);
  }
  request.each([&](Integer i, Integer j) { return p[std::size_t(i - 1)] * p[std::size_t(j - 1)] / (i + j - 1); });
  return 0;
}

template <class T>
Integer lotkin(const Request<T>& request) {
  request.each([](Integer i, Integer j) { return i == 1 ? QuarnFloat(1) : QuarnFloat(1) / (i + j - 1); });
  return 0;
}

template <class T>
Integer frank(const Request<T>& request) {
  request.each([n = request.n](Integer i, Integer j) { return QuarnFloat(j >= i - 1 ? n + 1 - std::max(i, j) : 0); });
  return 0;
}

template <class T>
Integer grcar(const Request<T>& request) {
  const T bands = request.parameter(1, T(3.0));
  request.each([&](Integer i, Integer j) {
    const bool above = j >= i && !(modulus(bands) < QuarnFloat(j - i));
    return QuarnFloat(i == j + 1 ? -1 : above ? 1 : 0);
  });
  return 0;
}

template <class T>
Integer kahan(const Request<T>& request) {
  const T angle = request.parameter(1, quotient(T(6.0), T(5.0)));
  const T c = cos(angle);
  const T s = sin(angle);
  T power(1.0);
  for (Integer i = 1; i <= request.n; ++i) {
    for (Integer j = 1; j <= request.n; ++j) {
      request.a(i, j) = j < i ? T() : j == i ? power : -(c * power);
    }
    power = power * s;
  }
  return 0;
}

template <class T>
Integer wilkinson(const Request<T>& request) {
  request.each([n = request.n](Integer i, Integer j) {
    return i == j ? fabs(QuarnFloat(n + 1) / 2 - i) : QuarnFloat(std::abs(i - j) == 1 ? 1 : 0);
  });
  return 0;
}

template <class T>
Integer clement(const Request<T>& request) {
  const bool symmetric = !is_zero(request.parameter(1, T()));
  request.each([n = request.n, symmetric](Integer i, Integer j) {
    if (std::abs(i - j) != 1) {
      return QuarnFloat();
    }
    const Integer k = std::min(i, j);
    return symmetric ? sqrt(QuarnFloat(k) * (n - k)) : QuarnFloat(i < j ? k : n - k);
  });
  return 0;
}

template <std::size_t kSize, class T>
Integer stored(const int (&elements)[kSize][kSize], const Request<T>& request) {
  if (request.n != Integer(kSize)) {
    return kOrder;
  }
  request.each([&](Integer i, Integer j) { return QuarnFloat(elements[i - 1][j - 1]); });
  return 0;
}

template <class T>
Integer godunov(const Request<T>& request) {
  constexpr int kElements[7][7] = {{289, 2064, 336, 128, 80, 32, 16},
                                   {1152, 30, 1312, 512, 288, 128, 32},
                                   {-29, -2000, 756, 384, 1008, 224, 48},
                                   {512, 128, 640, 0, 640, 512, 128},
                                   {1053, 2256, -504, -384, -756, 800, 208},
                                   {-287, -16, 1712, -128, 1968, -30, 2032},
                                   {-2176, -287, -1565, -512, -541, -1152, -289}};
  return stored(kElements, request);
}

template <class T>
Integer rosser(const Request<T>& request) {
  constexpr int kElements[8][8] = {{611, 196, -192, 407, -8, -52, -49, 29}, {196, 899, 113, -192, -71, -43, -8, -44},
                                   {-192, 113, 899, 196, 61, 49, 8, 52},    {407, -192, 196, 611, 8, 44, 59, -23},
                                   {-8, -71, 61, 8, 411, -599, 208, 208},   {-52, -43, 49, 44, -599, 411, 208, 208},
                                   {-49, -8, 8, 59, 208, 208, 99, -911},    {29, -44, 52, -23, 208, 208, -911, 99}};
  return stored(kElements, request);
}

template <class T>
Integer chebyshev(const Request<T>& request) {
  // On the points cos(pi i / m), i = skipped ... m; differences of two of them are products of sines.
  const Integer skipped = is_zero(request.parameter(1, T())) ? 0 : 1;
  const Integer m = request.n - 1 + skipped;
  if (m == 0) {
    request.each([](Integer /*i*/, Integer /*j*/) { return QuarnFloat(); });
    return 0;
  }
  request.each([&](Integer row, Integer column) {
    const Integer i = row - 1 + skipped;
    const Integer j = column - 1 + skipped;
    if (i == j && (i == 0 || i == m)) {
      const QuarnFloat corner = (2 * QuarnFloat(m) * m + 1) / 6;
      return i == 0 ? corner : -corner;
    }
    const auto sine = [&](Integer k) { return sinpi(QuarnFloat(k) / (2 * QuarnFloat(m))); };
    if (i == j) {
      const QuarnFloat s = sine(2 * i);
      return -cospi(QuarnFloat(i) / m) / (2 * s * s);
    }
    const auto weight = [&](Integer k) { return k == 0 || k == m ? 2 : 1; };
    const QuarnFloat ratio = QuarnFloat(weight(i)) / (weight(j) * 2 * sine(i + j) * sine(j - i));
    return (i + j) % 2 == 0 ? ratio : -ratio;
  });
  return 0;
}

template <class T>
Integer lehmer(const Request<T>& request) {
  request.each([](Integer i, Integer j) { return QuarnFloat(std::min(i, j)) / std::max(i, j); });
  return 0;
}

template <class T>
Integer pascal(const Request<T>& request) {
  request.each(
      [&](Integer i, Integer j) { return i == 1 || j == 1 ? T(1.0) : request.a(i - 1, j) + request.a(i, j - 1); });
  return 0;
}

template <class T>
Integer toeplitz(const Request<T>& request) {
  const bool symmetric = request.count <= request.n;
  request.each([&](Integer i, Integer j) {
    return request.parameters(i >= j ? i - j + 1 : symmetric ? j - i + 1 : request.n + j - i);
  });
  return 0;
}

template <class T>
Integer hankel(const Request<T>& request) {
  request.each([&](Integer i, Integer j) { return request.parameters(i + j - 1); });
  return 0;
}

template <class T>
Integer circulant(const Request<T>& request) {
  request.each([&](Integer i, Integer j) { return request.parameters((j - i + request.n) % request.n + 1); });
  return 0;
}

template <class T>
Integer vandermonde(const Request<T>& request) {
  for (Integer i = 1; i <= request.n; ++i) {
    const T node = request.parameter(i, T(double(i)));
    T power(1.0);
    for (Integer j = request.n; j >= 1; --j) {
      request.a(i, j) = power;
      power = power * node;
    }
  }
  return 0;
}

template <class T>
Integer companion(const Request<T>& request) {
  if (is_zero(request.parameters(1))) {
    return kParameters;
  }
  request.each([&](Integer i, Integer j) {
    return i == 1 ? -quotient(request.parameters(j + 1), request.parameters(1)) : T(i == j + 1 ? 1.0 : 0.0);
  });
  return 0;
}

template <class T>
Integer cauchy(const Request<T>& request) {
  Integer wrong = 0;
  request.each([&](Integer i, Integer j) {
    const T sum = request.parameter(i, T(double(i))) + request.parameter(request.n + j, T(double(j)));
    wrong = is_zero(sum) ? kParameters : wrong;
    return is_zero(sum) ? T() : quotient(T(1.0), sum);
  });
  return wrong;
}

template <class T>
Integer jordan(const Request<T>& request) {
  request.each([value = request.parameter(1, T(1.0))](Integer i, Integer j) {
    return i == j ? value : T(j == i + 1 ? 1.0 : 0.0);
  });
  return 0;
}

template <class T>
Integer forsythe(const Request<T>& request) {
  const T corner = request.parameter(1, T(QuarnFloat(1, -request.digits / 2)));
  const T value = request.parameter(2, T());
  request.each([&](Integer i, Integer j) {
    const T element = i == j ? value : T(j == i + 1 ? 1.0 : 0.0);
    return i == request.n && j == 1 ? element + corner : element;
  });
  return 0;
}

template <class T>
Integer moler(const Request<T>& request) {
  request.each([](Integer i, Integer j) { return QuarnFloat(i == j ? i : std::min(i, j) - 2); });
  return 0;
}

template <class T>
Integer minij(const Request<T>& request) {
  request.each([](Integer i, Integer j) { return QuarnFloat(std::min(i, j)); });
  return 0;
}

template <class T>
Integer fiedler(const Request<T>& request) {
  request.each([&](Integer i, Integer j) {
    const T difference = request.parameter(i, T(double(i))) - request.parameter(j, T(double(j)));
    return modulus(difference);
  });
  return 0;
}

template <class T>
Integer tridiagonal(const Request<T>& request) {
  const T below = request.parameter(1, T(-1.0));
  const T diagonal = request.parameter(2, T(2.0));
  const T above = request.parameter(3, T(-1.0));
  request.each([&](Integer i, Integer j) { return i == j ? diagonal : i == j + 1 ? below : j == i + 1 ? above : T(); });
  return 0;
}

template <class T>
Integer kms(const Request<T>& request) {
  const T rho = request.parameter(1, T(0.5));
  std::vector<T> powers(static_cast<std::size_t>(request.n), T(1.0));
  for (std::size_t k = 1; k < powers.size(); ++k) {
    powers[k] = powers[k - 1] * rho;
  }
  request.each([&](Integer i, Integer j) {
    const T& power = powers[std::size_t(std::abs(i - j))];
    return i > j ? conjugate(power) : power;
  });
  return 0;
}

template <class T>
Integer parter(const Request<T>& request) {
  request.each([](Integer i, Integer j) { return QuarnFloat(2) / (2 * (i - j) + 1); });
  return 0;
}

template <class T>
Integer ris(const Request<T>& request) {
  request.each([n = request.n](Integer i, Integer j) { return QuarnFloat(1) / (2 * (n - i - j) + 3); });
  return 0;
}

template <class T>
Integer triw(const Request<T>& request) {
  request.each([value = request.parameter(1, T(-1.0))](Integer i, Integer j) {
    return i == j ? T(1.0) : j > i ? value : T();
  });
  return 0;
}

template <class T>
Integer lesp(const Request<T>& request) {
  request.each([](Integer i, Integer j) {
    return i == j ? QuarnFloat(-2 * i - 3) : j == i + 1 ? QuarnFloat(j) : i == j + 1 ? QuarnFloat(1) / i : QuarnFloat();
  });
  return 0;
}

template <class T>
Integer hadamard(const Request<T>& request) {
  if ((request.n & (request.n - 1)) != 0) {
    return kOrder;
  }
  request.each([](Integer i, Integer j) {
    int sign = 1;
    for (unsigned common = unsigned(i - 1) & unsigned(j - 1); common != 0; common &= common - 1) {
      sign = -sign;
    }
    return QuarnFloat(sign);
  });
  return 0;
}

/// factor n + extra, never below 0.
struct Count {
  Integer factor;
  Integer extra;

  bool is(Integer n, Integer count) const {
    return std::max<std::int64_t>(0, std::int64_t(factor) * n + extra) == count;
  }
};

struct Row {
  const char* name;
  const char* parameters;
  const char* purpose;
  std::vector<Count> counts;  // of parameters that there may be
  Build<QuarnFloat> real;
  Build<Complex> complex;
  bool random = false;
};

const std::vector<Row>& table() {
  static const std::vector<Row> kTable = {
      {"cauchy",
       "[x1 ... xn y1 ... yn]",
       "1 / (x(i) + y(j)); x = y = 1 ... n",
       {{0, 0}, {2, 0}},
       cauchy<QuarnFloat>,
       cauchy<Complex>},
      {"chebyshev",
       "[kind]",
       "differentiation at Chebyshev's points: kind 0 nilpotent, 1 regular",
       {{0, 0}, {0, 1}},
       chebyshev<QuarnFloat>,
       chebyshev<Complex>},
      {"circulant",
       "c1 ... cn",
       "each row is the one above it, moved on by one",
       {{1, 0}},
       circulant<QuarnFloat>,
       circulant<Complex>},
      {"clement",
       "[symmetric]",
       "tridiagonal, eigenvalues n - 1, n - 3, ..., 1 - n",
       {{0, 0}, {0, 1}},
       clement<QuarnFloat>,
       clement<Complex>},
      {"companion",
       "a0 ... an",
       "its eigenvalues are the zeros of a0 x^n + ... + an",
       {{1, 1}},
       companion<QuarnFloat>,
       companion<Complex>},
      {"fiedler", "[c1 ... cn]", "|c(i) - c(j)|; c = 1 ... n", {{0, 0}, {1, 0}}, fiedler<QuarnFloat>, fiedler<Complex>},
      {"forsythe",
       "[corner [value]]",
       "a Jordan block with another element in its corner",
       {{0, 0}, {0, 1}, {0, 2}},
       forsythe<QuarnFloat>,
       forsythe<Complex>},
      {"frank",
       "",
       "Hessenberg, determinant 1, half of the eigenvalues badly conditioned",
       {{0, 0}},
       frank<QuarnFloat>,
       frank<Complex>},
      {"godunov",
       "",
       "order 7, eigenvalues -4, -2, -1, 0, 1, 2, 4, badly conditioned",
       {{0, 0}},
       godunov<QuarnFloat>,
       godunov<Complex>},
      {"grcar",
       "[bands]",
       "Toeplitz, with sensitive eigenvalues; 3 bands above the diagonal",
       {{0, 0}, {0, 1}},
       grcar<QuarnFloat>,
       grcar<Complex>},
      {"hadamard",
       "",
       "orthogonal columns of 1 and -1, n a power of two",
       {{0, 0}},
       hadamard<QuarnFloat>,
       hadamard<Complex>},
      {"hankel", "c1 ... c(2n-1)", "c(i + j - 1)", {{2, -1}}, hankel<QuarnFloat>, hankel<Complex>},
      {"hilbert", "", "1 / (i + j - 1)", {{0, 0}}, hilbert<QuarnFloat>, hilbert<Complex>},
      {"inverse_hilbert",
       "",
       "the inverse of the Hilbert matrix, whole numbers",
       {{0, 0}},
       inverse_hilbert<QuarnFloat>,
       inverse_hilbert<Complex>},
      {"jordan", "[value]", "a Jordan block; value 1", {{0, 0}, {0, 1}}, jordan<QuarnFloat>, jordan<Complex>},
      {"kahan",
       "[angle]",
       "upper triangular, where QR with pivoting misses the rank; angle 1.2",
       {{0, 0}, {0, 1}},
       kahan<QuarnFloat>,
       kahan<Complex>},
      {"kms", "[rho]", "rho^|i - j|; rho 1/2", {{0, 0}, {0, 1}}, kms<QuarnFloat>, kms<Complex>},
      {"lehmer", "", "min(i, j) / max(i, j), positive definite", {{0, 0}}, lehmer<QuarnFloat>, lehmer<Complex>},
      {"lesp", "", "tridiagonal, with real and sensitive eigenvalues", {{0, 0}}, lesp<QuarnFloat>, lesp<Complex>},
      {"lotkin", "", "the Hilbert matrix with a first row of ones", {{0, 0}}, lotkin<QuarnFloat>, lotkin<Complex>},
      {"minij", "", "min(i, j), positive definite, determinant 1", {{0, 0}}, minij<QuarnFloat>, minij<Complex>},
      {"moler",
       "",
       "positive definite, determinant 1, one small eigenvalue",
       {{0, 0}},
       moler<QuarnFloat>,
       moler<Complex>},
      {"parter", "", "1 / (i - j + 1/2), singular values near pi", {{0, 0}}, parter<QuarnFloat>, parter<Complex>},
      {"pascal",
       "",
       "binomial coefficients, positive definite, determinant 1",
       {{0, 0}},
       pascal<QuarnFloat>,
       pascal<Complex>},
      {"random_definite",
       "[condition | values]",
       "symmetric or Hermitian, of given eigenvalues",
       {{0, 0}, {0, 1}, {1, 0}},
       random_definite<QuarnFloat>,
       random_definite<Complex>,
       true},
      {"random_normal", "", "normal numbers", {{0, 0}}, random_normal<QuarnFloat>, random_normal<Complex>, true},
      {"random_orthogonal",
       "",
       "orthogonal or unitary, each as probable as any other",
       {{0, 0}},
       random_orthogonal<QuarnFloat>,
       random_orthogonal<Complex>,
       true},
      {"random_sparse",
       "[density]",
       "zeros but for a tenth, or that part, of the elements",
       {{0, 0}, {0, 1}},
       random_sparse<QuarnFloat>,
       random_sparse<Complex>,
       true},
      {"random_symmetric",
       "",
       "symmetric or Hermitian, numbers on (-1, 1)",
       {{0, 0}},
       random_symmetric<QuarnFloat>,
       random_symmetric<Complex>,
       true},
      {"random_uniform", "", "numbers on (-1, 1)", {{0, 0}}, random_uniform<QuarnFloat>, random_uniform<Complex>, true},
      {"random_values",
       "[condition | values]",
       "of given singular values, or a geometric row of them",
       {{0, 0}, {0, 1}, {1, 0}},
       random_values<QuarnFloat>,
       random_values<Complex>,
       true},
      {"ris",
       "",
       "1 / (2 (n - i - j) + 3), eigenvalues near pi / 2 and -pi / 2",
       {{0, 0}},
       ris<QuarnFloat>,
       ris<Complex>},
      {"rosser",
       "",
       "order 8, eigenvalues that are double, close, and zero",
       {{0, 0}},
       rosser<QuarnFloat>,
       rosser<Complex>},
      {"toeplitz",
       "c1 ... cn [r2 ... rn]",
       "first column c, first row r; symmetric without r",
       {{1, 0}, {2, -1}},
       toeplitz<QuarnFloat>,
       toeplitz<Complex>},
      {"tridiagonal",
       "[below diagonal above]",
       "constant diagonals; -1, 2, -1",
       {{0, 0}, {0, 3}},
       tridiagonal<QuarnFloat>,
       tridiagonal<Complex>},
      {"triw",
       "[value]",
       "upper triangular, ones and the value; -1",
       {{0, 0}, {0, 1}},
       triw<QuarnFloat>,
       triw<Complex>},
      {"vandermonde",
       "[x1 ... xn]",
       "powers n - 1 ... 0 of each x; x = 1 ... n",
       {{0, 0}, {1, 0}},
       vandermonde<QuarnFloat>,
       vandermonde<Complex>},
      {"wilkinson",
       "",
       "tridiagonal, with pairs of very close eigenvalues",
       {{0, 0}},
       wilkinson<QuarnFloat>,
       wilkinson<Complex>}};
  return kTable;
}

const Row* row_of(const char* name) {
  const auto found =
      std::find_if(table().begin(), table().end(), [&](const Row& row) { return std::strcmp(row.name, name) == 0; });
  return found == table().end() ? nullptr : &*found;
}

/// Four numbers below 32768, not all zero.
bool is_seed(const Integer* seed) {
  constexpr Integer kModulus = 32768;
  return seed != nullptr && std::all_of(seed, seed + 4, [](Integer word) { return word >= 0 && word < kModulus; }) &&
         std::any_of(seed, seed + 4, [](Integer word) { return word != 0; });
}

Build<QuarnFloat> builder(const Row& row, QuarnFloat /*kind*/) { return row.real; }
Build<Complex> builder(const Row& row, const Complex& /*kind*/) { return row.complex; }

template <class T>
Integer make(const char* name, Integer n, const T* parameters, Integer count, Integer* iseed, T* a, Integer lda) {
  const Row* row = row_of(name);
  const bool counted = row != nullptr && std::any_of(row->counts.begin(), row->counts.end(),
                                                     [&](const Count& c) { return c.is(n, count); });
  const Integer wrong = first_wrong({{row == nullptr, 1},
                                     {n < 0, kOrder},
                                     {!counted, 4},
                                     {row != nullptr && row->random && !is_seed(iseed), 5},
                                     {lda < std::max<Integer>(1, n), 7}});
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  Integer refused = 0;
  {
    constexpr int kMore = 2;
    const int digits = QuarnDigits();
    const WorkingDigits more(guarded_digits(n) + kMore);
    refused = builder(*row, T())({n, {parameters, 1}, count, digits, iseed, {a, lda}});
  }
  if (refused == 0) {
    round_elements<T>(n, n, {a, lda});
  }
  return -refused;
}

}  // namespace
}  // namespace tesk::gallery

extern "C" {

void QuarnMPX_dgallery_(const char* name, Integer n, const QuarnFloat* parameters, Integer count, Integer* iseed,
                        QuarnFloat* a, Integer lda, Integer* info, int /*name_length*/) {
  *info = tesk::gallery::make(name, n, parameters, count, iseed, a, lda);
}

void QuarnMPX_zgallery_(const char* name, Integer n, const Complex* parameters, Integer count, Integer* iseed,
                        Complex* a, Integer lda, Integer* info, int /*name_length*/) {
  *info = tesk::gallery::make(name, n, parameters, count, iseed, a, lda);
}

const char* QuarnMPX_gallery_text_(Integer row, Integer field) {
  const auto& table = tesk::gallery::table();
  if (row < 1 || row > Integer(table.size()) || field < 1 || field > 3) {
    return nullptr;
  }
  const auto& found = table[std::size_t(row - 1)];
  return field == 1 ? found.name : field == 2 ? found.parameters : found.purpose;
}
}
