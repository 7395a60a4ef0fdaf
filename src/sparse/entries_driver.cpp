// Solution of sparse systems with incomplete factors: entries.
#include "src/frame/option.h"
#include "src/sparse/driver.h"
#include "src/sparse/messages.h"
#include "src/sparse/method_names.h"
#include "src/sparse/returned_factors.h"
#include "src/sparse/spmv.h"
#include "tesk2mp/incomplete.h"

namespace tesk {
namespace {

/// What the drivers take.
template <class Value>
struct DriverArguments {
  const char* method;
  int method_length;
  Integer n;
  Integer nnz;
  const Value* a;
  Integer la;
  const Integer* irow;
  const Integer* icol;
  const Integer* ipivp;
  const Integer* ipivq;  // null with Cholesky factors
  const Integer* istr;
  const Integer* idiag;  // null with Cholesky factors
  const Value* b;
  Integer m;
  const QuarnFloat& tol;
  Integer maxitn;
  Value* x;
  QuarnFloat* rnorm;
  Integer* itn;

  Storage storage() const { return ipivq == nullptr ? Storage::lower_triangle : Storage::general; }
  CoordinateMatrix<Value> matrix() const { return {n, nnz, a, irow, icol}; }
  FactorView<Value> factors() const { return {n, a, icol, istr, idiag, ipivp, ipivq}; }
};

/// The method that METHOD names, or null.
const SolverMethod* method_for(Storage storage, const MethodName& name) {
  if (storage == Storage::general) {
    return method_named(Methods::classic, name);
  }
  const SolverMethod* const method = method_named(Methods::all, name);
  return method != nullptr && is_for_symmetric_systems(*method) ? method : nullptr;
}

template <class Value>
bool arguments_are_valid(Report& report, const Advice& advice, const DriverArguments<Value>& given,
                         const SolverMethod* method) {
  const bool general = given.storage() == Storage::general;
  if (method == nullptr) {
    report.fail(1, 99999,
                general ? " ** On entry, METHOD .ne. 'RGMRES', 'CGS', 'BICGSTAB' or 'TFQMR':\n    METHOD = '%s'."
                        : " ** On entry, METHOD .ne. 'CG', 'MINRES' or 'SYMMLQ': METHOD = '%s'.",
                Option(given.method, given.method_length).text());
    return false;
  }
  if (!structure_is_valid(report, {99998, 1, 2, advice.arrays}, given.storage(), given.n, given.nnz, given.irow,
                          given.icol)) {
    return false;
  }
  if (method->takes_m && (given.m < 1 || given.m > std::min(given.n, method->largest_m))) {
    report.fail(1, 99991, kOrderRange, method->largest_m, given.m);
    return false;
  }
  if (!(given.tol < 1)) {
    report.fail(1, 99990, " ** On entry, TOL .ge. 1.0: TOL =%12.4e.", given.tol);
    return false;
  }
  if (given.maxitn < 1) {
    report.fail(1, 99989, " ** On entry, MAXITN .lt. 1: MAXITN =%16ld.", given.maxitn);
    return false;
  }
  if (QuarnDigits() < kLeastDigits) {
    report.fail(1, 99988, " ** On entry, the working precision is too low: %16ld digits.", Integer(QuarnDigits()));
    return false;
  }
  return ReturnedFactors<Value>(report, advice, given.storage(), given.factors(), given.la, given.irow)
      .are_valid(99987);
}

void report_end(Report& report, const DriverOutcome& outcome) {
  switch (outcome.ending) {
    case Ending::inaccurate:
      return report.fail(4, 99973, kInaccurate);
    case Ending::not_converged:
      return report.fail(5, 99972, kNotConverged, outcome.iterations);
    case Ending::breakdown:
      return report.fail(6, 99971, kBreakdown, outcome.iterations);
    default:
      return;
  }
}

template <class Value>
void solve_system(const char* routine, const Advice& advice, const DriverArguments<Value>& given, char* message_buffer,
                  Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  const SolverMethod* const method = method_for(given.storage(), MethodName(given.method, given.method_length));
  if (!arguments_are_valid(report, advice, given, method)) {
    return;
  }
  const bool general = given.storage() == Storage::general;
  const auto multiply = [&](bool adjoint, const Value* source, Value* target) {
    if (general && adjoint) {
      spmv_adjoint(Sums::exact, given.matrix(), source, target);
    } else {
      spmv(Sums::exact, given.storage(), given.matrix(), source, target);
    }
  };
  const auto precondition = [&](const Value* source, Value* target) {
    if (general) {
      solve_lu(Sums::in_order, Op::none, given.factors(), source, target);
    } else {
      solve_cholesky(Sums::in_order, given.factors(), source, target);
    }
  };
  DriverOutcome outcome = solve_to_end<Value>(
      {method, given.m, given.n, given.b, given.tol, given.maxitn, multiply, precondition}, given.x);
  *given.rnorm = std::move(outcome.residual);
  *given.itn = outcome.iterations;
  report_end(report, outcome);
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMP_f11dcfn_(const char* method, Integer n, Integer nnz, const QuarnFloat* a, Integer la, const Integer* irow,
                      const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                      const Integer* idiag, const QuarnFloat* b, Integer m, QuarnFloat tol, Integer maxitn,
                      QuarnFloat* x, QuarnFloat* rnorm, Integer* itn, char* message_buffer, Integer* ifail,
                      int method_length, int /*buffer_length*/) {
  tesk::solve_system<QuarnFloat>(
      "F11DCF", tesk::kRealLuDriver,
      {method, method_length, n, nnz, a, la, irow, icol, ipivp, ipivq, istr, idiag, b, m, tol, maxitn, x, rnorm, itn},
      message_buffer, ifail);
}

void QuarnMP_f11dqfn_(const char* method, Integer n, Integer nnz, const Complex* a, Integer la, const Integer* irow,
                      const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                      const Integer* idiag, const Complex* b, Integer m, QuarnFloat tol, Integer maxitn, Complex* x,
                      QuarnFloat* rnorm, Integer* itn, char* message_buffer, Integer* ifail, int method_length,
                      int /*buffer_length*/) {
  tesk::solve_system<Complex>(
      "F11DQF", tesk::kComplexLuDriver,
      {method, method_length, n, nnz, a, la, irow, icol, ipivp, ipivq, istr, idiag, b, m, tol, maxitn, x, rnorm, itn},
      message_buffer, ifail);
}

void QuarnMP_f11jqfn_(const char* method, Integer n, Integer nnz, const Complex* a, Integer la, const Integer* irow,
                      const Integer* icol, const Integer* ipiv, const Integer* istr, const Complex* b, QuarnFloat tol,
                      Integer maxitn, Complex* x, QuarnFloat* rnorm, Integer* itn, char* message_buffer, Integer* ifail,
                      int method_length, int /*buffer_length*/) {
  tesk::solve_system<Complex>("F11JQF", tesk::kComplexCholeskyDriver,
                              {method, method_length, n, nnz, a, la, irow, icol, ipiv, nullptr, istr, nullptr, b, 1,
                               tol, maxitn, x, rnorm, itn},
                              message_buffer, ifail);
}
}
