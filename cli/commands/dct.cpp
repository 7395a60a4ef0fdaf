// quarn dct and quarn dst: cosine and sine transforms of a real sequence, and back.
#include <span>

#include "cli/commands/options.h"
#include "cli/commands/true_transform.h"
#include "cli/io/sequence.h"
#include "cli/plot/plot.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "tesk2mp/transforms.hpp"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

using Transform = std::vector<QuarnFloat> (*)(std::span<const QuarnFloat> x, int type, const tesk2mp::Along& along);

struct Pair {
  const char* routine;
  const char* adjective;
  QuarnRealTransform::Kind kinds[4];
  Transform forward;
  Transform inverse;
};
using Kind = QuarnRealTransform::Kind;
constexpr Pair kCosine = {
    "QuarnMPX_dct_", "cosine", {Kind::dct1, Kind::dct2, Kind::dct3, Kind::dct4}, tesk2mp::dct, tesk2mp::idct};
constexpr Pair kSine = {
    "QuarnMPX_dst_", "sine", {Kind::dst1, Kind::dst2, Kind::dst3, Kind::dst4}, tesk2mp::dst, tesk2mp::idst};

struct DctOptions {
  std::string input;
  std::string column;
  TableOptions table;
  Integer type = 2;
  std::string norm = "backward";
  bool inverse = false;
  ProofOptions proof;
  OutputOptions output;
};

// The transform itself or, of the inverse, the type that is: 2 and 3 are each other's.
Kind kind_of(const Pair& pair, const DctOptions& options) {
  const Integer type = options.inverse && (options.type == 2 || options.type == 3) ? 5 - options.type : options.type;
  return pair.kinds[type - 1];
}

QuarnDivisor divisor_of(const DctOptions& options) {
  const bool divided = options.norm == (options.inverse ? "backward" : "forward");
  return options.norm == "ortho" ? QuarnDivisor::root : divided ? QuarnDivisor::length : QuarnDivisor::one;
}

Panel panel_of(const std::string& title, const std::string& x_title, const std::string& y_title,
               const QuarnFloat& start, const QuarnFloat& step, const std::vector<QuarnFloat>& y, Panel::Style style) {
  Panel panel{title, x_title, y_title, {{}, y}, {}, style};
  for (std::size_t i = 0; i < y.size(); ++i) {
    panel.curve.x.push_back(start + step * std::int64_t(i));
  }
  return panel;
}

void run(const Pair& pair, const DctOptions& options) {
  const NumberTable table = NumberTable::read(options.input, options.table);
  const Sequence sequence = sequence_from(table, options.column, digits_of_data(true));
  const std::vector<QuarnFloat>& x = sequence.values;
  const tesk2mp::Scaling scaling = options.norm == "ortho"     ? tesk2mp::Scaling::orthonormal
                                   : options.norm == "forward" ? tesk2mp::Scaling::forward
                                                               : tesk2mp::Scaling::backward;
  const std::string name =
      std::string(options.inverse ? "Inverse " : "") +
      (options.inverse ? pair.adjective : std::string(1, char(pair.adjective[0] - 'a' + 'A')) + (pair.adjective + 1)) +
      " transform of type " + std::to_string(options.type);
  const std::string count = counted(Integer(x.size()), "value", "values");
  const std::string counted = count + (sequence.name.empty() ? "" : " of '" + sequence.name + "'");

  Result result;
  result.notes = {name + " of " + count + sequence.described + " in " + table.source(),
                  precision_note(pair.routine, false)};
  result.facts = {{"input", options.input},
                  {"routine", pair.routine},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"n", std::to_string(x.size()), true},
                  {"type", std::to_string(options.type), true},
                  {"direction", options.inverse ? "inverse" : "forward"},
                  {"norm", options.norm}};
  constexpr double kWithBounds = 8;
  require_memory(kWithBounds * double(x.size()), "a transform of " + std::to_string(x.size()) + " values");
  const TrueNumbers<QuarnFloat> found = [&] {
    const Progress progress = Progress::estimated("transform", transform_cost(double(x.size())));
    return true_transform<QuarnFloat>(
        options.proof, pair.routine, true,
        [&] { return tesk2mp::proven::transform(kind_of(pair, options), at_working_digits(x), divisor_of(options)); },
        [&] { return (options.inverse ? pair.inverse : pair.forward)(x, int(options.type), {.norm = scaling}); },
        result);
  }();
  const std::vector<QuarnFloat>& y = found.values;
  result.data = {{"k", {}, true}, {"value", exact_cells(y)}};
  for (std::size_t k = 0; k < y.size(); ++k) {
    result.data[0].cells.push_back(std::to_string(k));
  }
  result.table = result.data;
  result.table[1] = aligned_column("value", y, largest_magnitude(y));
  if (!found.errors.empty()) {
    add_errors(result, found.errors, "value", options.proof.errors);
  }
  result.picture = [&](const std::string& file) {
    draw({panel_of("The " + counted, sequence.axis, sequence.quantity(), sequence.start, sequence.step, x,
                   Panel::Style::line),
          panel_of(name, "k", "result", 0, 1, y, Panel::Style::stems)},
         file);
  };
  deliver(result, options.output);
}

