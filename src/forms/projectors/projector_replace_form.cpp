#include "forms/projectors/projector_replace_form.h"

#include "forms/projectors/new_name_form.h"
#include "forms/projectors/save_library.h"
#include "forms/shared/globals.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "projectors/field_captions.h"
#include "ui_projector_replace_form.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QPushButton>

#include <cstddef>
#include <string>
#include <vector>

namespace qdm {

ReplaceDialog::ReplaceDialog(const Texts& texts, Globals& globals, UserPrompts& prompts, QWidget* parent)
    : QDialog(parent),
      globals_(globals),
      prompts_(prompts),
      index_(globals.ProjectorDatabase.FindProjector(globals.CurrentProjector).value()),
      ui_(std::make_unique<Ui::ReplaceDialog>()) {
  ui_->setupUi(this);
  setWindowTitle(texts.Title);
  ui_->Explanation->setText(texts.Explanation);
  ui_->Manufacturer->setText(ToQString(globals.CurrentProjector.Manufacturer.Trimmed()));
  ui_->Model->setText(ToQString(globals.CurrentProjector.Model.Trimmed()));
  FillTable(texts.IncomingColumn);
}

ReplaceDialog::~ReplaceDialog() = default;

QPushButton* ReplaceDialog::AddButton(const char* name, const QString& caption) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(QLatin1String(name));
  ui_->Buttons->addWidget(button);
  if (button->objectName() == QLatin1String("DoNothing")) {  // what a hasty Enter means
    button->setDefault(true);
    button->setFocus();
  }
  return button;
}

void ReplaceDialog::AddBelowButtons(QWidget* widget) { ui_->Buttons->addWidget(widget); }

void ReplaceDialog::FillTable(const QString& incomingColumn) {
  const std::vector<DifferenceText> differences =
      DifferencesInWords(globals_.CurrentProjector, globals_.ProjectorDatabase[index_]);
  QTableWidget* table = ui_->Differences;
  table->setColumnCount(3);
  table->setHorizontalHeaderLabels({tr("What differs"), incomingColumn, tr("In my data base")});
  table->setRowCount(static_cast<int>(differences.size()));
  for (int row = 0; row < table->rowCount(); ++row) {
    const DifferenceText& difference = differences[static_cast<std::size_t>(row)];
    int column = 0;
    for (const std::string& text : {difference.Field, difference.First, difference.Second}) {
      auto* item = new QTableWidgetItem(QString::fromStdString(text));
      item->setToolTip(item->text().toHtmlEscaped());
      table->setItem(row, column++, item);
    }
  }
  table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
}

bool ReplaceDialog::AppendUnderNewName() {
  globals_.ClipboardProjector = globals_.CurrentProjector;
  NewNameForm names(globals_, prompts_, this);
  names.exec();
  return globals_.ClipboardProjector.Manufacturer != globals_.CurrentProjector.Manufacturer ||
         globals_.ClipboardProjector.Model != globals_.CurrentProjector.Model;
}

void ReplaceDialog::ReplaceElement(const ProjectorDefinition& projector) {
  ProjectorDefinition element = projector;
  CleanNames(element);  // a configuration may hold its manufacturer in lower case
  globals_.ProjectorDatabase.Replace(index_, element);
}

ProjectorReplaceForm::ProjectorReplaceForm(Globals& globals, UserPrompts& prompts, QWidget* parent)
    : ReplaceDialog(
          {tr("Replace Projector?"),
           tr("The projector in this configuration has the same manufacturer and model as one in the "
              "data base but is not the same."),
           tr("In the configuration")},
          globals, prompts, parent) {
  const auto* doNothing = AddButton(
      "DoNothing", tr("Keep the projector in the configuartion and make no changes in my data base"));
  const auto* newInData =
      AddButton("NewInData",
                tr("Add the projector in this configuration to my data base under a new manufacturer/model"));
  const auto* inConfiguration = AddButton(
      "ReplaceInConfiguration", tr("Replace projector in the configuration with the one in my data base"));
  const auto* inDataBase = AddButton(
      "ReplaceInDataBase", tr("Replace the projector in my data base with the one in the configuration"));
  connect(doNothing, &QPushButton::clicked, this, &QDialog::reject);
  connect(newInData, &QPushButton::clicked, this, &ProjectorReplaceForm::NewInData_Click);
  connect(inConfiguration, &QPushButton::clicked, this, &ProjectorReplaceForm::ReplaceInConfiguration_Click);
  connect(inDataBase, &QPushButton::clicked, this, &ProjectorReplaceForm::ReplaceInDataBase_Click);
}

