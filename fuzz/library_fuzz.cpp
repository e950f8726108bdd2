// Any bytes as libraries: loading, searching, importing, renaming, and merging three ways. In memory: the
// disk has its own tests.
#include "fuzz/fuzzing.h"
#include "projectors/library_merge.h"
#include "projectors/projector_files.h"
#include "projectors/projector_library.h"
#include "projectors/projector_names.h"

#include <algorithm>
#include <vector>

namespace qdm {
namespace {

using Definitions = std::vector<ProjectorDefinition>;

// Each byte stands for a definition: few names and few contents, so that sides meet. The rest of the input is
// one of any bits.
Definitions SideOf(ByteView& input) {
  Definitions side;
  if (input.empty()) return side;
  const std::size_t count = std::min<std::size_t>(input[0] % 24, input.size() - 1);
  for (const std::uint8_t byte : input.subspan(1, count)) {
    ProjectorDefinition projector;
    const char16_t name[] = {static_cast<char16_t>((byte & 0x40 ? u'a' : u'A') + byte % 8)};
    projector.Manufacturer = FixedText<32>(std::u16string_view(name, 1));
    projector.Model = FixedText<32>(u"M");
    projector.WarmUpTime = static_cast<std::int16_t>(byte >> 4 & 3);
    side.push_back(projector);
  }
  input = input.subspan(count + 1);
  return side;
}

bool Has(const Definitions& elements, const ProjectorDefinition& named) {
  return std::any_of(elements.begin(), elements.end(),
                     [&](const ProjectorDefinition& element) { return NameKey(element) == NameKey(named); });
}

void Merge(const Definitions& base, const Definitions& ours, const Definitions& theirs) {
  const LibraryMerge merge = MergeLibraries(base, ours, theirs);
  for (const Definitions* side : {&ours, &theirs}) {
    const Definitions& other = side == &ours ? theirs : ours;
    for (const ProjectorDefinition& element : *side) {
      const bool deleted = Has(base, element) && !Has(other, element);
      Demand(deleted || Has(merge.Elements, element), "a merge loses nothing that neither side deleted");
    }
  }
  for (const ProjectorDefinition& element : merge.Elements) {
    const bool known = std::find(ours.begin(), ours.end(), element) != ours.end() ||
                       std::find(theirs.begin(), theirs.end(), element) != theirs.end();
    Demand(known, "a merge makes nothing up");
  }
  if (theirs == base) Demand(merge.Elements == ours, "who changed nothing changes nothing");
}

// The library's own count of what changed says the same as comparing with the beginning.
void Journal(const Definitions& base, const Definitions& ours, const Definitions& theirs) {
  ProjectorLibrary library;
  for (const ProjectorDefinition& element : base) library.Append(element);
  library.MarkUnchanged({});
  for (std::size_t i = library.Size(); i-- > 0;) library.Remove(i);
  for (const ProjectorDefinition& element : ours) library.Append(element);
  const Definitions merged = MergeLibraries(library.ChangedGroups(), library.Elements(), theirs).Elements;
  Demand(merged == MergeLibraries(base, ours, theirs).Elements, "the journal equals the comparison");
}

void Import(Definitions incoming, const Definitions& present) {
  ProjectorLibrary library;
  for (ProjectorDefinition element : present) {
    if (CleanNames(element)) library.Append(element);
  }
  const std::size_t before = library.Size();
  const ImportResult result =
      ImportDefinitions(std::move(incoming), library, [&library](ProjectorDefinition projector, std::size_t) {
        RenameUntilFree(projector, library);
        library.Append(projector);
      });
  Demand(library.Size() == before + result.Added, "an import with renaming loses nothing");
  for (std::size_t i = 0; i < library.Size(); ++i) {
    const auto found = library.FindProjector(library[i]);
    Demand(found && *found <= i, "each element is found under its name");
  }
}

void Look(ByteView input) {
  const Definitions base = SideOf(input);
  const Definitions ours = SideOf(input);
  const Definitions theirs = SideOf(input);
  Merge(base, ours, theirs);
  Journal(base, ours, theirs);
  Definitions any = {RecordFrom<ProjectorDefinition>(input), RecordFrom<ProjectorDefinition>(input)};
  any.insert(any.end(), theirs.begin(), theirs.end());
  Import(any, ours);
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look({data, size});
  return 0;
}
