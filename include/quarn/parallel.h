// Several threads for one call. Matrix products, rows of transforms and sparse products share their work among as many
// threads as QuarnSetThreads allows; results are the same for every number.
//
// Threads are started for a call and end with it: nothing runs between calls, and a process may fork. Where only one
// thread is allowed, which is the default, none is ever started.
#pragma once

#include <cstddef>
#include <exception>

#include "quarn/quarnfloat.h"

/// How many threads of this process may work for one call, the calling one included: 1 at first, 0 for as many as there
/// are processors. Any other value changes nothing. Returns the former number. On Windows it stays 1.
QRNFLOAT_API int QuarnSetThreads(int threads) noexcept;

/// The number in force, at least 1; 1 inside a task of QuarnParallelFor.
QRNFLOAT_API int QuarnThreads() noexcept;

/// A part of a call's work.
using QuarnTask = void (*)(void* context, std::size_t index);

/// Calls task(context, 0), ..., task(context, count - 1), each once, in no certain order, some of them in other
/// threads, and returns when all have returned. Tasks must not write what others read. They run at the caller's working
/// digits and watch its interrupt; each one begins with a check point (QuarnCheckInterrupt).
///
/// When a task throws, or the interrupt is requested, no more tasks begin, and the calling thread throws the first such
/// exception. Threads that cannot be started are done without.
QRNFLOAT_API void QuarnParallelFor(std::size_t count, QuarnTask task, void* context);

/// The same for a function object: body(index).
template <class Body>
void QuarnParallelFor(std::size_t count, const Body& body) {
  QuarnParallelFor(
      count, [](void* context, std::size_t index) { (*static_cast<const Body*>(context))(index); },
      const_cast<void*>(static_cast<const void*>(&body)));
}
