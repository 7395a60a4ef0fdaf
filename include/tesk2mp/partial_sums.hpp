// Sums over vectors whose elements are shared out among several programs. Part of tesk2mp.hpp.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "quarn/accumulator.h"
#include "quarn/interchange.h"
#include "tesk2mp/error.hpp"
#include "tesk2mp/views.hpp"

namespace tesk2mp {

/// What one program, or several that have been put together, know of a sum of real numbers, exactly, or of the largest
/// of numbers that are not negative.
class PartialSum {
 public:
  enum class Kind { sum, largest };

  explicit PartialSum(Kind kind = Kind::sum) : kind_(kind) {}

  quarn::Accumulator& sum() noexcept { return sum_; }
  const quarn::Accumulator& sum() const noexcept { return sum_; }
  const Real& largest() const noexcept { return largest_; }
  void take(const Real& x) {
    if (kind_ == Kind::largest && !isnan(largest_) && !(x <= largest_)) {  // a NaN stays
      largest_ = x;
    }
  }

  /// Puts what another program knows beside what is known here; in any order, with the same result.
  PartialSum& operator+=(const PartialSum& other) {
    sum_ += other.sum_;
    take(other.largest_);
    return *this;
  }

  std::size_t packed_size() const noexcept {
    return kind_ == Kind::sum ? sum_.packed_size() : quarn::packed_size(largest_);
  }
  std::size_t write_packed(unsigned char* bytes) const noexcept {
    return kind_ == Kind::sum ? sum_.write_packed(bytes) : quarn::write_packed(largest_, bytes);
  }
  /// The packed form is that of accumulator.h or interchange.h; 0 for bytes that are none.
  [[nodiscard]] std::size_t read_packed(std::span<const unsigned char> bytes) {
    return kind_ == Kind::sum ? sum_.read_packed(bytes.data(), bytes.size())
                              : quarn::read_packed(bytes.data(), bytes.size(), largest_);
  }
  Kind kind() const noexcept { return kind_; }

 private:
  Kind kind_;
  quarn::Accumulator sum_;
  Real largest_ = 0;
};

/// One message: the sums one after the other.
[[nodiscard]] inline std::vector<unsigned char> pack(std::span<const PartialSum> sums) {
  return quarn::detail::pack_all(sums);
}

/// The totals of what several programs have packed, one message after the other in `bytes`, each with as many sums of
/// the same kinds as `sums`, which become the totals. Throws InvalidArgument for other bytes, and for none where there
/// are sums, with the sums as they were.
inline void add_messages(std::span<const unsigned char> bytes, std::span<PartialSum> sums) {
  detail::require(!bytes.empty() || sums.empty(), "F11BDD", 7, "no message of any rank");
  std::vector<PartialSum> totals;
  for (const PartialSum& sum : sums) {
    totals.emplace_back(sum.kind());
  }
  while (!bytes.empty() && !totals.empty()) {
    for (PartialSum& total : totals) {
      PartialSum part(total.kind());
      const std::size_t used = part.read_packed(bytes);
      detail::require(used != 0, "F11BDD", 7, "a message that is not the sums of a rank");
      total += part;
      bytes = bytes.subspan(used);
    }
  }
  detail::require(bytes.empty(), "F11BDD", 7, "messages of more sums than are asked for");
  std::move(totals.begin(), totals.end(), sums.begin());
}

namespace detail {
inline Real part_size(const Real& x) { return fabs(x); }
inline Real part_size(const Complex& x) { return quarn::abs(x); }
}  // namespace detail

/// Makes what this program knows of each sum what all of them know: the only communication of an iteration beside its
/// products. With MPI it is pack(), one Allgatherv, and add_messages().
using SumExchange = std::function<void(std::span<PartialSum> sums)>;

}  // namespace tesk2mp
