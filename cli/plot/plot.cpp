#include "cli/plot/plot.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <map>

#include "cli/commands/failure.h"
#include "cli/io/matrix_input.h"
#include "cli/io/replacement.h"
#include "cli/io/result.h"
#include "cli/plot/points.h"
#include "cli/plot/text_plot.h"
#include "cli/system/process.h"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

constexpr int kWidth = 1000;
constexpr int kPanelHeight = 360;
constexpr int kChartHeight = 560;
constexpr int kSpySize = 800;
constexpr const char* kCurveColor = "#1f5fa8";
constexpr const char* kSeriesColors[] = {"#1f5fa8", "#c0392b", "#2e8b57", "#8e5ea2", "#b8860b"};
constexpr const char* kLabelColor = "#c0392b";
constexpr const char* kTextColor = "#333333";

bool is_png(const std::string& file) { return file.ends_with(".png"); }
bool is_pdf(const std::string& file) { return file.ends_with(".pdf"); }

// A string for gnuplot, whose quoted strings would run what stands between backquotes: all but plain characters is
// written as an octal escape. A digit after one would count as part of it and starts a string of its own.
std::string quoted(const std::string& text) {
  std::string result = "\"";
  bool escaped = false;
  for (const char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0 || std::strchr(" .,()_/|-", c) != nullptr) {
      result += escaped && is_digit(c) ? "\" . \"" : "";
      result += c;
      escaped = false;
    } else if (static_cast<unsigned char>(c) >= ' ') {
      char octal[8];
      std::snprintf(octal, sizeof octal, "\\%03o", unsigned(static_cast<unsigned char>(c)));
      result += octal;
      escaped = true;
    }
  }
  return result + "\"";
}

// The title of a picture so many pixels wide, in as many lines as it needs.
std::string title_of(const std::string& given, int width) {
  const std::string text = with_short_names(given);
  constexpr int kMargins = 120;
  constexpr int kLetter = 10;
  const auto most = std::size_t((width - kMargins) / kLetter);
  std::string lines;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t length = std::min(most, text.size() - at);
    if (at + length < text.size()) {
      const std::size_t blank = text.rfind(' ', at + length);
      length = blank != std::string::npos && blank > at ? blank - at : length;
    }
    while (length > 1 && at + length < text.size() &&
           (static_cast<unsigned char>(text[at + length]) & 0xC0U) == 0x80U) {
      --length;  // not within a character of several bytes
    }
    lines += (lines.empty() ? "" : " . \"\\n\" . ") + quoted(text.substr(at, length));
    at += length + (at + length < text.size() && text[at + length] == ' ' ? 1 : 0);
  }
  return "set title " + (lines.empty() ? "''" : lines) + " noenhanced font ',14' textcolor '" + kTextColor + "'\n";
}

// gnuplot takes a name that starts with | for a command.
std::string safe_name(const std::string& file) { return file.starts_with("/") ? file : "./" + file; }

std::string text_of(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.9g", number);
  return text;
}

std::string coordinate(const QuarnFloat& value) { return text_of(drawn(value)); }

// The lines of a block of data.
void add_points(std::string& script, const Points& points) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    script += text_of(points.x[i]) + " " + text_of(points.y[i]) + "\n";
  }
}

// How the points are drawn, one way above the other.
std::vector<std::string> layers_of(const Panel& panel) {
  constexpr std::size_t kFew = 100;
  const bool few = panel.curve.x.size() <= kFew;
  const std::string color = std::string(" linecolor rgb '") + kCurveColor + "'";
  const std::string fill = std::string(" fillcolor rgb '") + kCurveColor + "' fillstyle transparent solid ";
  const std::string line = "lines linewidth 1.4" + color;
  const std::string points = "points pointtype 7 pointsize " + std::string(few ? "0.6" : "0.25") + color;
  switch (panel.style) {
    case Panel::Style::area:
      return {"filledcurves y1=0" + fill + "0.15", line};
    case Panel::Style::bars:
      return {"boxes" + fill + "0.4"};
    case Panel::Style::points:
      return {points};
    case Panel::Style::stems:
      return few ? std::vector<std::string>{"impulses linewidth 1.4" + color, points} : std::vector<std::string>{line};
    case Panel::Style::line:
      break;
  }
  return few ? std::vector<std::string>{line, points} : std::vector<std::string>{line};
}

