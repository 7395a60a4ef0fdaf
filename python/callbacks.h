// Functions of the caller that work on vectors.
#pragma once

#include <algorithm>

#include "context.h"
#include "convert.h"

namespace python {

template <class T>
py::object list_of(std::span<const T> x) {
  return from(std::vector<T>(x.begin(), x.end()), py::none());
}

/// y := function(x), of one vector in Python, from outside of the interpreter's lock.
template <class T>
void call_with_vector(const py::function& function, std::span<const T> x, std::span<T> y) {
  const py::gil_scoped_acquire held;
  const CallbackDigits guard;
  const std::vector<T> result = to_vector<T>(function(list_of<T>(x)));
  if (result.size() != y.size()) {
    throw py::value_error("the function gave " + std::to_string(result.size()) + " numbers for " +
                          std::to_string(y.size()));
  }
  std::copy(result.begin(), result.end(), y.begin());
}

/// A function that the caller keeps.
inline py::function borrowed(PyObject* function) { return py::reinterpret_borrow<py::function>(function); }

/// The function, unless it is None.
inline std::optional<py::function> optional_function(const py::object& function) {
  return function.is_none() ? std::nullopt : std::optional<py::function>(function);
}

/// What the function of the caller, who keeps it, does with a vector; nothing for None, a TypeError for no function.
template <class T>
tesk2mp::Product<T> product_of(const py::object& given) {
  if (!optional_function(given)) {
    return {};
  }
  return [held = given.ptr()](std::span<const T> x, std::span<T> y) { call_with_vector<T>(borrowed(held), x, y); };
}

}  // namespace python
