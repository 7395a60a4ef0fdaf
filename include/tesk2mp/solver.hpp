// Iterative solution of linear systems through the C++ interface. Part of tesk2mp.hpp; iterative.h describes the
// methods, their criteria and what may go wrong.
#pragma once

#include <algorithm>
#include <concepts>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "tesk2mp/partial_sums.hpp"
#include "tesk2mp/sparse.hpp"

namespace tesk2mp {

/// cg, minres and symmlq: for symmetric or Hermitian matrices, cg for positive definite ones. fgmres: rgmres with the
/// preconditioner on the right, which may be another one each time.
enum class Method { rgmres, cgs, bicgstab, tfqmr, cg, minres, symmlq, fgmres, idrs };
enum class VectorNorm : char { one = '1', infinity = 'I', two = '2' };
/// When an iterate is good enough: by its residual b - A x beside |b| + |A| |x|, or by the preconditioned one. The
/// first needs products with the transpose unless the norm of A is given.
enum class Criterion : Integer { residual = 1, preconditioned_residual = 2 };

/// Ten working digits in place of fewer, while it lives. The solvers work so; preconditioners may be made so too.
class SolverDigits {
 public:
  SolverDigits() : digits_(std::max(QuarnDigits(), kLeast)) {}

 private:
  static constexpr int kLeast = 10;
  Digits digits_;
};

/// How to iterate. Zeros mean what the comments say.
struct SolverOptions {
  Method method = Method::rgmres;
  /// 0: RGMRES and FGMRES restart every min(N, 30) iterations, BICGSTAB is of order 1, IDR(s) has min(N, 4) shadow
  /// vectors
  Integer order = 0;
  Real tolerance = 0;              ///< 0: the square root of the machine precision
  Integer most_iterations = 1000;  ///
  Criterion criterion = Criterion::preconditioned_residual;
  VectorNorm norm = VectorNorm::infinity;
  std::vector<Real> weights;        ///< of the norm; none: all the same
  Real matrix_norm = 0;             ///< of A, for Criterion::residual; 0: estimated with products
  Real largest_singular_value = 0;  ///< of M^-1 A, for the other one; 0: estimated on the way
  Integer monitor = 0;              ///< every that many iterations Request::monitor; 0: never
  // Rows that are shared out among ranks, each with its part of b, of the first iterate and of the weights:
  Integer rows = 0;       ///< of the whole system; 0: all of them are here
  Integer first_row = 0;  ///< of the whole system, the row of the first element here
  SumExchange dot;        ///< takes care of every Request::dot; none: next() returns it
};

namespace detail {

/// What the elements here add to the sum of conj(x) y, or its real part, to which the other one belongs.
inline PartialSum part_of_inner_product(std::span<const Real> x, std::span<const Real> y, PartialSum& /*imaginary*/) {
  PartialSum part;
  part.sum().add_dot(x.size(), x.data(), 1, y.data(), 1);
  return part;
}
inline PartialSum part_of_inner_product(std::span<const Complex> x, std::span<const Complex> y, PartialSum& imaginary) {
  PartialSum part;
  quarn::add_inner_product(x.size(), x.data(), y.data(), part.sum(), imaginary.sum());
  return part;
}

/// What the elements here add to a norm.
template <Scalar T>
PartialSum part_of_norm(VectorNorm norm, std::span<const T> x) {
  if (norm == VectorNorm::two) {
    PartialSum none;
    return part_of_inner_product(x, x, none);
  }
  PartialSum part(norm == VectorNorm::one ? PartialSum::Kind::sum : PartialSum::Kind::largest);
  for (const T& element : x) {
    const Real size = part_size(element);
    if (norm == VectorNorm::one) {
      part.sum() += size;
    } else {
      part.take(size);
    }
  }
  return part;
}

/// The norm, of what all elements add to it.
inline Real norm_of(VectorNorm norm, const PartialSum& total) {
  return norm == VectorNorm::infinity ? total.largest()
         : norm == VectorNorm::two    ? total.sum().rounded_root()
                                      : total.sum().rounded();
}

}  // namespace detail

/// What a step of IterativeSolver asks for: output() is to become A input(), A^T input() (A^H of a complex one) or M^-1
/// input(); or just to look, input() the iterate and output() its residual; or nothing any more. dot: partial_sums()
/// are to become the totals of all ranks.
enum class Request : Integer {
  product = 1,
  transposed_product = -1,
  precondition = 2,
  monitor = 3,
  finished = 4,
  dot = 7
};

/// How far a solver has got. The criterion holds when left <= right.
struct Progress {
  Integer iterations = 0;
  Real left;
  Real right;
  Real matrix_norm;
  Real largest_singular_value;
};

/// The solution of A x = b step by step, for those who want the loop in their own hands.
///
/// @code
/// tesk2mp::IterativeSolver solver(b, {}, false, options);
/// for (auto request = solver.next(); request != tesk2mp::Request::finished; request = solver.next()) {
///   if (request == tesk2mp::Request::product) {
///     multiply(solver.input(), solver.output());
///   }
/// }
/// use(solver.solution());
/// @endcode
///
/// IterativeSolver is the real one, ComplexIterativeSolver the complex one.
/// Where the rows of the system are shared out (options.rows) each rank makes one of its rows, and all of them take the
/// same steps; products take what the rank needs of input() from the others. Sums are exact and rounded once, so that
/// the digits do not depend on the partition, as long as the preconditioner does not.
/// With fewer than 10 working digits it works with 10, tolerances included, and rounds solution() and residual() at the
/// end. iterate() forms products so, too; a loop with products of fewer digits has to set a tolerance that they allow.
template <Scalar T>
class BasicIterativeSolver {
 public:
  /// b: the right-hand side. guess: the first iterate; empty: zeros. preconditioned: whether precondition is asked for.
  BasicIterativeSolver(std::span<const T> b, std::span<const T> guess, bool preconditioned,
                       const SolverOptions& options)
      : u_(guess.empty() ? std::vector<T>(b.size()) : std::vector<T>(guess.begin(), guess.end())),
        v_(b.begin(), b.end()),
        weights_(options.weights),
        dot_(options.dot) {
    detail::require(u_.size() == v_.size(), kSetUp, 6, "a first iterate of ", u_.size(), " elements for ", v_.size(),
                    " equations");
    detail::require(weights_.empty() || weights_.size() == v_.size(), kSetUp, 4, weights_.size(), " weights for ",
                    v_.size(), " equations");
    set_up(preconditioned, options);
  }

