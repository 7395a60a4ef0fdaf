// quarn sparse: the canonical form of a sparse matrix, with a summary and a picture of where its entries stand.
#include "tesk2mp/sparse.hpp"

#include <algorithm>
#include <limits>
#include <optional>

#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/sparse_factors.h"
#include "cli/io/matrix_input.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/memory.h"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

struct SparseOptions {
  std::string matrix;
  TableOptions table;
  std::string duplicates;  // empty: sum
  std::string zeros;       // empty: keep
  bool expand = false;
  FactorOptions factors;
  OutputOptions output;
};

const std::vector<std::string> kDuplicates = {"remove", "sum", "fail"};
const std::vector<std::string> kZeros = {"remove", "keep", "fail"};

tesk2mp::Duplicates duplicates_of(const SparseOptions& options) {
  return options.duplicates == "sum"      ? tesk2mp::Duplicates::sum
         : options.duplicates == "remove" ? tesk2mp::Duplicates::keep_first
                                          : tesk2mp::Duplicates::fail;
}

tesk2mp::Zeros zeros_of(const SparseOptions& options) {
  return options.zeros == "keep"     ? tesk2mp::Zeros::keep
         : options.zeros == "remove" ? tesk2mp::Zeros::remove
                                     : tesk2mp::Zeros::fail;
}

struct Canonical {
  SparseMatrix matrix;
  std::string routine;
};

// The rows and columns that hold entries, numbered from 1 in their order: what the library needs room for follows the
// entries, whatever the order of the matrix.
class Renumbering {
 public:
  explicit Renumbering(SparseMatrix& matrix) : matrix_(matrix), used_(matrix.row) {
    used_.insert(used_.end(), matrix.column.begin(), matrix.column.end());
    std::sort(used_.begin(), used_.end());
    used_.erase(std::unique(used_.begin(), used_.end()), used_.end());
    each([this](Integer& place) {
      place = Integer(std::lower_bound(used_.begin(), used_.end(), place) - used_.begin()) + 1;
    });
  }
  Integer order() const { return std::max<Integer>(1, Integer(used_.size())); }
  void undo() {
    each([this](Integer& place) { place = used_[std::size_t(place) - 1]; });
  }

 private:
  template <class Change>
  void each(const Change& change) {
    std::for_each(matrix_.row.begin(), matrix_.row.end(), change);
    std::for_each(matrix_.column.begin(), matrix_.column.end(), change);
  }

  SparseMatrix& matrix_;
  std::vector<Integer> used_;
};

// Rows and columns of a matrix that is not square count up to one order. Where the library may name a place in a
// message the matrix keeps its own numbers.
template <class T>
std::vector<T> sort_entries(SparseMatrix& matrix, std::vector<T> values, tesk2mp::Storage storage,
                            tesk2mp::Duplicates duplicates, tesk2mp::Zeros zeros) {
  const bool may_fail = duplicates == tesk2mp::Duplicates::fail || zeros == tesk2mp::Zeros::fail;
  std::optional<Renumbering> renumbering;
  Integer n = std::max(matrix.rows, matrix.columns);
  if (!may_fail && n > matrix.count()) {
    n = renumbering.emplace(matrix).order();
  }
  require_bytes(double(sizeof(Integer)) * (2 * double(n) + matrix.count()), "the order " + std::to_string(n));
  tesk2mp::SparseMatrix<T> sorted(std::size_t(n), storage);
  for (std::size_t k = 0; k < values.size(); ++k) {
    sorted.add(std::size_t(matrix.row[k]) - 1, std::size_t(matrix.column[k]) - 1, std::move(values[k]));
  }
  sorted.canonicalise(duplicates, zeros);
  values.resize(sorted.entries());
  matrix.row.resize(sorted.entries());
  matrix.column.resize(sorted.entries());
  for (std::size_t k = 0; k < values.size(); ++k) {
    values[k] = sorted.value(k);
    matrix.row[k] = Integer(sorted.row(k)) + 1;
    matrix.column[k] = Integer(sorted.column(k)) + 1;
  }
  if (renumbering) {
    renumbering->undo();
  }
  return values;
}

