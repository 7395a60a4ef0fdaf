// quarn selftest: the published test ratios of routines, on this machine.
#include "tesk2mp/selftest.hpp"

#include <algorithm>

#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/system/progress.h"

namespace cli {

namespace {

constexpr Integer kDefaultOrder = 10;
constexpr Integer kLargestTestOrder = 500;

struct SelftestOptions {
  std::vector<std::string> routines;
  Integer order = kDefaultOrder;
  OutputOptions output;
};

void run_selftest(const SelftestOptions& options) {
  namespace selftest = tesk2mp::selftest;
  const std::size_t count = options.routines.empty() ? selftest::routines().size() : options.routines.size();
  Progress progress("examining routines", double(count));
  tesk2mp::Random random;
  const std::vector<selftest::Outcome> outcomes = selftest::run(options.routines, std::size_t(options.order), random,
                                                                [&](std::size_t /*done*/) { progress.advance(); });
  Result result;
  result.notes = {"Test ratios over matrices of order " + std::to_string(options.order) +
                      ": residuals in units of n norm(A) u, the largest of each routine",
                  digits_text() + "; more than " + std::to_string(selftest::kLargestRatio) + " counts as wrong"};
  result.facts = {{"digits", std::to_string(QuarnDigits()), true},
                  {"order", std::to_string(options.order), true},
                  {"limit", std::to_string(selftest::kLargestRatio), true}};
  ResultColumn routines{"routine", {}, false, true};
  ResultColumn ratios{"ratio", {}};
  ResultColumn verdicts{"verdict", {}, false, true};
  ResultColumn matrices{"matrix", {}, false, true};
  ResultColumn quantities{"residual", {}, false, true};
  std::string wrong;
  for (const selftest::Outcome& outcome : outcomes) {
    routines.cells.push_back(outcome.routine);
    ratios.cells.push_back(brief(outcome.ratio));
    verdicts.cells.emplace_back(outcome.passed ? "good" : "WRONG");
    matrices.cells.push_back(outcome.matrix);
    quantities.cells.push_back(outcome.what);
    wrong += outcome.passed ? "" : (wrong.empty() ? "" : ", ") + outcome.routine;
  }
  result.data = {routines, ratios, verdicts, matrices, quantities};
  result.table = result.data;
  deliver(result, options.output);
  if (!wrong.empty()) {
    throw Failure(ExitStatus::library, "quarn: over " + std::to_string(selftest::kLargestRatio) + ": " + wrong + "\n");
  }
}

constexpr const char* kSelftestFooter =
    R"(Without ROUTINE all are examined, real and complex: dgetrf, zgetrf, dgetri, dpotrf,
dsytrs, dgeqp3, dgelsy, dgglse, dgesvd, dgejsv, dsyev, dsyevx, dstedc, dsygv, dhseqr,
dgeev, dhgeqz, dggev, dtrsen, dtrsyl, dsqrtm, dlogm, dexpm and others. The matrices are
those of 'quarn gallery', the random ones drawn from the default seed. The exit status
is 1 when a ratio is more than 30. At least 7 digits are needed.

Examples:
  quarn selftest --digits 50
  quarn selftest dgesvd zgesvd --size 40)";

void declare_selftest(Command& command) {
  auto options = std::make_shared<SelftestOptions>();
  command.texts("ROUTINE", "", options->routines, "the routines to examine");
  command.number("--size", "N", options->order, 1, kLargestTestOrder, "order of the matrices, 1 to 500 (default 10)");
  command.add_digits();
  add_output_options(command, options->output);
  command.work = [options] { run_selftest(*options); };
}

const Registered kSelftestCommand(128, "selftest", "test ratios of routines on this machine", kSelftestFooter,
                                  declare_selftest);

}  // namespace

}  // namespace cli
