// The general iterative solver: entries for set-up, iteration by reverse communication, progress, and the steps of each
// method.

#include <algorithm>
#include <limits>

#include "quarn/quarnthread.h"
#include "src/frame/constants.h"
#include "src/frame/option.h"
#include "src/frame/report.h"
#include "src/frame/working_digits.h"
#include "src/kernels/level1.h"
#include "src/sparse/messages.h"
#include "src/sparse/method_names.h"
#include "src/sparse/solver.h"
#include "tesk2mp/frame.h"
#include "tesk2mp/iterative.h"

namespace tesk {
namespace {

/// '1', 'I' or '2': 0, 1, 2; anything else -1.
Integer norm_code(const Option& norm) {
  return norm.letter() == '1' ? 0 : norm.letter() == 'I' ? 1 : norm.letter() == '2' ? 2 : -1;
}

/// The arguments of the set-up, as F11BDD has them; F11BDF has neither NLOC nor FIRST.
enum BddParameter : Integer {
  kMethod = 1,
  kPrecon,
  kNorm,
  kWeight,
  kIterm,
  kN,
  kNloc,
  kFirst,
  kM,
  kTol,
  kMaxitn,
  kAnorm,
  kSigmax,
  kMonit,
  kLwreq,
  kWork,
  kLwork
};

/// Which rows of the system vectors have, counted from 1.
struct Rows {
  Integer count;
  Integer first;
};

void report_parameter(Report& report, Integer number) {
  report.fail(1, 99999, " ** On entry, parameter number %2ld had an illegal value.", number);
}

using Step = void (*)(Integer*, QuarnFloat*, QuarnFloat*, QuarnFloat*, QuarnFloat*, Integer*);

Step step_of(Integer method) {
  switch (method) {
    case 1:
      return QuarnMP_f11bezn_;
    case 2:
      return QuarnMP_f11betn_;
    case 3:
      return QuarnMP_f11bepn_;
    default:
      return QuarnMP_f11beln_;
  }
}

/// The digits that a set-up, step or report works with: the caller's, of a companion at least those that the counters
/// in WORK need. What a companion delivers at the end is rounded to the caller's.
int sufficient_digits(Methods methods) {
  return methods == Methods::all ? std::max(QuarnDigits(), kLeastDigits) : QuarnDigits();
}

/// Rounds what a solution has ended with. An immediate end leaves V alone, and before the first step U too.
template <class T>
void round_result(Integer n, Phase before, Ending ending, T* u, T* v) {
  const QuarnFloat one(1);
  if (ending != Ending::immediate || before == Phase::running) {
    scale(n, one, OneBasedVector<T>(u, 1));
  }
  if (ending != Ending::immediate) {
    scale(n, one, OneBasedVector<T>(v, 1));
  }
}

/// One step of the method, or of any for null: from what the caller brings to what it is asked for next. It may be
/// interrupted before anything is changed, so that the same call may be made again. digits: those of the result.
template <class T>
void step(const SolverMethod* method, int digits, Integer* irevcm, T* work, T* u, T* v, const QuarnFloat* wgt,
          Integer* info) {
  QuarnCheckInterrupt();
  const Integer lwork = *info;
  if (lwork < kHeaderLength) {
    *info = -kParameterLwork;
    return;
  }
  SolverState<T> state(work);
  if (!solver_state(StateMode::continuation, work) || !state.load() ||
      (method != nullptr && (&state.rules() != method || state.is_distributed()))) {
    *info = Integer(Ending::not_set_up);
    return;
  }
  if (lwork < work_length(state)) {
    *info = -kParameterLwork;
    return;
  }
  const auto before = Phase(state.phase);
  const Methods methods = method == nullptr ? Methods::all : Methods::classic;
  *info = Solver<T>(methods, state, u, v, wgt).proceed(Request(*irevcm));
  if (*info < 0) {
    return;
  }
  *irevcm = state.request;
  state.save();
  if (digits < QuarnDigits() && before != Phase::completed && Phase(state.phase) == Phase::completed) {
    const WorkingDigits fewer(digits);
    round_result(state.n, before, Ending(*info), u, v);
  }
}

/// F11BEF's message for an outcome of a step.
void report_ending(Report& report, Integer info, Integer itn, bool initial) {
  const auto fail = [&](const char* message, const auto&... values) {
    report.fail(info, 100000 - info, message, values...);
  };
  if (info < 0) {
    return report.fail(1, 99999, " ** On %sentry, parameter number %2ld had an illegal value.",
                       initial ? "initial " : "intermediate ", -info);
  }
  switch (Ending(info)) {
    case Ending::none:
    case Ending::illegal_parameter:
      return;
    case Ending::not_set_up:
      return fail(" ** Either F11BDF was not called before calling this routine\n ** or it has returned an error.");
    case Ending::already_completed:
      return fail(" ** F11BEF has already completed its tasks. You need to set a new problem.");
    case Ending::immediate:
      return fail(" ** User-requested immediate termination.");
    case Ending::tidy:
      return fail(" ** User-requested tidy termination.\n ** The solution has not converged after%7ld iterations.",
                  itn);
    case Ending::tidy_inaccurate:
      return fail(
          " ** User-requested termination: the required accuracy could not be obtained.\n"
          " ** However, a reasonable accuracy may have been achieved.");
    case Ending::breakdown:
      return fail(kBreakdown, itn);
    case Ending::not_converged:
      return fail(kNotConverged, itn);
    case Ending::inaccurate:
      return fail(kInaccurate);
  }
}

template <class T>
void set_up(Methods methods, const char* method, const char* precon, const char* norm, const char* weight,
            Integer iterm, Integer n, Integer m, const QuarnFloat& tol, Integer maxitn, const QuarnFloat& anorm,
            const QuarnFloat& sigmax, Integer monit, Integer* lwreq, T* work, Integer lwork, char* message_buffer,
            Integer* ifail, int method_length, int precon_length, int norm_length, int weight_length,
            const Rows* rows = nullptr) {
  Report report(rows == nullptr ? "F11BDF" : "F11BDD", message_buffer, ifail);
  const SolverMethod* rules = method_named(methods, MethodName(method, method_length));
  const Option precon_option(precon, precon_length);
  const Option norm_option(norm, norm_length);
  const Option weight_option(weight, weight_length);
  const Integer largest_m = rules == nullptr ? 1 : std::min(n, rules->largest_m);

  const auto number_of = [rows](Integer parameter) {
    return rows == nullptr && parameter > kN ? parameter - (kM - kNloc) : parameter;
  };
  struct {
    bool wrong;
    Integer parameter;
  } const checks[] = {{rules == nullptr, kMethod},
                      {!precon_option.is_one_of("NP"), kPrecon},
                      {norm_code(norm_option) < 0, kNorm},
                      {!weight_option.is_one_of("NW"), kWeight},
                      {iterm < 1 || iterm > 2, kIterm},
                      {n < 1, kN},
                      {rows != nullptr && (rows->count < 1 || rows->count > n), kNloc},
                      {rows != nullptr && (rows->first < 1 || rows->first - 1 > n - rows->count), kFirst},
                      {rules != nullptr && rules->takes_m && (m < 1 || m > largest_m), kM},
                      {!(tol < 1), kTol},
                      {maxitn < 1, kMaxitn},
                      {!isfinite(anorm), kAnorm},
                      {!isfinite(sigmax), kSigmax},
                      {monit < 0, kMonit},
                      {methods == Methods::classic && QuarnDigits() < kLeastDigits, kWork}};
  const auto* fault = std::find_if(std::begin(checks), std::end(checks), [](const auto& check) { return check.wrong; });
  if (fault != std::end(checks)) {
    return fault->parameter == kM ? report.fail(3, 99997, kOrderRange, rules->largest_m, m)
                                  : report_parameter(report, number_of(fault->parameter));
  }
  const WorkingDigits enough(sufficient_digits(methods));
  SolverState<T> state(work);
  state.choose(*rules);
  state.n = rows == nullptr ? n : rows->count;
  state.order = rows == nullptr ? 0 : n;
  state.first = rows == nullptr ? 0 : rows->first;
  state.m = rules->takes_m ? m : 1;
  state.preconditioned = precon_option.letter() == 'P' ? 1 : 0;
  const std::int64_t required = work_length(state);
  *lwreq = Integer(std::min<std::int64_t>(required, std::numeric_limits<Integer>::max()));
  if (lwork < required) {
    return report_parameter(report, number_of(kLwork));
  }
  if (solver_state(StateMode::continuation, work) && solver_phase(work) != Phase::completed) {
    return report.fail(2, 99998,
                       " ** F11BDF has been called out of sequence: either F11BDF has been called\n"
                       " ** twice or F11BEF has not terminated its current task.");
  }

  fill(kHeaderLength, T(), SolverVector<T>(work, 1));
  state.norm = norm_code(norm_option);
  state.weighted = weight_option.letter() == 'W' ? 1 : 0;
  state.iterm = iterm;
  state.maxitn = maxitn;
  state.monit = monit;
  begin_problem(state, tol, anorm, sigmax);
}

template <class T>
void iterate(Methods methods, Integer* irevcm, T* u, T* v, QuarnFloat* wgt, T* work, Integer lwork,
             char* message_buffer, Integer* ifail) {
  Report report("F11BEF", message_buffer, ifail);
  const int digits = QuarnDigits();
  const WorkingDigits enough(sufficient_digits(methods));
  const bool initial = Request(*irevcm) == Request::start;
  Integer info = lwork;
  if (lwork < kHeaderLength) {
    info = -kParameterLwork;
  } else if (!solver_state(StateMode::continuation, work)) {
    info = Integer(Ending::not_set_up);
  } else if (methods == Methods::all) {
    step<T>(nullptr, digits, irevcm, work, u, v, wgt, &info);
  } else if constexpr (std::is_same_v<T, QuarnFloat>) {
    step_of(solver_method_code(work))(irevcm, work, u, v, wgt, &info);
  }
  if (info == 0) {
    return;
  }
  const bool has_count = lwork >= kHeaderLength;
  report_ending(report, info, has_count ? solver_iterations(work) : 0, initial);
  *irevcm = Integer(Request::completion);
}

template <class T>
void progress(Methods methods, Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm,
              QuarnFloat* sigmax, T* work, Integer lwork, char* message_buffer, Integer* ifail) {
  Report report("F11BFF", message_buffer, ifail);
  if (lwork < kHeaderLength) {
    return report.fail(2, 99998, " ** On entry, parameter number %2ld had an illegal value.", 7);
  }
  const int digits = QuarnDigits();
  const WorkingDigits enough(sufficient_digits(methods));
  if (!solver_state(StateMode::monitoring, work)) {
    return report.fail(1, 99999, " ** F11BFF has been called out of sequence.");
  }
  *itn = solver_iterations(work);
  const WorkingDigits again(digits);
  const auto at = [&](Place place) {
    const QuarnFloat& value = real_part(work[Integer(place) - 1]);
    return methods == Methods::all && digits < kLeastDigits ? 1 * value : value;
  };
  *stplhs = at(Place::stplhs);
  *stprhs = at(Place::stprhs);
  *anorm = at(Place::anorm);
  *sigmax = at(Place::sigmax);
}

}  // namespace
}  // namespace tesk

