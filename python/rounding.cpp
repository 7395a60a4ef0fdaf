// Decimal rounding of numbers, vectors and matrices.
#include "quarn/rounding.h"

#include <algorithm>

#include "convert.h"

namespace python {
namespace {

// Numbers are read with so many digits, so that they are not rounded twice.
constexpr int kReadDigits = 10000;

tesk2mp::Rounding mode_of(const std::string& name) {
  if (const auto mode = quarn::rounding_named(name)) {
    return *mode;
  }
  std::string names;
  for (const quarn::NamedRounding& each : quarn::kRoundings) {
    names += (names.empty() ? "'" : ", '") + std::string(each.name) + "'";
  }
  throw py::value_error("mode is one of " + names + ", not '" + name + "'");
}

/// A Decimal that is written with all places.
py::object with_places(const Real& x, int places) {
  if (places <= 0 || !isfinite(x)) {
    return from(x);
  }
  std::string text(std::size_t(QFsnprintf(nullptr, 0, "%.*f", places, x)), '\0');
  QFsnprintf(text.data(), text.size() + 1, "%.*f", places, x);
  return py::module_::import("decimal").attr("Decimal")(text);
}

/// The elements that make() gives, in lists of these lengths.
template <class Make>
py::object in_lists(std::span<const std::size_t> extents, const Make& make, std::size_t& next) {
  if (extents.empty()) {
    return make(next++);
  }
  py::list elements;
  for (std::size_t i = 0; i < extents.front(); ++i) {
    elements.append(in_lists(extents.subspan(1), make, next));
  }
  return elements;
}

py::object quantize(py::handle x, py::handle places_given, const std::string& mode_name, bool inexact) {
  const int places = to_places(places_given);
  const tesk2mp::Rounding mode = mode_of(mode_name);
  std::vector<std::size_t> extents;
  std::vector<Complex> numbers;
  bool complex = false;
  {
    const tesk2mp::Digits exact(std::max(QuarnDigits(), kReadDigits));
    if (is_sequence(x)) {
      const Array given(x);
      extents = given.extents();
      complex = given.is_complex();
      numbers = given.numbers<Complex>();
    } else {
      complex = py::isinstance<Complex>(x);
      numbers.push_back(to_complex(x));
    }
  }
  std::vector<bool> changed;
  for (Complex& z : numbers) {
    std::size_t count = 0;
    z = tesk2mp::quantize(z, places, mode, &count);
    changed.push_back(count > 0);
  }
  const auto shaped = [&](const auto& make) {
    std::size_t next = 0;
    py::object result = in_lists(extents, make, next);
    return extents.empty() ? result : like(x, result);
  };
  py::object rounded =
      shaped([&](std::size_t k) { return complex ? from(numbers[k]) : with_places(numbers[k].re, places); });
  if (!inexact) {
    return rounded;
  }
  return py::make_tuple(rounded, shaped([&](std::size_t k) { return py::object(py::bool_(bool(changed[k]))); }));
}

py::object round_parts(py::handle parts, py::handle places_given, const std::string& mode_name,
                       const std::string& rule_name) {
  const int places = to_places(places_given);
  const tesk2mp::Rounding mode = mode_of(mode_name);
  const auto rule =
      option_of<tesk2mp::Reconciliation>("rule", rule_name,
                                         {{"largest_remainder", tesk2mp::Reconciliation::largest_remainder},
                                          {"cumulative", tesk2mp::Reconciliation::cumulative}});
  const std::vector<Real> given = [&] {
    const tesk2mp::Digits exact(std::max(QuarnDigits(), kReadDigits));
    return to_vector<Real>(parts);
  }();
  py::list result;
  for (const Real& part : tesk2mp::round_parts(given, places, mode, rule)) {
    result.append(with_places(part, places));
  }
  return like(parts, result);
}

}  // namespace

void add_rounding(py::module_& module) {
  module.def("quantize", quantize, py::arg("x"), py::arg("places"), py::arg("mode") = "half_even",
             py::arg("inexact") = false, R"(quantize(x, places, mode='half_even', inexact=False)

A number with so many places after the point, or each of the numbers in sequences of any depth; negative places are zeros
before the point. Digits are not limited by the working ones. mode: 'half_even', 'half_up' (halves away from zero, as
invoices have it), 'half_down', 'up', 'down', 'ceiling', 'floor', '05up'. With inexact=True the second of two results
says which numbers were changed.

>>> quantize(['2.345', '-0.5', 7], 2, 'half_up')
[Decimal('2.35'), Decimal('-0.50'), Decimal('7.00')]
>>> quantize('2.345', 2, inexact=True)
(Decimal('2.34'), True)
)");
  module.def("round_parts", round_parts, py::arg("parts"), py::arg("places"), py::arg("mode") = "half_even",
             py::arg("rule") = "largest_remainder",
             R"(round_parts(parts, places, mode='half_even', rule='largest_remainder')

Parts with so many places whose sum is exactly that of the given ones, rounded. rule: 'largest_remainder' adds the missing
units where most was cut off, 'cumulative' rounds the running sum.

>>> round_parts(['33.333', '33.333', '33.334'], 2)
[Decimal('33.33'), Decimal('33.33'), Decimal('33.34')]
>>> sum(round_parts(['0.125'] * 8, 2, 'half_up', 'cumulative'))
Decimal('1.00')
)");
}

}  // namespace python
