// A borderless pop-up of captions, one of which is chosen with the mouse or the keys (arrows, a caption's
// first letter, Enter, Escape). It is left without a choice by Escape, a click beside it, or taking the
// pointer away.
#pragma once

#include <QDialog>

class QLabel;
class QTimer;

namespace qdm {

class ChoicePopup : public QDialog {
  Q_OBJECT

 public:
  static constexpr int kNothing = -3;

  // Captions fill columns of `rows`.
  ChoicePopup(const QStringList& captions, int rows, QWidget* parent);

  // The caption can be seen, but not chosen; its tool tip says why.
  void Forbid(int index, const QString& why);
  // Shown modally beside that place on the screen, with `current` highlighted (kNothing: the first).
  int ChooseAt(const QRect& place, int current);

  // The caption that Enter chooses; null before the pop-up is shown.
  const QLabel* Highlighted() const { return Label1.value(highlighted_); }

  void Timer1_Timer();

 protected:
  QLabel* Label(int index) const { return Label1.at(index); }
  // A mouse button was released on a caption that can be chosen.
  virtual void Label1_MouseUp(int index, Qt::MouseButton button);
  void Choose(int index);

  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int LabelAt(const QPoint& place) const;
  bool CanChoose(int index) const;
  void Highlight(int index);
  void Paint(int index, bool highlighted);
  void MoveBy(int step);
  void GoToLetter(const QString& letter);
  QPoint PlaceBeside(const QRect& place) const;

  QList<QLabel*> Label1;
  QTimer* Timer1;
  int rows_;
  int highlighted_ = kNothing;
  int choice_ = kNothing;
  bool pointerCame_ = false;
};

}  // namespace qdm
