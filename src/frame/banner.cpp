#include "src/frame/failure.h"
#include "tesk2mp/frame.h"

namespace {

// All twenty records belong to the table of implementation details; QuarnMP_a00aafn_ shows the head and the end of it.
constexpr const char* kRecords[20] = {
    " *** Start of Tesk Library implementation details ***",
    " ",
    " Implementation title: Generalised Base Version",
    "            Precision: FORTRAN double precision",
    "         Product code: Tesk MP, dynamic library tesk2mp",
    "                 Mark: 20A",
    " ",
    " Created using:",
    "      hardware -   Intel Pentium II 400MHz",
    "      op. sys. -   RedHat Linux 7.2",
    "      compiler -   teskf2c/gcc",
    " ",
    " ",
    " ",
    " Applicable to:",
    "      hardware -   Intel x86",
    "      op. sys. -   Intel Linux (glibc2.1+)",
    "      compiler -   gcc 2.96",
    " ",
    " *** End of Tesk Library implementation details ***",
};
constexpr int kShownHead = 7;

}  // namespace

extern "C" void QuarnMP_a00aafn_() {
  Integer unit = 0;
  tesk::advisory_unit(0, unit);
  for (int i = 0; i < kShownHead; ++i) {
    tesk::write_message_record(unit, kRecords[i]);
  }
  tesk::write_message_record(unit, kRecords[19]);
}
