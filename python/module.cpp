// The extension behind the package tesk2mp.
#include "context.h"
#include "convert.h"
#include "quarn/storage.h"

namespace python {
namespace {

py::object from_value(const tesk2mp::Value& value) {
  return std::visit(
      []<class T>(const T& held) -> py::object {
        if constexpr (std::is_same_v<T, Real>) {
          return from(held);
        } else {
          return py::cast(held);
        }
      },
      value);
}

/// Raises the exception class of that name from the package.
void raise(const char* name, const tesk2mp::Error& error) {
  py::list values;
  for (const tesk2mp::Value& value : error.values()) {
    values.append(from_value(value));
  }
  const py::object type = py::module_::import("tesk2mp._errors").attr(name);
  const py::object raised =
      type(error.what(), error.routine(), long(error.code()), long(error.label()), error.text(), py::tuple(values));
  PyErr_SetObject(type.ptr(), raised.ptr());
}

void translate(std::exception_ptr thrown) {
  try {
    std::rethrow_exception(thrown);
  } catch (const tesk2mp::NumericalFailure& failure) {
    raise("NumericalFailure", failure);
  } catch (const tesk2mp::InvalidArgument& refusal) {
    raise("InvalidArgument", refusal);
  } catch (const std::bad_alloc&) {
    QuarnReleaseStorage();  // what comes next needs memory
    PyErr_NoMemory();
  }
}

}  // namespace
}  // namespace python

PYBIND11_MODULE(_core, module) {
  namespace py = pybind11;
  py::options options;
  options.disable_function_signatures();
  py::register_exception_translator(python::translate);
  module.def("get_digits", QuarnDigits, "get_digits()\n\nThe working digits, 20 at first.");
  module.def("set_digits", python::set_context_digits, py::arg("digits"),
             R"(set_digits(digits)

Sets the working digits of the context, 1 to 1000000, and returns the former ones: of this thread, or of this asyncio task. A
new thread starts with the default, 20.)");
  module.def("set_threads", tesk2mp::set_threads, py::arg("threads"), R"(set_threads(threads)

How many threads may work for one call: 1 at first, 0 for as many as there are processors. Large products and transforms along
an axis use them; results are the same for every number. Returns the former number.

>>> set_threads(1)
1
)");
  python::add_accumulator(module);
  python::add_complex(module);
  python::add_kernels(module);
  python::add_least_squares(module);
  python::add_function_zeros(module);
  python::add_gallery(module);
  python::add_linear(module);
  python::add_matrix_functions(module);
  python::add_structured(module);
  python::add_sparse(module);
  python::add_incomplete(module);
  python::add_krylov(module);
  python::add_eigen(module);
  python::add_spectra(module);
  python::add_polynomials(module);
  python::add_schur_forms(module);
  python::add_proven(module);
  python::add_sequences(module);
  python::add_transforms(module);
  python::add_functions(module);
  python::add_rounding(module);
  python::add_real(module);
  module.attr("__version__") = TESK_VERSION;
  python::work_in_context(module);
}
