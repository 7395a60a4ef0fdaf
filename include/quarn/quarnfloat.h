// QuarnFloat and Complex: decimal floating-point numbers, whose digit count is set at run time.
//
// A finite number is a sign, a decimal coefficient and a power of ten. Every operation reads QuarnDigits() when it
// starts and delivers its exact result rounded to that many digits, half to even; elementary functions are within one
// unit in the last place. A stored value never changes when the digits do. NaN, signed infinities and signed zeros
// behave as in the General Decimal Arithmetic rules. Results whose decimal exponent would pass +-999999999 become
// infinity or zero.
//
// Names. What begins with Quarn or QF, QuarnFloat and its functions are at global scope; everything else is in
// namespace quarn. quarn::Complex and quarn::Integer have a name at global scope too, unless QUARN_NO_GLOBAL_NAMES is
// defined before the first of these headers, so that a program may have a Complex or an Integer of its own.
//
// Several threads may compute at once: digits, caches and recycled storage belong to the thread (quarnthread.h).
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>

#if !defined(QUARN_LIMB_BITS)
#if defined(__SIZEOF_INT128__)
#define QUARN_LIMB_BITS 64
#else
#define QUARN_LIMB_BITS 32
#endif
#endif

// The limb width is part of the binary interface: it is in the linker's name of everything that takes or returns a
// number, so that a program for one width does not link with a library for the other.
#if QUARN_LIMB_BITS == 64
#define QUARN_NUMBER __attribute__((abi_tag("limb64")))
#else
#define QUARN_NUMBER __attribute__((abi_tag("limb32")))
#endif

#if defined(_WIN32) && defined(QRNFLOAT_BUILD)
#define QRNFLOAT_API __declspec(dllexport)
#elif defined(_WIN32)
#define QRNFLOAT_API __declspec(dllimport)
#else
#define QRNFLOAT_API __attribute__((visibility("default")))
#endif

namespace quarn {

/// The 32-bit signed integer of every interface: `long` where long has 32 bits, as on Windows.
#if defined(_WIN32)
using Integer = long;
#else
using Integer = int;
#endif
static_assert(sizeof(Integer) == 4);

/// What a QuarnFloat is explicitly converted to.
template <class T>
inline constexpr bool is_hardware_number = std::is_arithmetic_v<T>;
#if defined(__SIZEOF_INT128__)
__extension__ using Int128 = __int128;
__extension__ using UnsignedInt128 = unsigned __int128;
template <>
inline constexpr bool is_hardware_number<Int128> = true;
template <>
inline constexpr bool is_hardware_number<UnsignedInt128> = true;
#endif

}  // namespace quarn

/// The calling thread's working precision in decimal digits; at first the process's default, which is 20 when the
/// program starts (QuarnSetDefaultDigits).
[[nodiscard]] QRNFLOAT_API int QuarnDigits() noexcept;

/// Sets the calling thread's working precision, 1 to 1000000 digits, and returns the former one. Any other value
/// changes nothing. A thread's first use of numbers may throw std::bad_alloc.
QRNFLOAT_API int QuarnSetDigits(int digits);

/// A decimal floating-point number of any precision.
class QUARN_NUMBER QuarnFloat {
 public:
  using Limb = std::conditional_t<QUARN_LIMB_BITS == 64, std::uint64_t, std::uint32_t>;
  /// Decimal digits held by one limb.
  static constexpr int kLimbDigits = QUARN_LIMB_BITS == 64 ? 18 : 9;
  /// Coefficients up to this many limbs (126 digits) live inside the object.
  static constexpr int kInlineLimbs = 56 / sizeof(Limb);

  /// Zero.
  QuarnFloat() noexcept : exponent_(kZero), tag_(0) {}
  QuarnFloat(const QuarnFloat& other) : exponent_(other.exponent_), tag_(other.tag_) {
    if (on_heap()) {
      clone(other);
    } else {
      copy_limbs(other);
    }
  }
  QuarnFloat(QuarnFloat&& other) noexcept : exponent_(other.exponent_), tag_(other.tag_) { take(other); }
  QuarnFloat& operator=(const QuarnFloat& other) {
    if (on_heap() || other.on_heap()) {
      assign_slowly(other);
    } else {
      exponent_ = other.exponent_;
      tag_ = other.tag_;
      copy_limbs(other);
    }
    return *this;
  }
  QuarnFloat& operator=(QuarnFloat&& other) noexcept {
    if (this != &other) {
      if (on_heap()) {
        release();
      }
      exponent_ = other.exponent_;
      tag_ = other.tag_;
      take(other);
    }
    return *this;
  }
  ~QuarnFloat() {
    if (on_heap()) {
      release();
    }
  }

