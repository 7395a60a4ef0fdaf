// Zeros of functions that Python calls.
#include "context.h"
#include "convert.h"

namespace python {

void add_function_zeros(py::module_& module) {
  // The function is Python's own: the interpreter's lock is kept, and what it raises passes through the library.
  const auto called = [](const py::object& f) {
    if (PyCallable_Check(f.ptr()) == 0) {
      throw py::type_error("a function is needed, not " + type_name(f));
    }
    return [f](const Real& x) {
      const CallbackDigits guard;
      return to_real(f(from(x)));
    };
  };
  const auto step_of = [](const py::object& step, const Real& start) {
    Real length = step.is_none() ? tesk2mp::detail::first_step(start) : to_real(step);
    if (length == 0) {
      refuse("InvalidArgument", "a step of 0 finds no interval");
    }
    return length;
  };
  module.def(
      "find_zero",
      [called, step_of](const py::object& f, py::handle a, const py::object& b, const py::object& step,
                        const py::object& tolerance) {
        const Real from_here = to_real(a);
        const Real within = to_real(tolerance);
        return from(interruptible([&] {
          if (!b.is_none()) {
            return tesk2mp::find_zero(called(f), from_here, to_real(b), within).x;
          }
          return tesk2mp::find_zero_near(called(f), from_here, step_of(step, from_here), within).x;
        }));
      },
      py::arg("f"), py::arg("a"), py::arg("b") = py::none(), py::arg("step") = py::none(), py::arg("tolerance") = 0,
      R"(find_zero(f, a, b=None, step=None, tolerance=0)

A zero of the function f of a Decimal: between a and b, where f has different signs, or without b near a, in an interval that
steps, each twice as long as the one before, find to both sides of it. To the last working digit, or within the tolerance.
InvalidArgument when the signs agree; NumericalFailure when no change of sign is found, f is not a number somewhere, or has a
pole there. What f raises passes through.

>>> find_zero(lambda x: x * x - 2, 1, 2)
Decimal('1.4142135623730950488')
>>> find_zero(cos, 1)
Decimal('1.5707963267948966192')
)");
  module.def(
      "bracket_zero",
      [called, step_of](const py::object& f, py::handle start, const py::object& step, const py::object& low,
                        const py::object& high) {
        const Real x = to_real(start);
        const tesk2mp::Bracket ends = interruptible([&] {
          return tesk2mp::bracket_zero(called(f), x, step_of(step, x),
                                       low.is_none() ? tesk2mp::detail::infinity(-1) : to_real(low),
                                       high.is_none() ? tesk2mp::detail::infinity(1) : to_real(high));
        });
        const bool ordered = ends.a < ends.b;
        return py::make_tuple(from(ordered ? ends.a : ends.b), from(ordered ? ends.b : ends.a));
      },
      py::arg("f"), py::arg("start"), py::arg("step") = py::none(), py::arg("low") = py::none(),
      py::arg("high") = py::none(), R"(bracket_zero(f, start, step=None, low=None, high=None)

The ends of an interval around `start`, between the bounds, at which f has different signs.

>>> bracket_zero(lambda x: x - 4, 1, 1)
(Decimal('3'), Decimal('5'))
)");
}

}  // namespace python
