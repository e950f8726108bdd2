#include "forms/strings/string_picture.h"

#include "forms/strings/kind_colours.h"
#include "serial_strings/serial_string.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPainter>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qdm {
namespace {

constexpr int kPictureMargin = 4;

// Separator, text and suffix of a byte. The characters that fonts have no picture for get one.
QString PieceOf(const SerialString& string, std::size_t index) {
  constexpr QChar kNoPicture(0x25AF);
  const ByteText byte = CompactByteText(string.Values[index], string.Kinds[index]);
  const std::string_view separator = CompactSeparator(string, index);
  QString piece = QString::fromUtf8(separator.data(), static_cast<qsizetype>(separator.size())) +
                  QString::fromStdString(byte.Text) +
                  QString::fromUtf8(byte.Suffix.data(), static_cast<qsizetype>(byte.Suffix.size()));
  for (QChar& c : piece) {
    if (c.unicode() >= 0x7F && c.unicode() < 0xA0) c = kNoPicture;
  }
  return piece;
}

// Where the blanks begin that stand at the end and would not be seen.
std::size_t TrailingBlanks(const SerialString& string) {
  std::size_t begin = string.BytesInUse();
  while (begin > 0 && string.Values[begin - 1] == ' ' &&
         string.Kinds[begin - 1] == static_cast<std::uint8_t>(ByteKind::ASC)) {
    --begin;
  }
  return begin;
}

}  // namespace

StringPicture::StringPicture(QWidget* parent) : QWidget(parent) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  Measure();
}

void StringPicture::SetString(const SerialString& string) {
  string_ = string;
  const std::string text = CompactText(string);
  setAccessibleName(text.empty() ? tr("empty") : QString::fromStdString(text));
  Measure();
  update();
}

void StringPicture::SetOffset(int pixels) {
  offset_ = pixels;
  update();
}

void StringPicture::SetFocusShown(bool shown) {
  focusShown_ = shown;
  update();
}

void StringPicture::Measure() {
  const std::size_t count = string_.BytesInUse();
  int x = kPictureMargin;
  for (std::size_t i = 0; i < count; ++i) {
    edges_[i] = x;
    x += fontMetrics().horizontalAdvance(PieceOf(string_, i));
  }
  std::fill(edges_.begin() + static_cast<std::ptrdiff_t>(count), edges_.end(), x);
}

int StringPicture::TotalWidth() const { return edges_.back() + kPictureMargin; }

int StringPicture::ByteAt(int x) const {
  const int place = x + offset_;
  for (std::size_t i = 0; i < string_.BytesInUse(); ++i) {
    if (place >= edges_[i] && place < edges_[i + 1]) return static_cast<int>(i);
  }
  return -1;
}

QSize StringPicture::sizeHint() const { return {TotalWidth(), fontMetrics().height() + 6}; }

QSize StringPicture::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 8, fontMetrics().height() + 6};
}

void StringPicture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor background = palette().color(isEnabled() ? QPalette::Base : QPalette::Window);
  painter.fillRect(rect(), background);
  const int baseline = (height() + fontMetrics().ascent() - fontMetrics().descent()) / 2;
  const std::size_t blanks = TrailingBlanks(string_);
  for (std::size_t i = 0; i < string_.BytesInUse(); ++i) {
    painter.setPen(isEnabled() ? KindColourOn(string_.Kinds[i], background)
                               : palette().color(QPalette::Disabled, QPalette::Text));
    painter.drawText(edges_[i] - offset_, baseline, PieceOf(string_, i));
    if (i >= blanks) {
      painter.setPen(QPen(painter.pen().color(), 1, Qt::DotLine));
      const int blank = fontMetrics().horizontalAdvance(u' ');
      const int height = fontMetrics().ascent() - 2;
      painter.drawRect(edges_[i + 1] - offset_ - blank + 1, baseline - height, blank - 3, height);
    }
  }
  painter.setPen(palette().color(focusShown_ ? QPalette::Highlight : QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  if (focusShown_) painter.drawRect(rect().adjusted(1, 1, -2, -2));
}

void StringPicture::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) Measure();
  QWidget::changeEvent(event);
}

}  // namespace qdm
