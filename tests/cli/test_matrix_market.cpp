// The Matrix Market reader and writer: round trips of random matrices, and mutilated files.
#include <doctest/doctest.h>

#include <map>
#include <string>
#include <tuple>

#include "cli/commands/failure.h"
#include "cli/io/matrix_market.h"
#include "cli/io/number_text.h"
#include "support/digits.h"
#include "support/random.h"

namespace {

using cli::DenseMatrix;
using cli::Field;
using cli::SparseMatrix;
using cli::Symmetry;

constexpr Field kFields[] = {Field::real, Field::complex, Field::integer, Field::pattern};
constexpr Symmetry kSymmetries[] = {Symmetry::general, Symmetry::symmetric, Symmetry::skew_symmetric,
                                    Symmetry::hermitian};

bool possible(Field field, Symmetry symmetry) {
  return (symmetry != Symmetry::hermitian || field == Field::complex) &&
         (symmetry != Symmetry::skew_symmetric || field != Field::pattern);
}

QuarnFloat random_number(support::Random& random, Field field) {
  std::string text = random.once_in(2) ? "-" : "";
  text += random.digits(std::size_t(random.between(1, 60)));
  if (field != Field::integer) {
    text += "." + random.digits(9) + "e" + std::to_string(random.between(-400, 400));
  }
  return QuarnFloat(text);
}

SparseMatrix random_matrix(support::Random& random, Field field, Symmetry symmetry) {
  SparseMatrix matrix;
  matrix.field = field;
  matrix.symmetry = symmetry;
  matrix.rows = Integer(random.between(1, 12));
  matrix.columns = symmetry == Symmetry::general ? Integer(random.between(1, 12)) : matrix.rows;
  for (std::int64_t k = random.between(0, 30); k > 0; --k) {
    Integer row = Integer(random.between(1, matrix.rows));
    Integer column = Integer(random.between(1, matrix.columns));
    if (symmetry != Symmetry::general && column > row) {
      std::swap(row, column);
    }
    if (symmetry == Symmetry::skew_symmetric && row == column) {
      continue;
    }
    const bool real = field != Field::complex || (symmetry == Symmetry::hermitian && row == column);
    matrix.row.push_back(row);
    matrix.column.push_back(column);
    matrix.values.emplace_back(field == Field::pattern ? QuarnFloat(1) : random_number(random, field),
                               real ? QuarnFloat() : random_number(random, field));
  }
  return matrix;
}

bool same(const SparseMatrix& a, const SparseMatrix& b) {
  return std::tie(a.rows, a.columns, a.field, a.symmetry, a.row, a.column, a.values) ==
         std::tie(b.rows, b.columns, b.field, b.symmetry, b.row, b.column, b.values);
}

std::string complaint_about(const std::string& text) {
  try {
    cli::parse_matrix(text, "F");
    return "";
  } catch (const cli::Failure& failure) {
    CHECK(failure.status() == cli::ExitStatus::input);
    return failure.what();
  }
}

}  // namespace

TEST_CASE("every coordinate matrix comes back from its text") {
  support::Random random;
  const support::Digits digits(80);
  for (const Field field : kFields) {
    for (const Symmetry symmetry : kSymmetries) {
      for (int round = 0; possible(field, symmetry) && round < 40; ++round) {
        const SparseMatrix matrix = random_matrix(random, field, symmetry);
        const std::string text = cli::matrix_market_text(matrix, {"a comment", "% another"});
        CAPTURE(text);
        const SparseMatrix read = cli::parse_matrix(text, "F");
        CHECK(same(matrix, read));
        CHECK(cli::matrix_market_text(read, {"a comment", "% another"}) == text);
      }
    }
  }
}

