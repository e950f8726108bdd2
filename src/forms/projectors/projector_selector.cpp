#include "forms/projectors/projector_selector.h"

#include "base/words.h"
#include "forms/controls/screen_fit.h"
#include "forms/controls/undo_actions.h"
#include "forms/manuals/manual_form.h"
#include "forms/projectors/new_name_form.h"
#include "forms/projectors/projector_import.h"
#include "forms/projectors/save_library.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/globals.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "projectors/library_step.h"
#include "projectors/projector_files.h"
#include "ui_projector_selector.h"

#include <QAction>
#include <QFileInfo>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QUndoCommand>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace qdm {
namespace {

std::string NameOf(const ProjectorDefinition& projector) {
  return projector.Manufacturer.TrimmedUtf8() + " / " + projector.Model.TrimmedUtf8();
}

}  // namespace

// One command's changes of the library.
class ProjectorSelector::Step : public QUndoCommand {
 public:
  Step(ProjectorSelector& selector, LibraryStep step, const QString& text)
      : QUndoCommand(text), selector_(selector), step_(std::move(step)) {}

  void undo() override {
    step_.Undo(selector_.globals_.ProjectorDatabase);
    selector_.ShowAfterStep(step_.LastBefore());
  }
  void redo() override {
    if (std::exchange(done_, true)) {
      step_.Redo(selector_.globals_.ProjectorDatabase);
      selector_.ShowAfterStep(step_.LastAfter());
    }
  }

 private:
  ProjectorSelector& selector_;
  const LibraryStep step_;
  bool done_ = false;  // pushing it on the stack calls redo
};

struct ProjectorSelector::Command {
  const char* Key;
  const char* Caption;
  const char* Icon;
  QList<QKeySequence> Shortcuts;
  // Commands on the selected definition have their keys in the tree alone: in the filter box they edit its
  // text.
  bool InTreeOnly;
  void (ProjectorSelector::*Do)();
};

// In the toolbar's order.
const std::vector<ProjectorSelector::Command>& ProjectorSelector::Commands() {
  static const std::vector<Command> kCommands = {
      {"NEW", QT_TR_NOOP("New"), "projectornew", {QKeySequence::New}, false, &ProjectorSelector::New},
      {"FROM MANUAL",
       QT_TR_NOOP("From a manual..."),
       "frommanual",
       {Qt::CTRL | Qt::Key_M},
       false,
       &ProjectorSelector::FromManual},
      {"COPY", QT_TR_NOOP("Copy"), "copy", {QKeySequence::Copy}, true, &ProjectorSelector::Copy},
      {"CUT", QT_TR_NOOP("Cut"), "cut", {QKeySequence::Cut}, true, &ProjectorSelector::Cut},
      {"PASTE", QT_TR_NOOP("Paste"), "paste", {QKeySequence::Paste}, true, &ProjectorSelector::Paste},
      {"DELETE", QT_TR_NOOP("Delete"), "delete", {QKeySequence::Delete}, true, &ProjectorSelector::Delete},
      {"EDIT", QT_TR_NOOP("Edit"), "edit", {Qt::Key_Return, Qt::Key_Enter}, true, &ProjectorSelector::Edit},
      {"RENAME", QT_TR_NOOP("Rename"), "editprojector", {Qt::Key_F2}, false, &ProjectorSelector::Rename},
      {"IMPORT", QT_TR_NOOP("Import"), "import", {Qt::CTRL | Qt::Key_I}, false, &ProjectorSelector::Import},
      {"EXPORT", QT_TR_NOOP("Export"), "export", {Qt::CTRL | Qt::Key_E}, false, &ProjectorSelector::Export},
      {"EXIT", QT_TR_NOOP("Exit"), "exit", {}, false, &ProjectorSelector::Exit},
  };
  return kCommands;
}

