#include "src/fft/complex_passes.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "src/fft/odd_sums.h"
#include "src/fft/prime_transform.h"
#include "src/frame/check_points.h"

namespace tesk {
namespace {

/// The r numbers that a butterfly reads.
template <class Number>
class Input {
 public:
  Input(Number* first, std::ptrdiff_t stride) : first_(first), stride_(stride) {}

  Number& operator[](Integer q) const { return first_[q * stride_]; }

 private:
  Number* first_;
  std::ptrdiff_t stride_;
};

/// Takes the r results of a butterfly to their places, turned.
template <bool kTurned>
class Output {
 public:
  Output(Complex* first, std::ptrdiff_t stride, const Complex* table, std::ptrdiff_t step)
      : first_(first), stride_(stride), table_(table), step_(step) {}

  /// Element 0, which is never turned.
  void put(QuarnFloat re, QuarnFloat im) const {
    first_->re = std::move(re);
    first_->im = std::move(im);
  }

  void put(Integer s, QuarnFloat re, QuarnFloat im) const {
    Complex& z = first_[s * stride_];
    if constexpr (kTurned) {
      const Complex& w = table_[s * step_];
      z.re = re * w.re - im * w.im;
      z.im = re * w.im + im * w.re;
    } else {
      z.re = std::move(re);
      z.im = std::move(im);
    }
  }

