// Checks certificates of proven results: with exact sums and products, nothing solved and nothing rounded. Not part of
// tesk2mp.hpp; docs/guide/certificates.md has the parts of each kind and the theorems.
#pragma once

#include <numeric>

#include "tesk2mp/proven_exact.hpp"

namespace tesk2mp::proven {
namespace detail {

/// An inequality of element (i, j) of x.
inline void require_element(bool holds, std::size_t i, std::size_t j, const ExactMatrix& x, const char* text) {
  if (x.columns() == 1) {
    require_proof(holds, "component ", i + 1, ": ", text);
  } else {
    require_proof(holds, "element (", i + 1, ", ", j + 1, "): ", text);
  }
}

/// The square of |x(i, j) - y(k, j)|.
inline ExactNumber square_of_distance(const ExactMatrix& x, std::size_t i, const ExactMatrix& y, std::size_t k,
                                      std::size_t j = 0) {
  return (x.re(i, j) - y.re(k, j)).square() + (x.im(i, j) - y.im(k, j)).square();
}

/// |values - near| <= errors - of_near, by squares.
inline void check_answer(const ExactMatrix& values, const ExactMatrix& errors, const ExactMatrix& near,
                         const ExactMatrix& of_near) {
  for (std::size_t j = 0; j < values.columns(); ++j) {
    for (std::size_t i = 0; i < values.rows(); ++i) {
      const ExactNumber slack = errors.re(i, j) - of_near.re(i, j);
      require_element(slack.value >= 0 && square_of_distance(values, i, near, i, j) <= slack.square(), i, j, values,
                      "|answer - near| <= error - near_error fails");
    }
  }
}

/// near is off by at most |y| + e max|y| / (1 - max e), y = R (b - A near), e the row sums of |1 - R A|.
class SolutionCheck {
 public:
  SolutionCheck(const ExactMatrix& a, const ExactMatrix& b, const ExactMatrix& near, const ExactMatrix& r)
      : of_r_(defect(r * a, "R A")), y_(r * (b - a * near)) {
    for (std::size_t j = 0; j < y_.columns(); ++j) {
      ExactNumber largest;
      for (std::size_t i = 0; i < y_.rows(); ++i) {
        largest = std::max(largest, y_.size(i, j));
      }
      largest_.push_back(std::move(largest));
    }
  }

  void check(const ExactMatrix& of_near) const {
    const ExactNumber rest = ExactNumber(1) - of_r_.largest;
    for (std::size_t j = 0; j < y_.columns(); ++j) {
      for (std::size_t i = 0; i < y_.rows(); ++i) {
        require_element(y_.size(i, j) * rest + of_r_.sums[i] * largest_[j] <= of_near.re(i, j) * rest, i, j, y_,
                        "|y| + e max|y| / (1 - max e) <= near_error fails");
      }
    }
  }
  /// The least that check() accepts, rounded up.
  QuarnBound bound(std::size_t i, std::size_t j) const {
    return QuarnBound(y_.size(i, j).value) + QuarnBound(of_r_.sums[i].value) * QuarnBound(largest_[j].value) *
                                                 over_one_minus(QuarnBound(of_r_.largest.value));
  }

 private:
  Defect of_r_;
  ExactMatrix y_;
  std::vector<ExactNumber> largest_;
};

inline std::string check_solution(ExactParts& parts, bool inverse) {
  const ExactMatrix& a = parts.get("a");
  const std::size_t n = a.rows();
  parts.get("a", n, n);
  const ExactMatrix b = inverse ? ExactMatrix::identity(n) : parts.get("b");
  const std::size_t m = b.columns();
  require_part(b.rows() == n, "'b' has ", b.rows(), " rows, not ", n);
  const ExactMatrix& near = parts.get("near", n, m);
  const ExactMatrix& of_near = parts.bounds("near_errors", n, m);
  SolutionCheck(a, b, near, parts.get("approximate_inverse", n, n)).check(of_near);
  check_answer(parts.get("x", n, m), parts.bounds("errors", n, m), near, of_near);
  return (inverse ? "the inverse" : "a solution") + std::string(" of order ") + std::to_string(n);
}

/// det(P) det(X) det(A) det(Y) = det(1 - E), which is within s / (1 - s) of 1, s the sum of all |elements| of E.
class DeterminantCheck {
 public:
  DeterminantCheck(const ExactMatrix& a, const std::vector<std::size_t>& order, const ExactMatrix& x,
                   const ExactMatrix& y) {
    const std::size_t n = a.rows();
    const ExactMatrix e = ExactMatrix::identity(n) - x * a.with_rows(order) * y;
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t i = 0; i < n; ++i) {
        sum_ = sum_ + e.size(i, j);
      }
    }
    require_proof(sum_ < ExactNumber(1), "the sum of |1 - X P A Y| is not below 1");
    q_ = ExactMatrix({{Real(is_odd(order) ? -1 : 1)}}, {}, 0);
    for (std::size_t k = 0; k < n; ++k) {
      q_ = q_ * x.at(k, k) * y.at(k, k);
    }
  }

