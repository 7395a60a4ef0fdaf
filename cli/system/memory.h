// Requests that cannot fit are refused before the work starts.
#pragma once

#include <cstddef>
#include <string>

namespace cli {

/// Bytes held by one number of that many digits, as an upper bound.
std::size_t bytes_per_number(int digits);

/// Throws Failure when the bytes pass this machine's memory.
void require_bytes(double bytes, const std::string& purpose);

/// Throws Failure when numbers of the working digits, so many of them, pass this machine's memory.
void require_memory(double numbers, const std::string& purpose);

}  // namespace cli
