// Examples of the routine reference: iterative solution by reverse communication.
#include <vector>

#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

// y := A x with rows (4, 1) and (2, 3)
void multiply(const QuarnFloat* x, QuarnFloat* y) {
  y[0] = 4 * x[0] + x[1];
  y[1] = 2 * x[0] + 3 * x[1];
}

void f11bdf() {
  //! [f11bdf]
  Integer iterm = 1, n = 2, m = 0, maxitn = 100, monit = 0, lwreq, lwork = 200, ifail = -1;
  QuarnFloat tol("1e-18"), anorm = 5, sigmax = 0, work[200];
  QuarnMP_f11bdf_("CGS", "N", "I", "N", &iterm, &n, &m, &tol, &maxitn, &anorm, &sigmax, &monit, &lwreq, work, &lwork,
                  &ifail, 3, 1, 1, 1);
  std::cout << "IFAIL " << ifail << ", LWREQ " << lwreq << "\n";
  //! [f11bdf]
}

void f11bef() {
  //! [f11bef]
  Integer iterm = 1, n = 2, m = 2, maxitn = 100, monit = 0, lwreq, lwork = 200, ifail = -1;
  QuarnFloat tol("1e-18"), anorm = 5, sigmax = 0, work[200];
  QuarnMP_f11bdf_("RGMRES", "N", "I", "N", &iterm, &n, &m, &tol, &maxitn, &anorm, &sigmax, &monit, &lwreq, work, &lwork,
                  &ifail, 6, 1, 1, 1);
  QuarnFloat u[] = {0, 0}, v[] = {1, 2};  // x_0 and b
  Integer irevcm = 0;
  do {
    ifail = -1;
    QuarnMP_f11bef_(&irevcm, u, v, nullptr, work, &lwork, &ifail);
    if (irevcm == 1) {
      multiply(u, v);  // v := A u with rows (4, 1) and (2, 3)
    }
  } while (irevcm != 4);
  std::cout << "IFAIL " << ifail << ", near (0.1, 0.6) to 1e-17: "
            << (fabs(u[0] - QuarnFloat("0.1")) < QuarnFloat("1e-17") &&
                fabs(u[1] - QuarnFloat("0.6")) < QuarnFloat("1e-17"))
            << "\n";
  //! [f11bef]
}

void f11bff() {
  //! [f11bff]
  Integer iterm = 1, n = 2, m = 0, maxitn = 100, monit = 0, lwreq, lwork = 200, ifail = -1;
  QuarnFloat tol("1e-18"), anorm = 5, sigmax = 0, work[200];
  QuarnMP_f11bdf_("TFQMR", "N", "I", "N", &iterm, &n, &m, &tol, &maxitn, &anorm, &sigmax, &monit, &lwreq, work, &lwork,
                  &ifail, 5, 1, 1, 1);
  Integer itn;
  QuarnFloat left, right;
  QuarnMP_f11bff_(&itn, &left, &right, &anorm, &sigmax, work, &lwork, &ifail);
  std::cout << itn << " iterations, ||A|| = " << anorm << "\n";
  //! [f11bff]
}

void f11bezn() {
  //! [f11bezn]
  Integer iterm = 1, n = 2, m = 1, maxitn = 100, monit = 0, lwreq, lwork = 200, ifail = -1;
  QuarnFloat tol("1e-18"), anorm = 5, sigmax = 0, work[200];
  QuarnMP_f11bdf_("RGMRES", "N", "I", "N", &iterm, &n, &m, &tol, &maxitn, &anorm, &sigmax, &monit, &lwreq, work, &lwork,
                  &ifail, 6, 1, 1, 1);
  QuarnFloat u[] = {0, 0}, v[] = {1, 2};
  Integer irevcm = 0, info = lwork;
  QuarnMP_f11bezn_(&irevcm, work, u, v, nullptr, &info);
  std::cout << "asks for " << irevcm << ", info " << info << "\n";
  irevcm = 2;  // not what it has asked for
  info = lwork;
  QuarnMP_f11bezn_(&irevcm, work, u, v, nullptr, &info);
  std::cout << "info " << info << "\n";
  //! [f11bezn]
}

