// Uniform random numbers: entries. Nothing is checked: there is no failure to report.
#include <algorithm>
#include <iterator>

#include "src/util/random.h"
#include "tesk2mp/random.h"

using namespace tesk;

extern "C" {

void QuarnMP_g05kbx_(Integer* igen, Integer* iseed) {
  *igen = 0;
  std::copy(std::begin(kDefaultSeed), std::end(kDefaultSeed), iseed);
}

QuarnFloat QuarnMP_g05kazn_(Integer igen, Integer* iseed) { return multiple_set_variate(igen, iseed); }

QuarnFloat QuarnMP_g05kafn_(Integer igen, Integer* iseed) {
  return igen == 0 ? basic_variate(iseed) : multiple_set_variate(igen, iseed);
}

QuarnFloat QuarnMPX_g05kazn_(Integer igen, Integer* iseed) {
  // IGEN 0 is not one of the multiple-set generators.
  return igen == 0 ? QuarnFloat("nan") : full_variate(igen, iseed);
}

QuarnFloat QuarnMPX_g05kafn_(Integer igen, Integer* iseed) { return full_variate(igen, iseed); }
}
