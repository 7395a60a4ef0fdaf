// Some eigenvalues of large general matrices: entries.
#include <vector>

#include "src/dense/complex_schur.h"
#include "src/dense/schur_vectors.h"
#include "src/krylov/eigen_call.h"

namespace tesk {
namespace {

constexpr WantedName kWantedOfGeneral[] = {{"LM", Wanted::largest_size},      {"SM", Wanted::smallest_size},
                                           {"LR", Wanted::largest_real},      {"SR", Wanted::smallest_real},
                                           {"LI", Wanted::largest_imaginary}, {"SI", Wanted::smallest_imaginary}};

struct Eigenpair {
  Complex value;
  std::vector<Complex> vector;
  bool pair;  // the conjugates are another one
};

/// Eigenvalues and eigenvectors of a form of order n, from the top. Divisors below `smallest` are replaced by it.
std::vector<Eigenpair> pairs_of_form(Integer n, OneBasedMatrix<QuarnFloat> s, const QuarnFloat& smallest) {
  std::vector<Eigenpair> pairs;
  for (const BlockEigenvalue& each : block_eigenvalues(n, s)) {
    pairs.push_back({{each.re, each.im}, right_eigenvector(Accuracy::full, n, s, each, smallest), each.pair});
  }
  return pairs;
}
std::vector<Eigenpair> pairs_of_form(Integer n, OneBasedMatrix<Complex> s, const QuarnFloat& /*smallest*/) {
  std::vector<Eigenpair> pairs;
  for (Integer k = 1; k <= n; ++k) {
    pairs.push_back({s(k, k), std::vector<Complex>(static_cast<std::size_t>(n)), false});
    triangular_eigenvector(n, s, k, {pairs.back().vector.data(), 1});
  }
  return pairs;
}

std::vector<Complex> conjugates(std::vector<Complex> x) {
  conjugate_vector(Integer(x.size()), OneBasedVector<Complex>(x.data(), 1));
  return x;
}

template <class T>
struct GeneralCall {
  EigenArguments<T, T> given;
  Complex* w;
  Complex* z;
  QuarnFloat* resid;
  Integer* m;
  Integer* nprod;

  Integer find() const {
    return given.solve(kWantedOfGeneral, false, [this](KrylovSpace<T>& space) { return deliver(space); });
  }

 private:
  /// Vectors and values are rounded first, so that residuals are those of what is returned. Nothing is written before
  /// all of it is there.
  Integer deliver(KrylovSpace<T>& space) const {
    const Integer n = given.n;
    std::vector<Eigenpair> pairs = expanded(space);
    std::vector<Complex> values;
    std::vector<QuarnFloat> rests;
    std::vector<std::vector<Complex>> columns;
    bool small = true;
    Integer products = space.products;
    for (Eigenpair& each : pairs) {
      const OneBasedMatrix<Complex> x(each.vector.data(), n);
      round_elements<Complex>(n, 1, x);
      multiply_by(each.value, QuarnFloat(1));
      std::vector<Complex> image(each.vector.size());
      const QuarnFloat rest = rounded_from_more(n, [&] {
        products += by_parts(each, each.vector, image,
                             [this](const T* from, T* to) { given.product(given.context, kProduct, from, to); });
        add_multiple<Complex>(n, -each.value, x.column(1), {image.data(), 1});
        return length_of(n, OneBasedVector<Complex>(image.data(), 1));
      });
      if (!isfinite(rest)) {
        return 2;
      }
      small = small && is_small(rest, given.tol, space.norm_of_a);
      for (int of_pair = 0; of_pair <= (each.pair ? 1 : 0); ++of_pair) {
        values.push_back(of_pair == 0 ? each.value : conjugate(each.value));
        rests.push_back(rest);
        columns.push_back(of_pair == 0 ? each.vector : conjugates(each.vector));
      }
    }
    for (std::size_t j = 0; j < values.size(); ++j) {
      w[j] = std::move(values[j]);
      resid[j] = std::move(rests[j]);
      if (z != nullptr) {
        std::move(columns[j].begin(), columns[j].end(), z + std::ptrdiff_t(j) * given.ldz);
      }
    }
    *m = Integer(values.size());
    *nprod = products;
    return info_of(space.end, small);
  }

  /// The eigenpairs of A that those of the form stand for; vectors of length 1.
  std::vector<Eigenpair> expanded(KrylovSpace<T>& space) const {
    const Integer n = given.n;
    const WorkingDigits more(guarded_digits(n));
    const QuarnFloat smallest = space.norm == 0 ? smallest_number() : epsilon() * space.norm;
    std::vector<Eigenpair> pairs = pairs_of_form(space.size, space.s.view(), smallest);
    for (Eigenpair& each : pairs) {
      std::vector<Complex> x(static_cast<std::size_t>(n));
      const OneBasedVector<Complex> view(x.data(), 1);
      const OneBasedMatrix<T> v = space.v.view();
      by_parts(each, each.vector, x, [&](const T* from, T* to) {
        exact::multiply_matrix_vector<T>(Op::none, n, space.size, T(1.0), v, {const_cast<T*>(from), 1}, T(), {to, 1});
      });
      scale(n, 1 / length_of(n, view), view);
      each.vector = std::move(x);
      if (given.sigma != nullptr) {
        each.value = Complex(*given.sigma) + quotient(Complex(1.0), each.value);
      }
    }
    return pairs;
  }

  /// y := map(x) for a linear map of T, of an eigenvector or what stands for it: of a real matrix by its parts, of
  /// which that of a real eigenvalue has one. Returns how often the map was formed.
  template <class Map>
  static Integer by_parts(const Eigenpair& of, const std::vector<Complex>& x, std::vector<Complex>& y, const Map& map) {
    if constexpr (std::is_same_v<T, Complex>) {
      map(x.data(), y.data());
      return 1;
    } else {
      std::vector<QuarnFloat> part(x.size());
      std::vector<QuarnFloat> image(y.size());
      const auto form = [&](QuarnFloat Complex::*member) {
        std::transform(x.begin(), x.end(), part.begin(), [member](const Complex& each) { return each.*member; });
        map(part.data(), image.data());
        for (std::size_t i = 0; i < y.size(); ++i) {
          y[i].*member = std::move(image[i]);
        }
      };
      form(&Complex::re);
      if (of.pair) {
        form(&Complex::im);
      }
      return of.pair ? 2 : 1;
    }
  }
};

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_deigs_(const char* which, Integer n, Integer k, const QuarnFloat* sigma, QuarnRealOperator product,
                     void* context, Integer ncv, QuarnFloat tol, Integer most, const QuarnFloat* v0, Complex* w,
                     Complex* z, Integer ldz, QuarnFloat* resid, Integer* m, Integer* nprod, Integer* info,
                     int /*which_length*/) {
  *info =
      tesk::GeneralCall<QuarnFloat>{
          {which, n, k, sigma, product, context, ncv, std::move(tol), most, v0, ldz}, w, z, resid, m, nprod}
          .find();
}

void QuarnMPX_zeigs_(const char* which, Integer n, Integer k, const Complex* sigma, QuarnComplexOperator product,
                     void* context, Integer ncv, QuarnFloat tol, Integer most, const Complex* v0, Complex* w,
                     Complex* z, Integer ldz, QuarnFloat* resid, Integer* m, Integer* nprod, Integer* info,
                     int /*which_length*/) {
  *info =
      tesk::GeneralCall<Complex>{
          {which, n, k, sigma, product, context, ncv, std::move(tol), most, v0, ldz}, w, z, resid, m, nprod}
          .find();
}
}
