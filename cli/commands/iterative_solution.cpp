// The caller's side of the library's iterative solver.
#include <algorithm>

#include "cli/commands/failure.h"
#include "cli/commands/library_call.h"
#include "cli/commands/linear_system.h"
#include "cli/io/matrix_input.h"
#include "cli/io/number_table.h"
#include "cli/system/memory.h"
#include "tesk2mp/iterative.h"
#include "tesk2mp/sparse.h"

namespace cli {

namespace {

using Numbers = std::vector<QuarnFloat>;

constexpr int kFewestDigits = 10;  // for the counters in the solver's work array

QuarnFloat number(const std::string& option, const std::string& text) {
  if (!is_number(text)) {
    throw bad_input(option + ": '" + text + "' is not a number");
  }
  return to_number(text);
}

/// A matrix close to A with which a system is easily solved.
class Preconditioner {
 public:
  Preconditioner(const LinearSystem& system, const Numbers& values, const IterativeOptions& options)
      : system_(system), values_(values), kind_(options.precon) {
    if (!wanted()) {
      return;
    }
    omega_ = number("--omega", options.omega);
    if (!(omega_ > 0 && omega_ < 2)) {
      throw bad_input("--omega: must lie between 0 and 2");
    }
    diagonal_.resize(std::size_t(system.n));
    for (std::size_t k = 0; k < values.size(); ++k) {
      if (system.row[k] == system.column[k]) {
        diagonal_[std::size_t(system.row[k]) - 1] = values[k];
      }
    }
    const auto zero = std::find(diagonal_.begin(), diagonal_.end(), QuarnFloat(0));
    if (zero != diagonal_.end()) {
      throw bad_input(system.source + ": --precon " + kind_ + " divides by the diagonal, but row " +
                      std::to_string(zero - diagonal_.begin() + 1) + " has none");
    }
  }

  bool wanted() const { return kind_ != "none"; }

  /// z := M^-1 z
  void solve(Numbers& z) const {
    if (kind_ == "jacobi") {
      for (std::size_t i = 0; i < z.size(); ++i) {
        z[i] /= diagonal_[i];
      }
      return;
    }
    // SSOR: M = omega / (2 - omega) (D / omega + L) D^-1 (D / omega + U). Young, Iterative Solution of Large Linear
    // Systems, 1971.
    const QuarnFloat scale = (2 - omega_) / omega_;
    for (std::size_t i = 0; i < z.size(); ++i) {
      subtract_row(z, i, [i](std::size_t column) { return column < i; });
      z[i] *= omega_ / diagonal_[i];
    }
    for (std::size_t i = z.size(); i-- > 0;) {
      z[i] *= scale * diagonal_[i];
      subtract_row(z, i, [i](std::size_t column) { return column > i; });
      z[i] *= omega_ / diagonal_[i];
    }
  }

 private:
  template <class Part>
  void subtract_row(Numbers& z, std::size_t i, Part is_in_part) const {
    for (auto k = std::size_t(system_.starts[i]) - 1; k < std::size_t(system_.starts[i + 1]) - 1; ++k) {
      const auto column = std::size_t(system_.column[k]) - 1;
      if (is_in_part(column)) {
        z[i] -= values_[k] * z[column];
      }
    }
  }

