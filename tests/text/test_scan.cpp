// Formatted scan.
#include <doctest/doctest.h>

#include <climits>
#include <cstring>
#include <string>

#include "quarn/quarnfloat.h"
#include "support/digits.h"

TEST_CASE("a message buffer gives back its name and number") {
  char name[8] = {};
  Integer number = 0;
  CHECK(QFsscanf("C06FAF     3 99999     1                1", "%s %5ld", name, &number) == 2);
  CHECK(std::string(name) == "C06FAF");
  CHECK(number == 3);

  // A longer name is cut, and the number behind it is still found.
  CHECK(QFsscanf("F06PAF/DGEMV     1", "%s %5ld", name, &number) == 2);
  CHECK(std::string(name) == "F06PAF/");
  CHECK(number == 1);

  CHECK(QFsscanf("NONE", "%s %5ld", name, &number) == 1);
  CHECK(std::string(name) == "NONE");
}

TEST_CASE("integers") {
  const struct {
    const char* text;
    const char* format;
    int set;
    Integer value;
    Integer position;
  } cases[] = {
      {"42", "%d%n", 1, 42, 2},
      {"  \t\n-42x", "%ld%n", 1, -42, 7},
      {"+7 ", "%lld%n", 1, 7, 2},
      {"12345", "%3d%n", 1, 123, 3},
      {"-12345", "%3d%n", 1, -12, 3},
      {"   12345", "%2d%n", 1, 12, 5},
      {"-5", "%1d%n", 0, 77, 88},
      {"2147483647", "%d%n", 1, INT_MAX, 10},
      {"2147483648", "%d%n", 1, INT_MAX, 10},
      {"-2147483648", "%d%n", 1, INT_MIN, 11},
      {"-2147483649", "%d%n", 1, INT_MIN, 11},
      {"-99999999999999999999999999999", "%d%n", 1, INT_MIN, 30},
      {"00000000000000000000000000000000000009", "%u%n", 1, 9, 38},
      {"x5", "%d%n", 0, 77, 88},
      {"-", "%d%n", 0, 77, 88},
      {"- 5", "%d%n", 0, 77, 88},
      {"", "%d%n", -1, 77, 88},
      {"   ", "%d%n", -1, 77, 88},
      {"1,2", "%*d,%d%n", 1, 2, 3},
      {"1", "%*d%d", 0, 77, 88},
      {"ab", "abc%d", -1, 77, 88},
      {"abd5", "abc%d", 0, 77, 88},
      {"a  5", "a%d%n", 1, 5, 4},
      {"50 %3", "%*d%%%d%n", 1, 3, 5},
      {"n=5;", "n = %d ; %n", 1, 5, 4},
      {"n =5 ;", "n = %d ; %n", 1, 5, 6},
      {"5", "%*n%d%n", 1, 5, 1},
      {"5", "%q", 0, 77, 88},
      {"5", "%", 0, 77, 88},
      {"5", "%e", 0, 77, 88},
      {"5", "%s", 0, 77, 88},
  };
  for (const auto& c : cases) {
    CAPTURE(std::string(c.text));
    CAPTURE(std::string(c.format));
    Integer value = 77;
    Integer position = 88;
    CHECK(QFsscanf(c.text, c.format, &value, &position) == c.set);
    CHECK(value == c.value);
    CHECK(position == c.position);
  }
}

TEST_CASE("numbers: the longest one that the text starts with") {
  const support::Digits scope(30);
  const struct {
    const char* text;
    const char* format;
    int set;
    const char* value;
    Integer position;
  } cases[] = {
      {"3.14159", "%e%n", 1, "3.14159", 7},
      {" -1e-3,", "%lf%n", 1, "-0.001", 6},
      {"12e", "%g%n", 1, "12", 2},
      {"12e+", "%G%n", 1, "12", 2},
      {"12e+x", "%E%n", 1, "12", 2},
      {"12.", "%F%n", 1, "12", 3},
      {".5.5", "%e%n", 1, "0.5", 2},
      {"12345.678", "%6e%n", 1, "12345", 6},
      {"1e55", "%3e%n", 1, "100000", 3},
      {"1e55", "%2e%n", 1, "1", 1},
      {"infinite", "%e%n", 1, "inf", 3},
      {"-Infinity8", "%e%n", 1, "-inf", 9},
      {"nano", "%e%n", 1, "nan", 3},
      {"1234567890123456789012345678905", "%e%n", 1, "1.2345678901234567890123456789e+30", 31},
      {"1e999999999999999999999", "%e%n", 1, "inf", 23},
      {"e5", "%e%n", 0, "7", 88},
      {".", "%e%n", 0, "7", 88},
      {"+", "%e%n", 0, "7", 88},
      {"-.e5", "%e%n", 0, "7", 88},
      {"", "%e%n", -1, "7", 88},
      {"5", "%d%n", 0, "7", 88},
      {"1 2", "%*e %e%n", 1, "2", 3},
  };
  for (const auto& c : cases) {
    CAPTURE(std::string(c.text));
    CAPTURE(std::string(c.format));
    QuarnFloat value = 7;
    Integer position = 88;
    CHECK(QFsscanf(c.text, c.format, &value, &position) == c.set);
    CHECK(value.to_string() == c.value);
    CHECK(position == c.position);
  }
}

TEST_CASE("character arrays never overflow") {
  struct {
    char text[4];
    char guard[4];
  } target;
  const auto scan = [&](const char* text, const char* format) {
    std::memset(&target, '#', sizeof target);
    const int set = QFsscanf(text, format, target.text);
    CHECK(std::string(target.guard, 4) == "####");
    return std::to_string(set) + ":" + std::string(target.text, 4);
  };
  using namespace std::string_literals;
  CHECK(scan("  ab cd", "%s") == "1:ab\0#"s);
  CHECK(scan("abc", "%s") == "1:abc\0"s);
  CHECK(scan("abcdefgh", "%s") == "1:abc\0"s);
  CHECK(scan("abcdefgh", "%2s") == "1:ab\0#"s);
  CHECK(scan("abcdefgh", "%999999999999s") == "1:abc\0"s);
  CHECK(scan("   ", "%s") == "-1:####");
  CHECK(scan(" xyz", "%c") == "1: ###");
  CHECK(scan(" xyz", " %c") == "1:x###");
  CHECK(scan("abcdefgh", "%3c") == "1:abc#");
  CHECK(scan("abcdefgh", "%8c") == "1:abcd");
  CHECK(scan("abc", "%4c") == "-1:####");
  CHECK(scan("1", "%d") == "0:####");

  char single[1] = {'#'};
  CHECK(QFsscanf("word", "%s", single) == 1);
  CHECK(single[0] == '\0');
}

TEST_CASE("a scan stops where its targets do") {
  Integer a = 0;
  Integer b = 0;
  CHECK(QFsscanf("1 2 3", "%d %d %d", &a, &b) == 2);
  CHECK(QFsscanf("1 two", "%d %d", &a, &b) == 1);
  CHECK(QFsscanf("1", "%d %d", &a, &b) == 1);
  CHECK(QFsscanf("nothing", "nothing") == 0);
  CHECK(QFscan(nullptr, "%d", nullptr, 0) == -1);
  CHECK(QFscan("1", nullptr, nullptr, 0) == -1);
  CHECK(QFscan("1", "%d", nullptr, 0) == 0);
}
