#include "cli/repl/linear_algebra.h"

#include "cli/io/number_text.h"
#include "cli/repl/fault.h"

namespace cli::repl {

const Known& known_square(const Arguments& arguments) {
  (void)arguments.square(0);
  return arguments.known(0);
}

Known right_side(const Arguments& arguments, std::size_t rows) {
  const Array& b = arguments.array(1);
  if (b.rows() == 1 && b.columns() == rows) {
    return {reshaped(elements(b), rows, 1), arguments.known(1).errors};
  }
  if (b.rows() != rows) {
    throw Unfit("right-hand sides of " + std::to_string(rows) + " numbers are needed here, not " + shape(b), 1);
  }
  return arguments.known(1);
}

std::string place(std::size_t i, std::size_t j) {
  return "element (" + std::to_string(i + 1) + ", " + std::to_string(j + 1) + ")";
}

void require_finite(const Arguments& arguments, bool even_unknown) {
  const Array& a = arguments.array(0);
  for (std::size_t k = 0; k < size(a); ++k) {
    if (!isfinite(a.data()[k]) && (even_unknown || element(arguments.known(0), k).is_exact())) {
      throw Unfit(place(k % a.rows(), k / a.rows()) + " is not finite", 0);
    }
  }
}

void require_many_digits(const Evaluation& evaluation, const Array& a) {
  const std::size_t order = std::min(a.rows(), a.columns());
  if (!evaluation.is_last && QuarnDigits() < 4 * (evaluation.digits + 10) + 4 * int(order)) {
    throw Undecided();
  }
}

bool is_bounded(const Knowns& values) {
  return std::all_of(values.begin(), values.end(), [](const Known& each) {
    return std::all_of(each.errors.begin(), each.errors.end(),
                       [](const PartErrors& error) { return error.re.is_finite() && error.im.is_finite(); });
  });
}

}  // namespace cli::repl
