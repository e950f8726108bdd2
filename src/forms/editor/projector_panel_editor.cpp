#include "forms/editor/projector_panel_editor.h"

#include "base/words.h"
#include "config/configuration_file.h"
#include "config/configuration_rules.h"
#include "config/configuration_words.h"
#include "config/version.h"
#include "forms/editor/changed_file.h"
#include "forms/editor/projector_reconciliation.h"
#include "forms/editor/recent_files.h"
#include "forms/editor/unsaved_work.h"
#include "forms/projectors/projector_import.h"
#include "forms/projectors/save_library.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/qt_text.h"
#include "projectors/projector_files.h"
#include "ui_projector_panel_editor.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace qdm {
namespace {

const QString kFolderKey = QStringLiteral("lastFolder");

QString StartTitle() { return QStringLiteral("Brevan QDM Editor ") + QString::fromStdString(VersionText()); }

// "Boardroom.BVC (/home/me/panels)": the name first, since the end is what a narrow window cuts.
QString NameAndFolder(const QString& fileName) {
  const QFileInfo file(fileName);
  return QStringLiteral("%1 (%2)").arg(file.fileName(), QDir::toNativeSeparators(file.absolutePath()));
}

}  // namespace

void ProjectorPanelEditor::Form_Load(LibraryComing coming) {
  RefreshTitle();
  if (coming.valid()) ShowFirstImage();
  ShowRecordInControls();
  ui_->Options->show();
  LoadLibrary(globals_, prompts_, this, std::move(coming));
  RebuildTree();
  ShowProjector();
}

void ProjectorPanelEditor::OpenNamedFile(QString commandLine, const QStringList& others) {
  if (commandLine.startsWith(QLatin1Char('"'))) {
    commandLine.remove(0, 1);
    if (commandLine.endsWith(QLatin1Char('"'))) commandLine.chop(1);
  }
  if (commandLine.isEmpty()) return;
  const bool exists = QFileInfo(commandLine).isFile();
  if (exists && commandLine.endsWith(QLatin1String("BVC"))) {
    OpenConfiguration(commandLine);
  } else if (exists && commandLine.endsWith(QLatin1String("BVD"))) {
    ImportProjectors(commandLine);
  } else {
    ShowStatus(tr("Not opened, since it is no existing *.BVC or *.BVD file: %1").arg(commandLine));
  }
  if (others.isEmpty()) return;
  const QString told = tr("Not opened, since one file is open at a time: %1. %2");
  ShowStatus(told.arg(others.join(QLatin1String(", ")), ui_->StatusBar->Text()));
}

void ProjectorPanelEditor::New() {
  if (!MayDiscard()) return;
  ResetToDefaults(record_);
  ShowRecordInControls();
  fileName_.clear();
  RefreshTitle();
  ShowStatus(tr("New configuration"));
}

void ProjectorPanelEditor::Open() {
  if (!MayDiscard()) return;
  if (const std::optional<QString> chosen =
          prompts_.OpenFile(this, tr("Open Configuration"), kConfigurationFileFilter, StartFolder())) {
    OpenConfiguration(*chosen);
  }
}

// The check looks at the record as it was last stored, before the controls come in: established order.
bool ProjectorPanelEditor::Save() {
  if (fileName_.isEmpty()) return SaveAs();
  if (!CheckConfiguration()) return false;
  StoreControlsToRecord();
  switch (AskBeforeSavingOver(prompts_, this, fileName_, onDisk_, record_)) {
    case SavingOver::Mine:
      return WriteRecord(fileName_, OldTail::Dropped);
    case SavingOver::SaveAs:
      return SaveAs();
    case SavingOver::OpenTheirs:
      OpenConfiguration(fileName_);
      break;
    case SavingOver::Cancel:
      break;
  }
  return false;
}

bool ProjectorPanelEditor::SaveAs() {
  if (!CheckConfiguration()) return false;
  StoreControlsToRecord();
  const std::optional<QString> chosen =
      prompts_.SaveFile(this, tr("Save Configuration As"), kConfigurationFileFilter, StartFolder());
  return chosen && WriteRecord(*chosen, OldTail::Kept);
}

bool ProjectorPanelEditor::WriteRecord(const QString& fileName, OldTail tail) {
  try {
    DoBusy(this, tr("Still saving %1.").arg(NameAndFolder(fileName)),
           [&] { WriteConfiguration(ToPath(fileName), record_, tail); });
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
    return false;
  }
  BecomeFile(fileName);
  onDisk_ = record_;
  notAsStored_.clear();
  SetBaseline();
  history_.EndTyping();
  DropKeptFile();
  QStringList told;
  for (const std::string& warning : WarningsAbout(record_)) told << QString::fromStdString(warning);
  told << tr("Saved %1").arg(NameAndFolder(fileName));
  ShowStatus(told.join(QLatin1String(". ")));
  prompts_.Show(this, Message{Say("QDM configuration saved"), Say("File Saved."), MessageIcon::None});
  RefreshTitle();
  return true;
}

