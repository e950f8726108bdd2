// The names under which a definition is added to the library: offers those of Globals::ClipboardProjector,
// refuses those that the library has. Done stores the confirmed names in ClipboardProjector and appends a
// copy of it to the library; nothing is saved to disk here.
#pragma once

#include <QDialog>

#include <memory>

class QLineEdit;

namespace Ui {
class NewNameForm;
}

namespace qdm {

struct Globals;
class UserPrompts;

class NewNameForm : public QDialog {
  Q_OBJECT

 public:
  NewNameForm(Globals& globals, UserPrompts& prompts, QWidget* parent = nullptr);
  ~NewNameForm() override;

 private:
  void Form_Load();
  void Text_Change();
  void Done_Click();
  void ShowWhatCanBeTyped();

  Globals& globals_;
  UserPrompts& prompts_;
  std::unique_ptr<Ui::NewNameForm> ui_;
};

}  // namespace qdm
