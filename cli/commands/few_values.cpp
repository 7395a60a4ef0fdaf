// Some eigenvalues or singular values of large sparse matrices, by Krylov methods.
#include "cli/commands/few_values.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>
#include <numeric>
#include <optional>
#include <utility>

#include "cli/commands/dense.h"
#include "cli/commands/estimate.h"
#include "cli/commands/failure.h"
#include "cli/commands/linear_system.h"
#include "cli/commands/ranking.h"
#include "cli/io/matrix_output.h"
#include "cli/io/number_text.h"
#include "cli/plot/plot.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "tesk2mp/proven_krylov.hpp"

namespace cli {

namespace {

using BoundedReal = tesk2mp::proven::Bounded<QuarnFloat>;

struct Wanted {
  const char* name;
  const char* meaning;
  std::optional<tesk2mp::Extreme> extreme;    // of Hermitian matrices
  std::optional<tesk2mp::Dominant> dominant;  // of others
};
constexpr Wanted kWanted[] = {
    {"largest", "of largest magnitude", tesk2mp::Extreme::largest_magnitude, tesk2mp::Dominant::largest_magnitude},
    {"smallest", "of smallest magnitude", tesk2mp::Extreme::smallest_magnitude, tesk2mp::Dominant::smallest_magnitude},
    {"largest-real", "of largest real part", tesk2mp::Extreme::largest, tesk2mp::Dominant::largest_real},
    {"smallest-real", "of smallest real part", tesk2mp::Extreme::smallest, tesk2mp::Dominant::smallest_real},
    {"both-ends", "at both ends of the spectrum", tesk2mp::Extreme::both_ends, std::nullopt},
    {"largest-imaginary", "of largest imaginary part", std::nullopt, tesk2mp::Dominant::largest_imaginary},
    {"smallest-imaginary", "of smallest imaginary part", std::nullopt, tesk2mp::Dominant::smallest_imaginary}};

const Wanted& wanted_of(const FewOptions& options) {
  return *std::find_if(std::begin(kWanted), std::end(kWanted) - 1,
                       [&](const Wanted& each) { return options.which.empty() || each.name == options.which; });
}

/// "of largest magnitude, the first most so", "nearest to 0"
std::string meaning_of(const FewOptions& options) {
  return options.near.empty() ? std::string(wanted_of(options).meaning) : "nearest to " + options.near;
}

std::string size_of(const SparseMatrix& matrix) {
  return std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) + " matrix in " + matrix.source;
}

std::string type_letter(bool complex) { return complex ? "QuarnMPX_z" : "QuarnMPX_d"; }

/// Reads the entries, and refuses a basis that cannot fit.
SparseMatrix read_entries(const FewOptions& options) {
  SparseMatrix matrix =
      read_exactly(options.proof.wanted(), [&] { return read_matrix(options.matrix, options.table); });
  constexpr double kLeastBasis = 20;
  const double basis = std::min<double>(2 * double(options.count) + kLeastBasis, matrix.rows);
  require_memory((matrix.complex() ? 2 : 1) * basis * (double(matrix.rows) + matrix.columns),
                 "the vectors of a search for " + std::to_string(options.count) + " values");
  return matrix;
}

/// The order in which those stand first that are wanted most.
std::vector<std::size_t> most_wanted_first(const FewOptions& options, const QuarnFloat& near,
                                           const std::vector<QuarnFloat>& ascending) {
  std::vector<std::size_t> order(ascending.size());
  std::iota(order.begin(), order.end(), 0);
  const tesk2mp::Extreme which = *wanted_of(options).extreme;
  const auto key = [&](std::size_t j) -> QuarnFloat {
    const QuarnFloat& x = ascending[j];
    if (!options.near.empty()) {
      return -fabs(x - near);
    }
    using tesk2mp::Extreme;
    return which == Extreme::largest_magnitude    ? fabs(x)
           : which == Extreme::smallest_magnitude ? -fabs(x)
           : which == Extreme::largest            ? x
                                                  : -x;
  };
  if (!options.near.empty() || which != tesk2mp::Extreme::both_ends) {
    std::stable_sort(order.begin(), order.end(), [&](std::size_t i, std::size_t j) { return key(i) > key(j); });
  }
  return order;
}

template <class T>
std::span<const T> column_of(const tesk2mp::Matrix<T>& a, std::size_t j) {
  return {a.data() + j * a.rows(), a.rows()};
}

/// A distance at so many digits that the product of a value and a vector loses none.
template <class Near, class... Vectors>
BoundedReal near_value(Near& near, const QuarnFloat& value, const Vectors&... vectors) {
  const tesk2mp::Digits twice(int(std::min<std::int64_t>(2 * std::int64_t(QuarnDigits()) + 5, kMostDigits)));
  return {value, near.distance(value, vectors...)};
}

/// Without a bound a value says nothing.
bool is_known(const BoundedReal& x) { return x.error.is_finite(); }

/// find() gives values and how far each of them is from one of the matrix at most. With as many working digits as all
/// true digits take, said in the second note; or once, and how many are true in the last one.
std::vector<BoundedReal> search(const ProofOptions& options, const std::string& routine, const std::string& what,
                                const std::function<std::vector<BoundedReal>()>& find, Result& result) {
  std::vector<BoundedReal> found;
  int worked_with = 0;
  std::string why_not;
  const bool known = try_proof(
      options, why_not,
      [&] {
        bool had_bounds = true;
        with_true_digits(options, worked_with, [&] {
          found = find();
          const bool has_bounds = std::all_of(found.begin(), found.end(), is_known);
          if (!has_bounds && !std::exchange(had_bounds, has_bounds)) {
            throw tesk2mp::NumericalFailure("TO_DIGITS", 1, 0, "a value that may be 0 has no bound", {});
          }
          return found;
        });
      },
      "");
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  if (known) {
    result.notes[1] = digits_text() + " of " + what + " each, proven (worked with " + std::to_string(worked_with) +
                      "), by " + routine;
    add_zeros(result, found);
  } else {
    found = options.wanted() ? std::move(found) : find();
    result.notes[1] = digits_text() + ", by " + routine;
    if (!why_not.empty()) {
      result.notes.push_back(why_not);
    }
    const auto digits = std::clamp<std::int64_t>(tesk2mp::proven::fewest_true_digits(found), 0, QuarnDigits());
    result.notes.push_back(counted(Integer(digits), "digit", "digits") + " of " + what +
                           " each proven by the residuals");
    result.facts.push_back({"true_digits", std::to_string(digits), true});
  }
  worked_with = known ? worked_with : QuarnDigits();
  result.facts.push_back({"working_digits", std::to_string(worked_with), true});
  return found;
}

/// As programs get it; NaN where nothing is known.
QuarnFloat shown_value(const BoundedReal& x) {
  return is_known(x) ? tesk2mp::proven::known_value(x) : QuarnFloat("nan");
}

/// In a column for people "?" stands for values of which nothing is known.
void mark_unknown(ResultColumn& column, const std::vector<BoundedReal>& values) {
  for (std::size_t j = 0; j < values.size(); ++j) {
    if (!is_known(values[j])) {
      column.cells[j] = "?";
    }
  }
}

/// find(), which uses how.sigma where that is not an eigenvalue; else a number beside it, half the digits away.
template <class How, class Find>
auto found_near(How& how, const QuarnFloat& size, const Find& find) {
  try {
    return find();
  } catch (const tesk2mp::NumericalFailure& failure) {
    if (!how.sigma || !failure.routine().ends_with("SPARSE_LU")) {
      throw;
    }
  }
  how.sigma = *how.sigma + (size == 0 ? QuarnFloat(1) : size) * QuarnFloat(1, -QuarnDigits() / 2);
  return find();
}

template <class T>
QuarnFloat largest_entry(const tesk2mp::SparseMatrix<T>& a) {
  QuarnFloat largest;
  for (const T& each : a.values()) {
    largest = std::max(largest, tesk2mp::abs(Complex(each)));
  }
  return largest;
}

/// Columns x1, x2, ... of the vectors, in that order.
template <class T>
void add_vectors(Result& result, const tesk2mp::Matrix<T>& vectors, const std::vector<std::size_t>& order) {
  result.notes.emplace_back("x1, x2, ...: the eigenvector of norm 1, an estimate");
  for (std::size_t i = 0; i < vectors.rows(); ++i) {
    ResultColumn column{"x" + std::to_string(i + 1), {}};
    for (const std::size_t j : order) {
      column.cells.push_back(exact_text(T(vectors(i, j) * T(1))));
    }
    result.table.push_back(column);
    result.data.push_back(column);
  }
}

void add_plane(Result& result, const std::string& title, const std::vector<Complex>& values) {
  result.picture = [title, values](const std::string& file) { draw(ComplexPlane{title, values}, file); };
}

Complex number_near(const FewOptions& options) {
  if (!is_complex_number(options.near)) {
    throw bad_input("--near: '" + options.near + "' is not a number");
  }
  return to_complex_number(options.near);
}

std::string heading_of(const FewOptions& options, const SparseMatrix& matrix, std::size_t count) {
  return counted(Integer(count), "eigenvalue", "eigenvalues") + " of the " + size_of(matrix) + ", " +
         meaning_of(options);
}

template <class T>
Result hermitian_result(const FewOptions& options, const SparseMatrix& matrix, const tesk2mp::SparseMatrix<T>& a) {
  tesk2mp::HermitianEigenOptions<T> how;
  if (!wanted_of(options).extreme) {
    throw bad_input("--which " + options.which + ": the matrix is its own adjoint, its eigenvalues are real");
  }
  QuarnFloat near;
  if (options.near.empty()) {
    how.which = *wanted_of(options).extreme;
  } else {
    const Complex z = number_near(options);
    if (z.im != 0) {
      throw bad_input("--near: the eigenvalues of a matrix that is its own adjoint are real");
    }
    how.sigma = near = z.re;
  }
  const QuarnFloat size = largest_entry(a);
  tesk2mp::proven::NearEigenvalue<T> bounds(a);
  tesk2mp::HermitianEigenpairs<T> pairs;
  Result result;
  result.notes = {heading_of(options, matrix, std::size_t(options.count)), ""};
  const std::vector<BoundedReal> found = search(
      options.proof, type_letter(matrix.complex()) + "eigsh_", "an eigenvalue",
      [&] {
        pairs = found_near(how, size, [&] { return tesk2mp::eigsh(a, std::size_t(options.count), how); });
        std::vector<BoundedReal> values;
        for (std::size_t j = 0; j < pairs.values.size(); ++j) {
          values.push_back(near_value(bounds, pairs.values[j], column_of(pairs.vectors, j)));
        }
        return values;
      },
      result);
  result.notes[1] += std::string(": the matrix is ") + (matrix.complex() ? "Hermitian" : "symmetric");
  result.notes.emplace_back("an estimate: that these are the ones that are wanted, and how often each counts");
  std::vector<Complex> values;
  std::vector<Complex> known_values;
  std::vector<BoundedReal> ordered;
  const std::vector<std::size_t> order = most_wanted_first(options, near, pairs.values);
  for (const std::size_t j : order) {
    ordered.push_back(found[j]);
    values.emplace_back(shown_value(found[j]));
    if (is_known(found[j])) {
      known_values.push_back(values.back());
    }
  }
  result.facts.push_back({"products", std::to_string(pairs.products), true});
  add_complex_numbers(result, values);
  mark_unknown(result.table[1], ordered);
  add_errors(result, errors_of(ordered), "value", options.proof.errors);
  if (options.vectors) {
    add_vectors(result, pairs.vectors, order);
  }
  add_plane(result, result.notes.front(), known_values);
  return result;
}

/// Each value stands where the one of `others` is that is nearest to it; as they are where their numbers differ.
void align(tesk2mp::Eigenpairs& pairs, const std::vector<Complex>& others) {
  const std::size_t count = pairs.values.size();
  if (others.size() != count) {
    return;
  }
  for (std::size_t j = 0; j < count; ++j) {
    const auto distance = [&](std::size_t k) { return tesk2mp::abs(pairs.values[k] - others[j]); };
    std::size_t nearest = j;
    for (std::size_t k = j + 1; k < count; ++k) {
      nearest = distance(k) < distance(nearest) ? k : nearest;
    }
    std::swap(pairs.values[j], pairs.values[nearest]);
    std::swap(pairs.residuals[j], pairs.residuals[nearest]);
    for (std::size_t i = 0; i < pairs.vectors.rows(); ++i) {
      std::swap(pairs.vectors(i, j), pairs.vectors(i, nearest));
    }
  }
}

template <class T>
Result general_result(const FewOptions& options, const SparseMatrix& matrix, const tesk2mp::SparseMatrix<T>& a) {
  tesk2mp::EigenOptions<T> how;
  how.vectors = options.vectors;
  if (!wanted_of(options).dominant) {
    throw bad_input("--which " + options.which + " is for symmetric and Hermitian matrices");
  }
  if (options.near.empty()) {
    how.which = *wanted_of(options).dominant;
  } else {
    const Complex z = number_near(options);
    if constexpr (std::is_same_v<T, Complex>) {
      how.sigma = z;
    } else {
      how.sigma = z.re;
    }
  }
  const QuarnFloat size = largest_entry(a);
  std::vector<Complex> first;
  tesk2mp::Eigenpairs pairs;
  const auto estimate = estimated<Complex>(options.proof, [&] {
    tesk2mp::Eigenpairs found =
        found_near(how, size, [&] { return tesk2mp::eigs(a, std::size_t(options.count), how); });
    align(found, first);
    first = first.empty() ? found.values : first;
    Computed<Complex> computed{found.values, {}, {Integer(found.values.size())}};
    // Of one computation the first is shown, else the second.
    if (options.proof.wanted() || pairs.values.empty()) {
      pairs = std::move(found);
    }
    return std::optional(std::move(computed));
  });
  const std::string routine = type_letter(std::is_same_v<T, Complex>) + "eigs_";
  Result result;
  result.notes = {heading_of(options, matrix, std::size_t(estimate.choice->front())), ""};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  add_estimate(options.proof, estimate, routine, result);
  const QuarnFloat residual = *std::max_element(pairs.residuals.begin(), pairs.residuals.end());
  result.notes.push_back("largest norm of A x - lambda x, x of norm 1: " + brief(residual));
  result.facts.push_back({"products", std::to_string(pairs.products), true});
  result.facts.push_back({"largest_residual", brief(residual)});
  const std::vector<Complex> values = estimated_values(options.proof, estimate.numbers);
  add_complex_numbers(result, values);
  if (options.vectors) {
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), 0);
    add_vectors(result, pairs.vectors, order);
  }
  add_plane(result, result.notes.front(), values);
  return result;
}

