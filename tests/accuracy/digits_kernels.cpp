// Scalars and kernels.
#include "digits.h"

namespace accuracy {
namespace {

using ComplexRoot = void (*)(QuarnFloat*, QuarnFloat*, QuarnFloat*, QuarnFloat*);

Computation complex_root(ComplexRoot entry) {
  return [entry](Data& data) {
    Vector x = data.reals(2);
    Vector y(2);
    entry(&x[0], &x[1], &y[0], &y[1]);
    return y;
  };
}

Vector modulus(Data& data) {
  const Complex z = data.complex();
  return gathered(QuarnMP_a02abfn_(z.re, z.im));
}

Vector quotient(Data& data) {
  const Complex x = data.complex();
  const Complex y = data.complex();
  Vector z(2);
  QuarnMP_a02acfn_(x.re, x.im, y.re, y.im, &z[0], &z[1]);
  return z;
}

Vector rotation(Data& data) {
  Vector x = data.reals(2);
  Vector c_and_s(2);
  QuarnMP_f06aaf_(&x[0], &x[1], &c_and_s[0], &c_and_s[1]);
  return gathered(x, c_and_s);
}

Vector euclidean_norm(Data& data) {
  Vector x = data.reals(100);
  return gathered(QuarnMP_f06ejf_(100, x.data(), 1));
}

Vector matrix_vector(Data& data) {
  Vector a = data.reals(kElements);
  Vector x = data.reals(kOrder);
  Vector y(kOrder);
  QuarnMP_f06paf_("N", kOrder, kOrder, 1, a.data(), kOrder, x.data(), 1, 0, y.data(), 1, 1);
  return y;
}

Vector triangle_vector(Data& data) {
  Vector a = data.reals(kElements);
  Vector x = data.reals(kOrder);
  QuarnMP_f06pff_("U", "N", "N", kOrder, a.data(), kOrder, x.data(), 1, 1, 1, 1);
  return x;
}

Vector rank_one_update(Data& data) {
  Vector a = data.reals(kElements);
  Vector x = data.reals(kOrder);
  Vector y = data.reals(kOrder);
  QuarnMP_f06pmf_(kOrder, kOrder, data.real(), x.data(), 1, y.data(), 1, a.data(), kOrder);
  return a;
}

Vector matrix_product(Data& data) {
  Vector a = data.reals(kElements);
  Vector b = data.reals(kElements);
  Vector c(kElements);
  QuarnMP_f06yaf_("N", "N", kOrder, kOrder, kOrder, 1, a.data(), kOrder, b.data(), kOrder, 0, c.data(), kOrder, 1, 1);
  return c;
}

Vector complex_matrix_product(Data& data) {
  ComplexVector a = data.complexes(kElements);
  ComplexVector b = data.complexes(kElements);
  ComplexVector c(kElements);
  QuarnMP_f06zaf_("N", "N", kOrder, kOrder, kOrder, Complex(1), a.data(), kOrder, b.data(), kOrder, Complex(0),
                  c.data(), kOrder, 1, 1);
  return gathered(c);
}

Vector triangular_systems(Data& data) {
  Vector a = well_conditioned(data.reals(kElements));
  Vector b = data.reals(kElements);
  QuarnMP_f06yjf_("L", "U", "N", "N", kOrder, kOrder, 1, a.data(), kOrder, b.data(), kOrder, 1, 1, 1, 1);
  return b;
}

Vector rank_k_update(Data& data) {
  ComplexVector a = data.complexes(kElements);
  ComplexVector c(kElements);
  QuarnMP_f06zpf_("L", "N", kOrder, kOrder, 1, a.data(), kOrder, 0, c.data(), kOrder, 1, 1);
  return gathered(c);
}

Vector frobenius_norm(Data& data) {
  Vector a = data.reals(kElements);
  Vector work(kOrder);
  return gathered(QuarnMP_f06raf_("F", kOrder, kOrder, a.data(), kOrder, work.data(), 1));
}

}  // namespace

std::vector<Case> kernel_cases() {
  return {
      {"x01aaf", "pi", [](Data&) { return gathered(QuarnMPX_x01aaf_()); },
       [](Data&) { return gathered(QuarnMP_x01aaf_()); }},
      {"a02aaf", "complex square root", complex_root(QuarnMPX_a02aaf_), complex_root(QuarnMP_a02aaf_)},
      {"a02abf", "modulus of a complex number", modulus, {}},
      {"a02acf", "complex quotient", quotient, {}},
      {"f06aaf", "plane rotation", rotation, {}},
      {"f06ejf", "Euclidean norm, n = 100", euclidean_norm, {}},
      {"f06paf", "matrix times vector, n = 16", matrix_vector, {}},
      {"f06pff", "triangular matrix times vector, n = 16", triangle_vector, {}},
      {"f06pmf", "rank-1 update, n = 16", rank_one_update, {}},
      {"f06yaf", "matrix times matrix, n = 16", matrix_product, {}},
      {"f06zaf", "the same, complex", complex_matrix_product, {}},
      {"f06yjf", "triangular system, 16 right-hand sides", triangular_systems, {}},
      {"f06zpf", "Hermitian rank-16 update, n = 16", rank_k_update, {}},
      {"f06raf", "Frobenius norm, n = 16", frobenius_norm, {}},
  };
}

}  // namespace accuracy
