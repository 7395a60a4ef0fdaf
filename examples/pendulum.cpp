// A chain of three pendulums: its frequencies, to 40 digits, by the C++ interface.
#include <algorithm>
#include <iostream>

#include "tesk2mp/tesk2mp.hpp"

int main() {
  const tesk2mp::Digits forty(40);
  const tesk2mp::Matrix<tesk2mp::Real> chain = {{3, -2, 0}, {-2, 3, -1}, {0, -1, 1}};
  std::vector<tesk2mp::Real> squares;
  for (const tesk2mp::Complex& value : tesk2mp::eigenvalues(chain)) {
    squares.push_back(value.re);
  }
  tesk2mp::sort(squares);
  for (const tesk2mp::Real& square : squares) {
    std::cout << "frequency " << sqrt(square) << "\n";
  }
  try {
    tesk2mp::solve(chain, std::vector<tesk2mp::Real>{1, 2});
  } catch (const tesk2mp::Error& error) {
    std::cout << error.what() << "\n";
  }
}
