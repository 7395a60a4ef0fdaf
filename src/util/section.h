// The checks that every routine over a section M1 ... M2 begins with.
#pragma once

#include "src/frame/report.h"
#include "src/util/cycles.h"

namespace tesk {

/// Labels of the messages that come after those of the section.
inline constexpr Integer kFirstOwnLabel = 99996;

/// False, with the failure reported, unless 1 <= m1 <= m2.
inline bool section_is_valid(Report& report, Integer m1, Integer m2) noexcept {
  if (m2 < 1) {
    report.fail(1, 99999, " ** On entry, M2 .lt. 1: M2 =%16ld.", m2);
    return false;
  }
  if (m1 < 1) {
    report.fail(1, 99998, " ** On entry, M1 .lt. 1: M1 =%16ld.", m1);
    return false;
  }
  if (m1 > m2) {
    report.fail(1, 99997, " ** On entry, M1 .gt. M2:\n    M1 =%16ld, M2 =%16ld.", m1, m2);
    return false;
  }
  return true;
}

/// What a routine says when its array is no permutation.
struct PermutationMessages {
  const char* out_of_range;
  const char* repeated;
};

/// False, with the failure reported, unless the section is valid and each of its entries lies in m1 ... m2.
inline bool permutation_is_in_range(Report& report, const PermutationMessages& messages, const Integer* entries,
                                    Integer m1, Integer m2) noexcept {
  if (!section_is_valid(report, m1, m2)) {
    return false;
  }
  const Integer* section = entries + (m1 - 1);
  const Integer place = find_out_of_range(section, m2 - m1 + 1, m1, m2);
  if (place >= 0) {
    report.fail(2, kFirstOwnLabel, messages.out_of_range, m1 + place, section[place]);
  }
  return place < 0;
}

inline void report_repeated(Report& report, const PermutationMessages& messages, Integer repeated) noexcept {
  if (repeated != 0) {
    report.fail(3, kFirstOwnLabel - 1, messages.repeated, repeated);
  }
}

}  // namespace tesk
