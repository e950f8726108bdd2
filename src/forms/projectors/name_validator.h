// Takes what a record's text can hold on disk: printable characters of Windows-1252. Remembers what it
// refused last, so that the user can be told.
#pragma once

#include <QString>
#include <QValidator>

class QLineEdit;

namespace qdm {

class NameValidator : public QValidator {
  Q_OBJECT

 public:
  using QValidator::QValidator;

  State validate(QString& text, int& cursor) const override;
  // A character of the last text that was refused; empty when it was taken.
  const QString& Refused() const { return refused_; }

 private:
  mutable QString refused_;
};

// Up to 32 characters, as every name.
void TakeNamesOnly(QLineEdit* box);
// For such a box, right after it rejected an input.
QString WhyNameWasRefused(const QLineEdit* box);

}  // namespace qdm
