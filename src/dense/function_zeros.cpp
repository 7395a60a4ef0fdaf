// A zero of a function by reverse communication: the search for an interval, and its refinement by G. E. Alefeld, F. A.
// Potra, Y. Shi, Algorithm 748: Enclosing zeros of continuous functions, ACM Trans. Math. Softw. 21 (1995).
#include "tesk2mp/function_zeros.h"

#include <algorithm>
#include <utility>

#include "quarn/functions.h"
#include "src/frame/classic.h"
#include "src/frame/report.h"

namespace tesk {
namespace {

enum Call : Integer { kBeginWithValues = -1, kBegin = 0, kValue = 1, kEnd = 2 };

constexpr const char* kWrongArgument = " ** On entry, argument%5ld had an illegal value.";

int sign_of(const QuarnFloat& x) { return x == 0 ? 0 : signbit(x) ? -1 : 1; }

/// The whole number in a place of the state; 0 for anything else.
Integer whole_number(const QuarnFloat& place, Integer most) {
  return place >= 1 && place <= most && floor(place) == place ? FloatToInt(place) : 0;
}

/// The search: X(k) = start + direction 2^k h alternates with the other side.
class Search {
 public:
  Search(QuarnFloat* work, const QuarnFloat& h, const QuarnFloat& low, const QuarnFloat& high)
      : work_(work), h_(h), low_(low), high_(high) {}

  /// Value of kRunning that a search under way has.
  bool running() const {
    return whole_number(work_[kRunning], 1) == 1 && std::all_of(work_ + kOnes, work_ + kStart, [](const QuarnFloat& x) {
             return x == 0 || whole_number(x, 9) > 0;
           });
  }
  void begin(const QuarnFloat& x) {
    work_[kRunning] = 1;
    set_step(0);
    work_[kStart] = x;
  }
  void end() { work_[kRunning] = 0; }

  /// What has been searched.
  const QuarnFloat& left() const { return work_[kLeft]; }
  const QuarnFloat& right() const { return work_[kRight]; }

  /// Takes F(x) in; true when the interval from x to y is found.
  bool take(const QuarnFloat& x, const QuarnFloat& fx, QuarnFloat* y, QuarnFloat* fy) {
    if (fx == 0) {
      *y = x;
      *fy = fx;
      return true;
    }
    if (step() == 0) {
      work_[kRight] = work_[kLeft] = x;
      work_[kRightValue] = work_[kLeftValue] = fx;
      return false;
    }
    const bool right = x > work_[kRight];
    QuarnFloat& end = work_[right ? kRight : kLeft];
    QuarnFloat& value = work_[right ? kRightValue : kLeftValue];
    *y = end;
    *fy = value;
    if (sign_of(fx) != sign_of(value)) {
      return true;
    }
    end = x;
    value = fx;
    return false;
  }

  /// The next point; false when there is none.
  bool next(QuarnFloat* x) {
    constexpr Integer kMostSteps = 400;
    for (Integer k = step() + 1; k <= kMostSteps; ++k) {
      set_step(k);
      const QuarnFloat distance = scaled((k - 1) / 2);
      const bool forward = k % 2 == 1;
      QuarnFloat point = forward ? work_[kStart] + distance : work_[kStart] - distance;
      point = fmin(fmax(point, low_), high_);
      if (isfinite(point) && (point > work_[kRight] || point < work_[kLeft])) {
        *x = std::move(point);
        return true;
      }
    }
    return false;
  }

 private:
  enum Place { kRunning, kOnes, kTens, kHundreds, kStart, kLeft, kLeftValue, kRight, kRightValue };

  /// A digit in each of three places: numbers may have one digit.
  Integer step() const {
    return FloatToInt(work_[kOnes]) + 10 * FloatToInt(work_[kTens]) + 100 * FloatToInt(work_[kHundreds]);
  }
  void set_step(Integer step) {
    const Integer tens = step / 10;
    const Integer hundreds = step / 100;
    work_[kOnes] = step % 10;
    work_[kTens] = tens % 10;
    work_[kHundreds] = hundreds;
  }

  QuarnFloat scaled(Integer doublings) const {
    QuarnFloat distance = h_;
    for (Integer i = 0; i < doublings; ++i) {
      distance *= 2;
    }
    return distance;
  }

