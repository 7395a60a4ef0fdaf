#include "vectors/dectest_file.h"

#include <algorithm>

namespace vectors {

namespace {

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  return text;
}

/// Words between blanks, up to a comment; a quoted word may hold blanks, and its quote character doubled.
std::vector<std::string> words(const std::string& line) {
  std::vector<std::string> result;
  std::size_t i = 0;
  while (true) {
    i = line.find_first_not_of(" \t\r", i);
    if (i == std::string::npos || line.compare(i, 2, "--") == 0) {
      return result;
    }
    std::string word;
    const char quote = line[i];
    if (quote == '\'' || quote == '"') {
      for (++i; i < line.size() && (line[i] != quote || line.compare(i, 2, std::string(2, quote)) == 0); ++i) {
        i += line[i] == quote ? 1 : 0;
        word += line[i];
      }
      ++i;
    } else {
      const std::size_t end = std::min(line.find_first_of(" \t\r", i), line.size());
      word = line.substr(i, end - i);
      i = end;
    }
    result.push_back(word);
  }
}

/// "name: value", the settings that matter here.
void apply_setting(const std::string& name, const std::string& value, DecTestCase& settings) {
  if (name == "precision") {
    settings.precision = std::stoi(value);
  } else if (name == "rounding") {
    settings.rounding = lower(value);
  } else if (name == "maxexponent") {
    settings.largest_exponent = std::stoll(value);
  } else if (name == "extended") {
    settings.extended = value == "1";
  }
}

}  // namespace

bool DecTestCase::has(const std::string& condition) const {
  return std::find(conditions.begin(), conditions.end(), condition) != conditions.end();
}

std::vector<DecTestCase> read_dectest(std::istream& file) {
  std::vector<DecTestCase> cases;
  DecTestCase settings;
  for (std::string line; std::getline(file, line);) {
    const std::vector<std::string> parts = words(line);
    const auto arrow = std::find(parts.begin(), parts.end(), "->");
    const std::size_t colon = line.find(':');
    if (arrow == parts.end()) {
      if (colon != std::string::npos && !parts.empty()) {
        const std::vector<std::string> value = words(line.substr(colon + 1));
        const std::vector<std::string> name = words(line.substr(0, colon));
        apply_setting(lower(name.at(0)), value.empty() ? "" : value[0], settings);
      }
      continue;
    }
    if (arrow - parts.begin() < 3 || arrow + 1 == parts.end()) {
      continue;
    }
    DecTestCase& added = cases.emplace_back(settings);
    added.id = parts[0];
    added.operation = lower(parts[1]);
    added.operands.assign(parts.begin() + 2, arrow);
    added.result = arrow[1];
    std::transform(arrow + 2, parts.end(), std::back_inserter(added.conditions), lower);
  }
  return cases;
}

}  // namespace vectors