  /// The exact value of the double, rounded to the current digits.
  QRNFLOAT_API QuarnFloat(double value);
  QRNFLOAT_API QuarnFloat(long double value);
  /// The integer, rounded to the current digits.
  template <std::integral T>
  requires(!std::same_as<T, bool> && sizeof(T) <= 8) QuarnFloat(T value)
      : QuarnFloat(Magnitude{value < 0, value < 0 ? 0 - std::uint64_t(value) : std::uint64_t(value)}) {}
#if defined(__SIZEOF_INT128__)
  template <class T>
  requires(std::same_as<T, quarn::Int128> || std::same_as<T, quarn::UnsignedInt128>) QuarnFloat(T value)
      : QuarnFloat(value < 0, std::uint64_t((value < 0 ? 0 - quarn::UnsignedInt128(value) : value) >> 64),
                   std::uint64_t(value < 0 ? 0 - quarn::UnsignedInt128(value) : value)) {}
#endif
  /// 0 or 1.
  template <std::same_as<bool> T>
  explicit QuarnFloat(T value) : QuarnFloat(int(value)) {}
  /// mantissa times ten to the power exponent, rounded to the current digits.
  QRNFLOAT_API QuarnFloat(int mantissa, int exponent);
  /// Reads [+-]digits[.digits][e[+-]digits], where the digits before or after the point may be missing ("5.", ".5"),
  /// or [+-]inf, infinity or nan, letters in either case, no blanks: correctly rounded to the current digits, in time
  /// linear in the length. Exponents of any size give infinity or zero. Anything else gives NaN, a null pointer too.
  QRNFLOAT_API explicit QuarnFloat(const char* text);
  explicit QuarnFloat(const std::string& text) : QuarnFloat(text.c_str()) {}

  QuarnFloat& operator=(double value) { return *this = QuarnFloat(value); }

  /// Hardware numbers: the nearest floating-point number, ties to even; of integers the whole part, and beyond their
  /// range the nearest value (NaN: 0); of bool, whether x is not zero.
  template <class T>
  requires(quarn::is_hardware_number<T>) explicit operator T() const noexcept;

  QuarnFloat operator+() const { return *this; }
  QuarnFloat operator-() const {
    QuarnFloat negated(*this);
    negated.tag_ ^= kSign;
    return negated;
  }
  // In place, without a number between; b may be this one.
  QRNFLOAT_API QuarnFloat& operator+=(const QuarnFloat& b);
  QRNFLOAT_API QuarnFloat& operator-=(const QuarnFloat& b);
  QRNFLOAT_API QuarnFloat& operator*=(const QuarnFloat& b);
  QRNFLOAT_API QuarnFloat& operator/=(const QuarnFloat& b);

  /// Plain text for magnitudes from 1e-7 to below 1e21 and for zero, otherwise d.ddde+-x: all digits of the value,
  /// no trailing zeros. Reading it at as many digits gives the same value.
  [[nodiscard]] std::string to_string() const;

  friend bool isnan(const QuarnFloat& x) noexcept { return x.exponent_ == kNaN; }
  friend bool isinf(const QuarnFloat& x) noexcept { return x.exponent_ == kInfinity; }
  friend bool isfinite(const QuarnFloat& x) noexcept { return x.exponent_ < kInfinity; }
  friend bool signbit(const QuarnFloat& x) noexcept { return (x.tag_ & kSign) != 0; }
  friend QuarnFloat fabs(QuarnFloat x) noexcept {
    x.tag_ &= ~kSign;
    return x;
  }

 private:
  friend struct QuarnAccess;

  struct Magnitude {
    bool negative;
    std::uint64_t value;
  };
  QRNFLOAT_API explicit QuarnFloat(Magnitude magnitude);
  QRNFLOAT_API QuarnFloat(bool negative, std::uint64_t high, std::uint64_t low);