 private:
  Complex* first_;
  std::ptrdiff_t stride_;
  const Complex* table_;
  std::ptrdiff_t step_;
};

/// Calls butterfly(input, output) for every butterfly of a pass of radix r.
template <class Butterfly>
void for_each_butterfly(const PassShape& shape, Integer r, const Complex* source, Complex* target, const Complex* table,
                        const Butterfly& butterfly) {
  if (shape.length < 1 || shape.blocks < 1) {
    return;
  }
  const std::ptrdiff_t row = std::ptrdiff_t(shape.length) * shape.lanes;
  const std::ptrdiff_t apart = row * shape.blocks;
  CheckPoints check_points;
  for (Integer block = 0; block < shape.blocks; ++block) {
    const Complex* from = source + block * row * r;
    Complex* to = target + block * row;
    for (Integer lane = 0; lane < shape.lanes; ++lane) {
      check_points.pass(r);
      butterfly(Input(from++, row), Output<false>(to++, apart, table, 0));
    }
    for (Integer i = 1; i < shape.length; ++i) {
      for (Integer lane = 0; lane < shape.lanes; ++lane) {
        check_points.pass(r);
        butterfly(Input(from++, row), Output<true>(to++, apart, table, std::ptrdiff_t(i) * shape.blocks));
      }
    }
  }
}

/// The sums E_s and O_s of real and imaginary parts at once, for the short odd radices: sums is Sums3 or Sums5.
template <int r, class Sums>
void odd_pass(const PassShape& shape, const Complex* source, Complex* target, const Complex* table, const Sums& sums) {
  for_each_butterfly(shape, r, source, target, table, [&sums](const auto& x, const auto& out) {
    constexpr int h = r / 2;
    QuarnFloat even_re[h + 1] = {x[0].re};
    QuarnFloat even_im[h + 1] = {x[0].im};
    QuarnFloat odd_re[h + 1];
    QuarnFloat odd_im[h + 1];
    for (int q = 1; q <= h; ++q) {
      const Complex& a = x[q];
      const Complex& b = x[r - q];
      even_re[q] = a.re + b.re;
      even_im[q] = a.im + b.im;
      odd_re[q] = a.re - b.re;
      odd_im[q] = a.im - b.im;
    }
    sums(even_re, odd_re);
    sums(even_im, odd_im);
    out.put(std::move(even_re[0]), std::move(even_im[0]));
    for (int s = 1; s <= h; ++s) {
      out.put(s, even_re[s] + odd_im[s], even_im[s] - odd_re[s]);
      out.put(r - s, even_re[s] - odd_im[s], even_im[s] + odd_re[s]);
    }
  });
}

/// One butterfly of any odd radix over sums and differences: t_q in place q, d_q in place r - q.
template <class Sums, class Out>
void long_butterfly(Integer r, const Sums& x, const Out& out, const Complex* roots, std::ptrdiff_t apart) {
  QuarnFloat sum_re = x[0].re;
  QuarnFloat sum_im = x[0].im;
  for (Integer q = 1; q <= r / 2; ++q) {
    sum_re = sum_re + x[q].re;
    sum_im = sum_im + x[q].im;
  }
  out.put(std::move(sum_re), std::move(sum_im));
  const auto root = [=](Integer q) -> const Complex& { return roots[q * apart]; };
  QuarnFloat e_re;
  QuarnFloat e_im;
  QuarnFloat o_re;
  QuarnFloat o_im;
  CheckPoints check_points;
  for (Integer s = 1; s <= r / 2; ++s) {
    check_points.pass(r);
    // The roots of the table turn forward: these are -O_s.
    sums_of_pairs(
        r, s, [&x](Integer q) -> const QuarnFloat& { return x[q].re; },
        [&x, r](Integer q) -> const QuarnFloat& { return x[r - q].re; }, root, e_re, o_re);
    sums_of_pairs(
        r, s, [&x](Integer q) -> const QuarnFloat& { return x[q].im; },
        [&x, r](Integer q) -> const QuarnFloat& { return x[r - q].im; }, root, e_im, o_im);
    out.put(s, e_re - o_im, e_im + o_re);
    out.put(r - s, e_re + o_im, e_im - o_re);
  }
}

/// Any odd radix. Sums and differences are formed first, in the other array unless this is the last pass: so the result
/// comes back to the array that was read, except from the last pass. Returns whether it is in `other`.
bool long_pass(const PassShape& shape, Integer r, Complex* data, Complex* other, const Complex* table) {
  const bool last = shape.length == 1;
  Complex* const pairs = last ? data : other;
  Complex* const result = last ? other : data;
  const std::ptrdiff_t row = std::ptrdiff_t(shape.length) * shape.lanes;
  for (Integer block = 0; block < shape.blocks; ++block) {
    for (std::ptrdiff_t i = 0; i < row; ++i) {
      const std::ptrdiff_t first = block * row * r + i;
      const Input x(data + first, row);
      const Input pair(pairs + first, row);
      pair[0] = x[0];
      for (Integer q = 1; q <= r / 2; ++q) {
        Complex difference = x[q] - x[r - q];
        pair[q] = x[q] + x[r - q];
        pair[r - q] = std::move(difference);
      }
    }
  }
  const std::ptrdiff_t apart = std::ptrdiff_t(shape.length) * shape.blocks;
  for_each_butterfly(shape, r, pairs, result, table,
                     [=](const auto& x, const auto& out) { long_butterfly(r, x, out, table, apart); });
  return last;
}

/// A large prime radix by convolution.
void convolution_pass(const PassShape& shape, PrimeTransform& transform, const Complex* source, Complex* target,
                      const Complex* table) {
  const Integer r = transform.length();
  std::vector<Complex> z(static_cast<std::size_t>(r));
  for_each_butterfly(shape, r, source, target, table, [&](const auto& x, const auto& out) {
    for (Integer q = 0; q < r; ++q) {
      z[std::size_t(q)] = x[q];
    }
    transform(z.data());
    out.put(std::move(z[0].re), std::move(z[0].im));
    for (Integer s = 1; s < r; ++s) {
      out.put(s, std::move(z[std::size_t(s)].re), std::move(z[std::size_t(s)].im));
    }
  });
}

}  // namespace

void pass2(const PassShape& shape, const Complex* source, Complex* target, const Complex* table) {
  for_each_butterfly(shape, 2, source, target, table, [](const auto& x, const auto& out) {
    const Complex& a = x[0];
    const Complex& b = x[1];
    out.put(a.re + b.re, a.im + b.im);
    out.put(1, a.re - b.re, a.im - b.im);
  });
}

void pass3(const PassShape& shape, const Complex* source, Complex* target, const Complex* table,
           const Constants& constants) {
  odd_pass<3>(shape, source, target, table, Sums3(constants));
}

void pass4(const PassShape& shape, const Complex* source, Complex* target, const Complex* table) {
  for_each_butterfly(shape, 4, source, target, table, [](const auto& x, const auto& out) {
    // Part by part: a Complex on the way would cost a copy.
    const QuarnFloat even_sum_re = x[0].re + x[2].re;
    const QuarnFloat even_sum_im = x[0].im + x[2].im;
    const QuarnFloat odd_sum_re = x[1].re + x[3].re;
    const QuarnFloat odd_sum_im = x[1].im + x[3].im;
    out.put(even_sum_re + odd_sum_re, even_sum_im + odd_sum_im);
    out.put(2, even_sum_re - odd_sum_re, even_sum_im - odd_sum_im);
    const QuarnFloat even_difference_re = x[0].re - x[2].re;
    const QuarnFloat even_difference_im = x[0].im - x[2].im;
    const QuarnFloat odd_difference_re = x[1].re - x[3].re;
    const QuarnFloat odd_difference_im = x[1].im - x[3].im;
    out.put(1, even_difference_re + odd_difference_im, even_difference_im - odd_difference_re);
    out.put(3, even_difference_re - odd_difference_im, even_difference_im + odd_difference_re);
  });
}

void pass5(const PassShape& shape, const Complex* source, Complex* target, const Complex* table,
           const Constants& constants) {
  odd_pass<5>(shape, source, target, table, Sums5(constants, Circle(constants)));
}

Passes::Passes(Integer n, Integer lanes, const Complex* table, Integer count, const Integer* factors,
               const Constants& constants)
    : n_(n), lanes_(lanes), table_(table), count_(count), factors_(factors), constants_(constants) {
  if (constants.accuracy() == Accuracy::classic) {
    return;
  }
  convolutions_.resize(std::size_t(count));
  for (Integer i = 0; i < count; ++i) {
    const Integer r = factors[i];
    if (r > 5 && PrimeTransform::pays(r)) {
      convolutions_[std::size_t(i)] = std::make_unique<PrimeTransform>(r, table, n / r, constants);
    }
  }
}

Passes::~Passes() = default;

/// Returns whether the result is in `other`.
bool Passes::pass(Integer place, const PassShape& shape, Complex* data, Complex* other) const {
  const Integer r = factors_[place];
  switch (r) {
    case 2:
      pass2(shape, data, other, table_);
      return true;
    case 3:
      pass3(shape, data, other, table_, constants_);
      return true;
    case 4:
      pass4(shape, data, other, table_);
      return true;
    case 5:
      pass5(shape, data, other, table_, constants_);
      return true;
    default:
      if (!convolutions_.empty() && convolutions_[std::size_t(place)]) {
        convolution_pass(shape, *convolutions_[std::size_t(place)], data, other, table_);
        return true;
      }
      return long_pass(shape, r, data, other, table_);
  }
}

Complex* Passes::operator()(Complex* x, Complex* scratch) const {
  Integer blocks = 1;
  for (Integer i = 0; i < count_; ++i) {
    const Integer r = factors_[i];
    if (r > 1 && pass(i, {n_ / blocks / r, blocks, lanes_}, x, scratch)) {
      std::swap(x, scratch);
    }
    blocks *= r;
  }
  return x;
}

namespace {

/// Fills a table place by place, each once.
class TableMaker {
 public:
  TableMaker(Complex* table, Integer n, const Constants& constants)
      : table_(table),
        n_(n),
        circle_(constants),
        twiddles_(circle_, n, n),
        mirrored_(constants.accuracy() == Accuracy::full && n % 4 == 0) {
    std::fill_n(table, n, Complex());
    table[0].re = 1.0;
  }

