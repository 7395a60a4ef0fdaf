// Complex arrays of several dimensions: entries, along one of them and along all.
#include <algorithm>
#include <cstdint>

#include "src/fft/complex_cores.h"
#include "src/frame/report.h"
#include "tesk2mp/fft.h"

namespace tesk {
namespace {

/// The product of extents that are at least 1; what no 64-bit number can tell is the largest of them.
std::int64_t product(const Integer* nd, Integer count) {
  std::int64_t result = 1;
  for (Integer i = 0; i < count; ++i) {
    if (result > INT64_MAX / nd[i]) {
      return INT64_MAX;
    }
    result *= nd[i];
  }
  return result;
}

/// The number, from 1, of the first extent below 1; 0 when there is none.
Integer first_bad_extent(const Dimensions& dimensions) {
  for (Integer i = 1; i <= dimensions.ndim; ++i) {
    if (dimensions.nd[i - 1] < 1) {
      return i;
    }
  }
  return 0;
}

/// The array as it looks along dimension l. The extents are known to multiply to a 32-bit number.
View along(const Dimensions& dimensions, Integer l) {
  const Integer before = Integer(product(dimensions.nd, l - 1));
  const Integer n = dimensions.nd[l - 1];
  return {before, n, dimensions.n / before / n};
}

/// Transforms one dimension; an extent of 1 touches nothing.
Status transform_view(const Engine& engine, bool backward, Complex* x, const View& view, Complex* work) {
  return view.n == 1 ? Status::ok : engine.transform(backward, x, view, work);
}

void store_length(std::int64_t length, Complex* work) {
  work[0].re = QuarnFloat(length);
  work[0].im = QuarnFloat();
}

constexpr char kWorkspace[] = " ** LWORK, = %16ld,  must be at least:%16ld.";

}  // namespace

void transform_one_dimension(const Call& call, const Dimensions& dimensions, Integer l, Complex* x, Complex* work) {
  Report report("C06PFF", call.message_buffer, call.ifail);
  const Integer* nd = dimensions.nd;
  if (dimensions.ndim < 1) {
    return report.fail(1, 99999, " ** On entry, NDIM .lt. 1: NDIM = %16ld.", dimensions.ndim);
  }
  if (l < 1 || l > dimensions.ndim) {
    return report.fail(2, 99998, " ** On entry, L .lt. 1 or L .gt. NDIM: L = %16ld.", l);
  }
  if (!is_valid_direct(call.direct)) {
    return report.fail(3, 99997, kInvalidDirect, call.direct.text());
  }
  if (const Integer i = first_bad_extent(dimensions); i > 0) {
    return report.fail(4, 99996, " ** ND(I) .lt. 1: ND(I) = %12ld I = %12ld.", nd[i - 1], i);
  }
  const std::int64_t needed = std::int64_t(dimensions.n) + nd[l - 1] + 15;
  if (dimensions.query) {
    return store_length(needed, work);
  }
  if (const std::int64_t length = product(nd, dimensions.ndim); length != dimensions.n) {
    return report.fail(5, 99995, " ** N must = product of the ND(I): N = %12ld ND(I) = %12ld.", dimensions.n, length);
  }
  if (dimensions.lwork < needed) {
    return report.fail(6, 99994, kWorkspace, dimensions.lwork, needed);
  }
  switch (transform_view(call.engine, is_backward(call.direct), x, along(dimensions, l), work)) {
    case Status::ok:
      return;
    case Status::too_many_factors:
      return report.fail(7, 99993, " ** ND(L) must have < 31 prime factors: ND(L) = %16ld.", nd[l - 1]);
    default:
      return report.fail(8, 99992, kInternalFailure);
  }
}

void transform_all_dimensions(const Call& call, const Dimensions& dimensions, Complex* x, Complex* work) {
  Report report("C06PJF", call.message_buffer, call.ifail);
  const Integer* nd = dimensions.nd;
  if (dimensions.ndim < 1) {
    return report.fail(1, 99999, " ** NDIM .lt. 1: NDIM = %16ld.", dimensions.ndim);
  }
  if (!is_valid_direct(call.direct)) {
    return report.fail(2, 99998, kInvalidDirect, call.direct.text());
  }
  if (const Integer i = first_bad_extent(dimensions); i > 0) {
    return report.fail(3, 99997, " ** ND(I) .lt. 1: ND(I) = %16ld I = %16ld.", nd[i - 1], i);
  }
  if (const std::int64_t length = product(nd, dimensions.ndim); length != dimensions.n) {
    return report.fail(4, 99996, " ** N = the product of the ND(I): N = %12ld ND(I) =%12ld.", dimensions.n, length);
  }
  const Integer longest = *std::max_element(nd, nd + dimensions.ndim);
  const std::int64_t needed = dimensions.n + 3 * (std::int64_t(longest) + 5);
  if (dimensions.query) {
    return store_length(needed, work);
  }
  if (dimensions.lwork < needed) {
    return report.fail(5, 99995, kWorkspace, dimensions.lwork, needed);
  }
  // All extents are looked at before any dimension is transformed.
  for (Integer l = 1; l <= dimensions.ndim; ++l) {
    if (!call.engine.accepts(nd[l - 1])) {
      return report.fail(6, 99994, " ** ND(I) must have < 31 prime factors: for I = %12ld", l);
    }
  }
  for (Integer l = 1; l <= dimensions.ndim; ++l) {
    if (transform_view(call.engine, is_backward(call.direct), x, along(dimensions, l), work) != Status::ok) {
      return report.fail(7, 99993, kInternalFailure);
    }
  }
}

namespace {

bool is_query(Integer flag) { return flag == 1; }

}  // namespace
}  // namespace tesk

