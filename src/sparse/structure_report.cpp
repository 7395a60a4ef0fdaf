#include "src/sparse/structure_report.h"

#include <cstring>

#include "src/sparse/messages.h"

namespace tesk {
namespace {

/// What is said of a fault, in the order of the faults after `none`.
struct FaultText {
  const char* general;
  const char* triangle;
};

constexpr FaultText kTexts[] = {
    {" ** On entry, N .lt. 1: N =%16ld.", " ** On entry, N .lt. 1: N =%16ld."},
    {" ** On entry, NNZ .lt. 1: NNZ =%16ld.", " ** On entry, NNZ .lt. 1: NNZ =%16ld."},
    {" ** On entry, NNZ .gt. N**2:\n    NNZ =%16ld N =%16ld.",
     " ** On entry, NNZ .gt. N*(N+1)/2:\n    NNZ =%16ld N =%16ld."},
    {kRowRange, kRowRange},
    {kColumnRange, kTriangleRange},
    {" ** On entry, A(I) is out of order:\n    I =%16ld.", " ** On entry, A(I) is out of order:\n    I =%16ld."},
    {" ** On entry, the location (IROW(I), ICOL(I)) is a duplicate:\n    I =%16ld.",
     " ** On entry, the location (IROW(I), ICOL(I)) is a duplicate:\n    I =%16ld."}};

}  // namespace

AdvisedMessage::AdvisedMessage(const char* message, const char* advice) noexcept {
  std::strncpy(text_, message, sizeof text_ - 1);
  text_[sizeof text_ - 1] = '\0';
  std::strncat(text_, advice, sizeof text_ - 1 - std::strlen(text_));
}

bool structure_is_valid(Report& report, const StructureReport& how, Storage storage, Integer n, Integer nnz,
                        const Integer* irow, const Integer* icol) {
  const auto [fault, entry] = f11_check_cs(n, nnz, irow, icol, storage);
  if (fault == StructureFault::none) {
    return true;
  }
  const Integer label = how.first_label + 1 - Integer(fault);
  const FaultText& text = kTexts[Integer(fault) - 1];
  const AdvisedMessage message(storage == Storage::general ? text.general : text.triangle,
                               fault == StructureFault::order ? "" : how.advice);
  const Integer place = how.before + entry;
  switch (fault) {
    case StructureFault::none:
    case StructureFault::order:
      report.fail(how.size_failure, label, message, n);
      break;
    case StructureFault::few_entries:
      report.fail(how.size_failure, label, message, nnz);
      break;
    case StructureFault::many_entries:
      report.fail(how.size_failure, label, message, nnz, n);
      break;
    case StructureFault::row_range:
      report.fail(how.entry_failure, label, message, place, irow[entry - 1], n);
      break;
    case StructureFault::column_range:
      report.fail(how.entry_failure, label, message, place, icol[entry - 1],
                  storage == Storage::general ? n : irow[entry - 1]);
      break;
    case StructureFault::out_of_order:
    case StructureFault::duplicate:
      report.fail(how.entry_failure, label, message, place);
      break;
  }
  return false;
}

}  // namespace tesk
