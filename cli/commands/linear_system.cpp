#include "cli/commands/linear_system.h"

#include <algorithm>

#include "cli/commands/failure.h"
#include "cli/commands/library_call.h"
#include "cli/commands/options.h"
#include "cli/io/matrix_input.h"
#include "cli/system/memory.h"
#include "tesk2mp/error.hpp"
#include "tesk2mp/sparse.h"

namespace cli {

namespace {

// Sums duplicates, keeps zeros.
template <class Value, class Routine>
void sort_entries(LinearSystem& system, const std::string& name, std::vector<Value>& values, Routine routine) {
  Integer nnz = system.count();
  system.starts.resize(std::size_t(system.n) + 1);
  std::vector<Integer> work(std::size_t(system.n) + std::size_t(nnz));
  call_routine(name, [&](Integer* ifail) {
    routine(&system.n, &nnz, values.data(), system.row.data(), system.column.data(), "S", "K", system.starts.data(),
            work.data(), ifail, 1, 1);
  });
  values.resize(std::size_t(nnz));
  system.row.resize(std::size_t(nnz));
  system.column.resize(std::size_t(nnz));
}

QuarnFloat norm(const std::vector<Complex>& x) {
  QuarnFloat sum;
  for (const Complex& element : x) {
    sum += element.re * element.re + element.im * element.im;
  }
  return sqrt(sum);
}

}  // namespace

LinearSystem linear_system(const SparseMatrix& matrix, const std::vector<Complex>& b, bool complex) {
  if (matrix.rows != matrix.columns || matrix.rows < 1) {
    throw bad_input(matrix.source + ": " + std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) +
                    ", but a system needs a square matrix");
  }
  constexpr double kVectors = 4;
  require_memory(kVectors * 2 * matrix.rows, "a system of order " + std::to_string(matrix.rows));
  SparseMatrix whole = expanded(matrix);
  LinearSystem system{matrix.source,           matrix.rows, complex, std::move(whole.row), std::move(whole.column),
                      std::move(whole.values), {},          b};
  if (complex) {
    sort_entries(system, "QuarnMP_f11znf_", system.values, QuarnMP_f11znf_);
  } else {
    std::vector<QuarnFloat> values = real_parts(system.values);
    sort_entries(system, "QuarnMP_f11zaf_", values, QuarnMP_f11zaf_);
    system.values = complex_numbers(values);
  }
  if (b.empty()) {
    system.b = product(system, std::vector<Complex>(std::size_t(system.n), Complex(1.0)));
  } else if (b.size() != std::size_t(system.n)) {
    throw bad_input(matrix.source + ": order " + std::to_string(system.n) + ", but the right side has " +
                    std::to_string(b.size()) + (b.size() == 1 ? " number" : " numbers"));
  }
  return system;
}

std::vector<Complex> product(const LinearSystem& system, const std::vector<Complex>& x) {
  const Integer nnz = system.count();
  std::vector<Complex> y(x.size());
  call_routine(system.complex ? "QuarnMP_f11xnf_" : "QuarnMP_f11xaf_", [&](Integer* ifail) {
    if (system.complex) {
      QuarnMP_f11xnf_("N", &system.n, &nnz, system.values.data(), system.row.data(), system.column.data(), "N",
                      x.data(), y.data(), ifail, 1, 1);
      return;
    }
    const std::vector<QuarnFloat> values = real_parts(system.values);
    const std::vector<QuarnFloat> real_x = real_parts(x);
    std::vector<QuarnFloat> real_y(x.size());
    QuarnMP_f11xaf_("N", &system.n, &nnz, values.data(), system.row.data(), system.column.data(), "N", real_x.data(),
                    real_y.data(), ifail, 1, 1);
    y = complex_numbers(real_y);
  });
  return y;
}

QuarnFloat relative_residual(const LinearSystem& system, const std::vector<Complex>& x) {
  const tesk2mp::Digits twice(std::min(2 * QuarnDigits(), kMostDigits));
  std::vector<Complex> residual = product(system, x);
  for (std::size_t i = 0; i < residual.size(); ++i) {
    residual[i] = system.b[i] - residual[i];
  }
  const QuarnFloat size = norm(system.b);
  return size == 0 ? norm(residual) : norm(residual) / size;
}

}  // namespace cli
