// Examples of the routine reference: complete factorisations of sparse matrices.
#include <vector>

#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

//! [storage]
struct Arrays {
  std::vector<QuarnFloat> a;
  std::vector<Integer> irow, icol;

  static void make(void* context, Integer count, QuarnFloat** a, Integer** irow, Integer** icol) {
    auto& arrays = *static_cast<Arrays*>(context);
    arrays.a.resize(std::size_t(count));
    arrays.irow.resize(std::size_t(count));
    arrays.icol.resize(std::size_t(count));
    *a = arrays.a.data();
    *irow = arrays.irow.data();
    *icol = arrays.icol.data();
  }
};
//! [storage]

void sparse_order() {
  //! [sparse_order]
  const Integer irow[] = {2, 3, 4}, icol[] = {1, 1, 1};  // the first row has entries everywhere
  Integer order[4], info;
  QuarnMPX_sparse_order_("S", 4, 3, irow, icol, order, &info, 1);
  std::cout << order[0] << " " << order[1] << " " << order[2] << " " << order[3] << "\n";
  //! [sparse_order]
}

void sparse_lu() {
  //! [sparse_lu]
  const QuarnFloat a[] = {1, 2, 4, 1, 3};  // rows (1, 2, 0), (4, 0, 1) and (0, 0, 3)
  const Integer irow[] = {1, 1, 2, 2, 3}, icol[] = {1, 2, 1, 3, 3};
  Arrays factors;
  Integer ipivp[3], ipivq[3], istr[4], idiag[3], info;
  QuarnMPX_sparse_lu_(3, 5, a, irow, icol, nullptr, Arrays::make, &factors, ipivp, ipivq, istr, idiag, &info);
  const QuarnFloat y[] = {3, 5, 3};
  QuarnFloat x[3];
  const Integer n = 3, la = Integer(factors.a.size());
  Integer ifail = -1;
  QuarnMP_f11dbf_("N", &n, factors.a.data(), &la, factors.irow.data(), factors.icol.data(), ipivp, ipivq, istr, idiag,
                  "N", y, x, &ifail, 1, 1);
  std::cout << la << " entries: " << x[0] << " " << x[1] << " " << x[2] << "\n";
  //! [sparse_lu]
}

void sparse_cholesky() {
  //! [sparse_cholesky]
  const QuarnFloat a[] = {4, 1, 4, 1, 4};  // rows (4), (1, 4) and (0, 1, 4) of the lower triangle
  const Integer irow[] = {1, 2, 2, 3, 3}, icol[] = {1, 1, 2, 2, 3};
  Arrays factors;
  Integer ipiv[3], istr[4], info;
  QuarnMPX_sparse_cholesky_(3, 5, a, irow, icol, nullptr, Arrays::make, &factors, ipiv, istr, &info);
  for (Integer k = 0; k < 3; ++k) {
    std::cout << "row " << ipiv[k] << ", pivot " << factors.a[std::size_t(istr[k + 1]) - 2] << "\n";
  }
  //! [sparse_cholesky]
}

}  // namespace

int main() {
  return run_examples({{"sparse_order", sparse_order}, {"sparse_lu", sparse_lu}, {"sparse_cholesky", sparse_cholesky}});
}
