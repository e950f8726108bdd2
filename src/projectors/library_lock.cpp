#include "projectors/library_lock.h"

#include "base/file_access.h"
#include "base/words.h"

#include <optional>
#include <thread>
#include <utility>

namespace qdm {
namespace {

constexpr LibraryPatience::Milliseconds kBetweenLooks{20};
constexpr LibraryPatience::Milliseconds kLongestWait{10'000};

FileLock Acquired(const ProjectorFiles& paths, const LibraryPatience& patience) {
  LibraryPatience::Milliseconds waited{0};
  for (;;) {
    if (std::optional<FileLock> lock = FileLock::Try(paths.Lock)) return std::move(*lock);
    const std::string owner = FileLock::OwnerOf(paths.Lock);
    if (!patience.KeepWaiting(owner, waited)) {
      throw InUseError(paths.Library, "write",
                       owner.empty() ? Say("in use by another program") : Say("in use by %1", {owner}));
    }
    patience.Pause(kBetweenLooks);
    waited += kBetweenLooks;
  }
}

}  // namespace

LibraryPatience::LibraryPatience()
    : Pause([](Milliseconds time) { std::this_thread::sleep_for(time); }),
      KeepWaiting([](const std::string&, Milliseconds waited) { return waited < kLongestWait; }) {}

LibraryLock::LibraryLock(const ProjectorFiles& paths, const LibraryPatience& patience)
    : lock_([&] {
        try {
          return Acquired(paths, patience);
        } catch (const InUseError&) {
          throw;
        } catch (const FileError& error) {
          // The user knows the library, not its lock.
          throw FileError(paths.Library, "write", error.Reason(), error.Code());
        }
      }()) {}

}  // namespace qdm
