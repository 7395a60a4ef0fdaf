// Products by transforms at the radix of numbers.
#include "number/limbs/cyclic_product.h"

namespace quarn {

template class CyclicProduct<Radix>;

}  // namespace quarn
