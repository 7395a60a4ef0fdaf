// Incomplete factorisations: entries.
#include <cstdint>
#include <limits>
#include <utility>

#include "src/frame/option.h"
#include "src/sparse/incomplete.h"
#include "src/sparse/structure_report.h"
#include "tesk2mp/incomplete.h"

namespace tesk {
namespace {

constexpr StructureReport kStructure = {99999, 1, 2};

/// The arrays that hold a matrix, and then its factors.
template <class Value>
struct Arrays {
  Integer n;
  Integer nnz;
  Value* a;
  Integer la;
  Integer* irow;
  Integer* icol;
  Integer* istr;

  CoordinateMatrix<Value> matrix() const { return {n, nnz, a, irow, icol}; }
};

bool is_size(const QuarnFloat& x) { return x >= 0 && isfinite(x); }

/// Stores the factors behind the matrix; false, and NNZC alone, where they do not fit.
template <class Value>
bool store(Report& report, const Arrays<Value>& arrays, IncompleteFactors<Value>& factors, Integer* nnzc,
           Integer* npivm) {
  constexpr std::int64_t kMost = std::numeric_limits<Integer>::max();
  const auto count = std::int64_t(factors.values.size());
  *nnzc = Integer(std::min(count, kMost));
  if (arrays.nnz + count > arrays.la) {
    report.fail(3, 99989, " ** On entry, LA is too small for the factors: LA =%16ld,\n    NNZ + NNZC =%16ld.",
                arrays.la, Integer(std::min(arrays.nnz + count, kMost)));
    return false;
  }
  Integer place = arrays.nnz;
  for (std::size_t k = 0; k < factors.values.size(); ++k, ++place) {
    arrays.a[place] = std::move(factors.values[k]);
    arrays.irow[place] = factors.rows[k] + 1;
    arrays.icol[place] = factors.columns[k] + 1;
  }
  for (std::size_t k = 0; k < factors.starts.size(); ++k) {
    arrays.istr[k] = arrays.nnz + factors.starts[k] + 1;
  }
  *npivm = factors.corrected;
  return true;
}

/// numbers[k] := from[k] + offset
void number(const std::vector<Integer>& from, Integer offset, Integer* numbers) {
  for (std::size_t k = 0; k < from.size(); ++k) {
    numbers[k] = from[k] + offset;
  }
}

template <class Value>
void factorise_lu(const char* routine, const Arrays<Value>& arrays, Integer lfill, const QuarnFloat& dtol,
                  const Option& pstrat, const Option& milu, Integer* ipivp, Integer* ipivq, Integer* idiag,
                  Integer* nnzc, Integer* npivm, char* message_buffer, Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (!structure_is_valid(report, kStructure, Storage::general, arrays.n, arrays.nnz, arrays.irow, arrays.icol)) {
    return;
  }
  if (!pstrat.is_one_of("NRCBM")) {
    return report.fail(1, 99992, " ** On entry, PSTRAT .ne. 'N', 'R', 'C', 'B' or 'M': PSTRAT = '%s'.", pstrat.text());
  }
  if (!milu.is_one_of("NM")) {
    return report.fail(1, 99991, " ** On entry, MILU .ne. 'N' or 'M': MILU = '%s'.", milu.text());
  }
  if (lfill < 0 && !is_size(dtol)) {
    return report.fail(1, 99990, " ** On entry, DTOL .lt. 0 or not finite: DTOL =%12.4e.", dtol);
  }

  const PivotSearch search = pstrat.letter() == 'N'   ? PivotSearch::none
                             : pstrat.letter() == 'R' ? PivotSearch::rows
                             : pstrat.letter() == 'C' ? PivotSearch::columns
                             : pstrat.letter() == 'B' ? PivotSearch::both
                                                      : PivotSearch::least_fill;
  IncompleteFactors<Value> factors = incomplete_lu(arrays.matrix(), {lfill, dtol, milu.letter() == 'M'}, search);
  if (store(report, arrays, factors, nnzc, npivm)) {
    number(factors.diagonals, arrays.nnz + 1, idiag);
    number(factors.row_order, 1, ipivp);
    number(factors.column_order, 1, ipivq);
  }
}

template <class Value>
void factorise_cholesky(const char* routine, const Arrays<Value>& arrays, Integer lfill, const QuarnFloat& dtol,
                        const Option& mic, const QuarnFloat& dscale, const Option& pstrat, Integer* ipiv, Integer* nnzc,
                        Integer* npivm, char* message_buffer, Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (!structure_is_valid(report, kStructure, Storage::lower_triangle, arrays.n, arrays.nnz, arrays.irow,
                          arrays.icol)) {
    return;
  }
  if (!pstrat.is_one_of("NDM")) {
    return report.fail(1, 99992, " ** On entry, PSTRAT .ne. 'N', 'D' or 'M': PSTRAT = '%s'.", pstrat.text());
  }
  if (!mic.is_one_of("NM")) {
    return report.fail(1, 99991, " ** On entry, MIC .ne. 'N' or 'M': MIC = '%s'.", mic.text());
  }
  if (lfill < 0 && !is_size(dtol)) {
    return report.fail(1, 99990, " ** On entry, DTOL .lt. 0 or not finite: DTOL =%12.4e.", dtol);
  }
  if (!is_size(dscale)) {
    return report.fail(1, 99988, " ** On entry, DSCALE .lt. 0 or not finite: DSCALE =%12.4e.", dscale);
  }

  const DiagonalSearch search = pstrat.letter() == 'N'   ? DiagonalSearch::none
                                : pstrat.letter() == 'D' ? DiagonalSearch::largest
                                                         : DiagonalSearch::least_fill;
  IncompleteFactors<Value> factors =
      incomplete_cholesky(arrays.matrix(), {lfill, dtol, mic.letter() == 'M'}, search, dscale);
  if (store(report, arrays, factors, nnzc, npivm)) {
    number(factors.row_order, 1, ipiv);
  }
}

}  // namespace
}  // namespace tesk

