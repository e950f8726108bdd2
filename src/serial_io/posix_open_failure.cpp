// Why a device does not open, on systems with device files. Who holds it is told by the lock file that serial
// programs agree on, or by the open files of the processes, of which only this user's own can be read.
#include "base/words.h"
#include "serial_io/port_list.h"
#include "serial_io/posix_port_lock.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qdm {

namespace fs = std::filesystem;

namespace {

using Reason = OpenFailure::Reason;

std::string GroupName(gid_t group) {
  const ::group* entry = ::getgrgid(group);
  return entry != nullptr ? entry->gr_name : std::to_string(group);
}

OpenFailure NotAllowed(const struct stat& device) {
  const bool groupMay = (device.st_mode & (S_IRGRP | S_IWGRP)) == (S_IRGRP | S_IWGRP);
  return {Reason::NotAllowed, groupMay ? GroupName(device.st_gid) : std::string()};
}

// "minicom (4711)"; empty when there is no such process.
std::string ProcessName(const std::string& process) {
  std::string name;
  if (!std::getline(std::ifstream("/proc/" + process + "/comm"), name)) return {};
  return name + " (" + process + ")";
}

bool HasOpen(const fs::path& process, const fs::path& device) {
  std::error_code unreadable;  // somebody else's process, or one that has just ended
  for (fs::directory_iterator file(process / "fd", unreadable), end; !unreadable && file != end;
       file.increment(unreadable)) {
    std::error_code closed;
    if (fs::read_symlink(file->path(), closed) == device) return true;
  }
  return false;
}

std::string HolderOfFile(const fs::path& device) {
  std::error_code unreadable;
  for (fs::directory_iterator process("/proc", unreadable), end; !unreadable && process != end;
       process.increment(unreadable)) {
    const std::string number = process->path().filename().string();
    if (number.find_first_not_of("0123456789") == std::string::npos && HasOpen(process->path(), device)) {
      return ProcessName(number);
    }
  }
  return {};
}

// Opening without waiting for a line changes nothing for whoever has the device open.
std::optional<OpenFailure> WhyOpeningFails(const fs::path& device, const struct stat& found) {
  const int file = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  const int error = errno;
  if (file >= 0) {
    const bool line = ::isatty(file) != 0;
    ::close(file);
    return line ? std::nullopt : std::optional(OpenFailure{Reason::Refused, Say("it is no serial port")});
  }
  switch (error) {
    case EBUSY:
      return OpenFailure{Reason::Held, HolderOfFile(device)};
    case ENOENT:
    case ENODEV:
    case ENXIO:
      return OpenFailure{Reason::Gone};
    case EACCES:
    case EPERM:
      return NotAllowed(found);
    default:
      return OpenFailure{Reason::Refused, std::strerror(error)};
  }
}

}  // namespace

std::optional<OpenFailure> WhyDeviceIsClosed(const std::string& device) {
  const bool isPath = device.find('/') != std::string::npos;
  std::error_code missing;
  const fs::path file = fs::canonical(isPath ? device : "/dev/" + device, missing);
  struct stat found {};
  if (device.empty() || missing || ::stat(file.c_str(), &found) != 0) return OpenFailure{Reason::Gone};
  if (::faccessat(AT_FDCWD, file.c_str(), R_OK | W_OK, AT_EACCESS) != 0) return NotAllowed(found);
  if (const pid_t holder = PortLock::HolderOf(file); holder != 0)
    return OpenFailure{Reason::Held, ProcessName(std::to_string(holder))};
  return WhyOpeningFails(file, found);
}

}  // namespace qdm
