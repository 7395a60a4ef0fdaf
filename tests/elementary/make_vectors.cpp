// Writes tests/data/elementary_vectors.txt: lines "function digits argument value", the value correctly rounded by
// MPFR, for the platforms that have no MPFR. Run as: make_elementary_vectors > tests/data/elementary_vectors.txt
#include <cstdio>
#include <random>

#include "elementary/mpfr_oracle.h"

int main() {
  struct {
    const char* name;
    oracle::MpfrFunction1 reference;
    bool unit;
    bool positive;
  } const functions[] = {
      {"exp", mpfr_exp, false, false},   {"log", mpfr_log, false, true},    {"log10", mpfr_log10, false, true},
      {"sin", mpfr_sin, false, false},   {"cos", mpfr_cos, false, false},   {"tan", mpfr_tan, false, false},
      {"asin", mpfr_asin, true, false},  {"acos", mpfr_acos, true, false},  {"atan", mpfr_atan, false, false},
      {"sinh", mpfr_sinh, false, false}, {"cosh", mpfr_cosh, false, false}, {"tanh", mpfr_tanh, true, false}};
  std::mt19937 random(7);
  for (const auto& f : functions) {
    for (const int digits : {1, 5, 9, 18, 20, 36, 50, 100, 200}) {
      for (int i = 0; i < 3; ++i) {
        std::string x = !f.positive && random() % 2 == 0 ? "-0." : "0.";
        x += char('1' + random() % 9);
        for (int k = 1; k < digits; ++k) {
          x += char('0' + random() % 10);
        }
        x += "e" + std::to_string(f.unit ? -int(random() % 4) : int(random() % 7) - 3);
        std::printf("%s %d %s %s\n", f.name, digits, x.c_str(),
                    oracle::apply(f.reference, x, 8L * digits + 400, digits).c_str());
      }
    }
  }
  return 0;
}
