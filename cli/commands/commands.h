// The sub-commands: one function a file under commands/, called once to declare options and work.
#pragma once

#include "cli/commands/options.h"

namespace cli {

void add_fft(CLI::App& app, Session& session);
void add_cfft(CLI::App& app, Session& session);
void add_constants(CLI::App& app, Session& session);
void add_rank(CLI::App& app, Session& session);
void add_sort(CLI::App& app, Session& session);
void add_random(CLI::App& app, Session& session);
void add_spmv(CLI::App& app, Session& session);
void add_sparse(CLI::App& app, Session& session);
void add_lu(CLI::App& app, Session& session);
void add_chol(CLI::App& app, Session& session);
void add_norm(CLI::App& app, Session& session);
void add_eig(CLI::App& app, Session& session);
void add_zeros(CLI::App& app, Session& session);
void add_repl(CLI::App& app, Session& session);
void add_solve(CLI::App& app, Session& session);
void add_details(CLI::App& app, Session& session);
void add_help(CLI::App& app, Session& session);

}  // namespace cli
