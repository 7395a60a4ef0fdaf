#include "tests/exports/digest/digest.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace digest {

namespace {

int output_file = -1;   // what standard output is while exports run
FILE* lines = nullptr;  // where the result goes
off_t seen = 0;

/// Standard output becomes a file that can be looked at.
void capture_output() {
  lines = fdopen(dup(1), "w");
  char name[] = "/tmp/export_digest_XXXXXX";
  output_file = mkstemp(name);
  unlink(name);
  fcntl(output_file, F_SETFL, O_APPEND);
  dup2(output_file, 1);
}

void take_failure(const QuarnFailure* failure, void* context) {
  auto& hash = static_cast<Result*>(context)->messages;
  hash.add(failure->routine);
  hash.add(failure->number);
  hash.add(failure->label);
  hash.add(failure->message);
  hash.add(failure->count);
  for (int i = 0; i < failure->count; ++i) {
    const QFArgument& value = failure->values[i];
    switch (value.type) {
      case QFArgument::Type::integer:
        hash.add(value.integer);
        break;
      case QFArgument::Type::real:
        hash.add(*value.real);
        break;
      case QFArgument::Type::text:
        hash.add(value.text);
        break;
    }
  }
}

}  // namespace

void Hash::add(const void* bytes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    value_ = (value_ ^ static_cast<const unsigned char*>(bytes)[i]) * 1099511628211U;
  }
}

void Hash::add(const char* text) { add(text, std::strlen(text) + 1); }

void Hash::add(const QuarnFloat& value) {
  char text[4096];
  add(text, QuarnText(value, text, sizeof text) + 1);
}

Case::Case(int its_digits, Integer its_size, Kind its_kind)
    : digits(its_digits),
      size(its_size),
      kind(its_kind),
      state_(std::uint64_t(its_digits) << 32U | unsigned(its_size)) {
  state_ += std::uint64_t(its_kind) << 56U;
}

std::uint64_t Case::bits() {
  state_ += 0x9E3779B97F4A7C15U;
  std::uint64_t z = state_;
  z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
  z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
  return z ^ (z >> 31U);
}

template <>
QuarnFloat Case::number<QuarnFloat>() {
  if (kind == Kind::integers) {
    return QuarnFloat(below(7) - 3);
  }
  if (kind == Kind::special && below(4) == 0) {
    constexpr const char* kSpecial[] = {"nan", "inf", "-inf", "0", "-0"};
    return QuarnFloat(kSpecial[below(5)]);
  }
  std::string text = bits() % 2 == 0 ? "-0." : "0.";
  for (int i = 0; i < digits; ++i) {
    text += char('0' + below(10));
  }
  if (kind == Kind::wide) {
    text += "e" + std::to_string(below(800) - 400);
  } else if (kind == Kind::extreme) {
    text += (bits() % 2 == 0 ? "e-" : "e") + std::to_string(134217726 - below(40));
  }
  return QuarnFloat(text);
}

template <>
Complex Case::number<Complex>() {
  QuarnFloat re = number<QuarnFloat>();
  QuarnFloat im = number<QuarnFloat>();
  return {std::move(re), std::move(im)};
}

Suite::Suite(const char* library, bool quick) : library_(dlopen(library, RTLD_NOW)), quick_(quick) {
  if (library_ == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(2);
  }
  capture_output();
  set_handler_ = find<decltype(&QuarnMPX_failure_handler)>("QuarnMPX_failure_handler").function;
}

void Suite::cases(double power, const std::function<void(Case&)>& body) const {
  const std::vector<int> digits =
      quick_ ? std::vector<int>{20, 333} : std::vector<int>{1, 2, 7, 16, 18, 20, 34, 50, 54, 100, 126, 127, 333, 1000};
  for (const int d : digits) {
    // About the same time for every number of digits.
    const double operations = (quick_ ? 150 : 4e3) / (1 + std::pow(d / 40.0, 1.5));
    const auto largest = Integer(std::pow(operations, 1 / power)) + 1;
    QuarnSetDigits(d);
    for (const Kind kind : {Kind::random, Kind::integers, Kind::wide, Kind::special, Kind::extreme}) {
      for (Integer size = 0; size <= largest; size += 1 + size / 3) {
        Case one(d, size, kind);
        body(one);
      }
    }
  }
}

void Suite::few_cases(const std::function<void(Case&)>& body) const {
  for (const int d : {7, 50}) {
    QuarnSetDigits(d);
    Case one(d, 4, Kind::random);
    body(one);
  }
}

void Suite::take_output(Result& result) {
  std::fflush(stdout);
  struct stat state = {};
  fstat(output_file, &state);
  std::vector<char> text(std::size_t(state.st_size - seen));
  if (!text.empty() && pread(output_file, text.data(), text.size(), seen) == ssize_t(text.size())) {
    result.messages.add(text.data(), text.size());
  }
  seen = state.st_size;
}

void Suite::in_child(Result& result, const std::function<void()>& body) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    body();
    std::fflush(stdout);
    _exit(77);  // it came back
  }
  int status = 0;
  waitpid(child, &status, 0);
  ++result.calls;
  result.messages.add(WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status));
  take_output(result);
}

void Suite::handling(Result& result, const std::function<void()>& body) {
  const QuarnFailureHandler handler = {take_failure, &result};
  set_handler_(&handler);
  body();
  set_handler_(nullptr);
  take_output(result);
}

bool Suite::print() const {
  bool complete = true;
  for (const auto& [name, result] : results_) {
    if (result.absent) {
      complete = false;
      std::fprintf(lines, "%-24s is not exported\n", name.c_str());
    } else {
      std::fprintf(lines,
                   "%-24s %7" PRId64 " calls, values %016" PRIx64 ", %5" PRId64 " failures, messages %016" PRIx64 "\n",
                   name.c_str(), result.calls, result.values.value(), result.failures, result.messages.value());
    }
  }
  std::fflush(lines);
  return complete;
}

}  // namespace digest

int main(int argc, char** argv) {
  const bool quick = argc == 3 && std::strcmp(argv[2], "--quick") == 0;
  if (argc != 2 && !quick) {
    std::fprintf(stderr, "usage: export_digest LIBRARY [--quick]\n");
    return 2;
  }
  digest::Suite suite(argv[1], quick);
  digest::frame(suite);
  digest::kernels(suite);
  digest::dense(suite);
  digest::eigenvalues(suite);
  digest::spectra(suite);
  digest::linear(suite);
  digest::proven(suite);
  digest::transforms(suite);
  digest::sequences(suite);
  digest::special(suite);
  digest::krylov(suite);
  digest::sparse(suite);
  digest::solver(suite);
  digest::ranking_and_random(suite);
  return suite.print() ? 0 : 1;
}
