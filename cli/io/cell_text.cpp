#include "cli/io/cell_text.h"

#include <algorithm>
#include <cctype>

#include "cli/io/number_text.h"

namespace cli {

bool is_missing(std::string_view cell) {
  constexpr std::string_view kWords[] = {"", "na", "n/a", "nan", "null", "none", "-", "--"};
  std::string word(cell);
  std::transform(word.begin(), word.end(), word.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  return std::find(std::begin(kWords), std::end(kWords), word) != std::end(kWords);
}

bool has_decimal_comma(std::string_view cell) {
  return std::count(cell.begin(), cell.end(), ',') == 1 && cell.find('.') == std::string_view::npos &&
         is_number(with_decimal_point(std::string(cell)));
}

std::string with_decimal_point(std::string cell) {
  std::replace(cell.begin(), cell.end(), ',', '.');
  return cell;
}

std::string with_plain_exponent(std::string cell) {
  const std::size_t letter = cell.find_first_of("dD");
  if (letter == std::string::npos || is_number(cell)) {
    return cell;
  }
  std::string plain = cell;
  plain[letter] = 'e';
  return is_number(plain) ? plain : cell;
}

}  // namespace cli
