// The console's language under random texts: whatever is typed, a place is named or values come out.
#include <doctest/doctest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "cli/repl/fault.h"
#include "cli/repl/interpreter.h"
#include "cli/repl/lexer.h"
#include "cli/repl/parser.h"
#include "support/random.h"

namespace {

long allocations_until_failure = 0;  // 0: none fails

}  // namespace

// The console's own allocations: those of the libraries have a test of their own.
void* operator new(std::size_t size) {
  if (allocations_until_failure > 0 && --allocations_until_failure == 0) {
    allocations_until_failure = -1;
    throw std::bad_alloc();
  }
  if (void* memory = std::malloc(size)) {
    return memory;
  }
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

const std::string kPieces[] = {"1",   "2.5",  "3i",  "x", "A",   "sin",    "solve",     "lu", "sort", "\"t\"",
                               "+",   "-",    "*",   "/", "\\",  "'",      ".*",        "./", "(",    ")",
                               "[",   "]",    ",",   ";", "=",   " ",      "\n",        "#",  "(",    ")",
                               "det", "size", "who", "e", "1e5", "(1, 1)", "[1 2; 3 4]"};
const std::string kUnevaluated[] = {"^", ".^", ":", "$", "\"", ".", "digits", "help", "1:2", "_"};

std::string soup(support::Random& random, bool all) {
  std::string text;
  for (std::int64_t count = random.between(1, 14); count > 0; --count) {
    text += all && random.once_in(4) ? kUnevaluated[random.below(std::size(kUnevaluated))]
                                     : kPieces[random.below(std::size(kPieces))];
  }
  return text;
}

}  // namespace

TEST_CASE("a random text is a program or has a fault with a place in it") {
  support::Random random;
  int programs = 0;
  for (int round = 0; round < 20000; ++round) {
    const std::string text = soup(random, true);
    CAPTURE(text);
    try {
      cli::repl::open_brackets(text);
      cli::repl::statements_of(text);
      ++programs;
    } catch (const cli::repl::Fault& fault) {
      REQUIRE(fault.at() <= text.size());
      REQUIRE(cli::repl::explanation(text, fault, "").find('^') != std::string::npos);
    }
  }
  CHECK(programs > 500);
}

TEST_CASE("random programs run or end with a fault") {
  support::Random random;
  std::string shown;
  cli::repl::Interpreter interpreter([&](const std::string& text) { shown += text; });
  for (int round = 0; round < 5000; ++round) {
    interpreter.run("x = [1 2]; A = [1 2; 3 4];");
    const std::string text = soup(random, false);
    CAPTURE(text);
    try {
      interpreter.run(text);
    } catch (const cli::repl::Fault& fault) {
      REQUIRE(fault.at() <= text.size());
    }
  }
  CHECK(shown.find("ans =") != std::string::npos);
}

TEST_CASE("a session goes on after any allocation that failed") {
  std::string shown;
  cli::repl::Interpreter interpreter([&](const std::string& text) { shown += text; });
  shown.reserve(10000);  // so that only the console allocates
  const std::string text = "A = [1, 2; 3, 4]; A * pi; x = \"text\"; who; help sin; e";
  bool failed = true;
  for (long k = 1; failed; ++k) {
    CAPTURE(k);
    interpreter.run("x = 2");  // the last whole value
    allocations_until_failure = k;
    bool fault = false;
    bool out_of_memory = false;
    try {
      interpreter.run(text);
    } catch (const cli::repl::Fault& caught) {
      fault = true;
      REQUIRE(std::string(caught.what()) == "not enough memory");
    } catch (const std::bad_alloc&) {
      out_of_memory = true;
    }
    failed = allocations_until_failure <= 0;
    allocations_until_failure = 0;
    REQUIRE_FALSE(out_of_memory);
    REQUIRE(fault == failed);
    shown.clear();
    interpreter.run("2 + 2");
    REQUIRE(shown == "ans = 4\n");
  }
}

TEST_CASE("deep nesting is refused, not followed") {
  for (const char* piece : {"(", "[", "-", "sin(", "2^"}) {
    std::string text;
    for (int i = 0; i < 100000; ++i) {
      text += piece;
    }
    CAPTURE(piece);
    CHECK_THROWS_AS(cli::repl::statements_of(text), cli::repl::Fault);
  }
}
