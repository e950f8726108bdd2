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
  const auto refusal = PasteUnderNames(globals_.ProjectorDatabase, globals_.ClipboardProjector,
                                       NameIn(ui_->Text1), NameIn(ui_->Text2));
  if (refusal) {
    prompts_.Show(this, *refusal);
  } else {
    accept();
  }
}

}  // namespace qdm