// Ranges of the axes, and the air left of, right of, above and below what is drawn.
struct Frame {
  const char* x;
  const char* y;
  const char* air;
};

Frame frame_of(Panel::Style style) {
  constexpr const char* kAbove = "0, 0, graph 0.12, 0";
  switch (style) {
    case Panel::Style::area:
      return {"[0:*] noextend", "[0:*]", kAbove};
    case Panel::Style::bars:
      return {"[*:*]", "[0:*]", kAbove};
    case Panel::Style::points:
      return {"[*:*] noextend", "[*:*] noextend", "graph 0.02, graph 0.02, graph 0.02, graph 0.02"};
    case Panel::Style::stems:
      return {"[*:*] noextend", "[*:*]", "graph 0.02, graph 0.02, graph 0.12, graph 0.05"};
    case Panel::Style::line:
      break;
  }
  return {"[*:*] noextend", "[*:*]", kAbove};
}

std::string axes_of(const Panel& panel) {
  const Frame frame = frame_of(panel.style);
  // Whole numbers that are few have a mark each.
  constexpr std::size_t kFew = 11;
  const std::vector<QuarnFloat>& x = panel.curve.x;
  const bool whole = x.size() <= kFew && std::all_of(x.begin(), x.end(), [](const QuarnFloat& each) {
                       return trunc(each) == each && fabs(each) < std::int64_t(kFew);
                     });
  return std::string("set xrange ") + frame.x + "\nset yrange " + frame.y + "\nset offsets " + frame.air + "\n" +
         (panel.style == Panel::Style::stems ? "set xzeroaxis linecolor rgb '#888888'\n" : "unset xzeroaxis\n") +
         "set xtics " + (whole ? "1" : "autofreq") + "\n";
}

// The labels without those that would cover one before.
std::vector<Label> clear_labels(const Panel& panel) {
  constexpr double kWide = 0.12;
  constexpr double kHigh = 0.08;
  std::vector<Label> clear;
  if (panel.labels.empty()) {
    return clear;
  }
  const auto width = [](const std::vector<QuarnFloat>& values) {
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    return *most - *least;
  };
  const QuarnFloat x_near = kWide * width(panel.curve.x);
  const QuarnFloat y_near = kHigh * width(panel.curve.y);
  for (const Label& label : panel.labels) {
    const auto covers = [&](const Label& other) {
      return fabs(label.x - other.x) < x_near && fabs(label.y - other.y) < y_near;
    };
    if (std::none_of(clear.begin(), clear.end(), covers)) {
      clear.push_back(label);
    }
  }
  return clear;
}

void add_panel(std::string& script, const Panel& panel) {
  script += title_of(panel.title, kWidth);
  script +=
      "set xlabel " + quoted(panel.x_title) + " noenhanced\nset ylabel " + quoted(panel.y_title) + " noenhanced\n";
  script += "$curve << EOD\n";
  add_points(script,
             points_of(panel.curve.x, panel.curve.y, panel.style != Panel::Style::points, kWidth, kPanelHeight));
  script += "EOD\n";
  script += axes_of(panel) + "unset label\n";
  for (const Label& label : clear_labels(panel)) {
    // Text beside its point, on the side where the diagram has room.
    const bool to_the_left = panel.curve.x.back() * 3 < label.x * 4;
    script += "set label " + quoted(label.text) + " at " + coordinate(label.x) + "," + coordinate(label.y) +
              (to_the_left ? " right offset character -0.7,0.4" : " left offset character 0.7,0.4") +
              " noenhanced point pointtype 7 pointsize 0.6 linecolor rgb '" + kLabelColor + "' textcolor '" +
              kLabelColor + "'\n";
  }
  script += "plot ";
  const char* separator = "";
  for (const std::string& layer : layers_of(panel)) {
    script += separator + ("$curve using 1:2 with " + layer) + " notitle";
    separator = ", ";
  }
  script += "\n";
}

