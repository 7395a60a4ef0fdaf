// The rank of an exact matrix.
#pragma once

#include <optional>

#include "src/kernels/scalar.h"
#include "src/kernels/views.h"

namespace tesk::proven {

/// The rank of a matrix of finite numbers; nothing where that would take too long.
template <class T>
std::optional<Integer> exact_rank(Integer m, Integer n, OneBasedMatrix<T> a);

}  // namespace tesk::proven
