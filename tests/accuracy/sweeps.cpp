// Prints the table of sweeps of docs/accuracy.md: how many the QR algorithm takes for a matrix whose only difficulty is
// a multiple eigenvalue, by the companion and by the classic entry (a dash: its iterations ran out).
#include <cstdio>
#include <string>

#include "src/dense/hessenberg_qr.h"
#include "support/digits.h"
#include "support/multiple.h"
#include "tesk2mp/dense.h"

namespace {

/// The sweeps, and a dash when the iterations ran out.
std::string sweeps(tesk::Accuracy accuracy, support::Matrix<QuarnFloat> h) {
  const Integer n = h.rows();
  std::vector<QuarnFloat> wr(std::size_t(n), 0);
  std::vector<QuarnFloat> wi(std::size_t(n), 0);
  Integer ilo = 0;
  Integer ihi = 0;
  Integer info = 0;
  QuarnMPX_f08nhf_("S", n, h.data(), h.lda(), &ilo, &ihi, wr.data(), &info, 1);
  const tesk::QrOutcome outcome = tesk::hessenberg_qr(accuracy, false, n, 1, n, {h.data(), h.lda()}, wr.data(),
                                                      wi.data(), {{h.data(), h.lda()}, 1, 0});
  return outcome.info == 0 ? std::to_string(outcome.sweeps) : "-";
}

}  // namespace

int main() {
  std::puts("| eigenvalues | k | 50 digits, classic | 50 | 200, classic | 200 | 1000 |\n|---|--:|--:|--:|--:|--:|--:|");
  for (const support::MultipleEigenvalues& example : support::kMultipleEigenvalues) {
    for (const int k : {2, 3, 4, 5, 6, 7, 8}) {
      std::printf("| %s | %d |", example.name, k);
      for (const int digits : {50, 200, 1000}) {
        const support::Digits scope(digits);
        if (digits < 1000) {
          std::printf(" %s |", sweeps(tesk::Accuracy::classic, example.matrix(k)).c_str());
        }
        std::printf(" %s |", sweeps(tesk::Accuracy::full, example.matrix(k)).c_str());
      }
      std::puts("");
    }
  }
  return 0;
}
