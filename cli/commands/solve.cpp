// quarn solve: linear systems with a sparse matrix, by iteration or by factorisation.
#include <algorithm>
#include <cstdio>
#include <optional>

#include "cli/commands/failure.h"
#include "cli/commands/linear_system.h"
#include "cli/commands/options.h"
#include "cli/commands/proven.h"
#include "cli/commands/solution_history.h"
#include "cli/io/matrix_input.h"
#include "cli/io/matrix_output.h"
#include "cli/io/number_text.h"
#include "cli/plot/plot.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "tesk2mp/error.hpp"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

struct SolveOptions {
  std::string matrix;
  TableOptions table;
  std::string right_side;
  std::string column;
  std::string method;  // empty: a proof, and bicgstab where there is none
  IterativeOptions iterative;
  std::string history;
  bool progress = false;
  ProofOptions proof;
  OutputOptions output;
};

constexpr const char* kPreconditioners[] = {"none", "jacobi", "ssor", "ilu", "ic"};
constexpr Integer kBreakdown = 7;
constexpr Integer kMostProven = 1000;
constexpr Integer kMostIterations = 2147483647;

/// Whether D proven digits are wanted: nothing says how to solve the system instead.
bool is_proof_wanted(const SolveOptions& options) {
  return options.proof.insisted ||
         (options.proof.wanted() && options.method.empty() && options.iterative == IterativeOptions() &&
          options.history.empty() && !options.progress && options.output.picture.empty());
}

LinearSystem read_system(const SolveOptions& options) {
  if (options.matrix == "-" && options.right_side == "-") {
    throw bad_input("only one of MATRIX and --rhs can be standard input");
  }
  const bool wanted = is_proof_wanted(options);
  const SparseMatrix matrix = read_exactly(wanted, [&] { return read_matrix(options.matrix, options.table); });
  // What is read with all its digits has few; the vectors of the solution have those that are at work.
  constexpr double kNumbers = 8;
  require_memory(kNumbers * matrix.rows, "a system of order " + std::to_string(matrix.rows));
  const tesk2mp::Digits scope(digits_of_data(wanted && (options.proof.insisted || matrix.rows <= kMostProven)));
  if (options.right_side.empty()) {
    return linear_system(matrix, nullptr);
  }
  const DenseMatrix b = read_vector(options.right_side, options.column, options.table);
  return linear_system(matrix, &b);
}

// How much of the way from the first residual to the bound is behind, in orders of magnitude; 0 while it is unknown.
double part_done(const QuarnFloat& first, const ResidualStep& now) {
  const tesk2mp::Digits few(kDefaultDigits);
  if (!(now.bound > 0) || !(now.residual > 0) || !(first > now.bound)) {
    return 0;
  }
  return FloatToDouble(log(first / now.residual) / log(first / now.bound));
}

Solution factorise(const LinearSystem& system, const SolveOptions& options, bool proven) {
  if (!proven && is_for_sparse_factors(system)) {  // whose cost is not known beforehand
    return solve_directly(system);
  }
  const Progress progress = Progress::estimated("factorising", factorisation_cost(system.n, system.complex()));
  return proven ? solve_proven(system, options.proof) : solve_directly(system);
}

Solution iterate(const PreconditionedSystem& system, const std::string& method, const SolveOptions& options) {
  std::optional<Progress> progress;
  if (!options.progress) {
    progress.emplace(method, 1);
  }
  QuarnFloat first;
  return system.solve(method, [&](const ResidualStep& now) {
    first = first == 0 ? now.residual : first;
    if (progress) {
      progress->reach(part_done(first, now));
    } else {
      const std::string line = method + ": iteration " + std::to_string(now.iteration) + ", residual " +
                               brief(now.residual) + ", to reach " + brief(now.bound) + "\n";
      std::fputs(line.c_str(), stderr);
    }
  });
}

std::string system_note(const LinearSystem& system, const SolveOptions& options) {
  return "A x = b with A = " + system.source + " (order " + std::to_string(system.n) + ", " +
         std::to_string(system.count()) +
         " entries), b = " + (options.right_side.empty() ? "A (1, ..., 1)" : options.right_side);
}

std::string precision_note(const SolveOptions& options, const std::string& routine) {
  const IterativeOptions& iterative = options.iterative;
  return digits_text() + ", by " + routine +
         (options.method == "direct"
              ? ""
              : ", tolerance " + (iterative.tolerance.empty() ? "sqrt(eps)" : iterative.tolerance) +
                    ", preconditioner " + iterative.precon);
}

