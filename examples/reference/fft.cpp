// Examples of the routine reference: Fourier transforms.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void c06faf() {
  //! [c06faf]
  QuarnFloat x[] = {1, 2, 3, 4}, work[4];
  Integer n = 4, ifail = -1;
  QuarnMPX_c06faf_(x, &n, work, &ifail);  // z = 5, -1 + i, -1, -1 - i
  std::cout << x[0] << " " << x[1] << " " << x[2] << " " << x[3] << "\n";
  //! [c06faf]
}

void c06eawn() {
  //! [c06eawn]
  QuarnFloat x[] = {1, 2};
  Integer radices[] = {2, 0};
  QuarnMPX_c06eawn_(x, 2, radices);  // sum and difference, not scaled
  std::cout << x[0] << " " << x[1] << "\n";
  //! [c06eawn]
}

void c06pcf() {
  //! [c06pcf]
  Complex x[] = {1, 2, 3, 4}, work[8];
  Integer n = 4, ifail = -1;
  QuarnMPX_c06pcf_("F", x, &n, work, &ifail, 1);
  for (const Complex& z : x) {
    std::cout << z.re << " " << z.im << "\n";
  }
  //! [c06pcf]
}

void c06ncwn() {
  //! [c06ncwn]
  const Complex table[] = {1, Complex(0, -1), -1, Complex(0, 1)};
  const Integer factors[] = {4};
  Complex x[] = {1, 2, 3, 4}, scratch[4];
  QuarnMPX_c06ncwn_(4, x, scratch, table, 1, factors);
  for (const Complex& z : x) {
    std::cout << z.re << " " << z.im << "\n";
  }
  //! [c06ncwn]
}

void c06ncvn() {
  //! [c06ncvn]
  const Complex source[] = {1, 2}, table[] = {1, -1};
  Complex target[2];
  QuarnMPX_c06ncvn_(1, 1, source, target, table);
  std::cout << target[0].re << " " << target[1].re << "\n";
  //! [c06ncvn]
}

void c06prf() {
  //! [c06prf]
  Complex x[] = {1, 4, 1, 0, 1, 0, 1, 0}, work[12];  // 1, 1, 1, 1 and 4, 0, 0, 0
  Integer m = 2, n = 4, ifail = -1;
  QuarnMPX_c06prf_("F", &m, &n, x, work, &ifail, 1);
  for (const Complex& z : x) {
    std::cout << (&z == x ? "" : " ") << z.re;
  }
  std::cout << "\n";
  //! [c06prf]
}

void c06psf() {
  //! [c06psf]
  Complex x[] = {1, 1, 1, 1, 4, 0, 0, 0}, work[8];
  char message[200];
  Integer ifail = -1;
  QuarnMPX_c06psfn_("F", 2, 4, x, work, message, &ifail, 1, 200);
  for (const Complex& z : x) {
    std::cout << (&z == x ? "" : " ") << z.re;
  }
  std::cout << "\n";
  //! [c06psf]
}

void c06pff() {
  //! [c06pff]
  Complex x[] = {1, 1, 1, 1, 4, 0, 0, 0}, work[27];
  Integer ndim = 2, l = 1, nd[] = {4, 2}, n = 8, lwork = 27, ifail = -1;
  QuarnMPX_c06pff_("F", &ndim, &l, nd, &n, x, work, &lwork, &ifail, 1);
  for (const Complex& z : x) {
    std::cout << (&z == x ? "" : " ") << z.re;
  }
  std::cout << "\n";
  //! [c06pff]
}

}  // namespace

int main() {
  return run_examples({{"c06faf", c06faf},
                       {"c06eawn", c06eawn},
                       {"c06pcf", c06pcf},
                       {"c06ncwn", c06ncwn},
                       {"c06ncvn", c06ncvn},
                       {"c06prf", c06prf},
                       {"c06psf", c06psf},
                       {"c06pff", c06pff}});
}
