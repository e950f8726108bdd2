// The desktop's style with outlines that a dark palette can be read by: boxes and circles that are not chosen
// are drawn in a shade of the background there, and cannot be seen.
#pragma once

#include <QProxyStyle>

namespace qdm {

class ReadableStyle : public QProxyStyle {
 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace qdm
