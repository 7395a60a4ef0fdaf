// Numbers as they stand in a text.
#pragma once

#include <cstdint>

#include "number/scalar/access.h"

namespace quarn {

/// A number at the front of a text, taken apart in one pass: [+-] digits [. digits] [e [+-] digits], where either run
/// of digits around the point may be empty but not both, or [+-] inf, infinity or nan, letters in either case.
class NumberText {
 public:
  /// Reads the longest number that starts at `first` and ends at `last` or before: of "12e+x" that is "12".
  NumberText(const char* first, const char* last) noexcept;

  bool found() const noexcept { return end_ != nullptr; }
  /// One past the number.
  const char* end() const noexcept { return end_; }
  /// The number rounded half to even to the current digits. Time and space grow with the digits that matter, plus one
  /// look at each of the others.
  QuarnFloat value() const;

 private:
  void read_name(const char* first, const char* last) noexcept;
  void read_coefficient(const char* first, const char* last) noexcept;
  void read_exponent(const char* first, const char* last) noexcept;

  Kind kind_ = Kind::nan;
  bool negative_ = false;
  const char* digits_ = nullptr;      // from the first digit that is not zero
  const char* digits_end_ = nullptr;  // past the last digit; one of the characters between may be the point
  std::int64_t exponent_ = 0;         // value = 0.digits * 10^exponent
  const char* end_ = nullptr;         // stays null when there is no number
};

}  // namespace quarn
