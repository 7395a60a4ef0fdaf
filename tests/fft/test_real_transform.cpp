#include <doctest/doctest.h>

#include <algorithm>
#include <cstring>

#include "sample.h"
#include "src/fft/passes.h"
#include "src/frame/report.h"
#include "support/console.h"
#include "support/digits.h"

using sample::Sequence;

namespace {

QuarnFloat sum_of_squares(const Sequence& x) {
  QuarnFloat sum;
  for (const QuarnFloat& value : x) {
    sum += value * value;
  }
  return sum;
}

/// The sum of |z_k|^2 of a Hermitian sequence in half-complex storage: every part but the real ones counts twice.
QuarnFloat sum_of_squares_half_complex(const Sequence& z) {
  QuarnFloat sum = 2 * sum_of_squares(z) - z[0] * z[0];
  const std::size_t n = z.size();
  return n % 2 == 0 ? sum - z[n / 2] * z[n / 2] : sum;
}

QuarnFloat largest_difference(const Sequence& a, const Sequence& b) {
  QuarnFloat largest;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const QuarnFloat difference = fabs(a[i] - b[i]);
    largest = difference > largest ? difference : largest;
  }
  return largest;
}

/// Every radix alone, squared and beside every other, m odd and even, and some long mixtures.
std::vector<Integer> lengths() {
  std::vector<Integer> list = {64, 72, 128, 210, 256, 289, 343, 512, 1001, 1024};
  const Integer radices[] = {2, 3, 4, 5, 7, 8, 11, 13, 17, 19};
  for (const Integer a : radices) {
    list.push_back(a);
    for (const Integer b : radices) {
      list.push_back(a * b);
    }
  }
  return list;
}

struct Core {
  const char* name;
  void (*core)(QuarnFloat*, Integer, QuarnFloat*, char*, Integer*, int);
  void (*classic)(QuarnFloat*, Integer*, QuarnFloat*, Integer*);
};
const Core kCores[] = {{"C06FAF", QuarnMP_c06fafn_, QuarnMP_c06faf_},
                       {"C06FBF", QuarnMP_c06fbfn_, QuarnMP_c06fbf_},
                       {"C06FAF", QuarnMPX_c06fafn_, QuarnMPX_c06faf_},
                       {"C06FBF", QuarnMPX_c06fbfn_, QuarnMPX_c06fbf_}};

}  // namespace

TEST_CASE("refused lengths: failure number, message, message buffer, and no access to the arrays") {
  struct Row {
    Integer n;
    Integer ifail;
    std::string message;
    std::string buffer;
  };
  const Row rows[] = {
      {1, 3, " ** On entry, N .le. 1: N =               1.", "     3 99999     1                1"},
      {0, 3, " ** On entry, N .le. 1: N =               0.", "     3 99999     1                0"},
      {-2147483647 - 1, 3, " ** On entry, N .le. 1: N =     -2147483648.", "     3 99999     1      -2147483648"},
      {23, 1, " ** At least one prime factor of N is greater than 19.\n    N =              23.",
       "     1 99998     1               23"},
      {46, 1, " ** At least one prime factor of N is greater than 19.\n    N =              46.",
       "     1 99998     1               46"},
      {2147483647, 1, " ** At least one prime factor of N is greater than 19.\n    N =      2147483647.",
       "     1 99998     1       2147483647"},
      {2097152, 2, " ** N has more than 20 prime factors.\n    N =         2097152.",
       "     2 99997     1          2097152"},
      {4718592, 2, " ** N has more than 20 prime factors.\n    N =         4718592.",
       "     2 99997     1          4718592"},
  };
  for (const Row& row : rows) {
    for (const Core& routine : kCores) {
      CAPTURE(row.n);
      CAPTURE(routine.name);
      support::ConsoleCapture console;
      char buffer[tesk::kMessageBufferLength];
      std::memset(buffer, 'j', sizeof buffer);
      Integer ifail = -13;
      routine.core(nullptr, row.n, nullptr, buffer, &ifail, 200);
      CHECK(ifail == row.ifail);
      CHECK(console.text() == row.message);
      CHECK(std::string(buffer) == routine.name + row.buffer);
      CHECK(buffer[tesk::kMessageBufferLength - 1] == '\0');
    }
  }
}

