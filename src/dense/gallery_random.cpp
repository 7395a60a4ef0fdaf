// Random vectors and test matrices from generator 0: DLARNV and ZLARNV of E. Anderson et al., LAPACK Users' Guide, SIAM
// 1999; orthogonal matrices by G. W. Stewart, The efficient generation of random orthogonal matrices with an
// application to condition estimators, SIAM J. Numer. Anal. 17 (1980).
#include <algorithm>
#include <vector>

#include "quarn/complex.h"
#include "quarn/functions.h"
#include "src/dense/gallery.h"
#include "src/dense/parts.h"
#include "src/frame/working_digits.h"
#include "src/kernels/exact.h"
#include "tesk2mp/gallery.h"
#include "tesk2mp/orthogonal.h"
#include "tesk2mp/random.h"

namespace tesk {
namespace {

enum class Distribution : Integer { unit = 1, symmetric = 2, normal = 3, disc = 4, circle = 5 };

QuarnFloat uniform(Integer* seed) { return QuarnMPX_g05kafn_(0, seed); }

/// Uniform on (0, 1), and not zero even where few digits make it probable.
QuarnFloat positive(Integer* seed) {
  constexpr int kTries = 100;  // a seed of zeros gives nothing but zeros
  for (int i = 0; i < kTries; ++i) {
    QuarnFloat u = uniform(seed);
    if (u > 0) {
      return u;
    }
  }
  return QuarnFloat(0.5);
}

/// The point of the unit circle at a random angle.
Complex direction(Integer* seed) {
  const QuarnFloat angle = 2 * uniform(seed);
  return {cospi(angle), sinpi(angle)};
}

/// Two independent normal numbers: G. E. P. Box, M. E. Muller, A note on the generation of random normal deviates,
/// Ann. Math. Statist. 29 (1958).
Complex normal_pair(Integer* seed) {
  constexpr int kGuard = 8;
  const WorkingDigits more(QuarnDigits() + kGuard);
  const QuarnFloat length = sqrt(-2 * log(positive(seed)));
  Complex pair = direction(seed);
  multiply_by(pair, length);
  return pair;
}

QuarnFloat draw(Distribution distribution, Integer* seed, QuarnFloat /*kind*/) {
  switch (distribution) {
    case Distribution::unit:
      return uniform(seed);
    case Distribution::symmetric:
      return 2 * uniform(seed) - 1;
    default:
      return normal_pair(seed).re * 1;
  }
}

Complex draw(Distribution distribution, Integer* seed, const Complex& /*kind*/) {
  switch (distribution) {
    case Distribution::normal:
      return normal_pair(seed) * Complex(1);
    case Distribution::disc: {
      Complex z = direction(seed);
      multiply_by(z, sqrt(uniform(seed)));
      return z;
    }
    case Distribution::circle:
      return direction(seed);
    default: {
      QuarnFloat re = draw(distribution, seed, QuarnFloat());
      return {std::move(re), draw(distribution, seed, QuarnFloat())};
    }
  }
}

template <class T>
void fill_randomly(Integer idist, Integer* iseed, Integer n, T* x) {
  const Integer most = Integer(sizeof(T) == sizeof(QuarnFloat) ? Distribution::normal : Distribution::circle);
  if (idist < 1 || idist > most) {
    return;
  }
  for (Integer i = 0; i < n; ++i) {
    QuarnCheckInterrupt();
    x[i] = draw(Distribution(idist), iseed, T());
  }
}

void factorise(Integer n, QuarnFloat* a, QuarnFloat* tau, QuarnFloat* work, Integer* info) {
  QuarnMPX_dgeqrf_(n, n, a, n, tau, work, n, info);
}
void factorise(Integer n, Complex* a, Complex* tau, Complex* work, Integer* info) {
  QuarnMPX_zgeqrf_(n, n, a, n, tau, work, n, info);
}
void form(Integer n, QuarnFloat* a, QuarnFloat* tau, QuarnFloat* work, Integer* info) {
  QuarnMPX_dorgqr_(n, n, n, a, n, tau, work, n, info);
}
void form(Integer n, Complex* a, Complex* tau, Complex* work, Integer* info) {
  QuarnMPX_zungqr_(n, n, n, a, n, tau, work, n, info);
}

/// An orthogonal or unitary matrix, each as probable as any other: Q of a matrix of normal numbers, where R has a
/// positive diagonal.
template <class T>
void make_orthogonal(Integer n, Integer* seed, OneBasedMatrix<T> q) {
  std::vector<T> tau(static_cast<std::size_t>(n));
  std::vector<T> work(tau.size());
  std::vector<T> turn(tau.size());
  for (Integer j = 1; j <= n; ++j) {
    fill_randomly(Integer(Distribution::normal), seed, n, q.column(j).first());
  }
  Integer info = 0;
  factorise(n, q.first(), tau.data(), work.data(), &info);
  for (Integer j = 1; j <= n; ++j) {
    const QuarnFloat size = modulus(q(j, j));
    turn[std::size_t(j - 1)] = size == 0 ? T(1.0) : quotient(q(j, j), T(size));
  }
  form(n, q.first(), tau.data(), work.data(), &info);
  for (Integer j = 1; j <= n; ++j) {
    scale(n, turn[std::size_t(j - 1)], q.column(j));
  }
}

/// The n values that are given, or a geometric row from 1 down to 1 / condition; empty when they are none.
template <class T>
std::vector<QuarnFloat> values_of(const gallery::Request<T>& request) {
  const Integer n = request.n;
  std::vector<QuarnFloat> values;
  if (request.count == n && n != 1) {
    for (Integer i = 1; i <= n; ++i) {
      values.push_back(real_part(request.parameters(i)));
    }
    return values;
  }
  const T given = request.parameter(1, T(QuarnFloat(1, request.digits / 2)));
  const QuarnFloat condition = real_part(given);
  if (!isfinite(condition) || condition < 1) {
    return values;
  }
  const QuarnFloat step = n > 1 ? -log(condition) / (n - 1) : QuarnFloat();
  for (Integer i = 0; i < n; ++i) {
    values.push_back(exp(step * i));
  }
  return values;
}

/// A := U diag(values) V^H
template <class T>
void compose(Integer n, OneBasedMatrix<T> u, const std::vector<QuarnFloat>& values, OneBasedMatrix<T> v,
             OneBasedMatrix<T> a) {
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> scaled = own.view();
  for (Integer j = 1; j <= n; ++j) {
    copy(n, u.column(j), scaled.column(j));
    scale(n, values[std::size_t(j - 1)], scaled.column(j));
  }
  exact::multiply_matrices(Op::none, Op::conjugate_transpose, n, n, n, T(1.0), scaled, v, T(), a);
}

}  // namespace

namespace gallery {

template <class T>
Integer random_uniform(const Request<T>& request) {
  request.each([&](Integer /*i*/, Integer /*j*/) { return draw(Distribution::symmetric, request.seed, T()); });
  return 0;
}
template <class T>
Integer random_normal(const Request<T>& request) {
  request.each([&](Integer /*i*/, Integer /*j*/) { return draw(Distribution::normal, request.seed, T()); });
  return 0;
}
template <class T>
Integer random_symmetric(const Request<T>& request) {
  random_uniform(request);
  for (Integer j = 1; j <= request.n; ++j) {
    request.a(j, j) = T(real_part(request.a(j, j)));
    for (Integer i = 1; i < j; ++i) {
      request.a(j, i) = conjugate(request.a(i, j));
    }
  }
  return 0;
}
template <class T>
Integer random_orthogonal(const Request<T>& request) {
  OwnMatrix<T> own(request.n, request.n);
  make_orthogonal(request.n, request.seed, own.view());
  request.each([q = own.view()](Integer i, Integer j) { return q(i, j); });
  return 0;
}
template <class T>
Integer random_values(const Request<T>& request) {
  const std::vector<QuarnFloat> values = values_of(request);
  if (values.empty() && request.n > 0) {
    return kParameters;
  }
  OwnMatrix<T> u(request.n, request.n);
  OwnMatrix<T> v(request.n, request.n);
  make_orthogonal(request.n, request.seed, u.view());
  make_orthogonal(request.n, request.seed, v.view());
  compose(request.n, u.view(), values, v.view(), request.a);
  return 0;
}
template <class T>
Integer random_definite(const Request<T>& request) {
  const std::vector<QuarnFloat> values = values_of(request);
  if (values.empty() && request.n > 0) {
    return kParameters;
  }
  OwnMatrix<T> q(request.n, request.n);
  make_orthogonal(request.n, request.seed, q.view());
  compose(request.n, q.view(), values, q.view(), request.a);
  return 0;
}
template <class T>
Integer random_sparse(const Request<T>& request) {
  const QuarnFloat density = real_part(request.parameter(1, T(0.1)));
  if (!(density >= 0 && density <= 1)) {
    return kParameters;
  }
  request.each([&](Integer /*i*/, Integer /*j*/) {
    return uniform(request.seed) < density ? draw(Distribution::symmetric, request.seed, T()) : T();
  });
  return 0;
}

template Integer random_uniform(const Request<QuarnFloat>&);
template Integer random_uniform(const Request<Complex>&);
template Integer random_normal(const Request<QuarnFloat>&);
template Integer random_normal(const Request<Complex>&);
template Integer random_symmetric(const Request<QuarnFloat>&);
template Integer random_symmetric(const Request<Complex>&);
template Integer random_orthogonal(const Request<QuarnFloat>&);
template Integer random_orthogonal(const Request<Complex>&);
template Integer random_values(const Request<QuarnFloat>&);
template Integer random_values(const Request<Complex>&);
template Integer random_definite(const Request<QuarnFloat>&);
template Integer random_definite(const Request<Complex>&);
template Integer random_sparse(const Request<QuarnFloat>&);
template Integer random_sparse(const Request<Complex>&);

}  // namespace gallery
}  // namespace tesk

extern "C" {

void QuarnMPX_dlarnv_(Integer idist, Integer* iseed, Integer n, QuarnFloat* x) {
  tesk::fill_randomly(idist, iseed, n, x);
}

void QuarnMPX_zlarnv_(Integer idist, Integer* iseed, Integer n, Complex* x) { tesk::fill_randomly(idist, iseed, n, x); }
}
