// quarn cfft: the discrete Fourier transform of complex numbers: of a sequence, of an array along one dimension or all.
#include "cli/commands/cfft.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/ranking.h"
#include "cli/commands/transform_lines.h"
#include "cli/commands/true_transform.h"
#include "cli/io/input.h"
#include "cli/io/matrix_input.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "tesk2mp/fft.hpp"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

// The numbers as an array whose first index varies fastest.
struct Array {
  std::string source;
  std::vector<Integer> extents;
  std::vector<Complex> values;

  std::string shape() const {
    std::string text;
    for (const Integer extent : extents) {
      text += (text.empty() ? "" : " x ") + std::to_string(extent);
    }
    return text;
  }
};

bool is_sequence(const Array& array) {
  return array.extents.size() == 1 && std::size_t(array.extents[0]) == array.values.size();
}

// "4x6x5"
std::vector<Integer> parse_shape(const std::string& text) {
  constexpr std::size_t kMostDigits = 9;
  std::vector<Integer> extents;
  std::size_t start = 0;
  for (std::size_t end = 0; end != std::string::npos; start = end + 1) {
    end = text.find('x', start);
    const std::string part = text.substr(start, end == std::string::npos ? end : end - start);
    if (part.empty() || part.size() > kMostDigits || !std::all_of(part.begin(), part.end(), is_digit)) {
      throw bad_input("--shape: extents such as 4x6x5 are needed, not '" + text + "'");
    }
    extents.push_back(Integer(std::stol(part)));
  }
  return extents;
}

Array array_of(const CfftOptions& options, const std::string& text) {
  const std::string source = name_of_input(options.input);
  const tesk2mp::Digits scope(digits_of_data(!options.classic));
  const DenseMatrix given = options.column.empty() ? dense_matrix_of(text, source, options.table)
                                                   : vector_of(text, source, options.column, options.table);
  Array array{given.source, {given.rows()}, elements_of<Complex>(given)};
  if (array.values.size() > std::size_t(std::numeric_limits<Integer>::max())) {
    throw bad_input("more values than a 32-bit count can hold");
  }
  if (!options.shape.empty()) {
    array.extents = parse_shape(options.shape);
  } else if (given.columns() > 1) {
    array.extents.push_back(given.columns());
  }
  return array;
}

std::vector<QuarnFloat> magnitudes_of(const std::vector<Complex>& values) {
  std::vector<QuarnFloat> magnitudes;
  magnitudes.reserve(values.size());
  for (const Complex& z : values) {
    magnitudes.push_back(tesk2mp::abs(z));
  }
  return magnitudes;
}

using BoundedComplex = tesk2mp::proven::Bounded<Complex>;

// Which dimensions are transformed, from 0.
std::vector<std::size_t> dimensions_of(const CfftOptions& options, const Array& array) {
  if (options.dimension == 0) {
    std::vector<std::size_t> all(array.extents.size());
    std::iota(all.begin(), all.end(), 0);
    return all;
  }
  if (options.dimension < 1 || std::size_t(options.dimension) > array.extents.size()) {
    throw bad_input("--dim: " + std::to_string(options.dimension) + " is not one of 1 to " +
                    std::to_string(array.extents.size()));
  }
  return {std::size_t(options.dimension) - 1};
}

std::string routine_for(const CfftOptions& options, const Array& array) {
  const std::string prefix = options.classic ? "QuarnMP_" : "QuarnMPX_";
  return prefix + (options.dimension != 0 ? "c06pff_" : is_sequence(array) ? "c06pcf_" : "c06pjf_");
}

// By the working digits, with no word about how true they are. The library refuses shapes that do not fit.
std::vector<Complex> transformed_once(const CfftOptions& options, const Array& array) {
  using tesk2mp::Direction;
  const Direction direction = options.backward ? Direction::backward : Direction::forward;
  const tesk2mp::Shape shape(array.extents.begin(), array.extents.end());
  std::vector<Complex> values = array.values;
  const std::span<Complex> x = values;
  if (options.dimension != 0) {
    const auto dimension = std::size_t(options.dimension) - 1;
    (options.classic ? tesk2mp::classic::transform_dimension : tesk2mp::transform_dimension)(x, shape, dimension,
                                                                                             direction);
  } else if (!is_sequence(array)) {
    options.classic ? tesk2mp::classic::transform(x, shape, direction) : tesk2mp::transform(x, shape, direction);
  } else {
    options.classic ? tesk2mp::classic::transform(x, direction) : tesk2mp::transform(x, direction);
  }
  return values;
}

// Line after line along each dimension.
std::vector<BoundedComplex> transformed_with_bounds(const CfftOptions& options, const Array& array) {
  const auto direction = options.backward ? tesk2mp::Direction::backward : tesk2mp::Direction::forward;
  std::vector<BoundedComplex> z = at_working_digits(array.values);
  for (const std::size_t dimension : dimensions_of(options, array)) {
    std::size_t step = 1;
    for (std::size_t l = 0; l < dimension; ++l) {
      step *= std::size_t(array.extents[l]);
    }
    transform_lines(z, step, std::size_t(array.extents[dimension]),
                    [direction](const auto& line) { return tesk2mp::proven::transform(line, direction); });
  }
  return z;
}

