#include "src/dense/tuning.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tesk2mp/dense.h"

namespace {

constexpr int kRows = 46;
constexpr int kCells = 8;

/// The families of a chapter: a routine's two selector letters, and the row it is tuned by. Routines that only apply
/// what another one made share its row.
struct Family {
  char letters[3];
  int row;
};

constexpr Family kFamilies7[] = {{"AD", 1},  {"AJ", 2},  {"AR", 3},  {"AW", 4},  {"BD", 5},  {"BR", 6},
                                 {"FD", 7},  {"FJ", 8},  {"FR", 9},  {"FW", 10}, {"HD", 11}, {"HR", 12},
                                 {"MD", 13}, {"MR", 14}, {"NR", 15}, {"TJ", 16}, {"TW", 17}};

constexpr Family kFamilies8[] = {
    {"AE", 18}, {"AF", 19}, {"AG", 20}, {"AH", 21}, {"AJ", 22}, {"AK", 23}, {"AS", 24}, {"AT", 25}, {"AU", 26},
    {"AV", 27}, {"AW", 28}, {"AX", 29}, {"FE", 30}, {"FF", 31}, {"FG", 31}, {"FS", 32}, {"FT", 33}, {"FU", 33},
    {"KE", 34}, {"KF", 35}, {"KG", 35}, {"KS", 36}, {"KT", 37}, {"KU", 37}, {"NE", 38}, {"NF", 39}, {"NG", 39},
    {"NS", 40}, {"NT", 41}, {"NU", 41}, {"SE", 42}, {"SS", 43}, {"JE", 44}, {"JS", 44}, {"PE", 45}, {"PS", 46}};

using Row = std::array<Integer, kCells>;

// Rows are numbered from 1. Block size 1 means unblocked; the last two rows serve the QR algorithm, where one shift
// and small blocks of one mean the double-shift algorithm throughout.
std::array<Row, kRows> table = [] {
  std::array<Row, kRows> initial{};
  for (int row = 1; row <= kRows; ++row) {
    initial[std::size_t(row - 1)] = row <= 44 ? Row{1, 0, 0, 0, 0, 0, 0, 0} : Row{0, 0, 0, 1, 0, 0, 0, 1};
  }
  return initial;
}();

template <std::size_t N>
int row_of(const Family (&families)[N], std::string_view letters) {
  const auto* const found = std::find_if(std::begin(families), std::end(families),
                                         [&](const Family& family) { return letters == family.letters; });
  return found == std::end(families) ? 0 : found->row;
}

/// The row of a routine named chapter first ("F07ADF") or letters first ("ADFF07").
int row_of(std::string_view name) {
  if (name.size() < 6) {
    return 0;
  }
  const bool chapter_first = name[2] == '7' || name[2] == '8';
  const std::string_view chapter = name.substr(chapter_first ? 0 : 3, 3);
  const std::string_view letters = name.substr(chapter_first ? 3 : 0, 2);
  if (chapter == "F07") {
    return row_of(kFamilies7, letters);
  }
  return chapter == "F08" ? row_of(kFamilies8, letters) : 0;
}

}  // namespace

extern "C" void QuarnMP_f07zaz_(Integer ispec, const char* name, Integer* ival, Integer rwflag, int name_length) {
  if (ispec < 1 || ispec > kCells) {
    *ival = -1;
    return;
  }
  const int row = row_of(std::string_view(name, std::size_t(std::max(name_length, 0))));
  if (row == 0) {
    *ival = -2;
    return;
  }
  Integer& cell = table[std::size_t(row - 1)][std::size_t(ispec - 1)];
  if (rwflag == 0) {
    *ival = cell;
  } else {
    cell = *ival;
  }
}

Integer tesk::tuning_value(TuningKind kind, const char* routine) noexcept {
  Integer value = 0;
  QuarnMP_f07zaz_(kind, routine, &value, 0, 6);
  return std::max<Integer>(value, 0);
}
