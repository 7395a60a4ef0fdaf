// Examples of the routine reference: transforms of many sequences, convolutions, windows.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

template <class Numbers>
void print(const Numbers& numbers) {
  const char* blank = "";
  for (const QuarnFloat& x : numbers) {
    std::cout << blank << x;
    blank = " ";
  }
  std::cout << "\n";
}

template <class Numbers>
void print_complex(const Numbers& numbers) {
  for (const Complex& z : numbers) {
    std::cout << z.re << " " << z.im << "\n";
  }
}

void fft() {
  //! [fft_sequences]
  Complex z[] = {1, 2, 3, 4, 0, 1, 0, 0};  // two sequences of four
  Integer ifail = -1;
  QuarnMPX_fft_("F", "B", 4, 2, z, 1, 4, z, 1, 4, &ifail, 1, 1);
  print_complex(z);
  //! [fft_sequences]
}

void rfft() {
  //! [rfft]
  const QuarnFloat x[] = {1, 2, 3, 4};
  Complex z[3];
  Integer ifail = -1;
  QuarnMPX_rfft_("B", 4, 1, x, 1, 4, z, 1, 3, &ifail, 1);
  print_complex(z);
  //! [rfft]
}

void irfft() {
  //! [irfft]
  const Complex z[] = {10, Complex(-2, 2), -2};
  QuarnFloat x[4];
  Integer ifail = -1;
  QuarnMPX_irfft_("B", 4, 1, z, 1, 3, x, 1, 4, &ifail, 1);
  print(x);
  //! [irfft]
}

void dct() {
  //! [dct]
  QuarnFloat x[] = {1, 2, 4};
  Integer ifail = -1;
  QuarnMPX_dct_("F", "B", 2, 3, 1, x, 1, 3, x, 1, 3, &ifail, 1, 1);
  print(x);
  QuarnMPX_dct_("B", "B", 2, 3, 1, x, 1, 3, x, 1, 3, &ifail, 1, 1);
  print(x);
  //! [dct]
}

void dst() {
  //! [dst]
  QuarnFloat x[] = {1, 2, 4};
  Integer ifail = -1;
  QuarnMPX_dst_("F", "O", 3, 3, 1, x, 1, 3, x, 1, 3, &ifail, 1, 1);
  print(x);
  //! [dst]
}

void fftn() {
  //! [fftn]
  Complex z[] = {1, 2, 3, 4};  // two by two
  const Integer nd[] = {2, 2}, axes[] = {1, 2};
  Integer ifail = -1;
  QuarnMPX_fftn_("F", "B", 2, nd, 2, axes, z, z, &ifail, 1, 1);
  print_complex(z);
  //! [fftn]
}

void rfftn() {
  //! [rfftn]
  const QuarnFloat x[] = {1, 2, 3, 4, 5, 6};  // three by two
  const Integer nd[] = {3, 2}, axes[] = {2, 1};
  Complex z[4];
  Integer ifail = -1;
  QuarnMPX_rfftn_("B", 2, nd, 2, axes, x, z, &ifail, 1);
  print_complex(z);
  //! [rfftn]
}

void irfftn() {
  //! [irfftn]
  const Complex z[] = {10, -2, -4, 0};
  const Integer nd[] = {2, 2}, axes[] = {2, 1};
  QuarnFloat x[4];
  Integer ifail = -1;
  QuarnMPX_irfftn_("B", 2, nd, 2, axes, z, x, &ifail, 1);
  print(x);
  //! [irfftn]
}

void convolve() {
  //! [convolve]
  const QuarnFloat a[] = {1, 2, 3}, b[] = {1, 10, 100};
  QuarnFloat z[5];
  Integer ifail = -1;
  QuarnMPX_convolve_("L", 1, 3, a, 3, b, z, &ifail, 1);
  print(z);
  //! [convolve]
}

void zconvolve() {
  //! [zconvolve]
  const Complex a[] = {1, Complex(0, 1)};
  Complex z[2];
  Integer ifail = -1;
  QuarnMPX_zconvolve_("C", 1, 2, a, 2, a, z, &ifail, 1);
  print_complex(z);
  //! [zconvolve]
}

void window() {
  //! [window]
  QuarnFloat w[5];
  Integer ifail = -1;
  QuarnMPX_window_("H", 5, 0, 0, w, &ifail, 1);
  print(w);
  //! [window]
}

void power_spectrum() {
  //! [power_spectrum]
  const QuarnFloat x[] = {1, 2, 3, 4};
  QuarnFloat p[3];
  Integer ifail = -1;
  QuarnMPX_power_spectrum_(4, 1, x, 1, 4, p, 1, 3, &ifail);
  print(p);
  //! [power_spectrum]
}

void next_fast_len() {
  //! [next_fast_len]
  std::cout << QuarnMPX_next_fast_len_(1021) << "\n";
  //! [next_fast_len]
}

}  // namespace

int main() {
  return run_examples({{"fft_sequences", fft},
                       {"rfft", rfft},
                       {"irfft", irfft},
                       {"dct", dct},
                       {"dst", dst},
                       {"fftn", fftn},
                       {"rfftn", rfftn},
                       {"irfftn", irfftn},
                       {"convolve", convolve},
                       {"zconvolve", zconvolve},
                       {"window", window},
                       {"power_spectrum", power_spectrum},
                       {"next_fast_len", next_fast_len}});
}