  static constexpr std::uint32_t kSign = 0x80000000U;
  static constexpr std::uint32_t kLength = 0x00FFFFFFU;
  // Zero, infinity and NaN are exponents that no finite number has; they have no limbs, so that one look at the
  // lengths of two operands shows whether anything is special.
  static constexpr std::int32_t kZero = INT32_MIN;
  static constexpr std::int32_t kInfinity = INT32_MAX - 1;
  static constexpr std::int32_t kNaN = INT32_MAX;

  // The coefficient is on the heap exactly when it does not fit inside.
  bool on_heap() const noexcept { return (tag_ & kLength) > std::uint32_t(kInlineLimbs); }
  void copy_limbs(const QuarnFloat& other) noexcept {
    // Limb by limb: a wide load of just stored limbs would stall until the stores retire.
    const std::uint32_t length = tag_ & kLength;
    for (std::uint32_t i = 0; i < length; ++i) {
      inside_[i] = other.inside_[i];
    }
  }
  void take(QuarnFloat& other) noexcept {
    if (on_heap()) {
      heap_ = other.heap_;
      other.exponent_ = kZero;
      other.tag_ = 0;
    } else {
      copy_limbs(other);
    }
  }
  QRNFLOAT_API void clone(const QuarnFloat& other);
  QRNFLOAT_API void assign_slowly(const QuarnFloat& other);
  QRNFLOAT_API void release() noexcept;

  struct Heap {
    Limb* limbs;
    std::uint32_t capacity;
  };

  // value = (-1)^sign * 0.L0 L1 L2 ... * 10^exponent with limbs of kLimbDigits digits, the leading one first. The
  // leading digit of L0 is not zero and the last limb is not zero, so that a value has one representation.
  std::int32_t exponent_;
  std::uint32_t tag_;  // sign bit and number of limbs
  union {
    Limb inside_[kInlineLimbs];
    Heap heap_;
  };
};

[[nodiscard]] QRNFLOAT_API QuarnFloat operator+(const QuarnFloat& a, const QuarnFloat& b);
[[nodiscard]] QRNFLOAT_API QuarnFloat operator-(const QuarnFloat& a, const QuarnFloat& b);
[[nodiscard]] QRNFLOAT_API QuarnFloat operator*(const QuarnFloat& a, const QuarnFloat& b);
[[nodiscard]] QRNFLOAT_API QuarnFloat operator/(const QuarnFloat& a, const QuarnFloat& b);

/// -1, 0 or 1 as a is below, equal to or above b, exactly; 2 when one of them is NaN.
[[nodiscard]] QRNFLOAT_API int QuarnCompare(const QuarnFloat& a, const QuarnFloat& b) noexcept;

[[nodiscard]] inline bool operator==(const QuarnFloat& a, const QuarnFloat& b) noexcept {
  return QuarnCompare(a, b) == 0;
}
[[nodiscard]] inline bool operator!=(const QuarnFloat& a, const QuarnFloat& b) noexcept {
  return QuarnCompare(a, b) != 0;
}
[[nodiscard]] inline bool operator<(const QuarnFloat& a, const QuarnFloat& b) noexcept {
  return QuarnCompare(a, b) == -1;
}
[[nodiscard]] inline bool operator>(const QuarnFloat& a, const QuarnFloat& b) noexcept {
  return QuarnCompare(a, b) == 1;
}
[[nodiscard]] inline bool operator<=(const QuarnFloat& a, const QuarnFloat& b) noexcept {
  return QuarnCompare(a, b) <= 0;
}
[[nodiscard]] inline bool operator>=(const QuarnFloat& a, const QuarnFloat& b) noexcept {
  return unsigned(QuarnCompare(a, b)) <= 1U;
}

