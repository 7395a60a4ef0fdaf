// Permutations in place, cycle by cycle. The sign of an entry marks what has been visited, so no other storage is
// needed; every entry is positive again at the end, whatever happened.
//
// A permutation here is `count` entries, each in first ... first + count - 1 with first >= 1; places are counted from
// 0.
#pragma once

#include <utility>

#include "quarn/quarnfloat.h"

namespace tesk {

/// The place of the first entry outside first ... last, or -1.
inline Integer find_out_of_range(const Integer* entries, Integer count, Integer first, Integer last) noexcept {
  for (Integer i = 0; i < count; ++i) {
    if (entries[i] < first || entries[i] > last) {
      return i;
    }
  }
  return -1;
}

inline void restore_signs(Integer* entries, Integer count) noexcept {
  for (Integer i = 0; i < count; ++i) {
    if (entries[i] < 0) {
      entries[i] = -entries[i];
    }
  }
}

/// Element i of every array goes to place ranks[i] - first. Gives 0, or a rank that is there twice: then every array
/// still holds its own elements, in some other order.
template <class... T>
Integer move_to_ranks(Integer* ranks, Integer first, Integer count, T*... arrays) noexcept {
  Integer repeated = 0;
  for (Integer start = 0; start < count && repeated == 0; ++start) {
    if (ranks[start] < 0) {
      continue;
    }
    Integer place = ranks[start] - first;
    ranks[start] = -ranks[start];
    // The element in hand at any time is the one at `start`: it is exchanged along the cycle.
    while (place != start) {
      if (ranks[place] < 0) {
        repeated = place + first;
        break;
      }
      (std::swap(arrays[start], arrays[place]), ...);
      const Integer next = ranks[place] - first;
      ranks[place] = -ranks[place];
      place = next;
    }
  }
  restore_signs(ranks, count);
  return repeated;
}

/// Moves element i of the array to place ranks[i], given also the inverse: sources[ranks[i]] = i. Places count from 0.
/// Both are used up.
///
/// Following cycles would wait for memory at every step, since each place is known only from the one before. Here
/// places are filled in order, by exchange, so that the elements of a large array can be fetched ahead of their turn.
template <class T>
void move_to_ranks_ahead(Integer* ranks, Integer* sources, Integer count, T* array) noexcept {
  constexpr Integer kAhead = 16;
  for (Integer i = 0; i < count; ++i) {
    if (i < count - kAhead) {
      // Where an exchange has changed these in the meantime, the wrong line is fetched: that costs time only.
      const Integer source = sources[i + kAhead];
      __builtin_prefetch(array + source, 1);
      __builtin_prefetch(reinterpret_cast<const char*>(array + source + 1) - 1, 1);
      __builtin_prefetch(ranks + source, 1);
      __builtin_prefetch(sources + ranks[i + kAhead], 1);
    }
    const Integer source = sources[i];
    if (source != i) {
      std::swap(array[i], array[source]);
      // The element that has made room waits at `source` now.
      const Integer rank = ranks[i];
      sources[rank] = source;
      ranks[source] = rank;
    }
  }
}

/// Replaces a permutation by its inverse.
inline void invert_permutation(Integer* entries, Integer first, Integer count) noexcept {
  for (Integer start = 0; start < count; ++start) {
    if (entries[start] < 0) {
      continue;
    }
    Integer previous = start;
    Integer place = entries[start] - first;
    while (place != start) {
      const Integer next = entries[place] - first;
      entries[place] = -(previous + first);
      previous = place;
      place = next;
    }
    entries[start] = -(previous + first);
  }
  restore_signs(entries, count);
}

/// Gives 0 for a permutation, or a value that is there twice.
inline Integer find_repeated(Integer* entries, Integer first, Integer count) noexcept {
  Integer repeated = 0;
  for (Integer i = 0; i < count && repeated == 0; ++i) {
    const Integer value = entries[i] < 0 ? -entries[i] : entries[i];
    Integer& mark = entries[value - first];
    if (mark < 0) {
      repeated = value;
    } else {
      mark = -mark;
    }
  }
  restore_signs(entries, count);
  return repeated;
}

}  // namespace tesk
