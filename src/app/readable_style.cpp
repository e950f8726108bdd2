#include "app/readable_style.h"

#include <QPainter>
#include <QStyleOption>

namespace qdm {

void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool box = element == PE_IndicatorCheckBox;
  if (!box && element != PE_IndicatorRadioButton) return;
  if (option->palette.color(QPalette::Window).lightness() >= 128) return;
  QColor outline = option->palette.color(QPalette::WindowText);
  outline.setAlphaF(0.6F);
  const QRectF shape = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(outline);
  painter->setBrush(Qt::NoBrush);
  box ? painter->drawRect(shape) : painter->drawEllipse(shape);
  painter->restore();
}

}  // namespace qdm
