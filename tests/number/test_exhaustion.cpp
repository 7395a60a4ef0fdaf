// Memory that runs out leaves nothing wrong behind: in a fresh process, the k-th allocation of an operation fails, once
// or from there on, for every k; then the operation is repeated, with a few others, and all results are compared.
#include <doctest/doctest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "quarn/quarnconsole.h"
#include "quarn/quarnfloat.h"
#include "quarn/transform.h"
#include "support/digits.h"
#include "support/failing_new.h"
#include "tesk2mp/tesk2mp.hpp"

namespace {

using support::allocations;

struct Operation {
  const char* name;
  std::function<QuarnFloat()> run;
};

QuarnFloat third() { return QuarnFloat(1) / 3; }

QuarnFloat arithmetic() {
  const QuarnFloat x = sqrt(QuarnFloat(2));
  Complex sum(x, third());
  QuarnAddProduct(sum, Complex(third(), x), Complex(x, third()), QuarnConjugateA);
  return fmod(sum.re / x, third()) + floor(x * 1000) - sum.im;
}

QuarnFloat text() {
  const std::string written = third().to_string();
  char formatted[40];
  QFsprintf(formatted, "%.30e", third());
  QuarnFloat scanned;
  QFsscanf(written.c_str(), "%f", &scanned);
  return scanned + QuarnFloat(formatted) + QuarnFloat(written) + QuarnFloat(0.1) + FloatToDouble(scanned);
}

/// Not supported at very many digits.
QuarnFloat block_transform() {
  std::vector<Complex> x;
  for (int i = 0; i < 6; ++i) {
    x.emplace_back(third() * (i + 1), QuarnFloat(i));
  }
  QuarnTransformRows(false, x.data(), 6, 1, 1, 6);
  return x[1].re + x[5].im;
}

/// Products, a factorisation, eigenvalues and transforms, of which some compute with more digits or in blocks.
QuarnFloat matrices() {
  constexpr std::size_t n = 4;
  tesk2mp::Matrix<QuarnFloat> a(n, n);
  std::vector<QuarnFloat> b;
  for (std::size_t i = 0; i < n * n; ++i) {
    a(i % n, i / n) = third() * QuarnFloat(i * i % 7) - (i % 5 == 0 ? 3 : 0);
    b.push_back(third() * QuarnFloat(i));
  }
  tesk2mp::transform_real(b);
  b.resize(n);
  QuarnFloat sum = b[1] + tesk2mp::multiply(a, a)(1, 2) + tesk2mp::solve(a, b)[0];
  for (const Complex& value : tesk2mp::eigenvalues(a)) {
    sum += value.re;
  }
  return sum;
}

const Operation kOperations[] = {
    {"arithmetic", arithmetic},
    {"text and conversion", text},
    {"pi", [] { return acos(QuarnFloat(-1)); }},
    {"ln 10", [] { return log(QuarnFloat(10)); }},
    {"exp", [] { return exp(third()); }},
    {"log", [] { return log(third()); }},
    {"log10", [] { return log10(third()); }},
    {"sin", [] { return sin(QuarnFloat(100)); }},
    {"sin and cos", [] { return sin(third()) + cos(third()); }},
    {"tan", [] { return tan(third()); }},
    {"asin", [] { return asin(third()); }},
    {"acos", [] { return acos(third()); }},
    {"atan", [] { return atan(third()); }},
    {"atan2", [] { return atan2(third(), QuarnFloat(-2)); }},
    {"sinh", [] { return sinh(third()); }},
    {"cosh", [] { return cosh(third()); }},
    {"tanh", [] { return tanh(third()); }},
    {"pow", [] { return pow(third(), QuarnFloat(25, -1)); }},
    {"exact pow", [] { return pow(QuarnFloat(25, -2), QuarnFloat(15, -1)); }},
    {"block transform", block_transform},
    {"matrices", matrices},
    {"by name", [] { return QuarnEvalf1("sin", third()) + QuarnEvalf2("fmod", QuarnFloat(7), third()); }},
};

/// What other operations give after this one, at other digits.
std::string probes() {
  const support::Digits scope(30);
  const QuarnFloat x = QuarnFloat(7) / 3;
  return (sin(x) + cos(x) + exp(x) + log(x) + acos(QuarnFloat(-1)) + x * x).to_string();
}

/// What a child process hands back.
struct Shared {
  long allocations;
  bool threw;
  char result[8000];
};

/// Runs `work` in a child process, in which nothing has been computed yet; gives its exit status, or minus its signal.
int in_child(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    alarm(60);
    _exit(work());
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

/// At the default digits nothing is set, so that the thread's first allocation is among those that fail.
void set_digits(int digits) {
  if (digits != 20) {
    QuarnSetDigits(digits);
  }
}

class Sweep {
 public:
  Sweep()
      : shared_(new (mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
                    Shared{}) {}
  ~Sweep() { munmap(shared_, sizeof(Shared)); }
  Sweep(const Sweep&) = delete;
  Sweep& operator=(const Sweep&) = delete;

  /// Every `stride`-th allocation from the first on.
  void run(const Operation& operation, int digits, long first, long stride) {
    CAPTURE(operation.name);
    CAPTURE(digits);
    const auto results = [&] { return operation.run().to_string() + " " + probes(); };
    REQUIRE(in_child([&] {
              QuarnSetDigits(digits);
              allocations.count = 0;
              operation.run();
              shared_->allocations = allocations.count;
              const std::string text = results();
              text.copy(shared_->result, sizeof shared_->result - 1);
              shared_->result[text.size()] = '\0';
              return 0;
            }) == 0);
    const std::string expected = shared_->result;
    REQUIRE(expected.find("nan") == std::string::npos);
    const long count = shared_->allocations;
    for (const bool once : {true, false}) {
      for (long k = first; k <= count; k += stride) {
        const int status = in_child([&] {
          set_digits(digits);
          bool right = true;
          allocations.fail(k, once);
          try {
            const QuarnFloat result = operation.run();
            allocations.stop_failing();
            right = expected.rfind(result.to_string() + " ", 0) == 0;
          } catch (const std::bad_alloc&) {
            allocations.stop_failing();
          }
          return right && QuarnDigits() == digits && results() == expected ? 0 : 1;
        });
        CAPTURE(once);
        CAPTURE(k);
        CHECK(status == 0);
        ++cases;
      }
    }
  }

  long cases = 0;

 private:
  Shared* shared_;
};

}  // namespace

// QUARN_EVERY_ALLOCATION=1 leaves out no allocation of the long numbers: a minute.
TEST_CASE("after a failed allocation every result is right") {
  const bool every = std::getenv("QUARN_EVERY_ALLOCATION") != nullptr;
  Sweep sweep;
  long first = 1;
  for (const Operation& operation : kOperations) {
    sweep.run(operation, 20, 1, 1);
    sweep.run(operation, 200, 1, every ? 1 : 3);
    sweep.run(operation, 3000, first, every ? 1 : 11);
    first = every ? 1 : first % 11 + 1;
  }
  MESSAGE(sweep.cases << " failed allocations");
}

TEST_CASE("free blocks of other sizes go before an allocation fails") {
  const int status = in_child([] {
    QuarnSetDigits(5000);
    const QuarnFloat number(std::string(900, '7'));
    // No block of this size is free after so many copies.
    const std::vector<QuarnFloat> held(32, number);
    const auto can_copy = [&](bool once) {
      allocations.fail(1, once);
      bool right = false;
      try {
        const QuarnFloat copy = number;
        right = copy == number;
      } catch (const std::bad_alloc&) {
        right = false;
      }
      allocations.stop_failing();
      return right;
    };
    if (can_copy(false) || can_copy(true)) {
      return 1;  // nothing is left to be given back, so that one failure is reported
    }
    { const QuarnFloat other(std::string(5000, '3')); }
    return can_copy(true) ? 0 : 2;
  });
  CHECK(status == 0);
}

TEST_CASE("a failure is reported without memory") {
  const int status = in_child([] {
    const auto count = [](const char*, void* texts) { ++*static_cast<int*>(texts); };
    int texts = 0;
    QuarnRedirectConsole(count, &texts);
    if (std::freopen("/dev/null", "w", stdout) == nullptr) {
      return 99;
    }
    QuarnFloat x[1];
    QuarnFloat work[1];
    Integer n = 1;
    Integer ifail = -1;
    allocations.fail(1, false);
    QuarnMP_c06faf_(x, &n, work, &ifail);
    allocations.stop_failing();
    return ifail == 3 && texts == 3 ? 0 : 1;
  });
  CHECK(status == 0);
}