tesk2mp::SparseMatrix<Complex> widened(const tesk2mp::SparseMatrix<QuarnFloat>& a) {
  tesk2mp::SparseMatrix<Complex> wide(a.order());
  for (std::size_t k = 0; k < a.entries(); ++k) {
    wide.add(a.row(k), a.column(k), Complex(a.value(k)));
  }
  return wide;
}

template <class T>
Result eigenvalue_result(const FewOptions& options, const SparseMatrix& matrix, const tesk2mp::SparseMatrix<T>& a) {
  if (tesk2mp::is_hermitian(a)) {
    return hermitian_result(options, matrix, a);
  }
  if constexpr (std::is_same_v<T, QuarnFloat>) {
    if (!options.near.empty() && number_near(options).im != 0) {
      return general_result(options, matrix, widened(a));
    }
  }
  return general_result(options, matrix, a);
}

template <class T>
tesk2mp::SparseRectangle<T> rectangle_of(const SparseMatrix& matrix, const std::vector<T>& values) {
  tesk2mp::SparseMatrix<T> square(std::size_t(std::max(matrix.rows, matrix.columns)));
  for (std::size_t k = 0; k < values.size(); ++k) {
    square.add(std::size_t(matrix.row[k]) - 1, std::size_t(matrix.column[k]) - 1, values[k]);
  }
  square.canonicalise(tesk2mp::Duplicates::sum, tesk2mp::Zeros::remove);
  tesk2mp::SparseRectangle<T> rectangle(std::size_t(matrix.rows), std::size_t(matrix.columns));
  for (std::size_t k = 0; k < square.entries(); ++k) {
    rectangle.add(square.row(k), square.column(k), square.value(k));
  }
  return rectangle;
}

