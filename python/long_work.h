// Long work: other threads of the interpreter go on meanwhile, and Ctrl-C ends it.
#pragma once

#include <pybind11/pybind11.h>

#include "quarn/quarnthread.h"

namespace python {

namespace py = pybind11;

/// While it lives in the main thread, the signal that Python takes for Ctrl-C stops the calling thread's long work as
/// well. They nest.
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

 private:
  bool outermost_;
};

/// Raises what the interpreter's handler of the signal raises, or else KeyboardInterrupt.
[[noreturn]] void raise_interrupt();

/// Runs the handlers of signals that have come, and raises what they raise.
void check_signals();

/// Does the work, which may be interrupted, and keeps the interpreter's lock. Other handlers of signals run before it.
template <class Work>
auto interruptible(const Work& work) {
  const InterruptWatch watch;
  check_signals();  // one that came before the watch
  try {
    return work();
  } catch (const QuarnInterrupted&) {
    raise_interrupt();
  }
}

/// Does the work without the interpreter's lock: it must not touch Python's objects, nor what another thread may
/// change.
template <class Work>
auto outside(const Work& work) {
  return interruptible([&] {
    const py::gil_scoped_release released;
    return work();
  });
}

}  // namespace python
