// Pictures of matrices: where entries stand, and numbers as colours.
#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>

#include "cli/plot/gnuplot.h"
#include "cli/plot/plot.h"
#include "cli/plot/text_plot.h"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

// Few indices have a mark each.
std::string index_tics(const std::string& axis, Integer count) {
  constexpr Integer kFew = 10;
  return count <= kFew ? "set " + axis + "tics 1\n" : "";
}

// Entries counted on square tiles, so that a picture of a large matrix stays small.
struct Tiles {
  Integer side = 1;
  std::map<std::pair<Integer, Integer>, Integer> counts;
};

Tiles tiles_of(const Spy& spy) {
  constexpr Integer kMostTiles = 200;  // along a side
  Tiles tiles;
  tiles.side = (std::max(spy.rows, spy.columns) - 1) / kMostTiles + 1;
  for (std::size_t k = 0; k < spy.row.size(); ++k) {
    ++tiles.counts[{(spy.row[k] - 1) / tiles.side, (spy.column[k] - 1) / tiles.side}];
  }
  return tiles;
}

void add_spy(std::string& script, const Spy& spy) {
  const Tiles tiles = tiles_of(spy);
  script += title_of(spy.title, kSquareSize);
  script += "set size ratio " + std::to_string(double(spy.rows) / double(spy.columns)) + "\n";
  script += "set border 15 linecolor rgb '#888888'\n";
  script += "set xrange [0.5:" + std::to_string(spy.columns) + ".5] noextend\n";
  script += "set yrange [" + std::to_string(spy.rows) + ".5:0.5] noextend\n";  // the first row on top
  script += "set xlabel 'column'\nset ylabel 'row'\nset format xy '%.0f'\n";
  script += index_tics("x", spy.columns) + index_tics("y", spy.rows);
  script += std::string("set palette defined (0 '#a9c6e8', 1 '") + kCurveColor + "')\nunset key\n";
  script += tiles.side == 1 ? "unset colorbox\nset cbrange [0:1]\n" : "set cbrange [0:1]\nset cblabel 'part filled'\n";
  script += "$tiles << EOD\n";
  for (const auto& [place, count] : tiles.counts) {
    const double left = 0.5 + double(place.second) * double(tiles.side);
    const double top = 0.5 + double(place.first) * double(tiles.side);
    const double right = std::min(left + double(tiles.side), double(spy.columns) + 0.5);
    const double bottom = std::min(top + double(tiles.side), double(spy.rows) + 0.5);
    char line[160];
    std::snprintf(line, sizeof line, "%.1f %.1f %.1f %.1f %.4g\n", left, right, top, bottom,
                  double(count) / ((right - left) * (bottom - top)));
    script += line;
  }
  script += "EOD\n";
  script += tiles.counts.empty()
                ? "plot NaN\n"
                : "plot $tiles using (($1+$2)/2):(($3+$4)/2):1:2:3:4:5 with boxxyerror fillstyle solid 1 "
                  "noborder fillcolor palette\n";
}

}  // namespace

HeatMap map_of_magnitudes(const std::string& title, const DenseMatrix& matrix) {
  HeatMap map;
  map.title = title;
  map.value_title = "magnitude";
  map.rows = {"row", 1, matrix.rows()};
  map.columns = {"column", 1, matrix.columns()};
  map.logarithmic = true;
  for (const Complex& z : elements_of<Complex>(matrix)) {
    map.values.push_back(tesk2mp::abs(z));
  }
  return map;
}

void draw(const Spy& spy, const std::string& file) { draw(std::vector<Spy>{spy}, file); }

void draw(const std::vector<Spy>& spies, const std::string& file) {
  if (file == kTextPlot) {
    return print(spies);
  }
  const bool several = spies.size() > 1;
  std::string script = picture_of(file, kSquareSize * int(spies.size()), kSquareSize);
  script += several ? "set multiplot layout 1," + std::to_string(spies.size()) + "\n" : "";
  for (const Spy& spy : spies) {
    add_spy(script, spy);
  }
  run_gnuplot(script + (several ? "unset multiplot\n" : ""), file);
}

