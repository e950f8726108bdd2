// UserPrompts with the desktop's own boxes and file dialogs.
#pragma once

#include "forms/shared/user_prompts.h"

#include <optional>

namespace qdm {

class QtPrompts : public UserPrompts {
 public:
  void Show(QWidget* parent, const Message& message) override;
  bool AskYesNo(QWidget* parent, const Message& question) override;
  SaveAnswer AskSave(QWidget* parent, const Message& question) override;
  std::optional<QString> OpenFile(QWidget* parent, const char* filter) override;
  std::optional<QString> SaveFile(QWidget* parent, const char* filter) override;
};

}  // namespace qdm
