// Some eigenvalues of large symmetric and Hermitian matrices: entries.
#include <vector>

#include "src/dense/householder.h"
#include "src/krylov/eigen_call.h"

namespace tesk {
namespace {

constexpr WantedName kWantedOfHermitian[] = {{"LM", Wanted::largest_size},
                                             {"SM", Wanted::smallest_size},
                                             {"LA", Wanted::largest_real},
                                             {"SA", Wanted::smallest_real},
                                             {"BE", Wanted::both_ends}};

template <class T>
struct HermitianCall {
  EigenArguments<T, QuarnFloat> given;
  QuarnFloat* w;
  T* z;
  QuarnFloat* resid;
  Integer* nprod;

  Integer find() const {
    return given.solve(kWantedOfHermitian, true, [this](KrylovSpace<T>& space) { return deliver(space); });
  }

 private:
  /// Vectors are rounded first, so that values and residuals are those of what is returned.
  Integer deliver(KrylovSpace<T>& space) const {
    const Integer n = given.n;
    const Integer k = given.k;
    const OneBasedMatrix<T> vectors = space.v.view();
    round_elements<T>(n, k, vectors);
    std::vector<T> image(static_cast<std::size_t>(n));
    const OneBasedVector<T> y(image.data(), 1);
    const auto rayleigh_quotient = [&](Integer j) {
      const OneBasedVector<T> x = vectors.column(j);
      given.product(given.context, kProduct, x.first(), y.first());
      return real_product(n, x, y) / sum_of_squares(n, x);
    };
    const auto residual = [&](Integer j, const QuarnFloat& value) {
      add_multiple(n, T(-value), vectors.column(j), y);
      return length_of(n, y);
    };
    Measured found = measure(k, n, given.tol, space.norm_of_a, rayleigh_quotient, residual);
    if (!found.are_finite) {
      return 2;
    }
    hand_over<T>(found, false, w, resid, {{vectors, n, z, given.ldz}});
    *nprod = space.products + k;
    return info_of(space.end, found.are_small);
  }
};

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_deigsh_(const char* which, Integer n, Integer k, const QuarnFloat* sigma, QuarnRealOperator product,
                      void* context, Integer ncv, QuarnFloat tol, Integer most, const QuarnFloat* v0, QuarnFloat* w,
                      QuarnFloat* z, Integer ldz, QuarnFloat* resid, Integer* nprod, Integer* info,
                      int /*which_length*/) {
  *info =
      tesk::HermitianCall<QuarnFloat>{
          {which, n, k, sigma, product, context, ncv, std::move(tol), most, v0, ldz}, w, z, resid, nprod}
          .find();
}

void QuarnMPX_zeigsh_(const char* which, Integer n, Integer k, const QuarnFloat* sigma, QuarnComplexOperator product,
                      void* context, Integer ncv, QuarnFloat tol, Integer most, const Complex* v0, QuarnFloat* w,
                      Complex* z, Integer ldz, QuarnFloat* resid, Integer* nprod, Integer* info, int /*which_length*/) {
  *info =
      tesk::HermitianCall<Complex>{
          {which, n, k, sigma, product, context, ncv, std::move(tol), most, v0, ldz}, w, z, resid, nprod}
          .find();
}
}