template <class T>
Result singular_result(const FewOptions& options, const SparseMatrix& matrix, const tesk2mp::SparseRectangle<T>& a) {
  tesk2mp::SingularOptions<T> how;
  how.smallest = options.which == "smallest";
  tesk2mp::proven::NearSingularValue<T> bounds(a);
  tesk2mp::SingularTriplets<T> triplets;
  Result result;
  result.notes = {counted(options.count, "singular value", "singular values") + " of the " + size_of(matrix) +
                      ", the " + (how.smallest ? "smallest" : "largest"),
                  ""};
  const std::vector<BoundedReal> found = search(
      options.proof, type_letter(matrix.complex()) + "svds_", "a singular value",
      [&] {
        triplets = tesk2mp::svds(a, std::size_t(options.count), how);
        std::vector<BoundedReal> values;
        for (std::size_t j = 0; j < triplets.values.size(); ++j) {
          values.push_back(near_value(bounds, triplets.values[j], column_of(triplets.u, j), column_of(triplets.v, j)));
        }
        return values;
      },
      result);
  result.notes.emplace_back("an estimate: that these are the ones that are wanted, and how often each counts");
  result.facts.push_back({"products", std::to_string(triplets.products), true});
  if (options.part == "u" || options.part == "v") {
    const bool left = options.part == "u";
    result.notes.push_back(std::string(left ? "U" : "V") + " of A = U S V^H, a column for each of them; an estimate");
    tesk2mp::Matrix<T> factor = left ? triplets.u : triplets.v;
    std::for_each(factor.data(), factor.data() + factor.rows() * factor.columns(), [](T& x) { x = x * T(1); });
    const DenseMatrix shown{"", std::move(factor)};
    add_matrix(result, shown);
    result.picture = [title = result.notes.back(), shown](const std::string& file) {
      draw(map_of_magnitudes(title, shown), file);
    };
    return result;
  }
  std::vector<QuarnFloat> values;
  std::transform(found.begin(), found.end(), std::back_inserter(values), shown_value);
  const ResultColumn counts = count_column("i", positions(Integer(values.size())));
  result.table = {counts, aligned_column("value", values, largest_magnitude(values))};
  result.data = {counts, {"value", exact_cells(values)}};
  mark_unknown(result.table[1], found);
  add_errors(result, errors_of(found), "value", options.proof.errors);
  result.picture = [title = result.notes.front(), values](const std::string& file) {
    Panel panel = panel_of_elements(title, "value", values);
    panel.style = Panel::Style::points;
    draw({panel}, file);
  };
  return result;
}

}  // namespace

