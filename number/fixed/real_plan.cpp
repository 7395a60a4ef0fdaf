#include "number/fixed/real_plan.h"

#include <cmath>
#include <utility>

#include "number/limbs/scratch.h"

namespace quarn::block {

namespace {

/// Appends the magnitudes of cosine and sine.
void append(std::vector<Limb>& out, const Rotation& rotation) {
  out.insert(out.end(), rotation.cosine.begin(), rotation.cosine.end());
  out.insert(out.end(), rotation.sine.begin(), rotation.sine.end());
}

}  // namespace
}  // namespace quarn::block

using quarn::Limb;
using namespace quarn::block;

QuarnRealTransform::Plan::Plan(Kind kind, Integer length, int digit_count)
    : route(kind, length),
      digits(digit_count),
      format(format_for(Integer(route.sums()), digits, route.steps(), std::sqrt(double(route.period)))),
      reader(format.places),
      sums(Integer(route.sums()), format) {
  const quarn::WorkingDigits working(int(64 * (format.places + 1) * 0.30103) + 4);
  const DecimalReader constants(format.places + 1);
  const std::int64_t n = route.n;
  const bool is_even = route.period % 2 == 0;
  // What the results are, in the sums as they stand when they are written.
  QuarnFloat factor = 1;
  if (route.form == Route::Form::quarter) {
    factor = 2;
  } else if (route.form == Route::Form::forward) {
    if (is_even) {
      factor /= 2;
    }
    if (route.turned) {
      factor *= 2;
    } else if (kind == Kind::dct4 || kind == Kind::dst4) {
      factor = sqrt(QuarnFloat(2));
    }
  }
  factor /= sums.scale();
  for (const QuarnDivisor divisor : {QuarnDivisor::one, QuarnDivisor::root, QuarnDivisor::length}) {
    const QuarnFloat value = factor / value_of(divisor, QuarnFloat(route.logical_length()));
    writers[int(divisor)] = writers_for(value, format, constants);
    if (divisor == QuarnDivisor::root) {
      end_writers = writers_for(value / sqrt(QuarnFloat(2)), format, constants);
    }
  }
  const std::int64_t finest = route.form == Route::Form::quarter ? 8 * n : route.turned ? 4 * n : route.period;
  const UnitCircle circle(finest, format.places);
  root_half = UnitCircle(8, format.places).rotation(1).cosine;
  if (route.form == Route::Form::quarter) {
    for (std::int64_t k = 0; k < n / 2; ++k) {
      append(quarter_turns, circle.rotation(4 * k + 1));
      if (k > 0) {
        append(turns, circle.rotation(4 * k));
      }
    }
    return;
  }
  if (is_even) {
    for (std::int64_t k = 1; 4 * k < route.period; ++k) {
      append(turns, circle.rotation(k * (finest / route.period)));
    }
  }
  if (route.turned) {
    for (std::int64_t k = 1; 2 * k <= n; ++k) {
      append(quarter_turns, circle.rotation(k));
    }
  }
  if (route.form == Route::Form::forward) {
    for (std::int64_t j = 0; j < route.period; ++j) {
      from.push_back(route.origin(j));
    }
  }
}

Survey QuarnRealTransform::Plan::survey(const Source& x) const {
  Survey data;
  if (route.kind != Kind::from_spectrum) {
    for (Integer i = 0; i < route.n; ++i) {
      data.look(x[i]);
    }
    return data;
  }
  for (Integer k = 0; 2 * k <= route.n; ++k) {
    data.look(x[2 * k]);
    if (k != 0 && 2 * k != route.n) {
      data.look(x[2 * k + 1]);
    }
  }
  return data;
}

/// One transform of data that are finite and not all zero.
template <class Length>
class QuarnRealTransform::Plan::Run {
 public:
  Run(const Plan& plan, const Survey& data, const Source& x, const Target& y, QuarnDivisor divisor, Length places)
      : plan_(plan),
        n_(plan.route.n),
        period_(plan.route.period),
        x_(x),
        y_(y),
        exponent_(data.exponent),
        doublings_(std::size_t(data.doublings())),
        places_(places),
        words_(places * kPerPlace<Limb>),
        read_(plan.reader, plan.format, data, places),
        scales_input_(divisor == QuarnDivisor::root && plan.route.kind != Kind::dct2 && plan.route.kind != Kind::dst2),
        scales_output_(divisor == QuarnDivisor::root && plan.route.form != Route::Form::inverse),
        writer_(plan.writers[std::size_t(divisor)][doublings_]),
        z_(2 * std::size_t(words_) * std::size_t(plan.route.sums())) {}

