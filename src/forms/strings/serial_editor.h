// Edits one string slot of the definition in work byte by byte: the slot that Globals::CurrentSlot names. The
// slot is written on Done. While a test runs it holds what the editor shows, and gets its own string back
// afterwards. Keeps Globals::VariableBytePosition up to date.
#pragma once

#include <QDialog>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace Ui {
class SerialEditor;
}

namespace qdm {

class ByteValueControl;
struct Globals;
struct SerialString;
class UserPrompts;

class SerialEditor : public QDialog {
  Q_OBJECT

 public:
  // Opens the test console on the current slot and returns when it is closed.
  using ConsoleOpener = std::function<void(QWidget* parent)>;

  SerialEditor(Globals& globals, UserPrompts& prompts, ConsoleOpener openConsole, QWidget* parent = nullptr);
  ~SerialEditor() override;

  // Where editing begins; a byte that is not in use, or -1, is the first one.
  void FocusByte(int index);

 private:
  void MakeCells();
  void ConnectControls();
  void Form_Load();

  void NumberOfBytes1_Change();
  void ByteValueControl1_ModeChanged();
  void ByteValueControl1_VariableChanged();
  void Done_Click();
  void Test_Click();
  void PasteCommand_Click();

  void ChooseKind(ByteValueControl& cell);
  void ChooseValue(ByteValueControl& cell);
  void MakeAllAscii();
  void MakeVariable(ByteValueControl& cell);
  void EditVolumeFormat();
  enum class Rest { Kept, Dropped };  // of the string behind what is pasted
  void PasteAt(std::size_t first, Rest rest);
  void MoveFrom(int index, int step);

  std::size_t BytesInUse() const;
  SerialString& Slot();
  // What the cells say. A value that is no byte (over 255) is left as it was in the slot.
  SerialString EditedString();
  void ShowString();
  // The first cell in use that cannot be stored; null when all can.
  ByteValueControl* FirstTooLarge() const;
  bool RefuseTooLarge();

  std::unique_ptr<Ui::SerialEditor> ui_;
  Globals& globals_;
  UserPrompts& prompts_;
  ConsoleOpener openConsole_;
  std::vector<ByteValueControl*> ByteValueControl1;
};

}  // namespace qdm
