// The kernels' one source: included by a file of each instruction set, which defines QUARN_VECTOR_BYTES.
#include "number/exact/kernel.h"

namespace quarn::exact {
namespace {

typedef double Vector __attribute__((vector_size(QUARN_VECTOR_BYTES), may_alias));

constexpr int kLanes = QUARN_VECTOR_BYTES / 8;
// Accumulators of a tile, as many as the registers hold beside the operands.
#if defined(__i386__)
constexpr int kVectors = 2;
constexpr int kPanel = 2;
#elif QUARN_VECTOR_BYTES == 16
constexpr int kVectors = 2;
constexpr int kPanel = 4;
#elif QUARN_VECTOR_BYTES == 32
constexpr int kVectors = 3;
constexpr int kPanel = 4;
#else
constexpr int kVectors = 3;
constexpr int kPanel = 8;
#endif
constexpr int kGroup = kVectors * kLanes;

using Tile = Vector[kPanel][kVectors];

#define QUARN_INLINE [[gnu::always_inline]] inline

QUARN_INLINE Vector load(const double* p) { return *reinterpret_cast<const Vector*>(p); }
QUARN_INLINE void store(double* p, Vector x) { *reinterpret_cast<Vector*>(p) = x; }
QUARN_INLINE Vector all(double x) { return x - Vector{}; }

/// The nearest whole number, |x| < 2^51.
QUARN_INLINE Vector nearest(Vector x) {
  constexpr double kShift = 6755399441055744.0;  // 1.5 * 2^52
  return (x + kShift) - kShift;
}

QUARN_INLINE Vector residue(Vector x, Vector prime, Vector inverse) { return x - nearest(x * inverse) * prime; }

/// tile[j][r] = the sum over l of a[l][r] b[l][j]; rows of b have kStep numbers.
template <int kStep>
QUARN_INLINE void multiply_tile(Tile& tile, const double* a, const double* b, size_t inner) {
  for (int j = 0; j < kPanel; ++j) {
    for (int v = 0; v < kVectors; ++v) {
      tile[j][v] = Vector{};
    }
  }
  for (size_t l = 0; l < inner; ++l) {
    Vector x[kVectors];
#pragma GCC unroll 4
    for (int v = 0; v < kVectors; ++v) {
      x[v] = load(a + v * kLanes);
    }
#pragma GCC unroll 8
    for (int j = 0; j < kPanel; ++j) {
      const double y = b[j];
#pragma GCC unroll 4
      for (int v = 0; v < kVectors; ++v) {
        tile[j][v] += x[v] * y;
      }
    }
    a += kGroup;
    b += kStep;
  }
}

void residues(const Tables& tables, const double* digits, int count, size_t groups, double* out, size_t stride) {
  for (size_t g = 0; g < groups; ++g) {
    for (int first = 0; first < tables.primes; first += kPanel) {
      Tile tile;
      const double* const powers =
          tables.powers + size_t(first / kTablePanel) * size_t(tables.digits) * kTablePanel + first % kTablePanel;
      multiply_tile<kTablePanel>(tile, digits, powers, size_t(count));
#pragma GCC unroll 8
      for (int j = 0; j < kPanel; ++j) {
        if (first + j < tables.primes) {
          const Vector prime = all(tables.prime[first + j]);
          const Vector inverse = all(tables.inverse[first + j]);
          double* const to = out + size_t(first + j) * stride;
          for (int v = 0; v < kVectors; ++v) {
            store(to + v * kLanes, residue(tile[j][v], prime, inverse));
          }
        }
      }
    }
    digits += count * kGroup;
    out += kGroup;
  }
}

void multiply(const Tables& tables, const double* left, size_t left_stride, const double* right, size_t right_stride,
              size_t groups, size_t panels, size_t inner, bool add, double* sums) {
  const size_t column = size_t(tables.primes + 1) * kGroup;
  for (int p = 0; p < tables.primes; ++p) {
    const Vector prime = all(tables.prime[p]);
    const Vector inverse = all(tables.inverse[p]);
    const Vector cofactor = all(tables.cofactor[p]);
    for (size_t panel = 0; panel < panels; ++panel) {
      for (size_t g = 0; g < groups; ++g) {
        const double* a = left + size_t(p) * left_stride + g * inner * kGroup;
        const double* b = right + size_t(p) * right_stride + panel * inner * kPanel;
        Tile tile;
        size_t rest = inner < kRun ? inner : kRun;
        multiply_tile<kPanel>(tile, a, b, rest);
        for (size_t done = rest; done < inner; done += rest) {
          rest = inner - done < kRun ? inner - done : kRun;
          Tile more;
          multiply_tile<kPanel>(more, a + done * kGroup, b + done * kPanel, rest);
          for (int j = 0; j < kPanel; ++j) {
            for (int v = 0; v < kVectors; ++v) {
              tile[j][v] = residue(tile[j][v], prime, inverse) + residue(more[j][v], prime, inverse);
            }
          }
        }
        double* const to = sums + (panel * groups + g) * kPanel * column + size_t(p) * kGroup;
#pragma GCC unroll 8
        for (int j = 0; j < kPanel; ++j) {
          for (int v = 0; v < kVectors; ++v) {
            double* const place = to + size_t(j) * column + v * kLanes;
            const Vector product = residue(tile[j][v], prime, inverse) * cofactor;
            store(place, residue(add ? product + load(place) : product, prime, inverse));
          }
        }
      }
    }
  }
}

void recombine(const Tables& tables, double* sums, int count, bool wide, double* digits, double* sign) {
  // The sum of all residues over their primes is the value over M, below 1/4, and a whole number.
  for (int v = 0; v < kVectors; ++v) {
    Vector sum{};
    for (int p = 0; p < tables.primes; ++p) {
      sum += load(sums + p * kGroup + v * kLanes) * tables.inverse[p];
    }
    store(sums + tables.primes * kGroup + v * kLanes, nearest(sum));
  }
  // Digits from -5 10^5 to 5 10^5; the last carry is a multiple of 10^(6 count).
  Vector carry[kVectors]{};
  for (int first = 0; first < count; first += kPanel) {
    Tile tile;
    const double* const weights =
        tables.weights + size_t(first / kTablePanel) * size_t(tables.primes + 1) * kTablePanel + first % kTablePanel;
    multiply_tile<kTablePanel>(tile, sums, weights, size_t(tables.primes + 1));
#pragma GCC unroll 8
    for (int j = 0; j < kPanel; ++j) {
      if (first + j < count) {
        for (int v = 0; v < kVectors; ++v) {
          const Vector x = tile[j][v] + carry[v];
          carry[v] = nearest(x * 1e-6);
          store(digits + (first + j) * kGroup + v * kLanes, x - carry[v] * 1e6);
        }
      }
    }
  }
  for (; count % 3 != 0; ++count) {
    for (int v = 0; v < kVectors; ++v) {
      store(digits + count * kGroup + v * kLanes, Vector{});
    }
  }
  constexpr double kBias = 4503599627370496.0;  // 2^52
  for (int v = 0; v < kVectors; ++v) {
    double* const d = digits + v * kLanes;
    Vector lead{};
    for (int s = count - 1; s >= 0; --s) {
      const Vector x = load(d + s * kGroup);
      lead = lead == 0 ? x : lead;
    }
    const Vector direction = lead < 0 ? all(-1.0) : all(1.0);
    store(sign + v * kLanes, lead == 0 ? Vector{} : direction);
    Vector borrow{};
    for (int s = 0; s < count; s += 3) {
      Vector x[3];
      for (int i = 0; i < 3; ++i) {
        x[i] = load(d + (s + i) * kGroup) * direction + borrow;
        borrow = x[i] < 0 ? all(-1.0) : Vector{};
        x[i] -= borrow * 1e6;
      }
      double* const to = d + s / 3 * 2 * kGroup;
      if (wide) {
        store(to, x[0] + x[1] * 1e6 + kBias);
        store(to + kGroup, x[2] + kBias);
      } else {
        // The middle digit's upper three decimal digits go up.
        const Vector upper = nearest((x[1] - 499.5) * 1e-3);
        store(to, x[0] + (x[1] - upper * 1e3) * 1e6 + kBias);
        store(to + kGroup, x[2] * 1e3 + upper + kBias);
      }
    }
  }
}

constexpr int kStep = QUARN_VECTOR_BYTES == 16 ? 115 : QUARN_VECTOR_BYTES == 32 ? 50 : 42;
constexpr Kernel kThis = {QUARN_KERNEL_NAME, kGroup, kPanel, kStep, residues, multiply, recombine};

#undef QUARN_INLINE

}  // namespace
}  // namespace quarn::exact
