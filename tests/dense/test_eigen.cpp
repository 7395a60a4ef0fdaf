#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <vector>

#include "src/dense/tuning.h"
#include "support/digits.h"
#include "support/matrices.h"
#include "tesk2mp/dense.h"

using support::largest_difference;
using support::Matrix;
using support::RandomNumbers;
using tesk::Op;

namespace {

Matrix<QuarnFloat> identity(Integer n) {
  Matrix<QuarnFloat> a(n, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      a(i, j) = i == j ? 1 : 0;
    }
  }
  return a;
}

Matrix<QuarnFloat> random_hessenberg(RandomNumbers& random, Integer n) {
  Matrix<QuarnFloat> h = identity(n).randomise(random);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = j + 2; i <= n; ++i) {
      h(i, j) = 0;
    }
  }
  return h;
}

/// The tuning values that choose the path, put back at the end.
class QrPath {
 public:
  QrPath(Integer shifts, Integer block) { set(shifts, block); }
  ~QrPath() { set(1, 1); }
  QrPath(const QrPath&) = delete;
  QrPath& operator=(const QrPath&) = delete;

 private:
  static void set(Integer shifts, Integer block) {
    QuarnMP_f07zaz_(4, "F08PEF", &shifts, 1, 6);
    QuarnMP_f07zaz_(8, "F08PEF", &block, 1, 6);
  }
};

struct Schur {
  Matrix<QuarnFloat> t;
  Matrix<QuarnFloat> z;
  std::vector<QuarnFloat> wr;
  std::vector<QuarnFloat> wi;
  Integer info = -99;

  Schur(const Matrix<QuarnFloat>& h, const char* job, const char* compz, Integer ilo = 1, Integer ihi = -1)
      : t(h), z(identity(h.rows())), wr(std::size_t(h.rows())), wi(std::size_t(h.rows())) {
    std::vector<QuarnFloat> work(std::size_t(std::max<Integer>(1, h.rows())));
    QuarnMP_f08pef_(job, compz, h.rows(), ilo, ihi < 0 ? h.rows() : ihi, t.data(), t.lda(), wr.data(), wi.data(),
                    z.data(), z.lda(), work.data(), std::max<Integer>(1, h.rows()), &info, 1, 1);
  }
};

/// Eigenvalues in an order of their own, to compare two computations.
std::vector<Complex> sorted(const Schur& schur) {
  std::vector<Complex> values;
  for (std::size_t i = 0; i < schur.wr.size(); ++i) {
    values.emplace_back(schur.wr[i], schur.wi[i]);
  }
  // Parts that differ by rounding alone must sort alike: compare to ten digits.
  std::sort(values.begin(), values.end(), [](const Complex& a, const Complex& b) {
    const double ra = FloatToDouble(a.re);
    const double rb = FloatToDouble(b.re);
    return std::fabs(ra - rb) > 1e-10 ? ra < rb : a.im < b.im;
  });
  return values;
}

}  // namespace

