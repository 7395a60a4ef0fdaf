// Compressed inputs: gzip (RFC 1952) with the deflate format (RFC 1951).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cli {

inline bool is_gzip(std::string_view bytes) { return bytes.starts_with("\x1F\x8B"); }

/// What the members of a gzip file hold, one after the other. Throws Failure, with the name of the input, for a damaged
/// or cut file and for contents of more than `most` bytes. Lengths and checksums are compared.
std::string gunzip(std::string_view bytes, const std::string& name, std::size_t most);

}  // namespace cli
