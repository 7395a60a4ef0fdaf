#include "cli/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "cli/scratch_file.h"

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

}  // namespace

ProcessResult run_process(const std::vector<std::string>& arguments, const std::string& input) {
  ScratchFile script;
  const ScratchFile complaints;
  script.fill(input);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, script.descriptor(), 0);
  posix_spawn_file_actions_addopen(&files, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&files, complaints.descriptor(), 2);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t defaults;
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGPIPE);  // ignored here, and an ignored signal would stay ignored there
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) {
    pointers.push_back(const_cast<char*>(argument.c_str()));
  }
  pointers.push_back(nullptr);

  ProcessResult result;
  pid_t child = 0;
  result.error = posix_spawnp(&child, pointers[0], &files, &attributes, pointers.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  if (result.error != 0) {
    return result;
  }
  result.started = true;
  int status = 0;
  while (waitpid(child, &status, 0) == -1 && errno == EINTR) {
  }
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.complaint = last_line(complaints.contents());
  return result;
}

}  // namespace cli
