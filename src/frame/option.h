// Character options: a text and its length, of which the first character counts.
#pragma once

namespace tesk {

/// The letter as a capital one; no locale has a say in it.
inline char capital(char c) noexcept { return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c; }

/// One character option of a routine. Characters past the length, or past a NUL, are never looked at.
class Option {
 public:
  Option(const char* text, int length) noexcept {
    int used = 0;
    for (; used < length && used < kShown && text[used] != '\0'; ++used) {
      text_[used] = text[used];
    }
    text_[used] = '\0';
  }

  /// The first character as an upper-case letter, NUL when there is none.
  char letter() const noexcept { return capital(text_[0]); }
  /// Is the first character one of these upper-case letters, in either case?
  bool is_one_of(const char* letters) const noexcept {
    for (; *letters != '\0'; ++letters) {
      if (*letters == letter()) {
        return true;
      }
    }
    return false;
  }
  /// The text for a message, cut to what a record has room for.
  const char* text() const noexcept { return text_; }

 private:
  static constexpr int kShown = 60;
  char text_[kShown + 1];
};

}  // namespace tesk
