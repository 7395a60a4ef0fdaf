// Pictures, drawn by gnuplot, or by characters.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cli/io/dense_matrix.h"
#include "quarn/quarnfloat.h"

namespace cli {

struct Curve {
  std::vector<QuarnFloat> x;
  std::vector<QuarnFloat> y;
};

struct Label {
  QuarnFloat x;
  QuarnFloat y;
  std::string text;
};

/// One diagram: a curve with its axes' titles.
struct Panel {
  enum class Style {
    line,    // few numbers are marked by points as well
    area,    // both axes start at zero and the area under the curve is shaded
    stems,   // from zero to each number; a line when there are many
    points,  // not joined
    bars     // side by side, from zero
  };
  std::string title;
  std::string x_title;
  std::string y_title;
  Curve curve;
  std::vector<Label> labels;
  Style style = Style::line;
  bool exponents = false;  // y stands for powers of ten
};

/// Numbers over their indices from 1.
Panel panel_of_elements(const std::string& title, const std::string& y_title, const std::vector<QuarnFloat>& values);
/// One such panel of real numbers; complex ones have a second one, for the imaginary parts.
std::vector<Panel> panels_of_elements(const std::string& title, const std::vector<Complex>& values, bool complex);

/// Several curves in one diagram, told apart by their names. The y values are powers of ten, of which the exponents are
/// given: they may lie far beyond the range of a double.
struct Chart {
  struct Series {
    std::string name;
    std::vector<QuarnFloat> x;
    std::vector<QuarnFloat> exponent;
  };
  std::string title;
  std::string x_title;
  std::string y_title;
  std::vector<Series> series;
};

/// The places of a matrix that hold entries, from 1, each given once.
struct Spy {
  std::string title;
  Integer rows = 1;
  Integer columns = 1;
  std::vector<Integer> row;
  std::vector<Integer> column;
};

/// Numbers of at least zero over two indices, as colours.
struct HeatMap {
  struct Axis {
    std::string title;
    Integer first = 0;  // the index that comes first
    Integer count = 1;
  };
  std::string title;
  std::string value_title;
  Axis rows;
  Axis columns;
  std::vector<QuarnFloat> values;  // column by column
  bool logarithmic = false;        // the colours stand for powers of ten; zeros have none
};

/// The magnitudes of a matrix; of small ones beside large ones too.
HeatMap map_of_magnitudes(const std::string& title, const DenseMatrix& matrix);

/// Points of the complex plane.
struct ComplexPlane {
  std::string title;
  std::vector<Complex> points;
};

/// The name of no file: the picture is printed on standard output, by characters.
inline constexpr const char* kTextPlot = "-";

/// A title in which files that exist are named without their folders.
std::string with_short_names(const std::string& title);

/// Whether the name ends in .svg, .png or .pdf, or is that of a plot of characters.
bool is_picture_name(const std::string& file);

/// Draws the panels one below the other; of many points those that can be seen. Throws Failure when there is no
/// gnuplot or when it fails.
void draw(const std::vector<Panel>& panels, const std::string& file);

void draw(const Chart& chart, const std::string& file);

/// Draws several charts side by side, under one title: the same names have the same colours, and the y axes the same
/// range.
void draw(const std::string& title, const std::vector<Chart>& charts, const std::string& file);

/// Draws the places; those of a large matrix together on square tiles, shaded by how many of them are filled.
void draw(const Spy& spy, const std::string& file);

/// The same of several matrices side by side.
void draw(const std::vector<Spy>& spies, const std::string& file);

/// Draws the numbers, the first row on top; of a large map the largest number of each square tile.
void draw(const HeatMap& map, const std::string& file);

/// Draws the points with both axes in the same scale.
void draw(const ComplexPlane& plane, const std::string& file);

}  // namespace cli
