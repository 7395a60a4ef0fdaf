#!/usr/bin/env python3
"""mutations.py [BUILD [PROOF]]: can the tests of the proofs fail?

Deletes one term, or one upward rounding, of a proof at a time, compiles what contains it, links the tests of
tests/proven/ with that (BUILD, build/release unless given, has to have built test_proven), runs the named test case and
expects it to fail; of one proof alone where that is given. Prints a table; the exit status is 1 when a mutant lives.
Some half an hour.
"""
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
FLAGS = ["-std=c++20", "-O0", "-fPIE", "-DTESK2MP_BUILD", "-DDOCTEST_CONFIG_NO_MULTITHREADING"]

INVERSE = "src/proven/approximate_inverse.h"
FACTORS = "src/proven/factor_proof.h"
SIMILARITY = "src/proven/similarity.h"
SPECTRUM = "src/proven/spectrum.cpp"
WEYL = "src/proven/weyl.cpp"
ZEROS = "src/proven/zeros.cpp"
SOLVE = "src/proven/solve.cpp"
BOUND = "include/quarn/bound.h"
TERMS = "tests/proven/test_terms.cpp"
BOUNDS = "tests/proven/test_bound.cpp"
EIGENVALUES = "src/proven/eigenvalues.cpp"
REAL = "include/tesk2mp/proven_functions.hpp"
SUMS = "include/tesk2mp/proven_sums.hpp"
COMPLEX = "include/tesk2mp/proven_complex.hpp"
ARITHMETIC = "include/tesk2mp/proven_arithmetic.hpp"
ZERO = "include/tesk2mp/proven_zero.hpp"
SPARSE = "include/tesk2mp/proven_sparse.hpp"
DETERMINANT = "src/proven/determinant.cpp"
FORMS = "src/proven/forms.h"
TAYLOR = "src/proven/taylor.h"
FUNCTIONS = "tests/proven/test_functions.cpp"
FUNCTION_TERMS = "tests/proven/test_function_terms.cpp"
SPARSE_TERMS = "tests/proven/test_sparse.cpp"
NEAR_TERMS = "tests/proven/test_near.cpp"
FACTORISATIONS = "include/tesk2mp/proven_factors.hpp"
MATRIX_FUNCTIONS = "include/tesk2mp/proven_matrix_functions.hpp"
PSEUDO_INVERSES = "include/tesk2mp/proven_pseudo_inverse.hpp"
SPECTRA = "include/tesk2mp/proven_spectra.hpp"
KRYLOV = "include/tesk2mp/proven_krylov.hpp"
CERTIFICATES = "include/tesk2mp/proven_certificates.hpp"
DATA = "include/tesk2mp/proven.hpp"
OF_FACTORS = "tests/proven/test_factors.cpp"
OF_FUNCTIONS = "tests/proven/test_matrix_functions.cpp"
OF_DATA = "tests/proven/test_unknown.cpp"
OF_CERTIFICATES = "tests/proven/test_certify.cpp"

OF_MULTIPLE = "tests/proven/test_multiple.cpp"
DISTINCT = "src/proven/distinct.cpp"

OF_ONE = "terms of functions of a real number"
OF_TWO = "terms of functions of two real numbers"
OF_COMPLEX = "terms of functions of a complex number"
ROUNDINGS = "terms of roundings of functions"
OF_ARITHMETIC = "terms of arithmetic"
OF_SUMS = "terms of sums*"