using tesk::is_backward;
using tesk::is_query;
using tesk::kClassicEngine;
using tesk::kFullEngine;
using tesk::Option;

extern "C" {

void QuarnMP_c06pffn_(Integer query, const char* direct, Integer ndim, Integer l, const Integer* nd, Integer n,
                      Complex* x, Complex* work, Integer lwork, char* message_buffer, Integer* ifail, int direct_length,
                      int /*buffer_length*/) {
  tesk::transform_one_dimension({kClassicEngine, Option(direct, direct_length), message_buffer, ifail},
                                {is_query(query), ndim, nd, n, lwork}, l, x, work);
}

void QuarnMP_c06pfzn_(const char* direct, Complex* x, Integer before, Integer n, Integer after, Complex* work,
                      Integer* ifail, int direct_length) {
  *ifail = Integer(
      tesk::transform_view(kClassicEngine, is_backward(Option(direct, direct_length)), x, {before, n, after}, work));
}

void QuarnMP_c06pjfn_(Integer query, const char* direct, Integer ndim, const Integer* nd, Integer n, Complex* x,
                      Complex* work, Integer lwork, char* message_buffer, Integer* ifail, int direct_length,
                      int /*buffer_length*/) {
  tesk::transform_all_dimensions({kClassicEngine, Option(direct, direct_length), message_buffer, ifail},
                                 {is_query(query), ndim, nd, n, lwork}, x, work);
}

void QuarnMPX_c06pffn_(Integer query, const char* direct, Integer ndim, Integer l, const Integer* nd, Integer n,
                       Complex* x, Complex* work, Integer lwork, char* message_buffer, Integer* ifail,
                       int direct_length, int /*buffer_length*/) {
  tesk::transform_one_dimension({kFullEngine, Option(direct, direct_length), message_buffer, ifail},
                                {is_query(query), ndim, nd, n, lwork}, l, x, work);
}

void QuarnMPX_c06pfzn_(const char* direct, Complex* x, Integer before, Integer n, Integer after, Complex* work,
                       Integer* ifail, int direct_length) {
  *ifail = Integer(
      tesk::transform_view(kFullEngine, is_backward(Option(direct, direct_length)), x, {before, n, after}, work));
}

void QuarnMPX_c06pjfn_(Integer query, const char* direct, Integer ndim, const Integer* nd, Integer n, Complex* x,
                       Complex* work, Integer lwork, char* message_buffer, Integer* ifail, int direct_length,
                       int /*buffer_length*/) {
  tesk::transform_all_dimensions({kFullEngine, Option(direct, direct_length), message_buffer, ifail},
                                 {is_query(query), ndim, nd, n, lwork}, x, work);
}
}
