// The words that say how a routine is meant, with the letters that the exports take for them. Part of tesk2mp.hpp.
#pragma once

namespace tesk2mp {

enum class Op : char { none = 'N', transpose = 'T', conjugate_transpose = 'C' };
enum class Side : char { left = 'L', right = 'R' };
enum class Triangle : char { upper = 'U', lower = 'L' };
enum class Diagonal : char { general = 'N', unit = 'U' };
enum class Direction : char { forward = 'F', backward = 'B' };

}  // namespace tesk2mp
