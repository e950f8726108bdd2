#include "forms/projectors/projector_import.h"

#include "forms/projectors/projector_replace_form.h"
#include "projectors/projector_files.h"

#include <cstddef>

namespace qdm {
namespace {

// Asks about conflicts until the user gives an answer for all.
class ConflictSettler {
 public:
  ConflictSettler(Globals& globals, UserPrompts& prompts, QWidget* parent)
      : globals_(globals), prompts_(prompts), parent_(parent) {}

  void Settle(const ProjectorDefinition& incoming, std::size_t index) {
    if (answerForAll_ == ReplaceAnswer::DoNothing) return;
    if (answerForAll_ == ReplaceAnswer::ReplaceInDataBase) {
      globals_.ProjectorDatabase.Replace(index, incoming);
      return;
    }
    globals_.CurrentProjector = incoming;
    ProjectorReplaceForm2 form(globals_, prompts_, parent_);
    form.exec();
    answerForAll_ = form.AnswerForAll();
  }

 private:
  Globals& globals_;
  UserPrompts& prompts_;
  QWidget* parent_;
  std::optional<ReplaceAnswer> answerForAll_;
};

}  // namespace

std::optional<std::size_t> ImportProjectorFile(Globals& globals, UserPrompts& prompts, QWidget* parent,
                                               const std::filesystem::path& file) {
  try {
    ConflictSettler conflicts(globals, prompts, parent);
    return ImportDefinitions(ReadDefinitions(file), globals.ProjectorDatabase,
                             [&](const ProjectorDefinition& incoming, std::size_t index) {
                               conflicts.Settle(incoming, index);
                             })
        .LastTaken;
  } catch (const FileError& error) {
    prompts.Show(parent, SorryAbout(error));
    return std::nullopt;
  }
}

}  // namespace qdm
