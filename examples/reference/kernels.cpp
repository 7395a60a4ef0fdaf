// Examples of the routine reference: vector and matrix kernels.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void f06aaf() {
  //! [f06aaf]
  QuarnFloat a = 3, b = 4, c, s;
  QuarnMP_f06aaf_(&a, &b, &c, &s);
  std::cout << a << " " << c << " " << s << "\n";
  //! [f06aaf]
}

void f06caf() {
  //! [f06caf]
  Complex x[] = {Complex(1, 2)};
  QuarnMP_f06caf_(1, 2, x, 1);
  std::cout << x[0].re << " " << x[0].im << "\n";
  //! [f06caf]
}

void f06ejf() {
  //! [f06ejf]
  QuarnFloat x[] = {3, 4};
  std::cout << QuarnMP_f06ejf_(2, x, 1) << "\n";
  //! [f06ejf]
}

void f06fdf() {
  //! [f06fdf]
  QuarnFloat x[] = {1, 2}, y[2];
  QuarnMP_f06fdf_(2, 3, x, 1, y, 1);
  std::cout << y[0] << " " << y[1] << "\n";
  //! [f06fdf]
}

void f06hdf() {
  //! [f06hdf]
  Complex x[] = {Complex(1, 2)}, y[1];
  QuarnMP_f06hdf_(1, Complex(0, 1), x, 1, y, 1);
  std::cout << y[0].re << " " << y[0].im << "\n";
  //! [f06hdf]
}

void f06jjf() {
  //! [f06jjf]
  Complex x[] = {Complex(1, 2), Complex(3, 4)}, y[2];
  QuarnMP_f06jjf_(2, x, -1, y, 1);  // backwards
  std::cout << y[0].re << " " << y[0].im << ", " << y[1].re << " " << y[1].im << "\n";
  //! [f06jjf]
}

void f06paf() {
  //! [f06paf]
  QuarnFloat a[] = {1, 3, 2, 4};  // by columns: rows (1, 2) and (3, 4)
  QuarnFloat x[] = {1, 1}, y[2];
  QuarnMP_f06paf_("N", 2, 2, 1, a, 2, x, 1, 0, y, 1, 1);
  std::cout << y[0] << " " << y[1] << "\n";
  //! [f06paf]
}

void f06pff() {
  //! [f06pff]
  QuarnFloat a[] = {1, 0, 2, 4};  // rows (1, 2) and (0, 4)
  QuarnFloat x[] = {1, 1};
  QuarnMP_f06pff_("U", "N", "N", 2, a, 2, x, 1, 1, 1, 1);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [f06pff]
}

void f06pjf() {
  //! [f06pjf]
  QuarnFloat a[] = {1, 0, 2, 4};  // x + 2 y = 7, 4 y = 12
  QuarnFloat x[] = {7, 12};
  QuarnMP_f06pjf_("U", "N", "N", 2, a, 2, x, 1, 1, 1, 1);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [f06pjf]
}

void f06pmf() {
  //! [f06pmf]
  QuarnFloat x[] = {1, 2}, y[] = {3, 4};
  QuarnFloat a[] = {0, 0, 0, 0};
  QuarnMP_f06pmf_(2, 2, 1, x, 1, y, 1, a, 2);
  std::cout << a[0] << " " << a[2] << "\n" << a[1] << " " << a[3] << "\n";
  //! [f06pmf]
}

void f06yaf() {
  //! [f06yaf]
  QuarnFloat a[] = {1, 3, 2, 4}, b[] = {0, 1, 1, 0};  // b exchanges the columns
  QuarnFloat c[4];
  QuarnMP_f06yaf_("N", "N", 2, 2, 2, 1, a, 2, b, 2, 0, c, 2, 1, 1);
  std::cout << c[0] << " " << c[2] << "\n" << c[1] << " " << c[3] << "\n";
  //! [f06yaf]
}

void f06yjf() {
  //! [f06yjf]
  QuarnFloat a[] = {1, 0, 2, 4};   // x + 2 y and 4 y
  QuarnFloat b[] = {7, 12, 3, 4};  // are 7 and 12, then 3 and 4
  QuarnMP_f06yjf_("L", "U", "N", "N", 2, 2, 1, a, 2, b, 2, 1, 1, 1, 1);
  std::cout << b[0] << " " << b[1] << ", " << b[2] << " " << b[3] << "\n";
  //! [f06yjf]
}

void f06zpf() {
  //! [f06zpf]
  Complex a[] = {Complex(1, 2)}, c[] = {Complex(1, 0)};
  QuarnMP_f06zpf_("U", "N", 1, 1, 1, a, 1, 10, c, 1, 1, 1);  // |a|^2 + 10 c
  std::cout << c[0].re << " " << c[0].im << "\n";
  //! [f06zpf]
}

void dsyrk() {
  //! [dsyrk]
  QuarnFloat a[] = {1, 2, 3, 4}, c[] = {0, 0, 0, 0};  // rows (1, 3) and (2, 4)
  QuarnMPX_dsyrk_("L", "N", 2, 2, 1, a, 2, 0, c, 2, 1, 1);
  std::cout << c[0] << "\n" << c[1] << " " << c[3] << "\n";
  //! [dsyrk]
}

void f06raf() {
  //! [f06raf]
  QuarnFloat a[] = {1, 3, -2, 4}, work[2];
  std::cout << QuarnMP_f06raf_("M", 2, 2, a, 2, work, 1) << " " << QuarnMP_f06raf_("O", 2, 2, a, 2, work, 1) << " "
            << QuarnMP_f06raf_("I", 2, 2, a, 2, work, 1) << "\n";
  //! [f06raf]
}

}  // namespace

int main() {
  return run_examples({{"f06aaf", f06aaf},
                       {"f06caf", f06caf},
                       {"f06ejf", f06ejf},
                       {"f06fdf", f06fdf},
                       {"f06hdf", f06hdf},
                       {"f06jjf", f06jjf},
                       {"f06paf", f06paf},
                       {"f06pff", f06pff},
                       {"f06pjf", f06pjf},
                       {"f06pmf", f06pmf},
                       {"f06yaf", f06yaf},
                       {"f06yjf", f06yjf},
                       {"f06zpf", f06zpf},
                       {"dsyrk", dsyrk},
                       {"f06raf", f06raf}});
}
