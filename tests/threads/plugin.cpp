// A library that is loaded while threads run.
#include "threads/workload.h"

extern "C" __attribute__((visibility("default"))) int compute(int digits, char* text, std::size_t capacity) {
  const std::string result = threads::numbers(digits) + threads::routines(digits);
  text[result.copy(text, capacity - 1)] = '\0';
  return QuarnDigits();
}
