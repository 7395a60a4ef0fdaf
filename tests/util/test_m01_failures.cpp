#include <doctest/doctest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "src/util/entries.h"
#include "support/outcome.h"

using support::buffer_text;
using support::Outcome;
using support::wide;

namespace {

/// Every routine of the family on the section m1 ... m2 of `entries` (IRANK or IPERM).
struct Routine {
  const char* name;
  const char* array;
  std::function<void(Integer m1, Integer m2, Integer* entries, char* buffer, Integer* ifail)> core;
};

std::vector<QuarnFloat> reals(6);
std::vector<Complex> complexes(6);

const std::vector<Routine>& permuting() {
  static const std::vector<Routine> table = {
      {"M01EAF", "IRANK",
       [](Integer m1, Integer m2, Integer* e, char* b, Integer* f) {
         tesk::m01ea(reals.data(), m1, m2, e, b, f, 200);
       }},
      {"M01EDF", "IRANK",
       [](Integer m1, Integer m2, Integer* e, char* b, Integer* f) {
         tesk::m01ed(complexes.data(), m1, m2, e, b, f, 200);
       }},
      {"M01ZAF", "IPERM",
       [](Integer m1, Integer m2, Integer* e, char* b, Integer* f) { tesk::m01za(e, m1, m2, b, f, 200); }},
  };
  return table;
}

Outcome call(const Routine& routine, Integer m1, Integer m2, Integer* entries) {
  return support::outcome_of([&](char* buffer, Integer* ifail, int) { routine.core(m1, m2, entries, buffer, ifail); });
}

Outcome rank(Integer m1, Integer m2, const char* order, int length, Integer* irank) {
  return support::outcome_of([&](char* buffer, Integer* ifail, int) {
    tesk::m01da(tesk::NanRank::anywhere, reals.data(), m1, m2, tesk::Option(order, length), irank, buffer, ifail, 200);
  });
}

struct Section {
  Integer m1, m2, label;
  std::string message;
  std::vector<std::string> values;
};

/// The three checks of the section, alone and several failing at once.
const std::vector<Section>& bad_sections() {
  static const std::vector<Section> table = {
      {1, 0, 99999, " ** On entry, M2 .lt. 1: M2 =" + wide(0) + ".", {wide(0)}},
      {-7, -3, 99999, " ** On entry, M2 .lt. 1: M2 =" + wide(-3) + ".", {wide(-3)}},
      {INT_MAX, INT_MIN, 99999, " ** On entry, M2 .lt. 1: M2 =" + wide(INT_MIN) + ".", {wide(INT_MIN)}},
      {0, 5, 99998, " ** On entry, M1 .lt. 1: M1 =" + wide(0) + ".", {wide(0)}},
      {INT_MIN, INT_MAX, 99998, " ** On entry, M1 .lt. 1: M1 =" + wide(INT_MIN) + ".", {wide(INT_MIN)}},
      {5, 4, 99997, " ** On entry, M1 .gt. M2:\n    M1 =" + wide(5) + ", M2 =" + wide(4) + ".", {wide(5), wide(4)}},
      {INT_MAX,
       1,
       99997,
       " ** On entry, M1 .gt. M2:\n    M1 =" + wide(INT_MAX) + ", M2 =" + wide(1) + ".",
       {wide(INT_MAX), wide(1)}},
  };
  return table;
}

}  // namespace

TEST_CASE("a section that is none: code 1, whatever else is wrong") {
  for (const Section& row : bad_sections()) {
    CAPTURE(row.m1);
    CAPTURE(row.m2);
    std::vector<Integer> entries = {-9, 99, 99, 0, 7, 7};
    const std::vector<Integer> before = entries;
    for (const Routine& routine : permuting()) {
      const Outcome outcome = call(routine, row.m1, row.m2, entries.data());
      CHECK(outcome.ifail == 1);
      CHECK(outcome.console == row.message);
      CHECK(outcome.buffer == buffer_text(routine.name, 1, row.label, row.values));
    }
    for (const char* order : {"A", "X"}) {
      const Outcome outcome = rank(row.m1, row.m2, order, 1, entries.data());
      CHECK(outcome.ifail == 1);
      CHECK(outcome.console == row.message);
      CHECK(outcome.buffer == buffer_text("M01DAF", 1, row.label, row.values));
    }
    CHECK(entries == before);
  }
}

