// Transforms by the names and options of numpy and SciPy, convolutions, windows.
#include <pybind11/stl.h>

#include <memory>
#include <optional>

#include "convert.h"

namespace python {
namespace {

using tesk2mp::Along;
using tesk2mp::NdArray;
using tesk2mp::Results;
using tesk2mp::Scaling;
using Length = std::optional<std::size_t>;
using Axes = std::optional<std::vector<std::ptrdiff_t>>;
using Name = std::optional<std::string>;

Scaling scaling_of(const Name& name) {
  return option_of<Scaling>(
      "norm", name.value_or("backward"),
      {{"backward", Scaling::backward}, {"ortho", Scaling::orthonormal}, {"forward", Scaling::forward}});
}

Results results_of(const std::string& name) {
  return option_of<Results>("mode", name,
                            {{"full", Results::full}, {"same", Results::same}, {"valid", Results::valid}});
}

template <class T>
NdArray<T> to_array(py::handle x) {
  const Array given(x);
  return {given.numbers<T>(), given.extents()};
}

template <class T>
py::object from_array(const NdArray<T>& array, py::handle model) {
  std::size_t next = 0;
  return like(model, nested(std::span<const std::size_t>(array.shape), std::span<const T>(array.elements), next));
}

/// f(x, n, axis, norm) of arrays of T.
template <class T, class Transform>
auto along_one(Transform transform) {
  return [transform](py::handle x, Length n, std::ptrdiff_t axis, const Name& norm) {
    const Along along{n, axis, scaling_of(norm)};
    const NdArray<T> numbers = to_array<T>(x);
    return from_array(outside([&] { return transform(numbers, along); }), x);
  };
}

/// f(x, type, n, axis, norm).
template <class Transform>
auto of_type(Transform transform) {
  return [transform](py::handle x, int type, Length n, std::ptrdiff_t axis, const Name& norm) {
    const Along along{n, axis, scaling_of(norm)};
    const NdArray<Real> numbers = to_array<Real>(x);
    return from_array(outside([&] { return transform(numbers, type, along); }), x);
  };
}

/// f(x, axes, norm).
template <class T, class Transform>
auto along_several(Transform transform) {
  return [transform](py::handle x, const Axes& axes, const Name& norm) {
    const Scaling scaling = scaling_of(norm);
    const NdArray<T> numbers = to_array<T>(x);
    const std::vector<std::ptrdiff_t> chosen = axes.value_or(std::vector<std::ptrdiff_t>());
    return from_array(outside([&] { return transform(numbers, chosen, scaling); }), x);
  };
}

void add_sequence_transforms(py::module_& module) {
  const auto add = [&](const char* name, const auto& transform, const char* document) {
    module.def(name, transform, py::arg("x"), py::arg("n") = py::none(), py::arg("axis") = -1,
               py::arg("norm") = py::none(), document);
  };
  add("fft", along_one<Complex>([](const auto& x, const Along& along) { return tesk2mp::fft(x, along); }),
      R"(fft(x, n=None, axis=-1, norm=None)

z_k = sum over j of x_j exp(-2 pi i j k/n), along one axis of sequences nested to any depth. n: so many elements, cut off or
continued by zeros. norm: 'backward' (as it stands, and the inverse divided by n), 'ortho' (both divided by sqrt(n)) or
'forward' (the other way round). Any length; each result is rounded once.

>>> fft([1, 2, 3, 4])
[Complex('10', '0'), Complex('-2', '2'), Complex('-2', '0'), Complex('-2', '-2')]
)");
  add("ifft", along_one<Complex>([](const auto& x, const Along& along) { return tesk2mp::ifft(x, along); }),
      R"(ifft(x, n=None, axis=-1, norm=None)

The inverse of fft.

>>> ifft([4, 0, 0, 0])
[Complex('1', '0'), Complex('1', '0'), Complex('1', '0'), Complex('1', '0')]
)");
  add("rfft", along_one<Real>([](const auto& x, const Along& along) { return tesk2mp::rfft(x, along); }),
      R"(rfft(x, n=None, axis=-1, norm=None)

The numbers 0 ... n/2 of fft of real numbers; the others are their conjugates.

>>> rfft([1, 2, 3, 4])
[Complex('10', '0'), Complex('-2', '2'), Complex('-2', '0')]
)");
  add("irfft", along_one<Complex>([](const auto& x, const Along& along) { return tesk2mp::irfft(x, along); }),
      R"(irfft(x, n=None, axis=-1, norm=None)

The inverse of rfft: n real numbers, 2 (h - 1) of them from h by default. The imaginary part of the first number, and of the
last one for an even n, is taken as 0.

>>> irfft(rfft([1, 2, 3]), 3)
[Decimal('1'), Decimal('2'), Decimal('3')]
)");
  const auto add_typed = [&](const char* name, const auto& transform, const char* document) {
    module.def(name, transform, py::arg("x"), py::arg("type") = 2, py::arg("n") = py::none(), py::arg("axis") = -1,
               py::arg("norm") = py::none(), document);
  };
  add_typed("dct", of_type([](const auto& x, int type, const Along& along) { return tesk2mp::dct(x, type, along); }),
            R"(dct(x, type=2, n=None, axis=-1, norm=None)

The cosine transform of type 1 to 4; type 2: y_k = 2 sum over j of x_j cos(pi k (2 j + 1)/(2 n)). Scaling as of fft, with
2 n in place of n (2 (n - 1) for type 1); 'ortho' makes it orthogonal.

>>> dct([1, 1, 1])
[Decimal('6'), Decimal('0'), Decimal('0')]
)");
  add_typed("idct", of_type([](const auto& x, int type, const Along& along) { return tesk2mp::idct(x, type, along); }),
            R"(idct(x, type=2, n=None, axis=-1, norm=None)

The inverse of dct of the same type.

>>> idct([6, 0, 0])
[Decimal('1'), Decimal('1'), Decimal('1')]
)");
  add_typed("dst", of_type([](const auto& x, int type, const Along& along) { return tesk2mp::dst(x, type, along); }),
            R"(dst(x, type=2, n=None, axis=-1, norm=None)

The sine transform of type 1 to 4; type 2: y_k = 2 sum over j of x_j sin(pi (k + 1)(2 j + 1)/(2 n)). Scaling as of dct, with
2 (n + 1) for type 1.

>>> dst([1, -1])
[Decimal('0'), Decimal('4')]
)");
  add_typed("idst", of_type([](const auto& x, int type, const Along& along) { return tesk2mp::idst(x, type, along); }),
            R"(idst(x, type=2, n=None, axis=-1, norm=None)

The inverse of dst of the same type.

>>> idst([0, 4])
[Decimal('1'), Decimal('-1')]
)");
}

/// A plan at so many digits, the working digits by default.
template <class Plan, class... Values>
std::unique_ptr<Plan> plan_of(const std::optional<int>& digits, Values... values) {
  const tesk2mp::Digits working(digits.value_or(QuarnDigits()));
  return std::make_unique<Plan>(values...);
}

/// plan.f(x, norm) of numbers that are rounded to the digits of the plan.
template <class T, class Plan, class Transform>
auto by_plan(Transform transform) {
  return [transform](const Plan& plan, py::handle x, const Name& norm) {
    const tesk2mp::Digits own(plan.digits());
    const Scaling scaling = scaling_of(norm);
    const std::vector<T> numbers = to_vector<T>(x);
    return from(outside([&] { return (plan.*transform)(numbers, scaling); }), x);
  };
}

std::string heading(const std::string& method, const std::string& text) { return method + "(x, norm=None)\n\n" + text; }

template <class Plan, class Method>
void add_typed_plan(py::module_& module, const char* name, const char* document, const char* forward_name,
                    Method forward, const char* inverse_name, Method inverse) {
  py::class_<Plan>(module, name, document)
      .def(py::init([](std::size_t length, int type, std::optional<int> digits) {
             return plan_of<Plan>(digits, length, type);
           }),
           py::arg("length"), py::arg("type") = 2, py::arg("digits") = py::none())
      .def_property_readonly("length", &Plan::length)
      .def_property_readonly("type", &Plan::type)
      .def_property_readonly("digits", &Plan::digits)
      .def(forward_name, by_plan<Real, Plan>(forward), py::arg("x"), py::arg("norm") = py::none(),
           heading(forward_name, "The same as the function of this name.").c_str())
      .def(inverse_name, by_plan<Real, Plan>(inverse), py::arg("x"), py::arg("norm") = py::none(),
           heading(inverse_name, "Its inverse.").c_str());
}

void add_real_plans(py::module_& module) {
  using tesk2mp::CosinePlan;
  using tesk2mp::SinePlan;
  using tesk2mp::SpectrumPlan;
  py::class_<SpectrumPlan>(module, "SpectrumPlan", R"(SpectrumPlan(length, digits=None)

The tables of rfft and irfft for sequences of one length at so many digits, the working digits if none are given: made once,
for many calls. Lengths are 1 to 2^24, digits 1 to 1100.

>>> plan = SpectrumPlan(4)
>>> plan.rfft([1, 2, 3, 4])
[Complex('10', '0'), Complex('-2', '2'), Complex('-2', '0')]
>>> plan.irfft([10, Complex(-2, 2), -2])
[Decimal('1'), Decimal('2'), Decimal('3'), Decimal('4')]
)")
      .def(
          py::init([](std::size_t length, std::optional<int> digits) { return plan_of<SpectrumPlan>(digits, length); }),
          py::arg("length"), py::arg("digits") = py::none())
      .def_property_readonly("length", &SpectrumPlan::length)
      .def_property_readonly("digits", &SpectrumPlan::digits)
      .def("rfft", by_plan<Real, SpectrumPlan>(&SpectrumPlan::rfft), py::arg("x"), py::arg("norm") = py::none(),
           "rfft(x, norm=None)\n\nThe same as the function rfft, of a sequence of the plan's length.")
      .def("irfft", by_plan<Complex, SpectrumPlan>(&SpectrumPlan::irfft), py::arg("x"), py::arg("norm") = py::none(),
           "irfft(x, norm=None)\n\nThe same as the function irfft, of length // 2 + 1 numbers.");
  add_typed_plan<CosinePlan>(module, "CosinePlan", R"(CosinePlan(length, type=2, digits=None)

The tables of dct and idct of one type, as SpectrumPlan.

>>> plan = CosinePlan(3)
>>> plan.dct([1, 1, 1])
[Decimal('6'), Decimal('0'), Decimal('0')]
>>> plan.idct([6, 0, 0])
[Decimal('1'), Decimal('1'), Decimal('1')]
)",
                             "dct", &CosinePlan::dct, "idct", &CosinePlan::idct);
  add_typed_plan<SinePlan>(module, "SinePlan", R"(SinePlan(length, type=2, digits=None)

The tables of dst and idst of one type, as SpectrumPlan.

>>> SinePlan(2).dst([1, -1])
[Decimal('0'), Decimal('4')]
)",
                           "dst", &SinePlan::dst, "idst", &SinePlan::idst);
}

