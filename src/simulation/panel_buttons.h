// The other side of a simulated panel: its projector port, and fingers on its buttons. A button sends the
// command that the panel's memory holds for it, with the delays of the memory.
//
// It assumes of the hardware that the delay between commands begins when the last byte of one is out, and
// that a volume button first changes the level by one step and then sends it.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"
#include "panels/panel_image.h"
#include "projectors/projector_definition.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace qdm {

class PanelButtons {
 public:
  // Nothing when the memory holds no strings.
  static std::optional<PanelButtons> Of(const PanelImage& memory, int controllerType);

  // Of the projector's line, as the memory has it.
  std::string LineSettings() const;

  // Commands that the memory has, in the order of the slots.
  std::vector<Slot> Available() const;

  // Sends the commands of these slots to an open port, a delay between each two. A button without a command
  // does nothing.
  void Press(const std::vector<Slot>& slots, SerialPort& port, Waiting& time, const std::stop_token& stop);

 private:
  explicit PanelButtons(const ProjectorDefinition& programmed);
  bool PressOne(Slot slot, SerialPort& port, Waiting& time, const std::stop_token& stop);

  ProjectorDefinition programmed_;
  std::int16_t level_ = 0;
};

}  // namespace qdm
