// The texts and numbers that installers know, all of them in one list: tests/panels/golden/texts.txt.
#include "config/configuration_rules.h"
#include "config/option_ranges.h"
#include "line/speeds_and_parities.h"
#include "panels/identification.h"
#include "panels/image_layout.h"
#include "panels/programming.h"
#include "projectors/difference_text.h"
#include "projectors/field_captions.h"
#include "projectors/record_difference.h"
#include "serial_strings/serial_string.h"
#include "support/distinct_configuration.h"
#include "support/files.h"

#include <gmock/gmock.h>

#include <sstream>

namespace qdm {
namespace {

// The captions of a record's fields, in stored order.
template <class Record>
void AddCaptions(std::ostream& out) {
  Record other;
  Decode(Bytes(StoredSize<Record>(), 0x21), other);
  std::string_view last;
  for (const FieldDifference& difference : Differences(other, Record())) {
    const FieldName& field = difference.Place.Field;
    if (difference.Place.Record.empty() && field.Name != last)
      out << field.Name << ": " << field.Caption << "\n";
    last = field.Name;
  }
}

void AddLayout(std::ostream& out, ImageLayout layout) {
  for (const auto& [offset, field] : layout)
    out << offset << ", " << field.Width << ": " << field.Meaning << " (" << field.Sources << ")\n";
}

// What the codes of a definition's words mean, and what a new one has.
void AddValues(std::ostream& out) {
  for (const auto& word : kProjectorWords) {
    out << word.Name << ": new " << ProjectorDefinition().*word.Member;
    for (std::int16_t value = -1; value < 7; ++value) {
      ProjectorDefinition other;
      other.*word.Member = value;
      for (const DifferenceText& text : DifferencesInWords(other, ProjectorDefinition()))
        out << "; " << value << " " << text.First << " not " << text.Second;
    }
    out << "\n";
  }
}

void AddRanges(std::ostream& out) {
  for (const OptionRange& range : kOptionRanges) {
    PanelConfiguration changed;
    ++(changed.*range.Field);
    out << Differences(changed, PanelConfiguration()).at(0).Place.Field.Name << ": " << range.Low << ".."
        << range.High << " " << range.Unit << ", " << range.Label << "\n";
  }
}

// What NEW makes of a configuration in which everything was set.
void AddNewConfiguration(std::ostream& out) {
  PanelConfiguration fresh = DistinctConfiguration();
  ResetToDefaults(fresh);
  for (const DifferenceText& text : TextsOf(Differences(DistinctConfiguration(), fresh)))
    out << text.Field << " = " << text.Second << "\n";
}

TEST(EstablishedTexts, StandAsTheyAlwaysHave) {
  std::ostringstream out;
  for (const LineSetting& setting : LineSettingsTable)
    out << setting.Settings << " " << SearchText(setting) << "\n";
  for (const LineSpeed& speed : LineSpeeds)
    out << speed.Code << " " << speed.BitsPerSecond << " " << speed.Digits << " " << speed.Caption << "\n";
  for (const ParityChoice& parity : LineParities)
    out << parity.Code << " " << parity.Letter << " " << parity.Caption << "\n";
  for (const std::string_view name : ControlCodeNames) out << name << "\n";
  for (const std::string_view name : CommandSlotNames) out << name << "\n";
  AddCaptions<ProjectorDefinition>(out);
  AddCaptions<PanelConfiguration>(out);
  for (const int use : {0, 1, 2, 3, 4}) {
    for (const OutputTimeLabels& labels : {LabelsWhenShown(use), LabelsWhenEdited(use)})
      out << use << ": " << labels.Up << ", " << labels.Down << "\n";
  }
  AddValues(out);
  AddRanges(out);
  AddNewConfiguration(out);
  AddLayout(out, kQdmLayout);
  AddLayout(out, kTlvoxLayout);
  out << FirmwareGate({.Model = 4, .Major = 1, .Minor = 2})->Text << "\n";
  ExpectGolden("panels/golden/texts.txt", out.str());
}

}  // namespace
}  // namespace qdm
