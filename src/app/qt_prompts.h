// UserPrompts with the desktop's own boxes and file dialogs.
#pragma once

#include "forms/shared/user_prompts.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>

namespace qdm {

class QtPrompts : public UserPrompts {
  Q_DECLARE_TR_FUNCTIONS(qdm::QtPrompts)

 public:
  void Show(QWidget* parent, const Message& message) override;
  bool AskYesNo(QWidget* parent, const Message& question) override;
  SaveAnswer AskSave(QWidget* parent, const Message& question) override;
  int Choose(QWidget* parent, const Message& question, const QStringList& answers, int safe) override;
  std::optional<QString> OpenFile(QWidget* parent, const QString& title, const char* filter,
                                  const QString& folder) override;
  std::optional<QString> SaveFile(QWidget* parent, const QString& title, const char* filter,
                                  const QString& folder) override;
};

// A name as it is saved under: "St. Mary Hall 2.1" is no "1" file but gets the ending, "room.bvc" has it.
QString WithEnding(const QString& fileName, const QString& ending);

}  // namespace qdm
