#include "controls/filter_box.h"

#include <QAction>
#include <QIcon>
#include <QKeyEvent>

namespace qdm {

FilterBox::FilterBox(QWidget* parent) : QLineEdit(parent) {
  addAction(QIcon(QStringLiteral(":/icons/find.png")), QLineEdit::LeadingPosition);
  setClearButtonEnabled(true);
  setPlaceholderText(QStringLiteral("Filter"));
  setAccessibleName(QStringLiteral("Filter"));
}

void FilterBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
    clear();
  } else if (event->key() == Qt::Key_Down && view_ != nullptr) {
    view_->setFocus(Qt::TabFocusReason);
  } else {
    QLineEdit::keyPressEvent(event);
  }
}

}  // namespace qdm