# proof, file, text, what takes its place, what is compiled anew, test case
MUTANTS = [
    ("bounds", BOUND, "places > 9 ? 1 :", "places > 9 ? 0 :", [BOUNDS], "operations on bounds*"),
    ("bounds", BOUND, "return a / b + (a % b != 0 ? 1 : 0);", "return a / b;", [BOUNDS], "operations on bounds*"),
    ("bounds", BOUND, "if (middle * middle < a) {\n        low = middle + 1;",
     "if (middle * middle < a && (middle + 1) * (middle + 1) <= a) {\n        low = middle + 1;", [BOUNDS], "operations on bounds*"),
    ("rounding", "src/proven/rounding.h", "size.half_unit(digits_)", "size.half_unit(digits_ + 1)", [TERMS], "terms of a rounding"),
    ("rounding", "src/proven/rounding.h", "size.is_zero() ? of_zero_", "size.is_zero() ? QuarnBound()", [TERMS], "terms of a rounding"),
    ("inverse", INVERSE, "sums[std::size_t(i)] += rounded.size(e(i, j));", "sums[std::size_t(i)] += QuarnBound(e(i, j));", [TERMS],
     "terms of the bound of I - R A"),
    ("inverse", INVERSE, "sizes_[std::size_t(i)] * residual + rounded.error(y(i))", "rounded.error(y(i))", [TERMS],
     "terms of the proof by an inverse"),
    ("inverse", INVERSE, "sizes_[std::size_t(i)] * residual + rounded.error(y(i))", "sizes_[std::size_t(i)] * residual", [TERMS],
     "terms of the proof by an inverse"),
    ("inverse", INVERSE, "QuarnBound(y(i)) + bound);", "QuarnBound(y(i)));", [TERMS], "terms of the proof by an inverse"),
    ("inverse", INVERSE, "largest *= over_one_minus(norm_);", "", [TERMS], "terms of the proof by an inverse"),
    ("inverse", INVERSE, "of_r[std::size_t(i)] += rows_[std::size_t(i)] * largest;", "", [TERMS], "terms of the proof by an inverse"),
    ("inverse", INVERSE, "rows_[std::size_t(i)] += size * uncertain;", "", [TERMS], "terms of the proof by an inverse"),
    ("LU", FACTORS, "count(4 * std::uint32_t(n) + 32)", "count(4 * std::uint32_t(n) + 31)", [TERMS], "terms of the proof by factors"),
    ("LU", FACTORS, "units * over_one_minus(units)", "units", [TERMS], "terms of the proof by factors"),
    ("LU", FACTORS, "(QuarnBound::count(2) + gamma_)", "QuarnBound::count(2)", [TERMS], "terms of the proof by factors"),
    ("LU", FACTORS, "of_r[std::size_t(i)] += of_triangles * spread_[std::size_t(i)];", "", [TERMS], "terms of the proof by factors"),
    ("LU", FACTORS, "sizes[std::size_t(i)] += of_r[std::size_t(i)];", "", [TERMS], "terms of the proof by factors"),
    ("LU", FACTORS, "of_r[std::size_t(i)] += of_factors * spread_[std::size_t(i)];", "", [TERMS], "terms of the proof by factors"),
    ("LU", FACTORS, "largest(sizes) * over_one_minus(norm_)", "largest(sizes)", [TERMS], "terms of the proof by factors"),
    ("LU", FACTORS, "      std::swap(of_r[std::size_t(k)], of_r[std::size_t(factors_->pivot(k))]);", "", [TERMS],
     "terms of the proof by factors"),
    ("LU", FACTORS, "    solve(of_r);\n", "", [TERMS], "terms of the proof by factors"),
    ("solution", SOLVE, "of_y[std::size_t(i)] + rounded.error(y(i, j))", "of_y[std::size_t(i)]", [SOLVE], "bounds are nearly attained*"),
    ("solution", SOLVE, "of_residual.error(r(i, j)) + of_b_(i, j)", "of_residual.error(r(i, j))", [SOLVE], "bounds of the data*"),
    ("solution", SOLVE, "bound += of_a_(i, k) * sizes[std::size_t(k - 1)];", "", [SOLVE], "bounds of the data*"),
    ("norms", "src/proven/norms.h", "norm.take(i, rounded.size(g(i, j)));", "norm.take(i, QuarnBound(g(i, j)));", [TERMS],
     "terms of norms and defects"),
    ("Weyl", WEYL, "distance.of_product + QuarnBound(d[j]) * distance.of_factors", "distance.of_product", [WEYL],
     "bounds of approximations*"),
    ("Weyl", WEYL, "distance.of_product + QuarnBound(d[j]) * distance.of_factors", "QuarnBound(d[j]) * distance.of_factors", [WEYL],
     "bounds of approximations*"),
    ("Weyl", WEYL, "rounded.size(f(i, j)) + of_a(i, j)", "rounded.size(f(i, j))", [WEYL], "bounds of approximations*"),
    ("Davis-Kahan", WEYL, "sqrt(QuarnBound::count(2)) * sine + g", "g", [WEYL], "bounds of approximations*"),
    ("Miyajima", SIMILARITY, "of_residual(i, j) + rounded.error(residual(i, j))", "of_residual(i, j)", [EIGENVALUES, "src/proven/similarity.cpp"],
     "terms of Miyajima*"),
    ("Miyajima", SIMILARITY, "of_residual(i, j) + rounded.error(residual(i, j))", "rounded.error(residual(i, j))",
     [EIGENVALUES, "src/proven/similarity.cpp"], "terms of Miyajima*"),
    ("Miyajima", SIMILARITY, "bound += pencil.of_a(i, k) * QuarnBound(x(k, j));", "", [EIGENVALUES, "src/proven/similarity.cpp"],
     "bounds of approximations*"),
    ("Miyajima", SIMILARITY, "bound += of_p(i, k) * QuarnBound(m(k, j));", "", [EIGENVALUES, "src/proven/similarity.cpp"],
     "terms of Miyajima*,bounds of eigenvectors*"),
    ("Miyajima", "src/proven/similarity.cpp", "e(i, j) + e(i + 1, j + 1), e(i, j + 1) + e(i + 1, j)", "QuarnBound(), e(i, j + 1) + e(i + 1, j)",
     ["src/proven/similarity.cpp"], "terms of Miyajima*"),
    ("Rump, blocks", SPECTRUM, "sizes_(i, j) += QuarnBound(m(i, j));", "", [SPECTRUM], "discs of multiple*"),
    ("Gerschgorin", SPECTRUM, "    sum += element(i, j);", "    sum += i == j ? QuarnBound() : element(i, j);", [SPECTRUM],
     "terms of discs*"),
    ("eigenvectors", SPECTRUM, "- radii_[place].value();", ";", [SPECTRUM], "terms of discs*"),
    ("discs", "src/proven/discs.h", "distance.half_unit(kFewDigits - 2) + discs[i].error", "distance.half_unit(kFewDigits - 2)", [TERMS],
     "terms of discs*"),
    ("discs", "src/proven/discs.h", "distance + distance.half_unit(kFewDigits - 2) + discs[i].error", "discs[i].error", [TERMS],
     "terms of discs*"),
    *((("Pellet", TAYLOR, *change, [TERMS], "terms of expansions and circles")) for change in (
        ("sum += (QuarnBound(t.values[j]) + t.errors[j]) * power;\n  }\n  power = one;", "}\n  power = one;"),
        ("power *= r;\n    sum += (QuarnBound(t.values[j]) + t.errors[j]) * power;", "power *= r;"),
        ("sum += (QuarnBound(t.values[j]) + t.errors[j]) * power;\n  }\n  power = one;",
         "sum += QuarnBound(t.values[j]) * power;\n  }\n  power = one;"),
        ("power *= r;\n    sum += (QuarnBound(t.values[j]) + t.errors[j]) * power;",
         "power *= r;\n    sum += QuarnBound(t.values[j]) * power;"),
        ("sum += t.errors[k];", ""),
        ("sum.value() < least_size(t.values[k])", "sum.value() < modulus(t.values[k])"),
        ("majorants[j] += majorants[j - 1] * size;", ""),
        ("count(8 * std::uint32_t(n) + 16)", "count(8 * std::uint32_t(n) + 15)"),
        ("units * over_one_minus(units)", "units"),
    )),
    *((("determinant", DETERMINANT, *change, [DETERMINANT], "terms of determinants")) for change in (
        ("rows[std::size_t(k)] + lost * row_of_y[std::size_t(k)]", "lost * row_of_y[std::size_t(k)]"),
        ("rows[std::size_t(k)] + lost * row_of_y[std::size_t(k)]", "rows[std::size_t(k)]"),
        ("distance += uncertain_part(n, x, of_a, factors, row_of_y);", ""),
        ("    std::swap(rows[std::size_t(k)], rows[std::size_t(factors.pivot(k))]);\n", ""),
        ("column += QuarnBound(x(i, k));", "column = QuarnBound(x(k, k));"),
        ("distance * over_one_minus(distance)", "distance"),
        ("count(std::uint32_t(n) + 2)", "count(std::uint32_t(n) + 1)"),
        ("of_distance + of_steps + of_distance * of_steps", "of_steps + of_distance * of_steps"),
        ("of_distance + of_steps + of_distance * of_steps", "of_distance + of_distance * of_steps"),
        ("of_distance + of_steps + of_distance * of_steps", "of_distance + of_steps"),
        ("result.error + Rounded(QuarnDigits(), Range()).error(*det)", "result.error"),
    )),
    *((("definiteness", FORMS, *change, [TERMS], "terms of forms and Cholesky factors")) for change in (
        ("error = rounded.error(value(1, 1))", "error"),
        ("error += QuarnBound(x(i, 1)) * rounded.error(y(i, 1));", ""),
        ("sum = rounded.error(rest(j, j))", "sum"),
        ("sum += rounded.size(rest(i, j));", "sum += QuarnBound(rest(i, j));"),
        ("sum += rounded.size(rest(i, j));", "sum = rounded.size(rest(i, j));"),
    )),
    *((("sparse LU", SPARSE, *change, [SPARSE_TERMS], "terms of sparse proofs")) for change in (
        ("count(4 * std::uint32_t(n) + 32)", "count(4 * std::uint32_t(n) + 28)"),
        ("units * over_one_minus(units)", "units"),
        ("quotient + quotient * QuarnBound::power_of_ten(2 - QuarnDigits())", "quotient"),
        ("result[columns_[k]] = z[k] + of_factors * spread_[k];", "result[columns_[k]] = z[k];"),
        ("result[columns_[k]] = z[k] + of_factors * spread_[k];", "result[columns_[k]] = of_factors * spread_[k];"),
        ("gamma_ * largest(z) * over_one_minus(norm_)", "gamma_ * largest(z)"),
        ("z[k] = of_r[rows_[k]];", "z[k] = of_r[k];"),
        ("    for (std::size_t i = v.size(); i-- > 0;) {\n      for (const Element& element : lower_[i]) {\n"
         "        v[i] += element.size * v[element.column];\n      }\n    }\n", ""),
        ("    for (std::size_t i = 0; i < v.size(); ++i) {\n      for (const Element& element : lower_[i]) {\n"
         "        v[i] += element.size * v[element.column];\n      }\n    }\n", ""),
        ("v[i] += element.column == i ? QuarnBound() : element.size * v[element.column];", ""),
        ("v[i] *= over_pivots_[i];", ""),
        ("upper_[j].push_back({lower.row(k), QuarnBound(pivots[j]) * QuarnBound(lower.value(k))});", ""),
        ("QuarnBound(each) + rounding(each, QuarnDigits())", "QuarnBound(each)"),
        ("return hypotenuse(rounding(z.re, digits), rounding(z.im, digits));", "return rounding(z.re, digits);"),
        ("bounds[i] + detail::SparseResidual<T>::rounding(solution(i, j), digits)", "bounds[i]"),
    )),
    ("functions", REAL, "detail::decimal(1588, 3) *", "detail::decimal(158, 2) *", [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "decimal(15708, 4)", "decimal(157, 2)", [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "detail::above(::exp(at.high))", "detail::above(::exp(at.low))", [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "std::max(detail::gamma_slope(at.low), detail::gamma_slope(at.high))", "detail::gamma_slope(at.high)",
     [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "fabs(::cos(x.value)), x.error)", "fabs(::cos(x.value)))", [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "return over + over * over;", "return over * over;", [FUNCTIONS], "terms of functions"),
    *((("roundings", REAL, *change, [FUNCTION_TERMS], ROUNDINGS)) for change in (
        ("x.error.value(), quarn::Rounding::floor", "x.error.value(), quarn::Rounding::ceiling"),
        ("x.error.value(), quarn::Rounding::ceiling", "x.error.value(), quarn::Rounding::floor"),
        ("QuarnBound::power_of_ten(-999'999'999) : size + size.half_unit(kBoundDigits - 2)",
         "QuarnBound() : size + size.half_unit(kBoundDigits - 2)"),
        ("size + size.half_unit(kBoundDigits - 2)", "size"),
        ("QuarnBound(v * (1 - Real(2, -8)))", "QuarnBound(v)"),
        ("below(c * (1 - Real(1, -15)) - error.value())", "below(c - error.value())"),
        ("below(c * (1 - Real(1, -15)) - error.value())", "below(c * (1 - Real(1, -15)))"),
    )),
    *((("functions", REAL, *change, [FUNCTION_TERMS], OF_ONE)) for change in (
        ("expm1, x, [](const auto& at) { return detail::above(::exp(at.high));", "expm1, x, [](const auto& at) { return detail::above(::exp(at.low));"),
        ("decimal(7, 1) *", "decimal(69, 2) *"),
        ("::exp2(at.high)", "::exp2(at.low)"),
        ("decimal(2303, 3)", "decimal(2302, 3)"),
        ("::exp10(at.high)", "::exp10(at.low)"),
        ("detail::one() / detail::below(at.low);", "detail::one() / detail::below(at.high);"),
        ("below(1 + at.low)", "below(1 + at.high)"),
        ("decimal(1443, 3) / detail::below(at.low)", "decimal(1442, 3) / detail::below(at.low)"),
        ("decimal(1443, 3) / detail::below(at.low)", "decimal(1443, 3) / detail::below(at.high)"),
        ("decimal(4343, 4) / detail::below(at.low)", "decimal(4342, 4) / detail::below(at.low)"),
        ("decimal(4343, 4) / detail::below(at.low)", "decimal(4343, 4) / detail::below(at.high)"),
        ("decimal(5, 1) / detail::below(::sqrt(at.low))", "decimal(49, 2) / detail::below(::sqrt(at.low))"),
        ("decimal(5, 1) / detail::below(::sqrt(at.low))", "decimal(5, 1) / detail::below(::sqrt(at.high))"),
        ("std::min(x.error * slope, sqrt(x.error))", "std::min(x.error * slope, x.error)"),
        ("::cbrt(at.nearest())", "::cbrt(at.farthest())"),
        ("::sin, x, [](const auto& /*at*/) { return detail::one(); }", "::sin, x, [](const auto& /*at*/) { return detail::decimal(99, 2); }"),
        ("::cos, x, [](const auto& /*at*/) { return detail::one(); }", "::cos, x, [](const auto& /*at*/) { return detail::decimal(99, 2); }"),
        ("detail::one() / least / least;\n  });\n}\ninline Bounded<Real> sinpi", "detail::one() / least;\n  });\n}\ninline Bounded<Real> sinpi"),
        ("::sinpi, x, [](const auto& /*at*/) { return detail::decimal(31416, 4)", "::sinpi, x, [](const auto& /*at*/) { return detail::decimal(31415, 4)"),
        ("::cospi, x, [](const auto& /*at*/) { return detail::decimal(31416, 4)", "::cospi, x, [](const auto& /*at*/) { return detail::decimal(31415, 4)"),
        ("pi = detail::decimal(31416, 4)", "pi = detail::decimal(31415, 4)"),
        ("pi * x.error)", "QuarnBound())"),
        ("pi / least / least", "pi / least"),
        ("over_circle(m), decimal", "over_circle(at.nearest()), decimal"),
        ("::asinpi, x, detail::decimal(31831, 5)", "::asinpi, x, detail::decimal(3183, 4)"),
        ("::acospi, x, detail::decimal(31831, 5)", "::acospi, x, detail::decimal(3183, 4)"),
        ("::atan, x, [](const auto& at) {\n    const Real m = at.nearest();", "::atan, x, [](const auto& at) {\n    const Real m = at.farthest();"),
        ("::atanpi, x, [](const auto& at) {\n    const Real m = at.nearest();", "::atanpi, x, [](const auto& at) {\n    const Real m = at.farthest();"),
        ("decimal(31831, 5) / detail::below(1 + m * m)", "decimal(3183, 4) / detail::below(1 + m * m)"),
        ("::cosh(at.farthest())", "::cosh(at.nearest())"),
        ("::sinh(at.farthest())", "::sinh(at.nearest())"),
        ("::cosh(at.nearest()));\n    return detail::one() / least / least;", "::cosh(at.farthest()));\n    return detail::one() / least / least;"),
        ("::cosh(at.nearest()));\n    return detail::one() / least / least;", "::cosh(at.nearest()));\n    return detail::one() / least / least / least;"),
        ("::hypot(Real(1), at.nearest())", "::hypot(Real(1), at.farthest())"),
        ("(at.low - 1) * (at.low + 1)", "(at.high - 1) * (at.high + 1)"),
        ("QuarnBound::count(2) * x.error)", "x.error)"),
        ("::atanh, x, [](const auto& at) {\n    const Real m = at.farthest();", "::atanh, x, [](const auto& at) {\n    const Real m = at.nearest();"),
        ("std::max(detail::gamma_slope(at.low), detail::gamma_slope(at.high))", "detail::gamma_slope(at.low)"),
        ("above(::tgamma(x)) * above(::digamma(x))", "above(::tgamma(x))"),
        ("above(::tgamma(x)) * above(::digamma(x))", "above(::digamma(x))"),
        ("std::max(detail::above(::digamma(at.low)), detail::above(::digamma(at.high)))", "detail::above(::digamma(at.low))"),
        ("std::max(detail::above(::digamma(at.low)), detail::above(::digamma(at.high)))", "detail::above(::digamma(at.high))"),
        ("return over + over * over;", "return over;"),
        ("decimal(24675, 4)", "decimal(24674, 4)"),
        ("std::min(at.low - whole, whole + 1 - at.high)", "(at.low - whole)"),
        ("std::min(at.low - whole, whole + 1 - at.high)", "(whole + 1 - at.high)"),
        ("decimal(11284, 4)", "decimal(11283, 4)"),
        ("const Real m = at.nearest();\n  return decimal(11284, 4)", "const Real m = at.farthest();\n  return decimal(11284, 4)"),
        ("std::max(QuarnBound(f(at.low) - value), QuarnBound(f(at.high) - value))", "QuarnBound(f(at.low) - value)"),
        ("std::max(QuarnBound(f(at.low) - value), QuarnBound(f(at.high) - value))", "QuarnBound(f(at.high) - value)"),
        ("once_rounded(std::move(value), away);\n}\n/// The same by a bound", "once_rounded(std::move(value), QuarnBound());\n}\n/// The same by a bound"),
    )),
    *((("functions of two", REAL, *change, [FUNCTION_TERMS], OF_TWO)) for change in (
        ("known ? std::max(x.error, y.error)", "known ? x.error"),
        ("known ? std::max(x.error, y.error)", "known ? y.error"),
        ("::hypot(x.value, y.value), hypotenuse(x.error, y.error)", "::hypot(x.value, y.value), x.error"),
        ("::hypot(x.value, y.value), hypotenuse(x.error, y.error)", "::hypot(x.value, y.value), y.error"),
        ("const QuarnBound error = hypotenuse(x.error, y.error);", "const QuarnBound error = std::max(x.error, y.error);"),
        ("detail::below(::hypot(x.value, y.value), error)", "detail::below(::hypot(x.value, y.value))"),
        ("? x.error + y.error", "? x.error"),
        ("? x.error + y.error", "? y.error"),
        ("x.error + QuarnBound(times.value) * y.error", "x.error"),
        ("x.error + QuarnBound(times.value) * y.error", "QuarnBound(times.value) * y.error"),
        ("times.error.is_zero() ? x.error", "true ? x.error"),
        ("power(at.farthest(), true)", "power(at.nearest(), true)"),
        ("power(at.nearest(), false)", "power(at.farthest(), false)"),
        ("? size * above(", "? above("),
        (": size / below(", ": one() / below("),
        ("a * over_one_minus(a)", "a"),
        ("QuarnBound(y.value) * x.error / detail::below(at.low) + log * y.error", "log * y.error"),
        ("QuarnBound(y.value) * x.error / detail::below(at.low) + log * y.error", "QuarnBound(y.value) * x.error / detail::below(at.low)"),
        ("x.error / detail::below(at.low) + log", "x.error / detail::below(at.high) + log"),
        ("std::max(detail::above(::log(at.low)), detail::above(::log(at.high)))", "detail::above(::log(at.low))"),
        ("std::max(detail::above(::log(at.low)), detail::above(::log(at.high)))", "detail::above(::log(at.high))"),
        ("slope(low_x, low_y) * x.error + slope(low_y, low_x) * y.error", "slope(low_x, low_y) * x.error"),
        ("slope(low_x, low_y) * x.error + slope(low_y, low_x) * y.error", "slope(low_y, low_x) * y.error"),
        ("above(::beta(low_x, low_y))", "above(::beta(x.value, y.value))"),
        ("over + over * over), QuarnBound(end", "over * over), QuarnBound(end"),
        ("over + over * over), QuarnBound(end", "over), QuarnBound(end"),
        ("QuarnBound(end - start) + lost", "lost"),
        ("(detail::above(fabs(x.value - Real(double(j)))) + x.error) * over", "detail::above(fabs(x.value - Real(double(j)))) * over"),
        ("away * factor + product * over * x.error", "product * over * x.error"),
        ("away * factor + product * over * x.error", "away * factor"),
    )),
    *((("complex functions", COMPLEX, *change, [FUNCTION_TERMS], OF_COMPLEX)) for change in (
        ("below(quarn::abs(away), radius)", "below(quarn::abs(away))"),
        ("above(quarn::abs(centre)) + radius", "above(quarn::abs(centre))"),
        ("error += z.error * slope(Disc(z));", ""),
        ("above(::cosh(part.farthest()))", "above(::cosh(part.nearest()))"),
        ("one() / at.least_distance(a) / at.least_distance(b)", "one() / at.least_distance(a)"),
        ("one() / at.least_distance(a) / at.least_distance(b)", "one() / at.least_distance(b)"),
        ("above(::exp(at.re.high))", "above(::exp(at.re.low))"),
        ("decimal(4343, 4)", "decimal(4342, 4)"),
        ("decimal(25, 2)", "decimal(24, 2)"),
        ("quarn::sin, z, [](const auto& at) { return detail::grown(at.im);", "quarn::sin, z, [](const auto& at) { return detail::one();"),
        ("quarn::cos, z, [](const auto& at) { return detail::grown(at.im);", "quarn::cos, z, [](const auto& at) { return detail::one();"),
        ("quarn::sinh, z, [](const auto& at) { return detail::grown(at.re);", "quarn::sinh, z, [](const auto& at) { return detail::one();"),
        ("quarn::cosh, z, [](const auto& at) { return detail::grown(at.re);", "quarn::cosh, z, [](const auto& at) { return detail::one();"),
        ("quarn::cos(at.centre)), at.radius * detail::grown(at.im)", "quarn::cos(at.centre)), QuarnBound()"),
        ("quarn::cosh(at.centre)), at.radius * detail::grown(at.re)", "quarn::cosh(at.centre)), QuarnBound()"),
        ("+ QuarnBound::count(3) + steps.sum", "+ QuarnBound::count(3)"),
        ("above(::log(1 + far.value())) + QuarnBound::count(3)", "QuarnBound::count(3)"),
        ("+ QuarnBound::count(3) + steps.sum", "+ steps.sum"),
        ("above(::tgamma(high))}) * steps.product", "above(::tgamma(high))})"),
        ("std::max({one(), above(::tgamma(low)), above(::tgamma(high))})", "one()"),
        ("detail::gamma_size(at) * detail::digamma_size(at)", "detail::gamma_size(at)"),
        ("steps.squares + QuarnBound::count(2)", "QuarnBound::count(2)"),
        ("steps.squares + QuarnBound::count(2)", "steps.squares"),
        ("const Real x = at.re.nearest();\n  const Real y = at.im.farthest();", "const Real x = at.re.farthest();\n  const Real y = at.im.farthest();"),
        ("const Real x = at.re.nearest();\n  const Real y = at.im.farthest();", "const Real x = at.re.nearest();\n  const Real y = at.im.nearest();"),
        ("decimal(11284, 4)", "decimal(11283, 4)"),
        ("QuarnBound(w.value.re) * detail::above(", "detail::above("),
        ("const QuarnBound base = detail::Disc(z).largest();", "const QuarnBound base(z.value);"),
        ("QuarnBound(w.value) * log.error + (", "("),
        ("(QuarnBound(log.value) + log.error) * w.error", "log.error * w.error"),
    )),
    *((("complex functions", COMPLEX, *change, [FUNCTION_TERMS], ROUNDINGS)) for change in (
        ("QuarnBound error = decimal(2829, 3)", "QuarnBound error = decimal(2828, 3)"),
        ("detail::decimal(2829, 3)", "detail::decimal(2828, 3)"),
        ("z.error + size.half_unit(QuarnDigits())", "size.half_unit(QuarnDigits())"),
        ("z.error + size.half_unit(QuarnDigits())", "z.error"),
        (": z.value.im), z.error}", ": z.value.im), QuarnBound()}"),
    )),
    *((("arithmetic", ARITHMETIC, *change, [FUNCTION_TERMS], OF_ARITHMETIC)) for change in (
        ("size.half_unit(QuarnDigits());", "size.half_unit(QuarnDigits() + 1);"),
        ("size.is_zero() || (size.is_finite() && size.exponent() == kLeast)", "false"),
        ("{std::move(value), error + rounding}", "{std::move(value), rounding}"),
        ("QuarnBound(least * (1 - Real(7, -9)))", "QuarnBound(least)"),
        ("quarn::add, x.value, y.value, x.error + y.error", "quarn::add, x.value, y.value, x.error"),
        ("quarn::add, x.value, y.value, x.error + y.error", "quarn::add, x.value, y.value, y.error"),
        ("quarn::subtract, x.value, y.value, x.error + y.error", "quarn::subtract, x.value, y.value, x.error"),
        ("quarn::subtract, x.value, y.value, x.error + y.error", "quarn::subtract, x.value, y.value, y.error"),
        (": QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error + x.error * y.error;\n  return", ": QuarnBound(y.value) * x.error + x.error * y.error;\n  return"),
        (": QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error + x.error * y.error;\n  return", ": QuarnBound(x.value) * y.error + x.error * y.error;\n  return"),
        (": QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error + x.error * y.error;\n  return", ": QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error;\n  return"),
        ("quotient.error += x.error / least;", ""),
        ("(x.error + (QuarnBound(quotient.value) + quotient.error) * y.error) / least;", "(QuarnBound(quotient.value) + quotient.error) * y.error / least;"),
        ("(x.error + (QuarnBound(quotient.value) + quotient.error) * y.error) / least;", "(x.error + quotient.error * y.error) / least;"),
        ("(x.error + (QuarnBound(quotient.value) + quotient.error) * y.error) / least;", "(x.error + QuarnBound(quotient.value) * y.error) / least;"),
        ("hypotenuse(re.error, im.error)", "re.error"),
        ("hypotenuse(re.error, im.error)", "im.error"),
        ("quarn::abs(z.value) * (1 - Real(1, -16))", "quarn::abs(z.value)"),
        ("sum.error += x.error + y.error;", "sum.error += x.error;"),
        ("sum.error += x.error + y.error;", "sum.error += y.error;"),
        ("product.error += QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error + x.error * y.error;", "product.error += QuarnBound(y.value) * x.error + x.error * y.error;"),
        ("product.error += QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error + x.error * y.error;", "product.error += QuarnBound(x.value) * y.error + x.error * y.error;"),
        ("product.error += QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error + x.error * y.error;", "product.error += QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error;"),
        ("(x.error + (QuarnBound(quotient.value) + quotient.error) * y.error) / detail::least_size(y)", "(QuarnBound(quotient.value) + quotient.error) * y.error / detail::least_size(y)"),
        ("(x.error + (QuarnBound(quotient.value) + quotient.error) * y.error) / detail::least_size(y)", "x.error / detail::least_size(y)"),
        ("once_rounded(QuarnDot(2, left, 1, right, 1), QuarnBound())", "exact(QuarnDot(2, left, 1, right, 1))"),
    )),
    *((("sums", SUMS, *change, [FUNCTION_TERMS], OF_SUMS)) for change in (
        ("of_left.values[l] * of_right.errors[r] + ", ""),
        (" + of_left.errors[l] * (of_right.values[r] + of_right.errors[r])", ""),
        ("of_left.errors[l] * (of_right.values[r] + of_right.errors[r])", "of_left.errors[l] * of_right.errors[r]"),
        ("fits ? QuarnBound() : detail::rounding_of(product(i, j))", "QuarnBound()"),
        ("QuarnBound::count(std::uint32_t(inner)) * of_left.largest * of_right.largest <\n                        QuarnBound::power_of_ten(QuarnDigits()) &&", ""),
        ("detail::are_whole(left.values()) && detail::are_whole(right.values())", "true"),
        ("error = hypotenuse(error, each.error);", "error = each.error;"),
        ("root.error += error;", ""),
        (": QuarnBound(root.value).half_unit(QuarnDigits() + 2)", ": QuarnBound()"),
        ("decimal(25, 2) * QuarnBound::power_of_ten(-QuarnDigits())", "decimal(24, 2) * QuarnBound::power_of_ten(-QuarnDigits())"),
        ("divisor == QuarnDivisor::one    ? sqrt(n)", "divisor == QuarnDivisor::one    ? one()"),
        (": sqrt(one() / n);", ": one() / n;"),
        ("hypotenuse(of_part + rounding_of(z.re), of_part + rounding_of(z.im))", "hypotenuse(of_part, of_part)"),
        ("hypotenuse(of_part + rounding_of(z.re), of_part + rounding_of(z.im))", "of_part + rounding_of(z.re)"),
        ("error = of_part + rounding_of(z);", "error = rounding_of(z);"),
        ("error = of_part + rounding_of(z);", "error = of_part;"),
        ("are_zeros ? QuarnBound() : error + carried", "are_zeros ? QuarnBound() : error"),
        ("QuarnBound::count(2) * detail::carried_error(z", "detail::carried_error(z"),
        ("QuarnBound::count(2) * detail::carried_error(x", "detail::carried_error(x"),
        ("sum += each.error;", "sum = std::max(sum, each.error);"),
    )),
    *((("norms near the ends", SUMS, *change, ["tests/proven/test_arithmetic.cpp"], "norms of numbers near*")) for change in (
        ("left = hypotenuse(left, size);", ""),
        ("root.error * QuarnBound::power_of_ten(power)", "root.error"),
        ("constexpr int kMostDigits = 1'000'000;\n  const Digits scope(kMostDigits);", ""),
    )),
    *((("equal eigenvalues", file, *change, [source], "terms of means*,eigenvalues that are nearly*,multiple eigenvalues*,discs of multiple*"))
      for file, source, *change in (
        (SPECTRUM, SPECTRUM, "Rounded(QuarnDigits(), range).size(sum.view()(1, 1))", "QuarnBound(sum.view()(1, 1))"),
        (SPECTRUM, SPECTRUM, "QuarnBound sum = distance_of_centres(members, centre);", "QuarnBound sum;"),
        (SPECTRUM, SPECTRUM, "    sum += element(i, i);\n", ""),
        (SPECTRUM, SPECTRUM, "sum += element(i, j) * y(j, i);", ""),
        (SPECTRUM, SPECTRUM, "QuarnBound sum = element(j, i);", "QuarnBound sum;"),
        (SPECTRUM, SPECTRUM, "sum += element(j, l) * y(l, i);", ""),
        (SPECTRUM, SPECTRUM, "(element(l, i) + added(l, i))", "added(l, i)"),
        (SPECTRUM, SPECTRUM, "(element(l, i) + added(l, i))", "element(l, i)"),
        (SPECTRUM, SPECTRUM, "sum * over_gap(j, i)", "sum"),
        (SPECTRUM, SPECTRUM, "round == 0 && y(j, i) < next(j, i)", "false"),
        (SPECTRUM, SPECTRUM, "is_member && radii_[std::size_t(i)] < radius(i)", "false"),
        (DISTINCT, DISTINCT, "power_of(QuarnBound::count(std::uint32_t(n)), rows) *", ""),
        (DISTINCT, DISTINCT, "power_of(std::max(radius, QuarnBound::count(1)), powers)", "QuarnBound::count(1)"),
        (DISTINCT, DISTINCT, "std::max(radius, QuarnBound::count(1))", "radius"),
        (DISTINCT, DISTINCT, "radius * QuarnBound::power_of_ten(-elements.least(0))", "radius"),
        (EIGENVALUES, EIGENVALUES, "if (!distinct_eigenvalues(pencil.n, pencil.a, pairs, radius, Integer(found.sets.size()))) {", "if (false) {"),
        (EIGENVALUES, EIGENVALUES, "!pencil.of_a.is_zero() || ", ""),
        (EIGENVALUES, EIGENVALUES, "pencil.has_b || !found", "!found"),
        ("src/proven/discs.h", OF_MULTIPLE, "const QuarnBound reach = discs[i].error + QuarnBound(discs[i].value.im);", "const QuarnBound reach = discs[i].error;"),
        ("src/proven/discs.h", OF_MULTIPLE, "alone = j == i || are_apart(centre, reach, discs[j].value, discs[j].error);", "alone = true;"),
        (SPECTRA, OF_MULTIPLE, "hypotenuse(distance(values[i].re, rounded.value.re),", "hypotenuse(QuarnBound(),"),
        (SPECTRA, OF_MULTIPLE, "distance(values[i].im, rounded.value.im))", "QuarnBound())"),
        (SPECTRA, OF_MULTIPLE, "(counts[i] == 1 || distinct[i] == 1)", "true"),
    )),
    ("infinite eigenvalues", "src/proven/infinite.cpp", "return rows.norms(rows.size());", "return 0.0 * double(rows.size());",
     ["src/proven/infinite.cpp"], "infinite eigenvalues*"),
    *((("zeros of functions", ZERO, *change, [FUNCTION_TERMS], OF_SUMS)) for change in (
        ("QuarnBound(distance.value) + distance.error", "QuarnBound(distance.value)"),
        ("std::max(reach_of(exact(middle) - exact(bracket.low)), reach_of(exact(bracket.high) - exact(middle)))", "reach_of(exact(middle) - exact(bracket.low))"),
        ("std::max(reach_of(exact(middle) - exact(bracket.low)), reach_of(exact(bracket.high) - exact(middle)))", "reach_of(exact(bracket.high) - exact(middle))"),
    )),
    ("zeros of functions", ZERO, "is_continuous ? error : QuarnBound::infinity()", "error", [FUNCTIONS], "zeros of functions*"),
    *((("factors", FACTORISATIONS, *change, [OF_FACTORS],
        "*terms of factors*,factors are within*,factors that fit*,what has no factor*")) for change in (
        ("return g(i, j) + square;", "return g(i, j);"),
        ("return g(i, j) + square;", "return square;"),
        ("return i > j || (with_diagonal && i == j) ? g(i, j) : QuarnBound();", "return i > j ? g(i, j) : QuarnBound();"),
        ("if (QuarnBound::count(1) < QuarnBound::count(2) * norm) {", "if (!norm.is_finite()) {"),
        ("f + x * y;", "f;"),
        ("f + x * y;", "x * y;"),
        ("change(i, j) += row * over_one_minus(norm) * norm;", ""),
        ("change(i, j) += row * over_one_minus(norm) * norm;", "change(i, j) += row * norm;"),
        ("defect + cross + cross.transposed() + f.transposed() * f;", "defect + cross + cross.transposed();"),
        ("defect + cross + cross.transposed() + f.transposed() * f;", "defect + cross + f.transposed() * f;"),
        ("defect + cross + cross.transposed() + f.transposed() * f;", "cross + cross.transposed() + f.transposed() * f;"),
        ("f(i, j) += sizes(i, k) * f(k, j);", ""),
        ("f(k, j) * over[k];", "f(k, j);"),
        ("+ a(i, j).error;\n          }};", ";\n          }};"),
        ("QuarnBound(rest.value) + rest.error;", "QuarnBound(rest.value);"),
        ("place = of_a ? std::min(place, *of_x + *of_y) : *of_x + *of_y;", ""),
        ("fits ? x.error : x.error + rounding_of(value);", "x.error;"),
        ("sizes_l.block(0, 0, inner, inner) * x,", "detail::BoundGrid(inner, inner),"),
        ("(y * sizes_u.block(0, 0, inner, inner)).transposed()", "detail::BoundGrid(inner, inner)"),
        ("BoundGrid(l) * lower_part(*change, true)", "BoundGrid(a.rows(), a.rows())"),
        ("filled_[i + j * rows_] = filled_[i + j * rows_] || filled_[i + k * rows_];", ""),
        ("filled_[i + j * rows_] = a.values()(i, j) != T() || !a(i, j).error.is_zero();", "filled_[i + j * rows_] = a.values()(i, j) != T();"),
        ("errors = x * detail::BoundGrid(r)", "errors = detail::BoundGrid(inner, inner)"),
        ("squares += each * each;", "squares = each * each;"),
        ("c(i, j) += a(i, k) * b(k, j);", "c(i, j) = a(i, k) * b(k, j);"),
        ("row = hypotenuse(row, change(i, j));", "row = change(i, j);"),
        ("detail::right_change(sizes_l.block(inner, 0, below, inner), of_columns.block(inner, 0, below, inner), y)",
         "detail::BoundGrid(below, inner)"),
        ("of_rows.block(0, inner, inner, beside).transposed(), x.transposed())", "detail::BoundGrid(beside, inner), x.transposed())"),
        ("of_rows.block(0, inner, inner, beside).transposed(), x.transposed())",
         "of_rows.block(0, inner, inner, beside).transposed(), detail::BoundGrid(inner, inner))"),
        ("errors = detail::right_change(sizes, of_y, x)", "errors = of_y"),
        ("errors = detail::right_change(sizes, of_y, x)", "errors = sizes * x"),
        ("square(i, j) : rest(i, j - inner);", "square(i, j) : proven::exact(rest.values()(i, j - inner));"),
        ("if (Complex(r(k, k)).re < 0) {", "if (false) {"),
        ("!(value > 0) && form.error.value() <= -value;", "!(value > 0);"),
        ("is_not_positive(whole, order) && is_definite(order - 1)", "is_not_positive(whole, order)"),
        ("detail::conjugate_of(given.values()(j, i)), given(j, i).error};", "detail::conjugate_of(given.values()(j, i)), QuarnBound()};"),
    )),
    *((("pseudo-inverses", PSEUDO_INVERSES, *change, [OF_FACTORS], "pseudo-inverses*,terms of factors")) for change in (
        ("return a(i, j - m);", "return proven::exact(a.values()(i, j - m));"),
        ("proven::exact(T((*basic)[i] == j ? 1 : 0)) : product(i, j);", "proven::exact(T((*basic)[i] == j ? 1 : 0)) : proven::exact(product.values()(i, j));"),
        ("conjugate_of(given.values()(j, i - m)), given(j, i - m).error}", "conjugate_of(given.values()(j, i - m)), QuarnBound()}"),
        ("conjugate_of(a.values()(j, i - m)), a(j, i - m).error}", "conjugate_of(a.values()(j, i - m)), QuarnBound()}"),
        ("found.error * QuarnBound::power_of_ten(-exponent)", "found.error * QuarnBound::power_of_ten(-exponent - 1)"),
    )),
    *((("single eigenvalues", KRYLOV, *change, [NEAR_TERMS], "terms of distances*,*is within the distance*")) for change in (
        ("sizes[i] + detail::SparseResidual<T>::rounding(b_[i], QuarnDigits())", "sizes[i]"),
        ("squares += size * size;", "squares = size * size;"),
        ("sqrt(squares) * over_length(v)", "sqrt(squares)"),
        ("squares += x.re * x.re + x.im * x.im;", "squares += x.re * x.re + 2 * x.im * x.im;"),
        ("is_square_ ? !(value < 0)", "is_square_ ? true"),
        ("found.is_finite() && found.value() < value", "found.is_finite()"),
    )),
    *((("data", *change, [OF_DATA], "of data with values*,bounds are numbers*")) for change in (
        (SPECTRA, "detail::has_unknown_element(a, stored)", "false"),
        (SPECTRA, "if (detail::has_unknown_element(a)) {", "if (false) {"),
        (SPECTRA, "matrix.values.rows == matrix.values.columns && has_unknown_element(a)", "false"),
        (SPECTRA, "has_unknown_element(a) || has_unknown_element(b)", "has_unknown_element(a)"),
        (SPECTRA, "has_unknown_element(a) || has_unknown_element(b)", "has_unknown_element(b)"),
        (MATRIX_FUNCTIONS, "if (!has_unknown_element(a)) {", "if (true) {"),
        (DATA, "errors_(i, j) >= 0,", "!(errors_(i, j) < 0),"),
        (DATA, "errors_(i, j) >= 0,", "isnan(errors_(i, j)) || errors_(i, j) >= Real(-1, -9),"),
    )),
    ("certificates", CERTIFICATES, "constexpr int kDigitsOfIntegers = 30;", "const int kDigitsOfIntegers = QuarnDigits();",
     [OF_CERTIFICATES], "what a certificate proves*"),
    *((("functions of matrices", MATRIX_FUNCTIONS, *change, [OF_FUNCTIONS], "terms of functions of matrices,functions of matrices*"))
      for change in (
        ("rest * over_one_minus(norm)", "QuarnBound()"),
        ("sum += QuarnBound(a.values()(i, j)) + a(i, j).error;", "sum += QuarnBound(a.values()(i, j));"),
        ("x += sizes_(i, k) * f(k, j);", ""),
        ("x += f(i, k) * sizes_(k, j);", ""),
        ("x * over_(i, j);", "x;"),
        ("equation.solved(rest + wider * wider);", "equation.solved(rest);"),
        ("x(i, j) <= wider(i, j);", "true;"),
        ("if (!is_in_right_half(r, wider)) {", "if (false) {"),
        ("f(i, 0) += sizes(i, k) * f(k, 0);", ""),
        ("!(image(i, 0) < v(i, 0))", "false"),
        ("r(i, i).re > 0 ? least_size(proven::exact(r(i, i).re)) : QuarnBound()", "least_size(proven::exact(r(i, i).re))"),
        ("Bounded<Complex>{r(i, j), wider(i, j)};", "Bounded<Complex>{r(i, j), QuarnBound()};"),
        ("reached_[i + j * n_] = reached_[i + j * n_] || reached_[i + k * n_];", ""),
        ("a.values()(i, j) != T() || !a(i, j).error.is_zero();", "a.values()(i, j) != T();"),
        ("given(i, j).error * QuarnBound::power_of_ten(-steps)", "QuarnBound()"),
    )),
    ("products", SUMS, "(of_right.values[r] + of_right.errors[r])", "of_right.values[r]", [FUNCTIONS], "*norms and transforms*"),
    ("transforms", SUMS, "error + carried}", "error}", [FUNCTIONS], "*norms and transforms*"),
]


def objects(build):
    """The objects of test_proven by the source that they are from, and what else is linked."""
    folder = build / "tests/proven/CMakeFiles/test_proven.dir"
    return {f"tests/proven/{path.name[:-2]}": path for path in folder.glob("*.o")}


# What the tests of functions include, without what is changed.
COMMON = ["doctest/doctest.h", "quarn/function_table.h", "support/digits.h", "support/random_number.h",
          "tesk2mp/proven.hpp", "tesk2mp/dense.hpp", "tesk2mp/gallery.hpp", "tesk2mp/sparse_direct.hpp"]


def command(tree, include):
    return ["g++", *FLAGS, f"-I{tree}", f"-I{tree}/include", f"-I{ROOT}", f"-I{ROOT}/tests", f"-I{ROOT}/include", *include]


def precompiled(folder, include):
    header = folder / "common.h"
    header.write_text("".join(f'#include "{name}"\n' for name in COMMON))
    subprocess.run([*command(folder, include), "-x", "c++-header", str(header), "-o", f"{header}.gch"], check=True)
    return ["-include", str(header)]


def compiled(source, tree, out, include):
    path = tree / source if (tree / source).exists() else ROOT / source
    subprocess.run([*command(tree, include), "-c", str(path), "-o", str(out)], check=True)
    return out


def main():
    build = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/release").resolve()
    include = [f"-I{build}/shared_headers"]
    archives = [str(path) for name in ("test_main.dir/**/*.o", "libtesk_inside.a") for path in build.glob(f"**/{name}")]
    alive = 0
    print("| proof | deleted | test case | |\n|---|---|---|---|", flush=True)
    mutants = [mutant for mutant in MUTANTS if mutant[0] in sys.argv[2:] or len(sys.argv) < 3]
    common = tempfile.TemporaryDirectory()
    kept_headers = precompiled(pathlib.Path(common.name), include)
    for proof, file, old, new, sources, case in mutants:
        text = (ROOT / file).read_text()
        assert text.count(old) >= 1, f"{file} has no {old!r}"
        with tempfile.TemporaryDirectory() as folder:
            tree = pathlib.Path(folder)
            (tree / file).parent.mkdir(parents=True)
            (tree / file).write_text(text.replace(old, new, 1))
            tests = objects(build)
            of_tests = kept_headers if file.startswith("include/tesk2mp/") and file != DATA else []
            changed = [compiled(source, tree, tree / f"{k}.o", [*of_tests, *include]) for k, source in enumerate(sources)]
            kept = [str(path) for source, path in tests.items() if source not in sources]
            program = tree / "program"
            subprocess.run(["g++", *map(str, changed), *kept, *archives, f"-L{build}/bin", "-lqrnfloat", "-lquarnc",
                            f"-Wl,-rpath,{build}/bin", "-o", str(program)], check=True)
            run = subprocess.run([str(program), f"-tc={case}"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        lives = run.returncode == 0
        alive += lives
        shown = " ".join(old.split()).replace("|", "\\|") + (f" -> {' '.join(new.split())}" if new else "")
        print(f"| {proof} | `{shown}` | {case.rstrip('*')} | {'LIVES' if lives else 'fails'} |", flush=True)
    print(f"\n{len(mutants)} mutants, {alive} live")
    sys.exit(1 if alive else 0)


if __name__ == "__main__":
    main()
