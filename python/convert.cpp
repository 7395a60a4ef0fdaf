#include "convert.h"

#include <pybind11/complex.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cctype>
#include <string_view>

#include "context.h"
#include "quarn/interchange.h"
#include "quarn/rounding.h"

namespace python {
namespace {

/// An object of another module, looked up once. Never let go: the interpreter ends before static objects do.
template <class Find>
py::handle once(Find find) {
  static const py::handle found = py::object(find()).release();
  return found;
}
py::handle decimal_type() {
  return once([] { return py::module_::import("decimal").attr("Decimal"); });
}
py::handle fraction_type() {
  return once([] { return py::module_::import("fractions").attr("Fraction"); });
}

py::handle decimal_text() {
  return once([] { return decimal_type().attr("__str__"); });
}

bool is_text(py::handle value) { return PyUnicode_Check(value.ptr()) != 0; }

constexpr std::size_t kMostDigits = 1000000;

/// The object as a Python int.
py::object to_index_object(py::handle number) {
  PyObject* const result = PyNumber_Index(number.ptr());
  if (result != nullptr) {
    return py::reinterpret_steal<py::object>(result);
  }
  if (PyErr_ExceptionMatches(PyExc_TypeError) != 0) {
    PyErr_Clear();
    throw py::type_error("'" + type_name(number) + "' object cannot be interpreted as an integer");
  }
  throw py::error_already_set();
}

Real read(py::handle text) {
  Py_ssize_t length = 0;
  const char* const bytes = PyUnicode_AsUTF8AndSize(text.ptr(), &length);
  if (bytes == nullptr) {
    throw py::error_already_set();
  }
  std::string word(bytes, std::size_t(length));
  Real number(word);
  if (isnan(number)) {
    word.erase(0, word.find_first_not_of("+-") == 1 ? 1 : 0);
    std::transform(word.begin(), word.end(), word.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  }
  if ((isnan(number) && word != "nan" && word != "snan") || word.find('\0') != std::string::npos) {
    throw py::value_error("not a number: " + std::string(py::repr(text)));
  }
  return number;
}

/// The text of a Decimal, even if a class made of it shows it otherwise.
std::string text_of(py::handle decimal) { return py::str(decimal_text()(decimal)); }
/// The text of an integer by way of a Decimal, whose text has no limit on its length.
std::string integer_text(py::handle integer) { return text_of(decimal_type()(integer)); }

/// With all its digits, whatever the working digits are.
Real exact(const std::string& text) {
  const tesk2mp::Digits digits(std::max(int(std::min<std::size_t>(text.size(), kMostDigits)), QuarnDigits()));
  return Real(text);
}

/// An int, or an integer of numpy, whose arrays say that they are some too.
bool is_integer(py::handle value) {
  return PyLong_Check(value.ptr()) != 0 || (PyIndex_Check(value.ptr()) != 0 && !is_sequence(value));
}

/// Of a number's text, from the first that is not 0 to the last one.
std::size_t significant_digits(std::string_view text) {
  text = text.substr(0, text.find_first_of("eE"));
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  const std::size_t first = text.find_first_of("123456789");
  return first == std::string_view::npos
             ? 0
             : std::size_t(std::count_if(text.begin() + std::ptrdiff_t(first),
                                         text.begin() + std::ptrdiff_t(text.find_last_of("123456789")) + 1, is_digit));
}

/// What read() makes of a number's text, exactly.
template <class Read>
Real with_all_digits(std::string_view text, const Read& read) {
  const std::size_t length = significant_digits(text);
  if (length > kMostDigits) {
    throw py::value_error("a number of " + std::to_string(length) + " digits: there are " +
                          std::to_string(kMostDigits) + " at most");
  }
  const tesk2mp::Digits digits(std::max(int(length), QuarnDigits()));
  Real number = read();
  if (length > 0 && (isinf(number) || number == 0)) {
    throw py::value_error("a number beyond the range: " + std::string(text.substr(0, 40)));
  }
  return number;
}
Real with_all_digits(const std::string& text) {
  return with_all_digits(text, [&] { return Real(text); });
}

/// The quotient, where it has an end.
Real exact_quotient(py::handle fraction) {
  const Real numerator = with_all_digits(integer_text(fraction.attr("numerator")));
  const py::object denominator = fraction.attr("denominator");
  // One digit for each factor 2 or 5 of the denominator at most.
  const std::int64_t length =
      (numerator == 0 ? 0 : ilogb(numerator)) + 2 + py::cast<std::int64_t>(denominator.attr("bit_length")());
  bool inexact = true;
  Real quotient;
  if (length <= std::int64_t(kMostDigits)) {
    const tesk2mp::Digits digits(std::max(int(length), QuarnDigits()));
    quotient = divide(numerator, with_all_digits(integer_text(denominator)), quarn::Rounding::half_even, &inexact);
  }
  if (inexact) {
    throw py::value_error("a Fraction without an end in decimal, or one of too many digits");
  }
  return quotient;
}

/// The quotient of two integers of any length, so that there is one rounding alone.
Real divide(py::handle fraction) {
  return exact(integer_text(fraction.attr("numerator"))) / exact(integer_text(fraction.attr("denominator")));
}

Real from_integer(py::handle number) {
  const py::object integer = to_index_object(number);
  int overflow = 0;
  const long long value = PyLong_AsLongLongAndOverflow(integer.ptr(), &overflow);
  return Real(overflow == 0 ? std::to_string(value) : integer_text(integer));
}

/// To the working digits: of a number that may have been made with more of them.
Real rounded(const Real& number) { return round_digits(number, QuarnDigits(), quarn::Rounding::half_even); }

// As deep as arrays of several dimensions may be; what contains itself is deeper.
constexpr std::size_t kDeepest = 64;

}  // namespace

std::string type_name(py::handle value) { return py::str(py::type::handle_of(value).attr("__name__")); }

Real to_real(py::handle number) {
  if (py::isinstance<Real>(number)) {
    return rounded(py::cast<const Real&>(number));
  }
  if (is_text(number)) {
    return read(number);
  }
  if (py::isinstance(number, decimal_type())) {
    return Real(text_of(number));
  }
  if (is_integer(number)) {
    return from_integer(number);
  }
  if (py::isinstance(number, fraction_type())) {
    return divide(number);
  }
  if (PyFloat_Check(number.ptr()) != 0) {
    throw py::type_error(
        "a float is a binary number: write '0.1' or Decimal('0.1') for what you mean, tesk2mp.exact(x) for exactly the "
        "float x, or an array of them");
  }
  if (PyComplex_Check(number.ptr()) != 0) {
    throw py::type_error(
        "a number is needed, not complex, which is two binary ones: write Complex('0.1', 1) for what you mean, "
        "tesk2mp.exact(z) for exactly the "
        "complex z, or an array of them");
  }
  throw py::type_error("a number is a Decimal, an int, a Fraction or text, not " + type_name(number));
}

Real to_exact(py::handle number) {
  if (py::isinstance<Real>(number)) {
    return py::cast<const Real&>(number);
  }
  if (is_integer(number)) {
    return exact(integer_text(to_index_object(number)));
  }
  if (is_text(number)) {
    const tesk2mp::Digits digits(std::max(int(std::min<std::size_t>(py::len(number), kMostDigits)), QuarnDigits()));
    return read(number);
  }
  return py::isinstance(number, decimal_type()) ? exact(text_of(number)) : to_real(number);
}

Real to_proven(py::handle number) {
  if (py::isinstance<Real>(number)) {
    return py::cast<const Real&>(number);
  }
  if (is_integer(number)) {
    return with_all_digits(integer_text(to_index_object(number)));
  }
  if (is_text(number)) {
    return with_all_digits(py::cast<std::string>(number), [&] { return read(number); });
  }
  if (py::isinstance(number, decimal_type())) {
    return with_all_digits(text_of(number));
  }
  return py::isinstance(number, fraction_type()) ? exact_quotient(number) : to_real(number);
}

Complex to_complex(py::handle number) {
  if (py::isinstance<Complex>(number)) {
    const auto& z = py::cast<const Complex&>(number);
    return {rounded(z.re), rounded(z.im)};
  }
  return to_real(number);
}

Integer to_integer(py::handle number) {
  const py::object integer = to_index_object(number);
  int overflow = 0;
  const long long value = PyLong_AsLongLongAndOverflow(integer.ptr(), &overflow);
  if (overflow != 0 || value != Integer(value)) {
    throw py::value_error("an integer of more than 32 bits");
  }
  return Integer(value);
}

int to_places(py::handle number) {
  const Integer places = to_integer(number);
  if (places < -1000000 || places > 1000000) {
    throw py::value_error("places are -1000000 to 1000000");
  }
  return int(places);
}

std::size_t to_index(py::handle number) {
  const Integer index = to_integer(number);
  if (index < 0) {
    throw py::value_error("indices count from 0, there is no " + std::to_string(index));
  }
  return std::size_t(index);
}

bool is_sequence(py::handle value) {
  PyObject* const object = value.ptr();
  const bool other = is_text(value) || PyBytes_Check(object) != 0 || PyByteArray_Check(object) != 0 ||
                     PyDict_Check(object) != 0 || PyAnySet_Check(object) != 0 || py::isinstance<Complex>(value);
  return !other && py::hasattr(value, "__iter__");
}

bool is_operator(py::handle value) {
  const py::handle bounded = once([] { return py::module_::import("tesk2mp._bounded").attr("Bounded"); });
  return is_sequence(value) || py::isinstance(value, bounded);
}

py::iterator elements_of(py::handle sequence) {
  if (!is_sequence(sequence)) {
    throw py::type_error("a sequence is needed, not " + type_name(sequence));
  }
  // Of an array a list of Python's own numbers, whose rows are vectors whatever class the array has.
  if (py::hasattr(sequence, "__array__")) {
    const py::object array =
        py::hasattr(sequence, "tolist") ? py::reinterpret_borrow<py::object>(sequence) : sequence.attr("__array__")();
    return py::iter(array.attr("tolist")());
  }
  return py::iter(sequence);
}

Array::Array(py::handle sequence, Takes takes) : takes_(takes) {
  read(sequence, 0);
  if (is_complex()) {
    im_.resize(re_.size());
  }
}

void Array::read(py::handle sequence, std::size_t depth) {
  const bool first = depth == extents_.size();
  if (first) {
    if (depth == kDeepest) {
      throw py::value_error("sequences more than " + std::to_string(kDeepest) + " deep, or one that contains itself");
    }
    extents_.push_back(0);
  }
  std::size_t count = 0;
  for (const py::handle element : elements_of(sequence)) {
    // The first element of all at this depth decides whether numbers are here or deeper.
    if (depth + 1 < extents_.size() || (first && count == 0 && is_sequence(element))) {
      read(element, depth + 1);
    } else {
      add(element);
    }
    ++count;
  }
  if (!first && extents_[depth] != count) {
    throw py::value_error("sequences of " + std::to_string(extents_[depth]) + " and of " + std::to_string(count) +
                          " elements side by side");
  }
  extents_[depth] = count;
}

void Array::add(py::handle number) {
  if (re_.size() % 1024 == 1023) {
    check_signals();
  }
  const bool all_digits = takes_ == Takes::all_digits;
  if (py::isinstance<Complex>(number)) {
    Complex z = all_digits ? py::cast<const Complex&>(number) : to_complex(number);
    im_.resize(re_.size());
    im_.push_back(std::move(z.im));
    re_.push_back(std::move(z.re));
  } else {
    re_.push_back(all_digits ? to_proven(number) : to_real(number));
  }
}

void Array::require(bool holds, const char* text) {
  if (!holds) {
    throw py::type_error(text);
  }
}

py::object to_decimal(const Real& number) { return decimal_type()(number.to_string()); }
py::object from(const Real& number) { return results_are_real() ? py::cast(number) : to_decimal(number); }
py::object from(const Complex& number) { return py::cast(number); }

py::object like(py::handle model, py::list result) {
  if (!py::hasattr(model, "__array__")) {
    return result;
  }
  return py::module_::import("numpy").attr("array")(result,
                                                    py::arg("dtype") = py::type::of(py::none()).attr("__base__"));
}

py::bytes packed(const std::vector<Real>& numbers) {
  const std::vector<unsigned char> bytes = quarn::pack(numbers);
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::vector<Real> unpacked(const py::bytes& bytes) {
  const auto text = static_cast<std::string_view>(bytes);
  std::vector<Real> numbers;
  if (!quarn::unpack({reinterpret_cast<const unsigned char*>(text.data()), text.size()}, numbers)) {
    throw py::value_error("these bytes are no packed numbers");
  }
  return numbers;
}
std::vector<Real> unpacked(const py::bytes& bytes, std::size_t count) {
  std::vector<Real> numbers = unpacked(bytes);
  if (numbers.size() != count) {
    throw py::value_error(std::to_string(numbers.size()) + " packed numbers in place of " + std::to_string(count));
  }
  return numbers;
}

void add_complex(py::module_& module) {
  const auto text = [](const Real& x) { return "'" + x.to_string() + "'"; };
  py::class_<Complex> type(module, "Complex", R"(Complex(real, imag=0)

A complex number: two Decimals. Arithmetic is at the working digits, with reals too.

>>> z = Complex(3, '-4')
>>> z.real, z.imag
(Decimal('3'), Decimal('-4'))
>>> abs(z), z.conjugate(), z * z + 1
(Decimal('5'), Complex('3', '4'), Complex('-6', '-24'))
)");
  type.def(py::init([](py::handle real, py::handle imag) { return Complex(to_real(real), to_real(imag)); }),
           py::arg("real"), py::arg("imag") = 0);
  type.def_property_readonly("real", [](const Complex& z) { return from(z.re); });
  type.def_property_readonly("imag", [](const Complex& z) { return from(z.im); });
  type.def("conjugate", [](const Complex& z) { return conj(z); });
  type.def("__abs__", [](const Complex& z) { return from(tesk2mp::abs(z)); });
  type.def("__neg__", [](const Complex& z) { return -z; });
  type.def("__pos__", [](const Complex& z) { return to_complex(py::cast(z)); });
  type.def("__bool__", [](const Complex& z) { return z != Complex(0); });
  type.def("__complex__",
           [](const Complex& z) { return std::complex<double>(FloatToDouble(z.re), FloatToDouble(z.im)); });
  type.def(py::pickle(
      [](const Complex& z) {
        return packed({z.re, z.im});
      },
      [](const py::bytes& bytes) {
        const std::vector<Real> parts = unpacked(bytes, 2);
        return Complex(parts[0], parts[1]);
      }));
  type.def("__repr__", [text](const Complex& z) { return "Complex(" + text(z.re) + ", " + text(z.im) + ")"; });
  type.def("__eq__", [](const Complex& z, py::handle other) {
    if (is_operator(other)) {
      return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    }
    const bool equal = py::isinstance<Complex>(other) ? z == py::cast<const Complex&>(other)
                                                      : z.im == 0 && to_decimal(z.re).equal(other);
    return py::object(py::bool_(equal));
  });
  type.def("__hash__", [](const Complex& z) {
    return z.im == 0 ? py::hash(to_decimal(z.re)) : py::hash(py::make_tuple(to_decimal(z.re), to_decimal(z.im)));
  });

  // An array takes an operation into its own hands, element by element.
  const auto with_other = [](py::handle other, auto operation) -> py::object {
    return is_operator(other) ? py::reinterpret_borrow<py::object>(Py_NotImplemented)
                              : py::cast(operation(to_complex(other)));
  };
  const auto both_ways = [&](const char* name, const char* reflected, auto operation) {
    type.def(name, [=](const Complex& a, py::handle b) {
      return with_other(b, [&](const Complex& other) { return operation(a, other); });
    });
    type.def(reflected, [=](const Complex& b, py::handle a) {
      return with_other(a, [&](const Complex& other) { return operation(other, b); });
    });
  };
  both_ways("__add__", "__radd__", [](const Complex& a, const Complex& b) { return a + b; });
  both_ways("__sub__", "__rsub__", [](const Complex& a, const Complex& b) { return a - b; });
  both_ways("__mul__", "__rmul__", [](const Complex& a, const Complex& b) { return a * b; });
  both_ways("__truediv__", "__rtruediv__", [](const Complex& a, const Complex& b) { return a / b; });
}

}  // namespace python
