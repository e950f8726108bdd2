// A label that may be narrower than its text: what does not fit is left out, and the tool tip shows all of
// it.
#pragma once

#include <QLabel>

namespace qdm {

class ElidedLabel : public QLabel {
  Q_OBJECT

 public:
  ElidedLabel(int narrowest, Qt::TextElideMode elided, QWidget* parent);
  void ShowText(const QString& text);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int narrowest_;
  Qt::TextElideMode elided_;
};

}  // namespace qdm