ProjectorSelector::ProjectorSelector(Globals& globals, UserPrompts& prompts, SetupDialog setUp,
                                     QWidget* parent)
    : QDialog(parent),
      globals_(globals),
      prompts_(prompts),
      setUp_(std::move(setUp)),
      ui_(std::make_unique<Ui::ProjectorSelector>()) {
  ui_->setupUi(this);
  ui_->Filter->SetView(ui_->TreeView1);
  ui_->Splitter->setStretchFactor(0, 1);
  ui_->Splitter->setStretchFactor(1, 1);
  FillToolbar();
  connect(ui_->Filter, &QLineEdit::textChanged, ui_->TreeView1, &ProjectorTree::SetFilter);
  connect(ui_->Filter, &QLineEdit::returnPressed, this, &ProjectorSelector::Filter_Return);
  connect(ui_->TreeView1, &ProjectorTree::SelectionChanged, this, &ProjectorSelector::UpdateToolbar);
  connect(ui_->TreeView1, &QTreeView::doubleClicked, ActionOf("EDIT"), &QAction::trigger);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, ui_->Filter,
          qOverload<>(&QWidget::setFocus));
  Form_Load();
  FitToScreen(this);
}

ProjectorSelector::~ProjectorSelector() = default;

void ProjectorSelector::RememberIn(QSettings& settings) { ui_->TreeView1->RememberIn(settings); }

void ProjectorSelector::FillToolbar() {
  for (const Command& command : Commands()) {
    const bool exit = command.Do == &ProjectorSelector::Exit;
    if (exit) AddUndo();
    auto* action = new QAction(QIcon(QStringLiteral(":/icons/%1.png").arg(QLatin1String(command.Icon))),
                               tr(command.Caption), this);
    action->setObjectName(QLatin1String(command.Key));
    action->setShortcuts(command.Shortcuts);
    action->setShortcutContext(command.InTreeOnly ? Qt::WidgetShortcut : Qt::WindowShortcut);
    connect(action, &QAction::triggered, this, [this, &command] { Run(command); });
    ui_->Toolbar1->addAction(action);
    if (!exit) ui_->TreeView1->addAction(action);
    Enable(command.Key, true);
  }
}

void ProjectorSelector::AddUndo() {
  const UndoActions actions = MakeUndoActions(undo_, this);
  ui_->Toolbar1->addActions({actions.Undo, actions.Redo});
}

// Closing is no change of the library: what it takes from others cannot be undone.
void ProjectorSelector::Run(const Command& command) {
  if (command.Do == &ProjectorSelector::Exit) return Exit();
  const QScopedValueRollback busy(busy_, true);
  Tell({});
  LibraryRecording recording(globals_.ProjectorDatabase);
  (this->*command.Do)();
  LibraryStep step = recording.Take();
  if (step.Size() == 0) return;
  const ProjectorDefinition* named = step.LastAfter() != nullptr ? step.LastAfter() : step.LastBefore();
  const QString text = step.Size() > 1
                           ? tr("%1 %n projectors", "a command and its object", static_cast<int>(step.Size()))
                           : tr("%1 %2 / %3", "a command and its object")
                                 .arg(QStringLiteral("%1"), ToQString(named->Manufacturer.Trimmed()),
                                      ToQString(named->Model.Trimmed()));
  undo_.push(new Step(*this, std::move(step), text.arg(tr(command.Caption))));
}

void ProjectorSelector::ShowAfterStep(const ProjectorDefinition* projector) {
  Tell({});
  if (projector != nullptr) {
    ShowProjector(*projector);
  } else {
    ui_->TreeView1->Rebuild();
  }
}

bool ProjectorSelector::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate && !busy_) ReadAgain();
  return QDialog::event(event);
}

void ProjectorSelector::ReadAgain() {
  const QScopedValueRollback busy(busy_, true);
  if (!ReadLibraryAgain(globals_, prompts_, this)) return;
  undo_.clear();
  ui_->TreeView1->Rebuild();
  Tell(tr("Somebody else has saved the data base: this is what it holds now."));
}

void ProjectorSelector::Form_Load() {
  ui_->TreeView1->SetLibrary(globals_.ProjectorDatabase);
  Tell({});
  UpdateToolbar();
  ui_->Filter->setFocus();
}

void ProjectorSelector::Tell(const QString& text) {
  ui_->Status->setText(text);
  ui_->Status->setVisible(!text.isEmpty());
}

