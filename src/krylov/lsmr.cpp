// Least squares of large matrices: entries, and the search for an x whose norms, as it is returned, are those asked
// for.
#include <optional>
#include <vector>

#include "src/dense/householder.h"
#include "src/krylov/call.h"
#include "src/krylov/lsmr_iteration.h"

namespace tesk {
namespace {

/// What the entries are given, and where their results go.
template <class T>
struct LsmrArguments {
  Integer m;
  Integer n;
  Operator<T> product;
  void* context;
  const T* b;
  QuarnFloat damp;
  QuarnFloat atol;
  QuarnFloat btol;
  QuarnFloat conlim;
  Integer most;
};
template <class T>
struct LsmrResults {
  T* x;
  QuarnFloat* rnorm;
  QuarnFloat* arnorm;
  QuarnFloat* anorm;
  QuarnFloat* acond;
  Integer* itn;
  Integer* istop;
};

template <class T>
class LsmrCall {
 public:
  explicit LsmrCall(LsmrArguments<T> given) : given_(std::move(given)) {}

  /// Returns INFO.
  Integer solve(const LsmrResults<T>& results) {
    if (const Integer wrong = first_wrong_argument(); wrong != 0) {
      return -wrong;
    }
    asked_ = {asked_tolerance(given_.atol), asked_tolerance(given_.btol), given_.conlim};
    digits_ = guarded_digits(std::max(given_.m, given_.n));
    const LsmrEnd end = iterate();
    if (end == LsmrEnd::failed) {
      return 2;
    }
    std::move(best_.x.begin(), best_.x.end(), results.x);
    *results.rnorm = std::move(best_.residual);
    *results.arnorm = std::move(best_.gradient);
    *results.anorm = std::move(best_.norm);
    *results.acond = std::move(best_.condition);
    *results.itn = iterations_;
    *results.istop = Integer(end);
    return end == LsmrEnd::exhausted ? 1 : 0;
  }

 private:
  static constexpr int kMostTries = 2;

  /// An x, and norms that belong to it.
  struct Candidate {
    std::vector<T> x;
    QuarnFloat residual;
    QuarnFloat gradient;
    QuarnFloat norm;
    QuarnFloat condition;
  };

  Integer first_wrong_argument() const {
    return first_wrong({{given_.m < 1, 1},
                        {given_.n < 1, 2},
                        {given_.product == nullptr, 3},
                        {!(given_.damp >= 0) || !isfinite(given_.damp), 6},
                        {!is_tolerance(given_.atol), 7},
                        {!is_tolerance(given_.btol), 8},
                        {!(given_.conlim >= 0), 9},
                        {given_.most < 1, 10}});
  }

  /// Where roundings have taken the recurrence away from the true residual, it begins again with twice the digits.
  LsmrEnd iterate() {
    std::optional<LsmrEnd> end;
    for (int tries = 0, digits = digits_; !end && tries < kMostTries; ++tries, digits *= 2) {
      end = try_with(digits);
    }
    return end.value_or(LsmrEnd::exhausted);
  }

  /// Where the norms of x as it is are a little larger than they may be, the iteration goes on. No value where they are
  /// far from what the recurrence takes them for.
  std::optional<LsmrEnd> try_with(int digits) {
    const typename Lsmr<T>::Multiply multiply = [this](Integer what, const T* from, T* to) {
      given_.product(given_.context, what, from, to);
    };
    std::optional<Lsmr<T>> iteration;
    // An estimate that is just small enough is seldom of a norm that is.
    LsmrTolerances internal = {asked_.a * QuarnFloat(99, -2), asked_.b * QuarnFloat(99, -2), asked_.condition};
    for (const Integer before = iterations_;; internal.a /= 2, internal.b /= 2) {
      Candidate now;
      LsmrEnd end = LsmrEnd::failed;
      QuarnFloat residual;
      QuarnFloat gradient;
      {
        const WorkingDigits more(digits);
        if (!iteration) {
          iteration.emplace(given_.m, given_.n, multiply, given_.b, given_.damp);
        }
        end = iteration->go_on(internal, given_.most - before);
        now = {iteration->x(), {}, {}, iteration->norm(), iteration->condition()};
        residual = iteration->residual();
        gradient = iteration->gradient();
      }
      iterations_ = before + iteration->iterations();
      round_elements<T>(given_.n, 1, {now.x.data(), given_.n});
      if (end == LsmrEnd::failed || !find_norms(now)) {
        return LsmrEnd::failed;
      }
      const bool as_promised = end != LsmrEnd::exhausted && holds(end, now);
      const bool parted =
          2 * (end == LsmrEnd::solved ? residual : gradient) < (end == LsmrEnd::solved ? now.residual : now.gradient);
      if (as_promised || best_.x.empty() || now.gradient < best_.gradient) {
        best_ = std::move(now);
      }
      if (as_promised || iterations_ == given_.most) {
        return as_promised ? end : LsmrEnd::exhausted;
      }
      if (parted || iteration->is_at_end()) {
        return {};
      }
    }
  }

