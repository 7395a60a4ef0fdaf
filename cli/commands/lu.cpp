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
#include "tesk2mp/proven_factors.hpp"

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

template <class T>
tesk2mp::LU<T> factorised(const LuOptions& options, const tesk2mp::Matrix<T>& a) {
  if constexpr (std::is_same_v<T, QuarnFloat>) {
    if (options.weighted) {
      return tesk2mp::LU<T>::row_weighted(a);
    }
  }
  return tesk2mp::LU<T>(a);
}

/// Both factors in one; of a square matrix the determinant is the last of estimate.single.
template <class T>
struct Factors {
  Estimated<T> estimate;
  ComparedDeterminants determinants;
  std::optional<std::size_t> deficient_rank;
};

template <class T>
Factors<T> factors_of(const LuOptions& options, const tesk2mp::Matrix<T>& a) {
  Factors<T> found;
  const Computation<T> compute = [&] {
    const tesk2mp::LU<T> lu = factorised(options, a);
    const tesk2mp::Matrix<T>& packed = lu.factors();
    Computed<T> computed{{packed.data(), packed.data() + a.rows() * a.columns()}, {}, lu.pivots()};
    // Each pivot says something for itself.
    for (std::size_t i = 0; i < std::min(a.rows(), a.columns()); ++i) {
      computed.single.push_back(packed(i, i));
    }
    if (a.rows() == a.columns()) {
      // Of the factors that are printed.
      const auto parts = lu.determinant_parts();
      computed.single.push_back(found.determinants.scaled(parts.mantissa, parts.exponent));
    }
    return std::optional(std::move(computed));
  };
  // Of lower rank, the pivots that are exactly 0 are rounding errors at any precision, and what is divided by them too.
  found.estimate = estimated<T>(options.proof, compute, [&] {
    const std::optional<std::size_t> rank = tesk2mp::proven::rank(a);
    if (rank && *rank < std::min(a.rows(), a.columns())) {
      found.deficient_rank = rank;
    }
    return found.deficient_rank.has_value();
  });
  return found;
}

/// What is written of the factors.
template <class T>
struct Written {
  tesk2mp::Matrix<T> packed;
  std::vector<Integer> order;  // row i of P A, from 1, is this one of A
};

/// With digits that are true; pivots are chosen as with some more digits.
template <class T>
Written<T> proven_factors(const LuOptions& options, const tesk2mp::Matrix<T>& a, Result& result) {
  int worked_with = 0;
  std::vector<std::size_t> rows;
  const auto packed = proven_result(options.proof, result, "proven factors", worked_with, [&] {
    auto factors = tesk2mp::proven::lu(a);
    const std::size_t inner = std::min(a.rows(), a.columns());
    const tesk2mp::MatrixView<const T> first(a.data(), a.rows(), inner, std::max<std::size_t>(1, a.rows()));
    if (!tesk2mp::proven::detail::is_known(factors.l) && tesk2mp::proven::rank(first).value_or(0) < inner) {
      throw tesk2mp::NumericalFailure("TO_DIGITS", 1, 0, "the rank is less than the number of pivots", {});
    }
    rows = factors.rows;
    return tesk2mp::proven::detail::bounded_matrix<T>(
        a.rows(), a.columns(), [&](std::size_t i, std::size_t j) { return i > j ? factors.l(i, j) : factors.u(i, j); });
  });
  Written<T> written{known_matrix(options.proof, packed, result), {}};
  std::transform(rows.begin(), rows.end(), std::back_inserter(written.order),
                 [](std::size_t row) { return Integer(row) + 1; });
  if (a.rows() == a.columns()) {
    const auto found = [&] {
      int of_determinant = 0;
      return with_true_digits(options.proof, of_determinant, [&] { return tesk2mp::proven::determinant(a); });
    }();
    // Each cycle of k rows takes k - 1 interchanges.
    std::size_t cycles = 0;
    std::vector<bool> seen(rows.size());
    for (std::size_t start = 0; start < rows.size(); ++start) {
      cycles += seen[start] ? 0 : 1;
      for (std::size_t i = start; !seen[i]; i = rows[i]) {
        seen[i] = true;
      }
    }
    const std::string determinant = exact_text(tesk2mp::proven::known_value(found));
    result.notes.push_back("determinant " + determinant +
                           "; row interchanges: " + std::to_string(rows.size() - cycles) +
                           (found.error.is_zero() && found.value == T() ? "; singular: a pivot is exactly zero" : ""));
    result.facts.push_back({"determinant", determinant});
  }
  return written;
}