using tesk::Option;

extern "C" {

void QuarnMP_f11dafn_(Integer n, Integer nnz, QuarnFloat* a, Integer la, Integer* irow, Integer* icol, Integer lfill,
                      QuarnFloat dtol, const char* pstrat, const char* milu, Integer* ipivp, Integer* ipivq,
                      Integer* istr, Integer* idiag, Integer* nnzc, Integer* npivm, char* message_buffer,
                      Integer* ifail, int pstrat_length, int milu_length, int /*buffer_length*/) {
  tesk::factorise_lu<QuarnFloat>("F11DAF", {n, nnz, a, la, irow, icol, istr}, lfill, dtol,
                                 Option(pstrat, pstrat_length), Option(milu, milu_length), ipivp, ipivq, idiag, nnzc,
                                 npivm, message_buffer, ifail);
}

void QuarnMP_f11dnfn_(Integer n, Integer nnz, Complex* a, Integer la, Integer* irow, Integer* icol, Integer lfill,
                      QuarnFloat dtol, const char* pstrat, const char* milu, Integer* ipivp, Integer* ipivq,
                      Integer* istr, Integer* idiag, Integer* nnzc, Integer* npivm, char* message_buffer,
                      Integer* ifail, int pstrat_length, int milu_length, int /*buffer_length*/) {
  tesk::factorise_lu<Complex>("F11DNF", {n, nnz, a, la, irow, icol, istr}, lfill, dtol, Option(pstrat, pstrat_length),
                              Option(milu, milu_length), ipivp, ipivq, idiag, nnzc, npivm, message_buffer, ifail);
}

void QuarnMP_f11jafn_(Integer n, Integer nnz, QuarnFloat* a, Integer la, Integer* irow, Integer* icol, Integer lfill,
                      QuarnFloat dtol, const char* mic, QuarnFloat dscale, const char* pstrat, Integer* ipiv,
                      Integer* istr, Integer* nnzc, Integer* npivm, char* message_buffer, Integer* ifail,
                      int mic_length, int pstrat_length, int /*buffer_length*/) {
  tesk::factorise_cholesky<QuarnFloat>("F11JAF", {n, nnz, a, la, irow, icol, istr}, lfill, dtol,
                                       Option(mic, mic_length), dscale, Option(pstrat, pstrat_length), ipiv, nnzc,
                                       npivm, message_buffer, ifail);
}

void QuarnMP_f11jnfn_(Integer n, Integer nnz, Complex* a, Integer la, Integer* irow, Integer* icol, Integer lfill,
                      QuarnFloat dtol, const char* mic, QuarnFloat dscale, const char* pstrat, Integer* ipiv,
                      Integer* istr, Integer* nnzc, Integer* npivm, char* message_buffer, Integer* ifail,
                      int mic_length, int pstrat_length, int /*buffer_length*/) {
  tesk::factorise_cholesky<Complex>("F11JNF", {n, nnz, a, la, irow, icol, istr}, lfill, dtol, Option(mic, mic_length),
                                    dscale, Option(pstrat, pstrat_length), ipiv, nnzc, npivm, message_buffer, ifail);
}
}
