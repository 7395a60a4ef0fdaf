// Examples of the routine reference: incomplete factorisations.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void f11daf() {
  //! [f11daf]
  const Integer n = 3, nnz = 7, la = 14, lfill = 0;
  const QuarnFloat dtol = 0;
  QuarnFloat a[14] = {4, 1, 1, 2, 3, 1, 2};  // rows (4, 1, 1), (2, 3, 0) and (1, 0, 2)
  Integer irow[14] = {1, 1, 1, 2, 2, 3, 3}, icol[14] = {1, 2, 3, 1, 2, 1, 3};
  Integer ipivp[3], ipivq[3], istr[4], idiag[3], nnzc, npivm, ifail = -1;
  QuarnMP_f11daf_(&n, &nnz, a, &la, irow, icol, &lfill, &dtol, "N", "N", ipivp, ipivq, istr, idiag, &nnzc, &npivm,
                  &ifail, 1, 1);
  for (Integer k = nnz; k < nnz + nnzc; ++k) {
    std::cout << irow[k] << " " << icol[k] << ": " << a[k] << "\n";
  }
  //! [f11daf]
}

void f11dbf() {
  //! [f11dbf]
  // L = (1 0; 0.5 1) and U = (4 2; 0 1) behind the four entries of a matrix
  const QuarnFloat a[8] = {4, 2, 2, 2, 4, 2, 0.5, 1}, y[2] = {6, 4};
  const Integer n = 2, la = 8, irow[8] = {1, 1, 2, 2, 1, 1, 2, 2}, icol[8] = {1, 2, 1, 2, 1, 2, 1, 2};
  const Integer order[2] = {1, 2}, istr[3] = {5, 7, 9}, idiag[2] = {5, 8};
  QuarnFloat x[2];
  Integer ifail = -1;
  QuarnMP_f11dbf_("N", &n, a, &la, irow, icol, order, order, istr, idiag, "C", y, x, &ifail, 1, 1);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [f11dbf]
}

void f11jaf() {
  //! [f11jaf]
  const Integer n = 3, nnz = 5, la = 11, lfill = 0;
  const QuarnFloat dtol = 0, dscale = 0;
  QuarnFloat a[11] = {4, 1, 4, 1, 4};  // rows (4), (1, 4) and (0, 1, 4) of the lower triangle
  Integer irow[11] = {1, 2, 2, 3, 3}, icol[11] = {1, 1, 2, 2, 3};
  Integer ipiv[3], istr[4], nnzc, npivm, ifail = -1;
  QuarnMP_f11jaf_(&n, &nnz, a, &la, irow, icol, &lfill, &dtol, "N", &dscale, "M", ipiv, istr, &nnzc, &npivm, &ifail, 1,
                  1);
  for (Integer k = nnz; k < nnz + nnzc; ++k) {
    std::cout << irow[k] << " " << icol[k] << ": " << a[k] << "\n";
  }
  //! [f11jaf]
}

void f11jbf() {
  //! [f11jbf]
  // L = (1 0; 0.5 1) and D = (4, 2) behind the three entries of a triangle
  const QuarnFloat a[6] = {4, 2, 3, 4, 0.5, 2}, y[2] = {8, 8};
  const Integer n = 2, la = 6, irow[6] = {1, 2, 2, 1, 2, 2}, icol[6] = {1, 1, 2, 1, 1, 2};
  const Integer order[2] = {1, 2}, istr[3] = {4, 5, 7};
  QuarnFloat x[2];
  Integer ifail = -1;
  QuarnMP_f11jbf_(&n, a, &la, irow, icol, order, istr, "C", y, x, &ifail, 1);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [f11jbf]
}

void f11dcf() {
  //! [f11dcf]
  const Integer n = 2, nnz = 4, la = 8, lfill = 0, m = 1, maxitn = 10;
  const QuarnFloat dtol = 0, tol(1, -15), b[2] = {6, 4};
  QuarnFloat a[8] = {4, 2, 2, 2}, x[2] = {0, 0}, rnorm;  // rows (4, 2) and (2, 2)
  Integer irow[8] = {1, 1, 2, 2}, icol[8] = {1, 2, 1, 2};
  Integer ipivp[2], ipivq[2], istr[3], idiag[2], nnzc, npivm, itn, ifail = -1;
  QuarnMP_f11daf_(&n, &nnz, a, &la, irow, icol, &lfill, &dtol, "N", "N", ipivp, ipivq, istr, idiag, &nnzc, &npivm,
                  &ifail, 1, 1);
  QuarnMP_f11dcf_("BICGSTAB", &n, &nnz, a, &la, irow, icol, ipivp, ipivq, istr, idiag, b, &m, &tol, &maxitn, x, &rnorm,
                  &itn, &ifail, 8);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [f11dcf]
}

void f11jqf() {
  //! [f11jqf]
  const Integer n = 2, nnz = 3, la = 6, lfill = 0, maxitn = 10;
  const QuarnFloat none = 0, tol(1, -15);
  const Complex b[2] = {Complex(2, 0), Complex(2, 0)};
  Complex a[6] = {2, Complex(0, 1), 2}, x[2];  // rows (2, -i) and (i, 2)
  Integer irow[6] = {1, 2, 2}, icol[6] = {1, 1, 2};
  QuarnFloat rnorm;
  Integer ipiv[2], istr[3], nnzc, npivm, itn, ifail = -1;
  QuarnMP_f11jnf_(&n, &nnz, a, &la, irow, icol, &lfill, &none, "N", &none, "N", ipiv, istr, &nnzc, &npivm, &ifail, 1,
                  1);
  QuarnMP_f11jqf_("CG", &n, &nnz, a, &la, irow, icol, ipiv, istr, b, &tol, &maxitn, x, &rnorm, &itn, &ifail, 2);
  std::cout << (rnorm < tol) << ", " << itn << " iteration\n";
  //! [f11jqf]
}

}  // namespace

int main() {
  return run_examples({{"f11daf", f11daf},
                       {"f11dbf", f11dbf},
                       {"f11jaf", f11jaf},
                       {"f11jbf", f11jbf},
                       {"f11dcf", f11dcf},
                       {"f11jqf", f11jqf}});
}
