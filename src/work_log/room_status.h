// How far a room is: may its configuration be sent, when was one sent last, and is that still the one in the
// file? `qdm status` and the window "Rooms" show the same.
#pragma once

#include "base/message.h"
#include "config/panel_configuration.h"
#include "work_log/work_log_entry.h"

#include <chrono>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace qdm {

enum class RoomState {
  Current,    // this image was the last that was sent, with success
  Changed,    // another image was
  Never,      // nothing was sent
  Unfinished  // the last attempt failed
};
std::string_view StateText(RoomState state);  // "current", ...

struct RoomStatus {
  std::optional<Message> Check;                      // the refusal of the check before downloads
  std::optional<std::chrono::sys_seconds> LastSent;  // with success
  RoomState State = RoomState::Never;

  bool IsDone() const { return !Check && State == RoomState::Current; }
};

// What the log says of each room, found by RoomOfFile. Refers to `entries`, which come newest first.
class RoomHistories {
 public:
  explicit RoomHistories(std::span<const WorkLogEntry> entries);

  const WorkLogEntry* LastAttempt(const std::string& room) const;
  const WorkLogEntry* LastSuccess(const std::string& room) const;

 private:
  struct Newest {
    const WorkLogEntry* Attempt = nullptr;
    const WorkLogEntry* Success = nullptr;
  };
  std::unordered_map<std::string_view, Newest> rooms_;
};

// A configuration that cannot become an image is none that was sent.
RoomStatus StatusOf(PanelConfiguration configuration, const std::string& room,
                    const RoomHistories& histories);

}  // namespace qdm
