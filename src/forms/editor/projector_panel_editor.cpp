#include "forms/editor/projector_panel_editor.h"

#include "config/configuration_file.h"
#include "config/configuration_rules.h"
#include "config/version.h"
#include "forms/editor/projector_reconciliation.h"
#include "forms/editor/recent_files.h"
#include "forms/editor/unsaved_work.h"
#include "forms/projectors/projector_import.h"
#include "forms/projectors/save_library.h"
#include "forms/shared/qt_text.h"
#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "ui_projector_panel_editor.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace qdm {
namespace {

const QString kGeometryKey = QStringLiteral("mainWindow/geometry");
const QString kSplitterKey = QStringLiteral("mainWindow/splitter");
constexpr QSize kFirstSize(1366, 730);
constexpr int kTreeWidth = 240;
constexpr int kNarrowTreeWidth = 160;

const Message kSaved{"QDM configuration saved", "File Saved.", MessageIcon::None};
QString StartTitle() { return QStringLiteral("Brevan QDM Editor ") + QString::fromStdString(VersionText()); }

// "Boardroom.BVC (/home/me/panels)": the name first, since the end is what a narrow window cuts.
QString NameAndFolder(const QString& fileName) {
  const QFileInfo file(fileName);
  return QStringLiteral("%1 (%2)").arg(file.fileName(), QDir::toNativeSeparators(file.absolutePath()));
}

bool HasSuffix(const QString& fileName, const char* suffix) {
  return fileName.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
}

QString DroppedFile(const QMimeData* data) {
  for (const QUrl& url : data->urls()) {
    const QString fileName = url.toLocalFile();
    if (HasSuffix(fileName, ".BVC") || HasSuffix(fileName, ".BVD")) return fileName;
  }
  return {};
}

}  // namespace

ProjectorPanelEditor::ProjectorPanelEditor(Globals& globals, UserPrompts& prompts, QSettings& settings,
                                           EditorWindows windows)
    : globals_(globals),
      prompts_(prompts),
      settings_(settings),
      windows_(std::move(windows)),
      ui_(std::make_unique<Ui::ProjectorPanelEditor>()),
      recentFiles_(new RecentFiles(settings, this)) {
  ui_->setupUi(this);
  ui_->TreeView1->SetLibrary(globals_.ProjectorDatabase);
  ui_->Filter->SetView(ui_->TreeView1);
  SetUpToolbar();
  ConnectControls();
  RestoreWindow();
}

ProjectorPanelEditor::~ProjectorPanelEditor() = default;

void ProjectorPanelEditor::SetUpToolbar() {
  auto* open = qobject_cast<QToolButton*>(ui_->Toolbar1->widgetForAction(ui_->OPEN));
  open->setPopupMode(QToolButton::MenuButtonPopup);
  open->setMenu(recentFiles_);
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O), this), &QShortcut::activated, open,
          &QToolButton::showMenu);
  for (QAction* action : ui_->Toolbar1->actions()) {
    ui_->Toolbar1->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
  }
  // An action without a tip shows its text as one.
  ui_->Toolbar1->widgetForAction(ui_->EXIT)->setToolTip({});

  const struct {
    QAction* Action;
    bool There;
  } windows[] = {{ui_->EDITPROJECTOR, windows_.Selector != nullptr},
                 {ui_->DOWNLOAD, windows_.Download != nullptr},
                 {ui_->HELP, windows_.Help != nullptr},
                 {ui_->ABOUT, windows_.About != nullptr}};
  for (const auto& window : windows) {
    if (window.There) continue;
    window.Action->setEnabled(false);
    window.Action->setToolTip(tr("%1: not available in this version").arg(window.Action->toolTip()));
  }
  ui_->StatusBar->EnableFindPanel(windows_.FindPanel != nullptr);
}

