#include "forms/editor/editor_status_bar.h"

#include <QLabel>
#include <QToolButton>

namespace qdm {

EditorStatusBar::EditorStatusBar(QWidget* parent)
    : QStatusBar(parent),
      statusText_(new QLabel(this)),
      unsavedMark_(new QLabel(tr("Not saved"), this)),
      findPanel_(new QToolButton(this)) {
  statusText_->setObjectName(QStringLiteral("StatusText"));
  statusText_->setTextFormat(Qt::PlainText);
  statusText_->setIndent(4);
  // A long path is cut; it must not widen the window.
  statusText_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  unsavedMark_->setObjectName(QStringLiteral("UnsavedMark"));
  findPanel_->setObjectName(QStringLiteral("FindPanel"));
  findPanel_->setText(tr("&Find panel"));
  findPanel_->setIcon(QIcon(QStringLiteral(":/icons/port.png")));
  findPanel_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  findPanel_->setAutoRaise(true);
  findPanel_->setFocusPolicy(Qt::TabFocus);
  findPanel_->setToolTip(tr("Which COM port is a panel on?"));
  connect(findPanel_, &QToolButton::clicked, this, &EditorStatusBar::FindPanel_Click);
  addWidget(statusText_, 1);
  addPermanentWidget(unsavedMark_);
  addPermanentWidget(findPanel_);
}

void EditorStatusBar::ShowText(const QString& text) {
  statusText_->setText(text);
  statusText_->setToolTip(text);
}

QString EditorStatusBar::Text() const { return statusText_->text(); }

void EditorStatusBar::ShowUnsaved(bool unsaved) { unsavedMark_->setVisible(unsaved); }

void EditorStatusBar::EnableFindPanel(bool enabled) { findPanel_->setEnabled(enabled); }

}  // namespace qdm
