#include "work_log/room_programming.h"

#include "work_log/download_record.h"
#include "work_log/known_panel.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace qdm {
namespace {

// Between two looks at ports of which none has a panel.
constexpr Microseconds kBetweenSearches = std::chrono::milliseconds(500);

struct FoundPanel {
  std::unique_ptr<SerialPort> Port;
  Identification Panel;
  std::string Settings;
  int Number = 0;          // of the port
  bool Answering = false;  // not restarted since it identified itself
};

class PanelWait {
 public:
  PanelWait(const RoomToProgram& room, SerialPorts& ports, Waiting& time, const std::stop_token& stop)
      : room_(room), type_(room.Configuration.ControllerType), ports_(ports), time_(time), stop_(stop) {}

  // Until exactly one panel of the type answers, or the stop.
  std::optional<FoundPanel> Wait(const std::vector<WorkLogEntry>& entries, RoomObserver& observer) {
    while (!stop_.stop_requested()) {
      if (std::optional<FoundPanel> known = AskKnown(entries)) return known;
      std::vector<SearchSlot> slots = AllSlots(ports_);
      SearchAllPorts(slots, type_, time_, stop_, {});
      RestartFoundPanels(slots, time_, stop_);
      const auto choosable = [](const SearchSlot& slot) { return slot.Choosable(); };
      const auto panels = static_cast<std::size_t>(std::count_if(slots.begin(), slots.end(), choosable));
      if (panels == 1 && !stop_.stop_requested()) {
        const auto slot = std::find_if(slots.begin(), slots.end(), choosable);
        return Taken(*slot, static_cast<int>(slot - slots.begin()) + 1, false);
      }
      observer.StillWaiting(panels);
      WaitUntil(time_, kBetweenSearches, [this] { return stop_.stop_requested(); });
    }
    return std::nullopt;
  }

 private:
  static FoundPanel Taken(SearchSlot& slot, int number, bool answering) {
    return {std::move(slot.Port), *slot.Panel, std::string(slot.Settings()), number, answering};
  }

  // Only where there is one port: a panel on another one might be the right one.
  std::optional<FoundPanel> AskKnown(const std::vector<WorkLogEntry>& entries) {
    int only = 0;
    for (int number = 1; number <= kPortSlots; ++number) {
      if (ports_.DeviceName(number).empty()) continue;
      if (only != 0) return std::nullopt;
      only = number;
    }
    const std::string name = "COM" + std::to_string(only);
    const auto known = KnownPanelFor(entries, type_, RoomOfFile(room_.File),
                                     [&name](const std::string& port) { return port == name; });
    if (only == 0 || !known) return std::nullopt;
    SearchSlot slot;
    slot.Port = ports_.Port(only);
    if (!AskKnownPanel(slot, known->Settings, type_, time_)) return std::nullopt;
    return Taken(slot, only, true);
  }

  const RoomToProgram& room_;
  int type_;
  SerialPorts& ports_;
  Waiting& time_;
  const std::stop_token& stop_;
};

}  // namespace

bool ProgramRoom(const RoomToProgram& room, SerialPorts& ports, WorkLog& log, Waiting& time,
                 const std::stop_token& stop, RoomObserver& observer) {
  const PanelImage image = BuildPanelImage(room.Configuration);
  std::optional<FoundPanel> found = PanelWait(room, ports, time, stop).Wait(RecentEntries(log), observer);
  if (!found) return false;
  const std::string port = "COM" + std::to_string(found->Number);
  observer.Found(found->Panel, port);
  if (const std::optional<Message> refusal = FirmwareGate(found->Panel)) {
    std::vector<SearchSlot> slots(1);
    slots.front().Port = std::move(found->Port);
    slots.front().Panel = found->Panel;
    RestartFoundPanels(slots, time, stop);
    observer.Tell(*refusal);
    return false;
  }
  FinishedDownload download;
  download.File = room.File;
  download.Panel = found->Panel;
  download.Port = port;
  download.Device = ports.DeviceName(found->Number);
  download.Settings = found->Settings;
  download.Began = std::chrono::system_clock::now();
  download.Result = found->Answering
                        ? ProgramAnsweringPanel(*found->Port, image, time, stop, observer)
                        : ProgramPanel(*found->Port, found->Settings, room.Configuration.ControllerType,
                                       image, time, stop, observer);
  download.Interrupted = stop.stop_requested();
  download.Ended = std::chrono::system_clock::now();
  for (const Message& message : Record(log, room.Configuration, image, download)) observer.Tell(message);
  return download.Result.Programmed && download.Result.Restarted;
}

}  // namespace qdm
