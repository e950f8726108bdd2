// Shows the ways in which a text can be read as a serial string, the bytes in hexadecimal beside each, and
// lets the user take one. Where every way is doubtful, Cancel is the default.
#pragma once

#include "serial_strings/text_parser.h"

#include <QDialog>

#include <memory>
#include <optional>

namespace Ui {
class TextReadingForm;
}

namespace qdm {

class TextReadingForm : public QDialog {
  Q_OBJECT

 public:
  // `parsed` has at least one reading.
  TextReadingForm(const QString& text, const ParsedText& parsed, QWidget* parent = nullptr);
  ~TextReadingForm() override;

  // The reading that stands marked.
  const SerialString& Chosen() const;

  static std::optional<SerialString> Choose(QWidget* parent, const QString& text, const ParsedText& parsed);

 private:
  void Load(const QString& text);
  QString ReadAs(const TextReading& reading) const;

  std::unique_ptr<Ui::TextReadingForm> ui_;
  ParsedText parsed_;
};

}  // namespace qdm
