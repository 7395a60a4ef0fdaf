// What the exports compute, as one line per export: how often it was called, and a hash of everything that it returned
// and wrote. Two libraries agree in every digit and message of an export when their lines agree.
//
// The exports are found by name in the library that is given, so that one program examines several libraries.
#pragma once

#include <dlfcn.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "quarn/quarnfloat.h"
#include "tesk2mp/tesk2mp.h"

namespace digest {

/// A 64-bit hash (FNV-1a) of all that it is shown.
class Hash {
 public:
  void add(const void* bytes, std::size_t count);
  void add(const char* text);
  void add(const QuarnFloat& value);
  void add(const Complex& value) { add(value.re), add(value.im); }
  template <std::integral T>
  void add(T value) {
    const std::int64_t wide = value;
    add(&wide, sizeof wide);
  }
  template <class T>
  void add(const std::vector<T>& values) {
    for (const T& value : values) {
      add(value);
    }
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 14695981039346656037U;
};

/// Workspace: what is left in it is not compared.
template <class T>
struct Scratch : std::vector<T> {
  using std::vector<T>::vector;
};

struct Result {
  std::int64_t calls = 0;
  std::int64_t failures = 0;
  bool absent = false;
  Hash values;
  Hash messages;
};

/// What kind of numbers the arrays of a case hold.
enum class Kind { random, integers, wide, special, extreme };

/// One case: working digits, a size, and reproducible data.
class Case {
 public:
  Case(int digits, Integer size, Kind kind);
  int digits;
  Integer size;
  Kind kind;

  std::uint64_t bits();
  Integer below(Integer bound) { return Integer(bits() % std::uint64_t(bound)); }
  template <class T>
  T number();
  template <class T>
  std::vector<T> numbers(std::int64_t count) {
    std::vector<T> made(std::size_t(count > 1 ? count : 1));
    for (T& each : made) {
      each = number<T>();
    }
    return made;
  }

 private:
  std::uint64_t state_;
};

template <class F>
struct Entry {
  Result* result;
  F function;
};
/// The entry master of two names, called with both selectors.
template <class F>
struct Master {
  Result* result;
  F function;
};

class Suite {
 public:
  Suite(const char* library, bool quick);

  /// The cases of an effort: the cost of a routine is size^power operations.
  void cases(double power, const std::function<void(Case&)>& body) const;
  /// The cases for failures: few digits, sizes and numbers.
  void few_cases(const std::function<void(Case&)>& body) const;

  template <class F>
  Entry<F> find(const char* name) {
    Result& result = results_[name];
    void* const address = dlsym(library_, name);
    result.absent = address == nullptr;
    return {&result, reinterpret_cast<F>(address)};
  }

  /// Calls the export with copies of the arguments and takes in what they are afterwards. A scalar goes by address
  /// where the export wants an address, an array by its first element.
  template <class... P, class... A>
  void run(Entry<void (*)(P...)> entry, A... arguments) {
    if (entry.function != nullptr) {
      entry.function(pass<P>(arguments)...);
      take(*entry.result, arguments...);
    }
  }
  template <class R, class... P, class... A>
  requires(!std::is_void_v<R>) void run(Entry<R (*)(P...)> entry, A... arguments) {
    if (entry.function != nullptr) {
      entry.result->values.add(entry.function(pass<P>(arguments)...));
      take(*entry.result, arguments...);
    }
  }
  template <class... P, class... A>
  void run(Master<void (*)(int, P...)> entry, A... arguments) {
    if (entry.function != nullptr) {
      for (int selector = 0; selector < 2; ++selector) {
        [&entry, selector](Result& result, A... copies) {
          entry.function(selector, pass<P>(copies)...);
          take(result, copies...);
        }(*entry.result, arguments...);
      }
    }
  }

  /// The same for a classic or core form: IFAIL is 1, and where that fails every other way of reporting is tried too.
  /// The form has `Lengths` texts.
  template <int Lengths, class... P, class... A>
  void run_form(Entry<void (*)(P...)> entry, A... arguments) {
    if (entry.function == nullptr) {
      return;
    }
    const auto once = [&](Integer ifail, bool handled) {
      return [&entry, handled, ifail, this](A... copies) {
        return call_form<Lengths>(entry, ifail, handled, copies...);
      }(arguments...);
    };
    if (once(1, false) != 0) {
      for (const Integer ifail : {-1, -13, 11}) {
        once(ifail, false);
      }
      once(0, true);
      // A process for each would take longer than all the rest.
      if (++entry.result->failures <= 12) {
        in_child(*entry.result, [&] { once(0, false); });
      }
    }
  }

