// Windows whose controls stand in a scroll area, since they do not fit at twice the scale.
#pragma once

class QApplication;
class QScrollArea;
class QWidget;

namespace qdm {

// Makes `window` as large as everything in `area` wants it, as far as the screen has room. To be called
// before it is shown, when what is hidden is hidden.
void FitToScreen(QWidget& window, QScrollArea& area);

// Scrolls what gets the focus by key into view, in every scroll area: by themselves they follow Tab alone,
// and neither access keys nor the arrows in a group of options.
void FollowFocus(QApplication& application);

}  // namespace qdm
