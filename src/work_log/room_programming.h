// One room of a walk through many: waits until the room's panel is plugged in, programs it, writes it down.
#pragma once

#include "config/panel_configuration.h"
#include "panels/programming.h"
#include "work_log/work_log.h"

#include <cstddef>
#include <filesystem>
#include <stop_token>
#include <string>

namespace qdm {

struct RoomToProgram {
  std::filesystem::path File;
  PanelConfiguration Configuration;
};

class RoomObserver : public ProgrammingObserver {
 public:
  // Nobody of the room's type, or more than one panel of it, has answered so far; the search goes on.
  virtual void StillWaiting(std::size_t panels) = 0;
  // This one is going to be programmed.
  virtual void Found(const Identification& panel, const std::string& port) = 0;
};

// True when the panel was programmed and restarted. ImageError, before anything is sent, for a configuration
// that cannot become an image. A stop request ends the wait, or the programming as it always does.
bool ProgramRoom(const RoomToProgram& room, SerialPorts& ports, WorkLog& log, Waiting& time,
                 const std::stop_token& stop, RoomObserver& observer);

}  // namespace qdm
