// Does one wrong thing on purpose. It must not live to tell.
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

int main(int argc, char** argv) {
  int result = 0;
  if (std::strcmp(argv[argc - 1], "address") == 0) {
    std::vector<int> numbers(8);
    volatile std::size_t past_the_end = numbers.size();
    result = numbers.data()[past_the_end];
  } else {
    volatile int largest = std::numeric_limits<int>::max();
    result = largest + argc;
  }
  std::printf("still running: %d\n", result);
}
