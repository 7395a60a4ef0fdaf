#include "context.h"

#include <algorithm>
#include <unordered_map>

#include "tesk2mp/tesk2mp.hpp"

namespace python {
namespace {

using Record = py::detail::function_record;
using Call = py::detail::function_call;

// Python's decimal arithmetic rounds at every operation of a callback, and so gets more digits than the routine.
constexpr int kGuardDigits = 10;

thread_local bool real_results = false;

/// Variables of the context: an int, unset for the digits of the thread; a bool.
PyObject* digits_variable() {
  static PyObject* const variable = PyContextVar_New("tesk2mp.digits", nullptr);
  return variable;
}
PyObject* results_variable() {
  static PyObject* const variable = PyContextVar_New("tesk2mp.results", Py_False);
  return variable;
}

/// The value, or nothing when there is none.
py::object value_of(PyObject* variable) {
  PyObject* value = nullptr;
  if (PyContextVar_Get(variable, nullptr, &value) != 0) {
    throw py::error_already_set();
  }
  return py::reinterpret_steal<py::object>(value);
}

int context_digits(int otherwise) {
  const py::object value = value_of(digits_variable());
  return value ? int(PyLong_AsLong(value.ptr())) : otherwise;
}

/// What a function did before it was made to look at the context, and whether another one has its name.
struct Original {
  py::handle (*impl)(Call&);
  bool overloaded;
};
std::unordered_map<const Record*, Original>& originals() {
  static std::unordered_map<const Record*, Original> table;
  return table;
}

py::handle call_in_context(Call& call) {
  const ContextDigits digits;
  const Original& original = originals().at(&call.func);
  try {
    const py::handle result = original.impl(call);
    if (result.ptr() == PYBIND11_TRY_NEXT_OVERLOAD && !original.overloaded) {
      throw py::type_error("an argument of another type than in " + std::string(call.func.name) + call.func.signature);
    }
    return result;
  } catch (const py::reference_cast_error&) {  // None where an object is needed
    refuse("InvalidType", "an argument of another type than in the signature");
  } catch (const py::type_error& error) {
    refuse("InvalidType", error.what());
  } catch (const py::cast_error& error) {
    refuse("InvalidType", error.what());
  } catch (const py::value_error& error) {
    refuse("InvalidArgument", error.what());
  }
}

/// The functions behind an attribute: of a property its getter.
void follow(py::handle attribute) {
  PyObject* object = attribute.ptr();
  if (PyObject_TypeCheck(object, &PyProperty_Type) != 0) {
    follow(attribute.attr("fget"));
    return;
  }
  if (PyInstanceMethod_Check(object) != 0) {
    object = PyInstanceMethod_GET_FUNCTION(object);
  }
  if (PyCFunction_Check(object) == 0) {
    return;
  }
  PyObject* const self = PyCFunction_GET_SELF(object);
  if (self == nullptr || PyCapsule_CheckExact(self) == 0) {
    return;
  }
  auto* const first = py::reinterpret_borrow<py::capsule>(self).get_pointer<Record>();
  for (Record* record = first; record != nullptr; record = record->next) {
    if (record->impl != call_in_context) {
      originals()[record] = {record->impl, first->next != nullptr};
      record->impl = call_in_context;
    }
  }
}

}  // namespace

ContextDigits::ContextDigits() : former_digits_(QuarnDigits()), former_real_(real_results) {
  const int digits = context_digits(former_digits_);
  real_results = value_of(results_variable()).ptr() == Py_True;
  if (digits != former_digits_) {
    QuarnSetDigits(digits);
  }
}

ContextDigits::~ContextDigits() {
  real_results = former_real_;
  if (QuarnDigits() != former_digits_) {
    QuarnSetDigits(former_digits_);
  }
}

CallbackDigits::CallbackDigits() {
  const py::object context = py::module_::import("decimal").attr("getcontext")();
  const py::object precision = context.attr("prec");
  const int wanted = std::max(QuarnDigits(), context_digits(QuarnDigits())) + kGuardDigits;
  if (py::cast<long>(precision) < wanted) {
    context.attr("prec") = wanted;
    context_ = context;
    former_ = precision;
  }
  if (context_digits(QuarnDigits()) < QuarnDigits()) {
    digits_ = py::int_(QuarnDigits());
    token_ = py::reinterpret_steal<py::object>(PyContextVar_Set(digits_variable(), digits_.ptr()));
    if (!token_) {
      restore();
      throw py::error_already_set();
    }
  }
}

CallbackDigits::~CallbackDigits() {
  const py::error_scope raised;  // what the callback raised goes on
  restore();
}

void CallbackDigits::restore() noexcept {
  if (context_ && PyObject_SetAttrString(context_.ptr(), "prec", former_.ptr()) != 0) {
    PyErr_Clear();
  }
  if (token_ && PyContextVar_Reset(digits_variable(), token_.ptr()) != 0) {
    PyErr_Clear();
  }
}

void refuse(const char* kind, const char* text) {
  const py::module_ errors = py::module_::import("tesk2mp._errors");
  const py::object type = errors.attr(kind);
  PyErr_SetObject(type.ptr(), errors.attr("refusal")(type, text).ptr());
  throw py::error_already_set();
}

bool results_are_real() { return real_results; }

int set_context_digits(int digits) {
  const int former = QuarnDigits();
  { const tesk2mp::Digits checked(digits); }
  PyObject* const token = PyContextVar_Set(digits_variable(), py::int_(digits).ptr());
  if (token == nullptr) {
    throw py::error_already_set();
  }
  Py_DECREF(token);
  return former;
}

void work_in_context(py::module_& module) {
  module.attr("_digits") = py::handle(digits_variable());
  module.attr("_results") = py::handle(results_variable());
  const py::dict names = module.attr("__dict__");
  for (const auto& [name, value] : names) {
    if (!py::isinstance<py::type>(value)) {
      follow(value);
      continue;
    }
    const py::dict members(value.attr("__dict__"));
    for (const auto& [member, attribute] : members) {
      follow(attribute);
    }
  }
}

}  // namespace python
