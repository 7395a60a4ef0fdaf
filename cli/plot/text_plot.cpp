#include "cli/plot/text_plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <utility>

#include "cli/io/matrix_input.h"
#include "cli/io/output.h"
#include "cli/plot/points.h"

namespace cli {

namespace {

constexpr std::size_t kLabel = 11;  // characters left of the diagram
constexpr std::size_t kColumns = 66;
constexpr std::size_t kRows = 15;

/// Dots, several to a character where that is possible.
class Canvas {
 public:
  Canvas(std::size_t columns, std::size_t rows, bool braille)
      : wide_(braille ? 2 : 1), high_(braille ? 4 : 1), columns_(columns), rows_(rows), cells_(columns * rows, 0) {}

  std::size_t width() const { return columns_ * wide_; }
  std::size_t height() const { return rows_ * high_; }

  /// Rows from the bottom.
  void set(std::size_t column, std::size_t row_from_below) {
    const std::size_t row = height() - 1 - row_from_below;
    // Dots of a Braille character in the order of its code.
    constexpr unsigned kDots[4][2] = {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}};
    cells_[row / high_ * columns_ + column / wide_] |= kDots[row % high_][column % wide_];
  }

  /// Bresenham's line.
  void join(std::pair<std::size_t, std::size_t> from, std::pair<std::size_t, std::size_t> to) {
    const auto step = [](std::size_t a, std::size_t b) { return a < b ? 1 : -1; };
    const auto size = [](std::size_t a, std::size_t b) { return std::ptrdiff_t(std::max(a, b) - std::min(a, b)); };
    const std::ptrdiff_t dx = size(from.first, to.first);
    const std::ptrdiff_t dy = size(from.second, to.second);
    std::ptrdiff_t error = dx - dy;
    for (;;) {
      set(from.first, from.second);
      if (from == to) {
        return;
      }
      const std::ptrdiff_t twice = 2 * error;
      if (twice > -dy) {
        error -= dy;
        from.first += std::size_t(step(from.first, to.first));
      }
      if (twice < dx) {
        error += dx;
        from.second += std::size_t(step(from.second, to.second));
      }
    }
  }

  std::string row(std::size_t row) const {
    std::string text;
    for (std::size_t column = 0; column < columns_; ++column) {
      const unsigned dots = cells_[row * columns_ + column];
      if (wide_ == 1) {
        text += dots == 0 ? ' ' : '*';
      } else if (dots == 0) {
        text += ' ';
      } else {
        text += '\xE2';
        text += char(0xA0 + (dots >> 6));
        text += char(0x80 + (dots & 0x3F));
      }
    }
    return text.substr(0, text.find_last_not_of(' ') + 1);
  }
  std::size_t rows() const { return rows_; }

