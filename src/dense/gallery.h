// Test matrices by name: what the table of them and the files that build them share.
#pragma once

#include <utility>

#include "src/dense/householder.h"

namespace tesk::gallery {

/// Positions of the arguments of xGALLERY that a builder may refuse.
inline constexpr Integer kOrder = 2;
inline constexpr Integer kParameters = 3;

/// A matrix that is asked for, to be built at more than the working digits and then rounded.
template <class T>
struct Request {
  Integer n;
  OneBasedVector<const T> parameters;
  Integer count;  // of parameters
  int digits;     // the caller's
  Integer* seed;  // of generator 0
  OneBasedMatrix<T> a;

  T parameter(Integer k, T otherwise) const { return k <= count ? parameters(k) : std::move(otherwise); }
  template <class Rule>
  void each(const Rule& rule) const {
    for (Integer j = 1; j <= n; ++j) {
      QuarnCheckInterrupt();
      for (Integer i = 1; i <= n; ++i) {
        a(i, j) = T(rule(i, j));
      }
    }
  }
};

/// Fills the matrix; returns 0 or the position of the argument that it cannot be built from.
template <class T>
using Build = Integer (*)(const Request<T>&);

// The random ones.
template <class T>
Integer random_uniform(const Request<T>& request);
template <class T>
Integer random_normal(const Request<T>& request);
template <class T>
Integer random_symmetric(const Request<T>& request);
template <class T>
Integer random_orthogonal(const Request<T>& request);
template <class T>
Integer random_values(const Request<T>& request);
template <class T>
Integer random_definite(const Request<T>& request);
template <class T>
Integer random_sparse(const Request<T>& request);

}  // namespace tesk::gallery
