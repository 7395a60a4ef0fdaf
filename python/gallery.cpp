// Test matrices and random vectors.
#include "convert.h"

namespace python {
namespace {

using tesk2mp::Random;
namespace gallery = tesk2mp::gallery;

template <class T>
py::object matrix_of(const std::string& name, std::size_t order, const Array& parameters, Random* random) {
  const std::vector<T> numbers = parameters.numbers<T>();
  Random stream = random == nullptr ? Random() : *random;
  const Matrix<T> a = outside([&] { return gallery::matrix<T>(name, order, numbers, stream); });
  if (random != nullptr) {
    *random = stream;
  }
  return from(a, py::none());
}

py::object matrix(const std::string& name, py::handle order, const py::object& parameters, Random* random) {
  const py::object list = parameters.is_none()      ? py::object(py::list())
                          : is_sequence(parameters) ? parameters
                                                    : py::object(py::make_tuple(parameters));
  const Array numbers(list);
  if (is_sequence(order)) {
    const Array first(order);
    return with_scalar(
        [&]<class T>(T) {
          return from(gallery::from_vectors<T>(name, first.vector<T>(), numbers.numbers<T>()), order);
        },
        first, numbers);
  }
  const std::size_t n = to_index(order);
  return with_scalar([&]<class T>(T) { return matrix_of<T>(name, n, numbers, random); }, numbers);
}

}  // namespace

void add_gallery(py::module_& module) {
  module.def(
      "gallery",
      [](const std::string& name, const py::object& order, const py::object& parameters, Random* random) {
        return matrix(name, order, parameters, random);
      },
      py::arg("name"), py::arg("order"), py::arg("parameters") = py::none(), py::arg("random") = py::none(),
      R"(gallery(name, order, parameters=None, random=None)

The test matrix of that name and order; gallery_names() lists them with their
parameters, a number or a sequence of them. Random ones go on with the stream `random` of generator 0,
and start at its default seed without one. toeplitz, hankel, companion, vandermonde, circulant, fiedler and cauchy take a vector
in place of the order, and a second one as parameters.

>>> gallery('pascal', 3)
[[Decimal('1'), Decimal('1'), Decimal('1')], [Decimal('1'), Decimal('2'), Decimal('3')], [Decimal('1'), Decimal('3'), Decimal('6')]]
>>> gallery('toeplitz', [1, 2], [1, 3])
[[Decimal('1'), Decimal('3')], [Decimal('2'), Decimal('1')]]
)");
  module.def(
      "gallery_names",
      [] {
        py::dict names;
        for (const gallery::Entry& entry : gallery::entries()) {
          names[py::str(entry.name)] =
              py::str(entry.parameters.empty() ? entry.purpose : "(" + entry.parameters + ") " + entry.purpose);
        }
        return names;
      },
      R"(gallery_names()

The names of the test matrices, each with its parameters in parentheses and a line about it.

>>> gallery_names()['hilbert']
'1 / (i + j - 1)'
)");
  module.def(
      "random_vector",
      [](std::size_t count, const std::string& distribution, bool complex, Random* random) -> py::object {
        using gallery::Distribution;
        const Distribution kind = option_of<Distribution>("distribution", distribution,
                                                          {{"unit", Distribution::unit},
                                                           {"symmetric", Distribution::symmetric},
                                                           {"normal", Distribution::normal},
                                                           {"disc", Distribution::disc},
                                                           {"circle", Distribution::circle}});
        Random stream = random == nullptr ? Random() : *random;
        const auto draw = [&]<class T>(T) {
          const std::vector<T> x = interruptible([&] { return gallery::random_vector<T>(kind, count, stream); });
          return from(x, py::none());
        };
        py::object x = complex ? draw(Complex()) : draw(Real());
        if (random != nullptr) {
          *random = stream;
        }
        return x;
      },
      py::arg("count"), py::arg("distribution") = "normal", py::arg("complex") = false, py::arg("random") = py::none(),
      R"(random_vector(count, distribution='normal', complex=False, random=None)

Random numbers, 'unit' on (0, 1), 'symmetric' on (-1, 1) or 'normal'; of Complex numbers those of both parts, or 'disc' and
'circle'. They go on with the stream `random` of generator 0.

>>> with digits(6):
...     random_vector(1, 'unit')
[Decimal('0.186298')]
)");
}

}  // namespace python