  void provide(Integer k) {
    Complex& place = table_[k];
    if (place.re == zero_ && place.im == zero_) {
      check_points_.pass(8);
      place = conj(rotation(k));
    }
  }

 private:
  Complex rotation(Integer k) {
    if (mirrored_) {
      // The mirror image in the first octant has a place of its own.
      const Folding folding(k, n_);
      const auto image = Integer(folding.parts() / 4);
      if (image != k) {
        provide(image);
        return folding.unfolded(conj(table_[image]));
      }
    }
    return twiddles_.rotation(k);
  }

  Complex* table_;
  Integer n_;
  Circle circle_;
  Twiddles twiddles_;
  bool mirrored_;
  QuarnFloat zero_;
  CheckPoints check_points_;
};

}  // namespace

void make_table(Complex* table, Integer n, const ComplexFactors& factors, const Constants& constants) {
  TableMaker maker(table, n, constants);
  Integer blocks = 1;
  for (Integer f = 0; f < factors.count; ++f) {
    const Integer r = factors.factor[std::size_t(f)];
    const Integer length = n / blocks / r;
    for (Integer s = 1; s < r; ++s) {
      for (Integer i = 1; i < length; ++i) {
        maker.provide(s * i * blocks);
      }
      if (r > 5 && s <= r / 2) {
        maker.provide(s * length * blocks);
      }
    }
    blocks *= r;
  }
}

}  // namespace tesk
