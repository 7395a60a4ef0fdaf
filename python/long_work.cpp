#include "long_work.h"

#include <atomic>
#include <csignal>
#if defined(__linux__)
#include <sys/syscall.h>
#include <unistd.h>
#elif defined(__APPLE__)
#include <pthread.h>
#endif

namespace python {
namespace {

QuarnInterrupt interrupt;

#if defined(_WIN32)

bool is_main_thread() { return false; }  // no signal is watched
void take_signal() {}
void give_signal_back() {}

#else

bool is_main_thread() {
#if defined(__linux__)
  return syscall(SYS_gettid) == getpid();
#elif defined(__APPLE__)
  return pthread_main_np() != 0;
#else
  return false;
#endif
}

struct sigaction pythons {};  // the interpreter's own handler

void on_signal(int signal, siginfo_t* info, void* context) {
  interrupt.request();
  if ((pythons.sa_flags & SA_SIGINFO) != 0) {
    pythons.sa_sigaction(signal, info, context);
  } else {
    pythons.sa_handler(signal);
  }
}

bool is_ours(const struct sigaction& action) {
  return (action.sa_flags & SA_SIGINFO) != 0 && action.sa_sigaction == on_signal;
}

// A handler that is set by somebody else meanwhile stays.
void take_signal() {
  struct sigaction now {};
  if (sigaction(SIGINT, nullptr, &now) != 0 || is_ours(now) ||
      ((now.sa_flags & SA_SIGINFO) == 0 && (now.sa_handler == SIG_DFL || now.sa_handler == SIG_IGN))) {
    return;
  }
  pythons = now;
  struct sigaction ours = now;
  ours.sa_flags |= SA_SIGINFO;
  ours.sa_sigaction = on_signal;
  sigaction(SIGINT, &ours, nullptr);
}

void give_signal_back() {
  struct sigaction now {};
  if (sigaction(SIGINT, nullptr, &now) == 0 && is_ours(now)) {
    sigaction(SIGINT, &pythons, nullptr);
  }
}

#endif

bool watching = false;  // the main thread, which alone looks at it

}  // namespace

InterruptWatch::InterruptWatch() : outermost_(is_main_thread() && !watching) {
  if (outermost_) {
    watching = true;
    interrupt.clear();
    QuarnWatchInterrupt(&interrupt);
    take_signal();
  }
}

InterruptWatch::~InterruptWatch() {
  if (outermost_) {
    give_signal_back();
    QuarnWatchInterrupt(nullptr);
    interrupt.clear();
    watching = false;
  }
}

void raise_interrupt() {
  interrupt.clear();
  check_signals();
  PyErr_SetNone(PyExc_KeyboardInterrupt);
  throw py::error_already_set();
}

void check_signals() {
  if (PyErr_CheckSignals() != 0) {
    throw py::error_already_set();
  }
}

}  // namespace python