  /// A call that ends the process, in a process of its own.
  template <class E, class... A>
  void run_ending(E entry, A... arguments) {
    if (entry.function != nullptr) {
      ++entry.result->failures;
      in_child(*entry.result, [&] { run(entry, arguments...); });
    }
  }
  /// A wrong argument that ends the process; and once more with a failure handler.
  template <class E, class... A>
  void run_fatal(E entry, A... arguments) {
    if (entry.function != nullptr) {
      run_ending(entry, arguments...);
      handling(*entry.result, [&] { run(entry, arguments...); });
    }
  }

  /// Counts a call, and takes in what it left in its arguments and wrote to the console.
  template <class... A>
  static void take(Result& result, const A&... arguments) {
    ++result.calls;
    (take_one(result, arguments), ...);
    take_output(result);
  }

  /// Prints a line per export; says whether all those that have been looked for are there.
  bool print() const;

 private:
  template <class P, class A>
  static P pass(A& argument) {
    if constexpr (std::is_pointer_v<P> && !std::is_pointer_v<A> && !std::is_same_v<A, std::nullptr_t>) {
      if constexpr (requires { argument.data(); }) {
        return argument.data();
      } else {
        return &argument;
      }
    } else {
      return P(argument);
    }
  }

  template <class A>
  static void take_one(Result& result, const A& argument) {
    if constexpr (!std::is_same_v<A, Scratch<QuarnFloat>> && !std::is_same_v<A, Scratch<Complex>> &&
                  !std::is_same_v<A, Scratch<Integer>> && !std::is_same_v<A, std::nullptr_t>) {
      result.values.add(argument);
    }
  }

  template <int Lengths, class... P, class... A>
  Integer call_form(Entry<void (*)(P...)> entry, Integer ifail, bool handled, A&... arguments) {
    const auto call = [&](auto... lengths) {
      if constexpr ((std::is_same_v<P, char*> || ...)) {
        std::string text(200, '?');
        char* buffer = text.data();
        int buffer_length = 200;
        apply(entry, arguments..., buffer, ifail, lengths..., buffer_length);
        entry.result->messages.add(buffer);
      } else {
        apply(entry, arguments..., ifail, lengths...);
      }
    };
    const auto with_lengths = [&] {
      if constexpr (Lengths == 0) {
        call();
      } else if constexpr (Lengths == 1) {
        call(1);
      } else if constexpr (Lengths == 2) {
        call(1, 1);
      } else {
        call(8, 1, 1, 1);
      }
    };
    if (handled) {
      handling(*entry.result, with_lengths);
    } else {
      with_lengths();
    }
    take(*entry.result, arguments..., ifail);
    return ifail;
  }
  template <class... P, class... A>
  static void apply(Entry<void (*)(P...)> entry, A&... arguments) {
    entry.function(pass<P>(arguments)...);
  }

  void in_child(Result& result, const std::function<void()>& body);
  void handling(Result& result, const std::function<void()>& body);
  static void take_output(Result& result);

  void* library_;
  bool quick_;
  decltype(&QuarnMPX_failure_handler) set_handler_;
  std::map<std::string, Result> results_;
};

void frame(Suite& suite);
void kernels(Suite& suite);
void dense(Suite& suite);
void eigenvalues(Suite& suite);
void spectra(Suite& suite);
void linear(Suite& suite);
void proven(Suite& suite);
void transforms(Suite& suite);
void sequences(Suite& suite);
void krylov(Suite& suite);
void sparse(Suite& suite);
void special(Suite& suite);
void solver(Suite& suite);
void ranking_and_random(Suite& suite);

}  // namespace digest

/// The export of this name, and all of its forms with the same signature.
#define ENTRY(name) suite.find<decltype(&name)>(#name)
#define MASTER(name)                                                                       \
  digest::Master<decltype(&name)> {                                                        \
    suite.find<decltype(&name)>(#name).result, suite.find<decltype(&name)>(#name).function \
  }