TEST_CASE("the classic form refuses as its core does and leaves x alone") {
  for (const Core& routine : kCores) {
    Sequence x(46, QuarnFloat(3));
    Sequence work(46);
    Integer n = 46;
    Integer ifail = -1;
    support::ConsoleCapture console;
    routine.classic(x.data(), &n, work.data(), &ifail);
    CHECK(ifail == 1);
    CHECK(x == Sequence(46, QuarnFloat(3)));
    CHECK(console.text() ==
          std::string(" ** At least one prime factor of N is greater than 19.\n    N =              46."
                      " ** ABNORMAL EXIT from Tesk Library routine ") +
              routine.name + ": IFAIL =     1 ** Tesk soft failure - control returned");
  }
}

TEST_CASE("small transforms in closed form") {
  support::Digits scope(40);
  for (const auto& entries : sample::kEntries) {
    CAPTURE(entries.name);
    CHECK(sample::transformed(entries.forward, {3, 5}) == Sequence{8 / sqrt(QuarnFloat(2)), -2 / sqrt(QuarnFloat(2))});
    CHECK(sample::transformed(entries.forward, {1, 2, 4, 16}) == Sequence{11.5, -1.5, -6.5, 7});
    CHECK(sample::transformed(entries.backward, {11.5, -1.5, -6.5, 7}) == Sequence{1, 2, 4, 16});
  }
}

TEST_CASE("an impulse gives real ones without a sign at their zeros") {
  support::Digits scope(30);
  for (const auto& entries : sample::kEntries) {
    for (const Integer n : {2, 4, 8, 9, 14, 15, 16, 21, 64, 96, 100}) {
      CAPTURE(n);
      Sequence x(static_cast<std::size_t>(n));
      x[0] = 1;
      const Sequence z = sample::transformed(entries.forward, x);
      for (Integer k = 0; k < n; ++k) {
        const QuarnFloat expected = 2 * k <= n ? 1 / sqrt(QuarnFloat(n)) : QuarnFloat();
        CHECK(z[std::size_t(k)] == expected);
        CHECK(!signbit(z[std::size_t(k)]));
      }
    }
  }
}

TEST_CASE("there and back again, and the sum of squares") {
  for (const int digits : {6, 20, 50, 200}) {
    support::Digits scope(digits);
    const QuarnFloat unit(1, -digits);
    for (const Integer n : digits <= 20 ? lengths() : std::vector<Integer>{30, 64, 77}) {
      for (const auto& entries : sample::kEntries) {
        CAPTURE(digits);
        CAPTURE(n);
        CAPTURE(entries.name);
        const Sequence x = sample::random_sequence(n, 1);
        const Sequence z = sample::transformed(entries.forward, x);
        const Sequence back = sample::transformed(entries.backward, z);
        REQUIRE(back.size() == x.size());
        // The classic constants make no exact inverses.
        const QuarnFloat tolerance =
            entries.forward == QuarnMP_c06faf_ && digits > 15 ? QuarnFloat(1, -15) : 50 * unit * sqrt(QuarnFloat(n));
        CHECK(largest_difference(x, back) < tolerance);
        const QuarnFloat energy = sum_of_squares(x);
        CHECK(fabs(sum_of_squares_half_complex(z) - energy) < tolerance * (1 + energy));
      }
    }
  }
}

TEST_CASE("classic and companion agree to the digits of the double constants, and to no more") {
  support::Digits scope(60);
  for (const Integer n : lengths()) {
    const Sequence x = sample::random_sequence(n, 2);
    const QuarnFloat difference =
        largest_difference(sample::transformed(QuarnMP_c06faf_, x), sample::transformed(QuarnMPX_c06faf_, x));
    CAPTURE(n);
    CHECK(difference < QuarnFloat(1, -15));
    CHECK((n <= 4 || difference > QuarnFloat(1, -20)));
  }
}

