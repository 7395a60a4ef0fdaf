// The core forms behind the entries: checks, transform, report. They know no accuracy of their own.
#pragma once

#include "src/fft/complex_engine.h"
#include "src/frame/option.h"
#include "src/frame/report.h"

namespace tesk {

/// What each core form is given beside its own arguments.
struct Call {
  const Engine& engine;
  Option direct;
  char* message_buffer;
  Integer* ifail;
};

inline constexpr char kInvalidDirect[] = " ** %1s is an invalid value of DIRECT.";
inline constexpr char kInternalFailure[] = " ** Unexpected failure in an internal call.";

inline bool is_valid_direct(const Option& direct) { return direct.is_one_of("FB"); }
/// Anything but B and b is forward where nobody checks.
inline bool is_backward(const Option& direct) { return direct.letter() == 'B'; }

void single_transform(const Call& call, Complex* x, Integer n, Complex* work);

/// How M sequences of length N lie in X: element i of sequence j in place i M + j, or in place i + j N.
enum class Sequences { interleaved, contiguous };

View view_of(Sequences sequences, Integer m, Integer n);

void multiple_transform(const Call& call, Sequences sequences, Integer m, Integer n, Complex* x, Complex* work);

/// The dimensions of an array and the caller's workspace.
struct Dimensions {
  bool query;  // only the length of the workspace is asked for
  Integer ndim;
  const Integer* nd;
  Integer n;
  Integer lwork;
};

/// Along dimension l, from 1.
void transform_one_dimension(const Call& call, const Dimensions& dimensions, Integer l, Complex* x, Complex* work);
void transform_all_dimensions(const Call& call, const Dimensions& dimensions, Complex* x, Complex* work);

}  // namespace tesk
