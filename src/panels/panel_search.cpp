#include "panels/panel_search.h"

#include <algorithm>

namespace qdm {

bool AskForIdentification(SerialPort& port, std::string_view settings) {
  port.Close();
  port.SetSettings(settings);
  if (!port.Open()) return false;
  port.ReadAll();
  return port.Write(SearchRequest);
}

std::optional<Identification> AnswerWaiting(SerialPort& port) {
  if (port.BytesWaiting() != kIdentReplyBytes) return std::nullopt;
  return ParseIdentReply(port.ReadAll());
}

namespace {

class AllPortsSearch {
 public:
  AllPortsSearch(std::vector<SearchSlot>& slots, std::optional<int> controllerType, Waiting& time,
                 const SlotChanged& changed)
      : slots_(slots), controllerType_(controllerType), time_(time), changed_(changed) {}

  void OpenPorts();
  bool AnybodyToAsk() const { return std::any_of(slots_.begin(), slots_.end(), IsAsked); }
  void AskAt(const LineSetting& setting);
  void WaitForAnswers();
  void TakeAnswers(const LineSetting& setting);
  void ClosePorts();

 private:
  static bool IsAsked(const SearchSlot& slot) { return slot.Present && !slot.Panel; }
  void Show(SearchSlot& slot, std::string status);
  void MarkAbsent(SearchSlot& slot);

  std::vector<SearchSlot>& slots_;
  std::optional<int> controllerType_;
  Waiting& time_;
  const SlotChanged& changed_;
};

void AllPortsSearch::Show(SearchSlot& slot, std::string status) {
  slot.Status = std::move(status);
  if (changed_) changed_(static_cast<std::size_t>(&slot - slots_.data()));
}

void AllPortsSearch::MarkAbsent(SearchSlot& slot) {
  slot.Present = false;
  slot.Port->Close();
  Show(slot, "No Port");
}

void AllPortsSearch::OpenPorts() {
  for (SearchSlot& slot : slots_) {
    slot.Panel.reset();
    slot.Settings.clear();
    slot.Present = slot.Port->Open();
    if (!slot.Present) MarkAbsent(slot);
  }
}

void AllPortsSearch::AskAt(const LineSetting& setting) {
  for (SearchSlot& slot : slots_) {
    if (!IsAsked(slot)) continue;
    if (AskForIdentification(*slot.Port, setting.Settings)) {
      Show(slot, std::string(setting.StatusText));
    } else {
      MarkAbsent(slot);
    }
  }
}

// The whole time-out, whatever comes in: a reply counts only if nothing follows it.
void AllPortsSearch::WaitForAnswers() {
  WaitUntil(time_, kReplyTimeout, [this] {
    return std::none_of(slots_.begin(), slots_.end(),
                        [](const SearchSlot& slot) { return IsAsked(slot) && slot.Port->IsOpen(); });
  });
}

void AllPortsSearch::TakeAnswers(const LineSetting& setting) {
  for (SearchSlot& slot : slots_) {
    if (!IsAsked(slot)) continue;
    slot.Panel = AnswerWaiting(*slot.Port);
    if (!slot.Panel) continue;
    if (!controllerType_ || slot.Panel->IsOfType(*controllerType_)) slot.Settings = setting.Settings;
    slot.Port->Close();
    Show(slot, IdentificationText(*slot.Panel));
  }
}

void AllPortsSearch::ClosePorts() {
  for (SearchSlot& slot : slots_) {
    slot.Port->Close();
    if (IsAsked(slot)) Show(slot, "No QDM found");
  }
}

}  // namespace

void SearchAllPorts(std::vector<SearchSlot>& slots, std::optional<int> controllerType, Waiting& time,
                    const std::stop_token& stop, const SlotChanged& changed) {
  AllPortsSearch search(slots, controllerType, time, changed);
  search.OpenPorts();
  for (const LineSetting& setting : LineSettingsTable) {
    if (stop.stop_requested() || !search.AnybodyToAsk()) break;
    search.AskAt(setting);
    search.WaitForAnswers();
    search.TakeAnswers(setting);
  }
  search.ClosePorts();
}

std::vector<SearchSlot> AllSlots(SerialPorts& ports) {
  std::vector<SearchSlot> slots(kPortSlots);
  for (std::size_t i = 0; i < slots.size(); ++i) {
    slots[i].Port = ports.Port(static_cast<int>(i) + 1);
    slots[i].Status = "Please Wait";
  }
  return slots;
}

}  // namespace qdm
