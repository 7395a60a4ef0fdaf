// The iterative solver on systems that it has to solve, judged by residuals computed here.
#include <array>

#include "sparse/systems.h"
#include "support/digits.h"

using namespace systems;

namespace {

const std::array<Setup, 7> kMethods = {
    {{"RGMRES", 50}, {"CGS"}, {"BICGSTAB", 1}, {"BICGSTAB", 4}, {"TFQMR"}, {"FGMRES", 67}, {"IDR", 4}}};

/// What the problem is, for messages.
std::string label(const System& system, const Setup& setup) {
  return system.name + ", " + setup.method + " " + std::to_string(setup.m) + ", precon " + setup.precon + ", norm " +
         setup.norm + ", tol " + setup.tol.to_string();
}

/// Solves with b = A (1, ..., 1) and ANORM the 1-norm, so that the criterion is the relative residual.
Caller solved(const System& system, Setup setup) {
  setup.m = std::min(setup.m, system.n);
  setup.anorm = one_norm(system);
  Caller caller(system, setup, system.times(Numbers(std::size_t(system.n), QuarnFloat(1))));
  caller.finish();
  return caller;
}

QuarnFloat relative_residual_of(const System& system, const Caller& caller) {
  return relative_residual(system, caller.u, system.times(Numbers(std::size_t(system.n), QuarnFloat(1))));
}

/// Converged, truly, and not more than two iterations after the first iterate that satisfies the criterion.
void check_converges(const System& system, const Setup& setup) {
  INFO(label(system, setup));
  const Caller caller = solved(system, setup);
  REQUIRE(caller.ifail == 0);
  CHECK(relative_residual_of(system, caller) <= setup.tol * QuarnFloat("1.0001"));
  CHECK(caller.left <= caller.right);

  Setup watched = setup;
  watched.monit = 1;
  const Caller first = solved(system, watched);
  CHECK(first.ifail == 0);
  CHECK(caller.itn <= first.itn + 2);
}

void check_all_methods(const System& system, const std::string& precon, const std::vector<std::string>& except = {}) {
  for (Setup setup : kMethods) {
    if (std::find(except.begin(), except.end(), setup.method) != except.end()) {
      continue;
    }
    setup.precon = precon;
    for (const char* tol : {"1e-30", "1e-45"}) {
      setup.tol = QuarnFloat(tol);
      check_converges(system, setup);
    }
  }
}

}  // namespace

TEST_CASE("systems of many kinds are solved to 30 and 45 of 50 digits" * doctest::test_suite("long")) {
  const support::Digits digits(50);
  support::Random random;
  SUBCASE("mild convection") { check_all_methods(convection_diffusion(10, 1), "N"); }
  SUBCASE("convection and diffusion") { check_all_methods(convection_diffusion(12, 20), "P"); }
  SUBCASE("strong convection") { check_all_methods(convection_diffusion(10, 100), "N"); }
  SUBCASE("diagonal dominance") { check_all_methods(diagonally_dominant(150, random), "N"); }
  SUBCASE("diagonal dominance, preconditioned") { check_all_methods(diagonally_dominant(150, random), "P"); }
  SUBCASE("a distillation column") { check_all_methods(from_file("west0067"), "N", {"RGMRES"}); }
  SUBCASE("chemical kinetics") { check_all_methods(equilibrated(from_file("fs_183_1")), "P"); }
  SUBCASE("a stiffness matrix") { check_all_methods(from_file("bcsstk01"), "P"); }
  SUBCASE("a stiffness matrix, no preconditioner") { check_all_methods(from_file("bcsstk01"), "N"); }
}

TEST_CASE("a system of order 2500") {
  const support::Digits digits(50);
  const System system = convection_diffusion(50, 40);
  const Setup setup{"BICGSTAB", 2};
  const Caller caller = solved(system, setup);
  CHECK(caller.ifail == 0);
  CHECK(relative_residual_of(system, caller) <= setup.tol * QuarnFloat("1.0001"));
}

