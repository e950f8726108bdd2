#include "work_log/room_status.h"

#include "base/words.h"
#include "config/configuration_rules.h"
#include "panels/panel_image.h"

namespace qdm {
namespace {

bool IsImageOf(const PanelConfiguration& configuration, const Sha256Digest& image) {
  try {
    return Sha256(BuildPanelImage(configuration)) == image;
  } catch (const ImageError&) {
    return false;
  }
}

}  // namespace

std::string_view StateText(RoomState state) {
  switch (state) {
    case RoomState::Current:
      return Marked("current");
    case RoomState::Changed:
      return Marked("changed");
    case RoomState::Never:
      return Marked("never");
    case RoomState::Unfinished:
      break;
  }
  return Marked("unfinished");
}

RoomHistories::RoomHistories(std::span<const WorkLogEntry> entries) {
  for (const WorkLogEntry& entry : entries) {
    if (entry.File.empty()) continue;
    Newest& newest = rooms_[entry.File];
    if (newest.Attempt == nullptr) newest.Attempt = &entry;
    if (newest.Success == nullptr && entry.Succeeded()) newest.Success = &entry;
  }
}

const WorkLogEntry* RoomHistories::LastAttempt(const std::string& room) const {
  const auto found = rooms_.find(room);
  return found == rooms_.end() ? nullptr : found->second.Attempt;
}

const WorkLogEntry* RoomHistories::LastSuccess(const std::string& room) const {
  const auto found = rooms_.find(room);
  return found == rooms_.end() ? nullptr : found->second.Success;
}

RoomStatus StatusOf(PanelConfiguration configuration, const std::string& room,
                    const RoomHistories& histories) {
  RoomStatus status;
  const WorkLogEntry* attempt = histories.LastAttempt(room);
  const WorkLogEntry* success = histories.LastSuccess(room);
  if (success != nullptr) status.LastSent = success->Began;
  // Before the check, which trims the record: names are not part of the image, but nothing may depend on it.
  const bool same = success != nullptr && IsImageOf(configuration, success->Image);
  status.State = attempt == nullptr      ? RoomState::Never
                 : !attempt->Succeeded() ? RoomState::Unfinished
                 : same                  ? RoomState::Current
                                         : RoomState::Changed;
  status.Check = CheckConfiguration(configuration);
  return status;
}

}  // namespace qdm
