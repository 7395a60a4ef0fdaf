// Transforms, ranking, constants and random numbers.
#include <pybind11/stl.h>

#include <memory>
#include <optional>

#include "convert.h"

namespace python {
namespace {

using tesk2mp::Order;
using tesk2mp::Random;
using tesk2mp::TransformPlan;

Order order_of(bool descending) { return descending ? Order::descending : Order::ascending; }

std::vector<Integer> to_integers(py::handle sequence) {
  std::vector<Integer> integers;
  for (const py::handle element : elements_of(sequence)) {
    integers.push_back(to_integer(element));
  }
  return integers;
}

using Transform = void (*)(std::span<Real>);
py::object transformed(Transform transform, py::handle x) {
  std::vector<Real> numbers = to_vector<Real>(x);
  outside([&] { transform(numbers); });
  return from(numbers, x);
}

py::object transform(py::handle x, bool backward, std::optional<long> axis, bool classic) {
  const tesk2mp::Direction direction = backward ? tesk2mp::Direction::backward : tesk2mp::Direction::forward;
  const Array given(x);
  const std::vector<std::size_t>& extents = given.extents();
  std::vector<Complex> z = given.numbers<Complex>();
  const long depth = long(extents.size());
  if (axis && (*axis < -depth || *axis >= depth)) {
    throw py::index_error("axis " + std::to_string(*axis) + " of " + std::to_string(depth));
  }
  const tesk2mp::Shape shape(extents.rbegin(), extents.rend());  // the library's first index varies fastest
  outside([&] {
    if (depth == 1) {
      classic ? tesk2mp::classic::transform(z, direction) : tesk2mp::transform(z, direction);
    } else if (axis) {
      const long innermost_first = *axis < 0 ? -1 - *axis : depth - 1 - *axis;
      (classic ? tesk2mp::classic::transform_dimension : tesk2mp::transform_dimension)(
          z, shape, std::size_t(innermost_first), direction);
    } else {
      classic ? tesk2mp::classic::transform(z, shape, direction) : tesk2mp::transform(z, shape, direction);
    }
  });
  std::size_t next = 0;
  return like(x, nested<Complex>(extents, z, next));
}

std::unique_ptr<TransformPlan> plan_of(std::size_t length, std::optional<int> digits) {
  const tesk2mp::Digits working(digits.value_or(QuarnDigits()));
  return std::make_unique<TransformPlan>(length);
}

py::object transform_by(const TransformPlan& plan, py::handle x, bool backward) {
  const tesk2mp::Digits own(plan.digits());
  std::vector<Complex> z = to_vector<Complex>(x);
  outside([&] { plan.transform(z, backward ? tesk2mp::Direction::backward : tesk2mp::Direction::forward); });
  return from(z, x);
}

void add_plans(py::module_& module) {
  py::class_<TransformPlan>(module, "TransformPlan", R"(TransformPlan(length, digits=None)

The tables for transforms of sequences of one length at so many digits, the working digits if none are given: made once,
for many calls. Lengths are 1 to 2^24, digits 1 to 1100.

>>> plan = TransformPlan(4)
>>> plan.transform([1, Complex(0, 1), -1, Complex(0, -1)])
[Complex('0', '0'), Complex('2', '0'), Complex('0', '0'), Complex('0', '0')]
>>> plan.length, plan.digits
(4, 20)
)")
      .def(py::init(&plan_of), py::arg("length"), py::arg("digits") = py::none())
      .def_property_readonly("length", &TransformPlan::length)
      .def_property_readonly("digits", &TransformPlan::digits)
      .def("transform", transform_by, py::arg("x"), py::arg("backward") = false,
           "transform(x, backward=False)\n\nThe same as the function transform, of a sequence of the plan's length.");
}

void add_unitary_transforms(py::module_& module) {
  module.def("transform", transform, py::arg("x"), py::arg("backward") = false, py::arg("axis") = py::none(),
             py::arg("classic") = false, R"(transform(x, backward=False, axis=None, classic=False)

The discrete Fourier transform of n real or Complex numbers, n with any factors, z_k = 1/sqrt(n) sum over j of
x_j exp(-2 pi i j k/n); backward=True is its inverse. x: a sequence, or sequences in sequences of one length each, which
are transformed along all axes, or along the one of that number: 0 is the outermost, -1 the innermost. classic: with
constants of 16 digits.

>>> transform([1, Complex(0, 1), -1, Complex(0, -1)])
[Complex('0', '0'), Complex('2', '0'), Complex('0', '0'), Complex('0', '0')]
>>> transform([[1, 2], [3, 4]])
[[Complex('5', '0'), Complex('-1', '0')], [Complex('-2', '0'), Complex('0', '0')]]
)");
  module.def(
      "spectrum",
      [](py::handle x) {
        const std::vector<Real> numbers = to_vector<Real>(x);
        return from(outside([&] { return tesk2mp::spectrum(numbers); }), x);
      },
      py::arg("x"),
      R"(spectrum(x)

The discrete Fourier transform of n real numbers, z_k = 1/sqrt(n) sum over j of x_j exp(-2 pi i j k/n): n Complex numbers.
n is at least 2 and has at most 20 prime factors, none above 19.

>>> spectrum([1, 2, 3, 4])
[Complex('5', '0'), Complex('-1', '1'), Complex('-1', '0'), Complex('-1', '-1')]
)");
  module.def(
      "transform_real",
      [](py::handle x, bool classic) {
        return transformed(classic ? tesk2mp::classic::transform_real : tesk2mp::transform_real, x);
      },
      py::arg("x"), py::arg("classic") = false, R"(transform_real(x, classic=False)

The same in half-complex storage, n numbers: the real parts of z_0 ... z_(n/2), then the imaginary parts of the z before
n/2, from the last to z_1. classic: with constants of 16 digits.

>>> transform_real([1, 2, 3, 4])
[Decimal('5'), Decimal('-1'), Decimal('-1'), Decimal('1')]
)");
  module.def(
      "transform_hermitian",
      [](py::handle x, bool classic) {
        return transformed(classic ? tesk2mp::classic::transform_hermitian : tesk2mp::transform_hermitian, x);
      },
      py::arg("x"), py::arg("classic") = false, R"(transform_hermitian(x, classic=False)

The inverse of transform_real, from half-complex storage to n reals.

>>> transform_hermitian([5, -1, -1, 1])
[Decimal('1'), Decimal('2'), Decimal('3'), Decimal('4')]
)");
  module.def(
      "expand_hermitian", [](py::handle x) { return from(tesk2mp::expand_hermitian(to_vector<Real>(x)), x); },
      py::arg("x"), R"(expand_hermitian(x)

The n Complex numbers z_0 ... z_(n-1) that half-complex storage stands for.

>>> expand_hermitian([5, -1, -1, 1])
[Complex('5', '0'), Complex('-1', '1'), Complex('-1', '0'), Complex('-1', '-1')]
)");
}

void add_ranking(py::module_& module) {
  module.def(
      "rank",
      [](py::handle values, bool descending) {
        const std::vector<Real> numbers = to_vector<Real>(values);
        return from(outside([&] { return tesk2mp::rank(numbers, order_of(descending)); }), py::none());
      },
      py::arg("values"), py::arg("descending") = false, R"(rank(values, descending=False)

Where each of n values stands once they are sorted: a list of n ranks from 0. Equal values keep their order.

>>> rank(['2.5', 1, 2])
[2, 0, 1]
)");
  module.def(
      "sort",
      [](py::handle values, bool descending) {
        std::vector<Real> sorted = to_vector<Real>(values);
        outside([&] { tesk2mp::sort(sorted, order_of(descending)); });
        return from(sorted, values);
      },
      py::arg("values"), py::arg("descending") = false, R"(sort(values, descending=False)

The values in order. Equal values keep their order.

>>> sort(['2.5', 1, 2], descending=True)
[Decimal('2.5'), Decimal('2'), Decimal('1')]
)");
  module.def(
      "rearrange",
      [](py::handle values, py::handle ranks) {
        const Array given(values);
        return with_scalar(
            [&]<class T>(T) {
              std::vector<T> moved = given.vector<T>();
              tesk2mp::rearrange(moved, to_integers(ranks));
              return from(moved, values);
            },
            given);
      },
      py::arg("values"), py::arg("ranks"), R"(rearrange(values, ranks)

values[i] at place ranks[i] for each i; the ranks are a permutation of 0 ... n-1.

>>> rearrange([30, 10, 20], rank([3, 1, 2]))
[Decimal('10'), Decimal('20'), Decimal('30')]
)");
  module.def(
      "invert", [](py::handle permutation) { return from(tesk2mp::invert(to_integers(permutation)), py::none()); },
      py::arg("permutation"), R"(invert(permutation)

The permutation q of 0 ... n-1 with q[p[i]] = i.

>>> invert([2, 0, 1])
[1, 2, 0]
)");
}

void add_random(py::module_& module) {
  py::class_<Random>(module, "Random", R"(Random(generator=0, state=None)

A stream of uniform random numbers on [0, 1), random to the last working digit. generator: 0 ... 273. state: four integers,
from the property of that name, to go on with a stream.

>>> random = Random(5)
>>> with digits(12):
...     random()
Decimal('0.0000737190091233')
>>> bookmark = random.state
>>> random.take(3) == Random(5, bookmark).take(3)
True
)")
      .def(py::init([](Integer generator, const py::object& state) {
             if (state.is_none()) {
               return Random(generator);
             }
             const std::vector<Integer> words = to_integers(state);
             if (words.size() != 4) {
               throw py::value_error("a state has four integers");
             }
             return Random(generator, {words[0], words[1], words[2], words[3]});
           }),
           py::arg("generator") = 0, py::arg("state") = py::none())
      .def("__call__", [](Random& random) { return from(random()); })
      .def(
          "classic", [](Random& random) { return from(random.classic()); },
          "classic()\n\nThe next number of the classic stream: some 16 digits are random with generator 0, 28 with "
          "others.")
      .def(
          "take",
          [](Random& random, std::size_t count) {
            Random copy = random;
            const std::vector<Real> numbers = interruptible([&] { return copy.take(count); });
            random = copy;
            return from(numbers, py::none());
          },
          py::arg("count"), "take(count)\n\nA list of the next numbers.")
      .def(py::pickle(
          [](const Random& random) {
            const Random::State& words = random.state();
            return py::make_tuple(long(random.generator()),
                                  py::make_tuple(long(words[0]), long(words[1]), long(words[2]), long(words[3])));
          },
          [](const py::tuple& state) {
            const std::vector<Integer> words = to_integers(state[1]);
            if (words.size() != 4) {
              throw py::value_error("a state has four integers");
            }
            return Random(to_integer(state[0]), {words[0], words[1], words[2], words[3]});
          }))
      .def_property_readonly("generator", &Random::generator)
      .def_property_readonly("state", [](const Random& random) {
        const Random::State& words = random.state();
        return py::make_tuple(long(words[0]), long(words[1]), long(words[2]), long(words[3]));
      });
}

void add_constants(py::module_& module) {
  module.def(
      "pi", [](bool classic) { return from(classic ? tesk2mp::classic::pi() : tesk2mp::pi()); },
      py::arg("classic") = false, R"(pi(classic=False)

classic: a constant that is a double, good to 16 digits.

>>> with digits(50):
...     pi()
Decimal('3.1415926535897932384626433832795028841971693993751')
)");
  const auto constant = [&](const char* name, Real (*value)(), const char* document) {
    module.def(
        name, [value] { return from(value()); }, document);
  };
  constant("machine_precision", tesk2mp::machine_precision, R"(machine_precision()

10 to the power -digits, the relative distance of neighbouring numbers.

>>> machine_precision()
Decimal('1E-20')
)");
  constant("smallest_number", tesk2mp::smallest_number, R"(smallest_number()

The smallest positive number.

>>> smallest_number()
Decimal('1E-134217726')
)");
  constant("largest_number", tesk2mp::largest_number, R"(largest_number()

The largest number of the model.

>>> largest_number()
Decimal('1E+134217726')
)");
  module.def(
      "sqrt",
      [](py::handle number, bool classic) {
        if (is_sequence(number) && !classic) {
          static const quarn::NamedFunction1 kSqrt{"sqrt", ::sqrt, "", quarn::sqrt};
          return of_each(kSqrt, number);
        }
        const Complex z = to_complex(number);
        if (isnan(z.re) && !py::isinstance<Complex>(number)) {
          return from(z.re);
        }
        const Complex root = classic ? tesk2mp::classic::sqrt(z) : tesk2mp::sqrt(z);
        if (py::isinstance<Complex>(number) || root.im != 0) {
          return from(root);
        }
        return from(classic ? root.re : sqrt(z.re));
      },
      py::arg("z"), py::arg("classic") = false, R"(sqrt(z, classic=False)

The principal square root: a Complex of a Complex and of a negative number, otherwise a Decimal, correctly rounded; of
each number in sequences of any depth. classic: of one number by the classic routine, which has a constant of 16 digits.

>>> sqrt(2), sqrt(-4)
(Decimal('1.4142135623730950488'), Complex('0', '2'))
)");
}

}  // namespace

void add_sequences(py::module_& module) {
  add_constants(module);
  add_unitary_transforms(module);
  add_plans(module);
  add_ranking(module);
  add_random(module);
}

}  // namespace python
