#include "forms/projectors/new_name_form.h"

#include "base/code_page.h"
#include "forms/projectors/name_validator.h"
#include "forms/shared/qt_text.h"
#include "ui_new_name_form.h"

#include <QLineEdit>
#include <QPushButton>

namespace qdm {
namespace {

FixedText<32> NameIn(const QLineEdit* box) { return FixedText<32>(TrimBlanks(box->text().toStdU16String())); }

}  // namespace

NewNameForm::NewNameForm(Globals& globals, UserPrompts& prompts, QWidget* parent)
    : QDialog(parent), globals_(globals), prompts_(prompts), ui_(std::make_unique<Ui::NewNameForm>()) {
  ui_->setupUi(this);
  for (QLineEdit* box : {ui_->Text1, ui_->Text2}) {
    box->setMaxLength(static_cast<int>(FixedText<32>::kLength));
    box->setValidator(new NameValidator(box));
    connect(box, &QLineEdit::textChanged, this, &NewNameForm::Text_Change);
    connect(box, &QLineEdit::inputRejected, this, &NewNameForm::ShowWhatCanBeTyped);
  }
  connect(ui_->Done, &QPushButton::clicked, this, &NewNameForm::Done_Click);
  connect(ui_->Cancel, &QPushButton::clicked, this, &NewNameForm::reject);
  Form_Load();
}

NewNameForm::~NewNameForm() = default;

void NewNameForm::Form_Load() {
  ui_->Text1->setText(ToQString(globals_.ClipboardProjector.Manufacturer.Trimmed()));
  ui_->Text2->setText(ToQString(globals_.ClipboardProjector.Model.Trimmed()));
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

void NewNameForm::ShowWhatCanBeTyped() {
  ui_->Hint->setText(tr("A name has up to 32 characters of the Western European set (Windows-1252)."));
}

void NewNameForm::Done_Click() {
  FixedText<32> manufacturer = NameIn(ui_->Text1);
  manufacturer.Assign(UpperCase(manufacturer.View()));
  const FixedText<32> model = NameIn(ui_->Text2);
  if (globals_.ProjectorDatabase.FindProjector(manufacturer, model)) {
    prompts_.Show(this, {"Projector " + manufacturer.TrimmedUtf8() + " / " + model.TrimmedUtf8() +
                             " already exists cannot paste to this name!",
                         "Sorry cannot paste", MessageIcon::Exclamation});
    return;
  }
  globals_.ClipboardProjector.Manufacturer = manufacturer;
  globals_.ClipboardProjector.Model = model;
  globals_.ProjectorDatabase.Append(globals_.ClipboardProjector);
  accept();
}

}  // namespace qdm
