// A host's own failure handler: told everything, instead of the console.
#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "src/frame/classic.h"
#include "src/frame/failure.h"
#include "src/frame/report.h"
#include "src/kernels/options.h"
#include "support/console.h"

namespace {

/// Writes down what it is told while it lives.
class Listener {
 public:
  Listener() : former_(QuarnMPX_failure_handler(&handler_)) {}
  ~Listener() { QuarnMPX_failure_handler(former_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  std::vector<std::string> told;

 private:
  static void listen(const QuarnFailure* failure, void* self) {
    std::string line = std::string(failure->routine) + " " + std::to_string(failure->number) + " " +
                       std::to_string(failure->label) + " [" + failure->message + "]";
    for (int i = 0; i < failure->count; ++i) {
      const QFArgument& value = failure->values[i];
      line += " " + (value.type == QFArgument::Type::integer ? std::to_string(value.integer)
                     : value.type == QFArgument::Type::real  ? value.real->to_string()
                                                             : std::string(value.text));
    }
    static_cast<Listener*>(self)->told.push_back(line);
  }

  QuarnFailureHandler handler_{listen, this};
  const QuarnFailureHandler* former_;
};

void failing_core(const QuarnFloat& tolerance, char* message_buffer, Integer* ifail, int /*length*/) {
  tesk::Report report("F11BDF", message_buffer, ifail);
  report.fail(2, 99998, " ** TOL = %12.4e of %s, N =%4ld.", tolerance, "X", 7);
}

const std::string kTold = "F11BDF 2 99998 [ ** TOL =   2.5000e-01 of X, N =   7.] 0.25 X 7";

}  // namespace

TEST_CASE("a handler gets a failure with its values, whatever IFAIL asks for") {
  for (const Integer entry : {0, -1, 1, -13, 10, 11}) {
    CAPTURE(entry);
    const support::ConsoleCapture console;
    Listener listener;
    Integer ifail = entry;
    tesk::call_core("F11BDF", &ifail, failing_core, QuarnFloat("0.25"));
    CHECK(ifail == 2);
    CHECK(listener.told == std::vector<std::string>{kTold});
    CHECK(console.text().empty());
  }
}

TEST_CASE("a handler gets the wrong arguments of kernels, and control comes back") {
  Listener listener;
  tesk::report_bad_parameter("F06PAF/DGEMV ", 6, 13);
  CHECK(listener.told ==
        std::vector<std::string>{
            "F06PAF/DGEMV  6 99999 [ ** On entry to F06PAF/DGEMV  parameter number  6 had an illegal value] 6"});
}

TEST_CASE("handlers nest, and the usual protocol comes back after the last one") {
  {
    Listener outer;
    Integer ifail = 0;
    {
      Listener inner;
      tesk::call_core("F11BDF", &ifail, failing_core, QuarnFloat("0.25"));
      CHECK(inner.told.size() == 1);
    }
    CHECK(outer.told.empty());
    tesk::call_core("F11BDF", &ifail, failing_core, QuarnFloat("0.25"));
    CHECK(outer.told.size() == 1);
  }
  const support::ConsoleCapture console;
  Integer ifail = -13;
  tesk::call_core("F11BDF", &ifail, failing_core, QuarnFloat("0.25"));
  CHECK(console.text() == " ** TOL =   2.5000e-01 of X, N =   7.");
}
