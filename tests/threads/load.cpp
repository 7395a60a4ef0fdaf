// Loads the libraries at run time, again and again, and computes with them in threads that end before and after they
// are closed. This program is linked with none of them.
#include <dlfcn.h>

#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace {

using Compute = int (*)(int digits, char* text, std::size_t capacity);

std::string result(Compute compute, int digits) {
  std::vector<char> text(100'000);
  const int left = compute(digits, text.data(), text.size());
  return std::to_string(left) + " " + text.data();
}

}  // namespace

int main(int, char** arguments) {
  std::string expected;
  bool right = true;
  for (int round = 0; round < 5; ++round) {
    void* const library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
      std::printf("%s\n", dlerror());
      return 1;
    }
    const auto compute = reinterpret_cast<Compute>(dlsym(library, "compute"));
    std::string results[4];
    std::vector<std::thread> threads;
    for (std::string& text : results) {
      threads.emplace_back([&text, compute] { text = result(compute, 60); });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    // This one ends when the library is closed.
    std::string late;
    std::thread last([&late, compute, library] {
      late = result(compute, 60);
      dlclose(library);
    });
    last.join();
    expected = expected.empty() ? late : expected;
    for (const std::string& text : results) {
      right = right && text == late && text == expected;
    }
  }
  std::puts(right && expected.size() > 100 && expected.rfind("20 ", 0) == 0 ? "right" : "wrong");
}
