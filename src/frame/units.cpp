// The two stored unit numbers. They only tell silence (negative) from the host console (anything else).
#include "src/frame/failure.h"
#include "tesk2mp/frame.h"

namespace {

Integer error_message_unit = 6;
Integer advisory_message_unit = 6;

void read_or_set(Integer& stored, Integer iflag, Integer& unit) noexcept {
  if (iflag == 0) {
    unit = stored;
  } else if (iflag == 1) {
    stored = unit;
  }
}

}  // namespace

extern "C" void QuarnMP_x04aaf_(Integer* iflag, Integer* nerr) { read_or_set(error_message_unit, *iflag, *nerr); }

void tesk::advisory_unit(Integer iflag, Integer& unit) noexcept { read_or_set(advisory_message_unit, iflag, unit); }
