// The one seam to the user: every box and every file dialog goes through it. The editor's one opens Qt
// dialogs, the tests' one answers from a list and keeps what was shown.
#pragma once

#include "base/message.h"

#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

namespace qdm {

enum class SaveAnswer { Save, DontSave, Cancel };

class UserPrompts {
 public:
  virtual ~UserPrompts() = default;

  virtual void Show(QWidget* parent, const Message& message) = 0;
  // Yes and No buttons; closing the box is No.
  virtual bool AskYesNo(QWidget* parent, const Message& question) = 0;
  // Whether to save before something unsaved is given up; closing the box is Cancel.
  virtual SaveAnswer AskSave(QWidget* parent, const Message& question) = 0;
  // A button for each answer; gives the number of the one that was pressed. `safe` is the default and what
  // closing the box means.
  virtual int Choose(QWidget* parent, const Message& question, const QStringList& answers, int safe) = 0;
  // Nothing when the user cancelled. `title` says what for; `filter` is a marked text in the form
  // "Caption (*.EXT)|*.EXT"; an empty `folder` is the one that the system proposes.
  virtual std::optional<QString> OpenFile(QWidget* parent, const QString& title, const char* filter,
                                          const QString& folder = {}) = 0;
  // Asks before an existing file is chosen; a name that does not end in the filter's ending gets it before.
  virtual std::optional<QString> SaveFile(QWidget* parent, const QString& title, const char* filter,
                                          const QString& folder = {}) = 0;
};

}  // namespace qdm