TEST_CASE("Schur form: H Z = Z T, Z orthogonal, T in standard form, by both paths") {
  support::Digits digits(40);
  RandomNumbers random;
  struct Path {
    Integer shifts, block;
  };
  for (const Integer n : {1, 2, 3, 4, 7, 12, 20}) {
    const Matrix<QuarnFloat> h = random_hessenberg(random, n);
    std::vector<Complex> first;
    for (const Path& path : {Path{1, 1}, Path{4, 5}, Path{3, 3}, Path{40, 10}}) {
      const QrPath scope(path.shifts, path.block);
      CAPTURE(n);
      CAPTURE(path.shifts);
      const Schur schur(h, "Schur form", "Initialise");
      REQUIRE(schur.info == 0);
      const double bound = 2000.0 * n;  // a few dozen roundings an element and sweep
      CHECK(largest_difference(support::product(h, schur.z), support::product(schur.z, schur.t)) <= bound);
      CHECK(largest_difference(support::product(support::op_of_matrix(Op::transpose, schur.z), schur.z), identity(n)) <=
            bound);
      CHECK(schur.t.intact());
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = j + 2; i <= n; ++i) {
          CHECK(schur.t(i, j) == 0);
        }
        if (j < n && schur.t(j + 1, j) != 0) {
          CHECK(schur.t(j, j) == schur.t(j + 1, j + 1));
          CHECK(schur.t(j, j + 1) * schur.t(j + 1, j) < 0);
          CHECK((j + 1 == n || schur.t(j + 2, j + 1) == 0));
          CHECK(schur.wi[std::size_t(j - 1)] > 0);
          CHECK(schur.wi[std::size_t(j)] == -schur.wi[std::size_t(j - 1)]);
        }
        CHECK(schur.wr[std::size_t(j - 1)] == schur.t(j, j));
      }
      // Eigenvalues alone, and vectors accumulated into a given matrix, agree.
      const Schur values(h, "e", "n");
      CHECK(values.info == 0);
      const Schur accumulated(h, "s", "v");
      CHECK(largest_difference(accumulated.z, schur.z) == 0);
      const std::vector<Complex> all = sorted(schur);
      const std::vector<Complex> alone = sorted(values);
      first = first.empty() ? all : first;
      for (std::size_t i = 0; i < all.size(); ++i) {
        // Eigenvalues of a random matrix may be ill conditioned: half the digits is what is asked of them.
        CHECK(tesk::modulus(all[i] - alone[i]) <= QuarnFloat(1, -20));
        CHECK(tesk::modulus(all[i] - first[i]) <= QuarnFloat(1, -20));
      }
    }
  }
}

TEST_CASE("eigenvalues that are known") {
  support::Digits digits(50);
  // Companion matrix of (x - 1) (x - 2) ... (x - 10).
  std::vector<QuarnFloat> coefficients{1};
  for (int root = 1; root <= 10; ++root) {
    coefficients.emplace_back(0);
    for (std::size_t i = coefficients.size() - 1; i > 0; --i) {
      coefficients[i] -= root * coefficients[i - 1];
    }
  }
  Matrix<QuarnFloat> companion = identity(10);
  for (Integer i = 1; i <= 10; ++i) {
    for (Integer j = 1; j <= 10; ++j) {
      companion(i, j) = i == 1 ? -coefficients[std::size_t(j)] : QuarnFloat(i == j + 1 ? 1 : 0);
    }
  }
  const std::vector<Complex> roots = sorted(Schur(companion, "E", "N"));
  for (int root = 1; root <= 10; ++root) {
    CHECK(tesk::modulus(roots[std::size_t(root - 1)] - Complex(root)) <= QuarnFloat(1, -35));
  }
  // A rotation block, a triangle, a cyclic shift: roots of unity.
  Matrix<QuarnFloat> rotation = identity(2);
  rotation(1, 1) = 0;
  rotation(2, 2) = 0;
  rotation(1, 2) = -1;
  rotation(2, 1) = 1;
  const Schur turned(rotation, "E", "N");
  CHECK((turned.wr[0] == 0 && turned.wi[0] == 1 && turned.wr[1] == 0 && turned.wi[1] == -1));
  Matrix<QuarnFloat> triangle = identity(4);
  for (Integer i = 1; i <= 4; ++i) {
    triangle(i, i) = 10 * i;
    triangle(1, i) += 5;
  }
  const Schur read_off(triangle, "E", "N");
  CHECK((read_off.wr[0] == 15 && read_off.wr[1] == 20 && read_off.wr[2] == 30 && read_off.wr[3] == 40));
  for (const Integer n : {6, 9}) {
    Matrix<QuarnFloat> shift = identity(n);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        shift(i, j) = (i == j + 1 || (i == 1 && j == n)) ? 1 : 0;
      }
    }
    const Schur unity(shift, "E", "N");
    REQUIRE(unity.info == 0);
    for (std::size_t i = 0; i < std::size_t(n); ++i) {
      CHECK(fabs(unity.wr[i] * unity.wr[i] + unity.wi[i] * unity.wi[i] - 1) <= QuarnFloat(1, -45));
    }
  }
}