// What every picture starts with.
std::string picture_of(const std::string& file, int width, int height) {
  std::string script = "set encoding utf8\n";
  // Inches for PDF, whose dots are points of type.
  constexpr double kDots = 72;
  char size[64];
  std::snprintf(size, sizeof size, is_pdf(file) ? "%gin,%gin" : "%g,%g", is_pdf(file) ? width / kDots : width,
                is_pdf(file) ? height / kDots : height);
  script += std::string("set terminal ") +
            (is_png(file)   ? "pngcairo"
             : is_pdf(file) ? "pdfcairo"
                            : "svg") +
            " size " + size + " noenhanced font 'DejaVu Sans,11' background '#ffffff'\n";
  script += std::string("set border 3 linecolor rgb '#888888'\nset tics nomirror textcolor '") + kTextColor + "'\n";
  return script;
}

// Draws what the script says into the file, in place of a picture that may be there.
void run_gnuplot(const std::string& script, const std::string& file) {
  Replacement picture(file);
  const std::string target = "set output " + quoted(safe_name(picture.name())) + "\n";
  const ProcessResult result = run_process({"gnuplot", "-"}, target + script + "unset output\n");
  if (!result.started) {
    throw bad_output("--plot needs the program gnuplot: " + std::string(std::strerror(result.error)));
  }
  if (result.status != 0) {
    throw bad_output("cannot draw " + file + ": gnuplot says: " + result.complaint);
  }
  std::error_code error;
  if (std::filesystem::file_size(picture.name(), error) == 0 || error) {
    throw bad_output("cannot draw " + file + ": gnuplot wrote nothing and says: " + result.complaint);
  }
  if (!picture.commit()) {
    throw bad_output("cannot write " + file + ": " + std::strerror(errno));
  }
}

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

}  // namespace

std::string with_short_names(const std::string& title) {
  std::string text;
  for (std::size_t at = 0; at < title.size();) {
    const std::size_t end = std::min(title.find(' ', at), title.size());
    const std::string word = title.substr(at, end - at);
    const std::size_t folder = word.find_last_of("/\\");
    const std::string name = word.substr(0, word.find_last_not_of(",:;") + 1);
    std::error_code error;
    const bool is_file = folder != std::string::npos && std::filesystem::is_regular_file(name, error);
    text += (is_file ? word.substr(folder + 1) : word) + (end < title.size() ? " " : "");
    at = end + 1;
  }
  return text;
}

bool is_picture_name(const std::string& file) {
  return is_png(file) || is_pdf(file) || file.ends_with(".svg") || file == kTextPlot;
}

Panel panel_of_elements(const std::string& title, const std::string& y_title, const std::vector<QuarnFloat>& values) {
  Panel panel{title, "index", y_title, {{}, values}, {}, Panel::Style::stems};
  for (std::size_t i = 1; i <= values.size(); ++i) {
    panel.curve.x.emplace_back(std::int64_t(i));
  }
  return panel;
}

std::vector<Panel> panels_of_elements(const std::string& title, const std::vector<Complex>& values, bool complex) {
  if (!complex) {
    return {panel_of_elements(title, "value", real_parts(values))};
  }
  return {panel_of_elements(title, "real part", real_parts(values)),
          panel_of_elements(title, "imaginary part", imaginary_parts(values))};
}

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

void draw(const std::vector<Panel>& panels, const std::string& file) {
  if (file == kTextPlot) {
    return print(panels);
  }
  std::string script = picture_of(file, kWidth, kPanelHeight * int(panels.size()));
  script += "set grid linecolor rgb '#dddddd' linetype 1\n";
  script += "set lmargin 14\nset rmargin 4\n";
  script += "set multiplot layout " + std::to_string(panels.size()) + ",1\n";
  for (const Panel& panel : panels) {
    add_panel(script, panel);
  }
  run_gnuplot(script + "unset multiplot\n", file);
}