  /// Goes on once the last request is done. Throws NumericalFailure when the method breaks down (code 7), runs out of
  /// iterations (8) or cannot get better at the working precision (9); solution() then is the last iterate. What
  /// options.dot throws is passed on; next() and finish_iteration() then call it again for the same sums.
  Request next() { return proceed(request_); }
  /// In place of next(): ends after this iteration, with all requests that it still needs.
  Request finish_iteration() { return proceed(5); }
  /// In place of next(): ends at once, with the last iterate that is complete.
  void stop() {
    unanswered_ = false;
    step(6);
  }

  std::span<const T> input() const { return u_; }
  std::span<T> output() { return v_; }
  const std::vector<T>& solution() const { return u_; }
  const std::vector<T>& residual() const { return v_; }
  /// The criterion holds: not so after stop(), finish_iteration() or an exception.
  bool converged() const { return converged_; }

  /// After Request::dot: what the elements here add to each sum, exactly. Complex inner products are two of them.
  std::vector<PartialSum> partial_sums() const {
    const SolverDigits enough;
    std::vector<PartialSum> sums;
    for (std::size_t k = 0; k < sum_count(); ++k) {
      add_partial_sums(k, sums);
    }
    return sums;
  }
  /// The totals of all ranks, in the same order. Throws InvalidArgument for another number of them, or other kinds; the
  /// solver takes all of them or none.
  void take_totals(std::span<const PartialSum> totals) {
    require_totals(totals);
    const SolverDigits enough;
    std::vector<T> values;
    values.reserve(sum_count());
    std::size_t used = 0;
    for (std::size_t k = 0; k < sum_count(); ++k) {
      const int kind = sum_kind(k);
      const PartialSum& total = totals[used++];
      if (kind == kInnerProduct) {
        T& value = values.emplace_back(total.sum().rounded());
        if constexpr (std::same_as<T, Complex>) {
          value.im = totals[used++].sum().rounded();
        }
      } else {
        values.emplace_back(detail::norm_of(norm_of_kind(kind), total));
      }
    }
    for (std::size_t k = 0; k < values.size(); ++k) {
      std::swap(work_[sum_place(k) + 3], values[k]);
    }
  }

