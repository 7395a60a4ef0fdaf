// quarn constants: the machine constants at the working precision.
#include "cli/commands/options.h"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

struct Constant {
  const char* routine;
  const char* meaning;
  std::string value;
};

std::vector<Constant> constants() {
  return {
      {"QuarnMP_x02ajf_", "machine precision", tesk2mp::machine_precision().to_string()},
      {"QuarnMP_x02akf_", "smallest positive model number", tesk2mp::smallest_number().to_string()},
      {"QuarnMP_x02alf_", "largest positive model number", tesk2mp::largest_number().to_string()},
      {"QuarnMP_x02amf_", "safe range", tesk2mp::safe_range().to_string()},
      {"QuarnMP_x02bhf_", "base of the model", std::to_string(tesk2mp::model_base())},
      {"QuarnMP_x01aaf_", "pi, classic entry: the double", tesk2mp::classic::pi().to_string()},
      {"QuarnMPX_x01aaf_", "pi, companion: all digits", tesk2mp::pi().to_string()},
  };
}

Result list_constants() {
  Result result;
  result.notes = {"Machine constants at " + digits_text()};
  result.facts = {{"digits", std::to_string(QuarnDigits()), true}};
  result.data = {{"routine", {}}, {"meaning", {}}, {"value", {}}};
  for (const Constant& constant : constants()) {
    result.data[0].cells.emplace_back(constant.routine);
    result.data[1].cells.emplace_back(constant.meaning);
    result.data[2].cells.push_back(constant.value);
  }
  result.table = result.data;
  for (ResultColumn& column : result.table) {
    column.words = true;
  }
  return result;
}

constexpr const char* kConstantsFooter = "Example:\n  quarn constants --digits 100";

void declare_constants(Command& command) {
  auto options = std::make_shared<OutputOptions>();
  command.add_digits();
  add_output_options(command, *options);
  command.work = [options] { deliver(list_constants(), *options); };
}

const Registered kConstantsCommand(30, "constants", "show the machine constants at the working precision",
                                   kConstantsFooter, declare_constants);

}  // namespace

}  // namespace cli