void ProjectorPanelEditor::ConnectControls() {
  connect(ui_->NEW, &QAction::triggered, this, &ProjectorPanelEditor::New);
  connect(ui_->OPEN, &QAction::triggered, this, &ProjectorPanelEditor::Open);
  connect(ui_->SAVE, &QAction::triggered, this, &ProjectorPanelEditor::Save);
  connect(ui_->SAVEAS, &QAction::triggered, this, &ProjectorPanelEditor::SaveAs);
  connect(ui_->EDITPROJECTOR, &QAction::triggered, this, &ProjectorPanelEditor::EditProjector);
  connect(ui_->DOWNLOAD, &QAction::triggered, this, &ProjectorPanelEditor::Download);
  connect(ui_->EXIT, &QAction::triggered, this, &ProjectorPanelEditor::Exit);
  connect(ui_->HELP, &QAction::triggered, this, &ProjectorPanelEditor::Help);
  connect(ui_->ABOUT, &QAction::triggered, this, &ProjectorPanelEditor::About);
  connect(ui_->StatusBar, &EditorStatusBar::FindPanel_Click, this, &ProjectorPanelEditor::FindPanel);
  connect(recentFiles_, &RecentFiles::Chosen, this, &ProjectorPanelEditor::RecentFile_Click);

  connect(ui_->TreeView1, &ProjectorTree::ElementChosen, this, &ProjectorPanelEditor::TreeView1_NodeClick);
  connect(ui_->Filter, &QLineEdit::textChanged, this, &ProjectorPanelEditor::Filter_Change);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, ui_->Filter,
          [this] { ui_->Filter->setFocus(Qt::ShortcutFocusReason); });

  connect(ui_->Options, &OptionControls::ControllerTypeChosen, this,
          [this](int type) { record_.ControllerType = static_cast<std::int16_t>(type); });
  connect(ui_->Options, &OptionControls::Changed, this, &ProjectorPanelEditor::Options_Change);
}

void ProjectorPanelEditor::RestoreWindow() {
  // A dropped file is for the window, not its name for the entry that it falls on.
  for (QLineEdit* entry : findChildren<QLineEdit*>()) entry->setAcceptDrops(false);
  ui_->Splitter->setStretchFactor(0, 0);
  ui_->Splitter->setStretchFactor(1, 1);
  resize(kFirstSize.boundedTo(screen()->availableSize()));
  // On a narrow screen the options go first: they are of no use cut.
  const QMargins around = ui_->CentreLayout->contentsMargins();
  const int spare = width() - around.left() - around.right() - ui_->Splitter->handleWidth() -
                    ui_->Options->minimumSizeHint().width();
  const int tree = std::clamp(spare, kNarrowTreeWidth, kTreeWidth);
  ui_->Splitter->setSizes({tree, width() - tree});
  restoreGeometry(settings_.value(kGeometryKey).toByteArray());
  ui_->Splitter->restoreState(settings_.value(kSplitterKey).toByteArray());
}

void ProjectorPanelEditor::Form_Load() {
  RefreshTitle();
  try {
    for (const Message& message : LoadProjectorDatabase(globals_.DataFolder, globals_.ProjectorDatabase)) {
      prompts_.Show(this, message);
    }
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
  }
  ui_->TreeView1->Rebuild();
  ShowRecordInControls();
  if (const QString kept = TakeUnsavedWork(settings_); !kept.isEmpty()) {
    ShowStatus(tr("What was not saved at the last exit is kept in %1").arg(NameAndFolder(kept)));
  }
}

void ProjectorPanelEditor::OpenNamedFile(QString commandLine) {
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
  if (const std::optional<QString> chosen = prompts_.OpenFile(this, kConfigurationFileFilter)) {
    OpenConfiguration(*chosen);
  }
}

// The check looks at the record as it was last stored, before the controls come in: established order.
bool ProjectorPanelEditor::Save() {
  if (fileName_.isEmpty()) return SaveAs();
  if (!CheckConfiguration()) return false;
  StoreControlsToRecord();
  return WriteRecord(fileName_, OldTail::Dropped);
}

bool ProjectorPanelEditor::SaveAs() {
  if (!CheckConfiguration()) return false;
  StoreControlsToRecord();
  const std::optional<QString> chosen = prompts_.SaveFile(this, kConfigurationFileFilter);
  return chosen && WriteRecord(*chosen, OldTail::Kept);
}

bool ProjectorPanelEditor::WriteRecord(const QString& fileName, OldTail tail) {
  try {
    WriteConfiguration(ToPath(fileName), record_, tail);
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
    return false;
  }
  fileName_ = fileName;
  SetBaseline();
  recentFiles_->Add(fileName);
  ShowStatus(tr("Saved %1").arg(NameAndFolder(fileName)));
  prompts_.Show(this, kSaved);
  RefreshTitle();
  return true;
}

bool ProjectorPanelEditor::OpenConfiguration(const QString& fileName) {
  try {
    record_ = ReadConfiguration(ToPath(fileName));
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
    return false;
  }
  ShowRecordInControls();
  fileName_ = fileName;
  RefreshTitle();
  recentFiles_->Add(fileName);
  ShowStatus(tr("Opened %1").arg(NameAndFolder(fileName)));
  return true;
}

void ProjectorPanelEditor::RecentFile_Click(const QString& fileName) {
  if (MayDiscard() && !OpenConfiguration(fileName)) recentFiles_->Remove(fileName);
}

