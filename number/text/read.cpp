// From text to numbers, correctly rounded at any length.
#include <array>
#include <cstring>
#include <string_view>
#include <vector>

#include "number/text/characters.h"
#include "number/text/number_text.h"

namespace quarn {

namespace {

// Exponents beyond this overflow or underflow whatever the length of the coefficient does to them.
constexpr std::int64_t kExponentLimit = 1'000'000'000'000'000'000;

/// Fills whole limbs with decimal digits, the leading one first, and remembers whether anything but zeros came after
/// them.
class LimbWriter {
 public:
  LimbWriter(Limb* limbs, std::size_t capacity) noexcept : limbs_(limbs), capacity_(capacity) {}

  bool full() const noexcept { return length_ == capacity_; }
  void put(int digit) noexcept {
    limb_ = limb_ * 10 + Limb(digit);
    if (++filled_ == Radix::digits) {
      store();
    }
  }
  void finish() noexcept {
    if (filled_ != 0) {
      limb_ *= Radix::powers[Radix::digits - filled_];
      store();
    }
  }
  std::size_t length() const noexcept { return length_; }

 private:
  void store() noexcept {
    limbs_[length_++] = limb_;
    limb_ = 0;
    filled_ = 0;
  }

  Limb* limbs_;
  std::size_t capacity_;
  std::size_t length_ = 0;
  Limb limb_ = 0;
  int filled_ = 0;
};

const char* skip_digits(const char* first, const char* last) noexcept {
  while (first != last && is_digit(*first)) {
    ++first;
  }
  return first;
}

bool starts_with(const char* first, const char* last, std::string_view name) noexcept {
  if (std::size_t(last - first) < name.size()) {
    return false;
  }
  for (const char c : name) {
    if (to_lower(*first++) != c) {
      return false;
    }
  }
  return true;
}

}  // namespace

NumberText::NumberText(const char* first, const char* last) noexcept {
  if (first != last && (*first == '+' || *first == '-')) {
    negative_ = *first++ == '-';
  }
  if (first == last) {
    return;
  }
  if (is_digit(*first) || *first == '.') {
    read_coefficient(first, last);
  } else {
    read_name(first, last);
  }
}

void NumberText::read_name(const char* first, const char* last) noexcept {
  for (const std::string_view name : {"infinity", "inf", "nan"}) {
    if (starts_with(first, last, name)) {
      kind_ = name == "nan" ? Kind::nan : Kind::infinite;
      end_ = first + name.size();
      return;
    }
  }
}

void NumberText::read_coefficient(const char* first, const char* last) noexcept {
  const char* point = skip_digits(first, last);
  digits_end_ = point;
  if (point != last && *point == '.') {
    digits_end_ = skip_digits(point + 1, last);
    if (digits_end_ - first == 1) {
      return;  // a point alone
    }
  }
  digits_ = first;
  while (digits_ != digits_end_ && (*digits_ == '0' || *digits_ == '.')) {
    ++digits_;
  }
  kind_ = digits_ == digits_end_ ? Kind::zero : Kind::finite;
  exponent_ = digits_ < point ? point - digits_ : point - digits_ + 1;
  end_ = digits_end_;
  read_exponent(end_, last);
}

void NumberText::read_exponent(const char* first, const char* last) noexcept {
  if (first == last || to_lower(*first) != 'e') {
    return;
  }
  ++first;
  const bool negative = first != last && *first == '-';
  if (first != last && (*first == '-' || *first == '+')) {
    ++first;
  }
  const char* digits_end = skip_digits(first, last);
  if (digits_end == first) {
    return;
  }
  const std::int64_t exponent = read_count(first, digits_end, kExponentLimit);
  exponent_ += negative ? -exponent : exponent;
  end_ = digits_end;
}

QuarnFloat NumberText::value() const {
  if (!found() || kind_ != Kind::finite) {
    return special(kind_, negative_ && kind_ != Kind::nan);
  }
  const int digits = QuarnDigits();
  // Digits past these few are known by whether all of them are zero.
  const std::size_t needed = std::size_t(digits) / Radix::digits + 2;
  const std::size_t present = std::size_t(digits_end_ - digits_) / Radix::digits + 1;
  const std::size_t capacity = std::min(needed, present);
  std::array<Limb, 16> inside;
  std::vector<Limb> outside(capacity > inside.size() ? capacity : 0);
  LimbWriter limbs(outside.empty() ? inside.data() : outside.data(), capacity);
  const char* next = digits_;
  for (; next != digits_end_ && !limbs.full(); ++next) {
    if (*next != '.') {
      limbs.put(*next - '0');
    }
  }
  limbs.finish();
  bool sticky = false;
  for (; next != digits_end_ && !sticky; ++next) {
    sticky = *next != '0' && *next != '.';
  }
  return rounded(negative_, exponent_, outside.empty() ? inside.data() : outside.data(), limbs.length(), sticky,
                 digits);
}

}  // namespace quarn

QuarnFloat::QuarnFloat(const char* text) : QuarnFloat() {
  using namespace quarn;
  const char* first = text == nullptr ? "" : text;
  const char* last = first + std::strlen(first);
  const NumberText number(first, last);
  *this = number.found() && number.end() == last ? number.value() : special(Kind::nan);
}
