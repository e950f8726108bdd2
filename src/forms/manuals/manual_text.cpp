#include "forms/manuals/manual_text.h"

#include "forms/manuals/slot_colours.h"

#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QMenu>
#include <QMimeData>
#include <QTextBlock>
#include <QUrl>

#include <algorithm>
#include <memory>

namespace qdm {

QStringList FilesIn(const QMimeData* source) {
  QStringList files;
  for (const QUrl& url : source->urls()) {
    if (url.isLocalFile()) files << url.toLocalFile();
  }
  return files;
}

ManualText::ManualText(QWidget* parent) : QPlainTextEdit(parent) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setLineWrapMode(NoWrap);
  setTabChangesFocus(true);
  connect(this, &QPlainTextEdit::textChanged, this, [this] { stale_ = true; });
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, &ManualText::EnterPiece);
}

std::u16string ManualText::Text() const {
  std::u16string text;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    if (block.blockNumber() > 0) text += u'\n';
    text += block.text().replace(QChar::LineSeparator, QLatin1Char(' ')).toStdU16String();
  }
  return text;
}

void ManualText::AddPage(const QString& text) {
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  if (!document()->isEmpty()) end.insertText(QStringLiteral("\n\n"));
  const int from = end.position();
  end.insertText(text);
  end.setPosition(from);  // the page's first line is what is looked at next
  setTextCursor(end);
  ensureCursorVisible();
}

std::optional<TextPart> ManualText::Selected() const {
  const QTextCursor cursor = textCursor();
  const std::u16string text = Text();
  auto from = static_cast<std::size_t>(cursor.selectionStart());
  auto to = static_cast<std::size_t>(cursor.selectionEnd());
  const auto blank = [&](std::size_t at) { return QChar(text[at]).isSpace(); };
  while (from < to && blank(from)) ++from;
  while (from < to && blank(to - 1)) --to;
  if (from == to) return std::nullopt;
  return TextPart{from, to - from};
}

void ManualText::ShowPieces(const std::vector<ManualPiece>& pieces) {
  pieces_ = pieces;
  stale_ = false;
  Paint();
}

void ManualText::PointOut(std::optional<std::size_t> slot, bool scroll) {
  pointedOut_ = slot;
  Paint();
  const auto piece = std::find_if(pieces_.begin(), pieces_.end(),
                                  [&](const ManualPiece& each) { return slot && each.Slot == slot; });
  if (!scroll || piece == pieces_.end()) return;
  const QSignalBlocker quiet(this);
  QTextCursor cursor = CursorOf(piece->Range);
  cursor.setPosition(cursor.selectionStart());
  setTextCursor(cursor);
  ensureCursorVisible();
}

QTextCursor ManualText::CursorOf(const ManualRange& range) const {
  const QTextBlock block = document()->findBlockByNumber(static_cast<int>(range.Line) - 1);
  QTextCursor cursor(document());
  if (!block.isValid()) return cursor;
  const auto placeOf = [&](std::size_t column) {
    return block.position() + std::min(static_cast<int>(column), block.length() - 1);
  };
  cursor.setPosition(placeOf(range.From));
  cursor.setPosition(placeOf(range.To), QTextCursor::KeepAnchor);
  return cursor;
}

void ManualText::Paint() {
  QList<QTextEdit::ExtraSelection> selections;
  // What is painted last is on top: the first piece at a place counts.
  for (auto piece = pieces_.rbegin(); piece != pieces_.rend(); ++piece) {
    QTextEdit::ExtraSelection selection;
    selection.cursor = CursorOf(piece->Range);
    selection.format.setBackground(SlotColour(piece->Slot, palette()));
    selection.format.setForeground(palette().color(QPalette::Text));
    if (pointedOut_ && piece->Slot == pointedOut_) {
      selection.format.setUnderlineStyle(QTextCharFormat::SingleUnderline);
      selection.format.setUnderlineColor(palette().color(QPalette::Text));
    }
    selections << selection;
  }
  setExtraSelections(selections);
}

void ManualText::EnterPiece() {
  const QTextCursor cursor = textCursor();
  if (cursor.hasSelection() || stale_) return;
  const auto line = static_cast<std::size_t>(cursor.blockNumber()) + 1;
  const auto column = static_cast<std::size_t>(cursor.positionInBlock());
  const auto piece = std::find_if(pieces_.begin(), pieces_.end(), [&](const ManualPiece& each) {
    return each.Range.Line == line && each.Range.From <= column && column <= each.Range.To;
  });
  Q_EMIT PieceEntered(piece == pieces_.end() ? -1 : static_cast<int>(piece - pieces_.begin()));
}

bool ManualText::canInsertFromMimeData(const QMimeData* source) const {
  return !FilesIn(source).isEmpty() || QPlainTextEdit::canInsertFromMimeData(source);
}

void ManualText::insertFromMimeData(const QMimeData* source) {
  const QStringList files = FilesIn(source);
  if (files.isEmpty()) return QPlainTextEdit::insertFromMimeData(source);
  Q_EMIT FilesGiven(files);
}

void ManualText::contextMenuEvent(QContextMenuEvent* event) {
  const std::unique_ptr<QMenu> menu(createStandardContextMenu(event->pos()));
  menu->insertMenu(menu->actions().value(0), menu_);
  menu->insertSeparator(menu->actions().value(1));
  const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
  menu->exec(byKey ? viewport()->mapToGlobal(cursorRect().bottomRight()) : event->globalPos());
}

void ManualText::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Paint();
}

}  // namespace qdm
