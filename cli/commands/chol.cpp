// quarn chol: the Cholesky factorisation of a dense Hermitian positive definite matrix.
#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"

namespace cli {

namespace {

struct CholOptions {
  std::string matrix;
  TableOptions table;
  bool upper = false;
  OutputOptions output;
};

bool mirrored(const QuarnFloat& value, const QuarnFloat& mirror) { return value == mirror; }
bool mirrored(const Complex& value, const Complex& mirror) { return value == conj(mirror); }

template <class T>
void require_hermitian(const tesk2mp::Matrix<T>& a, const std::string& source) {
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = j; i < a.rows(); ++i) {
      if (!mirrored(a(i, j), a(j, i))) {
        std::string refusal = source + ": not ";
        refusal += std::is_same_v<T, Complex> ? "Hermitian" : "symmetric";
        refusal += ": element (" + std::to_string(i + 1) + ", " + std::to_string(j + 1);
        throw bad_input(refusal += ") differs from its mirror image");
      }
    }
  }
}

void run_chol(const CholOptions& options) {
  const DenseMatrix given = read_operand(options.matrix, options.table, true);
  std::visit([&](const auto& a) { require_hermitian(a, given.source); }, given.elements);
  const auto triangle = options.upper ? tesk2mp::Triangle::upper : tesk2mp::Triangle::lower;
  constexpr double kOneTriangle = 0.5;
  const Progress progress = Progress::estimated("factorising", kOneTriangle * factorisation_cost(given.rows(), true));
  const auto factorise = [&](const auto& a) {
    const tesk2mp::Cholesky cholesky(a, triangle);
    const char* const routine =
        std::is_same_v<decltype(cholesky), const tesk2mp::Cholesky<Complex>> ? "QuarnMPX_zpotrf_" : "QuarnMPX_dpotrf_";
    const std::string determinant = exact_text(cholesky.determinant());
    Result result;
    result.notes = {std::string(options.upper ? "U of A = U^H U" : "L of A = L L^H") + ", A the " + description(given),
                    digits_text() + ", by " + routine, "positive definite; determinant " + determinant};
    result.facts = {
        {"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}, {"determinant", determinant}};
    const DenseMatrix factor{"", cholesky.factor()};
    add_matrix(result, factor);
    result.picture = [&](const std::string& file) { draw(map_of_magnitudes(result.notes.front(), factor), file); };
    deliver(result, options.output);
  };
  std::visit(factorise, given.elements);
}

constexpr const char* kCholFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file: symmetric or
Hermitian. When it is not positive definite, the order of the first leading minor that
is not positive is told, and the exit status is 1. --plot draws the magnitudes of the
factor.

Examples:
  quarn chol examples/bcsstk01.mtx --digits 40 --output factor.mtx
  printf '4 2\n2 5\n' | quarn chol - --upper)";

void declare_chol(Command& command) {
  auto options = std::make_shared<CholOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  command.flag("--upper", options->upper, "write U of A = U^H U");
  command.add_digits();
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  command.work = [options] { run_chol(*options); };
}

const Registered kCholCommand(100, "chol", "factorise a positive definite matrix, A = L L^H", kCholFooter,
                              declare_chol);

}  // namespace

}  // namespace cli
