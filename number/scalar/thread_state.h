// What each thread has for itself: working digits, free blocks, caches, slots. One thread-local pointer leads to it.
//
// A thread that has not computed yet shares one constant state, in which nothing is held and the fast paths are off, so
// that no operation has to ask whether the thread has a state of its own. own_state() makes one; it is freed when the
// thread ends. The main thread's is never freed: destructors of global objects may still compute.
#pragma once

#include <cstddef>

#include "number/scalar/precision.h"
#include "quarn/quarnthread.h"

namespace quarn {

/// A block of limbs kept for later.
struct FreeBlock {
  FreeBlock* next;
};

/// Objects that are made when a thread first asks for them.
enum class Cache {
  scratch,
  constants,
  powers,
  tables,
  last_angle,
  transform_plans,
  gamma_series,
  named_constants,
  count
};

struct ThreadState {
  static constexpr std::size_t kSizeClasses = 96;

  struct Held {
    void* object = nullptr;
    void (*destroy)(void* object) noexcept = nullptr;
  };

  const QuarnInterrupt* interrupt;
  Precision precision{};
  std::size_t kept_bytes = 0;  // of all free blocks
  FreeBlock* free_blocks[kSizeClasses]{};
  void* slots[QuarnThreadSlots]{};
  Held caches[std::size_t(Cache::count)]{};

  /// Gives the free blocks back to the system: were there any?
  bool release_blocks() noexcept;
};

#if defined(_WIN32)

/// The calling thread's state, to be read.
const ThreadState& thread_state() noexcept;

#else

// One pointer fits the space that the C library keeps for initial-exec variables of libraries loaded later.
#if defined(__GLIBC__)
#define QUARN_TLS_MODEL __attribute__((tls_model("initial-exec")))
#else
#define QUARN_TLS_MODEL
#endif

extern constinit thread_local const ThreadState* current_state QUARN_TLS_MODEL;

/// The calling thread's state, to be read.
inline const ThreadState& thread_state() noexcept { return *current_state; }

#endif

/// The calling thread's own state, made if there is none. Throws std::bad_alloc.
ThreadState& own_state();

/// The calling thread's own state if it has one, otherwise null.
ThreadState* existing_state() noexcept;

/// The calling thread's T of this kind, made at its first use.
template <class T>
T& own_cache(Cache kind) {
  if (void* const held = thread_state().caches[std::size_t(kind)].object) {
    return *static_cast<T*>(held);
  }
  ThreadState& state = own_state();
  T* const made = new T;
  state.caches[std::size_t(kind)] = {made, [](void* object) noexcept { delete static_cast<T*>(object); }};
  return *made;
}

}  // namespace quarn
