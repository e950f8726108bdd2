#include "command_line/hand_over.h"

#include "base/file_access.h"

#include <string>
#include <system_error>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#include <cerrno>
#endif

namespace qdm {
namespace fs = std::filesystem;

namespace {

// In the words of every system; Windows' own are in the code page of the country.
CommandError NotStarted(const fs::path& program, const std::error_code& error) {
  return CommandError(kUnusable, PathToUtf8(program),
                      "cannot be started: " + error.default_error_condition().message());
}

}  // namespace

#ifdef _WIN32

namespace {

HANDLE theOther = nullptr;  // the program that was handed over to

// Both are told of the console's events. The other one decides; this one stays until it has ended.
BOOL WINAPI LeaveToTheOther(DWORD) {
  WaitForSingleObject(theOther, INFINITE);
  return TRUE;
}

// Ends with this program, however that ends.
void TieToThisProgram(HANDLE process) {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof(limits));
  AssignProcessToJobObject(job, process);
}

}  // namespace

fs::path ProgramFile(const char*) {
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    if (length < name.size()) return name.substr(0, length);
    name.resize(name.size() * 2);
  }
}

int HandOver(const fs::path& programFolder, char**) {
  const fs::path program = programFolder / "qdm-line.exe";
  std::wstring line = GetCommandLineW();
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  start.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION started{};
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr,
                     &start, &started) == 0) {
    throw NotStarted(program, {static_cast<int>(GetLastError()), std::system_category()});
  }
  theOther = started.hProcess;
  SetConsoleCtrlHandler(LeaveToTheOther, TRUE);
  TieToThisProgram(started.hProcess);
  ResumeThread(started.hThread);
  CloseHandle(started.hThread);
  WaitForSingleObject(started.hProcess, INFINITE);
  DWORD status = kUnusable;
  GetExitCodeProcess(started.hProcess, &status);
  return static_cast<int>(status);
}

#else

fs::path ProgramFile(const char* called) {
  std::error_code error;
  const fs::path file = fs::read_symlink("/proc/self/exe", error);
  // Systems that have no such file: what was typed, where that is a path.
  return error ? fs::weakly_canonical(called, error) : file;
}

int HandOver(const fs::path& programFolder, char** arguments) {
  const fs::path program = programFolder / "qdm-line";
  ::execv(program.c_str(), arguments);
  throw NotStarted(program, {errno, std::generic_category()});
}

#endif

PortCommands HandedOver(const std::function<int()>& handOver) {
  const auto instead = [handOver](const auto&) { return handOver(); };
  return {.Find = instead,
          .Download = instead,
          .Sheet = instead,
          .Simulate = instead,
          .Projector = instead,
          .Probe = instead};
}

}  // namespace qdm
