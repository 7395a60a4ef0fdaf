#include "cli/plot/gnuplot.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "cli/commands/failure.h"
#include "cli/io/matrix_input.h"
#include "cli/io/replacement.h"
#include "cli/plot/plot.h"
#include "cli/system/process.h"

namespace cli {

namespace {

constexpr const char* kTextColor = "#333333";

// gnuplot takes a name that starts with | for a command.
std::string safe_name(const std::string& file) { return file.starts_with("/") ? file : "./" + file; }

}  // namespace

bool is_png(const std::string& file) { return file.ends_with(".png"); }
bool is_pdf(const std::string& file) { return file.ends_with(".pdf"); }

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

std::string text_of(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.9g", number);
  return text;
}

void add_points(std::string& script, const Points& points) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    script += text_of(points.x[i]) + " " + text_of(points.y[i]) + "\n";
  }
}

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

}  // namespace cli
