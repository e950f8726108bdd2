#include "command_line/commands.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "projectors/difference_text.h"
#include "projectors/record_difference.h"

#include <deque>
#include <map>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

namespace qdm {
namespace {

using Definitions = std::vector<ProjectorDefinition>;

std::string ValueText(const std::string& value) { return value.empty() ? "\"\"" : OneLine(value); }

template <class Record>
bool PrintDifferences(const std::string& prefix, const Record& first, const Record& second,
                      std::ostream& out) {
  const std::vector<FieldDifference> differences = Differences(first, second);
  for (const DifferenceText& text : TextsOf(differences)) {
    out << prefix << text.Field << ": " << ValueText(text.First) << " -> " << ValueText(text.Second) << "\n";
  }
  return !differences.empty();
}

// Names as they pair definitions up: cleaned as the library cleans them, in upper case.
struct Names {
  std::string Shown;  // "ACME/X 100"
  std::u16string Key;
};

Names NamesOf(ProjectorDefinition projector) {
  CleanNames(projector);
  std::u16string key = UpperCase(projector.Manufacturer.View());
  key += UpperCase(projector.Model.View());
  return {projector.Manufacturer.TrimmedUtf8() + "/" + projector.Model.TrimmedUtf8(), key};
}

// Definitions of the same names are paired in the order in which they stand in their files.
bool PrintDifferences(const Definitions& first, const Definitions& second, std::ostream& out) {
  std::map<std::u16string, std::deque<const ProjectorDefinition*>> partners;
  for (const ProjectorDefinition& projector : second) partners[NamesOf(projector).Key].push_back(&projector);

  bool differ = false;
  for (const ProjectorDefinition& projector : first) {
    const Names names = NamesOf(projector);
    auto& candidates = partners[names.Key];
    if (candidates.empty()) {
      out << names.Shown << ": present -> absent\n";
      differ = true;
      continue;
    }
    if (PrintDifferences(names.Shown + ".", projector, *candidates.front(), out)) differ = true;
    candidates.pop_front();
  }
  // What is left over, in the order of the second file.
  for (const ProjectorDefinition& projector : second) {
    const Names names = NamesOf(projector);
    auto& left = partners[names.Key];
    if (left.empty() || left.front() != &projector) continue;
    left.pop_front();
    out << names.Shown << ": absent -> present\n";
    differ = true;
  }
  return differ;
}

}  // namespace

int Compare(const CompareOptions& options, CommandContext& context) {
  const RecordFile first = ReadRecordFile(options.First, context);
  const RecordFile second = ReadRecordFile(options.Second, context);
  if (first.index() != second.index()) {
    throw CommandError(kUnusable, options.Second, "not of the same kind as " + options.First);
  }
  const auto* configuration = std::get_if<PanelConfiguration>(&first);
  const bool differ =
      configuration != nullptr
          ? PrintDifferences("", *configuration, std::get<PanelConfiguration>(second), context.Out)
          : PrintDifferences(std::get<Definitions>(first), std::get<Definitions>(second), context.Out);
  return differ ? kRefused : kDone;
}

}  // namespace qdm
