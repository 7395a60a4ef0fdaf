// The transform of complex numbers, which two commands make.
#pragma once

#include <string>

#include "cli/commands/options.h"

namespace cli {

struct CfftOptions {
  std::string input;
  std::string column;
  std::string shape;
  Integer dimension = 0;  // 0: all
  bool backward = false;
  bool classic = false;
  OutputOptions output;
};

void run_cfft(const CfftOptions& options);

}  // namespace cli
