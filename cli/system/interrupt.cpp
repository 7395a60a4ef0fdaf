#include "cli/system/interrupt.h"

#include <atomic>
#include <csignal>

#include "quarn/quarnthread.h"

namespace cli {

namespace {

QuarnInterrupt interrupt;
std::atomic<bool> survives = false;

void on_interrupt(int signal) {
  if (interrupt.requested() && !survives) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    return;
  }
  interrupt.request();
#if defined(_WIN32)
  std::signal(signal, on_interrupt);  // each signal goes to a handler once
#endif
}

}  // namespace

void watch_interrupts() {
#if defined(_WIN32)
  const bool ignored = std::signal(SIGINT, on_interrupt) == SIG_IGN;
  if (ignored) {
    std::signal(SIGINT, SIG_IGN);
  }
#else
  struct sigaction action {};
  const bool ignored = sigaction(SIGINT, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
  if (!ignored) {
    action = {};
    action.sa_handler = on_interrupt;  // without SA_RESTART: reads end
    sigaction(SIGINT, &action, nullptr);
  }
#endif
  QuarnWatchInterrupt(&interrupt);
}

void survive_interrupts() { survives = true; }

bool take_interrupt() noexcept {
  const bool requested = interrupt.requested();
  interrupt.clear();
  return requested;
}

bool interrupt_requested() noexcept { return interrupt.requested(); }

}  // namespace cli
