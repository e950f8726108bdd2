// One string slot of the definition in work as coloured text with its commands: edit, copy, cut, paste,
// delete, test, by menu, mouse and keys. Works on a copy of the string; cutting, pasting and deleting write
// it back to the slot at once and say `StringChanged`. What editing and testing mean is the owner's matter.
#pragma once

#include <QWidget>

class QAction;
class QMenu;
class QScrollBar;

namespace qdm {

struct Globals;
struct SerialString;
class StringPicture;
class UserPrompts;

class SerialStringDisplay : public QWidget {
  Q_OBJECT

 public:
  explicit SerialStringDisplay(QWidget* parent = nullptr);

  // Before anything is shown. Both must outlive the display.
  void Bind(Globals& globals, UserPrompts& prompts);

  // Shows the slot 0..24 of CurrentProjector.
  void Display(int slot);
  // Shows the last reply that the test console took in; the slot stays the one that `Display` named.
  void FillWithReceiveString();
  // Writes the string on show into its slot.
  void ReturnValue();

  int Slot() const { return slot_; }  // -1 before the first `Display`
  const SerialString& String() const;
  // The byte that the double-click of the present EditRequest was on; -1 when it was on none or came from
  // menu or keys.
  int RequestedByte() const { return requestedByte_; }

  // No menu any more, and of its keys only copying and editing.
  void DisableMenu();
  void ResizeMe();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void EditRequest();
  void StringChanged();
  void TestRequest();

 protected:
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QAction* MakeCommand(const char* name, const char* caption, const QList<QKeySequence>& keys,
                       void (SerialStringDisplay::*handler)());
  void MakeMenu();
  void UpdateCommands();

  void menuEdit_Click();
  void menCopy_Click();
  void menCut_Click();
  void menuPaste_Click();
  void menuDelete_Click();
  void menuTest_Click();
  void OffsetBar_Change();

  SerialString& SlotString();
  void ShowString(const SerialString& string);
  void ChangeString(const SerialString& string);
  void Empty();

  StringPicture* DisplayImage;
  QScrollBar* OffsetBar;
  QMenu* menuHidden;
  QAction* menuEdit = nullptr;
  QAction* menCopy = nullptr;
  QAction* menCut = nullptr;
  QAction* menuPaste = nullptr;
  QAction* menuDelete = nullptr;
  QAction* menuTest = nullptr;

  Globals* globals_ = nullptr;
  UserPrompts* prompts_ = nullptr;
  int slot_ = -1;
  int requestedByte_ = -1;
  bool doubleClicked_ = false;
  bool menuDisabled_ = false;
};

}  // namespace qdm
