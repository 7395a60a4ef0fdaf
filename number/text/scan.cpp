// QFscan: the scanf conversions over a typed target list.
#include <cstring>
#include <limits>

#include "number/text/characters.h"
#include "number/text/number_text.h"

namespace quarn {

namespace {

using TargetType = QFTarget::Type;

struct ScanConversion {
  bool stored = true;
  std::size_t width = 0;  // zero: not given
  char letter = '\0';
};

/// What became of one piece of the format.
enum class Outcome { matched, different, ended };

class Scanner {
 public:
  Scanner(const char* text, const QFTarget* targets, int count) noexcept
      : begin_(text), text_(text), end_(text + std::strlen(text)), targets_(targets), targets_left_(count) {}

  /// Follows the format and returns the result of the whole call.
  int run(const char* format);

 private:
  Outcome convert(const ScanConversion& conversion);
  Outcome match(char c) noexcept;
  void skip_blanks() noexcept;
  const char* limit(std::size_t width) const noexcept;
  /// Hands out the next target. No target is wanted by a starred conversion; one that is missing or of another type
  /// ends the scan.
  bool take(const ScanConversion& conversion, TargetType type, const QFTarget*& target) noexcept;
  void count(const QFTarget* target) noexcept {
    ++conversions_;
    set_ += target == nullptr ? 0 : 1;
  }

  Outcome scan_integer(const ScanConversion& conversion, const QFTarget* target) noexcept;
  Outcome scan_real(const ScanConversion& conversion, const QFTarget* target);
  Outcome scan_word(const ScanConversion& conversion, const QFTarget* target) noexcept;
  Outcome scan_characters(const ScanConversion& conversion, const QFTarget* target) noexcept;
  Outcome tell_position(const QFTarget* target) noexcept;

  const char* begin_;
  const char* text_;
  const char* end_;
  const QFTarget* targets_;
  int targets_left_;
  int conversions_ = 0;
  int set_ = 0;
};

ScanConversion read_conversion(const char*& format) noexcept {
  ScanConversion conversion;
  if (*format == '*') {
    conversion.stored = false;
    ++format;
  }
  conversion.width = std::size_t(read_count(format, nullptr, std::numeric_limits<int>::max()));
  while (*format == 'l' || *format == 'h') {
    ++format;
  }
  conversion.letter = *format;
  if (*format != '\0') {
    ++format;
  }
  return conversion;
}

int Scanner::run(const char* format) {
  Outcome outcome = Outcome::matched;
  while (*format != '\0' && outcome == Outcome::matched) {
    if (is_blank(*format)) {
      ++format;
      skip_blanks();
    } else if (*format == '%') {
      ++format;
      outcome = convert(read_conversion(format));
    } else {
      outcome = match(*format++);
    }
  }
  return outcome == Outcome::ended && conversions_ == 0 ? -1 : set_;
}

Outcome Scanner::match(char c) noexcept {
  if (text_ == end_) {
    return Outcome::ended;
  }
  if (*text_ != c) {
    return Outcome::different;
  }
  ++text_;
  return Outcome::matched;
}

void Scanner::skip_blanks() noexcept {
  while (text_ != end_ && is_blank(*text_)) {
    ++text_;
  }
}

const char* Scanner::limit(std::size_t width) const noexcept {
  return width == 0 || std::size_t(end_ - text_) < width ? end_ : text_ + width;
}

bool Scanner::take(const ScanConversion& conversion, TargetType type, const QFTarget*& target) noexcept {
  target = nullptr;
  if (!conversion.stored) {
    return true;
  }
  if (targets_left_ <= 0 || targets_->type != type) {
    return false;
  }
  --targets_left_;
  target = targets_++;
  return true;
}

Outcome Scanner::convert(const ScanConversion& conversion) {
  const QFTarget* target = nullptr;
  switch (conversion.letter) {
    case '%':
      skip_blanks();
      return match('%');
    case 'd':
    case 'u':
      return take(conversion, TargetType::integer, target) ? scan_integer(conversion, target) : Outcome::different;
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
      return take(conversion, TargetType::real, target) ? scan_real(conversion, target) : Outcome::different;
    case 's':
      return take(conversion, TargetType::text, target) ? scan_word(conversion, target) : Outcome::different;
    case 'c':
      return take(conversion, TargetType::text, target) ? scan_characters(conversion, target) : Outcome::different;
    case 'n':
      return take(conversion, TargetType::integer, target) ? tell_position(target) : Outcome::different;
    default:
      return Outcome::different;
  }
}

Outcome Scanner::scan_integer(const ScanConversion& conversion, const QFTarget* target) noexcept {
  skip_blanks();
  if (text_ == end_) {
    return Outcome::ended;
  }
  const char* const last = limit(conversion.width);
  const bool negative = *text_ == '-';
  const char* const digits = text_ + (negative || *text_ == '+' ? 1 : 0);
  if (digits == last || !is_digit(*digits)) {
    return Outcome::different;
  }
  text_ = digits;
  constexpr std::int64_t kLargest = std::numeric_limits<Integer>::max();
  const std::int64_t magnitude = read_count(text_, last, kLargest + 1);
  if (target != nullptr) {
    *target->integer = Integer(negative ? -magnitude : std::min(magnitude, kLargest));
  }
  count(target);
  return Outcome::matched;
}

Outcome Scanner::scan_real(const ScanConversion& conversion, const QFTarget* target) {
  skip_blanks();
  if (text_ == end_) {
    return Outcome::ended;
  }
  const NumberText number(text_, limit(conversion.width));
  if (!number.found()) {
    return Outcome::different;
  }
  if (target != nullptr) {
    *target->real = number.value();
  }
  text_ = number.end();
  count(target);
  return Outcome::matched;
}

Outcome Scanner::scan_word(const ScanConversion& conversion, const QFTarget* target) noexcept {
  skip_blanks();
  if (text_ == end_) {
    return Outcome::ended;
  }
  const char* const word = text_;
  const char* const last = limit(conversion.width);
  while (text_ != last && !is_blank(*text_)) {
    ++text_;
  }
  if (target != nullptr && target->capacity != 0) {
    const std::size_t kept = std::min(std::size_t(text_ - word), target->capacity - 1);
    std::memcpy(target->text, word, kept);
    target->text[kept] = '\0';
  }
  count(target);
  return Outcome::matched;
}

Outcome Scanner::scan_characters(const ScanConversion& conversion, const QFTarget* target) noexcept {
  const std::size_t wanted = std::max<std::size_t>(conversion.width, 1);
  if (std::size_t(end_ - text_) < wanted) {
    return Outcome::ended;
  }
  if (target != nullptr) {
    std::memcpy(target->text, text_, std::min(wanted, target->capacity));
  }
  text_ += wanted;
  count(target);
  return Outcome::matched;
}

Outcome Scanner::tell_position(const QFTarget* target) noexcept {
  if (target != nullptr) {
    *target->integer = Integer(std::min<std::ptrdiff_t>(text_ - begin_, std::numeric_limits<Integer>::max()));
  }
  return Outcome::matched;
}

}  // namespace

}  // namespace quarn

int QFscan(const char* text, const char* format, const QFTarget* targets, int count) {
  if (text == nullptr || format == nullptr) {
    return -1;
  }
  return quarn::Scanner(text, targets, count).run(format);
}
