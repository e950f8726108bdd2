// One download as the work log keeps it: what was sent to which panel, where, when and with what result. The
// 3,161 bytes of the configuration are kept with it and read on their own (work_log.h).
#pragma once

#include "base/sha256.h"
#include "panels/identification.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace qdm {

// Stored on disk: never renumber.
enum class DownloadOutcome : std::int64_t {
  Done = 0,
  NotRestarted = 1,  // programmed, but the panel did not acknowledge its restart
  Failed = 2,        // some of the records
  NotConnected = 3,  // the panel that the search had found did not answer
  Interrupted = 4    // by the user
};
// "done", "not restarted", ...; what a later program stored and this one does not know is "unknown".
std::string_view OutcomeText(DownloadOutcome outcome);

struct WorkLogEntry {
  std::int64_t Number = 0;  // in the order in which they were written; given by the log
  std::chrono::sys_seconds Began{};
  std::string Title;  // of the configuration: its file's name without the ending
  std::string File;   // the room: RoomOfFile; empty for a configuration that was never saved
  std::int64_t ControllerType = 0;
  Identification Panel;
  std::string Port;      // "COM3", or the device's path where that was given
  std::string Device;    // "ttyUSB0"; empty where the port has no other name
  std::string Settings;  // where it answered
  std::string Listens;   // where it is to be asked next: a restarted panel listens as it was programmed
  std::int64_t Records = 0;
  std::int64_t Retries = 0;
  std::chrono::milliseconds Duration{};
  DownloadOutcome Outcome = DownloadOutcome::Done;
  Sha256Digest Image{};

  bool Succeeded() const { return Outcome == DownloadOutcome::Done; }
};

// "2026-11-21T16:50:46Z"
std::string Iso8601(std::chrono::sys_seconds time);

}  // namespace qdm
