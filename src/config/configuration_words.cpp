#include "config/configuration_words.h"

#include "base/words.h"
#include "config/audio_routing.h"
#include "config/configuration_rules.h"
#include "config/option_ranges.h"
#include "projectors/field_captions.h"
#include "projectors/projector_library.h"
#include "projectors/record_difference.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>

namespace qdm {
namespace {

constexpr std::array<std::string_view, 5> kOutputs = {Marked("Disabled"), Marked("Use to control screen"),
                                                      Marked("Use to control volume using ZRB-LX or similar"),
                                                      Marked("Use to control projector lift and screen"),
                                                      Marked("Use to control projector power and screen")};
constexpr std::array<std::string_view, 4> kControlInputs = {
    Marked("Disabled"), Marked("Use with enable keyswitch"), Marked("Use as external power down"),
    Marked("Use as room PIR power down")};
constexpr std::array<std::string_view, 3> kAudioSources = {
    Marked("front audio jack"), Marked("rear PC input"), Marked("rear Video input")};

template <std::size_t N>
std::string NameIn(const std::array<std::string_view, N>& names, int number) {
  const bool named = number >= 0 && number < static_cast<int>(N);
  return named ? Say(names[static_cast<std::size_t>(number)]) : std::to_string(number);
}

std::string TypeName(int controllerType) {
  const PanelType* type = PanelTypeOf(controllerType);
  return type != nullptr ? std::string(type->Caption) : std::to_string(controllerType);
}

// "a QDM 4"
std::string APanel(int controllerType) {
  const PanelType* type = PanelTypeOf(controllerType);
  return type != nullptr ? Say("a %1", {std::string(type->Caption)}) : Say("any panel");
}

std::string AudioSources(int routing) {
  const auto source = [routing](ProjectorInput input) {
    const int number = AudioSourceOf(static_cast<std::int16_t>(routing), input);
    return number == kNoAudioSource ? Say("none") : NameIn(kAudioSources, number);
  };
  return Say("PC 1: %1, PC 2: %2, Video: %3",
             {source(ProjectorInput::PC1), source(ProjectorInput::PC2), source(ProjectorInput::Video)});
}

constexpr struct {
  std::string_view Field;
  std::string (*Name)(int number);
} kNamings[] = {
    {"ControllerType", TypeName},
    {"OutputsOption", [](int use) { return NameIn(kOutputs, use); }},
    {"ControlInputOption", [](int use) { return NameIn(kControlInputs, use); }},
    {"ControlInputActiveHigh", [](int high) { return high != 0 ? Say("High") : Say("Low"); }},
    {"LockSequence", LockButtonName},
    {"NoButtonPowerDown", [](int time) { return time != 0 ? std::to_string(time) : Say("off"); }},
    {"AudioRouting", AudioSources},
};

std::string ValueInWords(std::string_view field, const FieldValue& value) {
  const auto* flag = std::get_if<FlagValue>(&value);
  const int number = flag != nullptr ? flag->Flag : std::get<NumberValue>(value).Number;
  for (const auto& naming : kNamings) {
    if (naming.Field == field) return naming.Name(number);
  }
  if (flag != nullptr) return number != kFlagClear ? Say("Yes") : Say("No");
  return std::to_string(number);
}

DifferenceText InWords(const FieldDifference& difference) {
  DifferenceText text{CaptionOf(difference.Place), ValueInWords(difference.Place.Field, difference.First),
                      ValueInWords(difference.Place.Field, difference.Second)};
  // Two numbers without a difference in words have one all the same.
  if (text.First == text.Second) return TextOf(difference);
  return text;
}

std::string NameOf(const ProjectorDefinition& projector) {
  if (!HasBothNames(projector)) return Say("none");
  return projector.Manufacturer.TrimmedUtf8() + " " + projector.Model.TrimmedUtf8();
}

std::vector<DifferenceText> ProjectorsInWords(const ProjectorDefinition& first,
                                              const ProjectorDefinition& second) {
  if (NameKey(first) != NameKey(second)) return {{Say("Projector"), NameOf(first), NameOf(second)}};
  std::vector<DifferenceText> texts = DifferencesInWords(first, second);
  if (first.Notes != second.Notes) {
    texts.push_back({Say("Notes"), first.Notes.TrimmedUtf8(), second.Notes.TrimmedUtf8()});
  }
  for (DifferenceText& text : texts) text.Field = Say("Projector, %1", {text.Field});
  return texts;
}

struct RulesForPeople : ExactRules {
  static bool SameFlag(std::int16_t first, std::int16_t second) { return (first != 0) == (second != 0); }
};

bool IsUnseen(const FieldPlace& place) {
  constexpr std::array<std::string_view, 4> kUnseen = {"EditorMajor", "EditorMinor", "Reserved1", "Spare"};
  return std::find(kUnseen.begin(), kUnseen.end(), place.Field.Name) != kUnseen.end();
}

}  // namespace

std::vector<DifferenceText> DifferencesInWords(const PanelConfiguration& first,
                                               const PanelConfiguration& second) {
  std::vector<DifferenceText> texts;
  bool projectorTold = false;
  for (const FieldDifference& difference : Differences<RulesForPeople>(first, second)) {
    if (IsUnseen(difference.Place)) continue;
    if (difference.Place.Record.empty()) {
      texts.push_back(InWords(difference));
    } else if (!projectorTold) {
      projectorTold = true;
      std::vector<DifferenceText> projector = ProjectorsInWords(first.Projector, second.Projector);
      std::move(projector.begin(), projector.end(), std::back_inserter(texts));
    }
  }
  return texts;
}

std::string LineOf(const DifferenceText& difference) {
  return difference.Field + ": " + difference.First + " -> " + difference.Second;
}

std::string LockButtonName(int button) {
  const bool named = button >= 0 && button < static_cast<int>(kLockButtons);
  return named ? NameIn(kLockButtonNames, button) : Say("button %1", {std::to_string(button)});
}

std::string WhyNotPressed(int button, int controllerType) {
  const LockButtonSet has = LockButtonsOf(controllerType);
  if (button >= 0 && button < static_cast<int>(kLockButtons) && has[static_cast<std::size_t>(button)])
    return {};
  return Say("%1: not on %2", {LockButtonName(button), APanel(controllerType)});
}

std::vector<std::string> WarningsAbout(const PanelConfiguration& configuration) {
  std::vector<std::string> warnings;
  for (std::size_t step = 0; step < configuration.LockSequence.size(); ++step) {
    const std::string why = WhyNotPressed(configuration.LockSequence[step], configuration.ControllerType);
    if (!why.empty()) warnings.push_back(Say("%1 of the unlock sequence: %2", {Say(NameOfStep(step)), why}));
  }
  return warnings;
}

std::string WhyNotUnlocked(const PanelConfiguration& configuration) {
  const auto& steps = configuration.LockSequence;
  const bool pressable = std::all_of(steps.begin(), steps.end(), [&](int button) {
    return WhyNotPressed(button, configuration.ControllerType).empty();
  });
  return pressable
             ? std::string()
             : Say("The unlock sequence cannot be pressed on %1", {APanel(configuration.ControllerType)});
}

}  // namespace qdm
