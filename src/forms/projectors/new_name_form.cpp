#include "forms/projectors/new_name_form.h"

#include "forms/projectors/name_validator.h"
#include "forms/shared/globals.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "projectors/projector_names.h"
#include "ui_new_name_form.h"

#include <QLineEdit>
#include <QPushButton>

namespace qdm {
namespace {

FixedText<32> NameIn(const QLineEdit* box) { return TypedName(box->text().toStdU16String()); }

}  // namespace

NewNameForm::NewNameForm(Globals& globals, UserPrompts& prompts, QWidget* parent)
    : NewNameForm(globals, prompts, std::nullopt, parent) {}

NewNameForm::NewNameForm(Globals& globals, UserPrompts& prompts, std::size_t element, QWidget* parent)
    : NewNameForm(globals, prompts, std::optional(element), parent) {
  setWindowTitle(tr("Rename Projector"));
}

NewNameForm::NewNameForm(Globals& globals, UserPrompts& prompts, std::optional<std::size_t> renamed,
                         QWidget* parent)
    : QDialog(parent),
      globals_(globals),
      prompts_(prompts),
      renamed_(renamed),
      ui_(std::make_unique<Ui::NewNameForm>()) {
  ui_->setupUi(this);
  for (QLineEdit* box : {ui_->Text1, ui_->Text2}) {
    TakeNamesOnly(box);
    connect(box, &QLineEdit::textChanged, this, &NewNameForm::Text_Change);
    connect(box, &QLineEdit::inputRejected, this, [this, box] { ShowWhatCanBeTyped(box); });
  }
  connect(ui_->Done, &QPushButton::clicked, this, &NewNameForm::Done_Click);
  connect(ui_->Cancel, &QPushButton::clicked, this, &NewNameForm::reject);
  Form_Load();
}

NewNameForm::~NewNameForm() = default;

void NewNameForm::Form_Load() {
  const ProjectorDefinition& named =
      renamed_ ? globals_.ProjectorDatabase[*renamed_] : globals_.ClipboardProjector;
  ui_->Text1->setText(ToQString(named.Manufacturer.Trimmed()));
  ui_->Text2->setText(ToQString(named.Model.Trimmed()));
  Text_Change();
  ui_->Text2->selectAll();
  ui_->Text2->setFocus();
}

void NewNameForm::Text_Change() {
  ui_->Hint->clear();
  const FixedText<32> blank;
  const bool bothNames = NameIn(ui_->Text1) != blank && NameIn(ui_->Text2) != blank;
  ui_->Done->setEnabled(bothNames);
  ui_->Done->setToolTip(bothNames ? QString() : tr("Enter a manufacturer and a model."));
}

void NewNameForm::ShowWhatCanBeTyped(const QLineEdit* box) { ui_->Hint->setText(WhyNameWasRefused(box)); }

std::optional<Message> NewNameForm::Store() {
  const FixedText<32> manufacturer = NameIn(ui_->Text1);
  const FixedText<32> model = NameIn(ui_->Text2);
  ProjectorLibrary& library = globals_.ProjectorDatabase;
  if (renamed_) return RenameElement(library, *renamed_, manufacturer, model);
  return PasteUnderNames(library, globals_.ClipboardProjector, manufacturer, model);
}

void NewNameForm::Done_Click() {
  const std::optional<Message> refusal = Store();
  if (refusal) {
    prompts_.Show(this, *refusal);
  } else {
    accept();
  }
}

}  // namespace qdm
