#include "simulation/panel_buttons.h"

#include "panels/image_reading.h"
#include "projector_bench/bench_line.h"
#include "projectors/projector_volume.h"

#include <algorithm>
#include <chrono>
#include <string>

namespace qdm {

PanelButtons::PanelButtons(const ProjectorDefinition& programmed)
    : programmed_(programmed), level_(FirstTrialLevel(VolumeFormatOf(programmed))) {}

std::optional<PanelButtons> PanelButtons::Of(const PanelImage& memory, int controllerType) {
  const auto programmed = ProjectorInImage(memory, controllerType);
  if (!programmed) return std::nullopt;
  return PanelButtons(*programmed);
}

std::string PanelButtons::LineSettings() const { return BenchLineSettings(programmed_); }

std::vector<Slot> PanelButtons::Available() const {
  std::vector<Slot> slots;
  for (const SlotFacts& slot : kSlots) {
    if (slot.Role == SlotRole::Command && programmed_.Available[slot.Place] != kFlagClear)
      slots.push_back(slot.Place);
  }
  return slots;
}

bool PanelButtons::PressOne(Slot slot, SerialPort& port, Waiting& time, const std::stop_token& stop) {
  const SerialString& string = programmed_.Strings[slot];
  if (string.BytesInUse() == 0) return false;
  const VolumeFormat format = VolumeFormatOf(programmed_);
  if (slot == kVolumeUpSlot) level_ = LevelUp(format, level_);
  if (slot == kVolumeDownSlot) level_ = LevelDown(format, level_);
  StringTrial trial = TrialOf(programmed_, string);
  if (trial.Level) trial.Level = LevelBytes(format, level_);
  SendString(port, trial, time, stop);
  return true;
}

void PanelButtons::Press(const std::vector<Slot>& slots, SerialPort& port, Waiting& time,
                         const std::stop_token& stop) {
  for (const Slot slot : slots) {
    if (!PressOne(slot, port, time, stop)) continue;
    WaitUntil(time, std::chrono::milliseconds(programmed_.InterCommandDelay),
              [&] { return stop.stop_requested(); });
  }
}

}  // namespace qdm
