// Systems whose rows are shared out among ranks, all of them in this program: the sums that the solver asks for are
// formed here.
#include <doctest/doctest.h>

#include <algorithm>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "quarn/accumulator.h"
#include "src/sparse/solver.h"
#include "support/console.h"
#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/iterative.h"
#include "tesk2mp/solver.hpp"
#include "tests/sparse/shared_rows.h"

using shared_rows::Line;
using shared_rows::right_side;

namespace {

struct Setup {
  std::string method;
  std::string precon = "N", norm = "2", weight = "N";
  Integer iterm = 1;
  Integer m = 2;
  QuarnFloat tol = QuarnFloat("1e-25");
  Integer maxitn = 200;
  QuarnFloat anorm = 0, sigmax = 0;
  Integer monit = 0;

  std::string name() const { return method + " " + precon + norm + weight + std::to_string(iterm); }
};

template <class T>
struct Entries {
  template <class Real, class Complex>
  static constexpr auto pick(Real real, Complex complex) {
    if constexpr (std::is_same_v<T, QuarnFloat>) {
      return real;
    } else {
      return complex;
    }
  }
  static constexpr auto whole = pick(QuarnMPX_f11bdf_, QuarnMPX_zf11bdf_);
  static constexpr auto shared = pick(QuarnMPX_f11bdd_, QuarnMPX_zf11bdd_);
  static constexpr auto iterate = pick(QuarnMPX_f11bef_, QuarnMPX_zf11bef_);
  static constexpr auto progress = pick(QuarnMPX_f11bff_, QuarnMPX_zf11bff_);
};
/// How an end looks to the caller.
template <class T>
struct End {
  Integer ifail = 0, itn = 0;
  std::vector<T> x, residual;
  QuarnFloat left, right, anorm, sigmax;
  long sums = 0;      // requests of sums
  long products = 0;  // of products

  friend bool operator==(const End& a, const End& b) {
    return a.ifail == b.ifail && a.itn == b.itn && a.x == b.x && a.residual == b.residual && a.left == b.left &&
           a.right == b.right && a.anorm == b.anorm && a.sigmax == b.sigmax;
  }
};

enum class Sums { exact, as_in_one_program };

/// A sum over the elements that the ranks have.
template <class T>
struct Ranks {
  const Line<T>& line;
  const Setup& setup;
  std::vector<Integer> first;  // of each rank, and one past the last
  Sums how;
  std::vector<QuarnFloat> weights;
  std::vector<std::vector<T>> work, u, v;
  std::vector<std::vector<QuarnFloat>> wgt;
  std::vector<Integer> request;
  Integer ifail = 0;
  End<T> end;
  long answered = std::numeric_limits<long>::max();  // requests of sums
  QuarnFloat largest_off = 1;                        // factor of those of the largest element

  Ranks(const Line<T>& system, const Setup& how_to, const std::vector<T>& b, std::vector<Integer> counts, Sums sums)
      : line(system), setup(how_to), how(sums) {
    first.push_back(0);
    for (const Integer count : counts) {
      first.push_back(first.back() + count);
    }
    for (Integer i = 0; i < line.n; ++i) {
      weights.push_back(QuarnFloat(1 + i % 3) / 2);
    }
    const auto share = [this](const auto& whole, std::size_t r) {
      return std::vector(whole.begin() + first[r], whole.begin() + first[r + 1]);
    };
    for (std::size_t r = 0; r < counts.size(); ++r) {
      u.push_back(std::vector<T>(std::size_t(counts[r])));
      v.push_back(share(b, r));
      wgt.push_back(share(weights, r));
      Integer lwreq = 0;
      std::vector<T> storage;
      for (const Integer wanted : {1, -13}) {
        ifail = wanted;
        support::ConsoleCapture console;
        const Integer length = Integer(storage.size());
        const Integer start = first[r] + 1;
        Entries<T>::shared(setup.method.data(), setup.precon.data(), setup.norm.data(), setup.weight.data(),
                           &setup.iterm, &line.n, &counts[r], &start, &setup.m, &setup.tol, &setup.maxitn, &setup.anorm,
                           &setup.sigmax, &setup.monit, &lwreq, storage.data(), &length, &ifail,
                           int(setup.method.size()), 1, 1, 1);
        storage.resize(std::size_t(lwreq));
      }
      REQUIRE(ifail == 0);
      work.push_back(std::move(storage));
      request.push_back(0);
    }
  }

