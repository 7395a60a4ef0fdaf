// What the three routines of the iterative solver say of wrong arguments and of calls out of turn.
#include <functional>
#include <limits>

#include "sparse/systems.h"
#include "support/digits.h"
#include "support/outcome.h"

using namespace systems;
using support::buffer_text;
using support::Outcome;
using support::outcome_of;
using support::wide;

namespace {

constexpr Integer kLargest = std::numeric_limits<Integer>::max();

/// Arguments of the set-up, right unless a row changes them.
struct Arguments {
  std::string method = "BICGSTAB", precon = "N", norm = "2", weight = "N";
  Integer iterm = 1, n = 20, m = 2;
  QuarnFloat tol = QuarnFloat("1e-10");
  Integer maxitn = 10;
  QuarnFloat anorm = 1, sigmax = 1;
  Integer monit = 0;
  Integer lwreq = -1;
  Numbers work = zeros(1000);
  Integer lwork = 1000;

  Outcome call() {
    return outcome_of([this](char* buffer, Integer* ifail, int length) {
      QuarnMP_f11bdfn_(method.data(), precon.data(), norm.data(), weight.data(), iterm, n, m, tol, maxitn, anorm,
                       sigmax, monit, &lwreq, work.data(), lwork, buffer, ifail, int(method.size()), int(precon.size()),
                       int(norm.size()), int(weight.size()), length);
    });
  }
};

std::string two(Integer value) { return (value < 10 ? " " : "") + std::to_string(value); }

Outcome iterate(Integer& irevcm, Numbers& work, Integer lwork, Numbers& u, Numbers& v, QuarnFloat* wgt = nullptr) {
  return outcome_of([&](char* buffer, Integer* ifail, int length) {
    QuarnMP_f11befn_(&irevcm, u.data(), v.data(), wgt, work.data(), lwork, buffer, ifail, length);
  });
}

void check(const Outcome& outcome, const std::string& routine, int ifail, int label,
           const std::vector<std::string>& values, const std::string& message) {
  CHECK(outcome.ifail == ifail);
  CHECK(outcome.buffer == buffer_text(routine, ifail, label, values));
  CHECK(outcome.console == message);
}

}  // namespace

TEST_CASE("wrong arguments of the set-up, in order") {
  const support::Digits digits(20);
  struct Row {
    Integer parameter;
    std::function<void(Arguments&)> change;
  };
  // Each row comes with all later ones in a second pass: the first wrong argument decides.
  const std::vector<Row> rows = {
      {1, [](Arguments& a) { a.method = "GMRES"; }},
      {1, [](Arguments& a) { a.method = "     "; }},
      {1, [](Arguments& a) { a.method = ""; }},
      {1, [](Arguments& a) { a.method = "CG"; }},
      {1, [](Arguments& a) { a.method = "CGS" + std::string(30, 'x'); }},
      {2, [](Arguments& a) { a.precon = "x"; }},
      {2, [](Arguments& a) { a.precon = ""; }},
      {3, [](Arguments& a) { a.norm = "x"; }},
      {3, [](Arguments& a) { a.norm = "0"; }},
      {4, [](Arguments& a) { a.weight = "1"; }},
      {5, [](Arguments& a) { a.iterm = 0; }},
      {5, [](Arguments& a) { a.iterm = 3; }},
      {6, [](Arguments& a) { a.n = 0; }},
      {6, [](Arguments& a) { a.n = std::numeric_limits<Integer>::min(); }},
      {8, [](Arguments& a) { a.tol = 1; }},
      {8, [](Arguments& a) { a.tol = QuarnFloat("nan"); }},
      {9, [](Arguments& a) { a.maxitn = 0; }},
      {10, [](Arguments& a) { a.anorm = QuarnFloat("inf"); }},
      {11, [](Arguments& a) { a.sigmax = QuarnFloat("nan"); }},
      {12, [](Arguments& a) { a.monit = -1; }},
      {15, [](Arguments& a) { a.lwork = 99; }},
      {15, [](Arguments& a) { a.lwork = 20 * (4 + 6) + 99; }},
      {15, [](Arguments& a) { a.n = kLargest; }},
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const bool later_ones : {false, true}) {
      CAPTURE(i);
      Arguments arguments;
      rows[i].change(arguments);
      for (std::size_t k = i + 1; k < rows.size() && later_ones; ++k) {
        if (rows[k].parameter > rows[i].parameter) {
          const Integer n = arguments.n;
          rows[k].change(arguments);
          arguments.n = rows[i].parameter == 6 ? n : arguments.n;
        }
      }
      const Integer parameter = rows[i].parameter;
      check(arguments.call(), "F11BDF", 1, 99999, {two(parameter)},
            " ** On entry, parameter number " + two(parameter) + " had an illegal value.");
      CHECK(arguments.work == zeros(1000));
      CHECK((arguments.lwreq == -1) == (parameter < 13));
    }
  }
}

