// quarn random: uniform random numbers on (0, 1), from a stream that a file can carry from run to run.
#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <sstream>

#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/input.h"
#include "cli/io/output.h"
#include "cli/plot/plot.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

constexpr Integer kLastGenerator = 273;
constexpr Integer kNoGenerator = -1;  // none is asked for
constexpr Integer kMostNumbers = 100'000'000;
constexpr Integer kSmallestModulus = 16'760'000;  // every modulus of the multiple-set generators is above
constexpr Integer kBasicRadix = 32768;
constexpr const char* kStateTitle = "quarn-random-state";

struct Stream {
  Integer generator = 0;
  std::array<Integer, 4> seed{};
};

struct RandomOptions {
  Integer count = 1;
  Integer generator = kNoGenerator;  // 0
  std::vector<Integer> seed;
  std::string state;
  bool classic = false;
  OutputOptions output;
};

// The reason why the library would draw no random numbers from the stream; empty for a good one.
std::string complaint_about(const Stream& stream) {
  const bool basic = stream.generator == 0;
  for (const Integer part : stream.seed) {
    if (part < (basic ? 0 : 1) || part >= (basic ? kBasicRadix : kSmallestModulus)) {
      return basic ? "the seeds of generator 0 must be 0 to 32767"
                   : "the seeds of generators 1 to 273 must be 1 to 16759999";
    }
  }
  if (stream.seed == std::array<Integer, 4>{}) {
    return "the seeds must not all be 0";
  }
  return {};
}

// A state that has moved on may pass the bound for new seeds, up to its modulus.
Stream read_state(const std::string& file) {
  std::istringstream text(read_input(file));
  std::string title;
  std::string rest;
  Stream stream;
  text >> title >> stream.generator;
  for (Integer& part : stream.seed) {
    text >> part;
  }
  if (text.fail() || title != kStateTitle || (text >> rest) || stream.generator < 0 ||
      stream.generator > kLastGenerator) {
    throw bad_input(file + ":1: not a saved state: '" + kStateTitle + "', the generator and its four seeds");
  }
  for (const Integer part : stream.seed) {
    if (part < 0 || (stream.generator == 0 && part >= kBasicRadix) || (stream.generator > 0 && part == 0)) {
      throw bad_input(file + ":1: " + std::to_string(part) + " is no seed of generator " +
                      std::to_string(stream.generator));
    }
  }
  if (stream.seed == std::array<Integer, 4>{}) {
    throw bad_input(file + ":1: the seeds must not all be 0");
  }
  return stream;
}

std::string seed_text(const Stream& stream) {
  std::string text;
  for (const Integer part : stream.seed) {
    text += (text.empty() ? "" : " ") + std::to_string(part);
  }
  return text;
}

Stream start_of(const RandomOptions& options) {
  if (!options.state.empty() && std::filesystem::exists(options.state)) {
    if (options.generator != kNoGenerator || !options.seed.empty()) {
      throw bad_input("--state: " + options.state + " exists and says how to go on: leave out --igen and --seed");
    }
    return read_state(options.state);
  }
  Stream stream;
  stream.seed = tesk2mp::Random().state();
  stream.generator = std::max<Integer>(0, options.generator);
  std::copy(options.seed.begin(), options.seed.end(), stream.seed.begin());
  const std::string complaint = complaint_about(stream);
  if (!complaint.empty()) {
    throw bad_input("--seed: " + complaint);
  }
  return stream;
}

// How many numbers fall into each of 10 to 50 equal parts of (0, 1).
Panel histogram(const std::vector<QuarnFloat>& values, const std::string& title) {
  constexpr std::size_t kFewestBars = 10;
  constexpr std::size_t kMostBars = 50;
  const std::size_t bars = std::clamp(std::size_t(std::sqrt(double(values.size()))), kFewestBars, kMostBars);
  std::vector<std::int64_t> counts(bars);
  for (const QuarnFloat& value : values) {
    ++counts[std::min(bars - 1, std::size_t(FloatToDouble(value) * double(bars)))];
  }
  Panel panel;
  panel.title = title;
  panel.x_title = "x";
  panel.y_title = "numbers in 1/" + std::to_string(bars);
  panel.style = Panel::Style::bars;
  for (std::size_t k = 0; k < bars; ++k) {
    panel.curve.x.push_back(QuarnFloat(std::int64_t(2 * k + 1)) / std::int64_t(2 * bars));
    panel.curve.y.emplace_back(counts[k]);
  }
  return panel;
}

