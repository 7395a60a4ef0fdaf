// Exact sums and products for the certificates of proven results, and the parts that these consist of. Part of
// proven_certificates.hpp.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "quarn/bound.h"
#include "quarn/functions.h"
#include "tesk2mp/kernels.hpp"

namespace tesk2mp::proven {

/// Matrices by their names; what they mean depends on the kind: "solution", "inverse", "determinant", "eigenvalues",
/// "symmetric eigenvalues", "singular values" or "zeros". Lists are matrices of one column.
struct Certificate {
  std::string kind;
  std::vector<std::pair<std::string, Matrix<Complex>>> parts;

  void add(const std::string& name, Matrix<Complex> values) { parts.emplace_back(name, std::move(values)); }
  const Matrix<Complex>* find(const std::string& name) const {
    const auto at = std::find_if(parts.begin(), parts.end(), [&](const auto& part) { return part.first == name; });
    return at == parts.end() ? nullptr : &at->second;
  }
};

/// The largest exponents, of either sign, of the numbers of a certificate.
inline constexpr int kMostExponent = 100'000;

namespace detail {

inline constexpr const char* kVerify = "VERIFY";

template <class... Pieces>
void require_part(bool holds, const Pieces&... pieces) {
  tesk2mp::detail::require(holds, kVerify, 1, pieces...);
}

/// An inequality of the proof.
template <class... Pieces>
void require_proof(bool holds, const Pieces&... pieces) {
  if (holds) {
    return;
  }
  std::string text;
  const auto add = [&]<class P>(const P& piece) {
    if constexpr (std::integral<P>) {
      text += std::to_string(piece);
    } else {
      text += piece;
    }
  };
  (add(pieces), ...);
  throw NumericalFailure(kVerify, 1, 0, text, {});
}

inline std::int64_t significant_digits(const Real& x) {
  std::string text = x.to_string();
  text.resize(std::min(text.find('e'), text.size()));
  text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c < '0' || c > '9'; }), text.end());
  const std::size_t first = text.find_first_not_of('0');
  return first == std::string::npos ? 0 : std::int64_t(text.find_last_not_of('0') - first) + 1;
}

/// So many digits that nothing is rounded; refused where these are too many for a matrix of so many elements.
inline int exact_digits(std::int64_t digits, std::size_t elements = 1) {
  constexpr std::int64_t kMostOfNumber = 1'000'000;
  constexpr std::int64_t kMostOfMatrix = 100'000'000;
  const bool possible =
      digits <= kMostOfNumber && digits <= kMostOfMatrix / std::int64_t(std::max<std::size_t>(1, elements));
  require_part(possible, "its numbers are too far apart");
  return int(std::max<std::int64_t>(1, digits));
}

/// A number whose digits end at or above 10^low.
struct ExactNumber {
  Real value;
  std::int64_t low = 0;

  ExactNumber() = default;
  ExactNumber(Real given, std::int64_t lowest) : value(std::move(given)), low(value == 0 ? 0 : lowest) {}
  explicit ExactNumber(int given) : value(given) {}

  std::int64_t high() const { return value == 0 ? low : ilogb(value); }
  friend ExactNumber operator*(const ExactNumber& a, const ExactNumber& b) {
    if (a.value == 0 || b.value == 0) {
      return {};
    }
    const Digits scope(exact_digits(a.high() - a.low + b.high() - b.low + 2));
    return {a.value * b.value, a.low + b.low};
  }
  friend ExactNumber operator+(const ExactNumber& a, const ExactNumber& b) {
    if (a.value == 0 || b.value == 0) {
      return a.value == 0 ? b : a;
    }
    const std::int64_t lowest = std::min(a.low, b.low);
    const Digits scope(exact_digits(std::max(a.high(), b.high()) - lowest + 2));
    return {a.value + b.value, lowest};
  }
  friend ExactNumber operator-(const ExactNumber& a, const ExactNumber& b) { return a + ExactNumber(-b.value, b.low); }
  friend bool operator<(const ExactNumber& a, const ExactNumber& b) { return a.value < b.value; }
  friend bool operator<=(const ExactNumber& a, const ExactNumber& b) { return a.value <= b.value; }
  ExactNumber square() const { return *this * *this; }
  ExactNumber size() const { return {fabs(value), low}; }
};

inline ExactNumber power_of_ten(std::int64_t exponent) { return {Real(1, int(exponent)), exponent}; }

