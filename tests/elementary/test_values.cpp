// Elementary functions where the results are known: special values, exact results, hard arguments, and a file of
// correctly rounded vectors; and the functions by name. Needs no other number library.
#include <doctest/doctest.h>

#include <fstream>
#include <string>

#include "quarn/quarnconsole.h"
#include "quarn/quarnfloat.h"

namespace {

struct Known1 {
  const char* function;
  int digits;
  const char* x;
  const char* value;
};

const Known1 kKnown1[] = {
    {"exp", 20, "-inf", "0"},
    {"exp", 20, "inf", "inf"},
    {"exp", 20, "nan", "nan"},
    {"exp", 20, "0", "1"},
    {"exp", 50, "1e-1000", "1"},
    {"exp", 3, "-1e-1000000", "1"},
    {"exp", 20, "1e10", "inf"},
    {"exp", 20, "-1e10", "0"},
    {"log", 20, "0", "-inf"},
    {"log", 20, "-1", "nan"},
    {"log", 20, "1", "0"},
    {"log", 20, "inf", "inf"},
    {"log", 5, "1.0000000000000000000000000000000000000000000000000000000000001", "1e-61"},
    {"log10", 20, "1e-999999999", "-999999999"},
    {"log10", 5, "1000", "3"},
    {"sin", 20, "-0", "-0"},
    {"sin", 20, "inf", "nan"},
    {"cos", 20, "-inf", "nan"},
    {"cos", 20, "0", "1"},
    {"tan", 20, "-0", "-0"},
    {"sin", 20, "1e2000000", "nan"},
    {"asin", 10, "1", "1.570796327"},
    {"asin", 10, "-1.5", "nan"},
    {"acos", 20, "1", "0"},
    {"acos", 10, "-1", "3.141592654"},
    {"atan", 10, "-inf", "-1.570796327"},
    {"atan", 10, "-0", "-0"},
    {"sinh", 10, "-inf", "-inf"},
    {"cosh", 10, "-inf", "inf"},
    {"cosh", 10, "1e-500", "1"},
    {"tanh", 10, "-inf", "-1"},
    {"tanh", 10, "1e9", "1"},
    {"sinh", 20, "1e-30", "1e-30"},
    {"ln", 10, "2", "0.6931471806"},
    {"sqrt", 10, "49", "7"},
    {"fabs", 10, "-3", "3"},
    {"floor", 10, "-2.5", "-3"},
    {"ceil", 10, "-2.5", "-2"},
    {"trunc", 10, "-2.5", "-2"},
};

struct Known2 {
  const char* function;
  int digits;
  const char* x;
  const char* y;
  const char* value;
};

const Known2 kKnown2[] = {
    {"pow", 31, "2", "100", "1267650600228229401496703205376"},
    {"pow", 5, "0.25", "1.5", "0.125"},
    {"pow", 5, "10", "-3", "0.001"},
    {"pow", 5, "100", "1.5", "1000"},
    {"pow", 5, "32", "0.2", "2"},
    {"pow", 5, "-2", "3", "-8"},
    {"pow", 5, "-2", "0.5", "nan"},
    {"pow", 5, "0", "0", "nan"},
    {"pow", 5, "inf", "0", "1"},
    {"pow", 5, "-0", "-3", "-inf"},
    {"pow", 5, "1", "inf", "1"},
    {"pow", 5, "0.5", "inf", "0"},
    {"pow", 5, "10", "1e20", "inf"},
    {"pow", 5, "10", "-1e20", "0"},
    {"pow", 5, "1.0000000000000000000000000001", "0.5", "1"},
    {"atan2", 10, "0", "-0", "3.141592654"},
    {"atan2", 10, "-0", "1", "-0"},
    {"atan2", 10, "-0", "-1", "-3.141592654"},
    {"atan2", 10, "1", "0", "1.570796327"},
    {"atan2", 10, "-1", "-1", "-2.35619449"},
    {"atan2", 10, "inf", "inf", "0.7853981634"},
    {"atan2", 10, "1", "inf", "0"},
    {"atan2", 10, "1e-1000000", "1", "1e-1000000"},
    {"fmod", 10, "7.5", "2", "1.5"},
};

bool same(const QuarnFloat& a, const QuarnFloat& b) {
  return (isnan(a) && isnan(b)) || (a == b && signbit(a) == signbit(b));
}

void append(const char* text, void* context) { *static_cast<std::string*>(context) += text; }

}  // namespace

TEST_CASE("special values, exact results and hard arguments") {
  for (const Known1& k : kKnown1) {
    QuarnSetDigits(100);
    const QuarnFloat x(k.x);
    QuarnSetDigits(k.digits);
    CAPTURE(k.function);
    CAPTURE(k.x);
    CHECK(same(QuarnEvalf1(k.function, x), QuarnFloat(k.value)));
  }
  for (const Known2& k : kKnown2) {
    QuarnSetDigits(k.digits < 50 ? 50 : k.digits);
    const QuarnFloat x(k.x);
    const QuarnFloat y(k.y);
    QuarnSetDigits(k.digits);
    CAPTURE(k.function);
    CAPTURE(k.x);
    CAPTURE(k.y);
    CHECK(same(QuarnEvalf2(k.function, x, y), QuarnFloat(k.value)));
  }
}

TEST_CASE("vectors are correctly rounded on every platform") {
  std::ifstream file("tests/data/elementary_vectors.txt");
  REQUIRE(file);
  std::string function;
  std::string x;
  std::string value;
  int digits = 0;
  int count = 0;
  while (file >> function >> digits >> x >> value) {
    QuarnSetDigits(digits);
    CAPTURE(function);
    CAPTURE(x);
    CHECK(same(QuarnEvalf1(function.c_str(), QuarnFloat(x)), QuarnFloat(value)));
    ++count;
  }
  CHECK(count == 324);
}

TEST_CASE("an unknown name gives NaN and one line on the console") {
  std::string text;
  QuarnRedirectConsole(append, &text);
  CHECK(isnan(QuarnEvalf1("sine", 1)));
  CHECK(text == "No function named \"sine\".\n");
  text.clear();
  CHECK(isnan(QuarnEvalf2("sin", 1, 1)));
  CHECK(text == "No function named \"sin\".\n");
  QuarnRedirectConsole(nullptr, nullptr);
}

TEST_CASE("a pair of sine and cosine is not remembered for other digits") {
  QuarnSetDigits(10);
  const QuarnFloat x = 1;
  const QuarnFloat coarse = sin(x);
  QuarnSetDigits(30);
  const QuarnFloat fine = sin(x);
  CHECK(fine == QuarnFloat("0.841470984807896506652502321630"));
  QuarnSetDigits(10);
  CHECK(sin(x) == coarse);
}
