#!/usr/bin/env python3
"""mutations.py [BUILD]: can the tests of the proofs fail?

Deletes one term, or one upward rounding, of a proof at a time, compiles what contains it, links the tests of
tests/proven/ with that (BUILD, build/release unless given, has to have built test_proven), runs the named test case and
expects it to fail. Prints a table; the exit status is 1 when a mutant lives. Some ten minutes.
"""
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
FLAGS = ["-std=c++20", "-O1", "-fPIE", "-DTESK2MP_BUILD", "-DDOCTEST_CONFIG_NO_MULTITHREADING"]

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
FUNCTIONS = "tests/proven/test_functions.cpp"

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
    ("Pellet", ZEROS, "sum += (QuarnBound(t.values[j]) + t.errors[j]) * power;\n  }\n  power = one;", "}\n  power = one;", [ZEROS],
     "terms of Pellet*"),
    ("Pellet", ZEROS, "power *= r;\n    sum += (QuarnBound(t.values[j]) + t.errors[j]) * power;", "power *= r;", [ZEROS],
     "terms of Pellet*"),
    ("functions", REAL, "detail::decimal(1588, 3) *", "detail::decimal(158, 2) *", [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "decimal(15708, 4)", "decimal(157, 2)", [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "detail::above(::exp(at.high))", "detail::above(::exp(at.low))", [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "std::max(detail::gamma_slope(at.low), detail::gamma_slope(at.high))", "detail::gamma_slope(at.high)",
     [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "fabs(::cos(x.value)), x.error)", "fabs(::cos(x.value)))", [FUNCTIONS], "terms of functions"),
    ("functions", REAL, "return over + over * over;", "return over * over;", [FUNCTIONS], "terms of functions"),
    ("products", SUMS, "(of_right.values[r] + of_right.errors[r])", "of_right.values[r]", [FUNCTIONS], "*norms and transforms*"),
    ("transforms", SUMS, "error + carried}", "error}", [FUNCTIONS], "*norms and transforms*"),
]


def objects(build):
    """The objects of test_proven by the source that they are from, and what else is linked."""
    folder = build / "tests/proven/CMakeFiles/test_proven.dir"
    return {f"tests/proven/{path.name[:-2]}": path for path in folder.glob("*.o")}


def compiled(source, tree, out, include):
    command = ["g++", *FLAGS, f"-I{tree}", f"-I{tree}/include", f"-I{ROOT}", f"-I{ROOT}/tests", f"-I{ROOT}/include",
               *include, "-c", str(tree / source if (tree / source).exists() else ROOT / source), "-o", str(out)]
    subprocess.run(command, check=True)
    return out


def main():
    build = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/release").resolve()
    include = [f"-I{build}/shared_headers"]
    archives = [str(path) for name in ("test_main.dir/**/*.o", "libtesk_inside.a") for path in build.glob(f"**/{name}")]
    alive = 0
    print("| proof | deleted | test case | |\n|---|---|---|---|", flush=True)
    for proof, file, old, new, sources, case in MUTANTS:
        text = (ROOT / file).read_text()
        assert text.count(old) >= 1, f"{file} has no {old!r}"
        with tempfile.TemporaryDirectory() as folder:
            tree = pathlib.Path(folder)
            for header in [*(ROOT / "src/proven").glob("*"), *(ROOT / "include/quarn").glob("*"),
                           *(ROOT / "include/tesk2mp").glob("proven*")]:
                copy = tree / header.relative_to(ROOT)
                copy.parent.mkdir(parents=True, exist_ok=True)
                copy.write_text(header.read_text())
            (tree / file).write_text(text.replace(old, new, 1))
            tests = objects(build)
            changed = [compiled(source, tree, tree / f"{k}.o", include) for k, source in enumerate(sources)]
            kept = [str(path) for source, path in tests.items() if source not in sources]
            program = tree / "program"
            subprocess.run(["g++", *map(str, changed), *kept, *archives, f"-L{build}/bin", "-lqrnfloat", "-lquarnc",
                            f"-Wl,-rpath,{build}/bin", "-o", str(program)], check=True)
            run = subprocess.run([str(program), f"-tc={case}"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        lives = run.returncode == 0
        alive += lives
        shown = " ".join(old.split()).replace("|", "\\|") + (f" -> {' '.join(new.split())}" if new else "")
        print(f"| {proof} | `{shown}` | {case.rstrip('*')} | {'LIVES' if lives else 'fails'} |", flush=True)
    print(f"\n{len(MUTANTS)} mutants, {alive} live")
    sys.exit(1 if alive else 0)


if __name__ == "__main__":
    main()