TEST_CASE("ORDER: its first character in either case, and nothing past its length") {
  struct Row {
    const char* order;
    int length;
    std::string shown;  // empty: accepted
  };
  const Row rows[] = {{"A", 1, ""},   {"a", 1, ""},    {"D", 1, ""},     {"d", 1, ""},       {"descending", 10, ""},
                      {"X", 1, "X"},  {" A", 2, " A"}, {"XYZ", 1, "X"},  {"", 0, " "},       {"A", 0, " "},
                      {"A", -5, " "}, {"", 1, " "},    {"B\0A", 3, "B"}, {"\x80", 1, "\x80"}};
  for (const Row& row : rows) {
    CAPTURE(row.order);
    std::vector<Integer> irank(6, 77);
    const Outcome outcome = rank(2, 4, row.order, row.length, irank.data());
    if (row.shown.empty()) {
      CHECK(outcome.ifail == 0);
      CHECK(outcome.buffer == "NONE");
      CHECK(outcome.console.empty());
      CHECK(irank == std::vector<Integer>{77, 2, 3, 4, 77, 77});
    } else {
      CHECK(outcome.ifail == 2);
      CHECK(outcome.console == " ** On entry, ORDER has an illegal value: ORDER = '" + row.shown + "'.");
      CHECK(outcome.buffer == buffer_text("M01DAF", 2, 99996, {row.shown}));
      CHECK(irank == std::vector<Integer>(6, 77));
    }
  }
}

TEST_CASE("entries out of range: code 2, nothing changed") {
  struct Row {
    std::vector<Integer> entries;
    Integer place, value;
  };
  const Row rows[] = {
      {{0, 2, 3, 4, 6, 0}, 5, 6},
      {{0, 1, 3, 4, 5, 0}, 2, 1},
      {{0, 2, 2, 2, 0, 0}, 5, 0},
      {{0, 2, -3, 9, 5, 0}, 3, -3},
      {{0, 2, 3, INT_MIN, 5, 0}, 4, INT_MIN},
      {{0, INT_MAX, 3, 4, 5, 0}, 2, INT_MAX},
  };
  for (const Row& row : rows) {
    for (const Routine& routine : permuting()) {
      CAPTURE(routine.name);
      std::vector<Integer> entries = row.entries;
      const Outcome outcome = call(routine, 2, 5, entries.data());
      CHECK(outcome.ifail == 2);
      const std::string array = routine.array;
      CHECK(outcome.console == " ** " + array +
                                   "(M1:M2) does not contain a permutation of the integers M1 to M2.\n    " + array +
                                   "(I) contains an out-of-range value:\n    I =" + wide(row.place) + ", " + array +
                                   "(I) =" + wide(row.value) + ".");
      CHECK(outcome.buffer == buffer_text(routine.name, 2, 99996, {wide(row.place), wide(row.value)}));
      CHECK(entries == row.entries);
    }
  }
}

TEST_CASE("a repeated entry: code 3, and every entry as it was") {
  struct Row {
    std::vector<Integer> entries;
    Integer repeated;
  };
  const Row rows[] = {
      {{0, 2, 2, 4, 5, 0}, 2}, {{0, 3, 4, 3, 5, 0}, 3}, {{0, 3, 2, 5, 5, 0}, 5}, {{0, 4, 4, 4, 4, 0}, 4}};
  for (const Row& row : rows) {
    for (const Routine& routine : permuting()) {
      CAPTURE(routine.name);
      std::vector<Integer> entries = row.entries;
      const Outcome outcome = call(routine, 2, 5, entries.data());
      CHECK(outcome.ifail == 3);
      const std::string array = routine.array;
      CHECK(outcome.console == " ** " + array +
                                   "(M1:M2) does not contain a permutation of the integers M1 to M2.\n    " + array +
                                   " contains a repeated value:" + wide(row.repeated) + ".");
      CHECK(outcome.buffer == buffer_text(routine.name, 3, 99995, {wide(row.repeated)}));
      CHECK(entries == row.entries);
    }
  }
}

TEST_CASE("the classic forms report as their routines do") {
  std::vector<Integer> entries = {1, 1};
  Integer m1 = 1;
  Integer m2 = 2;
  Integer ifail = -13;
  support::ConsoleCapture console;
  QuarnMP_m01daf_(reals.data(), &m1, &m2, "?", entries.data(), &ifail, 1);
  CHECK(ifail == 2);
  CHECK(console.text() == " ** On entry, ORDER has an illegal value: ORDER = '?'.");
  for (int i = 0; i < 3; ++i) {
    ifail = 1;
    entries = {1, 1};
    i == 0   ? QuarnMP_m01eaf_(reals.data(), &m1, &m2, entries.data(), &ifail)
    : i == 1 ? QuarnMP_m01edf_(complexes.data(), &m1, &m2, entries.data(), &ifail)
             : QuarnMP_m01zaf_(entries.data(), &m1, &m2, &ifail);
    CHECK(ifail == 3);
  }
}