  Progress progress() {
    Progress progress;
    const Integer length = detail::count_of(work_.size());
    detail::call([&](Integer* ifail) {
      detail::pick<T>(QuarnMPX_f11bff_, QuarnMPX_zf11bff_)(&progress.iterations, &progress.left, &progress.right,
                                                           &progress.matrix_norm, &progress.largest_singular_value,
                                                           work_.data(), &length, ifail);
    });
    return progress;
  }

 private:
  static constexpr const char* kSetUp = "F11BDF";

  void set_up(bool preconditioned, const SolverOptions& options) {
    static constexpr const char* kNames[] = {"RGMRES", "CGS",    "BICGSTAB", "TFQMR", "CG",
                                             "MINRES", "SYMMLQ", "FGMRES",   "IDR"};
    detail::require(std::size_t(options.method) < std::size(kNames), kSetUp, 1, "no such method");
    const std::string method = kNames[std::size_t(options.method)];
    const Integer n = detail::count_of(v_.size());
    const Integer rows = options.rows == 0 ? n : options.rows;
    const bool restarted = options.method == Method::rgmres || options.method == Method::fgmres;
    const Integer usual = std::min<Integer>(rows, restarted ? 30 : options.method == Method::idrs ? 4 : 1);
    const Integer order = options.order == 0 ? usual : options.order;
    const auto criterion = Integer(options.criterion);
    Integer needed = 0;
    const auto attempt = [&](Integer* ifail) {
      const Integer length = detail::count_of(work_.size());
      if (options.rows != 0) {
        const Integer first = options.first_row + 1;
        detail::pick<T>(QuarnMPX_f11bdd_, QuarnMPX_zf11bdd_)(
            method.c_str(), detail::Option(preconditioned ? 'P' : 'N'), detail::Option(options.norm),
            detail::Option(weights_.empty() ? 'N' : 'W'), &criterion, &options.rows, &n, &first, &order,
            &options.tolerance, &options.most_iterations, &options.matrix_norm, &options.largest_singular_value,
            &options.monitor, &needed, work_.data(), &length, ifail, int(method.size()), 1, 1, 1);
        return;
      }
      detail::pick<T>(QuarnMPX_f11bdf_, QuarnMPX_zf11bdf_)(
          method.c_str(), detail::Option(preconditioned ? 'P' : 'N'), detail::Option(options.norm),
          detail::Option(weights_.empty() ? 'N' : 'W'), &criterion, &n, &order, &options.tolerance,
          &options.most_iterations, &options.matrix_norm, &options.largest_singular_value, &options.monitor, &needed,
          work_.data(), &length, ifail, int(method.size()), 1, 1, 1);
    };
    {
      // Without workspace it only returns how much it needs; what else is wrong is reported again.
      const detail::Listener quiet;
      Integer ifail = 1;
      attempt(&ifail);
    }
    work_.resize(std::size_t(std::max<Integer>(needed, 100)));
    detail::call(attempt);
  }

