#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "config/configuration_rules.h"
#include "panels/frame.h"
#include "panels/programming.h"
#include "port_commands/download_log.h"
#include "port_commands/panel_ports.h"
#include "port_commands/port_commands.h"
#include "port_commands/stop_on_signals.h"

#include <chrono>
#include <cstddef>
#include <iomanip>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace qdm {
namespace {

class ConsoleObserver : public ProgrammingObserver {
 public:
  explicit ConsoleObserver(PortContext& context) : context_(context), progress_(context) {}

  void Connecting() override { progress_.Show("Connecting"); }
  void RecordsAcknowledged(int records) override {
    progress_.Show("Programming: " + std::to_string(records) + " of " + std::to_string(kRecords) +
                   " records");
  }
  void Tell(const Message& message) override {
    progress_.Show("");
    context_.Out << TextOf(message) << std::endl;
    progress_.Show("Restarting");
  }

 private:
  PortContext& context_;
  ProgressLine progress_;
};

class DownloadRun {
 public:
  DownloadRun(const DownloadOptions& options, PortContext& context)
      : options_(options),
        context_(context),
        configuration_(ReadConfigurationFile(options.File)),
        log_(context) {}

  int Run() {
    Check();
    const PanelImage image = ImageOf(options_.File, configuration_);
    const StopOnSignals interruptible(context_.Stop);
    const std::vector<std::string> ports =
        options_.Port.empty() ? std::vector<std::string>() : std::vector{options_.Port};
    std::optional<PanelSearch> known =
        log_.AskKnownPanel(options_.File, configuration_.ControllerType, ports);
    PanelSearch search = known ? std::move(*known)
                               : SearchPanels(ports, configuration_.ControllerType, context_, context_.Out);
    const std::size_t chosen = Choose(search);
    SearchSlot& slot = search.Slots[chosen];
    PassFirmwareGate(*slot.Panel);
    context_.Out << IdentificationText(*slot.Panel) << " on " << search.Names[chosen] << " at "
                 << slot.Settings() << std::endl;
    Program(search, chosen, image, known.has_value());
    return kDone;
  }

 private:
  void Check() {
    const std::optional<Message> refusal = CheckConfiguration(configuration_);
    if (!refusal) return;
    context_.Out << TextOf(*refusal) << std::endl;
    Fail("refused by the check: " + refusal->Text);
  }

  std::size_t Choose(const PanelSearch& search) const {
    if (context_.Stop.stop_requested()) Fail("interrupted, nothing was programmed");
    std::vector<std::size_t> choosable;
    for (std::size_t i = 0; i < search.Slots.size(); ++i) {
      if (search.Slots[i].Choosable()) choosable.push_back(i);
    }
    if (choosable.size() == 1) return choosable.front();
    if (choosable.empty()) {
      context_.Out << kNoPanelText << std::endl;
      Fail("no " + TypeName() + " found" + OthersIn(search));
    }
    for (const std::size_t slot : choosable) context_.Out << search.Line(slot) << "\n";
    context_.Out << "Choose one with --port" << std::endl;
    Fail(std::to_string(choosable.size()) + " of type " + TypeName() + " found");
  }

  void PassFirmwareGate(const Identification& panel) const {
    const std::optional<Message> refusal = FirmwareGate(panel);
    if (!refusal) return;
    context_.Out << TextOf(*refusal) << std::endl;
    Fail("the firmware of " + IdentificationText(panel) + " is too old");
  }

  // `answering`: the panel has just identified itself and waits.
  void Program(const PanelSearch& search, std::size_t chosen, const PanelImage& image, bool answering) {
    const SearchSlot& slot = search.Slots[chosen];
    const Microseconds begin = context_.Time.Now();
    const auto began = std::chrono::system_clock::now();
    const ProgrammingResult result = [&] {
      ConsoleObserver observer(context_);  // clears the line of its progress before anything else is written
      return answering ? ProgramAnsweringPanel(*slot.Port, image, context_.Time, context_.Stop.get_token(),
                                               observer)
                       : ProgramPanel(*slot.Port, std::string(slot.Settings()), configuration_.ControllerType,
                                      image, context_.Time, context_.Stop.get_token(), observer);
    }();
    log_.Record(options_.File, configuration_, image, search, chosen, result, began);
    const std::chrono::duration<double> taken = context_.Time.Now() - begin;

    const std::string records =
        std::to_string(result.Records) + " of " + std::to_string(kRecords) + " records";
    std::ostringstream summary;
    summary << records << ", " << result.Retries << (result.Retries == 1 ? " retry, " : " retries, ")
            << std::fixed << std::setprecision(1) << taken.count() << " s\n";
    if (result.Connected) context_.Out << summary.str();
    if (result.Programmed && result.Restarted) return;
    if (result.Programmed) Fail("programmed, but the panel did not restart");
    const std::string reason = context_.Stop.stop_requested() ? "interrupted" : "failed";
    const std::optional<OpenFailure> gone = slot.Port->WhyClosed();
    const std::string why = gone ? "; " + slot.Device + ": " + SentenceOf(*gone) : std::string();
    Fail(result.Connected ? reason + " after " + records + why
                          : reason + (gone ? why : ", the panel does not answer"));
  }

  std::string TypeName() const {
    const PanelType* type = PanelTypeOf(configuration_.ControllerType);
    return type != nullptr ? std::string(type->Caption)
                           : "controller of type " + std::to_string(configuration_.ControllerType);
  }
  // "; QDM6 1.3 is on COM2".
  std::string OthersIn(const PanelSearch& search) const {
    std::string others;
    for (std::size_t i = 0; i < search.Slots.size(); ++i) {
      const std::optional<Identification>& panel = search.Slots[i].Panel;
      if (panel) others += "; " + IdentificationText(*panel) + " is on " + search.Names[i];
    }
    return others;
  }
  [[noreturn]] void Fail(const std::string& why) const { throw CommandError(kRefused, options_.File, why); }

  const DownloadOptions& options_;
  PortContext& context_;
  PanelConfiguration configuration_;
  DownloadLog log_;
};

}  // namespace

int Download(const DownloadOptions& options, PortContext& context) {
  return DownloadRun(options, context).Run();
}

}  // namespace qdm
