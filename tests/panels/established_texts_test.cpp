// The texts that installers know, all of them in one list: tests/panels/golden/texts.txt.
#include "base/file_access.h"
#include "panels/identification.h"
#include "panels/image_layout.h"
#include "panels/programming.h"
#include "projectors/record_difference.h"
#include "serial_strings/serial_string.h"

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

TEST(EstablishedTexts, StandAsTheyAlwaysHave) {
  std::ostringstream out;
  for (const LineSetting& setting : LineSettingsTable)
    out << setting.Settings << " " << SearchText(setting) << "\n";
  for (const std::string_view name : ControlCodeNames) out << name << "\n";
  for (const std::string_view name : CommandSlotNames) out << name << "\n";
  AddCaptions<ProjectorDefinition>(out);
  AddCaptions<PanelConfiguration>(out);
  AddLayout(out, kQdmLayout);
  AddLayout(out, kTlvoxLayout);
  out << FirmwareGate({.Model = 4, .Major = 1, .Minor = 2})->Text << "\n";
  const Bytes golden = ReadWholeFile(QDM_SOURCE_DIR "/tests/panels/golden/texts.txt");
  EXPECT_EQ(out.str(), std::string(golden.begin(), golden.end()));
}

}  // namespace
}  // namespace qdm
