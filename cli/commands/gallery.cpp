// quarn gallery: test matrices by name.
#include "tesk2mp/gallery.hpp"

#include <algorithm>

#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/matrix_output.h"
#include "cli/io/number_text.h"
#include "cli/plot/plot.h"

namespace cli {

namespace {

constexpr std::size_t kLargestOrder = 10'000;

struct GalleryOptions {
  std::string name;
  std::string order;
  std::vector<std::string> parameters;
  std::vector<Integer> seed;
  OutputOptions output;
};

void list_gallery(const GalleryOptions& options) {
  for (const auto& [given, what] :
       {std::pair{options.output.format == Format::mtx, "--format mtx"},
        std::pair{!options.output.picture.empty(), "--plot"}, std::pair{!options.seed.empty(), "--seed"},
        std::pair{!options.order.empty(), "N"}}) {
    if (given) {
      throw bad_input(std::string(what) + " is for a matrix, and the list of matrices is none");
    }
  }
  Result result;
  result.notes = {"Test matrices: quarn gallery NAME N [PARAMETER ...]"};
  ResultColumn names{"name", {}, false, true};
  ResultColumn parameters{"parameters", {}, false, true};
  ResultColumn purposes{"purpose", {}, false, true};
  for (const tesk2mp::gallery::Entry& entry : tesk2mp::gallery::entries()) {
    names.cells.push_back(entry.name);
    parameters.cells.push_back(entry.parameters);
    purposes.cells.push_back(entry.purpose);
  }
  result.data = {names, parameters, purposes};
  result.table = result.data;
  deliver(result, options.output);
}

tesk2mp::Random stream(const std::vector<Integer>& seed) {
  if (seed.empty()) {
    return tesk2mp::Random();
  }
  tesk2mp::Random::State state{};
  std::copy(seed.begin(), seed.end(), state.begin());
  return {0, state};
}

template <class T>
void deliver_matrix(const GalleryOptions& options, std::size_t order, const std::vector<T>& parameters) {
  tesk2mp::Random random = stream(options.seed);
  const DenseMatrix matrix{"", tesk2mp::gallery::matrix<T>(options.name, order, parameters, random)};
  const std::string routine = matrix.complex() ? "QuarnMPX_zgallery_" : "QuarnMPX_dgallery_";
  Result result;
  result.notes = {"The matrix '" + options.name + "' of order " + options.order, digits_text() + ", by " + routine};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}, {"name", options.name}};
  add_matrix(result, matrix);
  result.picture = [&](const std::string& file) { draw(map_of_magnitudes(options.name, matrix), file); };
  deliver(result, options.output);
}

void run_gallery(const GalleryOptions& options) {
  if (options.name.empty() || options.name == "list") {
    return list_gallery(options);
  }
  const bool whole =
      !options.order.empty() && options.order.size() <= 5 &&
      std::all_of(options.order.begin(), options.order.end(), [](char c) { return c >= '0' && c <= '9'; });
  const std::size_t order = whole ? std::stoul(options.order) : 0;
  if (order < 1 || order > kLargestOrder) {
    throw bad_input(options.order.empty()
                        ? "N, the order of the matrix, is missing"
                        : "N: '" + options.order + "' is not an order from 1 to " + std::to_string(kLargestOrder));
  }
  std::vector<Complex> parameters;
  for (const std::string& text : options.parameters) {
    const std::string place = "parameter " + std::to_string(parameters.size() + 1) + ": ";
    if (!is_complex_number(text)) {
      throw bad_input(place + shown_text(text) + " is not a number");
    }
    parameters.push_back(to_complex_number(text));
    if (const char* reason = why_unfit(text, parameters.back())) {
      throw bad_input(place + shown_text(text) + " " + reason);
    }
  }
  if (std::any_of(parameters.begin(), parameters.end(), [](const Complex& z) { return z.im != 0; })) {
    return deliver_matrix(options, order, parameters);
  }
  deliver_matrix(options, order, real_parts(parameters));
}

constexpr const char* kGalleryFooter =
    R"(Without NAME, or with the name list, the matrices and their parameters are listed.
Random matrices start at the default seed of generator 0, or at --seed.

Examples:
  quarn gallery hilbert 5 --digits 40
  quarn gallery kahan 30 1.1 --output kahan.mtx
  quarn gallery random_values 4 1000 --seed 1 2 3 4 | quarn svd -)";

void declare_gallery(Command& command) {
  auto options = std::make_shared<GalleryOptions>();
  command.argument("NAME", options->name, "the matrix", false);
  command.argument("N", options->order, "its order", false);
  command.texts("PARAMETER", "", options->parameters, "numbers, as the list of matrices says");
  command.numbers("--seed", "S", 4, options->seed, "the four seeds (default: those of the library)");
  command.add_digits();
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  command.work = [options] { run_gallery(*options); };
}

const Registered kGalleryCommand(127, "gallery", "test matrices with known properties", kGalleryFooter,
                                 declare_gallery);

}  // namespace

}  // namespace cli
