// What belongs to a thread, and how its work is stopped from outside.
//
// Several threads may compute at once, each with its own numbers, or with shared ones that none of them changes.
// Working digits, caches of constants and tables, recycled storage, slots and the interrupt that is watched belong to
// the thread: nothing that one thread sets is seen by another. All of it is freed when the thread ends. On Windows a
// thread that runs fibers has it once a fiber.
#pragma once

#include <atomic>
#include <exception>

#include "quarn/quarnfloat.h"

/// The digits of a thread that has not used numbers yet: 20 when the process starts. It takes them at its first use.
/// Sets the default to 1 to 1000000 digits and returns the former one; any other value changes nothing.
QRNFLOAT_API int QuarnSetDefaultDigits(int digits) noexcept;

/// Each thread has a pointer in each slot, null at first. The first slots are used by these libraries; the others are
/// the program's.
enum QuarnThreadSlot : int { QuarnFailureHandlerSlot = 0, QuarnFirstFreeSlot = 4, QuarnThreadSlots = 8 };

/// The calling thread's pointer in a slot from 0 to QuarnThreadSlots - 1.
QRNFLOAT_API void* QuarnThreadValue(int slot) noexcept;

/// Sets it and returns the former one. What it points to is never looked at, nor freed. std::bad_alloc may be thrown at
/// the thread's first use of numbers.
QRNFLOAT_API void* QuarnSetThreadValue(int slot, void* value);

/// A request to stop, made by a signal handler, a callback or another thread, and found by the threads that watch it
/// (QuarnWatchInterrupt). It stays until it is cleared.
class QuarnInterrupt {
 public:
  constexpr QuarnInterrupt() noexcept = default;
  QuarnInterrupt(const QuarnInterrupt&) = delete;
  QuarnInterrupt& operator=(const QuarnInterrupt&) = delete;

  /// Safe in a signal handler and from any thread.
  void request() noexcept { requested_.store(true, std::memory_order_relaxed); }
  void clear() noexcept { requested_.store(false, std::memory_order_relaxed); }
  bool requested() const noexcept { return requested_.load(std::memory_order_relaxed); }

 private:
  std::atomic<bool> requested_{false};
  static_assert(std::atomic<bool>::is_always_lock_free);
};

/// Thrown by long work of a thread whose interrupt was requested: operations on long numbers, products, factorisations,
/// eigenvalues, transforms, ranking. Numbers and arrays that were being computed hold valid numbers, of which some are
/// old and some new or from halfway; inputs, digits and everything else are as they were, and no storage is lost. A
/// step of the iterative solver changes nothing, and may be called again once the request is cleared.
class QRNFLOAT_API QuarnInterrupted : public std::exception {
 public:
  QuarnInterrupted() noexcept;
  QuarnInterrupted(const QuarnInterrupted&) noexcept;
  ~QuarnInterrupted() override;
  const char* what() const noexcept override;
};

/// From now on the calling thread's long work watches *interrupt, which must live until another one is watched; null:
/// it is never stopped, the state of a new thread. Returns the interrupt watched before, or null.
QRNFLOAT_API const QuarnInterrupt* QuarnWatchInterrupt(const QuarnInterrupt* interrupt);

/// Whether the interrupt that the calling thread watches has been requested: three loads.
QRNFLOAT_API bool QuarnInterruptRequested() noexcept;

/// The check point of long work, to be passed once a block, a row or an iteration: throws QuarnInterrupted if the
/// calling thread is to stop. Numbers of more than some 4,000 digits pass it themselves, and so do the routines of the
/// library, about once in a millisecond.
QRNFLOAT_API void QuarnCheckInterrupt();