  /// Whether the norms are as the end says, but for roundings of x.
  bool holds(LsmrEnd end, Candidate& at) const {
    if (end != LsmrEnd::solved && end != LsmrEnd::least_squares) {
      return true;
    }
    const QuarnFloat size = at.norm * length_of(given_.n, OneBasedVector<T>(at.x.data(), 1));
    const QuarnFloat rounding = kRoundingUnits * epsilon() * size;
    if (end == LsmrEnd::least_squares) {
      return at.gradient <= at.norm * (asked_.a * at.residual + rounding);
    }
    const QuarnFloat size_of_b = length_of(given_.m, OneBasedVector<T>(const_cast<T*>(given_.b), 1));
    return at.residual <= asked_.b * size_of_b + asked_.a * size + rounding;
  }

  /// Of the residual of x with the damping below it, and of its product with the adjoint; false: not finite.
  bool find_norms(Candidate& at) const {
    const auto m = given_.m;
    const auto n = given_.n;
    {
      const WorkingDigits more(digits_);
      std::vector<T> r(static_cast<std::size_t>(m));
      std::vector<T> g(static_cast<std::size_t>(n));
      std::vector<T> own = at.x;
      given_.product(given_.context, kProduct, own.data(), r.data());
      for (Integer i = 0; i < m; ++i) {
        r[std::size_t(i)] = given_.b[i] - r[std::size_t(i)];
      }
      given_.product(given_.context, kAdjointProduct, r.data(), g.data());
      const OneBasedVector<T> damped(own.data(), 1);
      scale(n, given_.damp, damped);
      add_multiple(n, T(-given_.damp), damped, OneBasedVector<T>(g.data(), 1));
      at.residual = quarn::abs(Complex(length_of(m, OneBasedVector<T>(r.data(), 1)), length_of(n, damped)));
      at.gradient = length_of(n, OneBasedVector<T>(g.data(), 1));
    }
    for (QuarnFloat* const norm : {&at.residual, &at.gradient, &at.norm, &at.condition}) {
      *norm *= 1;
    }
    return isfinite(at.residual) && isfinite(at.gradient);
  }

  LsmrArguments<T> given_;
  LsmrTolerances asked_;
  int digits_ = 0;
  Candidate best_;
  Integer iterations_ = 0;
};

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dlsmr_(Integer m, Integer n, QuarnRealOperator product, void* context, const QuarnFloat* b,
                     QuarnFloat damp, QuarnFloat atol, QuarnFloat btol, QuarnFloat conlim, Integer most, QuarnFloat* x,
                     QuarnFloat* rnorm, QuarnFloat* arnorm, QuarnFloat* anorm, QuarnFloat* acond, Integer* itn,
                     Integer* istop, Integer* info) {
  tesk::LsmrCall<QuarnFloat> call(
      {m, n, product, context, b, std::move(damp), std::move(atol), std::move(btol), std::move(conlim), most});
  *info = call.solve({x, rnorm, arnorm, anorm, acond, itn, istop});
}

void QuarnMPX_zlsmr_(Integer m, Integer n, QuarnComplexOperator product, void* context, const Complex* b,
                     QuarnFloat damp, QuarnFloat atol, QuarnFloat btol, QuarnFloat conlim, Integer most, Complex* x,
                     QuarnFloat* rnorm, QuarnFloat* arnorm, QuarnFloat* anorm, QuarnFloat* acond, Integer* itn,
                     Integer* istop, Integer* info) {
  tesk::LsmrCall<Complex> call(
      {m, n, product, context, b, std::move(damp), std::move(atol), std::move(btol), std::move(conlim), most});
  *info = call.solve({x, rnorm, arnorm, anorm, acond, itn, istop});
}
}