TEST_CASE("arguments of the QR driver in order, and the query") {
  struct Row {
    const char *job, *compz;
    Integer n, ilo, ihi, ldh, ldz, lwork, info;
  };
  const Row rows[] = {
      {"X", "Q", -1, 0, 0, 0, 0, 0, -1}, {"E", "Q", -1, 0, 0, 0, 0, 0, -2}, {"E", "N", -1, 0, 0, 0, 0, 0, -3},
      {"S", "I", 2, 0, 0, 0, 0, 0, -4},  {"S", "I", 2, 3, 2, 0, 0, 0, -4},  {"S", "I", 2, 2, 1, 0, 0, 0, -5},
      {"S", "I", 2, 1, 3, 0, 0, 0, -5},  {"S", "I", 2, 1, 2, 1, 0, 0, -7},  {"S", "I", 2, 1, 2, 2, 1, 0, -11},
      {"s", "n", 2, 1, 2, 2, 0, 0, -11}, {"S", "N", 2, 1, 2, 2, 1, 1, -13}, {"S", "v", 2, 1, 2, 2, 2, 0, -13},
      {"e", "N", 0, 1, 0, 1, 1, 1, 0},   {"E", "N", 5, 1, 5, 5, 1, -1, 0},
  };
  for (const Row& row : rows) {
    CAPTURE(row.info);
    std::vector<QuarnFloat> h(25, QuarnFloat("nan"));
    std::vector<QuarnFloat> z(25);
    std::vector<QuarnFloat> wr(5, QuarnFloat(77));
    std::vector<QuarnFloat> work(5);
    Integer info = 99;
    QuarnMP_f08pef_(row.job, row.compz, row.n, row.ilo, row.ihi, h.data(), row.ldh, wr.data(), wr.data(), z.data(),
                    row.ldz, work.data(), row.lwork, &info, 1, 1);
    CHECK(info == row.info);
    CHECK(work[0] == std::max<Integer>(1, row.n));
    CHECK(wr[0] == 77);
  }
  // One eigenvalue left by balancing is read off.
  Matrix<QuarnFloat> h = identity(3);
  h(2, 2) = 7;
  const Schur schur(h, "E", "N", 2, 2);
  CHECK((schur.info == 0 && schur.wr[1] == 7 && schur.wi[1] == 0 && schur.wr[0] == 1 && schur.wr[2] == 1));
}

TEST_CASE("failure to converge is reported") {
  // NaN never deflates.
  Matrix<QuarnFloat> h = identity(4);
  for (Integer i = 1; i <= 4; ++i) {
    for (Integer j = 1; j <= 4; ++j) {
      h(i, j) = QuarnFloat("nan");
    }
  }
  CHECK(Schur(h, "E", "N").info == 4);
}

