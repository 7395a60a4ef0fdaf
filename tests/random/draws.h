// The library's generators as streams of bits, without the cost of a QuarnFloat a draw.
#pragma once

#include <array>
#include <cstdint>

#include "src/util/random.h"
#include "tesk2mp/random.h"

namespace battery {

class Stream {
 public:
  Stream(Integer igen, const std::array<Integer, 4>& seed) : igen_(igen), seed_(seed) {}
  explicit Stream(Integer igen) : Stream(igen, {6698, 7535, 26792, 30140}) {}

  /// The leading 32 bits of the next variate.
  std::uint32_t next() {
    if (igen_ == 0) {
      return std::uint32_t(tesk::basic_step(seed_.data()) >> 28);
    }
    const tesk::MultipleSetRow& row = *tesk::multiple_set_row(igen_);
    tesk::multiple_set_step(row, seed_.data());
    // Each fraction to 40 bits: their sum is short of the variate by less than 2^-37.
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      sum += (std::uint64_t(seed_[i]) << 40) / std::uint64_t(row.moduli[i]);
    }
    return std::uint32_t(sum >> 8);
  }
  /// The trailing 32 of the 60 bits of the basic generator's state: what no variate shows first.
  std::uint32_t next_trailing() { return std::uint32_t(tesk::basic_step(seed_.data())); }

 private:
  Integer igen_;
  std::array<Integer, 4> seed_;
};

}  // namespace battery
