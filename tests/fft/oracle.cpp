#include "oracle.h"

#include <cstdint>

#include "src/fft/factorize.h"

namespace oracle {
namespace {

Point operator+(const Point& a, const Point& b) { return {a.re + b.re, a.im + b.im}; }
Point operator-(const Point& a, const Point& b) { return {a.re - b.re, a.im - b.im}; }
Point operator*(const Point& a, const Point& b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
Point conj(const Point& a) { return {a.re, -a.im}; }
/// sum + a b, with as few temporaries as can be.
void add_product(Point& sum, const Point& a, const Point& b) {
  sum.re += a.re * b.re;
  sum.re -= a.im * b.im;
  sum.im += a.re * b.im;
  sum.im += a.im * b.re;
}
mpreal norm(const Point& a) { return a.re * a.re + a.im * a.im; }

/// exp(-2 pi i k/n) with the given pi.
Point turn(Integer k, Integer n, const mpreal& pi) {
  const mpreal angle = 2 * pi * k / n;
  return {cos(angle), -sin(angle)};
}

/// exp(-2 pi i t/r) for t = 0 .. r-1, as the constants of radix r make it.
Sequence roots(Integer r, const Constants& c) {
  const mpreal zero = 0;
  const mpreal half = 0.5;
  switch (r) {
    case 1:
      return {{1, zero}};
    case 2:
      return {{1, zero}, {-1, zero}};
    case 3:
      return {{1, zero}, {-half, -c.half_sqrt3}, {-half, c.half_sqrt3}};
    case 4:
      return {{1, zero}, {zero, -1}, {-1, zero}, {zero, 1}};
    case 5: {
      const mpreal near = c.quarter_sqrt5 - 0.25;
      const mpreal far = -c.quarter_sqrt5 - 0.25;
      const mpreal high = sin(2 * c.pi / 5);
      const mpreal flat = sin(2 * c.pi / 10);
      return {{1, zero}, {near, -high}, {far, -flat}, {far, flat}, {near, high}};
    }
    case 8: {
      const mpreal& d = c.sqrt_half;
      return {{1, zero}, {d, -d}, {zero, -1}, {-d, -d}, {-1, zero}, {-d, d}, {zero, 1}, {d, d}};
    }
    default: {
      Sequence table(std::size_t(r), Point{1, 0});
      for (Integer t = 1; 2 * t < r; ++t) {
        table[std::size_t(t)] = turn(t, r, c.pi);
        table[std::size_t(r - t)] = conj(table[std::size_t(t)]);
      }
      return table;
    }
  }
}

/// One pass of radix r over sub-sequences of length m. For 0 <= k <= m/2 the elements Z_(k + s m) of the whole are the
/// sums over q of weight(k, q, s) times element k of sub-sequence q; backward the conjugate weights lead back.
class PassModel {
 public:
  PassModel(Integer r, Integer m, const Constants& constants)
      : r_(r), m_(m), constants_(constants), roots_(roots(r, constants)) {
    if (r % 2 == 0) {
      half_roots_ = roots(r / 2, constants);
    }
  }

  Point weight(Integer k, Integer q, Integer s) const {
    if (k == 0) {
      return root(q * s);
    }
    if (2 * k < m_) {
      return turn(k * q, r_ * m_, constants_.pi) * root(q * s);
    }
    // k = m/2, where element k of a sub-sequence is real: elements s and r-1-s are conjugate.
    if (r_ % 2 != 0) {
      const Point w = root(q * (s + r_ - (r_ - 1) / 2));
      return q % 2 == 0 ? w : Point{-w.re, -w.im};
    }
    if (s % 2 != 0) {
      return conj(weight(k, q, r_ - 1 - s));
    }
    const Integer low = q % (r_ / 2);
    Point w{1, 0};
    if (4 * low == r_) {
      w = {constants_.sqrt_half, -constants_.sqrt_half};
    } else if (low > 0) {
      w = turn(low, 2 * r_, constants_.pi);
    }
    if (q != low) {
      w = {w.im, -w.re};
    }
    return w * half_roots_[std::size_t(low * (s / 2) % (r_ / 2))];
  }

 private:
  const Point& root(Integer t) const { return roots_[std::size_t(t % r_)]; }

  Integer r_;
  Integer m_;
  const Constants& constants_;
  Sequence roots_;
  Sequence half_roots_;
};

/// Fills elements above the middle from those below.
void make_hermitian(Sequence& z) {
  const std::size_t n = z.size();
  for (std::size_t k = 1; 2 * k < n; ++k) {
    z[n - k] = conj(z[k]);
  }
}

Sequence unscaled_forward(const Sequence& x, std::vector<Integer> radices, const Constants& constants) {
  if (radices.empty()) {
    return x;
  }
  const auto n = Integer(x.size());
  const Integer r = radices.back();
  const Integer m = n / r;
  radices.pop_back();
  std::vector<Sequence> parts;
  for (Integer q = 0; q < r; ++q) {
    Sequence part;
    for (Integer i = q; i < n; i += r) {
      part.push_back(x[std::size_t(i)]);
    }
    parts.push_back(unscaled_forward(part, radices, constants));
  }
  const PassModel pass(r, m, constants);
  Sequence z(x.size());
  for (Integer k = 0; 2 * k <= m; ++k) {
    for (Integer s = 0; s < r; ++s) {
      Point sum;
      for (Integer q = 0; q < r; ++q) {
        sum = sum + pass.weight(k, q, s) * parts[std::size_t(q)][std::size_t(k)];
      }
      const Integer index = k + s * m;
      z[std::size_t(2 * index <= n ? index : n - index)] = 2 * index <= n ? sum : conj(sum);
    }
  }
  make_hermitian(z);
  return z;
}

Sequence unscaled_backward(const Sequence& z, std::vector<Integer> radices, const Constants& constants) {
  if (radices.empty()) {
    return z;
  }
  const auto n = Integer(z.size());
  const Integer r = radices.front();
  const Integer m = n / r;
  radices.erase(radices.begin());
  const PassModel pass(r, m, constants);
  Sequence x(z.size());
  for (Integer q = 0; q < r; ++q) {
    Sequence part(static_cast<std::size_t>(m));
    for (Integer k = 0; 2 * k <= m; ++k) {
      for (Integer s = 0; s < r; ++s) {
        part[std::size_t(k)] = part[std::size_t(k)] + conj(pass.weight(k, q, s)) * z[std::size_t(k + s * m)];
      }
    }
    make_hermitian(part);
    part = unscaled_backward(part, radices, constants);
    for (Integer i = 0; i < m; ++i) {
      x[std::size_t(q + i * r)] = part[std::size_t(i)];
    }
  }
  return x;
}

/// Radix r = radices[0] first: element s + r k of the whole is element k of the sequence y_s.
Sequence unscaled_complex(const Sequence& x, std::vector<Integer> radices, const Constants& constants) {
  if (radices.empty()) {
    return x;
  }
  const auto n = Integer(x.size());
  const Integer r = radices.front();
  const Integer m = n / r;
  radices.erase(radices.begin());
  const Sequence root = roots(r, constants);
  Sequence z(x.size());
  for (Integer s = 0; s < r; ++s) {
    Sequence y(static_cast<std::size_t>(m));
    for (Integer i = 0; i < m; ++i) {
      Point sum;
      for (Integer q = 0; q < r; ++q) {
        add_product(sum, root[std::size_t(std::int64_t(q) * s % r)], x[std::size_t(i + q * m)]);
      }
      y[std::size_t(i)] = s * i == 0 ? sum : turn(s * i, n, constants.pi) * sum;
    }
    y = unscaled_complex(y, radices, constants);
    for (Integer k = 0; k < m; ++k) {
      z[std::size_t(s + r * k)] = y[std::size_t(k)];
    }
  }
  return z;
}

void scale(Sequence& x) {
  const mpreal root = sqrt(mpreal(double(x.size())));
  for (Point& value : x) {
    value = {value.re / root, value.im / root};
  }
}

}  // namespace

Constants Constants::classic() {
  return {3.141592653589793, 0.8660254037844386, 0.7071067811865476, 0.5590169943749475};
}

Constants Constants::full() { return {mpfr::const_pi(), sqrt(mpreal(3)) / 2, sqrt(mpreal(0.5)), sqrt(mpreal(5)) / 4}; }

mpreal exact(const QuarnFloat& x) { return mpreal(x.to_string()); }

Sequence from_real(const std::vector<QuarnFloat>& x) {
  Sequence all;
  for (const QuarnFloat& value : x) {
    all.push_back({exact(value), 0});
  }
  return all;
}

Sequence from_half_complex(const std::vector<QuarnFloat>& x) {
  const std::size_t n = x.size();
  Sequence all(n);
  for (std::size_t k = 0; 2 * k <= n; ++k) {
    all[k] = {exact(x[k]), k > 0 && 2 * k < n ? exact(x[n - k]) : mpreal(0)};
  }
  make_hermitian(all);
  return all;
}

Sequence from_complex(const std::vector<Complex>& x) {
  Sequence all;
  for (const Complex& value : x) {
    all.push_back({exact(value.re), exact(value.im)});
  }
  return all;
}

Sequence by_definition(const Sequence& x, int sign) {
  const std::size_t n = x.size();
  Sequence w;
  for (std::size_t k = 0; k < n; ++k) {
    const Point forward = turn(Integer(k), Integer(n), mpfr::const_pi());
    w.push_back(sign < 0 ? forward : conj(forward));
  }
  Sequence z(n);
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t j = 0; j < n; ++j) {
      add_product(z[k], w[j * k % n], x[j]);
    }
  }
  scale(z);
  return z;
}

