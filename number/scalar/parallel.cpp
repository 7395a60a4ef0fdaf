#include "quarn/parallel.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "quarn/quarnthread.h"

#if !defined(_WIN32)
#include <csignal>
#include <mutex>
#include <thread>
#include <vector>

#include "number/limbs/scratch.h"
#endif

namespace {

std::atomic<int> allowed = 1;

#if defined(_WIN32)

constexpr bool kHasThreads = false;
constexpr bool inside_a_task = false;

#else

constexpr bool kHasThreads = true;
thread_local constinit bool inside_a_task = false;

/// The tasks of one call, and what became of them.
class Work {
 public:
  Work(std::size_t count, QuarnTask task, void* context) : count_(count), task_(task), context_(context) {}

  /// Takes tasks until there are none.
  void take() noexcept {
    const bool before = std::exchange(inside_a_task, true);
    try {
      for (std::size_t i = next_.fetch_add(1); i < count_; i = next_.fetch_add(1)) {
        QuarnCheckInterrupt();
        task_(context_, i);
      }
    } catch (...) {
      next_ = count_;
      const std::lock_guard<std::mutex> lock(mutex_);
      if (failure_ == nullptr) {
        failure_ = std::current_exception();
      }
    }
    inside_a_task = before;
  }

  /// The same in a thread that has just begun.
  void take_as(int digits, const QuarnInterrupt* interrupt) noexcept {
    try {
      QuarnSetDigits(digits);
      QuarnWatchInterrupt(interrupt);
      const quarn::Scratch<char> first_block(1);
    } catch (...) {
      return;  // the others do the work
    }
    take();
  }

  void report() const {
    if (failure_ != nullptr) {
      std::rethrow_exception(failure_);
    }
  }

 private:
  const std::size_t count_;
  const QuarnTask task_;
  void* const context_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex mutex_;
  std::exception_ptr failure_;
};

/// No signals for the threads that are started in a scope: handlers run where the program expects them.
class SignalsHeld {
 public:
  SignalsHeld() noexcept {
    sigset_t all;
    sigfillset(&all);
    held_ = pthread_sigmask(SIG_SETMASK, &all, &before_) == 0;
  }
  ~SignalsHeld() {
    if (held_) {
      pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
  }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t before_;
  bool held_;
};

/// Starts up to `count` helpers; those that the system refuses are missing.
void start(std::vector<std::thread>& helpers, std::size_t count, Work& work) noexcept {
  try {
    const int digits = QuarnDigits();
    const QuarnInterrupt* const interrupt = QuarnWatchInterrupt(nullptr);
    QuarnWatchInterrupt(interrupt);
    helpers.reserve(count);
    const SignalsHeld held;
    while (helpers.size() < count) {
      helpers.emplace_back([&work, digits, interrupt] { work.take_as(digits, interrupt); });
    }
  } catch (...) {
    return;
  }
}

void share(std::size_t count, QuarnTask task, void* context, std::size_t threads) {
  Work work(count, task, context);
  std::vector<std::thread> helpers;
  start(helpers, threads - 1, work);
  work.take();
  for (std::thread& helper : helpers) {
    helper.join();
  }
  work.report();
}

#endif

int all_processors() noexcept {
#if defined(_WIN32)
  return 1;
#else
  return std::max(1, int(std::thread::hardware_concurrency()));
#endif
}

}  // namespace

int QuarnSetThreads(int threads) noexcept {
  if (threads < 0 || !kHasThreads) {
    return allowed;
  }
  return allowed.exchange(threads == 0 ? all_processors() : threads);
}

int QuarnThreads() noexcept { return inside_a_task ? 1 : allowed.load(std::memory_order_relaxed); }

void QuarnParallelFor(std::size_t count, QuarnTask task, void* context) {
#if !defined(_WIN32)
  const std::size_t threads = std::min(std::size_t(QuarnThreads()), count);
  if (threads > 1) {
    return share(count, task, context, threads);
  }
#endif
  for (std::size_t i = 0; i < count; ++i) {
    QuarnCheckInterrupt();
    task(context, i);
  }
}
