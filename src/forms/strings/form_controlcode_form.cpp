#include "forms/strings/form_controlcode_form.h"

#include "serial_strings/serial_string.h"

#include <QLabel>

#include <cstdint>
#include <string_view>

namespace qdm {
namespace {

constexpr int kRows = 8;

QStringList Names() {
  QStringList names;
  for (const std::string_view name : ControlCodeNames) {
    names << QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
  }
  return names;
}

}  // namespace

FormControlcodeForm::FormControlcodeForm(QWidget* parent) : ChoicePopup(Names(), kRows, parent) {
  setObjectName(QStringLiteral("FormControlcodeForm"));
  setAccessibleName(tr("Control code"));
  for (int code = 0; code < static_cast<int>(ControlCodeNames.size()); ++code) {
    Label(code)->setToolTip(
        tr("%1, %2 in Hex").arg(code).arg(QString::fromStdString(HexByte(static_cast<std::int16_t>(code)))));
    Label(code)->setMinimumWidth(48);
  }
}

}  // namespace qdm
