#include "cli/system/process.h"

#include <fcntl.h>

#include <cerrno>
#include <csignal>

#include "cli/system/scratch_file.h"
#if defined(_WIN32)
#include <io.h>
#include <process.h>
#else
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace cli {

namespace {

std::string last_line(const std::string& text) {
  const std::size_t end = text.find_last_not_of(" \r\n");
  if (end == std::string::npos) {
    return "nothing";
  }
  const std::size_t newline = text.rfind('\n', end);
  const std::size_t start = text.find_first_not_of(' ', newline == std::string::npos ? 0 : newline + 1);
  return text.substr(start, end + 1 - start);
}

#if defined(_WIN32)

// One of this process's standard streams is another file while this lives: a child inherits what it finds.
class Lent {
 public:
  Lent(int stream, int file) : stream_(stream), saved_(dup(stream)) { dup2(file, stream); }
  ~Lent() {
    dup2(saved_, stream_);
    close(saved_);
  }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;

 private:
  int stream_;
  int saved_;
};

void spawn_and_wait(const char* const* arguments, int input, int complaints, ProcessResult& result) {
  const ScratchFile nowhere;
  const Lent standard_input(0, input);
  const Lent standard_output(1, nowhere.descriptor());
  const Lent standard_error(2, complaints);
  const intptr_t status = _spawnvp(_P_WAIT, arguments[0], arguments);
  result.started = status != -1;
  result.error = result.started ? 0 : errno;
  result.status = int(status);
}

#else

void spawn_and_wait(const char* const* arguments, int input, int complaints, ProcessResult& result) {
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, input, 0);
  posix_spawn_file_actions_addopen(&files, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&files, complaints, 2);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t defaults;
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGPIPE);  // ignored here, and an ignored signal would stay ignored there
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  pid_t child = 0;
  result.error = posix_spawnp(&child, arguments[0], &files, &attributes, const_cast<char* const*>(arguments), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  if (result.error != 0) {
    return;
  }
  result.started = true;
  int status = 0;
  while (waitpid(child, &status, 0) == -1 && errno == EINTR) {
  }
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

#endif

}  // namespace

ProcessResult run_process(const std::vector<std::string>& arguments, const std::string& input) {
  ScratchFile script;
  const ScratchFile complaints;
  script.fill(input);
  std::vector<const char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) {
    pointers.push_back(argument.c_str());
  }
  pointers.push_back(nullptr);

  ProcessResult result;
  spawn_and_wait(pointers.data(), script.descriptor(), complaints.descriptor(), result);
  if (result.started) {
    result.complaint = last_line(complaints.contents());
  }
  return result;
}

}  // namespace cli
