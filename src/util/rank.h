// Ranking of values that stay where they are.
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

enum class Order { ascending, descending };

/// Where NaN is ranked: wherever comparisons leave it, or after all numbers in either order.
enum class NanRank { anywhere, last };

/// ranks[i] := the rank of values[i], one of first ... first + count - 1; equal values by position in both orders.
/// count >= 1. At most n H + O(n) comparisons, H the entropy of the lengths of natural runs.
void rank(const QuarnFloat* values, Integer count, Order order, NanRank nan, Integer first, Integer* ranks);

}  // namespace tesk
