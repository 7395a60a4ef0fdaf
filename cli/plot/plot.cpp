#include "cli/plot/plot.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "cli/io/matrix_input.h"
#include "cli/plot/gnuplot.h"
#include "cli/plot/points.h"
#include "cli/plot/text_plot.h"

namespace cli {

namespace {

constexpr int kWidth = 1000;
constexpr int kPanelHeight = 360;
constexpr int kChartHeight = 560;
constexpr const char* kSeriesColors[] = {"#1f5fa8", "#c0392b", "#2e8b57", "#8e5ea2", "#b8860b",
                                         "#17a2b8", "#7f5539", "#e377c2", "#5c5c5c"};
constexpr const char* kLabelColor = "#c0392b";
constexpr std::size_t kFewPoints = 100;

// How the points are drawn, one way above the other.
std::vector<std::string> layers_of(const Panel& panel) {
  const bool few = panel.curve.x.size() <= kFewPoints;
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

Frame frame_of(const Panel& panel) {
  constexpr const char* kAbove = "0, 0, graph 0.12, 0";
  switch (panel.style) {
    case Panel::Style::area:
      return {"[0:*] noextend", "[0:*]", kAbove};
    case Panel::Style::bars:
      return {"[*:*]", "[0:*]", kAbove};
    case Panel::Style::points:
      return {"[*:*] noextend", "[*:*] noextend", "graph 0.02, graph 0.02, graph 0.02, graph 0.02"};
    case Panel::Style::stems:
      return {"[*:*] noextend", panel.curve.x.size() <= kFewPoints ? "[*<0:0<*]" : "[*:*]",
              "graph 0.02, graph 0.02, graph 0.12, graph 0.05"};
    case Panel::Style::line:
      break;
  }
  return {"[*:*] noextend", "[*:*]", kAbove};
}

std::string axes_of(const Panel& panel) {
  const Frame frame = frame_of(panel);
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

// The marks of an axis of powers of ten: 1, 2 and 5 of each where the decades are few.
std::string power_tics(const Points& points) {
  constexpr double kFewDecades = 3;
  const auto [least, most] = std::minmax_element(points.y.begin(), points.y.end());
  const double low = points.size() == 0 ? 0 : std::floor(*least);
  const double high = points.size() == 0 ? 1 : std::ceil(*most + 0.12 * (*most - *least));
  if (high - low > kFewDecades) {
    constexpr double kMostMarks = 8;
    return "set ytics " + text_of(std::ceil((high - low) / kMostMarks)) + "\nset format y '1e%.0f'\n";
  }
  std::string marks;
  for (auto power = std::int64_t(low); power <= std::int64_t(high); ++power) {
    for (const int digit : {1, 2, 5}) {
      const std::string mark = std::to_string(digit) + "e" + std::to_string(power);
      marks += (marks.empty() ? "'" : ", '") + mark + "' " + text_of(double(power) + std::log10(digit));
    }
  }
  return "set ytics (" + marks + ")\n";
}

void add_panel(std::string& script, const Panel& panel) {
  const Points points =
      points_of(panel.curve.x, panel.curve.y, panel.style != Panel::Style::points, kWidth, kPanelHeight);
  script += title_of(panel.title, kWidth);
  script += "set xlabel " + quoted(in_unit(panel.x_title, points.x_exponent)) + " noenhanced\nset ylabel " +
            quoted(in_unit(panel.y_title, points.y_exponent)) + " noenhanced\nunset label\n";
  if (points.size() == 0) {
    script += "set xrange [0:1]\nset yrange [0:1]\nset tics format ''\nplot NaN notitle\nset tics format '% h'\n";
    return;
  }
  script += "$curve << EOD\n";
  add_points(script, points);
  script += "EOD\n" + axes_of(panel);
  script += panel.exponents ? power_tics(points) : "set ytics autofreq\nset format y '% h'\n";
  for (const Label& label : clear_labels(panel)) {
    // Text beside its point, on the side where the diagram has room.
    const bool to_the_left = panel.curve.x.back() * 3 < label.x * 4;
    script += "set label " + quoted(label.text) + " at " + text_of(drawn(label.x, points.x_exponent)) + "," +
              text_of(drawn(label.y, points.y_exponent)) +
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

struct Size {
  int width;
  int height;
};

/// All names, each once: the place of one gives its colour.
std::vector<std::string> names_of(const std::vector<Chart>& charts) {
  std::vector<std::string> names;
  for (const Chart& chart : charts) {
    for (const Chart::Series& series : chart.series) {
      if (std::find(names.begin(), names.end(), series.name) == names.end()) {
        names.push_back(series.name);
      }
    }
  }
  return names;
}

/// One range for the y axes of all charts.
std::string y_range_of(const std::vector<Chart>& charts) {
  const QuarnFloat* least = nullptr;
  const QuarnFloat* most = nullptr;
  for (const Chart& chart : charts) {
    for (const Chart::Series& series : chart.series) {
      for (const QuarnFloat& exponent : series.exponent) {
        least = least == nullptr || exponent < *least ? &exponent : least;
        most = most == nullptr || *most < exponent ? &exponent : most;
      }
    }
  }
  if (least == nullptr) {
    return "set yrange [-1:1]\n";
  }
  return "set yrange [" + text_of(std::floor(FloatToDouble(*least))) + ":" +
         text_of(std::floor(FloatToDouble(*most)) + 1) + "]\n";
}

/// The same name has the same colour in all charts.
std::string color_of(const std::string& name, const std::vector<std::string>& names) {
  const auto place = std::size_t(std::find(names.begin(), names.end(), name) - names.begin());
  return std::string(" linecolor rgb '") + kSeriesColors[place % std::size(kSeriesColors)] + "'";
}

void add_chart(std::string& script, const Chart& chart, Size size, const std::vector<std::string>& names) {
  script += "set grid linecolor rgb '#dddddd' linetype 1\n";
  script +=
      "set xlabel " + quoted(chart.x_title) + " noenhanced\nset ylabel " + quoted(chart.y_title) + " noenhanced\n";
  script += "set format y '1e%.0f'\nset xrange [0:*]\n";
  std::string plots;
  for (std::size_t i = 0; i < chart.series.size(); ++i) {
    const Chart::Series& series = chart.series[i];
    const std::string name = "$series" + std::to_string(i);
    const Points points = points_of(series.x, series.exponent, true, std::size_t(size.width), std::size_t(size.height));
    const bool single = points.size() == 1;  // which a line would not show
    script += name + " << EOD\n";
    add_points(script, points);
    script += "EOD\n";
    plots += (i == 0 ? "plot " : ", ") + (points.size() == 0 ? "NaN" : name + " using 1:2") + " with " +
             (single ? "points pointtype 7 pointsize 0.6" : "lines linewidth 1.6") + color_of(series.name, names) +
             " title " + quoted(series.name);
  }
  script += plots + "\n";
}

}  // namespace

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
  script += "set key outside right top vertical noenhanced samplen 2\n" + title_of(chart.title, kWidth);
  add_chart(script, chart, {kWidth, kChartHeight}, names_of({chart}));
  run_gnuplot(script, file);
}

void draw(const std::string& title, const std::vector<Chart>& charts, const std::string& file) {
  if (file == kTextPlot) {
    return print(title, charts);
  }
  constexpr std::size_t kMostColumns = 3;
  constexpr int kTitleHeight = 50;
  constexpr int kLegendHeight = 50;
  constexpr Size kEach = {480, 400};
  // As many columns as rows, or one more.
  std::size_t columns = 1;
  while (columns < kMostColumns && columns * columns < charts.size()) {
    ++columns;
  }
  const std::size_t rows = (charts.size() - 1) / columns + 1;
  const int width = kEach.width * int(columns);
  const int height = kEach.height * int(rows) + kTitleHeight + kLegendHeight;
  std::string script = picture_of(file, width, height);
  script += "set multiplot\nunset key\n";
  script += y_range_of(charts);
  const std::vector<std::string> names = names_of(charts);
  for (std::size_t i = 0; i < charts.size(); ++i) {
    const std::size_t row = i / columns;
    const std::size_t column = i % columns;
    const double part = double(kEach.height) / height;
    char place[160];
    std::snprintf(place, sizeof place, "set size %.6f, %.6f\nset origin %.6f, %.6f\n", 1.0 / double(columns), part,
                  double(column) / double(columns), double(rows - 1 - row) * part + double(kLegendHeight) / height);
    script += place + title_of(charts[i].title, kEach.width);
    add_chart(script, charts[i], kEach, names);
  }
  // The title of all stands over an empty diagram, and one legend below it.
  script += "set size 1, 1\nset origin 0, 0\nunset border\nunset tics\nunset xlabel\nunset ylabel\n";
  script += "set key at screen 0.5, screen 0.005 center bottom horizontal maxrows 2 noenhanced samplen 2\n";
  script += "unset grid\nset xrange [0:1]\nset yrange [0:1]\n" + title_of(title, width) + "plot NaN notitle";
  for (const std::string& name : names) {
    script += ", NaN with lines linewidth 1.6" + color_of(name, names) + " title " + quoted(name);
  }
  script += "\n";
  run_gnuplot(script + "unset multiplot\n", file);
}

void draw(const ComplexPlane& plane, const std::string& file) {
  if (file == kTextPlot) {
    return print(plane);
  }
  // One square around all points and the origin, with air at its edges.
  double largest = 0;
  const Points shown = points_of(plane.points, kSquareSize, kSquareSize);
  for (std::size_t i = 0; i < shown.size(); ++i) {
    largest = std::max({largest, std::fabs(shown.x[i]), std::fabs(shown.y[i])});
  }
  std::string points;
  add_points(points, shown);
  char edge[32];
  std::snprintf(edge, sizeof edge, "%.6g", largest > 0 ? 1.15 * largest : 1.0);
  const std::string range = std::string("[-") + edge + ":" + edge + "] noextend\n";
  std::string script = picture_of(file, kSquareSize, kSquareSize);
  script += title_of(plane.title, kSquareSize);
  script += "set size ratio 1\nset grid linecolor rgb '#dddddd' linetype 1\nunset key\n";
  script += "set xzeroaxis linecolor rgb '#888888'\nset yzeroaxis linecolor rgb '#888888'\n";
  script += "set xrange " + range + "set yrange " + range + "set xlabel " +
            quoted(in_unit("real part", shown.x_exponent)) + "\nset ylabel " +
            quoted(in_unit("imaginary part", shown.y_exponent)) + "\n";
  script += "$points << EOD\n" + points + "EOD\n";
  script += points.empty()
                ? std::string("plot NaN\n")
                : std::string("plot $points using 1:2 with points pointtype 7 pointsize 0.8 linecolor rgb '") +
                      kCurveColor + "'\n";
  run_gnuplot(script, file);
}

}  // namespace cli
