// Real numbers as objects of the module, and the functions of numpy as methods of Real and Complex.
#include <pybind11/complex.h>
#include <pybind11/stl.h>

#include <cstring>

#include "convert.h"
#include "quarn/function_table.h"
#include "quarn/rounding.h"

namespace python {
namespace {

/// The other operand with all its digits, so that an operation rounds once; nothing for what is no real number.
std::optional<Real> operand(py::handle other) {
  if (PyUnicode_Check(other.ptr()) != 0 || is_operator(other) || py::isinstance<Complex>(other) || other.is_none()) {
    return std::nullopt;
  }
  return to_exact(other);
}

py::object not_implemented() { return py::reinterpret_borrow<py::object>(Py_NotImplemented); }

quarn::NamedFunction2 function_of_two(const char* name) {
  for (const quarn::NamedFunction2& f : quarn::functions_of_two()) {
    if (std::strcmp(f.name, name) == 0) {
      return f;
    }
  }
  throw std::logic_error(name);
}

py::object simplest(const Complex& z) { return z.im == 0 ? py::cast(z.re) : py::cast(z); }

/// x - y floor(x / y), with the sign of y.
Real modulo(const Real& x, const Real& y) {
  const Real rest = fmod(x, y);
  return rest != 0 && (rest < 0) != (y < 0) ? rest + y : rest;
}
Real floor_quotient(const Real& x, const Real& y) { return rint((x - modulo(x, y)) / y); }

void add_operators(py::class_<Real>& type) {
  const auto both_ways = [&](const char* name, const char* reflected, auto operation) {
    const auto with = [](py::handle other, auto work) {
      const std::optional<Real> number = operand(other);
      return number ? py::object(py::cast(interruptible([&] { return work(*number); }))) : not_implemented();
    };
    type.def(name, [=](const Real& a, py::handle b) {
      return with(b, [&](const Real& other) { return operation(a, other); });
    });
    type.def(reflected, [=](const Real& b, py::handle a) {
      return with(a, [&](const Real& other) { return operation(other, b); });
    });
  };
  both_ways("__add__", "__radd__", [](const Real& a, const Real& b) { return a + b; });
  both_ways("__sub__", "__rsub__", [](const Real& a, const Real& b) { return a - b; });
  both_ways("__mul__", "__rmul__", [](const Real& a, const Real& b) { return a * b; });
  both_ways("__truediv__", "__rtruediv__", [](const Real& a, const Real& b) { return a / b; });
  both_ways("__mod__", "__rmod__", modulo);
  both_ways("__floordiv__", "__rfloordiv__", floor_quotient);
  both_ways("__divmod__", "__rdivmod__",
            [](const Real& a, const Real& b) { return std::pair(floor_quotient(a, b), modulo(a, b)); });
  // A negative number to a broken power is Complex.
  const auto power = [f = function_of_two("pow")](const Complex& a, const Complex& b) {
    return simplest(*interruptible([&] { return quarn::evaluate(f, a, b); }));
  };
  type.def("__pow__", [power](const Real& a, py::handle b) {
    const std::optional<Real> other = operand(b);
    return other ? power(a, *other) : not_implemented();
  });
  type.def("__rpow__", [power](const Real& b, py::handle a) {
    const std::optional<Real> other = operand(a);
    return other ? power(*other, b) : not_implemented();
  });

  const auto compared = [&](const char* name, int how) {
    type.def(name, [how](const Real& a, py::handle b) {
      if (py::isinstance<Complex>(b) || (is_sequence(b) && !py::isinstance<Real>(b))) {
        return not_implemented();
      }
      PyObject* const result = PyObject_RichCompare(
          to_decimal(a).ptr(), py::isinstance<Real>(b) ? to_decimal(py::cast<const Real&>(b)).ptr() : b.ptr(), how);
      if (result == nullptr) {
        throw py::error_already_set();
      }
      return py::reinterpret_steal<py::object>(result);
    });
  };
  compared("__eq__", Py_EQ);
  compared("__ne__", Py_NE);
  compared("__lt__", Py_LT);
  compared("__le__", Py_LE);
  compared("__gt__", Py_GT);
  compared("__ge__", Py_GE);
}

/// What numpy calls, by numpy's name, for each element of an array of objects.
constexpr std::pair<const char*, const char*> kNumpyNames[] = {
    {"arcsin", "asin"},   {"arccos", "acos"},   {"arctan", "atan"},
    {"arcsinh", "asinh"}, {"arccosh", "acosh"}, {"arctanh", "atanh"},
};

/// Adds add(name, function) of one number under the library's names and numpy's.
template <class Add>
void add_functions_of_one(Add add) {
  for (const quarn::NamedFunction1& f : quarn::functions_of_one()) {
    if (std::strcmp(f.name, "abs") == 0 || std::strcmp(f.name, "round") == 0) {
      continue;
    }
    add(f.name, f);
    for (const auto& [numpy, name] : kNumpyNames) {
      if (std::strcmp(f.name, name) == 0) {
        add(numpy, f);
      }
    }
  }
}

void add_methods(py::class_<Real>& type, py::class_<Complex>& complex_type) {
  add_functions_of_one([&](const char* name, const quarn::NamedFunction1& f) {
    const std::string summary = std::string(name) + "()\n\nThe " + f.summary + ".";
    type.def(
        name, [&f](const Real& x) { return simplest(*outside([&] { return quarn::evaluate(f, x); })); },
        summary.c_str());
    if (f.complex != nullptr) {
      complex_type.def(
          name, [&f](const Complex& z) { return py::cast(outside([&] { return f.complex(z); })); }, summary.c_str());
    }
  });
  for (const auto& [numpy, name] : {std::pair("arctan2", "atan2"), std::pair("hypot", "hypot"),
                                    std::pair("fmod", "fmod"), std::pair("copysign", "copysign")}) {
    const quarn::NamedFunction2 f = function_of_two(name);
    type.def(
        numpy,
        [f](const Real& x, py::handle y) {
          const Real other = to_exact(y);
          return py::cast(outside([&] { return f.apply(x, other); }));
        },
        py::arg("other"), (std::string(numpy) + "(other)\n\n" + name + "(self, other).").c_str());
  }
}

}  // namespace

void add_real(py::module_& module) {
  py::class_<Real> type(module, "Real", R"(Real(value=0)

A real number in decimal, from a Decimal, an int, a Fraction, text or a Real, rounded to the working digits. Operators use all
digits of their operands and round once, to the working digits; a Decimal and an int may be the other operand. It is hashed
and compared as the Decimal of its value, and formatted as that is. Functions of numpy work on it, and on arrays of it.

>>> from decimal import Decimal
>>> x = Real('0.1')
>>> x + x + x == Decimal('0.3'), hash(x) == hash(Decimal('0.1')), f'{x / 3:.5f}'
(True, True, '0.03333')
>>> x.exp(), Real(-1).sqrt()
(Real('1.1051709180756476248'), Complex('0', '1'))
)");
  type.def(py::init([](py::handle value) { return to_real(value); }), py::arg("value") = 0);
  add_operators(type);
  type.def("__neg__", [](const Real& x) { return -x; });
  type.def("__pos__", [](const Real& x) { return to_real(py::cast(x)); });
  type.def("__abs__", [](const Real& x) { return fabs(x); });
  type.def("__bool__", [](const Real& x) { return x != 0; });
  type.def("__float__", [](const Real& x) { return FloatToDouble(x); });
  type.def("__complex__", [](const Real& x) { return std::complex<double>(FloatToDouble(x)); });
  type.def("__hash__", [](const Real& x) { return py::hash(to_decimal(x)); });
  type.def("__str__", [](const Real& x) { return x.to_string(); });
  type.def("__repr__", [](const Real& x) { return "Real('" + x.to_string() + "')"; });
  for (const char* name : {"__int__", "__trunc__", "__floor__", "__ceil__"}) {
    type.def(name, [name](const Real& x) { return to_decimal(x).attr(name)(); });
  }
  type.def(
      "__format__", [](const Real& x, const py::str& spec) { return to_decimal(x).attr("__format__")(spec); },
      py::arg("spec"));
  type.def(
      "__round__",
      [](const Real& x, const py::object& places) {
        const Real result = quarn::quantize(x, places.is_none() ? 0 : to_places(places));
        return places.is_none() ? py::object(to_decimal(result).attr("__int__")()) : py::cast(result);
      },
      py::arg("places") = py::none());
  type.def(py::pickle([](const Real& x) { return packed({x}); },
                      [](const py::bytes& bytes) { return unpacked(bytes, 1).front(); }));
  type.def(
      "decimal", [](const Real& x) { return to_decimal(x); }, "decimal()\n\nThe Decimal of exactly this value.");
  type.def(
      "as_integer_ratio", [](const Real& x) { return to_decimal(x).attr("as_integer_ratio")(); },
      "as_integer_ratio()\n\nTwo integers without a common factor, the second positive, whose quotient this is.");
  type.def(
      "is_finite", [](const Real& x) { return bool(isfinite(x)); }, "is_finite()\n\nNeither infinite nor NaN.");
  type.def(
      "is_nan", [](const Real& x) { return bool(isnan(x)); }, "is_nan()\n\nNot a number.");
  type.def(
      "conjugate", [](const Real& x) { return x; }, "conjugate()\n\nThe number itself.");
  type.def_property_readonly("real", [](const Real& x) { return x; });
  type.def_property_readonly("imag", [](const Real&) { return Real(0); });

  auto complex_type = py::reinterpret_borrow<py::class_<Complex>>(module.attr("Complex"));
  add_methods(type, complex_type);
}

}  // namespace python