// Does the shape fit the numbers? The library says it where not.
bool fits(const Array& array) {
  double count = 1;
  for (const Integer extent : array.extents) {
    count *= double(extent);
  }
  return count == double(array.values.size()) && count > 0;
}

// To the digits that are asked for, said in the second note and facts.
TrueNumbers<Complex> transform(const CfftOptions& options, const Array& array, Result& result) {
  constexpr double kWithWorkspace = 2;
  constexpr double kWithBounds = 4;
  require_memory((options.proof.wanted() ? kWithBounds : kWithWorkspace) * 2 * double(array.values.size()),
                 "a transform of " + std::to_string(array.values.size()) + " values");
  const Progress progress = Progress::estimated("transform", complex_transform_cost(array.values.size()));
  dimensions_of(options, array);
  if (options.classic || !fits(array)) {
    std::vector<Complex> z = transformed_once(options, array);
    std::vector<QuarnFloat> magnitudes = magnitudes_of(z);
    return {std::move(z), {}, std::move(magnitudes)};
  }
  return true_transform<Complex>(
      options.proof, routine_for(options, array), true, [&] { return transformed_with_bounds(options, array); },
      [&] { return transformed_once(options, array); }, result);
}

// A sequence is a row for each number, with its magnitude.
void add_sequence(Result& result, const std::vector<Complex>& z, const std::vector<QuarnFloat>& magnitudes) {
  constexpr int kMagnitudeDigits = 8;
  add_matrix(result, DenseMatrix{"", matrix_of(z, z.size())});
  for (std::vector<ResultColumn>* columns : {&result.table, &result.data}) {
    columns->front().name = "k";
    for (std::size_t k = 0; k < z.size(); ++k) {
      columns->front().cells[k] = std::to_string(k);
    }
    columns->push_back({"magnitude", exact_cells(magnitudes)});
  }
  const QuarnFloat largest = largest_magnitude(magnitudes);
  if (isfinite(largest)) {
    const int whole_digits = largest == 0 ? 1 : int(decimal_exponent(largest)) + 1;
    const NumberFormat format(largest, std::min(std::max(kMagnitudeDigits, whole_digits), QuarnDigits()), kBriefDigits);
    std::vector<std::string>& cells = result.table.back().cells;
    std::transform(magnitudes.begin(), magnitudes.end(), cells.begin(), format);
    align_points(cells);
  }
}

// The lowest index that a picture shows: frequencies stand about zero in the middle.
Integer first_shown(bool frequencies, Integer extent) { return frequencies ? -(extent / 2) : 0; }

std::size_t place_of(Integer index, Integer extent) { return std::size_t(index < 0 ? index + extent : index); }

Panel sequence_panel(const Array& array, const std::string& title, bool frequencies) {
  const auto n = Integer(array.values.size());
  const std::vector<QuarnFloat> magnitudes = magnitudes_of(array.values);
  Panel panel;
  panel.title = title;
  panel.x_title = frequencies ? "frequency (cycles per sequence)" : "index";
  panel.y_title = "magnitude";
  for (Integer i = first_shown(frequencies, n), end = i + n; i < end; ++i) {
    panel.curve.x.emplace_back(i);
    panel.curve.y.push_back(magnitudes[place_of(i, n)]);
  }
  return panel;
}

HeatMap heat_map(const Array& array, const std::string& title, const std::vector<bool>& frequencies) {
  const std::vector<QuarnFloat> magnitudes = magnitudes_of(array.values);
  HeatMap map;
  map.title = title;
  map.value_title = "magnitude";
  HeatMap::Axis* const axes[] = {&map.rows, &map.columns};
  std::size_t used = 0;
  for (std::size_t l = 0; l < array.extents.size(); ++l) {
    if (array.extents[l] > 1) {
      const std::string number = std::to_string(l + 1);
      *axes[used++] = {frequencies[l] ? "frequency along dimension " + number : "index in dimension " + number,
                       first_shown(frequencies[l], array.extents[l]), array.extents[l]};
    }
  }
  const auto [rows, columns] = std::pair(map.rows, map.columns);
  for (Integer j = columns.first; j < columns.first + columns.count; ++j) {
    for (Integer i = rows.first; i < rows.first + rows.count; ++i) {
      map.values.push_back(magnitudes[place_of(i, rows.count) + place_of(j, columns.count) * std::size_t(rows.count)]);
    }
  }
  return map;
}

int long_dimensions(const Array& array) {
  return int(std::count_if(array.extents.begin(), array.extents.end(), [](Integer extent) { return extent > 1; }));
}