// The library's routines for stored lower triangles know fewer options; where these are asked for, and for symmetries
// that it does not know, the entries of the triangle are those of a general matrix.
Canonical canonical_form(SparseMatrix given, tesk2mp::Duplicates duplicates, tesk2mp::Zeros zeros) {
  Canonical result{std::move(given), ""};
  SparseMatrix& matrix = result.matrix;
  const bool may_fail = duplicates == tesk2mp::Duplicates::fail || zeros == tesk2mp::Zeros::fail;
  const Symmetry stored = matrix.complex() ? Symmetry::hermitian : Symmetry::symmetric;
  const bool triangle = !may_fail && matrix.symmetry == stored;
  const auto storage = triangle ? tesk2mp::Storage::lower_triangle : tesk2mp::Storage::general;
  if (matrix.complex()) {
    result.routine = triangle ? "QuarnMPX_f11zpf_" : "QuarnMPX_f11znf_";
    matrix.values = sort_entries(matrix, std::move(matrix.values), storage, duplicates, zeros);
    return result;
  }
  result.routine = triangle ? "QuarnMPX_f11zbf_" : "QuarnMPX_f11zaf_";
  const std::vector<QuarnFloat> values = sort_entries(matrix, real_parts(matrix.values), storage, duplicates, zeros);
  matrix.values = complex_numbers(values);
  if (matrix.field == Field::pattern && std::any_of(values.begin(), values.end(), [](auto& v) { return v != 1; })) {
    matrix.field = Field::integer;  // sums of duplicates
  }
  return result;
}

struct Summary {
  Integer lower = 0;  // bandwidths: the largest distances of an entry from the diagonal
  Integer upper = 0;
  Integer fullest = 0;  // entries in a row
  Integer empty = 0;    // rows
  Integer diagonal = 0;
};

Summary summary_of(const SparseMatrix& matrix) {
  Summary summary;
  Integer filled = 0;  // rows
  Integer entries = 0;
  for (std::size_t k = 0; k < matrix.values.size(); ++k) {
    summary.lower = std::max(summary.lower, matrix.row[k] - matrix.column[k]);
    summary.upper = std::max(summary.upper, matrix.column[k] - matrix.row[k]);
    summary.diagonal += matrix.row[k] == matrix.column[k] ? 1 : 0;
    const bool starts_row = k == 0 || matrix.row[k] != matrix.row[k - 1];
    filled += starts_row ? 1 : 0;
    entries = starts_row ? 1 : entries + 1;
    summary.fullest = std::max(summary.fullest, entries);
  }
  summary.empty = matrix.rows - filled;
  return summary;
}

std::string magnitudes(const std::vector<Complex>& values) {
  QuarnFloat least;
  QuarnFloat most;
  for (const Complex& value : values) {
    QuarnFloat size = value.im == 0 ? fabs(value.re) : tesk2mp::abs(value);
    least = least == 0 || (size != 0 && size < least) ? size : least;
    most = most < size ? std::move(size) : most;
  }
  return most == 0 ? "all entries are zero" : "magnitudes from " + brief(least) + " to " + brief(most);
}

/// Factors are of the matrix whose duplicates are summed, and only incomplete ones leave fill away.
void require_options_that_count(const SparseOptions& options) {
  const std::string& kind = options.factors.kind;
  if (kind.empty()) {
    if (options.factors.has_fill() || !options.factors.permutation.empty()) {
      throw bad_input("--fill, --drop and --permutation are for --factors");
    }
  } else if (!options.duplicates.empty() || !options.zeros.empty() || options.expand) {
    throw bad_input("--dup, --zero and --expand do not go with --factors: they are of the sum of all entries");
  } else if (options.factors.has_fill() && (kind == "lu" || kind == "cholesky")) {
    throw bad_input("--fill and --drop are for --factors ilu and ic: " + kind + " has all its fill");
  } else if (options.factors.fill >= 0 && !options.factors.drop.empty()) {
    throw bad_input("--fill and --drop exclude each other");
  }
}