/// Correctly rounded.
[[nodiscard]] QRNFLOAT_API QuarnFloat sqrt(const QuarnFloat& x);
/// a - b * trunc(a / b), exact before the one rounding at the end; the sign is that of a.
[[nodiscard]] QRNFLOAT_API QuarnFloat fmod(const QuarnFloat& a, const QuarnFloat& b);
[[nodiscard]] QRNFLOAT_API QuarnFloat floor(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat ceil(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat trunc(const QuarnFloat& x);

// Elementary functions, within one unit in the last place of the working precision. sin, cos and tan need pi to as many
// digits as the angle has before its decimal point, and give NaN from 10^1000000 on.
[[nodiscard]] QRNFLOAT_API QuarnFloat exp(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat log(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat log10(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat sin(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat cos(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat tan(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat asin(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat acos(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat atan(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat atan2(const QuarnFloat& y, const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat sinh(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat cosh(const QuarnFloat& x);
[[nodiscard]] QRNFLOAT_API QuarnFloat tanh(const QuarnFloat& x);
/// x to the power y; exact whenever the result fits the working precision. 0 to the power 0 and a negative number to a
/// power that is not whole are NaN.
[[nodiscard]] QRNFLOAT_API QuarnFloat pow(const QuarnFloat& x, const QuarnFloat& y);
[[nodiscard]] inline QuarnFloat pow(double x, const QuarnFloat& y) { return pow(QuarnFloat(x), y); }

/// The whole part of x; values beyond the range of Integer, which has 32 bits, give the nearest Integer
/// (123456789012345 gives 2147483647), NaN gives 0. Wider integers: static_cast<std::int64_t>(x).
[[nodiscard]] QRNFLOAT_API quarn::Integer FloatToInt(const QuarnFloat& x) noexcept;
/// The nearest double, ties to even.
[[nodiscard]] QRNFLOAT_API double FloatToDouble(const QuarnFloat& x) noexcept;

/// Applies a function of one argument, named as above ("sin", "atan", "fabs", "floor", ...). An unknown name gives NaN
/// and one line on the console.
QRNFLOAT_API QuarnFloat QuarnEvalf1(const char* function, const QuarnFloat& x);
/// The same with two arguments ("fmod", "pow", "atan2").
QRNFLOAT_API QuarnFloat QuarnEvalf2(const char* function, const QuarnFloat& x, const QuarnFloat& y);

namespace quarn {

/// A complex number; the parts are rounded one by one.
class QUARN_NUMBER Complex {
 public:
  QuarnFloat re;
  QuarnFloat im;

  Complex() = default;
  Complex(double real, double imaginary = 0.0) : re(real), im(imaginary) {}
  Complex(QuarnFloat real, QuarnFloat imaginary = QuarnFloat()) : re(std::move(real)), im(std::move(imaginary)) {}

  const QuarnFloat& real() const noexcept { return re; }
  const QuarnFloat& imag() const noexcept { return im; }
  void real(QuarnFloat value) noexcept { re = std::move(value); }
  void imag(QuarnFloat value) noexcept { im = std::move(value); }

  Complex operator+() const { return *this; }
  Complex operator-() const { return {-re, -im}; }
  friend bool operator==(const Complex& a, const Complex& b) noexcept { return a.re == b.re && a.im == b.im; }
  friend bool operator!=(const Complex& a, const Complex& b) noexcept { return !(a == b); }
};

[[nodiscard]] QRNFLOAT_API Complex operator+(const Complex& a, const Complex& b);
[[nodiscard]] QRNFLOAT_API Complex operator-(const Complex& a, const Complex& b);
[[nodiscard]] QRNFLOAT_API Complex operator*(const Complex& a, const Complex& b);
/// Smith's method: no overflow when the quotient does not overflow.
[[nodiscard]] QRNFLOAT_API Complex operator/(const Complex& a, const Complex& b);
[[nodiscard]] inline Complex conj(const Complex& z) { return {z.re, -z.im}; }

}  // namespace quarn

#if !defined(QUARN_NO_GLOBAL_NAMES)
using quarn::Complex;
using quarn::Integer;
#endif

/// How QuarnAddProduct takes its product; to be or-ed. Conjugates of real numbers are themselves.
enum QuarnProduct : unsigned { QuarnPlain = 0, QuarnSubtract = 1, QuarnConjugateA = 2, QuarnConjugateB = 4 };

/// sum := sum + a b or sum - a b, with a, b or both conjugated. The roundings are those of the operators one by one: of
/// every product, of the sum of two products, and of the sum; only the numbers between are never made. sum may be a or
/// b.
QRNFLOAT_API void QuarnAddProduct(QuarnFloat& sum, const QuarnFloat& a, const QuarnFloat& b, unsigned how = QuarnPlain);
QRNFLOAT_API void QuarnAddProduct(quarn::Complex& sum, const quarn::Complex& a, const quarn::Complex& b,
                                  unsigned how = QuarnPlain);

// Formatted text ------------------------------------------------------------------------------------------------

/// One argument of QFsprintf: any integer, text, or a QuarnFloat, which must outlive the call.
struct QFArgument {
  enum class Type { integer, real, text } type;
  std::int64_t integer = 0;
  int bytes = 8;  // of the integer's type, int or wider: where %u and %x wrap a negative value round
  const QuarnFloat* real = nullptr;
  const char* text = nullptr;

  template <std::integral T>
  QFArgument(T value) : type(Type::integer), integer(std::int64_t(value)), bytes(int(sizeof(+value))) {}
  QFArgument(const QuarnFloat& value) : type(Type::real), real(&value) {}
  QFArgument(double) = delete;
  QFArgument(const char* value) : type(Type::text), text(value) {}
};

/// One target of QFsscanf: an integer, a QuarnFloat or a character array (which never overflows).
struct QFTarget {
  enum class Type { integer, real, text } type;
  quarn::Integer* integer = nullptr;
  QuarnFloat* real = nullptr;
  char* text = nullptr;
  std::size_t capacity = 0;

  QFTarget(quarn::Integer* value) : type(Type::integer), integer(value) {}
  QFTarget(QuarnFloat* value) : type(Type::real), real(value) {}
  template <std::size_t N>
  QFTarget(char (&value)[N]) : type(Type::text), text(value), capacity(N) {}
};

/// Formatted print with the conversions d i u x c s (X too) and, for a QuarnFloat, e f g (E F G too), rounded
/// half to even in decimal; flags "-+ 0#", width and precision (either may be a star that takes an integer),
/// length modifiers h and l without effect, %%. Infinity and NaN are "inf" and "nan" ("INF", "NAN").
///
/// Writes at most capacity characters, the closing NUL included (a null buffer or a capacity of 0: none), and returns
/// the length of the whole text, or -1 when format and arguments do not agree in number or type, a conversion is
/// unknown, or the text is longer than an int can hold; the text up to there is kept. Spare arguments are ignored.
QRNFLOAT_API int QFformat(char* buffer, std::size_t capacity, const char* format, const QFArgument* arguments,
                          int count) noexcept;

/// Formatted scan: %d and %u read an Integer (values out of its range give the nearest one), %e %f %g (E F G too) a
/// QuarnFloat, %s a word, %c one character or as many as the width says (without a NUL), %n the number of characters
/// read so far; a width limits what is read, a star reads without a target, length modifiers h and l have no effect.
/// White space in the format matches any, also none; every other character matches itself, %% a per cent sign.
///
/// A number is the longest one at the front of the text, so that "12e" is 12 followed by a letter. What does not fit
/// into a character array is read and dropped. Scanning stops at the first thing that does not match, at a target of
/// another type and where targets are missing. Returns the number of targets set (%n does not count), or -1 when the
/// text ends before the first conversion, or text or format is null. Long numbers need memory: std::bad_alloc.
QRNFLOAT_API int QFscan(const char* text, const char* format, const QFTarget* targets, int count);

/// QFformat with its arguments listed.
template <class... A>
int QFsnprintf(char* buffer, std::size_t capacity, const char* format, const A&... values) {
  const QFArgument arguments[sizeof...(A) + 1] = {QFArgument(values)..., QFArgument(0)};
  return QFformat(buffer, capacity, format, arguments, int(sizeof...(A)));
}
template <class... A>
int QFsprintf(char* buffer, const char* format, const A&... values) {
  return QFsnprintf(buffer, SIZE_MAX, format, values...);
}

/// QFscan with its targets listed.
template <class... T>
int QFsscanf(const char* text, const char* format, T&&... values) {
  quarn::Integer none = 0;
  const QFTarget targets[sizeof...(T) + 1] = {QFTarget(values)..., QFTarget(&none)};
  return QFscan(text, format, targets, int(sizeof...(T)));
}

/// Writes the text of to_string(), cut to capacity with its closing NUL, and returns the length of the whole text.
QRNFLOAT_API std::size_t QuarnText(const QuarnFloat& x, char* buffer, std::size_t capacity) noexcept;

inline std::string QuarnFloat::to_string() const {
  std::string text(QuarnText(*this, nullptr, 0), '\0');
  QuarnText(*this, text.data(), text.size() + 1);
  return text;
}

#include "quarn/conversion.h"
#include "quarn/stream.h"
