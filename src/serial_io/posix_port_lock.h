// The lock file by which serial programs agree on who has a device ("LCK..ttyUSB0" in /var/lock or one of its
// kin): it begins with the number of the process that made it. Ours has in the next lines what Qt's programs
// compare, and stays locked itself, so that a file that a dead program left is told from one that is in use.
// It need not outlive a power cut and is never flushed: a search opens a port fifteen times.
#pragma once

#include <filesystem>

#include <sys/types.h>

namespace qdm {

class PortLock {
 public:
  // Who holds the device by such a file; 0 when nobody does.
  static pid_t HolderOf(const std::filesystem::path& device);

  PortLock() = default;
  ~PortLock() { Release(); }
  PortLock(const PortLock&) = delete;
  PortLock& operator=(const PortLock&) = delete;

  // False when somebody holds the device, another port of this process too. A system that has no folder for
  // lock files has no locks.
  bool Hold(const std::filesystem::path& device);
  void Release();

 private:
  std::filesystem::path name_;
  int file_ = -1;
};

}  // namespace qdm
