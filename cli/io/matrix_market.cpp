#include "cli/io/matrix_market.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <limits>
#include <string_view>

#include "cli/commands/failure.h"
#include "cli/io/number_text.h"
#include "cli/io/one_line.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "quarn/functions.h"
#include "tesk2mp/error.hpp"
#include "tesk2mp/sparse.hpp"

namespace cli {

namespace {

constexpr std::string_view kBanner = "%%matrixmarket";
constexpr std::array<const char*, 4> kFields = {"real", "complex", "integer", "pattern"};
constexpr std::array<const char*, 4> kSymmetries = {"general", "symmetric", "skew-symmetric", "hermitian"};
constexpr Integer kMostEntries = std::numeric_limits<Integer>::max() - 1;

std::string lower(std::string_view word) {
  std::string text(word);
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  return text;
}

using Words = std::vector<std::string_view>;

// The lines of a text, split at blanks; complaints name source and line.
class LineReader {
 public:
  LineReader(std::string_view text, const std::string& source) : rest_(text), source_(source) {}

  /// The words of the first line; afterwards those of the next line that is neither empty nor a comment; none at the
  /// end.
  const Words& next() {
    while (!rest_.empty()) {
      split(take_line());
      if (number_ == 1 || (!words_.empty() && words_[0][0] != '%')) {
        return words_;
      }
    }
    words_.clear();
    ++number_;
    return words_;
  }
  Failure complaint(const std::string& reason) const {
    return bad_input(source_ + ":" + std::to_string(number_) + ": " + reason);
  }

 private:
  std::string_view take_line() {
    ++number_;
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    return line;
  }
  void split(std::string_view line) {
    constexpr std::string_view kBlanks = " \t\r\f\v";
    words_.clear();
    for (std::size_t at = 0; (at = line.find_first_not_of(kBlanks, at)) != std::string_view::npos;) {
      const std::size_t end = std::min(line.find_first_of(kBlanks, at), line.size());
      words_.push_back(line.substr(at, end - at));
      at = end;
    }
  }

  std::string_view rest_;
  std::string source_;
  Words words_;
  long number_ = 0;
};

Integer whole_number(const LineReader& lines, std::string_view word, Integer least, Integer most, const char* what) {
  long long number = -1;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size() || number < least || number > most) {
    throw lines.complaint(std::string(what) + " '" + std::string(word) + "' is not a whole number from " +
                          std::to_string(least) + " to " + std::to_string(most));
  }
  return Integer(number);
}

QuarnFloat number(const LineReader& lines, std::string_view word, bool whole) {
  if (!is_number(word) || (whole && word.find_first_of(".eE") != std::string_view::npos)) {
    throw lines.complaint(shown_text(word) + " is not a" + (whole ? " whole" : "") + " number");
  }
  QuarnFloat value = to_number(std::string(word));
  if (const char* reason = why_unfit(word, value)) {
    throw lines.complaint(shown_text(word) + " " + reason);
  }
  return value;
}

// Which of the names the word is; names are told apart in a complaint.
template <class T>
T choice(const LineReader& lines, std::string_view word, const std::array<const char*, 4>& names) {
  const auto found = std::find(names.begin(), names.end(), lower(word));
  if (found == names.end()) {
    throw lines.complaint("'" + std::string(word) + "' is not " + names[0] + ", " + names[1] + ", " + names[2] +
                          " or " + names[3]);
  }
  return T(found - names.begin());
}

void add_entry(SparseMatrix& matrix, Integer row, Integer column, Complex value) {
  matrix.row.push_back(row);
  matrix.column.push_back(column);
  matrix.values.push_back(std::move(value));
}

// What stands at the mirror image of an entry's place.
Complex mirrored(const Complex& value, Symmetry symmetry) {
  return symmetry == Symmetry::hermitian ? conj(value) : symmetry == Symmetry::skew_symmetric ? -value : value;
}

void set(RealMatrix& matrix, Integer row, Integer column, const Complex& value) {
  matrix(std::size_t(row) - 1, std::size_t(column) - 1) = value.re;
}
void set(ComplexMatrix& matrix, Integer row, Integer column, const Complex& value) {
  matrix(std::size_t(row) - 1, std::size_t(column) - 1) = value;
}

void require_dense_memory(const SparseMatrix& matrix) {
  // Elements that are read with all their digits have few, and most are zeros.
  constexpr int kFewDigits = 40;
  const tesk2mp::Digits scope(std::min(QuarnDigits(), kFewDigits));
  require_memory((matrix.complex() ? 2 : 1) * double(matrix.rows) * double(matrix.columns),
                 "a dense matrix of " + std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns));
}

