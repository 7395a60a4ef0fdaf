// Examples of the routine reference: test matrices.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dgallery() {
  //! [dgallery]
  QuarnFloat a[9];
  Integer info;
  QuarnMPX_dgallery_("lehmer", 3, nullptr, 0, nullptr, a, 3, &info, 6);
  std::cout << a[0] << " " << a[1] << " " << a[2] << "\n";
  //! [dgallery]
}

void gallery_text() {
  //! [gallery_text]
  for (Integer row = 1; row <= 3; ++row) {
    std::cout << QuarnMPX_gallery_text_(row, 1) << " " << QuarnMPX_gallery_text_(row, 2) << "\n";
  }
  //! [gallery_text]
}

void dlarnv() {
  //! [dlarnv]
  Integer iseed[] = {6698, 7535, 26792, 30140};
  QuarnFloat x[2];
  QuarnMPX_dlarnv_(2, iseed, 2, x);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [dlarnv]
}

}  // namespace

int main() { return run_examples({{"dgallery", dgallery}, {"gallery_text", gallery_text}, {"dlarnv", dlarnv}}); }