TEST_CASE("LWREQ is set where LWORK is too short, up to the largest Integer") {
  const support::Digits digits(20);
  struct {
    const char* method;
    const char* precon;
    Integer n, m, lwreq;
  } const rows[] = {{"RGMRES", "N", 20, 5, 100 + 20 * (4 + 7) + 6 * 5 + 3 * 5 + 1},
                    {"CGS", "P", 20, 5, 100 + 20 * (4 + 5 + 1)},
                    {"BICGSTAB", "N", 20, 5, 100 + 20 * (4 + 12)},
                    {"TFQMR", "P", 20, 5, 100 + 20 * (4 + 7 + 1)},
                    {"RGMRES", "N", kLargest, 50, kLargest}};
  for (const auto& row : rows) {
    Arguments arguments;
    arguments.method = row.method;
    arguments.precon = row.precon;
    arguments.n = row.n;
    arguments.m = row.m;
    arguments.lwork = row.lwreq < kLargest ? row.lwreq - 1 : kLargest;
    CHECK(arguments.call().ifail == 1);
    CHECK(arguments.lwreq == row.lwreq);
    if (row.lwreq < kLargest) {
      arguments.lwork = row.lwreq;
      CHECK(arguments.call().ifail == 0);
    }
  }
}

TEST_CASE("M has a message of its own, between N and TOL") {
  const support::Digits digits(20);
  struct {
    const char* method;
    Integer n, m, bound;
    bool wrong;
  } const rows[] = {{"RGMRES", 100, 50, 50, false},  {"RGMRES", 100, 51, 50, true},    {"RGMRES", 4, 5, 50, true},
                    {"RGMRES", 100, 0, 50, true},    {"BICGSTAB", 100, 10, 10, false}, {"BICGSTAB", 100, 11, 10, true},
                    {"BICGSTAB", 3, 4, 10, true},    {"BICGSTAB", 3, -7, 10, true},    {"CGS", 3, -7, 0, false},
                    {"TFQMR", 3, kLargest, 0, false}};
  for (const auto& row : rows) {
    Arguments arguments;
    arguments.method = row.method;
    arguments.n = row.n;
    arguments.m = row.m;
    arguments.lwork = 20000;
    arguments.work = zeros(20000);
    arguments.tol = row.wrong ? 2 : 0;
    const Outcome outcome = arguments.call();
    if (!row.wrong) {
      CHECK(outcome.ifail == 0);
      continue;
    }
    check(outcome, "F11BDF", 3, 99997, {two(row.bound), wide(row.m)},
          " ** On entry, M .lt. 1 or M .gt. MIN (N," + two(row.bound) + "):\n    M =" + wide(row.m));
    arguments.n = 0;
    CHECK(arguments.call().ifail == 1);
  }
}

TEST_CASE("texts are read as they are meant") {
  const support::Digits digits(20);
  struct {
    const char* method;
    Integer code;
  } const methods[] = {{"RGMRES", 1}, {"rgmres", 1},   {"Rgmres(20)", 1},   {"CGS", 2},          {"  cGs  ", 2},
                       {"cgs2", 2},   {"BICGSTAB", 3}, {" bicgstab(l)", 3}, {"  tfqmr     ", 4}, {"TFQMR", 4}};
  for (const auto& row : methods) {
    Arguments arguments;
    arguments.method = row.method;
    CHECK(arguments.call().ifail == 0);
    CHECK(arguments.work[5] == row.code);
  }
  for (const char* norm : {"1", "i", "I", "inf", "2", "2-norm"}) {
    for (const char* flags : {"nN", "Pw", "pW", "Nn"}) {
      Arguments arguments;
      arguments.norm = norm;
      arguments.precon = std::string(1, flags[0]);
      arguments.weight = std::string(1, flags[1]);
      CHECK(arguments.call().ifail == 0);
    }
  }
}

TEST_CASE("fewer than ten digits cannot hold the counters") {
  const support::Digits digits(9);
  Arguments arguments;
  check(arguments.call(), "F11BDF", 1, 99999, {"14"}, " ** On entry, parameter number 14 had an illegal value.");
}

