// random_stream IGEN [COUNT] [trailing]: writes the leading 32 bits of COUNT variates (without COUNT: endlessly) of a
// generator to standard output, as binary words of this machine, from the default seed. With "trailing", the trailing
// 32 bits of the basic generator's state instead.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "random/draws.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: random_stream IGEN [COUNT] [trailing]\n");
    return 2;
  }
  const bool trailing = argc > 3 && std::strcmp(argv[3], "trailing") == 0;
  battery::Stream stream(Integer(std::strtol(argv[1], nullptr, 10)));
  double left = argc > 2 ? std::strtod(argv[2], nullptr) : 1e300;
  std::array<std::uint32_t, 4096> block{};
  while (left > 0) {
    for (std::uint32_t& word : block) {
      word = trailing ? stream.next_trailing() : stream.next();
    }
    const std::size_t count = left < double(block.size()) ? std::size_t(left) : block.size();
    if (std::fwrite(block.data(), sizeof block[0], count, stdout) != count) {
      return 0;  // the reader has had enough
    }
    left -= double(count);
  }
}
