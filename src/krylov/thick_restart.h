// The outer loop of a Krylov method with thick restarts, in which a space of limited size grows, keeps the Ritz vectors
// that are wanted most, and grows again: K. Wu, H. Simon, Thick-restart Lanczos method for large symmetric eigenvalue
// problems, SIAM J. Matrix Anal. Appl. 22 (2000).
//
// From one start vector a multiple eigenvalue shows once, and one whose vector it is orthogonal to not at all. When all
// that are wanted have converged, the loop therefore goes on with a random vector in the orthogonal complement of their
// vectors, until the best Ritz values there are seen not to be wanted. Where roundings are larger than the tolerance a
// multiple eigenvalue cannot be told from its rounding errors; then the number of these fresh starts ends the loop.
#pragma once

#include <algorithm>
#include <concepts>
#include <utility>
#include <vector>

#include "src/kernels/scalar.h"

namespace tesk {

enum class KrylovEnd { converged, not_converged, failed };

/// A Krylov method as thick_restart() drives it. Ritz values are numbered from 1, the most wanted first.
template <class Method>
concept RestartedMethod = requires(Method method, Integer count, bool fresh) {
  /// Grows the space from `count` vectors and the next one to its full size; false: a product is not finite.
  { method.expand(count) } -> std::same_as<bool>;
  /// Finds the Ritz values of the space; false: they were not found.
  { method.decompose() } -> std::same_as<bool>;
  /// The number of Ritz values, and whether the space is the whole one, so that they are exact.
  { method.size() } -> std::same_as<Integer>;
  { method.is_complete() } -> std::same_as<bool>;
  /// The first `count` values, and one more where it belongs to a pair that would be parted.
  { method.whole(count) } -> std::same_as<Integer>;
  /// The norm of the residual of one value, and how large it may be.
  { method.residual(count) } -> std::same_as<QuarnFloat>;
  { method.bound(count) } -> std::same_as<QuarnFloat>;
  /// How much one value is wanted: not less than the next one, or the one after that with both_ends().
  { method.key(count) } -> std::same_as<QuarnFloat>;
  { method.both_ends() } -> std::same_as<bool>;
  /// Keeps the first `count` Ritz vectors; the next one is the residual vector, or a random one if `fresh`.
  method.restart(count, fresh);
  /// Products formed so far.
  { method.products() } -> std::same_as<Integer>;
};

/// Ritz vectors to keep at a restart: the wanted ones, and half of the others.
inline Integer kept_at_restart(Integer count, Integer size) { return std::min(size - 1, (count + size) / 2); }

template <RestartedMethod Method>
bool wanted_converged(Method& method, Integer wanted) {
  for (Integer i = 1; i <= wanted; ++i) {
    if (!(method.residual(i) <= method.bound(i))) {
      return false;
    }
  }
  return true;
}

/// Whether the keys are those found before, but for what the residuals allow.
template <RestartedMethod Method>
bool keys_agree(Method& method, const std::vector<QuarnFloat>& keys, const std::vector<QuarnFloat>& before) {
  if (before.size() < keys.size()) {
    return false;
  }
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (!(fabs(keys[i] - before[i]) <= 100 * method.bound(Integer(i) + 1))) {
      return false;
    }
  }
  return true;
}

/// Whether the value after the wanted ones, one at each end with both_ends(), has converged or is known well enough to
/// be wanted less than them.
template <RestartedMethod Method>
bool others_are_unwanted(Method& method, Integer wanted) {
  const Integer step = method.both_ends() ? 2 : 1;
  for (Integer i = wanted + 1; i <= std::min(wanted + step, method.size()); ++i) {
    const QuarnFloat residual = method.residual(i);
    if (i > step && !(residual <= method.bound(i)) && !(10 * residual <= method.key(i - step) - method.key(i))) {
      return false;
    }
  }
  return true;
}

/// Runs `method` until its first `count` Ritz values have converged and been found twice, or as many fresh starts as
/// values have been made; not_converged at the first restart after `most_products` products.
template <RestartedMethod Method>
KrylovEnd thick_restart(Method& method, Integer count, Integer most_products) {
  std::vector<QuarnFloat> found;  // the keys when the wanted values had converged last
  Integer kept = 0;
  for (Integer fresh_starts = 0;;) {
    if (!method.expand(kept) || !method.decompose()) {
      return KrylovEnd::failed;
    }
    if (method.is_complete()) {
      return KrylovEnd::converged;
    }
    const Integer wanted = method.whole(count);
    const bool converged = wanted_converged(method, wanted);
    bool repeated = false;
    if (converged) {
      std::vector<QuarnFloat> keys;
      for (Integer i = 1; i <= wanted; ++i) {
        keys.push_back(method.key(i));
      }
      repeated = keys_agree(method, keys, found);
      if ((repeated && others_are_unwanted(method, wanted)) || fresh_starts > count) {
        return KrylovEnd::converged;
      }
      found = std::move(keys);
    }
    if (method.products() >= most_products) {
      // Values inside the spectrum may have a next one that is never separated; that does not count against those that
      // were found twice.
      return repeated ? KrylovEnd::converged : KrylovEnd::not_converged;
    }
    const bool fresh = converged && !repeated;
    fresh_starts += fresh ? 1 : 0;
    kept = fresh ? wanted : method.whole(kept_at_restart(count, method.size()));
    kept = kept < method.size() ? kept : method.whole(std::max<Integer>(1, method.size() - 2));
    method.restart(kept, fresh);
  }
}

}  // namespace tesk