using namespace tesk;

extern "C" {

void QuarnMP_f11bdfn_(const char* method, const char* precon, const char* norm, const char* weight, Integer iterm,
                      Integer n, Integer m, QuarnFloat tol, Integer maxitn, QuarnFloat anorm, QuarnFloat sigmax,
                      Integer monit, Integer* lwreq, QuarnFloat* work, Integer lwork, char* message_buffer,
                      Integer* ifail, int method_length, int precon_length, int norm_length, int weight_length,
                      int /*buffer_length*/) {
  set_up(Methods::classic, method, precon, norm, weight, iterm, n, m, tol, maxitn, anorm, sigmax, monit, lwreq, work,
         lwork, message_buffer, ifail, method_length, precon_length, norm_length, weight_length);
}

void QuarnMP_f11befn_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work, Integer lwork,
                      char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  tesk::iterate(Methods::classic, irevcm, u, v, wgt, work, lwork, message_buffer, ifail);
}

void QuarnMP_f11bffn_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm, QuarnFloat* sigmax,
                      QuarnFloat* work, Integer lwork, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  progress(Methods::classic, itn, stplhs, stprhs, anorm, sigmax, work, lwork, message_buffer, ifail);
}

void QuarnMPX_f11bdfn_(const char* method, const char* precon, const char* norm, const char* weight, Integer iterm,
                       Integer n, Integer m, QuarnFloat tol, Integer maxitn, QuarnFloat anorm, QuarnFloat sigmax,
                       Integer monit, Integer* lwreq, QuarnFloat* work, Integer lwork, char* message_buffer,
                       Integer* ifail, int method_length, int precon_length, int norm_length, int weight_length,
                       int /*buffer_length*/) {
  set_up(Methods::all, method, precon, norm, weight, iterm, n, m, tol, maxitn, anorm, sigmax, monit, lwreq, work, lwork,
         message_buffer, ifail, method_length, precon_length, norm_length, weight_length);
}