void ProjectorPanelEditor::EditProjector() {
  windows_.Selector(this);
  ui_->TreeView1->Rebuild();
  if (!globals_.LibraryNotice.empty()) ShowStatus(QString::fromStdString(globals_.LibraryNotice));
  OfferNewVersion(globals_, prompts_, this, record_.Projector);
  ShowProjector();
}

// Stored first, then checked: what is downloaded is what is seen.
void ProjectorPanelEditor::Download() {
  StoreControlsToRecord();
  if (CheckConfiguration()) windows_.Download(this, record_);
}

// Never asks: what was not saved goes to a file of its own.
void ProjectorPanelEditor::Exit() {
  try {
    if (Modified()) KeepUnsavedWork(globals_.DataFolder, RecordAsShown(), settings_);
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
    return;
  }
  exiting_ = true;
  close();
}

void ProjectorPanelEditor::Help() { windows_.Help(this); }
void ProjectorPanelEditor::About() { windows_.About(this); }
void ProjectorPanelEditor::FindPanel() { windows_.FindPanel(this); }

void ProjectorPanelEditor::TreeView1_NodeClick(std::size_t element) {
  record_.Projector = globals_.ProjectorDatabase[element];
  ShowProjector();
}

void ProjectorPanelEditor::Filter_Change(const QString& text) {
  ui_->TreeView1->SetFilter(text);
  ui_->TreeView1->SelectProjector(record_.Projector);
}

void ProjectorPanelEditor::Options_Change() { ui_->StatusBar->ShowUnsaved(Modified()); }

void ProjectorPanelEditor::ShowRecordInControls() {
  ui_->Options->ShowRecordInControls(record_);
  SetBaseline();
  ShowProjector();
  if (ReconcileProjector(globals_, prompts_, this, record_.Projector)) {
    ui_->TreeView1->Rebuild();
    ShowProjector();
  }
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
  ui_->TreeView1->SelectProjector(projector);
  Options_Change();
}

void ProjectorPanelEditor::RefreshTitle() {
  setWindowTitle(fileName_.isEmpty() ? StartTitle()
                                     : QString::fromStdString(TitleOfFile(fileName_.toStdString())));
}

void ProjectorPanelEditor::ShowStatus(const QString& text) { ui_->StatusBar->ShowText(text); }

PanelConfiguration ProjectorPanelEditor::RecordAsShown() const {
  PanelConfiguration shown = record_;
  ui_->Options->StoreControlsToRecord(shown);
  return shown;
}

void ProjectorPanelEditor::SetBaseline() {
  baseline_ = RecordAsShown();
  Options_Change();
}

bool ProjectorPanelEditor::Modified() const { return RecordAsShown() != baseline_; }

bool ProjectorPanelEditor::MayDiscard() {
  if (!Modified()) return true;
  const std::string name = fileName_.isEmpty() ? "The new configuration" : windowTitle().toStdString();
  switch (prompts_.AskSave(this, {name + " has been changed.\r\nDo you want to save it first?",
                                  "Save Changes?", MessageIcon::Question})) {
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
  const auto taken = ImportProjectorFile(globals_, prompts_, this, ToPath(fileName)).LastTaken;
  if (taken) SaveLibrary(globals_, prompts_, this);
  ui_->TreeView1->Rebuild();
  ShowStatus((taken ? tr("Imported projectors from %1") : tr("Nothing imported from %1"))
                 .arg(NameAndFolder(fileName)));
}

void ProjectorPanelEditor::closeEvent(QCloseEvent* event) {
  if (!exiting_ && !MayDiscard()) {
    event->ignore();
    return;
  }
  settings_.setValue(kGeometryKey, saveGeometry());
  settings_.setValue(kSplitterKey, ui_->Splitter->saveState());
  event->accept();
}

void ProjectorPanelEditor::dragEnterEvent(QDragEnterEvent* event) {
  if (!DroppedFile(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

// A box inside the drop would hold up the program that the file came from.
void ProjectorPanelEditor::dropEvent(QDropEvent* event) {
  const QString fileName = DroppedFile(event->mimeData());
  event->acceptProposedAction();
  QTimer::singleShot(0, this, [this, fileName] { OpenDropped(fileName); });
}

void ProjectorPanelEditor::OpenDropped(const QString& fileName) {
  if (HasSuffix(fileName, ".BVD")) {
    ImportProjectors(fileName);
  } else if (MayDiscard()) {
    OpenConfiguration(fileName);
  }
}

}  // namespace qdm
