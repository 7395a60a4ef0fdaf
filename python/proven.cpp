// Results with proven error bounds. The package's module `proven` gives them their form: what stands here returns
// values and bounds side by side.
#include "convert.h"

namespace python {
namespace {

namespace proven = tesk2mp::proven;

/// The numbers with all their digits: a proof is one for what is given.
Array exact(py::handle numbers) {
  constexpr int kAnyNumberOfDigits = 100'000;
  const tesk2mp::Digits scope(std::max(kAnyNumberOfDigits, QuarnDigits()));
  return Array(numbers);
}

/// (values, errors)
template <class T>
py::object both(const proven::BoundedMatrix<T>& a) {
  return py::make_tuple(from(a.values(), py::none()), from(a.errors(), py::none()));
}
template <class T>
py::object both(const std::vector<proven::Bounded<T>>& x) {
  py::list values;
  py::list errors;
  for (const proven::Bounded<T>& element : x) {
    values.append(from(element.value));
    errors.append(from(element.error.value()));
  }
  return py::make_tuple(values, errors);
}
/// (value, error, count, is it real) of each.
py::object roots(const std::vector<proven::BoundedRoot>& found) {
  py::list result;
  for (const proven::BoundedRoot& root : found) {
    result.append(py::make_tuple(root.value, from(root.error.value()), root.count, root.is_real));
  }
  return result;
}

/// Calls work(matrix): exact, or with bounds of its elements.
template <class T, class Work>
auto with_data(const Array& a, py::handle errors, const Work& work) {
  if (errors.is_none()) {
    return work(a.matrix<T>());
  }
  return work(proven::BoundedMatrix<T>(a.matrix<T>(), exact(errors).matrix<Real>()));
}

/// Calls work(a, b).
template <class Work>
py::object exact_pair(py::handle a, py::handle b, const Work& work) {
  const Array left = exact(a);
  const Array right = exact(b);
  return with_scalar([&]<class T>(T) -> py::object { return work(left.matrix<T>(), right.matrix<T>()); }, left, right);
}

/// The same; both exact, or both with bounds of their elements.
template <class Work>
py::object pencil(py::handle a, py::handle a_errors, py::handle b, py::handle b_errors, const Work& work) {
  return exact_pair(a, b, [&]<class T>(const Matrix<T>& first, const Matrix<T>& second) -> py::object {
    if (a_errors.is_none() && b_errors.is_none()) {
      return work(first, second);
    }
    const auto bounded = [](const Matrix<T>& values, py::handle errors) {
      return proven::BoundedMatrix<T>(
          values, errors.is_none() ? Matrix<Real>(values.rows(), values.columns()) : exact(errors).matrix<Real>());
    };
    return work(bounded(first, a_errors), bounded(second, b_errors));
  });
}

template <class Work>
py::object spectrum(py::handle a, py::handle errors, const Work& work) {
  const Array given = exact(a);
  return with_scalar(
      [&]<class T>(T) -> py::object {
        return with_data<T>(given, errors, [&](const auto& matrix) -> py::object { return work(matrix); });
      },
      given);
}

template <class T>
std::vector<proven::Bounded<T>> bounded(const Array& values, py::handle errors) {
  const std::vector<T> numbers = values.vector<T>();
  const std::vector<Real> bounds = exact(errors).vector<Real>();
  tesk2mp::detail::require(bounds.size() == numbers.size(), "PROVEN", 2, "a bound for each number is needed");
  std::vector<proven::Bounded<T>> result;
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    result.push_back({numbers[k], QuarnBound(bounds[k])});
  }
  return result;
}

template <class T>
proven::Bounded<T> operated(const std::string& sign, const proven::Bounded<T>& x, const proven::Bounded<T>& y) {
  return sign == "+" ? x + y : sign == "-" ? x - y : sign == "*" ? x * y : sign == "/" ? x / y : proven::pow(x, y);
}

template <class T>
proven::Bounded<T> value_of(const proven::NamedFunction& function, const proven::Bounded<T>& x) {
  if constexpr (std::is_same_v<T, Real>) {
    return function.real(x);
  } else {
    tesk2mp::detail::require(function.complex != nullptr, "PROVEN", 2, "this function takes real numbers");
    return function.complex(x);
  }
}

/// Arithmetic, functions, products and transforms of bounded numbers, values and bounds side by side.
void add_bounded_functions(py::module_& module) {
  module.def("_proven_function", [](const std::string& name, py::handle x, py::handle errors) {
    const proven::NamedFunction* function = proven::find_function(name);
    tesk2mp::detail::require(function != nullptr, "PROVEN", 1, "no function has the name ", name);
    const Array given = exact(x);
    return with_scalar(
        [&]<class T>(T) {
          std::vector<proven::Bounded<T>> numbers = bounded<T>(given, errors);
          for (proven::Bounded<T>& each : numbers) {
            each = value_of(*function, each);
          }
          return both(numbers);
        },
        given);
  });
  module.def("_proven_operation",
             [](const std::string& sign, py::handle x, py::handle x_errors, py::handle y, py::handle y_errors) {
               const Array left = exact(x);
               const Array right = exact(y);
               return with_scalar(
                   [&]<class T>(T) {
                     std::vector<proven::Bounded<T>> numbers = bounded<T>(left, x_errors);
                     const std::vector<proven::Bounded<T>> others = bounded<T>(right, y_errors);
                     tesk2mp::detail::require(others.size() == numbers.size(), "PROVEN", 4,
                                              "as many numbers are needed on both sides");
                     for (std::size_t k = 0; k < numbers.size(); ++k) {
                       numbers[k] = operated(sign, numbers[k], others[k]);
                     }
                     return both(numbers);
                   },
                   left, right);
             });
  module.def("_proven_dot", [](py::handle x, py::handle x_errors, py::handle y, py::handle y_errors) {
    const Array left = exact(x);
    const Array right = exact(y);
    return with_scalar(
        [&]<class T>(T) {
          return both(std::vector{proven::dot(bounded<T>(left, x_errors), bounded<T>(right, y_errors))});
        },
        left, right);
  });
  module.def("_proven_norm", [](py::handle x, py::handle errors) {
    const Array given = exact(x);
    return with_scalar([&]<class T>(T) { return both(std::vector{proven::norm(bounded<T>(given, errors))}); }, given);
  });
  module.def("_proven_transform", [](py::handle x, py::handle errors, bool backward) {
    const auto direction = backward ? tesk2mp::Direction::backward : tesk2mp::Direction::forward;
    return both(proven::transform(bounded<Complex>(exact(x), errors), direction));
  });
}

}  // namespace

