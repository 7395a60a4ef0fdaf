// The inverse of a Hilbert matrix, which is a matrix of integers; and a failure.
#include <cstdio>

#include "tesk2mp/tesk2mp.hpp"

int main() {
  const tesk2mp::Digits digits(50);
  tesk2mp::Matrix<tesk2mp::Real> hilbert(3, 3);
  for (int j = 0; j < 3; ++j) {
    for (int i = 0; i < 3; ++i) {
      hilbert(i, j) = tesk2mp::Real(1) / (i + j + 1);
    }
  }
  const tesk2mp::Matrix<tesk2mp::Real> inverse = tesk2mp::inverse(hilbert);
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      std::printf("%ld ", long(FloatToInt(inverse(i, j) + tesk2mp::Real(inverse(i, j) < 0 ? -0.5 : 0.5))));
    }
  }
  std::printf("\n");
  try {
    tesk2mp::Matrix<tesk2mp::Real> singular(2, 2);
    tesk2mp::inverse(singular);
  } catch (const tesk2mp::NumericalFailure& failure) {
    std::printf("%s\n", failure.what());
  }
}
