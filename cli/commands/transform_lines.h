// Transforms of arrays along one dimension, by those of sequences.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace cli {

/// Each line along a dimension of that extent, with elements `step` apart, becomes transform(line), as long.
template <class T, class Transform>
void transform_lines(std::vector<T>& elements, std::size_t step, std::size_t extent, const Transform& transform) {
  std::vector<T> line(extent);
  for (std::size_t start = 0; start < elements.size(); start += step * extent) {
    for (std::size_t first = start; first < start + step; ++first) {
      for (std::size_t k = 0; k < extent; ++k) {
        line[k] = std::move(elements[first + k * step]);
      }
      line = transform(line);
      for (std::size_t k = 0; k < extent; ++k) {
        elements[first + k * step] = std::move(line[k]);
      }
    }
  }
}

}  // namespace cli
