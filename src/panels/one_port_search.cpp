#include "panels/one_port_search.h"

#include "base/words.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace qdm {

OnePortSearch::OnePortSearch(SerialPort& port, const Waiting& time, StatusChanged status)
    : port_(port), time_(time), status_(std::move(status)) {
  AskAt(0);
}

void OnePortSearch::AskAt(std::size_t setting) {
  if (setting == LineSettingsTable.size()) return NotFound();
  setting_ = setting;
  if (!AskForIdentification(port_, LineSettingsTable[setting].Settings)) return NotFound();
  deadline_ = time_.Now() + kOnePortReplyTimeout;
  status_(SearchText(LineSettingsTable[setting]));
}

void OnePortSearch::Advance() {
  if (finished_) return;
  if (!port_.IsOpen()) return NotFound();
  if (port_.BytesWaiting() < kIdentReplyBytes && time_.Now() < deadline_) return;
  ++tried_;
  if (const std::optional<Identification> panel = AnswerWaiting(port_)) return Found(*panel);
  AskAt(setting_ + 1);
}

void OnePortSearch::Stop() {
  if (!finished_) NotFound();
}

void OnePortSearch::Found(const Identification& panel) {
  finished_ = true;
  port_.Close();
  result_ = {panel, std::string(LineSettingsTable[setting_].Settings)};
  status_(IdentificationText(panel, NamedModels::WallPanels));
}

void OnePortSearch::NotFound() {
  finished_ = true;
  port_.Close();
  status_(Say(kNoPanelText));
}

}  // namespace qdm
