#include "projectors/definition_summary.h"

#include "line/speeds_and_parities.h"
#include "projectors/definition_setup.h"
#include "serial_strings/serial_string.h"

#include <cstddef>

namespace qdm {

DefinitionSummary SummaryOf(const ProjectorDefinition& projector) {
  const ParityChoice* parity = ParityWithCode(projector.Parity);
  DefinitionSummary summary;
  summary.Line = std::string(SpeedOf(projector.Baudrate).Digits) + "," +
                 std::string(parity != nullptr ? parity->Letter : "?") + ",8," +
                 (projector.Stopbits != 0 ? "2" : "1");
  const SlotSet shown = ShownSlots(projector);
  for (const SlotFacts& slot : kSlots) {
    const SerialString& string = projector.Strings[slot.Place];
    if (shown[slot.Place] && string.BytesInUse() > 0)
      summary.Strings.push_back({slot.Name, CompactText(string)});
  }
  return summary;
}

}  // namespace qdm
