// quarn lu: the LU factorisation of a dense matrix.
#include <algorithm>

#include "cli/commands/dense.h"
#include "cli/commands/estimate.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/ranking.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"

namespace cli {

namespace {

struct LuOptions {
  std::string matrix;
  TableOptions table;
  std::string part = "factors";
  bool weighted = false;
  ProofOptions proof;
  OutputOptions output;
};

const std::vector<std::string> kParts = {"factors", "l", "u", "p"};

/// L with its ones, or U, out of the packed factors.
template <class T>
tesk2mp::Matrix<T> triangle(const tesk2mp::Matrix<T>& factors, bool lower) {
  const std::size_t inner = std::min(factors.rows(), factors.columns());
  tesk2mp::Matrix<T> result(lower ? factors.rows() : inner, lower ? inner : factors.columns());
  for (std::size_t j = 0; j < result.columns(); ++j) {
    for (std::size_t i = 0; i < result.rows(); ++i) {
      if (lower ? i > j : i <= j) {
        result(i, j) = factors(i, j);
      } else if (lower && i == j) {
        result(i, j) = T(1);
      }
    }
  }
  return result;
}

/// Row i of P A, from 1, is row rows[i] of A.
std::vector<Integer> permuted_rows(const std::vector<Integer>& pivots, Integer count) {
  std::vector<Integer> rows = positions(count);
  for (std::size_t i = 0; i < pivots.size(); ++i) {
    std::swap(rows[i], rows[std::size_t(pivots[i])]);
  }
  return rows;
}

std::size_t interchanges(const std::vector<Integer>& pivots) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < pivots.size(); ++i) {
    count += std::size_t(pivots[i]) != i ? 1 : 0;
  }
  return count;
}

/// The factors with all that is written of them.
template <class T>
struct Factors {
  tesk2mp::Matrix<T> packed;
  std::vector<Integer> pivots;
  bool singular = false;
  std::optional<std::size_t> deficient_rank;
  T mantissa{};
  std::int64_t exponent = 0;  // of the determinant; of square matrices
};

template <class T>
tesk2mp::LU<T> factorised(const LuOptions& options, const tesk2mp::Matrix<T>& a) {
  if constexpr (std::is_same_v<T, QuarnFloat>) {
    if (options.weighted) {
      return tesk2mp::LU<T>::row_weighted(a);
    }
  }
  return tesk2mp::LU<T>(a);
}

/// The factors to the digits that are asked for.
template <class T>
Factors<T> factors_of(const LuOptions& options, const tesk2mp::Matrix<T>& a, Estimated<T>& estimate) {
  Factors<T> found;
  const bool square = a.rows() == a.columns();
  std::optional<std::int64_t> exponent;
  const auto compute = [&] {
    const tesk2mp::LU<T> lu = factorised(options, a);
    found.packed = lu.factors();
    found.pivots = lu.pivots();
    found.singular = lu.singular();
    std::optional<std::vector<T>> numbers(std::in_place, found.packed.data(),
                                          found.packed.data() + a.rows() * a.columns());
    if (square) {
      const auto parts = lu.determinant_parts();
      // Beside one exponent, so that mantissas can be compared.
      constexpr std::int64_t kFar = 1'000'000;
      const std::int64_t places = exponent ? parts.exponent - *exponent : 0;
      exponent = exponent.value_or(parts.exponent);
      numbers->push_back(parts.mantissa * T(QuarnFloat(1, int(std::clamp(places, -kFar, kFar)))));
    }
    return numbers;
  };
  // Of lower rank, the pivots that are exactly 0 are rounding errors at any precision, and what is divided by them too.
  estimate = estimated<T>(options.proof, compute, [&] {
    const std::optional<std::size_t> rank = tesk2mp::proven::rank(a);
    if (rank && *rank < std::min(a.rows(), a.columns())) {
      found.deficient_rank = rank;
    }
    return found.deficient_rank.has_value();
  });
  std::vector<T> numbers = known_values(estimate.numbers);
  if (square && !numbers.empty()) {
    found.mantissa = found.deficient_rank ? T() : numbers.back();
    found.exponent = *exponent;
    numbers.pop_back();
  }
  found.packed = matrix_of(numbers, a.rows());
  return found;
}

