#include "number/elementary/tables.h"

#include "number/elementary/approximate.h"
#include "number/elementary/conversion.h"
#include "number/elementary/taylor.h"
#include "number/scalar/thread_state.h"

namespace quarn::fixed {

// The storage is not touched before it is filled, so that only what is used takes memory.
LazyTable::LazyTable(int rows, int columns, int words)
    : columns_(columns),
      words_(words),
      storage_(new Word[std::size_t(rows) * std::size_t(columns) * std::size_t(words)]),
      filled_(std::size_t(rows), false) {}

namespace {

/// Enough for the logarithm's series, whose argument is below 2^-23.
constexpr int coefficients_for(int words) { return words * kBits / 23 + 3; }
constexpr int kMaxCoefficients = coefficients_for(kMaxWords);

constexpr int kEverydayWords = 640 / kBits;

struct Tables {
  explicit Tables(int n);

  int words;
  LazyTable inverse_integers;
  // Three constants with an integer word each.
  std::vector<Word> constants;
  std::vector<LazyTable> exp_stages;
  std::vector<LazyTable> sin_cos_stages;
  std::vector<LazyTable> log_stages;
};

Tables::Tables(int n)
    : words(n), inverse_integers(kMaxCoefficients, 1, words), constants(3 * std::size_t(words + 1), 0) {
  Number one;
  std::fill_n(one.words, words, Word(0));
  one[words] = 1;
  for (int k = 2; k < coefficients_for(words); ++k) {
    divide_word(inverse_integers.fraction(k), one, words + 1, Word(k));
  }
  for (int stage = 0; stage < kMaxStages; ++stage) {
    exp_stages.emplace_back(256, 1, words);
    sin_cos_stages.emplace_back(256, 2, words);
    log_stages.emplace_back(kLogRows, 1, words);
  }
  const int digits = int((words + 1) * kBits * 0.30103) + 5;
  const WorkingDigits scope(digits);
  const QuarnFloat values[] = {quarn::approximate_ln10(digits), quarn::approximate_ln2(digits),
                               quarn::approximate_pi(digits) / QuarnFloat(2)};
  for (std::size_t i = 0; i < 3; ++i) {
    from_decimal(&constants[i * std::size_t(words + 1)], view_of(values[i]), words);
  }
}

/// Where the tables that serve n words are held: everyday lengths have their own, which stay small enough for the
/// nearer caches.
std::unique_ptr<Tables>& holder(int n) {
  struct Held {
    std::unique_ptr<Tables> shorter;
    std::unique_ptr<Tables> longer;
  };
  Held& held = own_cache<Held>(Cache::tables);
  return n < kEverydayWords ? held.shorter : held.longer;
}

Tables& tables(int n) { return *holder(n); }

/// Makes tables good for n words and a guard word.
void grow(int n) {
  auto& held = holder(n);
  if (held == nullptr || n >= held->words) {
    held = std::make_unique<Tables>(std::min(std::max(n + 1 + n / 4, kEverydayWords), kMaxWords - 4));
  }
}

const Word* constant(std::size_t index, int n) {
  const Tables& all = tables(n);
  return &all.constants[index * std::size_t(all.words + 1)] + (all.words - n);
}

/// j / 2^(8 stage + 8) as a fraction of n words.
void set_angle(Word* angle, int stage, int j, int n) {
  std::fill_n(angle, n, Word(0));
  angle[0] = Word(j);
  shift_up(angle, angle, n, n * kBits - kStageBits * (stage + 1));
}

/// out = 2 atanh(a / b), 0 < a / b < 1/16.
void twice_atanh(Word* out, Word a, Word b, int n) {
  Number power;
  Number term;
  std::fill_n(power.words, n, Word(0));
  power[n] = 2 * a;
  divide_word(power, power, n + 1, b);
  std::fill_n(out, n, Word(0));
  for (Word k = 1; !is_zero(power, n); k += 2) {
    divide_word(term, power, n, k);
    add(out, out, term, n);
    power[n] = multiply_word(power, power, n, a * a);
    divide_word(power, power, n + 1, b * b);
  }
}

/// -log(factor / 512) to all words of the table: from the logarithm for the next multiple of 16, and that from the one
/// above it.
const Word* log_of_quotient(LazyTable& table, Word factor, int n) {
  constexpr Word kStep = 16;
  const int row = int(factor) - 256;
  if (!table.filled(row)) {
    Number sum;
    if (factor == 512) {
      std::fill_n(sum.words, n, Word(0));
    } else {
      const Word above = factor / kStep * kStep + kStep;
      const Word next = factor % kStep == 0 ? factor + kStep : above;
      const Word* const known = log_of_quotient(table, next, n);
      twice_atanh(sum, next - factor, next + factor, n);
      add(sum, sum, known, n);
    }
    std::copy_n(sum.words, n, table.fraction(row));
    table.mark_filled(row);
  }
  return table.leading(row, 0, n);
}

/// -log(1 - d) = d + d^2/2 + ... for d = factor / 2^places.
void log_by_series(Word* out, Word factor, int places, int n) {
  Number power;
  Number term;
  std::fill_n(power.words, n + 2, Word(0));
  power[0] = factor;
  shift_up(power, power, n, n * kBits - places);
  std::fill_n(out, n, Word(0));
  for (Word k = 1; !is_zero(power, n); ++k) {
    divide_word(term, power, n, k);
    add(out, out, term, n);
    power[n] = multiply_word(power, power, n, factor);
    shift_down(power, power, n + 1, places);
  }
}

}  // namespace

void prepare_tables(int n) {
  // A caller who has some of its numbers a word longer also uses the length before.
  grow(n - 1);
  grow(n);
}

const Word* inverse_integer(int k, int n) { return tables(n).inverse_integers.leading(k, 0, n); }

const Word* ln10(int n) { return constant(0, n); }
const Word* ln2(int n) { return constant(1, n); }
const Word* half_pi(int n) { return constant(2, n); }

const Word* exp_entry(int stage, int j, int n) {
  LazyTable& table = tables(n).exp_stages[std::size_t(stage)];
  if (!table.filled(j)) {
    Number angle;
    const int words = table.words();
    set_angle(angle, stage, j, words);
    exp_series(table.fraction(j), angle, words, std::max(leading_zeros(angle, words) - 1, 0));
    table.mark_filled(j);
  }
  return table.leading(j, 0, n);
}

namespace {

const Word* sin_cos_entry(int column, int stage, int j, int n) {
  LazyTable& table = tables(n).sin_cos_stages[std::size_t(stage)];
  if (!table.filled(j)) {
    Number angle;
    const int words = table.words();
    set_angle(angle, stage, j, words);
    sin_cos_series(table.fraction(j, 0), table.fraction(j, 1), angle, words,
                   std::max(leading_zeros(angle, words) - 1, 0));
    table.mark_filled(j);
  }
  return table.leading(j, column, n);
}

}  // namespace

const Word* sin_entry(int stage, int j, int n) { return sin_cos_entry(0, stage, j, n); }
const Word* versine_entry(int stage, int j, int n) { return sin_cos_entry(1, stage, j, n); }

const Word* log_entry(int stage, int j, Word factor, int n) {
  LazyTable& table = tables(n).log_stages[std::size_t(stage)];
  if (stage == 0) {
    log_of_quotient(table, factor, table.words());
  } else if (!table.filled(j)) {
    log_by_series(table.fraction(j), factor, kStageBits * stage + 30, table.words());
    table.mark_filled(j);
  }
  return table.leading(j, 0, n);
}

}  // namespace quarn::fixed
