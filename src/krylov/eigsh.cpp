// Some eigenvalues of large symmetric and Hermitian matrices: entries.
#include <numeric>
#include <vector>

#include "quarn/functions.h"
#include "src/dense/householder.h"
#include "src/krylov/basis.h"
#include "src/krylov/call.h"

namespace tesk {
namespace {

constexpr WantedName kWanted[] = {{"LM", Wanted::largest_size},
                                  {"SM", Wanted::smallest_size},
                                  {"LA", Wanted::largest_real},
                                  {"SA", Wanted::smallest_real},
                                  {"BE", Wanted::both_ends}};

template <class T>
struct HermitianCall {
  const char* which;
  Integer n;
  Integer k;
  const QuarnFloat* sigma;
  Operator<T> product;
  void* context;
  Integer ncv;
  QuarnFloat tol;
  Integer most;
  const T* v0;
  QuarnFloat* w;
  T* z;
  Integer ldz;
  QuarnFloat* resid;
  Integer* nprod;

  Integer find() const {
    const auto* const wanted = std::find_if(std::begin(kWanted), std::end(kWanted),
                                            [this](const auto& each) { return is_option(which, each.letters); });
    const Integer wrong = first_wrong({{wanted == std::end(kWanted), 1},
                                       {n < 1, 2},
                                       {k < 1 || k > n, 3},
                                       {sigma != nullptr && !isfinite(*sigma), 4},
                                       {product == nullptr, 5},
                                       {!is_basis(n, k, ncv), 7},
                                       {!(tol >= 0 && tol < 1), 8},
                                       {most < 1, 9},
                                       {!is_start(n, v0), 10},
                                       {ldz < n, 13}});
    if (wrong != 0) {
      return -wrong;
    }
    const Integer basis = usual_basis(n, k, ncv);
    const QuarnFloat tolerance = usual_tolerance(tol);
    const Integer what = sigma != nullptr ? kShiftedSolve : kProduct;
    const auto multiply = [&](const T* x, T* y) { product(context, what, x, y); };
    Integer products = 0;
    KrylovSpace<T> space = with_enough_digits<T>(n, shifted_norm(), tolerance, [&](const QuarnFloat& limit) {
      KrylovSpace<T> found = krylov_schur<T>(
          {true, n, multiply, wanted->wanted, k, basis, sigma != nullptr, tolerance, most - products, limit, v0});
      products += found.products;
      return found;
    });
    if (space.end == KrylovEnd::failed) {
      return 2;
    }
    return deliver(space, products);
  }

 private:
  /// About the norm of A - sigma I; 0 without sigma.
  QuarnFloat shifted_norm() const {
    if (sigma == nullptr) {
      return {};
    }
    const WorkingDigits more(guarded_digits(n));
    Basis<T> v(n, 2);
    v.take_random(1);
    product(context, kProduct, v.vector(1).first(), v.vector(2).first());
    add_multiple(n, T(-*sigma), v.vector(1), v.vector(2));
    return v.norm_of(2);
  }

  /// Vectors are rounded first, so that values and residuals are those of what is returned.
  Integer deliver(KrylovSpace<T>& space, Integer products) const {
    const OneBasedMatrix<T> vectors = space.v.view();
    round_elements<T>(n, k, vectors);
    std::vector<QuarnFloat> values(static_cast<std::size_t>(k));
    std::vector<QuarnFloat> rests(values.size());
    std::vector<T> image(static_cast<std::size_t>(n));
    const OneBasedVector<T> y(image.data(), 1);
    for (Integer j = 1; j <= k; ++j) {
      const OneBasedVector<T> x = vectors.column(j);
      QuarnFloat& value = values[std::size_t(j) - 1];
      QuarnFloat& rest = rests[std::size_t(j) - 1];
      {
        const WorkingDigits more(guarded_digits(n));
        product(context, kProduct, x.first(), y.first());
        T quotient{};
        exact::multiply_matrix_vector<T>(Op::conjugate_transpose, n, 1, T(1.0), {x.first(), n}, y, T(), {&quotient, 1});
        value = real_part(quotient) / sum_of_squares(n, x);
      }
      value *= 1;
      {
        const WorkingDigits more(guarded_digits(n));
        add_multiple(n, T(-value), x, y);
        rest = sqrt(sum_of_squares(n, y));
      }
      rest *= 1;
      if (!isfinite(rest)) {
        return 2;
      }
    }
    std::vector<Integer> order(values.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](Integer i, Integer j) { return values[std::size_t(i)] < values[std::size_t(j)]; });
    for (std::size_t i = 0; i < order.size(); ++i) {
      const auto from = std::size_t(order[i]);
      w[i] = std::move(values[from]);
      resid[i] = std::move(rests[from]);
      if (z != nullptr) {
        copy(n, vectors.column(order[i] + 1), OneBasedVector<T>(z + std::ptrdiff_t(i) * ldz, 1));
      }
    }
    *nprod = products + k;
    return space.end == KrylovEnd::converged ? 0 : 1;
  }
};

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_deigsh_(const char* which, Integer n, Integer k, const QuarnFloat* sigma, QuarnRealOperator product,
                      void* context, Integer ncv, QuarnFloat tol, Integer most, const QuarnFloat* v0, QuarnFloat* w,
                      QuarnFloat* z, Integer ldz, QuarnFloat* resid, Integer* nprod, Integer* info,
                      int /*which_length*/) {
  *info = tesk::HermitianCall<QuarnFloat>{which, n,  k, sigma, product, context, ncv,  std::move(tol),
                                          most,  v0, w, z,     ldz,     resid,   nprod}
              .find();
}

void QuarnMPX_zeigsh_(const char* which, Integer n, Integer k, const QuarnFloat* sigma, QuarnComplexOperator product,
                      void* context, Integer ncv, QuarnFloat tol, Integer most, const Complex* v0, QuarnFloat* w,
                      Complex* z, Integer ldz, QuarnFloat* resid, Integer* nprod, Integer* info, int /*which_length*/) {
  *info = tesk::HermitianCall<Complex>{which, n,  k, sigma, product, context, ncv,  std::move(tol),
                                       most,  v0, w, z,     ldz,     resid,   nprod}
              .find();
}
}
