// CG, MINRES and SYMMLQ: what they solve, and how they end on what they are not for.
#include <cmath>

#include "sparse/systems.h"
#include "support/digits.h"

using namespace systems;

namespace {

const char* const kMethods[] = {"CG", "MINRES", "SYMMLQ"};

Numbers ones_image(const System& system) { return system.times(Numbers(std::size_t(system.n), QuarnFloat(1))); }

/// The five-point Laplacian less a multiple of the identity: indefinite when that lies between its eigenvalues.
System laplacian(Integer side, const QuarnFloat& shift = 0) {
  System system = convection_diffusion(side, 0);
  system.name = "laplacian " + std::to_string(side) + ", shift " + shift.to_string();
  for (std::size_t k = 0; k < system.value.size(); ++k) {
    if (system.row[k] == system.column[k]) {
      system.value[k] -= shift;
    }
  }
  return system;
}

System diagonal(const std::vector<QuarnFloat>& values) {
  System system{"diagonal", Integer(values.size())};
  for (Integer i = 1; i <= system.n; ++i) {
    system.add(i, i, values[std::size_t(i) - 1]);
  }
  return system;
}

/// The criterion in other words, with more digits: left side over right side.
QuarnFloat ratio_of_sides(const System& system, const Setup& setup, const Caller& caller, const Numbers& b) {
  const support::Digits digits(2 * QuarnDigits() + 30);
  const Numbers diagonal = system.diagonal();
  const auto norm = [&](Numbers x, bool preconditioned) {
    QuarnFloat sum;
    for (std::size_t i = 0; i < x.size(); ++i) {
      if (preconditioned && setup.iterm == 2 && setup.precon == "P") {
        x[i] /= diagonal[i];
      }
      const QuarnFloat size = fabs(setup.weight == "W" ? caller.wgt[i] * x[i] : x[i]);
      sum = setup.norm == "1" ? sum + size : setup.norm == "2" ? sum + size * size : std::max(sum, size);
    }
    return setup.norm == "2" ? sqrt(sum) : sum;
  };
  Numbers residual = system.times(caller.u);
  for (std::size_t i = 0; i < b.size(); ++i) {
    residual[i] = b[i] - residual[i];
  }
  const QuarnFloat& matrix_norm = setup.iterm == 1 ? caller.anorm : caller.sigmax;
  return norm(residual, true) / (setup.tol * (norm(b, true) + matrix_norm * norm(caller.u, false)));
}

}  // namespace

TEST_CASE("every success of a symmetric method satisfies its criterion") {
  const support::Digits digits(50);
  support::Random random;
  const std::vector<System> systems = {laplacian(7), laplacian(6, QuarnFloat("1.37")), from_file("bcsstk01")};
  int successes = 0;
  for (const System& system : systems) {
    const Numbers b = ones_image(system);
    Numbers weights;
    for (Integer i = 0; i < system.n; ++i) {
      weights.push_back(QuarnFloat(random.between(1, 100)) / 10);
    }
    for (const char* method : kMethods) {
      for (int choice = 0; choice < 24; ++choice) {
        Setup setup{method};
        setup.tol = QuarnFloat("1e-35");
        setup.precon = choice % 2 == 0 ? "N" : "P";
        setup.weight = choice / 2 % 2 == 0 ? "N" : "W";
        setup.iterm = 1 + choice / 4 % 2;
        setup.norm = choice / 8 == 0 ? "1" : choice / 8 == 1 ? "2" : "I";
        setup.anorm = setup.iterm == 1 && choice % 3 == 0 ? one_norm(system) : QuarnFloat(0);
        Caller caller(system, setup, b, weights);
        caller.finish();
        INFO(system.name, ", ", method, ", choice ", choice, ", ifail ", int(caller.ifail));
        const bool definite = system.name.find("1.37") == std::string::npos;
        CHECK(((definite || setup.method != "CG") ? caller.ifail == 0 : caller.ifail == 0 || caller.ifail == 7));
        if (caller.ifail == 0) {
          ++successes;
          CHECK(ratio_of_sides(system, setup, caller, b) <= QuarnFloat("1.0001"));
        }
      }
    }
  }
  CHECK(successes >= 8 * 24);
}

