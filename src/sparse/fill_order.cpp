// Approximate minimum degree: P. R. Amestoy, T. A. Davis, I. S. Duff, SIAM J. Matrix Anal. Appl. 17, 1996, on cliques
// alone. An entry of a symmetric matrix is a clique of two; of a general one a column is the clique of the rows that
// have an entry there, since any of them may become the pivot row of the others (T. A. Davis et al., ACM Trans. Math.
// Software 30, 2004). Eliminating a node joins its cliques to a new one.
#include "src/sparse/fill_order.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "src/frame/check_points.h"

namespace tesk {
namespace {

constexpr Integer kNobody = -1;

using Cliques = std::vector<std::vector<Integer>>;

class LeastDegree {
 public:
  LeastDegree(Integer n, Cliques cliques)
      : n_(n),
        cliques_(std::move(cliques)),
        of_node_(std::size_t(n)),
        outside_(cliques_.size() + of_node_.size()),
        seen_(outside_.size()),
        member_(of_node_.size(), kNobody),
        degree_(of_node_.size()),
        first_(of_node_.size(), kNobody),
        next_(of_node_.size()),
        previous_(of_node_.size()) {
    const std::size_t given = cliques_.size();
    cliques_.resize(outside_.size());
    for (std::size_t e = 0; e < given; ++e) {
      for (const Integer i : cliques_[e]) {
        of_node_[std::size_t(i)].push_back(Integer(e));
        degree_[std::size_t(i)] = capped(degree_[std::size_t(i)] + std::int64_t(cliques_[e].size()) - 1);
      }
    }
    for (Integer i = n - 1; i >= 0; --i) {
      insert(i);
    }
  }

  std::vector<Integer> order() {
    std::vector<Integer> order;
    order.reserve(of_node_.size());
    for (Integer least = 0; order.size() < of_node_.size();) {
      while (first_[std::size_t(least)] == kNobody) {
        ++least;
      }
      const Integer node = first_[std::size_t(least)];
      order.push_back(node);
      remove(node);
      least = std::min(least, eliminate(node, n_ - Integer(order.size())));
    }
    return order;
  }

 private:
  Integer capped(std::int64_t degree) const { return Integer(std::min<std::int64_t>(degree, n_ - 1)); }

  void insert(Integer i) {
    Integer& first = first_[std::size_t(degree_[std::size_t(i)])];
    next_[std::size_t(i)] = first;
    previous_[std::size_t(i)] = kNobody;
    if (first != kNobody) {
      previous_[std::size_t(first)] = i;
    }
    first = i;
  }
  void remove(Integer i) {
    const Integer next = next_[std::size_t(i)];
    const Integer previous = previous_[std::size_t(i)];
    (previous == kNobody ? first_[std::size_t(degree_[std::size_t(i)])] : next_[std::size_t(previous)]) = next;
    if (next != kNobody) {
      previous_[std::size_t(next)] = previous;
    }
  }

  bool is_absorbed(Integer clique) const { return cliques_[std::size_t(clique)].empty(); }
  void absorb(Integer clique) { std::vector<Integer>().swap(cliques_[std::size_t(clique)]); }

  /// The cliques of a node become one; `left` nodes are left. Returns the least of the new degrees.
  Integer eliminate(Integer node, Integer left) {
    const Integer number = Integer(cliques_.size() - of_node_.size()) + node;
    std::vector<Integer> joined;
    member_[std::size_t(node)] = node;
    for (const Integer e : of_node_[std::size_t(node)]) {
      for (const Integer i : cliques_[std::size_t(e)]) {
        if (member_[std::size_t(i)] != node) {
          member_[std::size_t(i)] = node;
          joined.push_back(i);
        }
      }
      absorb(e);
    }
    std::vector<Integer>().swap(of_node_[std::size_t(node)]);

    // How many nodes of other cliques are outside of the new one.
    std::ptrdiff_t visited = std::ptrdiff_t(joined.size());
    for (const Integer i : joined) {
      for (const Integer e : of_node_[std::size_t(i)]) {
        if (seen_[std::size_t(e)] != node + 1) {
          seen_[std::size_t(e)] = node + 1;
          outside_[std::size_t(e)] = Integer(cliques_[std::size_t(e)].size());
        }
        --outside_[std::size_t(e)];
      }
      visited += std::ptrdiff_t(of_node_[std::size_t(i)].size());
    }
    check_points_.pass(visited + 1);

    Integer least = left;
    const auto others = std::int64_t(joined.size()) - 1;
    for (const Integer i : joined) {
      remove(i);
      std::int64_t degree = others;
      std::vector<Integer>& list = of_node_[std::size_t(i)];
      const auto is_gone = [&](Integer e) {
        if (!is_absorbed(e) && outside_[std::size_t(e)] == 0) {
          absorb(e);
        }
        degree += is_absorbed(e) ? 0 : outside_[std::size_t(e)];
        return is_absorbed(e);
      };
      list.erase(std::remove_if(list.begin(), list.end(), is_gone), list.end());
      list.push_back(number);
      const std::int64_t bound = std::min<std::int64_t>(left - 1, degree_[std::size_t(i)] + others);
      degree_[std::size_t(i)] = Integer(std::min(degree, bound));
      least = std::min(least, degree_[std::size_t(i)]);
      insert(i);
    }
    cliques_[std::size_t(number)] = std::move(joined);
    return least;
  }

  Integer n_;
  Cliques cliques_;  // those given, then one for each node; empty when absorbed
  Cliques of_node_;  // the cliques of each node
  std::vector<Integer> outside_;
  std::vector<Integer> seen_;
  std::vector<Integer> member_;
  std::vector<Integer> degree_;
  std::vector<Integer> first_;  // lists of the nodes of a degree
  std::vector<Integer> next_;
  std::vector<Integer> previous_;
  CheckPoints check_points_;
};

Cliques pairs(Integer nnz, const Integer* irow, const Integer* icol) {
  std::vector<std::pair<Integer, Integer>> places;
  for (Integer k = 0; k < nnz; ++k) {
    if (irow[k] != icol[k]) {
      places.emplace_back(std::min(irow[k], icol[k]) - 1, std::max(irow[k], icol[k]) - 1);
    }
  }
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
  Cliques cliques;
  cliques.reserve(places.size());
  for (const auto& place : places) {
    cliques.push_back({place.first, place.second});
  }
  return cliques;
}

/// Columns with very many entries would join everything, and are left out.
Cliques columns(Integer n, Integer nnz, const Integer* irow, const Integer* icol) {
  Cliques cliques{std::size_t(n)};
  for (Integer k = 0; k < nnz; ++k) {
    cliques[std::size_t(icol[k]) - 1].push_back(irow[k] - 1);
  }
  const auto dense = std::size_t(std::max(16.0, 10 * std::sqrt(double(n))));
  for (std::vector<Integer>& clique : cliques) {
    std::sort(clique.begin(), clique.end());
    clique.erase(std::unique(clique.begin(), clique.end()), clique.end());
    if (clique.size() < 2 || clique.size() > dense) {
      clique.clear();
    }
  }
  return cliques;
}

}  // namespace

std::vector<Integer> least_fill_order(FillOf what, Integer n, Integer nnz, const Integer* irow, const Integer* icol) {
  return LeastDegree(n, what == FillOf::symmetric ? pairs(nnz, irow, icol) : columns(n, nnz, irow, icol)).order();
}

}  // namespace tesk