  // The sums of Request::dot, as F11BDD lays them out.
  static constexpr int kInnerProduct = 1;
  static constexpr int kTwoNorm = 2;
  static constexpr int kOneNorm = 3;
  static constexpr int kWeighted = 10;
  std::size_t whole(std::size_t place) const { return std::size_t(FloatToInt(Complex(work_[place]).re)); }
  std::size_t sum_count() const { return whole(30); }
  std::size_t sum_place(std::size_t k) const { return whole(31) - 1 + 4 * k; }
  int sum_kind(std::size_t k) const { return int(whole(sum_place(k))) % kWeighted; }
  static VectorNorm norm_of_kind(int kind) {
    return kind == kTwoNorm ? VectorNorm::two : kind == kOneNorm ? VectorNorm::one : VectorNorm::infinity;
  }

  void add_partial_sums(std::size_t k, std::vector<PartialSum>& sums) const {
    const bool weighted = int(whole(sum_place(k))) > kWeighted;
    const int kind = sum_kind(k);
    std::span<const T> x(work_.data() + whole(sum_place(k) + 1) - 1, u_.size());
    const std::span<const T> y(work_.data() + whole(sum_place(k) + 2) - 1, u_.size());
    std::vector<T> scaled;
    if (weighted) {
      scaled.assign(x.begin(), x.end());
      for (std::size_t i = 0; i < scaled.size(); ++i) {
        scaled[i] = scaled[i] * weights_[i];
      }
      x = scaled;
    }
    if (kind != kInnerProduct) {
      sums.push_back(detail::part_of_norm(norm_of_kind(kind), x));
      return;
    }
    PartialSum imaginary;
    sums.push_back(detail::part_of_inner_product(x, y, imaginary));
    if constexpr (std::same_as<T, Complex>) {
      sums.push_back(std::move(imaginary));
    }
  }

  void require_totals(std::span<const PartialSum> totals) const {
    std::size_t used = 0;
    for (std::size_t k = 0; k < sum_count(); ++k) {
      const bool largest = sum_kind(k) > kOneNorm;
      const auto wanted = largest ? PartialSum::Kind::largest : PartialSum::Kind::sum;
      const std::size_t count = sum_kind(k) == kInnerProduct && std::same_as<T, Complex> ? 2 : 1;
      for (std::size_t part = 0; part < count; ++part, ++used) {
        detail::require(used >= totals.size() || totals[used].kind() == wanted, "F11BDD", 7, "total ", used,
                        largest ? " is a sum in place of a largest size" : " is a largest size in place of a sum");
      }
    }
    detail::require(totals.size() == used, "F11BDD", 7, totals.size(), " totals of ", used, " sums");
  }

  void exchange_sums() {
    unanswered_ = true;
    std::vector<PartialSum> sums = partial_sums();
    dot_(sums);
    take_totals(sums);
    unanswered_ = false;
  }

  Request proceed(Integer answer) {
    if (unanswered_) {  // the exchange has thrown before
      exchange_sums();
    }
    Request request = step(answer);
    while (request == Request::dot && dot_) {
      exchange_sums();
      request = step(request_);
    }
    return request;
  }

  Request step(Integer answer) {
    const Integer length = detail::count_of(work_.size());
    const detail::Listener listener;
    Integer ifail = 1;
    request_ = answer;
    detail::pick<T>(QuarnMPX_f11bef_, QuarnMPX_zf11bef_)(&request_, u_.data(), v_.data(), weights_.data(), work_.data(),
                                                         &length, &ifail);
    const bool asked_for = ifail >= 4 && ifail <= 6;
    if (ifail != 0 && !asked_for) {
      listener.raise({7, 8, 9});
    }
    converged_ = request_ == Integer(Request::finished) && ifail == 0;
    return Request(request_);
  }

