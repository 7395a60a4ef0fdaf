#include <doctest/doctest.h>

#include <cstring>
#include <string>
#include <vector>

#include "src/frame/classic.h"
#include "src/frame/report.h"
#include "support/console.h"

namespace {

/// A core routine with failures of every shape of message.
void toy_core(Integer n, char* message_buffer, Integer* ifail, int /*length*/) {
  tesk::Report report("C06FAF", message_buffer, ifail);
  switch (n) {
    case 1:
      return report.fail(3, 99999, " ** On entry, N .le. 1: N =%16ld.", n);
    case 2:
      return report.fail(6, 99994, " ** LWORK, = %16ld,  must be at least:%16ld.", 12, -345);
    case 3:
      return report.fail(3, 99997, " ** %1s is an invalid value of DIRECT.", "X");
    case 4:
      return report.fail(1, 99998, " ** TOL = %12.4e, 100%% of it; NORM %s.", QuarnFloat("-0.00123456"), "1-norm");
    case 5:
      return report.fail(4, 99996, " ** Unexpected failure in an internal call.");
    case 6:
      return report.fail(2, 99997, "%s", std::string(500, 'y').c_str());
    default:
      break;
  }
}

struct Row {
  Integer n;
  std::string message;
  std::string buffer;
};

const std::vector<Row>& rows() {
  static const std::vector<Row> table = {
      {1, " ** On entry, N .le. 1: N =               1.", "C06FAF     3 99999     1                1"},
      {2, " ** LWORK, =               12,  must be at least:            -345.",
       "C06FAF     6 99994     2               12             -345"},
      {3, " ** X is an invalid value of DIRECT.", "C06FAF     3 99997     1 X"},
      {4, " ** TOL =  -1.2346e-03, 100% of it; NORM 1-norm.", "C06FAF     1 99998     2  -1.2346e-03 1-norm"},
      {5, " ** Unexpected failure in an internal call.", "C06FAF     4 99996     0"},
  };
  return table;
}

}  // namespace

TEST_CASE("a failure fills record and message buffer from the same pieces") {
  for (const Row& row : rows()) {
    CAPTURE(row.n);
    support::ConsoleCapture console;
    std::vector<char> buffer(tesk::kMessageBufferLength, 'j');
    Integer ifail = -13;
    toy_core(row.n, buffer.data(), &ifail, tesk::kMessageBufferLength);
    CHECK(console.text() == row.message);
    CHECK(std::string(buffer.data()) == row.buffer);
    CHECK(buffer.back() == '\0');
    CHECK(std::to_string(ifail) == row.buffer.substr(11, 1));
  }
}

TEST_CASE("success leaves NONE and 0 behind") {
  std::vector<char> buffer(tesk::kMessageBufferLength, 'j');
  Integer ifail = 0;
  toy_core(0, buffer.data(), &ifail, 0);
  CHECK(std::string(buffer.data()) == "NONE");
  CHECK(buffer.back() == '\0');
  CHECK(ifail == 0);
}

TEST_CASE("texts longer than record and buffer are cut, never written past the end") {
  support::ConsoleCapture console;
  std::vector<char> guarded(tesk::kMessageBufferLength + 8, 'g');
  Integer ifail = -13;
  toy_core(6, guarded.data(), &ifail, tesk::kMessageBufferLength);
  CHECK(ifail == 2);
  CHECK(std::strlen(guarded.data()) == tesk::kMessageBufferLength - 1);
  CHECK(std::string(guarded.end() - 8, guarded.end()) == "gggggggg");
  CHECK(console.text().size() < 500);
}

TEST_CASE("the classic form is silent when buffer and IFAIL agree") {
  for (const Row& row : rows()) {
    support::ConsoleCapture console;
    Integer ifail = 1;
    tesk::call_core("C06FAF", &ifail, toy_core, row.n);
    CHECK(ifail != 0);
    CHECK(console.text().empty());
  }
}

TEST_CASE("the classic form says when buffer and IFAIL disagree") {
  struct Mismatch {
    const char* buffer;
    Integer ifail;
    std::string line;
  };
  const Mismatch table[] = {
      {"C06FAF     1 99999     0", 3, " *** IFAIL MISMATCH IN C06FBF: IFAIL = 3 , IERR = 1 , SRNAME = C06FAF"},
      {"NONE", -5, " *** IFAIL MISMATCH IN C06FBF: IFAIL = -5 , IERR = 0 , SRNAME = NONE"},
      {"", 1, " *** IFAIL MISMATCH IN C06FBF: IFAIL = 1 , IERR = 0 , SRNAME = "},
      {"LONGERTHANNAME     2", 3, " *** IFAIL MISMATCH IN C06FBF: IFAIL = 3 , IERR = 2 , SRNAME = LONGERT"},
  };
  for (const Mismatch& row : table) {
    support::ConsoleCapture console;
    tesk::check_ifail("C06FBF", row.buffer, row.ifail);
    CHECK(console.text() == row.line);
  }
}

TEST_CASE("conversions are found in any format") {
  struct Format {
    const char* format;
    std::vector<std::string> conversions;
  };
  const Format table[] = {
      {"", {}},
      {"no conversion", {}},
      {"50%% of %d", {"%d"}},
      {" I = %12ld and %-12.4e%1s.", {"%12ld", "%-12.4e", "%1s"}},
      {"ends in %", {}},
      {"ends in %12l", {}},
  };
  for (const Format& row : table) {
    CAPTURE(row.format);
    tesk::Conversions conversions(row.format);
    std::vector<std::string> found;
    for (char piece[16]; conversions.next(piece, sizeof piece);) {
      found.emplace_back(piece);
    }
    CHECK(found == row.conversions);
  }
}
