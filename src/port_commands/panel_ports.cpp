#include "port_commands/panel_ports.h"

#include "command_line/message_text.h"
#include "panels/programming.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string_view>
#include <system_error>
#include <utility>

namespace qdm {
namespace {

// Nothing for a device path; a number 1..16 for "COM1".."COM16" in either case.
std::optional<int> PortNumber(const std::string& port) {
  constexpr std::string_view kPrefix = "COM";
  std::string upper = port;
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  if (!upper.starts_with(kPrefix)) return std::nullopt;
  int number = 0;
  const char* const end = upper.data() + upper.size();
  const auto [stop, error] = std::from_chars(upper.data() + kPrefix.size(), end, number);
  if (stop != end) return std::nullopt;
  if (error != std::errc() || number < 1 || number > kPortSlots) {
    throw CommandError(kUnusable, port, "there are COM1 to COM16");
  }
  return number;
}

void AddSlot(PanelSearch& search, std::string name, std::string device, std::unique_ptr<SerialPort> port) {
  search.Names.push_back(std::move(name));
  SearchSlot& slot = search.Slots.emplace_back();
  slot.Device = std::move(device);
  slot.Port = std::move(port);
}

void AddPorts(PanelSearch& search, const std::vector<std::string>& ports, PortContext& context) {
  for (const std::string& port : ports) {
    const std::optional<int> number = PortNumber(port);
    const std::string name = number ? "COM" + std::to_string(*number) : port;
    if (name.empty()) throw CommandError(kUnusable, "--port", "a port is COM1 to COM16 or a device's path");
    if (std::find(search.Names.begin(), search.Names.end(), name) != search.Names.end()) continue;
    AddSlot(search, name, number ? context.Ports.DeviceName(*number) : port, PortNamed(port, context));
  }
  for (int number = 1; ports.empty() && number <= kPortSlots; ++number) {
    std::string device = context.Ports.DeviceName(number);
    if (device.empty()) continue;
    AddSlot(search, "COM" + std::to_string(number), std::move(device), context.Ports.Port(number));
  }
}

void TellClosedPorts(const PanelSearch& search, PortContext& context) {
  for (std::size_t i = 0; i < search.Slots.size(); ++i) {
    if (const std::string why = search.WhyClosed(i); !why.empty()) context.Err << "qdm: " << why << "\n";
  }
}

void TellFailedRestarts(const PanelSearch& search, const std::vector<std::size_t>& failed,
                        PortContext& context, std::ostream& told) {
  if (failed.empty()) return;
  std::string names;
  for (const std::size_t slot : failed) names += (names.empty() ? "" : ", ") + search.Names[slot];
  told << TextOf(RestartFailure(names)) << std::endl;
  context.Err << "qdm: " << names << ": not restarted, switch the power off and on" << std::endl;
}

}  // namespace

std::unique_ptr<SerialPort> PortNamed(const std::string& name, PortContext& context) {
  const std::optional<int> number = PortNumber(name);
  return number ? context.Ports.Port(*number) : context.PortAt(name);
}

std::unique_ptr<SerialPort> OpenPortNamed(const std::string& name, const std::string& settings,
                                          PortContext& context) {
  std::unique_ptr<SerialPort> port = PortNamed(name, context);
  port->SetSettings(settings);
  if (port->Open()) return port;
  const auto failure = port->WhyClosed();
  throw CommandError(kRefused, name, failure ? SentenceOf(*failure) : "there is no such port");
}

void ProgressLine::Show(const std::string& text) {
  if (!context_.ErrIsTerminal || text == shown_) return;
  const std::size_t leftOver = shown_.size() - std::min(shown_.size(), text.size());
  context_.Err << '\r' << text << std::string(leftOver, ' ');
  if (text.empty()) context_.Err << '\r';
  context_.Err.flush();
  shown_ = text;
}

std::string PanelSearch::Line(std::size_t slot) const {
  std::string line = Names[slot] + "\t" + StatusText(Slots[slot]);
  if (Slots[slot].Choosable()) line.append("\t").append(Slots[slot].Settings());
  return line;
}

std::string PanelSearch::WhyClosed(std::size_t slot) const {
  const SearchSlot& searched = Slots[slot];
  if (searched.Present() || !searched.Failure) return {};
  const std::string& device = searched.Device;
  const bool named = device.empty() || device == Names[slot];
  return Names[slot] + (named ? "" : " (" + device + ")") + ": " +
         (device.empty() ? "there is no such port" : SentenceOf(*searched.Failure));
}

PanelSearch PortsToAsk(const std::vector<std::string>& ports, PortContext& context) {
  PanelSearch search;
  AddPorts(search, ports, context);
  return search;
}

PanelSearch SearchPanels(const std::vector<std::string>& ports, std::optional<int> controllerType,
                         PortContext& context, std::ostream& told) {
  PanelSearch search = PortsToAsk(ports, context);
  ProgressLine progress(context);
  const auto show = [&](std::size_t slot) { progress.Show(StatusText(search.Slots[slot])); };
  SearchAllPorts(search.Slots, controllerType, context.Time, context.Stop.get_token(), show);
  const bool anyAnswered = std::any_of(search.Slots.begin(), search.Slots.end(),
                                       [](const SearchSlot& slot) { return slot.Panel.has_value(); });
  progress.Show(anyAnswered ? "Restarting" : "");
  const std::vector<std::size_t> failed =
      RestartFoundPanels(search.Slots, context.Time, context.Stop.get_token());
  progress.Show("");
  TellFailedRestarts(search, failed, context, told);
  TellClosedPorts(search, context);
  return search;
}

}  // namespace qdm
