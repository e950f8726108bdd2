#include "serial_io/posix_port_lock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qdm {

namespace fs = std::filesystem;

namespace {

constexpr std::array kFolders = {"/var/lock", "/etc/locks", "/var/spool/locks",  "/var/spool/uucp",
                                 "/tmp",      "/var/tmp",   "/var/lock/lockdev", "/run/lock"};

std::string NameFor(const fs::path& device) {
  constexpr std::string_view kDevices = "/dev/";
  std::string name = device.string();
  if (name.starts_with(kDevices)) name.erase(0, kDevices.size());
  std::replace(name.begin(), name.end(), '/', '_');
  return "LCK.." + name;
}

std::string ProgramOf(const std::string& process) {
  std::error_code unknown;  // somebody else's
  return fs::read_symlink("/proc/" + process + "/exe", unknown).filename().string();
}

// 0 when it has ended, or another program bears its number now.
pid_t LivingHolder(const fs::path& lock) {
  std::ifstream file(lock);
  pid_t process = 0;
  if (!(file >> process) || process <= 0) return 0;
  if (::kill(process, 0) != 0 && errno != EPERM) return 0;
  const std::string now = ProgramOf(std::to_string(process));
  std::string program;
  const bool named = std::getline(file >> std::ws, program) && !now.empty();
  return named && now != program ? 0 : process;
}

bool IsNamed(const fs::path& name, int file) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(file, &opened) == 0 && ::stat(name.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

// Whoever removes one holds it first, so that nobody removes what another has made meanwhile.
void RemoveAbandoned(const fs::path& lock) {
  const int file = ::open(lock.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
  if (file < 0) return;
  if (::flock(file, LOCK_EX | LOCK_NB) == 0 && IsNamed(lock, file) && LivingHolder(lock) == 0) {
    ::unlink(lock.c_str());
  }
  ::close(file);
}

int Make(const fs::path& lock) {
  const int file = ::open(lock.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0) return -1;
  const std::string process = std::to_string(::getpid());
  std::array<char, 256> host{};
  ::gethostname(host.data(), host.size() - 1);
  const std::string content = process + "\n" + ProgramOf(process) + "\n" + host.data() + "\n";
  const bool written = ::write(file, content.data(), content.size()) == static_cast<ssize_t>(content.size());
  if (::flock(file, LOCK_EX | LOCK_NB) == 0 && written) return file;
  ::unlink(lock.c_str());
  ::close(file);
  return -1;
}

}  // namespace

pid_t PortLock::HolderOf(const fs::path& device) {
  for (const char* folder : kFolders) {
    if (const pid_t holder = LivingHolder(fs::path(folder) / NameFor(device)); holder != 0) return holder;
  }
  return 0;
}

bool PortLock::Hold(const fs::path& device) {
  Release();
  const auto folder = std::find_if(kFolders.begin(), kFolders.end(),
                                   [](const char* path) { return ::access(path, R_OK | W_OK) == 0; });
  if (folder == kFolders.end()) return true;
  name_ = fs::path(*folder) / NameFor(device);
  RemoveAbandoned(name_);
  file_ = Make(name_);
  return file_ >= 0;
}

void PortLock::Release() {
  if (file_ < 0) return;
  if (IsNamed(name_, file_)) ::unlink(name_.c_str());
  ::close(file_);
  file_ = -1;
}

}  // namespace qdm