  std::size_t count() const { return work.size(); }

  std::vector<T> joined(const std::vector<std::vector<T>>& parts) const {
    std::vector<T> whole;
    for (const std::vector<T>& part : parts) {
      whole.insert(whole.end(), part.begin(), part.end());
    }
    return whole;
  }
  void share_out(const std::vector<T>& whole) {
    for (std::size_t r = 0; r < count(); ++r) {
      std::copy(whole.begin() + first[r], whole.begin() + first[r + 1], v[r].begin());
    }
  }

  /// The elements that the ranks have from a place of WORK on, times their weights.
  std::vector<T> vector_at(const std::vector<std::size_t>& places, bool weighted) const {
    std::vector<T> whole;
    for (std::size_t r = 0; r < count(); ++r) {
      const T* const part = work[r].data() + places[r] - 1;
      whole.insert(whole.end(), part, part + (first[r + 1] - first[r]));
    }
    for (std::size_t i = 0; i < whole.size() && weighted; ++i) {
      tesk::multiply_by(whole[i], weights[i]);
    }
    return whole;
  }

  T value(int kind, std::vector<T> x, std::vector<T> y) const {
    const Integer n = line.n;
    tesk::SolverVector<T> vx(x.data(), 1);
    tesk::SolverVector<T> vy(y.data(), 1);
    if (how == Sums::as_in_one_program || kind == 4) {
      const auto element = [&x](Integer i) -> const T& { return x[std::size_t(i - 1)]; };
      return kind == 1   ? tesk::dot(n, vx, vy, tesk::Op::conjugate_transpose)
             : kind == 2 ? T(tesk::euclidean_norm(n, vx))
                         : T(tesk::norm_of(kind == 3 ? tesk::kOneNorm : tesk::kInfinityNorm, n, element));
    }
    quarn::Accumulator real;
    quarn::Accumulator imaginary;
    if (kind == 3) {
      for (const T& element : x) {
        real += tesk::size_of(element);
      }
      return T(real.rounded());
    }
    if constexpr (std::is_same_v<T, quarn::Complex>) {
      quarn::add_inner_product(x.size(), x.data(), kind == 1 ? y.data() : x.data(), real, imaginary);
      return kind == 1 ? T(real.rounded(), imaginary.rounded()) : T(real.rounded_root());
    } else {
      real.add_dot(x.size(), x.data(), 1, kind == 1 ? y.data() : x.data(), 1);
      return kind == 1 ? real.rounded() : real.rounded_root();
    }
  }

  void form_sums() {
    const auto integer = [](const T& x) { return std::size_t(FloatToInt(tesk::real_part(x))); };
    const std::size_t wanted = integer(work[0][30]);
    REQUIRE(wanted >= 1);
    REQUIRE(wanted <= 128);
    for (std::size_t k = 0; k < wanted; ++k) {
      std::vector<std::size_t> x, y;
      const T* const leader = work[0].data() + integer(work[0][31]) - 1 + 4 * k;
      for (std::size_t r = 0; r < count(); ++r) {
        REQUIRE(integer(work[r][30]) == wanted);
        const T* const sum = work[r].data() + integer(work[r][31]) - 1 + 4 * k;
        REQUIRE(sum + 4 <= work[r].data() + work[r].size());
        REQUIRE(sum[0] == leader[0]);
        x.push_back(integer(sum[1]));
        y.push_back(integer(sum[2]));
        REQUIRE(x.back() + std::size_t(first[r + 1] - first[r]) <= work[r].size());
      }
      const int kind = int(integer(leader[0]));
      T sum = value(kind % 10, vector_at(x, kind > 10), vector_at(y, kind > 10));
      if (kind % 10 == 4) {
        tesk::multiply_by(sum, largest_off);
      }
      for (std::size_t r = 0; r < count(); ++r) {
        work[r][integer(work[r][31]) - 1 + 4 * k + 3] = sum;
      }
    }
  }