TEST_CASE("balancing: permutation isolates, scaling levels, eigenvalues stay") {
  support::Digits digits(40);
  RandomNumbers random;
  const Integer n = 6;
  // A triangular matrix with its rows and columns shuffled is isolated altogether.
  std::vector<Integer> order(n);
  std::iota(order.begin(), order.end(), 1);
  for (std::size_t i = order.size(); i > 1; --i) {
    std::swap(order[i - 1], order[random.below(i)]);
  }
  Matrix<QuarnFloat> shuffled = identity(n);
  for (Integer i = 1; i <= n; ++i) {
    for (Integer j = 1; j <= n; ++j) {
      shuffled(order[std::size_t(i - 1)], order[std::size_t(j - 1)]) =
          i <= j ? random.next<QuarnFloat>() + 2 : QuarnFloat(0);
    }
  }
  std::vector<QuarnFloat> scale(n);
  Integer ilo = 0;
  Integer ihi = 0;
  Integer info = -99;
  QuarnMP_f08nhf_("P", n, shuffled.data(), shuffled.lda(), &ilo, &ihi, scale.data(), &info, 1);
  CHECK((info == 0 && ilo == 1 && ihi == 1));
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = j + 1; i <= n; ++i) {
      CHECK(shuffled(i, j) == 0);
    }
  }

  // A badly scaled matrix: scale factors are powers of 8 and D^-1 A D is what comes out.
  const Matrix<QuarnFloat> base = identity(n).randomise(random);
  Matrix<QuarnFloat> scaled = base;
  for (Integer i = 1; i <= n; ++i) {
    for (Integer j = 1; j <= n; ++j) {
      scaled(i, j) *= pow(QuarnFloat(8), QuarnFloat((i - j) * 5));
    }
  }
  Matrix<QuarnFloat> balanced = scaled;
  QuarnMP_f08nhf_("both", n, balanced.data(), balanced.lda(), &ilo, &ihi, scale.data(), &info, 4);
  CHECK((info == 0 && ilo == 1 && ihi == n));
  for (Integer i = 1; i <= n; ++i) {
    for (Integer j = 1; j <= n; ++j) {
      const QuarnFloat expected = scaled(i, j) * scale[std::size_t(j - 1)] / scale[std::size_t(i - 1)];
      CHECK(fabs(balanced(i, j) - expected) <= QuarnFloat(1, -35) * (1 + fabs(expected)));
      CHECK(fabs(balanced(i, j)) <= 70);
    }
  }

  // Norms so far apart that steps by 8 one at a time would take minutes; and a power of 8 all the same.
  QuarnFloat apart[] = {1, QuarnFloat(3, -60000000), QuarnFloat(5, 60000000), 1};
  QuarnMP_f08nhf_("S", 2, apart, 2, &ilo, &ihi, scale.data(), &info, 1);
  CHECK(info == 0);
  CHECK((apart[1] < 64 * apart[2] && apart[2] < 64 * apart[1]));
  CHECK(fabs(apart[1] * apart[2] - 15) < QuarnFloat(1, -35));
  const QuarnFloat steps = log(scale[1] / scale[0]) / log(QuarnFloat(8));
  CHECK(fabs(steps - floor(steps + QuarnFloat(0.5))) < QuarnFloat(1, -25));

  struct Row {
    const char* job;
    Integer n, lda, info;
  };
  for (const Row& row : {Row{"X", -1, 0, -1}, Row{"N", -1, 0, -2}, Row{"s", 2, 1, -4}, Row{"B", 0, 1, 0}}) {
    QuarnFloat a[4];
    QuarnMP_f08nhf_(row.job, row.n, a, row.lda, &ilo, &ihi, scale.data(), &info, 1);
    CHECK(info == row.info);
  }
  CHECK((ilo == 1 && ihi == 0));
  Matrix<QuarnFloat> untouched = scaled;
  QuarnMP_f08nhf_("None", n, untouched.data(), untouched.lda(), &ilo, &ihi, scale.data(), &info, 4);
  CHECK(largest_difference(untouched, scaled) == 0);
  CHECK((ilo == 1 && ihi == n && scale[3] == 1));
}

