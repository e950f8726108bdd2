// Any bytes as libraries: searching, importing, renaming, merging three ways, and whatever may be found in a
// library's three files: loading, recovering, saving. The files lie in memory where TMPDIR says so.
#include "fuzz/fuzzing.h"
#include "projectors/library_file.h"
#include "projectors/library_merge.h"
#include "projectors/projector_files.h"
#include "projectors/projector_library.h"
#include "projectors/projector_names.h"
#include "support/no_patience.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <set>
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

using Names = std::set<std::u16string>;

Names NamesOf(const Definitions& elements) {
  Names names;
  for (const ProjectorDefinition& element : elements) names.insert(NameKey(element));
  return names;
}

void Merge(const Definitions& base, const Definitions& ours, const Definitions& theirs) {
  const LibraryMerge merge = MergeLibraries(base, ours, theirs);
  const Names before = NamesOf(base);
  const Names merged = NamesOf(merge.Elements);
  const Names sides[] = {NamesOf(ours), NamesOf(theirs)};
  for (const int side : {0, 1}) {
    for (const std::u16string& name : sides[side]) {
      const bool deleted = before.contains(name) && !sides[1 - side].contains(name);
      Demand(deleted || merged.contains(name), "a merge loses nothing that neither side deleted");
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

ProjectorLibrary LibraryIn(const std::filesystem::path& folder) {
  ProjectorLibrary library;
  Demand(LoadProjectorDatabase(folder, library, NoPatience()).empty(), "no readable file is damaged");
  return library;
}

// As a program loads it: names cleaned, blank ones dropped.
Definitions Cleaned(Definitions elements) {
  const auto blank = [](ProjectorDefinition& element) { return !CleanNames(element); };
  elements.erase(std::remove_if(elements.begin(), elements.end(), blank), elements.end());
  return elements;
}

// Which of the three files are there, a bit each, and what they hold; `fragment` hangs on the library. Two
// programs load that; the second saves between the loading and the saving of the first.
void OnDisk(unsigned found, const Definitions (&held)[3], ByteView fragment) {
  static const TempFolder folder;
  const ProjectorFiles files(folder.Path());
  const std::filesystem::path paths[] = {files.Library, files.Backup, files.Temporary};
  for (const unsigned i : {0U, 1U, 2U}) {
    RemoveFile(paths[i]);
    if ((found >> i & 1) == 0) continue;
    Bytes stored = EncodeDefinitions(held[i]);
    if (i == 0) stored.insert(stored.end(), fragment.begin(), fragment.end());
    WriteAndFlush(paths[i], stored);
  }
  ProjectorLibrary first = LibraryIn(folder.Path());
  const Definitions nothing;
  const bool cutOff = found == 6;  // between the two renames of a save
  const Definitions start = Cleaned((found & 1) != 0 ? held[0] : cutOff ? held[2] : nothing);
  Demand(first.Elements() == start, "a library is loaded as it stands in its files");

  ProjectorLibrary second = LibraryIn(folder.Path());
  for (const ProjectorDefinition& element : held[1]) second.Append(element);
  if (second.Loaded()) second.Remove(0);
  SaveProjectorDatabase(folder.Path(), second, NoPatience());
  Demand(LibraryIn(folder.Path()).Elements() == Cleaned(second.Elements()), "what was saved is loaded again");
  for (const ProjectorDefinition& element : held[2]) first.Append(element);
  const LibraryMerge merge =
      MergeLibraries(first.ChangedGroups(), first.Elements(), Cleaned(second.Elements()));
  const LibrarySaved saved = SaveProjectorDatabase(folder.Path(), first, NoPatience());
  Demand(saved.Conflicts.size() == merge.Conflicts.size(), "a conflict is handed over");
  if (!saved.Conflicts.empty()) SaveProjectorDatabase(folder.Path(), first, NoPatience());
  Demand(LibraryIn(folder.Path()).Elements() == Cleaned(merge.Elements), "what two programs saved is merged");
}

// The first byte says whether it goes through the files, and which are there: that takes ten times as long.
void Look(ByteView input) {
  const std::uint8_t way = input.empty() ? 0 : input[0];
  if (!input.empty()) input = input.subspan(1);
  const Definitions sides[] = {SideOf(input), SideOf(input), SideOf(input)};
  const auto& [base, ours, theirs] = sides;
  if (way % 4 == 1)
    return OnDisk(way >> 2 & 7, sides, input.first(std::min<std::size_t>(input.size(), 2083)));
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