void add_few_options(Command& command, FewOptions& options, bool eigenvalues) {
  command.number("--count", "K", options.count, 1, std::numeric_limits<Integer>::max(),
                 eigenvalues ? "K of the eigenvalues alone, of a sparse matrix of any order"
                             : "K of the values alone, of a sparse matrix of any order");
  if (!eigenvalues) {
    command.choice("--which", "WHICH", options.which, {"largest", "smallest"},
                   "of --count: largest (default), smallest");
    return;
  }
  command.text("--near", "Z", options.near, "of --count: those nearest to this number");
  std::vector<std::string> words;
  for (const Wanted& each : kWanted) {
    words.emplace_back(each.name);
  }
  command.choice("--which", "WHICH", options.which, words,
                 "of --count: largest (default) or smallest in magnitude, largest-real, smallest-real; of symmetric "
                 "matrices both-ends, of others largest-imaginary, smallest-imaginary");
}

void require_few(const FewOptions& options) {
  if (options.count == 0) {
    if (!options.near.empty() || !options.which.empty()) {
      throw bad_input("--near and --which are for --count");
    }
  } else if (options.proof.insisted) {
    throw bad_input("--proven and --certificate are for all values: without --count");
  } else if (!options.near.empty() && !options.which.empty()) {
    throw bad_input("--near and --which exclude each other");
  }
}

void run_few_eigenvalues(const FewOptions& options) {
  const SparseMatrix matrix = read_entries(options);
  if (matrix.rows != matrix.columns) {
    throw bad_input(matrix.source + ": " + std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) +
                    ", but a square matrix is needed");
  }
  const auto entries = read_exactly(options.proof.wanted(), [&] { return assembled(matrix); });
  const Progress progress("eigenvalues", 1);
  const Result result = std::visit([&](const auto& a) { return eigenvalue_result(options, matrix, a); }, entries);
  deliver(result, options.output);
}

void run_few_singular_values(const FewOptions& options) {
  const SparseMatrix matrix = read_entries(options);
  const SparseMatrix whole = expanded(matrix);
  const Progress progress("singular values", 1);
  const auto exactly = [&](const auto& values) {
    return read_exactly(options.proof.wanted(), [&] { return rectangle_of(whole, values); });
  };
  const Result result = matrix.complex() ? singular_result(options, matrix, exactly(whole.values))
                                         : singular_result(options, matrix, exactly(real_parts(whole.values)));
  deliver(result, options.output);
}

}  // namespace cli