  QuarnFloat* work_;
  const QuarnFloat& h_;
  const QuarnFloat& low_;
  const QuarnFloat& high_;
};

void search(Report& report, Integer* irevcm, QuarnFloat* x, const QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy,
            const QuarnFloat& h, const QuarnFloat& low, const QuarnFloat& high, QuarnFloat* work) {
  Search state(work, h, low, high);
  const Integer call = std::exchange(*irevcm, kEnd);
  const Integer wrong = call != kBegin && call != kValue         ? 1
                        : !isfinite(*x) || *x < low || *x > high ? 2
                        : !isfinite(h) || h == 0                 ? 6
                        : !(low < high)                          ? 7
                        : call == kValue && !state.running()     ? 9
                                                                 : 0;
  if (wrong != 0) {
    return report.fail(1, 99999, kWrongArgument, wrong);
  }
  if (call == kBegin) {
    state.begin(*x);
    *irevcm = kValue;
    return;
  }
  if (isnan(*fx)) {
    state.end();
    return report.fail(2, 99998, " ** The function has no value at X = %12.4e.", *x);
  }
  if (state.take(*x, *fx, y, fy)) {
    return state.end();
  }
  if (!state.next(x)) {
    state.end();
    return report.fail(3, 99997,
                       " ** The function has the same sign wherever it was asked for from X = %12.4e to %12.4e.",
                       state.left(), state.right());
  }
  *irevcm = kValue;
}

/// The refinement. a < b bracket the zero, d was an end before, e another one before that.
class ZeroRefinement {
 public:
  ZeroRefinement(QuarnFloat* work, const QuarnFloat& tolerance) : work_(work), tolerance_(tolerance) {}

  enum Phase : Integer { kIdle = 0, kFirst, kSecond, kSecant, kQuadratic, kInverse, kInverseAgain, kLong, kHalf };

  Phase phase() const { return Phase(whole_number(work_[kPhase], kHalf)); }
  void set_phase(Integer phase) { work_[kPhase] = phase; }

  /// Both ends and their values; false where the signs agree.
  bool begin(const QuarnFloat& x, const QuarnFloat& fx, const QuarnFloat& y, const QuarnFloat& fy) {
    const bool ordered = x < y;
    a() = ordered ? x : y;
    fa() = ordered ? fx : fy;
    b() = ordered ? y : x;
    fb() = ordered ? fy : fx;
    d() = e() = a();
    fd() = fe() = fa();
    work_[kStartValue] = fmax(fabs(fx), fabs(fy));
    work_[kHalvings] = work_[kRounds] = 0;
    set_phase(kSecant);
    return sign_of(fx) * sign_of(fy) <= 0;
  }

  /// The value at c, which was asked for; c becomes an end. True at the end.
  bool take(const QuarnFloat& c, const QuarnFloat& fc) {
    e() = d();
    fe() = fd();
    const bool left = sign_of(fc) == sign_of(fa());
    d() = left ? a() : b();
    fd() = left ? fa() : fb();
    (left ? a() : b()) = c;
    (left ? fa() : fb()) = fc;
    if (fc == 0) {
      a() = b() = c;
      fa() = fb() = fc;
    }
    return finished();
  }
  bool finished() const {
    const QuarnFloat middle = halfway();
    return fa() == 0 || fb() == 0 || b() - a() <= tolerance_ || middle <= a() || middle >= b();
  }

  /// The next point to ask for.
  QuarnFloat next() {
    switch (phase()) {
      case kSecant:
        set_phase(kQuadratic);
        return inside(secant());
      case kQuadratic:
        set_phase(kInverse);
        return inside(quadratic(2));
      case kInverse:
        work_[kWidth] = b() - a();
        set_phase(kInverseAgain);
        return inside(inverse_cubic(2));
      case kInverseAgain:
        set_phase(kLong);
        return inside(inverse_cubic(3));
      case kLong: {
        set_phase(kHalf);
        return inside(long_secant());
      }
      default:
        set_phase(kInverse);
        // Halved again and again, an interval may still be far from a zero of a very different size.
        if (work_[kRounds] < kOrdinary && (b() - a()) * 2 < work_[kWidth]) {
          work_[kRounds] += 1;
          return next();
        }
        return middle();
    }
  }