constexpr const char* kCosineFooter =
    R"(FILE holds columns of numbers as for quarn fft. The sums over j = 0 ... n-1 of x_j times

  type 1   2 cos(pi k j/(n-1)), 1 for j = 0, (-1)^k for j = n-1
  type 2   2 cos(pi k (2j+1)/(2n))
  type 3   2 cos(pi (2k+1) j/(2n)), 1 for j = 0: the quarter-wave cosine transform
  type 4   2 cos(pi (2k+1) (2j+1)/(4n))

--norm backward divides the inverse by N, forward the transform itself, ortho both by
sqrt(N), which makes them orthogonal; N is 2n, 2(n-1) for type 1. n is any number.

Examples:
  quarn dct examples/sunspots.csv --digits 40 --plot cosines.svg
  seq 1 8 | quarn dct - --type 4 --norm ortho --format csv
  quarn dct --inverse coefficients.csv)";

constexpr const char* kSineFooter =
    R"(FILE holds columns of numbers as for quarn fft. The sums over j = 0 ... n-1 of x_j times

  type 1   2 sin(pi (k+1) (j+1)/(n+1))
  type 2   2 sin(pi (k+1) (2j+1)/(2n))
  type 3   2 sin(pi (2k+1) (j+1)/(2n)), (-1)^k for j = n-1: the quarter-wave sine transform
  type 4   2 sin(pi (2k+1) (2j+1)/(4n))

--norm backward divides the inverse by N, forward the transform itself, ortho both by
sqrt(N), which makes them orthogonal; N is 2n, 2(n+1) for type 1. n is any number.

Examples:
  quarn dst examples/sunspots.csv --digits 40 --plot sines.svg
  seq 1 8 | quarn dst - --type 1 --norm ortho --format csv
  quarn dst --inverse coefficients.csv)";

void declare_dct(Command& command, const Pair& pair) {
  auto options = std::make_shared<DctOptions>();
  command.argument("FILE", options->input, "the data; - is standard input");
  command.text("--column", "NAME", options->column, "name or number of the column (default: the last numeric one)");
  add_table_options(command, options->table);
  command.number("--type", "T", options->type, 1, 4, "the type, 1 to 4 (default: 2)");
  command.choice("--norm", "NORM", options->norm, {"backward", "ortho", "forward"},
                 "what is divided by N (default: backward, the inverse)");
  command.flag("--inverse,--backward", options->inverse, "the inverse transform, from a spectrum back");
  add_true_digits(command, options->proof);
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  command.work = [options, &pair] {
    options->proof.start();
    run(pair, *options);
  };
}

const Registered kDct(22, "dct", "Cosine transforms of a real sequence", kCosineFooter,
                      [](Command& command) { declare_dct(command, kCosine); });
const Registered kDst(24, "dst", "Sine transforms of a real sequence", kSineFooter,
                      [](Command& command) { declare_dct(command, kSine); });

}  // namespace

}  // namespace cli