// From the text that was typed to the first model that has it.
void ProjectorSelector::Filter_Return() {
  ProjectorTree* tree = ui_->TreeView1;
  const QModelIndex first = tree->Model().index(0, 0, tree->Model().index(0, 0));
  if (!tree->SelectedElement() && first.isValid()) tree->setCurrentIndex(first);
  tree->setFocus();
}

void ProjectorSelector::UpdateToolbar() {
  const ProjectorTree& tree = *ui_->TreeView1;
  const bool model = tree.SelectedElement().has_value();
  for (const char* key : {"EDIT", "COPY", "CUT", "RENAME"}) Enable(key, model, tr("Choose a model first"));
  Enable("DELETE", tree.OnlyModelsSelected(), tr("Choose a model first"));
  Enable("EXPORT", !tree.SelectedElements().empty(), tr("Choose a model or a manufacturer first"));
  Enable("PASTE", HasBothNames(globals_.ClipboardProjector), tr("Nothing was copied"));
  ShowPreview();
}

// "Copy (Ctrl+C)", and below it why it cannot be used.
void ProjectorSelector::Enable(const char* key, bool enabled, const QString& reason) {
  QAction* action = ActionOf(key);
  const QString keys = action->shortcut().toString(QKeySequence::NativeText);
  const QString name = keys.isEmpty() ? action->text() : QStringLiteral("%1 (%2)").arg(action->text(), keys);
  action->setEnabled(enabled);
  action->setToolTip(enabled ? name : QStringLiteral("%1\n%2").arg(name, reason));
  if (QWidget* button = ui_->Toolbar1->widgetForAction(action))
    button->setAccessibleDescription(enabled ? QString() : reason);
}

void ProjectorSelector::ShowPreview() {
  const bool model = ui_->TreeView1->SelectedElement().has_value();
  ui_->Preview->setPlainText(model ? SummaryText(SelectedProjector()) : QString());
}

void ProjectorSelector::New() {
  globals_.CurrentProjector = {};  // clearing would leave two fields at what was viewed last
  SetUpCurrentProjector();
}

void ProjectorSelector::FromManual() {
  const auto filled = ManualForm::Fill({}, prompts_, this);
  if (!filled) return;
  globals_.CurrentProjector = *filled;
  SetUpCurrentProjector();
}

void ProjectorSelector::Copy() {
  globals_.ClipboardProjector = SelectedProjector();
  UpdateToolbar();
}

void ProjectorSelector::Cut() {
  if (!Confirm(Say("Are you sure you want to cut(delete) %1 projector?", {NameOf(SelectedProjector())})))
    return;
  Copy();
  RemoveSelected();
}

void ProjectorSelector::Paste() {
  NewNameForm names(globals_, prompts_, this);
  if (names.exec() != QDialog::Accepted) return;
  ShowProjector(globals_.ClipboardProjector);
}

void ProjectorSelector::Delete() {
  const std::vector<std::size_t> elements = ui_->TreeView1->SelectedElements();
  if (elements.size() == 1) {
    if (Confirm(Say("Are you sure you want to delete %1 projector?", {NameOf(SelectedProjector())})))
      RemoveSelected();
  } else if (Confirm(tr("Are you sure you want to delete these %n projectors?", "",
                        static_cast<int>(elements.size()))
                         .toStdString())) {
    RemoveAll(elements);
  }
}

void ProjectorSelector::Edit() {
  globals_.CurrentProjector = SelectedProjector();
  SetUpCurrentProjector();
}

void ProjectorSelector::Rename() {
  const std::size_t element = *ui_->TreeView1->SelectedElement();
  NewNameForm names(globals_, prompts_, element, this);
  if (names.exec() == QDialog::Accepted) ShowProjector(globals_.ProjectorDatabase[element]);
}

