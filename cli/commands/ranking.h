// The column of numbers that rank and sort work on, with its ranks.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/commands/options.h"
#include "cli/io/number_table.h"
#include "quarn/quarnfloat.h"
#include "tesk2mp/util.hpp"

namespace cli {

struct RankingOptions {
  std::string input;
  std::string column;
  TableOptions table;
  bool descending = false;
  OutputOptions output;

  tesk2mp::Order order() const { return descending ? tesk2mp::Order::descending : tesk2mp::Order::ascending; }
  const char* order_name() const { return descending ? "descending" : "ascending"; }
};

/// Declares FILE, --column, --descending and the shared options.
std::shared_ptr<RankingOptions> add_ranking_options(Command& command);

struct RankedColumn {
  std::string name;     // "value" when it has none
  std::string counted;  // "5 values of 'height' in FILE"
  std::vector<QuarnFloat> values;
  std::vector<Integer> ranks;  // of values, from 0

  Integer count() const { return Integer(values.size()); }
};

/// Reads the column and ranks it by the library. Throws Failure.
RankedColumn rank_column(const RankingOptions& options);

/// What both results tell beside their columns.
Result result_of(const RankingOptions& options, const RankedColumn& column, const std::string& what);

/// The numbers as a column of whole numbers; `first` is added to each.
ResultColumn count_column(const std::string& name, const std::vector<Integer>& numbers, Integer first = 0);

/// 1 ... n.
std::vector<Integer> positions(Integer n);

}  // namespace cli
