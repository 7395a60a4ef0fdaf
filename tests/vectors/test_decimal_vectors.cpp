// Every line of the vector file that Python's decimal module wrote, on every platform.
#include <doctest/doctest.h>

#include <fstream>
#include <sstream>

#include "vectors/operations.h"

TEST_CASE("results are those of Python's decimal module, digit for digit") {
  std::ifstream file("tests/data/decimal_vectors.txt");
  REQUIRE(file.is_open());
  int lines = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') {
      continue;
    }
    ++lines;
    std::istringstream fields(line);
    int digits = 0;
    std::string name;
    std::string a;
    std::string b;
    std::string result;
    fields >> digits >> name >> a;
    const vectors::Operation* operation = vectors::find_operation(name);
    REQUIRE_MESSAGE(operation != nullptr, name);
    if (operation->operands == 2) {
      fields >> b;
    }
    fields >> result;
    CAPTURE(line);
    CHECK(vectors::evaluate(*operation, digits, a, b) == result);
  }
  CHECK(lines == 4000);
}