  void operator()() {
    switch (plan_.route.form) {
      case Route::Form::forward:
        forward();
        break;
      case Route::Form::inverse:
        inverse();
        break;
      case Route::Form::quarter:
        quarter();
        break;
    }
  }

 private:
  static constexpr int kRoom = 2 * room<Limb, Length>();

  Limb* input(std::int64_t k) { return &z_[2 * std::size_t(words_) * std::size_t(k)]; }
  Limb* sum(std::int64_t k) { return &z_[2 * std::size_t(words_) * plan_.sums.place(Integer(k))]; }
  const Limb* turn(const std::vector<Limb>& table, std::int64_t index) const {
    return &table[2 * std::size_t(words_) * std::size_t(index)];
  }
  void zero(Limb* part) const { std::fill_n(part, words_, Limb(0)); }
  void negate(Limb* part) const { negate_if(part, part, ~Limb(0), places_); }

  /// In orthogonal transforms, does element i of the data or result i have no partner?
  bool is_alone(std::int64_t i) const {
    switch (plan_.route.kind) {
      case Kind::dct1:
        return i == 0 || i == n_ - 1;
      case Kind::dct2:
      case Kind::dct3:
        return i == 0;
      case Kind::dst2:
      case Kind::dst3:
        return i == n_ - 1;
      default:
        return false;
    }
  }

  /// Element i of the data of a cosine or sine transform, or part i of a spectrum.
  void read(Limb* part, std::int64_t i, bool negated) const {
    read_(part, x_[i], negated);
    if (scales_input_ && is_alone(i)) {
      Limb product[kRoom];
      multiply_fraction(product, part, plan_.root_half.data(), places_);
      add(part, product, product, places_);
    }
  }

  void write(std::int64_t i, const Limb* part, bool negated) const {
    const DecimalWriter& writer = scales_output_ && is_alone(i) ? plan_.end_writers[doublings_] : writer_;
    y_[i] = writer.write(part, exponent_, negated, plan_.digits, places_);
  }

  /// From a and b, numbers k and period / 2 - k of one side, those of the other one: a + conj b + g and the conjugate
  /// of a + conj b - g, g = -i w (a - conj b) or, inverse, i conj(w) (a - conj b), w = exp(-2 pi i k / period).
  template <bool kInverse>
  void pair(Limb* a, Limb* b, const Limb* w) const {
    const int n = words_;
    Limb s[kRoom];
    Limb d[kRoom];
    add(s, a, b, places_);
    subtract(s + n, a + n, b + n, places_);
    subtract(d, a, b, places_);
    add(d + n, a + n, b + n, places_);
    rotate<kInverse, false>(d, d, w, places_);
    // g = -i d = (d_im, -d_re), or i d.
    if constexpr (kInverse) {
      subtract(a, s, d + n, places_);
      add(a + n, s + n, d, places_);
      add(b, s, d + n, places_);
      subtract(b + n, d, s + n, places_);
    } else {
      add(a, s, d + n, places_);
      subtract(a + n, s + n, d, places_);
      subtract(b, s, d + n, places_);
      add(b + n, s + n, d, places_);
      negate(b + n);
    }
  }

