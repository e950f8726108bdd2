// The lock that everybody holds who changes a library, from reading it to renaming: Projectors.LCK beside it.
#pragma once

#include "base/file_lock.h"
#include "projectors/library_paths.h"

#include <chrono>
#include <functional>
#include <string>

namespace qdm {

// How long a library's troubles are waited for, and how.
struct LibraryPatience {
  using Milliseconds = std::chrono::milliseconds;

  // Lets that time pass. Whoever has a window keeps it alive meanwhile.
  std::function<void(Milliseconds)> Pause;
  // Told while another program holds the lock, with who that is and how long it has been waited for; false
  // gives up.
  std::function<bool(const std::string& owner, Milliseconds waited)> KeepWaiting;

  // Sleeps, and gives up the lock after 10 s.
  LibraryPatience();
};

class LibraryLock {
 public:
  // FileError "in use by ..." when the wait was given up, or when no lock can be made there.
  explicit LibraryLock(const ProjectorFiles& paths, const LibraryPatience& patience = {});

 private:
  FileLock lock_;
};

}  // namespace qdm
