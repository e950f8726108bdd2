#include "forms/controls/filter_box.h"

#include <QAction>
#include <QIcon>
#include <QKeyEvent>
#include <QToolButton>

namespace qdm {

FilterBox::FilterBox(QWidget* parent) : QLineEdit(parent) {
  addAction(QIcon(QStringLiteral(":/icons/find.png")), QLineEdit::LeadingPosition);
  // The line edit's own clear button looks its icon up in the desktop's themes: a quarter of the editor's
  // start.
  QAction* const clearAction =
      addAction(QIcon(QStringLiteral(":/icons/clear.png")), QLineEdit::TrailingPosition);
  clearAction->setToolTip(tr("Show all"));
  clearAction->setVisible(false);
  connect(clearAction, &QAction::triggered, this, &QLineEdit::clear);
  connect(this, &QLineEdit::textChanged, clearAction,
          [clearAction](const QString& text) { clearAction->setVisible(!text.isEmpty()); });
  for (auto* button : findChildren<QToolButton*>()) {  // for those who cannot see the pictures
    button->setAccessibleName(button->defaultAction() == clearAction ? tr("Show all") : tr("Filter"));
  }
  setPlaceholderText(tr("Filter"));
  setAccessibleName(tr("Filter"));
  setToolTip(tr("Words of the manufacturer's or the model's name (Ctrl+F)"));
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
