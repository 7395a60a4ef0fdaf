// Long products, quotients and roots at the radix of numbers.
#include "number/limbs/newton_sqrt.h"

namespace quarn {

template void multiply_balanced<Radix>(Radix::Limb*, const Radix::Limb*, const Radix::Limb*, std::size_t);
template void multiply<Radix>(Radix::Limb*, const Radix::Limb*, std::size_t, const Radix::Limb*, std::size_t);
template bool divide<Radix>(Radix::Limb*, const Radix::Limb*, std::size_t, const Radix::Limb*, std::size_t);
template bool square_root<Radix>(Radix::Limb*, const Radix::Limb*, std::size_t);

}  // namespace quarn
