#include "panels/programming.h"

#include "base/words.h"
#include "config/maker.h"
#include "panels/frame.h"
#include "panels/panel_in_hand.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>

namespace qdm {

namespace {

// How late an acknowledgement may come after its frame was sent: 2 s, and the frame's own time on the line.
constexpr Microseconds kLateReply = std::chrono::milliseconds(2100);
// A line that never falls silent is given up.
constexpr Microseconds kSettleLimit = std::chrono::seconds(10);

Message Failure(std::string text) { return {std::move(text), Say("Error!"), MessageIcon::Exclamation}; }

// Sends frames that the panel acknowledges. A frame that had to be repeated leaves acknowledgements behind
// that may still be on their way; before the next frame the link lets them pass, since a late one would
// confirm a frame that was lost.
class PanelLink {
 public:
  PanelLink(SerialPort& port, Waiting& time) : port_(port), time_(time) {}

  // Replies that were not waited for may come up to 2 s from now.
  void ExpectLateReplies() { repliesUntil_ = time_.Now() + kLateReply; }
  // True when acknowledged. A request to stop is looked at before each attempt.
  bool SendAcknowledged(ByteView frame, const std::stop_token& stop);
  // Until nothing late can come any more. False when the line does not fall silent or is gone, or when
  // stopped.
  bool LetLateRepliesPass(const std::stop_token& stop);

  int Attempts() const { return attempts_; }  // so far, of all frames

 private:
  bool Attempt(ByteView frame);

  SerialPort& port_;
  Waiting& time_;
  int attempts_ = 0;
  std::optional<Microseconds> repliesUntil_;  // replies of an earlier frame may come until then
};

bool PanelLink::SendAcknowledged(ByteView frame, const std::stop_token& stop) {
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    if (stop.stop_requested() || !port_.IsOpen()) return false;
    const Microseconds sent = time_.Now();
    const bool acknowledged = Attempt(frame);
    if (!acknowledged || attempt > 1) repliesUntil_ = sent + kLateReply;
    if (acknowledged) return true;
  }
  return false;
}

bool PanelLink::Attempt(ByteView frame) {
  ++attempts_;
  port_.ReadAll();
  if (!port_.Write(frame)) return false;
  WaitUntil(time_, kReplyTimeout, [this] { return port_.BytesWaiting() > 0 || !port_.IsOpen(); });
  return IsAcknowledged(port_.ReadAll());
}

bool PanelLink::LetLateRepliesPass(const std::stop_token& stop) {
  if (!repliesUntil_) return true;
  const Deadline limit(time_, kSettleLimit);
  Microseconds silentSince = time_.Now();
  while (port_.IsOpen() && !limit.Passed() && !stop.stop_requested()) {
    if (!port_.ReadAll().empty()) silentSince = time_.Now();
    const Microseconds settled = std::max(*repliesUntil_, silentSince + kReplyTimeout);
    if (time_.Now() >= settled) {
      repliesUntil_.reset();
      return true;
    }
    time_.Yield(settled);
  }
  return false;
}

// The exchange of the search, on one port. The whole time-out: a reply counts only if nothing follows it.
bool Identifies(SerialPort& port, std::string_view settings, int controllerType, Waiting& time) {
  if (!AskForIdentification(port, settings)) return false;
  WaitUntil(time, kReplyTimeout, [&port] { return !port.IsOpen(); });
  const std::optional<Identification> panel = AnswerWaiting(port);
  return panel && panel->IsOfType(controllerType);
}

// How often the panel was asked until it answered; 0 when it did not.
int Connect(SerialPort& port, const std::string& settings, int controllerType, Waiting& time,
            const std::stop_token& stop) {
  int asked = 0;
  const auto answersAt = [&](std::string_view at) {
    ++asked;
    return !stop.stop_requested() && Identifies(port, at, controllerType, time);
  };
  const bool answered =
      answersAt(settings) || std::any_of(LineSettingsTable.begin(), LineSettingsTable.end(),
                                         [&](const LineSetting& entry) { return answersAt(entry.Settings); });
  return answered ? asked : 0;
}

void SendRecords(PanelLink& link, const PanelImage& image, const std::stop_token& stop,
                 ProgrammingObserver& observer, ProgrammingResult& result) {
  observer.RecordsAcknowledged(0);
  while (result.Records < kRecords) {
    const int attemptsBefore = link.Attempts();
    const bool acknowledged =
        link.LetLateRepliesPass(stop) && link.SendAcknowledged(ProgramRecord(image, result.Records), stop);
    result.Retries += std::max(0, link.Attempts() - attemptsBefore - 1);
    if (!acknowledged) return;
    observer.RecordsAcknowledged(++result.Records);
  }
  result.Programmed = true;
}

// On a line that does not fall silent it is sent all the same, but nothing there can confirm it.
bool RestartPanel(PanelLink& link, SerialPort& port, Waiting& time, const std::stop_token& stop) {
  const bool silent = link.LetLateRepliesPass(stop);
  std::vector<PanelRestart> restart = {PanelRestart(port, time, stop)};
  RunRestarts(restart, time);
  return restart.front().Acknowledged() && silent;
}

// From the first record to the restart. `asked`: how often it was asked until it identified itself.
ProgrammingResult ProgramConnected(int asked, SerialPort& port, const PanelImage& image, Waiting& time,
                                   const std::stop_token& stopAsked, ProgrammingObserver& observer) {
  ProgrammingResult result{.Connected = true};
  std::stop_source end;
  const std::stop_callback forward(stopAsked, [&end] { end.request_stop(); });
  const std::stop_token stop = end.get_token();
  const PanelInHand inHand(port, end);
  PanelLink link(port, time);
  if (asked > 1) link.ExpectLateReplies();
  if (OpenForProgramming(port)) SendRecords(link, image, stop, observer, result);
  observer.Tell(result.Programmed
                    ? Message{Say("The QDM panel has been programed"), Say("Done!"), MessageIcon::None}
                    : Failure(Say("The QDM panel failed to program")));

  result.Restarted = inHand.Restarted() || RestartPanel(link, port, time, stop);
  port.Close();
  if (!result.Restarted) observer.Tell(RestartFailure({}));
  return result;
}

}  // namespace