Sequence by_passes_forward(const Sequence& x, std::vector<Integer> radices, const Constants& constants) {
  Sequence z = unscaled_forward(x, std::move(radices), constants);
  scale(z);
  return z;
}

Sequence by_passes_backward(const Sequence& z, std::vector<Integer> radices, const Constants& constants) {
  Sequence x = unscaled_backward(z, std::move(radices), constants);
  scale(x);
  return x;
}

Sequence by_complex_passes(const Sequence& x, const std::vector<Integer>& radices, const Constants& constants) {
  Sequence z = unscaled_complex(x, radices, constants);
  scale(z);
  return z;
}

std::vector<Integer> radices_of(Integer n) {
  std::vector<Integer> radices;
  const tesk::Factorization factors = tesk::c06FactorN(n);
  for (std::size_t i = 0; factors.passes[i] != 0; ++i) {
    if (factors.passes[i] != 1) {
      radices.push_back(factors.passes[i]);
    }
  }
  return radices;
}

double in_units(const mpreal& x, int digits) { return mpreal(abs(x) * pow(mpreal(10), digits)).toDouble(); }

double error_in_units(const Sequence& a, const Sequence& b, int digits) {
  mpreal difference = 0;
  mpreal size = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    difference += norm(a[i] - b[i]);
    size += norm(b[i]);
  }
  return in_units(sqrt(difference / size), digits);
}

}  // namespace oracle
