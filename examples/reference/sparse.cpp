// Examples of the routine reference: sparse matrices.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void f11zaf() {
  //! [f11zaf]
  Integer n = 2, nnz = 3, ifail = -1;
  QuarnFloat a[] = {5, 1, 2};
  Integer irow[] = {2, 1, 1}, icol[] = {1, 1, 1}, istr[3], iwork[5];
  QuarnMP_f11zaf_(&n, &nnz, a, irow, icol, "S", "R", istr, iwork, &ifail, 1, 1);
  for (Integer k = 0; k < nnz; ++k) {
    std::cout << irow[k] << " " << icol[k] << ": " << a[k] << "\n";
  }
  //! [f11zaf]
}

void f11xaf() {
  //! [f11xaf]
  Integer n = 2, nnz = 3, ifail = -1;
  QuarnFloat a[] = {1, 2, 4}, x[] = {1, 10}, y[2];  // rows (1, 2) and (0, 4)
  Integer irow[] = {1, 1, 2}, icol[] = {1, 2, 2};
  QuarnMP_f11xaf_("N", &n, &nnz, a, irow, icol, "C", x, y, &ifail, 1, 1);
  std::cout << y[0] << " " << y[1] << "\n";
  //! [f11xaf]
}

void f11xef() {
  //! [f11xef]
  Integer n = 2, nnz = 3, ifail = -1;
  QuarnFloat a[] = {1, 2, 3}, x[] = {1, 10}, y[2];  // rows (1, 2) and (2, 3)
  Integer irow[] = {1, 2, 2}, icol[] = {1, 1, 2};
  QuarnMP_f11xef_(&n, &nnz, a, irow, icol, "C", x, y, &ifail, 1);
  std::cout << y[0] << " " << y[1] << "\n";
  //! [f11xef]
}

void sparse_diagonal() {
  //! [sparse_diagonal]
  const QuarnFloat a[] = {4, 1, 5};  // rows (4, 1) and (0, 5)
  const Integer irow[] = {1, 1, 2}, icol[] = {1, 2, 2};
  Integer istr[3], idiag[2], info;
  QuarnMPX_sparse_diagonal_(2, 3, a, irow, icol, istr, idiag, &info);
  std::cout << istr[0] << " " << istr[1] << " " << istr[2] << ", " << idiag[0] << " " << idiag[1] << "\n";
  //! [sparse_diagonal]
}

void jacobi() {
  //! [jacobi]
  const QuarnFloat a[] = {4, 1, 5};  // rows (4, 1) and (0, 5)
  const Integer idiag[] = {1, 3};
  QuarnFloat x[] = {8, 10};
  Integer info;
  QuarnMPX_jacobi_("N", 2, a, idiag, x, &info, 1);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [jacobi]
}

void ssor() {
  //! [ssor]
  const QuarnFloat a[] = {4, 1, 5};  // rows (4, 1) and (0, 5)
  const Integer icol[] = {1, 2, 2}, istr[] = {1, 3, 4}, idiag[] = {1, 3};
  QuarnFloat x[] = {9, 5};
  Integer info;
  QuarnMPX_ssor_("N", 2, a, icol, istr, idiag, 1, x, &info, 1);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [ssor]
}

}  // namespace

int main() {
  return run_examples({{"f11zaf", f11zaf},
                       {"f11xaf", f11xaf},
                       {"f11xef", f11xef},
                       {"sparse_diagonal", sparse_diagonal},
                       {"jacobi", jacobi},
                       {"ssor", ssor}});
}