  std::vector<T> u_;
  std::vector<T> v_;
  std::vector<Real> weights_;
  std::vector<T> work_;
  SumExchange dot_;
  Integer request_ = 0;
  bool converged_ = false;
  bool unanswered_ = false;  // dot_ has been called for the sums, and has thrown
};

using IterativeSolver = BasicIterativeSolver<Real>;
using ComplexIterativeSolver = BasicIterativeSolver<Complex>;

/// What solve_iteratively() found.
template <Scalar T>
struct BasicIterativeSolution {
  std::vector<T> x;
  std::vector<T> residual;  ///< b - A x
  Progress progress;
  bool converged = true;   ///< the criterion holds, no monitor has ended the iterations before
  Real relative_residual;  ///< |b - A x| / |b|, largest elements; 0 when b = 0
  Real growth;  ///< |A| |x| / |b| of the criterion (of M^-1 A and M^-1 b); the condition number of A is no less
  /// The criterion holds because x is large, not because the residual is small: |b - A x| > sqrt(tolerance) |b|. So it
  /// is when A is singular, or nearly, and b out of its range.
  bool inconsistent = false;
};

using IterativeSolution = BasicIterativeSolution<Real>;
using ComplexIterativeSolution = BasicIterativeSolution<Complex>;

/// Looks at an iterate and its residual; false ends the iterations.
template <Scalar T>
using BasicMonitor = std::function<bool(const Progress& progress, std::span<const T> x, std::span<const T> residual)>;
using Monitor = BasicMonitor<Real>;
using ComplexMonitor = BasicMonitor<Complex>;

namespace detail {

/// The norm of a vector of which each rank has a part.
template <Scalar T>
Real shared_norm(const SolverOptions& options, VectorNorm norm, std::span<const T> x) {
  PartialSum part = part_of_norm(norm, x);
  options.dot({&part, 1});
  return norm_of(norm, part);
}

/// The norm of the criterion.
template <Scalar T>
Real criterion_norm(const SolverOptions& options, std::span<const T> x) {
  std::vector<T> weighted(x.begin(), x.end());
  for (std::size_t i = 0; i < options.weights.size(); ++i) {
    weighted[i] = weighted[i] * options.weights[i];
  }
  if (options.dot) {
    return shared_norm<T>(options, options.norm, weighted);
  }
  const Norm kind = options.norm == VectorNorm::one   ? Norm::one
                    : options.norm == VectorNorm::two ? Norm::frobenius
                                                      : Norm::largest;
  return norm(kind, MatrixView<const T>(weighted, weighted.size(), 1));
}

/// Adds to a solution what its size says of the system. right: b, or M^-1 b where the criterion is about that.
template <Scalar T>
void assess(BasicIterativeSolution<T>& solution, const SolverOptions& options, std::span<const T> b,
            std::span<const T> right) {
  const auto largest = [&options](std::span<const T> x) {
    return options.dot ? shared_norm<T>(options, VectorNorm::infinity, x)
                       : norm(Norm::largest, MatrixView<const T>(x, x.size(), 1));
  };
  const Real size = largest(b);
  const Real right_size = criterion_norm<T>(options, right);
  if (size == 0 || right_size == 0) {
    return;
  }
  const Progress& progress = solution.progress;
  const Real& matrix_norm =
      options.criterion == Criterion::residual ? progress.matrix_norm : progress.largest_singular_value;
  solution.relative_residual = largest(solution.residual) / size;
  solution.growth = matrix_norm * (criterion_norm<T>(options, solution.x) / right_size);
  const Real epsilon = QuarnMP_x02ajf_();  // a smaller tolerance than a few of these is not what the solver works with
  const Real tolerance = std::max(options.tolerance > 0 ? options.tolerance : ::sqrt(epsilon), 10 * epsilon);
  solution.inconsistent = solution.converged && solution.relative_residual > ::sqrt(tolerance);
}

/// y := A x or A^T x (A^H x of a complex one), whatever A is: a sparse matrix, or something to call with (x, y) or with
/// (x, y, transposed).
template <Scalar T, class Operator>
void apply_operator(const Operator& a, std::span<const T> x, std::span<T> y, bool transposed) {
  if constexpr (std::same_as<Operator, SparseMatrix<T>>) {
    a.multiply(x, y, transposed ? Op::conjugate_transpose : Op::none);
  } else if constexpr (std::invocable<const Operator&, std::span<const T>, std::span<T>, bool>) {
    a(x, y, transposed);
  } else {
    require(!transposed, "F11BEF", 1,
            "Criterion::residual without matrix_norm takes an operator that is called with "
            "(x, y, transposed)");
    a(x, y);
  }
}

}  // namespace detail

/// Does what a solver asks for until it has finished or the monitor, called with the solver, returns false. a and
/// precondition: as for solve_iteratively(). Throws as IterativeSolver::next() does; the solver then has the last
/// iterate. Where rows are shared out, options.dot has to form the sums.
template <Scalar T, class Operator, class Precondition, class Watch>
void iterate(BasicIterativeSolver<T>& solver, const Operator& a, const Precondition& precondition,
             const Watch& monitor) {
  for (Request request = solver.next(); request != Request::finished; request = solver.next()) {
    const SolverDigits enough;
    if (request == Request::precondition) {
      precondition(solver.input(), solver.output());
    } else if (request == Request::monitor) {
      if (!monitor(solver)) {
        return;
      }
    } else {
      detail::require(request != Request::dot, "F11BDD", 7, "rows that are shared out, without SolverOptions::dot");
      detail::apply_operator<T>(a, solver.input(), solver.output(), request == Request::transposed_product);
    }
  }
}

namespace detail {

template <Scalar T, class Operator>
BasicIterativeSolution<T> solve_iteratively_as(
    const Operator& a, std::span<const T> b, SolverOptions options,
    const std::function<void(std::span<const T>, std::span<T>)>& precondition, std::span<const T> guess,
    const BasicMonitor<T>& monitor) {
  options.monitor = monitor && options.monitor == 0 ? 1 : options.monitor;
  BasicIterativeSolver<T> solver(b, guess, bool(precondition), options);
  iterate(solver, a, precondition, [&monitor](BasicIterativeSolver<T>& now) {
    return !monitor || monitor(now.progress(), now.input(), now.output());
  });
  BasicIterativeSolution<T> solution{
      solver.solution(), solver.residual(), solver.progress(), solver.converged(), {}, {}};
  {
    const SolverDigits enough;
    std::vector<T> right(b.begin(), b.end());
    const bool left = options.method != Method::fgmres;
    if (precondition && left && options.criterion == Criterion::preconditioned_residual) {
      precondition(b, right);
    }
    assess<T>(solution, options, b, right);
  }
  solution.relative_residual *= 1;  // to the digits of the caller
  solution.growth *= 1;
  return solution;
}

}  // namespace detail

/// Solves A x = b iteratively. a: a SparseMatrix, or a function a(x, y) that sets y to A x (a(x, y, transposed) where
/// A^T x may be asked for). precondition(x, y): sets y to M^-1 x; a null one is none. monitor: called every
/// options.monitor iterations, 0 for every one. Throws as IterativeSolver does. With fewer than 10 working digits it
/// works with 10, calls all of these so, and rounds what it returns; the residual is that of x before it was rounded.
///
/// @code
/// tesk2mp::SolverOptions options;
/// options.tolerance = tesk2mp::Real(1, -30);
/// const auto x = tesk2mp::solve_iteratively(matrix, b, options).x;
/// @endcode
template <class Operator>
IterativeSolution solve_iteratively(
    const Operator& a, std::span<const Real> b, const SolverOptions& options = {},
    const std::function<void(std::span<const Real>, std::span<Real>)>& precondition = {},
    std::span<const Real> guess = {}, const Monitor& monitor = {}) {
  return detail::solve_iteratively_as<Real>(a, b, options, precondition, guess, monitor);
}
/// The same of a complex system; criteria with the norm of A ask for A^H x.
template <class Operator>
ComplexIterativeSolution solve_iteratively(
    const Operator& a, std::span<const Complex> b, const SolverOptions& options = {},
    const std::function<void(std::span<const Complex>, std::span<Complex>)>& precondition = {},
    std::span<const Complex> guess = {}, const ComplexMonitor& monitor = {}) {
  return detail::solve_iteratively_as<Complex>(a, b, options, precondition, guess, monitor);
}

}  // namespace tesk2mp
