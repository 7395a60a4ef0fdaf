#include "cli/io/cell_text.h"

#include <algorithm>
#include <cctype>

#include "cli/io/dates.h"
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

namespace {

std::string with_all(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

}  // namespace

std::string with_plain_signs(std::string cell) {
  if (is_number(cell)) {
    return cell;
  }
  constexpr std::string_view kMinus = "\u2212";
  std::string plain = cell.find(kMinus) == std::string::npos ? cell : with_all(cell, kMinus, "-");
  if (const std::size_t letter = plain.find_first_of("dD"); letter != std::string::npos) {
    plain[letter] = 'e';
  }
  return is_complex_number(plain) || has_decimal_comma(plain) ? plain : cell;
}

bool has_groups(std::string_view cell) {
  std::string plain(cell);
  for (const std::string_view blank : {"\u00A0", "\u202F", "\u2009"}) {
    plain = with_all(std::move(plain), blank, " ");
  }
  plain = with_plain_signs(plain);
  if (plain.empty() || is_complex_number(plain) || has_decimal_comma(plain) || parse_moment(plain)) {
    return false;
  }
  const std::size_t first = std::string_view("+-").find(plain[0]) == std::string_view::npos ? 0 : 1;
  const std::size_t digits = std::size_t(std::count_if(plain.begin(), plain.end(), is_digit));
  return first < plain.size() && is_digit(plain[first]) && digits > 1 &&
         plain.find_first_not_of("0123456789.,' ", first) == std::string::npos;
}

}  // namespace cli