// All elements of both triangles; entries of the same place add up.
template <class T, class Part>
tesk2mp::Matrix<T> sums_of_entries(const SparseMatrix& entries, const Part& part) {
  tesk2mp::SparseMatrix<T> sums(std::size_t(std::max(entries.rows, entries.columns)));
  for (std::size_t k = 0; k < entries.values.size(); ++k) {
    sums.add(std::size_t(entries.row[k]) - 1, std::size_t(entries.column[k]) - 1, part(entries.values[k]));
  }
  sums.canonicalise(tesk2mp::Duplicates::sum, tesk2mp::Zeros::keep);
  tesk2mp::Matrix<T> whole(std::size_t(entries.rows), std::size_t(entries.columns));
  for (std::size_t k = 0; k < sums.entries(); ++k) {
    whole(sums.row(k), sums.column(k)) = sums.value(k);
  }
  return whole;
}

// Reads one text into one matrix: banner, sizes, entries.
class Parser {
 public:
  Parser(const std::string& text, const std::string& source, bool upper) : lines_(text, source), upper_(upper) {
    matrix_.source = source;
  }

  SparseMatrix parse() {
    read_head();
    Progress progress("reading numbers", double(count_));
    if (array_) {
      read_array([&](Integer row, Integer column) {
        add(row, column, value(entry(0), 0));
        progress.advance();
      });
    } else {
      read_coordinates(progress);
    }
    expect_end();
    return std::move(matrix_);
  }

  DenseMatrix parse_dense() {
    read_head();
    if (!array_) {
      Progress progress("reading numbers", double(count_));
      read_coordinates(progress);
      expect_end();
      return dense(matrix_);
    }
    if (matrix_.complex()) {
      return {matrix_.source, elements<Complex>()};
    }
    return {matrix_.source, elements<QuarnFloat>()};
  }

 private:
  void read_head() {
    read_banner();
    read_sizes();
  }

  void expect_end() {
    if (!lines_.next().empty()) {
      throw lines_.complaint("more than the " + std::to_string(count_) + " entries announced");
    }
  }

  // Those of an array, straight into their places and their mirror images.
  template <class T>
  tesk2mp::Matrix<T> elements() {
    require_dense_memory(matrix_);
    Progress progress("reading numbers", double(count_));
    tesk2mp::Matrix<T> whole(std::size_t(matrix_.rows), std::size_t(matrix_.columns));
    read_array([&](Integer row, Integer column) {
      const Complex element = value(entry(0), 0);
      check_diagonal(row, column, element);
      set(whole, row, column, element);
      if (matrix_.symmetry != Symmetry::general && row != column) {
        set(whole, column, row, mirrored(element, matrix_.symmetry));
      }
      progress.advance();
    });
    expect_end();
    return whole;
  }

  void read_banner() {
    const Words& words = lines_.next();
    if (words.size() != 5 || lower(words[0]) != kBanner || lower(words[1]) != "matrix") {
      throw lines_.complaint("the first line must be '%%MatrixMarket matrix FORMAT FIELD SYMMETRY'");
    }
    array_ = lower(words[2]) == "array";
    if (!array_ && lower(words[2]) != "coordinate") {
      throw lines_.complaint("'" + std::string(words[2]) + "' is not coordinate or array");
    }
    matrix_.field = choice<Field>(lines_, words[3], kFields);
    matrix_.symmetry = choice<Symmetry>(lines_, words[4], kSymmetries);
    if (matrix_.symmetry == Symmetry::hermitian && !matrix_.complex()) {
      throw lines_.complaint("a hermitian matrix must be complex");
    }
    if (matrix_.field == Field::pattern && (array_ || matrix_.symmetry == Symmetry::skew_symmetric)) {
      throw lines_.complaint(std::string("a pattern cannot be ") + (array_ ? "an array" : "skew-symmetric"));
    }
  }

  void read_sizes() {
    const Words& words = lines_.next();
    if (words.size() != (array_ ? 2U : 3U)) {
      throw lines_.complaint(std::string("here stand the numbers of rows") +
                             (array_ ? " and columns" : ", columns and entries"));
    }
    matrix_.rows = whole_number(lines_, words[0], 1, kMostEntries, "the number of rows");
    matrix_.columns = whole_number(lines_, words[1], 1, kMostEntries, "the number of columns");
    if (matrix_.symmetry != Symmetry::general && matrix_.rows != matrix_.columns) {
      throw lines_.complaint("a " + std::string(name_of(matrix_.symmetry)) + " matrix must be square");
    }
    count_ = array_ ? array_size() : whole_number(lines_, words[2], 0, kMostEntries, "the number of entries");
    if (count_ > kMostEntries) {
      throw lines_.complaint("more elements than a 32-bit count can hold");
    }
  }

