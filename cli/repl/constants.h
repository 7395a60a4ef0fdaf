// Names that stand for numbers.
#pragma once

#include <span>
#include <string>

#include "quarn/quarnfloat.h"

namespace cli::repl {

struct Constant {
  const char* name;
  const char* purpose;
  Complex (*value)();  // at the working digits of the moment
  bool is_rounded = false;
  bool follows_digits = false;  // another number with other digits
};

std::span<const Constant> constants();
/// Null when there is none of this name.
const Constant* find_constant(const std::string& name);

}  // namespace cli::repl
