#include "command_line/program_start.h"

#include "base/file_access.h"
#include "projectors/data_folder.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>
#else
#include <unistd.h>
#include <csignal>
#endif

namespace qdm {
namespace {

bool ErrorStreamIsTerminal() {
#ifdef _WIN32
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(STDERR_FILENO) != 0;
#endif
}

void PrepareStreams() {
  std::ios::sync_with_stdio(false);
#ifdef _WIN32
  SetConsoleOutputCP(CP_UTF8);
  // What goes to a pipe is what would go to a file, line ends included.
  for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
#else
  // A reader that went away is a failed write, never an end in the middle of a download.
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

}  // namespace

#ifdef _WIN32

std::vector<std::string> ArgumentsOf(int, char**) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(PathToUtf8(wide[i]));
  LocalFree(wide);
  return arguments;
}

#else

std::vector<std::string> ArgumentsOf(int argc, char** argv) {
  return {argv + std::min(argc, 1), argv + argc};
}

#endif

CommandContext StandardContext(const std::filesystem::path& programFolder) {
  PrepareStreams();
  return {.In = std::cin,
          .Out = std::cout,
          .Err = std::cerr,
          .ErrIsTerminal = ErrorStreamIsTerminal(),
          .DataVariable = DataFolderVariable(),
          .ProgramFolder = programFolder,
          .UserFolder = UserDataFolder()};
}

}  // namespace qdm
