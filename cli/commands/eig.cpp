// quarn eig: the eigenvalues of a matrix.
#include <algorithm>
#include <numeric>

#include "cli/commands/certificate.h"
#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/few_values.h"
#include "cli/commands/options.h"
#include "cli/commands/proven.h"
#include "cli/commands/ranking.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"
#include "tesk2mp/generalised.hpp"
#include "tesk2mp/proven_certify.hpp"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

struct EigOptions : FewOptions {
  std::string mass;
  std::vector<Integer> select;  // first and last, from 1 in ascending order
  bool condition = false;
};

struct Eigenvalues {
  std::vector<Complex> values;
  tesk2mp::Matrix<Complex> vectors;    // a column each, when asked for
  std::vector<QuarnFloat> conditions;  // reciprocal, when asked for
  std::string routine;
};

/// |y^H x| of left and right eigenvectors of norm 1.
std::vector<QuarnFloat> conditions_of(const tesk2mp::EigenSystem& system) {
  std::vector<QuarnFloat> conditions;
  for (std::size_t j = 0; j < system.values.size(); ++j) {
    Complex product(0);
    for (std::size_t i = 0; i < system.values.size(); ++i) {
      product = product + conj(system.left(i, j)) * system.right(i, j);
    }
    conditions.push_back(tesk2mp::abs(product));
  }
  return conditions;
}

std::string routine_of(bool complex, const char* real_name, const char* complex_name) {
  return std::string("QuarnMPX_") + (complex ? complex_name : real_name) + "_";
}

/// Of a symmetric or Hermitian matrix, alone, beside a definite one, or chosen.
template <class T, class... More>
Eigenvalues symmetric_eigenvalues_of(const EigOptions& options, const tesk2mp::Matrix<T>& a, const More&... more) {
  Eigenvalues result;
  const auto take = [&](const std::vector<QuarnFloat>& values) {
    result.values.assign(values.begin(), values.end());
    result.conditions.assign(options.condition ? values.size() : 0, QuarnFloat(1));
  };
  if (!options.vectors) {
    take(tesk2mp::symmetric_eigenvalues(a, more...));
    return result;
  }
  const tesk2mp::SymmetricEigenSystem<T> system = tesk2mp::symmetric_eigen(a, more...);
  take(system.values);
  result.vectors = tesk2mp::Matrix<Complex>(a.rows(), system.values.size());
  std::copy(system.vectors.data(), system.vectors.data() + a.rows() * system.values.size(), result.vectors.data());
  return result;
}

/// Of A x = lambda B x.
template <class T>
Eigenvalues pencil_eigenvalues_of(const EigOptions& options, const tesk2mp::Matrix<T>& a, const tesk2mp::Matrix<T>& b) {
  constexpr bool kComplex = std::is_same_v<T, Complex>;
  if (tesk2mp::is_hermitian(a) && tesk2mp::is_hermitian(b)) {
    try {
      Eigenvalues result = symmetric_eigenvalues_of(options, a, b);
      result.routine = routine_of(kComplex, "dsygv", "zhegv");
      return result;
    } catch (const tesk2mp::NumericalFailure& failure) {
      if (failure.code() <= Integer(a.rows())) {
        throw;
      }
      // B is not definite.
    }
  }
  Eigenvalues result;
  if (options.vectors) {
    tesk2mp::PencilEigenSystem system = tesk2mp::eigen(a, b);
    result.values = system.values();
    result.vectors = std::move(system.right);
  } else {
    result.values = tesk2mp::eigenvalues(a, b);
  }
  result.routine = routine_of(kComplex, "dggev", "zggev");
  return result;
}

/// Those that --select names.
template <class T>
Eigenvalues chosen_eigenvalues_of(const EigOptions& options, const tesk2mp::Matrix<T>& a) {
  if (!tesk2mp::is_hermitian(a)) {
    throw bad_input("--select needs a symmetric or Hermitian matrix");
  }
  const Integer first = options.select[0];
  const Integer last = options.select[1];
  if (first < 1 || first > last || last > Integer(a.rows())) {
    throw bad_input("--select: the eigenvalues have numbers 1 to " + std::to_string(a.rows()) +
                    ", and the first of them comes first");
  }
  Eigenvalues result =
      symmetric_eigenvalues_of(options, a, tesk2mp::EigenIndices{std::size_t(first - 1), std::size_t(last)});
  result.routine = routine_of(std::is_same_v<T, Complex>, "dsyevx", "zheevx");
  return result;
}

