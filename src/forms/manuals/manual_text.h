// The text of a manual: plain text that can be edited, with everything that was understood on a coloured
// ground. The cursor on such a piece tells which one it is, by mouse or by keys; files that are dropped or
// pasted are handed on.
#pragma once

#include "projectors/manual_draft.h"

#include <QPlainTextEdit>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

class QMenu;

namespace qdm {

// A part of the text in UTF-16 units, as ManualDraft counts.
struct TextPart {
  std::size_t From = 0;
  std::size_t Length = 0;
};

// The paths of files that are dropped or pasted.
QStringList FilesIn(const QMimeData* source);

class ManualText : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit ManualText(QWidget* parent = nullptr);

  // Shown above the usual commands of the context menu.
  void SetMenu(QMenu* menu) { menu_ = menu; }

  // As ManualDraft reads it: one line for each of the box.
  std::u16string Text() const;
  void AddPage(const QString& text);
  // Without the blanks at its ends; nothing where no text is selected.
  std::optional<TextPart> Selected() const;

  void ShowPieces(const std::vector<ManualPiece>& pieces);
  // Points out what was taken for a string, and brings it into sight with `scroll`.
  void PointOut(std::optional<std::size_t> slot, bool scroll);

 Q_SIGNALS:
  // The cursor has come to a piece, counted in what was shown; -1 where nothing was understood.
  void PieceEntered(int piece);
  void FilesGiven(const QStringList& files);

 protected:
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Paint();
  void EnterPiece();
  QTextCursor CursorOf(const ManualRange& range) const;

  QMenu* menu_ = nullptr;
  std::vector<ManualPiece> pieces_;
  bool stale_ = false;  // the text has changed since it was read
  std::optional<std::size_t> pointedOut_;
};

}  // namespace qdm
