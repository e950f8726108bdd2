#include "base/file_access.h"
#include "command_line/run_qdm.h"
#include "projectors/data_folder.h"
#include "serial_io/event_loop_waiting.h"
#include "serial_io/port_list.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#include <csignal>
#endif

namespace {

// In UTF-8, without the program's name. Elsewhere than on Windows a name is the bytes that the user gave.
std::vector<std::string> Arguments(int argc, char** argv) {
#ifdef _WIN32
  static_cast<void>(argc);
  static_cast<void>(argv);
  std::vector<std::string> arguments;
  for (const QString& argument : QCoreApplication::arguments()) arguments.push_back(argument.toStdString());
  arguments.erase(arguments.begin());
  return arguments;
#else
  return {argv + std::min(argc, 1), argv + argc};
#endif
}

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

int main(int argc, char** argv) {
  PrepareStreams();
  const QCoreApplication application(argc, argv);
  const std::unique_ptr<qdm::SerialPorts> ports = qdm::MakeSystemPorts();
  qdm::EventLoopWaiting time;
  std::stop_source stop;
  qdm::CommandContext context{
      .In = std::cin,
      .Out = std::cout,
      .Err = std::cerr,
      .ErrIsTerminal = ErrorStreamIsTerminal(),
      .DataVariable = qdm::DataFolderVariable(),
      .ProgramFolder = qdm::PathFromUtf8(QCoreApplication::applicationDirPath().toStdString()),
      .UserFolder = qdm::UserDataFolder(),
      .Ports = *ports,
      .PortAt = qdm::PortAt,
      .Time = time,
      .Stop = stop,
  };
  return qdm::RunQdm(Arguments(argc, argv), context);
}
