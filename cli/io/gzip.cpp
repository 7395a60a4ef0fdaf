#include "cli/io/gzip.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "cli/commands/failure.h"
#include "quarn/quarnthread.h"

namespace cli {

namespace {

constexpr int kLongestCode = 15;

/// A Huffman code by the lengths of its words. Symbols are found by the next 15 bits, of which the first one read is
/// the lowest.
class Code {
 public:
  explicit Code(const std::vector<int>& lengths) : entries_(std::size_t(1) << kLongestCode) {
    std::array<unsigned, kLongestCode + 1> counts{};
    for (const int length : lengths) {
      ++counts[std::size_t(length)];
    }
    std::array<unsigned, kLongestCode + 2> next{};
    counts[0] = 0;
    for (std::size_t length = 1; length <= kLongestCode; ++length) {
      next[length + 1] = (next[length] + counts[length]) << 1;
      is_valid_ = is_valid_ && next[length] + counts[length] <= 1U << length;
    }
    for (std::size_t symbol = 0; symbol < lengths.size() && is_valid_; ++symbol) {
      const auto length = unsigned(lengths[symbol]);
      if (length == 0) {
        continue;
      }
      const unsigned word = next[length]++;
      unsigned reversed = 0;
      for (unsigned bit = 0; bit < length; ++bit) {
        reversed |= (word >> bit & 1U) << (length - 1 - bit);
      }
      for (std::size_t at = reversed; at < entries_.size(); at += std::size_t(1) << length) {
        entries_[at] = {std::uint16_t(symbol), std::uint16_t(length)};
      }
    }
  }

  struct Entry {
    std::uint16_t symbol = 0;
    std::uint16_t length = 0;  // 0: no word begins like this
  };
  bool is_valid() const { return is_valid_; }
  const Entry& entry(unsigned bits) const { return entries_[bits]; }

 private:
  std::vector<Entry> entries_;
  bool is_valid_ = true;
};

class Inflater {
 public:
  Inflater(std::string_view bytes, const std::string& name, std::size_t most)
      : bytes_(bytes), name_(name), most_(most) {}

  std::string run() {
    do {
      read_member();
    } while (bytes_.substr(at_).starts_with("\x1F\x8B"));
    // Zeros may fill the last block of a tape.
    if (bytes_.find_first_not_of('\0', at_) != std::string_view::npos) {
      throw damaged("more stands behind its end");
    }
    return std::move(out_);
  }

 private:
  Failure damaged(const std::string& reason) const { return bad_input(name_ + ": not a whole gzip file: " + reason); }

  unsigned byte() {
    if (at_ == bytes_.size()) {
      throw damaged("it is cut off");
    }
    return static_cast<unsigned char>(bytes_[at_++]);
  }
  std::uint32_t number(int bytes) {
    std::uint32_t value = 0;
    for (int i = 0; i < bytes; ++i) {
      value |= std::uint32_t(byte()) << (8 * i);
    }
    return value;
  }

  void read_member() {
    constexpr unsigned kHeaderChecksum = 2;
    constexpr unsigned kExtra = 4;
    constexpr unsigned kName = 8;
    constexpr unsigned kComment = 16;
    const std::uint32_t head = number(3);
    const unsigned flags = byte();
    if (head >> 16 != 8 || flags > 31) {
      throw damaged("its method is not known");
    }
    number(4);  // the time
    number(2);
    if ((flags & kExtra) != 0) {
      for (std::uint32_t rest = number(2); rest > 0; --rest) {
        byte();
      }
    }
    for (const unsigned text : {kName, kComment}) {
      while ((flags & text) != 0 && byte() != 0) {
      }
    }
    if ((flags & kHeaderChecksum) != 0) {
      number(2);
    }
    start_ = out_.size();
    held_ = 0;
    count_ = 0;
    while (!read_block()) {
      QuarnCheckInterrupt();
    }
    at_ -= std::size_t(count_ / 8);
    if (number(4) != checksum() || number(4) != std::uint32_t(out_.size() - start_)) {
      throw damaged("its checksum is wrong");
    }
  }

  // CRC 32 of the member's contents.
  std::uint32_t checksum() const {
    static const std::array<std::uint32_t, 256> kTable = [] {
      std::array<std::uint32_t, 256> table{};
      for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) {
          value = (value & 1U) != 0 ? value >> 1 ^ 0xEDB88320U : value >> 1;
        }
        table[i] = value;
      }
      return table;
    }();
    std::uint32_t value = ~std::uint32_t(0);
    for (std::size_t i = start_; i < out_.size(); ++i) {
      value = value >> 8 ^ kTable[(value ^ static_cast<unsigned char>(out_[i])) & 0xFFU];
    }
    return ~value;
  }

  // So many bits, the first one the lowest.
  unsigned bits(int count) {
    while (count_ < count) {
      held_ |= std::uint64_t(byte()) << count_;
      count_ += 8;
    }
    const auto value = unsigned(held_ & ((std::uint64_t(1) << count) - 1));
    held_ >>= count;
    count_ -= count;
    return value;
  }

