// How much arithmetic the kernels do: no more operations, and no more copies, than the published algorithms.
//
// The library imports its arithmetic from the number library. This program exports operators of the same names, so that
// the library's calls come here, are counted, and go on to where they would have gone. Numbers are long enough for
// QuarnAddProduct to do its work by these operators.
#include <dlfcn.h>
#include <doctest/doctest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/tesk2mp.h"

namespace {

struct Counts {
  long multiplications = 0;
  long additions = 0;  // subtractions too
  long divisions = 0;  // roots too
  long copies = 0;
};
Counts counted;

/// The function of that name in the libraries that come after this program. The name of the number's class carries its
/// limb width.
template <class Function>
Function next(std::string name) {
  const std::string number = "10QuarnFloat";
  name.insert(name.find(number) + number.size(), "B6limb" + std::to_string(8 * sizeof(QuarnFloat::Limb)));
  void* const found = dlsym(RTLD_NEXT, name.c_str());
  REQUIRE(found != nullptr);
  return reinterpret_cast<Function>(found);
}

/// Whether the code at that address is the library's: the number library copies for reasons of its own.
bool in_library(void* address) {
  Dl_info info{};
  return dladdr(address, &info) != 0 && std::strstr(info.dli_fname, "tesk2mp") != nullptr;
}

using Binary = QuarnFloat (*)(const QuarnFloat&, const QuarnFloat&);
using Copy = void (*)(QuarnFloat*, const QuarnFloat&);

}  // namespace

QuarnFloat operator*(const QuarnFloat& a, const QuarnFloat& b) {
  static const auto multiply = next<Binary>("_ZmlRK10QuarnFloatS1_");
  ++counted.multiplications;
  return multiply(a, b);
}
QuarnFloat operator+(const QuarnFloat& a, const QuarnFloat& b) {
  static const auto add = next<Binary>("_ZplRK10QuarnFloatS1_");
  ++counted.additions;
  return add(a, b);
}
QuarnFloat operator-(const QuarnFloat& a, const QuarnFloat& b) {
  static const auto subtract = next<Binary>("_ZmiRK10QuarnFloatS1_");
  ++counted.additions;
  return subtract(a, b);
}
QuarnFloat operator/(const QuarnFloat& a, const QuarnFloat& b) {
  static const auto divide = next<Binary>("_ZdvRK10QuarnFloatS1_");
  ++counted.divisions;
  return divide(a, b);
}
QuarnFloat sqrt(const QuarnFloat& x) {
  static const auto root = next<QuarnFloat (*)(const QuarnFloat&)>("_Z4sqrtRK10QuarnFloat");
  ++counted.divisions;
  return root(x);
}

using InPlace = QuarnFloat& (*)(QuarnFloat*, const QuarnFloat&);

QuarnFloat& QuarnFloat::operator+=(const QuarnFloat& b) {
  static const auto add = next<InPlace>("_ZN10QuarnFloatpLERKS_");
  ++counted.additions;
  return add(this, b);
}
QuarnFloat& QuarnFloat::operator-=(const QuarnFloat& b) {
  static const auto subtract = next<InPlace>("_ZN10QuarnFloatmIERKS_");
  ++counted.additions;
  return subtract(this, b);
}
QuarnFloat& QuarnFloat::operator*=(const QuarnFloat& b) {
  static const auto multiply = next<InPlace>("_ZN10QuarnFloatmLERKS_");
  ++counted.multiplications;
  return multiply(this, b);
}
QuarnFloat& QuarnFloat::operator/=(const QuarnFloat& b) {
  static const auto divide = next<InPlace>("_ZN10QuarnFloatdVERKS_");
  ++counted.divisions;
  return divide(this, b);
}