/// The criterion of an iterative method holds because x is large, not because the residual is small.
bool is_inconsistent(const Solution& solution, const QuarnFloat& residual, const SolveOptions& options) {
  const std::string& tolerance = options.iterative.tolerance;
  QuarnFloat used = tolerance.empty() ? QuarnFloat() : to_number(tolerance);
  used = used > 0 ? used : sqrt(QuarnFloat(1, -QuarnDigits()));
  return solution.method != "direct" && solution.failure.empty() && residual > sqrt(used);
}

/// The largest distance of a component from 1.
QuarnFloat distance_from_ones(const DenseMatrix& x) {
  QuarnFloat largest;
  std::visit(
      [&](const auto& elements) {
        for (std::size_t i = 0; i < elements.rows(); ++i) {
          largest = std::max(largest, tesk2mp::abs(Complex(elements(i, 0)) - Complex(1)));
        }
      },
      x.elements);
  return largest;
}

Result proven_result_of(const LinearSystem& system, const Solution& solution, const SolveOptions& options) {
  Result result;
  result.notes = {system_note(system, options), proof_note(solution.worked_with, solution.routine)};
  result.facts = {{"routine", solution.routine},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"n", std::to_string(system.n), true},
                  {"method", solution.method},
                  {"proven", "true", true},
                  {"working_digits", std::to_string(solution.worked_with), true},
                  {"relative_residual", solution.residual.to_string()}};
  result.notes.insert(result.notes.end(), solution.notes.begin(), solution.notes.end());
  add_matrix(result, solution.x);
  add_errors(result, solution.errors, "component", options.proof.errors);
  return result;
}

Result one_result(const LinearSystem& system, const Solution& solution, const SolveOptions& options) {
  const QuarnFloat& residual = solution.residual;
  const bool direct = solution.method == "direct";
  Result result;
  result.notes = {system_note(system, options), precision_note(options, solution.routine),
                  name_of(solution, options.iterative, system.n) +
                      (solution.failure.empty() ? ": solved" : ": not solved") +
                      (direct ? ", " + counted(solution.iterations, "refinement", "refinements")
                              : " after " + counted(solution.iterations, "iteration", "iterations") + ", " +
                                    counted(solution.products, "product", "products")) +
                      "; ||b - A x|| / ||b|| = " + brief(residual)};
  if (is_inconsistent(solution, residual, options)) {
    result.notes.push_back("the residual is small beside ||A|| ||x|| alone: A may be singular, and b not in its range");
  }
  if (options.right_side.empty()) {
    const QuarnFloat error = distance_from_ones(solution.x);
    result.notes.push_back("the largest error of a component is " + brief(error) + ": all are 1, b being made of them");
    result.facts.push_back({"largest_error", error.to_string()});
  } else if (!direct) {
    result.notes.emplace_back("an estimate: the residual is small, and how far x is off depends on A");
  }
  add_history_notes(result, solution);
  const std::vector<Fact> more = result.facts;
  result.facts = {{"routine", solution.routine},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"n", std::to_string(system.n), true},
                  {"method", solution.method},
                  {"iterations", std::to_string(solution.iterations), true},
                  {"products", std::to_string(solution.products), true},
                  {"relative_residual", residual.to_string()},
                  {"failure", solution.failure}};
  result.facts.insert(result.facts.end(), more.begin(), more.end());
  return result;
}

bool compares(const SolveOptions& options) { return options.method == "all" || options.iterative.precon == "all"; }

Result comparison(const LinearSystem& system, const std::vector<Solution>& solutions, const SolveOptions& options) {
  Result result;
  result.notes = {system_note(system, options), precision_note(options, solutions.front().routine)};
  ResultColumn method{"method", {}, false, true};
  ResultColumn precon{"preconditioner", {}, false, true};
  ResultColumn iterations{"iterations", {}, true};
  ResultColumn products{"products", {}, true};
  ResultColumn rounded{"relative_residual", {}};
  ResultColumn exact = rounded;
  ResultColumn outcome{"outcome", {}, false, true};
  for (const Solution& solution : solutions) {
    const QuarnFloat& residual = solution.residual;
    method.cells.push_back(name_of(solution, options.iterative, system.n));
    precon.cells.push_back(solution.precon);
    iterations.cells.push_back(std::to_string(solution.iterations));
    products.cells.push_back(std::to_string(solution.products));
    rounded.cells.push_back(brief(residual));
    exact.cells.push_back(residual.to_string());
    outcome.cells.push_back(!solution.failure.empty()                      ? solution.failure
                            : is_inconsistent(solution, residual, options) ? "solved beside ||A|| ||x|| alone"
                                                                           : "solved");
  }
  result.table = {method, iterations, products, rounded, outcome};
  result.data = {method, iterations, products, exact, outcome};
  for (auto* columns : {&result.table, &result.data}) {
    if (options.iterative.precon == "all") {
      columns->insert(columns->begin() + 1, precon);
    }
  }
  result.facts = {{"digits", std::to_string(QuarnDigits()), true}, {"n", std::to_string(system.n), true}};
  return result;
}

