#include "work_log/known_panel.h"

#include "base/file_access.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace qdm {
namespace {

constexpr std::size_t kRecent = 2000;  // older ones tell little
constexpr std::chrono::milliseconds kBriefly{200};

}  // namespace

int PortNumberOf(std::string_view port) {
  constexpr std::string_view kName = "COM";
  int number = 0;
  if (port.starts_with(kName)) std::from_chars(port.data() + kName.size(), port.data() + port.size(), number);
  return number >= 1 && number <= kPortSlots ? number : 0;
}

std::vector<WorkLogEntry> RecentEntries(WorkLog& log) {
  try {
    return log.Entries(kRecent, kBriefly);
  } catch (const FileError&) {
    return {};
  }
}

std::optional<KnownPanel> KnownPanelFor(std::span<const WorkLogEntry> entries, int controllerType,
                                        const std::string& room,
                                        const std::function<bool(const std::string& port)>& present) {
  const WorkLogEntry* best = nullptr;
  for (const WorkLogEntry& entry : entries) {
    if (!entry.Panel.IsOfType(controllerType) || entry.Listens.empty() || !present(entry.Port)) continue;
    if (best == nullptr) best = &entry;
    if (room.empty() || entry.File != room) continue;
    best = &entry;
    break;
  }
  if (best == nullptr) return std::nullopt;
  return KnownPanel{best->Port, best->Listens, best->Began};
}

bool AskKnownPanel(SearchSlot& slot, std::string_view settings, int controllerType, Waiting& time) {
  const auto* const setting =
      std::find_if(LineSettingsTable.begin(), LineSettingsTable.end(),
                   [settings](const LineSetting& candidate) { return candidate.Settings == settings; });
  if (setting == LineSettingsTable.end() || !AskForIdentification(*slot.Port, settings)) return false;
  // The whole time-out: a reply counts only if nothing follows it.
  WaitUntil(time, kReplyTimeout, [&slot] { return !slot.Port->IsOpen(); });
  const std::optional<Identification> panel = AnswerWaiting(*slot.Port);
  slot.Port->Close();
  if (!panel || !panel->IsOfType(controllerType)) return false;
  slot.State = SlotState::Asked;
  slot.Setting = setting;
  slot.Panel = panel;
  slot.Wanted = true;
  return true;
}

}  // namespace qdm
