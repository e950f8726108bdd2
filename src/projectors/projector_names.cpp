#include "projectors/projector_names.h"

#include "base/words.h"

#include <string>

namespace qdm {

FixedText<32> TypedName(std::u16string_view typed) { return FixedText<32>(TrimBlanks(typed)); }

void RenameUntilFree(ProjectorDefinition& projector, const ProjectorLibrary& library) {
  const std::u16string model(projector.Model.Trimmed());
  for (int number = 2;; ++number) {
    const std::u16string suffix = FromUtf8(" (" + std::to_string(number) + ")");
    std::u16string name = model.substr(0, FixedText<32>::kLength - suffix.size());
    name.erase(name.find_last_not_of(u' ') + 1);
    projector.Model = FixedText<32>(name + suffix);
    if (!library.FindProjector(projector)) return;
  }
}

std::optional<Message> PasteUnderNames(ProjectorLibrary& library, ProjectorDefinition& clipboard,
                                       const FixedText<32>& manufacturer, const FixedText<32>& model) {
  const FixedText<32> maker(UpperCase(manufacturer.View()));
  if (library.FindProjector(maker, model)) {
    return Message{Say("Projector %1 / %2 already exists cannot paste to this name!",
                       {maker.TrimmedUtf8(), model.TrimmedUtf8()}),
                   Say("Sorry cannot paste"), MessageIcon::Exclamation};
  }
  clipboard.Manufacturer = maker;
  clipboard.Model = model;
  library.Append(clipboard);
  return std::nullopt;
}

std::optional<Message> RenameElement(ProjectorLibrary& library, std::size_t index,
                                     const FixedText<32>& manufacturer, const FixedText<32>& model) {
  ProjectorDefinition renamed = library[index];
  renamed.Manufacturer = FixedText<32>(UpperCase(manufacturer.View()));
  renamed.Model = model;
  if (NameKey(renamed) != NameKey(library[index]) && library.FindProjector(renamed)) {
    return Message{Say("Projector %1 / %2 already exists cannot rename to this name!",
                       {renamed.Manufacturer.TrimmedUtf8(), renamed.Model.TrimmedUtf8()}),
                   Say("Sorry cannot rename"), MessageIcon::Exclamation};
  }
  if (!(renamed == library[index])) library.Replace(index, renamed);
  return std::nullopt;
}

}  // namespace qdm
