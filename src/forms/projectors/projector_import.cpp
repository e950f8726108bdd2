#include "forms/projectors/projector_import.h"

#include "config/panel_configuration.h"
#include "forms/projectors/projector_replace_form.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"
#include "projectors/projector_files.h"

#include <QCoreApplication>
#include <QStringList>

#include <utility>
#include <vector>

namespace qdm {
namespace {

struct Import {
  Q_DECLARE_TR_FUNCTIONS(qdm::Import)
};

// Asks about conflicts until the user gives an answer for all, or stops.
class ConflictSettler {
 public:
  ConflictSettler(Globals& globals, UserPrompts& prompts, QWidget* parent, std::size_t conflicts)
      : globals_(globals),
        prompts_(prompts),
        parent_(parent),
        place_{0, conflicts},
        sizeBefore_(globals.ProjectorDatabase.Size()) {}

  void Settle(const ProjectorDefinition& incoming, std::size_t index) {
    if (answerForAll_ == ReplaceAnswer::DoNothing) return;
    if (answerForAll_ == ReplaceAnswer::ReplaceInDataBase) {
      globals_.ProjectorDatabase.Replace(index, incoming);
      return;
    }
    ++place_.Number;
    globals_.CurrentProjector = incoming;
    const std::size_t added = globals_.ProjectorDatabase.Size() - sizeBefore_;
    ProjectorReplaceForm2 form(globals_, prompts_, place_, added + replaced_, parent_);
    form.exec();
    answerForAll_ = form.AnswerForAll();
    stopped_ = form.Stopped();
    if (globals_.ProjectorDatabase[index] == incoming) ++replaced_;
  }
  bool Stopped() const { return stopped_; }

 private:
  Globals& globals_;
  UserPrompts& prompts_;
  QWidget* parent_;
  QuestionPlace place_;
  const std::size_t sizeBefore_;
  std::size_t replaced_ = 0;
  std::optional<ReplaceAnswer> answerForAll_;
  bool stopped_ = false;
};

// What is asked about a file whose length no file of definitions has; nothing when it may be one.
std::optional<Message> Doubt(const std::filesystem::path& file, std::size_t size) {
  if (size % kStoredProjectorSize == 0) return std::nullopt;
  const QString name = QString::fromStdString(PathToUtf8(file.filename()));
  const QString text =
      size == kStoredConfigurationSize
          ? Import::tr(
                "%1 has the length of a configuration and not of projector definitions.\r\n"
                "Do you wish to import what it holds all the same?")
          : Import::tr(
                "%1 is no multiple of a projector definition long: something is missing, or it is "
                "another file.\r\nDo you wish to import what it holds all the same?");
  return Message{text.arg(name).toStdString(), Import::tr("Import").toStdString(), MessageIcon::Question};
}

QString TextOf(const ImportResult& result, bool stopped) {
  const auto unchanged = static_cast<int>(result.Unchanged);
  const QString there =
      unchanged == 1 ? Import::tr("1 was there already") : Import::tr("%n were there already", "", unchanged);
  const struct {
    std::size_t Count;
    QString Text;
  } parts[] = {{result.Added, Import::tr("%n added", "", static_cast<int>(result.Added))},
               {result.Replaced, Import::tr("%n replaced", "", static_cast<int>(result.Replaced))},
               {result.Kept, Import::tr("%n kept", "", static_cast<int>(result.Kept))},
               {result.Unchanged, there}};
  QStringList told;
  for (const auto& part : parts) {
    if (part.Count > 0) told << part.Text;
  }
  if (told.isEmpty()) told << Import::tr("no projector found");
  if (stopped) told << Import::tr("stopped there");
  return told.join(Import::tr(", ", "between the counts of an import"));
}

}  // namespace

ImportedFile ImportProjectorFile(Globals& globals, UserPrompts& prompts, QWidget* parent,
                                 const std::filesystem::path& file) {
  try {
    const QString slow =
        Import::tr("Still reading %1.").arg(QString::fromStdString(PathToUtf8(file.filename())));
    const std::optional<Message> doubt =
        Doubt(file, DoBusy(parent, slow, [&file] { return SizeToRead(file); }));
    if (doubt && !prompts.AskYesNo(parent, *doubt)) return {};
    std::vector<ProjectorDefinition> definitions =
        DoBusy(parent, slow, [&file] { return ReadDefinitions(file); });
    ConflictSettler conflicts(globals, prompts, parent,
                              CountConflicts(definitions, globals.ProjectorDatabase));
    const ImportResult result = ImportDefinitions(
        std::move(definitions), globals.ProjectorDatabase,
        [&](const ProjectorDefinition& incoming, std::size_t index) { conflicts.Settle(incoming, index); },
        [&] { return conflicts.Stopped(); });
    return {result.LastTaken, TextOf(result, conflicts.Stopped())};
  } catch (const FileError& error) {
    prompts.Show(parent, SorryAbout(error));
    return {};
  }
}

}  // namespace qdm