TEST_CASE("eigenvectors of the Schur form and of the matrix, with condition numbers") {
  support::Digits digits(40);
  RandomNumbers random;
  for (const Integer n : {1, 2, 3, 6, 11}) {
    const Matrix<QuarnFloat> h = random_hessenberg(random, n);
    Schur schur(h, "S", "I");
    REQUIRE(schur.info == 0);
    for (const bool back : {false, true}) {
      Matrix<QuarnFloat> vl = back ? schur.z : Matrix<QuarnFloat>(n, n);
      Matrix<QuarnFloat> vr = back ? schur.z : Matrix<QuarnFloat>(n, n);
      const Matrix<QuarnFloat>& a = back ? h : schur.t;
      Integer m = -1;
      Integer info = -99;
      QuarnMP_f08qkf_("Both", back ? "Back" : "All", nullptr, n, schur.t.data(), schur.t.lda(), vl.data(), vl.lda(),
                      vr.data(), vr.lda(), n, &m, nullptr, &info, 4, 4);
      REQUIRE(info == 0);
      CHECK(m == n);
      const Matrix<QuarnFloat> avr = support::product(a, vr);
      const Matrix<QuarnFloat> avl = support::product(support::op_of_matrix(Op::transpose, a), vl);
      for (Integer j = 1; j <= n; ++j) {
        const QuarnFloat& re = schur.wr[std::size_t(j - 1)];
        const QuarnFloat& im = schur.wi[std::size_t(j - 1)];
        if (im < 0) {
          continue;
        }
        const bool pair = im > 0;
        QuarnFloat largest = 0;
        for (Integer i = 1; i <= n; ++i) {
          const Complex x(vr(i, j), pair ? vr(i, j + 1) : QuarnFloat(0));
          const Complex ax(avr(i, j), pair ? avr(i, j + 1) : QuarnFloat(0));
          // A^T conj(y) = lambda conj(y)
          const Complex y(vl(i, j), pair ? -vl(i, j + 1) : QuarnFloat(0));
          const Complex ay(avl(i, j), pair ? -avl(i, j + 1) : QuarnFloat(0));
          CHECK(tesk::modulus(ax - Complex(re, im) * x) <= QuarnFloat(1, -30));
          CHECK(tesk::modulus(ay - Complex(re, im) * y) <= QuarnFloat(1, -30));
          largest = std::max(largest, tesk::magnitude(x));
        }
        CHECK(fabs(largest - 1) <= QuarnFloat(1, -38));
      }
    }
  }
}

TEST_CASE("selected eigenvectors come in order, and too few columns are refused") {
  support::Digits digits(30);
  Matrix<QuarnFloat> t = identity(4);
  for (Integer j = 1; j <= 4; ++j) {
    t(j, j) = j;
    t(1, j) += 1;
  }
  Integer select[4] = {0, 1, 0, 1};
  Matrix<QuarnFloat> all(4, 4);
  Matrix<QuarnFloat> some(4, 2);
  Integer m = 0;
  Integer info = 0;
  QuarnMP_f08qkf_("R", "A", nullptr, 4, t.data(), t.lda(), nullptr, 1, all.data(), all.lda(), 4, &m, nullptr, &info, 1,
                  1);
  CHECK(info == 0);
  QuarnMP_f08qkf_("R", "S", select, 4, t.data(), t.lda(), nullptr, 1, some.data(), some.lda(), 2, &m, nullptr, &info, 1,
                  1);
  CHECK((info == 0 && m == 2));
  for (Integer i = 1; i <= 4; ++i) {
    CHECK((some(i, 1) == all(i, 2) && some(i, 2) == all(i, 4)));
  }
  QuarnMP_f08qkf_("R", "S", select, 4, t.data(), t.lda(), nullptr, 1, some.data(), some.lda(), 1, &m, nullptr, &info, 1,
                  1);
  CHECK(info == -11);
  QuarnMP_f08qkf_("Q", "S", select, 4, t.data(), t.lda(), nullptr, 1, some.data(), some.lda(), 1, &m, nullptr, &info, 1,
                  1);
  CHECK(info == -1);
}

