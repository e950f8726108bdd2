// A reading of a page as text: "1 50 4F 4E 0D sure" for each string of the definition that has a candidate.
#pragma once

#include "base/code_page.h"
#include "manuals/manual_reading.h"
#include "serial_strings/text_parser.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace qdm {

inline std::vector<std::string> SlotsOf(const ManualReading& reading) {
  std::vector<std::string> slots;
  for (const ManualSlot& slot : reading.Slots) {
    slots.push_back(std::to_string(slot.Slot) + " " + HexBytes(reading.Commands[slot.Choice].String) +
                    (slot.Sure ? " sure" : ""));
  }
  return slots;
}

inline std::vector<std::string> SlotsOf(std::string_view page) { return SlotsOf(ReadManual(FromUtf8(page))); }

}  // namespace qdm
