// Between C and the library: numbers go through as decimal text, failures as a message.
#include <cstring>
#include <string>
#include <vector>

#include "tesk2mp/tesk2mp.hpp"

/// The transform of n numbers at so many digits; results[k] is what half-complex storage has at k, to be freed with
/// free(). Returns null, or what went wrong, to be freed too.
extern "C" char* spectrum_of_text(const char* const* numbers, int n, int digits, char** results) {
  try {
    const tesk2mp::Digits working(digits);
    std::vector<tesk2mp::Real> x;
    for (int i = 0; i < n; ++i) {
      x.emplace_back(numbers[i]);
    }
    tesk2mp::transform_real(x);
    for (int i = 0; i < n; ++i) {
      results[i] = strdup(x[std::size_t(i)].to_string().c_str());
    }
    return nullptr;
  } catch (const std::exception& error) {
    return strdup(error.what());
  }
}