  /// All ranks go on, and are answered.
  void step() {
    for (std::size_t r = 0; r < count(); ++r) {
      support::ConsoleCapture console;
      const Integer length = Integer(work[r].size());
      ifail = -13;
      Entries<T>::iterate(&request[r], u[r].data(), v[r].data(), wgt[r].data(), work[r].data(), &length, &ifail);
      REQUIRE(request[r] == request[0]);
      if (r > 0) {
        REQUIRE(ifail == end.ifail);
      }
      end.ifail = ifail;
    }
    std::vector<T> whole = joined(u);
    std::vector<T> answer(whole.size());
    switch (request[0]) {
      case 1:
      case -1:
        ++end.products;
        line.multiply(whole, answer, request[0] == -1);
        return share_out(answer);
      case 2:
        for (std::size_t i = 0; i < whole.size(); ++i) {
          answer[i] = tesk::times(1 / tesk::real_part(line.diagonal[i]), whole[i]);
        }
        return share_out(answer);
      case 7:
        return end.sums++ < answered ? form_sums() : void();
      default:
        return;
    }
  }

  End<T> finish() {
    for (int calls = 0; request[0] != 4; ++calls) {
      REQUIRE(calls < 20000);
      step();
    }
    end.x = joined(u);
    end.residual = joined(v);
    for (std::size_t r = 0; r < count(); ++r) {
      End<T> now = end;
      const Integer length = Integer(work[r].size());
      Integer outcome = 1;
      Entries<T>::progress(&now.itn, &now.left, &now.right, &now.anorm, &now.sigmax, work[r].data(), &length, &outcome);
      REQUIRE(outcome == 0);
      if (r > 0 && end.ifail != 7) {  // no NaN
        REQUIRE(now == end);
      }
      end = now;
    }
    return end;
  }
};

/// The same in one program, with the plain protocol.
template <class T>
End<T> plain_end(const Line<T>& line, const Setup& setup, const std::vector<T>& b) {
  End<T> end;
  std::vector<T> u(b.size()), v = b, work(100 + 60 * b.size() + 3000);
  std::vector<QuarnFloat> weights(b.size());
  for (std::size_t i = 0; i < weights.size(); ++i) {
    weights[i] = QuarnFloat(Integer(1 + i % 3)) / 2;
  }
  const Integer length = Integer(work.size());
  Integer lwreq = 0;
  support::ConsoleCapture console;
  end.ifail = -13;
  Entries<T>::whole(setup.method.data(), setup.precon.data(), setup.norm.data(), setup.weight.data(), &setup.iterm,
                    &line.n, &setup.m, &setup.tol, &setup.maxitn, &setup.anorm, &setup.sigmax, &setup.monit, &lwreq,
                    work.data(), &length, &end.ifail, int(setup.method.size()), 1, 1, 1);
  REQUIRE(end.ifail == 0);
  for (Integer request = 0; request != 4;) {
    end.ifail = -13;
    Entries<T>::iterate(&request, u.data(), v.data(), weights.data(), work.data(), &length, &end.ifail);
    if (request == 1 || request == -1) {
      ++end.products;
      line.multiply(u, v, request == -1);
    } else if (request == 2) {
      for (std::size_t i = 0; i < u.size(); ++i) {
        v[i] = tesk::times(1 / tesk::real_part(line.diagonal[i]), u[i]);
      }
    }
  }
  Integer outcome = 1;
  Entries<T>::progress(&end.itn, &end.left, &end.right, &end.anorm, &end.sigmax, work.data(), &length, &outcome);
  end.x = u;
  end.residual = v;
  return end;
}

constexpr const char* kMethods[] = {"RGMRES", "CGS", "BICGSTAB", "TFQMR", "CG", "MINRES", "SYMMLQ", "FGMRES", "IDR"};

bool is_gmres(const std::string& method) { return method.find("GMRES") != std::string::npos; }

bool is_symmetric(const std::string& method) { return method == "CG" || method == "MINRES" || method == "SYMMLQ"; }

template <class T, class Check>
void for_all_setups(const Check& check) {
  for (const char* method : kMethods) {
    for (const char* precon : {"N", "P"}) {
      for (const char* norm : {"1", "I", "2"}) {
        for (const char* weight : {"N", "W"}) {
          for (const Integer iterm : {1, 2}) {
            Setup setup{method, precon, norm, weight, iterm};
            setup.m = is_gmres(method) ? 7 : 2;
            check(setup, Line<T>::make(23, is_symmetric(method) ? QuarnFloat(0) : QuarnFloat(3) / 10));
          }
        }
      }
    }
  }
}

}  // namespace

