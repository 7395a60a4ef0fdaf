// Why a value has no bounds.
#pragma once

#include <string>

namespace cli::repl {

struct Unproven {
  /// "no proof of logm was found for these arguments"; empty: everything is proven.
  std::string reason = {};
  /// "pinv takes the rank to be 1, by the tolerance 2e-69", which a second computation can take as wrongly; mostly
  /// empty.
  std::string taken = {};

  bool empty() const { return reason.empty(); }
  /// What is not proven in a part counts for the whole.
  void add(const Unproven& part) {
    if (taken.empty() && !part.empty()) {
      *this = part;
    }
  }
};

inline Unproven no_proof_found(const char* function) {
  return {"no proof of " + std::string(function) + " was found for these arguments"};
}

}  // namespace cli::repl
