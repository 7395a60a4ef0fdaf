// What the pictures' scripts for gnuplot have in common.
#pragma once

#include <string>

#include "cli/plot/points.h"

namespace cli {

inline constexpr int kSquareSize = 800;  // of pictures of the plane and of matrices
inline constexpr const char* kCurveColor = "#1f5fa8";

bool is_png(const std::string& file);
bool is_pdf(const std::string& file);

/// A string for gnuplot, whose quoted strings would run what stands between backquotes: all but plain characters is
/// written as an octal escape. A digit after one would count as part of it and starts a string of its own.
std::string quoted(const std::string& text);

/// Sets the title of a picture so many pixels wide, in as many lines as it needs.
std::string title_of(const std::string& given, int width);

std::string text_of(double number);

/// Appends the lines of a block of data.
void add_points(std::string& script, const Points& points);

/// What every picture starts with.
std::string picture_of(const std::string& file, int width, int height);

/// Draws what the script says into the file, in place of a picture that may be there. Throws Failure when there is no
/// gnuplot or when it fails.
void run_gnuplot(const std::string& script, const std::string& file);

}  // namespace cli