void add_array_transforms(py::module_& module) {
  const auto add = [&](const char* name, const auto& transform, const char* document) {
    module.def(name, transform, py::arg("x"), py::arg("axes") = py::none(), py::arg("norm") = py::none(), document);
  };
  add("fftn", along_several<Complex>([](const auto&... given) { return tesk2mp::fftn(given...); }),
      R"(fftn(x, axes=None, norm=None)

fft along several axes, all of them by default; each result is rounded once.

>>> fftn([[1, 2], [3, 4]])
[[Complex('10', '0'), Complex('-2', '0')], [Complex('-4', '0'), Complex('0', '0')]]
)");
  add("ifftn", along_several<Complex>([](const auto&... given) { return tesk2mp::ifftn(given...); }),
      R"(ifftn(x, axes=None, norm=None)

The inverse of fftn.

>>> ifftn([[10, -2], [-4, 0]])
[[Complex('1', '0'), Complex('2', '0')], [Complex('3', '0'), Complex('4', '0')]]
)");
  add("rfftn", along_several<Real>([](const auto&... given) { return tesk2mp::rfftn(given...); }),
      R"(rfftn(x, axes=None, norm=None)

fftn of real numbers, with the numbers 0 ... n/2 along the last axis of the list.

>>> rfftn([[1, 2, 3, 4]])
[[Complex('10', '0'), Complex('-2', '2'), Complex('-2', '0')]]
)");
  module.def(
      "irfftn",
      [](py::handle x, Length n, const Axes& axes, const Name& norm) {
        const Scaling scaling = scaling_of(norm);
        const NdArray<Complex> numbers = to_array<Complex>(x);
        const std::vector<std::ptrdiff_t> chosen = axes.value_or(std::vector<std::ptrdiff_t>());
        return from_array(outside([&] { return tesk2mp::irfftn(numbers, chosen, scaling, n); }), x);
      },
      py::arg("x"), py::arg("n") = py::none(), py::arg("axes") = py::none(), py::arg("norm") = py::none(),
      R"(irfftn(x, n=None, axes=None, norm=None)

The inverse of rfftn, with n numbers along the last axis of the list.

>>> irfftn(rfftn([[1, 2, 3]]), 3)
[[Decimal('1'), Decimal('2'), Decimal('3')]]
)");
  const auto add_shift = [&](const char* name, bool inverse, const char* document) {
    module.def(
        name,
        [inverse](py::handle x, const Axes& axes) {
          const Array given(x);
          return with_scalar(
              [&]<class T>(T) {
                const NdArray<T> numbers{given.numbers<T>(), given.extents()};
                return from_array(tesk2mp::fftshift(numbers, axes.value_or(std::vector<std::ptrdiff_t>()), inverse), x);
              },
              given);
        },
        py::arg("x"), py::arg("axes") = py::none(), document);
  };
  add_shift("fftshift", false, R"(fftshift(x, axes=None)

With frequency 0 in the middle of each axis.

>>> fftshift(fftfreq(5))
[Decimal('-0.4'), Decimal('-0.2'), Decimal('0'), Decimal('0.2'), Decimal('0.4')]
)");
  add_shift("ifftshift", true, R"(ifftshift(x, axes=None)

The inverse of fftshift.

>>> ifftshift([-1, 0, 1])
[Decimal('0'), Decimal('1'), Decimal('-1')]
)");
}