template <class T>
Written<T> estimated_factors(const LuOptions& options, const DenseMatrix& given, const tesk2mp::Matrix<T>& a,
                             Result& result) {
  const std::string routine = options.weighted  ? "QuarnMP_f07adg_"
                              : given.complex() ? "QuarnMPX_f07arf_"
                                                : "QuarnMPX_f07adf_";
  const Factors<T> lu = factors_of(options, a);
  const std::vector<Integer>& pivots = *lu.estimate.choice;
  const auto inner = std::ptrdiff_t(std::min(a.rows(), a.columns()));
  const bool singular = std::any_of(lu.estimate.single.begin(), lu.estimate.single.begin() + inner,
                                    [](const auto& pivot) { return pivot.value == T(); });
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  if (given.rows() == given.columns()) {
    const std::string determinant =
        lu.deficient_rank ? exact_text(T())
                          : lu.determinants.text(estimated_values(options.proof, lu.estimate.single).back());
    result.notes.push_back("determinant " + determinant +
                           "; row interchanges: " + std::to_string(interchanges(pivots)) +
                           (singular ? "; singular: a pivot is exactly zero" : ""));
    result.facts.push_back({"determinant", determinant});
  }
  if (lu.deficient_rank) {
    result.notes.push_back("the rank is " + std::to_string(*lu.deficient_rank) +
                           ", proven; pivots that are rounding errors make what follows them so");
  }
  add_estimate(options.proof, lu.estimate, routine, result);
  return {matrix_of(estimated_values(options.proof, lu.estimate.numbers), a.rows()),
          permuted_rows(pivots, given.rows())};
}

template <class T>
Result result_of(const LuOptions& options, const DenseMatrix& given, const tesk2mp::Matrix<T>& a) {
  const std::vector<std::string> heading = {"A = P L U of the " + description(given), ""};
  if (options.weighted && options.proof.insisted) {
    throw bad_input("--proven is for factors without --weighted");
  }
  Result result;
  result.notes = heading;
  Written<T> written;
  std::string why_not;
  if (options.weighted || !try_proof(
                              options.proof, why_not, [&] { written = proven_factors(options, a, result); }, "")) {
    result = Result();
    result.notes = heading;
    written = estimated_factors(options, given, a, result);
    if (!why_not.empty()) {
      result.notes.push_back(why_not);
    }
  }
  const std::string title = std::string(options.part == "factors" ? "L and U"
                                        : options.part == "p"     ? "Row order"
                                        : options.part == "l"     ? "L"
                                                                  : "U") +
                            " of the " + description(given);
  if (options.part == "p") {
    result.notes.push_back("row i of L U is row p(i) of A");
    const std::vector<Integer>& order = written.order;
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
  const DenseMatrix factor{"", both ? written.packed : triangle(written.packed, options.part == "l")};
  add_matrix(result, factor);
  result.picture = [title, factor](const std::string& file) { draw(map_of_magnitudes(title, factor), file); };
  return result;
}

void run_lu(const LuOptions& options) {
  const DenseMatrix given = read_exactly(true, [&] { return read_operand(options.matrix, options.table, false); });
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

The numbers of the matrix are taken with all their digits, and all digits of the factors and the
determinant that are printed are true; of pivots whose sizes hardly differ either is right.
With --weighted, and where no proof is found, two computations agree to the digits. Of a matrix
of lower rank no digits may be known: pivots that are exactly 0 are rounding errors, and what is
divided by them.

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
  add_true_digits(command, options->proof);
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  set_proven_work(command, options, run_lu);
}

const Registered kLuCommand(90, "lu", "factorise a dense matrix, A = P L U; determinant", kLuFooter, declare_lu);

}  // namespace

}  // namespace cli