ProgrammingResult ProgramPanel(SerialPort& port, const std::string& settings, int controllerType,
                               const PanelImage& image, Waiting& time, const std::stop_token& stop,
                               ProgrammingObserver& observer) {
  observer.Connecting();
  const int asked = Connect(port, settings, controllerType, time, stop);
  if (asked > 0) return ProgramConnected(asked, port, image, time, stop, observer);
  port.Close();
  observer.Tell(Failure(Say("Could not connect to QDM panel")));
  return {};
}

ProgrammingResult ProgramAnsweringPanel(SerialPort& port, const PanelImage& image, Waiting& time,
                                        const std::stop_token& stop, ProgrammingObserver& observer) {
  return ProgramConnected(1, port, image, time, stop, observer);
}

std::vector<std::size_t> RestartFoundPanels(std::vector<SearchSlot>& slots, Waiting& time,
                                            const std::stop_token& stop) {
  std::vector<std::size_t> found;
  std::vector<PanelRestart> restarts;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (!slots[i].Panel) continue;
    found.push_back(i);
    restarts.emplace_back(*slots[i].Port, time, stop);
  }
  RunRestarts(restarts, time);

  std::vector<std::size_t> failed;
  bool repeated = false;
  for (std::size_t i = 0; i < restarts.size(); ++i) {
    if (!restarts[i].Acknowledged()) failed.push_back(found[i]);
    repeated = repeated || restarts[i].Attempts() > 1;
  }
  // Programming may follow at once: no late reply to a restart may confirm a record of it.
  if (repeated) WaitUntil(time, kLateReply, [&stop] { return stop.stop_requested(); });
  return failed;
}

Message RestartFailure(std::string ports) {
  Message message = Failure(Say("The QDM panel failed to restart"));
  message.Detail = std::move(ports);
  return message;
}

std::optional<Message> FirmwareGate(const Identification& panel) {
  // Only the last digit of the major version counts, as it always has: 11.2 is taken for 1.2.
  const bool tooOld = panel.Major % 10 == 1 && panel.Minor <= 2;
  if (!panel.IsOfType(kTlVox) || !tooOld) return std::nullopt;
  return Message{Say("This version of the QDM editor can only\r\n"
                     "operate with TL-VOX firmware 1.3 or higher\r\n"
                     "To proceed you will need to update the firmware\r\n"
                     "Please go to %1 to download the latest firmware",
                     {std::string(kMakerWebAddress)}),
                 Say("Sorry"), MessageIcon::Exclamation};
}

}  // namespace qdm