  /// The end with the smaller value, and the other one.
  void deliver(QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy) const {
    const bool left = fabs(fa()) <= fabs(fb());
    *x = left ? a() : b();
    *fx = left ? fa() : fb();
    const bool exact = *fx == 0;
    *y = left != exact ? b() : a();
    *fy = left != exact ? fb() : fa();
  }
  bool is_pole() const { return fmin(fabs(fa()), fabs(fb())) > work_[kStartValue]; }

  QuarnFloat& a() const { return work_[kA]; }
  QuarnFloat& b() const { return work_[kB]; }

 private:
  enum Place { kPhase, kHalvings, kWidth, kStartValue, kA, kFa, kB, kFb, kD, kFd, kE, kFe, kRounds };

  // Counts stand in numbers that may have one digit.
  static constexpr int kOrdinary = 8;

  QuarnFloat& fa() const { return work_[kFa]; }
  QuarnFloat& fb() const { return work_[kFb]; }
  QuarnFloat& d() const { return work_[kD]; }
  QuarnFloat& fd() const { return work_[kFd]; }
  QuarnFloat& e() const { return work_[kE]; }
  QuarnFloat& fe() const { return work_[kFe]; }

  QuarnFloat halfway() const { return a() + (b() - a()) / 2; }

  /// Halfway; after many times in exponents, through zero.
  QuarnFloat middle() {
    constexpr int kFarthest = 999999998;
    constexpr int kNear = 2;
    if (work_[kHalvings] < kOrdinary) {
      work_[kHalvings] += 1;
      return halfway();
    }
    if (sign_of(a()) * sign_of(b()) < 0) {
      return {};
    }
    const int low = a() == 0 ? -kFarthest : ilogb(a());
    const int high = b() == 0 ? -kFarthest : ilogb(b());
    if (std::abs(low - high) <= kNear) {
      return halfway();
    }
    QuarnFloat point(1, (low + high) / 2);
    if (sign_of(a()) < 0 || sign_of(b()) < 0) {
      point = -point;
    }
    return point > a() && point < b() ? point : halfway();
  }

  /// c, no nearer to an end than makes sense; the middle for what is none between them.
  QuarnFloat inside(const QuarnFloat& c) {
    if (!isfinite(c) || c < a() || c > b()) {
      return middle();
    }
    const auto least = [&](const QuarnFloat& end) {
      return fmax(tolerance_ / 2, end == 0 ? end : QuarnFloat(1, ilogb(end) + 1 - QuarnDigits()));
    };
    const QuarnFloat moved = fmin(fmax(c, a() + least(a())), b() - least(b()));
    return moved > a() && moved < b() ? moved : middle();
  }

  QuarnFloat secant() const { return a() - fa() * ((b() - a()) / (fb() - fa())); }

  /// Some steps of Newton's iteration on the parabola through three points.
  QuarnFloat quadratic(int steps) const {
    const QuarnFloat slope = (fb() - fa()) / (b() - a());
    const QuarnFloat curvature = ((fd() - fb()) / (d() - b()) - slope) / (d() - a());
    if (!isfinite(curvature) || curvature == 0) {
      return secant();
    }
    QuarnFloat c = sign_of(curvature) * sign_of(fa()) > 0 ? a() : b();
    for (int i = 0; i < steps; ++i) {
      const QuarnFloat derivative = slope + curvature * (2 * c - a() - b());
      if (derivative == 0) {
        return secant();
      }
      c -= (fa() + (slope + curvature * (c - b())) * (c - a())) / derivative;
    }
    return c;
  }

  /// The value at 0 of the cubic that takes the four values to their points: Aitken's and Neville's interpolation.
  QuarnFloat inverse_cubic(int steps) const {
    if (fa() == fb() || fa() == fd() || fa() == fe() || fb() == fd() || fb() == fe() || fd() == fe()) {
      return quadratic(steps);
    }
    const QuarnFloat q11 = (d() - e()) * fd() / (fe() - fd());
    const QuarnFloat q21 = (b() - d()) * fb() / (fd() - fb());
    const QuarnFloat q31 = (a() - b()) * fa() / (fb() - fa());
    const QuarnFloat d21 = (b() - d()) * fd() / (fd() - fb());
    const QuarnFloat d31 = (a() - b()) * fb() / (fb() - fa());
    const QuarnFloat q22 = (d21 - q11) * fb() / (fe() - fb());
    const QuarnFloat q32 = (d31 - q21) * fa() / (fd() - fa());
    const QuarnFloat d32 = (d31 - q21) * fd() / (fd() - fa());
    const QuarnFloat q33 = (d32 - q22) * fa() / (fe() - fa());
    QuarnFloat c = a() + (q31 + q32 + q33);
    return c > a() && c < b() ? c : quadratic(steps);
  }