TEST_CASE("what does not converge says so") {
  const support::Digits digits(50);
  struct Row {
    System system;
    Setup setup;
    int ifail;
  };
  const System shift = [] {
    System cyclic{"cyclic shift", 12};
    for (Integer i = 1; i <= 12; ++i) {
      cyclic.add(i, i % 12 + 1, 1);
    }
    return cyclic;
  }();
  const System singular = [] {
    System zero_row{"zero row", 5};
    for (Integer i = 1; i <= 4; ++i) {
      zero_row.add(i, i, i);
      zero_row.add(i, 5, 1);
    }
    return zero_row;
  }();
  Setup short_of_time{"CGS"};
  short_of_time.maxitn = 5;
  Setup too_accurate{"TFQMR"};
  too_accurate.tol = QuarnFloat("1e-60");
  const std::vector<Row> rows = {
      {from_file("west0067"), {"RGMRES", 50}, 8},
      {convection_diffusion(10, 1), short_of_time, 8},
      {shift, {"RGMRES", 6}, 7},  // no cycle that is shorter than N gains anything
  };
  for (const Row& row : rows) {
    INFO(label(row.system, row.setup));
    Setup setup = row.setup;
    setup.anorm = one_norm(row.system);
    Numbers b = zeros(row.system.n);
    b[0] = 1;
    Caller caller(row.system, setup, b);
    caller.finish();
    CHECK(caller.ifail == row.ifail);
    CHECK(caller.itn <= setup.maxitn);
    CHECK(relative_residual(row.system, caller.u, b) > setup.tol);
  }
  for (const Setup& method : kMethods) {
    Setup setup = method;
    setup.m = std::min(setup.m, Integer(5));
    setup.anorm = QuarnFloat("1e-200");  // however large x gets, it does not excuse the residual
    Numbers b(5, QuarnFloat(1));         // not in the range of the matrix
    Caller caller(singular, setup, b);
    caller.finish();
    INFO(label(singular, setup));
    CHECK((caller.ifail == 7 || caller.ifail == 8 || caller.ifail == 9));
  }
}

TEST_CASE("ten working digits hold the state") {
  const support::Digits digits(10);
  const System system = convection_diffusion(4, 2);
  for (Setup setup : kMethods) {
    setup.m = std::min(setup.m, Integer(6));
    setup.tol = QuarnFloat("1e-6");
    setup.maxitn = 2147483647;
    setup.monit = 1;  // so that the counters differ often
    INFO(label(system, setup));
    const Caller caller = solved(system, setup);
    CHECK(caller.ifail == 0);
    CHECK(!caller.history.empty());
  }
}

TEST_CASE("a breakdown is survived with another shadow vector") {
  const support::Digits digits(50);
  support::Random random;
  System shift{"cyclic shift", 12};
  System skew{"skew-symmetric", 12};
  for (Integer i = 1; i <= 12; ++i) {
    shift.add(i, i % 12 + 1, 1);
    for (Integer j = 1; j < i; ++j) {
      const QuarnFloat a = QuarnFloat(random.between(-999, 999)) / 1000;
      skew.add(i, j, a);
      skew.add(j, i, -a);
    }
  }
  Numbers b = zeros(12);
  b[0] = 1;
  for (const System& system : {shift, skew}) {
    for (Setup setup : kMethods) {
      if (setup.method == "RGMRES" || setup.method == "FGMRES") {
        continue;
      }
      setup.anorm = one_norm(system);
      INFO(label(system, setup));
      Caller caller(system, setup, b);
      caller.finish();
      CHECK(caller.ifail == 0);
      CHECK(relative_residual(system, caller.u, b) <= setup.tol * QuarnFloat("1.0001"));
    }
  }
}

TEST_CASE("a power of ten in the right-hand side is one in the solution, at both ends of the range") {
  const support::Digits digits(40);
  const System system = convection_diffusion(5, 3);
  const Numbers ones(25, QuarnFloat(1));
  const auto scaled = [](Numbers x, int decade) {
    for (QuarnFloat& element : x) {
      element *= QuarnFloat(1, decade);
    }
    return x;
  };
  const Numbers b = system.times(ones);
  for (Setup setup : kMethods) {
    for (const char* norm : {"1", "I", "2"}) {
      for (const Integer iterm : {1, 2}) {
        setup.m = std::min(setup.m, Integer(7));
        setup.norm = norm;
        setup.iterm = iterm;
        Caller plain(system, setup, b);
        plain.finish();
        CHECK(plain.ifail == 0);
        for (const int decade : {-999999000, -600000000, -150000000, 150000000, 600000000, 999999000}) {
          INFO(label(system, setup), ", times 1e", decade);
          Caller caller(system, setup, scaled(b, decade));
          caller.finish();
          CHECK(caller.ifail == 0);
          CHECK(caller.itn == plain.itn);
          CHECK(caller.u == scaled(plain.u, decade));
          CHECK(caller.v == scaled(plain.v, decade));
          CHECK(caller.left == plain.left * QuarnFloat(1, decade));
        }
      }
    }
  }
}

