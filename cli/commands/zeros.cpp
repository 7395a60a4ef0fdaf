// quarn zeros: the zeros of a polynomial of degree 4.
#include <algorithm>
#include <array>

#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/ranking.h"
#include "cli/io/matrix_input.h"
#include "cli/plot/plot.h"
#include "tesk2mp/tesk2mp.hpp"

namespace cli {

namespace {

struct ZerosOptions {
  std::array<std::string, 5> coefficients;
  OutputOptions output;
};

constexpr std::array kNames = {"E", "A", "B", "C", "D"};  // of z^4 first

void run_zeros(const ZerosOptions& options) {
  std::array<QuarnFloat, 5> k;
  for (std::size_t i = 0; i < k.size(); ++i) {
    k[i] = QuarnFloat(options.coefficients[i]);
    if (!isfinite(k[i])) {
      throw bad_input(std::string(kNames[i]) + ": '" + options.coefficients[i] + "' is not a number");
    }
  }
  std::vector<Complex> zeros;
  std::vector<QuarnFloat> errors;
  for (const tesk2mp::Zero& zero : tesk2mp::quartic_zeros(k[0], k[1], k[2], k[3], k[4])) {
    zeros.push_back(zero.value);
    errors.push_back(zero.error);
  }

  const std::vector<QuarnFloat> re = real_parts(zeros);
  const std::vector<QuarnFloat> im = imaginary_parts(zeros);
  const QuarnFloat largest = std::max(largest_magnitude(re), largest_magnitude(im));
  Result result;
  result.notes = {"Zeros of E z^4 + A z^3 + B z^2 + C z + D", digits_text() + ", by QuarnMPX_c02alf_",
                  "error: what one rounding of the coefficients does to the zero"};
  result.facts = {{"routine", "QuarnMPX_c02alf_"}, {"digits", std::to_string(QuarnDigits()), true}};
  const ResultColumn counts = count_column("i", positions(4));
  result.table = {counts,
                  aligned_column("real", re, largest),
                  aligned_column("imaginary", im, largest),
                  {"error", brief_cells(errors)}};
  result.data = {counts, {"real", exact_cells(re)}, {"imaginary", exact_cells(im)}, {"error", exact_cells(errors)}};
  result.picture = [&](const std::string& file) { draw(ComplexPlane{"zeros of the polynomial", zeros}, file); };
  deliver(result, options.output);
}

constexpr const char* kFooter =
    R"(The five coefficients are decimal numbers, E for z^4 first; E must not be 0. A digit
follows the minus sign: -0.5, not -.5. --plot draws the complex plane.

Examples:
  quarn zeros 1 -10 35 -50 24
  quarn zeros 1 0 0 0 -2 --digits 60 --plot zeros.svg)";

void declare(Command& command) {
  auto options = std::make_shared<ZerosOptions>();
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    const std::string power = i + 1 == kNames.size() ? "1" : "z^" + std::to_string(kNames.size() - 1 - i);
    command.argument(kNames[i], options->coefficients[i], "the coefficient of " + power);
  }
  command.add_digits();
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  command.work = [options] { run_zeros(*options); };
}

const Registered kCommand(130, "zeros", "zeros of a polynomial of degree 4, with error estimates", kFooter, declare);

}  // namespace

}  // namespace cli