  void forward() {
    const bool is_even = period_ % 2 == 0;
    for (std::int64_t j = 0; j < period_; ++j) {
      Limb* const part = is_even ? z_.data() + std::size_t(words_) * std::size_t(j) : input(j);
      const std::int64_t source = plan_.from[std::size_t(j)];
      if (source == 0) {
        zero(part);
      } else {
        read(part, std::abs(source) - 1, source < 0);
      }
      if (!is_even) {
        zero(part + words_);
      }
    }
    plan_.sums.run(z_.data());
    if (!is_even) {
      zero(sum(0) + words_);
      for (std::int64_t k = 0; 2 * k < period_; ++k) {
        emit(k, sum(k));
      }
      return;
    }
    const std::int64_t half = period_ / 2;
    Limb first[kRoom];
    Limb last[kRoom];
    add(first, sum(0), sum(0) + words_, places_);
    subtract(last, sum(0), sum(0) + words_, places_);
    add(first, first, first, places_);
    add(last, last, last, places_);
    zero(first + words_);
    zero(last + words_);
    emit(0, first);
    emit(half, last);
    for (std::int64_t k = 1; 2 * k < half; ++k) {
      Limb* const a = sum(k);
      Limb* const b = sum(half - k);
      pair<false>(a, b, turn(plan_.turns, k - 1));
      emit(k, a);
      emit(half - k, b);
    }
    if (half % 2 == 0) {
      Limb* const middle = sum(half / 2);
      add(middle, middle, middle, places_);
      add(middle + words_, middle + words_, middle + words_, places_);
      negate(middle + words_);
      emit(half / 2, middle);
    }
  }

  /// Takes number k of the spectrum, 0 <= k <= period / 2.
  void emit(std::int64_t k, Limb* v) {
    switch (plan_.route.kind) {
      case Kind::to_spectrum:
        write(2 * k, v, false);
        write(2 * k + 1, v + words_, false);
        return;
      case Kind::dct1:
        write(k, v, false);
        return;
      case Kind::dst1:
        if (k != 0 && k <= n_) {
          write(k - 1, v + words_, true);
        }
        return;
      case Kind::dct4:
      case Kind::dst4:
        return emit_odd_quarter(k, v);
      default:
        break;
    }
    if (k != 0) {
      rotate<false, false>(v, v, turn(plan_.quarter_turns, k - 1), places_);
    }
    const bool is_sine = plan_.route.is_sine;
    write(is_sine ? n_ - 1 - k : k, v, false);
    if (k != 0 && 2 * k != n_) {
      write(is_sine ? k - 1 : n_ - k, v + words_, true);
    }
  }

  /// Type 4 of an odd length: result b is +-sqrt(1/2) (+-re +-im) of number 8 k modulo n, 8 k + n standing for b.
  void emit_odd_quarter(std::int64_t number, Limb* v) {
    // The inverse of 8 modulo n.
    std::int64_t eighth = 1;
    while (eighth % 8 != 0) {
      eighth += n_;
    }
    eighth /= 8;
    const std::int64_t k = number * eighth % n_;
    const bool cosine_negative = n_ % 8 == 3 || n_ % 8 == 5;
    const bool sine_negative = n_ % 8 >= 5;
    const auto put = [&](std::int64_t place, bool conjugate) {
      Limb value[kRoom];
      if (cosine_negative == (sine_negative != conjugate)) {
        add(value, v, v + words_, places_);
      } else {
        subtract(value, v, v + words_, places_);
      }
      const std::int64_t representative = odd_representative(place, n_);
      const std::int64_t m = std::abs(representative) - 1;
      const bool alternate = plan_.route.is_sine && m % 2 == 1;
      write(m, value, (cosine_negative != (representative < 0)) != alternate);
    };
    put(k, false);
    if (number != 0) {
      put(n_ - k, true);
    }
  }

  /// Number k of the spectrum whose inverse is wanted, 0 <= k <= period / 2.
  void spectrum(Limb* v, std::int64_t k) const {
    const bool is_real = k == 0 || (2 * k == n_ && plan_.route.kind == Kind::from_spectrum);
    if (plan_.route.kind == Kind::from_spectrum) {
      read(v, 2 * k, false);
      if (!is_real) {
        read(v + words_, 2 * k + 1, false);
      }
    } else {
      const bool is_sine = plan_.route.is_sine;
      read(v, is_sine ? n_ - 1 - k : k, false);
      if (!is_real) {
        read(v + words_, is_sine ? k - 1 : n_ - k, true);
        rotate<true, false>(v, v, turn(plan_.quarter_turns, k - 1), places_);
      }
    }
    if (is_real) {
      zero(v + words_);
    }
  }

