// quarn svd: singular values of a dense matrix.
#include <algorithm>

#include "cli/commands/certificate.h"
#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/few_values.h"
#include "cli/commands/options.h"
#include "cli/commands/proven.h"
#include "cli/commands/ranking.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"
#include "tesk2mp/proven_certify.hpp"

namespace cli {

namespace {

const std::vector<std::string> kSvdParts = {"values", "u", "v"};

template <class T>
Result result_of(const FewOptions& options, const DenseMatrix& given, const tesk2mp::Matrix<T>& a) {
  const bool values = options.part == "values";
  const Progress progress = Progress::estimated(
      "singular values",
      (values ? 8 : 60) * factorisation_cost(std::min(given.rows(), given.columns()), given.complex()));
  std::vector<QuarnFloat> errors;
  tesk2mp::SingularSystem<T> system;
  const std::string routine = given.complex() ? "QuarnMPX_zgesvd_" : "QuarnMPX_dgesvd_";
  const std::string what = values ? "Singular values" : options.part == "u" ? "U of A = U S V^H" : "V of A = U S V^H";
  Result result;
  result.notes = {what + (values ? " of the " : ", A the ") + description(given), digits_text() + ", by " + routine};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  std::string why_not;
  const auto prove = [&] {
    int worked_with = 0;
    const auto bounded = proven_result(options.proof, result,
                                       given.complex() ? "QuarnMPX_zproven_singular_" : "QuarnMPX_dproven_singular_",
                                       worked_with, [&] { return tesk2mp::proven::singular_values(a); });
    errors = errors_of(bounded);
    for (const auto& value : bounded) {
      system.values.push_back(tesk2mp::proven::known_value(value));
    }
    if (!options.proof.certificate.empty()) {
      write_certificate(options.proof.certificate,
                        tesk2mp::proven::certify_values(true, a, system.values, errors, worked_with));
    }
  };
  if (!values) {
    system = tesk2mp::svd(a);
    result.notes.emplace_back("an estimate: singular vectors are computed once, without a proof");
  } else if (!try_proof(options.proof, why_not, prove)) {
    system.values = tesk2mp::singular_values(a);
    if (!why_not.empty()) {
      result.notes.push_back(why_not);
    }
    if (!system.values.empty() && system.values.front() > 0) {
      result.notes.push_back("of the smallest " + estimate_note(system.values.back() / system.values.front(),
                                                                "its size beside the largest"));
    }
  }
  if (values) {
    const ResultColumn counts = count_column("i", positions(Integer(system.values.size())));
    result.table = {counts, aligned_column("value", system.values, largest_magnitude(system.values))};
    result.data = {counts, {"value", exact_cells(system.values)}};
    if (!errors.empty()) {
      add_errors(result, errors, "value", options.proof.errors);
    }
    result.picture = [&given, sizes = system.values](const std::string& file) {
      Panel panel = panel_of_elements("Singular values of the " + description(given), "value", sizes);
      panel.style = Panel::Style::points;
      // Sorted, the largest first; orders of magnitude apart they are powers of ten.
      if (!sizes.empty() && sizes.back() > 0 && sizes.front() > 1000 * sizes.back()) {
        panel.exponents = true;
        std::transform(sizes.begin(), sizes.end(), panel.curve.y.begin(), [](const QuarnFloat& x) { return log10(x); });
      }
      draw({panel}, file);
    };
    return result;
  }
  const DenseMatrix factor{"", options.part == "u" ? system.u : system.v};
  add_matrix(result, factor);
  result.picture = [what, factor](const std::string& file) { draw(map_of_magnitudes(what, factor), file); };
  return result;
}

void run_svd(const FewOptions& options) {
  require_few(options);
  if (options.count > 0) {
    return run_few_singular_values(options);
  }
  if (options.proof.insisted && options.part != "values") {
    throw bad_input("--proven and --certificate are for the values: without --factor");
  }
  const DenseMatrix given = read_exactly(options.proof.wanted() && options.part == "values",
                                         [&] { return read_operand(options.matrix, options.table, false); });
  std::visit([&](const auto& a) { deliver(result_of(options, given, a), options.output); }, given.elements);
}

constexpr const char* kSvdFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file; m by n, real or
complex. --factor u and v write the first min(m, n) columns of a factor. --plot draws the
values, or the magnitudes of the factor.

--count finds some values of a sparse matrix of any shape by products with it. The residuals
prove that each is, to all its digits, a singular value; that they are the ones that are wanted
is an estimate.

The numbers of the matrix are taken with all their digits, and D digits of every value are
true; one of which none is known, D digits below the largest, is printed as 0. Where no proof
is found, and for factors, a note says that the result is an estimate.

Examples:
  quarn svd examples/west0067.mtx --digits 50 --format csv
  printf '0 2\n1 0\n' | quarn svd - --factor v
  quarn svd examples/west0067.mtx --count 5 --digits 40)";

void declare_svd(Command& command) {
  auto options = std::make_shared<FewOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  command.choice("--factor", "WHAT", options->part, kSvdParts, "what to write: values (default), u, v");
  add_matrix_options(command, options->table);
  add_few_options(command, *options, false);
  add_true_digits(command, options->proof);
  add_certificate(command, options->proof);
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  set_proven_work(command, options, run_svd);
}

const Registered kSvdCommand(125, "svd", "singular values of a dense matrix", kSvdFooter, declare_svd);

}  // namespace

}  // namespace cli