TEST_CASE("condition numbers of a 2 by 2 triangle are known in closed form") {
  support::Digits digits(40);
  // (1, g; 0, 3): x1 = e1, y1 = (1, -g/2), so that s = 1 / sqrt(1 + g^2/4); sep = |1 - 3|.
  for (const char* g : {"0", "4", "1e10"}) {
    Matrix<QuarnFloat> t = identity(2);
    t(1, 2) = QuarnFloat(g);
    t(2, 2) = 3;
    Matrix<QuarnFloat> vl(2, 2);
    Matrix<QuarnFloat> vr(2, 2);
    std::vector<QuarnFloat> s(2);
    std::vector<QuarnFloat> sep(2);
    Integer m = 0;
    Integer info = -99;
    QuarnMP_f08qkf_("B", "A", nullptr, 2, t.data(), t.lda(), vl.data(), vl.lda(), vr.data(), vr.lda(), 2, &m, nullptr,
                    &info, 1, 1);
    REQUIRE(info == 0);
    QuarnMP_f08qlf_("Both", "All", nullptr, 2, t.data(), t.lda(), vl.data(), vl.lda(), vr.data(), vr.lda(), s.data(),
                    sep.data(), 2, &m, nullptr, 2, nullptr, &info, 4, 3);
    REQUIRE(info == 0);
    const QuarnFloat half = QuarnFloat(g) / 2;
    const QuarnFloat expected = 1 / sqrt(1 + half * half);
    for (std::size_t k = 0; k < 2; ++k) {
      CHECK(fabs(s[k] - expected) <= QuarnFloat(1, -37) * expected);
      CHECK(fabs(sep[k] - 2) <= QuarnFloat(1, -25));
    }
  }
}

TEST_CASE("balancing undone: D^-1 P^T A P D, and vectors with one factor of it each") {
  const support::Digits digits(30);
  RandomNumbers random;
  const Integer n = 6;
  Matrix<QuarnFloat> a(n, n);
  a.randomise(random);
  for (Integer i = 1; i <= n; ++i) {
    a(i, 2) = i == 2 ? a(i, 2) : QuarnFloat(0);
    a(5, i) = i == 5 || i == 2 ? a(5, i) : QuarnFloat(0);
    a(3, i) *= QuarnFloat(1, 9);
  }
  Matrix<QuarnFloat> balanced = a;
  std::vector<QuarnFloat> scale(std::size_t(n), 0);
  Integer ilo = 0;
  Integer ihi = 0;
  Integer info = -99;
  QuarnMPX_dgebal_("B", n, balanced.data(), balanced.lda(), &ilo, &ihi, scale.data(), &info, 1);
  CHECK((ilo > 1 || ihi < n));
  Matrix<QuarnFloat> right = identity(n);
  Matrix<QuarnFloat> left = identity(n);
  QuarnMPX_dgebak_("B", "R", n, ilo, ihi, scale.data(), n, right.data(), right.lda(), &info, 1, 1);
  CHECK(info == 0);
  QuarnMPX_dgebak_("b", "l", n, ilo, ihi, scale.data(), n, left.data(), left.lda(), &info, 1, 1);
  CHECK((info == 0 && right.intact() && left.intact()));
  // Powers of ten round nothing, and each row has one element: left^T A right is the balanced matrix exactly.
  for (Integer i = 1; i <= n; ++i) {
    for (Integer j = 1; j <= n; ++j) {
      QuarnFloat sum;
      for (Integer k = 1; k <= n; ++k) {
        for (Integer l = 1; l <= n; ++l) {
          if (left(k, i) != 0 && right(l, j) != 0) {
            sum += left(k, i) * a(k, l) * right(l, j);
          }
        }
      }
      CHECK(sum == balanced(i, j));
    }
  }
  const auto info_of = [&](const char* job, const char* side, Integer order, Integer low, Integer high, Integer m,
                           Integer ldv) {
    QuarnMPX_dgebak_(job, side, order, low, high, scale.data(), m, right.data(), ldv, &info, 1, 1);
    return info;
  };
  CHECK(info_of("X", "X", -1, 0, 9, -1, 0) == -1);
  CHECK(info_of("B", "X", -1, 0, 9, -1, 0) == -2);
  CHECK(info_of("B", "R", -1, 0, 9, -1, 0) == -3);
  CHECK(info_of("B", "R", 2, 0, 9, -1, 0) == -4);
  CHECK(info_of("B", "R", 2, 1, 9, -1, 0) == -5);
  CHECK(info_of("B", "R", 2, 1, 2, -1, 0) == -7);
  CHECK(info_of("B", "R", 2, 1, 2, 1, 1) == -9);
}