TEST_CASE_TEMPLATE("sums formed by the caller as the solver forms them give the same digits" *
                       doctest::test_suite("long"),
                   T, QuarnFloat, quarn::Complex) {
  const support::Digits working(40);
  support::Random random;
  for_all_setups<T>([&](const Setup& setup, const Line<T>& line) {
    CAPTURE(setup.name());
    const std::vector<T> b = right_side<T>(random, line.n);
    const End<T> alone = plain_end(line, setup, b);
    const End<T> asked = Ranks<T>(line, setup, b, {line.n}, Sums::as_in_one_program).finish();
    CHECK(alone.ifail == 0);
    if (is_gmres(setup.method)) {
      // Another Gram-Schmidt process.
      CHECK(asked.ifail == 0);
      CHECK(asked.itn <= alone.itn + 1);
    } else {
      CHECK(asked == alone);
      CHECK(asked.products == alone.products);
    }
  });
}

TEST_CASE_TEMPLATE("exact sums give the same digits for every partition" * doctest::test_suite("long"), T, QuarnFloat,
                   quarn::Complex) {
  support::Random random;
  for_all_setups<T>([&](Setup setup, const Line<T>& line) {
    const support::Digits working(random.once_in(2) ? 40 : 150);
    CAPTURE(setup.name());
    setup.m = setup.method == "BICGSTAB" ? Integer(random.between(1, 4)) : setup.m;
    setup.monit = random.once_in(4) ? 2 : 0;
    const std::vector<T> b = right_side<T>(random, line.n);
    const End<T> alone = Ranks<T>(line, setup, b, {23}, Sums::exact).finish();
    CHECK(alone.ifail == 0);
    const std::vector<std::vector<Integer>> partitions = {{11, 12}, {1, 20, 2}, {6, 6, 6, 5}};
    const End<T> shared = Ranks<T>(line, setup, b, partitions[random.below(3)], Sums::exact).finish();
    CHECK(shared == alone);
    CHECK(shared.sums == alone.sums);
    // As many requests as the page says, and those of the beginning and of what is judged.
    const long each = setup.method == "BICGSTAB"                            ? 3 * setup.m
                      : setup.method == "TFQMR" || setup.method == "SYMMLQ" ? 4
                      : setup.method == "MINRES"                            ? 3
                                                                            : 2;
    const long judged = (alone.itn / (setup.monit == 0 ? 7 : 2) + 4) * 3 + (setup.iterm == 1 ? 40 : 0);
    CHECK(shared.sums <= each * shared.itn + judged);
  });
}

