// dectest FOLDER: runs the General Decimal Arithmetic test vectors in the folder and prints the score: cases passed,
// cases that apply, and the others by the reason why they do not. Ends with status 1 on a failure or without cases.
//
// A case applies when its result is one that the number type promises: rounded in the mode of the case, or exact, and
// within the type's own exponent range. Values are compared, not spellings: a number here has no
// trailing zeros, a NaN no sign and no diagnostic digits, and there is one kind of NaN.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "quarn/functions.h"
#include "quarn/rounding.h"
#include "support/digits.h"
#include "vectors/dectest_file.h"
#include "vectors/operations.h"

namespace {

using vectors::DecTestCase;
using vectors::read_exactly;

constexpr int kMaxDigits = 1'000'000;

using Function = std::function<QuarnFloat(const QuarnFloat& a, const QuarnFloat& b)>;

/// The number that is not NaN when the other one is, or the one that the order puts first; then rounded, which a
/// multiplication does without losing the sign of a zero.
QuarnFloat pick(const QuarnFloat& a, const QuarnFloat& b, bool first) {
  return (isnan(b) || (!isnan(a) && first) ? a : b) * 1;
}

/// Zeros of different sign are in order here, as for the vectors.
bool below(const QuarnFloat& a, const QuarnFloat& b) { return a < b || (a == b && signbit(a) && !signbit(b)); }

QuarnFloat whole_quotient(const QuarnFloat& a, const QuarnFloat& b) {
  if (!isfinite(a) || b == 0) {
    return a / b;
  }
  const support::Digits scope(std::min(2 * QuarnDigits() + 1000, kMaxDigits));
  const QuarnFloat quotient = isinf(b) ? 0 : (a - fmod(a, b)) / b;
  return signbit(a) == signbit(b) ? fabs(quotient) : -fabs(quotient);
}

QuarnFloat compared(const QuarnFloat& a, const QuarnFloat& b) {
  const int order = QuarnCompare(a, b);
  return order == 2 ? QuarnFloat("nan") : QuarnFloat(order);
}

using Rounded =
    std::function<QuarnFloat(const QuarnFloat& a, const QuarnFloat& b, quarn::Rounding mode, bool* inexact)>;

QuarnFloat to_working_digits(const QuarnFloat& a, quarn::Rounding mode, bool* inexact) {
  return quarn::round_digits(a, QuarnDigits(), mode, inexact);
}

/// Operations that are asked for in the mode of the case.
const std::map<std::string, Rounded>& rounded_functions() {
  static const std::map<std::string, Rounded> table = {
      {"add", [](const auto& a, const auto& b, auto mode, bool* inexact) { return quarn::add(a, b, mode, inexact); }},
      {"subtract",
       [](const auto& a, const auto& b, auto mode, bool* inexact) { return quarn::subtract(a, b, mode, inexact); }},
      {"multiply",
       [](const auto& a, const auto& b, auto mode, bool* inexact) { return quarn::multiply(a, b, mode, inexact); }},
      {"divide",
       [](const auto& a, const auto& b, auto mode, bool* inexact) { return quarn::divide(a, b, mode, inexact); }},
      {"squareroot",
       [](const auto& a, const auto&, auto mode, bool* inexact) { return quarn::sqrt(a, mode, inexact); }},
      {"abs",
       [](const auto& a, const auto&, auto mode, bool* inexact) { return to_working_digits(fabs(a), mode, inexact); }},
      {"plus", [](const auto& a, const auto&, auto mode, bool* inexact) { return quarn::add(0, a, mode, inexact); }},
      {"minus",
       [](const auto& a, const auto&, auto mode, bool* inexact) { return quarn::subtract(0, a, mode, inexact); }},
      {"apply",
       [](const auto& a, const auto&, auto mode, bool* inexact) { return to_working_digits(a, mode, inexact); }},
      {"reduce",
       [](const auto& a, const auto&, auto mode, bool* inexact) { return to_working_digits(a, mode, inexact); }},
      {"toeng",
       [](const auto& a, const auto&, auto mode, bool* inexact) { return to_working_digits(a, mode, inexact); }},
      {"tosci",
       [](const auto& a, const auto&, auto mode, bool* inexact) { return to_working_digits(a, mode, inexact); }},
  };
  return table;
}

/// Rounding to places; the case decides whether the result fits its precision.
bool is_quantization(const std::string& operation) {
  return operation == "quantize" || operation == "rescale" || operation.rfind("tointegral", 0) == 0;
}

const std::map<std::string, Function>& functions() {
  static const std::map<std::string, Function> table = {
      {"add", [](const auto& a, const auto& b) { return a + b; }},
      {"subtract", [](const auto& a, const auto& b) { return a - b; }},
      {"multiply", [](const auto& a, const auto& b) { return a * b; }},
      {"divide", [](const auto& a, const auto& b) { return a / b; }},
      {"divideint", whole_quotient},
      {"remainder", [](const auto& a, const auto& b) { return fmod(a, b); }},
      {"squareroot", [](const auto& a, const auto&) { return sqrt(a); }},
      {"exp", [](const auto& a, const auto&) { return exp(a); }},
      {"ln", [](const auto& a, const auto&) { return log(a); }},
      {"log10", [](const auto& a, const auto&) { return log10(a); }},
      {"power", [](const auto& a, const auto& b) { return pow(a, b); }},
      {"compare", compared},
      {"abs", [](const auto& a, const auto&) { return fabs(a) + 0; }},
      {"plus", [](const auto& a, const auto&) { return 0 + a; }},
      {"minus", [](const auto& a, const auto&) { return 0 - a; }},
      {"max", [](const auto& a, const auto& b) { return pick(a, b, !below(a, b)); }},
      {"min", [](const auto& a, const auto& b) { return pick(a, b, !below(b, a)); }},
      {"floor", [](const auto& a, const auto&) { return floor(a); }},
      {"ceiling", [](const auto& a, const auto&) { return ceil(a); }},
      {"down", [](const auto& a, const auto&) { return trunc(a); }},
      {"copyabs", [](const auto& a, const auto&) { return fabs(a); }},
      {"copynegate", [](const auto& a, const auto&) { return -a; }},
      {"isfinite", [](const auto& a, const auto&) { return isfinite(a) ? 1 : 0; }},
      {"isinfinite", [](const auto& a, const auto&) { return isinf(a) ? 1 : 0; }},
      {"isnan", [](const auto& a, const auto&) { return isnan(a) ? 1 : 0; }},
      {"issigned", [](const auto& a, const auto&) { return signbit(a) ? 1 : 0; }},
      {"iszero", [](const auto& a, const auto&) { return a == 0 ? 1 : 0; }},
      {"apply", [](const auto& a, const auto&) { return a; }},
      {"reduce", [](const auto& a, const auto&) { return a; }},
      {"toeng", [](const auto& a, const auto&) { return a; }},
      {"tosci", [](const auto& a, const auto&) { return a; }},
  };
  return table;
}

/// Operations that round half to even whatever is set.
bool independent_of_rounding(const std::string& operation) {
  static const std::set<std::string> names = {"squareroot", "exp", "ln", "log10"};
  return names.count(operation) != 0;
}

/// Operations that only read their operand at the working digits; they differ in the spelling of the result.
bool reads_text(const std::string& operation) {
  static const std::set<std::string> names = {"apply", "reduce", "toeng", "tosci"};
  return names.count(operation) != 0;
}

bool signalling(const std::string& text) { return text.find_first_of("sS") != std::string::npos; }

/// A finite number that lies outside the number type's exponent range.
bool out_of_range(const std::string& text) {
  const QuarnFloat value = read_exactly(text);
  const std::size_t digit = text.find_first_of("123456789");
  const bool nonzero = digit != std::string::npos && digit < text.find_first_of("eE");
  return nonzero && (value == 0 || isinf(value));
}

/// A power that the reference implementation refuses because of the exponents of its operands.
bool beyond_reference_limits(const DecTestCase& c) {
  const QuarnFloat limit(1, 1'000'000);
  return c.operation == "power" && c.has("invalid_operation") &&
         std::any_of(c.operands.begin(), c.operands.end(), [&](const std::string& text) {
           const QuarnFloat size = fabs(read_exactly(text));
           return isfinite(size) && size != 0 && (size >= limit || size * limit < 1);
         });
}

std::optional<quarn::Rounding> rounding_of(const DecTestCase& c) { return quarn::rounding_named(c.rounding); }

/// The exponent with which a number is written: -2 of 1.00, 2 of 1e+2.
long long exponent_of(const std::string& text) {
  const std::size_t e = text.find_first_of("eE");
  const std::size_t point = text.find('.');
  const std::size_t end = e == std::string::npos ? text.size() : e;
  const int places = point == std::string::npos ? 0 : int(end - point) - 1;
  return (e == std::string::npos ? 0 : std::strtoll(text.c_str() + e + 1, nullptr, 10)) - places;
}

/// A quantisation that is refused because the exponent is not one of the case's numbers.
bool exponent_refused(const DecTestCase& c) {
  const QuarnFloat pattern = read_exactly(c.operands[1]);
  if (!isfinite(pattern) || !isfinite(read_exactly(c.operands[0]))) {
    return false;
  }
  if (c.operation == "rescale" && trunc(pattern) != pattern) {
    return true;
  }
  const QuarnFloat exponent = c.operation == "rescale" ? pattern : QuarnFloat(exponent_of(c.operands[1]));
  const QuarnFloat size = quarn::quantize(read_exactly(c.operands[0]), FloatToInt(-exponent), *rounding_of(c));
  return exponent > QuarnFloat(c.largest_exponent) || logb(size) > QuarnFloat(c.largest_exponent) ||
         -exponent > QuarnFloat(c.largest_exponent + c.precision - 2);
}

/// Why a case does not apply; empty when it does.
std::string reason_left_out(const DecTestCase& c) {
  const auto any = [&](bool (*test)(const std::string&)) {
    return std::any_of(c.operands.begin(), c.operands.end(), test) || test(c.result);
  };
  const bool known = functions().count(c.operation) != 0 || is_quantization(c.operation);
  if (!known || c.operands.size() > 2 || !rounding_of(c)) {
    return "operation without a counterpart";
  }
  if (any([](const std::string& text) { return text.find('#') != std::string::npos; })) {
    return "operand or result in a fixed format, or none";
  }
  if (c.has("invalid_context") || beyond_reference_limits(c)) {
    return "settings or operands that the reference implementation refuses";
  }
  if (!c.extended) {
    return "subset arithmetic";
  }
  const bool in_mode = is_quantization(c.operation) || rounded_functions().count(c.operation) != 0;
  if (c.rounding != "half_even" && c.has("inexact") && !in_mode && !independent_of_rounding(c.operation)) {
    return "inexact under another rounding";
  }
  if (is_quantization(c.operation) && c.has("invalid_operation") && c.operands.size() > 1 && exponent_refused(c)) {
    return "exponent beyond the range of the case";
  }
  if (c.precision > kMaxDigits) {
    return "more than 1000000 digits";
  }
  if (c.has("division_impossible")) {
    return "remainder or quotient that is exact here and refused there";
  }
  if ((c.has("subnormal") || c.has("underflow")) && !is_quantization(c.operation)) {
    return "subnormal result or operand";
  }
  if ((c.has("overflow") && c.largest_exponent != 999999999) || any(out_of_range)) {
    return "beyond the exponent range of the case or of the type";
  }
  if ((c.operation == "max" || c.operation == "min") && any(signalling)) {
    return "signalling NaN";
  }
  if (c.operation == "issigned" && isnan(read_exactly(c.operands[0]))) {
    return "sign of a NaN";
  }
  return "";
}

bool same(const QuarnFloat& a, const QuarnFloat& b) {
  return (isnan(a) && isnan(b)) || (a == b && signbit(a) == signbit(b));
}

/// The operand as the operation sees it: exact, but rounded where reading is the operation.
QuarnFloat operand(const DecTestCase& c, std::size_t i) {
  if (i >= c.operands.size()) {
    return 0;
  }
  return reads_text(c.operation) ? QuarnFloat(c.operands[i]) : read_exactly(c.operands[i]);
}

/// Quantisation as the arithmetic has it: none of a result that needs more digits than the case has.
QuarnFloat quantized(const DecTestCase& c, bool* inexact) {
  const QuarnFloat x = read_exactly(c.operands[0]);
  if (c.operation.rfind("tointegral", 0) == 0) {
    return quarn::quantize(x, 0, *rounding_of(c), inexact);
  }
  const QuarnFloat pattern = read_exactly(c.operands[1]);
  if (isnan(x) || isnan(pattern)) {
    return QuarnFloat("nan");
  }
  if (c.operation == "rescale" ? isinf(pattern) || isinf(x) : isinf(x) || isinf(pattern)) {
    return isinf(x) && isinf(pattern) ? x : QuarnFloat("nan");
  }
  const long long exponent = c.operation == "rescale" ? FloatToInt(pattern) : exponent_of(c.operands[1]);
  const QuarnFloat result = quarn::quantize(x, int(-exponent), *rounding_of(c), inexact);
  return result != 0 && ilogb(result) - exponent + 1 > c.precision ? QuarnFloat("nan") : result;
}

bool passes(const DecTestCase& c, const std::string& file) {
  const support::Digits scope(c.precision);
  const auto in_mode = rounded_functions().find(c.operation);
  bool inexact = false;
  bool marked = true;
  QuarnFloat result;
  if (is_quantization(c.operation)) {
    result = quantized(c, &inexact);
  } else if (in_mode != rounded_functions().end() && !independent_of_rounding(c.operation)) {
    result = in_mode->second(read_exactly(c.operands[0]), c.operands.size() > 1 ? read_exactly(c.operands[1]) : 0,
                             *rounding_of(c), &inexact);
  } else {
    marked = false;
    result = functions().at(c.operation)(operand(c, 0), operand(c, 1));
  }
  // The mark is that of the case; round-to-integral-value never sets it there.
  marked = marked && !isnan(result) && c.operation != "tointegral";
  bool good = same(result, read_exactly(c.result)) && (!marked || inexact == c.has("inexact"));
  if (good && marked && c.rounding == "half_even" && functions().count(c.operation) != 0) {
    result = functions().at(c.operation)(operand(c, 0), operand(c, 1));
    good = same(result, read_exactly(c.result));
  }
  if (good) {
    return true;
  }
  std::printf("FAILED %s %s: %s", file.c_str(), c.id.c_str(), c.operation.c_str());
  for (const std::string& text : c.operands) {
    std::printf(" %s", text.c_str());
  }
  std::printf(" at %d digits\n  ours   %s\n  theirs %s\n", c.precision, result.to_string().c_str(), c.result.c_str());
  return false;
}

/// Files for numbers of any precision: all but those of the fixed formats.
bool arbitrary_precision(const std::string& name) {
  if (name.rfind("dec", 0) == 0) {
    return false;
  }
  return !(name.size() > 2 && name[0] == 'd' && std::string("sdq").find(name[1]) != std::string::npos &&
           std::isupper(static_cast<unsigned char>(name[2])));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || !std::filesystem::is_directory(argv[1])) {
    std::fprintf(stderr, "dectest: needs the folder of the vectors (Debian package libpython3.11-testsuite)\n");
    return 1;
  }
  int passed = 0;
  int applicable = 0;
  int total = 0;
  std::map<std::string, int> left_out;
  std::map<std::string, std::pair<int, int>> scores;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    const std::string name = entry.path().filename().string();
    if (entry.path().extension() != ".decTest" || !arbitrary_precision(name)) {
      continue;
    }
    std::ifstream file(entry.path());
    for (const DecTestCase& c : vectors::read_dectest(file)) {
      ++total;
      const std::string reason = reason_left_out(c);
      if (!reason.empty()) {
        ++left_out[reason];
        continue;
      }
      ++applicable;
      const bool good = passes(c, name);
      passed += good ? 1 : 0;
      auto& score = scores[c.operation];
      score.first += good ? 1 : 0;
      ++score.second;
    }
  }
  std::printf("%-14s %7s %11s\n", "operation", "passed", "applicable");
  for (const auto& [operation, score] : scores) {
    std::printf("%-14s %7d %11d\n", operation.c_str(), score.first, score.second);
  }
  std::printf("\nleft out\n");
  for (const auto& [reason, count] : left_out) {
    std::printf("%7d  %s\n", count, reason.c_str());
  }
  std::printf("\nnote: %d passed of %d applicable decimal vectors, %d left out of %d\n", passed, applicable,
              total - applicable, total);
  return applicable > 0 && passed == applicable ? 0 : 1;
}