/// Of two vectors, complex if one of them is.
template <class Work>
py::object of_two(py::handle a, py::handle b, const Work& work) {
  const Array left(a);
  const Array right(b);
  return with_scalar(
      [&]<class T>(T) { return from(outside([&] { return work(left.vector<T>(), right.vector<T>()); }), a); }, left,
      right);
}

void add_convolutions(py::module_& module) {
  module.def(
      "convolve",
      [](py::handle a, py::handle b, const std::string& mode) {
        const Results results = results_of(mode);
        return of_two(a, b, [&](const auto& x, const auto& y) { return tesk2mp::convolve(x, y, results); });
      },
      py::arg("a"), py::arg("b"), py::arg("mode") = "full", R"(convolve(a, b, mode='full')

sum over i of a_i b_(k-i), each an exact sum that is rounded once. mode: 'full', 'same' (as many as the longer one has) or
'valid' (those to which all of the shorter one contributes).

>>> convolve([1, 2, 3], [1, 10, 100])
[Decimal('1'), Decimal('12'), Decimal('123'), Decimal('230'), Decimal('300')]
)");
  module.def(
      "circular_convolve",
      [](py::handle a, py::handle b) {
        return of_two(a, b, [](const auto& x, const auto& y) {
          if (x.size() != y.size()) {
            throw py::value_error("a circular convolution is of sequences of one length");
          }
          return tesk2mp::circular_convolve(x, y);
        });
      },
      py::arg("a"), py::arg("b"), R"(circular_convolve(a, b)

sum over i of a_i b_((k-i) mod n), of n numbers each.

>>> circular_convolve([1, 2, 3], [0, 1, 0])
[Decimal('3'), Decimal('1'), Decimal('2')]
)");
  module.def(
      "correlate",
      [](py::handle a, py::handle b, const std::string& mode) {
        const Results results = results_of(mode);
        return of_two(a, b, [&](const auto& x, const auto& y) { return tesk2mp::correlate(x, y, results); });
      },
      py::arg("a"), py::arg("b"), py::arg("mode") = "full", R"(correlate(a, b, mode='full')

sum over i of a_(k+i) conj(b_i), k from 1 - len(b) in full. mode as of convolve.

>>> correlate([1, 2, 3], [0, 1, 2], 'valid')
[Decimal('8')]
)");
}

