#include "number/elementary/tables.h"

#include "number/elementary/approximate.h"
#include "number/elementary/conversion.h"
#include "number/elementary/taylor.h"

namespace quarn::fixed {

void LazyTable::grow(int words) {
  if (words <= words_) {
    return;
  }
  words_ = words;
  // Not touched before it is filled, so that only what is used takes memory.
  storage_.reset(new Word[std::size_t(rows_) * std::size_t(columns_) * std::size_t(words)]);
  filled_.assign(std::size_t(rows_), false);
}

Word* LazyTable::fill(int row, int column) {
  filled_[std::size_t(row)] = true;
  return &storage_[(std::size_t(row) * std::size_t(columns_) + std::size_t(column)) * std::size_t(words_)];
}

const Word* LazyTable::leading(int row, int column, int n) const {
  return &storage_[(std::size_t(row) * std::size_t(columns_) + std::size_t(column)) * std::size_t(words_)] +
         (words_ - n);
}

namespace {

/// Enough for the logarithm's series, whose argument is below 2^-23.
constexpr int coefficients_for(int words) { return words * kBits / 23 + 3; }
constexpr int kMaxCoefficients = coefficients_for(kMaxWords);

constexpr int kEverydayWords = 640 / kBits;

struct Tables {
  int words = 0;
  LazyTable inverse_integers{kMaxCoefficients, 1};
  // Three constants with an integer word each.
  std::vector<Word> constants;
  std::vector<LazyTable> exp_stages;
  std::vector<LazyTable> sin_cos_stages;
  std::vector<LazyTable> log_stages;

  Tables() {
    for (int stage = 0; stage < kMaxStages; ++stage) {
      exp_stages.emplace_back(256, 1);
      sin_cos_stages.emplace_back(256, 2);
      log_stages.emplace_back(kLogRows, 1);
    }
  }
  void grow(int n);
  void fill_coefficients();
};

/// The tables that serve n words: everyday lengths have their own, which stay small enough for the nearer caches.
Tables& tables(int n) {
  static Tables& shorter = *new Tables;
  static Tables& longer = *new Tables;
  return n < kEverydayWords ? shorter : longer;
}

void Tables::fill_coefficients() {
  inverse_integers.grow(words);
  Number one;
  std::fill_n(one.words, words, Word(0));
  one[words] = 1;
  for (int k = 2; k < coefficients_for(words); ++k) {
    divide_word(inverse_integers.fill(k), one, words + 1, Word(k));
  }
}

void Tables::grow(int n) {
  if (n < words) {
    return;
  }
  // One guard word.
  words = std::min(std::max(n + 1 + n / 4, kEverydayWords), kMaxWords - 4);
  fill_coefficients();
  for (int stage = 0; stage < kMaxStages; ++stage) {
    exp_stages[std::size_t(stage)].grow(words);
    sin_cos_stages[std::size_t(stage)].grow(words);
    log_stages[std::size_t(stage)].grow(words);
  }
  constants.assign(3 * std::size_t(words + 1), 0);
  const int digits = int((words + 1) * kBits * 0.30103) + 5;
  const WorkingDigits scope(digits);
  const QuarnFloat values[] = {quarn::approximate_ln10(digits), quarn::approximate_ln2(digits),
                               quarn::approximate_pi(digits) / QuarnFloat(2)};
  for (std::size_t i = 0; i < 3; ++i) {
    from_decimal(&constants[i * std::size_t(words + 1)], view_of(values[i]), words);
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
    std::copy_n(sum.words, n, table.fill(row));
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
  tables(n - 1).grow(n - 1);
  tables(n).grow(n);
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
    exp_series(table.fill(j), angle, words, std::max(leading_zeros(angle, words) - 1, 0));
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
    sin_cos_series(table.fill(j, 0), table.fill(j, 1), angle, words, std::max(leading_zeros(angle, words) - 1, 0));
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
    log_by_series(table.fill(j), factor, kStageBits * stage + 30, table.words());
  }
  return table.leading(j, 0, n);
}

}  // namespace quarn::fixed