TEST_CASE("definite systems of one method and another: equal solutions, all methods exact after N steps") {
  // Five different eigenvalues: a Krylov space of five dimensions.
  const support::Digits digits(60);
  const std::vector<QuarnFloat> eigenvalues = {3, 1, 4, 7, 9, 3, 1, 4, 7, 9, 3};
  const System system = diagonal(eigenvalues);
  for (const char* method : kMethods) {
    for (const char* precon : {"N", "P"}) {
      Setup setup{method};
      setup.tol = QuarnFloat("1e-50");
      setup.precon = precon;
      Caller caller(system, setup, Numbers(eigenvalues.size(), QuarnFloat(1)));
      caller.finish();
      INFO(method, " ", precon);
      CHECK(caller.ifail == 0);
      CHECK(caller.itn == (setup.precon == "P" ? 1 : 5));
      for (std::size_t i = 0; i < eigenvalues.size(); ++i) {
        CHECK(fabs(caller.u[i] * eigenvalues[i] - 1) <= QuarnFloat("1e-48"));
      }
    }
  }
}

TEST_CASE("the Lanczos process estimates the norm of the preconditioned matrix from below and closely" *
          doctest::test_suite("long")) {
  support::Random random;
  for (const int digits : {12, 50, 333}) {
    const support::Digits scope(digits);
    const Integer side = 12;
    for (const bool negative : {false, true}) {
      System system = laplacian(side);
      for (QuarnFloat& value : system.value) {
        value = negative ? -value : value;
      }
      Numbers b;
      for (Integer i = 0; i < system.n; ++i) {
        b.push_back(QuarnFloat(random.between(-1000, 1000)) / 7);
      }
      for (const char* method : kMethods) {
        for (const char* precon : {"N", "P"}) {
          if (negative && (std::string(method) == "CG" || std::string(precon) == "P")) {
            continue;  // what they are not for
          }
          for (const char* norm : {"1", "2"}) {
            Setup setup{method};
            setup.precon = precon;
            setup.norm = norm;
            setup.iterm = 2;
            setup.tol = QuarnFloat(1, -digits / 2);
            Caller caller(system, setup, b);
            caller.finish();
            INFO(method, " ", precon, " ", norm, ", ", digits, " digits");
            CHECK(caller.ifail == 0);
            const double half_angle = std::acos(-1.0) / (2 * (side + 1));
            const double largest = std::pow(std::cos(half_angle), 2) * (*precon == 'P' ? 2 : 8);
            const double found = FloatToDouble(caller.sigmax) / (*norm == '2' ? largest : *precon == 'P' ? 2 : 8);
            CHECK(found >= (*norm == '2' ? 0.96 : 0.9));
            CHECK(found <= 1 + 1e-9);
          }
        }
      }
    }
  }
}

TEST_CASE("what a symmetric method is not for ends in a breakdown") {
  const support::Digits digits(50);
  const auto ending = [](const System& system, const char* method, const char* precon, const Numbers& b) {
    Setup setup{method};
    setup.precon = precon;
    setup.anorm = QuarnFloat("1e-200");  // so that a large x excuses nothing
    Caller caller(system, setup, b);
    caller.finish();
    CHECK((caller.ifail != 0 || relative_residual(system, caller.u, b) <= setup.tol));
    return caller;
  };
  const auto breaks_down = [&](const System& system, const char* method, const char* precon, const Numbers& b) {
    INFO(system.name, ", ", method, ", ", precon);
    const Caller caller = ending(system, method, precon, b);
    CHECK(caller.ifail == 7);
    CHECK(caller.message.find("Algorithm breakdown at iteration no.") != std::string::npos);
  };
  const System indefinite = diagonal({2, -3, 5, -1, 4});
  const Numbers ones(5, QuarnFloat(1));
  breaks_down(diagonal({-2, -3, -5}), "CG", "N", Numbers(3, QuarnFloat(1)));
  breaks_down(diagonal({1, -3, 1, 1, 1}), "CG", "N", {1, 9, 1, 1, 1});
  for (const char* method : kMethods) {
    breaks_down(indefinite, method, "P", {1, 9, 1, 1, 1});  // the preconditioner is
    breaks_down(convection_diffusion(6, 30), method, "N", ones_image(convection_diffusion(6, 30)));
    breaks_down(diagonal({0, 0, 0, 0, 0}), method, "N", ones);
  }
  for (const char* method : {"MINRES", "SYMMLQ"}) {
    INFO(method);
    CHECK(ending(indefinite, method, "N", ones).ifail == 0);
    // Singular: solved when b is in the range, else not called solved.
    CHECK(ending(diagonal({2, -3, 0, -1, 4}), method, "N", {1, 1, 0, 1, 1}).ifail == 0);
    CHECK(ending(diagonal({2, -3, 0, -1, 4}), method, "N", ones).ifail >= 7);
  }
  // The first step of conjugate gradients is not defined, that of the other two is another.
  const System swap = [] {
    System exchange{"exchange", 2};
    exchange.add(1, 2, 1);
    exchange.add(2, 1, 1);
    return exchange;
  }();
  breaks_down(swap, "CG", "N", {1, 0});
  CHECK(ending(swap, "MINRES", "N", {1, 0}).ifail == 0);
  CHECK(ending(swap, "SYMMLQ", "N", {1, 0}).ifail == 0);
  // What is not finite on the way.
  for (const char* method : kMethods) {
    System spoilt = laplacian(3);
    spoilt.value[7] = QuarnFloat("nan");
    CHECK(ending(spoilt, method, "N", Numbers(9, QuarnFloat(1))).ifail == 7);
  }
}