Eigenvalues eigenvalues_of(const EigOptions& options, const tesk2mp::Matrix<Complex>& a) {
  if (tesk2mp::is_hermitian(a)) {
    return symmetric_eigenvalues_of(options, a);
  }
  if (!options.vectors && !options.condition) {
    return {tesk2mp::eigenvalues(a), {}, {}, {}};
  }
  tesk2mp::EigenSystem system = tesk2mp::eigen(a);
  Eigenvalues result{system.values, {}, options.condition ? conditions_of(system) : std::vector<QuarnFloat>(), {}};
  if (options.vectors) {
    result.vectors = std::move(system.right);
  }
  return result;
}

Eigenvalues eigenvalues_of(const EigOptions& options, const tesk2mp::Matrix<QuarnFloat>& a) {
  if (tesk2mp::is_hermitian(a)) {
    return symmetric_eigenvalues_of(options, a);
  }
  Eigenvalues result;
  if (options.vectors) {
    tesk2mp::EigenSystem system = tesk2mp::eigen(a);
    if (options.condition) {
      result.conditions = conditions_of(system);
    }
    result.values = std::move(system.values);
    result.vectors = std::move(system.right);
  } else if (options.condition) {
    tesk2mp::EigenConditions conditions = tesk2mp::eigenvalue_conditions(a);
    result.values = std::move(conditions.values);
    result.conditions = std::move(conditions.value);
  } else {
    result.values = tesk2mp::eigenvalues(a);
  }
  return result;
}

/// The largest first; of a pair the one above the real axis.
std::vector<std::size_t> by_magnitude(const std::vector<Complex>& values) {
  std::vector<QuarnFloat> magnitudes;
  std::transform(values.begin(), values.end(), std::back_inserter(magnitudes),
                 [](const Complex& z) { return tesk2mp::abs(z); });
  std::vector<std::size_t> order(values.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t i, std::size_t j) { return magnitudes[i] > magnitudes[j]; });
  return order;
}

/// A times the eigenvectors.
template <class T>
tesk2mp::Matrix<Complex> images(const tesk2mp::Matrix<T>& a, const tesk2mp::Matrix<Complex>& vectors) {
  tesk2mp::Matrix<Complex> wide(a.rows(), a.columns());
  std::copy(a.data(), a.data() + a.rows() * a.columns(), wide.data());
  return tesk2mp::multiply(wide, vectors);
}

/// The largest norm of A x - lambda B x, B the identity where there is none; of an infinite eigenvalue that of B x.
template <class T>
QuarnFloat largest_residual(const tesk2mp::Matrix<T>& a, const tesk2mp::Matrix<T>* b, const Eigenvalues& found) {
  const std::size_t n = a.rows();
  const tesk2mp::Matrix<Complex> left = images(a, found.vectors);
  const tesk2mp::Matrix<Complex> right = b == nullptr ? found.vectors : images(*b, found.vectors);
  QuarnFloat largest = 0;
  for (std::size_t j = 0; j < found.values.size(); ++j) {
    const bool finite = isfinite(found.values[j].re);
    QuarnFloat squares = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const Complex difference = finite ? left(i, j) - found.values[j] * right(i, j) : right(i, j);
      squares += difference.re * difference.re + difference.im * difference.im;
    }
    largest = std::max(largest, sqrt(squares));
  }
  return largest;
}

