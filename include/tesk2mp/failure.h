// How a host receives failures.
//
// tesk2mp.h describes the usual protocol.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

/// One failure. Texts and values live as long as the call of the handler.
struct QuarnFailure {
  const char* routine;       ///< "C06FAF"; of a kernel, both names: "F06PAF/DGEMV"
  quarn::Integer number;     ///< the failure number that IFAIL becomes; of a kernel, the position of the wrong argument
  quarn::Integer label;      ///< the label of the message: 99999 for a routine's first one, counting down
  const char* message;       ///< the message record, " ** On entry, N .le. 1: N =               1."
  const QFArgument* values;  ///< the values in the message, in order
  int count;                 ///< how many those are
};

/// Who is told of failures. The handler returns; it must not throw.
struct QuarnFailureHandler {
  void (*handle)(const QuarnFailure* failure, void* context);
  void* context;
};

extern "C" {

/// @defgroup failure_handler a function that receives every failure
///
/// Sends every failure of the calling thread to *handler from now on, and returns the former handler; a null pointer,
/// the state at first, means the usual protocol. While there is a handler, a failing routine writes nothing to console
/// or standard output and returns with its failure number, whatever IFAIL was on entry; a kernel with a wrong argument
/// returns before it touches anything. A routine that calls others may tell of theirs before its own: the last word
/// counts, and only if IFAIL comes back non-zero.
///
/// @param[in] handler the function and what is handed to it; *handler must live until the next call
///
/// @par Source
/// No published one: the failure protocol of this library.
///
/// @par Cost
/// A pointer is stored; of a routine that does not fail, nothing.
/// @{
TESK2MP_API const QuarnFailureHandler* QuarnMPX_failure_handler(const QuarnFailureHandler* handler);
/// @}
}