TEST_CASE("a dense matrix has the sums of its entries, both triangles, and comes back from its text") {
  support::Random random;
  const support::Digits digits(80);
  for (const Field field : kFields) {
    for (const Symmetry symmetry : kSymmetries) {
      for (int round = 0; possible(field, symmetry) && round < 20; ++round) {
        const SparseMatrix matrix = random_matrix(random, field, symmetry);
        std::map<std::pair<Integer, Integer>, Complex> sums;
        for (std::size_t k = 0; k < matrix.values.size(); ++k) {
          const support::Digits exact(1000);
          const Integer i = matrix.row[k] - 1;
          const Integer j = matrix.column[k] - 1;
          const Complex value = matrix.values[k];
          sums[{i, j}] = sums[{i, j}] + value;
          if (symmetry != Symmetry::general && i != j) {
            const Complex mirrored = symmetry == Symmetry::symmetric        ? value
                                     : symmetry == Symmetry::skew_symmetric ? Complex(-value.re, -value.im)
                                                                            : Complex(value.re, -value.im);
            sums[{j, i}] = sums[{j, i}] + mirrored;
          }
        }
        const DenseMatrix whole = cli::dense(matrix);
        const std::vector<Complex> elements = cli::elements_of<Complex>(whole);
        REQUIRE(elements.size() == std::size_t(matrix.rows) * std::size_t(matrix.columns));
        for (Integer i = 0; i < matrix.rows; ++i) {
          for (Integer j = 0; j < matrix.columns; ++j) {
            CHECK(elements[std::size_t(i) + std::size_t(j) * std::size_t(matrix.rows)] == sums[{i, j}] + Complex());
          }
        }
        const DenseMatrix read = cli::parse_dense_matrix(cli::matrix_market_text(whole), "F");
        CHECK(read.elements == whole.elements);
        CHECK(cli::parse_dense_matrix(cli::matrix_market_text(matrix), "F").elements == whole.elements);
        CHECK(read.complex() == whole.complex());
      }
    }
  }
}

TEST_CASE("the array format goes column by column, of symmetric matrices from the diagonal down") {
  const struct {
    const char* kind;
    const char* values;
    const char* elements;  // of the 2 by 2 matrix, column by column
  } cases[] = {
      {"real general", "1\n2\n3\n4\n", "1 2 3 4"},
      {"integer symmetric", "1\n2\n4\n", "1 2 2 4"},
      {"real skew-symmetric", "2.5\n", "0 2.5 -2.5 0"},
      {"complex hermitian", "1 0\n2 3\n4 -0\n", "1 2+3i 2-3i 4"},
      {"complex symmetric", "1 1\n2 3\n4 0\n", "1+1i 2+3i 2+3i 4"},
  };
  for (const auto& each : cases) {
    CAPTURE(each.kind);
    const DenseMatrix matrix =
        cli::parse_dense_matrix(std::string("%%MatrixMarket matrix array ") + each.kind + "\n2 2\n" + each.values, "F");
    std::string text;
    for (const Complex& value : cli::elements_of<Complex>(matrix)) {
      text += (text.empty() ? "" : " ") + cli::complex_text(value);
    }
    CHECK(text == each.elements);
  }
}