  long long array_size() const {
    const long long n = matrix_.rows;
    const bool strict = matrix_.symmetry == Symmetry::skew_symmetric;
    return matrix_.symmetry == Symmetry::general ? n * matrix_.columns : strict ? n * (n - 1) / 2 : n * (n + 1) / 2;
  }

  // The values of the next entry's line follow `leading` words.
  const Words& entry(std::size_t leading) {
    const Words& words = lines_.next();
    if (words.empty()) {
      throw lines_.complaint("the file ends after " + std::to_string(read_) + " of " + std::to_string(count_) +
                             " entries");
    }
    const std::size_t width = leading + (matrix_.field == Field::pattern ? 0 : matrix_.complex() ? 2 : 1);
    if (words.size() != width) {
      throw lines_.complaint(std::to_string(words.size()) + (words.size() == 1 ? " word" : " words") +
                             " where an entry has " + std::to_string(width));
    }
    ++read_;
    return words;
  }

  Complex value(const Words& words, std::size_t leading) {
    if (matrix_.field == Field::pattern) {
      return 1.0;
    }
    return {part(words[leading], matrix_.field == Field::integer),
            matrix_.complex() ? part(words[leading + 1], false) : QuarnFloat()};
  }

  QuarnFloat part(std::string_view word, bool whole) {
    QuarnFloat value = number(lines_, word, whole);
    if (value != 0) {
      const long first = ilogb(value);
      first_place_ = std::max(first_place_, first);
      last_place_ = std::min(last_place_, first - long(word.size()));
    }
    return value;
  }

  // Entries of one place add up, in numbers that may be too short for the sum.
  void check_sums() const {
    constexpr long kGuard = 20;  // more than the digits of a count
    if (first_place_ - last_place_ + kGuard <= QuarnDigits() || QuarnDigits() < kMostDigits) {
      return;
    }
    std::vector<std::pair<Integer, Integer>> places(matrix_.row.size());
    std::transform(matrix_.row.begin(), matrix_.row.end(), matrix_.column.begin(), places.begin(),
                   [](Integer row, Integer column) { return std::pair(row, column); });
    std::sort(places.begin(), places.end());
    if (const auto twice = std::adjacent_find(places.begin(), places.end()); twice != places.end()) {
      throw bad_input(matrix_.source + ": row " + std::to_string(twice->first) + ", column " +
                      std::to_string(twice->second) + " has several entries, in a file whose numbers cannot be added" +
                      " exactly: their digits are more than " + std::to_string(kMostDigits) + " places apart");
    }
  }

  void check_diagonal(Integer row, Integer column, const Complex& value) const {
    if (matrix_.symmetry == Symmetry::hermitian && row == column && value.im != 0) {
      throw lines_.complaint("row " + std::to_string(row) + ", column " + std::to_string(column) +
                             ": the diagonal of a hermitian matrix is real");
    }
  }

  void add(Integer row, Integer column, Complex value) {
    check_diagonal(row, column, value);
    add_entry(matrix_, row, column, std::move(value));
  }

  void read_coordinates(Progress& progress) {
    for (long long k = 0; k < count_; ++k) {
      const Words& words = entry(2);
      const Integer row = whole_number(lines_, words[0], 1, matrix_.rows, "row");
      const Integer column = whole_number(lines_, words[1], 1, matrix_.columns, "column");
      if (matrix_.symmetry != Symmetry::general && stands_above(row, column)) {
        add(column, row, mirrored(value(words, 2), matrix_.symmetry));
      } else {
        add(row, column, value(words, 2));
      }
      progress.advance();
    }
    check_sums();
  }

  // Of a matrix that stores one triangle: whether the place is in the upper one, which has to be allowed.
  bool stands_above(Integer row, Integer column) {
    const bool diagonal_stored = matrix_.symmetry != Symmetry::skew_symmetric;
    if ((column > row && !upper_) || (column == row && !diagonal_stored)) {
      throw lines_.complaint("row " + std::to_string(row) + ", column " + std::to_string(column) +
                             " is outside the triangle that a " + name_of(matrix_.symmetry) + " matrix stores" +
                             (column > row ? " (--mirror takes the upper one)" : ""));
    }
    has_lower_ = has_lower_ || column < row;
    has_upper_ = has_upper_ || column > row;
    if (has_lower_ && has_upper_) {
      throw lines_.complaint("row " + std::to_string(row) + ", column " + std::to_string(column) +
                             " is in the other triangle than the entries before; a " + name_of(matrix_.symmetry) +
                             " matrix stores one of them");
    }
    return column > row;
  }

