// Discs in the complex plane that together hold as many numbers as there are discs, every connected set of k of them k.
#pragma once

#include <utility>
#include <vector>

#include "src/proven/norms.h"

namespace tesk::proven {

/// What is known of the number that `value` approximates: `count` numbers, it among them, are within `error`. With a
/// count of 1 no other one is; the disc around several may reach over those of others. Are these proven to be equal?
struct Disc {
  Complex value;
  QuarnBound error = QuarnBound::infinity();
  Integer count = 1;
  bool equal = false;
};

inline bool are_apart(const Complex& a, const QuarnBound& of_a, const Complex& b, const QuarnBound& of_b) {
  // With fewer digits the rounding of the difference would count.
  const WorkingDigits scope(std::max(QuarnDigits(), kFewDigits));
  const QuarnBound reach = of_a + of_b;
  return reach.is_finite() && least_size(a - b) > reach.value();
}

/// Of numbers that stand in conjugate pairs: a disc of one, or of equal ones, that meets the real axis, and is apart
/// from the others when it is moved there, has a real one.
inline void make_real(std::vector<Disc>& discs) {
  for (std::size_t i = 0; i < discs.size(); ++i) {
    const Complex centre(discs[i].value.re);
    const QuarnBound reach = discs[i].error + QuarnBound(discs[i].value.im);
    const bool one = discs[i].count == 1 || discs[i].equal;
    bool alone = one && QuarnBound(discs[i].value.im) <= discs[i].error && reach.is_finite();
    for (std::size_t j = 0; j < discs.size() && alone; ++j) {
      alone = j == i || are_apart(centre, reach, discs[j].value, discs[j].error);
    }
    if (alone) {
      discs[i].value = centre;
      discs[i].error = reach;
    }
  }
}

using Members = std::vector<std::size_t>;

/// Gives the members of each connected set a centre, an error and a count that hold for all of it, and returns these
/// sets. pairs: the numbers stand in conjugate pairs, as those of real data do.
inline std::vector<Members> resolve(std::vector<Disc>& discs, bool pairs) {
  const std::size_t n = discs.size();
  if (pairs) {
    make_real(discs);
  }
  std::vector<Members> sets;
  std::vector<bool> done(n, false);
  for (std::size_t first = 0; first < n; ++first) {
    if (done[first]) {
      continue;
    }
    Members members{first};
    done[first] = true;
    for (std::size_t k = 0; k < members.size(); ++k) {
      const Disc& disc = discs[members[k]];
      for (std::size_t j = 0; j < n; ++j) {
        if (!done[j] && !are_apart(disc.value, disc.error, discs[j].value, discs[j].error)) {
          done[j] = true;
          members.push_back(j);
        }
      }
    }
    sets.push_back(members);
    if (members.size() == 1) {
      continue;
    }
    // Around their mean, which is better known than they are.
    const WorkingDigits scope(std::max(QuarnDigits(), kFewDigits));
    Complex mean;
    for (const std::size_t i : members) {
      mean = mean + discs[i].value;
    }
    multiply_by(mean, QuarnFloat(1) / Integer(members.size()));
    const auto error_of = [&](const Complex& centre) {
      QuarnBound error;
      for (const std::size_t i : members) {
        const QuarnBound distance(centre - discs[i].value);
        error = std::max(error, distance + distance.half_unit(kFewDigits - 2) + discs[i].error);
      }
      return error;
    };
    QuarnBound error = error_of(mean);
    if (pairs && QuarnBound(mean.im) <= error) {
      mean = Complex(mean.re);
      error = error_of(mean);
    }
    for (const std::size_t i : members) {
      discs[i] = {error.is_finite() ? mean : discs[i].value, error, Integer(members.size())};
    }
  }
  return sets;
}

/// Puts the discs; INFO. distinct: how many of the numbers of each disc are distinct at most, where that is wanted.
inline Integer deliver(std::vector<Disc> discs, Complex* values, QuarnFloat* error, Integer* count,
                       Integer* distinct = nullptr) {
  Integer info = 0;
  for (std::size_t j = 0; j < discs.size(); ++j) {
    values[j] = std::move(discs[j].value);
    error[j] = discs[j].error.value();
    count[j] = discs[j].count;
    if (distinct != nullptr) {
      distinct[j] = discs[j].equal ? 1 : discs[j].count;
    }
    info = discs[j].error.is_finite() ? info : 1;
  }
  return info;
}

}  // namespace tesk::proven
