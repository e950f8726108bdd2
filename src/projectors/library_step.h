// What one command did to a library, to be undone and done again: before and after of each element that it
// touched, never a copy of the library.
#pragma once

#include "projectors/projector_library.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace qdm {

class LibraryStep {
 public:
  explicit LibraryStep(std::vector<LibraryChange> changes) : changes_(std::move(changes)) {}

  std::size_t Size() const { return changes_.size(); }
  // The library must be as the step left it, or as it found it.
  void Undo(ProjectorLibrary& library) const;
  void Redo(ProjectorLibrary& library) const;
  // Where the user looks after undoing it, and after doing it again: the last element that is there then.
  const ProjectorDefinition* LastBefore() const;
  const ProjectorDefinition* LastAfter() const;

 private:
  std::vector<LibraryChange> changes_;
};

// Notes the changes of a library while it lives.
class LibraryRecording {
 public:
  explicit LibraryRecording(ProjectorLibrary& library) : library_(library) {
    library.RecordChanges(&changes_);
  }
  ~LibraryRecording() { library_.RecordChanges(nullptr); }
  LibraryRecording(const LibraryRecording&) = delete;
  LibraryRecording& operator=(const LibraryRecording&) = delete;

  LibraryStep Take() { return LibraryStep(std::move(changes_)); }

 private:
  ProjectorLibrary& library_;
  std::vector<LibraryChange> changes_;
};

}  // namespace qdm
