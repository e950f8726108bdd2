#include "panels/panel_search.h"

#include "base/words.h"

#include <algorithm>
#include <cstddef>

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

bool HasTwin(const std::vector<SearchSlot>& slots, std::size_t slot) {
  if (!slots[slot].Panel) return false;
  return std::count_if(slots.begin(), slots.end(), [&](const SearchSlot& other) {
           return other.Panel && other.Panel->Model == slots[slot].Panel->Model;
         }) > 1;
}

std::string StatusText(const SearchSlot& slot) {
  switch (slot.State) {
    case SlotState::Waiting:
      return Say("Please Wait");
    case SlotState::NoPort:
      return Say("No Port");
    case SlotState::Asking:
      return SearchText(*slot.Setting);
    case SlotState::Asked:
      break;
  }
  return slot.Panel ? IdentificationText(*slot.Panel) : Say(kNoPanelText);
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
  void TakeAnswers();
  void ClosePorts();

 private:
  static bool IsAsked(const SearchSlot& slot) {
    return slot.State == SlotState::Waiting || slot.State == SlotState::Asking;
  }
  void Show(const SearchSlot& slot);
  void MarkAbsent(SearchSlot& slot);

  std::vector<SearchSlot>& slots_;
  std::optional<int> controllerType_;
  Waiting& time_;
  const SlotChanged& changed_;
};

void AllPortsSearch::Show(const SearchSlot& slot) {
  if (changed_) changed_(static_cast<std::size_t>(&slot - slots_.data()));
}

void AllPortsSearch::MarkAbsent(SearchSlot& slot) {
  slot.State = SlotState::NoPort;
  slot.Failure = slot.Port->WhyClosed();
  slot.Port->Close();
  Show(slot);
}

void AllPortsSearch::OpenPorts() {
  for (SearchSlot& slot : slots_) {
    slot.State = SlotState::Waiting;
    slot.Panel.reset();
    slot.SettingsTried = 0;
    slot.Failure.reset();
    if (!slot.Port->Open()) MarkAbsent(slot);
  }
}

void AllPortsSearch::AskAt(const LineSetting& setting) {
  for (SearchSlot& slot : slots_) {
    if (!IsAsked(slot)) continue;
    slot.State = SlotState::Asking;
    slot.Setting = &setting;
    if (AskForIdentification(*slot.Port, setting.Settings)) {
      Show(slot);
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

void AllPortsSearch::TakeAnswers() {
  for (SearchSlot& slot : slots_) {
    if (!IsAsked(slot)) continue;
    ++slot.SettingsTried;
    slot.Panel = AnswerWaiting(*slot.Port);
    if (!slot.Panel) continue;
    slot.State = SlotState::Asked;
    slot.Wanted = !controllerType_ || slot.Panel->IsOfType(*controllerType_);
    slot.Port->Close();
    Show(slot);
  }
}

void AllPortsSearch::ClosePorts() {
  for (SearchSlot& slot : slots_) {
    slot.Port->Close();
    if (!IsAsked(slot)) continue;
    slot.State = SlotState::Asked;
    Show(slot);
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
    search.TakeAnswers();
  }
  search.ClosePorts();
}

std::vector<SearchSlot> AllSlots(SerialPorts& ports) {
  std::vector<SearchSlot> slots(kPortSlots);
  for (std::size_t i = 0; i < slots.size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    slots[i].Device = ports.DeviceName(number);
    slots[i].Port = ports.Port(number);
  }
  return slots;
}

}  // namespace qdm
