// Ranking, canonical form and products of sparse matrices, through the library's public header.
#include <Eigen/SparseCore>
#include <algorithm>
#include <numeric>
#include <tuple>

#include "bench/peers.h"
#include "tesk2mp/tesk2mp.h"

namespace bench {
namespace {

using mpfr::mpreal;

constexpr int kPasses[] = {20, 50, 100, 500};

constexpr std::size_t kRanked = 100'000;

std::size_t rank_ours(benchmark::State& state, int digits) {
  const auto rv = Operands(digits, false, 1).make<QuarnFloat>(kRanked);
  std::vector<Integer> irank(kRanked);
  const Integer m1 = 1;
  const auto m2 = Integer(kRanked);
  for (auto _ : state) {
    Integer ifail = -1;
    QuarnMP_m01daf_(rv.data(), &m1, &m2, "A", irank.data(), &ifail, 1);
    benchmark::ClobberMemory();
  }
  return kRanked;
}

std::size_t rank_peer(benchmark::State& state, int digits) {
  const auto values = Operands(digits, false, 1).make<mpreal>(kRanked);
  std::vector<Integer> order(kRanked);
  for (auto _ : state) {
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](Integer a, Integer b) { return values[std::size_t(a)] < values[std::size_t(b)]; });
    benchmark::ClobberMemory();
  }
  return kRanked;
}

/// Places of entries in a matrix of order n, unordered, some of them twice.
struct Places {
  std::vector<Integer> irow, icol;
  Places(std::size_t nnz, Integer n) {
    std::mt19937 random(7);
    for (std::size_t k = 0; k < nnz; ++k) {
      irow.push_back(Integer(random() % std::uint32_t(n)) + 1);
      icol.push_back(Integer(random() % std::uint32_t(n)) + 1);
    }
  }
};

constexpr std::size_t kSorted = 1'000'000;
constexpr Integer kSortedOrder = 100'000;

std::size_t canonical_ours(benchmark::State& state, int digits) {
  const Places places(kSorted, kSortedOrder);
  const auto values = Operands(digits, true, 2).make<QuarnFloat>(kSorted);
  std::vector<Integer> istr(std::size_t(kSortedOrder) + 1);
  std::vector<Integer> iwork(std::size_t(kSortedOrder) + kSorted);
  for (auto _ : state) {
    state.PauseTiming();
    Places entries = places;
    auto a = values;
    state.ResumeTiming();
    auto nnz = Integer(kSorted);
    Integer ifail = -1;
    QuarnMP_f11zaf_(&kSortedOrder, &nnz, a.data(), entries.irow.data(), entries.icol.data(), "S", "R", istr.data(),
                    iwork.data(), &ifail, 1, 1);
    benchmark::DoNotOptimize(nnz);
    state.PauseTiming();
    { auto freed = std::move(a); }
    state.ResumeTiming();
  }
  return kSorted;
}

std::size_t canonical_peer(benchmark::State& state, int digits) {
  const Places places(kSorted, kSortedOrder);
  const auto values = Operands(digits, true, 2).make<mpreal>(kSorted);
  using Triple = std::tuple<Integer, Integer, mpreal>;
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<Triple> triples;
    triples.reserve(kSorted);
    for (std::size_t k = 0; k < kSorted; ++k) {
      triples.emplace_back(places.irow[k], places.icol[k], values[k]);
    }
    state.ResumeTiming();
    std::sort(triples.begin(), triples.end(), [](const Triple& a, const Triple& b) {
      return std::tie(std::get<0>(a), std::get<1>(a)) < std::tie(std::get<0>(b), std::get<1>(b));
    });
    benchmark::ClobberMemory();
    state.PauseTiming();
    { auto freed = std::move(triples); }
    state.ResumeTiming();
  }
  return kSorted;
}

constexpr std::size_t kEntries = 100'000;
constexpr Integer kOrder = 10'000;

