// Ctrl-C: a request to end the work at hand, which its check points and blocking reads find.
#pragma once

namespace cli {

/// The exit status of a run that Ctrl-C ended.
constexpr int kInterruptedStatus = 130;

/// From now on Ctrl-C makes a request, which the main thread's long work watches, unless the program was started with
/// that signal ignored. While a request is not taken, another Ctrl-C ends the program at once.
void watch_interrupts();

/// The same, but however often Ctrl-C comes it is one request: the program goes on.
void survive_interrupts();

/// Whether there has been a request; there is none then.
bool take_interrupt() noexcept;

/// Whether there is one.
bool interrupt_requested() noexcept;

}  // namespace cli
