// What names stand for: matrices of complex numbers (a number is one by one) and texts.
#pragma once

#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "quarn/quarnfloat.h"
#include "tesk2mp/tesk2mp.hpp"

namespace cli::repl {

using Array = tesk2mp::Matrix<Complex>;
using RealArray = tesk2mp::Matrix<QuarnFloat>;
using Value = std::variant<Array, std::string>;

constexpr Integer kMostExactDigits = 100'000;

/// The reason why a value will not do. The evaluation adds the place: the function or sign, or one of its arguments.
class Unfit : public std::runtime_error {
 public:
  explicit Unfit(const std::string& reason, int argument = -1) : std::runtime_error(reason), argument_(argument) {}
  /// Which argument, from 0; -1 when it is not one alone.
  int argument() const { return argument_; }

 private:
  int argument_;
};

/// Zeros. Throws Failure for more than this machine's memory holds.
Array make_array(std::size_t rows, std::size_t columns);
Array number(const Complex& value);
Array column(const std::vector<Complex>& values);
Array column(const std::vector<QuarnFloat>& values);

inline std::size_t size(const Array& a) { return a.rows() * a.columns(); }
inline bool is_number(const Array& a) { return size(a) == 1; }
inline bool is_vector(const Array& a) { return size(a) > 0 && (a.rows() == 1 || a.columns() == 1); }
bool is_real(const Array& a);
inline bool is_real(const Complex& z) { return z.im == 0; }
/// However long.
bool is_whole_number(const QuarnFloat& x);
/// "2 by 3"
std::string shape(const Array& a);

std::vector<Complex> elements(const Array& a);
/// Throws Unfit when a number has an imaginary part.
std::vector<QuarnFloat> real_elements(const Array& a);
RealArray real_array(const Array& a);
Array complex_array(const RealArray& a);
inline Array as_array(const RealArray& a) { return complex_array(a); }
inline Array as_array(Array a) { return a; }
/// The elements with another shape of as many.
Array reshaped(const std::vector<Complex>& values, std::size_t rows, std::size_t columns);

Array negative(const Array& a);
Array conjugate_transpose(const Array& a);

/// n! of each element: a whole number from 0.
Array factorial(const Array& a);
/// Of whole numbers exact up to kMostExactDigits digits, whatever the working digits.
QuarnFloat exact_binomial(const QuarnFloat& n, const QuarnFloat& k);

/// A number as it is shown and can be read again.
std::string number_text(const Complex& value);

/// "name = 1.5", or a heading and the rows of an array in line.
std::string shown(const std::string& name, const Value& value);
/// A matrix with question marks for some of its elements.
std::string shown(const std::string& name, const Array& a, const std::vector<std::size_t>& unknown);

}  // namespace cli::repl
