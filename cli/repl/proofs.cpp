// Which functions have proofs, and what the others do.
#include "cli/repl/proofs.h"

#include <algorithm>
#include <string_view>

#include "quarn/transform.h"
#include "tesk2mp/proven_spectra.hpp"

namespace cli::repl {

namespace {

bool is_one_of(const Function& function, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), function.name) != names.end();
}

bool are_exact(const Knowns& arguments) {
  return std::all_of(arguments.begin(), arguments.end(), [](const Known& each) { return each.is_exact(); });
}

Knowns exactly(const std::vector<Value>& values) { return {values.begin(), values.end()}; }

bool is_gallery(const Function& function) {
  const auto gallery = gallery_functions();
  return &function >= gallery.data() && &function < gallery.data() + gallery.size();
}

// Elements are rounded from more digits: a unit of the last place. Zeros stand where there is nothing, and without
// parameters whole numbers are no roundings of other ones.
Knowns gallery(const Function& function, State& state, const Knowns& arguments) {
  const bool moves_alone = size(arguments[0].array(0)) > 1 && is_one_of(function, {"toeplitz", "hankel", "circulant"});
  Knowns results = exactly(function.apply(state, plain(arguments)));
  const bool has_parameters = arguments.size() > 1 || size(arguments[0].array()) > 1;
  const QuarnBound two = QuarnBound::count(2);
  const auto error = [&](const QuarnFloat& x) {
    const bool whole = !has_parameters && ilogb(x) < QuarnDigits() && trunc(x) == x;
    return whole || moves_alone ? QuarnBound() : two * QuarnBound(x).half_unit(QuarnDigits());
  };
  for (Known& result : results) {
    const Array values = result.array();
    std::vector<PartErrors> errors;
    for (const Complex& z : elements(values)) {
      errors.push_back({error(z.re), error(z.im)});
    }
    result = Known(values, std::move(errors));
  }
  return results;
}

// Long transforms and those with many digits have no bound.
bool is_transform_beyond(const Function& function, const Knowns& arguments) {
  if (!is_one_of(function, {"fft", "ifft", "fft2", "ifft2"})) {
    return false;
  }
  const Array& a = arguments[0].array(0);
  const std::size_t longest = is_one_of(function, {"fft", "ifft"}) ? size(a) : std::max(a.rows(), a.columns());
  return longest > 0 && !QuarnTransform::is_supported(Integer(longest), QuarnDigits());
}

// Exact data alone: a least squares solution where the columns are independent, zeros, a rank.
bool prove_exactly(const Function& function, const Knowns& arguments, Knowns& results) {
  const std::string_view name = function.name;
  const Array& a = arguments[0].array(0);
  if (name == "matrix_rank") {
    const auto rank = repl::is_real(a) ? proven::rank(real_array(a)) : proven::rank(a);
    if (rank) {
      results = {Known(number(QuarnFloat(*rank)))};
    }
    return rank.has_value();
  }
  if (name == "zeros") {
    std::vector<Complex> c = elements(a);
    c.erase(c.begin(), std::find_if(c.begin(), c.end(), [](const Complex& z) { return z != Complex(0); }));
    if (!is_vector(a) || c.size() < 2) {
      return false;
    }
    results = {known_column(repl::is_real(a) ? proven::zeros(real_elements(column(c))) : proven::zeros(c))};
    return true;
  }
  if (name == "lstsq" && a.rows() >= a.columns() && arguments[1].array(1).rows() == a.rows()) {
    const Array& b = arguments[1].array();
    const bool real = repl::is_real(a) && repl::is_real(b);
    if (a.columns() == 0 || (real ? proven::rank(real_array(a)) : proven::rank(a)) != a.columns()) {
      return false;
    }
    results = {real ? known(proven::least_squares(real_array(a), real_array(b))) : known(proven::least_squares(a, b))};
    return true;
  }
  return false;
}

// The k-th number in order moves by no more than the largest error.
Knowns sorted(const Function& function, State& state, const Knowns& arguments) {
  Knowns results = exactly(function.apply(state, plain(arguments)));
  PartErrors largest;
  for (const PartErrors& each : arguments[0].errors) {
    largest.re = std::max(largest.re, each.re);
  }
  return {Known(results[0].array(), std::vector<PartErrors>(size(results[0].array()), largest))};
}

// What is rounded to places is exact where both ends of the interval give the same.
Knowns quantized(const Function& function, State& state, const Knowns& arguments) {
  const auto at_end = [&](bool is_upper) {
    Array moved = arguments[0].array(0);
    for (std::size_t k = 0; k < arguments[0].errors.size(); ++k) {
      const PartErrors& error = arguments[0].errors[k];
      Complex& z = moved.data()[k];
      const tesk2mp::Digits scope(QuarnDigits() + 20);
      z = is_upper ? Complex(quarn::add(z.re, error.re.value(), quarn::Rounding::ceiling),
                             quarn::add(z.im, error.im.value(), quarn::Rounding::ceiling))
                   : Complex(quarn::subtract(z.re, error.re.value(), quarn::Rounding::floor),
                             quarn::subtract(z.im, error.im.value(), quarn::Rounding::floor));
    }
    Knowns all = arguments;
    all[0] = Known(moved);
    return exactly(function.apply(state, plain(all)))[0].array();
  };
  const Array low = at_end(false);
  const Array high = at_end(true);
  std::vector<PartErrors> errors(size(low));
  for (std::size_t k = 0; k < size(low); ++k) {
    errors[k].re = low.data()[k].re == high.data()[k].re ? QuarnBound() : QuarnBound::infinity();
    errors[k].im = low.data()[k].im == high.data()[k].im ? QuarnBound() : QuarnBound::infinity();
  }
  return {Known(low, std::move(errors))};
}

}  // namespace

bool gives_data(const Function& function) { return is_one_of(function, {"random", "load"}); }
bool has_effect(const Function& function) { return is_one_of(function, {"seed", "save", "plot"}); }

Arguments plain(const Knowns& arguments) {
  std::vector<Value> values;
  for (const Known& each : arguments) {
    values.push_back(each.value);
  }
  return Arguments(std::move(values));
}

Knowns apply(const Function& function, State& state, const Knowns& arguments, Evaluation& evaluation) {
  Known result;
  if (apply_to_elements(function.name, arguments, evaluation, result)) {
    return {result};
  }
  const Proof proof = find_matrix_proof(function.name);
  if (proof != nullptr && !is_transform_beyond(function, arguments)) {
    return proof(arguments);
  }
  if (is_one_of(function, {"factorial"})) {
    return {factorial(arguments[0])};
  }
  const bool exact = are_exact(arguments);
  if (is_one_of(function, {"sort"})) {
    return sorted(function, state, arguments);
  }
  if (is_one_of(function, {"quantize"}) && are_exact({arguments.begin() + 1, arguments.end()})) {
    return quantized(function, state, arguments);
  }
  if (exact && is_gallery(function)) {
    return gallery(function, state, arguments);
  }
  Knowns results;
  if (exact && prove_exactly(function, arguments, results)) {
    return results;
  }
  const bool counts = is_one_of(function, {"size", "length"});
  if (!counts && !(exact && is_one_of(function, {"identity", "ones", "rank", "round_parts"}))) {
    evaluation.unproven = function.name;
  }
  return exactly(function.apply(state, plain(arguments)));
}

}  // namespace cli::repl
