#include "forms/projectors/notes_box.h"

#include "forms/controls/entry_note.h"
#include "forms/shared/qt_text.h"

#include <QScopedValueRollback>

namespace qdm {

NotesBox::NotesBox(QWidget* parent) : QPlainTextEdit(parent) {
  setTabChangesFocus(true);
  connect(this, &QPlainTextEdit::textChanged, this, &NotesBox::Limit);
}

void NotesBox::SetNotes(const FixedText<256>& notes) {
  const QScopedValueRollback guard(limiting_, true);
  set_ = notes;
  setPlainText(ToQString(notes.Unpadded()));
  shown_ = toPlainText();
}

FixedText<256> NotesBox::Notes() const {
  return toPlainText() == shown_ ? set_ : FixedText<256>(StoredText().toStdU16String());
}

QString NotesBox::StoredText() const {
  return toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
}

// The cursor stands behind what has just been typed or pasted.
void NotesBox::Limit() {
  if (limiting_) return;
  const QScopedValueRollback guard(limiting_, true);
  TakeOutWhatHasNoCode();
  QTextCursor cursor = textCursor();
  cursor.joinPreviousEditBlock();
  if (StoredText().size() > static_cast<qsizetype>(FixedText<256>::kLength)) {
    ShowEntryNote(this, tr("The notes are full: 256 characters, a line end counts as two."));
  }
  while (StoredText().size() > static_cast<qsizetype>(FixedText<256>::kLength) && !cursor.atStart())
    cursor.deletePreviousChar();
  cursor.endEditBlock();
}

void NotesBox::TakeOutWhatHasNoCode() {
  const QString text = toPlainText();
  QTextCursor cursor(document());
  cursor.joinPreviousEditBlock();
  for (int i = static_cast<int>(text.size()) - 1; i >= 0; --i) {
    const char16_t c = text.at(i).unicode();
    if (ByteOf(c) && (c >= 32 || c == u'\n' || c == u'\t')) continue;
    if (text.at(i).isPrint()) {
      ShowEntryNote(this, tr("Notes cannot hold “%1”: only characters of the Western European set "
                             "(Windows-1252).")
                              .arg(text.at(i)));
    }
    cursor.setPosition(i);
    cursor.setPosition(i + 1, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
  }
  cursor.endEditBlock();
}

}  // namespace qdm
