#include "port_commands/bench_projector.h"

#include "base/code_page.h"
#include "command_line/record_files.h"
#include "projector_bench/typed_command.h"
#include "projectors/projector_library.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace qdm {
namespace {

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

bool IsNamed(const ProjectorDefinition& projector, const ProjectorChoice& choice) {
  const auto fits = [](const FixedText<32>& name, const std::string& wanted) {
    return wanted.empty() || LowerCase(name.TrimmedUtf8()) == LowerCase(wanted);
  };
  return fits(projector.Manufacturer, choice.Manufacturer) && fits(projector.Model, choice.Model);
}

}  // namespace

ProjectorDefinition ReadProjector(const ProjectorChoice& choice, PortContext& context) {
  const RecordFile file = ReadRecordFile(choice.File, context);
  std::vector<ProjectorDefinition> projectors;
  if (const auto* configuration = std::get_if<PanelConfiguration>(&file)) {
    projectors.push_back(configuration->Projector);
  } else {
    projectors = std::get<std::vector<ProjectorDefinition>>(file);
  }
  std::erase_if(projectors, [&](const ProjectorDefinition& p) { return !IsNamed(p, choice); });
  if (projectors.empty()) throw CommandError(kRefused, choice.File, "there is no such projector");
  if (projectors.size() > 1) {
    throw CommandError(
        kUnusable, choice.File,
        std::to_string(projectors.size()) + " projectors; choose one with --manufacturer and --model");
  }
  return projectors.front();
}

Slot CommandSlotNamed(const std::string& option, const std::string& name) {
  std::string known;
  for (const SlotFacts& slot : kSlots) {
    if (slot.Role != SlotRole::Command) continue;
    if (LowerCase(slot.Name) == LowerCase(name)) return slot.Place;
    known.append(known.empty() ? "" : ", ").append(slot.Name);
  }
  throw CommandError(kUnusable, option, "\"" + name + "\" is none of " + known);
}

SerialString TypedString(const std::string& option, const std::string& text) {
  const TypedCommand typed = ReadTypedCommand(FromUtf8(text));
  if (!typed.String) throw CommandError(kUnusable, option, typed.Words);
  return *typed.String;
}

}  // namespace qdm