void QuarnMPX_f11befn_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work, Integer lwork,
                       char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  tesk::iterate(Methods::all, irevcm, u, v, wgt, work, lwork, message_buffer, ifail);
}

void QuarnMPX_f11bffn_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm, QuarnFloat* sigmax,
                       QuarnFloat* work, Integer lwork, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  progress(Methods::all, itn, stplhs, stprhs, anorm, sigmax, work, lwork, message_buffer, ifail);
}

void QuarnMP_f11bezn_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, Integer* info) {
  step<QuarnFloat>(&kRgmres, QuarnDigits(), irevcm, work, u, v, wgt, info);
}

void QuarnMP_f11betn_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, Integer* info) {
  step<QuarnFloat>(&kCgs, QuarnDigits(), irevcm, work, u, v, wgt, info);
}

void QuarnMP_f11bepn_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, Integer* info) {
  step<QuarnFloat>(&kBicgstab, QuarnDigits(), irevcm, work, u, v, wgt, info);
}

void QuarnMP_f11beln_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, Integer* info) {
  step<QuarnFloat>(&kTfqmr, QuarnDigits(), irevcm, work, u, v, wgt, info);
}

void QuarnMPX_zf11bdf_(const char* method, const char* precon, const char* norm, const char* weight,
                       const Integer* iterm, const Integer* n, const Integer* m, const QuarnFloat* tol,
                       const Integer* maxitn, const QuarnFloat* anorm, const QuarnFloat* sigmax, const Integer* monit,
                       Integer* lwreq, Complex* work, const Integer* lwork, Integer* ifail, int method_length,
                       int precon_length, int norm_length, int weight_length) {
  char buffer[kMessageBufferLength];
  set_up(Methods::all, method, precon, norm, weight, *iterm, *n, *m, *tol, *maxitn, *anorm, *sigmax, *monit, lwreq,
         work, *lwork, buffer, ifail, method_length, precon_length, norm_length, weight_length);
}

