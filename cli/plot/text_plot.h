// Pictures of characters, for the terminal.
#pragma once

#include <string>
#include <vector>

#include "cli/plot/plot.h"

namespace cli {

/// Dots of Braille where the locale is UTF-8, else asterisks.
bool has_braille();

std::string text_picture(const Panel& panel, bool braille);
std::string text_picture(const Chart& chart, bool braille);
std::string text_picture(const Spy& spy, bool braille);
std::string text_picture(const HeatMap& map, bool braille);
std::string text_picture(const ComplexPlane& plane, bool braille);

/// These write them to standard output.
void print(const std::vector<Panel>& panels);
void print(const Chart& chart);
void print(const std::string& title, const std::vector<Chart>& charts);
void print(const std::vector<Spy>& spies);
void print(const HeatMap& map);
void print(const ComplexPlane& plane);

}  // namespace cli
