// What routines say of a structure that is not one: the same texts in all of them.
#pragma once

#include "src/frame/report.h"
#include "src/sparse/structure.h"

namespace tesk {

/// How a routine reports the faults of a structure: labels count down from `first_label` in the order of the faults.
struct StructureReport {
  Integer first_label;
  Integer size_failure;     // IFAIL for N and NNZ
  Integer entry_failure;    // IFAIL for the entries
  const char* advice = "";  // appended to all texts but that of N
  Integer before = 0;       // entries of the caller's arrays before the first one
};

/// Reports the first fault; false when there is one.
bool structure_is_valid(Report& report, const StructureReport& how, Storage storage, Integer n, Integer nnz,
                        const Integer* irow, const Integer* icol);

/// A message and the advice after it, as one text.
class AdvisedMessage {
 public:
  AdvisedMessage(const char* message, const char* advice) noexcept;
  operator const char*() const noexcept { return text_; }

 private:
  char text_[4 * kRecordLength];
};

}  // namespace tesk
