// The pop-up on which the kind of a byte is chosen. The index of a caption is the kind's code.
#pragma once

#include "forms/strings/choice_popup.h"

#include <cstdint>

namespace qdm {

class ByteModeForm : public ChoicePopup {
  Q_OBJECT

 public:
  // `otherVariableByte`: 1-based place of another byte that is the string's variable one, below 1 when there
  // is none. A string has one at most. Where nothing can be ignored that kind cannot be chosen.
  ByteModeForm(int otherVariableByte, bool canIgnore, QWidget* parent);

  // The right button on "ASCII": all bytes of the string.
  bool AllBytes() const { return allBytes_; }

 protected:
  void Label1_MouseUp(int index, Qt::MouseButton button) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ChooseAllAscii();

  bool allBytes_ = false;
};

}  // namespace qdm