void QuarnMPX_f11bdd_(const char* method, const char* precon, const char* norm, const char* weight,
                      const Integer* iterm, const Integer* n, const Integer* nloc, const Integer* first,
                      const Integer* m, const QuarnFloat* tol, const Integer* maxitn, const QuarnFloat* anorm,
                      const QuarnFloat* sigmax, const Integer* monit, Integer* lwreq, QuarnFloat* work,
                      const Integer* lwork, Integer* ifail, int method_length, int precon_length, int norm_length,
                      int weight_length) {
  char buffer[kMessageBufferLength];
  const Rows rows{*nloc, *first};
  set_up(Methods::all, method, precon, norm, weight, *iterm, *n, *m, *tol, *maxitn, *anorm, *sigmax, *monit, lwreq,
         work, *lwork, buffer, ifail, method_length, precon_length, norm_length, weight_length, &rows);
}

void QuarnMPX_zf11bdd_(const char* method, const char* precon, const char* norm, const char* weight,
                       const Integer* iterm, const Integer* n, const Integer* nloc, const Integer* first,
                       const Integer* m, const QuarnFloat* tol, const Integer* maxitn, const QuarnFloat* anorm,
                       const QuarnFloat* sigmax, const Integer* monit, Integer* lwreq, Complex* work,
                       const Integer* lwork, Integer* ifail, int method_length, int precon_length, int norm_length,
                       int weight_length) {
  char buffer[kMessageBufferLength];
  const Rows rows{*nloc, *first};
  set_up(Methods::all, method, precon, norm, weight, *iterm, *n, *m, *tol, *maxitn, *anorm, *sigmax, *monit, lwreq,
         work, *lwork, buffer, ifail, method_length, precon_length, norm_length, weight_length, &rows);
}

void QuarnMPX_zf11bef_(Integer* irevcm, Complex* u, Complex* v, QuarnFloat* wgt, Complex* work, const Integer* lwork,
                       Integer* ifail) {
  char buffer[kMessageBufferLength];
  tesk::iterate(Methods::all, irevcm, u, v, wgt, work, *lwork, buffer, ifail);
}

void QuarnMPX_zf11bff_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm, QuarnFloat* sigmax,
                       Complex* work, const Integer* lwork, Integer* ifail) {
  char buffer[kMessageBufferLength];
  progress(Methods::all, itn, stplhs, stprhs, anorm, sigmax, work, *lwork, buffer, ifail);
}
}