TEST_CASE("the passes alone follow the list they are given") {
  support::Digits scope(30);
  const QuarnFloat root = sqrt(QuarnFloat(6));
  Sequence x = sample::random_sequence(6, 3);
  Integer ordered[] = {2, 1, 3, 0};
  // Position d1 + 2*d2 holds element 3*d1 + d2.
  Sequence reversed = {x[0], x[3], x[1], x[4], x[2], x[5]};
  QuarnMPX_c06eawn_(reversed.data(), 6, ordered);
  const Sequence z = sample::transformed(QuarnMPX_c06faf_, x);
  for (std::size_t k = 0; k < 6; ++k) {
    CHECK(reversed[k] / root == z[k]);
  }

  // A list that does not fit stops the walk before anything outside the array is touched.
  Integer misfits[][3] = {{0, 0, 0}, {23, 0, 0}, {-2, 0, 0}, {4, 0, 0}, {1, 5, 0}, {2147483647, 2, 0}};
  for (Integer* list : misfits) {
    Sequence kept = x;
    QuarnMP_c06eawn_(kept.data(), 6, list);
    QuarnMP_c06ebwn_(kept.data(), 6, list);
    QuarnMPX_c06eawn_(kept.data(), 6, list);
    QuarnMPX_c06ebwn_(kept.data(), 6, list);
    CHECK(kept == x);
  }
  Integer two[] = {2, 0};
  for (const Integer n : {1, 0, -2, -2147483647 - 1}) {
    QuarnMP_c06eawn_(nullptr, n, two);
    QuarnMP_c06ebwn_(nullptr, n, two);
  }
}

TEST_CASE("radices that have no kernel of their own take their pass by definition") {
  support::Digits scope(40);
  const std::vector<std::vector<Integer>> lists = {{6},       {10, 2},   {23},        {2, 29},
                                                   {3, 6, 5}, {6, 6, 6}, {5, 16, 23}, {31, 3}};
  for (std::vector<Integer> list : lists) {
    Integer n = 1;
    for (const Integer r : list) {
      n *= r;
    }
    CAPTURE(n);
    const Sequence x = sample::random_sequence(n, 7);
    Sequence reversed(x.size());
    for (Integer to = 0; to < n; ++to) {
      Integer from = 0;
      Integer digits = to;
      Integer stride = n;
      for (const Integer r : list) {
        stride /= r;
        from += digits % r * stride;
        digits /= r;
      }
      reversed[std::size_t(to)] = x[std::size_t(from)];
    }
    list.push_back(0);
    Sequence z = reversed;
    QuarnMPX_c06eawn_(z.data(), n, list.data());
    const QuarnFloat turn = 2 * QuarnEvalf1("acos", -1) / n;
    for (Integer k = 0; 2 * k <= n; ++k) {
      QuarnFloat re;
      QuarnFloat im;
      for (Integer j = 0; j < n; ++j) {
        const QuarnFloat angle = turn * QuarnFloat(std::int64_t(j) * k % n);
        re += x[std::size_t(j)] * QuarnEvalf1("cos", angle);
        im -= x[std::size_t(j)] * QuarnEvalf1("sin", angle);
      }
      CHECK(fabs(z[std::size_t(k)] - re) < QuarnFloat(1, -35));
      if (k > 0 && 2 * k < n) {
        CHECK(fabs(z[std::size_t(n - k)] - im) < QuarnFloat(1, -35));
      }
    }
    // The passes one by one backwards.
    std::reverse(list.begin(), list.end() - 1);
    QuarnMPX_c06ebwn_(z.data(), n, list.data());
    for (QuarnFloat& value : z) {
      value /= n;
    }
    CHECK(largest_difference(z, reversed) < QuarnFloat(1, -35));
  }
}

TEST_CASE("the longest power of two, 2^20") {
  support::Digits scope(10);
#if defined(__SANITIZE_ADDRESS__)
  const Integer n = 1 << 15;  // the sanitizers make the long one a matter of minutes
#else
  const Integer n = 1 << 20;
#endif
  Sequence x(n);
  x[1] = sqrt(QuarnFloat(n));
  const Sequence z = sample::transformed(QuarnMPX_c06faf_, std::move(x));
  REQUIRE(z.size() == std::size_t(n));
  const QuarnFloat turn = 2 * QuarnEvalf1("acos", -1) / n;
  for (Integer k = 1; k < n / 2; k += 4099) {
    CHECK(fabs(z[std::size_t(k)] - QuarnEvalf1("cos", turn * k)) < QuarnFloat(1, -7));
    CHECK(fabs(z[std::size_t(n - k)] + QuarnEvalf1("sin", turn * k)) < QuarnFloat(1, -7));
  }
}
