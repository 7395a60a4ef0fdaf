// Example of the routine reference: failures in the hands of the host.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

//! [failure_handler]
void tell(const QuarnFailure* failure, void* context) {
  ++*static_cast<int*>(context);
  std::cout << failure->routine << " " << failure->number << " " << failure->label << "\n" << failure->message << "\n";
}

void failure_handler() {
  int failures = 0;
  const QuarnFailureHandler handler = {tell, &failures};
  const QuarnFailureHandler* former = QuarnMPX_failure_handler(&handler);
  Integer n = 1, ifail = 0;  // 0 would end the process if nobody handled failures
  QuarnFloat x[1], work[1];
  QuarnMP_c06faf_(x, &n, work, &ifail);
  std::cout << "IFAIL " << ifail << ", failures told: " << failures << "\n";
  QuarnMPX_failure_handler(former);
}
//! [failure_handler]

}  // namespace

int main() { return run_examples({{"failure_handler", failure_handler}}); }