template <class T>
Result result_of(const LuOptions& options, const DenseMatrix& given, const tesk2mp::Matrix<T>& a) {
  const std::string routine = options.weighted  ? "QuarnMP_f07adg_"
                              : given.complex() ? "QuarnMPX_f07arf_"
                                                : "QuarnMPX_f07adf_";
  Estimated<T> estimate;
  const Factors<T> lu = factors_of(options, a, estimate);
  Result result;
  result.notes = {"A = P L U of the " + description(given), ""};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  if (given.rows() == given.columns()) {
    const std::string determinant = determinant_text(lu.mantissa == T() ? T() : lu.mantissa, lu.exponent);
    result.notes.push_back("determinant " + determinant +
                           "; row interchanges: " + std::to_string(interchanges(lu.pivots)) +
                           (lu.singular ? "; singular: a pivot is exactly zero" : ""));
    result.facts.push_back({"determinant", determinant});
  }
  if (lu.deficient_rank) {
    result.notes.push_back("the rank is " + std::to_string(*lu.deficient_rank) +
                           ", proven; pivots that are rounding errors make what follows them so");
  }
  add_estimate(options.proof, estimate, routine, result);
  const std::string title = std::string(options.part == "factors" ? "L and U"
                                        : options.part == "p"     ? "Row order"
                                        : options.part == "l"     ? "L"
                                                                  : "U") +
                            " of the " + description(given);
  if (options.part == "p") {
    result.notes.push_back("row i of L U is row p(i) of A");
    const std::vector<Integer> order = permuted_rows(lu.pivots, given.rows());
    result.table = {count_column("i", positions(given.rows())), count_column("p", order)};
    result.data = result.table;
    result.picture = [title, order](const std::string& file) {
      Panel panel = panel_of_elements(title, "row of A", {order.begin(), order.end()});
      panel.x_title = "row of L U";
      panel.style = Panel::Style::points;
      draw({panel}, file);
    };
    return result;
  }
  const bool both = options.part == "factors";
  result.notes.emplace_back(both ? "U on the diagonal and above, L below; its diagonal of ones is left out"
                            : options.part == "l" ? "L"
                                                  : "U");
  const DenseMatrix factor{"", both ? lu.packed : triangle(lu.packed, options.part == "l")};
  add_matrix(result, factor);
  result.picture = [title, factor](const std::string& file) { draw(map_of_magnitudes(title, factor), file); };
  return result;
}

DenseMatrix read_exactly(const LuOptions& options) {
  const tesk2mp::Digits scope(digits_of_data(options.proof.wanted()));
  return read_operand(options.matrix, options.table, false);
}

void run_lu(const LuOptions& options) {
  const DenseMatrix given = read_exactly(options);
  if (options.weighted && given.complex()) {
    throw bad_input("--weighted: the matrix in " + given.source + " is complex; weighted pivoting is for real ones");
  }
  constexpr double kComputations = 2;
  const Progress progress = Progress::estimated(
      "factorising", kComputations * factorisation_cost(std::min(given.rows(), given.columns()), given.complex()));
  std::visit([&](const auto& a) { deliver(result_of(options, given, a), options.output); }, given.elements);
}

constexpr const char* kLuFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file; m by n, real or
complex. Pivots are the largest elements of their columns, with --weighted relative to
the Euclidean norms of their rows. --plot draws the magnitudes of what is written.

The numbers of the matrix are taken with all their digits. The factors are computed twice, with
more and more digits until both agree to D of them; pivots that are equal in magnitude are
chosen alike. That is an estimate, no proof; quarn det has one.

Examples:
  quarn lu examples/west0067.mtx --digits 50 --format json
  printf '2 1\n1 3\n' | quarn lu - --part l
  quarn lu matrix.csv --part p)";

void declare_lu(Command& command) {
  auto options = std::make_shared<LuOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  command.choice("--part", "WHAT", options->part, kParts,
                 "what to write: factors (default, both in one), l, u, p (row order)");
  command.flag("--weighted", options->weighted, "choose pivots relative to the sizes of rows");
  add_estimated_digits(command, options->proof);
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  command.work = [options] {
    options->proof.start();
    run_lu(*options);
  };
}

const Registered kLuCommand(90, "lu", "factorise a dense matrix, A = P L U; determinant", kLuFooter, declare_lu);

}  // namespace

}  // namespace cli
