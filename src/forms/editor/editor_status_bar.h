// The main window's status line: what was last done and to which file, a mark while something is not saved,
// and the way to the "Find panel" window.
#pragma once

#include <QStatusBar>

class QLabel;
class QToolButton;

namespace qdm {

class EditorStatusBar : public QStatusBar {
  Q_OBJECT

 public:
  explicit EditorStatusBar(QWidget* parent = nullptr);

  void ShowText(const QString& text);
  QString Text() const;
  void ShowUnsaved(bool unsaved);
  void EnableFindPanel(bool enabled);

 Q_SIGNALS:
  void FindPanel_Click();

 private:
  QLabel* statusText_;
  QLabel* unsavedMark_;
  QToolButton* findPanel_;
};

}  // namespace qdm
