// Some singular values of large matrices: entries.
#include <vector>

#include "src/krylov/call.h"
#include "src/krylov/lanczos_bidiagonal.h"

namespace tesk {
namespace {

template <class T>
struct SingularCall {
  const char* which;
  Integer m;
  Integer n;
  Integer k;
  Operator<T> product;
  void* context;
  Integer ncv;
  QuarnFloat tol;
  Integer most;
  const T* v0;
  QuarnFloat* s;
  T* u;
  Integer ldu;
  T* v;
  Integer ldv;
  QuarnFloat* resid;
  Integer* nprod;

  Integer find() const {
    const Integer few = std::min(m, n);
    const bool largest = is_option(which, "LM");
    const Integer wrong = first_wrong({{!largest && !is_option(which, "SM"), 1},
                                       {m < 1, 2},
                                       {n < 1, 3},
                                       {k < 1 || k > few, 4},
                                       {product == nullptr, 5},
                                       {!is_basis(few, k, ncv), 7},
                                       {!is_tolerance(tol), 8},
                                       {most < 1, 9},
                                       {!is_start(few, v0), 10},
                                       {ldu < m, 13},
                                       {ldv < n, 15}});
    if (wrong != 0) {
      return -wrong;
    }
    // The adjoint of a wide matrix is tall.
    const bool wide = m < n;
    const Integer basis = usual_basis(few, k, ncv);
    const QuarnFloat tolerance = usual_tolerance(tol);
    const auto by = [this](Integer what) { return [this, what](const T* x, T* y) { product(context, what, x, y); }; };
    SingularSpace<T> space = [&] {
      const WorkingDigits more(guarded_digits(std::max(m, n)));
      return lanczos_bidiagonal<T>({std::max(m, n), few, by(wide ? kAdjointProduct : kProduct),
                                    by(wide ? kProduct : kAdjointProduct), !largest, k, basis, tolerance, most, v0});
    }();
    if (space.end == KrylovEnd::failed) {
      return 2;
    }
    return deliver(space, wide ? space.v.view() : space.u.view(), wide ? space.u.view() : space.v.view());
  }

 private:
  /// Vectors are rounded first, so that values and residuals are those of what is returned.
  Integer deliver(const SingularSpace<T>& space, OneBasedMatrix<T> left, OneBasedMatrix<T> right) const {
    round_elements<T>(m, k, left);
    round_elements<T>(n, k, right);
    std::vector<T> image(static_cast<std::size_t>(m));
    std::vector<T> adjoint_image(static_cast<std::size_t>(n));
    const OneBasedVector<T> av(image.data(), 1);
    const OneBasedVector<T> ahu(adjoint_image.data(), 1);
    const auto rayleigh_quotient = [&](Integer j) {
      const OneBasedVector<T> x = left.column(j);
      const OneBasedVector<T> y = right.column(j);
      product(context, kProduct, y.first(), av.first());
      product(context, kAdjointProduct, x.first(), ahu.first());
      return fabs(real_product(m, x, av)) / sqrt(sum_of_squares(m, x) * sum_of_squares(n, y));
    };
    const auto residual = [&](Integer j, const QuarnFloat& value) {
      add_multiple(m, T(-value), left.column(j), av);
      add_multiple(n, T(-value), right.column(j), ahu);
      QuarnFloat of_left = length_of(m, av);
      QuarnFloat of_right = length_of(n, ahu);
      return of_right <= of_left || isnan(of_left) ? of_left : of_right;
    };
    Measured found = measure(k, std::max(m, n), tol, space.norm, rayleigh_quotient, residual);
    if (!found.are_finite) {
      return 2;
    }
    hand_over<T>(found, true, s, resid, {{left, m, u, ldu}, {right, n, v, ldv}});
    *nprod = space.products + 2 * k;
    return info_of(space.end, found.are_small);
  }
};

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dsvds_(const char* which, Integer m, Integer n, Integer k, QuarnRealOperator product, void* context,
                     Integer ncv, QuarnFloat tol, Integer most, const QuarnFloat* v0, QuarnFloat* s, QuarnFloat* u,
                     Integer ldu, QuarnFloat* v, Integer ldv, QuarnFloat* resid, Integer* nprod, Integer* info,
                     int /*which_length*/) {
  *info = tesk::SingularCall<QuarnFloat>{which, m, n, k,   product, context, ncv,   std::move(tol), most,
                                         v0,    s, u, ldu, v,       ldv,     resid, nprod}
              .find();
}

void QuarnMPX_zsvds_(const char* which, Integer m, Integer n, Integer k, QuarnComplexOperator product, void* context,
                     Integer ncv, QuarnFloat tol, Integer most, const Complex* v0, QuarnFloat* s, Complex* u,
                     Integer ldu, Complex* v, Integer ldv, QuarnFloat* resid, Integer* nprod, Integer* info,
                     int /*which_length*/) {
  *info = tesk::SingularCall<Complex>{which, m, n, k,   product, context, ncv,   std::move(tol), most,
                                      v0,    s, u, ldu, v,       ldv,     resid, nprod}
              .find();
}
}