  template <class Take>
  void read_array(const Take& take) {
    for (Integer column = 1; column <= matrix_.columns; ++column) {
      const Integer first = matrix_.symmetry == Symmetry::general          ? 1
                            : matrix_.symmetry == Symmetry::skew_symmetric ? column + 1
                                                                           : column;
      for (Integer row = first; row <= matrix_.rows; ++row) {
        take(row, column);
      }
    }
  }

  LineReader lines_;
  bool upper_;
  bool has_upper_ = false;
  bool has_lower_ = false;
  SparseMatrix matrix_;
  bool array_ = false;
  long long count_ = 0;
  long long read_ = 0;  // entries
  // The decimal places that digits of numbers stand in, those of the largest number first.
  long first_place_ = std::numeric_limits<long>::min() / 2;
  long last_place_ = std::numeric_limits<long>::max() / 2;
};

std::string heading(const char* format, Field field, Symmetry symmetry, const std::vector<std::string>& comments) {
  std::string text =
      std::string("%%MatrixMarket matrix ") + format + " " + name_of(field) + " " + name_of(symmetry) + "\n";
  for (const std::string& comment : comments) {
    text += "% " + one_line(comment) + "\n";
  }
  return text;
}

std::string value_text(const Complex& value, Field field) {
  switch (field) {
    case Field::pattern:
      return "";
    case Field::integer:
      return whole_number_text(value.re);
    case Field::complex:
      return value.re.to_string() + " " + value.im.to_string();
    case Field::real:
      break;
  }
  return value.re.to_string();
}

}  // namespace

const char* name_of(Field field) { return kFields.at(std::size_t(field)); }
const char* name_of(Symmetry symmetry) { return kSymmetries.at(std::size_t(symmetry)); }

bool is_matrix_market(const std::string& text) { return lower(text.substr(0, kBanner.size())) == kBanner; }

SparseMatrix parse_matrix(const std::string& text, const std::string& source, bool upper) {
  return Parser(text, source, upper).parse();
}

DenseMatrix parse_dense_matrix(const std::string& text, const std::string& source, bool upper) {
  return Parser(text, source, upper).parse_dense();
}

SparseMatrix expanded(const SparseMatrix& matrix) {
  SparseMatrix whole = matrix;
  if (matrix.symmetry == Symmetry::general) {
    return whole;
  }
  whole.symmetry = Symmetry::general;
  whole.row.clear();
  whole.column.clear();
  whole.values.clear();
  for (std::size_t k = 0; k < matrix.values.size(); ++k) {
    const Complex& value = matrix.values[k];
    add_entry(whole, matrix.row[k], matrix.column[k], value);
    if (matrix.row[k] != matrix.column[k]) {
      add_entry(whole, matrix.column[k], matrix.row[k], mirrored(value, matrix.symmetry));
    }
  }
  return whole;
}

DenseMatrix dense(const SparseMatrix& matrix) {
  require_dense_memory(matrix);
  const SparseMatrix entries = expanded(matrix);
  if (matrix.complex()) {
    return {matrix.source, sums_of_entries<Complex>(entries, [](const Complex& value) { return value; })};
  }
  return {matrix.source, sums_of_entries<QuarnFloat>(entries, [](const Complex& value) { return value.re; })};
}

std::string matrix_market_text(const SparseMatrix& matrix, const std::vector<std::string>& comments) {
  std::string text = heading("coordinate", matrix.field, matrix.symmetry, comments) + std::to_string(matrix.rows) +
                     " " + std::to_string(matrix.columns) + " " + std::to_string(matrix.count()) + "\n";
  for (std::size_t k = 0; k < matrix.values.size(); ++k) {
    text += std::to_string(matrix.row[k]) + " " + std::to_string(matrix.column[k]) +
            (matrix.field == Field::pattern ? "" : " ") + value_text(matrix.values[k], matrix.field) + "\n";
  }
  return text;
}

std::string matrix_market_text(const DenseMatrix& matrix, const std::vector<std::string>& comments) {
  const Field field = matrix.complex() ? Field::complex : Field::real;
  std::string text = heading("array", field, Symmetry::general, comments) + std::to_string(matrix.rows()) + " " +
                     std::to_string(matrix.columns()) + "\n";
  std::visit(
      [&](const auto& a) {
        std::for_each(a.data(), a.data() + a.rows() * a.columns(),
                      [&](const auto& value) { text += value_text(value, field) + "\n"; });
      },
      matrix.elements);
  return text;
}

}  // namespace cli
