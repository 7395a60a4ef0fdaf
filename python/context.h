// The working digits of a call are those of the caller's context: of its thread, or of its asyncio task.
#pragma once

#include <pybind11/pybind11.h>

namespace python {

namespace py = pybind11;

/// The digits and the kind of results that the caller's context asks for, while it lives.
class ContextDigits {
 public:
  ContextDigits();
  ~ContextDigits();
  ContextDigits(const ContextDigits&) = delete;
  ContextDigits& operator=(const ContextDigits&) = delete;

 private:
  int former_digits_;
  bool former_real_;
};

/// While a function of the caller works for a routine, the module computes with no fewer digits than the routine, which
/// may have more than the caller's context, and Python's decimal arithmetic with some more.
class CallbackDigits {
 public:
  CallbackDigits();
  ~CallbackDigits();
  CallbackDigits(const CallbackDigits&) = delete;
  CallbackDigits& operator=(const CallbackDigits&) = delete;

 private:
  void restore() noexcept;

  py::object context_;  // none where nothing was changed
  py::object former_;
  py::object digits_;  // of the routine, and what takes them back; none where the context has as many
  py::object token_;
};

/// Raises the exception class of that name from the package, for what no routine has reported.
[[noreturn]] void refuse(const char* kind, const char* text);

/// Results of this call are numbers of the class Real, not Decimals.
bool results_are_real();

/// Sets the digits of the caller's context and returns the former ones.
int set_context_digits(int digits);

/// Lets every function and method that the module has by now, those of its classes too, work in the caller's context.
void work_in_context(py::module_& module);

}  // namespace python
