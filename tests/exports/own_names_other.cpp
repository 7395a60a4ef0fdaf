#include "tesk2mp/tesk2mp.hpp"

Complex conjugate_and_double(const Complex& z);
Integer twice(Integer n);

Complex conjugate_and_double(const Complex& z) { return conj(z) + conj(z); }
Integer twice(Integer n) { return 2 * n; }
