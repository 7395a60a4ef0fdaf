// The transform of complex numbers, which two commands make.
#pragma once

#include <string>

#include "cli/commands/options.h"
#include "cli/commands/proven.h"

namespace cli {

struct CfftOptions {
  std::string input;
  std::string column;
  std::string shape;
  Integer dimension = 0;  // 0: all
  bool backward = false;
  bool classic = false;
  TableOptions table;
  ProofOptions proof;
  OutputOptions output;
};

/// Of what the text of the input says.
void run_cfft(const CfftOptions& options, const std::string& text);

}  // namespace cli
