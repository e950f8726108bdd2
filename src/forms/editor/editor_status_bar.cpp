#include "forms/editor/editor_status_bar.h"

#include "forms/shared/elided_label.h"

#include <QLabel>
#include <QToolButton>

namespace qdm {
namespace {

constexpr int kNarrowest = 60;  // pixels; a long path must not widen the window

}  // namespace

EditorStatusBar::EditorStatusBar(QWidget* parent)
    : QStatusBar(parent),
      statusText_(new ElidedLabel(kNarrowest, Qt::ElideRight, this)),
      unsavedMark_(new QLabel(tr("Not saved"), this)),
      findPanel_(MakeButton("FindPanel", tr("&Find panel"), tr("Which COM port is a panel on?"))),
      bench_(MakeButton("Bench", tr("Projector ben&ch"),
                        tr("Stand in for the projector, find its settings, check its codes, time it"))) {
  statusText_->setObjectName(QStringLiteral("StatusText"));
  statusText_->setContentsMargins(4, 0, 4, 0);
  unsavedMark_->setObjectName(QStringLiteral("UnsavedMark"));
  connect(findPanel_, &QToolButton::clicked, this, &EditorStatusBar::FindPanel_Click);
  connect(bench_, &QToolButton::clicked, this, &EditorStatusBar::Bench_Click);
  addWidget(statusText_, 1);
  addPermanentWidget(unsavedMark_);
  addPermanentWidget(findPanel_);
  addPermanentWidget(bench_);
}

QToolButton* EditorStatusBar::MakeButton(const char* name, const QString& text, const QString& toolTip) {
  auto* button = new QToolButton(this);
  button->setObjectName(QLatin1String(name));
  button->setText(text);
  button->setIcon(QIcon(QStringLiteral(":/icons/port.png")));
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->setToolTip(toolTip);
  return button;
}

void EditorStatusBar::ShowText(const QString& text) { statusText_->ShowText(text); }

QString EditorStatusBar::Text() const { return statusText_->text(); }

void EditorStatusBar::ShowUnsaved(bool unsaved) { unsavedMark_->setVisible(unsaved); }

void EditorStatusBar::EnableFindPanel(bool enabled) { findPanel_->setEnabled(enabled); }
void EditorStatusBar::EnableBench(bool enabled) { bench_->setEnabled(enabled); }

}  // namespace qdm