  /// The reciprocal of the determinant but for det(1 - E).
  const ExactMatrix& q() const { return q_; }
  void check(const ExactMatrix& near, const ExactMatrix& of_near) const {
    const ExactNumber rest = ExactNumber(1) - sum_;
    const ExactNumber left = distance(near) * rest + sum_;
    require_proof(left.square() <= (of_near.re(0) * rest).square() * q_.square(0),
                  "|near q - 1| + s / (1 - s) <= near_error |q| fails");
  }
  /// The least that check() accepts but for |q|, rounded up.
  QuarnBound bound(const ExactMatrix& near) const {
    return QuarnBound(distance(near).value) + QuarnBound(sum_.value) * over_one_minus(QuarnBound(sum_.value));
  }

 private:
  ExactNumber distance(const ExactMatrix& near) const { return (near * q_ - ExactMatrix::identity(1)).size(0); }
  static bool is_odd(const std::vector<std::size_t>& order) {
    std::vector<bool> seen(order.size(), false);
    bool odd = false;
    for (std::size_t first = 0; first < order.size(); ++first) {
      for (std::size_t k = order[first]; !seen[first] && k != first; k = order[k]) {
        seen[k] = true;
        odd = !odd;
      }
    }
    return odd;
  }

  ExactNumber sum_;
  ExactMatrix q_;
};

inline std::string check_determinant(ExactParts& parts) {
  const ExactMatrix& a = parts.get("a");
  const std::size_t n = a.rows();
  parts.get("a", n, n);
  std::vector<std::size_t> order;
  std::vector<bool> seen(n, false);
  for (const std::int64_t row : parts.integers("rows", n)) {
    const bool good = row >= 1 && std::size_t(row) <= n && !seen[std::size_t(row) - 1];
    require_part(good, "'rows' is not a permutation");
    order.push_back(std::size_t(row) - 1);
    seen[order.back()] = true;
  }
  const ExactMatrix& x = parts.get("left", n, n);
  const ExactMatrix& y = parts.get("right", n, n);
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i < j; ++i) {
      require_part(x.size(i, j).value == 0, "'left' is not lower triangular");
      require_part(y.size(j, i).value == 0, "'right' is not upper triangular");
    }
  }
  const ExactMatrix& near = parts.get("near", 1, 1);
  const ExactMatrix& of_near = parts.bounds("near_errors", 1);
  DeterminantCheck(a, order, x, y).check(near, of_near);
  check_answer(parts.get("determinant", 1, 1), parts.bounds("errors", 1), near, of_near);
  return "the determinant of a matrix of order " + std::to_string(n);
}

/// A = U D V^H + F: the j-th value is within ||F|| + d_j g of d_j, g >= ||1 - U^H U|| and ||1 - V^H V||.
class WeylCheck {
 public:
  WeylCheck(const ExactMatrix& a, const ExactMatrix& near, const ExactMatrix& u, const ExactMatrix& v) {
    g_ = std::max(defect(u.conjugate_transposed() * u, "U^H U").largest,
                  defect(v.conjugate_transposed() * v, "V^H V").largest);
    const ExactMatrix f = a - u * near.as_diagonal() * v.conjugate_transposed();
    std::vector<ExactNumber> rows(f.rows());
    std::vector<ExactNumber> columns(f.columns());
    for (std::size_t j = 0; j < f.columns(); ++j) {
      for (std::size_t i = 0; i < f.rows(); ++i) {
        const ExactNumber size = f.size(i, j);
        rows[i] = rows[i] + size;
        columns[j] = columns[j] + size;
      }
    }
    square_ = *std::max_element(rows.begin(), rows.end()) * *std::max_element(columns.begin(), columns.end());
  }

