#include "forms/strings/byte_value_control.h"

#include "forms/strings/kind_colours.h"
#include "forms/strings/my_text_box.h"
#include "serial_strings/serial_string.h"

#include <QLabel>
#include <QMouseEvent>
#include <QVBoxLayout>

#include <cstdint>
#include <string_view>

namespace qdm {

ByteValueControl::ByteValueControl(int index, QWidget* parent)
    : QWidget(parent), Text2(new QLabel(this)), MyTextBox1(new MyTextBox(this)), index_(index) {
  setObjectName(QStringLiteral("ByteValueControl1_%1").arg(index));
  Text2->setObjectName(QStringLiteral("Text2"));
  Text2->setToolTip(tr("Click to change byte mode"));
  Text2->setAlignment(Qt::AlignCenter);
  Text2->setFrameShape(QFrame::StyledPanel);
  Text2->setCursor(Qt::PointingHandCursor);
  Text2->installEventFilter(this);
  MyTextBox1->setObjectName(QStringLiteral("MyTextBox1"));
  MyTextBox1->SetCaption(tr("Byte %1").arg(index + 1));

  auto* number = new QLabel(QString::number(index + 1), this);
  number->setObjectName(QStringLiteral("Number"));
  number->setAlignment(Qt::AlignCenter);
  number->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00")) + 4);
  number->setForegroundRole(QPalette::PlaceholderText);

  auto* head = new QHBoxLayout;
  head->setSpacing(0);
  head->addWidget(number);
  head->addWidget(Text2, 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(head);
  column->addWidget(MyTextBox1);
  connect(MyTextBox1, &MyTextBox::KindRequest, this, &ByteValueControl::KindRequest);
  connect(MyTextBox1, &MyTextBox::ValueChanged, this, &ByteValueControl::VariableChanged);
}

std::int16_t ByteValueControl::Value() const { return MyTextBox1->Value(); }
std::uint8_t ByteValueControl::Kind() const { return MyTextBox1->Kind(); }

void ByteValueControl::SetByte(std::int16_t value, std::uint8_t kind) {
  const bool isOther = kind != Kind();
  MyTextBox1->SetByte(value, kind);
  ShowKind();
  if (isOther) Q_EMIT ModeChanged();
}

void ByteValueControl::ShowKind() {
  const std::string_view label = KindLabel(Kind());
  Text2->setText(QString::fromLatin1(label.data(), static_cast<qsizetype>(label.size())));
  QPalette colours = palette();
  if (isEnabled()) {
    colours.setColor(QPalette::WindowText, KindColourOn(Kind(), colours.color(QPalette::Window)));
  }
  Text2->setPalette(colours);
}

void ByteValueControl::Text2_Click() {
  MyTextBox1->setFocus(Qt::MouseFocusReason);
  Q_EMIT KindRequest();
}

bool ByteValueControl::eventFilter(QObject* watched, QEvent* event) {
  if (watched != Text2 || event->type() != QEvent::MouseButtonRelease || !isEnabled()) return false;
  const auto* mouse = static_cast<QMouseEvent*>(event);
  if (mouse->button() != Qt::LeftButton || !Text2->rect().contains(mouse->position().toPoint())) return false;
  Text2_Click();
  return true;
}

void ByteValueControl::changeEvent(QEvent* event) {
  if (event->type() == QEvent::EnabledChange) ShowKind();
  QWidget::changeEvent(event);
}

}  // namespace qdm