  void inverse() {
    if (period_ % 2 == 1) {
      // Forward with the conjugates.
      spectrum(input(0), 0);
      for (std::int64_t k = 1; 2 * k < period_; ++k) {
        Limb* const mirror = input(period_ - k);
        spectrum(mirror, k);
        std::copy_n(mirror, 2 * words_, input(k));
        negate(input(k) + words_);
      }
      plan_.sums.run(z_.data());
      for (std::int64_t j = 0; j < period_; ++j) {
        put(j, sum(j), false);
      }
      return;
    }
    const std::int64_t half = period_ / 2;
    Limb first[kRoom];
    Limb last[kRoom];
    spectrum(first, 0);
    spectrum(last, half);
    // The last number is real up to rounding.
    add(input(0), first, last, places_);
    subtract(input(0) + words_, last, first, places_);
    for (std::int64_t k = 1; 2 * k < half; ++k) {
      Limb* const a = input(k);
      Limb* const b = input(half - k);
      spectrum(a, k);
      spectrum(b, half - k);
      pair<true>(a, b, turn(plan_.turns, k - 1));
      negate(a + words_);
      negate(b + words_);
    }
    if (half % 2 == 0) {
      Limb* const middle = input(half / 2);
      spectrum(middle, half / 2);
      add(middle, middle, middle, places_);
      add(middle + words_, middle + words_, middle + words_, places_);
    }
    plan_.sums.run(z_.data());
    for (std::int64_t j = 0; j < half; ++j) {
      put(2 * j, sum(j), false);
      put(2 * j + 1, sum(j) + words_, true);
    }
  }

  /// Takes element j of the period.
  void put(std::int64_t j, const Limb* part, bool negated) const {
    if (plan_.route.kind == Kind::from_spectrum) {
      return write(j, part, negated);
    }
    const std::int64_t place = j < (n_ + 1) / 2 ? 2 * j : 2 * (n_ - j) - 1;
    write(place, part, negated != (plan_.route.is_sine && place % 2 == 1));
  }

  void quarter() {
    const bool is_sine = plan_.route.is_sine;
    for (std::int64_t j = 0; j < n_ / 2; ++j) {
      Limb* const z = input(j);
      read(z, is_sine ? n_ - 1 - 2 * j : 2 * j, false);
      read(z + words_, is_sine ? 2 * j : n_ - 1 - 2 * j, false);
      rotate<false, false>(z, z, turn(plan_.quarter_turns, j), places_);
    }
    plan_.sums.run(z_.data());
    for (std::int64_t k = 0; k < n_ / 2; ++k) {
      Limb* const z = sum(k);
      if (k != 0) {
        rotate<false, false>(z, z, turn(plan_.turns, k - 1), places_);
      }
      write(2 * k, z, false);
      // An odd result: n is even.
      write(n_ - 1 - 2 * k, z + words_, !is_sine);
    }
  }

  const Plan& plan_;
  std::int64_t n_;
  std::int64_t period_;
  const Source& x_;
  const Target& y_;
  std::int64_t exponent_;
  std::size_t doublings_;
  Length places_;
  int words_;
  BlockReader<Length> read_;
  bool scales_input_;
  bool scales_output_;
  const DecimalWriter& writer_;
  quarn::Scratch<Limb> z_;
};

namespace {

/// What the data make of the results exactly, whatever their rounding.
struct Symmetry {
  /// Parts 0, 2, ... or 1, 3, ... are zero, since the data are the same, or the opposite, in reverse.
  bool even_zero = false;
  bool odd_zero = false;
  /// The results are the same in reverse (1) or the opposite (-1), since such parts of the data are zero.
  int mirror = 0;

  template <class Source>
  Symmetry(const Route& route, const Source& x) {
    if (route.kind == RealKind::dct4 || route.kind == RealKind::dst4) {
      return;
    }
    if (route.form == Route::Form::forward) {
      look_in_reverse(route, x);
    }
    if (route.form == Route::Form::inverse || route.kind == RealKind::dct1 || route.kind == RealKind::dst1) {
      look_at_zeros(route, x);
    }
  }

  /// Of n results.
  template <class Target>
  void mirror_results(const Route& route, const Target& y) const {
    const std::int64_t first = route.kind == RealKind::from_spectrum ? 1 : 0;
    const std::int64_t last = route.n - 1;
    for (std::int64_t i = first, j = last; i <= j && mirror != 0; ++i, --j) {
      if (mirror < 0) {
        y[j] = i == j || quarn::kind_of(y[i]) == quarn::Kind::zero ? QuarnFloat() : -y[i];
      } else {
        y[j] = y[i];
      }
    }
    if (first == 1 && mirror < 0) {
      y[0] = QuarnFloat();
    }
  }

