// The names under which a definition is added to the library: offers those of Globals::ClipboardProjector,
// refuses those that the library has. Done stores the confirmed names in ClipboardProjector and appends a
// copy of it to the library; nothing is saved to disk here. Also the window in which an element of the
// library gets other names.
#pragma once

#include "base/message.h"

#include <QDialog>

#include <cstddef>
#include <memory>
#include <optional>

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
  // Renames that element.
  NewNameForm(Globals& globals, UserPrompts& prompts, std::size_t element, QWidget* parent);
  ~NewNameForm() override;

 private:
  NewNameForm(Globals& globals, UserPrompts& prompts, std::optional<std::size_t> renamed, QWidget* parent);

  void Form_Load();
  void Text_Change();
  void Done_Click();
  void ShowWhatCanBeTyped(const QLineEdit* box);
  std::optional<Message> Store();

  Globals& globals_;
  UserPrompts& prompts_;
  const std::optional<std::size_t> renamed_;
  std::unique_ptr<Ui::NewNameForm> ui_;
};

}  // namespace qdm
