#include "cli/repl/functions.h"

#include <algorithm>
#include <array>

namespace cli::repl {

bool Arguments::are_exact() const {
  return std::all_of(values_.begin(), values_.end(), [](const Known& each) { return each.is_exact(); });
}

const Array& Arguments::array(std::size_t k) const { return values_[k].array(int(k)); }

const Array& Arguments::square(std::size_t k) const {
  const Array& a = array(k);
  if (a.rows() != a.columns()) {
    throw Unfit("a square matrix is needed here, not " + shape(a), int(k));
  }
  return a;
}

const Array& Arguments::vector(std::size_t k) const {
  const Array& a = array(k);
  if (!is_vector(a)) {
    throw Unfit("a vector is needed here, not " + shape(a), int(k));
  }
  return a;
}

const Array& Arguments::filled(std::size_t k) const {
  if (size(array(k)) == 0) {
    throw Unfit("at least one number is needed here", int(k));
  }
  return array(k);
}

RealArray Arguments::real_matrix(std::size_t k) const {
  const Array& a = array(k);
  if (!is_real(a)) {
    throw Unfit("real numbers are needed here", int(k));
  }
  return real_array(a);
}

std::vector<QuarnFloat> Arguments::reals(std::size_t k) const {
  if (!is_real(vector(k))) {
    throw Unfit("real numbers are needed here", int(k));
  }
  return real_elements(array(k));
}

Complex Arguments::number(std::size_t k) const {
  if (!is_number(array(k))) {
    throw Unfit("one number is needed here, not " + shape(array(k)), int(k));
  }
  return array(k)(0, 0);
}

Integer Arguments::whole(std::size_t k, Integer least, Integer most) const {
  const Complex value = number(k);
  if (value.im != 0 || !(value.re >= least && value.re <= most) || trunc(value.re) != value.re) {
    throw Unfit("a whole number from " + std::to_string(least) + " to " + std::to_string(most) + " is needed here",
                int(k));
  }
  return FloatToInt(value.re);
}

const std::string& Arguments::text(std::size_t k) const {
  if (const auto* text = std::get_if<std::string>(&values_[k].value)) {
    return *text;
  }
  throw Unfit("a text is needed here, such as \"name\"", int(k));
}

std::size_t Arguments::choice(std::size_t k, const std::vector<std::string>& words) const {
  const auto found = std::find(words.begin(), words.end(), text(k));
  if (found == words.end()) {
    std::string list;
    for (const std::string& word : words) {
      list += (list.empty() ? "\"" : ", \"") + word + "\"";
    }
    throw Unfit("one of " + list + " is needed here", int(k));
  }
  return std::size_t(found - words.begin());
}

std::span<const FunctionGroup> function_groups() {
  static const std::array<FunctionGroup, 5> kGroups = {
      {{"Functions of numbers, element by element", elementary_functions()},
       {"Vectors and matrices", array_functions()},
       {"Linear algebra", linear_functions()},
       {"Test matrices of order n; toeplitz(c, r) and the like of vectors", gallery_functions()},
       {"Transforms, zeros, random numbers, files and pictures", other_functions()}}};
  return kGroups;
}

const Function* find_function(const std::string& name) {
  for (const FunctionGroup& group : function_groups()) {
    for (const Function& function : group.functions) {
      if (name == function.name) {
        return &function;
      }
    }
  }
  return nullptr;
}

std::string usage(const Function& function) {
  const std::string results = function.results;
  return (results.empty() ? "" : results + " = ") + std::string(function.name) + "(" + function.arguments + ")";
}

}  // namespace cli::repl