TEST_CASE("orthogonality that rounding errors destroy is not taken for missing symmetry") {
  const support::Digits digits(333);
  int solved = 0;
  for (support::Random random : {support::Random(253), support::Random()}) {
    for (int sample = 0; sample < 40; ++sample) {
      // Elements of very different sizes.
      const auto number = [&random] {
        return QuarnFloat(random.between(1, 1'000'000)) * QuarnFloat(1, int(random.between(-100, 100)));
      };
      const auto n = Integer(random.between(3, 9));
      System system{"graded", n};
      for (Integer i = 1; i <= n; ++i) {
        for (Integer j = 1; j < i; ++j) {
          const QuarnFloat a = random.once_in(2) ? number() : -number();
          system.add(i, j, a);
          system.add(j, i, a);
        }
        system.add(i, i, number());
      }
      for (const char* method : {"MINRES", "SYMMLQ"}) {
        Setup setup{method};
        setup.precon = "P";
        setup.tol = QuarnFloat("1e-310");
        setup.anorm = one_norm(system);
        setup.maxitn = 100;
        Caller caller(system, setup, Numbers(std::size_t(n), QuarnFloat(1)));
        caller.finish();
        INFO(method, " ", sample);
        CHECK(caller.ifail != 7);
        solved += caller.ifail == 0 ? 1 : 0;
      }
    }
  }
  CHECK(solved > 40);
}

TEST_CASE("the classic entries refuse the methods of the companions") {
  const support::Digits digits(30);
  const Integer iterm = 1, n = 3, m = 1, maxitn = 9, monit = 0, lwork = 1000;
  const QuarnFloat tol("1e-9"), zero;
  for (const char* method : {"CG", "MINRES", "SYMMLQ", "FGMRES", "IDR"}) {
    Integer lwreq = 0;
    Numbers work = zeros(lwork);
    const auto set_up = [&](auto* entry) {
      Integer ifail = -13;
      entry(method, "N", "2", "N", &iterm, &n, &m, &tol, &maxitn, &zero, &zero, &monit, &lwreq, work.data(), &lwork,
            &ifail, int(std::string(method).size()), 1, 1, 1);
      return ifail;
    };
    support::ConsoleCapture console;
    CHECK(set_up(QuarnMP_f11bdf_) == 1);
    CHECK(console.text().find("parameter number  1 had an illegal value") != std::string::npos);
    CHECK(set_up(QuarnMPX_f11bdf_) == 0);
    Numbers u = zeros(3), v(3, QuarnFloat(1));
    Integer irevcm = 0;
    Integer ifail = 1;
    QuarnMP_f11bef_(&irevcm, u.data(), v.data(), nullptr, work.data(), &lwork, &ifail);
    CHECK(ifail == 2);
    CHECK(irevcm == 4);
    irevcm = 0;
    QuarnMPX_f11bef_(&irevcm, u.data(), v.data(), nullptr, work.data(), &lwork, &ifail);
    CHECK(ifail == 0);
    CHECK(irevcm != 4);
  }
}

TEST_CASE("on a stiffness matrix they end within its order at 500 digits") {
  const support::Digits digits(500);
  const System system = from_file("bcsstk01");
  for (const char* method : kMethods) {
    INFO(method);
    Setup setup{method};
    setup.tol = QuarnFloat("1e-400");
    setup.anorm = one_norm(system);
    Caller caller(system, setup, ones_image(system));
    caller.finish();
    CHECK(caller.ifail == 0);
    CHECK(caller.itn <= 48);
  }
}