void ProjectorReplaceForm::NewInData_Click() {
  if (!AppendUnderNewName()) {
    reject();
  } else if (SaveLibrary(globals_, prompts_, this)) {
    globals_.CurrentProjector = globals_.ClipboardProjector;
    accept();
  } else {
    globals_.ProjectorDatabase.Remove(globals_.ProjectorDatabase.Size() - 1);
  }
}

void ProjectorReplaceForm::ReplaceInConfiguration_Click() {
  globals_.CurrentProjector = globals_.ProjectorDatabase[index_];
  accept();
}

void ProjectorReplaceForm::ReplaceInDataBase_Click() {
  const ProjectorDefinition old = globals_.ProjectorDatabase[index_];
  ReplaceElement(globals_.CurrentProjector);
  if (SaveLibrary(globals_, prompts_, this)) {
    accept();
  } else {
    globals_.ProjectorDatabase.Replace(index_, old);
  }
}

ProjectorReplaceForm2::ProjectorReplaceForm2(Globals& globals, UserPrompts& prompts, QWidget* parent)
    : ReplaceDialog(
          {tr("Replace/Add Projector"),
           tr("The projector in this BVD has the same manufacturer and model as one in the data base "
              "but is not the same."),
           tr("In this BVD")},
          globals, prompts, parent) {
  const auto* inDataBase =
      AddButton("ReplaceInDataBase", tr("Replace the projector in my data base with this projector"));
  auto* newInData =
      AddButton("NewInData", tr("Add this projector to my data base under a new manufacturer/model"));
  const auto* doNothing = AddButton("DoNothing", tr("Do not import this projector"));
  forAll_ = new QCheckBox(tr("Do the same with all further projectors of this file that differ"), this);
  forAll_->setObjectName(QStringLiteral("ForAllCheck"));
  AddBelowButtons(forAll_);
  connect(inDataBase, &QPushButton::clicked, this, &ProjectorReplaceForm2::ReplaceInDataBase_Click);
  connect(newInData, &QPushButton::clicked, this, &ProjectorReplaceForm2::NewInData_Click);
  connect(doNothing, &QPushButton::clicked, this, &ProjectorReplaceForm2::DoNothing_Click);
  // Each needs a name of its own.
  connect(forAll_, &QCheckBox::toggled, newInData, &QPushButton::setDisabled);
}

void ProjectorReplaceForm2::ReplaceInDataBase_Click() {
  ReplaceElement(globals_.CurrentProjector);
  Answer(ReplaceAnswer::ReplaceInDataBase);
}

void ProjectorReplaceForm2::NewInData_Click() {
  if (AppendUnderNewName()) globals_.CurrentProjector = globals_.ClipboardProjector;
  accept();
}

void ProjectorReplaceForm2::DoNothing_Click() { Answer(ReplaceAnswer::DoNothing); }

void ProjectorReplaceForm2::Answer(ReplaceAnswer answer) {
  if (forAll_->isChecked()) answerForAll_ = answer;
  accept();
}

std::optional<ProjectorDefinition> SettleConfigurationConflict(Globals& globals, UserPrompts& prompts,
                                                               QWidget* parent,
                                                               const ProjectorDefinition& projector) {
  globals.CurrentProjector = projector;
  CleanName(globals.CurrentProjector.Manufacturer);  // its case is its own
  CleanName(globals.CurrentProjector.Model);
  const ProjectorDefinition incoming = globals.CurrentProjector;
  ProjectorReplaceForm form(globals, prompts, parent);
  form.exec();
  if (globals.CurrentProjector == incoming) return std::nullopt;
  return globals.CurrentProjector;
}

}  // namespace qdm
