// Examples of the routine reference: orthogonal factorisations, least squares.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dgeqrf() {
  //! [dgeqrf]
  QuarnFloat a[] = {3, 4}, tau[1], work[1];  // one column
  Integer info;
  QuarnMPX_dgeqrf_(2, 1, a, 2, tau, work, 1, &info);
  std::cout << a[0] << "\n";
  //! [dgeqrf]
}

void dorgqr() {
  //! [dorgqr]
  QuarnFloat a[] = {3, 4}, tau[1], work[1];
  Integer info;
  QuarnMPX_dgeqrf_(2, 1, a, 2, tau, work, 1, &info);
  QuarnMPX_dorgqr_(2, 1, 1, a, 2, tau, work, 1, &info);
  std::cout << a[0] << " " << a[1] << "\n";
  //! [dorgqr]
}

void dormqr() {
  //! [dormqr]
  QuarnFloat a[] = {3, 4}, c[] = {3, 4}, tau[1], work[1];
  Integer info;
  QuarnMPX_dgeqrf_(2, 1, a, 2, tau, work, 1, &info);
  QuarnMPX_dormqr_("L", "T", 2, 1, 1, a, 2, tau, c, 2, work, 1, &info, 1, 1);
  std::cout << c[0] << " " << c[1] << "\n";
  //! [dormqr]
}

void dgelqf() {
  //! [dgelqf]
  QuarnFloat a[] = {3, 4}, tau[1], work[1];  // one row
  Integer info;
  QuarnMPX_dgelqf_(1, 2, a, 1, tau, work, 1, &info);
  std::cout << a[0] << "\n";
  //! [dgelqf]
}

void dorglq() {
  //! [dorglq]
  QuarnFloat a[] = {3, 4}, tau[1], work[1];
  Integer info;
  QuarnMPX_dgelqf_(1, 2, a, 1, tau, work, 1, &info);
  QuarnMPX_dorglq_(1, 2, 1, a, 1, tau, work, 1, &info);
  std::cout << a[0] << " " << a[1] << "\n";
  //! [dorglq]
}

void dormlq() {
  //! [dormlq]
  QuarnFloat a[] = {3, 4}, c[] = {3, 4}, tau[1], work[1];
  Integer info;
  QuarnMPX_dgelqf_(1, 2, a, 1, tau, work, 1, &info);
  QuarnMPX_dormlq_("L", "N", 2, 1, 1, a, 1, tau, c, 2, work, 1, &info, 1, 1);
  std::cout << c[0] << " " << c[1] << "\n";
  //! [dormlq]
}

void dgels() {
  //! [dgels]
  QuarnFloat a[] = {1, 1, 1, 1}, b[] = {1, 2, 4, 5}, work[8];  // one column of ones
  Integer info;
  QuarnMPX_dgels_("N", 4, 1, 1, a, 4, b, 4, work, 8, &info, 1);
  std::cout << b[0] << "\n";
  //! [dgels]
}

}  // namespace

int main() {
  return run_examples({{"dgeqrf", dgeqrf},
                       {"dorgqr", dorgqr},
                       {"dormqr", dormqr},
                       {"dgelqf", dgelqf},
                       {"dorglq", dorglq},
                       {"dormlq", dormlq},
                       {"dgels", dgels}});
}
