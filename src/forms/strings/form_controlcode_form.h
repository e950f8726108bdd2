// The pop-up on which a control code is chosen by its name. The index of a caption is the code.
#pragma once

#include "forms/strings/choice_popup.h"

namespace qdm {

class FormControlcodeForm : public ChoicePopup {
  Q_OBJECT

 public:
  explicit FormControlcodeForm(QWidget* parent);
};

}  // namespace qdm
