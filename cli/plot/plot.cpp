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
constexpr const char* kSeriesColors[] = {"#1f5fa8", "#c0392b", "#2e8b57", "#8e5ea2", "#b8860b"};
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