TEST_CASE("the default tolerance is the square root of the precision, and none is too small to be reached") {
  const support::Digits digits(20);
  struct {
    const char* tol;
    Integer n;
    const char* used;
  } const rows[] = {
      {"0", 4, "1e-10"}, {"-3", 4, "1e-10"}, {"1e-5", 4, "1e-5"}, {"1e-30", 4, "1e-19"}, {"1e-30", 400, "2e-19"}};
  for (const auto& row : rows) {
    Arguments arguments;
    arguments.method = "CGS";
    arguments.n = row.n;
    arguments.tol = QuarnFloat(row.tol);
    arguments.lwork = 20000;
    arguments.work = zeros(20000);
    REQUIRE(arguments.call().ifail == 0);
    // With b = (1, 0, ...), x = 0 and ANORM of no weight the right side is the tolerance.
    Numbers u = zeros(row.n);
    Numbers v = zeros(row.n);
    v[0] = 1;
    Integer irevcm = 0;
    iterate(irevcm, arguments.work, arguments.lwork, u, v);
    REQUIRE(irevcm == 1);
    v = zeros(row.n);
    iterate(irevcm, arguments.work, arguments.lwork, u, v);
    CHECK(arguments.work[53] == QuarnFloat(row.used));
  }
}

TEST_CASE("a problem that has not been completed is not set up again, nor spoilt") {
  const support::Digits digits(20);
  const std::string message =
      " ** F11BDF has been called out of sequence: either F11BDF has been called\n"
      " ** twice or F11BEF has not terminated its current task.";
  Arguments arguments;
  CHECK(arguments.call().ifail == 0);
  const Numbers set_up = arguments.work;
  check(arguments.call(), "F11BDF", 2, 99998, {}, message);
  CHECK(arguments.work == set_up);

  Numbers u = zeros(20);
  Numbers v(20, QuarnFloat(1));
  Integer irevcm = 0;
  iterate(irevcm, arguments.work, arguments.lwork, u, v);
  CHECK(irevcm == 1);
  check(arguments.call(), "F11BDF", 2, 99998, {}, message);
  irevcm = 6;
  check(iterate(irevcm, arguments.work, arguments.lwork, u, v), "F11BEF", 4, 99996, {},
        " ** User-requested immediate termination.");
  CHECK(arguments.call().ifail == 0);

  irevcm = 6;
  CHECK(iterate(irevcm, arguments.work, arguments.lwork, u, v).ifail == 4);
  CHECK(irevcm == 4);
}

TEST_CASE("F11BEF: wrong arguments, and calls out of turn") {
  const support::Digits digits(20);
  const std::string not_set_up =
      " ** Either F11BDF was not called before calling this routine\n ** or it has returned an error.";
  Arguments arguments;
  Numbers u = zeros(20);
  Numbers v(20, QuarnFloat(1));
  Integer irevcm = 0;
  const auto call = [&](Integer lwork) { return iterate(irevcm, arguments.work, lwork, u, v); };

  check(call(99), "F11BEF", 1, 99999, {"initial ", " 6"},
        " ** On initial entry, parameter number  6 had an illegal value.");
  CHECK(irevcm == 4);
  irevcm = 0;
  check(call(1000), "F11BEF", 2, 99998, {}, not_set_up);
  CHECK(irevcm == 4);

  arguments.n = -1;
  CHECK(arguments.call().ifail == 1);
  irevcm = 0;
  check(call(1000), "F11BEF", 2, 99998, {}, not_set_up);

  arguments.n = 20;
  CHECK(arguments.call().ifail == 0);
  for (const Integer wrong : {1, -1, 2, 3, 4, 5, 7, 100, -5}) {
    irevcm = wrong;
    check(call(1000), "F11BEF", 1, 99999, {"intermediate ", " 1"},
          " ** On intermediate entry, parameter number  1 had an illegal value.");
    CHECK(irevcm == 4);
  }
  irevcm = 0;
  check(call(arguments.lwreq - 1), "F11BEF", 1, 99999, {"initial ", " 6"},
        " ** On initial entry, parameter number  6 had an illegal value.");
  irevcm = 0;
  CHECK(call(1000).ifail == 0);
  CHECK(irevcm == 1);

  for (const Integer wrong : {0, -1, 2, 3, 4, 7}) {
    irevcm = wrong;
    const Outcome outcome = call(1000);
    CHECK(outcome.ifail == 1);
    CHECK(outcome.buffer.substr(0, 18) == "F11BEF     1 99999");
  }
  // Nothing is lost: the right value goes on. A = I gives the solution at once.
  irevcm = 1;
  v = u;
  int calls = 0;
  while (irevcm != 4) {
    REQUIRE(++calls <= 20);
    CHECK(call(1000).ifail == 0);
    if (irevcm == 1) {
      v = u;
    }
  }
  CHECK(u == Numbers(20, QuarnFloat(1)));

  for (const Integer any : {0, 1, 4, 5, 6}) {
    irevcm = any;
    check(call(1000), "F11BEF", 3, 99997, {},
          " ** F11BEF has already completed its tasks. You need to set a new problem.");
    CHECK(irevcm == 4);
  }
}

