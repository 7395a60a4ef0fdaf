#include "number/scalar/thread_state.h"

#include <atomic>
#include <new>
#include <utility>

#include "number/limbs/scratch.h"
#include "number/scalar/access.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace quarn {
namespace {

std::atomic<int> default_digits = 20;

bool may_be_set(int digits) noexcept { return digits >= 1 && digits <= 1'000'000; }

constinit const QuarnInterrupt kNever;

/// The state of threads that have none of their own: without digits, which stands for the default ones.
constexpr ThreadState kUnborn{&kNever};

void end_thread(void* ended) noexcept;

#if defined(_WIN32)

// Fiber-local storage calls back at the end of a thread, for which the library asks no notice, and of a fiber, which
// has its own state.
void WINAPI end_fiber(void* ended) { end_thread(ended); }

DWORD storage_index() noexcept {
  static const DWORD index = [] {
    // The library stays loaded as long as threads may call back.
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&end_fiber), &self);
    return FlsAlloc(end_fiber);
  }();
  return index;
}

void store_state(ThreadState* state) noexcept { FlsSetValue(storage_index(), state); }

#else

// The last word of a thread: its destructors of thread-local objects have run by then. The library is linked so that it
// is never unloaded. Without a key, which is there but for programs that use up all of them, states are not freed.
struct EndOfThread {
  EndOfThread() noexcept : valid(pthread_key_create(&key, end_thread) == 0) {}
  pthread_key_t key;
  bool valid;
};

void store_state(ThreadState* state) noexcept {
  static const EndOfThread end;
  if (end.valid) {
    pthread_setspecific(end.key, state);
  }
  current_state = state == nullptr ? &kUnborn : state;
}

#endif

/// Frees the state of a thread that ends. While it goes, what it holds may still recycle storage; a thread that
/// computes after that gets a new state, and ends once more.
void end_thread(void* ended) noexcept {
  ThreadState* const state = static_cast<ThreadState*>(ended);
#if defined(_WIN32)
  FlsSetValue(storage_index(), state);
#else
  current_state = state;
#endif
  for (auto& cache : state->caches) {
    if (cache.object != nullptr) {
      cache.destroy(cache.object);
      cache = {};
    }
  }
  store_state(nullptr);
  state->release_blocks();
  delete state;
}

}  // namespace

bool ThreadState::release_blocks() noexcept {
  const bool any = kept_bytes != 0;
  for (FreeBlock*& first : free_blocks) {
    while (FreeBlock* const block = first) {
      first = block->next;
      ::operator delete(block);
    }
  }
  kept_bytes = 0;
  return any;
}

#if !defined(_WIN32)

constinit thread_local const ThreadState* current_state = &kUnborn;

ThreadState* existing_state() noexcept {
  return current_state == &kUnborn ? nullptr : const_cast<ThreadState*>(current_state);
}

#else

ThreadState* existing_state() noexcept { return static_cast<ThreadState*>(FlsGetValue(storage_index())); }

const ThreadState& thread_state() noexcept {
  const ThreadState* const state = existing_state();
  return state == nullptr ? kUnborn : *state;
}

#endif

ThreadState& own_state() {
  ThreadState* state = existing_state();
  if (state == nullptr) {
    state = new ThreadState(kUnborn);
    state->precision = precision_for(default_digits.load(std::memory_order_relaxed));
    store_state(state);
  }
  return *state;
}

ScratchArena& ScratchArena::instance() { return own_cache<ScratchArena>(Cache::scratch); }

WorkingDigits::WorkingDigits(int digits) {
  ThreadState& state = own_state();
  saved_ = state.precision.digits;
  state.precision = precision_for(digits);
}

WorkingDigits::~WorkingDigits() { existing_state()->precision = precision_for(saved_); }

}  // namespace quarn

using namespace quarn;

// The digits -----------------------------------------------------------------------------------------------------

int QuarnDigits() noexcept {
  if (const int digits = thread_state().precision.digits) [[likely]] {
    return digits;
  }
  try {
    return own_state().precision.digits;
  } catch (const std::bad_alloc&) {
    return default_digits.load(std::memory_order_relaxed);
  }
}

int QuarnSetDigits(int digits) {
  Precision& precision = own_state().precision;
  const int former = precision.digits;
  if (may_be_set(digits)) {
    precision = precision_for(digits);
  }
  return former;
}

int QuarnSetDefaultDigits(int digits) noexcept {
  return may_be_set(digits) ? default_digits.exchange(digits, std::memory_order_relaxed)
                            : default_digits.load(std::memory_order_relaxed);
}

// Slots and interrupts -------------------------------------------------------------------------------------------

void* QuarnThreadValue(int slot) noexcept { return thread_state().slots[slot]; }

void* QuarnSetThreadValue(int slot, void* value) { return std::exchange(own_state().slots[slot], value); }

QuarnInterrupted::QuarnInterrupted() noexcept = default;
QuarnInterrupted::QuarnInterrupted(const QuarnInterrupted&) noexcept = default;
QuarnInterrupted::~QuarnInterrupted() = default;
const char* QuarnInterrupted::what() const noexcept { return "interrupted"; }

const QuarnInterrupt* QuarnWatchInterrupt(const QuarnInterrupt* interrupt) {
  const QuarnInterrupt* const former = std::exchange(own_state().interrupt, interrupt == nullptr ? &kNever : interrupt);
  return former == &kNever ? nullptr : former;
}

bool QuarnInterruptRequested() noexcept { return thread_state().interrupt->requested(); }

void QuarnCheckInterrupt() {
  if (QuarnInterruptRequested()) [[unlikely]] {
    throw QuarnInterrupted();
  }
}
