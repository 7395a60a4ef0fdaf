// Failures of the C++ interface: exceptions, with everything that the library says and nothing printed. Part of
// tesk2mp.hpp.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tesk2mp/tesk2mp.h"

namespace tesk2mp {

using Real = QuarnFloat;
using Complex = quarn::Complex;
using Integer = quarn::Integer;

/// A value that a message names.
using Value = std::variant<std::int64_t, Real, std::string>;

/// A call that failed. what() is routine and text in one line.
class Error : public std::runtime_error {
 public:
  Error(const std::string& routine, Integer code, Integer label, const std::string& text, std::vector<Value> values)
      : std::runtime_error(routine + ": " + plain(text)),
        routine_(routine),
        code_(code),
        label_(label),
        text_(text),
        values_(std::move(values)) {}

  /// The library's name of the routine: "C06FAF", or both of its names, "F06PAF/DGEMV".
  const std::string& routine() const noexcept { return routine_; }
  /// The failure number (IFAIL, INFO); of a wrong argument to a routine without one, the argument's position in the
  /// routine that would have been called.
  Integer code() const noexcept { return code_; }
  /// The label of the library's message, 99999 for a routine's first one; 0 when the C++ interface itself refused.
  Integer label() const noexcept { return label_; }
  /// The message. Texts of the library (label() not 0) are its own, byte for byte; their indices count from 1.
  const std::string& text() const noexcept { return text_; }
  /// The values in the text, in their order, with all their digits.
  const std::vector<Value>& values() const noexcept { return values_; }

 private:
  // " ** On entry, N .le. 1:\n    N =   1." -> "On entry, N .le. 1: N = 1."
  static std::string plain(const std::string& text) {
    std::string line;
    for (const char c : text.substr(text.compare(0, 4, " ** ") == 0 ? 4 : 0)) {
      const bool blank = c == ' ' || c == '\n';
      if (!blank || (!line.empty() && line.back() != ' ')) {
        line += blank ? ' ' : c;
      }
    }
    return line;
  }

  std::string routine_;
  Integer code_;
  Integer label_;
  std::string text_;
  std::vector<Value> values_;
};

/// The arguments were refused; nothing was computed.
class InvalidArgument : public Error {
 public:
  using Error::Error;
};

/// The arguments were right, but the mathematics failed: a singular matrix, iterations that do not converge.
class NumericalFailure : public Error {
 public:
  using Error::Error;
};

namespace detail {

/// Throws InvalidArgument with the pieces as one text, and the numbers among them as its values.
template <class... Pieces>
[[noreturn]] void refuse(const char* routine, Integer code, const Pieces&... pieces) {
  std::string text;
  std::vector<Value> values;
  const auto add = [&]<class P>(const P& piece) {
    if constexpr (std::integral<P>) {
      text += std::to_string(piece);
      values.emplace_back(std::int64_t(piece));
    } else {
      text += piece;
    }
  };
  (add(pieces), ...);
  throw InvalidArgument(routine, code, 0, text, std::move(values));
}

/// Throws unless `holds`, as refuse() does.
template <class... Pieces>
void require(bool holds, const char* routine, Integer code, const Pieces&... pieces) {
  if (!holds) {
    refuse(routine, code, pieces...);
  }
}

/// A size as the library takes it.
inline Integer count_of(std::size_t size) {
  require(size <= std::size_t(std::numeric_limits<Integer>::max()), "TESK2MP", 1, size, " elements are too many");
  return Integer(size);
}

/// While it lives, failures are handed to it and not printed.
class Listener {
 public:
  Listener() : former_(QuarnMPX_failure_handler(&handler_)) {}
  ~Listener() { QuarnMPX_failure_handler(former_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  bool told() const { return !routine_.empty() || out_of_memory_; }
  /// Throws the last failure, as a NumericalFailure when its number is one of those.
  [[noreturn]] void raise(std::initializer_list<Integer> numerical) const {
    if (out_of_memory_) {
      throw std::bad_alloc();
    }
    for (const Integer number : numerical) {
      if (number == code_) {
        throw NumericalFailure(routine_, code_, label_, text_, values_);
      }
    }
    throw InvalidArgument(routine_, code_, label_, text_, values_);
  }

 private:
  static void listen(const QuarnFailure* failure, void* self) noexcept {
    auto& listener = *static_cast<Listener*>(self);
    try {
      listener.take_down(*failure);
    } catch (const std::bad_alloc&) {
      listener.out_of_memory_ = true;
    }
  }
  void take_down(const QuarnFailure& failure) {
    routine_ = failure.routine;
    routine_.erase(routine_.find_last_not_of(' ') + 1);
    code_ = failure.number;
    label_ = failure.label;
    text_ = failure.message;
    values_.clear();
    for (int i = 0; i < failure.count; ++i) {
      values_.push_back(value_of(failure.values[i]));
    }
  }
  static Value value_of(const QFArgument& argument) {
    switch (argument.type) {
      case QFArgument::Type::integer:
        return argument.integer;
      case QFArgument::Type::real:
        return *argument.real;
      default:
        return std::string(argument.text);
    }
  }

  std::string routine_;
  Integer code_ = 0;
  Integer label_ = 0;
  std::string text_;
  std::vector<Value> values_;
  bool out_of_memory_ = false;  // where the failure was to be taken down
  QuarnFailureHandler handler_{listen, this};
  const QuarnFailureHandler* former_;
};

/// Calls a routine that has an IFAIL, soft and silent. Failures with a number in `numerical` are NumericalFailure.
template <class Routine>
void call(const Routine& routine, std::initializer_list<Integer> numerical = {}) {
  const Listener listener;
  Integer ifail = 1;
  routine(&ifail);
  if (ifail != 0) {
    listener.raise(numerical);
  }
}

/// Calls a kernel, which has no failures but wrong arguments.
template <class Kernel>
void call_kernel(const Kernel& kernel) {
  const Listener listener;
  kernel();
  if (listener.told()) {
    listener.raise({});
  }
}

/// A character option as the exports take it: a text of one letter. Lives as long as the call.
class Option {
 public:
  template <class Letter>
  explicit Option(Letter letter) : letter_(char(letter)) {}
  operator const char*() const { return &letter_; }

 private:
  char letter_;
};

/// The exports take what they only read by the same type as what they write.
template <class T>
T* unconst(const T* pointer) {
  return const_cast<T*>(pointer);
}

template <class T>
inline constexpr bool kIsComplex = std::same_as<T, Complex>;

/// The one of two exports that works on T.
template <class T, class RealExport, class ComplexExport>
auto pick(RealExport real, ComplexExport complex) {
  if constexpr (kIsComplex<T>) {
    return complex;
  } else {
    return real;
  }
}

}  // namespace detail

/// Sets the working precision and returns the former one. Throws InvalidArgument unless 1 <= digits <= 1000000.
inline int set_digits(int digits) {
  detail::require(digits >= 1 && digits <= 1000000, "QuarnSetDigits", 1, "digits are 1 to 1000000, not ", digits);
  return QuarnSetDigits(digits);
}

/// The working precision for as long as the object lives, then the former one again; they nest.
///
/// @code
/// const tesk2mp::Digits sixty(60);
/// @endcode
class Digits {
 public:
  explicit Digits(int digits) : former_(set_digits(digits)) {}
  ~Digits() { QuarnSetDigits(former_); }
  Digits(const Digits&) = delete;
  Digits& operator=(const Digits&) = delete;

 private:
  int former_;
};

}  // namespace tesk2mp
