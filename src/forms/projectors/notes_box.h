// The notes of a definition: up to 256 characters of Windows-1252, line ends counting as two. What was typed
// or pasted beyond that, or has no code there, is taken out again.
#pragma once

#include "base/fixed_text.h"

#include <QPlainTextEdit>

namespace qdm {

class NotesBox : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit NotesBox(QWidget* parent = nullptr);

  void SetNotes(const FixedText<256>& notes);
  // As they were set, to the byte, while the text is the same.
  FixedText<256> Notes() const;

 private:
  QString StoredText() const;
  void Limit();
  void TakeOutWhatHasNoCode();

  FixedText<256> set_;
  QString shown_;
  bool limiting_ = false;
};

}  // namespace qdm