  unsigned symbol(const Code& code) {
    while (count_ < kLongestCode && at_ < bytes_.size()) {
      held_ |= std::uint64_t(byte()) << count_;
      count_ += 8;
    }
    const Code::Entry entry = code.entry(unsigned(held_) & ((1U << kLongestCode) - 1));
    if (entry.length == 0 || int(entry.length) > count_) {
      throw damaged(entry.length == 0 ? "a word of no code" : "it is cut off");
    }
    held_ >>= entry.length;
    count_ -= entry.length;
    return entry.symbol;
  }

  void require_room(std::size_t more) const {
    if (out_.size() + more > most_) {
      throw bad_input(name_ + ": its contents are longer than " + std::to_string(most_ >> 20) + " MiB");
    }
  }

  // Whether it was the last one.
  bool read_block() {
    const bool is_last = bits(1) != 0;
    switch (bits(2)) {
      case 0:
        read_stored();
        break;
      case 1:
        read_compressed(fixed_literals(), Code(std::vector<int>(30, 5)));
        break;
      case 2:
        read_dynamic();
        break;
      default:
        throw damaged("a block of no kind");
    }
    return is_last;
  }

  void read_stored() {
    bits(count_ % 8);
    at_ -= std::size_t(count_ / 8);
    held_ = 0;
    count_ = 0;
    const std::uint32_t length = number(2);
    if (number(2) != (length ^ 0xFFFFU)) {
      throw damaged("a block of no length");
    }
    require_room(length);
    if (bytes_.size() - at_ < length) {
      throw damaged("it is cut off");
    }
    out_.append(bytes_.substr(at_, length));
    at_ += length;
  }

  static Code fixed_literals() {
    std::vector<int> lengths(288, 8);
    std::fill(lengths.begin() + 144, lengths.begin() + 256, 9);
    std::fill(lengths.begin() + 256, lengths.begin() + 280, 7);
    return Code(lengths);
  }

  void read_dynamic() {
    constexpr std::size_t kOrder[] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
    const std::size_t literals = bits(5) + 257;
    const std::size_t distances = bits(5) + 1;
    const std::size_t used = bits(4) + 4;
    std::vector<int> lengths(std::size(kOrder), 0);
    for (std::size_t i = 0; i < used; ++i) {
      lengths[kOrder[i]] = int(bits(3));
    }
    const Code code(lengths);
    lengths.clear();
    while (code.is_valid() && lengths.size() < literals + distances) {
      const unsigned word = symbol(code);
      if (word < 16) {
        lengths.push_back(int(word));
        continue;
      }
      if (word == 16 && lengths.empty()) {
        throw damaged("a repetition of nothing");
      }
      const int repeated = word == 16 ? lengths.back() : 0;
      const unsigned count = word == 16 ? 3 + bits(2) : word == 17 ? 3 + bits(3) : 11 + bits(7);
      lengths.insert(lengths.end(), count, repeated);
    }
    if (lengths.size() != literals + distances) {
      throw damaged("a code that is none");
    }
    const auto middle = lengths.begin() + std::ptrdiff_t(literals);
    read_compressed(Code(std::vector<int>(lengths.begin(), middle)), Code(std::vector<int>(middle, lengths.end())));
  }

  void read_compressed(const Code& literals, const Code& distances) {
    constexpr unsigned kEnd = 256;
    if (!literals.is_valid() || !distances.is_valid()) {
      throw damaged("a code that is none");
    }
    for (unsigned word = symbol(literals); word != kEnd; word = symbol(literals)) {
      if (word < kEnd) {
        require_room(1);
        out_ += char(word);
      } else {
        copy(word - kEnd - 1, distances);
      }
    }
  }

  // Repeats bytes that stand before.
  void copy(unsigned word, const Code& distances) {
    constexpr unsigned kMostWords = 28;
    if (word > kMostWords) {
      throw damaged("a word of no code");
    }
    // Four words for each number of further bits from the eighth one on; the last one is of its own.
    const unsigned extra = word < 8 || word == kMostWords ? 0 : word / 4 - 1;
    const std::size_t length = word == kMostWords ? 258
                               : word < 8         ? word + 3
                                                  : ((4 + word % 4) << extra) + 3 + bits(int(extra));
    const unsigned far = symbol(distances);
    if (far > 29) {
      throw damaged("a word of no code");
    }
    const unsigned far_extra = far < 4 ? 0 : far / 2 - 1;
    const std::size_t distance = far < 4 ? far + 1 : ((2 + far % 2) << far_extra) + 1 + bits(int(far_extra));
    if (distance > out_.size() - start_) {
      throw damaged("a repetition of nothing");
    }
    require_room(length);
    for (std::size_t i = 0; i < length; ++i) {
      out_ += out_[out_.size() - distance];
    }
  }

  std::string_view bytes_;
  const std::string& name_;
  std::size_t most_;
  std::size_t at_ = 0;
  std::uint64_t held_ = 0;  // bits that were read and not used
  int count_ = 0;
  std::string out_;
  std::size_t start_ = 0;  // of this member
};

}  // namespace

std::string gunzip(std::string_view bytes, const std::string& name, std::size_t most) {
  return Inflater(bytes, name, most).run();
}

}  // namespace cli