/// Solutions by one preconditioner.
void add_solutions(std::vector<Solution>& solutions, const LinearSystem& system, const SolveOptions& options,
                   const IterativeOptions& iterative) {
  const PreconditionedSystem prepared(system, iterative);
  const bool automatic = options.method == "auto";
  const std::vector<std::string> methods =
      options.method == "all" ? methods_for(system, iterative.precon)
                              : std::vector<std::string>{automatic ? automatic_method(system) : options.method};
  for (const std::string& method : methods) {
    Solution solution = iterate(prepared, method, options);
    if (automatic && method == "cg" && solution.failure_code == kBreakdown) {
      solution = iterate(prepared, "minres", options);
    }
    solutions.push_back(std::move(solution));
  }
}

/// By every method and preconditioner that is asked for. Of all preconditioners those that the matrix does not admit
/// are left out, and noted.
std::vector<Solution> all_solutions(const LinearSystem& system, const SolveOptions& options,
                                    std::vector<std::string>& notes) {
  std::vector<Solution> solutions;
  if (options.method == "direct") {
    solutions.push_back(factorise(system, options, false));
  } else if (options.iterative.precon != "all") {
    add_solutions(solutions, system, options, options.iterative);
  } else {
    for (const char* const precon : kPreconditioners) {
      IterativeOptions iterative = options.iterative;
      iterative.precon = precon;
      try {
        add_solutions(solutions, system, options, iterative);
      } catch (const Unsuitable& unsuitable) {
        notes.push_back("left out: " + unsuitable.reason());
      }
    }
  }
  return solutions;
}

void run_solve(SolveOptions options) {
  if (options.proof.insisted && (!options.history.empty() || !options.output.picture.empty())) {
    throw bad_input("--proven and --certificate have no course of the residual: without --history and --plot");
  }
  if (options.iterative.precon != "none" && (options.proof.insisted || options.method == "direct")) {
    throw bad_input("--precon is for iterative methods: not with " +
                    std::string(options.proof.insisted ? "--proven and --certificate" : "--method direct"));
  }
  if (compares(options) && options.output.format == Format::mtx) {
    throw bad_input(std::string(options.method == "all" ? "--method" : "--precon") +
                    " all gives a comparison, which is no matrix");
  }
  const LinearSystem system = read_system(options);
  std::string why_not;
  if (is_proof_wanted(options)) {
    const auto prove = [&] {
      deliver(proven_result_of(system, factorise(system, options, true), options), options.output);
    };
    if (!options.proof.insisted && system.n > kMostProven) {
      why_not = "not proven: of more than " + std::to_string(kMostProven) + " unknowns --proven alone does that";
    } else if (try_proof(options.proof, why_not, prove)) {
      return;
    }
  }
  options.method = options.method.empty() ? "bicgstab" : options.method;
  std::vector<std::string> notes;
  const std::vector<Solution> solutions = all_solutions(system, options, notes);
  const bool all = compares(options);
  Result result = all ? comparison(system, solutions, options) : one_result(system, solutions.front(), options);
  result.notes.insert(result.notes.end(), notes.begin(), notes.end());
  if (!why_not.empty()) {
    result.notes.insert(result.notes.begin() + 2, why_not);
  }
  if (!all) {
    add_matrix(result, solutions.front().x);
  }
  result.picture = [&](const std::string& file) { draw_history(solutions, system, options.iterative, file); };
  deliver(result, options.output);
  if (!options.history.empty()) {
    write_history(solutions, options.iterative.precon == "all", options.history);
  }
  if (std::all_of(solutions.begin(), solutions.end(), [](const Solution& s) { return !s.failure.empty(); })) {
    throw Failure(ExitStatus::library, "quarn: not solved: " + solutions.front().failure + "\n");
  }
}

constexpr const char* kSolveFooter =
    R"(MATRIX is a Matrix Market file, or a table of numbers, a row a line. Without --rhs the