/// A matrix whose digits end at or above 10^low; im is empty where all is real.
class ExactMatrix {
 public:
  ExactMatrix() = default;
  ExactMatrix(Matrix<Real> re, Matrix<Real> im, std::int64_t low) : re_(std::move(re)), im_(std::move(im)), low_(low) {
    for_each([&](const Real& x) {
      if (x != 0) {
        high_ = std::max(high_, std::int64_t(ilogb(x)));
      }
    });
  }
  explicit ExactMatrix(const Matrix<Complex>& given) : re_(given.rows(), given.columns()) {
    Matrix<Real> im(given.rows(), given.columns());
    bool real = true;
    bool zero = true;
    for (std::size_t j = 0; j < given.columns(); ++j) {
      for (std::size_t i = 0; i < given.rows(); ++i) {
        re_(i, j) = given(i, j).re;
        im(i, j) = given(i, j).im;
        real = real && im(i, j) == 0;
      }
    }
    if (!real) {
      im_ = std::move(im);
    }
    for_each([&](const Real& x) {
      require_part(isfinite(x), "a number is not finite");
      if (x != 0) {
        const std::int64_t exponent = ilogb(x);
        require_part(std::abs(exponent) <= 2 * kMostExponent, "an exponent is beyond ", kMostExponent);
        const std::int64_t low = exponent - significant_digits(x) + 1;
        high_ = zero ? exponent : std::max(high_, exponent);
        low_ = zero ? low : std::min(low_, low);
        zero = false;
      }
    });
    exact_digits(high_ - low_, rows() * columns());
  }
  static ExactMatrix identity(std::size_t n) { return {Matrix<Real>::identity(n), {}, 0}; }

  std::size_t rows() const { return re_.rows(); }
  std::size_t columns() const { return re_.columns(); }
  bool is_real() const { return im_.rows() == 0; }
  ExactNumber re(std::size_t i, std::size_t j = 0) const { return {re_(i, j), low_}; }
  ExactNumber im(std::size_t i, std::size_t j = 0) const {
    return is_real() ? ExactNumber() : ExactNumber(im_(i, j), low_);
  }
  /// |re| + |im|, which is not below the modulus.
  ExactNumber size(std::size_t i, std::size_t j = 0) const { return re(i, j).size() + im(i, j).size(); }
  /// The square of the modulus.
  ExactNumber square(std::size_t i, std::size_t j = 0) const { return re(i, j).square() + im(i, j).square(); }
  ExactMatrix at(std::size_t i, std::size_t j = 0) const {
    return {{{re_(i, j)}}, is_real() ? Matrix<Real>() : Matrix<Real>{{im_(i, j)}}, low_};
  }

  ExactMatrix conjugate_transposed() const {
    ExactMatrix result(Matrix<Real>(columns(), rows()), is_real() ? Matrix<Real>() : Matrix<Real>(columns(), rows()),
                       low_);
    for (std::size_t j = 0; j < columns(); ++j) {
      for (std::size_t i = 0; i < rows(); ++i) {
        result.re_(j, i) = re_(i, j);
        if (!is_real()) {
          result.im_(j, i) = -im_(i, j);
        }
      }
    }
    result.high_ = high_;
    return result;
  }
  /// Row i is row order[i] of this.
  ExactMatrix with_rows(const std::vector<std::size_t>& order) const {
    ExactMatrix result = *this;
    for (std::size_t j = 0; j < columns(); ++j) {
      for (std::size_t i = 0; i < rows(); ++i) {
        result.re_(i, j) = re_(order[i], j);
        if (!is_real()) {
          result.im_(i, j) = im_(order[i], j);
        }
      }
    }
    return result;
  }
  /// The square matrix with this column as its diagonal.
  ExactMatrix as_diagonal() const {
    ExactMatrix result(Matrix<Real>(rows(), rows()), is_real() ? Matrix<Real>() : Matrix<Real>(rows(), rows()), low_);
    for (std::size_t i = 0; i < rows(); ++i) {
      result.re_(i, i) = re_(i, 0);
      if (!is_real()) {
        result.im_(i, i) = im_(i, 0);
      }
    }
    result.high_ = high_;
    return result;
  }