bool ProjectorPanelEditor::OpenConfiguration(const QString& fileName) {
  try {
    record_ = DoBusy(this, tr("Still opening %1.").arg(NameAndFolder(fileName)),
                     [&] { return ReadConfiguration(ToPath(fileName)); });
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
    return false;
  }
  onDisk_ = record_;
  ShowRecordInControls();
  BecomeFile(fileName);
  RefreshTitle();
  QStringList told;
  for (const DifferenceText& value : notAsStored_) {
    told << tr("%1: %2 would be saved as %3")
                .arg(QString::fromStdString(value.Field), QString::fromStdString(value.First),
                     QString::fromStdString(value.Second));
  }
  told << tr("Opened %1").arg(NameAndFolder(fileName));
  ShowStatus(told.join(QLatin1String(". ")));
  return true;
}

void ProjectorPanelEditor::BecomeFile(const QString& fileName) {
  fileName_ = fileName;
  recentFiles_->Add(fileName);
  settings_.setValue(kFolderKey, QFileInfo(fileName).absolutePath());
}

QString ProjectorPanelEditor::StartFolder() const {
  if (!fileName_.isEmpty()) return QFileInfo(fileName_).absolutePath();
  const QString last = settings_.value(kFolderKey).toString();
  const bool there = !last.isEmpty() && QFileInfo(last).isDir();
  return there ? last : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void ProjectorPanelEditor::RecentFile_Click(const QString& fileName) {
  if (MayDiscard() && !OpenConfiguration(fileName)) recentFiles_->Remove(fileName);
}

bool ProjectorPanelEditor::OpenRoom(const QString& fileName) {
  return MayDiscard() && OpenConfiguration(fileName);
}

bool ProjectorPanelEditor::ShowUnsaved(const PanelConfiguration& configuration) {
  if (!MayDiscard()) return false;
  record_ = configuration;
  ShowRecordInControls();
  fileName_.clear();
  RefreshTitle();
  ShowStatus(tr("This configuration is from the work log and not saved"));
  return true;
}

void ProjectorPanelEditor::EditProjector() {
  windows_.Selector(this);
  // They are saved or were given up, unless the window had to close.
  const ProjectorLibrary& library = globals_.ProjectorDatabase;
  const bool saved = !library.Changed() && std::all_of(keptDefinitions_.begin(), keptDefinitions_.end(),
                                                       [&library](const ProjectorDefinition& kept) {
                                                         const auto element = library.FindProjector(kept);
                                                         return element && library[*element] == kept;
                                                       });
  if (saved || !globals_.Leaving) DropKeptDefinitions();
  RebuildTree();
  if (!globals_.LibraryNotice.empty()) ShowStatus(QString::fromStdString(globals_.LibraryNotice));
  OfferNewVersion(globals_, prompts_, this, record_.Projector);
  ShowProjector();
  NoteChange(ConfigurationHistory::Change::Step);
}

// Stored first, then checked: what is downloaded is what is seen.
void ProjectorPanelEditor::Download() {
  StoreControlsToRecord();
  if (!CheckConfiguration()) return;
  if (const std::string why = WhyNotUnlocked(record_); !why.empty()) {
    const QString question = tr("%1.\r\nDo you want to download it all the same?");
    if (!prompts_.AskYesNo(this, {question.arg(QString::fromStdString(why)).toStdString(),
                                  tr("Unlock Sequence").toStdString(), MessageIcon::Question})) {
      return;
    }
  }
  windows_.Download(this, record_);
}

// Never asks, unless what was not saved cannot be kept in a file of its own.
void ProjectorPanelEditor::Exit() {
  const QString slow = tr("Still keeping what is not saved.");
  if (!KeepWorkBy([&](const auto& write) { DoBusy(this, slow, write); })) {
    const QString question = tr("What is not saved cannot be kept in %1.");
    const QString folder = QString::fromStdString(PathToUtf8(globals_.DataFolder));
    if (prompts_.Choose(this,
                        {question.arg(QDir::toNativeSeparators(folder)).toStdString(), Say("Sorry"),
                         MessageIcon::Exclamation, whyNotKept_},
                        {tr("&Exit anyway"), tr("&Stay")}, 1) == 1) {
      return;
    }
  }
  exiting_ = true;
  close();
}

bool ProjectorPanelEditor::KeepWork() noexcept {
  return KeepWorkBy([](const auto& write) { write(); });
}

bool ProjectorPanelEditor::KeepWorkBy(const Running& run) noexcept {
  try {
    try {
      KeepConfiguration(run);
      KeepDefinitions(run);
      return true;
    } catch (const FileError& error) {
      whyNotKept_ = error.what();
    }
  } catch (...) {
    // Not even memory for the reason.
  }
  return false;
}

// What was kept before goes once the new is there.
void ProjectorPanelEditor::KeepConfiguration(const Running& run) {
  const PanelConfiguration shown = RecordAsShown();
  if (!Modified() || (kept_ == shown && QFileInfo::exists(keptFile_))) return;
  std::filesystem::path file;
  run([&] { file = WriteUnsavedWork(globals_.DataFolder, ".BVC", Encode(shown)); });
  DropKeptFile();
  keptFile_ = QString::fromStdString(PathToUtf8(file));
  kept_ = shown;
  NoteKeptWork(keptFile_, settings_);
  recentFiles_->Add(keptFile_);
}

void ProjectorPanelEditor::KeepDefinitions(const Running& run) {
  std::vector<ProjectorDefinition> unsaved = UnsavedDefinitions(globals_);
  if (unsaved.empty() || unsaved == keptDefinitions_) return;
  std::filesystem::path file;
  run([&] { file = WriteUnsavedWork(globals_.DataFolder, ".BVD", EncodeDefinitions(unsaved)); });
  DropKeptDefinitions();
  keptDefinitionsFile_ = QString::fromStdString(PathToUtf8(file));
  keptDefinitions_ = std::move(unsaved);
  NoteKeptWork(keptDefinitionsFile_, settings_);
}

void ProjectorPanelEditor::DropKeptDefinitions() {
  keptDefinitions_.clear();
  if (!keptDefinitionsFile_.isEmpty()) Discard(std::exchange(keptDefinitionsFile_, {}));
}

// It is saved, or kept as it has become since.
void ProjectorPanelEditor::DropKeptFile() {
  kept_.reset();
  if (keptFile_.isEmpty()) return;
  Discard(std::exchange(keptFile_, {}));
}

// A file that cannot be deleted is offered again.
bool ProjectorPanelEditor::Discard(const QString& keptFile) {
  try {
    DiscardKeptWork(keptFile, settings_);
  } catch (const FileError&) {
    return false;
  }
  recentFiles_->Remove(keptFile);
  return true;
}

void ProjectorPanelEditor::OfferKeptWork() {
  for (const QString& file : KeptWork(settings_)) {
    const QString text =
        tr("What was not saved when the editor ended is kept in %1.").arg(NameAndFolder(file));
    switch (prompts_.Choose(this,
                            {text.toStdString(), tr("Unsaved Work").toStdString(), MessageIcon::Question},
                            {tr("&Open"), tr("&Later"), tr("&Discard")}, 1)) {
      case 0:
        if (file.endsWith(QLatin1String(".BVD"))) {
          ImportProjectors(file);
          ForgetKeptWork(file, settings_);
          break;
        }
        if (!MayDiscard() || !OpenConfiguration(file)) return;
        ForgetKeptWork(file, settings_);
        return;  // the others at the next start: one configuration is open at a time
      case 2:
        if (!Discard(file)) {
          ShowStatus(tr("%1 could not be deleted").arg(NameAndFolder(file)));
        }
        break;
      default:
        break;
    }
  }
}

void ProjectorPanelEditor::Help() { windows_.Help(this); }
void ProjectorPanelEditor::About() { windows_.About(this); }
void ProjectorPanelEditor::FindPanel() { windows_.FindPanel(this); }

void ProjectorPanelEditor::Bench() {
  windows_.Bench(this, record_.Projector);
  ShowProjector();
  NoteChange(ConfigurationHistory::Change::Step);
}

void ProjectorPanelEditor::Undo() {
  NoteChange(ConfigurationHistory::Change::Step);
  history_.Undo();
  NoteChange(ConfigurationHistory::Change::Step);
}

void ProjectorPanelEditor::Redo() {
  history_.Redo();
  NoteChange(ConfigurationHistory::Change::Step);
}

void ProjectorPanelEditor::TreeView1_NodeClick(std::size_t element) {
  record_.Projector = globals_.ProjectorDatabase[element];
  ShowProjector();
  NoteChange(ConfigurationHistory::Change::Step);
}

// By key as well: what is lit is what is chosen. Going through the tree is one step.
void ProjectorPanelEditor::TreeView1_SelectionChange() {
  if (showingProjector_) return;
  const std::optional<std::size_t> element = ui_->TreeView1->SelectedElement();
  if (!element) return;
  record_.Projector = globals_.ProjectorDatabase[*element];
  ShowProjector();
  NoteChange(ConfigurationHistory::Change::Typing);
  if (ui_->TreeView1->hasFocus() && QGuiApplication::mouseButtons() == Qt::NoButton)
    ui_->TreeView1->ShowSummary();
}

void ProjectorPanelEditor::Filter_Change(const QString& text) {
  const QScopedValueRollback showing(showingProjector_, true);
  ui_->TreeView1->SetFilter(text);
  ui_->TreeView1->SelectProjector(record_.Projector);
}

void ProjectorPanelEditor::NoteChange(ConfigurationHistory::Change change) {
  history_.Note(RecordAsShown(), change);
  ui_->StatusBar->ShowUnsaved(Modified());
  ShowToolTips();
  work_->ConfigurationChanged();
}

void ProjectorPanelEditor::ShowRecordInControls() {
  const PanelConfiguration stored = record_;
  ui_->Options->ShowRecordInControls(record_);
  notAsStored_ = DifferencesInWords(stored, RecordAsShown());
  SetBaseline();
  history_.Begin(baseline_);
  ShowProjector();
  if (ReconcileProjector(globals_, prompts_, this, record_.Projector)) {
    RebuildTree();
    ShowProjector();
  }
  NoteChange(ConfigurationHistory::Change::Step);
}

// The numbers that were never stored stay in the controls, where the check before saving does not see them.
void ProjectorPanelEditor::Restore(const PanelConfiguration& past) {
  record_.Projector = past.Projector;
  record_.ControllerType = past.ControllerType;
  record_.OutputsOption = past.OutputsOption;
  record_.ControlInputOption = past.ControlInputOption;
  PanelConfiguration shown = past;
  ui_->Options->ShowRecordInControls(shown);
  ShowProjector();
}

void ProjectorPanelEditor::StoreControlsToRecord() { ui_->Options->StoreControlsToRecord(record_); }

bool ProjectorPanelEditor::CheckConfiguration() {
  const std::optional<Message> refusal = qdm::CheckConfiguration(record_);
  if (refusal) prompts_.Show(this, *refusal);
  return !refusal;
}

void ProjectorPanelEditor::ShowProjector() {
  const ProjectorDefinition& projector = record_.Projector;
  ui_->ProjectorLabel->setText(QString::fromStdString(ProjectorLabelText(projector)));
  ui_->NotesText->setPlainText(HasBothNames(projector) ? ToQString(projector.Notes.Trimmed()) : QString());
  const QScopedValueRollback showing(showingProjector_, true);
  ui_->TreeView1->SelectProjector(projector);
}

void ProjectorPanelEditor::RefreshTitle() {
  QString title =
      fileName_.isEmpty() ? StartTitle() : QString::fromStdString(TitleOfFile(fileName_.toStdString()));
  // Once, it would be the place of a mark for changes.
  setWindowTitle(title.replace(QLatin1String("[*]"), QLatin1String("[*][*]")));
}

void ProjectorPanelEditor::ShowStatus(const QString& text) { ui_->StatusBar->ShowText(text); }

PanelConfiguration ProjectorPanelEditor::RecordAsShown() const {
  PanelConfiguration shown = record_;
  ui_->Options->StoreControlsToRecord(shown);
  return shown;
}

void ProjectorPanelEditor::SetBaseline() {
  baseline_ = RecordAsShown();
  ui_->StatusBar->ShowUnsaved(Modified());
}

bool ProjectorPanelEditor::Modified() const { return !notAsStored_.empty() || RecordAsShown() != baseline_; }

bool ProjectorPanelEditor::MayDiscard() {
  if (!Modified()) return true;
  const QString question =
      fileName_.isEmpty() ? tr("The new configuration has been changed.\r\nDo you want to save it first?")
                          : tr("%1 has been changed.\r\nDo you want to save it first?")
                                .arg(QString::fromStdString(TitleOfFile(fileName_.toStdString())));
  switch (prompts_.AskSave(
      this, {question.toStdString(), tr("Save Changes?").toStdString(), MessageIcon::Question})) {
    case SaveAnswer::Save:
      return Save();
    case SaveAnswer::DontSave:
      return true;
    case SaveAnswer::Cancel:
      break;
  }
  return false;
}

void ProjectorPanelEditor::ImportProjectors(const QString& fileName) {
  const ImportedFile imported = ImportProjectorFile(globals_, prompts_, this, ToPath(fileName));
  if (imported.LastTaken) SaveLibrary(globals_, prompts_, this);
  RebuildTree();
  const QString file = NameAndFolder(fileName);
  ShowStatus(imported.Told.isEmpty() ? tr("Nothing imported from %1").arg(file)
                                     : tr("Imported from %1: %2", "a file, counts").arg(file, imported.Told));
}

void ProjectorPanelEditor::RebuildTree() {
  const QScopedValueRollback showing(showingProjector_, true);
  ui_->TreeView1->Rebuild();
}

}  // namespace qdm