right side is A (1, ..., 1), so that the solution is known.

The iterative methods stop when ||b - A x|| <= tol (||b|| + ||A|| ||x||), Euclidean norms,
||A|| estimated; the residual is computed afresh before it is believed. --method direct
factorises the full matrix and refines the solution with exact residuals; of more than 1000
unknowns it takes complete sparse factors, Cholesky where the matrix is positive definite, else
LU, in an order that fills little.
--method all compares the iterative ones, --precon all the preconditioners, both the two: the
picture has a chart for each preconditioner then. cg, minres and symmlq are for symmetric or
Hermitian matrices; --method auto takes cg when the diagonal is positive too (and minres when
cg finds the matrix indefinite), minres when it is not, bicgstab when there is no symmetry.
fgmres has the preconditioner on the right; without one it is rgmres.
Not solved is exit status 1; the last iterate and its residual are written all the same.
A small residual is an estimate: where b was made up the largest error is written beside it.

Where nothing but --digits says how to solve a system of up to 1000 unknowns, its full matrix is
factorised, A and b are taken with all their digits, and D digits of every component are true;
one of which none is known, D digits below the largest, is printed as 0. Where no proof is
found bicgstab is tried, and a note says that. --proven does it whatever the method, for any
number of unknowns, or fails.

Examples:
  quarn solve examples/west0067.mtx --method all --digits 50 --tol 1e-40 --plot history.svg
  quarn solve examples/bcsstk01.mtx --method all --precon all --plot courses.png
  quarn solve examples/fs_183_1.mtx --method direct --digits 30 --output x.csv
  quarn solve examples/bcsstk01.mtx --precon ssor --rhs b.csv --history history.csv)";

void add_iterative_options(Command& command, IterativeOptions& options) {
  command.text("--tol", "T", options.tolerance, "tolerance, below 1 (default: the root of the machine precision)");
  command.number("--maxit", "K", options.maxit, 1, kMostIterations, "most iterations (default 1000)");
  command.choice("--precon", "P", options.precon, {"none", "jacobi", "ssor", "ilu", "ic", "all"},
                 "preconditioner: none (default), jacobi, ssor, ilu (incomplete LU), ic (incomplete Cholesky, of "
                 "symmetric matrices), or all that the matrix admits, side by side");
  command.number("--fill", "K", options.fill, 0, kMostIterations,
                 "ilu, ic: level of the fill that is kept (default 0)");
  command.text("--drop", "T", options.drop, "ilu, ic: keep fill of any level that is larger than T times its row");
  command.flag("--modified", options.modified, "ilu, ic: add what is dropped to the diagonal");
  command.text("--omega", "W", options.omega, "relaxation of ssor, between 0 and 2 (default 1)");
  command.number("--restart", "M", options.restart, 1, 100,
                 "rgmres, fgmres: iterations to a restart, 1 to 50, of fgmres 100 (default 30)");
  command.number("--order", "L", options.order, 1, 10, "bicgstab, idrs: its order, 1 to 10 (default 2, idrs 4)");
  command.number("--every", "K", options.every, 0, kMostIterations,
                 "look at every K-th iteration, at the price of a product each (default 1); 0: at the end alone");
}

void declare_solve(Command& command) {
  auto options = std::make_shared<SolveOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  command.text("--rhs", "FILE", options->right_side, "the right side; - is standard input");
  command.text("--column", "NAME", options->column, "name or number of the right side's column");
  command.choice(
      "--method", "M", options->method,
      {"rgmres", "fgmres", "cgs", "bicgstab", "tfqmr", "idrs", "cg", "minres", "symmlq", "all", "auto", "direct"},
      "rgmres, fgmres, cgs, bicgstab, tfqmr, idrs; for symmetric matrices cg (positive definite), minres, "
      "symmlq; all that are for the matrix, side by side; auto: cg, minres or bicgstab by the matrix; or "
      "direct (default: with a proof; bicgstab where other options are given)");
  add_iterative_options(command, options->iterative);
  command.text("--history", "FILE", options->history, "write the course of the residual (.csv, .json or .txt)");
  command.flag("--progress", options->progress, "tell every iteration on standard error, terminal or not");
  add_true_digits(command, options->proof);
  add_certificate(command, options->proof);
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  command.work = [options] {
    options->proof.start();
    run_solve(*options);
  };
}

const Registered kSolveCommand(150, "solve", "solve a linear system with a sparse matrix", kSolveFooter, declare_solve);

}  // namespace

}  // namespace cli
