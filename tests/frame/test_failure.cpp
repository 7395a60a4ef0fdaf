#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "src/frame/failure.h"
#include "support/console.h"
#include "tesk2mp/tesk2mp.h"

// Hard failures end the process: the export tests run those in a child. Here are all that return.

namespace {

constexpr int kStride = 80;

/// Two records, the second longer than the stride; the last one ends the array.
std::vector<char> two_records() {
  std::vector<char> records(kStride + 120, 'x');
  const std::string first = " first record ";
  std::copy(first.begin(), first.end(), records.begin());
  records[first.size()] = '\0';
  records.back() = '\0';
  return records;
}

const std::string kRecordTexts = " first record " + std::string(119, 'x');
const std::string kClosing =
    " ** ABNORMAL EXIT from Tesk Library routine C06FAF: IFAIL =     3 ** Tesk soft failure - control returned";

void set_error_unit(Integer unit) {
  Integer set = 1;
  QuarnMP_x04aaf_(&set, &unit);
}

}  // namespace

TEST_CASE("IFAIL on entry decides what is printed") {
  struct Row {
    Integer ifail;
    std::string printed;
  };
  const Row rows[] = {
      {1, ""},
      {-1, kRecordTexts + kClosing},
      {-13, kRecordTexts},
      {-2, ""},
      {-11, ""},
      {-3, ""},
      {11, kRecordTexts + kClosing},
      {101, ""},
      {111, kRecordTexts + kClosing},
      {-2147483647 - 1, ""},
      {2, ""},
      {9, ""},
      {2147483601, ""},
      {991, kRecordTexts + kClosing},
      {-101, ""},
  };
  const std::vector<char> records = two_records();
  for (const Row& row : rows) {
    CAPTURE(row.ifail);
    support::ConsoleCapture console;
    CHECK(QuarnMP_p01abfn_(row.ifail, 3, "C06FAF", 2, records.data(), 6, kStride) == 3);
    CHECK(console.text() == row.printed);
  }
}

TEST_CASE("success prints nothing, whatever IFAIL was") {
  for (const Integer ifail : {0, -1, 1, 10, 11, -13, 7}) {
    support::ConsoleCapture console;
    CHECK(QuarnMP_p01abfn_(ifail, 0, "C06FAF", 1, " record", 6, kStride) == 0);
    CHECK(QuarnMP_p01acfn_(ifail, 0, "F06PAF", "INFO", 1, " record", 6, 4, kStride) == 0);
    CHECK(console.text().empty());
  }
}

TEST_CASE("no records: the closing lines alone") {
  for (const Integer nrec : {0, -5}) {
    support::ConsoleCapture console;
    CHECK(QuarnMP_p01abfn_(-1, 3, "C06FAF", nrec, nullptr, 6, kStride) == 3);
    CHECK(console.text() == kClosing);
  }
}

TEST_CASE("the closing line names a variable, or drops the value with a blank name") {
  struct Row {
    const char* name;
    int length;
    std::string after_routine;
  };
  const Row rows[] = {
      {"INFO", 4, ": INFO =    -7"}, {"N   ", 4, ": N =    -7"},  {"    ", 4, ""}, {"INFO", 2, ": IN =    -7"},
      {"A B ", 4, ": A B =    -7"},  {"A\0B ", 4, ": A =    -7"}, {"", 0, ""},     {"INFO", -3, ""},
  };
  for (const Row& row : rows) {
    support::ConsoleCapture console;
    CHECK(QuarnMP_p01acfn_(-1, -7, "F06PAF/DGEMV ", row.name, 0, nullptr, 6, row.length, kStride) == -7);
    CHECK(console.text() == " ** ABNORMAL EXIT from Tesk Library routine F06PAF/DGEMV " + row.after_routine +
                                " ** Tesk soft failure - control returned");
  }
}

TEST_CASE("a negative error unit suppresses every message") {
  set_error_unit(-1);
  {
    support::ConsoleCapture console;
    CHECK(QuarnMP_p01abfn_(-1, 3, "C06FAF", 1, " record", 6, kStride) == 3);
    CHECK(console.text().empty());
  }
  set_error_unit(0);
  {
    support::ConsoleCapture console;
    CHECK(QuarnMP_p01abfn_(-13, 3, "C06FAF", 1, " record", 6, kStride) == 3);
    CHECK(console.text() == " record");
  }
  set_error_unit(6);
}

TEST_CASE("units are read with 0, set with 1 and left alone otherwise") {
  Integer iflag = 0;
  Integer unit = 99;
  QuarnMP_x04aaf_(&iflag, &unit);
  CHECK(unit == 6);
  for (const Integer other : {2, -1, 2147483647}) {
    iflag = other;
    unit = 42;
    QuarnMP_x04aaf_(&iflag, &unit);
    CHECK(unit == 42);
    iflag = 0;
    QuarnMP_x04aaf_(&iflag, &unit);
    CHECK(unit == 6);
  }
  // The two units are apart.
  Integer advisory = -4;
  tesk::advisory_unit(1, advisory);
  iflag = 0;
  QuarnMP_x04aaf_(&iflag, &unit);
  CHECK(unit == 6);
  {
    support::ConsoleCapture console;
    QuarnMP_a00aafn_();
    CHECK(console.text().empty());
  }
  advisory = 6;
  tesk::advisory_unit(1, advisory);
}

TEST_CASE("the banner shows its head and its last record") {
  support::ConsoleCapture console;
  QuarnMP_a00aafn_();
  CHECK(console.text() ==
        " *** Start of Tesk Library implementation details *** "
        " Implementation title: Generalised Base Version"
        "            Precision: FORTRAN double precision"
        "         Product code: Tesk MP, dynamic library tesk2mp"
        "                 Mark: 20A "
        " *** End of Tesk Library implementation details ***");
}