void add_axes_and_windows(py::module_& module) {
  const auto add = [&](const char* name, std::vector<Real> (*frequencies)(std::size_t, const Real&),
                       const char* document) {
    module.def(
        name,
        [frequencies](py::handle n, py::handle d) { return from(frequencies(to_index(n), to_real(d)), py::none()); },
        py::arg("n"), py::arg("d") = 1, document);
  };
  add("fftfreq", tesk2mp::fftfreq, R"(fftfreq(n, d=1)

The frequencies of fft of n numbers that are d apart.

>>> fftfreq(4, '0.5')
[Decimal('0'), Decimal('0.5'), Decimal('-1'), Decimal('-0.5')]
)");
  add("rfftfreq", tesk2mp::rfftfreq, R"(rfftfreq(n, d=1)

The frequencies of rfft.

>>> rfftfreq(4)
[Decimal('0'), Decimal('0.25'), Decimal('0.5')]
)");
  module.def(
      "next_fast_len", [](py::handle n) { return tesk2mp::next_fast_len(to_index(n)); }, py::arg("n"),
      R"(next_fast_len(n)

The smallest number from n on without prime factors above 5: a length that is cheap to transform.

>>> next_fast_len(1021)
1024
)");
  module.def(
      "window",
      [](const std::string& name, py::handle n, bool periodic, py::handle beta) {
        using tesk2mp::WindowKind;
        const auto kind = option_of<WindowKind>("name", name,
                                                {{"hann", WindowKind::hann},
                                                 {"hamming", WindowKind::hamming},
                                                 {"blackman", WindowKind::blackman},
                                                 {"kaiser", WindowKind::kaiser},
                                                 {"boxcar", WindowKind::ones}});
        return from(tesk2mp::window(kind, to_index(n), periodic, to_real(beta)), py::none());
      },
      py::arg("name"), py::arg("n"), py::arg("periodic") = false, py::arg("beta") = 0,
      R"(window(name, n, periodic=False, beta=0)

n numbers of the window 'hann', 'hamming', 'blackman', 'kaiser' (with beta) or 'boxcar', symmetric, or one period.

>>> window('hann', 5)
[Decimal('0'), Decimal('0.5'), Decimal('1'), Decimal('0.5'), Decimal('0')]
)");
  module.def(
      "power_spectrum", [](py::handle x) { return from(tesk2mp::power_spectrum(to_vector<Real>(x)), x); }, py::arg("x"),
      R"(power_spectrum(x)

The shares of the frequencies 0 ... n/2 in the mean of the squares of n real numbers.

>>> power_spectrum([1, 2, 3, 4])
[Decimal('6.25'), Decimal('1'), Decimal('0.25')]
)");
}

}  // namespace

void add_transforms(py::module_& module) {
  add_sequence_transforms(module);
  add_real_plans(module);
  add_array_transforms(module);
  add_convolutions(module);
  add_axes_and_windows(module);
}

}  // namespace python
