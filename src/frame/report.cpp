#include "src/frame/report.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "src/frame/failure.h"
#include "tesk2mp/frame.h"

namespace tesk {

Report::Report(const char* routine, char* message_buffer, Integer* ifail) noexcept
    : routine_(routine), message_buffer_(message_buffer), ifail_(ifail) {
  std::strcpy(message_buffer_, "NONE");
}

Report::~Report() {
  message_buffer_[kMessageBufferLength - 1] = '\0';
  if (handed_over_) {
    *ifail_ = ierror_;
    return;
  }
  *ifail_ = QuarnMP_p01abfn_(*ifail_, ierror_, routine_, 1, record_, 6, kRecordLength);
}

void Report::record_failure(Integer ierror, Integer label, const char* message, const QFArgument* values,
                            int count) noexcept {
  ierror_ = ierror;
  QFformat(record_, sizeof record_, message, values, count);
  handed_over_ = hand_over({routine_, ierror, label, record_, values, count});
  end_formatted_text();

  int used = QFsnprintf(message_buffer_, kMessageBufferLength, "%s %5ld %5ld %5ld", routine_, ierror, label, count);
  Conversions conversions(message);
  char piece[16] = " ";
  for (int i = 0; i < count && used < kMessageBufferLength && conversions.next(piece + 1, sizeof piece - 1); ++i) {
    const auto left = std::size_t(kMessageBufferLength - used);
    used += std::max(0, QFformat(message_buffer_ + used, left, piece, values + i, 1));
  }
  end_formatted_text();
}

// The interface has every text that is formatted end with a newline on standard output, printed or not. A failure
// handler takes the place of all output.
void Report::end_formatted_text() const noexcept {
  if (!handed_over_) {
    std::putchar('\n');
  }
}

bool Conversions::next(char* conversion, int capacity) noexcept {
  while (const char* start = std::strchr(rest_, '%')) {
    const char* letter = start + 1 + std::strspn(start + 1, "-+ #0123456789.lh");
    if (*letter == '\0') {
      break;
    }
    rest_ = letter + 1;
    const auto length = int(rest_ - start);
    if (*letter != '%' && length < capacity) {
      std::copy(start, rest_, conversion);
      conversion[length] = '\0';
      return true;
    }
  }
  return false;
}

}  // namespace tesk