  /// From the end with the smaller value twice as far as the secant goes.
  QuarnFloat long_secant() {
    const bool left = fabs(fa()) < fabs(fb());
    const QuarnFloat& u = left ? a() : b();
    const QuarnFloat& fu = left ? fa() : fb();
    QuarnFloat c = u - 2 * (fu / (fb() - fa())) * (b() - a());
    return fabs(c - u) * 2 > b() - a() ? middle() : c;
  }

  QuarnFloat* work_;
  const QuarnFloat& tolerance_;
};

void refine(Report& report, Integer* irevcm, QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy,
            const QuarnFloat& tolerance, QuarnFloat* work) {
  ZeroRefinement state(work, tolerance);
  const Integer call = std::exchange(*irevcm, kEnd);
  const bool begins = call == kBegin || call == kBeginWithValues;
  const Integer wrong = !begins && call != kValue                           ? 1
                        : !isfinite(*x)                                     ? 2
                        : begins && (!isfinite(*y) || *x == *y)             ? 4
                        : !(tolerance >= 0)                                 ? 6
                        : !begins && state.phase() == ZeroRefinement::kIdle ? 7
                                                                            : 0;
  if (wrong != 0) {
    return report.fail(1, 99999, kWrongArgument, wrong);
  }
  if (call == kBegin) {
    state.set_phase(ZeroRefinement::kFirst);
    *irevcm = kValue;
    return;
  }
  if (isnan(*fx) || (call == kBeginWithValues && isnan(*fy))) {
    state.set_phase(ZeroRefinement::kIdle);
    return report.fail(3, 99997, " ** The function has no value at X = %12.4e.", isnan(*fx) ? *x : *y);
  }
  if (call == kValue && state.phase() == ZeroRefinement::kFirst) {
    std::swap(*x, *y);
    *fy = *fx;
    state.set_phase(ZeroRefinement::kSecond);
    *irevcm = kValue;
    return;
  }
  bool finished = false;
  if (begins || state.phase() == ZeroRefinement::kSecond) {
    if (!state.begin(*x, *fx, *y, *fy)) {
      state.set_phase(ZeroRefinement::kIdle);
      return report.fail(2, 99998, " ** The function has the same sign at both ends of the interval.");
    }
    finished = state.finished();
  } else {
    finished = state.take(*x, *fx);
  }
  if (!finished) {
    *x = state.next();
    *irevcm = kValue;
    return;
  }
  state.set_phase(ZeroRefinement::kIdle);
  state.deliver(x, fx, y, fy);
  if (state.is_pole()) {
    report.fail(4, 99996, " ** The function changes its sign at a pole near X = %12.4e.", *x);
  }
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dbrackn_(Integer* irevcm, QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy, QuarnFloat h,
                       QuarnFloat boundl, QuarnFloat boundu, QuarnFloat* work, char* message_buffer, Integer* ifail,
                       int /*buffer_length*/) {
  tesk::Report report("DBRACK", message_buffer, ifail);
  tesk::search(report, irevcm, x, fx, y, fy, h, boundl, boundu, work);
}

void QuarnMPX_dbrack_(Integer* irevcm, QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy,
                      const QuarnFloat* h, const QuarnFloat* boundl, const QuarnFloat* boundu, QuarnFloat* work,
                      Integer* ifail) {
  tesk::call_core("DBRACK", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) {
    QuarnMPX_dbrackn_(irevcm, x, fx, y, fy, *h, *boundl, *boundu, work, message_buffer, outcome, buffer_length);
  });
}

void QuarnMPX_dzeroinn_(Integer* irevcm, QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy, QuarnFloat tol,
                        QuarnFloat* work, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  tesk::Report report("DZEROIN", message_buffer, ifail);
  tesk::refine(report, irevcm, x, fx, y, fy, tol, work);
}

void QuarnMPX_dzeroin_(Integer* irevcm, QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy,
                       const QuarnFloat* tol, QuarnFloat* work, Integer* ifail) {
  tesk::call_core("DZEROIN", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) {
    QuarnMPX_dzeroinn_(irevcm, x, fx, y, fy, *tol, work, message_buffer, outcome, buffer_length);
  });
}
}
