// The main window's status line: what was last done and to which file, a mark while something is not saved,
// and the ways to the "Find panel" and "Projector bench" windows.
#pragma once

#include <QStatusBar>

class QLabel;
class QToolButton;

namespace qdm {

class ElidedLabel;

class EditorStatusBar : public QStatusBar {
  Q_OBJECT

 public:
  explicit EditorStatusBar(QWidget* parent = nullptr);

  void ShowText(const QString& text);
  QString Text() const;
  void ShowUnsaved(bool unsaved);
  void EnableFindPanel(bool enabled);
  void EnableBench(bool enabled);

 Q_SIGNALS:
  void FindPanel_Click();
  void Bench_Click();

 private:
  ElidedLabel* statusText_;
  QLabel* unsavedMark_;
  QToolButton* MakeButton(const char* name, const QString& text, const QString& toolTip);

  QToolButton* findPanel_;
  QToolButton* bench_;
};

}  // namespace qdm