void add_proven(py::module_& module) {
  add_bounded_functions(module);
  module.def("_proven_solve", [](py::handle a, py::handle errors, py::handle b) {
    const Array given = exact(a);
    const Array right = exact(b);
    return with_scalar(
        [&]<class T>(T) -> py::object {
          const Matrix<T> columns = right.matrix<T>();
          return with_data<T>(given, errors, [&](const auto& matrix) {
            return both(outside([&] { return proven::solve(matrix, columns); }));
          });
        },
        given, right);
  });
  module.def("_proven_determinant", [](py::handle a, py::handle errors) {
    return spectrum(a, errors, [](const auto& matrix) -> py::object {
      const auto result = outside([&] { return proven::determinant(matrix); });
      return py::make_tuple(from(result.value), from(result.error.value()));
    });
  });
  module.def("_proven_definite", [](py::handle a) {
    const Array given = exact(a);
    return with_scalar(
        [&]<class T>(T) -> py::object {
          const Matrix<T> matrix = given.matrix<T>();
          const auto answer = outside([&] { return proven::is_positive_definite(matrix); });
          return answer ? py::object(py::bool_(*answer)) : py::none();
        },
        given);
  });
  module.def("_proven_symmetric", [](py::handle a, py::handle errors) {
    return spectrum(a, errors, [](const auto& matrix) -> py::object {
      const auto system = outside([&] { return proven::symmetric_eigen(matrix); });
      return py::make_tuple(both(system.values), both(system.vectors));
    });
  });
  module.def("_proven_singular", [](py::handle a, py::handle errors) {
    return spectrum(a, errors,
                    [](const auto& matrix) { return both(outside([&] { return proven::singular_values(matrix); })); });
  });
  module.def("_proven_eigenvalues", [](py::handle a, py::handle errors) {
    return spectrum(a, errors,
                    [](const auto& matrix) { return roots(outside([&] { return proven::eigenvalues(matrix); })); });
  });
  module.def("_proven_pencil", [](py::handle a, py::handle a_errors, py::handle b, py::handle b_errors) {
    return pencil(a, a_errors, b, b_errors, [](const auto& first, const auto& second) -> py::object {
      return roots(outside([&] { return proven::eigenvalues(first, second); }));
    });
  });
  module.def("_proven_symmetric_pencil", [](py::handle a, py::handle b) {
    return exact_pair(a, b, [](const auto& first, const auto& second) -> py::object {
      return both(outside([&] { return proven::symmetric_eigenvalues(first, second); }));
    });
  });
  module.def("_proven_eigen", [](py::handle a, py::handle errors) {
    return spectrum(a, errors, [](const auto& matrix) -> py::object {
      const auto system = outside([&] { return proven::eigen(matrix); });
      return py::make_tuple(roots(system.values), both(system.vectors));
    });
  });
  module.def("_proven_rank", [](py::handle a) {
    const Array given = exact(a);
    return with_scalar(
        [&]<class T>(T) -> py::object {
          const Matrix<T> matrix = given.matrix<T>();
          const auto found = outside([&] { return proven::rank(matrix); });
          return found ? py::object(py::int_(*found)) : py::none();
        },
        given);
  });
  module.def("_proven_zeros", [](py::handle a) {
    const Array given = exact(a);
    return with_scalar(
        [&]<class T>(T) {
          const std::vector<T> coefficients = given.vector<T>();
          return roots(outside([&] { return proven::zeros(coefficients); }));
        },
        given);
  });
  module.def("_proven_least_squares", [](py::handle a, py::handle b) {
    const Array given = exact(a);
    const Array right = exact(b);
    return with_scalar(
        [&]<class T>(T) {
          const Matrix<T> matrix = given.matrix<T>();
          const Matrix<T> columns = right.matrix<T>();
          return both(outside([&] { return proven::least_squares(matrix, columns); }));
        },
        given, right);
  });
}

}  // namespace python
