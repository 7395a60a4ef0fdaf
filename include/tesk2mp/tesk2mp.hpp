// The C++ interface of Tesk MP (C++20): the routines of tesk2mp.h over spans and matrix views.
//
//   #include "tesk2mp/tesk2mp.hpp"
//
//   const tesk2mp::Digits forty(40);
//   const tesk2mp::Matrix<tesk2mp::Real> a = {{4, 1}, {2, 3}};
//   for (const tesk2mp::Complex& value : tesk2mp::eigenvalues(a)) { ... }  // 5 and 2
//
// What holds for all of it:
//
// * Shapes come from the arguments and are checked; workspace is not the caller's business.
// * Failures are exceptions (error.hpp) with the routine's name, its failure number, its message and the values in it.
//   Nothing is printed and the process is never ended. Unless a function says otherwise, what it was to write to is
//   then as it was (InvalidArgument) or not defined (NumericalFailure).
// * Long work ends with QuarnInterrupted where the thread watches an interrupt that is requested (quarnthread.h); what
//   was to be written to is then not defined.
// * Constants are true to the working precision. Where the library has a classic entry that is good to some 16 digits
//   at any precision, namespace classic has it under the same name.
// * Indices count from 0. (Texts of the library count from 1.)
// * Each function is a few lines over exports that tesk2mp.h declares; results are theirs, digit for digit.
//
// Several threads may call at once; digits and failures belong to the thread (quarnthread.h). set_threads() lets large
// products and transforms use several.
#pragma once

#include "tesk2mp/dense.hpp"
#include "tesk2mp/eigen.hpp"
#include "tesk2mp/eigenproblems.hpp"
#include "tesk2mp/error.hpp"
#include "tesk2mp/fft.hpp"
#include "tesk2mp/function_zeros.hpp"
#include "tesk2mp/gallery.hpp"
#include "tesk2mp/generalised.hpp"
#include "tesk2mp/incomplete.hpp"
#include "tesk2mp/kernels.hpp"
#include "tesk2mp/krylov.hpp"
#include "tesk2mp/least_squares.hpp"
#include "tesk2mp/linear.hpp"
#include "tesk2mp/matrix_functions.hpp"
#include "tesk2mp/orthogonal.hpp"
#include "tesk2mp/partial_sums.hpp"
#include "tesk2mp/polynomials.hpp"
#include "tesk2mp/preconditioners.hpp"
#include "tesk2mp/proven.hpp"
#include "tesk2mp/proven_arithmetic.hpp"
#include "tesk2mp/proven_complex.hpp"
#include "tesk2mp/proven_functions.hpp"
#include "tesk2mp/proven_spectra.hpp"
#include "tesk2mp/proven_sums.hpp"
#include "tesk2mp/proven_table.hpp"
#include "tesk2mp/proven_zero.hpp"
#include "tesk2mp/refinement.hpp"
#include "tesk2mp/rounding.hpp"
#include "tesk2mp/schur_forms.hpp"
#include "tesk2mp/singular_values.hpp"
#include "tesk2mp/solve_sparse.hpp"
#include "tesk2mp/solver.hpp"
#include "tesk2mp/sparse.hpp"
#include "tesk2mp/sparse_direct.hpp"
#include "tesk2mp/special.hpp"
#include "tesk2mp/structured.hpp"
#include "tesk2mp/threads.hpp"
#include "tesk2mp/transforms.hpp"
#include "tesk2mp/util.hpp"
#include "tesk2mp/views.hpp"