  friend ExactMatrix operator-(const ExactMatrix& a, const ExactMatrix& b) {
    const std::int64_t low = std::min(a.low_, b.low_);
    const Digits scope(exact_digits(std::max(a.high_, b.high_) - low + 2, a.rows() * a.columns()));
    const auto subtract = [](Matrix<Real> x, const Matrix<Real>& y) {
      x = x.rows() == 0 ? Matrix<Real>(y.rows(), y.columns()) : std::move(x);
      for (std::size_t j = 0; j < y.columns(); ++j) {
        for (std::size_t i = 0; i < y.rows(); ++i) {
          x(i, j) -= y(i, j);
        }
      }
      return x;
    };
    return {subtract(a.re_, b.re_), subtract(a.im_, b.im_), low};
  }
  friend ExactMatrix operator*(const ExactMatrix& a, const ExactMatrix& b) {
    const std::size_t sums = 2 * a.columns();
    const std::int64_t low = a.low_ + b.low_;
    const std::int64_t digits = a.high_ + b.high_ + 3 + std::int64_t(std::to_string(sums).size()) - low;
    const Digits scope(exact_digits(digits, a.rows() * b.columns()));
    const auto multiplied = [&](int sign, const Matrix<Real>& x, const Matrix<Real>& y, Matrix<Real> c) {
      if (x.rows() > 0 && y.rows() > 0) {
        c = c.rows() == 0 ? Matrix<Real>(x.rows(), y.columns()) : std::move(c);
        gemm(Op::none, Op::none, Real(sign), x, y, Real(1), c);
      }
      return c;
    };
    Matrix<Real> re = multiplied(-1, a.im_, b.im_, multiplied(1, a.re_, b.re_, {}));
    Matrix<Real> im = multiplied(1, a.im_, b.re_, multiplied(1, a.re_, b.im_, {}));
    return {std::move(re), std::move(im), low};
  }

 private:
  template <class Visit>
  void for_each(const Visit& visit) const {
    std::for_each(re_.data(), re_.data() + re_.rows() * re_.columns(), visit);
    std::for_each(im_.data(), im_.data() + im_.rows() * im_.columns(), visit);
  }

  Matrix<Real> re_;
  Matrix<Real> im_;
  std::int64_t high_ = 0;
  std::int64_t low_ = 0;
};

/// Row sums of |1 - Y X| and the largest of them, below 1.
struct Defect {
  std::vector<ExactNumber> sums;
  ExactNumber largest;
};
inline Defect defect(const ExactMatrix& product, const std::string& name) {
  const ExactMatrix e = ExactMatrix::identity(product.rows()) - product;
  Defect found;
  for (std::size_t i = 0; i < e.rows(); ++i) {
    ExactNumber sum;
    for (std::size_t j = 0; j < e.columns(); ++j) {
      sum = sum + e.size(i, j);
    }
    found.largest = std::max(found.largest, sum);
    require_proof(sum < ExactNumber(1), "||1 - ", name, "|| < 1 fails in row ", i + 1);
    found.sums.push_back(std::move(sum));
  }
  return found;
}

/// The parts of a certificate as exact matrices.
class ExactParts {
 public:
  explicit ExactParts(const Certificate& certificate) : certificate_(certificate) {}

  bool has(const std::string& name) const { return certificate_.find(name) != nullptr; }
  const ExactMatrix& get(const std::string& name) {
    const Matrix<Complex>* values = certificate_.find(name);
    require_part(values != nullptr, "there is no '", name, "'");
    require_part(values->rows() > 0 && values->columns() > 0, "'", name, "' is empty");
    const auto at = known_.find(name);
    return at != known_.end() ? at->second : known_.emplace(name, ExactMatrix(*values)).first->second;
  }
  const ExactMatrix& get(const std::string& name, std::size_t rows, std::size_t columns) {
    const ExactMatrix& x = get(name);
    require_part(x.rows() == rows && x.columns() == columns, "'", name, "' is ", x.rows(), " by ", x.columns(),
                 ", not ", rows, " by ", columns);
    return x;
  }
  const ExactMatrix& real(const std::string& name, std::size_t rows, std::size_t columns = 1) {
    const ExactMatrix& x = get(name, rows, columns);
    require_part(x.is_real(), "'", name, "' is not real");
    return x;
  }
  const ExactMatrix& bounds(const std::string& name, std::size_t rows, std::size_t columns = 1) {
    const ExactMatrix& x = real(name, rows, columns);
    for (std::size_t j = 0; j < columns; ++j) {
      for (std::size_t i = 0; i < rows; ++i) {
        require_part(x.re(i, j).value >= 0, "'", name, "' has a negative bound");
      }
    }
    return x;
  }
  std::vector<std::int64_t> integers(const std::string& name, std::size_t rows) {
    const ExactMatrix& x = real(name, rows);
    std::vector<std::int64_t> result;
    for (std::size_t i = 0; i < rows; ++i) {
      const Real value = x.re(i).value;
      constexpr int kMost = 1'000'000'000;
      require_part(floor(value) == value && fabs(value) <= Real(kMost), "'", name, "' has a number that is not whole");
      result.push_back(std::int64_t(FloatToDouble(value)));
    }
    return result;
  }

 private:
  const Certificate& certificate_;
  std::map<std::string, ExactMatrix> known_;
};

}  // namespace detail
}  // namespace tesk2mp::proven