TEST_CASE("weights must be positive and finite") {
  const support::Digits digits(20);
  for (const char* bad : {"0", "-1", "nan", "inf"}) {
    Arguments arguments;
    arguments.weight = "W";
    CHECK(arguments.call().ifail == 0);
    Numbers u = zeros(20);
    Numbers v(20, QuarnFloat(1));
    Numbers weights(20, QuarnFloat(1));
    weights[19] = QuarnFloat(bad);
    Integer irevcm = 0;
    check(iterate(irevcm, arguments.work, 1000, u, v, weights.data()), "F11BEF", 1, 99999, {"initial ", " 4"},
          " ** On initial entry, parameter number  4 had an illegal value.");
    weights[19] = 1;
    irevcm = 0;
    CHECK(iterate(irevcm, arguments.work, 1000, u, v, weights.data()).ifail == 0);
    // Later calls are no different, and nothing is lost.
    const Integer request = irevcm;
    const Numbers before = arguments.work;
    weights[7] = QuarnFloat(bad);
    check(iterate(irevcm, arguments.work, 1000, u, v, weights.data()), "F11BEF", 1, 99999, {"intermediate ", " 4"},
          " ** On intermediate entry, parameter number  4 had an illegal value.");
    CHECK(arguments.work == before);
    weights[7] = 1;
    irevcm = request;
    v = u;
    CHECK(iterate(irevcm, arguments.work, 1000, u, v, weights.data()).ifail == 0);
  }
}

TEST_CASE("the messages of an iteration that does not succeed") {
  const support::Digits digits(20);
  const System system = convection_diffusion(6, 3);
  const Numbers b = system.times(Numbers(36, QuarnFloat(1)));
  struct {
    Integer maxitn;
    bool tidy, zero_product;
    int ifail;
    const char* message;
  } const rows[] = {
      {4, false, false, 8, " ** The solution has not converged after      4 iterations."},
      {9, true, false, 5,
       " ** User-requested tidy termination.\n ** The solution has not converged after      0 iterations."},
      {9, false, true, 7, " ** Algorithm breakdown at iteration no.      0"},
  };
  for (const auto& row : rows) {
    Setup setup{"CGS"};
    setup.anorm = 8;
    setup.maxitn = row.maxitn;
    Caller caller(system, setup, b);
    while (caller.irevcm != 4) {
      caller.step();
      if (row.tidy && caller.irevcm == 1) {
        caller.irevcm = 5;
      }
      if (row.zero_product) {
        caller.v = zeros(36);
      }
      if (caller.irevcm == 5) {
        caller.finish();
      }
    }
    CHECK(caller.ifail == row.ifail);
    CHECK(caller.message == row.message);
  }
}

TEST_CASE("F11BFF: a short WORK, and one without a problem") {
  const support::Digits digits(20);
  Numbers work = zeros(1000);
  Integer itn = -1;
  QuarnFloat left, right, anorm, sigmax;
  const auto call = [&](Integer lwork) {
    return outcome_of([&](char* buffer, Integer* ifail, int length) {
      QuarnMP_f11bffn_(&itn, &left, &right, &anorm, &sigmax, work.data(), lwork, buffer, ifail, length);
    });
  };
  check(call(99), "F11BFF", 2, 99998, {" 7"}, " ** On entry, parameter number  7 had an illegal value.");
  check(call(1000), "F11BFF", 1, 99999, {}, " ** F11BFF has been called out of sequence.");
  CHECK(itn == -1);

  Arguments arguments;
  arguments.anorm = 3;
  arguments.sigmax = -1;
  CHECK(arguments.call().ifail == 0);
  work = arguments.work;
  CHECK(call(1000).buffer == "NONE");
  CHECK(itn == 0);
  CHECK(anorm == 3);
  CHECK(sigmax == 0);
}

TEST_CASE("a step routine refuses a problem of another method") {
  const support::Digits digits(20);
  const auto steps = {QuarnMP_f11bezn_, QuarnMP_f11betn_, QuarnMP_f11bepn_, QuarnMP_f11beln_};
  Integer code = 0;
  for (const char* method : {"RGMRES", "CGS", "BICGSTAB", "TFQMR"}) {
    ++code;
    Integer of = 0;
    for (const auto step : steps) {
      ++of;
      Arguments arguments;
      arguments.method = method;
      CHECK(arguments.call().ifail == 0);
      Numbers u = zeros(20);
      Numbers v(20, QuarnFloat(1));
      Integer irevcm = 0;
      Integer info = 1000;
      step(&irevcm, arguments.work.data(), u.data(), v.data(), nullptr, &info);
      CHECK(info == (of == code ? 0 : 2));
      CHECK(irevcm == (of == code ? 1 : 0));
    }
  }
}
