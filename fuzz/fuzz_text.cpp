// Fuzzes the text reader, formatted scan and formatted print, and the reader of packed numbers. Memory errors are the
// sanitizers' business; what is checked here are the promises that hold for every input.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "quarn/interchange.h"
#include "quarn/quarnfloat.h"

namespace {

void require(bool promise, const char* text) {
  if (!promise) {
    std::fprintf(stderr, "broken promise: %s\n", text);
    std::abort();
  }
}

bool same(const QuarnFloat& a, const QuarnFloat& b) {
  return (isnan(a) && isnan(b)) || (a == b && signbit(a) == signbit(b));
}

/// The input, read from the front.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

  std::string rest() { return {data_, end_}; }
  int byte() { return data_ == end_ ? 0 : *data_++; }
  /// Up to the next zero byte.
  std::string text() {
    const std::uint8_t* stop = std::find(data_, end_, std::uint8_t(0));
    std::string result(data_, stop);
    data_ = stop == end_ ? end_ : stop + 1;
    return result;
  }

 private:
  const std::uint8_t* data_;
  const std::uint8_t* end_;
};

void try_reading(Input& input) {
  const int digits = 1 + input.byte() + (input.byte() == 255 ? 1000 : 0);
  const std::string text = input.text();
  QuarnSetDigits(digits);
  const QuarnFloat value(text);
  require(same(QuarnFloat(value.to_string()), value), "a number's text reads back");

  QuarnFloat scanned = 7;
  Integer end = -1;
  const int set = QFsscanf(text.c_str(), "%e%n", &scanned, &end);
  const bool whole = set == 1 && end == Integer(text.size()) && text.find_first_of(" \t\n\v\f\r") == std::string::npos;
  require(whole || isnan(value), "what can be read can be scanned");
  require(!whole || same(scanned, value), "scanning and reading agree");

  QuarnSetDigits(int(text.size()) + 1);
  const QuarnFloat exact(text);
  QuarnSetDigits(digits);
  if (exact == 0 && value != 0) {
    const QuarnFloat smallest(signbit(exact) ? -1 : 1, -999999999);
    require(value == smallest, "only the smallest number is rounded from what no precision holds");
  } else {
    require(same(exact * 1, value), "reading rounds as arithmetic does");
  }
}

void try_scanning(Input& input) {
  QuarnSetDigits(1 + input.byte());
  const std::string format = input.text();
  const std::string text = input.text();
  // Character arrays on the heap, so that the sanitizer sees the first byte past them.
  struct Short {
    char text[3];
  };
  struct Long {
    char text[40];
  };
  const auto small = std::make_unique<Short>();
  const auto large = std::make_unique<Long>();
  Integer integer = 1;
  QuarnFloat real = 1;
  std::array<QFTarget, 8> targets = {QFTarget(small->text), QFTarget(&integer),   QFTarget(&real),
                                     QFTarget(large->text), QFTarget(&real),      QFTarget(&integer),
                                     QFTarget(&integer),    QFTarget(small->text)};
  std::rotate(targets.begin(), targets.begin() + input.byte() % 8, targets.end());
  const int count = input.byte() % 9;
  const int set = QFscan(text.c_str(), format.c_str(), targets.data(), count);
  require(set >= -1 && set <= count, "no more targets are set than there are");
}

void try_printing(Input& input) {
  QuarnSetDigits(1 + input.byte());
  const std::string format = input.text();
  const QuarnFloat number(input.text());
  const std::string text = input.text();
  std::array<QFArgument, 8> arguments = {QFArgument(input.byte() - 128),
                                         QFArgument(number),
                                         QFArgument(text.c_str()),
                                         QFArgument(INT64_MIN),
                                         QFArgument(number),
                                         QFArgument(UINT64_MAX),
                                         QFArgument('c'),
                                         QFArgument("fixed")};
  std::rotate(arguments.begin(), arguments.begin() + input.byte() % 8, arguments.end());

  constexpr std::size_t kEnough = 4000;
  const auto large = std::make_unique<char[]>(kEnough);
  const int length = QFformat(large.get(), kEnough, format.c_str(), arguments.data(), 8);
  const std::size_t shown = length < 0 ? std::strlen(large.get()) : std::min(std::size_t(length), kEnough - 1);
  require(length >= -1 && large[shown] == '\0', "the text is closed");

  const std::size_t capacity = std::size_t(input.byte());
  const auto small = std::make_unique<char[]>(capacity);
  require(QFformat(small.get(), capacity, format.c_str(), arguments.data(), 8) == length, "the capacity is irrelevant");
  if (capacity > 0 && length >= 0) {
    const std::size_t kept = std::min(capacity - 1, shown);
    require(std::memcmp(small.get(), large.get(), kept) == 0 && small[kept] == '\0', "a text is cut, not changed");
  }
}

void try_unpacking(Input& input) {
  QuarnSetDigits(200);  // more than the longest number whose text is read back
  const std::string bytes = input.rest();
  const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data());
  QuarnFloat x = 7;
  const std::size_t used = quarn::read_packed(data, bytes.size(), x);
  require(used != 0 || x == 7, "a number stays where nothing is read");
  if (used != 0) {
    std::vector<unsigned char> again(quarn::packed_size(x));
    require(quarn::write_packed(x, again.data()) == used, "a packed number has one size");
    require(std::equal(again.begin(), again.end(), data), "a packed number has one form");
    require(isnan(x) || same(QuarnFloat(x.to_string()), x) || used > 64, "an unpacked number is one");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  switch (input.byte() % 4) {
    case 0:
      try_reading(input);
      break;
    case 1:
      try_scanning(input);
      break;
    case 2:
      try_unpacking(input);
      break;
    default:
      try_printing(input);
  }
  return 0;
}
