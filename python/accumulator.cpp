// Exact sums, and numbers as bytes: what programs that share the work send each other.
#include "quarn/accumulator.h"

#include "context.h"
#include "convert.h"

template <>
struct pybind11::detail::type_caster<quarn::Accumulator> : python::Whole<quarn::Accumulator> {};

namespace python {
namespace {

using quarn::Accumulator;

/// The numbers of a vector, none of them rounded unless it is text or a quotient.
std::vector<Real> exact_vector(py::handle sequence) {
  std::vector<Real> numbers;
  for (const py::handle each : elements_of(sequence)) {
    if (numbers.size() % 1024 == 1023) {
      check_signals();
    }
    numbers.push_back(to_exact(each));
  }
  return numbers;
}

py::bytes packed_sum(const Accumulator& sum) {
  const std::vector<unsigned char> bytes = quarn::pack(std::span(&sum, 1));
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Accumulator unpacked_sum(const py::bytes& bytes) {
  const auto text = static_cast<std::string_view>(bytes);
  Accumulator sum;
  const std::size_t used = sum.read_packed(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  if (used == 0 || used != text.size()) {
    throw py::value_error("these bytes are no packed sum");
  }
  return sum;
}

/// A sum of its own that has been added to.
template <class Term>
Accumulator plus(Accumulator sum, const Term& term) {
  sum += term;
  return sum;
}

void add_sum_methods(py::class_<Accumulator>& type) {
  type.def(
      "add",
      [](Accumulator& self, py::handle x) {
        if (!is_sequence(x)) {
          self += to_exact(x);
          return;
        }
        const std::vector<Real> numbers = exact_vector(x);  // which may run code that adds to this very sum
        Accumulator sum = self;
        for (const Real& number : numbers) {
          sum += number;
        }
        self = std::move(sum);
      },
      py::arg("x"), "add(x)\n\nAdds a number, or each number of a vector.");
  type.def(
      "add_product",
      [](Accumulator& self, py::handle a, py::handle b) {
        const Real left = to_exact(a);
        self.add_product(left, to_exact(b));
      },
      py::arg("a"), py::arg("b"), "add_product(a, b)\n\nAdds the product a b.");
  type.def(
      "add_dot",
      [](Accumulator& self, py::handle x, py::handle y) {
        const std::vector<Real> left = exact_vector(x);
        const std::vector<Real> right = exact_vector(y);
        if (left.size() != right.size()) {
          throw py::value_error("vectors of " + std::to_string(left.size()) + " and " + std::to_string(right.size()) +
                                " numbers");
        }
        interruptible([&] { self.add_dot(left.size(), left.data(), 1, right.data(), 1); });
      },
      py::arg("x"), py::arg("y"), "add_dot(x, y)\n\nAdds the products x_i y_i of two vectors of one length.");
  type.def(
      "rounded", [](const Accumulator& self) { return from(self.rounded()); },
      "rounded()\n\nThe sum, rounded once to the working digits.");
  type.def(
      "rounded_root", [](const Accumulator& self) { return from(interruptible([&] { return self.rounded_root(); })); },
      "rounded_root()\n\nThe square root of the rounded sum, which itself may be beyond the range of numbers; NaN for "
      "a "
      "negative one.");
  type.def(
      "packed", &packed_sum,
      "packed()\n\nThe sum as bytes, the same on every machine: some 9 + 4 d/9 of them, d the digits that the terms "
      "span.");
  type.def(
      "copy", [](const Accumulator& self) { return self; }, "copy()\n\nAnother sum, so far the same.");
}

void add_sum_operators(py::class_<Accumulator>& type) {
  type.def(
      "__iadd__", [](Accumulator& self, const Accumulator& other) -> Accumulator& { return self += other; },
      py::return_value_policy::reference_internal);
  type.def(
      "__iadd__", [](Accumulator& self, py::handle x) -> Accumulator& { return self += to_exact(x); },
      py::return_value_policy::reference_internal);
  type.def("__add__", [](const Accumulator& self, const Accumulator& other) { return plus(self, other); });
  type.def("__add__", [](const Accumulator& self, py::handle x) { return plus(self, to_exact(x)); });
  // sum() begins with 0.
  type.def("__radd__", [](const Accumulator& self, py::handle x) { return plus(self, to_exact(x)); });
  type.def("__eq__", [](const Accumulator& self, py::handle other) {
    return py::isinstance<Accumulator>(other) ? py::object(py::bool_(self == py::cast<const Accumulator&>(other)))
                                              : py::reinterpret_borrow<py::object>(Py_NotImplemented);
  });
  type.attr("__hash__") = py::none();
  type.def("__repr__",
           [](const Accumulator& self) { return "<Accumulator, about " + self.rounded().to_string() + ">"; });
  type.def(py::pickle(&packed_sum, &unpacked_sum));
}

}  // namespace

void add_accumulator(py::module_& module) {
  py::class_<Accumulator> type(module, "Accumulator", R"(Accumulator(packed=None)

An exact sum of numbers and products, 0 at first or what packed() has written: no term is rounded, so that the order in which
they are added, and who adds which, does not matter. Decimal, Real and int are terms with all their digits; text and Fraction are
rounded to the working digits. Programs that share a sum send packed(), or the object itself, which is picklable: with mpi4py
comm.allreduce(total) adds up those of all ranks. An infinity or a NaN makes the sum what it is of extended real numbers.

>>> total = Accumulator()
>>> total.add(['1e30', 1, '-1e30'])
>>> total.add_dot(['1e-30', 3], [1, 2])
>>> total.rounded(), (total + Accumulator(total.packed())).rounded()
(Decimal('7'), Decimal('14'))
>>> with digits(40):
...     total.rounded()
Decimal('7.000000000000000000000000000001')
)");
  type.def(py::init([](const py::object& packed) {
             return packed.is_none() ? Accumulator() : unpacked_sum(py::cast<py::bytes>(packed));
           }),
           py::arg("packed") = py::none());
  add_sum_methods(type);
  add_sum_operators(type);

  module.def(
      "pack", [](py::handle numbers) { return packed(exact_vector(numbers)); }, py::arg("numbers"), R"(pack(numbers)

A vector of real numbers as bytes, the same on every machine: some 9 + 4 d/9 for a number of d digits. Of Decimal, Real and int
all digits are kept.

>>> unpack(pack([1, '-2.5']))
[Decimal('1'), Decimal('-2.5')]
)");
  module.def(
      "unpack", [](const py::bytes& bytes) { return from(unpacked(bytes), py::none()); }, py::arg("bytes"),
      R"(unpack(bytes)

The numbers that pack() has written, with all their digits, also those of several calls one after the other. InvalidArgument for other
bytes.

>>> unpack(pack(['0.1']) + pack(['0.2', '0.3']))
[Decimal('0.1'), Decimal('0.2'), Decimal('0.3')]
)");
}

}  // namespace python