void draw(const HeatMap& map, const std::string& file) {
  if (file == kTextPlot) {
    return print(map);
  }
  if (map.values.empty()) {
    return run_gnuplot(picture_of(file, kSquareSize, kSquareSize) + title_of(map.title + ": no elements", kSquareSize) +
                           "unset border\nunset tics\nset xrange [0:1]\nset yrange [0:1]\nplot NaN notitle\n",
                       file);
  }
  constexpr Integer kMostTiles = 512;  // along a side
  const Integer side = (std::max(map.rows.count, map.columns.count) - 1) / kMostTiles + 1;
  const Integer tile_rows = (map.rows.count - 1) / side + 1;
  const Integer tile_columns = (map.columns.count - 1) / side + 1;
  const std::int64_t exponent = map.logarithmic ? 0 : unit_exponent(map.values);
  constexpr double kNone = -std::numeric_limits<double>::infinity();
  std::vector<double> tiles(std::size_t(tile_rows) * std::size_t(tile_columns), kNone);
  for (std::size_t k = 0; k < map.values.size(); ++k) {
    const auto row = Integer(k % std::size_t(map.rows.count)) / side;
    const auto column = Integer(k / std::size_t(map.rows.count)) / side;
    double& tile = tiles[std::size_t(row) * std::size_t(tile_columns) + std::size_t(column)];
    if (!map.logarithmic || map.values[k] != 0) {
      tile = std::max(tile, map.logarithmic ? drawn(log10(map.values[k])) : drawn(map.values[k], exponent));
    }
  }
  const auto range = [side](const HeatMap::Axis& axis, Integer tile_count) {
    const double low = double(axis.first) - 0.5;
    return std::pair(low, low + double(side) * double(tile_count));
  };
  const auto [top, bottom] = range(map.rows, tile_rows);
  const auto [left, right] = range(map.columns, tile_columns);
  // As large as fits, square tiles, with room for titles and the scale of colours.
  const double wide = double(tile_columns) / double(tile_rows);
  const int height = wide > 1 ? int(kSquareSize / std::min(wide, 4.0)) : kSquareSize;
  char text[128];
  std::string script = picture_of(file, kSquareSize + 130, std::max(height, 320));
  script += title_of(map.title, kSquareSize);
  script += "set xlabel " + quoted(map.columns.title) + " noenhanced\nset ylabel " + quoted(map.rows.title) +
            " noenhanced\nset cblabel " + quoted(in_unit(map.value_title, exponent)) + " noenhanced\n";
  script += "set border 15 linecolor rgb '#888888'\nset size ratio -1\nunset key\n";
  script += index_tics("x", map.columns.count) + index_tics("y", map.rows.count);
  if (map.logarithmic) {
    // Whatever is that far below the largest has the lightest colour; what is zero has none.
    constexpr double kDecades = 12;
    const double high = *std::max_element(tiles.begin(), tiles.end());
    double low = high - 1;
    for (const double tile : tiles) {
      low = tile < high - kDecades ? low : std::min(low, tile);
    }
    std::snprintf(text, sizeof text, "set cbrange [%.9g:%.9g]\nset cbtics %d\nset format cb '1e%%.0f'\n", low, high,
                  high - low < kDecades / 2 ? 1 : 2);
    script += std::string("set palette defined (0 '#d6e4f3', 0.5 '#5f97cf', 0.8 '") + kCurveColor +
              "', 1 '#0b1d38')\n" + (high > kNone ? text : "unset colorbox\n");
  } else {
    // Small numbers beside a large peak are what such pictures are looked at for: half of the colours are theirs.
    script += std::string("set palette defined (0 '#ffffff', 0.05 '#d6e4f3', 0.2 '#7fb0de', 0.5 '") + kCurveColor +
              "', 1 '#0b1d38')\nset cbrange [0:*]\n";
  }
  std::snprintf(text, sizeof text, "set xrange [%.1f:%.1f] noextend\nset yrange [%.1f:%.1f] noextend\n", left, right,
                bottom, top);
  script += text;
  script += "$tiles << EOD\n";
  for (Integer row = 0; row < tile_rows; ++row) {
    for (Integer column = 0; column < tile_columns; ++column) {
      const double tile = tiles[std::size_t(row) * std::size_t(tile_columns) + std::size_t(column)];
      std::snprintf(text, sizeof text, "%.6g ", tile);
      script += tile == kNone ? "NaN " : text;
    }
    script += "\n";
  }
  script += "EOD\n";
  // Readers of SVG and PDF smooth images; rectangles stay sharp, where they are not too many.
  constexpr std::size_t kMostRectangles = 16384;
  const bool rectangles = is_png(file) || tiles.size() <= kMostRectangles;
  std::snprintf(text, sizeof text, "plot $tiles matrix using (%.1f+%ld*$1):(%.1f+%ld*$2):3 with image%s\n",
                left + 0.5 * double(side), long(side), top + 0.5 * double(side), long(side),
                rectangles ? " pixels" : "");
  run_gnuplot(script + text, file);
}

}  // namespace cli
