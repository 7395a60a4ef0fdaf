// The frame of the examples in the routine reference.
#pragma once

#include <initializer_list>
#include <iostream>

#include "tesk2mp/tesk2mp.h"

struct Example {
  const char* code;
  void (*run)();
};

/// Runs the examples, a line "[code]" before the output of each, at 20 digits.
inline int run_examples(std::initializer_list<Example> examples) {
  for (const Example& example : examples) {
    QuarnSetDigits(20);
    std::cout << "[" << example.code << "]\n";
    example.run();
  }
  return 0;
}
