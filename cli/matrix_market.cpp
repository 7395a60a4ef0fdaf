#include "cli/matrix_market.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <sstream>

#include "cli/failure.h"
#include "cli/input.h"
#include "cli/number_table.h"

namespace cli {

namespace {

// The lines of a text, split at blanks; complaints name file and line.
class LineReader {
 public:
  explicit LineReader(const std::string& file)
      : source_(file == "-" ? "standard input" : file), stream_(read_input(file)) {}

  /// The words of the next line that is neither empty nor a comment; none at the end.
  std::vector<std::string> next() {
    std::string line;
    while (std::getline(stream_, line)) {
      ++number_;
      std::istringstream text(line);
      std::vector<std::string> words;
      for (std::string word; text >> word;) {
        words.push_back(word);
      }
      if (!words.empty() && (words[0][0] != '%' || number_ == 1)) {
        return words;
      }
    }
    ++number_;
    return {};
  }
  Failure complaint(const std::string& reason) const {
    return bad_input(source_ + ":" + std::to_string(number_) + ": " + reason);
  }
  const std::string& source() const { return source_; }

 private:
  std::string source_;
  std::istringstream stream_;
  long number_ = 0;
};

std::string lower(std::string word) {
  std::transform(word.begin(), word.end(), word.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  return word;
}

Integer whole_number(const LineReader& lines, const std::string& word, long long least, long long most,
                     const std::string& what) {
  constexpr std::size_t kLongest = 10;
  const bool digits = std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; });
  const long long number = digits && word.size() <= kLongest ? std::stoll(word) : -1;
  if (number < least || number > most) {
    throw lines.complaint(what + " '" + word + "' is not a whole number from " + std::to_string(least) + " to " +
                          std::to_string(most));
  }
  return Integer(number);
}

QuarnFloat number(const LineReader& lines, const std::string& word, bool whole) {
  if (!is_number(word) || (whole && word.find_first_of(".eE") != std::string::npos)) {
    throw lines.complaint("'" + word + "' is not a" + (whole ? " whole" : "") + " number");
  }
  QuarnFloat value = to_number(word);
  if (!isfinite(value)) {
    throw lines.complaint("'" + word + "' is beyond the range of numbers");
  }
  return value;
}

}  // namespace

SparseMatrix read_matrix(const std::string& file) {
  LineReader lines(file);
  std::vector<std::string> words = lines.next();
  std::transform(words.begin(), words.end(), words.begin(), lower);
  if (words.size() != 5 || words[0] != "%%matrixmarket" || words[1] != "matrix" || words[2] != "coordinate") {
    throw lines.complaint("the first line must be '%%MatrixMarket matrix coordinate FIELD SYMMETRY'");
  }
  const std::string field = words[3];
  if (field != "real" && field != "complex" && field != "integer" && field != "pattern") {
    throw lines.complaint("'" + field + "' is not real, complex, integer or pattern");
  }
  const std::vector<std::string> symmetries = {"general", "symmetric", "skew-symmetric", "hermitian"};
  const auto symmetry = std::find(symmetries.begin(), symmetries.end(), words[4]);
  if (symmetry == symmetries.end()) {
    throw lines.complaint("'" + words[4] + "' is not general, symmetric, skew-symmetric or hermitian");
  }
  SparseMatrix matrix;
  matrix.source = lines.source();
  matrix.complex = field == "complex";
  matrix.symmetry = Symmetry(symmetry - symmetries.begin());
  if (matrix.symmetry == Symmetry::hermitian && !matrix.complex) {
    throw lines.complaint("a hermitian matrix must be complex");
  }

  words = lines.next();
  if (words.size() != 3) {
    throw lines.complaint("the numbers of rows, columns and entries are missing");
  }
  constexpr Integer kMost = std::numeric_limits<Integer>::max() - 1;
  matrix.rows = whole_number(lines, words[0], 1, kMost, "the number of rows");
  matrix.columns = whole_number(lines, words[1], 1, kMost, "the number of columns");
  const Integer count = whole_number(lines, words[2], 0, kMost, "the number of entries");
  const bool triangle = matrix.symmetry != Symmetry::general;
  if (triangle && matrix.rows != matrix.columns) {
    throw lines.complaint("a " + *symmetry + " matrix must be square");
  }

  const std::size_t width = field == "pattern" ? 2 : matrix.complex ? 4 : 3;
  for (Integer k = 0; k < count; ++k) {
    words = lines.next();
    if (words.empty()) {
      throw lines.complaint("the file ends after " + std::to_string(k) + " of " + std::to_string(count) + " entries");
    }
    if (words.size() != width) {
      throw lines.complaint(std::to_string(words.size()) + " words where an entry has " + std::to_string(width));
    }
    const Integer row = whole_number(lines, words[0], 1, matrix.rows, "row");
    const Integer column = whole_number(lines, words[1], 1, matrix.columns, "column");
    if (triangle && (column > row || (column == row && matrix.symmetry == Symmetry::skew_symmetric))) {
      throw lines.complaint("row " + words[0] + ", column " + words[1] + " is outside the triangle that a " +
                            *symmetry + " matrix stores");
    }
    matrix.row.push_back(row);
    matrix.column.push_back(column);
    matrix.values.emplace_back(width == 2 ? QuarnFloat(1) : number(lines, words[2], field == "integer"),
                               width == 4 ? number(lines, words[3], false) : QuarnFloat());
  }
  if (!lines.next().empty()) {
    throw lines.complaint("more than the " + std::to_string(count) + " entries announced");
  }
  return matrix;
}

SparseMatrix expanded(const SparseMatrix& matrix) {
  SparseMatrix whole = matrix;
  whole.symmetry = Symmetry::general;
  if (matrix.symmetry == Symmetry::general) {
    return whole;
  }
  whole.row.clear();
  whole.column.clear();
  whole.values.clear();
  const auto add = [&](Integer row, Integer column, const Complex& value) {
    whole.row.push_back(row);
    whole.column.push_back(column);
    whole.values.push_back(value);
  };
  for (std::size_t k = 0; k < matrix.values.size(); ++k) {
    const Complex& value = matrix.values[k];
    add(matrix.row[k], matrix.column[k], value);
    if (matrix.row[k] != matrix.column[k]) {
      add(matrix.column[k], matrix.row[k],
          matrix.symmetry == Symmetry::hermitian        ? conj(value)
          : matrix.symmetry == Symmetry::skew_symmetric ? -value
                                                        : value);
    }
  }
  return whole;
}

}  // namespace cli
