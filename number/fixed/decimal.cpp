#include "number/fixed/decimal.h"

#include <algorithm>

namespace quarn::block {

DecimalReader::DecimalReader(int places) : units_(units_for(places)), shift_(0) {
  // floor(2^(64 m) / 10^k) of m = 2 L + 1 places: dividing and rounding down one factor after another gives the same
  // as dividing by their product, with words of any length.
  const int n = places * kPerPlace<Limb>;
  const int long_n = 2 * n + kPerPlace<Limb>;
  std::vector<Limb> power(std::size_t(long_n) + 1, 0);
  power.back() = 1;
  for (int i = 0; i < units_ * kLimbsPerUnit; ++i) {
    fixed::divide_word(power.data(), power.data(), long_n + 1, Radix::base);
  }
  // 10^(18 units) has as many bits as its inverse has zeros in front, but for a power of 2.
  const int zeros = fixed::leading_zeros(power.data(), long_n);
  shift_ = 64 * places - (zeros + 1);
  // scale = 2^(128 L - 1 - shift) / 10^(18 units + k)
  const int drop = 64 * (2 * places + 1) - (128 * places - 1 - shift_);
  for (std::vector<Limb>& scale : scale_) {
    std::vector<Limb> moved(power.size());
    fixed::shift_down(moved.data(), power.data(), long_n, drop);
    scale.assign(moved.begin(), moved.begin() + n);
    fixed::divide_word(power.data(), power.data(), long_n, 10);
  }
}

DecimalWriter::DecimalWriter(const QuarnFloat& factor, int places, const DecimalReader& constants)
    : factor_(std::size_t(places * kPerPlace<Limb>)) {
  exponent_ = QuarnAccess::exponent(factor);
  std::vector<Limb> value(factor_.size() + kPerPlace<Limb>);
  constants.read(value.data(), factor, exponent_, places + 1);
  // One bit more and one place less.
  const int n = int(value.size());
  fixed::shift_down(value.data(), value.data(), n, 63);
  std::copy_n(value.begin(), factor_.size(), factor_.begin());
}

}  // namespace quarn::block
