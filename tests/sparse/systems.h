// Linear systems for the iterative solver, and a caller that answers its requests.
#pragma once

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "quarn/quarnfloat.h"
#include "support/console.h"
#include "support/random.h"
#include "tesk2mp/iterative.h"
#include "tesk2mp/sparse.h"

namespace systems {

using Numbers = std::vector<QuarnFloat>;

inline Numbers zeros(Integer n) { return Numbers(std::size_t(n)); }

struct System {
  std::string name;
  Integer n = 0;
  std::vector<Integer> row = {}, column = {};
  Numbers value = {};

  void add(Integer i, Integer j, const QuarnFloat& a) {
    row.push_back(i);
    column.push_back(j);
    value.push_back(a);
  }
  void multiply(const QuarnFloat* x, QuarnFloat* y, const char* trans = "N") const {
    const Integer nnz = Integer(value.size());
    Integer ifail = 1;
    QuarnMP_f11xaf_(trans, &n, &nnz, value.data(), row.data(), column.data(), "N", x, y, &ifail, 1, 1);
    REQUIRE(ifail == 0);
  }
  Numbers times(const Numbers& x) const {
    Numbers y(x.size());
    multiply(x.data(), y.data());
    return y;
  }
  Numbers diagonal() const {
    Numbers d = zeros(n);
    for (std::size_t k = 0; k < value.size(); ++k) {
      if (row[k] == column[k]) {
        d[std::size_t(row[k]) - 1] += value[k];
      }
    }
    return d;
  }
};

inline QuarnFloat two_norm(const Numbers& x) {
  QuarnFloat sum;
  for (const QuarnFloat& element : x) {
    sum += element * element;
  }
  return sqrt(sum);
}

inline QuarnFloat one_norm(const System& system) {
  Numbers sums = zeros(system.n);
  for (std::size_t k = 0; k < system.value.size(); ++k) {
    sums[std::size_t(system.column[k]) - 1] += fabs(system.value[k]);
  }
  return *std::max_element(sums.begin(), sums.end());
}

/// Five-point central differences of -laplacian u + speed (u_x + u_y) on a square of side x side points, scaled by h^2.
inline System convection_diffusion(Integer side, double speed) {
  System system{
      "convection " + std::to_string(side) + " x " + std::to_string(side) + ", speed " + std::to_string(int(speed)),
      side * side};
  const QuarnFloat drift = QuarnFloat(speed) / (2 * (side + 1));
  for (Integer i = 0; i < side; ++i) {
    for (Integer j = 0; j < side; ++j) {
      const Integer at = i * side + j + 1;
      if (i > 0) {
        system.add(at, at - side, -1 - drift);
      }
      if (j > 0) {
        system.add(at, at - 1, -1 - drift);
      }
      system.add(at, at, 4);
      if (j + 1 < side) {
        system.add(at, at + 1, drift - 1);
      }
      if (i + 1 < side) {
        system.add(at, at + side, drift - 1);
      }
    }
  }
  return system;
}

/// Random entries, a few a row, and a diagonal that outweighs them.
inline System diagonally_dominant(Integer n, support::Random& random) {
  System system{"diagonally dominant", n};
  for (Integer i = 1; i <= n; ++i) {
    QuarnFloat sum = 0;
    for (int k = 0; k < 4; ++k) {
      const QuarnFloat a = QuarnFloat(random.between(-1000, 1000)) / 1000;
      system.add(i, Integer(random.between(1, n)), a);
      sum += fabs(a);
    }
    system.add(i, i, sum * 3 / 2 + 1);
  }
  return system;
}

/// A Matrix Market file of examples/, real and general or symmetric.
inline System from_file(const std::string& name) {
  std::ifstream file("examples/" + name + ".mtx");
  std::string line;
  REQUIRE(std::getline(file, line));
  const bool symmetric = line.find("symmetric") != std::string::npos;
  while (std::getline(file, line) && line[0] == '%') {
  }
  System system{name};
  std::istringstream(line) >> system.n;
  Integer i = 0;
  Integer j = 0;
  std::string value;
  while (file >> i >> j >> value) {
    system.add(i, j, QuarnFloat(value));
    if (symmetric && i != j) {
      system.add(j, i, QuarnFloat(value));
    }
  }
  return system;
}

/// Rows and columns divided by the square roots of their largest magnitudes, twice.
inline System equilibrated(System system) {
  for (int round = 0; round < 2; ++round) {
    Numbers rows = zeros(system.n);
    Numbers columns = zeros(system.n);
    for (std::size_t k = 0; k < system.value.size(); ++k) {
      QuarnFloat& r = rows[std::size_t(system.row[k]) - 1];
      QuarnFloat& c = columns[std::size_t(system.column[k]) - 1];
      r = std::max(r, fabs(system.value[k]));
      c = std::max(c, fabs(system.value[k]));
    }
    for (std::size_t k = 0; k < system.value.size(); ++k) {
      system.value[k] /= sqrt(rows[std::size_t(system.row[k]) - 1]) * sqrt(columns[std::size_t(system.column[k]) - 1]);
    }
  }
  system.name += ", equilibrated";
  return system;
}

/// The arguments of the set-up.
struct Setup {
  std::string method;
  Integer m = 1;
  QuarnFloat tol = QuarnFloat("1e-30");
  Integer maxitn = 500;
  std::string precon = "N", norm = "2", weight = "N";
  Integer iterm = 1;
  QuarnFloat anorm = 0, sigmax = 0;
  Integer monit = 0;
};

/// Do the companions alone know the method?
inline bool is_of_companions(const std::string& method) {
  return method == "CG" || method == "MINRES" || method == "SYMMLQ" || method == "FGMRES" || method == "IDR";
}

/// A problem and its caller, classic where the classic entries know the method. Jacobi's preconditioner when there is
/// to be one.
class Caller {
 public:
  Caller(const System& system, const Setup& setup, const Numbers& right_side, Numbers weights = {})
      : system_(&system),
        classic_(!is_of_companions(setup.method)),
        diagonal_(system.diagonal()),
        u(right_side.size()),
        v(right_side),
        wgt(std::move(weights)) {
    Integer lwreq = 0;
    ifail = 1;
    call_set_up(setup, lwreq, 0);
    REQUIRE(ifail == 1);
    work.resize(std::size_t(lwreq));
    ifail = -13;
    support::ConsoleCapture console;
    call_set_up(setup, lwreq, lwreq);
    INFO(console.text());
    REQUIRE(ifail == 0);
  }