/// Entries in canonical order, as products usually get them.
Places ordered_places() {
  Places places(kEntries, kOrder);
  std::vector<std::pair<Integer, Integer>> pairs;
  for (std::size_t k = 0; k < kEntries; ++k) {
    pairs.emplace_back(places.irow[k], places.icol[k]);
  }
  std::sort(pairs.begin(), pairs.end());
  for (std::size_t k = 0; k < kEntries; ++k) {
    std::tie(places.irow[k], places.icol[k]) = pairs[k];
  }
  return places;
}

template <auto kRoutine>
std::size_t product_ours(benchmark::State& state, int digits) {
  const Places places = ordered_places();
  const auto a = Operands(digits, false, 3).make<QuarnFloat>(kEntries);
  const auto x = Operands(digits, false, 4).make<QuarnFloat>(std::size_t(kOrder));
  std::vector<QuarnFloat> y(std::size_t(kOrder), QuarnFloat(0));
  const auto nnz = Integer(kEntries);
  for (auto _ : state) {
    Integer ifail = -1;
    kRoutine("N", &kOrder, &nnz, a.data(), places.irow.data(), places.icol.data(), "N", x.data(), y.data(), &ifail, 1,
             1);
    benchmark::ClobberMemory();
  }
  return kEntries;
}

std::size_t product_mpreal(benchmark::State& state, int digits) {
  const Places places = ordered_places();
  const auto a = Operands(digits, false, 3).make<mpreal>(kEntries);
  const auto x = Operands(digits, false, 4).make<mpreal>(std::size_t(kOrder));
  std::vector<mpreal> y(std::size_t(kOrder), mpreal(0));
  for (auto _ : state) {
    std::fill(y.begin(), y.end(), mpreal(0));
    for (std::size_t k = 0; k < kEntries; ++k) {
      mpreal& sum = y[std::size_t(places.irow[k] - 1)];
      sum = sum + a[k] * x[std::size_t(places.icol[k] - 1)];
    }
    benchmark::ClobberMemory();
  }
  return kEntries;
}

std::size_t product_eigen(benchmark::State& state, int digits) {
  const Places places = ordered_places();
  const auto a = Operands(digits, false, 3).make<mpreal>(kEntries);
  const auto values = Operands(digits, false, 4).make<mpreal>(std::size_t(kOrder));
  std::vector<Eigen::Triplet<mpreal>> triplets;
  for (std::size_t k = 0; k < kEntries; ++k) {
    triplets.emplace_back(places.irow[k] - 1, places.icol[k] - 1, a[k]);
  }
  Eigen::SparseMatrix<mpreal, Eigen::RowMajor> matrix(kOrder, kOrder);
  matrix.setFromTriplets(triplets.begin(), triplets.end());
  Eigen::Matrix<mpreal, Eigen::Dynamic, 1> x(kOrder);
  std::copy(values.begin(), values.end(), x.data());
  Eigen::Matrix<mpreal, Eigen::Dynamic, 1> y(kOrder);
  for (auto _ : state) {
    y.noalias() = matrix * x;
    benchmark::ClobberMemory();
  }
  return kEntries;
}

const bool registered = [] {
  register_work("rank 10^5", "quarn", kPasses, rank_ours);
  register_work("rank 10^5", "mpreal", kPasses, rank_peer);
  register_work("canonical form of 10^6", "quarn", kPasses, canonical_ours);
  register_work("canonical form of 10^6", "mpreal", kPasses, canonical_peer);
  register_work("product of 10^5", "quarn", kPasses, product_ours<QuarnMPX_f11xaf_>);
  register_work("product of 10^5", "classic", kPasses, product_ours<QuarnMP_f11xaf_>);
  register_work("product of 10^5", "mpreal", kPasses, product_mpreal);
  register_work("product of 10^5", "eigen", kPasses, product_eigen);
  return true;
}();

}  // namespace
}  // namespace bench
