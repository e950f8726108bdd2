// What a command gets from outside: streams and folders. The program gives it the real ones, tests their own.
// And how a command fails: with a CommandError (or a FileError, a JsonError, ...), which RunQdm
// turns into one line on the error stream and the exit status.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>

namespace qdm {

enum ExitStatus : int {
  kDone = 0,
  kRefused = 1,   // a rule, a panel, a reply said no
  kUnusable = 2,  // the command line, or a file that cannot be read, written or understood
};

struct CommandContext {
  std::istream& In;
  std::ostream& Out;  // results
  std::ostream& Err;  // everything else
  bool ErrIsTerminal = false;

  std::optional<std::filesystem::path> DataVariable;  // QDM_DATA
  std::filesystem::path ProgramFolder;
  std::filesystem::path UserFolder;
};

// `what()` is the line without "qdm: ": what failed (a file, as the user named it) and why.
class CommandError : public std::runtime_error {
 public:
  CommandError(ExitStatus status, const std::string& what, const std::string& why)
      : std::runtime_error(what + ": " + why), status_(status) {}

  ExitStatus Status() const { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace qdm
