#include "src/sparse/driver.h"

#include <algorithm>
#include <vector>

#include "quarn/quarnthread.h"

namespace tesk {
namespace {

constexpr Integer kResidualCriterion = 1;

template <class T>
void set_up(SolverState<T>& state, const DriverProblem<T>& problem, Integer m) {
  state.choose(*problem.method);
  state.n = problem.n;
  state.m = m;
  state.preconditioned = 1;
  state.norm = kInfinityNorm;
  state.iterm = kResidualCriterion;
  state.maxitn = problem.maxitn;
  begin_problem(state, problem.tol, QuarnFloat(), QuarnFloat());
}

}  // namespace

template <class T>
DriverOutcome solve_to_end(const DriverProblem<T>& problem, T* x) {
  const Integer m = problem.method->takes_m ? problem.m : 1;
  std::vector<T> work(std::size_t(work_length(*problem.method, problem.n, m, true)));
  std::vector<T> u(x, x + problem.n);
  std::vector<T> v(problem.b, problem.b + problem.n);
  SolverState<T> state(work.data());
  set_up(state, problem, m);
  Integer info = 0;
  for (auto request = Request::start; request != Request::completion; request = Request(state.request)) {
    QuarnCheckInterrupt();
    if (request == Request::preconditioner) {
      problem.precondition(u.data(), v.data());
    } else if (request != Request::start) {
      problem.multiply(request == Request::transposed_product, u.data(), v.data());
    }
    info = Solver<T>(Methods::classic, state, u.data(), v.data(), nullptr).proceed(request);
  }
  QuarnFloat residual = norm_of(kInfinityNorm, problem.n, [&](Integer i) -> const T& { return v[std::size_t(i - 1)]; });
  DriverOutcome outcome{Ending(info), std::move(residual), state.itn};
  std::move(u.begin(), u.end(), x);
  return outcome;
}

template DriverOutcome solve_to_end(const DriverProblem<QuarnFloat>&, QuarnFloat*);
template DriverOutcome solve_to_end(const DriverProblem<Complex>&, Complex*);

}  // namespace tesk
