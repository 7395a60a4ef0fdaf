// How a core routine reports: written once, so that a routine is its checks and its mathematics.
//
//   void QuarnMP_c06fafn_(..., char* message_buffer, Integer* ifail, int) {
//     Report report("C06FAF", message_buffer, ifail);
//     if (n <= 1) {
//       return report.fail(3, 99999, " ** On entry, N .le. 1: N =%16ld.", n);
//     }
//     ... mathematics ...
//   }
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

/// Characters of the message buffer that every core routine is given.
inline constexpr int kMessageBufferLength = 200;
/// Characters from one message record to the next.
inline constexpr int kRecordLength = 80;

/// The outcome of one call of a core routine. It writes "NONE" into the message buffer when it is made; when it goes
/// out of scope it ends the routine through the failure protocol, which stores the outcome into *ifail or ends the
/// process.
class Report {
 public:
  Report(const char* routine, char* message_buffer, Integer* ifail) noexcept;
  ~Report();
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  /// Records a failure: its number, the label of its message (99999 for the first message of the routine, 99998 for
  /// the second, ...) and the message with its values. The message buffer gets routine, number, label, count of values
  /// and, each after a blank, the values in the message's own conversions.
  template <class... Values>
  void fail(Integer ierror, Integer label, const char* message, const Values&... values) noexcept {
    const QFArgument arguments[sizeof...(Values) + 1] = {QFArgument(values)..., QFArgument(0)};
    record_failure(ierror, label, message, arguments, int(sizeof...(Values)));
  }

 private:
  void record_failure(Integer ierror, Integer label, const char* message, const QFArgument* values, int count) noexcept;

  void end_formatted_text() const noexcept;

  const char* routine_;
  char* message_buffer_;
  Integer* ifail_;
  Integer ierror_ = 0;
  bool handed_over_ = false;
  // Longer than one record on purpose: a text longer than its stride is printed whole, and the longest message takes
  // three screen lines.
  char record_[4 * kRecordLength] = {};
};

/// The text conversions of a printf format, one after the other.
class Conversions {
 public:
  explicit Conversions(const char* format) noexcept : rest_(format) {}
  /// Copies the next conversion ("%16ld") with its NUL, or gives false at the end of the format.
  bool next(char* conversion, int capacity) noexcept;

 private:
  const char* rest_;
};

}  // namespace tesk