void draw(const Chart& chart, const std::string& file) {
  if (file == kTextPlot) {
    return print(chart);
  }
  std::string script = picture_of(file, kWidth, kChartHeight);
  script += "set grid linecolor rgb '#dddddd' linetype 1\n";
  script += title_of(chart.title, kWidth);
  script +=
      "set xlabel " + quoted(chart.x_title) + " noenhanced\nset ylabel " + quoted(chart.y_title) + " noenhanced\n";
  script += "set format y '1e%.0f'\nset key top right noenhanced\nset xrange [0:*]\n";
  std::string plots;
  for (std::size_t i = 0; i < chart.series.size(); ++i) {
    const Chart::Series& series = chart.series[i];
    const std::string name = "$series" + std::to_string(i);
    script += name + " << EOD\n";
    add_points(script, points_of(series.x, series.exponent, true, kWidth, kChartHeight));
    script += "EOD\n";
    plots += (i == 0 ? "plot " : ", ") + name + " using 1:2 with lines linewidth 1.6 linecolor rgb '" +
             kSeriesColors[i % std::size(kSeriesColors)] + "' title " + quoted(series.name);
  }
  run_gnuplot(script + plots + "\n", file);
}

void draw(const Spy& spy, const std::string& file) {
  if (file == kTextPlot) {
    return print(spy);
  }
  std::string script = picture_of(file, kSpySize, kSpySize);
  const Tiles tiles = tiles_of(spy);
  script += title_of(spy.title, kSpySize);
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
  run_gnuplot(script, file);
}

void draw(const HeatMap& map, const std::string& file) {
  if (file == kTextPlot) {
    return print(map);
  }
  constexpr Integer kMostTiles = 512;  // along a side
  const Integer side = (std::max(map.rows.count, map.columns.count) - 1) / kMostTiles + 1;
  const Integer tile_rows = (map.rows.count - 1) / side + 1;
  const Integer tile_columns = (map.columns.count - 1) / side + 1;
  constexpr double kNone = -std::numeric_limits<double>::infinity();
  std::vector<double> tiles(std::size_t(tile_rows) * std::size_t(tile_columns), kNone);
  for (std::size_t k = 0; k < map.values.size(); ++k) {
    const auto row = Integer(k % std::size_t(map.rows.count)) / side;
    const auto column = Integer(k / std::size_t(map.rows.count)) / side;
    double& tile = tiles[std::size_t(row) * std::size_t(tile_columns) + std::size_t(column)];
    if (!map.logarithmic || map.values[k] != 0) {
      tile = std::max(tile, drawn(map.logarithmic ? log10(map.values[k]) : map.values[k]));
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
  const int height = wide > 1 ? int(kSpySize / std::min(wide, 4.0)) : kSpySize;
  char text[128];
  std::string script = picture_of(file, kSpySize + 130, std::max(height, 320));
  script += title_of(map.title, kSpySize);
  script += "set xlabel " + quoted(map.columns.title) + " noenhanced\nset ylabel " + quoted(map.rows.title) +
            " noenhanced\nset cblabel " + quoted(map.value_title) + " noenhanced\n";
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

void draw(const ComplexPlane& plane, const std::string& file) {
  if (file == kTextPlot) {
    return print(plane);
  }
  // One square around all points and the origin, with air at its edges.
  double largest = 0;
  const Points shown = points_of(real_parts(plane.points), imaginary_parts(plane.points), false, kSpySize, kSpySize);
  for (std::size_t i = 0; i < shown.size(); ++i) {
    largest = std::max({largest, std::fabs(shown.x[i]), std::fabs(shown.y[i])});
  }
  std::string points;
  add_points(points, shown);
  char edge[32];
  std::snprintf(edge, sizeof edge, "%.6g", largest > 0 ? 1.15 * largest : 1.0);
  const std::string range = std::string("[-") + edge + ":" + edge + "] noextend\n";
  std::string script = picture_of(file, kSpySize, kSpySize);
  script += title_of(plane.title, kSpySize);
  script += "set size ratio 1\nset grid linecolor rgb '#dddddd' linetype 1\nunset key\n";
  script += "set xzeroaxis linecolor rgb '#888888'\nset yzeroaxis linecolor rgb '#888888'\n";
  script += "set xrange " + range + "set yrange " + range + "set xlabel 'real part'\nset ylabel 'imaginary part'\n";
  script += "$points << EOD\n" + points + "EOD\n";
  script += points.empty()
                ? std::string("plot NaN\n")
                : std::string("plot $points using 1:2 with points pointtype 7 pointsize 0.8 linecolor rgb '") +
                      kCurveColor + "'\n";
  run_gnuplot(script, file);
}

}  // namespace cli
