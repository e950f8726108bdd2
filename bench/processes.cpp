#include "processes.h"

#include <csignal>
#include <cstdlib>
#include <iostream>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qdm::bench {
namespace {

[[noreturn]] void Fail(const std::string& program) {
  std::cerr << program << " failed\n";
  std::exit(2);
}

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

}  // namespace

pid_t Start(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
    posix_spawn_file_actions_addopen(&quiet, stream, "/dev/null", O_WRONLY, 0);
  pid_t process = 0;
  if (posix_spawn(&process, arguments.front(), &quiet, nullptr, arguments.data(), environ) != 0) {
    Fail(command.front());
  }
  posix_spawn_file_actions_destroy(&quiet);
  return process;
}

void End(pid_t process) {
  ::kill(process, SIGKILL);
  ::waitpid(process, nullptr, 0);
}

double ProcessorTimeOf(const std::vector<std::string>& command) {
  const pid_t process = Start(command);
  int status = 0;
  rusage used{};
  ::wait4(process, &status, 0, &used);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) Fail(command.front());
  return Seconds(used.ru_utime) + Seconds(used.ru_stime);
}

}  // namespace qdm::bench