Panel successive_pairs(const std::vector<QuarnFloat>& values) {
  constexpr std::size_t kMostPairs = 20'000;
  const std::size_t pairs = std::min(kMostPairs, values.size() - 1);
  Panel panel;
  panel.title =
      (pairs + 1 == values.size() ? "Each number and the next: " : "The first of each number and the next: ") +
      counted(Integer(pairs), "pair", "pairs");
  panel.x_title = "x_k";
  panel.y_title = "x_(k+1)";
  panel.style = Panel::Style::points;
  panel.curve.x.assign(values.begin(), values.begin() + std::ptrdiff_t(pairs));
  panel.curve.y.assign(values.begin() + 1, values.begin() + std::ptrdiff_t(pairs) + 1);
  return panel;
}

void run_random(const RandomOptions& options) {
  Stream stream = start_of(options);
  require_memory(options.count, std::to_string(options.count) + " numbers");
  const std::string routine = options.classic ? "QuarnMP_g05kaf_" : "QuarnMPX_g05kaf_";
  const std::string first_seed = seed_text(stream);
  std::vector<QuarnFloat> values;
  values.reserve(std::size_t(options.count));
  tesk2mp::Random random(stream.generator, stream.seed);
  Progress progress("drawing numbers", options.count);
  for (Integer i = 0; i < options.count; ++i) {
    progress.advance();
    values.push_back(options.classic ? random.classic() : random());
  }
  stream.seed = random.state();

  const std::string digits = std::to_string(QuarnDigits());
  const std::string counted =
      std::to_string(options.count) + (options.count == 1 ? " random number" : " random numbers");
  const std::string generator = std::to_string(stream.generator);
  Result result;
  result.notes = {counted + " on (0, 1), generator " + generator + ", seeds " + first_seed,
                  digits_text() + ", by " + routine +
                      (options.classic ? " (classic entry: 16 to 28 digits are random)" : " (every digit is random)"),
                  "next seeds " + seed_text(stream)};
  result.facts = {{"routine", routine},
                  {"digits", digits, true},
                  {"generator", generator, true},
                  {"seed", first_seed},
                  {"next_seed", seed_text(stream)}};
  result.data = {{"value", exact_cells(values)}};
  result.table = result.data;
  result.table[0].words = true;
  result.picture = [&](const std::string& file) {
    std::vector<Panel> panels = {histogram(values, counted + ", generator " + generator)};
    if (values.size() > 1) {
      panels.push_back(successive_pairs(values));
    }
    draw(panels, file);
  };
  deliver(result, options.output);
  if (!options.state.empty()) {
    write_output(std::string(kStateTitle) + " " + generator + " " + seed_text(stream) + "\n", options.state);
  }
}

constexpr const char* kRandomFooter =
    R"(Generator 0 is congruential; 1 to 273 are combined of four, with longer periods.
--state goes on with the stream saved in FILE, or starts one there.
--plot draws how many numbers fall where, and each number against the next.

Examples:
  quarn random --count 5 --digits 50
  quarn random --count 1000 --igen 7 --seed 11 12 13 14 --format csv
  quarn random --count 3 --state stream.txt)";

void declare_random(Command& command) {
  auto options = std::make_shared<RandomOptions>();
  command.number("--count", "N", options->count, 1, kMostNumbers, "how many, 1 to 100000000 (default 1)");
  command.number("--igen", "I", options->generator, 0, kLastGenerator, "the generator, 0 to 273 (default 0)");
  command.numbers("--seed", "S", 4, options->seed, "the four seeds (default: those of the library)");
  command.text("--state", "FILE", options->state, "go on with the stream saved in this file, and save it there");
  command.flag("--classic", options->classic, "use the classic entry: 16 to 28 random digits at any precision");
  command.add_digits();
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  command.check = [options] {
    if (options->state == "-") {
      throw bad_input("--state: a file is needed, standard input cannot be written");
    }
  };
  command.work = [options] { run_random(*options); };
}

const Registered kRandomCommand(60, "random", "draw uniform random numbers", kRandomFooter, declare_random);

}  // namespace

}  // namespace cli
