// quarn verify, and the files that it reads.
#include <cctype>
#include <cstdlib>
#include <string_view>

#include "cli/commands/certificate.h"
#include "cli/commands/command.h"
#include "cli/commands/failure.h"
#include "cli/io/input.h"
#include "cli/io/json.h"
#include "cli/io/number_text.h"
#include "cli/io/output.h"

namespace cli {

namespace {

constexpr const char* kKind = "certificate";

/// Exponents that numbers of any exponent would turn into zeros or infinities are refused before that.
bool has_moderate_exponents(const std::string& text) {
  constexpr std::size_t kMostDigits = 8;
  for (std::size_t at = text.find_first_of("eE"); at != std::string::npos; at = text.find_first_of("eE", at)) {
    ++at;
    at += at < text.size() && (text[at] == '+' || text[at] == '-') ? 1 : 0;
    std::size_t end = at;
    while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])) != 0) {
      ++end;
    }
    if (end - at > kMostDigits || std::atol(text.substr(at, end - at).c_str()) > tesk2mp::proven::kMostExponent) {
      return false;
    }
  }
  return true;
}

/// a or a+bi, as certificates have them; elsewhere parts may be left out, and the letter may be j.
bool is_written_out(std::string_view text) {
  if (!text.ends_with('i')) {
    return is_number(text);
  }
  text.remove_suffix(1);
  for (std::size_t at = text.size(); at-- > 1;) {
    const bool of_exponent = text[at - 1] == 'e' || text[at - 1] == 'E';
    if ((text[at] == '+' || text[at] == '-') && !of_exponent) {
      return is_number(text.substr(0, at)) && is_number(text.substr(at));
    }
  }
  return false;
}

Complex number_of(const std::string& text, const std::string& where) {
  constexpr std::size_t kMostLength = 100'000;
  constexpr std::size_t kShown = 40;
  if (text.size() > kMostLength || !is_written_out(text)) {
    throw bad_input(where + " has '" + text.substr(0, kShown) + "', which is not the text of a number");
  }
  if (!has_moderate_exponents(text)) {
    throw bad_input(where + " has '" + text.substr(0, kShown) + "', whose exponent is beyond " +
                    std::to_string(tesk2mp::proven::kMostExponent));
  }
  return to_complex_number(text);
}

void run_verify(const std::string& file) {
  const tesk2mp::proven::Certificate certificate = certificate_of(read_input(file), file);
  try {
    write_output(file + ": the proof holds: " + tesk2mp::proven::verify(certificate) + "\n");
  } catch (const tesk2mp::NumericalFailure& failure) {
    throw Failure(ExitStatus::library, "quarn: " + file + ": the proof does not hold: " + failure.text() + "\n");
  } catch (const tesk2mp::InvalidArgument& failure) {
    throw bad_input(file + ": not a certificate that can be checked: " + failure.text());
  }
}

constexpr const char* kVerifyFooter =
    R"(FILE is what --certificate of `quarn solve`, `inv`, `det`, `eig`, `svd` and `zeros` has written:
the problem, the answer, bounds of its errors and what proves them, as exact decimal numbers.
Sums and products of these are formed exactly, and compared; nothing is solved. Where an
inequality fails it is named, and the exit status is 1.

verify_certificate.py, which is installed beside, does the same with the integers of Python.

Examples:
  quarn inv examples/west0067.mtx --certificate inverse.json > inverse.txt
  quarn verify inverse.json)";

void declare_verify(Command& command) {
  auto file = std::make_shared<std::string>();
  command.argument("FILE", *file, "the certificate; - is standard input");
  command.work = [file] { run_verify(*file); };
}

const Registered kVerifyCommand(155, "verify", "check the certificate of a proven result", kVerifyFooter,
                                declare_verify);

}  // namespace

tesk2mp::proven::Certificate certificate_of(const std::string& text, const std::string& source) {
  const NamedMatrices given = matrices_of_json(text, source, kKind);
  tesk2mp::proven::Certificate certificate{given.kind, {}};
  const tesk2mp::Digits scope(kMostDigits);
  for (const auto& [name, rows] : given.matrices) {
    tesk2mp::Matrix<Complex> values(rows.size(), rows.empty() ? 0 : rows.front().size());
    std::string where = source;
    where.append(": '").append(name).append("'");
    for (std::size_t i = 0; i < values.rows(); ++i) {
      for (std::size_t j = 0; j < values.columns(); ++j) {
        values(i, j) = number_of(rows[i][j], where);
      }
    }
    certificate.add(name, std::move(values));
  }
  return certificate;
}

void write_certificate(const std::string& file, const tesk2mp::proven::Certificate& certificate) {
  NamedMatrices texts{certificate.kind, {}};
  for (const auto& [name, values] : certificate.parts) {
    NamedMatrices::Rows rows(values.rows());
    for (std::size_t i = 0; i < values.rows(); ++i) {
      for (std::size_t j = 0; j < values.columns(); ++j) {
        rows[i].push_back(complex_text(values(i, j)));
      }
    }
    texts.matrices.emplace_back(name, std::move(rows));
  }
  write_output(render_matrices(kKind, texts), file);
}

}  // namespace cli
