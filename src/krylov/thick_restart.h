// The course of a process that grows a Krylov space, keeps the best of it, and grows it again: K. Wu, H. Simon,
// Thick-restart Lanczos method for large symmetric eigenvalue problems, SIAM J. Matrix Anal. Appl. 22 (2000).
//
// From one start vector a multiple eigenvalue shows once, and one whose vector it is orthogonal to not at all. When all
// that are wanted are found, the process therefore goes on with a random vector in the space that is orthogonal to
// them, until the best values there are seen not to be wanted. Roundings of more than the tolerance cannot be told from
// a multiple eigenvalue; neither do the rounds end then, but for their number.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "src/kernels/scalar.h"

namespace tesk {

enum class KrylovEnd { converged, not_converged, failed };

/// What of a space is kept at a restart beside those wanted: half of the rest.
inline Integer kept_at_restart(Integer count, Integer size) { return std::min(size - 1, (count + size) / 2); }

/// The process has
///   expand(kept)       grows the space from `kept` vectors and the next one to its full size; false: not finite
///   decompose()        its values, the most wanted first; false: they were not found
///   is_complete()      the space is the whole one, so that its values are exact
///   whole(count)       so many values, or one more where two belong together
///   residual(i), bound(i)   what value i, from 1, misses, and may miss
///   key(i)             larger than that of the next one, or of the one after that with both_ends()
///   restart(kept, fresh)    keeps so many; goes on with a random vector if fresh
///   products()         so many were formed
template <class Process>
KrylovEnd thick_restart(Process& process, Integer count, Integer most_products) {
  std::vector<QuarnFloat> found;
  Integer kept = 0;
  for (Integer rounds = 0;;) {
    if (!process.expand(kept) || !process.decompose()) {
      return KrylovEnd::failed;
    }
    if (process.is_complete()) {
      return KrylovEnd::converged;
    }
    const Integer wanted = process.whole(count);
    bool all = true;
    for (Integer i = 1; i <= wanted; ++i) {
      all = all && process.residual(i) <= process.bound(i);
    }
    bool fresh = false;
    bool repeated = false;
    if (all) {
      std::vector<QuarnFloat> now;
      bool same = !found.empty();
      for (Integer i = 1; i <= wanted; ++i) {
        now.push_back(process.key(i));
        same = same && found.size() >= now.size() && fabs(now.back() - found[now.size() - 1]) <= 100 * process.bound(i);
      }
      const Integer step = process.both_ends() ? 2 : 1;
      bool known = true;  // the next one is not wanted
      for (Integer i = wanted + 1; i <= std::min(wanted + step, process.size()); ++i) {
        const QuarnFloat rest = process.residual(i);
        known = known && (i <= step || rest <= process.bound(i) || 10 * rest <= process.key(i - step) - process.key(i));
      }
      if ((same && known) || rounds > count) {
        return KrylovEnd::converged;
      }
      fresh = !same;
      repeated = same;
      rounds += fresh ? 1 : 0;
      found = std::move(now);
    }
    if (process.products() >= most_products) {
      // That of inner values the next one is not separated says nothing against those found twice.
      return repeated ? KrylovEnd::converged : KrylovEnd::not_converged;
    }
    kept = fresh ? wanted : process.whole(kept_at_restart(count, process.size()));
    kept = kept < process.size() ? kept : process.whole(std::max<Integer>(1, process.size() - 2));
    process.restart(kept, fresh);
  }
}

}  // namespace tesk
