#include "forms/shared/elided_label.h"

#include <QPainter>
#include <QStyle>

namespace qdm {
namespace {

constexpr int kWidest = 180;  // pixels that it asks for; a device by-id has 70 letters and more

}  // namespace

ElidedLabel::ElidedLabel(int narrowest, Qt::TextElideMode elided, QWidget* parent)
    : QLabel(parent), narrowest_(narrowest), elided_(elided) {
  setTextFormat(Qt::PlainText);
}

void ElidedLabel::ShowText(const QString& text) {
  setText(text);
  setToolTip(text);
}

QSize ElidedLabel::sizeHint() const { return QLabel::sizeHint().boundedTo(QSize(kWidest, QWIDGETSIZE_MAX)); }

QSize ElidedLabel::minimumSizeHint() const {
  return QLabel::minimumSizeHint().boundedTo(QSize(narrowest_, QWIDGETSIZE_MAX));
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QString shown = fontMetrics().elidedText(text(), elided_, contentsRect().width());
  style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        shown, foregroundRole());
}

}  // namespace qdm
