// Arithmetic, functions, sums, products and transforms of numbers with proven bounds, and zeros of functions of them.
#include "proven.h"

namespace python {
namespace {

namespace proven = tesk2mp::proven;

template <class T>
std::vector<proven::Bounded<T>> bounded(const Array& values, py::handle errors) {
  const std::vector<T> numbers = values.vector<T>();
  const std::vector<Real> bounds = exact(errors).vector<Real>();
  tesk2mp::detail::require(bounds.size() == numbers.size(), "PROVEN", 2, "a bound for each number is needed");
  std::vector<proven::Bounded<T>> result;
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    require_bounded(numbers[k], bounds[k]);
    result.push_back({numbers[k], QuarnBound(bounds[k])});
  }
  return result;
}

/// Applies work(x, y) to the numbers of two vectors of one length.
template <class Work>
py::object to_pairs(py::handle x, py::handle x_errors, py::handle y, py::handle y_errors, const Work& work) {
  const Array left = exact(x);
  const Array right = exact(y);
  return with_scalar(
      [&]<class T>(T) {
        std::vector<proven::Bounded<T>> numbers = bounded<T>(left, x_errors);
        const std::vector<proven::Bounded<T>> others = bounded<T>(right, y_errors);
        tesk2mp::detail::require(others.size() == numbers.size(), "PROVEN", 4,
                                 "as many numbers are needed on both sides");
        for (std::size_t k = 0; k < numbers.size(); ++k) {
          numbers[k] = work(numbers[k], others[k]);
        }
        return both(numbers);
      },
      left, right);
}

template <class T>
proven::Bounded<T> operated(const std::string& sign, const proven::Bounded<T>& x, const proven::Bounded<T>& y) {
  return sign == "+" ? x + y : sign == "-" ? x - y : sign == "*" ? x * y : sign == "/" ? x / y : proven::pow(x, y);
}

/// The one of a table's functions that takes these numbers.
template <class T, class Named>
auto function_for(const Named& function) {
  if constexpr (std::is_same_v<T, Real>) {
    return function.real;
  } else {
    tesk2mp::detail::require(function.complex != nullptr, "PROVEN", 2, "this function takes real numbers");
    return function.complex;
  }
}
template <class Named>
const Named& named(const Named* found, const std::string& name) {
  tesk2mp::detail::require(found != nullptr, "PROVEN", 1, "no function has the name ", name);
  return *found;
}

void add_functions_of_bounded(py::module_& module) {
  module.def("_proven_function", [](const std::string& name, py::handle x, py::handle errors) {
    const proven::NamedFunction& function = named(proven::find_function(name), name);
    const Array given = exact(x);
    return with_scalar(
        [&]<class T>(T) {
          const auto apply = function_for<T>(function);
          std::vector<proven::Bounded<T>> numbers = bounded<T>(given, errors);
          for (proven::Bounded<T>& each : numbers) {
            each = apply(each);
          }
          return both(numbers);
        },
        given);
  });
  module.def("_proven_function_of_two", [](const std::string& name, py::handle x, py::handle x_errors, py::handle y,
                                           py::handle y_errors) {
    const proven::NamedFunction2& function = named(proven::find_function_of_two(name), name);
    return to_pairs(x, x_errors, y, y_errors, [&]<class T>(const proven::Bounded<T>& a, const proven::Bounded<T>& b) {
      return function_for<T>(function)(a, b);
    });
  });
  module.def("_proven_operation", [](const std::string& sign, py::handle x, py::handle x_errors, py::handle y,
                                     py::handle y_errors) {
    return to_pairs(x, x_errors, y, y_errors, [&]<class T>(const proven::Bounded<T>& a, const proven::Bounded<T>& b) {
      return operated(sign, a, b);
    });
  });
  module.def("_proven_function_names", [](bool of_two) {
    py::list names;
    for (const auto& each : proven::functions()) {
      if (!of_two) {
        names.append(std::string(each.name));
      }
    }
    for (const auto& each : proven::functions_of_two()) {
      if (of_two) {
        names.append(std::string(each.name));
      }
    }
    return names;
  });
}

void add_sums(py::module_& module) {
  module.def("_proven_multiply", [](py::handle a, py::handle a_errors, py::handle b, py::handle b_errors) {
    const Array left = exact(a);
    const Array right = exact(b);
    return with_scalar(
        [&]<class T>(T) {
          const auto p = bounded_matrix(left.matrix<T>(), a_errors);
          const auto q = bounded_matrix(right.matrix<T>(), b_errors);
          return both(outside([&] { return proven::multiply(p, q); }));
        },
        left, right);
  });
  module.def("_proven_norm", [](py::handle a, py::handle errors, const std::string& kind) {
    const tesk2mp::Norm chosen = norm_of(kind);
    const Array given = exact(a);
    return with_scalar(
        [&]<class T>(T) {
          const auto matrix = bounded_matrix(given.matrix<T>(), errors);
          return both(std::vector{outside([&] { return proven::norm(chosen, matrix); })});
        },
        given);
  });
  module.def("_proven_rounded", [](py::handle x) {
    const Array given = exact(x);
    return with_scalar([&]<class T>(T) { return both(proven::rounded(given.matrix<T>())); }, given);
  });
  module.def("_proven_sum", [](py::handle x, py::handle errors) {
    const Array given = exact(x);
    return with_scalar([&]<class T>(T) { return both(std::vector{proven::sum(bounded<T>(given, errors))}); }, given);
  });
}

QuarnDivisor divisor_of(const std::string& name) {
  return option_of<QuarnDivisor>(
      "divisor", name, {{"one", QuarnDivisor::one}, {"root", QuarnDivisor::root}, {"length", QuarnDivisor::length}});
}

void add_transforms_of_bounded(py::module_& module) {
  module.def("_proven_transform", [](py::handle x, py::handle errors, bool backward, const std::string& divisor) {
    const auto direction = backward ? tesk2mp::Direction::backward : tesk2mp::Direction::forward;
    const QuarnDivisor chosen = divisor_of(divisor);
    const auto numbers = bounded<Complex>(exact(x), errors);
    return both(outside([&] { return proven::transform(numbers, direction, chosen); }));
  });
  module.def("_proven_spectrum", [](py::handle x, py::handle errors, const std::string& divisor) {
    const QuarnDivisor by = divisor_of(divisor);
    const auto numbers = bounded<Real>(exact(x), errors);
    return both(outside([&] { return proven::spectrum(numbers, by); }));
  });
  module.def("_proven_from_spectrum",
             [](py::handle x, py::handle errors, std::size_t length, const std::string& divisor) {
               const QuarnDivisor by = divisor_of(divisor);
               const auto numbers = bounded<Complex>(exact(x), errors);
               return both(outside([&] { return proven::from_spectrum(numbers, length, by); }));
             });
  module.def("_proven_real_transform",
             [](py::handle x, py::handle errors, const std::string& kind, const std::string& divisor) {
               using Kind = QuarnRealTransform::Kind;
               const Kind chosen = option_of<Kind>("kind", kind,
                                                   {{"dct1", Kind::dct1},
                                                    {"dct2", Kind::dct2},
                                                    {"dct3", Kind::dct3},
                                                    {"dct4", Kind::dct4},
                                                    {"dst1", Kind::dst1},
                                                    {"dst2", Kind::dst2},
                                                    {"dst3", Kind::dst3},
                                                    {"dst4", Kind::dst4}});
               const QuarnDivisor by = divisor_of(divisor);
               const auto numbers = bounded<Real>(exact(x), errors);
               return both(outside([&] { return proven::transform(chosen, numbers, by); }));
             });
}

}  // namespace

void add_bounded(py::module_& module) {
  add_functions_of_bounded(module);
  add_sums(module);
  add_transforms_of_bounded(module);
  // f is called with a value and an error, and returns both.
  module.def("_proven_zero", [](const py::function& f, py::handle low, py::handle high) {
    const auto called = [&f](const proven::Bounded<Real>& x) {
      const auto y = py::cast<py::tuple>(f(from(x.value), from(x.error.value())));
      return proven::Bounded<Real>{to_proven(y[0]), QuarnBound(to_proven(y[1]))};
    };
    return both(std::vector{interruptible([&] { return proven::zero(called, to_proven(low), to_proven(high)); })});
  });
}

}  // namespace python