TEST_CASE("products that are no numbers leave the last iterate that is one") {
  const support::Digits digits(30);
  const System system = convection_diffusion(4, 2);
  const Numbers b = system.times(Numbers(16, QuarnFloat(1)));
  for (Setup setup : kMethods) {
    setup.m = std::min(setup.m, Integer(4));
    setup.anorm = one_norm(system);
    for (const char* precon : {"N", "P"}) {
      setup.precon = precon;
      for (const char* value : {"nan", "inf"}) {
        for (int good = 0; good < 9; ++good) {
          INFO(label(system, setup), ", ", value, " from answer ", good + 1);
          Caller caller(system, setup, b);
          for (int calls = 0; caller.irevcm != 4; ++calls) {
            REQUIRE(calls < 100);
            caller.step();
            if (caller.irevcm != 4 && calls >= good) {
              caller.v[std::size_t(calls) % 16] = QuarnFloat(value);
            }
          }
          CHECK(caller.ifail == 7);
          CHECK(std::all_of(caller.u.begin(), caller.u.end(), [](const QuarnFloat& x) { return isfinite(x); }));
        }
      }
    }
  }
}

TEST_CASE("a tolerance that rounding errors keep out of reach has its message, and so has an end asked for then") {
  const support::Digits digits(20);
  // A string: ||A|| ||x|| is about 10^3 ||b||, so that rounding errors leave a residual of about 10^-17 ||b||.
  System system{"string", 50};
  for (Integer i = 1; i <= 50; ++i) {
    for (Integer j = std::max(Integer(1), i - 1); j <= std::min(Integer(50), i + 1); ++j) {
      system.add(i, j, i == j ? 2 : -1);
    }
  }
  Numbers b;
  for (int i = 1; i <= 50; ++i) {
    b.push_back(QuarnFloat(60 + i) / 70);
  }
  for (Setup setup : kMethods) {
    setup.m = std::min(setup.m, system.n);
    setup.tol = QuarnFloat("1e-19");
    setup.anorm = QuarnFloat("1e-200");
    setup.maxitn = 2000;
    INFO(label(system, setup));
    Caller caller(system, setup, b);
    caller.finish();
    CHECK(caller.ifail == 9);
    CHECK(
        caller.message ==
        " ** The required accuracy could not be obtained.\n ** However, a reasonable accuracy may have been achieved.");
    CHECK(caller.left > caller.right);
    CHECK(caller.left < QuarnFloat("1e-15"));

    Caller stopped(system, setup, b);
    for (int calls = 1; calls < caller.products; ++calls) {
      stopped.step();
    }
    stopped.irevcm = 5;
    stopped.finish();
    CHECK(stopped.ifail == 6);
    CHECK(stopped.message ==
          " ** User-requested termination: the required accuracy could not be obtained.\n"
          " ** However, a reasonable accuracy may have been achieved.");
  }
}

TEST_CASE("every norm, weight and criterion holds for the residual that comes back") {
  const support::Digits digits(40);
  support::Random random;
  const System system = convection_diffusion(7, 5);
  const auto count = std::size_t(system.n);
  Numbers weights;
  for (std::size_t i = 0; i < count; ++i) {
    weights.push_back(QuarnFloat(random.between(1, 1000)) / 100);
  }
  const Numbers diagonal = system.diagonal();
  const auto norm_of = [&](const Numbers& x, const Setup& setup) {
    QuarnFloat sum, largest, squares;
    for (std::size_t i = 0; i < count; ++i) {
      const QuarnFloat element = fabs(setup.weight == "W" ? weights[i] * x[i] : x[i]);
      sum += element;
      largest = std::max(largest, element);
      squares += element * element;
    }
    return setup.norm == "1" ? sum : setup.norm == "2" ? sqrt(squares) : largest;
  };
  const auto preconditioned = [&](Numbers x, const Setup& setup) {
    for (std::size_t i = 0; i < count && setup.iterm == 2 && setup.precon == "P" && setup.method != "FGMRES"; ++i) {
      x[i] /= diagonal[i];
    }
    return x;
  };
  const Numbers b = system.times(Numbers(count, QuarnFloat(1)));

  for (Setup setup : kMethods) {
    for (const char* norm : {"1", "I", "2"}) {
      for (const char* weight : {"N", "W"}) {
        for (const char* precon : {"N", "P"}) {
          for (const Integer iterm : {1, 2}) {
            setup.m = std::min(setup.m, Integer(30));
            setup.norm = norm;
            setup.weight = weight;
            setup.precon = precon;
            setup.iterm = iterm;
            INFO(label(system, setup), ", weight ", weight, ", iterm ", int(iterm));
            Caller caller(system, setup, b, weights);
            caller.finish();
            CHECK(caller.ifail == 0);

            Numbers residual = system.times(caller.u);
            for (std::size_t i = 0; i < count; ++i) {
              residual[i] = b[i] - residual[i];
            }
            const QuarnFloat left = norm_of(preconditioned(residual, setup), setup);
            const QuarnFloat scale = iterm == 1 ? caller.anorm : caller.sigmax;
            const QuarnFloat right =
                setup.tol * (norm_of(preconditioned(b, setup), setup) + scale * norm_of(caller.u, setup));
            CHECK(left <= right * QuarnFloat("1.000001"));
            CHECK(fabs(caller.left - left) <= left * QuarnFloat("1e-6"));
            CHECK(fabs(caller.right - right) <= right * QuarnFloat("1e-20"));
            CHECK((caller.transposed_products > 0) == (iterm == 1));
            CHECK((caller.solutions > 0) == (setup.precon == "P"));
          }
        }
      }
    }
  }
}