void draw_picture(const CfftOptions& options, const Array& array, const std::string& title, const std::string& file) {
  std::vector<bool> frequencies(array.extents.size(), !options.backward && options.dimension == 0);
  if (options.dimension != 0) {
    frequencies[std::size_t(options.dimension - 1)] = !options.backward;
  }
  if (long_dimensions(array) == 2) {
    draw(heat_map(array, title, frequencies), file);
  } else {
    const bool any = std::find(frequencies.begin(), frequencies.end(), true) != frequencies.end();
    draw({sequence_panel(array, title, any)}, file);
  }
}

}  // namespace

void run_cfft(const CfftOptions& options, const std::string& text) {
  Array array = array_of(options, text);
  if (!options.output.picture.empty() && long_dimensions(array) > 2) {
    throw bad_input("--plot: an array of " + array.shape() + " has more than two dimensions");
  }
  const bool sequence = array.extents.size() == 1;
  const std::string counted = sequence ? std::to_string(array.values.size()) + " complex numbers"
                                       : "array of " + array.shape() + " complex numbers";
  const std::string along =
      options.dimension == 0 || sequence ? "" : " along dimension " + std::to_string(options.dimension);

  Result result;
  result.notes = {std::string(options.backward ? "Backward Fourier transform of " : "Fourier transform of ") +
                      (sequence ? "" : "the ") + counted + " in " + array.source + along,
                  precision_note(routine_for(options, array), options.classic)};
  result.facts = {{"input", options.input},
                  {"routine", routine_for(options, array)},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"shape", array.shape()},
                  {"direction", options.backward ? "backward" : "forward"}};
  TrueNumbers<Complex> found = transform(options, array, result);
  array.values = std::move(found.values);
  result.notes.push_back(std::string("z_k = 1/sqrt(N) sum_j x_j exp(") + (options.backward ? "+" : "-") +
                         "2 pi i j k/N)" +
                         (sequence        ? ", N = " + std::to_string(array.values.size())
                          : along.empty() ? " along each dimension"
                                          : ""));
  if (!found.errors.empty()) {
    const QuarnFloat largest = largest_magnitude(found.errors);
    result.facts.push_back({"largest_error", largest.to_string()});
    if (options.proof.errors && !sequence) {
      result.notes.push_back("so far away is the exact z_k at most: " + brief(largest));
    }
  }
  if (sequence) {
    add_sequence(result, array.values, found.magnitudes);
    if (!found.errors.empty()) {
      add_errors(result, found.errors, "z_k", options.proof.errors);
    }
  } else {
    add_matrix(result, DenseMatrix{"", matrix_of(array.values, std::size_t(array.extents.front()))});
  }
  result.picture = [&](const std::string& file) {
    draw_picture(options, array,
                 (options.backward ? "Backward transform of " : "Spectrum of ") + ("the " + counted) + along, file);
  };
  deliver(result, options.output);
}

namespace {

constexpr const char* kCfftFooter =
    R"(FILE holds complex numbers: columns real and imaginary; one column of cells such as
1-2i (--column says which); a table of such cells, or a Matrix Market file, which is an
array of two dimensions.

--shape takes the numbers, column by column, as an array whose first index varies
fastest. All dimensions are transformed unless --dim names one, from 1.

--plot draws magnitudes, as a heat map where two dimensions are longer than 1;
frequencies have zero in the middle.

The numbers are taken with all their digits, and D digits of every part are proven; one of
which not even the sign is known, D digits below the largest, is 0. With more than some 1100
digits two computations agree to them instead.

Examples:
  quarn cfft examples/aperture.mtx --plot aperture.svg --output spectrum.mtx
  quarn cfft --backward spectrum.mtx --digits 40 --format mtx
  quarn cfft numbers.csv --shape 4x6x5 --dim 2 --format csv)";

void declare_cfft(Command& command) {
  auto options = std::make_shared<CfftOptions>();
  command.argument("FILE", options->input, "the data; - is standard input");
  command.text("--column", "NAME", options->column, "name or number of the one column to take");
  add_matrix_options(command, options->table);
  command.text("--shape", "SHAPE", options->shape, "the extents of the array, such as 4x6x5");
  command.number("--dim", "L", options->dimension, std::numeric_limits<Integer>::min(),
                 std::numeric_limits<Integer>::max(), "the one dimension to transform, from 1");
  command.flag("--inverse,--backward", options->backward, "the inverse transform, from a spectrum back");
  command.flag("--classic", options->classic,
               "use the classic entry, whose constants are doubles (about 16 digits at any precision)");
  add_true_digits(command, options->proof);
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  command.work = [options] {
    options->proof.start();
    if (options->classic && options->proof.insisted) {
      throw bad_input("--proven: the classic entry's constants are doubles");
    }
    run_cfft(*options, read_input(options->input));
  };
}

const Registered kCfftCommand(20, "cfft", "Fourier transform of complex numbers, in any number of dimensions",
                              kCfftFooter, declare_cfft);

}  // namespace

}  // namespace cli