TEST_CASE("a malformed file is refused with its line and the reason") {
  const std::string real = "%%MatrixMarket matrix coordinate real general\n";
  const std::string array = "%%MatrixMarket matrix array real general\n";
  const struct {
    std::string text;
    int line;
    const char* reason;
  } cases[] = {
      {"", 1, "the first line must be '%%MatrixMarket matrix FORMAT FIELD SYMMETRY'"},
      {"\n" + real, 1, "the first line must be '%%MatrixMarket matrix FORMAT FIELD SYMMETRY'"},
      {"%%MatrixMarket vector coordinate real general\n", 1,
       "the first line must be '%%MatrixMarket matrix FORMAT FIELD SYMMETRY'"},
      {"%%MatrixMarket matrix sparse real general\n", 1, "'sparse' is not coordinate or array"},
      {"%%MatrixMarket matrix array double general\n", 1, "'double' is not real, complex, integer or pattern"},
      {"%%MatrixMarket matrix array real odd\n", 1, "'odd' is not general, symmetric, skew-symmetric or hermitian"},
      {"%%MatrixMarket matrix array integer hermitian\n", 1, "a hermitian matrix must be complex"},
      {"%%MatrixMarket matrix array pattern general\n", 1, "a pattern cannot be an array"},
      {"%%MatrixMarket matrix coordinate pattern skew-symmetric\n", 1, "a pattern cannot be skew-symmetric"},
      {real, 2, "here stand the numbers of rows, columns and entries"},
      {real + "% c\n\n2 2\n", 4, "here stand the numbers of rows, columns and entries"},
      {array + "2 2 4\n", 2, "here stand the numbers of rows and columns"},
      {real + "0 2 1\n", 2, "the number of rows '0' is not a whole number from 1 to 2147483646"},
      {real + "2 2 -1\n", 2, "the number of entries '-1' is not a whole number from 0 to 2147483646"},
      {real + "2 99999999999999999999 1\n", 2,
       "the number of columns '99999999999999999999' is not a whole number from 1 to 2147483646"},
      {array + "65536 65536\n", 2, "more elements than a 32-bit count can hold"},
      {"%%MatrixMarket matrix array real symmetric\n2 3\n", 2, "a symmetric matrix must be square"},
      {real + "2 2 2\n1 1 1\n", 4, "the file ends after 1 of 2 entries"},
      {real + "2 2 1\n1 1 1\n2 2 2\n", 4, "more than the 1 entries announced"},
      {array + "1 2\n1\n2\n3\n", 5, "more than the 2 entries announced"},
      {array + "1 2\n1 2\n", 3, "2 words where an entry has 1"},
      {real + "2 2 1\n1 1\n", 3, "2 words where an entry has 3"},
      {real + "2 2 1\n3 1 1\n", 3, "row '3' is not a whole number from 1 to 2"},
      {real + "2 2 1\n1 1.0 1\n", 3, "column '1.0' is not a whole number from 1 to 2"},
      {real + "2 2 1\n1 1 1d5\n", 3, "'1d5' is not a number"},
      {real + "2 2 1\n1 1 nan\n", 3, "'nan' is not a number"},
      {real + "2 2 1\n1 1 1e9999999999\n", 3, "'1e9999999999' is beyond the range of numbers"},
      {real + "2 2 1\n1 1 1e-9999999999\n", 3, "'1e-9999999999' is beyond the range of numbers"},
      {"%%MatrixMarket matrix coordinate integer general\n2 2 1\n1 1 1e2\n", 3, "'1e2' is not a whole number"},
      {"%%MatrixMarket matrix coordinate real symmetric\n2 2 1\n1 2 1\n", 3,
       "row 1, column 2 is outside the triangle that a symmetric matrix stores (--mirror takes the upper one)"},
      {"%%MatrixMarket matrix coordinate real skew-symmetric\n2 2 1\n1 1 1\n", 3,
       "row 1, column 1 is outside the triangle that a skew-symmetric matrix stores"},
      {"%%MatrixMarket matrix coordinate complex hermitian\n2 2 1\n2 2 1 1\n", 3,
       "row 2, column 2: the diagonal of a hermitian matrix is real"},
  };
  for (const auto& [text, line, reason] : cases) {
    CHECK(complaint_about(text) == "quarn: F:" + std::to_string(line) + ": " + reason + "\n");
  }
}

TEST_CASE("a mutilated file is refused or read as a matrix that its own text gives back") {
  support::Random random;
  const support::Digits digits(80);
  const std::string pieces[] = {"%", "\n", " ", "-", "0", "9", ".", "e", "1 1 1\n", "general", "\t", "\r\n", "i"};
  int refused = 0;
  constexpr int kRounds = 3000;
  for (int round = 0; round < kRounds; ++round) {
    const Field field = kFields[random.below(4)];
    const Symmetry symmetry = possible(field, kSymmetries[random.below(4)]) ? Symmetry::general : Symmetry::symmetric;
    const SparseMatrix matrix = random_matrix(random, field, symmetry);
    std::string text =
        random.once_in(3) ? cli::matrix_market_text(cli::dense(matrix)) : cli::matrix_market_text(matrix);
    for (std::int64_t change = random.between(1, 3); change > 0; --change) {
      const std::size_t at = random.below(text.size());
      text.erase(at, random.below(3));
      text.insert(std::min(at, text.size()), pieces[random.below(std::size(pieces))]);
    }
    CAPTURE(text);
    const std::string complaint = complaint_about(text);
    if (!complaint.empty()) {
      ++refused;
      CHECK(complaint.starts_with("quarn: F:"));
      continue;
    }
    const SparseMatrix read = cli::parse_matrix(text, "F");
    CHECK(same(read, cli::parse_matrix(cli::matrix_market_text(read), "F")));
  }
  CHECK(refused > kRounds / 4);
  CHECK(refused < kRounds);
}
