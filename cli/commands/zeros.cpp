// quarn zeros: the zeros of a polynomial.
#include <algorithm>
#include <variant>

#include "cli/commands/certificate.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/proven.h"
#include "cli/commands/ranking.h"
#include "cli/io/matrix_input.h"
#include "cli/io/matrix_output.h"
#include "cli/io/number_text.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"
#include "tesk2mp/proven_certify.hpp"

namespace cli {

namespace {

struct ZerosOptions {
  std::vector<std::string> coefficients;
  ProofOptions proof;
  OutputOptions output;
};

std::vector<Complex> coefficients_of(const ZerosOptions& options) {
  const tesk2mp::Digits scope(digits_of_data(options.proof.wanted()));
  std::vector<Complex> coefficients;
  for (const std::string& text : options.coefficients) {
    const std::string place = "coefficient " + std::to_string(coefficients.size() + 1) + ": ";
    if (!is_complex_number(text)) {
      throw bad_input(place + shown_text(text) + " is not a number");
    }
    coefficients.push_back(to_complex_number(text));
    if (const char* reason = why_unfit(text, coefficients.back())) {
      throw bad_input(place + shown_text(text) + " " + reason);
    }
  }
  return coefficients;
}

void run_zeros(const ZerosOptions& options) {
  const std::vector<Complex> a = coefficients_of(options);
  const bool real = std::all_of(a.begin(), a.end(), [](const Complex& x) { return x.im == 0; });
  const double degree = double(a.size() - 1);
  constexpr double kOperations = 40;
  const Progress progress = Progress::estimated("zeros", kOperations * degree * degree);
  Result result;
  const std::string routine = real ? "QuarnMPX_dpzeros_" : "QuarnMPX_zpzeros_";
  std::vector<Complex> zeros;
  std::vector<tesk2mp::proven::BoundedRoot> roots;
  std::vector<QuarnFloat> errors;
  result.notes = {"Zeros of the polynomial of degree " + std::to_string(a.size() - 1),
                  digits_text() + ", by " + routine};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  std::string why_not;
  const bool proven = try_proof(options.proof, why_not, [&] {
    int worked_with = 0;
    roots =
        proven_result(options.proof, result, real ? "QuarnMPX_dproven_zeros_" : "QuarnMPX_zproven_zeros_", worked_with,
                      [&] { return real ? tesk2mp::proven::zeros(real_parts(a)) : tesk2mp::proven::zeros(a); });
    errors = errors_of(roots);
    for (const auto& root : roots) {
      zeros.push_back(tesk2mp::proven::known_value(root));
    }
    if (!options.proof.certificate.empty()) {
      write_certificate(options.proof.certificate,
                        tesk2mp::proven::certify_zeros(a, printed_roots(roots), worked_with));
    }
  });
  if (!proven) {
    if (!why_not.empty()) {
      result.notes.push_back(why_not);
    }
    for (const tesk2mp::Zero& zero : real ? tesk2mp::polynomial_zeros(real_parts(a)) : tesk2mp::polynomial_zeros(a)) {
      zeros.push_back(zero.value);
      errors.push_back(zero.error);
    }
  }

  add_complex_numbers(result, zeros);
  add_errors(result, errors, "zero");
  add_counts(result, roots);
  result.picture = [&](const std::string& file) { draw(ComplexPlane{"Zeros of the polynomial", zeros}, file); };
  deliver(result, options.output);
}

constexpr const char* kZerosFooter =
    R"(The coefficients are decimal numbers, real or complex, that of the highest power first;
it must not be 0. A digit follows the minus sign: -0.5, not -.5. Multiple zeros and zeros
of very different sizes are found to all digits. --plot draws the complex plane.
The coefficients are taken with all their digits, and D digits of every zero are true;
zeros that share a disc have a count.

Examples:
  quarn zeros 1 -10 35 -50 24
  quarn zeros 1 0 0 0 0 -2 --digits 60 --plot zeros.svg
  quarn zeros 1 2i -3+i)";

void declare_zeros(Command& command) {
  auto options = std::make_shared<ZerosOptions>();
  command.texts("COEFFICIENT", "", options->coefficients, "the coefficients, that of the highest power first");
  command.options.back().required = true;
  add_true_digits(command, options->proof);
  add_certificate(command, options->proof);
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  set_proven_work(command, options, run_zeros);
}

const Registered kZerosCommand(130, "zeros", "zeros of a polynomial, with error bounds", kZerosFooter, declare_zeros);

}  // namespace

}  // namespace cli
