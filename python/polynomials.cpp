// Polynomials; coefficients run from the highest power down.
#include "convert.h"

namespace python {

void add_polynomials(py::module_& module) {
  module.def(
      "polynomial_zeros",
      [](py::handle a) {
        const Array given(a);
        return with_scalar(
            [&]<class T>(T) {
              const std::vector<T> coefficients = given.vector<T>();
              py::list zeros;
              for (const tesk2mp::Zero& zero : outside([&] { return tesk2mp::polynomial_zeros(coefficients); })) {
                zeros.append(py::make_tuple(zero.value, from(zero.error)));
              }
              return zeros;
            },
            given);
      },
      py::arg("a"), R"(polynomial_zeros(a)

The zeros of a[0] z^n + ... + a[n], largest moduli first, each with a bound of its error: a list of (Complex, Decimal). The
coefficients are taken as exact; multiple zeros and zeros of very different sizes are found to all digits.

>>> [zero for zero, error in polynomial_zeros([1, -6, 11, -6])]
[Complex('3', '0'), Complex('2', '0'), Complex('1', '0')]
)");
  module.def(
      "polynomial_value",
      [](py::handle a, py::handle z) {
        const Array given(a);
        const Complex point = to_complex(z);
        if (given.is_complex() || point.im != 0) {
          return from(tesk2mp::polynomial_value(given.vector<Complex>(), point));
        }
        return from(tesk2mp::polynomial_value(given.vector<Real>(), point.re));
      },
      py::arg("a"), py::arg("z"), R"(polynomial_value(a, z)

The value of a[0] z^n + ... + a[n], good to the last digit whatever cancels.

>>> polynomial_value([1, -3, 3, -1], '1.001')
Decimal('1E-9')
)");
  module.def(
      "polynomial_quotient",
      [](py::handle a, py::handle b) {
        const Array dividend(a);
        const Array divisor(b);
        return with_scalar(
            [&]<class T>(T) {
              const auto result = tesk2mp::polynomial_quotient(dividend.vector<T>(), divisor.vector<T>());
              return py::make_tuple(from(result.quotient, a), from(result.remainder, a));
            },
            dividend, divisor);
      },
      py::arg("a"), py::arg("b"), R"(polynomial_quotient(a, b)

(quotient, remainder) with a = quotient b + remainder; the remainder has one coefficient less than b.

>>> polynomial_quotient([1, 0, 0, 5], [1, 1])
([Decimal('1'), Decimal('-1'), Decimal('1')], [Decimal('4')])
)");
  module.def(
      "polynomial_from_zeros",
      [](py::handle zeros) {
        const Array given(zeros);
        return with_scalar([&]<class T>(T) { return from(tesk2mp::polynomial_from_zeros(given.vector<T>()), zeros); },
                           given);
      },
      py::arg("zeros"), R"(polynomial_from_zeros(zeros)

The coefficients of the polynomial with these zeros and first coefficient 1.

>>> polynomial_from_zeros([1, 2, 3])
[Decimal('1'), Decimal('-6'), Decimal('11'), Decimal('-6')]
)");
}

}  // namespace python
