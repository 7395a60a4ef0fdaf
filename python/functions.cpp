// The functions of numbers, from the table of the library.
#include <cstring>

#include "convert.h"
#include "quarn/function_table.h"

namespace python {
namespace {

struct Example {
  const char* name;
  const char* arguments;
  const char* result;
};

constexpr Example kExamples[] = {
    {"sin", "1", "Decimal('0.84147098480789650665')"},
    {"cos", "1", "Decimal('0.5403023058681397174')"},
    {"tan", "1", "Decimal('1.5574077246549022305')"},
    {"asin", "'0.1'", "Decimal('0.10016742116155979635')"},
    {"acos", "'0.1'", "Decimal('1.4706289056333368229')"},
    {"atan", "2", "Decimal('1.107148717794090503')"},
    {"sinh", "1", "Decimal('1.1752011936438014569')"},
    {"cosh", "1", "Decimal('1.5430806348152437785')"},
    {"tanh", "1", "Decimal('0.76159415595576488812')"},
    {"exp", "[0, 1]", "[Decimal('1'), Decimal('2.7182818284590452354')]"},
    {"log", "-1", "Complex('0', '3.1415926535897932385')"},
    {"ln", "2", "Decimal('0.69314718055994530942')"},
    {"log10", "2", "Decimal('0.30102999566398119521')"},
    {"fabs", "'-0.10'", "Decimal('0.1')"},
    {"floor", "'-2.5'", "Decimal('-3')"},
    {"ceil", "'-2.5'", "Decimal('-2')"},
    {"trunc", "'-2.5'", "Decimal('-2')"},
    {"rint", "'2.5'", "Decimal('2')"},
    {"expm1", "'1e-10'", "Decimal('1.00000000005E-10')"},
    {"exp2", "'0.5'", "Decimal('1.4142135623730950488')"},
    {"exp10", "'0.5'", "Decimal('3.162277660168379332')"},
    {"log1p", "'1e-10'", "Decimal('9.9999999995E-11')"},
    {"log2", "10", "Decimal('3.3219280948873623479')"},
    {"logb", "'0.025'", "Decimal('-2')"},
    {"cbrt", "2", "Decimal('1.2599210498948731648')"},
    {"asinh", "1", "Decimal('0.88137358701954302523')"},
    {"acosh", "2", "Decimal('1.3169578969248167086')"},
    {"atanh", "'0.5'", "Decimal('0.5493061443340548457')"},
    {"sinpi", "'0.1'", "Decimal('0.3090169943749474241')"},
    {"cospi", "'0.1'", "Decimal('0.95105651629515357212')"},
    {"tanpi", "'0.1'", "Decimal('0.32491969623290632616')"},
    {"asinpi", "'0.1'", "Decimal('0.031884280429259923958')"},
    {"acospi", "'0.1'", "Decimal('0.46811571957074007604')"},
    {"atanpi", "2", "Decimal('0.35241638234956672582')"},
    {"gamma", "['0.5', 5]", "[Decimal('1.7724538509055160273'), Decimal('24')]"},
    {"tgamma", "'0.5'", "Decimal('1.7724538509055160273')"},
    {"lgamma", "100", "Decimal('359.13420536957539878')"},
    {"digamma", "1", "Decimal('-0.57721566490153286061')"},
    {"factorial", "20", "Decimal('2432902008176640000')"},
    {"erf", "'0.5'", "Decimal('0.52049987781304653768')"},
    {"erfc", "10", "Decimal('2.088487583762544757E-45')"},
    {"fmod", "7, '1.5'", "Decimal('1')"},
    {"pow", "[2, 10], '0.5'", "[Decimal('1.4142135623730950488'), Decimal('3.162277660168379332')]"},
    {"atan2", "1, -2", "Decimal('2.6779450445889871222')"},
    {"hypot", "1, 2", "Decimal('2.2360679774997896964')"},
    {"remainder", "8, '1.5'", "Decimal('0.5')"},
    {"fmin", "1, 2", "Decimal('1')"},
    {"fmax", "1, 2", "Decimal('2')"},
    {"fdim", "5, 2", "Decimal('3')"},
    {"copysign", "3, '-0'", "Decimal('-3')"},
    {"nextafter", "1, 2", "Decimal('1.0000000000000000001')"},
    {"beta", "2, '0.5'", "Decimal('1.3333333333333333333')"},
    {"binomial", "40, 20", "Decimal('137846528820')"},
};

std::string example_of(const std::string& name) {
  for (const Example& each : kExamples) {
    if (name == each.name) {
      return "\n>>> " + name + "(" + each.arguments + ")\n" + each.result + "\n";
    }
  }
  return "";
}

/// A number, or numbers in sequences of any depth.
class Numbers {
 public:
  explicit Numbers(py::handle given) {
    if (is_sequence(given)) {
      const Array array(given);
      extents_ = array.extents();
      complex_ = array.is_complex();
      for (std::size_t k = 0, n = product(); k < n; ++k) {
        values_.push_back(array.number<Complex>(k));
      }
    } else {
      complex_ = py::isinstance<Complex>(given);
      values_.push_back(to_complex(given));
    }
  }