template <class T>
void run_on(const EigOptions& options, const DenseMatrix& given, const tesk2mp::Matrix<T>& a,
            const tesk2mp::Matrix<T>* b, const std::string& why_not = "") {
  const double real_cost = eigenvalue_cost(double(a.rows()), options.vectors || options.condition);
  const Progress progress = Progress::estimated("eigenvalues", (given.complex() ? 4 : 1) * real_cost);
  const Eigenvalues found = b != nullptr             ? pencil_eigenvalues_of(options, a, *b)
                            : options.select.empty() ? eigenvalues_of(options, a)
                                                     : chosen_eigenvalues_of(options, a);
  const bool symmetric = b == nullptr && tesk2mp::is_hermitian(a);
  const bool complex = std::is_same_v<T, Complex>;
  const std::string routine = !found.routine.empty() ? found.routine
                              : symmetric            ? routine_of(complex, "dsyev", "zheev")
                                                     : routine_of(complex, "f08pef", "zgeev");
  const std::vector<std::size_t> order = by_magnitude(found.values);

  Result result;
  result.notes = {"Eigenvalues of the " + description(given) + ", the largest first",
                  digits_text() + ", by " + routine +
                      (symmetric ? std::string(": the matrix is ") + (given.complex() ? "Hermitian" : "symmetric")
                       : complex || b != nullptr ? ""
                                                 : " after balancing and reduction to Hessenberg form")};
  result.facts = {
      {"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}, {"n", std::to_string(given.rows()), true}};
  if (!why_not.empty()) {
    result.notes.push_back(why_not);
  }
  result.notes.emplace_back(options.condition || b != nullptr
                                ? "an estimate, without a proof"
                                : "an estimate, without a proof; --condition says how sensitive it is");
  std::vector<Complex> values;
  std::vector<QuarnFloat> conditions;
  // Without a proof the sign of a zero means nothing.
  const auto plain = [](const QuarnFloat& x) { return x == 0 ? QuarnFloat() : x; };
  for (const std::size_t j : order) {
    values.emplace_back(plain(found.values[j].re), plain(found.values[j].im));
    if (options.condition) {
      conditions.push_back(found.conditions[j]);
    }
  }
  add_complex_numbers(result, values);
  if (options.condition) {
    result.notes.push_back("s: reciprocal condition numbers; an error e of the matrix moves a value by some e/s");
    result.table.push_back({"s", brief_cells(conditions)});
    result.data.push_back({"s", exact_cells(conditions)});
  }
  if (options.vectors) {
    const QuarnFloat residual = largest_residual(a, b, found);
    result.notes.push_back(
        b == nullptr ? "x1, x2, ...: the eigenvector of norm 1; largest norm of A x - lambda x: " + brief(residual)
                     : "x1, x2, ...: the eigenvector; largest norm of A x - lambda B x: " + brief(residual));
    result.facts.push_back({"largest_residual", residual.to_string()});
    for (std::size_t i = 0; i < a.rows(); ++i) {
      ResultColumn column{"x" + std::to_string(i + 1), {}};
      for (const std::size_t j : order) {
        column.cells.push_back(exact_text(found.vectors(i, j)));
      }
      result.table.push_back(column);
      result.data.push_back(column);
    }
  }
  result.picture = [&](const std::string& file) {
    draw(ComplexPlane{"Eigenvalues of the " + description(given), values}, file);
  };
  deliver(result, options.output);
}

/// As discs, of a symmetric matrix too.
template <class T>
std::vector<tesk2mp::proven::BoundedRoot> proven_eigenvalues_of(const tesk2mp::Matrix<T>& a, bool symmetric) {
  if (!symmetric) {
    return tesk2mp::proven::eigenvalues(a);
  }
  std::vector<tesk2mp::proven::BoundedRoot> roots;
  for (const auto& value : tesk2mp::proven::symmetric_eigenvalues(a)) {
    roots.push_back({Complex(value.value), value.error, 1, true});
  }
  return roots;
}

template <class T>
void run_proven(const EigOptions& options, const DenseMatrix& given, const tesk2mp::Matrix<T>& a) {
  const double cost = eigenvalue_cost(double(a.rows()), true);
  const Progress progress = Progress::estimated("eigenvalues", (given.complex() ? 4 : 1) * cost);
  const bool symmetric = tesk2mp::is_hermitian(a);
  const std::string routine = std::string("QuarnMPX_") + (given.complex() ? "z" : "d") +
                              (symmetric ? "proven_symmetric_" : "proven_eigenvalues_");
  Result result;
  result.notes = {"Eigenvalues of the " + description(given) + ", the largest first", ""};
  int worked_with = 0;
  std::vector<tesk2mp::proven::BoundedRoot> found =
      proven_result(options.proof, result, routine, worked_with, [&] { return proven_eigenvalues_of(a, symmetric); });
  result.facts.push_back({"n", std::to_string(given.rows()), true});
  std::vector<Complex> unordered;
  unordered.reserve(found.size());
  for (const auto& root : found) {
    unordered.push_back(tesk2mp::proven::known_value(root));
  }
  const std::vector<std::size_t> order = by_magnitude(unordered);
  std::vector<Complex> values;
  std::vector<tesk2mp::proven::BoundedRoot> roots;
  for (const std::size_t j : order) {
    values.push_back(unordered[j]);
    roots.push_back(found[j]);
  }
  if (!options.proof.certificate.empty()) {
    write_certificate(options.proof.certificate,
                      symmetric
                          ? tesk2mp::proven::certify_values(false, a, real_parts(values), errors_of(roots), worked_with)
                          : tesk2mp::proven::certify_eigenvalues(a, printed_roots(roots), worked_with));
  }
  add_complex_numbers(result, values);
  add_errors(result, errors_of(roots), "value", options.proof.errors);
  add_counts(result, roots);
  result.picture = [&](const std::string& file) {
    draw(ComplexPlane{"Eigenvalues of the " + description(given), values}, file);
  };
  deliver(result, options.output);
}

void run_eig(const EigOptions& options) {
  require_few(options);
  if (options.count > 0) {
    if (!options.mass.empty() || options.condition || !options.select.empty()) {
      throw bad_input("--count does not go with --mass, --condition and --select");
    }
    return run_few_eigenvalues(options);
  }
  const bool alone = options.mass.empty();
  const bool values_alone = !options.vectors && !options.condition && alone && options.select.empty();
  if (options.proof.insisted && !values_alone) {
    throw bad_input(
        "--proven and --certificate are for the values: without --vectors, --condition, --mass and --select");
  }
  if (!alone && (options.condition || !options.select.empty())) {
    throw bad_input("--condition and --select do not go with --mass");
  }
  if (options.matrix == "-" && options.mass == "-") {
    throw bad_input("only one of MATRIX and --mass can be standard input");
  }
  const DenseMatrix given = read_exactly(options.proof.wanted() && values_alone,
                                         [&] { return read_operand(options.matrix, options.table, true); });
  if (alone) {
    std::visit(
        [&]<class T>(const tesk2mp::Matrix<T>& a) {
          std::string why_not;
          if (!values_alone || !try_proof(options.proof, why_not, [&] { run_proven(options, given, a); })) {
            run_on<T>(options, given, a, nullptr, why_not);
          }
        },
        given.elements);
    return;
  }
  const DenseMatrix mass = read_operand(options.mass, options.table, true);
  if (mass.rows() != given.rows()) {
    throw bad_input(mass.source + ": a matrix of " + std::to_string(given.rows()) + " rows is needed, not of " +
                    std::to_string(mass.rows()));
  }
  const auto order = std::size_t(given.rows());
  if (given.complex() || mass.complex()) {
    const auto b = matrix_of(elements_of<Complex>(mass), order);
    run_on(options, given, matrix_of(elements_of<Complex>(given), order), &b);
  } else {
    const auto b = matrix_of(elements_of<QuarnFloat>(mass), order);
    run_on(options, given, matrix_of(elements_of<QuarnFloat>(given), order), &b);
  }
}

constexpr const char* kEigFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file: square, real or
complex. Symmetric and Hermitian ones are recognised: their eigenvalues are real.
With --mass B may be singular: it has infinite eigenvalues then.
--plot draws the complex plane.

--count finds some eigenvalues of a sparse matrix of any order by products with it, those near a
number by complete sparse factors. Of symmetric and Hermitian matrices the residuals prove that
each value is, to all its digits, an eigenvalue; of others two computations agree to them. That
they are the ones that are wanted is an estimate.

The numbers of the matrix are taken with all their digits, and D digits of both parts of every
eigenvalue are true; a part of which none is known, D digits below the largest, is printed
as 0. Multiple eigenvalues have a count. Where no proof is found, and with --vectors,
--condition, --mass and --select, a note says that the result is an estimate.

Examples:
  quarn eig examples/west0067.mtx --digits 50 --plot west0067.svg
  printf '0 1\n-1 0\n' | quarn eig - --vectors
  quarn eig matrix.csv --condition --format csv
  quarn eig stiffness.txt --mass mass.txt --vectors
  quarn eig symmetric.mtx --select 1 3
  quarn eig examples/bcsstk01.mtx --count 3 --near 0)";

void declare_eig(Command& command) {
  auto options = std::make_shared<EigOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  command.flag("--vectors", options->vectors, "eigenvectors as well");
  command.text("--mass", "FILE", options->mass, "the matrix B of A x = lambda B x");
  command.numbers("--select", "FIRST LAST", 2, options->select,
                  "these eigenvalues alone, counted from 1 in ascending order");
  command.flag("--condition", options->condition, "how sensitive the eigenvalues are");
  add_few_options(command, *options, true);
  add_true_digits(command, options->proof);
  add_certificate(command, options->proof);
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  set_proven_work(command, options, run_eig);
}

const Registered kEigCommand(120, "eig", "eigenvalues and eigenvectors", kEigFooter, declare_eig);

}  // namespace

}  // namespace cli
