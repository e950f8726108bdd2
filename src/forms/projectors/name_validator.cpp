#include "forms/projectors/name_validator.h"

#include "base/code_page.h"
#include "base/fixed_text.h"

#include <QLineEdit>

namespace qdm {

QValidator::State NameValidator::validate(QString& text, int&) const {
  refused_.clear();
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (IsNameCharacter(text.at(i).unicode())) continue;
    const bool pair = text.at(i).isHighSurrogate() && i + 1 < text.size();
    refused_ = text.mid(i, pair ? 2 : 1);
    return Invalid;
  }
  return Acceptable;
}

void TakeNamesOnly(QLineEdit* box) {
  box->setMaxLength(static_cast<int>(FixedText<32>::kLength));
  box->setValidator(new NameValidator(box));
}

QString WhyNameWasRefused(const QLineEdit* box) {
  const auto* validator = qobject_cast<const NameValidator*>(box->validator());
  const QString refused = validator != nullptr ? validator->Refused() : QString();
  if (refused.isEmpty()) return NameValidator::tr("A name has up to 32 characters.");
  if (!refused.at(0).isPrint() && !refused.at(0).isSurrogate()) {
    return NameValidator::tr("A name has no line ends or other control characters.");
  }
  return NameValidator::tr(
             "A name cannot hold “%1”: only characters of the Western European set "
             "(Windows-1252).")
      .arg(refused);
}

}  // namespace qdm
