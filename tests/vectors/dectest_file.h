// The file format of the General Decimal Arithmetic test vectors: settings and cases, line by line.
#pragma once

#include <istream>
#include <string>
#include <vector>

namespace vectors {

/// One case: "id operation operand... -> result condition...", with the settings that hold for it.
struct DecTestCase {
  std::string id;
  std::string operation;  // in lower case
  std::vector<std::string> operands;
  std::string result;
  std::vector<std::string> conditions;  // in lower case

  int precision = 9;
  std::string rounding = "half_up";
  long long largest_exponent = 999999999;
  bool extended = true;

  bool has(const std::string& condition) const;
};

/// Every case of a file, in order.
std::vector<DecTestCase> read_dectest(std::istream& file);

}  // namespace vectors
