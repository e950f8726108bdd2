// A serial string as coloured text on one line, without any command: what the displays, the editor and the
// choice of a reading show. Knows where each byte stands.
#pragma once

#include "serial_strings/string_record.h"

#include <QWidget>

#include <array>

namespace qdm {

class StringPicture : public QWidget {
  Q_OBJECT

 public:
  explicit StringPicture(QWidget* parent = nullptr);

  void SetString(const SerialString& string);
  const SerialString& String() const { return string_; }
  // Pixels of the text that are out of sight on the left.
  void SetOffset(int pixels);
  void SetFocusShown(bool shown);

  // Of the whole text, margins included.
  int TotalWidth() const;
  // The byte at a place in the widget; -1 where there is none.
  int ByteAt(int x) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Measure();

  SerialString string_;
  // The left edge of each byte in use; from there on the end of the text.
  std::array<int, kMaximumStringBytes + 1> edges_{};
  int offset_ = 0;
  bool focusShown_ = false;
};

}  // namespace qdm
