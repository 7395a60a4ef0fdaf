// Triangular solution that scales its right-hand side instead of overflowing.
#pragma once

#include "src/kernels/exact_level3.h"

namespace tesk {

/// Sizes of a triangle, in powers of ten above its elements.
struct TriangleSizes {
  std::vector<std::int64_t> diagonal;
  std::vector<std::int64_t> columns;  // beside the diagonal
  bool finite = true;
  bool regular = true;  // no zero on the diagonal
};

/// The e with |x| < 10^e (of both parts), far below all others for zero.
std::int64_t size_exponent(const QuarnFloat& x);
std::int64_t size_exponent(const Complex& x);

template <class T>
TriangleSizes sizes_of_triangle(Triangle triangle, Diagonal diagonal, Integer n, OneBasedMatrix<T> a);

/// x := s op(A)^-1 x, where s <= 1 is a power of ten such that nothing overflows; it is 1 unless it has to be less.
/// With a zero on the diagonal s is 0, and x a vector with op(A) x = 0. What is not finite is not scaled.
template <class T>
QuarnFloat solve_scaled(const TriangleSizes& sizes, Triangle triangle, Op op, Diagonal diagonal, Integer n,
                        OneBasedMatrix<T> a, OneBasedVector<T> x);

}  // namespace tesk