Complex operator*(const Complex& a, const Complex& b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
Complex operator+(const Complex& a, const Complex& b) { return {a.re + b.re, a.im + b.im}; }
Complex operator-(const Complex& a, const Complex& b) { return {a.re - b.re, a.im - b.im}; }

// Numbers of more than 126 digits are copied by these two.
void QuarnFloat::clone(const QuarnFloat& other) {
  static const auto clone_next = next<Copy>("_ZN10QuarnFloat5cloneERKS_");
  counted.copies += in_library(__builtin_return_address(0)) ? 1 : 0;
  clone_next(this, other);
}
void QuarnFloat::assign_slowly(const QuarnFloat& other) {
  static const auto assign_next = next<Copy>("_ZN10QuarnFloat13assign_slowlyERKS_");
  counted.copies += in_library(__builtin_return_address(0)) ? 1 : 0;
  assign_next(this, other);
}

namespace {

constexpr Integer kM = 7;
constexpr Integer kN = 5;
constexpr Integer kK = 6;
constexpr Integer kLda = 8;

/// What the published algorithm does at most; a copy is an assignment of something that was not just computed.
struct Case {
  const char* name;
  std::function<void()> run;
  long multiplications;
  long additions;
  long divisions;
  long copies;
};

class Operands {
 public:
  template <class T>
  std::vector<T> make(std::size_t count) {
    std::vector<T> values(count);
    for (T& value : values) {
      set(value);
    }
    return values;
  }

 private:
  void set(QuarnFloat& x) { x = QuarnFloat("0.1" + random_.digits(198) + "7"); }
  void set(Complex& z) {
    set(z.re);
    set(z.im);
  }
  support::Random random_;
};

constexpr long triangle(long n) { return n * (n - 1) / 2; }

void check(const Case& each) {
  counted = Counts();
  each.run();
  const Counts done = counted;
  const std::string name = each.name;
  CAPTURE(name);
  CHECK(done.multiplications <= each.multiplications);
  CHECK(done.additions <= each.additions);
  CHECK(done.divisions <= each.divisions);
  CHECK(done.copies <= each.copies);
  // The calls do come here.
  CHECK((done.multiplications + done.additions) * 2 > each.multiplications + each.additions);
}

}  // namespace

TEST_CASE("the kernels do no more than the published algorithms") {
  const support::Digits digits(200);
  Operands operands;
  auto a = operands.make<QuarnFloat>(kLda * kLda);
  auto b = operands.make<QuarnFloat>(kLda * kLda);
  auto c = operands.make<QuarnFloat>(kLda * kLda);
  auto x = operands.make<QuarnFloat>(kLda);
  auto y = operands.make<QuarnFloat>(kLda);
  const QuarnFloat alpha = operands.make<QuarnFloat>(1)[0];
  const QuarnFloat beta = operands.make<QuarnFloat>(1)[0];
  auto za = operands.make<Complex>(kLda * kLda);
  auto zb = operands.make<Complex>(kLda * kLda);
  auto zc = operands.make<Complex>(kLda * kLda);
  auto zx = operands.make<Complex>(kLda);
  auto zy = operands.make<Complex>(kLda);
  const Complex zalpha = operands.make<Complex>(1)[0];
  const Complex zbeta = operands.make<Complex>(1)[0];
  std::vector<Complex> definite = za;
  for (std::size_t i = 0; i < definite.size(); i += kLda + 1) {
    definite[i] = Complex(QuarnFloat("99." + std::string(198, '7')));
  }
  std::vector<Integer> ipiv(kLda);
  Integer info = 0;

  // A complex product is 4 multiplications and 2 additions, a complex sum 2 additions.
  const long lu_products = [] {
    long products = 0;
    for (long k = 1; k <= kN; ++k) {
      products += (kM - k) * (kN - k);
    }
    return products;
  }();
  // Copies of dgetrf: a factor a column of each update, and the magnitudes that pivots are chosen by.
  const long lu_scaled = kN * kM - kN * (kN + 1) / 2;  // elements of L
  const long cholesky_products = [] {
    long products = 0;
    for (long j = 1; j <= kM; ++j) {
      products += (j - 1) * (kM - j);
    }
    return products;
  }();

  const Case cases[] = {
      {"dgemv N", [&] { QuarnMP_dgemv_("N", kM, kN, alpha, a.data(), kLda, x.data(), 1, beta, y.data(), 1, 1); },
       kM + kN + kM * kN, kM * kN, 0, kN},
      {"dgemv T", [&] { QuarnMP_dgemv_("T", kM, kN, alpha, a.data(), kLda, x.data(), 1, beta, y.data(), 1, 1); },
       2 * kN + kM * kN, kN + kM * kN, 0, 0},
      {"zgemv C", [&] { QuarnMP_zgemv_("C", kM, kN, zalpha, za.data(), kLda, zx.data(), 1, zbeta, zy.data(), 1, 1); },
       4 * (2 * kN + kM * kN), 2 * (3 * kN + 2 * kM * kN), 0, 0},
      {"dtrmv", [&] { QuarnMP_dtrmv_("U", "N", "N", kN, a.data(), kLda, x.data(), 1, 1, 1, 1); }, triangle(kN) + kN,
       triangle(kN), 0, kN},
      {"dtrsv", [&] { QuarnMP_dtrsv_("U", "N", "N", kN, a.data(), kLda, x.data(), 1, 1, 1, 1); }, triangle(kN),
       triangle(kN), kN, kN},
      {"dtrsv T", [&] { QuarnMP_dtrsv_("L", "T", "U", kN, a.data(), kLda, x.data(), 1, 1, 1, 1); }, triangle(kN),
       triangle(kN), 0, 2 * kN},
      {"dger", [&] { QuarnMP_dger_(kM, kN, alpha, x.data(), 1, y.data(), 1, a.data(), kLda); }, kN + kM * kN, kM * kN,
       0, kN},
      {"zgerc", [&] { QuarnMP_zgerc_(kM, kN, zalpha, zx.data(), 1, zy.data(), 1, za.data(), kLda); },
       4 * (kN + kM * kN), 2 * (kN + 2 * kM * kN), 0, 2 * kN},
      {"dgemm, beta 0",
       [&] { QuarnMP_dgemm_("N", "N", kM, kN, kK, alpha, a.data(), kLda, b.data(), kLda, 0, c.data(), kLda, 1, 1); },
       kN * kK + kM * kN * kK, kM * kN * kK, 0, kM * kN + kN * kK},
      {"dgemm T, beta",
       [&] { QuarnMP_dgemm_("T", "N", kM, kN, kK, alpha, a.data(), kLda, b.data(), kLda, beta, c.data(), kLda, 1, 1); },
       2 * kM * kN + kM * kN * kK, kM * kN + kM * kN * kK, 0, 0},
      {"zgemm",
       [&] {
         QuarnMP_zgemm_("N", "N", kM, kN, kK, zalpha, za.data(), kLda, zb.data(), kLda, Complex(0), zc.data(), kLda, 1,
                        1);
       },
       4 * (kN * kK + kM * kN * kK), 2 * (kN * kK + 2 * kM * kN * kK), 0, 2 * (kM * kN + kN * kK)},
      {"dgemm T T",
       [&] { QuarnMP_dgemm_("T", "T", kM, kN, kK, alpha, a.data(), kLda, b.data(), kLda, 0, c.data(), kLda, 1, 1); },
       kM * kN + kM * kN * kK, kM * kN * (kK + 1), 0, kM * kN},
      {"ztrmv", [&] { QuarnMP_ztrmv_("U", "N", "N", kN, za.data(), kLda, zx.data(), 1, 1, 1, 1); },
       4 * (triangle(kN) + kN), 4 * triangle(kN) + 2 * kN, 0, 2 * kN},
      {"ztrsv C", [&] { QuarnMP_ztrsv_("U", "C", "N", kN, za.data(), kLda, zx.data(), 1, 1, 1, 1); },
       4 * triangle(kN) + 5 * kN, 4 * triangle(kN) + 3 * kN, 2 * kN, 4 * kN},
      {"zgeru", [&] { QuarnMP_zgeru_(kM, kN, zalpha, zx.data(), 1, zy.data(), 1, za.data(), kLda); },
       4 * (kN + kM * kN), 2 * (kN + 2 * kM * kN), 0, 2 * kN},
      {"ztrsm",
       [&] { QuarnMP_ztrsm_("L", "U", "N", "N", kM, kN, zalpha, za.data(), kLda, zb.data(), kLda, 1, 1, 1, 1); },
       kN * (9 * kM + 4 * triangle(kM)), kN * (5 * kM + 4 * triangle(kM)), 2 * kN * kM, 2 * kN * kM},
      {"zgemm C C",
       [&] {
         QuarnMP_zgemm_("C", "C", kM, kN, kK, zalpha, za.data(), kLda, zb.data(), kLda, Complex(0), zc.data(), kLda, 1,
                        1);
       },
       4 * kM * kN * (kK + 1), 4 * kM * kN * (kK + 1), 0, 2 * kM * kN},
      {"dtrsm", [&] { QuarnMP_dtrsm_("L", "U", "N", "N", kM, kN, alpha, a.data(), kLda, b.data(), kLda, 1, 1, 1, 1); },
       kN * (kM + triangle(kM)), kN * triangle(kM), kN * kM, 0},
      {"zherk", [&] { QuarnMP_zherk_("U", "N", kN, kK, alpha, za.data(), kLda, beta, zc.data(), kLda, 1, 1); },
       2 * kK * kN + 4 * kK * triangle(kN + 1) + 2 * triangle(kN) + kN, 4 * kK * triangle(kN) + 2 * kK * kN, 0,
       2 * kK * kN},
      {"dgetrf", [&] { QuarnMP_dgetrf_(kM, kN, a.data(), kLda, ipiv.data(), &info); },
       lu_scaled + triangle(kN) + lu_products, lu_products, kN, kM * kN},
      {"zpotrf",
       [&] {
         auto given = definite;
         counted = Counts();
         QuarnMP_zpotrf_("U", kM, given.data(), kLda, &info, 1);
       },
       4 * cholesky_products + 2 * triangle(kM) + 2 * triangle(kM),
       4 * cholesky_products + 2 * triangle(kM) + 2 * triangle(kM) + kM, 2 * kM, 0},
      {"zpotrf L",
       [&] {
         auto given = definite;
         counted = Counts();
         QuarnMP_zpotrf_("L", kM, given.data(), kLda, &info, 1);
       },
       4 * cholesky_products + 2 * triangle(kM) + 2 * triangle(kM),
       4 * cholesky_products + 2 * triangle(kM) + 2 * triangle(kM) + kM, 2 * kM, 0},
  };
  for (const Case& each : cases) {
    check(each);
  }
}

TEST_CASE("norms do no more than the published algorithms") {
  const support::Digits digits(200);
  Operands operands;
  auto a = operands.make<QuarnFloat>(kLda * kLda);
  auto za = operands.make<Complex>(kLda * kLda);
  auto work = operands.make<QuarnFloat>(kLda);
  constexpr long kElements = kM * kN;
  // A copy an element for its magnitude, and one a sum or column for the largest so far.
  const Case cases[] = {
      {"one-norm", [&] { QuarnMP_f06raf_("1", kM, kN, a.data(), kLda, work.data(), 1); }, 0, kElements, 0,
       kElements + kN},
      {"infinity-norm", [&] { QuarnMP_f06raf_("I", kM, kN, a.data(), kLda, work.data(), 1); }, 0, kElements, 0,
       kElements + 2 * kM},
      {"Frobenius norm", [&] { QuarnMP_f06raf_("F", kM, kN, a.data(), kLda, work.data(), 1); }, 2 * kElements + 1,
       kElements, kElements + 1, 2 * kElements},
      {"complex one-norm", [&] { QuarnMP_f06uaf_("1", kM, kN, za.data(), kLda, work.data(), 1); }, 2 * kElements,
       2 * kElements, kElements, kN},
      {"norm of a vector", [&] { QuarnMP_f06ejf_(kM, a.data(), 1); }, 2 * kM + 1, kM, kM + 1, 2 * kM},
  };
  for (const Case& each : cases) {
    check(each);
  }
}

// NaN never deflates, so that the number of sweeps is known: the iteration limit. (NaN has no digits to copy, so that
// copies do not count here.)
TEST_CASE("a double-shift sweep does no more than the published algorithm") {
  const support::Digits digits(200);
  std::vector<QuarnFloat> h(kLda * kLda, QuarnFloat("nan"));
  auto z = h;
  auto wr = h;
  auto wi = h;
  Integer info = 0;
  Case qr{"dlahqr",
          [&] {
            QuarnMP_f08pez_(1, 1, kM, 1, kM, h.data(), kLda, wr.data(), wi.data(), 1, kM, z.data(), kLda, &info); },
          0,
          0,
          0,
          0};
  // The test of the subdiagonal and the shifts; then the start of the sweep is looked for all the way up.
  qr.multiplications = (kM - 1) + 3 + 4 * (kM - 2);
  qr.additions = (kM - 1) + 2 + 12 * (kM - 2);
  qr.divisions = 4 * (kM - 2);
  for (long k = 1; k < kM; ++k) {
    const long elements = std::min(3L, kM - k + 1);
    // The reflector: a norm of all elements but the first, the length, the factor, the scaled vector, v times factor.
    qr.multiplications += 2 * (elements - 1) + 1 + 2 + 2 * (elements - 1);
    qr.additions += (elements - 1) + 1 + 2;
    qr.divisions += (elements - 1) + 1 + 2 + 2;
    const long vectors = (kM - k + 1) + std::min<long>(k + 3, kM) + kM;
    qr.multiplications += vectors * (2 * elements - 1);
    qr.additions += vectors * (2 * elements - 1);
  }
  constexpr long kSweeps = 30 * kM;
  qr.multiplications = kSweeps * qr.multiplications + kM;
  qr.additions = kSweeps * qr.additions + kM;
  qr.divisions = kSweeps * qr.divisions + kM;
  check(qr);
  CHECK(info == kM);
}
