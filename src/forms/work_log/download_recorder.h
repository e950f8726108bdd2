// What the download window has to do with the work log: where a panel answered last, and writing down what
// was done. Trouble with the log is told once, not at every download, and only behind it.
#pragma once

#include "forms/shared/busy_work.h"
#include "forms/shared/user_prompts.h"
#include "line/serial_port.h"
#include "work_log/download_record.h"
#include "work_log/known_panel.h"

#include <filesystem>
#include <optional>
#include <string>

#include <QCoreApplication>

namespace qdm {

class DownloadRecorder {
 public:
  DownloadRecorder(WorkLog& log, UserPrompts& prompts) : log_(log), prompts_(prompts) {}

  // Of that type, on a port that is there; `file` is empty for a configuration that was never saved.
  std::optional<KnownPanel> Known(int controllerType, const std::filesystem::path& file,
                                  const SerialPorts& ports) {
    const auto present = [&ports](const std::string& port) {
      const int number = PortNumberOf(port);
      return number > 0 && !ports.DeviceName(number).empty();
    };
    return KnownPanelFor(RecentEntries(log_), controllerType, file.empty() ? std::string() : RoomOfFile(file),
                         present);
  }

  void Write(QWidget* parent, const PanelConfiguration& configuration, const PanelImage& image,
             const FinishedDownload& download) {
    const auto messages =
        DoBusy(parent, QCoreApplication::translate("qdm::WorkLog", "Still writing the work log."),
               [&] { return Record(log_, configuration, image, download); });
    for (const Message& message : messages) {
      if (!told_) prompts_.Show(parent, message);
      told_ = true;
    }
  }

 private:
  WorkLog& log_;
  UserPrompts& prompts_;
  bool told_ = false;
};

}  // namespace qdm
