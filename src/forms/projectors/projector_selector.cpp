#include "forms/projectors/projector_selector.h"

#include "forms/manuals/manual_form.h"
#include "forms/projectors/new_name_form.h"
#include "forms/projectors/projector_import.h"
#include "forms/projectors/save_library.h"
#include "forms/shared/globals.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "projectors/projector_files.h"
#include "ui_projector_selector.h"

#include <QAction>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QShortcut>

#include <cstddef>
#include <optional>
#include <utility>

namespace qdm {

struct ProjectorSelector::Command {
  const char* Key;
  const char* Caption;
  const char* Icon;
  QList<QKeySequence> Shortcuts;
  // Commands on the selected definition have their keys in the tree alone: in the filter box they edit its
  // text.
  bool InTreeOnly;
  void (ProjectorSelector::*Run)();
};

// In the toolbar's order.
const std::vector<ProjectorSelector::Command>& ProjectorSelector::Commands() {
  static const std::vector<Command> kCommands = {
      {"NEW", "New", "projectornew", {QKeySequence::New}, false, &ProjectorSelector::New},
      {"FROM MANUAL", "From a manual...", "frommanual", {}, false, &ProjectorSelector::FromManual},
      {"COPY", "Copy", "copy", {QKeySequence::Copy}, true, &ProjectorSelector::Copy},
      {"CUT", "Cut", "cut", {QKeySequence::Cut}, true, &ProjectorSelector::Cut},
      {"PASTE", "Paste", "paste", {QKeySequence::Paste}, true, &ProjectorSelector::Paste},
      {"DELETE", "Delete", "delete", {QKeySequence::Delete}, true, &ProjectorSelector::Delete},
      {"EDIT", "Edit", "edit", {Qt::Key_Return, Qt::Key_Enter}, true, &ProjectorSelector::Edit},
      {"IMPORT", "Import", "import", {}, false, &ProjectorSelector::Import},
      {"EXPORT", "Export", "export", {}, false, &ProjectorSelector::Export},
      {"EXIT", "Exit", "exit", {}, false, &ProjectorSelector::Exit},
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
  FillToolbar();
  connect(ui_->Filter, &QLineEdit::textChanged, ui_->TreeView1, &ProjectorTree::SetFilter);
  connect(ui_->Filter, &QLineEdit::returnPressed, this, &ProjectorSelector::Filter_Return);
  connect(ui_->TreeView1, &ProjectorTree::SelectionChanged, this, &ProjectorSelector::UpdateToolbar);
  connect(ui_->TreeView1, &QTreeView::doubleClicked, ActionOf("EDIT"), &QAction::trigger);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, ui_->Filter,
          qOverload<>(&QWidget::setFocus));
  Form_Load();
}

ProjectorSelector::~ProjectorSelector() = default;

void ProjectorSelector::FillToolbar() {
  for (const Command& command : Commands()) {
    const QString caption = tr(command.Caption);
    auto* action =
        new QAction(QIcon(QStringLiteral(":/icons/%1.png").arg(QLatin1String(command.Icon))), caption, this);
    action->setObjectName(QLatin1String(command.Key));
    action->setShortcuts(command.Shortcuts);
    action->setShortcutContext(command.InTreeOnly ? Qt::WidgetShortcut : Qt::WindowShortcut);
    if (!command.Shortcuts.empty()) {
      action->setToolTip(
          QStringLiteral("%1 (%2)").arg(caption, action->shortcut().toString(QKeySequence::NativeText)));
    }
    connect(action, &QAction::triggered, this, command.Run);
    ui_->Toolbar1->addAction(action);
    if (command.Run != &ProjectorSelector::Exit) ui_->TreeView1->addAction(action);
  }
}

void ProjectorSelector::Form_Load() {
  ui_->TreeView1->SetLibrary(globals_.ProjectorDatabase);
  UpdateToolbar();
  ui_->Filter->setFocus();
}

// From the text that was typed to the first model that has it.
void ProjectorSelector::Filter_Return() {
  ProjectorTree* tree = ui_->TreeView1;
  const QModelIndex first = tree->Model().index(0, 0, tree->Model().index(0, 0));
  if (!tree->SelectedElement() && first.isValid()) tree->setCurrentIndex(first);
  tree->setFocus();
}

void ProjectorSelector::UpdateToolbar() {
  const bool model = ui_->TreeView1->SelectedElement().has_value();
  for (const char* key : {"DELETE", "EDIT", "COPY", "CUT"}) ActionOf(key)->setEnabled(model);
  ActionOf("EXPORT")->setEnabled(!ui_->TreeView1->SelectedElements().empty());
  ActionOf("PASTE")->setEnabled(HasBothNames(globals_.ClipboardProjector));
}

void ProjectorSelector::New() {
  ClearProjector(globals_.CurrentProjector);
  globals_.CurrentProjector.Baudrate = 0;  // which clearing leaves as it was
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
  if (!Confirm("Are you sure you want to cut(delete) ")) return;
  Copy();
  RemoveSelected();
}

void ProjectorSelector::Paste() {
  NewNameForm names(globals_, prompts_, this);
  if (names.exec() != QDialog::Accepted) return;
  ShowProjector(globals_.ClipboardProjector);
}

void ProjectorSelector::Delete() {
  if (Confirm("Are you sure you want to delete ")) RemoveSelected();
}

void ProjectorSelector::Edit() {
  globals_.CurrentProjector = SelectedProjector();
  SetUpCurrentProjector();
}

void ProjectorSelector::Import() {
  const std::optional<QString> file = prompts_.OpenFile(this, kProjectorFileFilter);
  if (!file) return;
  const std::optional<std::size_t> taken = ImportProjectorFile(globals_, prompts_, this, ToPath(*file));
  if (taken) {
    ShowProjector(globals_.ProjectorDatabase[*taken]);
  } else {
    ui_->TreeView1->Rebuild();
  }
}

void ProjectorSelector::Export() {
  const std::vector<std::size_t> elements = ui_->TreeView1->SelectedElements();
  const std::optional<QString> file = prompts_.SaveFile(this, kProjectorFileFilter);
  if (!file) return;
  std::vector<ProjectorDefinition> definitions;
  definitions.reserve(elements.size());
  for (const std::size_t element : elements) definitions.push_back(globals_.ProjectorDatabase[element]);
  try {
    ExportDefinitions(ToPath(*file), definitions);
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
    return;
  }
  prompts_.Show(this, {"Projector definition saved", "File Saved.", MessageIcon::None});
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

bool ProjectorSelector::Confirm(const char* question) {
  const ProjectorDefinition& projector = SelectedProjector();
  return prompts_.AskYesNo(this, {question + projector.Manufacturer.TrimmedUtf8() + " / " +
                                      projector.Model.TrimmedUtf8() + " projector?",
                                  "Are you sure?", MessageIcon::Question});
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

void ProjectorSelector::done(int result) {
  if (SaveLibraryOrAsk(globals_, prompts_, this)) QDialog::done(result);
}

}  // namespace qdm