TEST_CASE_TEMPLATE("sums that are left out end in a breakdown, largest elements off by a unit do no harm", T,
                   QuarnFloat, quarn::Complex) {
  support::Random random;
  for_all_setups<T>([&](Setup setup, const Line<T>& line) {
    CAPTURE(setup.name());
    const int digits = random.once_in(2) ? 40 : 12;
    const support::Digits working(digits);
    setup.tol = QuarnFloat(1, 5 - digits);
    const std::vector<T> b = right_side<T>(random, line.n);
    const Ranks<T> ranks(line, setup, b, {5, 18}, Sums::exact);
    Ranks<T> silent = ranks;
    silent.answered = random.between(0, 6);
    CHECK(silent.finish().ifail == 7);
    if (setup.iterm == 1 && setup.norm != "2") {
      Ranks<T> off = ranks;
      off.largest_off += QuarnFloat(random.once_in(2) ? 1 : -1, 1 - digits);
      const End<T> other = off.finish();
      const End<T> end = Ranks<T>(ranks).finish();
      CHECK(other.ifail == 0);
      CHECK(fabs(other.anorm - end.anorm) <= QuarnFloat(1, 3 - digits) * end.anorm);
    }
  });
}

TEST_CASE("other ends come to all ranks alike") {
  const support::Digits working(30);
  support::Random random;
  const auto ends_alike = [](const Line<QuarnFloat>& line, const Setup& setup, const std::vector<QuarnFloat>& b) {
    const End<QuarnFloat> alone = Ranks<QuarnFloat>(line, setup, b, {line.n}, Sums::exact).finish();
    CHECK(Ranks<QuarnFloat>(line, setup, b, {3, 1, line.n - 4}, Sums::exact).finish() == alone);
    return alone.ifail;
  };
  const Line<QuarnFloat> line = Line<QuarnFloat>::make(20, QuarnFloat(1) / 5);
  std::vector<QuarnFloat> b = right_side<QuarnFloat>(random, 20);
  for (const char* method : kMethods) {
    CAPTURE(method);
    Setup setup{method};
    setup.m = is_gmres(method) ? 7 : 2;
    setup.maxitn = 3;
    setup.anorm = 1;
    CHECK(ends_alike(line, setup, b) == (is_symmetric(method) ? 7 : 8));
    CHECK(ends_alike(line, setup, std::vector<QuarnFloat>(20)) == 0);
    // Elements at both ends of the range.
    setup.maxitn = 60;
    for (const char* size : {"1e999999900", "1e-999999900"}) {
      Setup far = setup;
      far.iterm = 2;
      std::vector<QuarnFloat> scaled = b;
      for (QuarnFloat& element : scaled) {
        element *= QuarnFloat(size);
      }
      const Line<QuarnFloat> symmetric = Line<QuarnFloat>::make(20, 0);
      CHECK(ends_alike(symmetric, far, scaled) == 0);
      Line<QuarnFloat> large = symmetric;
      const QuarnFloat factor(1, *(size + 2) == '-' ? -700'000'000 : 700'000'000);
      large.below *= factor;
      large.above *= factor;
      for (QuarnFloat& element : large.diagonal) {
        element *= factor;
      }
      const Integer ifail = ends_alike(large, far, b);
      CHECK(ifail == plain_end(large, far, b).ifail);
      CHECK((ifail == 0 || !is_gmres(method)));
    }
    b[7] = QuarnFloat(std::numeric_limits<double>::quiet_NaN());
    CHECK(Ranks<QuarnFloat>(line, setup, b, {9, 11}, Sums::exact).finish().ifail == 7);
    b[7] = 1;
  }
  // Breakdowns, and new starts with the same random vector on all partitions: a cyclic shift.
  Line<QuarnFloat> shift = Line<QuarnFloat>::make(12, 0);
  shift.below = 1;
  shift.above = 0;
  std::fill(shift.diagonal.begin(), shift.diagonal.end(), QuarnFloat(0));
  shift.diagonal[0] = 1;
  std::vector<QuarnFloat> unit(12);
  unit[5] = 1;
  for (const char* method : kMethods) {
    CAPTURE(method);
    Setup setup{method};
    setup.iterm = 2;
    setup.maxitn = 40;
    ends_alike(shift, setup, unit);
  }
}