TEST_CASE("the norm of the matrix is estimated from below and closely") {
  const support::Digits digits(30);
  support::Random random;
  for (const System& system :
       {convection_diffusion(8, 30), diagonally_dominant(60, random), from_file("west0067"), from_file("bcsstk01")}) {
    Numbers rows = zeros(system.n);
    for (std::size_t k = 0; k < system.value.size(); ++k) {
      rows[std::size_t(system.row[k]) - 1] += fabs(system.value[k]);
    }
    const QuarnFloat one = one_norm(system);
    const QuarnFloat infinity = *std::max_element(rows.begin(), rows.end());
    struct {
      const char* norm;
      QuarnFloat least, most;
    } const cases[] = {{"1", one / 3, one},
                       {"I", infinity / 3, infinity},
                       {"2", one / sqrt(QuarnFloat(system.n)), sqrt(one * infinity)}};
    for (const auto& each : cases) {
      INFO(system.name, ", norm ", each.norm);
      Setup setup{"CGS"};
      setup.norm = each.norm;
      setup.maxitn = 1;
      Caller caller(system, setup, Numbers(std::size_t(system.n), QuarnFloat(1)));
      caller.finish();
      CHECK(caller.anorm >= each.least);
      CHECK(caller.anorm <= each.most * QuarnFloat("1.0000000001"));
      CHECK(caller.transposed_products <= 9);
    }
  }
}

TEST_CASE("what is known already needs no iteration") {
  const support::Digits digits(30);
  const System system = convection_diffusion(4, 1);
  Setup setup{"BICGSTAB", 2};
  setup.anorm = 8;
  const Numbers ones(16, QuarnFloat(1));
  const Numbers b = system.times(ones);

  Caller exact(system, setup, b);
  exact.u = ones;
  exact.finish();
  CHECK(exact.ifail == 0);
  CHECK(exact.itn == 0);
  CHECK(exact.products == 1);
  CHECK(exact.u == ones);

  Caller zero(system, setup, zeros(16));
  zero.u = ones;
  zero.finish();
  CHECK(zero.ifail == 0);
  CHECK(zero.products == 0);
  CHECK(zero.u == zeros(16));
  CHECK(zero.v == zeros(16));
}

TEST_CASE("monitoring comes every k-th iteration and changes nothing") {
  const support::Digits digits(50);
  const System system = convection_diffusion(8, 10);
  for (Setup setup : kMethods) {
    INFO(label(system, setup));
    setup.precon = "P";
    const Caller plain = solved(system, setup);
    for (const Integer every : {1, 3, 1000}) {
      setup.monit = every;
      const Caller watched = solved(system, setup);
      CHECK(Integer(watched.history.size()) == (watched.itn - (watched.ifail == 0 ? 1 : 0)) / every);
      CHECK(std::abs(watched.itn - plain.itn) <= 2);
      if (watched.itn == plain.itn) {
        CHECK(watched.u == plain.u);
      }
    }
  }
}

TEST_CASE("the caller can ask for an end") {
  const support::Digits digits(30);
  const System system = convection_diffusion(8, 10);
  const Numbers b = system.times(Numbers(64, QuarnFloat(1)));
  for (Setup setup : kMethods) {
    setup.m = std::min(setup.m, system.n);
    INFO(label(system, setup));
    for (const bool while_monitoring : {false, true}) {
      setup.monit = while_monitoring ? 2 : 0;
      Caller caller(system, setup, b);
      while (caller.itn < 2 || (while_monitoring && caller.irevcm != 3)) {
        caller.step();
        caller.progress();
      }
      caller.irevcm = 5;
      caller.finish();
      CHECK(caller.ifail == 5);
      CHECK(caller.itn == (while_monitoring ? 2 : 3));
      Numbers residual = system.times(caller.u);
      for (std::size_t i = 0; i < b.size(); ++i) {
        residual[i] = b[i] - residual[i];
      }
      CHECK(caller.v == residual);
    }

    setup.monit = 0;
    Caller caller(system, setup, b);
    caller.step();
    const Numbers v = caller.v;
    caller.irevcm = 6;
    caller.step();
    CHECK(caller.irevcm == 4);
    CHECK(caller.ifail == 4);
    CHECK(caller.v == v);
  }
}
