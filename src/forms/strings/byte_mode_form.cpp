#include "forms/strings/byte_mode_form.h"

#include "serial_strings/string_record.h"

#include <QKeyEvent>
#include <QLabel>

namespace qdm {
namespace {

constexpr int kAscii = static_cast<int>(ByteKind::ASC);

}  // namespace

ByteModeForm::ByteModeForm(int otherVariableByte, bool canIgnore, QWidget* parent)
    : ChoicePopup(
          {tr("ASCII"), tr("HEX"), tr("DECIMAL"), tr("BINARY"), tr("CONTROL"), tr("VARIABLE"), tr("IGNORE")},
          static_cast<int>(kByteKinds), parent) {
  setObjectName(QStringLiteral("ByteModeForm"));
  setAccessibleName(tr("Byte mode"));
  Label(kAscii)->setToolTip(tr("Left click set this byte to ASCII, right click set all bytes to ASCII"));
  if (otherVariableByte > 0) {
    Forbid(static_cast<int>(ByteKind::VAR), tr("Byte %1 is the variable byte").arg(otherVariableByte));
  }
  if (!canIgnore) {
    Forbid(static_cast<int>(ByteKind::IGN), tr("Only bytes of a received string can be ignored"));
  }
}

void ByteModeForm::ChooseAllAscii() {
  allBytes_ = true;
  Choose(kAscii);
}

void ByteModeForm::Label1_MouseUp(int index, Qt::MouseButton button) {
  if (index == kAscii && button == Qt::RightButton) return ChooseAllAscii();
  ChoicePopup::Label1_MouseUp(index, button);
}

// The keyboard's twin of the right button.
void ByteModeForm::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isEnter && event->modifiers().testFlag(Qt::ShiftModifier)) return ChooseAllAscii();
  ChoicePopup::keyPressEvent(event);
}

}  // namespace qdm
