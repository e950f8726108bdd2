#include "projectors/library_step.h"

#include "support/distinct_projector.h"
#include "support/seeded_random.h"
#include "support/undo_walk.h"

#include <gmock/gmock.h>

#include <functional>
#include <random>
#include <string_view>

namespace qdm {
namespace {

// Of every byte of every element.
std::size_t HashOf(const ProjectorLibrary& library) {
  const std::vector<ProjectorDefinition>& elements = library.Elements();
  const auto* bytes = reinterpret_cast<const char*>(elements.data());
  return std::hash<std::string_view>()({bytes, elements.size() * sizeof(ProjectorDefinition)});
}

TEST(LibraryStep, TenThousandEditsAreUndoneByteForByteAndDoneAgain) {
  SeededRandom random;
  ProjectorLibrary library;
  for (const char* model : {"A", "B", "C"}) library.Append(NamedProjector("ACME", model));
  library.MarkUnchanged({});
  const auto edit = [&] {
    ProjectorDefinition projector = NamedProjector("ACME", std::to_string(random() % 40));
    projector.Strings[random() % kCommandSlots].Values[random() % 32] = static_cast<std::uint8_t>(random());
    const std::size_t place = library.Loaded() ? random() % library.Size() : 0;
    const auto choice = library.Size() > 20 ? 3 : random() % 4;  // stays small, so that all of it is hashed
    if (choice == 0 || !library.Loaded()) return library.Append(projector);
    if (choice == 1) return library.Insert(place, projector);
    if (choice == 2) return library.Replace(place, projector);
    library.Remove(place);
  };
  std::vector<LibraryStep> steps;
  std::vector<std::size_t> states = {HashOf(library)};
  for (std::size_t edits = 0; edits < 10000;) {
    LibraryRecording recording(library);
    for (std::size_t n = 1 + random() % 3; n > 0; --n, ++edits) edit();
    steps.push_back(recording.Take());
    states.push_back(HashOf(library));
  }
  std::size_t done = steps.size();
  ExpectBackAndForth(
      states, [&] { steps[--done].Undo(library); }, [&] { steps[done++].Redo(library); },
      [&] { return HashOf(library); });
  for (std::size_t step = steps.size(); step-- > 0;) steps[step].Undo(library);
  EXPECT_FALSE(library.Changed());
}

}  // namespace
}  // namespace qdm
