#include "convert.h"

#include <algorithm>
#include <cctype>

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

bool is_text(py::handle value) { return PyUnicode_Check(value.ptr()) != 0; }

Real read(const std::string& text) {
  Real number(text);
  if (isnan(number)) {
    std::string word = text.substr(text.find_first_not_of("+-") == 1 ? 1 : 0);
    std::transform(word.begin(), word.end(), word.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    if (word != "nan" && word != "snan") {
      throw py::value_error("not a number: '" + text + "'");
    }
  }
  return number;
}

/// The text of an integer by way of a Decimal, whose text has no limit on its length.
std::string integer_text(py::handle integer) { return py::str(decimal_type()(integer)); }

/// Numerator and denominator exactly, whatever their lengths, so that there is one rounding alone.
Real divide(py::handle fraction) {
  const std::string top = integer_text(fraction.attr("numerator"));
  const std::string bottom = integer_text(fraction.attr("denominator"));
  const auto exact = [longest = int(std::max(top.size(), bottom.size()))](const std::string& text) {
    const tesk2mp::Digits digits(std::max(longest, QuarnDigits()));
    return read(text);
  };
  return exact(top) / exact(bottom);
}

}  // namespace

Real to_real(py::handle number) {
  if (is_text(number)) {
    return read(py::cast<std::string>(number));
  }
  if (py::isinstance(number, decimal_type())) {
    return read(py::str(number));
  }
  if (PyIndex_Check(number.ptr()) != 0) {  // int, and the integers of numpy
    return read(integer_text(py::reinterpret_steal<py::object>(PyNumber_Index(number.ptr()))));
  }
  if (py::isinstance(number, fraction_type())) {
    return divide(number);
  }
  if (PyFloat_Check(number.ptr()) != 0) {
    throw py::type_error(
        "a float is a binary number: write '0.1' or Decimal('0.1') for what you mean, Decimal(x) for "
        "exactly the float x");
  }
  throw py::type_error("a number is a Decimal, an int, a Fraction or text, not " +
                       std::string(py::str(py::type::handle_of(number).attr("__name__"))));
}

Complex to_complex(py::handle number) {
  if (py::isinstance<Complex>(number)) {
    const auto& z = py::cast<const Complex&>(number);
    return {+z.re, +z.im};
  }
  return to_real(number);
}

bool is_sequence(py::handle value) {
  return !is_text(value) && py::hasattr(value, "__iter__") && !py::isinstance<Complex>(value);
}

py::iterator elements_of(py::handle sequence) {
  if (!is_sequence(sequence)) {
    throw py::type_error("a sequence is needed, not " +
                         std::string(py::str(py::type::handle_of(sequence).attr("__name__"))));
  }
  return py::iter(sequence);
}

int depth_of(py::handle value) {
  if (!is_sequence(value)) {
    return 0;
  }
  for (const py::handle element : py::iter(value)) {
    return 1 + depth_of(element);
  }
  return 1;
}

bool has_complex(py::handle sequence) {
  if (py::isinstance<Complex>(sequence)) {
    return true;
  }
  if (depth_of(sequence) == 0) {
    return false;
  }
  const py::iterator elements = py::iter(sequence);
  return std::any_of(elements, py::iterator::sentinel(), [](py::handle element) { return has_complex(element); });
}

py::object from(const Real& number) { return decimal_type()(number.to_string()); }
py::object from(const Complex& number) { return py::cast(number); }

py::object like(py::handle model, py::list result) {
  if (!py::hasattr(model, "__array_interface__")) {
    return result;
  }
  return py::module_::import("numpy").attr("array")(result,
                                                    py::arg("dtype") = py::type::of(py::none()).attr("__base__"));
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
  type.def("__repr__", [text](const Complex& z) { return "Complex(" + text(z.re) + ", " + text(z.im) + ")"; });
  type.def("__eq__", [](const Complex& z, py::handle other) {
    return py::isinstance<Complex>(other) ? z == py::cast<const Complex&>(other) : z.im == 0 && from(z.re).equal(other);
  });
  type.def("__hash__", [](const Complex& z) {
    return z.im == 0 ? py::hash(from(z.re)) : py::hash(py::make_tuple(from(z.re), from(z.im)));
  });

  const auto both_ways = [&type](const char* name, const char* reflected, auto operation) {
    type.def(name, [operation](const Complex& a, py::handle b) { return operation(a, to_complex(b)); });
    type.def(reflected, [operation](const Complex& b, py::handle a) { return operation(to_complex(a), b); });
  };
  both_ways("__add__", "__radd__", [](const Complex& a, const Complex& b) { return a + b; });
  both_ways("__sub__", "__rsub__", [](const Complex& a, const Complex& b) { return a - b; });
  both_ways("__mul__", "__rmul__", [](const Complex& a, const Complex& b) { return a * b; });
  both_ways("__truediv__", "__rtruediv__", [](const Complex& a, const Complex& b) { return a / b; });
}

}  // namespace python
