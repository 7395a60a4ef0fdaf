#include "cli/repl/value.h"

#include <algorithm>

#include "cli/io/number_text.h"
#include "cli/io/result.h"
#include "cli/system/memory.h"
#include "quarn/complex.h"
#include "quarn/functions.h"

namespace cli::repl {

namespace {

// The decimal digits before the point.
Integer places_of(const QuarnFloat& x) { return FloatToInt(floor(log10(fabs(x)))) + 1; }

// from (from + 1) ... to, by halves.
QuarnFloat whole_product(Integer from, Integer to) {
  if (to - from < 8) {
    QuarnFloat result(from);
    for (Integer k = from + 1; k <= to; ++k) {
      result *= QuarnFloat(k);
    }
    return result;
  }
  const Integer middle = from + (to - from) / 2;
  return whole_product(from, middle) * whole_product(middle + 1, to);
}

// A zero's sign says nothing to a reader.
Complex without_negative_zeros(const Complex& value) {
  return {value.re == 0 ? QuarnFloat() : value.re, value.im == 0 ? QuarnFloat() : value.im};
}

// Elements whose text is short stand as they are; others are rounded.
std::vector<std::string> cells_of(const Array& a, bool& rounded) {
  constexpr std::size_t kShort = 12;
  std::vector<std::string> cells;
  QuarnFloat largest;
  rounded = false;
  for (const Complex& value : elements(a)) {
    cells.push_back(complex_text(without_negative_zeros(value)));
    rounded = rounded || cells.back().size() > kShort;
    const QuarnFloat magnitude = std::max(fabs(value.re), fabs(value.im));
    largest = std::max(largest, magnitude);
  }
  rounded = rounded && isfinite(largest);
  const NumberFormat format(rounded ? largest : QuarnFloat(), QuarnDigits());
  const bool real = is_real(a);
  for (std::size_t k = 0; rounded && k < cells.size(); ++k) {
    const Complex value = without_negative_zeros(a.data()[k]);
    cells[k] = format(value.re) + (real ? "" : (signbit(value.im) ? "" : "+") + format(value.im) + "i");
  }
  return cells;
}

// The cells of each column, all of one width; of real numbers that were rounded the points stand in line.
std::vector<std::vector<std::string>> columns_of(const Array& a, const std::vector<std::size_t>& unknown) {
  bool rounded = false;
  std::vector<std::string> cells = cells_of(a, rounded);
  for (const std::size_t k : unknown) {
    cells[k] = "?";
  }
  std::vector<std::vector<std::string>> columns;
  for (auto first = cells.begin(); first != cells.end(); first += std::ptrdiff_t(a.rows())) {
    std::vector<std::string>& column = columns.emplace_back(first, first + std::ptrdiff_t(a.rows()));
    if (rounded) {
      align_points(column);
    }
    std::size_t width = 0;
    for (const std::string& cell : column) {
      width = std::max(width, cell.size());
    }
    for (std::string& cell : column) {
      cell.insert(0, width - cell.size(), ' ');
    }
  }
  return columns;
}

}  // namespace

bool is_whole_number(const QuarnFloat& x) {
  const tesk2mp::Digits digits(kMostExactDigits);
  return isfinite(x) && trunc(x) == x;
}

Array make_array(std::size_t rows, std::size_t columns) {
  require_memory(2 * double(rows) * double(columns),
                 "a matrix of " + std::to_string(rows) + " by " + std::to_string(columns));
  return {rows, columns};
}

Array number(const Complex& value) {
  Array result(1, 1);
  result(0, 0) = value;
  return result;
}

Array reshaped(const std::vector<Complex>& values, std::size_t rows, std::size_t columns) {
  Array result = make_array(rows, columns);
  std::copy(values.begin(), values.end(), result.data());
  return result;
}

Array column(const std::vector<Complex>& values) { return reshaped(values, values.size(), 1); }

Array column(const std::vector<QuarnFloat>& values) {
  Array result = make_array(values.size(), 1);
  std::copy(values.begin(), values.end(), result.data());
  return result;
}

bool is_real(const Array& a) {
  return std::all_of(a.data(), a.data() + size(a), [](const Complex& value) { return repl::is_real(value); });
}

std::string shape(const Array& a) {
  return is_number(a) ? "a number" : std::to_string(a.rows()) + " by " + std::to_string(a.columns());
}

std::vector<Complex> elements(const Array& a) { return {a.data(), a.data() + size(a)}; }

std::vector<QuarnFloat> real_elements(const Array& a) {
  if (!is_real(a)) {
    throw Unfit("real numbers are needed here");
  }
  std::vector<QuarnFloat> values(size(a));
  std::transform(a.data(), a.data() + size(a), values.begin(), [](const Complex& value) { return value.re; });
  return values;
}

RealArray real_array(const Array& a) {
  const std::vector<QuarnFloat> values = real_elements(a);
  RealArray result(a.rows(), a.columns());
  std::copy(values.begin(), values.end(), result.data());
  return result;
}

Array complex_array(const RealArray& a) {
  Array result = make_array(a.rows(), a.columns());
  std::copy(a.data(), a.data() + a.rows() * a.columns(), result.data());
  return result;
}

Array negative(const Array& a) {
  Array result = a;
  std::transform(a.data(), a.data() + size(a), result.data(),
                 [](const Complex& value) { return repl::is_real(value) ? Complex(-value.re) : -value; });
  return result;
}

Array conjugate_transpose(const Array& a) {
  Array result = make_array(a.columns(), a.rows());
  for (std::size_t i = 0; i < a.rows(); ++i) {
    for (std::size_t j = 0; j < a.columns(); ++j) {
      result(j, i) = repl::is_real(a(i, j)) ? a(i, j) : conj(a(i, j));
    }
  }
  return result;
}

QuarnFloat exact_binomial(const QuarnFloat& n, const QuarnFloat& k) {
  QuarnFloat result = binomial(n, k);
  if (!isfinite(result) || fabs(result) < QuarnFloat(1, QuarnDigits()) || !is_whole_number(n) || !is_whole_number(k)) {
    return result;
  }
  const Integer places = places_of(result) + 1;
  if (places > kMostExactDigits) {
    return result;
  }
  const tesk2mp::Digits digits(std::max(int(places), QuarnDigits()));
  return binomial(n, k);
}

Array factorial(const Array& a) {
  constexpr Integer kLargest = 1'000'000;
  Array result = make_array(a.rows(), a.columns());
  for (std::size_t k = 0; k < size(a); ++k) {
    const Complex& value = a.data()[k];
    if (!is_real(value) || !is_whole_number(value.re) || value.re < 0 || value.re > kLargest) {
      throw Unfit("factorials are of whole numbers from 0 to " + std::to_string(kLargest));
    }
    const Integer n = FloatToInt(value.re);
    constexpr int kGuard = 10;
    const int digits = QuarnDigits();
    QuarnFloat product;
    {
      const tesk2mp::Digits more(std::max<int>(std::min<Integer>(6 * n, kMostExactDigits), digits) + kGuard);
      product = n < 2 ? QuarnFloat(1) : whole_product(1, n);
    }
    // Beyond the exact ones it is rounded to the working digits.
    result.data()[k] = places_of(product) <= kMostExactDigits ? product : product * QuarnFloat(1);
  }
  return result;
}

// Whole numbers that were worked out with more than the working digits stand in plain digits.
std::string number_text(const Complex& value) {
  const Complex plain = without_negative_zeros(value);
  std::string text = complex_text(plain);
  const std::size_t mark = text.find("e+");
  const std::size_t digits = mark == std::string::npos ? 0 : mark - (text[0] == '-' ? 1 : 0);
  if (!is_real(plain) || digits <= std::size_t(QuarnDigits()) + 1 || !is_whole_number(plain.re) ||
      std::size_t(places_of(plain.re)) > 2 * digits) {
    return text;
  }
  return whole_number_text(plain.re);
}

std::string shown(const std::string& name, const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    return name + " = \"" + *text + "\"\n";
  }
  const Array& a = std::get<Array>(value);
  if (is_number(a)) {
    return name + " = " + number_text(a(0, 0)) + "\n";
  }
  if (size(a) == 0) {
    return name + " = []  (" + shape(a) + ")\n";
  }
  return shown(name, a, std::vector<std::size_t>());
}

std::string shown(const std::string& name, const Array& a, const std::vector<std::size_t>& unknown) {
  const std::vector<std::vector<std::string>> columns = columns_of(a, unknown);
  std::string text = name + " =\n";
  for (std::size_t i = 0; i < a.rows(); ++i) {
    for (const std::vector<std::string>& column : columns) {
      text += "  " + column[i];
    }
    text.erase(text.find_last_not_of(' ') + 1);
    text += "\n";
  }
  return text;
}

}  // namespace cli::repl