void ProjectorSelector::Import() {
  const std::optional<QString> file = prompts_.OpenFile(this, tr("Import Projectors"), kProjectorFileFilter);
  if (!file) return;
  const ImportedFile imported = ImportProjectorFile(globals_, prompts_, this, ToPath(*file));
  if (imported.LastTaken) {
    ShowProjector(globals_.ProjectorDatabase[*imported.LastTaken]);
  } else {
    ui_->TreeView1->Rebuild();
  }
  Tell(imported.Told);
}

void ProjectorSelector::Export() {
  const std::vector<std::size_t> elements = ui_->TreeView1->SelectedElements();
  const auto count = static_cast<int>(elements.size());
  const QString title = count == 1 ? tr("Export 1 Projector") : tr("Export %n Projectors", "", count);
  const std::optional<QString> file = prompts_.SaveFile(this, title, kProjectorFileFilter);
  if (!file) return;
  std::vector<ProjectorDefinition> definitions;
  definitions.reserve(elements.size());
  for (const std::size_t element : elements) definitions.push_back(globals_.ProjectorDatabase[element]);
  try {
    DoBusy(this, tr("Still writing %1.").arg(QFileInfo(*file).fileName()),
           [&] { ExportDefinitions(ToPath(*file), definitions); });
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
    return;
  }
  prompts_.Show(this, {Say("Projector definition saved"), Say("File Saved."), MessageIcon::None});
}

void ProjectorSelector::Exit() { close(); }

void ProjectorSelector::SetUpCurrentProjector() {
  setUp_(this);
  if (globals_.ProjectorDatabase.FindProjector(globals_.CurrentProjector)) {
    ShowProjector(globals_.CurrentProjector);
  } else {
    ui_->TreeView1->Rebuild();
  }
}

bool ProjectorSelector::Confirm(const std::string& question) {
  return prompts_.AskYesNo(this, {question, Say("Are you sure?"), MessageIcon::Question});
}

// In the tree's order, which is not the library's.
void ProjectorSelector::RemoveAll(std::vector<std::size_t> elements) {
  std::sort(elements.begin(), elements.end(), std::greater<>());
  for (const std::size_t element : elements) globals_.ProjectorDatabase.Remove(element);
  ui_->TreeView1->Rebuild();
}

// Selected then: the next model, the one before when it was its manufacturer's last, the next manufacturer
// when it was the only one.
void ProjectorSelector::RemoveSelected() {
  ProjectorTree* tree = ui_->TreeView1;
  const auto neighbourOf = [](const QModelIndex& node) {
    const QModelIndex next = node.siblingAtRow(node.row() + 1);
    return next.isValid() ? next : node.siblingAtRow(node.row() - 1);
  };
  QModelIndex neighbour = neighbourOf(tree->currentIndex());
  if (!neighbour.isValid()) neighbour = neighbourOf(tree->currentIndex().parent());
  const QString key = neighbour.data(ProjectorTreeModel::KeyRole).toString();
  globals_.ProjectorDatabase.Remove(*tree->SelectedElement());
  tree->Rebuild();
  tree->setCurrentIndex(tree->Model().IndexOfKey(key));
}

QAction* ProjectorSelector::ActionOf(const char* key) const {
  return findChild<QAction*>(QLatin1String(key), Qt::FindDirectChildrenOnly);
}

const ProjectorDefinition& ProjectorSelector::SelectedProjector() const {
  return globals_.ProjectorDatabase[*ui_->TreeView1->SelectedElement()];
}

void ProjectorSelector::ShowProjector(const ProjectorDefinition& projector) {
  ProjectorTree* tree = ui_->TreeView1;
  tree->Rebuild();
  if (!tree->Model().IndexOf(projector).isValid()) ui_->Filter->clear();
  tree->SelectProjector(projector);
}

// A merge that was not followed by closing has moved elements: steps from before it have lost their places.
void ProjectorSelector::done(int result) {
  const QScopedValueRollback busy(busy_, true);
  const auto held = globals_.ProjectorDatabase.FileState().Hash;
  if (SaveLibraryOrAsk(globals_, prompts_, this)) return QDialog::done(result);
  if (globals_.ProjectorDatabase.FileState().Hash == held) return;
  undo_.clear();
  ui_->TreeView1->Rebuild();
}

}  // namespace qdm
