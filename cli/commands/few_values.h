// Some eigenvalues or singular values of large sparse matrices, for the commands that have all of dense ones.
#pragma once

#include <string>
#include <vector>

#include "cli/commands/options.h"
#include "cli/commands/proven.h"

namespace cli {

struct FewOptions {
  std::string matrix;
  TableOptions table;
  Integer count = 0;            // 0: all, of a dense matrix
  std::string near;             // a number; empty: none
  std::string which;            // one of the words below; empty: largest
  bool vectors = false;         // of eigenvalues
  std::string part = "values";  // "u" or "v": that factor in place of singular values
  ProofOptions proof;
  OutputOptions output;
};

/// --count and, for eigenvalues, --near, with what --which may be.
void add_few_options(Command& command, FewOptions& options, bool eigenvalues);

/// Throws Failure where --near or --which stand without --count, or options with it that know nothing of it.
void require_few(const FewOptions& options);

/// Those of a symmetric or Hermitian matrix have a proven distance from an eigenvalue, others an estimate.
void run_few_eigenvalues(const FewOptions& options);
void run_few_singular_values(const FewOptions& options);

}  // namespace cli
