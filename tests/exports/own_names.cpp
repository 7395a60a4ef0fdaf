// A program that has a Complex and an Integer of its own, beside a source that uses those of the library's headers.
#define QUARN_NO_GLOBAL_NAMES
#include <cstdio>
#include <vector>

#include "quarn/complex.h"
#include "quarn/exact.h"
#include "quarn/parallel.h"
#include "quarn/quarnconsole.h"
#include "quarn/quarnthread.h"
#include "quarn/realtransform.h"
#include "quarn/rows.h"
#include "quarn/transform.h"
#include "tesk2mp/tesk2mp.hpp"

struct Complex {
  const char* text;
  Complex(const char* words);
  Complex operator+(const Complex& other) const { return other; }
  Complex operator-() const;
};
Complex::Complex(const char* words) : text(words) {}
Complex Complex::operator-() const { return {"negative"}; }
struct Integer {
  char letter = 'i';
};

/// In the other source.
quarn::Complex conjugate_and_double(const quarn::Complex& z);
quarn::Integer twice(quarn::Integer n);

int main() {
  const Complex words = -Complex("positive") + Complex("own");
  const quarn::Complex z = conjugate_and_double({3.0, 4.0});
  std::vector<quarn::Complex> x = {z, z, z, z};
  tesk2mp::transform(x, tesk2mp::Direction::forward);
  const quarn::Integer n = 3;
  quarn::Integer permutation[] = {2, 3, 1};
  const quarn::Integer first = 1;
  quarn::Integer ifail = 1;
  QuarnMP_m01zaf_(permutation, &first, &n, &ifail);
  const bool right = words.text[0] == 'o' && Integer().letter == 'i' && z.re == 6 && z.im == -8 && x[0].re == 12 &&
                     x[1].re == 0 && twice(n) == 6 && ifail == 0 && permutation[0] == 3;
  std::puts(right ? "own names: right" : "own names: WRONG");
  return right ? 0 : 1;
}