  const LinearSystem& system_;
  const Numbers& values_;
  std::string kind_;
  QuarnFloat omega_;
  Numbers diagonal_;
};

/// One problem in its work array.
class Task {
 public:
  Task(const LinearSystem& system, const std::string& method, const IterativeOptions& options)
      : system_(system),
        values_(real_parts(system.values)),
        preconditioner_(system, values_, options),
        u_(system.b.size()),
        v_(real_parts(system.b)) {
    const char* precon = preconditioner_.wanted() ? "P" : "N";
    const Integer iterm = 1;
    const Integer m = std::min(method == "rgmres" ? options.restart : options.order, system.n);
    const QuarnFloat tolerance = options.tolerance.empty() ? QuarnFloat(0) : number("--tol", options.tolerance);
    const QuarnFloat estimated = 0;
    // The library says the same by the numbers of its parameters.
    if (!(tolerance < 1)) {
      throw bad_input("--tol: must be below 1");
    }
    if (QuarnDigits() < kFewestDigits) {
      throw bad_input("--digits: --method " + method + " needs " + std::to_string(kFewestDigits) +
                      " at least; --method direct takes fewer");
    }
    Integer lwreq = 0;
    const auto set_up = [&](Integer* ifail) {
      lwork_ = Integer(work_.size());
      QuarnMP_f11bdf_(method.data(), precon, "2", "N", &iterm, &system.n, &m, &tolerance, &options.maxit, &estimated,
                      &estimated, &options.every, &lwreq, work_.data(), &lwork_, ifail, int(method.size()), 1, 1, 1);
    };
    // The first call tells the length; what else is wrong, the second one says.
    console_text_of([&] {
      Integer silent = 1;
      set_up(&silent);
    });
    require_memory(double(lwreq), "the work array of " + method);
    work_.resize(std::size_t(lwreq));
    call_routine("QuarnMP_f11bdf_", set_up);
  }

  Solution run(const std::function<void(const ResidualStep&)>& watcher) {
    Solution solution;
    Integer irevcm = 0;
    Integer ifail = 0;
    const std::string text = console_text_of([&] {
      while (irevcm != 4) {
        ifail = -13;
        QuarnMP_f11bef_(&irevcm, u_.data(), v_.data(), nullptr, work_.data(), &lwork_, &ifail);
        switch (irevcm) {
          case 1:
          case -1:
            ++solution.products;
            multiply(irevcm == 1 ? "N" : "T");
            break;
          case 2:
            v_ = u_;
            preconditioner_.solve(v_);
            break;
          default:
            solution.history.push_back(progress());
            watcher(solution.history.back());
        }
      }
    });
    solution.iterations = solution.history.back().iteration;
    solution.x = complex_numbers(u_);
    solution.routine = "QuarnMP_f11bef_";
    if (ifail != 0) {
      solution.failure = "IFAIL " + std::to_string(ifail) + ":" + one_line(text);
    }
    return solution;
  }

 private:
  void multiply(const char* trans) {
    const Integer nnz = system_.count();
    Integer ifail = -1;
    QuarnMP_f11xaf_(trans, &system_.n, &nnz, values_.data(), system_.row.data(), system_.column.data(), "N", u_.data(),
                    v_.data(), &ifail, 1, 1);
  }

  ResidualStep progress() {
    ResidualStep now{};
    QuarnFloat anorm;
    QuarnFloat sigmax;
    Integer ifail = -1;
    QuarnMP_f11bff_(&now.iteration, &now.residual, &now.bound, &anorm, &sigmax, work_.data(), &lwork_, &ifail);
    return now;
  }

  // The records of a message without their marks and empty lines.
  static std::string one_line(const std::string& text) {
    std::string line;
    for (const char c : text) {
      if (c == '\n' || c == '*' || c == ' ') {
        line += line.empty() || line.back() == ' ' ? "" : " ";
      } else {
        line += (line.empty() ? " " : "") + std::string(1, c);
      }
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
  }

  const LinearSystem& system_;
  Numbers values_;
  Preconditioner preconditioner_;
  Numbers u_;
  Numbers v_;
  Numbers work_;
  Integer lwork_ = 0;
};

}  // namespace

Solution solve_iteratively(const LinearSystem& system, const std::string& method, const IterativeOptions& options,
                           const std::function<void(const ResidualStep&)>& watcher) {
  if (system.complex) {
    throw bad_input(system.source + ": the system is complex, which --method direct alone can solve");
  }
  Solution solution = Task(system, method, options).run(watcher);
  solution.method = method;
  return solution;
}

}  // namespace cli
