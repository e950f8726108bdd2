// What a line is used for, on real pseudo-terminals in real time: 64 records from the editor's window and
// from `qdm`, and the search over 16 silent ports.
#include "app/qt_prompts.h"
#include "config/configuration_file.h"
#include "forms/download/download_form.h"
#include "forms/shared/globals.h"
#include "library_of.h"
#include "measure.h"
#include "paced_panel.h"
#include "panels/panel_search.h"
#include "processes.h"
#include "serial_io/event_loop_waiting.h"
#include "serial_io/port_list.h"
#include "serial_io/pseudo_terminal.h"
#include "support/temp_folder.h"
#include "work_log/download_record.h"

#include <QApplication>
#include <QRadioButton>
#include <QTimer>

#include <array>
#include <cstdlib>
#include <string>

namespace qdm::bench {
namespace {

constexpr int kDownloads = 3;
constexpr int kSearches = 3;

// Nobody is there to close a box.
class NoBoxes : public QtPrompts {
 public:
  void Show(QWidget*, const Message&) override {}
};

// Programs the panel as soon as the search has found it.
void DownloadFromTheEditor(const PanelConfiguration& room, const std::string& device) {
  ::setenv("QDM_PORTS", device.c_str(), 1);
  const std::unique_ptr<SerialPorts> ports = MakeSystemPorts();
  EventLoopWaiting time;
  NoBoxes prompts;
  Globals globals;
  Download form(globals, room, *ports, time, prompts);
  form.TellFinished([&](const FinishedDownload& finished) {
    if (!finished.Result.Programmed) std::abort();
    QTimer::singleShot(0, &form, &QDialog::reject);
  });
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &form, [&] {
    auto* panel = form.findChild<QRadioButton*>(QStringLiteral("Option1_0"));
    if (!panel->isEnabled()) return;
    look.stop();
    panel->click();
  });
  look.start(50);
  form.exec();
}

double TimeOfSearch(std::size_t count) {
  std::vector<PseudoTerminal> silent(count);
  std::string devices;
  for (const PseudoTerminal& line : silent) devices += line.Device() + ",";
  ::setenv("QDM_PORTS", devices.c_str(), 1);
  EventLoopWaiting time;
  const std::unique_ptr<SerialPorts> ports = MakeSystemPorts();
  std::vector<SearchSlot> slots = AllSlots(*ports);
  return WallSeconds([&] { SearchAllPorts(slots, std::nullopt, time, std::stop_token(), nullptr); });
}

}  // namespace

void MeasureRecords(Table& table) {
  const PanelConfiguration room = FullRoom();
  const PanelImage image = BuildPanelImage(room);
  const TempFolder folder;
  const std::string file = (folder / "room.BVC").string();
  WriteConfiguration(file, room, OldTail::Dropped);
  ::setenv("QDM_DATA", folder.Path().c_str(), 1);
  const auto bytes = [&] { return SecondsOfTheBytes(image); };
  const auto fromEditor = [&] {
    PacedPanel panel(image);
    DownloadFromTheEditor(room, panel.Device());
    return panel.SecondsForTheRecords();
  };
  const auto fromQdm = [&] {
    PacedPanel panel(image);
    ProcessorTimeOf({QDM_PROGRAM, "download", file, "--port", panel.Device()});
    return panel.SecondsForTheRecords();
  };
  table.Ratio("64 records from the editor", "their bytes' own time", TakeTurns(kDownloads, fromEditor, bytes),
              1.03);
  table.Ratio("64 records from qdm", "their bytes' own time", TakeTurns(kDownloads, fromQdm, bytes), 1.03);
}

void MeasureSearch(Table& table) {
  table.Ratio("search over 16 silent ports", "one silent port",
              TakeTurns(
                  kSearches, [] { return TimeOfSearch(kPortSlots); }, [] { return TimeOfSearch(1); }),
              1.02);
}

}  // namespace qdm::bench