void run_sparse(SparseOptions options) {
  require_options_that_count(options);
  options.duplicates = options.duplicates.empty() ? "sum" : options.duplicates;
  options.zeros = options.zeros.empty() ? "keep" : options.zeros;
  if (!options.factors.kind.empty()) {
    return deliver(factors_of(read_matrix(options.matrix, options.table), options.factors), options.output);
  }
  SparseMatrix given = read_matrix(options.matrix, options.table);
  if (options.expand) {
    given = expanded(given);
  }
  const Integer count = given.count();
  const Canonical canonical = canonical_form(std::move(given), duplicates_of(options), zeros_of(options));
  const SparseMatrix& matrix = canonical.matrix;
  const Summary summary = summary_of(matrix);

  Result result;
  const std::string kind = std::string(name_of(matrix.field)) + " " + name_of(matrix.symmetry);
  const std::string size = std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns);
  result.notes = {"Canonical form of " + matrix.source + ": " + kind + ", " + size + ", by " + canonical.routine,
                  counted(count, "entry", "entries") + " read, " + std::to_string(matrix.count()) +
                      " kept (duplicates: " + options.duplicates + ", zeros: " + options.zeros + "); " + digits_text(),
                  "bandwidths " + std::to_string(summary.lower) + " below and " + std::to_string(summary.upper) +
                      " above the diagonal, which holds " + counted(summary.diagonal, "entry", "entries"),
                  "at most " + counted(summary.fullest, "entry", "entries") + " in a row, " +
                      counted(summary.empty, "row", "rows") + " empty; " + magnitudes(matrix.values)};
  result.facts = {{"input", options.matrix},
                  {"routine", canonical.routine},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"field", name_of(matrix.field)},
                  {"symmetry", name_of(matrix.symmetry)},
                  {"rows", std::to_string(matrix.rows), true},
                  {"columns", std::to_string(matrix.columns), true},
                  {"entries_read", std::to_string(count), true},
                  {"entries", std::to_string(matrix.count()), true},
                  {"lower_bandwidth", std::to_string(summary.lower), true},
                  {"upper_bandwidth", std::to_string(summary.upper), true},
                  {"most_in_a_row", std::to_string(summary.fullest), true},
                  {"empty_rows", std::to_string(summary.empty), true},
                  {"on_the_diagonal", std::to_string(summary.diagonal), true}};
  add_matrix(result, matrix);
  result.picture = [&](const std::string& file) {
    const SparseMatrix whole = expanded(matrix);
    draw(Spy{matrix.source + ": " + size + ", " + counted(whole.count(), "entry", "entries"), matrix.rows,
             matrix.columns, whole.row, whole.column},
         file);
  };
  deliver(result, options.output);
}

constexpr const char* kSparseFooter =
    R"(MATRIX is a Matrix Market file, or a table of numbers, a row a line. Its entries come out
in canonical form: rows ascending, columns ascending within a row, no place twice.
Duplicates are merged before zeros are looked at. Of a symmetric matrix the lower
triangle is kept, unless --expand is given. The picture shows both triangles.

Of factors the result has U and L without its unit diagonal in one matrix, of cholesky and ic L
and the diagonal D of L D L^H, rows and columns in the order of the factors, which --permutation writes:
row i of the product is the row of the matrix that stands there, column i the column. The picture
shows the matrix and its factors side by side.

Examples:
  quarn sparse examples/west0067.mtx --plot west0067.svg
  quarn sparse examples/bcsstk01.mtx --factors cholesky --permutation order.csv --plot fill.svg
  quarn sparse matrix.mtx --dup fail --zero remove --output canonical.mtx
  quarn sparse - --expand --format json < examples/bcsstk01.mtx)";

void declare_sparse(Command& command) {
  auto options = std::make_shared<SparseOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  command.choice("--dup", "WHAT", options->duplicates, kDuplicates,
                 "entries of the same place: sum (default), remove all but the first, fail");
  command.choice("--zero", "WHAT", options->zeros, kZeros, "entries that are zero: keep (default), remove, fail");
  command.flag("--expand", options->expand, "give both triangles of a symmetric matrix");
  command.choice("--factors", "F", options->factors.kind, {"lu", "cholesky", "ilu", "ic"},
                 "give its factors instead: lu or cholesky with all their fill, in an order that fills little; ilu or "
                 "ic, incomplete ones");
  command.number("--fill", "K", options->factors.fill, 0, std::numeric_limits<Integer>::max(),
                 "ilu, ic: level of the fill that is kept (default 0)");
  command.text("--drop", "T", options->factors.drop,
               "ilu, ic: keep fill of any level that is larger than T times its row");
  command.text("--permutation", "FILE", options->factors.permutation,
               "write which rows and columns of the matrix those of the factors are (.csv, .json or .txt)");
  command.add_digits();
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  command.work = [options] { run_sparse(*options); };
}

const Registered kSparseCommand(80, "sparse", "bring a sparse matrix into canonical form", kSparseFooter,
                                declare_sparse);

}  // namespace

}  // namespace cli