void zf11bdf() {
  //! [zf11bdf]
  const Integer iterm = 2, n = 2, m = 0, maxitn = 10, monit = 0, lwork = 200;
  const QuarnFloat tol(1, -15), unknown = 0;
  Complex work[200], u[2], v[2] = {Complex(0, 2), Complex(4, 0)};  // x_0 and b
  Integer lwreq, irevcm = 0, ifail = -1;
  QuarnMPX_zf11bdf_("CGS", "N", "2", "N", &iterm, &n, &m, &tol, &maxitn, &unknown, &unknown, &monit, &lwreq, work,
                    &lwork, &ifail, 3, 1, 1, 1);
  while (irevcm != 4) {
    ifail = -1;
    QuarnMPX_zf11bef_(&irevcm, u, v, nullptr, work, &lwork, &ifail);
    if (irevcm == 1) {  // A = diag(2 i, 4)
      v[0] = Complex(0, 2) * u[0];
      v[1] = Complex(4, 0) * u[1];
    }
  }
  const QuarnFloat near(1, -14);
  std::cout << "IFAIL " << ifail << ", near (1, 1): " << (fabs(u[0].re - 1) < near && fabs(u[1].re - 1) < near) << "\n";
  //! [zf11bdf]
}

void f11bdd() {
  //! [f11bdd]
  // Two ranks in one program: each has one row, and the sums are formed from the parts of both.
  const Integer iterm = 2, n = 2, nloc = 1, m = 0, maxitn = 10, monit = 0, lwork = 700;
  const QuarnFloat tol(1, -15), unknown = 0;
  std::vector<QuarnFloat> work[2] = {std::vector<QuarnFloat>(lwork), std::vector<QuarnFloat>(lwork)};
  QuarnFloat u[2], v[2] = {3, 8};  // x_0 and b
  Integer lwreq, irevcm[2] = {0, 0}, ifail = -1;
  for (Integer rank = 0; rank < 2; ++rank) {
    const Integer first = rank + 1;
    QuarnMPX_f11bdd_("CG", "N", "2", "N", &iterm, &n, &nloc, &first, &m, &tol, &maxitn, &unknown, &unknown, &monit,
                     &lwreq, work[rank].data(), &lwork, &ifail, 2, 1, 1, 1);
  }
  while (irevcm[0] != 4) {
    for (int rank = 0; rank < 2; ++rank) {
      ifail = -1;
      QuarnMPX_f11bef_(&irevcm[rank], &u[rank], &v[rank], nullptr, work[rank].data(), &lwork, &ifail);
    }
    if (irevcm[0] == 1) {  // A = diag(1, 4)
      v[0] = u[0];
      v[1] = 4 * u[1];
    } else if (irevcm[0] == 7) {
      for (int k = 0; k < FloatToInt(work[0][30]); ++k) {
        QuarnFloat sum = 0;
        const int place = FloatToInt(work[0][31]) - 1 + 4 * k;
        for (const auto& part : work) {
          sum += part[FloatToInt(part[place + 1]) - 1] * part[FloatToInt(part[place + 2]) - 1];
        }
        for (auto& part : work) {
          part[place + 3] = part[place] == 1 ? sum : sqrt(sum);  // NORM '2': there are no other kinds
        }
      }
    }
  }
  const QuarnFloat near(1, -14);
  std::cout << "IFAIL " << ifail << ", near (3, 2): " << (fabs(u[0] - 3) < near && fabs(u[1] - 2) < near) << "\n";
  //! [f11bdd]
}

void zf11bdd() {
  //! [zf11bdd]
  const Integer iterm = 2, n = 1000, nloc = 250, first = 501, m = 0, maxitn = 10, monit = 0, lwork = 2912;
  const QuarnFloat tol(1, -15), unknown = 0;
  std::vector<Complex> work(lwork);
  Integer lwreq, ifail = -1;
  QuarnMPX_zf11bdd_("MINRES", "N", "2", "N", &iterm, &n, &nloc, &first, &m, &tol, &maxitn, &unknown, &unknown, &monit,
                    &lwreq, work.data(), &lwork, &ifail, 6, 1, 1, 1);
  std::cout << "IFAIL " << ifail << ", LWREQ " << lwreq << "\n";
  //! [zf11bdd]
}

}  // namespace

int main() {
  return run_examples({{"f11bdf", f11bdf},
                       {"f11bef", f11bef},
                       {"f11bff", f11bff},
                       {"f11bezn", f11bezn},
                       {"zf11bdf", zf11bdf},
                       {"f11bdd", f11bdd},
                       {"zf11bdd", zf11bdd}});
}