  Integer lwork() const { return Integer(work.size()); }

  /// One call of the solver, and the answer to what it asks for.
  void step() {
    support::ConsoleCapture console;
    ifail = -13;
    const Integer length = lwork();
    (classic_ ? QuarnMP_f11bef_ : QuarnMPX_f11bef_)(&irevcm, u.data(), v.data(), wgt.data(), work.data(), &length,
                                                    &ifail);
    message = console.text();
    switch (irevcm) {
      case 1:
        ++products;
        return system_->multiply(u.data(), v.data());
      case -1:
        ++transposed_products;
        return system_->multiply(u.data(), v.data(), "T");
      case 2:
        ++solutions;
        for (std::size_t i = 0; i < u.size(); ++i) {
          v[i] = u[i] / diagonal_[i];
        }
        return;
      case 3:
        history.push_back(two_norm(v));
        return;
      default:
        REQUIRE(irevcm == 4);
    }
  }
  void finish() {
    for (int calls = 0; irevcm != 4; ++calls) {
      REQUIRE(calls < 100000);
      step();
    }
    progress();
  }
  void progress() {
    Integer outcome = 1;
    const Integer length = lwork();
    (classic_ ? QuarnMP_f11bff_ : QuarnMPX_f11bff_)(&itn, &left, &right, &anorm, &sigmax, work.data(), &length,
                                                    &outcome);
    REQUIRE(outcome == 0);
  }

 private:
  void call_set_up(const Setup& setup, Integer& lwreq, Integer length) {
    (classic_ ? QuarnMP_f11bdf_ : QuarnMPX_f11bdf_)(
        setup.method.data(), setup.precon.data(), setup.norm.data(), setup.weight.data(), &setup.iterm, &system_->n,
        &setup.m, &setup.tol, &setup.maxitn, &setup.anorm, &setup.sigmax, &setup.monit, &lwreq, work.data(), &length,
        &ifail, int(setup.method.size()), 1, 1, 1);
  }

  const System* system_;
  bool classic_;
  Numbers diagonal_;

 public:
  Numbers u, v, wgt, work;
  Integer irevcm = 0;
  Integer ifail = 0;
  std::string message;
  Integer itn = 0;
  QuarnFloat left, right, anorm, sigmax;
  Numbers history;
  int products = 0;
  int transposed_products = 0;
  int solutions = 0;
};

/// ||b - A x|| / (||b|| + ||A|| ||x||), Euclidean norms and the 1-norm of A, computed here.
inline QuarnFloat relative_residual(const System& system, const Numbers& x, const Numbers& b) {
  Numbers residual = system.times(x);
  for (std::size_t i = 0; i < b.size(); ++i) {
    residual[i] = b[i] - residual[i];
  }
  return two_norm(residual) / (two_norm(b) + one_norm(system) * two_norm(x));
}

}  // namespace systems