  void check(const ExactMatrix& near, const ExactMatrix& of_near) const {
    for (std::size_t j = 0; j < near.rows(); ++j) {
      const ExactNumber slack = of_near.re(j) - near.re(j).size() * g_;
      require_proof(slack.value >= 0 && square_ <= slack.square(), "value ", j + 1,
                    ": ||F|| + |d| g <= near_error fails");
    }
  }
  QuarnBound bound(const Real& value) const {
    return sqrt(QuarnBound(square_.value)) + QuarnBound(value) * QuarnBound(g_.value);
  }

 private:
  ExactNumber g_;
  ExactNumber square_;
};

inline std::string check_weyl(ExactParts& parts, const std::string& kind) {
  const bool singular = kind == "singular values";
  const ExactMatrix& a = parts.get("a");
  const std::size_t k = std::min(a.rows(), a.columns());
  const ExactMatrix& u = parts.get("left", a.rows(), k);
  const ExactMatrix& v = singular ? parts.get("right", a.columns(), k) : u;
  const ExactMatrix& near = parts.real("near", k);
  const ExactMatrix& of_near = parts.bounds("near_errors", k);
  if (singular) {
    parts.bounds("near", k);
  } else {
    parts.get("a", k, k);
    for (std::size_t j = 0; j < k; ++j) {
      for (std::size_t i = 0; i <= j; ++i) {
        require_part(a.re(i, j).value == a.re(j, i).value && a.im(i, j).value == -a.im(j, i).value,
                     "'a' is not Hermitian");
      }
    }
  }
  WeylCheck(a, near, u, v).check(near, of_near);
  check_answer(parts.real("values", k), parts.bounds("errors", k), near, of_near);
  return "the " + kind + " of a matrix of " + std::to_string(a.rows()) + " by " + std::to_string(a.columns());
}

/// Discs around near that hold as many roots as there are discs: groups that are apart hold as many as they have.
inline void check_discs(ExactParts& parts, const ExactMatrix& near, const ExactMatrix& of_near, bool real_problem) {
  const std::size_t n = near.rows();
  const ExactMatrix& values = parts.get("values", n, 1);
  const ExactMatrix& errors = parts.bounds("errors", n);
  const std::vector<std::int64_t> groups = parts.integers("groups", n);
  const std::vector<std::int64_t> counts = parts.integers("counts", n);
  const std::vector<std::int64_t> real = parts.integers("real", n);
  const auto are_apart = [&](std::size_t i, std::size_t j, int mirror) {
    const ExactNumber re = near.re(i) - near.re(j);
    const ExactNumber im = ExactNumber(mirror) * near.im(i) - near.im(j);
    return (of_near.re(i) + of_near.re(j)).square() < re.square() + im.square();
  };
  for (std::size_t i = 0; i < n; ++i) {
    require_proof(counts[i] == std::count(groups.begin(), groups.end(), groups[i]), "value ", i + 1,
                  ": its count is not the number of discs of its group");
    require_proof(real[i] == 0 || (counts[i] == 1 && real_problem && values.im(i).value == 0), "value ", i + 1,
                  ": it is not alone in its group, or something is not real");
    for (std::size_t j = 0; j < n; ++j) {
      if (groups[i] != groups[j]) {
        require_proof(are_apart(i, j, 1), "discs ", i + 1, " and ", j + 1, " of different groups are not apart");
        require_proof(real[i] == 0 || are_apart(i, j, -1), "value ", i + 1, ": it is not proven to be real: disc ",
                      j + 1, " meets the conjugate of its own");
        continue;
      }
      const ExactNumber slack = errors.re(i) - of_near.re(j);
      require_proof(slack.value >= 0 && square_of_distance(values, i, near, j) <= slack.square(), "value ", i + 1,
                    ": |answer - near| <= error - near_error fails for disc ", j + 1);
    }
  }
}

/// A X = X M + T: the eigenvalues are those of M + X^-1 T, by Gerschgorin in discs around the diagonal of M, scaled by
/// powers of ten.
class GerschgorinCheck {
 public:
  GerschgorinCheck(const ExactMatrix& a, const ExactMatrix& x, const ExactMatrix& m, const ExactMatrix& y)
      : of_y_(defect(y * x, "Y X")), m_(m), z_(y * (a * x - x * m)) {
    for (std::size_t j = 0; j < z_.columns(); ++j) {
      ExactNumber largest;
      for (std::size_t i = 0; i < z_.rows(); ++i) {
        largest = std::max(largest, z_.size(i, j));
      }
      largest_.push_back(std::move(largest));
    }
  }

