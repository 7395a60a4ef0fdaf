// A sub-command's result and its written forms.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "quarn/quarnfloat.h"

namespace cli {

enum class Format { text, csv, json, mtx };

/// A column of a result, as text: no number passes through a double.
struct ResultColumn {
  std::string name;
  std::vector<std::string> cells;
  bool counts = false;  // whole numbers, which JSON writes without quotes
  bool words = false;   // the text table sets them to the left
};

/// A single value beside the columns, which only JSON shows.
struct Fact {
  std::string name;
  std::string value;
  bool count = false;  // a whole number or "true", which JSON writes without quotes
};

struct Result {
  std::vector<std::string> notes;   // what it is: lines above the text table
  std::vector<ResultColumn> table;  // for people: aligned and rounded
  std::vector<Fact> facts;
  std::vector<ResultColumn> data;              // for programs: every digit
  std::function<std::string()> matrix_market;  // of results that are matrices
  std::function<void(const std::string& file)> picture;
};

/// Text: notes after "# ", then the table. CSV: a line of names, then the data. JSON: one object of the facts and, as
/// arrays of decimal texts, the data. Matrix Market: what the result gives.
std::string render(const Result& result, Format format);

/// The values' exact decimal texts.
std::vector<std::string> exact_cells(const std::vector<QuarnFloat>& values);

/// How the numbers of a column are written: fixed-point where that stays near the point, the largest with so many
/// significant digits and the others to the same place, else in scientific form. A number that would have fewer than
/// `least` digits at that place has as many, in scientific form when it is far below the point: nothing but zero is
/// shown as zero.
class NumberFormat {
 public:
  NumberFormat(const QuarnFloat& largest, int significant, int least);
  NumberFormat(const QuarnFloat& largest, int significant) : NumberFormat(largest, significant, significant) {}
  std::string operator()(const QuarnFloat& value) const;

 private:
  std::string smaller(const QuarnFloat& value) const;

  int significant_;
  int least_;
  bool fixed_;
  long decimals_;
};

/// The shortest form of a number for people that NumberFormat is asked for.
inline constexpr int kBriefDigits = 4;

/// Blanks behind the numbers in fixed-point form, so that their points stand in line at the right edge.
void align_points(std::vector<std::string>& cells);

/// A column for people beside others of the same largest magnitude, to all working digits, points in line.
ResultColumn aligned_column(const std::string& name, const std::vector<QuarnFloat>& values, const QuarnFloat& largest);

/// The values to a few digits.
std::vector<std::string> brief_cells(const std::vector<QuarnFloat>& values);

/// The working precision for notes: "20 digits".
std::string digits_text();

/// The same with the routine, and what that makes of the digits: a classic entry carries its constants as doubles.
std::string precision_note(const std::string& routine, bool classic);

/// "1 entry", "2 entries"
std::string counted(Integer number, const char* one, const char* many);

/// The largest magnitude; zero for no values.
QuarnFloat largest_magnitude(const std::vector<QuarnFloat>& values);

/// A number for running text, such as 11.12.
std::string brief(const QuarnFloat& value);

/// The power of ten of the leading digit of a finite number that is not zero.
long decimal_exponent(const QuarnFloat& value);

}  // namespace cli