 private:
  std::size_t wide_;
  std::size_t high_;
  std::size_t columns_;
  std::size_t rows_;
  std::vector<unsigned> cells_;
};

std::string short_text(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.5g", number);
  return text;
}

std::string to_the_right(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

/// A range of numbers; where it is one number, with some room about it.
struct Range {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();

  void add(double number) {
    low = std::min(low, number);
    high = std::max(high, number);
  }
  void settle() {
    if (low > high) {
      low = 0;
      high = 1;
    } else if (low == high) {
      const double room = low == 0 ? 1 : std::fabs(low) / 2;
      low -= room;
      high += room;
    }
  }
  /// Which one of `count` dots.
  std::size_t dot(double number, std::size_t count) const {
    const double part = (number / 2 - low / 2) / (high / 2 - low / 2);
    return std::size_t(std::lround(std::clamp(part, 0.0, 1.0) * double(count - 1)));
  }
};

struct Diagram {
  std::string title;
  std::string x_title;
  std::string y_title;
  Panel::Style style = Panel::Style::line;
  bool exponents = false;  // y stands for powers of ten
  std::vector<Points> curves;
  std::size_t columns = kColumns;
  std::size_t rows = kRows;
  bool plane = false;  // both axes in the same scale, about the origin
};

std::string headed(const std::string& title) { return title.empty() ? "" : with_short_names(title) + "\n"; }

std::string y_label(const Diagram& diagram, double y) { return diagram.exponents ? power_text(y) : short_text(y); }

std::string text_of(const Diagram& diagram, bool braille) {
  Range x;
  Range y;
  for (const Points& points : diagram.curves) {
    std::for_each(points.x.begin(), points.x.end(), [&](double each) { x.add(each); });
    std::for_each(points.y.begin(), points.y.end(), [&](double each) { y.add(each); });
  }
  const bool from_zero = diagram.style == Panel::Style::area || diagram.style == Panel::Style::bars ||
                         diagram.style == Panel::Style::stems;
  if (from_zero && y.low <= y.high) {
    y.add(0);
  }
  // Bars as wide as their distance, but for a gap.
  double bar = 0;
  if (diagram.style == Panel::Style::bars && x.low <= x.high) {
    const auto bars = double(diagram.curves.front().size());
    bar = bars > 1 ? (x.high - x.low) / (bars - 1) : 1;
    x = {x.low - bar / 2, x.high + bar / 2};
  }
  if (diagram.plane && x.low <= x.high) {
    const double edge = std::max({std::fabs(x.low), std::fabs(x.high), std::fabs(y.low), std::fabs(y.high)});
    x = y = {-edge, edge};
  }
  x.settle();
  y.settle();
  Canvas canvas(diagram.columns, diagram.rows, braille);
  const auto place = [&](const Points& points, std::size_t i) {
    return std::pair(x.dot(points.x[i], canvas.width()), y.dot(points.y[i], canvas.height()));
  };
  for (const Points& points : diagram.curves) {
    const bool joined = diagram.style == Panel::Style::line || diagram.style == Panel::Style::area;
    for (std::size_t i = 0; i < points.size(); ++i) {
      const auto here = place(points, i);
      if (diagram.style == Panel::Style::points) {
        canvas.set(here.first, here.second);
      } else if (diagram.style == Panel::Style::bars) {
        const std::size_t left = x.dot(points.x[i] - bar / 2, canvas.width());
        const std::size_t right = x.dot(points.x[i] + bar / 2, canvas.width());
        for (std::size_t column = left; column < std::max(right, left + 2) - 1; ++column) {
          canvas.join({column, y.dot(0, canvas.height())}, {column, here.second});
        }
      } else if (!joined) {
        canvas.join({here.first, y.dot(0, canvas.height())}, here);
      } else {
        canvas.join(place(points, i == 0 ? 0 : i - 1), here);
      }
    }
  }
  const char* const side = braille ? "\u2502" : "|";
  const char* const tick = braille ? "\u2524" : "+";
  const char* const floor = braille ? "\u2500" : "-";
  std::string text = headed(diagram.title);
  if (!diagram.y_title.empty()) {
    text += std::string(kLabel + 1, ' ') + diagram.y_title + "\n";
  }
  for (std::size_t row = 0; row < canvas.rows(); ++row) {
    const double share = 1 - double(row) / double(canvas.rows() - 1);
    const bool marked = row == 0 || row == canvas.rows() / 2 || row + 1 == canvas.rows();
    const double value = y.low * (1 - share) + y.high * share;
    text += to_the_right(marked ? y_label(diagram, value) : "", kLabel - 1) + " " + (marked ? tick : side) +
            canvas.row(row) + "\n";
  }
  text += std::string(kLabel, ' ') + (braille ? "\u2514" : "+");
  for (std::size_t column = 0; column < diagram.columns; ++column) {
    text += floor;
  }
  const std::string left = short_text(x.low);
  const std::string right = short_text(x.high);
  const std::size_t room = diagram.columns - std::min(diagram.columns, left.size() + right.size());
  const std::string& middle = diagram.x_title;
  const bool fits = middle.size() + 2 <= room;
  const std::size_t before = fits ? (room - middle.size()) / 2 : room;
  text += "\n" + std::string(kLabel + 1, ' ') + left + std::string(before, ' ') + (fits ? middle : "") +
          std::string(fits ? room - before - middle.size() : 0, ' ') + right + "\n";
  return text + (fits ? "" : std::string(kLabel + 1, ' ') + middle + "\n");
}

/// Shades for the largest number of each tile; an infinite one below has none.
std::string text_of_tiles(const std::vector<double>& tiles, std::size_t columns, const Range& range, bool braille) {
  static const std::vector<std::string> kBlocks = {"\u00B7", "\u2591", "\u2592", "\u2593", "\u2588"};
  static const std::vector<std::string> kLetters = {".", ":", "+", "x", "#"};
  const std::vector<std::string>& shades = braille ? kBlocks : kLetters;
  const std::string edge = braille ? "\u2502" : "|";
  std::string text;
  for (std::size_t i = 0; i < tiles.size(); ++i) {
    text += i % columns == 0 ? "  " + edge : "";
    const std::string shade = std::isinf(tiles[i]) ? " " : shades[range.dot(tiles[i], shades.size())];
    text += shade + shade;  // about square
    text += (i + 1) % columns == 0 ? edge + "\n" : "";
  }
  return text;
}

/// Tiles along the longer side.
constexpr Integer kMostTiles = 32;

}  // namespace

bool has_braille() {
  for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value != nullptr && *value != '\0') {
      std::string locale = value;
      std::transform(locale.begin(), locale.end(), locale.begin(),
                     [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
      return locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
    }
  }
  return false;
}

std::string text_picture(const Panel& panel, bool braille) {
  Diagram diagram{panel.title, panel.x_title, panel.y_title, panel.style, panel.exponents, {}};
  diagram.curves = {
      points_of(panel.curve.x, panel.curve.y, panel.style != Panel::Style::points, 2 * kColumns, 4 * kRows)};
  const std::int64_t exponent = diagram.curves.front().x_exponent;
  diagram.x_title = in_unit(panel.x_title, exponent);
  diagram.y_title = in_unit(panel.y_title, diagram.curves.front().y_exponent);
  std::string text = text_of(diagram, braille);
  for (const Label& label : panel.labels) {
    text += std::string(kLabel + 1, ' ') + label.text + " at " + short_text(drawn(label.x, exponent)) + "\n";
  }
  return text;
}

std::string text_picture(const Chart& chart, bool braille) {
  Diagram diagram{chart.title, chart.x_title, chart.y_title, Panel::Style::line, true, {}};
  for (const Chart::Series& series : chart.series) {
    diagram.curves.push_back(points_of(series.x, series.exponent, true, 2 * kColumns, 4 * kRows));
    diagram.y_title += (diagram.y_title.empty() ? "" : ", ") + series.name;
  }
  return text_of(diagram, braille);
}

std::string text_picture(const Spy& spy, bool braille) {
  const Integer side = (std::max(spy.rows, spy.columns) - 1) / kMostTiles + 1;
  const auto columns = std::size_t((spy.columns - 1) / side) + 1;
  std::vector<double> counts(columns * (std::size_t((spy.rows - 1) / side) + 1), 0);
  for (std::size_t k = 0; k < spy.row.size(); ++k) {
    ++counts[std::size_t((spy.row[k] - 1) / side) * columns + std::size_t((spy.column[k] - 1) / side)];
  }
  const double full = double(side) * double(side);
  for (double& count : counts) {
    count = count == 0 ? -std::numeric_limits<double>::infinity() : count / full;
  }
  return headed(spy.title) + text_of_tiles(counts, columns, {0, 1}, braille);
}

std::string text_picture(const HeatMap& map, bool braille) {
  if (map.values.empty()) {
    return headed(map.title + ": no elements");
  }
  const Integer side = (std::max(map.rows.count, map.columns.count) - 1) / kMostTiles + 1;
  const auto columns = std::size_t((map.columns.count - 1) / side) + 1;
  const std::int64_t exponent = map.logarithmic ? 0 : unit_exponent(map.values);
  std::vector<double> tiles(columns * (std::size_t((map.rows.count - 1) / side) + 1),
                            -std::numeric_limits<double>::infinity());
  for (std::size_t k = 0; k < map.values.size(); ++k) {
    const std::size_t row = k % std::size_t(map.rows.count) / std::size_t(side);
    const std::size_t column = k / std::size_t(map.rows.count) / std::size_t(side);
    if (!map.logarithmic || map.values[k] != 0) {
      double& tile = tiles[row * columns + column];
      tile = std::max(tile, map.logarithmic ? drawn(log10(map.values[k])) : drawn(map.values[k], exponent));
    }
  }
  Range range;
  for (const double tile : tiles) {
    if (!std::isinf(tile)) {
      range.add(tile);
    }
  }
  constexpr double kDecades = 12;
  if (map.logarithmic && range.low < range.high - kDecades) {
    range.low = range.high - kDecades;
  }
  const auto text = [&](double end) { return map.logarithmic ? power_text(end) : short_text(end); };
  const std::string ends = range.low > range.high ? "" : ", " + text(range.low) + " to " + text(range.high);
  const bool indices = map.rows.title == "row" && map.columns.title == "column";
  range.settle();
  return headed(map.title) + text_of_tiles(tiles, columns, range, braille) + "  " + in_unit(map.value_title, exponent) +
         ends + (indices ? "" : "; rows: " + map.rows.title + ", columns: " + map.columns.title) + "\n";
}

std::string text_picture(const ComplexPlane& plane, bool braille) {
  constexpr std::size_t kSide = 21;
  Diagram diagram{plane.title, "", "", Panel::Style::points, false, {}, 2 * kSide, kSide, true};
  diagram.curves = {points_of(plane.points, 4 * kSide, 4 * kSide)};
  diagram.x_title = in_unit("real part", diagram.curves.front().x_exponent);
  diagram.y_title = in_unit("imaginary part", diagram.curves.front().y_exponent);
  return text_of(diagram, braille);
}

void print(const std::vector<Panel>& panels) {
  for (const Panel& panel : panels) {
    write_output(text_picture(panel, has_braille()) + "\n", "");
  }
}
void print(const Chart& chart) { write_output(text_picture(chart, has_braille()), ""); }
void print(const std::string& title, const std::vector<Chart>& charts) {
  std::string text = headed(title);
  for (const Chart& chart : charts) {
    text += text_picture(chart, has_braille()) + (&chart == &charts.back() ? "" : "\n");
  }
  write_output(text, "");
}
void print(const std::vector<Spy>& spies) {
  std::string text;
  for (const Spy& spy : spies) {
    text += (text.empty() ? "" : "\n") + text_picture(spy, has_braille());
  }
  write_output(text, "");
}
void print(const HeatMap& map) { write_output(text_picture(map, has_braille()), ""); }
void print(const ComplexPlane& plane) { write_output(text_picture(plane, has_braille()), ""); }

}  // namespace cli
