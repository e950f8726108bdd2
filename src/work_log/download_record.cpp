#include "work_log/download_record.h"

#include "base/file_access.h"
#include "base/record_codec.h"
#include "base/words.h"
#include "config/configuration_file.h"
#include "config/panel_configuration.h"

#include <chrono>
#include <vector>

namespace qdm {
namespace {

DownloadOutcome OutcomeOf(const FinishedDownload& download) {
  const ProgrammingResult& result = download.Result;
  if (result.Programmed) return result.Restarted ? DownloadOutcome::Done : DownloadOutcome::NotRestarted;
  if (download.Interrupted) return DownloadOutcome::Interrupted;
  return result.Connected ? DownloadOutcome::Failed : DownloadOutcome::NotConnected;
}

}  // namespace

std::string ProjectorLineOf(const PanelConfiguration& configuration) {
  const ParityChoice* parity = ParityWithCode(configuration.Projector.Parity);
  if (parity == nullptr) return {};
  return std::string(SpeedOf(configuration.Projector.Baudrate).Digits) + "," + std::string(parity->Letter) +
         ",8,2";
}

WorkLogEntry EntryOf(const PanelConfiguration& configuration, const PanelImage& image,
                     const FinishedDownload& download) {
  using std::chrono::floor;
  WorkLogEntry entry;
  entry.Began = floor<std::chrono::seconds>(download.Began);
  if (!download.File.empty()) {
    entry.Title = PathToUtf8(download.File.stem());
    entry.File = RoomOfFile(download.File);
  }
  entry.ControllerType = configuration.ControllerType;
  entry.Panel = download.Panel;
  entry.Port = download.Port;
  entry.Device = download.Device;
  entry.Settings = download.Settings;
  const bool listensAnew = download.Result.Programmed && download.Result.Restarted;
  entry.Listens = listensAnew ? ProjectorLineOf(configuration) : download.Settings;
  entry.Records = download.Result.Records;
  entry.Retries = download.Result.Retries;
  entry.Duration = floor<std::chrono::milliseconds>(download.Ended - download.Began);
  entry.Outcome = OutcomeOf(download);
  entry.Image = Sha256(image);
  return entry;
}

std::vector<Message> Record(WorkLog& log, const PanelConfiguration& configuration, const PanelImage& image,
                            const FinishedDownload& download) {
  std::vector<Message> messages;
  try {
    log.Add(EntryOf(configuration, image, download), Encode(configuration));
  } catch (const FileError& error) {
    messages.push_back({Say("The work log could not be written. The download itself is not affected."),
                        Say("Sorry"), MessageIcon::Exclamation, error.what()});
  }
  if (const std::optional<Message> told = log.TakeMessage()) messages.push_back(*told);
  return messages;
}

}  // namespace qdm
