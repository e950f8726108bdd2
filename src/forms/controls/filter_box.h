// The filter over a tree: Escape empties it, Down goes to the tree.
#pragma once

#include <QLineEdit>

namespace qdm {

class FilterBox : public QLineEdit {
  Q_OBJECT

 public:
  explicit FilterBox(QWidget* parent = nullptr);

  // Where the Down key goes.
  void SetView(QWidget* view) { view_ = view; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* view_ = nullptr;
};

}  // namespace qdm