TEST_CASE("set-up of shared rows: wrong arguments, and who may iterate") {
  const support::Digits working(30);
  const Line<QuarnFloat> line = Line<QuarnFloat>::make(10, 0);
  const Setup setup{"CGS"};
  std::vector<QuarnFloat> work(2000);
  const Integer length = Integer(work.size());
  Integer lwreq = 0;
  const auto failure = [&](Integer n, Integer nloc, Integer first, Integer m, Integer lwork) {
    support::ConsoleCapture console;
    Integer ifail = -13;
    QuarnMPX_f11bdd_("RGMRES", "N", "2", "N", &setup.iterm, &n, &nloc, &first, &m, &setup.tol, &setup.maxitn,
                     &setup.anorm, &setup.sigmax, &setup.monit, &lwreq, work.data(), &lwork, &ifail, 6, 1, 1, 1);
    return console.text();
  };
  const auto parameter = [](int number) {
    return " ** On entry, parameter number " + std::string(number < 10 ? " " : "") + std::to_string(number) +
           " had an illegal value.";
  };
  CHECK(failure(0, 1, 1, 1, length).find(parameter(6)) != std::string::npos);
  CHECK(failure(10, 0, 1, 1, length).find(parameter(7)) != std::string::npos);
  CHECK(failure(10, 11, 1, 1, length).find(parameter(7)) != std::string::npos);
  CHECK(failure(10, 5, 0, 1, length).find(parameter(8)) != std::string::npos);
  CHECK(failure(10, 5, 7, 1, length).find(parameter(8)) != std::string::npos);
  CHECK(failure(10, 2, 2, 11, length).find("M .gt. MIN (N,50)") != std::string::npos);
  CHECK(failure(10, 2, 2, 10, 611).find(parameter(17)) != std::string::npos);
  CHECK(lwreq == 100 + 2 * 16 + 141 + 512);

  std::vector<QuarnFloat> b(10, 1);
  Ranks<QuarnFloat> ranks(line, setup, b, {4, 6}, Sums::exact);
  while (ranks.request[0] != 7) {
    ranks.step();
  }
  // The classic entry does not know such problems.
  const Integer lwork = Integer(ranks.work[0].size());
  Integer irevcm = 7;
  Integer ifail = 1;
  QuarnMP_f11bef_(&irevcm, ranks.u[0].data(), ranks.v[0].data(), nullptr, ranks.work[0].data(), &lwork, &ifail);
  CHECK(ifail == 2);
  // What has not been asked for is refused, and the problem stands.
  irevcm = 1;
  ifail = 1;
  QuarnMPX_f11bef_(&irevcm, ranks.u[0].data(), ranks.v[0].data(), nullptr, ranks.work[0].data(), &lwork, &ifail);
  CHECK(ifail == 1);
  // Overwritten integers are noticed.
  for (int place = 29; place <= 35; ++place) {
    std::vector<QuarnFloat> copy = ranks.work[0];
    copy[std::size_t(place) - 1] += 1;
    irevcm = 7;
    ifail = 1;
    QuarnMPX_f11bef_(&irevcm, ranks.u[0].data(), ranks.v[0].data(), nullptr, copy.data(), &lwork, &ifail);
    CHECK(ifail == 2);
  }
  // The caller's ends.
  Ranks<QuarnFloat> tidy = ranks;
  tidy.request.assign(2, 5);
  CHECK(tidy.finish().ifail == 5);
  ranks.request.assign(2, 6);
  ranks.step();
  CHECK(ranks.end.ifail == 4);
}