  void check(const ExactMatrix& of_near, const std::vector<std::int64_t>& weights) const {
    const ExactNumber rest = ExactNumber(1) - of_y_.largest;
    for (std::size_t i = 0; i < z_.rows(); ++i) {
      ExactNumber radius;
      for (std::size_t j = 0; j < z_.rows(); ++j) {
        const ExactNumber size = j == i ? z_.size(i, j) : z_.size(i, j) + m_.size(i, j);
        radius = radius + (size * rest + of_y_.sums[i] * largest_[j]) * power_of_ten(weights[j] - weights[i]);
      }
      require_proof(radius <= of_near.re(i) * rest, "value ", i + 1,
                    ": the row sum of |M - diag(M) + X^-1 T| <= near_error fails");
    }
  }
  QuarnBound bound(std::size_t i, const std::vector<std::int64_t>& weights) const {
    const QuarnBound sum(of_y_.sums[i].value);
    const QuarnBound over_rest = over_one_minus(QuarnBound(of_y_.largest.value));
    QuarnBound radius;
    for (std::size_t j = 0; j < z_.rows(); ++j) {
      const QuarnBound scale = QuarnBound::power_of_ten(weights[j] - weights[i]);
      const QuarnBound of_m = j == i ? QuarnBound() : QuarnBound(m_.size(i, j).value);
      radius += (QuarnBound(z_.size(i, j).value) + of_m + sum * QuarnBound(largest_[j].value) * over_rest) * scale;
    }
    return radius;
  }

 private:
  Defect of_y_;
  ExactMatrix m_;
  ExactMatrix z_;
  std::vector<ExactNumber> largest_;
};

inline std::string check_eigenvalues(ExactParts& parts) {
  const ExactMatrix& a = parts.get("a");
  const std::size_t n = a.rows();
  parts.get("a", n, n);
  const ExactMatrix& near = parts.get("near", n, 1);
  const ExactMatrix& of_near = parts.bounds("near_errors", n);
  const ExactMatrix m = parts.has("middle") ? parts.get("middle", n, n) : near.as_diagonal();
  for (std::size_t i = 0; i < n; ++i) {
    const bool same = m.re(i, i).value == near.re(i).value && m.im(i, i).value == near.im(i).value;
    require_part(same, "the diagonal of 'middle' is not 'near'");
  }
  const std::vector<std::int64_t> weights =
      parts.has("weights") ? parts.integers("weights", n) : std::vector<std::int64_t>(n);
  const auto [least, most] = std::minmax_element(weights.begin(), weights.end());
  exact_digits(*most - *least, n * n);
  GerschgorinCheck(a, parts.get("vectors", n, n), m, parts.get("approximate_inverse", n, n)).check(of_near, weights);
  check_discs(parts, near, of_near, a.is_real());
  return "the eigenvalues of a matrix of order " + std::to_string(n);
}

/// Each zero is in a disc around a near(i) with n |p(near(i))| / |a_n prod (near(i) - near(j))| as radius (Smith). The
/// near(i) that are 0 are zeros, with a radius of 0, where there are as many as coefficients 0 at the end; n and p are
/// without them then.
class SmithCheck {
 public:
  SmithCheck(const ExactMatrix& a, const ExactMatrix& near, const std::vector<bool>& may_be_zero)
      : values_(near.rows()), divisors_(near.rows(), ExactNumber(1)) {
    std::size_t degree = near.rows();
    while (a.square(degree).value == 0) {
      --degree;
    }
    std::vector<std::size_t> others;
    for (std::size_t i = 0; i < near.rows(); ++i) {
      if (!may_be_zero[i] || near.square(i).value != 0) {
        others.push_back(i);
      }
    }
    if (others.size() != degree) {
      others.resize(near.rows());
      std::iota(others.begin(), others.end(), 0);
    }
    n_ = others.size();
    for (const std::size_t i : others) {
      const ExactMatrix z = near.at(i);
      ExactMatrix value = a.at(0);
      ExactMatrix divisor = a.at(0);
      for (std::size_t k = 1; k <= n_; ++k) {
        value = value * z - (ExactMatrix({{Real()}}, {}, 0) - a.at(k));
      }
      for (const std::size_t j : others) {
        divisor = j == i ? divisor : divisor * (z - near.at(j));
      }
      values_[i] = value.square(0);
      divisors_[i] = divisor.square(0);
    }
  }