  bool is_single() const { return extents_.empty(); }
  bool is_complex() const { return complex_; }
  const std::vector<std::size_t>& extents() const { return extents_; }
  std::size_t size() const { return values_.size(); }
  const Complex& operator[](std::size_t k) const { return values_[is_single() ? 0 : k]; }

 private:
  std::size_t product() const {
    std::size_t count = 1;
    for (const std::size_t extent : extents_) {
      count *= extent;
    }
    return count;
  }

  std::vector<std::size_t> extents_;
  std::vector<Complex> values_;
  bool complex_ = false;
};

/// Decimals, or Complex where the arguments or one of the results are complex.
py::object shaped(const Numbers& shape, const std::vector<Complex>& results, bool complex, py::handle model) {
  for (const Complex& z : results) {
    complex = complex || z.im != 0;
  }
  std::vector<Real> reals;
  if (!complex) {
    for (const Complex& z : results) {
      reals.push_back(z.re);
    }
  }
  if (shape.is_single()) {
    return complex ? from(results.front()) : from(reals.front());
  }
  std::size_t next = 0;
  return like(model,
              complex ? nested<Complex>(shape.extents(), results, next) : nested<Real>(shape.extents(), reals, next));
}

py::object of_two(const quarn::NamedFunction2& f, py::handle x, py::handle y) {
  const Numbers a(x);
  const Numbers b(y);
  const Numbers& shape = a.is_single() ? b : a;
  if (!a.is_single() && !b.is_single() && a.extents() != b.extents()) {
    throw py::value_error("two sequences of different shapes");
  }
  const bool complex = a.is_complex() || b.is_complex();
  if (complex && f.complex == nullptr) {
    throw py::type_error("the numbers here are real, not Complex");
  }
  std::vector<Complex> results(shape.size());
  outside([&] {
    for (std::size_t k = 0; k < results.size(); ++k) {
      QuarnCheckInterrupt();
      results[k] = *quarn::evaluate(f, a[k], b[k]);
    }
  });
  return shaped(shape, results, complex, a.is_single() && !b.is_single() ? y : x);
}

}  // namespace

py::object of_each(const quarn::NamedFunction1& f, py::handle x) {
  const Numbers a(x);
  if (a.is_complex() && f.complex == nullptr) {
    throw py::type_error("the numbers here are real, not Complex");
  }
  std::vector<Complex> results(a.size());
  outside([&] {
    for (std::size_t k = 0; k < results.size(); ++k) {
      QuarnCheckInterrupt();
      results[k] = *quarn::evaluate(f, a[k]);
    }
  });
  return shaped(a, results, a.is_complex(), x);
}

void add_functions(py::module_& module) {
  // Python's own names stay Python's.
  const auto is_free = [&](const char* name) {
    return std::strcmp(name, "abs") != 0 && std::strcmp(name, "round") != 0 && !py::hasattr(module, name);
  };
  const auto text = [](const char* name, const std::string& arguments, const char* summary, bool complex) {
    std::string sentence(summary);
    sentence[0] = char(std::toupper(static_cast<unsigned char>(sentence[0])));
    return std::string(name) + "(" + arguments + ")\n\n" + sentence + (complex ? ", of real and Complex numbers" : "") +
           "; of each number in sequences of any depth.\n" + example_of(name);
  };
  for (const quarn::NamedFunction1& f : quarn::functions_of_one()) {
    if (is_free(f.name)) {
      module.def(
          f.name, [&f](py::handle x) { return of_each(f, x); }, py::arg("x"),
          text(f.name, "x", f.summary, f.complex != nullptr).c_str());
    }
  }
  for (const quarn::NamedFunction2& f : quarn::functions_of_two()) {
    if (is_free(f.name)) {
      const std::string arguments(f.arguments);
      module.def(
          f.name, [&f](py::handle x, py::handle y) { return of_two(f, x, y); },
          py::arg(arguments.substr(0, arguments.find(',')).c_str()),
          py::arg(arguments.substr(arguments.find(' ') + 1).c_str()),
          text(f.name, arguments, f.summary, f.complex != nullptr).c_str());
    }
  }
}

}  // namespace python
