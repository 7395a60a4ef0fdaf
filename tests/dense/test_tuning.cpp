#include <doctest/doctest.h>

#include <set>
#include <string>

#include "src/dense/tuning.h"

namespace {

Integer read(Integer ispec, const char* name, int length = 6) {
  Integer value = -99;
  QuarnMP_f07zaz_(ispec, name, &value, 0, length);
  return value;
}

}  // namespace

TEST_CASE("shipped values and refusals") {
  struct Row {
    Integer ispec;
    const char* name;
    int length;
    Integer value;
  };
  const Row rows[] = {
      {1, "F07ADF", 6, 1},  {2, "F07ADF", 6, 0},   {3, "F07ADF", 6, 0},  {1, "F07ARF", 6, 1},   {1, "F07FRF", 6, 1},
      {1, "F08PEF", 6, 0},  {4, "F08PEF", 6, 1},   {8, "F08PEF", 6, 1},  {5, "F08PEF", 6, 0},   {1, "ADFF07", 6, 1},
      {4, "PEFF08", 6, 1},  {0, "F07ADF", 6, -1},  {9, "F07ADF", 6, -1}, {-1, "NONAME", 6, -1}, {9, "NONAME", 6, -1},
      {1, "NONAME", 6, -2}, {1, "F07ZZF", 6, -2},  {1, "F09ADF", 6, -2}, {1, "F07ADF", 5, -2},  {1, "", 0, -2},
      {1, "f07adf", 6, -2}, {1, "F07ADF", -1, -2},
  };
  for (const Row& row : rows) {
    CAPTURE(row.name);
    CAPTURE(row.ispec);
    CHECK(read(row.ispec, row.name, row.length) == row.value);
  }
}

TEST_CASE("a written cell is read back, alone") {
  Integer value = 32;
  QuarnMP_f07zaz_(1, "F07MDF", &value, 1, 6);
  CHECK(value == 32);
  CHECK(read(1, "F07MDF") == 32);
  CHECK(read(2, "F07MDF") == 0);
  CHECK(read(1, "F07ADF") == 1);
  CHECK(read(1, "F07MRF") == 1);
  CHECK(tesk::tuning_value(tesk::kBlockSize, "F07MDF") == 32);
  value = 1;
  QuarnMP_f07zaz_(1, "F07MDF", &value, 1, 6);
  // Refused calls write nothing.
  value = 7;
  QuarnMP_f07zaz_(9, "F07ADF", &value, 1, 6);
  CHECK(value == -1);
  value = 7;
  QuarnMP_f07zaz_(1, "F07QQF", &value, 1, 6);
  CHECK(value == -2);
  CHECK(read(1, "F07ADF") == 1);
}

TEST_CASE("every row of the table is reached by some routine") {
  // Each row is marked through the names that lead to it; 46 marks mean 46 rows.
  std::set<Integer> rows;
  Integer mark = 1000;
  for (const char chapter : {'7', '8'}) {
    for (char first = 'A'; first <= 'Z'; ++first) {
      for (char second = 'A'; second <= 'Z'; ++second) {
        const std::string name = {'F', '0', chapter, first, second, 'F'};
        Integer value = read(7, name.c_str());
        if (value == 0) {
          value = ++mark;
          QuarnMP_f07zaz_(7, name.c_str(), &value, 1, 6);
        }
        if (value > 0) {
          rows.insert(value);
        }
      }
    }
  }
  CHECK(rows.size() == 46);
}
