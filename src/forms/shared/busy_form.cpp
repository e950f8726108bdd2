#include "forms/shared/busy_form.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace qdm {

BusyForm::BusyForm(QWidget* parent) : QDialog(parent), text_(new QLabel(this)) {
  setWindowTitle(tr("Please Wait"));
  setModal(true);
  text_->setObjectName(QStringLiteral("What"));
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  constexpr int kWidthInCharacters = 60;
  text_->setMinimumWidth(fontMetrics().averageCharWidth() * kWidthInCharacters);
  giveUp_ = new QPushButton(tr("Give up"), this);
  giveUp_->setObjectName(QStringLiteral("GiveUp"));
  auto* column = new QVBoxLayout(this);
  column->setSizeConstraint(QLayout::SetFixedSize);
  column->addWidget(text_);
  column->addWidget(giveUp_, 0, Qt::AlignRight);
  connect(giveUp_, &QPushButton::clicked, this, &BusyForm::reject);
}

void BusyForm::Say(const QString& text, bool mayGiveUp) {
  text_->setText(text);
  giveUp_->setVisible(mayGiveUp);
  if (isVisible() || givenUp_) return;
  show();
  giveUp_->setFocus();
}

// What cannot be given up stays until it is done.
void BusyForm::reject() {
  if (giveUp_->isHidden()) return;
  givenUp_ = true;
  QDialog::reject();
}

}  // namespace qdm