  void check(const ExactMatrix& of_near) const {
    const ExactNumber n{int(n_)};
    for (std::size_t i = 0; i < values_.size(); ++i) {
      const ExactNumber right = of_near.re(i).square() * divisors_[i];
      require_proof(divisors_[i].value != 0 && n.square() * values_[i] <= right, "zero ", i + 1,
                    ": n |p(near)| <= near_error |a_n prod (near - others)| fails");
    }
  }
  QuarnBound bound(std::size_t i) const {
    constexpr int kDigits = 30;
    const Digits scope(kDigits);
    const Real quotient = values_[i].value / divisors_[i].value;  // far less than a bound's digits off
    const QuarnBound square = divisors_[i].value == 0 ? QuarnBound::infinity() : QuarnBound(quotient);
    return QuarnBound::count(std::uint32_t(n_)) * sqrt(square + square.half_unit(kDigits));
  }

 private:
  std::size_t n_ = 0;
  std::vector<ExactNumber> values_;
  std::vector<ExactNumber> divisors_;
};

inline std::string check_zeros(ExactParts& parts) {
  const ExactMatrix& a = parts.get("a");
  parts.get("a", a.rows(), 1);
  require_part(a.rows() > 1 && a.size(0).value != 0, "'a' has no coefficient of the highest power");
  const std::size_t n = a.rows() - 1;
  const ExactMatrix& near = parts.get("near", n, 1);
  const ExactMatrix& of_near = parts.bounds("near_errors", n);
  std::vector<bool> without_bound;
  for (std::size_t i = 0; i < n; ++i) {
    without_bound.push_back(of_near.re(i).value == 0);
  }
  SmithCheck(a, near, without_bound).check(of_near);
  check_discs(parts, near, of_near, a.is_real());
  return "the zeros of a polynomial of degree " + std::to_string(n);
}

/// What certificates consist of, by their kinds.
inline const std::map<std::string, std::vector<std::string>>& parts_of_kinds() {
  static const std::map<std::string, std::vector<std::string>> kParts = {
      {"solution", {"a", "b", "x", "errors", "near", "near_errors", "approximate_inverse"}},
      {"inverse", {"a", "x", "errors", "near", "near_errors", "approximate_inverse"}},
      {"determinant", {"a", "determinant", "errors", "near", "near_errors", "rows", "left", "right"}},
      {"symmetric eigenvalues", {"a", "values", "errors", "near", "near_errors", "left"}},
      {"singular values", {"a", "values", "errors", "near", "near_errors", "left", "right"}},
      {"eigenvalues",
       {"a", "values", "errors", "counts", "real", "groups", "near", "near_errors", "vectors", "approximate_inverse",
        "middle", "weights"}},
      {"zeros", {"a", "values", "errors", "counts", "real", "groups", "near", "near_errors"}},
  };
  return kParts;
}

}  // namespace detail

/// What the certificate proves, in words. Throws InvalidArgument for one that is incomplete, that has a part twice or
/// one that its kind does not have, or whose numbers are too far apart, and NumericalFailure, which names the
/// inequality, where the proof does not hold. The answer is the same at any working digits.
inline std::string verify(const Certificate& certificate) {
  // Integers that become numbers, counts of rows among them, fit these.
  constexpr int kDigitsOfIntegers = 30;
  const Digits scope(kDigitsOfIntegers);
  const std::string& kind = certificate.kind;
  const auto of_kind = detail::parts_of_kinds().find(kind);
  detail::require_part(of_kind != detail::parts_of_kinds().end(), "it has no 'certificate' of a known kind");
  for (const auto& [name, values] : certificate.parts) {
    constexpr std::size_t kShown = 40;
    detail::require_part(std::count(of_kind->second.begin(), of_kind->second.end(), name) == 1, "'",
                         name.substr(0, kShown), "' is no part of this kind");
    detail::require_part(certificate.find(name) == &values, "it has '", name, "' twice");
  }
  detail::ExactParts parts(certificate);
  if (kind == "solution" || kind == "inverse") {
    return detail::check_solution(parts, kind == "inverse");
  }
  if (kind == "determinant") {
    return detail::check_determinant(parts);
  }
  if (kind == "symmetric eigenvalues" || kind == "singular values") {
    return detail::check_weyl(parts, kind);
  }
  if (kind == "eigenvalues") {
    return detail::check_eigenvalues(parts);
  }
  return detail::check_zeros(parts);
}

}  // namespace tesk2mp::proven
