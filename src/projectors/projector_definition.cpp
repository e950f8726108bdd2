#include "projectors/projector_definition.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace qdm {

namespace {

// As nearly every name is: printable ASCII that does not begin with a blank.
bool IsPlain(const FixedText<32>& name) {
  unsigned others = 0;
  for (const char16_t character : name.Characters) others |= character - 0x20U < 0x5FU ? 0U : 1U;
  return others == 0 && name.Characters.front() != u' ';
}

}  // namespace

void ClearProjector(ProjectorDefinition& projector) {
  ProjectorDefinition cleared;
  cleared.Baudrate = projector.Baudrate;
  cleared.UsePowerDown = projector.UsePowerDown;
  projector = cleared;
}

void CleanName(FixedText<32>& name) {
  if (IsPlain(name)) return;
  std::u16string kept(name.View());
  std::erase_if(kept, [](char16_t character) { return !IsNameCharacter(character); });
  name = FixedText<32>(TrimBlanks(kept));
}

bool CleanNames(ProjectorDefinition& projector) {
  CleanName(projector.Manufacturer);
  CleanName(projector.Model);
  for (char16_t& c : projector.Manufacturer.Characters) c = UpperCase(c);
  return HasBothNames(projector);
}

bool HasBothNames(const ProjectorDefinition& projector) {
  return !projector.Manufacturer.Trimmed().empty() && !projector.Model.Trimmed().empty();
}

int SerialBytesUsed(const ProjectorDefinition& projector, const std::array<bool, kCommandSlots>& shown) {
  int used = 0;
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    if (!shown[slot]) continue;
    const int count = projector.Strings[slot].Count;
    used += count;
    if (count > 0 && SlotHasIgnoreMask(slot)) used += kIgnoreMaskBytes;
  }
  return used;
}

int SerialBytesUsed(const ProjectorDefinition& projector) {
  std::array<bool, kCommandSlots> available{};
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) available[slot] = projector.Available[slot] != 0;
  return SerialBytesUsed(projector, available);
}

}  // namespace qdm
