// The rank of an exact matrix by elimination modulo primes: not below the rank modulo any prime; and where it is r
// modulo primes whose product is above Hadamard's bound of all minors of order r + 1 these minors are 0. J. Hadamard,
// Bull. Sci. Math. 17 (1893); J. von zur Gathen, J. Gerhard, Modern Computer Algebra, section 5.5.
#include "src/proven/rank.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "src/proven/modular.h"
#include "tesk2mp/proven.h"

namespace tesk::proven {

template <class T>
std::optional<Integer> exact_rank(Integer m, Integer n, OneBasedMatrix<T> a) {
  const IntegerRows rows(m, n, std::is_same_v<T, Complex>, 1, a);
  const std::size_t most = std::min(rows.size(), std::size_t(n));
  return rows.largest(
      Integer(most), double(rows.size()) * double(n) * double(most),
      [&](const Field& field, Residues residues) { return Integer(row_echelon(field, residues, std::size_t(n))); },
      [&](Integer found) { return rows.norms(std::size_t(found) + 1); });
}

template std::optional<Integer> exact_rank(Integer, Integer, OneBasedMatrix<QuarnFloat>);
template std::optional<Integer> exact_rank(Integer, Integer, OneBasedMatrix<Complex>);

namespace {

template <class T>
Integer checked_rank(Integer m, Integer n, T* a, Integer lda, Integer* rank) {
  const Integer wrong = first_wrong({{m < 0, 1}, {n < 0, 2}, {lda < std::max<Integer>(1, m), 4}});
  *rank = 0;
  if (wrong != 0 || m == 0 || n == 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> matrix(a, lda);
  Range range;
  range.take(m, n, matrix);
  if (!range.is_finite()) {
    return 1;
  }
  const auto found = exact_rank(m, n, matrix);
  *rank = found.value_or(0);
  return found ? 0 : 1;
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_rank_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* rank, Integer* info) {
  *info = tesk::proven::checked_rank(m, n, a, lda, rank);
}
void QuarnMPX_zproven_rank_(Integer m, Integer n, Complex* a, Integer lda, Integer* rank, Integer* info) {
  *info = tesk::proven::checked_rank(m, n, a, lda, rank);
}
}
