// A window that is larger than the screen leaves room to be moved and closed.
#pragma once

class QWidget;

namespace qdm {

// To be called before it is shown: no larger than the screen's free part, the frame counted.
void FitToScreen(QWidget* window);

}  // namespace qdm
