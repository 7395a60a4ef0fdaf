// quarn: the routines of Tesk MP at the command line.
#include <cstdio>
#include <new>

#include "cli/commands/command_line.h"
#include "cli/commands/failure.h"
#include "cli/io/output.h"
#include "cli/system/interrupt.h"
#include "cli/system/progress.h"
#include "quarn/quarnthread.h"

namespace cli {

namespace {

void run(int argc, char** argv) {
  prepare_standard_streams();
  watch_interrupts();
  Session session;
  const Program program(session);
  const Command* command = read_command_line(program, argc, argv);
  if (command == nullptr) {
    return;
  }
  QuarnSetDigits(int(session.digits));
  if (!session.quiet) {
    enable_progress();
  }
  command->work();
}

}  // namespace

}  // namespace cli

int main(int argc, char** argv) {
  try {
    cli::run(argc, argv);
    return int(cli::ExitStatus::success);
  } catch (const cli::Failure& failure) {
    std::fputs(failure.what(), stderr);
    return int(failure.status());
  } catch (const QuarnInterrupted&) {
    std::fputs("quarn: interrupted\n", stderr);
    return cli::kInterruptedStatus;
  } catch (const std::bad_alloc&) {
    std::fputs("quarn: not enough memory\n", stderr);
    return int(cli::ExitStatus::library);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quarn: %s\n", error.what());
    return int(cli::ExitStatus::library);
  }
}
