// From a download that has ended to its entry in the work log: the one place where the editor and `qdm` say
// what happened.
#pragma once

#include "panels/panel_image.h"
#include "panels/programming.h"
#include "work_log/work_log.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace qdm {

struct PanelConfiguration;

// A panel to which a configuration was sent, with success or without.
struct FinishedDownload {
  std::filesystem::path File{};  // of the configuration; empty for one that was never saved
  Identification Panel{};
  std::string Port{};
  std::string Device{};
  std::string Settings{};  // where it answered
  ProgrammingResult Result{};
  bool Interrupted = false;  // by the user
  std::chrono::system_clock::time_point Began{};
  std::chrono::system_clock::time_point Ended{};
};

WorkLogEntry EntryOf(const PanelConfiguration& configuration, const PanelImage& image,
                     const FinishedDownload& download);

// Writes the entry. What the user must be told about the log, if anything: a log that cannot be written is
// no reason to stop.
std::vector<Message> Record(WorkLog& log, const PanelConfiguration& configuration, const PanelImage& image,
                            const FinishedDownload& download);

// The line settings at which a panel with that configuration listens after a restart: its projector's.
std::string ProjectorLineOf(const PanelConfiguration& configuration);

}  // namespace qdm