 private:
  template <class Source>
  void look_in_reverse(const Route& route, const Source& x) {
    const bool is_spectrum = route.kind == RealKind::to_spectrum;
    bool even = true;
    bool odd = true;
    for (std::int64_t j = 0; 2 * j <= route.n && (even || odd); ++j) {
      const QuarnFloat& a = x[j];
      const QuarnFloat& b = x[is_spectrum ? (route.n - j) % route.n : std::max(route.n - 1 - j, std::int64_t(0))];
      even = even && a == b;
      odd = odd && a == -b;
    }
    even_zero = odd;
    odd_zero = even;
  }

  template <class Source>
  void look_at_zeros(const Route& route, const Source& x) {
    const bool is_spectrum = route.kind == RealKind::from_spectrum;
    const std::int64_t parts = is_spectrum ? 2 * (route.n / 2 + 1) : route.n;
    bool none[2] = {true, true};
    for (std::int64_t i = 0; i < parts && (none[0] || none[1]); ++i) {
      const bool is_ignored = is_spectrum && (i == 1 || i == route.n + 1);
      none[i % 2] = none[i % 2] && (is_ignored || quarn::kind_of(x[i]) == quarn::Kind::zero);
    }
    mirror = none[1] ? 1 : none[0] ? -1 : 0;
  }
};

}  // namespace

void QuarnRealTransform::Plan::run_to(const Source& x, const Target& y, QuarnDivisor divisor) const {
  const Symmetry symmetry(route, x);
  const Survey data = survey(x);
  const bool is_spectrum = route.kind == Kind::to_spectrum || route.kind == Kind::from_spectrum;
  bool is_impulse = is_spectrum;  // nothing but in place 0
  const Integer parts = route.kind == Kind::from_spectrum ? route.n / 2 * 2 + 1 : route.n;
  for (Integer i = 1; i < parts && is_impulse; ++i) {
    const bool is_ignored = route.kind == Kind::from_spectrum && i == 1;
    is_impulse = is_ignored || quarn::kind_of(x[i]) == quarn::Kind::zero;
  }
  if (data.finite && !data.is_zero() && !is_impulse) {
    with_places(format.places, [&](auto places) { Run<decltype(places)>(*this, data, x, y, divisor, places)(); });
    const std::int64_t results = route.kind == Kind::to_spectrum ? 2 * (route.n / 2 + 1) : route.n;
    for (std::int64_t i = symmetry.even_zero ? 0 : 1; i < results && (symmetry.even_zero || symmetry.odd_zero);
         i += 2) {
      y[i] = QuarnFloat();
    }
    symmetry.mirror_results(route, y);
    return;
  }
  QuarnFloat value = data.finite ? QuarnFloat() : quarn::special(quarn::Kind::nan);
  if (data.finite && !data.is_zero()) {
    value = quotient(x[0], route.n, divisor, digits);
  }
  const Integer results = route.kind == Kind::to_spectrum ? 2 * (route.n / 2 + 1) : route.n;
  for (Integer i = 0; i < results; ++i) {
    y[i] = route.kind == Kind::to_spectrum && i % 2 == 1 && data.finite ? QuarnFloat() : value;
  }
}

void QuarnRealTransform::Plan::run(const Source& x, const Target& y, QuarnDivisor divisor) const {
  if (!stands_aside(digits, route.n)) {
    return run_to(x, y, divisor);
  }
  if (y.real != nullptr) {
    std::vector<QuarnFloat> results(static_cast<std::size_t>(route.n));
    run_to(x, {results.data(), nullptr, 1}, divisor);
    for (std::size_t i = 0; i < results.size(); ++i) {
      y.real[std::ptrdiff_t(i) * y.stride] = std::move(results[i]);
    }
    return;
  }
  std::vector<Complex> results(std::size_t(route.n / 2 + 1));
  run_to(x, {nullptr, results.data(), 1}, divisor);
  for (std::size_t i = 0; i < results.size(); ++i) {
    y.spectrum[std::ptrdiff_t(i) * y.stride] = std::move(results[i]);
  }
}
