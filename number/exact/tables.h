// Tables of the residue arithmetic: made when first asked for, published once, never changed.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "number/exact/kernel.h"

namespace quarn::exact {

/// How many primes have a product above 4 `inner` 10^(6 digits).
int primes_for(std::size_t inner, int digits) noexcept;

/// The tables for at least so many primes, up to kMaxPrimes. Throws std::bad_alloc.
class SharedTables {
 public:
  explicit SharedTables(int primes);
  ~SharedTables();
  SharedTables(const SharedTables&) = delete;
  SharedTables& operator=(const SharedTables&) = delete;

  const Tables& operator*() const noexcept { return *tables_; }
  const Tables* operator->() const noexcept { return tables_; }

 private:
  struct Owned;
  static std::unique_ptr<const Owned> make(int count);

  const Tables* tables_;
  std::unique_ptr<const Owned> own_;  // tables too large to be kept
};

}  // namespace quarn::exact
