// Tables of failures that several routines share: what is wrong, and everything that a routine has to say about it.
#pragma once

#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "support/outcome.h"

namespace failures {

struct Routine {
  std::string name;
  bool triangle;
};

enum class For { all, general, triangle };

template <class Arguments>
struct Row {
  For which;
  void (*change)(Arguments&);
  int ifail, label;
  std::string message;
  std::vector<std::string> values;
};

/// Calls every routine that a row is for: outcome = call(name, arguments). label(routine, row) is what it has to give.
template <class Arguments, class Call, class Label>
void check(const std::vector<Row<Arguments>>& rows, const std::vector<Routine>& routines, Call call, Label label) {
  for (const Row<Arguments>& row : rows) {
    for (const Routine& routine : routines) {
      if (row.which == (routine.triangle ? For::general : For::triangle)) {
        continue;
      }
      CAPTURE(routine.name);
      Arguments arguments;
      row.change(arguments);
      const Arguments before = arguments;
      const support::Outcome outcome = call(routine.name, arguments);
      CHECK(outcome.ifail == row.ifail);
      CHECK(outcome.console == row.message);
      CHECK(outcome.buffer == support::buffer_text(routine.name, row.ifail, label(routine, row), row.values));
      if (row.ifail < 3) {
        CHECK(arguments.irow == before.irow);
        CHECK(arguments.icol == before.icol);
        CHECK(arguments.nnz == before.nnz);
      }
    }
  }
}

}  // namespace failures
